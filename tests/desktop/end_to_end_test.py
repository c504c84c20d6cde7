#!/usr/bin/python3
"""The program on a screen from start to end, with real keys and clicks: the test types the paths, sets
options, types a list of three rows, and arms and starts a run; then it checks the copies, the log and the
settings.

    end_to_end_test.py PROGRAM PICTURES

PICTURES is the folder that receives a picture of the screen when the test fails.
"""

import os
import re
import shutil
import sys
import tempfile
import unittest

from program import EDITOR, MAIN, OPTIONS, Program
from samples import LETTERS, LETTERS_COPIED, log_of_letters
from screen import Screen, wait_for
from tree import read_tree, write_tree

program_path, pictures = sys.argv[1:3]


class EndToEnd(unittest.TestCase):
    def setUp(self):
        self.root = tempfile.mkdtemp(prefix="morvex-end-to-end-")
        self.addCleanup(shutil.rmtree, self.root)
        # The program keeps log and settings beside itself.
        os.mkdir(self.path("program"))
        shutil.copy(program_path, self.path("program/Morvex"))
        write_tree(self.path("source"), LETTERS)
        os.mkdir(self.path("target"))
        self.screen = self.enterContext(Screen())
        self.program = Program(self.screen, [self.path("program/Morvex")], self.path("output"))
        self.addCleanup(self.program.close)

    def path(self, name):
        return os.path.join(self.root, name)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def test_typed_rows_reach_the_copies_and_the_log(self):
        try:
            self.type_paths()
            self.set_options()
            self.type_list()
            self.run_and_exit()
        except BaseException:
            self.keep_evidence()
            raise

    def keep_evidence(self):
        os.makedirs(pictures, exist_ok=True)
        picture = os.path.join(pictures, "end-to-end-failed.png")
        self.screen.take_picture(picture)
        print(f"The screen as it was: {picture}\nIn its windows:\n{self.program.described()}\n"
              f"The program's own output:\n{self.read('output').decode(errors='replace')}", file=sys.stderr)

    def type_paths(self):
        program = self.program
        program.wait_for_window(MAIN)
        self.assertFalse(program.shown(MAIN, "Go").is_enabled)
        program.click(MAIN, "Source")
        program.type(MAIN, "Source", self.path("source"))
        program.click(MAIN, "Target")
        program.type(MAIN, "Target", self.path("target"))

    def type_list(self):
        program = self.program
        place = program.move_window(240, 130)
        program.click(MAIN, "Replacement list")
        program.wait_for_window(EDITOR)
        self.assertEqual([window.name.strip() for window in program.windows()], [EDITOR])
        program.type(EDITOR, "replace, row 1", "Jansen")
        program.press("Tab")
        program.type(EDITOR, "by, row 1", "Person A")
        program.press("Return")
        program.type(EDITOR, "replace, row 2", "Piet")
        program.click(EDITOR, "[CRLF]")
        program.wait_for("line break in the cell", lambda: self.cell("replace, row 2") == "Piet[CRLF]")
        program.type(EDITOR, "replace, row 2", "de Vries")
        program.press("Tab")
        program.type(EDITOR, "by, row 2", "Person B")
        program.press("Return")
        program.type(EDITOR, "replace, row 3", "born: *;")
        program.press("Tab")
        program.type(EDITOR, "by, row 3", "born: [withheld];")
        program.click(EDITOR, "OK")
        program.wait_for_window(MAIN)
        program.wait_for("main window where the user had put it", lambda: program.window_place() == place)

    def cell(self, name):
        return self.program.find(EDITOR, name).text

    def set_options(self):
        program = self.program
        program.click(MAIN, "Options")
        program.wait_for_window(OPTIONS)
        program.type(OPTIONS, "extension", "txt")
        program.press("ctrl+Return")
        program.wait_for("emptied entry field", lambda: program.find(OPTIONS, "extension").text == "")
        program.click(OPTIONS, "wildcard in replacement list")
        program.type(OPTIONS, "wildcard in replacement list", "*")
        program.click(OPTIONS, "logging")
        program.wait_for("mark in the logging box", lambda: program.find(OPTIONS, "logging").is_checked)
        program.click(OPTIONS, "Toepassen")
        program.wait_for_window(MAIN)

    def run_and_exit(self):
        program = self.program
        program.click(MAIN, "OK")
        settings = self.path("program/Init.dat")
        lines = [self.path("source"), self.path("target"), "", "log=1", "sep=|", "jok=*", "1.txt", ""]
        wait_for("settings file", lambda: os.path.exists(settings))
        program.click(MAIN, "Go")
        program.wait_for("result of the run", lambda: program.shown(MAIN, "Hits: 5\nDone !"))
        self.assertEqual(self.read("program/Init.dat"), "\r\n".join(lines).encode())
        self.assertEqual(read_tree(self.path("target")), LETTERS_COPIED)
        self.assertEqual(read_tree(self.path("source")), LETTERS)
        self.check_log()
        program.click(MAIN, "Exit")
        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(self.read("output"), b"")

    def check_log(self):
        lines = self.read("program/Morvex.log").decode().split("\r\n")
        self.assertEqual(lines.pop(), "")
        said = [re.fullmatch(r'"\S+ (.*)"', line)[1] for line in lines]
        self.assertRegex(said[0], "^-{25}[^-].*[^-]-{25}$")
        self.assertRegex(said[-1], r"^Verstreken tijd: \d+ min \d+ sec$")
        self.assertEqual(said[1:-1], log_of_letters(self.path("source"), self.path("program/Init.dat"), "/"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
