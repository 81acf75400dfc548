"""The copy of the sources with the faults in it, and its building."""
import os
import re
import subprocess
import time

from planting.lists import ROOT, Trouble, by_file

PLACE = os.path.join(ROOT, "build/planted")
SOURCE = os.path.join(PLACE, "source")
TREE = os.path.join(PLACE, "tree")
HEADER = os.path.join(PLACE, "XVPlantada.h")
LOG = os.path.join(PLACE, "build.log")
# Without optimisation, for building takes longer than running; without warnings, for the switches cause some.
FLAGS = f"-O0 -w -include {HEADER}"
REACHED = 1 << 16  # bytes of the map of places that a run came to; two places may share one, rarely
PLANTED = """\
// Which fault is planted in this process: one at most, by the environment. A second variable names a file
// that every process of a run shares; there stands by and by which faults' places the run came to.
#pragma once
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

struct SXVPlantada {
    unsigned ulNumero = 0;
    volatile unsigned char* pAlcancadas = nullptr;
    // The calls go past what tests put in front of the system's functions.
    SXVPlantada() noexcept {
        if (const char* psz = std::getenv("XV_PLANTED")) \
ulNumero = static_cast<unsigned>(std::strtoul(psz, nullptr, 16));
        const char* pszMapa = std::getenv("XV_PLANTED_REACHED");
        if (pszMapa == nullptr) return;
        const long lArquivo = syscall(SYS_openat, AT_FDCWD, pszMapa, O_RDWR);
        if (lArquivo < 0) return;
        const long lMapa = syscall(SYS_mmap, nullptr, %dUL, PROT_READ | PROT_WRITE, MAP_SHARED, lArquivo, 0L);
        syscall(SYS_close, lArquivo);
        if (lMapa > 0 || lMapa < -4095) pAlcancadas = reinterpret_cast<unsigned char*>(lMapa);
    }
};

inline bool XVPlantada(unsigned ulNumero) noexcept {
    static const SXVPlantada plantada;
    if (plantada.pAlcancadas != nullptr) plantada.pAlcancadas[ulNumero %% %dU] = 1;
    return ulNumero == plantada.ulNumero;
}
""" % (REACHED, REACHED)


def without_comments(text):
    """Line comments would swallow what comes to stand behind them; texts in quotes are left alone."""
    quoted = r'"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\''
    return re.sub(f"({quoted})|//[^\n]*", lambda found: found.group(1) or "", text)


def on_lines(text, count):
    """The text on so many lines as the one has that it replaces: the lines behind it keep their numbers."""
    if text.count("\n") > count:
        text = " ".join(line.strip() for line in text.split("\n"))
    return text + "\n" * (count - text.count("\n"))


def plant(text, faults):
    """The text of a file with all its faults, each behind its switch."""
    pieces = []  # (place, 0 behind an old text and 1 before one, order, piece, where the text goes on)
    for fault in faults:
        condition = f"XVPlantada({fault.number}U)"
        new = re.sub(r"\bPLANTED\b", condition, without_comments(fault.new))
        length = fault.end - fault.start
        if fault.planted_by_word:
            pieces.append((fault.start, 1, -length, on_lines(new, fault.old.count("\n")), fault.end))
            continue
        new = on_lines(new, 0).strip()
        if fault.old.endswith((";", "}")):
            before, after = f"if ({condition}) {{ {new} }} else {{ ", " }"
        else:
            before, after = f"({condition} ? ({new}) : (", "))"
        # Around an inner old text the outer one's pieces stand outside.
        pieces.append((fault.start, 1, -length, before, fault.start))
        pieces.append((fault.end, 0, length, after, fault.end))
    planted, at = [], 0
    for place, _, _, piece, goes_on in sorted(pieces, key=lambda p: p[:3]):
        planted += [text[at:place], piece]
        at = goes_on
    return "".join(planted + [text[at:]])


def tree_files():
    listed = subprocess.run(["git", "ls-files", "-coz", "--exclude-standard"], cwd=ROOT,
                            capture_output=True, text=True)
    names = listed.stdout.split("\0") if listed.returncode == 0 else [
        os.path.relpath(os.path.join(base, name), ROOT) for base, _, found in os.walk(ROOT) for name in found]
    return {name for name in names
            if name and not name.startswith(("build", ".git/")) and os.path.isfile(os.path.join(ROOT, name))}


def write(name, content):
    """Leaves a file alone that holds the content already: nothing is built anew for it."""
    try:
        with open(name, "rb") as old:
            if old.read() == content:
                return
    except OSError:
        os.makedirs(os.path.dirname(name), exist_ok=True)
    with open(name, "wb") as new:
        new.write(content)


def copy_tree(faults):
    names = tree_files()
    groups = by_file(faults)
    for name in names:
        with open(os.path.join(ROOT, name), "rb") as source:
            content = source.read()
        if name in groups:
            content = plant(content.decode(), groups[name]).encode()
        write(os.path.join(SOURCE, name), content)
    for base, _, found in os.walk(SOURCE):
        for name in found:
            path = os.path.join(base, name)
            if os.path.relpath(path, SOURCE) not in names:
                os.remove(path)
    write(HEADER, PLANTED.encode())


def run_logged(command):
    """Exit code and output, which also goes to the log; a long build shows how far it is. The compiler's cache
    must not make paths relative to this tree: tests compare the sources' names, and errors name them."""
    told, output = time.monotonic(), []
    with open(LOG, "a", encoding="utf-8") as log, \
            subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                             errors="replace", env=os.environ | {"CCACHE_BASEDIR": ""}) as process:
        for line in process.stdout:
            log.write(line)
            output.append(line)
            step = re.match(r"\[(\d+)/(\d+)\]", line)
            if step and time.monotonic() - told > 20:
                print(f"   build/planted: step {step.group(1)} of {step.group(2)}", flush=True)
                told = time.monotonic()
    return process.returncode, "".join(output)


def blamed(output, faults):
    """The faults that the compiler's errors are about, each with its error."""
    at = rf"^(?:{re.escape(SOURCE)}|\.\./source)/(\S+?):(\d+):\d+: "
    places = re.findall(at + r"(?:fatal )?(error: .*)", output, re.M) or \
        re.findall(at + r" +(required from .*)", output, re.M)
    groups = by_file(faults)
    found = {}
    for file, line, message in places:
        before = [fault for fault in groups.get(file, []) if fault.line <= int(line)]
        for fault in responsible(before, int(line), message):
            found.setdefault(fault.number, (fault, f"{file}:{line}: {message}"))
    return list(found.values())


def responsible(before, line, message):
    """Of the faults at or before a line: all whose new text is on it, otherwise the innermost around it,
    otherwise the nearest before it, preferably one that speaks of a name that the error quotes."""
    around = [fault for fault in before if line <= fault.line + fault.old.count("\n")]
    written = [fault for fault in around if fault.line == line or fault.planted_by_word]
    if around:
        return written or [min(around, key=lambda fault: len(fault.old))]
    quoted = set(re.findall(r"[‘'](\w+)[’']", message))
    naming = [fault for fault in before if quoted & set(re.findall(r"\w+", fault.old + fault.new))]
    return sorted(naming or before, key=lambda fault: fault.line)[-1:]


def build(faults, programs, jobs):
    """Builds the programs with all faults that compile; the others get an error."""
    write(LOG, b"")
    planted = list(faults)
    copy_tree(planted)
    code, output = run_logged(["cmake", "-S", SOURCE, "-B", TREE, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Planted",
                               f"-DCMAKE_CXX_FLAGS_PLANTED={FLAGS}"])
    if code != 0:
        raise Trouble(f"{output[-3000:]}\nplant-faults: configuring fails")
    while True:
        code, output = run_logged(["ninja", "-C", TREE, "-k", "0", f"-j{jobs}", *sorted(programs)])
        if code == 0:
            return
        wrong = blamed(output, planted)
        if not wrong:
            errors = [line for line in output.split("\n") if re.search("error|undefined|FAILED", line)]
            raise Trouble("\n".join(errors[:40]) + "\nplant-faults: the build fails, and not because of a "
                          f"fault; the log is {LOG}")
        for fault, message in wrong:
            fault.error = "does not compile: " + message
            print(f"WRONG     {fault}\n          {fault.error}", flush=True)
            planted.remove(fault)
        copy_tree(planted)


def built_programs(programs):
    """{program: (its path, the folder in which it is run)}"""
    listed = subprocess.run(["ninja", "-C", TREE, "-t", "targets", "all"], capture_output=True, text=True,
                            check=True)
    paths = {os.path.basename(path): os.path.join(TREE, path)
             for path in re.findall(r"^(\S+): CXX_EXECUTABLE_LINKER", listed.stdout, re.M)}
    missing = programs.keys() - paths.keys()
    if missing:
        raise Trouble(f"plant-faults: not built on this system: {', '.join(sorted(missing))}")
    return {name: (paths[name], os.path.join(TREE, "tests", folder)) for name, folder in programs.items()}
