"""The menu Export in the window, and what the files that it makes must hold."""

import csv
import html.parser
import io
import json
import re
import subprocess

import docx

from window_test import FIRST_LINES

LINES = 15  # what the computed model recites for 100 seconds
LABELS = {"txt": "TXT", "srt": "SRT", "vtt": "VTT", "csv": "CSV", "docx": "DOCX", "pdf": "PDF",
          "md": "Markdown (.md)", "html": "HTML", "json": "JSON"}
WORDS = {**LABELS, "md": "Markdown"}
SUBMENU = "Download to Downloads"


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


class Exports:
    """For a WindowTest that has transcribed 100 seconds."""

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
            paragraphs = docx.Document(io.BytesIO(data)).paragraphs
            self.assertEqual([paragraph.text for paragraph in paragraphs], lines)
            return
        if kind == "pdf":
            read = subprocess.run(["pdftotext", path, "-"], check=True, capture_output=True)
            self.assertEqual(read.stderr, b"")
            self.assertEqual(read.stdout.decode().split(), entry["text"].split())
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

    def save_every_format(self, window, entry, name):
        """`name` is that of the file that was transcribed, without its extension."""
        for kind, label in LABELS.items():
            with self.subTest(kind):
                path = self.session.home / f"My talk.{kind}"
                self.open_menu(window)
                window.act(window.menu_items(label)[0], "Press")
                self.assertEqual(window.save_file(path), f"{name}_transcription.{kind}")
                window.expect(f"Saved {WORDS[kind]} to My talk.{kind}")
                self.check(path, entry)

    def download_every_format(self, window, entry, name, folder):
        for kind, label in LABELS.items():
            with self.subTest(kind):
                self.open_submenu(window)
                window.act(window.menu_items(label)[1], "Press")
                window.expect(f"Saved {WORDS[kind]} to Downloads/{name}_transcription.{kind}")
                self.check(folder / f"{name}_transcription.{kind}", entry)
        self.assertEqual(len(list(folder.iterdir())), len(LABELS))
