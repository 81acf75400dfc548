"""Runs of tests without a fault and with one."""
import concurrent.futures
import dataclasses
import os
import re
import signal
import subprocess
import tempfile
import time

from planting.lists import Trouble
from planting.tree import REACHED, built_programs


@dataclasses.dataclass
class Outcome:
    passed: bool
    detail: str
    seconds: float
    reached: bytes = b""


def environment(**more):
    """Without what would change a run: another fault, options of the test runner."""
    return {k: v for k, v in os.environ.items() if not k.startswith(("XV_PLANTED", "GTEST_"))} | more


def run_tests(program, tests, limit, planted=None):
    """One run of a test program, with temporary files of its own; without a fault it notes where it came."""
    with tempfile.TemporaryDirectory(prefix="xvplanted-", ignore_cleanup_errors=True) as folder:
        reached = os.path.join(folder, "reached")
        with open(reached, "wb") as places:
            places.truncate(REACHED)
        switch = {"XV_PLANTED_REACHED": reached} if planted is None else {"XV_PLANTED": f"{planted:x}"}
        temporary = os.path.join(folder, "tmp")
        os.mkdir(temporary)
        os.chmod(folder, 0o755)  # a test may become another user, and has to come to its files
        # A fault may ask for all memory. (What it may write is not limited: tests look at that limit.)
        path, folder_of_tests = program
        command = ["prlimit", "--core=0", f"--as={8 << 30}", path, f"--gtest_filter={tests}",
                   "--gtest_fail_fast", "--gtest_color=no"]
        begin = time.monotonic()
        with open(os.path.join(folder, "said"), "w+b") as said:
            code = run_limited(command, limit, cwd=folder_of_tests, stdin=subprocess.DEVNULL,
                               stdout=said, stderr=said, env=environment(TMPDIR=temporary, **switch))
            seconds = time.monotonic() - begin
            said.seek(0)
            detail = what_happened(said.read().decode(errors="replace"), code, limit)
        with open(reached, "rb") as places:
            return Outcome(code == 0, detail, seconds, places.read())


def run_limited(command, limit, **how):
    """Exit code, or none where the time is over. What the process started ends with it."""
    process = subprocess.Popen(command, start_new_session=True, **how)
    try:
        return process.wait(timeout=limit)
    except subprocess.TimeoutExpired:
        return None
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()


def what_happened(text, code, limit):
    """The first failing test, or the one that was under way, and how it ended where it did not just fail."""
    failed = re.search(r"^\[  FAILED  \] ([^\s,]+)", text, re.M)
    begun = re.findall(r"^\[ RUN      \] (\S+)", text, re.M)
    name = failed.group(1) if failed else begun[-1] if begun else "the program, before any test,"
    if code is None:
        return f"{name} does not end in {limit:.0f} s"
    return f"{name} dies by signal {-code}" if code < 0 else name


def tests_of(program, tests):
    """Full names of the program's tests that the filter takes and that are run."""
    listed = subprocess.run([program[0], "--gtest_list_tests", f"--gtest_filter={tests}"],
                            capture_output=True, text=True, env=environment())
    names, suite = [], ""
    for line in listed.stdout.split("\n"):
        name = line.split("#")[0].strip()
        if line.startswith("  "):
            names.append(suite + name)
        elif name.endswith("."):
            suite = name
    return [name for name in names if "DISABLED_" not in name]


class Runner:
    def __init__(self, faults, jobs, limit):
        self.faults, self.jobs, self.limit = faults, jobs, limit
        self.clean = {}  # {(program, filter): outcome without a fault}
        self.programs = {}  # {name: (path, folder)}

    def time_limit(self, *runs):
        alone = sum(self.clean[run].seconds for run in runs)
        return max(min(self.limit, 20 + 10 * alone), 3 * alone)

    def parallel(self, function, items):
        """Each item with its result, as they come."""
        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            done = {pool.submit(function, item): item for item in items}
            try:
                for future in concurrent.futures.as_completed(done):
                    yield done[future], future.result()
            except BaseException:
                pool.shutdown(wait=False, cancel_futures=True)
                raise

    def run_clean(self, runs):
        failing = []

        def task(run):
            return run_tests(self.programs[run[0]], run[1], 10 * self.limit)
        for run, outcome in self.parallel(task, runs):
            self.clean[run] = outcome
            if not outcome.passed:
                failing.append(f"{run[0]} --gtest_filter={run[1]}: {outcome.detail}")
        if failing:
            raise Trouble("\n".join(failing) + "\nplant-faults: these fail without any fault")

    def comes_to(self, run, fault):
        return self.clean[run].reached[fault.number % REACHED] != 0

    def prepare(self, programs, all_tests):
        """Looks the tests up, and runs each without a fault."""
        self.programs = built_programs(programs)
        runs = {}
        for fault in self.faults:
            for test in fault.tests:
                program, tests = test.split(":", 1)
                if (program, tests) not in runs:
                    runs[(program, tests)] = bool(tests_of(self.programs[program], tests))
                if not runs[(program, tests)]:
                    fault.error = f'no test of {program} fits the filter "{tests}"'
        runs = [run for run, there in runs.items() if there]
        if all_tests:
            runs += [(name, test) for name in programs for test in tests_of(self.programs[name], "*")]
        self.run_clean(dict.fromkeys(runs))

    def by_its_tests(self, fault):
        runs = [tuple(test.split(":", 1)) for test in fault.tests]
        return [(*run, self.time_limit(run)) for run in sorted(runs, key=lambda run: self.clean[run].seconds)
                if self.comes_to(run, fault)]

    def by_all_tests(self, fault, near):
        """Only tests that come to the place of the fault: quick ones before slow ones, the nearest programs
        first, a program's tests in one run."""
        groups = {}
        for run in self.clean:
            program, test = run
            if "*" not in test and self.comes_to(run, fault):
                slow = self.clean[run].seconds > 1
                order = (slow, near.index(program) if program in near else len(near), program)
                groups.setdefault(order, []).append(run)
        return [(order[2], ":".join(test for _, test in runs), self.time_limit(*runs))
                for order, runs in sorted(groups.items())]

    def try_fault(self, fault, runs):
        fault.result = "SURVIVED"
        fault.detail = "as it has to" if fault.survives else "" if runs else "no test comes to this place"
        for program, tests, limit in runs:
            outcome = run_tests(self.programs[program], tests, limit, fault.number)
            fault.seconds += outcome.seconds
            if not outcome.passed:
                fault.result, fault.detail = "seen", f"{program}: {outcome.detail}"
                return

    def run(self, near):
        """Tries every fault, telling each as soon as it is known."""
        def task(fault):
            runs = self.by_its_tests(fault) if fault.tests else self.by_all_tests(fault, near(fault))
            self.try_fault(fault, runs)
        for fault, _ in self.parallel(task, [fault for fault in self.faults if not fault.error]):
            print(f"{fault.result:8}  {fault}" + (f"\n          {fault.why}" if fault.why else "") +
                  (f"\n          {fault.detail}" if fault.detail else "") +
                  f" ({fault.seconds:.1f} s; XV_PLANTED={fault.number:x})", flush=True)


def nearest(fault, faults, programs):
    """Programs that other entries of the file name, then those of the tests of its folder."""
    named = {test.split(":")[0] for other in faults if other.file == fault.file for test in other.tests}
    folders = fault.file.replace("contract/", "suite/").split("/")
    there = {program for program, folder in programs.items() if folder.split("/")[0] in folders}
    return sorted(named) + sorted(there - named)
