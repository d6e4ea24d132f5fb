"""Runs the tests of a room on a copy, with one switch after the other turned."""
import concurrent.futures
import json
import os
import resource
import subprocess
import tempfile
import threading
import time
from dataclasses import dataclass, field

MEMORY = 6 << 30
NETWORKS = "150"  # of a random comparison, in the first round


@dataclass
class Test:
    name: str
    command: list
    folder: str
    environment: dict
    slow: bool
    cpu: float = 0.0
    reached: bytes = b""


@dataclass
class Outcome:
    site: object
    noticed_by: str = ""
    reached_by: list = field(default_factory=list)


def tests_of(build, names):
    """The tests whose names match one of these patterns, as CTest knows them."""
    listed = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1", "-R",
                             "|".join(f"^{name}$" for name in names)], capture_output=True, check=True)
    tests = []
    for entry in json.loads(listed.stdout)["tests"]:
        properties = {item["name"]: item["value"] for item in entry["properties"]}
        environment = dict(pair.split("=", 1) for pair in properties.get("ENVIRONMENT", []))
        environment.pop("ROTUNDA_TALLY", None)
        environment["QT_QPA_PLATFORM"] = "offscreen"
        tests.append(Test(entry["name"], entry["command"], properties["WORKING_DIRECTORY"], environment,
                          "slow" in properties.get("LABELS", [])))
    return tests


def run(test, cpu_limit, environment):
    """Runs a test; gives its exit code, None when it took too long, and the processor time in seconds."""
    def limit():
        resource.setrlimit(resource.RLIMIT_CPU, (cpu_limit, cpu_limit + 1))
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    with tempfile.TemporaryDirectory(prefix="mutation-", ignore_cleanup_errors=True) as folder, \
            tempfile.TemporaryFile() as told:
        os.chmod(folder, 0o1777)  # tests act as another user, too
        everything = {**os.environ, **test.environment, "TMPDIR": folder, "XDG_RUNTIME_DIR": folder,
                      **environment}
        process = subprocess.Popen(test.command, cwd=test.folder, env=everything, preexec_fn=limit,
                                   stdin=subprocess.DEVNULL, stdout=told,
                                   stderr=subprocess.DEVNULL, start_new_session=True)
        code, used = wait_for(process, 20 * cpu_limit, told.fileno())
    return code, used


def tells_of_failure(file):
    """Whether the program has printed that a test function failed; the others need not run then."""
    return b"\nFAIL!" in os.pread(file, os.fstat(file).st_size, 0)


def wait_for(process, seconds, told):
    end = time.monotonic() + seconds
    while True:
        pid, status, usage = os.wait4(process.pid, os.WNOHANG)
        if pid:
            process.returncode = os.waitstatus_to_exitcode(status)
            kill_group(process.pid)
            return process.returncode, usage.ru_utime + usage.ru_stime
        is_late = time.monotonic() > end
        if is_late or tells_of_failure(told):
            kill_group(process.pid)
            process.wait()
            return (None, seconds) if is_late else (1, 0.0)
        time.sleep(0.02)


def kill_group(pid):
    try:
        os.killpg(pid, 9)
    except ProcessLookupError:
        pass


def short(test):
    return {"ROTUNDA_NETWORKS": NETWORKS} if "ROTUNDA_NETWORKS" in test.environment else {}


def record(test, count):
    """Runs a test unchanged: what it takes, and which switches it comes by."""
    with tempfile.NamedTemporaryFile() as file:
        file.write(bytes(count))
        file.flush()
        code, test.cpu = run(test, 600, {**short(test), "ROTUNDA_REACHED": file.name})
        if code != 0:
            raise SystemExit(f"{test.name} fails on the unchanged copy")
        file.seek(0)
        test.reached = file.read()


class Trials:
    """Turns the switches of a room's sites, one a run."""

    def __init__(self, sites, tests, jobs):
        self.sites = sites
        self.tests = tests
        self.jobs = jobs
        self.last_killers = {}
        self.lock = threading.Lock()
        self.done = 0
        self.is_stopped = False

    def record_all(self):
        count = max(site.number for site in self.sites) + 1
        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            list(pool.map(lambda test: record(test, count), self.tests))
        self.tests.sort(key=lambda test: test.cpu)
        self.sites = [site for site in self.sites if not site.for_compiler or self.is_reached(site)]

    def is_reached(self, site):
        return any(test.reached[site.number] for test in self.tests)

    def run_all(self, report):
        """The outcomes in the order of the sites; of those judged so far, when stop() was called."""
        def judge(site):
            if self.is_stopped:
                return None
            outcome = self.judge(site)
            with self.lock:
                self.done += 1
                report(self.done, outcome)
            return outcome
        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            return [outcome for outcome in pool.map(judge, self.sites) if outcome]

    def stop(self, *_):
        self.is_stopped = True

    def judge(self, site):
        tests = [test for test in self.tests if test.reached[site.number]]
        first = self.last_killers.get(site.path)
        tests.sort(key=lambda test: (test.slow, test is not first, test.cpu))
        outcome = Outcome(site, reached_by=[test.name for test in tests])
        for test in tests:
            code, _ = run(test, int(4 * test.cpu + 3),
                          {**short(test), "ROTUNDA_MUTANT": str(site.number)})
            if code != 0:
                outcome.noticed_by = test.name + (" (no end)" if code is None else "")
                self.last_killers[site.path] = test
                break
        return outcome
