-- A database that is kept equal to the stores of many companies. Run once: psql -f schema.sql
CREATE SCHEMA xvcr;

-- One row for each integration. dados is the whole of it as "xvcr le --json --todos" writes it; the other columns
-- are what is searched and joined by.
CREATE TABLE xvcr.integracao (
    empresa   text        NOT NULL,
    dmc       numeric(20) NOT NULL,
    tipo      text        NOT NULL,
    status    text        NOT NULL,
    sistema   text        NOT NULL,
    chave     numeric(20) NOT NULL,
    inclusao  timestamptz,
    alteracao timestamptz,
    dados     jsonb       NOT NULL,
    passagem  bigint      NOT NULL,  -- the last pass over the company's store that found it
    PRIMARY KEY (empresa, dmc)
);
CREATE INDEX ON xvcr.integracao (empresa, sistema, chave);
CREATE INDEX ON xvcr.integracao (inclusao);

-- What a store cannot read of itself any more; xvcr verifica says what to do.
CREATE TABLE xvcr.ilegivel (
    empresa text        NOT NULL,
    dmc     numeric(20) NOT NULL,
    hr      text        NOT NULL,
    PRIMARY KEY (empresa, dmc)
);

-- How far each company is told. A deleted row makes the next run pass over the whole store.
CREATE TABLE xvcr.posicao (
    empresa  text PRIMARY KEY,
    token    text   NOT NULL,
    passagem bigint NOT NULL
);

-- Takes the lines in the temporary table chegada (seq, linha), in a transaction with the positions behind them.
-- Lines come at least once and in the order of seq. A pass begins with a batch, and ends with one.
CREATE FUNCTION xvcr.aplica() RETURNS void LANGUAGE plpgsql AS $$
BEGIN
    CREATE TEMP TABLE evento ON COMMIT DROP AS
        SELECT *, seq = max(seq) OVER (PARTITION BY empresa, dmc) AS ultimo
          FROM (SELECT seq, linha->>'evento' AS evento, linha->>'sEmpresa' AS empresa, linha->>'token' AS token,
                       coalesce(linha->>'regDmc', linha->'integracao'->>'regDmc')::numeric AS dmc,
                       linha->'integracao' AS dados, linha->'dmcsDaChave' AS dmcs_da_chave, linha->>'hr' AS hr
                  FROM chegada WHERE linha ? 'sEmpresa') c;
    DELETE FROM chegada;
    CREATE INDEX ON evento (empresa, dmc);
    ANALYZE evento;

    -- The position behind the last line of each company; a pass that begins has the next number.
    INSERT INTO xvcr.posicao AS p (empresa, token, passagem)
        SELECT DISTINCT ON (empresa) empresa, token,
               count(*) FILTER (WHERE evento = 'passagem') OVER (PARTITION BY empresa)
          FROM evento ORDER BY empresa, seq DESC
        ON CONFLICT (empresa) DO UPDATE
            SET token = excluded.token, passagem = p.passagem + excluded.passagem;

    -- Of an integration that came several times the last line counts.
    INSERT INTO xvcr.integracao
        SELECT e.empresa, e.dmc, e.dados->>'eTipoIntegracao', e.dados->>'eStatusIntegracao',
               e.dados->>'eSistemaIntegracao', (e.dados->>'uiChaveIntegracaoSistemaTerceiro')::numeric,
               nullif(e.dados->>'regDataHoraInclusao', '')::timestamptz,
               nullif(e.dados->>'regDataHoraAlteracaoStatus', '')::timestamptz, e.dados, p.passagem
          FROM evento e JOIN xvcr.posicao p USING (empresa)
         WHERE e.evento = 'integracao' AND e.ultimo
        ON CONFLICT (empresa, dmc) DO UPDATE
            SET tipo = excluded.tipo, status = excluded.status, sistema = excluded.sistema,
                chave = excluded.chave, inclusao = excluded.inclusao, alteracao = excluded.alteracao,
                dados = excluded.dados, passagem = excluded.passagem;
    DELETE FROM xvcr.integracao i USING evento e
     WHERE e.evento = 'ausente' AND e.ultimo AND i.empresa = e.empresa AND i.dmc = e.dmc;

    -- What cannot be read is not gone: the row stays as it was last seen. A pass names all of them anew.
    DELETE FROM xvcr.ilegivel l USING evento e
     WHERE l.empresa = e.empresa AND (l.dmc = e.dmc OR e.evento = 'passagem');
    INSERT INTO xvcr.ilegivel
        SELECT empresa, dmc, hr FROM evento WHERE evento = 'ilegivel' AND ultimo;
    UPDATE xvcr.integracao i SET passagem = p.passagem
      FROM evento e JOIN xvcr.posicao p USING (empresa)
     WHERE e.evento = 'ilegivel' AND i.empresa = e.empresa AND i.dmc = e.dmc;

    -- A new integration of the bank takes the place of an earlier one with its key. Lines that come behind know
    -- better.
    DELETE FROM xvcr.integracao i USING evento e
     WHERE e.dmcs_da_chave IS NOT NULL AND i.empresa = e.empresa
       AND i.sistema = e.dados->>'eSistemaIntegracao'
       AND i.chave = (e.dados->>'uiChaveIntegracaoSistemaTerceiro')::numeric
       AND NOT e.dmcs_da_chave ? i.dmc::text
       AND NOT EXISTS (SELECT FROM evento d WHERE d.empresa = i.empresa AND d.dmc = i.dmc AND d.seq > e.seq);

    -- What a whole pass did not find is in the store no more.
    DELETE FROM xvcr.integracao i USING evento e, xvcr.posicao p
     WHERE e.evento = 'passagemConcluida' AND p.empresa = e.empresa AND i.empresa = e.empresa
       AND i.passagem < p.passagem;
    DROP TABLE evento;
END $$;
