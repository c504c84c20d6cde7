"""A separate screen for a program with windows: an X server without a visible screen, a window manager,
and the buses by which a screen reader learns the contents of windows. All of them use a temporary
folder and end with the screen.
"""

import os
import shutil
import subprocess
import tempfile
import time

PATIENCE = 120  # seconds to wait for an event that must come, even on a slow and busy machine


def wait_for(what, condition, seconds=PATIENCE):
    """Returns the first true value of `condition()`. Raises TimeoutError, which names `what`, if none comes."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise TimeoutError(f"no {what} within {seconds} seconds")
        time.sleep(0.05)


class Screen:
    """`with Screen() as screen:` starts a screen. Programs appear on it if they get `screen.environment`, to
    which `variables` are added. `prepare` is called with the folder for settings before anything starts.
    A process can have only one screen, because it connects to only one bus of screen readers.
    """

    def __init__(self, width=1280, height=900, dpi=96, variables=None, prepare=None):
        self.size = (width, height)
        self.dpi = dpi
        self.prepare = prepare
        self.folder = None
        self.environment = dict(os.environ)
        for name in ("WAYLAND_DISPLAY", "XAUTHORITY", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME",
                     "QT_STYLE_OVERRIDE"):
            self.environment.pop(name, None)
        self.environment.update(LC_ALL="C.UTF-8", NO_AT_BRIDGE="1", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.environment.update(variables or {})
        self._processes = []

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="morvex-screen-")
        try:
            self._start()
        except BaseException:
            self.__exit__(None, None, None)
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            process.terminate()
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def run(self, *command):
        """Runs a command and returns its output. Raises an error if the command fails."""
        return subprocess.run(command, env=self.environment, check=True, capture_output=True, text=True).stdout

    def take_picture(self, path):
        """Saves a picture of the whole screen as a PNG file."""
        self.run("import", "-silent", "-window", "root", path)

    def _start(self):
        for name in ("home", "runtime"):
            os.mkdir(os.path.join(self.folder, name), 0o700)
        home = os.path.join(self.folder, "home")
        self.environment.update(HOME=home, XDG_CONFIG_HOME=home, XDG_CACHE_HOME=home, XDG_DATA_HOME=home)
        if self.prepare:
            self.prepare(home)
        self.environment["XDG_RUNTIME_DIR"] = os.path.join(self.folder, "runtime")
        number = self._first_line(
            lambda ready: ["Xvfb", "-displayfd", str(ready), "-screen", "0", "%dx%dx24" % self.size]
            + ["-dpi", str(self.dpi), "-nolisten", "tcp", "-noreset"])
        self.environment["DISPLAY"] = ":" + number
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._first_line(
            lambda ready: ["dbus-daemon", "--session", "--nofork", f"--print-address={ready}"])
        # The toolkit reads the dots per inch from here; those of the server describe a physical screen.
        self.run("xprop", "-root", "-f", "RESOURCE_MANAGER", "8s",
                 "-set", "RESOURCE_MANAGER", f"Xft.dpi:\t{self.dpi}\n")
        self._spawn(["openbox"])
        # Windows get a frame, a position and the focus only when the window manager is ready.
        wait_for("window manager", lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))

    def _spawn(self, command, **options):
        with open(os.path.join(self.folder, command[0] + ".log"), "wb") as log:
            process = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                       **options)
        self._processes.append(process)
        return process

    def _first_line(self, command):
        """Starts a program that writes a line to a given descriptor when it is ready, and returns the line."""
        reading, writing = os.pipe()
        with open(reading, encoding="ascii") as told:
            try:
                self._spawn(command(writing), pass_fds=[writing])
            finally:
                os.close(writing)
            line = told.readline().strip()
        if not line:
            raise RuntimeError(f"{command(0)[0]} did not start")
        return line
