"""A program on a screen, used as a person uses it: keys and clicks are events of the X server, and the
contents of the windows are read as a screen reader reads them, by the names of the controls.
"""

import os
import subprocess

import gi

from screen import PATIENCE, wait_for

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version is chosen first)

# The titles of the windows, without the blanks at their ends.
MAIN = "Morvex v11.0"
EDITOR = "replace:" + " " * 81 + "by:"
OPTIONS = "Opties"


class Control:
    """What a screen reader knows of a control at the moment: name, text and states change with the program."""

    def __init__(self, accessible):
        self._accessible = accessible

    @property
    def name(self):
        return self._accessible.get_name()

    @property
    def role(self):
        return self._accessible.get_role_name()

    @property
    def text(self):
        """The text in a box."""
        count = Atspi.Text.get_character_count(self._accessible)
        return Atspi.Text.get_text(self._accessible, 0, count)

    @property
    def description(self):
        return self._accessible.get_description()

    @property
    def place(self):
        """Left, top, width and height on the screen, in the toolkit's unit of 1/96 inch."""
        box = Atspi.Component.get_extents(self._accessible, Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height

    def _has(self, *states):
        known = self._accessible.get_state_set()
        return all(known.contains(state) for state in states)

    @property
    def is_shown(self):
        return self._has(Atspi.StateType.SHOWING, Atspi.StateType.VISIBLE)

    @property
    def is_enabled(self):
        return self._has(Atspi.StateType.ENABLED, Atspi.StateType.SENSITIVE)

    @property
    def is_checked(self):
        return self._has(Atspi.StateType.CHECKED)

    @property
    def is_selected(self):
        return self._has(Atspi.StateType.SELECTED)

    @property
    def has_focus(self):
        return self._has(Atspi.StateType.FOCUSED)

    @property
    def parts(self):
        """The controls directly within this one."""
        count = self._accessible.get_child_count()
        found = [self._accessible.get_child_at_index(index) for index in range(count)]
        return [Control(part) for part in found if part is not None]


class Program:
    """A program started on the screen, with its output in `log`; `close` ends it if it still runs."""

    def __init__(self, screen, command, log):
        self.screen = screen
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = screen.environment["DBUS_SESSION_BUS_ADDRESS"]
        os.environ["DISPLAY"] = screen.environment["DISPLAY"]
        Atspi.init()
        with open(log, "wb") as output:
            self.process = subprocess.Popen(command, env=screen.environment, stdin=subprocess.DEVNULL, stdout=output,
                                            stderr=output)

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    def windows(self):
        """Returns the windows that are shown; the name of a window is its title."""
        try:
            desktop = Atspi.get_desktop(0)
            desktop.clear_cache()
            for index in range(desktop.get_child_count()):
                program = desktop.get_child_at_index(index)
                if program is None or program.get_process_id() != self.process.pid:
                    continue
                program.set_cache_mask(Atspi.Cache.NONE)
                return [window for window in Control(program).parts if window.is_shown]
        except GLib.Error:  # the program has not appeared yet, or is ending
            pass
        return []

    def shown(self, window, name):
        """Returns the control `name` in the window with the title `window`; None if it is not shown."""
        try:
            for top in self.windows():
                if top.name.strip() != window:
                    continue
                waiting = [top]
                while waiting:
                    control = waiting.pop(0)
                    if control.name == name and control.is_shown and control is not top:
                        return control
                    waiting += control.parts
        except GLib.Error:  # the control disappeared during the search
            pass
        return None

    def wait_for(self, what, condition):
        """Works like wait_for in screen.py, but stops waiting when the program has ended."""
        def now():
            ended = self.process.poll()
            try:
                value = condition()
            except GLib.Error:  # the control has just disappeared
                value = None
            if not value and ended is not None:
                raise RuntimeError(f"no {what}: the program has ended with status {ended}")
            return value
        return wait_for(what, now)

    def find(self, window, name):
        """Waits until the control is shown and enabled, and returns it."""
        def ready():
            control = self.shown(window, name)
            return control if control is not None and control.is_enabled else None
        return self.wait_for(f'enabled control "{name}" in the window "{window}"', ready)

    def wait_for_window(self, title):
        """Waits until the window is the active one."""
        self.wait_for(f'window "{title}" in front', lambda: self.active_title() == title)

    def active_title(self):
        try:
            return self.screen.run("xdotool", "getactivewindow", "getwindowname").strip()
        except subprocess.CalledProcessError:
            return None

    def window_place(self):
        """Returns left and top of the active window."""
        told = self.screen.run("xdotool", "getactivewindow", "getwindowgeometry", "--shell")
        values = dict(line.split("=") for line in told.split())
        return int(values["X"]), int(values["Y"])

    def move_window(self, left, top):
        """Moves the active window, and returns its new left and top."""
        before = self.window_place()
        self.screen.run("xdotool", "getactivewindow", "windowmove", str(left), str(top))
        self.wait_for("moved window", lambda: self.window_place() != before)
        return self.window_place()

    def point_at(self, window, name):
        left, top, width, height = self.find(window, name).place
        scale = self.screen.dpi / 96
        middle = (left + width / 2) * scale, (top + height / 2) * scale
        self.screen.run("xdotool", "mousemove", *(str(round(part)) for part in middle))

    def click(self, window, name):
        self.point_at(window, name)
        self.screen.run("xdotool", "click", "1")

    def press(self, *keys):
        """Presses keys, such as "Return" or "ctrl+Return"."""
        self.screen.run("xdotool", "key", *keys)

    def type(self, window, name, text):
        """Waits until the control has the focus, types, and waits until the control holds the text."""
        self.wait_for(f'focus in "{name}"', lambda: self.find(window, name).has_focus)
        before = self.find(window, name).text
        self.screen.run("xdotool", "type", "--delay", "20", text)
        self.wait_for(f'"{before + text}" in "{name}"', lambda: self.find(window, name).text == before + text)

    def wait_for_end(self):
        """Waits for the program's end and returns its exit status."""
        try:
            return self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            raise TimeoutError(f"the program has not ended within {PATIENCE} seconds") from None

    def described(self):
        """Describes everything that is shown, for a person who looks for the reason of a failure."""
        lines = []

        def describe(control, depth):
            try:
                lines.append(f"{'  ' * depth}{control.role} {control.name!r} {control.place}"
                             f"{'' if control.is_enabled else ' disabled'}")
                for part in control.parts:
                    describe(part, depth + 1)
            except GLib.Error:
                lines.append("  " * depth + "(gone)")
        for window in self.windows():
            describe(window, 0)
        return "\n".join(lines)
