#!/usr/bin/python3
"""The packed programs for Windows under Wine, in an empty prefix. An unattended run of the program with
windows must leave the same files as the console program of this machine, and end with the same status. A
run with a typed list must replace as the list says.

    windows_test.py FOLDER CONSOLE_PROGRAM WINDOW_TESTS PICTURES

FOLDER is the unpacked package; WINDOW_TESTS is the test program of the windows, built for Windows.
PICTURES receives a picture of each window, as Wine shows it.
"""

import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

from samples import CASE, CASE_LIST, LETTERS, LETTERS_COPIED, case_settings, log_of_letters, without_times
from screen import PATIENCE, Screen, wait_for
from tree import read_tree, write_tree

package, console_path, window_tests, pictures = (os.path.abspath(path) for path in sys.argv[1:5])

# The titles of the windows, without the blanks at their ends.
MAIN = "Morvex v11.0"
EDITOR = "replace:" + " " * 81 + "by:"
OPTIONS = "Opties"


def windows_path(path):
    """Returns a path on drive Z, which shows this machine's disk in Wine."""
    return "Z:" + path.replace("/", "\\")


def comparable(log):
    """Returns a log without times and dates, with Windows paths as paths of this machine."""
    log = log.replace(b"Z:\\", b"/").replace(b"\\", b"/")
    return re.sub(rb"-{10,}[0-9/.-]+-{10,}", b"(date)", without_times(log))


class PackedProgram(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = cls.enterClassContext(Screen())
        prefix = os.path.join(cls.screen.folder, "wine")
        cls.screen.environment.update(WINEPREFIX=prefix, WINEDEBUG="-all", WINEDLLOVERRIDES="mscoree,mshtml=")
        cls.wine = shutil.which("wine64") or "/usr/lib/wine/wine64"
        server = shutil.which("wineserver") or "/usr/lib/wine/wineserver64"
        # The formats of dates and times of this machine's console program.
        formats = "HKCU\\Control Panel\\International"
        for command in (["wineboot", "--init"], ["reg", "add", formats, "/v", "sShortDate", "/d", "MM/dd/yy", "/f"],
                        ["reg", "add", formats, "/v", "sTimeFormat", "/d", "HH:mm:ss", "/f"]):
            subprocess.run([cls.wine, *command], env=cls.screen.environment, check=True, stdin=subprocess.DEVNULL,
                           capture_output=True)
        # Windows has fonts in this folder; Wine keeps a similar one elsewhere.
        for font in glob.glob("/usr/share/wine/fonts/tahoma*.ttf"):
            shutil.copy(font, os.path.join(prefix, "drive_c/windows/Fonts"))
        cls.addClassCleanup(subprocess.run, [server, "--kill"], env=cls.screen.environment, check=False)
        os.makedirs(pictures, exist_ok=True)

    def setUp(self):
        self.root = tempfile.mkdtemp(prefix="morvex-windows-")
        self.addCleanup(shutil.rmtree, self.root)
        for folder in ("windows", "console", "target"):
            os.mkdir(self.path(folder))
        shutil.copy(os.path.join(package, "Morvex.exe"), self.path("windows"))
        # A run skips files named like the program, so both programs have the same name.
        shutil.copy(console_path, self.path("console/Morvex"))

    def path(self, name):
        return os.path.join(self.root, name)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    # Unattended

    def run_unattended(self, command, folder, spelt):
        with open(self.path("settings.dat"), "wb") as file:
            file.write(case_settings(*(spelt(self.path(name)) for name in ("source", "target", "list.txt"))))
        settings = spelt(self.path("settings.dat"))
        process = subprocess.run([*command, "-if", settings], env=self.screen.environment, timeout=PATIENCE,
                                 stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, check=False)
        left = read_tree(self.path("target"))
        shutil.rmtree(self.path("target"))
        os.mkdir(self.path("target"))
        self.assertEqual(read_tree(self.path("source")), CASE)
        return {"status": process.returncode, "target": left, "log": comparable(self.read(folder + "/Morvex.log"))}

    def test_an_unattended_run_leaves_what_the_console_program_leaves(self):
        write_tree(self.path("source"), CASE)
        with open(self.path("list.txt"), "wb") as file:
            file.write(CASE_LIST)
        expected = self.run_unattended([self.path("console/Morvex")], "console", lambda path: path)
        self.assertEqual(expected["target"]["sub/note.txt"], b"Jan Person A")
        self.assertEqual(expected["status"], 3)  # files named like the program have no copy
        self.maxDiff = None
        found = self.run_unattended([self.wine, self.path("windows/Morvex.exe")], "windows", windows_path)
        self.assertEqual(found, expected)

    def test_a_wrong_command_line_is_told(self):
        process = subprocess.run([self.wine, self.path("windows/Morvex.exe"), "-dy", "soon"], timeout=PATIENCE,
                                 env=self.screen.environment, stdin=subprocess.DEVNULL, capture_output=True,
                                 check=False)
        self.assertEqual(process.returncode, 2)
        self.assertEqual(process.stderr.strip(), b"Run-time error '13': Type mismatch")

    def test_the_windows_pass_their_tests(self):
        # Without a screen the toolkit takes its fonts from QT_QPA_FONTDIR. Wine passes on no variable that begins
        # with "QT_", but makes one from each that begins with "WINEQT_".
        fonts = windows_path("/usr/share/fonts/truetype/dejavu")
        environment = dict(self.screen.environment, WINEQT_QPA_FONTDIR=fonts)
        report = self.path("windows.xml")
        process = subprocess.run([self.wine, window_tests, "--gtest_brief=1", "--gtest_output=xml:" + windows_path(report)],
                                 env=environment, timeout=900, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT, cwd=self.root, check=False)
        self.assertEqual(process.returncode, 0, process.stdout.decode(errors="replace"))
        tests = re.search(r'<testsuites tests="(\d+)"', self.read("windows.xml").decode())
        self.assertGreater(int(tests[1]), 300)

    # By keys

    def test_typed_rows_reach_the_copies_and_the_log(self):
        write_tree(self.path("source"), LETTERS)
        self.program = subprocess.Popen([self.wine, self.path("windows/Morvex.exe")], env=self.screen.environment,
                                        stdin=subprocess.DEVNULL)
        self.addCleanup(self.program.wait)
        self.addCleanup(self.program.kill)
        try:
            self.type_paths()
            self.set_options()
            self.type_list()
            self.run_and_exit()
        except BaseException:
            self.take_picture("failed")
            raise

    def type_paths(self):
        self.wait_for_window(MAIN)
        self.press("alt+s")
        self.type(windows_path(self.path("source")))
        self.press("alt+t")
        self.type(windows_path(self.path("target")))

    def type_list(self):
        self.press("Tab", "Return")
        self.wait_for_window(EDITOR)
        self.type("Jansen")
        self.press("Tab")
        self.type("Person A")
        self.press("Return")
        self.type("Piet")
        self.press("alt+c")
        self.type("de Vries")
        self.press("Tab")
        self.type("Person B")
        self.press("Return")
        self.type("born: *;")
        self.press("Tab")
        self.type("born: [withheld];")
        self.take_picture("editor")
        self.press("alt+o")
        self.wait_for_window(MAIN)

    def set_options(self):
        self.press("Tab", "Tab", "Tab", "Return")
        self.wait_for_window(OPTIONS)
        self.type("txt")
        self.press("ctrl+Return", "alt+l", "alt+w")
        self.type("*")
        self.press("alt+e", "alt+Down")
        self.take_picture("options")
        self.press("Escape", "alt+t")
        self.wait_for_window(MAIN)

    def run_and_exit(self):
        settings, log = self.path("windows/Init.dat"), self.path("windows/Morvex.log")
        self.press("alt+o")
        wait_for("settings file", lambda: os.path.exists(settings))
        self.take_picture("main")
        self.press("alt+g")
        wait_for("log of the run", lambda: os.path.exists(log) and b"Verstreken tijd" in self.read(log))
        self.take_picture("main-after-a-run")
        self.press("alt+x")
        self.assertEqual(self.program.wait(PATIENCE), 0)

        source, target = windows_path(self.path("source")), windows_path(self.path("target"))
        self.assertEqual(read_tree(self.path("target")), LETTERS_COPIED)
        self.assertEqual(read_tree(self.path("source")), LETTERS)
        lines = [source, target, "", "log=1", "sep=|", "jok=*", "1.txt", ""]
        self.assertEqual(self.read(settings), "\r\n".join(lines).encode())
        said = [re.fullmatch(r'"\S+ (.*)"', line)[1] for line in self.read(log).decode().split("\r\n")[:-1]]
        self.assertEqual(said[1:-1], log_of_letters(source, windows_path(settings), "\\"))

    def wait_for_window(self, title):
        """Waits until the window with this title is the active one."""
        def is_in_front():
            self.assertIsNone(self.program.poll(), f'the program has ended before its window "{title}" came')
            try:
                return self.screen.run("xdotool", "getactivewindow", "getwindowname").strip() == title
            except subprocess.CalledProcessError:
                return False
        wait_for(f'window "{title}" in front', is_in_front)

    def press(self, *keys):
        """Presses keys one after the other. The program handles them in this order, however late."""
        self.screen.run("xdotool", "key", "--delay", "50", *keys)

    def type(self, text):
        self.screen.run("xdotool", "type", "--delay", "20", text)

    def take_picture(self, name):
        time.sleep(1)  # only for the picture: the last typed text is drawn by then
        self.screen.take_picture(os.path.join(pictures, f"windows-{name}.png"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
