#!/usr/bin/env python3
"""What a package holds, and the licences of what is linked into its programs.

Usage: contents.py debian|windows FOLDER FILE    writes the list of FOLDER into FILE
       contents.py licences debian|windows FILE  writes the whole texts of the licences into FILE
"""
import hashlib
import os
import subprocess
import sys

# (what, Debian package that it comes from, licence, into what it goes)
LINKED = (
    ("CLI11 (headers)", "libcli11-dev", "BSD-3-Clause", ("debian", "windows")),
    ("JSON for Modern C++ (headers)", "nlohmann-json3-dev", "MIT", ("debian", "windows")),
    ("libstdc++ and libgcc (static)", "g++-mingw-w64-x86-64-posix",
     "GPL-3.0-or-later with GCC Runtime Library Exception 3.1", ("windows",)),
    ("MinGW-w64 runtime and winpthreads (static)", "mingw-w64-x86-64-dev",
     "ZPL-2.1, public domain, MIT and BSD-3-Clause", ("windows",)),
    ("interface identifiers and headers of the system (generated from)", "libwine-dev",
     "LGPL-2.1-or-later", ("windows",)),
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
    lines = ["What is linked into the programs, and under which licence; the whole texts are in "
             + ("copyright" if kind == "debian" else "licences/copyright.txt") + ".", ""]
    lines += [f"  {what} {version(package)}: {licence}" for what, package, licence, kinds in LINKED if kind in kinds]
    if kind == "debian":
        lines.append("  The C and C++ libraries are those of the system.")
    lines += ["", "What the package holds: bytes, SHA-256, name.", ""]
    for name, path in files(folder, target):
        with open(path, "rb") as source:
            data = source.read()
        lines.append(f"{len(data):>10}  {hashlib.sha256(data).hexdigest()}  {name}")
    with open(target, "w", encoding="utf-8") as out:
        out.write("\n".join(lines) + "\n")


def licences(kind, target):
    with open(target, "w", encoding="utf-8") as out:
        for what, package, licence, kinds in LINKED:
            if kind not in kinds:
                continue
            out.write(f"{'=' * 78}\n{what}, {version(package)}\n{licence}\n{'=' * 78}\n\n")
            with open(f"/usr/share/doc/{package}/copyright", encoding="utf-8", errors="replace") as text:
                out.write(text.read() + "\n")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    if sys.argv[1] == "licences":
        licences(*sys.argv[2:])
    else:
        contents(*sys.argv[1:])
