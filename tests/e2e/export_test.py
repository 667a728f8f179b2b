#!/usr/bin/python3
"""What becomes of a transcript in the menu Export: files saved through the panel and into the Downloads folder."""

import csv
import html.parser
import io
import json
import re
import zipfile

from accessible_window import Atspi
from window_test import FIRST_LINES, WINDOW, WindowTest, main

LINES = 15  # what the computed model recites for 100 seconds
LABELS = {"txt": "TXT", "srt": "SRT", "vtt": "VTT", "csv": "CSV", "docx": "DOCX", "pdf": "PDF",
          "md": "Markdown (.md)", "html": "HTML", "json": "JSON"}
WORDS = {**LABELS, "md": "Markdown"}
SUBMENU = "Download to Downloads"
PANEL = "Save As"


class Paragraphs(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.texts = []
        self._is_inside = False
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        if tag == "p":
            self.texts.append("")
            self._is_inside = True

    def handle_endtag(self, tag):
        if tag == "p":
            self._is_inside = False

    def handle_data(self, data):
        if self._is_inside:
            self.texts[-1] += data


class ExportTest(WindowTest):
    def transcribed(self):
        """The window behind a finished run. @return it, and the entry of the run in the history"""
        window = self.start_on_file_screen()
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Done", patience=60)
        return window, self.history()[0]

    def open_menu(self, window):
        window.press("Export")
        window.wait(lambda: len(window.menu_items()) == 10, "the menu")

    def open_submenu(self, window):
        self.open_menu(window)
        window.act(window.menu_items(SUBMENU)[0], "Press")
        window.wait(lambda: len(window.menu_items()) == 19, "the submenu")

    def make_downloads(self, name="Downloads"):
        folder = self.session.home / name
        folder.mkdir()
        return folder

    def check(self, path, entry):
        """Whether the file holds the transcript of the entry in the form of its extension."""
        kind = path.suffix[1:]
        lines = entry["text"].split("\n")
        self.assertEqual(lines[:2], FIRST_LINES)
        self.assertEqual(len(lines), LINES)
        data = path.read_bytes()
        if kind == "docx":
            with zipfile.ZipFile(io.BytesIO(data)) as document:
                self.assertIsNone(document.testzip())
                body = document.read("word/document.xml").decode()
            for line in lines:
                self.assertIn(line, re.sub(r"<[^>]*>", "", body))
            return
        if kind == "pdf":
            self.assertTrue(data.startswith(b"%PDF-"))
            self.assertTrue(data.rstrip().endswith(b"%%EOF"))
            self.assertRegex(data, rb"/MediaBox\s*\[\s*0 0 612(\.0+)? 792(\.0+)?\s*\]")
            return
        text = data.decode("utf-8")
        self.assertFalse(text.startswith("\ufeff"))
        self.assertNotIn("\r", text)
        if kind == "txt":
            self.assertEqual(text, entry["text"])
        elif kind == "srt":
            with open(entry["srtPath"], encoding="utf-8") as stored:
                self.assertEqual(text, stored.read())
        elif kind == "vtt":
            self.assertTrue(text.startswith("WEBVTT\n\n00:00:00.000 --> 00:00:04.200\n" + lines[0] + "\n\n"))
            self.assertEqual(text.count(" --> "), LINES)
        elif kind == "csv":
            rows = list(csv.reader(io.StringIO(text)))
            self.assertEqual(rows[0], ["start", "end", "text"])
            self.assertEqual([row[2] for row in rows[1:]], lines)
        elif kind == "md":
            self.assertEqual([re.sub(r"^\*\*\[.* -> .*\]\*\* ", "", part) for part in text.split("\n\n")], lines)
        elif kind == "html":
            self.assertEqual([re.sub(r"^\[.* -> .*\] ", "", part) for part in Paragraphs(text).texts], lines)
        else:
            content = json.loads(text)
            self.assertEqual(content["text"], entry["text"])
            self.assertEqual([segment["text"] for segment in content["segments"]], lines)

    def test_every_format_is_saved_through_the_panel(self):
        window, entry = self.transcribed()
        for kind, label in LABELS.items():
            with self.subTest(kind):
                path = self.session.home / f"My talk.{kind}"
                self.open_menu(window)
                window.act(window.menu_items(label)[0], "Press")
                self.assertEqual(window.save_file(path), f"talk_transcription.{kind}")
                window.expect(f"Saved {WORDS[kind]} to My talk.{kind}")
                self.check(path, entry)
        self.assertIsNone(window.find("Copy Error"))

    def test_every_format_is_downloaded(self):
        folder = self.make_downloads()
        window, entry = self.transcribed()
        for kind, label in LABELS.items():
            with self.subTest(kind):
                self.open_submenu(window)
                window.act(window.menu_items(label)[1], "Press")
                window.expect(f"Saved {WORDS[kind]} to Downloads/talk_transcription.{kind}")
                self.check(folder / f"talk_transcription.{kind}", entry)
        self.assertEqual(len(list(folder.iterdir())), len(LABELS))

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
        for _ in range(20):
            if window.focused() == "Export":
                break
            self.session.key("Tab")
        window.wait(lambda: window.focused() == "Export", "the focus of the menu's button")
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
        self.click(window.expect("Export"))
        window.wait(lambda: len(window.menu_items()) == 10, "the menu")
        self.click(window.menu_items("HTML")[0])
        path = self.session.home / "by mouse.html"
        self.assertEqual(window.save_file(path), "talk_transcription.html")
        window.expect("Saved HTML to by mouse.html")
        self.check(path, entry)

        self.click(window.expect("Export"))
        window.wait(lambda: len(window.menu_items()) == 10, "the menu")
        self.click(window.menu_items(SUBMENU)[0])
        window.wait(lambda: len(window.menu_items()) == 19, "the submenu")
        self.click(window.menu_items("JSON")[1])
        window.expect("Saved JSON to Downloads/talk_transcription.json")
        self.check(folder / "talk_transcription.json", entry)

    def click(self, node):
        area = node.get_extents(Atspi.CoordType.SCREEN)
        self.session.click(area.x + area.width // 2, area.y + area.height // 2)


if __name__ == "__main__":
    main()
