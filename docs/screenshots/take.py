#!/usr/bin/python3
"""Takes the pictures of this folder: runs the program on a screen of its own, with keys and clicks.

    docs/screenshots/take.py PROGRAM [FOLDER]

PROGRAM is the desktop program. FOLDER (default: the folder of this script) receives the pictures: each
window on a light and a dark desktop, at 96 and 192 dots per inch. MORVEX_PICTURES, such as dark-192,
limits them to one of these desktops. After a failure, failed.png shows the screen.
"""

import functools
import os
import shutil
import sys
import time

here = os.path.dirname(os.path.abspath(__file__))
root = os.path.dirname(os.path.dirname(here))
sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(root, "tests", "desktop"))

from program import EDITOR, MAIN, OPTIONS, Program  # noqa: E402  (its folder is named first)
from screen import Screen, wait_for  # noqa: E402

HOME = "/tmp/ada"  # visible in the pictures; created and deleted by this script
CASE = HOME + "/Cases/2024 Quay Lane"
LARGE = 1 << 30  # bytes of the file that the run works on in the pictures
FOLDERS = """Cases/2023 Canal Street, Cases/2023 Dyke 7, Cases/2024 Harbour Square, Cases/2024 Mill Lane,
Cases/2024 Quay Lane/hearing/exhibits, Cases/2024 Quay Lane/post, Cases/2025 Old Market, Cases/2025 Tower Road,
Handover, Letters, Templates""".split(",")

# The colours of a desktop, in the form of the settings from which the toolkit reads them.
PALETTES = {
    "light": {
        "Window": ("239,240,241", "35,38,41"),
        "View": ("255,255,255", "35,38,41"),
        "Button": ("252,252,252", "35,38,41"),
        "Selection": ("61,120,200", "255,255,255"),
        "Tooltip": ("247,247,247", "35,38,41"),
    },
    "dark": {
        "Window": ("35,38,41", "252,252,252"),
        "View": ("27,30,32", "252,252,252"),
        "Button": ("49,54,59", "252,252,252"),
        "Selection": ("43,108,176", "252,252,252"),
        "Tooltip": ("49,54,59", "252,252,252"),
    },
}
FRAME = """<openbox_config xmlns="http://openbox.org/3.4/rc"><theme><name>{theme}</name><titleLayout>NLC</titleLayout>
{fonts}</theme><placement><policy>Smart</policy><center>yes</center></placement></openbox_config>"""
FONT = '<font place="{place}"><name>DejaVu Sans</name><size>{size}</size></font>'


def desktop_settings(home, name):
    os.makedirs(os.path.join(home, "openbox"), exist_ok=True)
    fonts = "".join(FONT.format(place=place, size=10) for place in ("ActiveWindow", "InactiveWindow"))
    with open(os.path.join(home, "openbox", "rc.xml"), "w", encoding="utf-8") as file:
        file.write(FRAME.format(theme={"light": "Clearlooks", "dark": "Onyx"}[name], fonts=fonts))
    with open(os.path.join(home, "kdeglobals"), "w", encoding="utf-8") as file:
        for group, (ground, ink) in PALETTES[name].items():
            file.write(f"[Colors:{group}]\nBackgroundNormal={ground}\nForegroundNormal={ink}\n"
                       f"BackgroundAlternate={ground}\nForegroundInactive=161,169,177\nForegroundLink=29,153,243\n"
                       "ForegroundVisited=155,89,182\n")


def make_home():
    """Creates the home of a user with a case to hand over: folders, a list, and the program's settings."""
    shutil.rmtree(HOME, ignore_errors=True)
    for folder in FOLDERS:
        os.makedirs(os.path.join(HOME, folder.strip()), exist_ok=True)
    shutil.copytree(os.path.join(root, "examples", "case"), CASE, dirs_exist_ok=True)
    with open(os.path.join(root, "examples", "replacements.txt"), encoding="cp1252") as file:
        rows = file.read()
    with open(os.path.join(HOME, "names.txt"), "w", encoding="utf-8") as file:
        file.write(rows)
    with open(os.path.join(CASE, "hearing", "recording.log"), "wb") as file:
        block = rows.encode() * 8000
        while file.tell() < LARGE:
            file.write(block)
    os.mkdir(os.path.join(HOME, "Morvex"))
    settings = [CASE, os.path.join(HOME, "Handover"), os.path.join(HOME, "names.txt"), "log=1", "sep=|", "jok=*",
                "1.txt", "1.csv", "1.log", "0.xml", "0.html", "1.eml", "0.json", ""]
    with open(os.path.join(HOME, "Morvex", "Init.dat"), "w", encoding="utf-8", newline="\r\n") as file:
        file.write("\n".join(settings))


class Session:
    """The program on one kind of desktop."""

    def __init__(self, screen, program, folder, ending):
        self.screen, self.program, self.folder, self.ending = screen, program, folder, ending

    def picture(self, name, moving=False):
        """Takes a picture of the active window with its frame; unless `moving`, waits until nothing moves."""
        path = os.path.join(self.folder, f"{name}-{self.ending}.png")
        self.screen.run("xdotool", "mousemove", "5", "5")
        if not moving:
            self.settle()
        window = self.screen.run("xdotool", "getactivewindow").strip()
        self.screen.run("import", "-silent", "-frame", "-window", window, path)
        print(path)

    def settle(self):
        """Waits until two pictures of the screen are equal."""
        def look():
            return self.screen.run("import", "-silent", "-window", "root", "-format", "%#", "info:")

        def rests():
            before = look()
            time.sleep(0.2)  # longer than any step of a window that grows
            return look() == before
        wait_for("rest on the screen", rests)

    def take_all(self):
        program = self.program
        program.wait_for_window(MAIN)
        self.picture("main")
        program.click(MAIN, "Replacement list")
        program.wait_for_window(EDITOR)
        program.click(EDITOR, "replace, row 16")
        self.picture("editor")
        program.click(EDITOR, "OK")
        program.wait_for_window(MAIN)
        program.click(MAIN, "Options")
        program.wait_for_window(OPTIONS)
        self.picture("options")
        program.click(OPTIONS, "list of extensions")
        program.find(OPTIONS, "extensions of the files that are scanned")
        self.picture("options-list")
        program.click(OPTIONS, "Toepassen")
        program.wait_for_window(MAIN)
        program.point_at(MAIN, "Source")
        self.screen.run("xdotool", "click", "--repeat", "2", "--delay", "50", "1")
        program.find(MAIN, "Folders")
        self.picture("tree")
        program.press("Escape")
        program.click(MAIN, "OK")
        program.find(MAIN, "Go")
        self.picture("armed")
        program.click(MAIN, "Go")
        part = os.path.join(CASE, "hearing", "tijdel.enc")
        wait_for("part of the large copy", lambda: os.path.exists(part) and os.path.getsize(part) > LARGE // 3)
        self.picture("run", moving=True)
        program.close()


def main():
    program_path = os.path.abspath(sys.argv[1])
    folder = sys.argv[2] if len(sys.argv) > 2 else here
    one = os.environ.get("MORVEX_PICTURES")
    for palette in PALETTES:
        for dpi in (96, 192):
            ending = f"{palette}-{dpi}"
            if one not in (None, ending):
                continue
            if os.fork() == 0:  # a process has one screen at most
                take(program_path, folder, palette, dpi, ending)
                os._exit(0)
            if os.wait()[1] != 0:
                sys.exit(1)


def take(program_path, folder, palette, dpi, ending):
    make_home()
    shutil.copy(program_path, os.path.join(HOME, "Morvex", "Morvex"))
    variables = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}
    scale = dpi // 96
    settings = functools.partial(desktop_settings, name=palette)
    with Screen(1000 * scale, 720 * scale, dpi, variables, settings) as screen:
        program = Program(screen, [os.path.join(HOME, "Morvex", "Morvex")], os.path.join(screen.folder, "output"))
        try:
            Session(screen, program, folder, ending).take_all()
        except BaseException:
            screen.take_picture(os.path.join(folder, "failed.png"))
            raise
        finally:
            program.close()
            shutil.rmtree(HOME)


if __name__ == "__main__":
    main()
