#!/usr/bin/python3
"""The section that browses the history: real runs found, searched, exported, played, deleted, and found again."""

import datetime
import json
import pathlib
import shutil

from accessible_window import Atspi, whole
from exports import LINES, Exports
from sound_server import SoundServer
from window_test import FIRST_LINES, WINDOW, WindowTest, main

SECTIONS = ["Transcript Audio From File", "Record Audio to Transcript", "Record Meeting (System Audio)",
            "Batch Processing", "History", "Models Settings", "Help"]
SLOW = 32


class HistoryTest(Exports, WindowTest):
    def heard(self):
        """The loudest sample of what is played for half a second from now on, from 0 to 32768."""
        return max(abs(sample) for sample in self.sound.hear(0.5))

    def write_history(self, entries):
        self.store_folder().mkdir(parents=True, exist_ok=True)
        self.history_file().write_text(json.dumps(entries), encoding="utf-8")

    def run_over(self, window, *names):
        """Transcribes these files, one after the other."""
        for count, name in enumerate(names, len(self.history()) + 1):
            self.transcribe(window, self.media.speech(name, 100))
            self.eventually(lambda: len(self.history()) == count, "the end of a run")
            window.expect("Done")

    @whole
    def rows(self, window):
        """The names of the rows in sight, from top to bottom."""
        rows = [node for node in window.showing([Atspi.Role.LIST_ITEM]) if node.get_name() not in SECTIONS]
        return [node.get_name() for node in sorted(rows, key=lambda row: window.place_of(row)[1])]

    def expect_rows(self, window, names):
        window.wait(lambda: self.rows(window) == names, f"the rows {names}")

    def search(self, window, text):
        """Types into the search, in place of what is there."""
        x, y, width, height = window.place("Search in history")
        self.session.focus(WINDOW)
        self.session.click(x + width // 2, y + height // 2)
        window.wait(lambda: window.focused() == "Search in history", "the focus of the search")
        self.session.key("ctrl+a", "BackSpace")
        if text:
            self.session.type(text)

    def open_history(self, window):
        window.press_row("History")
        window.expect("All transcriptions saved to Application Support/sorvanta.")

    def medium_date(self, entry):
        """How the detail writes when an entry was made."""
        created = datetime.datetime.fromisoformat(entry["createdAt"].replace("Z", "+00:00")).astimezone()
        clock = f"{created.hour % 12 or 12}:{created:%M:%S}\u202f{'AM' if created.hour < 12 else 'PM'}"
        return f"{created:%b} {created.day}, {created.year} at {clock}"

    def test_an_empty_history_says_so(self):
        window = self.start_on_file_screen()
        self.open_history(window)
        window.expect("No transcriptions saved yet.")
        window.expect("Select a transcription to view details.")
        self.assertEqual(self.rows(window), [])

    def test_runs_are_found_searched_exported_played_deleted_and_found_again(self):
        self.sound = SoundServer(self.session)
        self.addCleanup(self.sound.end)
        window = self.start_on_file_screen()
        self.run_over(window, "talk.wav", "walk.m4a", "film.mp4")
        entries = self.history()
        self.assertEqual([pathlib.Path(entry["sourceLabel"]).name for entry in entries],
                         ["film.mp4", "walk.m4a", "talk.wav"])

        # Found; the one that came first is still selected.
        self.open_history(window)
        self.expect_rows(window, ["film.mp4", "walk.m4a", "talk.wav"])
        window.expect(self.medium_date(entries[2]))
        window.expect(entries[2]["text"])
        window.wait(lambda: window.texts().count(FIRST_LINES[0]) == 3, "the previews")
        self.assertIsNone(window.find("Play Audio"))

        # Searched.
        self.search(window, "WALK")
        self.expect_rows(window, ["walk.m4a"])
        window.expect(self.medium_date(entries[1]))
        self.search(window, "tiny")
        self.expect_rows(window, ["film.mp4", "walk.m4a", "talk.wav"])
        self.search(window, "zebra")
        window.expect("Select a transcription to view details.")
        self.assertEqual(self.rows(window), [])
        self.search(window, "")
        self.expect_rows(window, ["film.mp4", "walk.m4a", "talk.wav"])

        # Exported.
        window.press_row("talk.wav")
        window.expect(self.medium_date(entries[2]))
        self.open_menu(window)
        window.act(window.menu_items("SRT")[0], "Press")
        path = self.session.home / "walked.srt"
        self.assertEqual(window.save_file(path), "talk_history.srt")
        window.expect("Exported to walked.srt")
        self.assertEqual(path.read_bytes(), pathlib.Path(entries[2]["srtPath"]).read_bytes())
        downloads = self.make_downloads()
        self.open_submenu(window)
        window.act(window.menu_items("DOCX")[1], "Press")
        window.expect("Saved to Downloads/talk_history.docx")
        self.check(downloads / "talk_history.docx", entries[2])

        # A recording that comes to an entry on the disk is played, and exported.
        recording = self.store_folder() / "recordings/talk.wav"
        shutil.copy(entries[2]["sourceLabel"], recording)
        entries[2]["recordingPath"] = str(recording)
        self.write_history(entries)
        window.press("Reload")
        window.press("Play Audio")
        window.expect("Pause Audio")
        self.assertGreater(self.heard(), 300)
        window.wait(lambda: [text for text in window.texts("0:0") if text > "0:00"], "the position to move")
        self.assertEqual(window.texts("1:40"), ["1:40"])
        window.press("Pause Audio")
        window.expect("Play Audio")
        self.eventually(lambda: self.heard() < 100, "silence")
        window.press("Export Audio")
        copy = self.session.home / "copy.wav"
        self.assertEqual(window.save_file(copy), "talk_history.wav")
        window.expect("Exported to copy.wav")
        self.assertEqual(copy.read_bytes(), recording.read_bytes())

        # The viewer plays the same sound.
        window.press("Open Full View")
        window.press("Play")
        window.expect("Pause Audio")
        self.assertGreater(self.heard(), 300)
        self.assertEqual(len(window.names([Atspi.Role.SLIDER])), 5, "of both windows")
        window.press("Close")
        window.expect_gone("View Options")

        # Deleted while it plays.
        window.press("Delete")
        window.expect("Delete this history entry?")
        window.press("Cancel")
        window.expect_gone("Delete this history entry?")
        self.assertEqual(len(self.history()), 3)
        self.assertGreater(self.heard(), 300)
        window.press("Delete")
        window.expect("Delete this history entry?")
        window.wait(lambda: len(self.buttons(window, "Delete")) == 2, "the button of the dialog")
        window.act(self.buttons(window, "Delete")[-1], "Press")
        window.expect_gone("Delete this history entry?")
        self.expect_rows(window, ["film.mp4", "walk.m4a"])
        window.expect(self.medium_date(entries[0]))
        self.eventually(lambda: self.heard() < 100, "silence")
        for key in ("txtPath", "srtPath", "recordingPath"):
            self.assertFalse(pathlib.Path(entries[2][key]).exists(), key)
        self.assertEqual([entry["id"] for entry in self.history()], [entries[0]["id"], entries[1]["id"]])

        # Found again.
        self.program.terminate()
        self.program.wait()
        window = self.start()
        self.open_history(window)
        self.expect_rows(window, ["film.mp4", "walk.m4a"])
        window.press_row("walk.m4a")
        window.expect(self.medium_date(entries[1]))
        window.expect(entries[1]["text"])
        self.assertEqual(len(entries[1]["text"].split("\n")), LINES)

    @staticmethod
    @whole
    def buttons(window, name):
        return [node for node in window.showing([Atspi.Role.PUSH_BUTTON]) if node.get_name() == name]

    def test_ten_thousand_entries_are_searched_while_a_run_goes_on(self):
        self.write_history([{
            "createdAt": f"2026-01-{1 + number // 500:02}T10:{number // 10 % 60:02}:00.000Z", "diarization": False,
            "id": f"{number}-a1b2c3", "language": "en", "model": "Base", "sourceLabel": f"/music/talk {number}.wav",
            "text": f"Talk number {number} is about the harbour.\n" + "And what it was like before. " * 150,
            "txtPath": f"/nowhere/{number}.txt"} for number in range(10000)])
        window = self.start_on_file_screen(SLOW)
        self.transcribe(window, self.media.speech("long.wav", 600))
        window.expect("Stop")
        window.wait(window.transcript, "the first lines")
        self.open_history(window)
        self.search(window, "number 7777 ")
        self.expect_rows(window, ["talk 7777.wav"])
        self.search(window, "like before")
        window.wait(lambda: len(self.rows(window)) > 3, "many rows")
        self.assertEqual(len(self.engines()), 1, "the run goes on")
        self.search(window, "long.wav")
        window.expect("Select a transcription to view details.")
        window.press_row("Transcript Audio From File")
        window.wait(window.transcript, "the lines of the run")
        window.press("Stop")
        window.expect("Cancelled")
        window.press_row("History")
        self.assertEqual(self.rows(window), [])
        self.assertEqual(len(self.history()), 10000)

    def test_the_list_is_used_by_keyboard(self):
        window = self.start_on_file_screen()
        self.run_over(window, "talk.wav", "walk.m4a")
        entries = self.history()
        self.open_history(window)
        self.search(window, "")
        self.session.key("Down")
        window.wait(lambda: window.focused() == "Transcriptions", "the focus of the list")
        self.session.key("Down")
        window.expect(self.medium_date(entries[1]))
        self.tab_to(window, "Delete")
        self.session.key("space")
        window.wait(lambda: self.focused_buttons(window) == ["Cancel"], "the focus of “Cancel”")
        self.session.key("Tab")
        window.wait(lambda: self.focused_buttons(window) == ["Delete"], "the focus of “Delete”")
        self.session.key("space")
        self.expect_rows(window, ["walk.m4a"])
        self.eventually(lambda: len(self.history()) == 1, "the history without the entry")

    @staticmethod
    @whole
    def focused_buttons(window):
        return [node.get_name() for node in window.showing([Atspi.Role.PUSH_BUTTON])
                if window.has_state(node, Atspi.StateType.FOCUSED)]


if __name__ == "__main__":
    main()
