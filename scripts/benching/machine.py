"""On what the figures were measured."""
import os
import platform
import subprocess


def load():
    return " ".join(f"{part:.2f}" for part in os.getloadavg())


def first(path, name):
    with open(path, encoding="utf-8") as source:
        return next((line.split(":", 1)[1].strip() for line in source if line.startswith(name)), "unknown")


def describe(folder):
    compiler = subprocess.run(["c++", "--version"], capture_output=True, text=True, check=True).stdout
    disk = subprocess.run(["df", "--output=fstype", folder], capture_output=True, text=True, check=True).stdout
    return {
        "processor": first("/proc/cpuinfo", "model name"),
        "processors": os.cpu_count(),
        "memory": f"{int(first('/proc/meminfo', 'MemTotal').split()[0]) / 2 ** 20:.0f} GiB",
        "system": f"{platform.system()} {platform.release()}, {disk.split()[-1]}",
        "compiler": compiler.split("\n")[0],
        "load before": load(),
    }
