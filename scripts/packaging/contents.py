#!/usr/bin/env python3
"""What a package holds, and the licences of what is linked or compiled into its programs and libraries.

Usage: contents.py KIND FOLDER FILE      writes the list of FOLDER into FILE
       contents.py licences KIND FILE    writes the whole texts of the licences into FILE
Kinds: debian, debian-dev, windows, windows-x64-dev, windows-x86-dev
"""
import hashlib
import os
import subprocess
import sys

# Where the texts of the licences lie, as the list names it.
KINDS = {"debian": "copyright", "debian-dev": "copyright", "windows": "licences/copyright.txt",
         "windows-x64-dev": "copyright.txt", "windows-x86-dev": "copyright.txt"}
GCC = "GPL-3.0-or-later with GCC Runtime Library Exception 3.1"
MINGW = "ZPL-2.1, public domain, MIT and BSD-3-Clause"
# What Windows programs of 64 bits hold: of those of 32 bits the installer brings the proxy.
WIN64, WIN32 = ("windows", "windows-x64-dev"), ("windows", "windows-x86-dev")
# (what, Debian package that it comes from, licence, into what it goes)
LINKED = (
    ("CLI11 (headers)", "libcli11-dev", "BSD-3-Clause", ("debian", "windows")),
    ("JSON for Modern C++ (headers)", "nlohmann-json3-dev", "MIT", ("debian", "windows")),
    ("libstdc++ (headers)", "libstdc++-12-dev", GCC, ("debian", "debian-dev")),
    ("libstdc++ and libgcc, 64 bits (headers, static)", "g++-mingw-w64-x86-64-posix", GCC, WIN64),
    ("MinGW-w64 runtime and winpthreads, 64 bits (headers, static)", "mingw-w64-x86-64-dev", MINGW, WIN64),
    ("libstdc++ and libgcc, 32 bits (headers, static)", "g++-mingw-w64-i686-posix", GCC, WIN32),
    ("MinGW-w64 runtime and winpthreads, 32 bits (headers, static)", "mingw-w64-i686-dev", MINGW, WIN32),
    ("interface identifiers and headers of the system (generated from)", "libwine-dev", "LGPL-2.1-or-later",
     ("windows", "windows-x64-dev", "windows-x86-dev")),
    ("stub of the installer, deflate", "nsis", "Zlib", ("windows",)),
)


def version(package):
    said = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], capture_output=True, text=True,
                          check=True)
    return said.stdout


def files(folder, leave_out):
    for base, _, names in sorted(os.walk(folder)):
        for name in sorted(names):
            path = os.path.join(base, name)
            if path != leave_out and not os.path.islink(path):
                yield os.path.relpath(path, folder), path


def contents(kind, folder, target):
    lines = ["What is linked or compiled into the programs and libraries, and under which licence; the whole texts",
             f"are in {KINDS[kind]}.", ""]
    lines += [f"  {what} {version(package)}: {licence}" for what, package, licence, kinds in LINKED if kind in kinds]
    if kind.startswith("debian"):
        lines.append("  The C and C++ libraries are those of the system.")
    lines += ["", "What the package holds: bytes, SHA-256, name.", ""]
    for name, path in files(folder, target):
        with open(path, "rb") as source:
            data = source.read()
        lines.append(f"{len(data):>10}  {hashlib.sha256(data).hexdigest()}  {name}")
    with open(target, "w", encoding="utf-8") as out:
        out.write("\n".join(lines) + "\n")


def licences(kind, target):
    written = {}
    with open(target, "w", encoding="utf-8") as out:
        for what, package, licence, kinds in LINKED:
            if kind not in kinds:
                continue
            out.write(f"{'=' * 78}\n{what}, {version(package)}\n{licence}\n{'=' * 78}\n\n")
            with open(f"/usr/share/doc/{package}/copyright", encoding="utf-8", errors="replace") as source:
                text = source.read()
            out.write((f"The text above: {written[text]}." if text in written else text) + "\n")
            written.setdefault(text, what)


if __name__ == "__main__":
    if len(sys.argv) != 4 or sys.argv[2 if sys.argv[1] == "licences" else 1] not in KINDS:
        sys.exit(__doc__)
    if sys.argv[1] == "licences":
        licences(*sys.argv[2:])
    else:
        contents(*sys.argv[1:])
