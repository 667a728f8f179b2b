#!/usr/bin/python3
"""Reading a transcript: searched in its pane, opened in the viewer, heard while its line is marked, and its log."""

import time

from accessible_window import TEXT, Atspi, whole
from desktop_wish import DesktopWish
from sound import Sound, rising_tone
from window_test import FIRST_LINES, WINDOW, WindowTest, main

SECONDS = 100
VIEWER = "Transcript Viewer"
DASHED = "- Who is speaking here?"
STRIPPED = "Who is speaking here?"
STRIP = "Strip “- ”"
TOLERANCE = 0.8  # seconds: a tick of the player, the sound's way and the time to look
CARD = {1: (0x1D, 0x22, 0x25), 2: (0xFF, 0xFF, 0xFF)}
DARK, LIGHT = 1, 2


def seconds_of(timecode):
    hours, minutes, seconds = timecode.split(":")
    return 3600 * int(hours) + 60 * int(minutes) + float(seconds.replace(",", "."))


class ReadingTest(DesktopWish, WindowTest):
    def setUp(self):
        super().setUp()
        self.sound = Sound(self.session)

    def tearDown(self):
        super().tearDown()
        self.sound.end()

    def transcribed(self):
        """The window behind a finished run. @return it, and the lines of the transcript as (start, end, text)"""
        window = self.start_on_file_screen()
        self.transcribe(window, rising_tone(self.session.folder / "rising.wav", SECONDS))
        window.expect("Done")
        entry = self.history()[0]
        with open(entry["srtPath"], encoding="utf-8") as subtitles:
            blocks = [block.split("\n") for block in subtitles.read().strip().split("\n\n")]
        lines = [(*map(seconds_of, block[1].split(" --> ")), block[2]) for block in blocks]
        self.assertEqual([line[2] for line in lines], entry["text"].split("\n"))
        return window, lines

    def opened(self, window):
        """The viewer, opened from the pane."""
        window.press("Open Full View")
        viewer = window.inside(VIEWER)
        viewer.wait(viewer.transcript, "the lines in the viewer")
        return viewer

    def search(self, window, title, field, text):
        self.session.focus(title)
        x, y, width, height = window.place(field)
        self.session.click(x + width // 2, y + height // 2)
        self.session.type(text)

    def check_steps(self, window, count):
        """Steps through all hits, round both ends."""
        window.expect(f"1 / {count}")
        for position in (*range(2, count + 1), 1):
            window.press("Next match")
            window.expect(f"{position} / {count}")
        window.press("Previous match")
        window.expect(f"{count} / {count}")

    @whole
    def marked(self, viewer, scheme=LIGHT):
        """The texts of the marked rows in sight."""
        rows = viewer.expect("Transcript", [Atspi.Role.LIST])
        _, top, _, length = viewer.place_of(rows)
        found = []
        for node in viewer.nodes(rows):
            if node.get_role() not in TEXT or " → " in node.get_name():
                continue
            x, y, _, height = viewer.place_of(node)
            middle = y + height // 2
            if top < middle < top + length and self.session.pixel(x - 6, middle) != CARD[scheme]:
                found.append(node.get_name())
        return found

    def wait_for_mark(self, viewer, texts):
        viewer.wait(lambda: self.marked(viewer) == texts, f"the mark of {texts}")

    def check_mark_at_sound(self, viewer, lines):
        """What is heard is what is marked. @return the second of the file that was heard last"""
        before = self.sound.place()
        marked = self.marked(viewer)
        after = self.sound.place()
        self.assertIsNotNone(before, "something is heard")
        self.assertIsNotNone(after, "something is still heard")
        self.assertEqual(len(marked), 1, marked)
        fitting = [text for start, end, text in lines if start - TOLERANCE <= after and before <= end + TOLERANCE]
        self.assertIn(marked[0], fitting, f"from {before:.1f} to {after:.1f} s")
        return after

    @whole
    def is_mark_in_the_middle(self, viewer):
        _, top, _, length = viewer.place("Transcript", [Atspi.Role.LIST])
        marks = [viewer.place(text) for text in self.marked(viewer)]
        return [abs(y + height / 2 - top - length / 2) < 40 for _, y, _, height in marks] == [True]

    def slider(self, viewer, name):
        return viewer.expect(name, [Atspi.Role.SLIDER])

    def picture(self, name):
        time.sleep(0.4)  # the fade of a colour, the move of a list
        self.session.screenshot(self.build / "tests/e2e" / f"{name}.png")

    def test_hits_are_stepped_through_in_the_pane_and_in_the_viewer(self):
        window, lines = self.transcribed()
        count = sum(text.lower().count("the") for _, _, text in lines)
        self.assertGreater(count, 8)
        self.assertEqual(window.texts("0 / 0"), ["0 / 0"])
        self.search(window, WINDOW, "Search in transcript", "the")
        self.check_steps(window, count)

        viewer = self.opened(window)
        self.assertEqual(viewer.texts("0 / 0"), [], "its search is its own")
        self.search(viewer, VIEWER, "Search", "IN")
        self.check_steps(viewer, sum(text.lower().count("in") for _, _, text in lines))
        self.assertEqual(window.inside(WINDOW).texts(f"{count} / "), [f"{count} / {count}"])

    def test_the_mark_goes_with_the_sound(self):
        window, lines = self.transcribed()
        viewer = self.opened(window)
        viewer.expect("00:00")
        viewer.expect("01:40")
        self.assertEqual(self.marked(viewer), [])
        self.assertIsNone(self.sound.place(), "nothing is heard yet")

        viewer.press("Play")
        viewer.expect("Pause")
        self.wait_for_mark(viewer, FIRST_LINES[:1])
        self.check_mark_at_sound(viewer, lines)
        self.wait_for_mark(viewer, FIRST_LINES[1:2])
        self.check_mark_at_sound(viewer, lines)

        x, y, width, height = viewer.place("Playback position")
        clicked = time.monotonic()
        self.session.click(x + width // 2, y + height // 2)
        at = SECONDS / 2
        self.wait_for_mark(viewer, [text for start, end, text in lines if start <= at + 0.5 <= end])
        place = self.check_mark_at_sound(viewer, lines)
        self.assertGreater(place, at - 4)
        self.assertLess(place, at + 4 + time.monotonic() - clicked)
        viewer.wait(lambda: self.is_mark_in_the_middle(viewer), "the marked row in the middle")

        self.slider(viewer, "Playback position").set_current_value(6.0)
        self.wait_for_mark(viewer, FIRST_LINES[1:2])
        self.check_mark_at_sound(viewer, lines)

        viewer.press("Pause")
        viewer.expect("Play")
        self.eventually(lambda: self.sound.place() is None, "silence")
        self.assertEqual(self.marked(viewer), FIRST_LINES[1:2], "the mark stays where it paused")
        self.slider(viewer, "Playback position").set_current_value(float(SECONDS))
        viewer.wait(lambda: len(viewer.texts("01:40")) == 2, "the end")
        self.assertIsNone(self.sound.place(), "a seek does not start it")

        viewer.press("Play")
        viewer.expect("00:00")
        viewer.expect("Play")
        self.assertEqual(self.marked(viewer), [], "the end clears the mark")

    def test_stripped_dashes_go_from_viewer_and_screen(self):
        window, _ = self.transcribed()
        viewer = self.opened(window)
        screen = window.inside(WINDOW)
        for part in (screen, viewer):
            self.assertIn(DASHED, part.transcript())
        strip = viewer.expect(STRIP)
        viewer.act(strip, "Press" if "Press" in viewer.actions(strip) else "Toggle")
        for part in (screen, viewer):
            part.wait(lambda part=part: STRIPPED in part.transcript(), "the line without its dash")
            self.assertNotIn(DASHED, part.transcript())
        box = screen.expect(STRIP, [Atspi.Role.CHECK_BOX])
        self.assertTrue(screen.has_state(box, Atspi.StateType.CHECKED))
        screen.act(box, "Press")
        viewer.wait(lambda: DASHED in viewer.transcript(), "the dash in the viewer")

    def test_the_log_is_shown_whole_and_copied_by_keys(self):
        window, _ = self.transcribed()
        window.press("Show Logs")
        window.expect("Logs", [Atspi.Role.HEADING])
        rows = window.wait(lambda: self.log_rows(window), "the lines of the log")
        self.assertTrue(any("whisper_init" in row for row in rows), rows)
        self.session.focus(WINDOW)
        window.wait(lambda: window.focused() == "Logs", "the focus of the log")

        def copies():
            self.session.key("ctrl+a", "ctrl+c")  # again, if the window was not yet ready for keys
            return "[00:00:00.000 --> 00:00:04.200]" in self.clipboard()

        self.eventually(copies, "the log on the clipboard")
        copied = self.clipboard().split("\n")
        self.assertEqual(copied[:len(rows) - 1], rows[:-1])
        self.assertGreater(len(copied), 30)
        self.picture("log-light")
        window.press("Close")
        window.expect_gone("Logs", [Atspi.Role.HEADING])

    def log_rows(self, window):
        return window.rows("Logs")

    def test_lines_are_selected_by_keys_in_pane_and_viewer(self):
        window, lines = self.transcribed()
        self.session.focus(WINDOW)
        self.tab_to(window, "Transcript")
        self.session.key("Return", "shift+End", "ctrl+c")
        self.eventually(lambda: self.clipboard().strip() == lines[0][2], "the first line on the clipboard")
        self.session.key("Down", "shift+Right", "shift+Right", "ctrl+c")
        self.eventually(lambda: self.clipboard().strip() == lines[1][2][:2], "two letters of the second one")
        self.session.key("ctrl+a", "ctrl+c")
        self.eventually(lambda: self.clipboard().strip() == "\n".join(text for _, _, text in lines), "all lines")

    def test_pictures_of_pane_and_viewer_light_and_dark_small_and_large(self):
        self.wish(LIGHT)
        window, lines = self.transcribed()
        self.search(window, WINDOW, "Search in transcript", "the")
        window.press("Next match")
        self.picture("pane-light")
        self.wish(DARK)
        self.picture("pane-dark")
        viewer = self.opened(window)
        self.search(viewer, VIEWER, "Search", "the")
        viewer.press("Next match")
        self.slider(viewer, "Playback position").set_current_value(10.0)
        viewer.wait(lambda: self.marked(viewer, DARK) == [DASHED], "the mark")
        for name, scheme in (("dark", DARK), ("light", LIGHT)):
            self.wish(scheme)
            viewer.wait(lambda scheme=scheme: self.marked(viewer, scheme) == [DASHED], f"the {name} look")
            for size in (16, 12, 96):
                self.slider(viewer, "Text Size").set_current_value(float(size))
                viewer.wait(lambda size=size: viewer.texts(str(size)), f"the size {size}")
                self.picture(f"viewer-{name}-{size}")
            self.slider(viewer, "Text Size").set_current_value(16.0)


if __name__ == "__main__":
    main(size=(1400, 900))
