#!/usr/bin/python3
"""The packed programs for Windows under Wine, in an empty prefix: an unattended run of the program with
windows must leave what the console program of this machine leaves, and end with the same status.

    windows_test.py FOLDER CONSOLE_PROGRAM PICTURES

FOLDER is the unpacked package. A picture of each window, as Wine shows it, goes into PICTURES.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from screen import PATIENCE, Screen, wait_for
from tree import read_tree, write_tree

package, console_path, pictures = sys.argv[1:4]

SOURCE = {
    "letter.txt": b"Jansen, Piet\r\nde Vries, born: 1 May 1980;\r\n" * 5000,
    "two.points.txt": b"Jansen",
    "Morvex.txt": b"Jansen",
    "plain.bin": b"Jansen\0\xff",
    "empty.txt": b"",
    "oracle": b"Jansen",
    "sub": None,
    "sub/note.txt": b"Jan Jansen",
    "sub/page.html": b"Jansen",
    "sub/deep": None,
    "sub/deep/other.csv": b"Jansen;Jansen\n",
    "sub/RECYCLED": None,
    "sub/RECYCLED/gone.txt": b"Jansen",
    "sub/empty": None,
}
LIST = b"Piet[CRLF]de Vries|Person B\r\nJansen|Person A\r\nborn: *;|born: [withheld];\r\n|||\r\n"


def windows_path(path):
    """Wine shows this machine's disk as drive Z."""
    return "Z:" + path.replace("/", "\\")


def comparable(log):
    """A log without times and dates, and with this machine's paths."""
    log = log.replace(b"Z:\\", b"/").replace(b"\\", b"/")
    lines = re.sub(rb'^"\S+ ', b'"', log, flags=re.MULTILINE)
    lines = re.sub(rb"-{10,}[0-9/.-]+-{10,}", b"(date)", lines)
    return re.sub(rb"Verstreken tijd: \d+ min \d+ sec", b"Verstreken tijd: ...", lines)


class PackedProgram(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = cls.enterClassContext(Screen())
        prefix = os.path.join(cls.screen.folder, "wine")
        cls.screen.environment.update(WINEPREFIX=prefix, WINEDEBUG="-all", WINEDLLOVERRIDES="mscoree,mshtml=")
        cls.wine = shutil.which("wine64") or "/usr/lib/wine/wine64"
        server = shutil.which("wineserver") or "/usr/lib/wine/wineserver64"
        subprocess.run([cls.wine, "wineboot", "--init"], env=cls.screen.environment, check=True,
                       stdin=subprocess.DEVNULL, capture_output=True)
        cls.addClassCleanup(subprocess.run, [server, "--kill"], env=cls.screen.environment, check=False)

    def setUp(self):
        self.root = tempfile.mkdtemp(prefix="morvex-windows-")
        self.addCleanup(shutil.rmtree, self.root)
        for folder in ("windows", "console"):
            os.mkdir(self.path(folder))
        shutil.copy(os.path.join(package, "Morvex.exe"), self.path("windows"))
        # Files of the program's own name are skipped, so both have one name.
        shutil.copy(console_path, self.path("console/Morvex"))

    def path(self, name):
        return os.path.join(self.root, name)

    def write_settings(self, spelt):
        lines = [spelt(self.path(name)) for name in ("source", "target", "list.txt")]
        lines += ["log=1", "sep=|", "jok=*", "1.txt", "1.csv", "1.html", "0.bin", ""]
        with open(self.path("settings.dat"), "wb") as file:
            file.write("\r\n".join(lines).encode())

    def run_unattended(self, command, folder, spelt):
        self.write_settings(spelt)
        os.mkdir(self.path("target"))
        settings = spelt(self.path("settings.dat"))
        process = subprocess.run([*command, "-if", settings], env=self.screen.environment, timeout=PATIENCE,
                                 stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, check=False)
        left = read_tree(self.path("target"))
        shutil.rmtree(self.path("target"))
        self.assertEqual(read_tree(self.path("source")), SOURCE)
        with open(self.path(folder + "/Morvex.log"), "rb") as file:
            log = comparable(file.read())
        return {"status": process.returncode, "target": left, "log": log}

    def test_an_unattended_run_leaves_what_the_console_program_leaves(self):
        write_tree(self.path("source"), SOURCE)
        with open(self.path("list.txt"), "wb") as file:
            file.write(LIST)
        expected = self.run_unattended([self.path("console/Morvex")], "console", lambda path: path)
        self.assertEqual(expected["target"]["sub/note.txt"], b"Jan Person A")
        self.assertEqual(expected["status"], 3)  # files of the program's own name have no copy
        self.maxDiff = None
        found = self.run_unattended([self.wine, self.path("windows/Morvex.exe")], "windows", windows_path)
        self.assertEqual(found, expected)

    def test_a_wrong_command_line_is_told(self):
        process = subprocess.run([self.wine, self.path("windows/Morvex.exe"), "-dy", "soon"], timeout=PATIENCE,
                                 env=self.screen.environment, stdin=subprocess.DEVNULL, capture_output=True,
                                 check=False)
        self.assertEqual(process.returncode, 2)
        self.assertEqual(process.stderr.strip(), b"Run-time error '13': Type mismatch")

    def test_the_main_window_is_shown(self):
        process = subprocess.Popen([self.wine, self.path("windows/Morvex.exe")], env=self.screen.environment,
                                   stdin=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        wait_for("main window", lambda: self.title().strip() == "Morvex v11.0")
        os.makedirs(pictures, exist_ok=True)
        self.screen.take_picture(os.path.join(pictures, "windows-main.png"))
        self.screen.run("xdotool", "key", "alt+F4")
        self.assertEqual(process.wait(PATIENCE), 0)

    def title(self):
        """That of the window that has the keys."""
        try:
            return self.screen.run("xdotool", "getactivewindow", "getwindowname")
        except subprocess.CalledProcessError:
            return ""


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
