#!/usr/bin/env python3
"""Reads an error log with Python's reader of tab-separated values: confere_log.py WRITER-PROGRAM."""
import csv
import pathlib
import subprocess
import sys
import tempfile

with tempfile.TemporaryDirectory() as pasta:
    subprocess.run([sys.argv[1], pasta, "p", "2", "10"], check=True, stdout=subprocess.DEVNULL)
    linhas = []
    for log in sorted(pathlib.Path(pasta).glob("XVProfilerErros_Pgms_*.log")):
        with open(log, encoding="utf-8", newline="") as arquivo:
            leitor = csv.reader(arquivo, delimiter="\t", quoting=csv.QUOTE_NONE, strict=True)
            cabecalho = next(leitor)
            linhas += [(cabecalho, linha) for linha in leitor]

assert len(linhas) == 20, len(linhas)
for cabecalho, linha in linhas:
    assert len(linha) == len(cabecalho) == 39, (len(linha), len(cabecalho))
    campos = dict(zip(cabecalho[13:], linha[13:]))
    assert campos["Tipo"] == "ERRO", campos
    assert campos["Log"].startswith("Log = hr = p/"), campos
    assert campos["Parameter2"] == "SEVERITY = 1 SEVERITY_ERROR", campos
    assert campos["Parameter5"] == "Descrição = E_FAIL", campos
    assert campos["MemoriaTotal"].isdigit() and campos["Arquivo"].startswith("Arquivo = "), campos
