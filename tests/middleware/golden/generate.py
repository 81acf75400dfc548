#!/usr/bin/env python3
"""Writes the same small store as versions 0 to 4 left it (v0 ... v4) and, in v5, the payloads without
header that its converted files must have. Knows the layouts by itself: nothing of the product is used."""
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


DIA1, DIA2 = dma(2023, 6, 5), dma(2023, 6, 6)
NOVO_TIPO = {5: 2, **{antigo: antigo - 4 for antigo in range(7, 20)}}
TIPOS = {20230605: [1, 5, 6, 7, 19], 20230606: [9, 20]}


def integracao(versao, chave, n, tipo):
    if versao >= 4:
        tipo = NOVO_TIPO.get(tipo, tipo)
    data = DIA1 if chave == 20230605 else DIA2
    inicio = struct.pack('<QQQQ', 0, dmc(0, 70 + n, 2), data_hora(data, 8, n), data_hora(data, 9, n))
    campos = struct.pack('<8I', tipo, 1, n + 1, 1, 0, 3, 12, 0) + bytes([n % 2])
    return inicio + campos + bytes(15) if versao < 3 else inicio + bytes(8) + campos + bytes(15)


def chave(versao, n, tipo):
    if versao >= 5:
        tipo = NOVO_TIPO.get(tipo, tipo)
    meio, fim = (b'', b'') if versao < 2 else (bytes(8), bytes(8))
    return struct.pack('<QQ', 9000 + n, dmc(0, 70 + n, 2)) + meio + struct.pack('<II', tipo, 16) + fim


def data_hora_integracao(versao, n, tipo):
    if versao >= 5:
        tipo = NOVO_TIPO.get(tipo, tipo)
    return struct.pack('<QIII12x', data_hora(DIA1, n, 0), tipo, 16, 1)


def texto(*textos):
    return b''.join(struct.pack('<I', len(t.encode())) + t.encode() for t in textos)


def convertidos(versao):
    arquivos = {f'CRINTEGMID{c}.dat': b''.join(integracao(versao, c, n, t) for n, t in enumerate(tipos))
                for c, tipos in TIPOS.items()}
    arquivos['CRCHAVEREGTER.dat'] = b''.join(chave(versao, n, t) for n, t in enumerate([2, 5, 10, 6]))
    arquivos['CRDTHRINTEG.dat'] = b''.join(data_hora_integracao(versao, n, t) for n, t in enumerate([9, 13]))
    return arquivos


def outros():
    index = b''.join(struct.pack('<QQII', 100 + n, dmc(d, n + 1), 16, 3)
                     for d, tipos in ((DIA1, TIPOS[20230605]), (DIA2, TIPOS[20230606])) for n in range(len(tipos)))
    arquivos = {'CRINDEXINTEG.dat': index}
    for c, tipos in TIPOS.items():
        arquivos[f'CRINTEGMIDJSON{c}.dat'] = texto(*(f'{{"pedido":{n},"cliente":"Três Irmãos"}}' for n in range(len(tipos))))
        arquivos[f'CRINTEGMIDMENS{c}.dat'] = texto('Integração aceita')
    return arquivos


def main():
    pasta = pathlib.Path(__file__).parent
    for versao in range(6):
        destino = pasta / f'v{versao}'
        destino.mkdir(exist_ok=True)
        for antigo in destino.glob('*.dat'):
            antigo.unlink()
        arquivos = dict(convertidos(versao))
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
