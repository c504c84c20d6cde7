#!/usr/bin/python3
"""run_tests.py counts every case once, whatever happens to the process that runs it."""

import os
import subprocess
import sys
import tempfile
import unittest

RUNNER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "run_tests.py")

# Prints what a GoogleTest program prints. The name of a case says how the case ends.
PROGRAM = '''#!/usr/bin/python3
import os, sys, time
cases = [word for word in sys.argv if word.startswith("--gtest_filter=")][0].split("=", 1)[1].split(":")
if "S.DiesBeforeAll" in cases:
    os._exit(9)
status = 0
for case in cases:
    print("[ RUN      ] " + case, flush=True)
    what = case.split(".")[1].split("/")[0]
    if what == "Crashes":
        os.abort()
    if what == "Exits":
        os._exit(0)
    if what == "Hangs":
        time.sleep(60)
    if what == "Fails":
        print("it was 1, not 2")
        print("[  FAILED  ] " + case + ", where GetParam() = 7 (0 ms)", flush=True)
        status = 1
    elif what == "IsSkipped":
        print("[  SKIPPED ] " + case + " (0 ms)", flush=True)
    elif what != "IsUnknown":
        print("some output[       OK ] " + case + " (0 ms)", flush=True)
    if what == "Leaks":
        status = 23
    if what == "Slow":
        time.sleep(0.5)
    print("process", os.getpid(), "ran", case, file=open("ran", "a"))
sys.exit(status)
'''


class RunTests(unittest.TestCase):
    def run_cases(self, *cases, scripts=(), properties="TIMEOUT 2"):
        """Returns the exit status, the last line, the whole output and the processes that ran the cases."""
        with tempfile.TemporaryDirectory() as build:
            program = os.path.join(build, "program")
            with open(program, "w", encoding="utf-8") as file:
                file.write(PROGRAM)
            os.chmod(program, 0o755)
            with open(os.path.join(build, "CTestTestfile.cmake"), "w", encoding="utf-8") as file:
                for case in cases:
                    file.write(f'add_test(Named.{case} "{program}" --gtest_filter={case} '
                               f'--gtest_also_run_disabled_tests)\nset_tests_properties(Named.{case} PROPERTIES '
                               f'WORKING_DIRECTORY "{build}" {properties})\n')
                for name, command in scripts:
                    file.write(f"add_test({name} sh -c [[{command}]])\n")
            result = subprocess.run([sys.executable, RUNNER, build, "2"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                    text=True, check=False)
            processes = []
            if os.path.exists(os.path.join(build, "ran")):
                with open(os.path.join(build, "ran"), encoding="utf-8") as file:
                    processes = [line.split()[1] for line in file]
            return result.returncode, result.stdout.splitlines()[-1], result.stdout, processes

    def test_cases_share_processes(self):
        status, last, _, processes = self.run_cases(*(f"S.Passes/{i}" for i in range(100)))
        self.assertEqual((status, last), (0, "100 passed, 0 failed"))
        self.assertEqual(len(processes), 100)
        self.assertEqual(len(set(processes)), 3)

    def test_a_failure_is_named_and_its_output_shown(self):
        status, last, output, _ = self.run_cases("S.Passes", "S.Fails/7", "S.IsSkipped")
        self.assertEqual((status, last), (1, "1 passed, 1 failed, 1 skipped"))
        self.assertIn("Named.S.Fails/7: failed\nit was 1, not 2\n", output)
        self.assertIn("Skipped:\n  Named.S.IsSkipped\n", output)

    def test_cases_behind_one_that_ends_the_process_run_in_another(self):
        for case, how in (("Crashes", "ended by signal 6"), ("Exits", "ended its process")):
            status, last, output, processes = self.run_cases("S.Passes/1", f"S.{case}", "S.Passes/2", "S.Passes/3")
            self.assertEqual((status, last), (1, "3 passed, 1 failed"))
            self.assertIn(f"Named.S.{case}: {how}\n", output)
            self.assertEqual(len(set(processes)), 2)

    def test_the_time_limit_is_one_of_the_case(self):
        status, last, output, _ = self.run_cases("S.Hangs", "S.Passes")
        self.assertEqual((status, last), (1, "1 passed, 1 failed"))
        self.assertIn("Named.S.Hangs: stopped after 2 seconds\n", output)
        status, last, _, _ = self.run_cases(*(f"S.Slow/{i}" for i in range(6)))
        self.assertEqual((status, last), (0, "6 passed, 0 failed"))

    def test_a_bad_end_behind_good_cases_is_a_failure(self):
        status, last, output, _ = self.run_cases("S.Passes", "S.Leaks")
        self.assertEqual((status, last), (1, "2 passed, 1 failed"))
        self.assertIn("program: ended with status 23\n", output)

    def test_no_case_is_lost(self):
        status, last, _, _ = self.run_cases("S.DiesBeforeAll", "S.Passes")
        self.assertEqual((status, last), (1, "0 passed, 3 failed"))
        status, last, _, _ = self.run_cases("S.Passes", "S.IsUnknown")
        self.assertEqual((status, last), (1, "1 passed, 1 failed"))
        status, last, _, _ = self.run_cases("S.Passes", "S.Passes/2", properties="DISABLED TRUE")
        self.assertEqual((status, last), (1, "0 passed, 1 failed, 2 skipped"))

    def test_scripts_count_by_their_status(self):
        status, last, output, _ = self.run_cases(
            "S.Passes", scripts=(("Good", "exit 0"), ("Bad", "echo why; exit 3")))
        self.assertEqual((status, last), (1, "2 passed, 1 failed"))
        self.assertIn("Bad: ended with status 3\nwhy\n", output)

    def test_a_property_that_it_does_not_honour_ends_it(self):
        status, last, _, processes = self.run_cases("S.Passes", properties="WILL_FAIL TRUE")
        self.assertEqual((status, processes), (1, []))
        self.assertIn("WILL_FAIL", last)


if __name__ == "__main__":
    unittest.main()
