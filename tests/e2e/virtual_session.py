"""A desktop session of its own for one program: a virtual display, a session bus with accessibility, and folders that
hold nothing of the user's."""

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import screen
from waiting import PATIENCE


class VirtualSession:
    """Use as a context manager. `folder` is removed at the end unless one was given."""

    def __init__(self, folder=None, size=(1200, 700)):
        self._is_own_folder = folder is None
        self.folder = pathlib.Path(folder or tempfile.mkdtemp(prefix="sorvanta-session-"))
        self.programs = self.folder / "programs"
        self.temporary = self.folder / "tmp"
        self.size = size
        self._processes = []
        self._homes = 0
        self._screen = None

    def __enter__(self):
        runtime = self.folder / "runtime"
        for folder in (self.programs, self.temporary, runtime):
            folder.mkdir(parents=True, exist_ok=True)
        runtime.chmod(0o700)
        self._provide_browser()
        self.environment = {
            name: value for name, value in os.environ.items()
            if not name.startswith(("XDG_", "QT_", "DBUS_", "WAYLAND_", "AT_SPI_"))
        }
        self.environment.update(
            PATH=f"{self.programs}:{os.environ['PATH']}",
            TMPDIR=str(self.temporary),
            XDG_RUNTIME_DIR=str(runtime),
            LC_ALL="C.UTF-8",
            # The engine has more threads than a busy machine has processors; they would spin for each other.
            OMP_WAIT_POLICY="passive",
            QT_QUICK_BACKEND="software",
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            NO_AT_BRIDGE="0",
        )
        self.move_home()
        self._start_display()
        self._start_bus()
        # Accessibility is spoken from this very process, which reads these when it first does so.
        for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"):
            os.environ[name] = self.environment[name]
        return self

    def __exit__(self, *exception):
        for process in reversed(self._processes):
            if process.poll() is None:
                process.terminate()
        for process in reversed(self._processes):
            try:
                process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                process.kill()
        if self._is_own_folder:
            shutil.rmtree(self.folder, ignore_errors=True)

    def move_home(self):
        """Gives the programs that are started from now on an empty home."""
        self._homes += 1
        self.home = self.folder / f"home{self._homes}"
        self.data = self.home / ".local/share"
        self.data.mkdir(parents=True)
        self.environment.update(
            HOME=str(self.home),
            XDG_DATA_HOME=str(self.data),
            XDG_CONFIG_HOME=str(self.home / ".config"),
            XDG_CACHE_HOME=str(self.home / ".cache"),
        )

    def start(self, command, **options):
        """Starts a program of the session, which ends with it."""
        options.setdefault("stdin", subprocess.DEVNULL)
        process = subprocess.Popen([str(word) for word in command], env=self.environment, **options)
        self._processes.append(process)
        return process

    def screenshot(self, path):
        subprocess.run(["import", "-window", "root", str(path)], env=self.environment, check=True)

    def pixel(self, x, y):
        """The colour in sight there, as (red, green, blue)."""
        if self._screen is None:
            self._screen = screen.Screen(self.environment["DISPLAY"])
        return self._screen.pixel(x, y)

    def key(self, *keys):
        self._xdotool("key", *keys)

    def type(self, text):
        self._xdotool("type", text)

    def click(self, x, y):
        self._xdotool("mousemove", str(x), str(y), "click", "1")

    def focus(self, title):
        """Gives a window the keyboard, as a window manager would, once it is there."""
        self._of_window(title, "windowfocus", "--sync")

    def resize(self, title, width, height):
        self._of_window(title, "windowsize", str(width), str(height))

    def close(self, title):
        """Asks a window to close, as the button in its frame does."""
        script = pathlib.Path(__file__).with_name("close_window.py")
        subprocess.run([sys.executable, script, title], env=self.environment, check=True, timeout=PATIENCE)

    def opened_addresses(self):
        """What was handed to the browser."""
        return self._addresses.read_text().splitlines() if self._addresses.exists() else []

    def _provide_browser(self):
        self._addresses = self.folder / "opened-addresses"
        browser = self.programs / "xdg-open"
        browser.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >> "{self._addresses}"\n')
        browser.chmod(0o755)

    def _of_window(self, title, *words, tries=5):
        """Does this with the window of that title, once it is there; a window of that name that goes may be in the way."""
        for left in reversed(range(tries)):
            try:
                self._xdotool("search", "--sync", "--onlyvisible", "--name", f"^{title}$", *words)
                return
            except subprocess.CalledProcessError:
                if not left:
                    raise
                time.sleep(0.2)

    def _xdotool(self, *words):
        subprocess.run(["xdotool", *words], env=self.environment, check=True, stdout=subprocess.DEVNULL, timeout=PATIENCE)

    def _start_display(self, tries=3):
        """Two displays that start at once may settle on one number; then one of them ends, and is tried again."""
        for _ in range(tries):
            reader, writer = os.pipe()
            width, height = self.size
            display = self.start(
                # Without -noreset it begins anew when its last client leaves, and refuses whoever comes meanwhile.
                ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp",
                 "-noreset"],
                pass_fds=[writer], stderr=subprocess.DEVNULL)
            os.close(writer)
            with os.fdopen(reader) as numbers:
                self.environment["DISPLAY"] = ":" + numbers.readline().strip()
            answers = subprocess.run(["xdotool", "getdisplaygeometry"], env=self.environment,
                                     stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            if answers.returncode == 0 and display.poll() is None:
                return
        raise RuntimeError("the virtual display (Xvfb) did not start")

    def _start_bus(self):
        bus = self.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        with bus.stdout:
            address = bus.stdout.readline().strip()
        if not address:
            raise RuntimeError("the session bus (dbus-daemon) did not start")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address


def kill(process):
    """Ends a program as a crash would."""
    process.send_signal(signal.SIGKILL)
    process.wait()
