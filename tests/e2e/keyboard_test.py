#!/usr/bin/python3
"""The whole job without a mouse and without assistive technology: accessibility is used only to look."""

from accessible_window import Atspi
from window_test import FIRST_LINES, WINDOW, WindowTest, main

OPEN = "Open Full View"
PANEL = "Open"
VIEWER = "Transcript Viewer"


class KeyboardTest(WindowTest):
    def answer_panel(self, window, path):
        self.session.focus(PANEL)
        window.expect(lambda name: name.startswith("File name"), [Atspi.Role.TEXT])
        self.session.type(str(path))
        self.session.key("Return")
        self.session.focus(WINDOW)

    def test_the_whole_job_is_done_by_keyboard(self):
        path = self.media.speech("talk.wav", 100)
        self.provide_model(32)
        window = self.start()
        self.session.focus(WINDOW)
        window.expect("I Agree and Continue")
        self.tab_to(window, "I Agree and Continue")
        self.session.key("space")

        window.expect("Choose File…")
        self.tab_to(window, "Choose File…")
        self.session.key("space")
        self.answer_panel(window, path)
        window.expect("talk.wav")

        self.tab_to(window, "Language")
        self.session.key("space")
        window.expect("Afrikaans (af)")
        self.session.key("Down", "Down", "Return")
        self.assertEqual(self.picked(window), "Amharic (am)")

        self.tab_to(window, "Transcribe")
        self.session.key("Return")
        window.expect("Stop")
        self.tab_to(window, "Stop")
        self.session.key("space")
        window.expect("Cancelled")
        self.assertEqual(self.history(), [])

        self.tab_to(window, "Transcribe")
        self.session.key("space")
        window.expect("Done")
        self.assertEqual(window.transcript()[:2], FIRST_LINES)
        self.assertEqual([entry["language"] for entry in self.history()], ["am"])

        self.tab_to(window, "Transcript")
        first = window.place(FIRST_LINES[0])
        self.session.key("Down")
        self.eventually(lambda: window.place(FIRST_LINES[0]) != first, "the text to scroll")

        self.tab_to(window, "Sections")
        self.session.key("End")
        window.expect("Key links")
        self.tab_to(window, "Privacy Policy")
        before = len(self.session.opened_addresses())
        self.session.key("Return")
        self.eventually(lambda: len(self.session.opened_addresses()) > before, "the address in the browser")
        self.assertTrue(self.session.opened_addresses()[-1].endswith("privacy-policy/"))

    def test_who_comes_back_from_another_window_finds_all_as_it_was(self):
        window = self.start_on_file_screen()
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Done")
        self.session.resize(WINDOW, 720, 480)
        self.session.focus(WINDOW)
        self.tab_to(window, OPEN)
        place = window.place(OPEN)
        self.session.key("space")
        self.session.focus(VIEWER)
        viewer = window.inside(VIEWER)
        self.session.key("Tab")
        viewer.wait(viewer.focused, "the focus in the viewer")
        self.session.focus(WINDOW)
        window.wait(lambda: window.focused() == OPEN, "the focus where it was")
        self.assertEqual(window.place(OPEN), place)
        self.session.close(VIEWER)
        window.wait(lambda: window.find(VIEWER) is None, "the end of the viewer")
        self.session.focus(WINDOW)
        self.session.key("space")
        window.inside(VIEWER)

    def picked(self, window):
        window.wait(lambda: window.find("Afrikaans (af)") is None, "the end of the choices")
        return window.shown_choice("Language")


if __name__ == "__main__":
    main()
