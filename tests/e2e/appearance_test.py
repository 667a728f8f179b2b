#!/usr/bin/python3
"""Light and dark as the desktop wishes, wide and small."""

import subprocess
import time

from desktop_wish import DesktopWish
from window_test import FIRST_LINES, WINDOW, WindowTest, main

NOTHING = (0, 0, 0)  # the display without a window
LIGHT = (0xF5, 0xF7, 0xF8)
DARK = (0x15, 0x19, 0x1B)
PLAIN = (270, 5)  # nothing but the window's own colour stands there, right of the sidebar
OUTSIDE_OF_SMALL = (1000, 5)
LONG_NAME = "A very long name of a recording that no window can show in one line, made on a rainy day in November.wav"
SMALL = (720, 480)


class AppearanceTest(DesktopWish, WindowTest):
    def color(self):
        return self.session.pixel(*PLAIN)

    def expect_color(self, color):
        self.eventually(lambda: self.color() == color, f"the colour {color}, not {self.color()}")

    def picture(self, name):
        time.sleep(0.3)  # the fade of a colour
        self.session.screenshot(self.build / "tests/e2e" / f"{name}.png")

    def colors_of_start(self):
        """The colours of the window, from its first frame on for two seconds."""
        self.program = self.session.start([self.build / "bin/sorvanta"], stdout=subprocess.DEVNULL)
        seen = []
        end = time.monotonic() + 30
        while time.monotonic() < end:
            color = self.color()
            if color == NOTHING or color in seen:
                continue
            if not seen:
                end = time.monotonic() + 2
            seen.append(color)
        return seen

    def test_a_dark_desktop_has_a_dark_window_from_its_first_frame(self):
        self.accept_policies()
        self.wish(1)
        self.assertEqual(self.colors_of_start(), [DARK])

    def test_a_light_desktop_has_a_light_window_from_its_first_frame(self):
        self.accept_policies()
        self.wish(2)
        self.assertEqual(self.colors_of_start(), [LIGHT])

    def test_a_desktop_without_a_wish_has_a_light_window(self):
        self.accept_policies()
        self.assertEqual(self.colors_of_start(), [LIGHT])

    def test_the_window_follows_the_desktop_live(self):
        self.wish(1)
        self.start_on_file_screen()
        self.expect_color(DARK)
        for scheme, color in ((2, LIGHT), (1, DARK), (0, LIGHT)):
            self.wish(scheme)
            self.expect_color(color)

    def test_pictures_of_a_run_light_and_dark_wide_and_small_with_a_long_name(self):
        self.wish(2)
        window = self.start_on_file_screen(32)
        speech = self.media.speech("talk.wav", 100)
        path = self.session.folder / LONG_NAME
        path.hardlink_to(speech)
        self.transcribe(window, path)
        window.expect(FIRST_LINES[0])
        self.picture("running-light-wide")
        self.wish(1)
        self.expect_color(DARK)
        self.picture("running-dark-wide")
        window.expect("Done")
        self.session.resize(WINDOW, *SMALL)
        self.eventually(lambda: self.session.pixel(*OUTSIDE_OF_SMALL) == NOTHING, "the small window")
        self.expect_color(DARK)
        self.picture("done-dark-small")
        self.wish(2)
        self.expect_color(LIGHT)
        self.picture("done-light-small")
        for name in (LONG_NAME, "Choose File…", "Model", "Language"):
            x, _, width, _ = window.place(name)
            self.assertGreaterEqual(x, 260, f"“{name}” stands beside the sidebar")
            self.assertLessEqual(x + width, SMALL[0], f"“{name}” stands within the small window")


if __name__ == "__main__":
    main()
