#!/usr/bin/env python3
"""Writes the same small store as versions 0 to 4 left it (v0 ... v4) and the payloads without header that its
converted files must have: in v5 those of records that were written in the last layouts, in v5_first those
of records that were written in the first ones. The fields of a record hold values that differ from each
other and, but for the first type, from 0, and the fillers are full. Knows the layouts by itself: nothing of the product is used."""
import pathlib
import struct

POLINOMIO = 0xC96C5795D7870F42


def crc64(dados):
    crc = 0
    for byte in dados:
        crc ^= byte
        for _ in range(8):
            crc = crc >> 1 ^ (POLINOMIO if crc & 1 else 0)
    return crc


def dma(ano, mes, dia):
    return (ano - 1848) << 9 | mes << 5 | dia


def dmc(data, ponteiro, tipo=1):
    return data << 46 | ponteiro << 14 | tipo


def data_hora(data, hora, minuto):
    return data << 32 | hora * 3600 + minuto * 60


def cabecalho(nome, tamanho, versao_arquivo):
    agora = struct.pack('<BBHBBBB', 7, 6, 2023, 10, 20, 30, 0)
    bloco = agora * 3 + bytes(16)
    bloco += struct.pack('<QQQQIIHHHH', 216, tamanho, 12, 345, 0, 3, versao_arquivo, 120, 126, 0)
    bloco += nome.encode()[-23:].ljust(24, b'\0') + b'MATRIZ'.ljust(24, b'\0') + b'ANTIGA'.ljust(24, b'\0')
    bloco += b'SERVIDOR'.ljust(16, b'\0') + bytes(32)
    assert len(bloco) == 208
    bloco += struct.pack('<Q', crc64(bloco))
    crc = struct.pack('<Q', crc64(b'\x01\x00'))
    return struct.pack('<H6x', 1) + crc + struct.pack('<Q', crc64(crc)) + bloco


# Every type that the renumbering knows, those beside them, and numbers that only look like one of them in
# their low bytes.
TIPOS = [*range(20), 0x105, 0x10007, 0x05000000, 0xFFFFFFFF]
NOVO_TIPO = {5: 2, **{antigo: antigo - 4 for antigo in range(7, 20)}}
DIAS = {20230605: range(0, 10), 20230606: range(10, 17), 20230607: range(17, 24)}
DIA = dma(2023, 6, 5)
PRIMEIRO, ULTIMO = 1, 2  # layouts


def enchimento(primeiro, quantos):
    return bytes(range(primeiro, primeiro + quantos))


def tipo_de(n, renumerado):
    return NOVO_TIPO.get(TIPOS[n], TIPOS[n]) if renumerado else TIPOS[n]


# escrito: the layout in which the record was written first; leiaute: the one that it has now.
def integracao(n, posicao, escrito, leiaute, renumerado):
    inicio = struct.pack('<QQQQ', dmc(DIA, 200 + n), dmc(0, 70 + n, 2), data_hora(DIA, 8, n), data_hora(DIA, 9, n))
    campos = struct.pack('<8I', tipo_de(n, renumerado), 1 + n % 3, posicao, posicao + 1, posicao + 2, 300 + n,
                         400 + n, 500 + n) + b'\x01'
    if leiaute == PRIMEIRO:
        return inicio + campos + enchimento(0xE0, 15)
    if escrito == PRIMEIRO:
        return inicio + bytes(8) + campos + bytes(15)
    return (inicio + struct.pack('<Q', 0x0102030405060700 + n) + campos + struct.pack('<BI', 100 + n, 0xA1B2C300 + n) +
            enchimento(0xD0, 10))


def chave(n, escrito, leiaute, renumerado):
    inicio = struct.pack('<QQ', 9000 + n, dmc(0, 70 + n, 2))
    campos = struct.pack('<II', tipo_de(n, renumerado), (2, 8, 16)[n % 3])
    if leiaute == PRIMEIRO:
        return inicio + campos
    base, origem = (0, 0) if escrito == PRIMEIRO else (600 + n, dmc(DIA, 1 + n))
    return inicio + struct.pack('<Q', base) + campos + struct.pack('<Q', origem)


def data_hora_integracao(n, renumerado):
    return struct.pack('<QIII', data_hora(DIA, 10, n), tipo_de(n, renumerado), (2, 8, 16)[n % 3],
                       1 + n // 12) + enchimento(0xC0, 12)


def texto(*textos):
    return b''.join(struct.pack('<I', len(t.encode())) + t.encode() for t in textos)


def registros(versao, integracoes_escritas, chaves_escritas):
    leiaute = PRIMEIRO if versao < 3 else ULTIMO
    arquivos = {f'CRINTEGMID{dia}.dat': b''.join(integracao(n, p, integracoes_escritas, leiaute, versao >= 4)
                                                 for p, n in enumerate(numeros, 1))
                for dia, numeros in DIAS.items()}
    leiaute = PRIMEIRO if versao < 2 else ULTIMO
    arquivos['CRCHAVEREGTER.dat'] = b''.join(chave(n, chaves_escritas, leiaute, versao >= 5) for n in range(len(TIPOS)))
    arquivos['CRDTHRINTEG.dat'] = b''.join(data_hora_integracao(n, versao >= 5) for n in range(len(TIPOS)))
    return arquivos


def outros():
    index = b''.join(struct.pack('<QQII', 100 + n, dmc(dma(2023, 6, dia % 100), p), (2, 8, 16)[n % 3], 1 + n % 5)
                     for dia, numeros in DIAS.items() for p, n in enumerate(numeros, 1))
    arquivos = {'CRINDEXINTEG.dat': index}
    for dia, numeros in DIAS.items():
        quantos = range(1, len(numeros) + 3)
        arquivos[f'CRINTEGMIDJSON{dia}.dat'] = texto(*(f'{{"pedido":{k},"cliente":"Três Irmãos"}}' for k in quantos))
        arquivos[f'CRINTEGMIDMENS{dia}.dat'] = texto(*(f'Integração aceita {k}' for k in quantos))
        arquivos[f'CRINTEGMIDJSONRET{dia}.dat'] = texto(*(f'{{"id":{k}}}' for k in quantos))
    return arquivos


def main():
    pasta = pathlib.Path(__file__).parent
    stores = {f'v{v}': (v, PRIMEIRO if v < 3 else ULTIMO, PRIMEIRO if v < 2 else ULTIMO) for v in range(5)}
    stores |= {'v5_first': (5, PRIMEIRO, PRIMEIRO), 'v5': (5, ULTIMO, ULTIMO)}
    for nome_pasta, (versao, *escritos) in stores.items():
        destino = pasta / nome_pasta
        destino.mkdir(exist_ok=True)
        for antigo in destino.glob('*.dat'):
            antigo.unlink()
        arquivos = registros(versao, *escritos)
        if versao < 5:
            arquivos |= outros()
        if versao > 0:
            arquivos['CRMIDDLEWAREVS.dat'] = struct.pack('<H14x', versao)
        for nome, dados in arquivos.items():
            # The oldest programs wrote no header; version 5 lists payloads only.
            com_cabecalho = 0 < versao < 5
            (destino / nome).write_bytes((cabecalho(nome, len(dados), 1) if com_cabecalho else b'') + dados)


if __name__ == '__main__':
    main()
