#!/usr/bin/env python3
"""Tests the packages as those who use them meet them. Called by scripts/package.

  - The sums hold; the programs for Windows need no library that Windows does not bring.
  - The Debian package is installed into a root of its own, works there, and leaves nothing when it is removed.
  - A project outside the tree is built against the installed client, natively and for Windows. Of 32 bits it is
    only built, as a C program that asserts the layout of the records is: these machines have no Wine for them.
  - Under Wine, in a prefix of its own: installed without a question, into a folder with blanks; used by clients
    that know the interface only (a C program, an installer script that calls slots); updated three times, once
    without a word of where programs and data are, while that program and one by the client library write: every
    acknowledged integration is there, and the library's calls never fail; removed: of the registry only the value
    stays that says where the data are, and the data are sound.
  - What the installer's exit codes promise: 2, nothing is other than before, of files, registry and service; 4,
    there is an entry to remove by what cannot be registered.

Usage: test.py FOLDER VERSION    the folder that scripts/package made
"""
import filecmp
import glob
import hashlib
import os
import re
import shutil
import struct
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PROGRAMS = r"C:\Arquivos de Programas\XVCR Loja"
DATA = r"C:\Dados da Casa"
SYSTEM_LIBRARIES = {"ADVAPI32", "KERNEL32", "msvcrt", "ole32", "OLEAUT32", "PSAPI", "RPCRT4", "SHELL32", "USER32",
                    "VERSION", "dbghelp", "DBGHELP"}
INTERFACE = "{c2141cb5-b40b-41f8-a6aa-c8c9c30aad48}"
APPLICATION = r"HKLM\Software\Classes\AppID\{c99599a3-c061-4377-822d-8863ccb0fc7a}"
UNINSTALL = r"Software\Microsoft\Windows\CurrentVersion\Uninstall\XVCR_Middleware"
MODULE_KEY = r"[HKEY_LOCAL_MACHINE\Software\Wow6432Node\Velmora\DF]"


def run(*words, code=0, **options):
    done = subprocess.run([str(w) for w in words], capture_output=True, text=True, check=False, **options)
    if done.returncode != code:
        sys.exit(f"test: {' '.join(map(str, words))}: exit {done.returncode}, not {code}\n"
                 f"{done.stdout[-2000:]}{done.stderr[-2000:]}")
    return done.stdout


def demand(holds, what):
    if not holds:
        sys.exit(f"test: {what}")


def digest(path):
    with open(path, "rb") as source:
        return hashlib.sha256(source.read()).hexdigest()


def tree(folder):
    return {os.path.relpath(path, folder) for path in glob.glob(f"{folder}/**", recursive=True)}


class Debian:
    """The package in a root folder of its own."""

    def __init__(self, folder, version):
        self.folder, self.version = folder, version
        self.root = f"{folder}/root"
        self.dpkg = ["dpkg", f"--root={self.root}", "--force-depends", "--force-not-root", "--log=/dev/null"]
        for name in ("updates", "info"):
            os.makedirs(f"{self.root}/var/lib/dpkg/{name}")
        open(f"{self.root}/var/lib/dpkg/status", "w", encoding="utf-8").close()
        self.xvcr = f"{self.root}/usr/bin/xvcr"

    def test(self):
        before = tree(f"{self.root}/usr")
        packages = glob.glob(f"{self.folder}/*.deb")
        run(*self.dpkg, "-i", *packages)
        demand(run(*self.dpkg, "-V") == "", "installed files are not those of their packages")
        demand(run(self.xvcr, "--version").strip() == f"xvcr {self.version}", "another version than the package's")
        for package in ("xvcr", "xvcr-dev"):
            demand_contents(f"{self.folder}/stage/{package}/usr", f"share/doc/{package}/CONTENTS.txt")
        store = f"{self.folder}/dados"
        os.mkdir(store)
        say = (self.xvcr, "--diretorio", store, "--empresa", "001")
        run(*say, "carrega", f"{ROOT}/examples/integracoes.jsonl")
        with open(f"{ROOT}/examples/integracoes.jsonl", encoding="utf-8") as lines:
            given = sum("\"operacao\"" not in line for line in lines)
        demand(run(*say, "busca", "--conta").strip() == str(given), "not all was loaded")
        run(*say, "status", "--dmc", "20010101-1-1", "--status", "Sucesso", code=1)
        with open(glob.glob(f"{store}/001/DF/XVProfilerErros_*")[0], encoding="utf-8") as log:
            demand("A integração pedida não está no índice" in log.read(), "the log's codes have no sentences")
        page = run("zcat", f"{self.root}/usr/share/man/man1/xvcr.1.gz")
        demand(page == run(self.xvcr, "manual"), "the manual page is another program's")
        completion = run("bash", "-c", f"PATH={self.root}/usr/bin:$PATH; . {self.root}/usr/share/bash-completion/"
                         "completions/xvcr; COMP_WORDS=(xvcr verif); COMP_CWORD=1; _xvcr; echo $COMPREPLY")
        demand(completion.strip() == "verifica", f"bash completes verif to {completion}")
        self.client(store)
        run(*self.dpkg, "-P", "xvcr", "xvcr-dev")
        demand(tree(f"{self.root}/usr") - {"."} <= before, "the removed packages left files")
        run(*self.dpkg, "-i", *packages)

    def client(self, store):
        outside("examples/client", f"{self.folder}/outside", f"{self.root}/usr")
        said = run(f"{self.folder}/outside/build/xv_exemplo_cliente", "FORA", store)
        demand("Padaria São João" in said, "the client outside the tree read something else: " + said)


def demand_contents(folder, listed="CONTENTS.txt", elsewhere=()):
    """The list of contents names all files below the folder, as they are, but itself and those of others."""
    with open(f"{folder}/{listed}", encoding="utf-8") as lines:
        rows = dict(reversed(row) for row in re.findall(r"^ *\d+  ([0-9a-f]{64})  (.+)$", lines.read(), re.M))
    there = {name for name in tree(folder) if os.path.isfile(f"{folder}/{name}")
             and not os.path.islink(f"{folder}/{name}")} - {listed} - set(elsewhere)
    demand(rows.keys() == there, f"{folder}/{listed} names others: {sorted(rows.keys() ^ there)}")
    wrong = [name for name, digested in rows.items() if digest(f"{folder}/{name}") != digested]
    demand(not wrong, f"{folder}/{listed}: others than listed: {wrong}")


def outside(source, project, prefix, *options):
    """A folder of the tree as a project of its own, away from it."""
    shutil.copytree(f"{ROOT}/{source}", project)
    run("cmake", "-S", project, "-B", f"{project}/build", "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefix}", *options)
    run("cmake", "--build", f"{project}/build")


def initialisation(path):
    """The sealed record of initialisation, as its description in docs/component.md gives it."""
    record = struct.pack("<IIIIH6x48s48s48s64s32sBB22x", 21, 0, 1, 0, 127, b"NSIS", b"alheio.exe", b"alheio", b"alheio",
                         b"", ord("B"), 0)
    crc = 0
    for byte in record:
        crc ^= byte
        for _ in range(8):
            crc = crc >> 1 ^ (0xC96C5795D7870F42 if crc & 1 else 0)
    with open(path, "wb") as out:
        out.write(record + struct.pack("<Q", crc))


class Beside:
    """A program under Wine that works until its end is asked for, by a file."""

    def __init__(self, windows, name, program, *words):
        self.end, self.out, self.err = (f"{windows.drive}/{name}.{kind}" for kind in ("end", "out", "err"))
        with open(self.out, "w", encoding="utf-8") as out, open(self.err, "w", encoding="utf-8") as err:
            self.process = subprocess.Popen([f"{ROOT}/scripts/wine-run", program, *words, rf"C:\{name}.end"],
                                            stdout=out, stderr=err, env=os.environ | {"WINEPREFIX": windows.prefix})

    def __enter__(self):
        return self

    def __exit__(self, *_):
        open(self.end, "w", encoding="utf-8").close()
        self.process.wait()

    def failures(self):
        """The codes of the calls that failed; it has to have come through to its end."""
        with open(self.err, encoding="utf-8") as said:
            said = said.read()
        demand(self.process.returncode == 0, "a client beside an update gave up: " + said)
        return [line.split()[-1] for line in said.splitlines()]


class Windows:
    """The packages under Wine."""

    def __init__(self, folder, version, xvcr):
        self.folder, self.version, self.xvcr = folder, version, xvcr
        self.prefix = f"{folder}/wine"
        self.name = f"xvcr-{version}-windows-x64"
        self.stage, self.setup = f"{folder}/stage/{self.name}", f"{folder}/{self.name}.exe"
        self.drive = f"{self.prefix}/drive_c"
        # By its whole name it is started without the shell's help.
        self.reg = r"C:\windows\system32\reg.exe"
        self.foreign = self.library = self.example = ""
        self.programs, self.data = (f"{self.drive}/{p[3:]}".replace("\\", "/") for p in (PROGRAMS, DATA))

    def wine(self, *words, **options):
        return run(f"{ROOT}/scripts/wine-run", *words, env=os.environ | {"WINEPREFIX": self.prefix}, **options)

    def install(self, setup, *switches, code=0):
        # What follows /D= is taken as it stands, blanks and all, so that the words must not come quoted.
        self.wine(setup, "/S", *switches, *f"/D={PROGRAMS}".split(), code=code)

    def demand_data(self):
        """The module directory is the one of the installation."""
        said = self.wine(self.reg, "query", MODULE_KEY[1:-1], "/v", "Path")
        demand(DATA in said, "the data directory is another: " + said)

    def demand_account(self):
        """The account and the permissions of the first installation, which no update names again."""
        said = self.wine(self.reg, "query", APPLICATION)
        demand("Interactive User" in said and "LaunchPermission" in said and "AccessPermission" in said,
               "account or permissions are not registered: " + said)

    def registry(self):
        text = ""
        for root in ("HKLM", "HKCU"):
            self.wine(self.reg, "export", root, f"C:\\{root}.reg", "/y")
            with open(f"{self.drive}/{root}.reg", encoding="utf-16") as exported:
                text += exported.read()
        keys = {}
        for block in re.split(r"\n\n(?=\[)", text.replace("\r", "")):
            key, _, values = block.partition("\n")
            # There Windows itself keeps devices, and what it is to delete at its next start: the removal's own copy.
            if not key.startswith((r"[HKEY_LOCAL_MACHINE\System", r"[HKEY_LOCAL_MACHINE\Hardware")):
                keys[key] = values.strip()
        return keys

    def build_clients(self, compiler, bits):
        """The example client, the one in C and the one by the library, against the client for developers of that
        size."""
        name, folder = f"{self.name.replace('x64', bits)}-dev", f"{self.folder}/clients-{bits}"
        os.mkdir(folder)
        run("cmake", "-E", "tar", "xf", f"{self.folder}/{name}.zip", cwd=folder)
        demand_contents(f"{folder}/{name}")
        for source, project in (("examples/client", "outside"), ("tests/package", "library")):
            outside(source, f"{folder}/{project}", f"{folder}/{name}", "-DCMAKE_SYSTEM_NAME=Windows",
                    f"-DCMAKE_CXX_COMPILER={compiler}-w64-mingw32-g++-posix", "-DCMAKE_EXE_LINKER_FLAGS=-static")
        include = f"{folder}/{name}/include/xvcr"
        run(f"{compiler}-w64-mingw32-gcc-posix", "-O1", "-Wall", "-Werror", f"-I{include}",
            f"{ROOT}/tests/package/XVClienteAlheio.c", f"{include}/com/XVCR_Middleware_i.c", "-o",
            f"{folder}/alheio.exe", "-lole32", "-luuid")
        return folder

    def make_update(self, number):
        """An installer whose programs differ in a byte at their end from those of any other."""
        stage, setup = f"{self.folder}/update{number}", f"{self.folder}/update{number}.exe"
        shutil.copytree(self.stage, stage)
        for name in self.names(stage):
            with open(f"{stage}/{name}", "ab") as program:
                program.write(b"%d" % number)
        run("makensis", "-V2", f"-DVERSAO={self.version}", f"-DPASTA={stage}", f"-DSAIDA={setup}",
            f"{ROOT}/scripts/packaging/installer.nsi")
        return stage, setup

    @staticmethod
    def names(stage):
        return [n for n in os.listdir(stage) if n.endswith((".exe", ".dll"))]

    def update(self, number):
        stage, setup = self.make_update(number)
        if number == 2:
            self.wine(setup, "/S")
        else:
            self.install(setup, f"/Dados={DATA}")
        _, other, failed = filecmp.cmpfiles(stage, self.programs, self.names(stage), shallow=False)
        demand(not other and not failed, f"the update left old programs: {other} {failed}")
        left = [n for n in os.listdir(self.programs)
                if n == "novo" or "velho" in n and not n.startswith("XVCR_MiddlewarePS")]
        demand(not left, f"the update left {left}")
        self.demand_data()

    def written(self, company):
        """Bytes of the index of a company."""
        try:
            return os.path.getsize(f"{self.data}/{company}/DF/CRINDEXINTEG.dat")
        except FileNotFoundError:
            return 0

    def wait_for_more(self):
        """Until each client has got on."""
        for company in ("ESCRITA", "BIBLIOTECA"):
            start, until = self.written(company), time.monotonic() + 90
            while self.written(company) < start + 4096:
                demand(time.monotonic() < until, f"the client of {company} writes nothing")
                time.sleep(0.1)

    def update_under_load(self):
        with Beside(self, "alheio", self.foreign, "grava", "ESCRITA") as foreign, \
                Beside(self, "biblioteca", self.library, "BIBLIOTECA") as library:
            for number in range(1, 4):
                self.wait_for_more()
                self.update(number)
            self.wait_for_more()
        for who, company, writer in (("interface", "ESCRITA", foreign), ("library", "BIBLIOTECA", library)):
            read, lost = self.wine(self.foreign, "confere", company, rf"C:\{os.path.basename(writer.out)}").split()
            print(f"   three updates under a client by the {who}: {read} acknowledged, {lost} lost, "
                  f"calls that failed: {', '.join(writer.failures()) or 'none'}")
        # The library waits for the new server; what it cannot know is whether a call that was cut off took place.
        broken = set(library.failures()) - {"0x800706BE", "0x80010007"}
        demand(not broken, f"an update made calls of the client library fail: {broken}")

    def installed(self):
        """What lies in the program directory; of the programs also what is in them."""
        programs = self.names(self.programs)
        return {n: n in programs and digest(f"{self.programs}/{n}") for n in os.listdir(self.programs)}

    def refused_update(self):
        """Exit code 2: a program that cannot be exchanged, the last of them, and data that cannot be made."""
        _, setup = self.make_update(9)
        before = self.installed()
        registry = self.registry()
        with Beside(self, "segura", self.foreign, "segura", PROGRAMS + r"\XVCR_Middleware.exe") as holder:
            time.sleep(1)
            demand(holder.process.poll() is None, "the server's program cannot be kept open")
            self.install(setup, r"/Dados=C:\Outra", code=2)
        self.install(setup, r"/Dados=Q:\Nenhuma", code=2)
        after = self.installed()
        other = sorted(n for n in before.keys() | after.keys() if before.get(n) != after.get(n))
        demand(not other, f"a refused update changed {other}")
        changed = {key for key, values in self.registry().items() if registry.get(key) != values}
        demand(not changed, f"a refused update changed the registry: {changed}")
        self.wine(self.example, "PRIMEIRA")

    def failed_registration(self):
        """Exit code 4 of a first installation: there is an entry to remove it by."""
        before = self.registry()
        self.install(self.setup, f"/Dados={DATA}", "/Conta=NaoHaTalConta", code=4)
        self.remove()
        demand(not os.path.exists(self.programs), "the removal left something of what could not be registered")
        changed = {key for key, values in self.registry().items() if before.get(key) != values}
        demand(changed <= {MODULE_KEY}, f"the registry is another: {changed}")

    def test(self):
        for program in glob.glob(f"{self.stage}/*.exe") + glob.glob(f"{self.stage}/*.dll"):
            needed = set(re.findall(r"DLL Name: (\S+)\.(?:dll|DRV)", run("x86_64-w64-mingw32-objdump", "-p", program),
                                    re.I))
            demand(needed <= SYSTEM_LIBRARIES, f"{program} needs {needed - SYSTEM_LIBRARIES}")
        clients = self.build_clients("x86_64", "x64")
        self.foreign = f"{clients}/alheio.exe"
        self.library = f"{clients}/library/build/xv_cliente_biblioteca.exe"
        self.example = f"{clients}/outside/build/xv_exemplo_cliente.exe"
        self.build_clients("i686", "x86")
        initialisation(f"{self.folder}/inicializa")
        run("makensis", "-V2", f"-DSAIDA={self.folder}/alheio-nsis.exe", f"-DINICIALIZA={self.folder}/inicializa",
            f"{ROOT}/tests/package/alheio.nsi")
        self.wine(self.reg, "add", r"HKLM\SOFTWARE\Wow6432Node\Velmora\DF", "/v", "Alheio", "/d", "fica", "/f")
        # Before the installation there is no server for the script: the same program answers 10.
        self.wine(f"{self.folder}/alheio-nsis.exe", code=10)
        before = self.registry()
        self.failed_registration()
        self.install(self.setup, f"/Dados={DATA}", "/Conta=Interativo", "/Acesso=S-1-5-32-545")
        self.demand_account()
        said = self.wine(self.reg, "query", rf"HKLM\Software\Classes\Wow6432Node\CLSID\{INTERFACE}\InProcServer32", "/ve")
        demand(PROGRAMS + r"\XVCR_MiddlewarePS32.dll" in said, "the proxy of 32 bits is not registered: " + said)
        demand_contents(self.programs, elsewhere=("Desinstala.exe",))
        # From here on without another step: the first integration.
        self.wine(self.example, "PRIMEIRA")
        self.wine(f"{self.folder}/alheio-nsis.exe")
        said = self.wine(f"{self.programs}/xvcr.exe", "--servidor", "--empresa", "NSIS", "busca", "--conta")
        demand(said.split()[0] == "1", "the script's integration is not there: " + said)
        self.refused_update()
        self.update_under_load()
        self.demand_account()
        self.remove_all(before)

    def remove(self):
        self.wine(f"{self.programs}/Desinstala.exe", "/S")
        # The program returns at once, because a copy of it removes it; the entry of installed programs goes last.
        entry, until = rf"HKLM\{UNINSTALL}", time.monotonic() + 90
        while subprocess.run([f"{ROOT}/scripts/wine-run", self.reg, "query", entry], capture_output=True, check=False,
                             env=os.environ | {"WINEPREFIX": self.prefix}).returncode == 0:
            demand(time.monotonic() < until, "the removal does not end")

    def remove_all(self, before):
        with open(f"{self.programs}/XVProvedor9.dll", "w", encoding="utf-8") as foreign:
            foreign.write("de outrem")
        # They would stay, as an administrator's decision.
        self.wine(f"{self.programs}/XVCR_Middleware.exe", "/RegServer", "/Conta:QuemChama", "/Acesso:Padrao")
        self.remove()
        demand(os.listdir(self.programs) == ["XVProvedor9.dll"], f"the removal left {os.listdir(self.programs)}")
        after = self.registry()
        changed = {key: after.get(key) for key in before.keys() | after.keys() if before.get(key) != after.get(key)}
        where = '"Alheio"="fica"\n"Path"="%s"' % DATA.replace("\\", "\\\\")
        demand(changed == {MODULE_KEY: where}, f"the registry after the removal is another: {sorted(changed)}")
        for company in ("PRIMEIRA", "NSIS", "ESCRITA", "BIBLIOTECA"):
            run(self.xvcr, "--diretorio", self.data, "--empresa", company, "verifica")

    def end(self):
        subprocess.run(["bash", "-c", f"source {ROOT}/scripts/wine-prefix; wine_ambiente '{self.prefix}'; wine_encerra"],
                       check=False)


def main():
    folder, version = os.path.abspath(sys.argv[1]), sys.argv[2]
    run("sha256sum", "--check", "--strict", "SHA256SUMS", cwd=folder)
    print("== Debian packages")
    debian = Debian(folder, version)
    debian.test()
    print("== Windows packages under Wine")
    windows = Windows(folder, version, debian.xvcr)
    try:
        windows.test()
    finally:
        windows.end()
    print("package: installed, used, updated, removed")


if __name__ == "__main__":
    main()
