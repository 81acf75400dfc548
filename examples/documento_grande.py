#!/usr/bin/env python3
"""Writes one line for "xvcr carrega": a price table whose document is larger than 1 MB.

    examples/documento_grande.py | xvcr --empresa 001 carrega -
"""
import json
import sys

ITENS = 12000  # about 100 bytes each


def documento():
    itens = [
        {
            "codigo": f"P{100000 + i}",
            "descricao": f"Peça de reposição nº {i}: suporte, parafuso e vedação",
            "preco": f"{(i * 37) % 99900 / 100 + 1:.2f}",
        }
        for i in range(ITENS)
    ]
    return {"tabela": "Catálogo completo", "itens": itens}


def main():
    linha = {
        "eTipoIntegracao": "CadastroTabelaPreco",
        "eStatusIntegracao": "Pendente",
        "eSistemaIntegracao": "Mercos",
        "eTipoTransacao": "Inclusao",
        "regRegistroJSON": documento(),
    }
    sys.stdout.buffer.write(json.dumps(linha, ensure_ascii=False).encode("utf-8") + b"\n")


if __name__ == "__main__":
    main()
