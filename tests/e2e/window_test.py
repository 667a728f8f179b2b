"""What the tests that drive the window share. A test program is called with the build folder as its argument, prints the
result of unittest, and leaves a screenshot of each test in tests/e2e of that folder."""

import json
import os
import pathlib
import re
import subprocess
import sys
import unittest

from accessible_window import AccessibleWindow
from media import Media
from virtual_session import VirtualSession
from waiting import PATIENCE, comes

FIRST_LINES = ["This text is recited by a computed model.", "It recognises nothing of what it is given."]
WINDOW = "Sorvanta"


class WindowTest(unittest.TestCase):
    """Each test has an empty home and the session's display to itself."""

    session = None
    build = None
    media = None

    def setUp(self):
        self.session.move_home()
        self.program = None

    def tearDown(self):
        name = re.sub(r"\W+", "-", self.id().split(".", 1)[1])
        self.session.screenshot(self.build / "tests/e2e" / f"{name}.png")
        if self.program and self.program.poll() is None:
            self.program.kill()
            self.program.wait()
        self.assertEqual(self.wait_for_engines(0), [], "no engine outlives the application")

    def start(self):
        """Starts the program. @return its window"""
        self.program = self.session.start([self.build / "bin/sorvanta"], stdout=subprocess.DEVNULL)
        return AccessibleWindow(self.program)

    def exit_code(self):
        """What the program says at its end, which is waited for."""
        return self.program.wait(PATIENCE)

    def start_on_file_screen(self, layers=1):
        """Starts the program as one who agreed before and has a model; the more layers, the slower it is."""
        self.accept_policies()
        self.provide_model(layers)
        window = self.start()
        window.expect("Choose File…")
        return window

    def accept_policies(self):
        defaults = self.session.home / ".config/Sorvanta/Sorvanta.conf"
        defaults.parent.mkdir(parents=True)
        defaults.write_text("[General]\nhasAcceptedPolicies=true\n")

    def provide_model(self, layers=1, name="ggml-tiny.bin"):
        folder = self.models_folder()
        folder.mkdir(parents=True, exist_ok=True)
        subprocess.run([self.build / "tests/make_scripted_model", folder / name, str(layers)], check=True,
                       stdout=subprocess.DEVNULL)

    def choose(self, window, path):
        window.press("Choose File…")
        window.choose_file(path)
        window.expect(path.name)

    def transcribe(self, window, path):
        self.choose(window, path)
        window.press("Transcribe")

    def models_folder(self):
        return self.session.data / "Sorvanta/Models"

    def store_folder(self):
        return self.session.data / "sorvanta"

    def history_file(self):
        return self.store_folder() / "transcription-history.json"

    def history(self):
        return json.loads(self.history_file().read_text(encoding="utf-8")) if self.history_file().exists() else []

    def engines(self):
        """The numbers of the engine's processes that work for this session."""
        found = []
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                command = (process / "cmdline").read_bytes().split(b"\0")
                if command[0].endswith(b"/whisper-cli") and os.fsencode(self.session.folder) in b"".join(command):
                    found.append(int(process.name))
            except OSError:
                continue
        return found

    def wait_for_engines(self, count):
        comes(lambda: len(self.engines()) == count)
        return self.engines()

    def clipboard(self):
        return subprocess.run([self.build / "tests/e2e/print_clipboard"], env=self.session.environment, check=True,
                              capture_output=True, timeout=PATIENCE).stdout.decode()

    def tab_to(self, window, name, most=30):
        """Presses Tab until the control has the focus."""
        for _ in range(most):
            before = window.focused_part()
            if window.focused() == name:
                return
            self.session.key("Tab")
            comes(lambda: window.focused_part() not in (None, before), patience=5)
        self.fail(f"{most} presses of Tab do not reach “{name}”; the focus is on {window.focused()}")

    def eventually(self, condition, what):
        self.assertTrue(comes(condition), f"waited in vain for {what}")


def main(size=(1200, 700)):
    """@param size of the display"""
    WindowTest.build = pathlib.Path(sys.argv.pop(1)).resolve()
    (WindowTest.build / "tests/e2e").mkdir(parents=True, exist_ok=True)
    with VirtualSession(size=size) as session:
        WindowTest.session = session
        WindowTest.media = Media(session.folder / "media")
        unittest.main(verbosity=2, warnings="ignore")
