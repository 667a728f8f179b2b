#!/usr/bin/python3
"""What becomes of a transcript in the menu Export: files saved through the panel and into the Downloads folder."""

from accessible_window import Atspi
from exports import SUBMENU, Exports
from window_test import WINDOW, WindowTest, main

PANEL = "Save As"


class ExportTest(Exports, WindowTest):
    def transcribed(self):
        """The window behind a finished run. @return it, and the entry of the run in the history"""
        window = self.start_on_file_screen()
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Done")
        return window, self.history()[0]

    def test_every_format_is_saved_through_the_panel(self):
        window, entry = self.transcribed()
        self.save_every_format(window, entry, "talk")
        self.assertIsNone(window.find("Copy Error"))

    def test_every_format_is_downloaded(self):
        folder = self.make_downloads()
        window, entry = self.transcribed()
        self.download_every_format(window, entry, "talk", folder)

    def test_a_second_download_leaves_the_first(self):
        folder = self.make_downloads()
        (folder / "talk_transcription.txt").write_text("mine")
        window, entry = self.transcribed()
        self.open_submenu(window)
        window.act(window.menu_items("TXT")[1], "Press")
        window.expect("Saved TXT to Downloads/talk_transcription-2.txt")
        self.assertEqual((folder / "talk_transcription.txt").read_text(), "mine")
        self.check(folder / "talk_transcription-2.txt", entry)

    def test_the_downloads_folder_is_the_one_that_the_user_chose(self):
        folder = self.make_downloads("Geladen")
        self.make_downloads()
        config = self.session.home / ".config"
        config.mkdir(exist_ok=True)
        (config / "user-dirs.dirs").write_text('XDG_DOWNLOAD_DIR="$HOME/Geladen"\n')
        window, entry = self.transcribed()
        self.open_submenu(window)
        window.act(window.menu_items("TXT")[1], "Press")
        window.expect("Saved TXT to Downloads/talk_transcription.txt")
        self.check(folder / "talk_transcription.txt", entry)

    def test_without_a_downloads_folder_it_says_so(self):
        window, _ = self.transcribed()
        self.open_submenu(window)
        window.act(window.menu_items("TXT")[1], "Press")
        window.expect("Could not locate Downloads folder.")
        window.expect("Copy Error")
        window.expect("Done")

    def test_a_declined_panel_and_a_failed_save_change_nothing(self):
        window, _ = self.transcribed()
        self.open_menu(window)
        window.act(window.menu_items("TXT")[0], "Press")
        window.press("Cancel")
        window.expect_gone(window.is_file_name, [Atspi.Role.TEXT])
        window.expect("Done")
        self.assertIsNone(window.find("Copy Error"))

        target = self.session.home / "a folder.txt"
        self.open_menu(window)
        window.act(window.menu_items("TXT")[0], "Press")
        window.expect(window.is_file_name, [Atspi.Role.TEXT]).set_text_contents(str(target))
        target.mkdir()  # behind the panel's back
        window.press("Save", roles=[Atspi.Role.PUSH_BUTTON])
        window.press("Cancel")
        window.expect("Done")
        self.assertEqual(list(target.iterdir()), [])

    def test_the_menu_is_used_by_keyboard(self):
        folder = self.make_downloads()
        window, entry = self.transcribed()
        self.session.focus(WINDOW)
        self.tab_to(window, "Export")
        self.session.key("space")
        window.wait(window.menu_items, "the menu")
        self.session.key("Escape")
        window.wait(lambda: not window.menu_items(), "the end of the menu")

        self.session.key("space")
        window.wait(window.menu_items, "the menu")
        self.session.key("Down", "Down", "Return")
        self.session.focus(PANEL)
        path = self.session.home / "by keyboard.srt"
        self.session.key("ctrl+a")
        self.session.type(str(path))
        self.session.key("Return")
        window.expect("Saved SRT to by keyboard.srt")
        self.check(path, entry)

        self.session.focus(WINDOW)
        window.wait(lambda: window.focused() == "Export", "the focus of the menu's button")
        self.session.key("space")
        window.wait(window.menu_items, "the menu")
        self.session.key("Up", *["Down"] * 10, "Right")
        window.wait(lambda: len(window.menu_items()) == 19, "the submenu")
        self.session.key("Down", "Down", "Return")
        window.expect("Saved VTT to Downloads/talk_transcription.vtt")
        self.check(folder / "talk_transcription.vtt", entry)

    def test_the_menu_is_used_by_mouse(self):
        folder = self.make_downloads()
        window, entry = self.transcribed()
        self.click(window, window.expect("Export"))
        window.wait(lambda: len(window.menu_items()) == 10, "the menu")
        self.click(window, window.menu_items("HTML")[0])
        path = self.session.home / "by mouse.html"
        self.assertEqual(window.save_file(path), "talk_transcription.html")
        window.expect("Saved HTML to by mouse.html")
        self.check(path, entry)

        self.click(window, window.expect("Export"))
        window.wait(lambda: len(window.menu_items()) == 10, "the menu")
        self.click(window, window.menu_items(SUBMENU)[0])
        window.wait(lambda: len(window.menu_items()) == 19, "the submenu")
        self.click(window, window.menu_items("JSON")[1])
        window.expect("Saved JSON to Downloads/talk_transcription.json")
        self.check(folder / "talk_transcription.json", entry)

    def click(self, window, node):
        x, y, width, height = window.place_of(node)
        self.session.click(x + width // 2, y + height // 2)


if __name__ == "__main__":
    main()
