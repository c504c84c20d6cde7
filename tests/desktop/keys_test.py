#!/usr/bin/python3
"""The keys and clicks of a hasty user on a screen: none of them may end the program, change anything
unintended, or get lost.

    keys_test.py PROGRAM PICTURES

PICTURES is the folder that receives a picture of the screen when a test fails.
"""

import contextlib
import os
import shutil
import sys
import tempfile
import time
import unittest

from program import EDITOR, MAIN, OPTIONS, Program
from screen import Screen, wait_for

program_path, pictures = sys.argv[1:3]

MESSAGE = "Morvex"
LONG_FILE = b"Jansen, Piet\r\n" * 4_000_000  # large enough to press some keys during the run


class Keys(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = cls.enterClassContext(Screen())

    def setUp(self):
        self.root = tempfile.mkdtemp(prefix="morvex-keys-")
        self.addCleanup(shutil.rmtree, self.root)
        for folder in ("program", "source/sub", "target"):
            os.makedirs(self.path(folder))
        shutil.copy(program_path, self.path("program/Morvex"))
        self.write("source/sub/note.txt", b"Jan Jansen")
        self.write("list.txt", b"Jansen|Person A||\r\n")

    def path(self, name):
        return os.path.join(self.root, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    @contextlib.contextmanager
    def started(self, target="target", extensions=("1.txt",)):
        lines = [self.path("source"), self.path(target), self.path("list.txt"), "log=0", "sep=|", "jok=*",
                 *extensions, ""]
        self.write("program/Init.dat", "\r\n".join(lines).encode())
        program = Program(self.screen, [self.path("program/Morvex")], self.path("output"))
        self.addCleanup(program.close)
        try:
            program.wait_for_window(MAIN)
            yield program
        except BaseException:
            os.makedirs(pictures, exist_ok=True)
            self.screen.take_picture(os.path.join(pictures, f"{self.id().split('.')[-1]}.png"))
            print(f"In the windows:\n{program.described()}", file=sys.stderr)
            raise

    def test_enter_after_the_question_does_not_end_the_program(self):
        self.write("source/long.txt", LONG_FILE)
        with self.started(target="new") as program:
            program.click(MAIN, "OK")
            program.wait_for("focus on Go", lambda: program.find(MAIN, "Go").has_focus)
            program.press("Return")
            program.wait_for_window(MESSAGE)
            program.press("alt+y")
            program.wait_for_window(MAIN)
            wait_for("work on the long file", lambda: os.path.exists(self.path("source/tijdel.enc"))
                     or os.path.exists(self.path("new/long.txt")))
            program.press("Return", "space", "Return")
            program.wait_for("result of the run", lambda: program.shown(MAIN, "Hits: 4000001\nDone !"))
            self.assertEqual(self.read("new/long.txt"), LONG_FILE.replace(b"Jansen", b"Person A"))
            program.wait_for("focus on OK", lambda: program.find(MAIN, "OK").has_focus)

    def test_enter_that_is_held_down_on_go_answers_no_question(self):
        with self.started(target="new") as program:
            program.click(MAIN, "OK")
            program.wait_for("focus on Go", lambda: program.find(MAIN, "Go").has_focus)
            self.screen.run("xdotool", "keydown", "Return")
            try:
                program.wait_for_window(MESSAGE)
                time.sleep(2)  # the key repeats about fifty times
                self.assertEqual(program.active_title(), MESSAGE)
                self.assertFalse(os.path.exists(self.path("new")))
            finally:
                self.screen.run("xdotool", "keyup", "Return")
            program.press("Return")
            program.wait_for("result of the run", lambda: program.shown(MAIN, "Hits: 1\nDone !"))

    def test_a_letter_typed_in_the_list_of_extensions_selects_and_deselects_nothing(self):
        with self.started(extensions=("1.txt", "1.log", "0.csv")) as program:
            program.click(MAIN, "Options")
            program.wait_for_window(OPTIONS)
            program.wait_for("focus in the entry field", lambda: program.find(OPTIONS, "extension").has_focus)
            program.press("alt+Down")
            program.find(OPTIONS, "extensions of the files that are scanned")
            program.press("Tab", "Tab")
            program.wait_for("focus in the list", lambda: program.find(
                OPTIONS, "extensions of the files that are scanned").has_focus)
            self.screen.run("xdotool", "type", "--delay", "30", ".csv.log.txt")
            program.press("Escape", "Escape")
            program.wait_for_window(MAIN)
            program.click(MAIN, "OK")
            program.wait_for("armed run", lambda: program.find(MAIN, "Go"))
            self.assertEqual(self.read("program/Init.dat").split(b"\r\n")[6:], [b"1.txt", b"1.log", b"0.csv", b""])

    def test_a_folder_that_is_marked_in_the_tree_is_the_one_that_is_armed(self):
        with self.started() as program:
            program.point_at(MAIN, "Source")
            self.screen.run("xdotool", "click", "--repeat", "2", "--delay", "60", "1")
            program.wait_for("focus in the tree", lambda: program.find(MAIN, "Folders").has_focus)
            # The tree shows its current folder opened.
            program.wait_for("folder in the tree", lambda: program.shown(MAIN, "sub"))
            program.press("Right")
            program.wait_for("mark on the folder", lambda: program.shown(MAIN, "sub").is_selected)
            program.click(MAIN, "OK")
            program.wait_for("armed run", lambda: program.find(MAIN, "Go"))
            self.assertEqual(self.read("program/Init.dat").split(b"\r\n")[0].decode(), self.path("source/sub"))

    def test_the_first_key_after_a_row_was_scrolled_away_is_not_lost(self):
        with self.started() as program:
            program.click(MAIN, "Replacement list")
            program.wait_for_window(EDITOR)
            program.press(*["Tab", "Return"] * 12)
            program.wait_for("long list", lambda: program.shown(EDITOR, "replace, row 13"))
            program.click(EDITOR, "replace, row 13")
            program.type(EDITOR, "replace, row 13", "Pi")
            self.screen.run("xdotool", "click", "--repeat", "4", "--delay", "50", "4")
            program.wait_for("first row", lambda: program.shown(EDITOR, "replace, row 1"))
            self.assertIsNone(program.shown(EDITOR, "replace, row 13"))
            self.screen.run("xdotool", "type", "--delay", "30", "et")
            program.wait_for("whole name", lambda: program.find(EDITOR, "replace, row 13").text == "Piet")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
