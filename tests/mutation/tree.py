"""A copy of the checkout with a build of its own, in which mutants are made and tested."""

import contextlib
import dataclasses
import filecmp
import json
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import threading

from reach import Reach

CHECKOUT = pathlib.Path(__file__).resolve().parents[2]
PLACE = CHECKOUT / "build" / "mutation"
FOLDERS = ["common", "pptdata", "pptanim", "emfdeal", "docdisplay"]
NOT_COPIED = {"build", "demo-output", ".git", "__pycache__"}

# What can see a folder, the most likely first; its own label comes before all others.
LABELS = ["docdisplay", "pptanim", "emfdeal", "pptdata", "common", "memory", "fuzz"]

MEMORY = 6 << 30  # bytes that a test may have: a mutant may ask for all there is


class Interrupted(Exception):
    pass


stopping = threading.Event()
running = set()
running_lock = threading.Lock()


def kill(process):
    with contextlib.suppress(ProcessLookupError):
        os.killpg(process.pid, signal.SIGKILL)


def stop_all():
    stopping.set()
    with running_lock:
        for process in running:
            kill(process)


def limit():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))


@contextlib.contextmanager
def started(command, **options):
    with running_lock:
        if stopping.is_set():
            raise Interrupted
        process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            start_new_session=True, text=True, errors="replace", **options)
        running.add(process)
    try:
        yield process
    finally:
        with running_lock:
            running.discard(process)
        kill(process)
        process.wait()
        process.stdout.close()
    if stopping.is_set():
        raise Interrupted


def run(command, **options):
    """The exit status and the output."""
    with started(command, **options) as process:
        output, _ = process.communicate()
        return process.returncode, output


FAILURE = re.compile(r"FAIL!  : \w+::(\w+)\(")


def first_failure(command, seconds, **options):
    """Runs a test to its first failure.

    Returns "" when it passes, "timeout" when the time is not enough, "killed" for what is no failed
    check, as a crash, and otherwise the name of the function that failed.
    """
    with started(command, preexec_fn=limit, **options) as process:
        is_late = threading.Event()
        timer = threading.Timer(seconds, lambda: (is_late.set(), kill(process)))
        timer.start()
        try:
            for line in process.stdout:
                if failure := FAILURE.match(line):
                    return failure[1]
            status = process.wait()
        finally:
            timer.cancel()
        return "timeout" if is_late.is_set() else "killed" if status != 0 else ""


@dataclasses.dataclass
class Test:
    name: str
    command: list
    folder: str
    environment: dict
    labels: list
    source: str
    seconds: float = 0.0

    @property
    def limit(self):
        return max(10.0, 6 * self.seconds)


class Tree:
    def __init__(self, number):
        self.source = PLACE / str(number) / "src"
        self.build = PLACE / str(number) / "build"
        self.tests = []
        self.reach = None

    def prepare(self):
        self._copy()
        self._configure()
        self._build()
        self._find_tests()
        self.reach = Reach(self.source, FOLDERS)

    def _copy(self):
        """Makes the copy what the checkout is, and leaves alone what it is already."""
        files = set()
        for folder, folders, names in os.walk(CHECKOUT):
            folders[:] = [name for name in folders if name not in NOT_COPIED]
            names = [name for name in names if name not in NOT_COPIED]
            files |= {(pathlib.Path(folder) / name).relative_to(CHECKOUT) for name in names}
        for file in files:
            original, copy = CHECKOUT / file, self.source / file
            if not copy.exists() or not filecmp.cmp(original, copy, shallow=False):
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(original, copy)
        for copy in self.source.rglob("*"):
            if copy.is_file() and copy.relative_to(self.source) not in files:
                copy.unlink()

    def _configure(self):
        # The compilers' cache, if there is one, serves both trees.
        self.environment = {**os.environ, "CCACHE_BASEDIR": str(self.source.parent),
                            "CCACHE_NOHASHDIR": "1"}
        command = [
            "cmake", "-G", "Ninja", "-S", self.source, "-B", self.build,
            "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0",
            "-DDOCDISPLAY_BUILD_TOOLS=OFF", "-DDOCDISPLAY_BUILD_BENCHMARKS=OFF",
            "-DCMAKE_PROJECT_DocDisplay_INCLUDE="
            f"{self.source}/tests/mutation/one_library.cmake"]
        status, output = run(command, env=self.environment)
        if status != 0:
            raise SystemExit(f"The mutation tree cannot be configured:\n{output}")

    def _find_tests(self):
        _, output = run(["ctest", "--show-only=json-v1"], cwd=self.build)
        for test in json.loads(output)["tests"]:
            properties = {one["name"]: one["value"] for one in test["properties"]}
            labels = [label for label in properties.get("LABELS", []) if label in LABELS]
            if labels:
                environment = dict(one.split("=", 1) for one
                                   in properties.get("ENVIRONMENT", []))
                folder = "fuzz" if "fuzz" in labels else "tests"
                self.tests.append(Test(test["name"], test["command"],
                                       properties["WORKING_DIRECTORY"], environment, labels,
                                       f"{folder}/{test['name']}.cpp"))

    def _build(self):
        status, output = run(["ninja", "-j2"], cwd=self.build, env=self.environment)
        if status != 0:
            raise SystemExit(f"The tree without mutants is not built:\n{output}")

    def first_failure(self, test, *arguments):
        return first_failure([*test.command, *arguments], test.limit, cwd=test.folder,
                             env={**os.environ, **test.environment})

    def builds(self, target):
        environment = {**self.environment, "CCACHE_DISABLE": "1"}  # it has never seen a mutant
        command = ["ninja", "-j1", target]
        return run(command, cwd=self.build, env=environment)[0] == 0

    def seen_by(self, file, killers):
        """The tests that can see the file, in the order in which they are likely to."""
        folder = file.split("/")[0]
        labels = [folder, *(label for label in LABELS if label != folder)]
        tests = [test for test in self.tests if file in self.reach.files_seen_by(test.source)]
        return sorted(tests, key=lambda test: (
            -killers.get((file, test.name), 0),
            min(labels.index(label) for label in test.labels), test.seconds))

    def verdict(self, mutant, killers):
        """The fate of a mutant and the test that decided it."""
        path = self.source / mutant.file
        original = (CHECKOUT / mutant.file).read_text()
        path.write_text(mutant.applied_to(original))
        try:
            if not self.builds("docdisplay"):
                return "not compiling", ""
            for test in self.seen_by(mutant.file, killers):
                if mutant.file.endswith(".h") and not self.builds(test.name):
                    return "not compiling", test.name
                fate = self._fate(test)
                if fate:
                    killers[mutant.file, test.name] = killers.get((mutant.file, test.name), 0) + 1
                    return fate, test.name
            return "survived", ""
        finally:
            path.write_text(original)

    def _fate(self, test):
        failure = self.first_failure(test)
        if failure in ("", "killed", "timeout"):
            return failure
        # A test that fails by itself now and then must not count: it has to fail twice.
        is_killed = self.first_failure(test, failure) or self.first_failure(test)
        return "killed" if is_killed else ""
