#!/usr/bin/python3
"""Runs every CTest test of a build folder, with many GoogleTest cases per process, and counts the cases.

    run_tests.py BUILD_FOLDER [JOBS]

CTest starts a process per case, and with sanitizers most of the time goes into these starts. This script
divides the cases of a program into batches and runs JOBS batches at a time (default: the number of
processors). A case that crashes or takes longer than its TIMEOUT has failed; cases that its process had not
begun run in another process. The last line has the counts; the exit status is 0 if nothing failed.
"""

import collections
import concurrent.futures
import json
import os
import re
import signal
import subprocess
import sys
import threading
import time

CASES_IN_A_BATCH = 40
DEFAULT_TIMEOUT = 1500  # seconds, as in CTest
FILTER = "--gtest_filter="
KNOWN_PROPERTIES = {"DISABLED", "ENVIRONMENT", "LABELS", "SKIP_REGULAR_EXPRESSION", "TIMEOUT", "WORKING_DIRECTORY"}
BEGUN = re.compile(r"\[ RUN      \] (\S+)$")
ENDED = re.compile(r"\[(       OK |  FAILED  |  SKIPPED )\] (\S+?),? ")

Test = collections.namedtuple("Test", "name command case properties")


class Process:
    """A test process. It is killed, with all processes that it started, if a part of its work exceeds the limit."""

    def __init__(self, command, properties):
        environment = dict(os.environ)
        environment.update(entry.split("=", 1) for entry in properties.get("ENVIRONMENT", []))
        self.limit = properties.get("TIMEOUT", DEFAULT_TIMEOUT)
        self.timed_out = False
        self.process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
            errors="replace", env=environment, cwd=properties.get("WORKING_DIRECTORY"), start_new_session=True)
        self.timer = None
        self.restart_timer()

    def restart_timer(self):
        if self.timer:
            self.timer.cancel()
        self.timer = threading.Timer(self.limit, self.stop)
        self.timer.start()

    def stop(self):
        self.timed_out = True
        os.killpg(self.process.pid, signal.SIGKILL)

    def lines(self):
        yield from self.process.stdout

    def end(self):
        """Returns how the process ended, or an empty text if it ended well."""
        status = self.process.wait()
        self.timer.cancel()
        if self.timed_out:
            return f"stopped after {self.limit:.0f} seconds"
        if status < 0:
            return f"ended by signal {-status}"
        return f"ended with status {status}" if status else ""


class Counts:
    def __init__(self):
        self.lock = threading.Lock()
        self.passed = 0
        self.failures = []
        self.skipped = []

    def add(self, name, result, output):
        with self.lock:
            if result == "passed":
                self.passed += 1
            elif result == "skipped":
                self.skipped.append(name)
            else:
                self.failures.append(f"{name}: {result}")
                print(f"{name}: {result}\n{output.rstrip()}\n", flush=True)


def run_alone(test, counts):
    """Runs a test that is a whole program or script: its exit status is the result."""
    process = Process(test.command, test.properties)
    output = "".join(process.lines())
    counts.add(test.name, process.end() or "passed", output)


def run_batch(batch, counts):
    """Runs the cases in one process. Returns those that it had not begun when it ended."""
    names = {test.case: test.name for test in batch}
    process = Process(batch[0].command + [FILTER + ":".join(names)], batch[0].properties)
    waiting = dict(names)
    current, output, failures = None, [], 0
    for line in process.lines():
        begun = BEGUN.search(line)
        if begun and begun[1] in waiting:
            current, output = begun[1], []
            del waiting[current]
            process.restart_timer()
            continue
        output.append(line)
        ended = ENDED.search(line)
        if current and ended and ended[2] == current:
            result = {"OK": "passed", "FAILED": "failed", "SKIPPED": "skipped"}[ended[1].strip()]
            failures += result == "failed"
            counts.add(names[current], result, "".join(output))
            current, output = None, []
    how = process.end()
    if current:
        counts.add(names[current], how or "ended its process", "".join(output))
    elif how and not failures or waiting and len(waiting) == len(names):
        # The process ended badly although its cases passed (perhaps a leak), or it ran none of them.
        counts.add(os.path.basename(batch[0].command[0]), how or "ran no test", "".join(output))
        for case in waiting:
            counts.add(names[case], "not run", "")
        return []
    return [test for test in batch if test.case in waiting]


def run(batch, counts):
    begun = time.monotonic()
    if batch[0].case is None:
        run_alone(batch[0], counts)
        what = batch[0].name
    else:
        what = f"{os.path.basename(batch[0].command[0])}, {len(batch)} cases"
        rest = batch
        while rest:
            rest = run_batch(rest, counts)
    print(f"{time.monotonic() - begun:7.1f} s  {what}", flush=True)


def read_tests(build):
    listing = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build, check=True, stdout=subprocess.PIPE).stdout
    for entry in json.loads(listing)["tests"]:
        properties = {each["name"]: each["value"] for each in entry.get("properties", [])}
        unknown = set(properties) - KNOWN_PROPERTIES
        if unknown:
            sys.exit(f"{entry['name']} has properties that are not honoured here: {', '.join(sorted(unknown))}")
        command = entry.get("command", [])
        cases = [word for word in command if word.startswith(FILTER)]
        case = cases[0][len(FILTER):] if cases else None
        yield Test(entry["name"], [word for word in command if word not in cases], case, properties)


def batches_of(tests):
    """Yields batches of tests, long ones first, so that no processor waits long at the end: the fewer cases a
    program has, the longer each takes. Neighbours go to different batches: slow cases are often neighbours."""
    groups = collections.defaultdict(list)
    for test in tests:
        groups[test.name if test.case is None else str((test.command, test.properties))].append(test)
    for group in sorted(groups.values(), key=len):
        count = -(-len(group) // CASES_IN_A_BATCH)
        yield from (group[first::count] for first in range(count))


def main(build, jobs):
    counts = Counts()
    tests = []
    for test in read_tests(build):
        if test.properties.get("DISABLED"):
            counts.add(test.name, "skipped", "")
        elif not test.command:
            counts.add(test.name, "not built", "")
        else:
            tests.append(test)
    with concurrent.futures.ThreadPoolExecutor(jobs) as workers:
        for done in [workers.submit(run, batch, counts) for batch in batches_of(tests)]:
            done.result()
    if not tests:
        counts.add("ctest", "lists no test", "")
    for title, names in (("Skipped", counts.skipped), ("Failed", counts.failures)):
        if names:
            print(f"\n{title}:", *sorted(names), sep="\n  ")
    line = f"\n{counts.passed} passed, {len(counts.failures)} failed"
    print(line + (f", {len(counts.skipped)} skipped" if counts.skipped else ""))
    return 1 if counts.failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else len(os.sched_getaffinity(0))))
