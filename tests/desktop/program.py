"""A program on a screen, used as a person uses it: keys and clicks are events of the X server, and what
stands in the windows is read as a screen reader reads it, by the names of the controls.
"""

import os
import subprocess

import gi

from screen import PATIENCE, wait_for

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version is chosen first)

# The titles of the windows; blanks at their ends are no matter here.
MAIN = "Morvex v11.0"
EDITOR = "replace:" + " " * 81 + "by:"
OPTIONS = "Opties"


class Control:
    """What a screen reader knows of a control, now: name, text and states change with the program."""

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
        """What is typed in a box."""
        count = Atspi.Text.get_character_count(self._accessible)
        return Atspi.Text.get_text(self._accessible, 0, count)

    @property
    def description(self):
        return self._accessible.get_description()

    @property
    def place(self):
        """Left, top, width, height as the toolkit counts, in 96ths of an inch of the screen."""
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
    """Started on the screen with its own output in `log`; `close` ends it when it has not ended."""

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
        """The windows that are shown, whose names are their titles."""
        try:
            desktop = Atspi.get_desktop(0)
            desktop.clear_cache()
            for index in range(desktop.get_child_count()):
                program = desktop.get_child_at_index(index)
                if program is None or program.get_process_id() != self.process.pid:
                    continue
                program.set_cache_mask(Atspi.Cache.NONE)
                return [window for window in Control(program).parts if window.is_shown]
        except GLib.Error:  # not there yet, or on its way out
            pass
        return []

    def shown(self, window, name):
        """The control of that name in the window of that title; None when it is not shown."""
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
        except GLib.Error:  # it went while it was looked at
            pass
        return None

    def wait_for(self, what, condition):
        """As wait_for of the screen, but not for a program that has ended."""
        def now():
            ended = self.process.poll()
            try:
                value = condition()
            except GLib.Error:  # of a control that has just gone
                value = None
            if not value and ended is not None:
                raise RuntimeError(f"no {what}: the program has ended with status {ended}")
            return value
        return wait_for(what, now)

    def find(self, window, name):
        """The control, as soon as it is shown and enabled."""
        def ready():
            control = self.shown(window, name)
            return control if control is not None and control.is_enabled else None
        return self.wait_for(f'enabled control "{name}" in the window "{window}"', ready)

    def wait_for_window(self, title):
        """Waits until the window is shown and has the keys."""
        self.wait_for(f'window "{title}" in front', lambda: self.active_title() == title)

    def active_title(self):
        try:
            return self.screen.run("xdotool", "getactivewindow", "getwindowname").strip()
        except subprocess.CalledProcessError:
            return None

    def window_place(self):
        """Left and top of the window that has the keys."""
        told = self.screen.run("xdotool", "getactivewindow", "getwindowgeometry", "--shell")
        values = dict(line.split("=") for line in told.split())
        return int(values["X"]), int(values["Y"])

    def move_window(self, left, top):
        """Moves the window that has the keys, and gives the place that it then has."""
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
        """Such as "Return" or "ctrl+Return"."""
        self.screen.run("xdotool", "key", *keys)

    def type(self, window, name, text):
        """Types into the control, which must have the focus by then, and waits until it holds the text."""
        self.wait_for(f'focus in "{name}"', lambda: self.find(window, name).has_focus)
        before = self.find(window, name).text
        self.screen.run("xdotool", "type", "--delay", "20", text)
        self.wait_for(f'"{before + text}" in "{name}"', lambda: self.find(window, name).text == before + text)

    def wait_for_end(self):
        """The exit status."""
        try:
            return self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            raise TimeoutError(f"the program has not ended within {PATIENCE} seconds") from None

    def described(self):
        """All that is shown, for a person who looks for the reason of a failure."""
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
