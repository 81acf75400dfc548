"""Lists of planted faults: reading them, and whether they fit the sources."""
import dataclasses
import fnmatch
import functools
import os
import re
import tomllib
import zlib

ROOT = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../.."))
KEYS = {"file": str, "old": str, "new": str, "tests": list, "why": str, "survives": bool}


@dataclasses.dataclass
class Fault:
    list: str  # name of the file
    index: int  # in it, from 1
    file: str
    old: str
    new: str
    tests: list
    why: str = ""
    survives: bool = False
    start: int = 0  # of the old text in the file
    line: int = 0
    error: str = ""  # why it could not be planted
    result: str = ""  # "seen", "SURVIVED"
    detail: str = ""
    seconds: float = 0.0

    @property
    def number(self):
        """Comes of what the fault is, not of where its entry stands: a longer list builds little anew."""
        return zlib.crc32("\0".join((self.file, self.old, self.new)).encode()) or 1

    @property
    def end(self):
        return self.start + len(self.old)

    @property
    def planted_by_word(self):
        return re.search(r"\bPLANTED\b", self.new) is not None

    @property
    def where(self):
        return f"{os.path.basename(self.list)}, entry {self.index}, {self.file}:{self.line or '?'}"

    def __str__(self):
        text = " ".join(self.old.split())
        return f"{self.where}: {text if len(text) < 70 else text[:67] + '...'}"


class Trouble(Exception):
    """Ends the run with exit code 2."""


def read(name):
    with open(name, encoding="utf-8") as source:
        return source.read()


def read_list(name, errors):
    try:
        with open(name, "rb") as source:
            content = tomllib.load(source)
    except (OSError, tomllib.TOMLDecodeError) as error:
        errors.append(f"{name}: {error}")
        return []
    for key in content.keys() - {"fault"}:
        errors.append(f'{name}: unknown key "{key}"; every entry begins with [[fault]]')
    faults = []
    for index, entry in enumerate(content.get("fault", []), 1):
        here = f"{os.path.basename(name)}, entry {index}"
        wrong = [f'{here}: unknown key "{key}"' for key in entry.keys() - KEYS.keys()]
        wrong += [f'{here}: "{key}" has to be of the type {kind.__name__}' for key, kind in KEYS.items()
                  if key in entry and not isinstance(entry[key], kind)]
        wrong += [f'{here}: has no "{key}"' for key in ("file", "old", "new") if key not in entry]
        errors += wrong
        if not wrong:
            faults.append(Fault(name, index, tests=entry.pop("tests", []), **entry))
    return faults


def files_of_tests(ending):
    for base, _, names in os.walk(os.path.join(ROOT, "tests")):
        for name in names:
            if name.endswith(ending):
                yield os.path.relpath(base, os.path.join(ROOT, "tests")), read(os.path.join(base, name))


def test_programs():
    """{program: folder of its CMakeLists.txt, below that of the tests}"""
    return {program: folder for folder, text in files_of_tests("CMakeLists.txt")
            for program in re.findall(r"\bxv_teste\(\s*(\w+)", re.sub(r"#.*", "", text))}


@functools.cache
def test_names():
    return {".".join(found) for _, text in files_of_tests(".cpp")
            for found in re.findall(r"\bTEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)", text)}


def fits_a_test(tests):
    """Whether a filter takes any test of the sources, whatever its parameters and its program."""
    cores = [re.sub(r"^[^./]+/(?=[^/]*\.)|(?<=\.)([^/]*)/.*", r"\1", one)
             for one in tests.split("-")[0].split(":")]
    return any(fnmatch.fnmatchcase(name, core) for name in test_names() for core in cores)


def check_entry(fault, text, programs, tests_needed):
    found = text.count(fault.old) if fault.old else 0
    if found != 1:
        return f"the old text stands {found} times in {fault.file}, not once"
    fault.start = text.index(fault.old)
    fault.line = text.count("\n", 0, fault.start) + 1
    if fault.old == fault.new:
        return "old and new are the same"
    if re.search(r"^\s*#", fault.old + "\n" + fault.new, re.M):
        return "a line of the preprocessor can not stand behind a switch"
    if not fault.new.strip() and not fault.old.endswith((";", "}")):
        return "an expression can not be left out"
    if tests_needed and not fault.tests:
        return "names no tests (see --all-tests)"
    for test in fault.tests:
        if not isinstance(test, str) or not re.fullmatch(r"\w+:\S+", test):
            return f'"{test}" is not of the form program:filter'
        if test.split(":")[0] not in programs:
            return f'there is no test program "{test.split(":")[0]}"'
        if not fits_a_test(test.split(":", 1)[1]):
            return f'no test fits the filter "{test.split(":", 1)[1]}"'
    return ""


def check_overlap(faults):
    """One inside the other is well, but where the outer text is replaced; so is the same text, twice over."""
    for at, one in enumerate(faults):
        for other in faults[at + 1:]:
            if one.end <= other.start or other.end <= one.start:
                continue
            outer, inner = (one, other) if one.start <= other.start and one.end >= other.end else (other, one)
            if one.number == other.number:
                yield f"{other}\n    is the same as {one.where}"
            elif not (outer.start <= inner.start and inner.end <= outer.end):
                yield f"{other}\n    overlaps {one.where}"
            elif outer.planted_by_word:
                yield f"{inner}\n    stands inside {outer.where}, whose text is replaced because of PLANTED"
            elif (outer.start, outer.end) == (inner.start, inner.end) and inner.planted_by_word:
                yield f"{outer}\n    has the old text of {inner.where}, which is replaced because of PLANTED"


def read_lists(names, tests_needed):
    errors = []
    faults = [fault for name in names for fault in read_list(name, errors)]
    programs = test_programs()
    for file, group in by_file(faults).items():
        path = os.path.join(ROOT, file)
        if not os.path.isfile(path):
            errors += [f"{fault}\n    there is no such file" for fault in group]
            continue
        text = read(path)
        wrong = {fault.number: check_entry(fault, text, programs, tests_needed) for fault in group}
        errors += [f"{fault}\n    {wrong[fault.number]}" for fault in group if wrong[fault.number]]
        errors += check_overlap([fault for fault in group if not wrong[fault.number]])
    if errors:
        raise Trouble("\n".join(errors) + f"\nplant-faults: {len(errors)} entries are wrong")
    return faults


def by_file(faults):
    groups = {}
    for fault in faults:
        groups.setdefault(fault.file, []).append(fault)
    return groups
