#!/usr/bin/python3
"""Measures what the windows cost and how soon they answer, on an X server without a visible screen.

    bench/desktop.py PROGRAM CONSOLE_PROGRAM [pairs] [clicks] [exit] [editor]

Both programs must be built as for users. Without names of measurements, all four are made; the
printed lines say what each figure is. The folders are created in the temporary folder and deleted.
"""

import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

here = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(here), "tests", "desktop"))

from program import EDITOR, MAIN, Program  # noqa: E402  (its folder is named first)
from screen import PATIENCE, Screen, wait_for  # noqa: E402

FILES, FOLDERS, FILE_SIZE = 20000, 200, 3000
PAIRS = 11
CLICKS = 200
LARGE = 1 << 30
ROWS = 10000
# Makes Qt behave as on a machine without a screen reader.
SILENT = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "0"}


class Home:
    """A folder with both programs, a source, a target, a list and settings."""

    def __init__(self, program, console):
        self.root = tempfile.mkdtemp(prefix="morvex-bench-")
        for name, path in (("windows", program), ("console", console)):
            os.mkdir(self.path(name))
            shutil.copy(path, self.path(name + "/Morvex"))
        for name in ("source", "target"):
            os.mkdir(self.path(name))

    def path(self, name):
        return os.path.join(self.root, name)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.root)

    def write_settings(self, path, source="source", target="target"):
        lines = [self.path(source), self.path(target), self.path("list.txt"), "log=1", "sep=|", "jok=*", "1.txt", ""]
        with open(self.path(path), "w", encoding="ascii", newline="\r\n") as file:
            file.write("\n".join(lines))

    def write_list(self, rows):
        with open(self.path("list.txt"), "w", encoding="ascii", newline="\r\n") as file:
            file.writelines(f"Person{row:05d}|[{row}]\n" for row in range(rows))
            file.write("|||\n")

    def write_tree(self):
        rng = random.Random(20)
        words = "the of and to in that was for on with as at by from they report letter signed before".split()
        for number in range(FILES):
            folder = self.path(f"source/{number % FOLDERS:03d}")
            os.makedirs(folder, exist_ok=True)
            text = []
            while len(text) < FILE_SIZE // 6:
                text.append(rng.choice(words) if rng.randrange(40) else f"Person{rng.randrange(1000):05d}")
            with open(f"{folder}/{number:05d}.txt", "w", encoding="ascii") as file:
                file.write(" ".join(text))

    def empty_target(self):
        shutil.rmtree(self.path("target"))
        os.mkdir(self.path("target"))


def seconds(command, environment):
    start = time.monotonic()
    subprocess.run(command, env=environment, check=True, capture_output=True)
    return time.monotonic() - start


def measure_pairs(home):
    """Both programs make the same unattended run in turns; each time is that of the whole process."""
    home.write_list(1000)
    home.write_tree()
    home.write_settings("settings.dat")
    home.write_settings("nothing.dat", source="nothing")
    os.mkdir(home.path("nothing"))
    kinds = ("console", "windows")
    runs, starts = {kind: [] for kind in kinds}, {kind: [] for kind in kinds}
    with Screen(variables=SILENT) as screen:
        for number in range(PAIRS + 1):
            for kind in kinds if number % 2 else reversed(kinds):
                for settings, times in (("settings.dat", runs), ("nothing.dat", starts)):
                    home.empty_target()
                    command = [home.path(kind + "/Morvex"), "-if", home.path(settings)]
                    taken = seconds(command, screen.environment)
                    if number > 0:  # the first pair brings the files into memory
                        times[kind].append(taken)
    ratios = [with_window / without for with_window, without in zip(runs["windows"], runs["console"])]
    alone = {kind: statistics.median(a - b for a, b in zip(runs[kind], starts[kind])) for kind in kinds}
    for kind in kinds:
        print(f"{kind}: {statistics.median(runs[kind]):.2f} s for {FILES} files "
              f"({min(runs[kind]):.2f} to {max(runs[kind]):.2f}), of which {statistics.median(starts[kind]):.2f} s "
              "are start and end of the program")
    print(f"ratio of medians, whole processes: "
          f"{statistics.median(runs['windows']) / statistics.median(runs['console']):.3f} "
          f"(pair by pair {min(ratios):.3f} to {max(ratios):.3f}, median {statistics.median(ratios):.3f})")
    print(f"ratio of medians, runs alone: {alone['windows'] / alone['console']:.3f}")


class Eye:
    """Clicks and reads pixels without starting a program, to measure milliseconds."""

    def __init__(self, screen):
        from Xlib import X, display
        from Xlib.ext import xtest
        self._x, self._xtest = X, xtest
        self._display = display.Display(screen.environment["DISPLAY"])
        self._root = self._display.screen().root

    def colour(self, x, y):
        return self._root.get_image(x, y, 1, 1, self._x.ZPixmap, 0xFFFFFFFF).data

    def button(self, is_pressed):
        self._xtest.fake_input(self._display, self._x.ButtonPress if is_pressed else self._x.ButtonRelease, 1)
        self._display.sync()

    def until_changed(self, x, y, before, longest=5):
        """Returns the seconds until the pixel's colour is no longer `before`; None after `longest` seconds."""
        start = time.monotonic()
        while time.monotonic() < start + longest:
            if self.colour(x, y) != before:
                return time.monotonic() - start
            time.sleep(0.0005)
        return None


def measure_clicks(home):
    """The time from a press on a picture to its darkened background, measured many times during runs."""
    home.write_list(1000)
    home.write_tree()
    home.write_settings("settings.dat")
    times, runs = [], 0
    with Screen() as screen:
        eye = Eye(screen)
        while len(times) < CLICKS:
            home.empty_target()
            runs += 1
            command = [home.path("windows/Morvex"), "-if", home.path("settings.dat"), "-dy", "3000"]
            program = Program(screen, command, home.path("output"))
            program.wait_for_window(MAIN)
            left, top, width, _ = program.find(MAIN, "Options").place
            program.point_at(MAIN, "Options")
            spot = left + width // 2, top + 3  # background of the picture, between its lines
            wait_for("first copy", lambda: os.listdir(home.path("target")))
            times += clicks_during(program, eye, spot)
            program.close()
    times.sort()
    middle, late, worst = (1000 * times[min(int(len(times) * part), len(times) - 1)] for part in (0.5, 0.99, 1))
    print(f"clicks: {len(times)} in {runs} runs over {FILES} files; answered after {middle:.1f} ms (median), "
          f"{late:.1f} ms (99th percentile), {worst:.1f} ms (worst)")


def clicks_during(program, eye, spot):
    times = []
    rng = random.Random(len(times))
    while program.process.poll() is None:
        before = eye.colour(*spot)
        eye.button(True)
        pressed = eye.until_changed(*spot, before)
        down = eye.colour(*spot)
        eye.button(False)
        released = eye.until_changed(*spot, down)
        time.sleep(rng.uniform(0.001, 0.02))  # clicks come at any time between two checks for events
        if program.process.poll() is None:
            if pressed is None or released is None:
                raise TimeoutError("a click was not answered within 5 seconds")
            times.append(pressed)
    return times


def measure_exit(home):
    """The time from a click on Exit in the middle of a large file to the end of the process."""
    home.write_list(1000)
    home.write_settings("windows/Init.dat")
    with open(home.path("source/large.txt"), "wb") as file:
        block = b"all that Person00007 said was written down before he left\n" * 18000
        while file.tell() < LARGE:
            file.write(block)
    times = []
    with Screen() as screen:
        eye = Eye(screen)
        for _ in range(5):
            home.empty_target()
            program = Program(screen, [home.path("windows/Morvex")], home.path("output"))
            program.wait_for_window(MAIN)
            left, top, width, height = program.find(MAIN, "Exit").place
            program.click(MAIN, "OK")
            program.click(MAIN, "Go")
            screen.run("xdotool", "mousemove", str(left + width // 2), str(top + height // 2))
            part = home.path("source/tijdel.enc")
            wait_for("part of the copy", lambda: os.path.exists(part) and os.path.getsize(part) > LARGE // 4)
            start = time.monotonic()
            eye.button(True)
            eye.button(False)
            program.process.wait(PATIENCE)
            times.append(time.monotonic() - start)
            copy = home.path("target/large.txt")
            if os.path.exists(copy) and os.path.getsize(copy) >= LARGE:
                raise RuntimeError("the run had ended before it was stopped")
            program.close()
    print(f"exit within a file of {LARGE >> 20} MiB: the process ended after {statistics.median(times):.2f} s "
          f"(median), {max(times):.2f} s (worst of {len(times)})")


def measure_editor(home):
    """The time from an event to the result that a screen reader finds; reading it takes 50 ms and more."""
    home.write_list(ROWS)
    home.write_settings("windows/Init.dat")
    with Screen(variables={}) as screen:
        start = time.monotonic()
        program = Program(screen, [home.path("windows/Morvex")], home.path("output"))
        program.wait_for_window(MAIN)
        told = {"program starts and reads the list": time.monotonic() - start}

        def timed(what, act, seen):
            begin = time.monotonic()
            act()
            program.wait_for(what, seen)
            told[what] = time.monotonic() - begin

        def text(cell):
            control = program.shown(EDITOR, cell)
            return control and control.text

        last, first = f"replace, row {ROWS}", "replace, row 1"
        program.point_at(MAIN, "Replacement list")
        timed("open", lambda: screen.run("xdotool", "click", "1"), lambda: text(last) == f"Person{ROWS - 1:05d}")
        program.click(EDITOR, last)
        program.click(EDITOR, "rows")  # the scroll bar gets the keys
        # Above the first row there is room for the other five.
        timed("scroll to the top", lambda: program.press("Home", *["Down"] * 6), lambda: text(first) == "Person00000")
        timed("scroll by 100 key presses", lambda: screen.run("xdotool", "key", "--delay", "0", *["Down"] * 100),
              lambda: text("replace, row 101") == "Person00100")
        timed("scroll to the end", lambda: program.press("End"), lambda: text(last) == f"Person{ROWS - 1:05d}")
        program.point_at(EDITOR, "mirror")
        timed("mirror", lambda: screen.run("xdotool", "click", "1"), lambda: text(last) == f"[{ROWS - 1}]")
        program.point_at(EDITOR, "OK")
        timed("OK", lambda: screen.run("xdotool", "click", "1"), lambda: program.shown(MAIN, "Source"))
        program.click(MAIN, "Replacement list")
        program.click(EDITOR, "Import")
        program.wait_for("file dialog", lambda: program.active_title() not in (EDITOR, "", None))
        screen.run("xdotool", "type", "--delay", "5", home.path("list.txt"))
        timed("import", lambda: program.press("Return"), lambda: text(last) == f"Person{ROWS - 1:05d}")
        program.close()
    for what, taken in told.items():
        print(f"editor with {ROWS} rows, {what}: {taken:.2f} s")


MEASURES = {"pairs": measure_pairs, "clicks": measure_clicks, "exit": measure_exit, "editor": measure_editor}


def main():
    programs = [os.path.abspath(path) for path in sys.argv[1:3]]
    for name in sys.argv[3:] or MEASURES:
        if os.fork() == 0:  # a process has one screen at most
            with Home(*programs) as home:
                MEASURES[name](home)
            sys.stdout.flush()
            os._exit(0)
        if os.wait()[1] != 0:
            sys.exit(1)


if __name__ == "__main__":
    main()
