#!/usr/bin/python3
"""How the program is started once more, and how it ends."""

import subprocess

from waiting import PATIENCE
from window_test import WINDOW, WindowTest, main

SIDEBAR = (0xEB, 0xEF, 0xF1)
SLOW = 32


class ProgramTest(WindowTest):
    def open_viewer(self):
        """Starts the program and opens the viewer of a transcript, which covers a part of the sidebar."""
        window = self.start_on_file_screen()
        self.transcribe(window, self.media.speech("talk.wav", 30))
        window.expect("Done")
        window.press("Open Full View")
        window.inside("Transcript Viewer")
        self.eventually(lambda: not self.is_sidebar_in_front(), "the viewer in front")

    def is_sidebar_in_front(self):
        return self.session.pixel(200, 600) == SIDEBAR

    def test_a_second_start_brings_the_window_to_the_front_and_ends(self):
        self.open_viewer()
        before = self.history()
        second = self.session.start([self.build / "bin/sorvanta"], stdout=subprocess.DEVNULL)
        self.assertEqual(second.wait(PATIENCE), 0)
        self.eventually(self.is_sidebar_in_front, "the window in front")
        self.assertIsNone(self.program.poll())
        self.assertEqual(self.history(), before)

    def test_it_ends_with_its_window_though_a_viewer_is_open(self):
        self.open_viewer()
        self.session.close(WINDOW)
        self.assertEqual(self.exit_code(), 0)
        self.assertEqual(len(self.history()), 1)

    def test_a_request_of_the_system_to_end_leaves_no_engine_and_no_temporary_file(self):
        window = self.start_on_file_screen(SLOW)
        self.transcribe(window, self.media.speech("talk.mp4", 600))
        self.eventually(lambda: len(self.engines()) == 1, "the engine")
        self.assertEqual([file.suffix for file in self.session.temporary.iterdir()], [".wav"])
        self.program.terminate()
        self.assertEqual(self.exit_code(), 0)
        self.assertEqual(self.wait_for_engines(0), [])
        self.assertEqual(list(self.session.temporary.iterdir()), [])
        self.assertEqual(self.history(), [])


if __name__ == "__main__":
    main()
