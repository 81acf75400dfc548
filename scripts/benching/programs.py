"""Measures processes: a store that is opened anew, and the commands of xvcr."""
import json
import os
import shutil
import statistics
import struct
import subprocess
import time

DAY = (2023 - 1848) << 9 | 6 << 5  # of the store of version 0: June 2023, and days added
LINE = json.dumps({
    "eTipoIntegracao": "BuscaPedidos", "eStatusIntegracao": "Sucesso", "eSistemaIntegracao": "Mercos",
    "eTipoTransacao": "Inclusao", "uiChaveIntegracaoSistemaTerceiro": 0,
    "regRegistroJSON": {"itens": ["0" * 90] * 14}, "regMensagemIntegracao": "x" * 80,
    "regJSONRetornoIntegracao": {"retorno": "y" * 300}})


def run(command):
    """Wall and CPU seconds and the peak of resident bytes of a command whose output goes nowhere. The peak is
    looked at while it runs: what the system keeps of an ended child counts its parent's."""
    begin, peak = time.perf_counter(), 0
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    while True:
        pid, status, usage = os.wait4(process.pid, os.WNOHANG)
        if pid != 0:
            break
        peak = max(peak, peak_of(process.pid))
        time.sleep(0.002)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(f"{' '.join(command)} ended with {process.returncode}")
    return {"wall": time.perf_counter() - begin, "cpu": usage.ru_utime + usage.ru_stime, "peak": peak}


def peak_of(pid):
    try:
        with open(f"/proc/{pid}/status", encoding="utf-8") as source:
            return next((int(line.split()[1]) * 1024 for line in source if line.startswith("VmHWM:")), 0)
    except (FileNotFoundError, ProcessLookupError):
        return 0  # it has just ended


def starts(engine, options, opponents, rounds):
    """Fresh processes on the large stores: the first reading, then readings at random, and their memory."""
    figures = {}
    for turn in range(rounds):
        for i in range(len(opponents)):
            opponent = opponents[(i + turn) % len(opponents)]
            done = subprocess.run([engine, *options, f"--sozinho={opponent}"], stdout=subprocess.PIPE, check=True)
            told = json.loads(done.stdout)
            for work, key, unit in (("start", "start_us", "us"), ("memory after the start", "start_bytes", "bytes"),
                                    ("memory after reading over 100 days", "read_bytes", "bytes")):
                figure = figures.setdefault((work, opponent), {"work": work, "opponent": opponent, "unit": unit,
                                                               "rounds": [], "cpu": []})
                figure["rounds"].append(told[key])
                if unit == "us":
                    figure["cpu"].append(told["start_cpu"])
    return list(figures.values())


def load(xvcr, folder, lines):
    path = os.path.join(folder, "lines.jsonl")
    with open(path, "w", encoding="utf-8") as target:
        for number in range(1, lines + 1):
            target.write(LINE.replace('Terceiro": 0', f'Terceiro": {number}', 1) + "\n")
    used = run([xvcr, "--diretorio", folder, "--empresa", "carga", "carrega", path])
    os.remove(path)
    shutil.rmtree(os.path.join(folder, "carga"))
    return lines / used["cpu"]


def search(xvcr, folder):
    """The same keys in the same form, by both programs on the stores of the comparison."""
    ours = run([xvcr, "--diretorio", folder, "--empresa", "grande-store", "busca", "--json"])
    theirs = run(["sqlite3", "-json", os.path.join(folder, "grande-sqlite", "banco.db"),
                  "SELECT CAST(id AS TEXT) AS regDmc, printf('%04d%02d%02d-%d-%d', 1848 + (id >> 55 & 511),"
                  " id >> 51 & 15, id >> 46 & 31, id >> 14 & 4294967295, id & 3) AS sDmc FROM integracao"])
    return ours["wall"] / theirs["wall"], ours["peak"]


def pipe(source, target):
    """Wall seconds of two commands, the output of one of which is the other's input, and the peaks of both."""
    begin, peaks = time.perf_counter(), [0, 0]
    first = subprocess.Popen(source, stdout=subprocess.PIPE)
    second = subprocess.Popen(target, stdin=first.stdout, stdout=subprocess.DEVNULL)
    first.stdout.close()
    while second.poll() is None:
        peaks = [max(peak, peak_of(child.pid)) for peak, child in zip(peaks, (first, second))]
        time.sleep(0.01)
    if first.wait() != 0 or second.returncode != 0:
        raise SystemExit(f"{' '.join(source)} | {' '.join(target)} failed")
    return {"wall": time.perf_counter() - begin, "peak": max(peaks)}


def transport(xvcr, folder):
    """All of the comparison's stores into new ones, by both programs."""
    ours = pipe([xvcr, "--diretorio", folder, "--empresa", "grande-store", "exporta"],
                [xvcr, "--diretorio", folder, "--empresa", "copia", "importa", "-"])
    shutil.rmtree(os.path.join(folder, "copia"))
    copy = os.path.join(folder, "copia.db")
    theirs = pipe(["sqlite3", os.path.join(folder, "grande-sqlite", "banco.db"), ".dump"], ["sqlite3", copy])
    os.remove(copy)
    return ours["wall"] / theirs["wall"], ours["peak"]


def old_record(position):
    day, pointers = DAY + 1, (position, position, position)
    stamp = day << 32 | 3600
    return struct.pack("<QQQQ", 0, 0, stamp, stamp) + struct.pack("<8I", 6, 1, *pointers, 1, 1, 0) + bytes(16)


def convert(xvcr, folder, size):
    """A store of version 0 has records of 80 bytes in files of days, and no version file."""
    data = os.path.join(folder, "antiga", "DF")
    os.makedirs(data)
    days = 20
    records = b"".join(old_record(position) for position in range(1, size // days + 1))
    for day in range(1, days + 1):
        with open(os.path.join(data, f"CRINTEGMID202306{day:02d}.dat"), "wb") as target:
            target.write(records)
    used = run([xvcr, "--diretorio", folder, "--empresa", "antiga", "converte"])
    shutil.rmtree(os.path.join(folder, "antiga"))
    return used


def all_of(xvcr, folder, size, rounds):
    taken = {}
    for _ in range(rounds):
        searched = search(xvcr, folder)
        converted = convert(xvcr, folder, size)
        transported = transport(xvcr, folder)
        for name, value in (("carrega, 2 KB a line", load(xvcr, folder, min(size, 50000))),
                            ("busca --json, to sqlite3 -json", searched[0]),
                            ("busca --json, memory", searched[1]),
                            ("exporta | importa, to sqlite3 .dump | sqlite3", transported[0]),
                            ("exporta | importa, memory", transported[1]),
                            ("converte from version 0, CPU", converted["cpu"]),
                            ("converte from version 0, memory", converted["peak"])):
            taken.setdefault(name, []).append(value)
    return {name: {"median": statistics.median(values), "minimum": min(values), "maximum": max(values)}
            for name, values in taken.items()}
