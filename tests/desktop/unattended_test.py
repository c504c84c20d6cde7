#!/usr/bin/python3
"""The program with windows and the console program each run unattended with the same settings file: both
must leave the same copies, log and settings, and end with the same status.

    unattended_test.py PROGRAM CONSOLE_PROGRAM PICTURES
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

from program import Program
from samples import CASE, CASE_LIST, case_settings, without_times
from screen import PATIENCE, Screen
from tree import read_tree, write_tree

program_path, console_path, pictures = sys.argv[1:4]

# On this system, names that differ only in letter case are two files.
SOURCE = dict(CASE, **{"LETTER.TXT": b"Jansen"})


class Unattended(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = cls.enterClassContext(Screen())

    reason = b""  # what the program with windows prints if it cannot run

    def setUp(self):
        self.root = tempfile.mkdtemp(prefix="morvex-unattended-")
        self.addCleanup(shutil.rmtree, self.root)
        for folder, program in (("windows", program_path), ("console", console_path)):
            os.mkdir(self.path(folder))
            # A run skips files named like the program, so both programs have the same name.
            shutil.copy(program, self.path(folder + "/Morvex"))
        write_tree(self.path("source"), SOURCE)
        with open(self.path("list.txt"), "wb") as file:
            file.write(CASE_LIST)

    def path(self, name):
        return os.path.join(self.root, name)

    def settings(self, source="source", target="target", log=1, file="settings.dat"):
        with open(self.path(file), "wb") as out:
            out.write(case_settings(self.path(source), self.path(target), self.path("list.txt"), log))

    def outcome(self, folder, status):
        """Returns what a run has left, and deletes it."""
        left = {}
        if os.path.isdir(self.path("target")):
            left = read_tree(self.path("target"))
            shutil.rmtree(self.path("target"))
        beside = read_tree(self.path(folder))
        del beside["Morvex"]
        if "Morvex.log" in beside:
            beside["Morvex.log"] = without_times(beside["Morvex.log"])
        self.assertEqual(read_tree(self.path("source")), SOURCE)
        return {"status": status, "target": left, "beside the program": beside}

    def run_console(self):
        process = subprocess.run([self.path("console/Morvex"), "-if", self.path("settings.dat")], timeout=PATIENCE,
                                 env=self.screen.environment, stdin=subprocess.DEVNULL, capture_output=True,
                                 check=False)
        return self.outcome("console", process.returncode)

    def run_windows(self, *answers):
        """Runs; `answers` has the text of each message box that appears, with the key to press."""
        program = Program(self.screen, [self.path("windows/Morvex"), "-if", self.path("settings.dat")],
                          self.path("output"))
        try:
            for text, key in answers:
                program.wait_for(text, lambda: program.shown("Morvex", text))
                program.wait_for_window("Morvex")
                program.press(key)
            status = program.wait_for_end()
        except BaseException:
            os.makedirs(pictures, exist_ok=True)
            picture = os.path.join(pictures, self.id().split(".")[-1] + ".png")
            self.screen.take_picture(picture)
            print(f"The screen as it was: {picture}\n{program.described()}", file=sys.stderr)
            raise
        finally:
            program.close()
        with open(self.path("output"), "rb") as output:
            self.assertEqual(output.read(), self.reason)
        return self.outcome("windows", status)

    def compare(self, *answers, target=True):
        """Makes both runs, each with an empty target folder if `target`. Checks that they leave the same, and
        returns it."""
        outcomes = []
        for run in (self.run_console, lambda: self.run_windows(*answers)):
            if target:
                os.mkdir(self.path("target"))
            outcomes.append(run())
        self.assertEqual(*outcomes)
        return outcomes[0]

    def test_a_folder_tree(self):
        self.settings()
        left = self.compare()
        self.assertEqual(left["status"], 3)  # files named like the program and files in RECYCLED have no copy
        self.assertEqual(left["target"]["sub/note.txt"], b"Jan Person A")
        self.assertEqual(left["target"]["letter.txt"], b"Person A, Person B, born: [withheld];\r\n" * 5000)
        self.assertIn(b"Vervangingen: 15003", left["beside the program"]["Morvex.log"])

    def test_a_folder_tree_without_a_log(self):
        self.settings(log=0)
        left = self.compare()
        self.assertEqual(left["target"]["sub/note.txt"], b"Jan Person A")
        self.assertNotIn("Morvex.log", left["beside the program"])

    def test_a_single_file(self):
        self.settings(source="source/letter.txt", target="target/copy.txt")
        left = self.compare()
        self.assertEqual(left["status"], 0)
        self.assertEqual(left["target"], {"copy.txt": b"Person A, Person B, born: [withheld];\r\n" * 5000})
        self.assertIn(b"Hits: 15000", left["beside the program"]["Morvex.log"])

    def test_a_missing_source(self):
        self.settings(source="nowhere")
        left = self.compare((self.path("nowhere") + "\nSource folder doesn't exist.", "Return"))
        self.assertEqual(left["status"], 1)
        self.assertEqual(left["target"], {})

    def test_a_missing_target_that_is_not_wanted(self):
        self.settings()
        left = self.compare(("Target folder doesn't exist. Create?", "Escape"), target=False)
        self.assertEqual(left["status"], 1)
        self.assertEqual(left["target"], {})

    def test_a_missing_settings_file(self):
        self.reason = b"Initialisatiebestand bestaat niet: " + os.fsencode(self.path("settings.dat")) + b"\n"
        left = self.compare()
        self.assertEqual(left["status"], 1)
        self.assertIn(b"Initialisatiebestand bestaat niet: ", left["beside the program"]["Morvex.log"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
