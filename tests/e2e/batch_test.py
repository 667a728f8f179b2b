#!/usr/bin/python3
"""Many files one after the other: a broken one among them, a stop in the middle, all results exported, and a quit."""

import io
import pathlib
import shutil
import wave

import docx

import accessibility_test
from accessible_window import BUTTON, Atspi
from sound import Sound, rising_tone
from window_test import FIRST_LINES, WINDOW, WindowTest, main

SECONDS = 100
HOURS = 5  # of a film that takes some seconds to convert
SIZE = (1200, 1300)  # which shows the whole page


class BatchTest(WindowTest):
    def start_on_batch_screen(self, layers=1):
        window = self.start_on_file_screen(layers)
        self.session.resize(WINDOW, *SIZE)
        window.press_row("Batch Processing")
        window.expect("Choose Files…")
        return window

    def speech(self, name, kind="wav", seconds=SECONDS):
        """A file of spoken words in this test's own folder."""
        folder = self.session.home / "files"
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(self.media.speech(f"{seconds}.{kind}", seconds), path)
        return path

    def choose_files(self, window, paths):
        for path in paths:
            window.press("Choose Files…")
            window.choose_file(path)
            window.expect("Choose Files…", BUTTON)
        count = len(paths)
        window.expect("1 file ready" if count == 1 else f"{count} files ready")

    def rows(self, window):
        """Names and status words of the results in sight."""
        return [name for name in window.names([Atspi.Role.LIST_ITEM]) if ", " in name]

    def wait_for_rows(self, window, rows):
        window.wait(lambda: self.rows(window) == rows, f"the rows {rows}")

    def converted_files(self):
        return list(self.session.temporary.glob("*.wav"))

    def export_all(self, window, label, folder):
        window.press("Export All")
        window.wait(lambda: len(window.menu_items()) == 9, "the menu")
        window.act(window.menu_items(label)[0], "Press")
        field = window.expect(lambda name: name.startswith("Directory"), [Atspi.Role.TEXT])
        field.set_text_contents(str(folder))
        window.press("Choose Folder", roles=[Atspi.Role.PUSH_BUTTON])

    def test_a_batch_is_transcribed_exported_and_kept(self):
        window = self.start_on_batch_screen()
        names = ["one.wav", "two.mp3", "three.m4a", "film.mp4", "again/one.wav"]
        paths = [self.speech(name, name.rsplit(".", 1)[1]) for name in names]
        self.choose_files(window, paths)
        window.press("Transcribe Files")
        self.wait_for_rows(window, ["one.wav, Done", "two.mp3, Done", "three.m4a, Done", "film.mp4, Done",
                                    "one.wav, Done"])
        window.expect_gone("Stop")
        window.press_row("film.mp4, Done")
        window.wait(lambda: window.transcript()[:2] == FIRST_LINES, "the selected transcript")
        self.assertEqual([entry["sourceLabel"] for entry in reversed(self.history())], [str(path) for path in paths])
        for entry in self.history():
            self.assertEqual(entry["text"].split("\n")[:2], FIRST_LINES)
            self.assertEqual(entry["model"], "Tiny")
        self.assertEqual(self.converted_files(), [])
        self.assertEqual(accessibility_test.AccessibilityTest.offenders(self, window), [])

        folder = self.session.home / "exported"
        folder.mkdir()
        self.export_all(window, "SRT", folder)
        window.expect("Exported 5 SRT file(s) to exported")
        self.export_all(window, "DOCX", folder)
        window.expect("Exported 5 DOCX file(s) to exported")
        stems = ["one_transcription", "two_transcription", "three_transcription", "film_transcription",
                 "one_transcription (1)"]
        self.assertEqual(sorted(path.name for path in folder.iterdir()),
                         sorted(f"{stem}.{kind}" for stem in stems for kind in ("srt", "docx")))
        for stem, entry in zip(stems, reversed(self.history())):
            with open(entry["srtPath"], encoding="utf-8") as stored:
                self.assertEqual((folder / f"{stem}.srt").read_text(encoding="utf-8"), stored.read())
            document = docx.Document(io.BytesIO((folder / f"{stem}.docx").read_bytes()))
            self.assertEqual([paragraph.text for paragraph in document.paragraphs], entry["text"].split("\n"))

    def test_a_broken_file_ends_the_batch_and_leaves_the_results_before_it(self):
        window = self.start_on_batch_screen()
        broken = self.session.home / "files/broken.mp4"
        broken.parent.mkdir()
        broken.write_bytes(b"This is no film." * 1000)
        self.choose_files(window, [self.speech("film.mp4", "mp4"), broken, self.speech("late.wav")])
        window.press("Transcribe Files")
        window.expect("Could not convert broken.mp4 for transcription.")
        self.wait_for_rows(window, ["film.mp4, Done", "broken.mp4, Pending", "late.wav, Pending"])
        window.expect_gone("Stop")
        self.assertEqual([entry["sourceLabel"].rsplit("/", 1)[1] for entry in self.history()], ["film.mp4"])
        self.assertEqual(self.converted_files(), [])
        folder = self.session.home / "exported"
        folder.mkdir()
        self.export_all(window, "TXT", folder)
        window.expect("Exported 1 TXT file(s) to exported")
        self.assertEqual((folder / "film_transcription.txt").read_text(), self.history()[0]["text"])

    def test_a_file_that_has_gone_is_told_by_the_engine(self):
        window = self.start_on_batch_screen()
        gone = self.speech("gone.wav")
        self.choose_files(window, [self.speech("here.wav"), gone])
        gone.unlink()
        window.press("Transcribe Files")
        self.wait_for_rows(window, ["here.wav, Done", "gone.wav, Failed"])
        error = window.texts("Whisper failed: ")
        self.assertTrue(error and f"input file not found '{gone}'" in error[0], error)

    def test_a_stop_during_a_run_leaves_the_files_behind_it_pending(self):
        window = self.start_on_batch_screen(layers=32)
        self.choose_files(window, [self.speech("a.wav", seconds=30), self.speech("b.mp4", "mp4", 600),
                                   self.speech("c.wav")])
        window.press("Transcribe Files")
        window.expect("b.mp4, Transcribing")
        window.press_row("b.mp4, Transcribing")
        window.wait(lambda: len(window.transcript()) >= 3, "the first lines")
        self.assertEqual(len(self.converted_files()), 1)
        self.assertEqual(len(self.engines()), 1)
        window.press("Stop")
        self.wait_for_rows(window, ["a.wav, Done", "b.mp4, Cancelled", "c.wav, Pending"])
        window.expect("Cancelled", roles=[Atspi.Role.STATIC, Atspi.Role.LABEL])
        self.assertEqual(self.wait_for_engines(0), [])
        self.assertEqual(self.converted_files(), [])
        self.assertEqual([entry["sourceLabel"].rsplit("/", 1)[1] for entry in self.history()], ["a.wav"])
        self.assertGreaterEqual(len(window.transcript()), 3, "the partial text stays")

    def test_a_quit_in_mid_batch_leaves_no_temporary_file_and_no_engine(self):
        before = set(self.session.temporary.iterdir())
        window = self.start_on_batch_screen(layers=32)
        self.choose_files(window, [self.speech("a.mp4", "mp4", 600), self.speech("b.wav")])
        window.press("Transcribe Files")
        window.expect("a.mp4, Transcribing")
        self.eventually(lambda: len(self.engines()) == 1, "the engine")
        self.assertEqual(len(self.converted_files()), 1)
        self.session.close(WINDOW)
        self.assertEqual(self.exit_code(), 0)
        self.assertEqual(self.wait_for_engines(0), [])
        self.assertEqual(set(self.session.temporary.iterdir()), before)
        self.assertEqual(self.history(), [])

    def test_a_quit_in_mid_conversion_leaves_no_temporary_file(self):
        before = set(self.session.temporary.iterdir())
        window = self.start_on_batch_screen()
        film = self.session.home / "files/long.mp4"
        film.parent.mkdir()
        with wave.open(str(film), "wb") as sound:
            sound.setparams((1, 2, 8000, 0, "NONE", ""))
            for _ in range(HOURS):
                sound.writeframes(bytes(2 * 8000 * 3600))
        self.choose_files(window, [self.speech("a.mp4", "mp4", 30), film])
        window.press("Transcribe Files")
        window.expect("a.mp4, Done")
        self.eventually(lambda: len(self.converted_files()) == 2, "the second conversion")
        self.assertEqual(self.rows(window), ["a.mp4, Done", "long.mp4, Pending"])
        self.session.close(WINDOW)
        self.assertEqual(self.exit_code(), 0)
        self.assertEqual(set(self.session.temporary.iterdir()), before)
        self.assertEqual(len(self.history()), 1)

    def test_a_batch_a_file_run_a_viewer_that_plays_and_a_search_go_on_together(self):
        sound = Sound(self.session)
        self.addCleanup(sound.end)
        window = self.start_on_batch_screen()
        window.press_row("Transcript Audio From File")
        self.transcribe(window, rising_tone(self.session.folder / "rising.wav", SECONDS))
        window.expect("Done")
        self.provide_model(layers=8)
        window.press_row("Batch Processing")
        self.choose_files(window, [self.speech("a.wav"), self.speech("b.wav")])
        window.press_row("Transcript Audio From File")
        window.press("Open Full View")
        viewer = window.inside("Transcript Viewer")
        viewer.press("Play")
        self.eventually(lambda: (sound.place() or 0) > 1, "the sound")

        window.press_row("Batch Processing")
        window.press("Transcribe Files")
        window.press_row("Transcript Audio From File")
        window.press("Transcribe")
        self.eventually(lambda: len(self.engines()) == 2, "both engines")
        window.press_row("History")
        self.session.focus(WINDOW)
        x, y, width, height = window.place("Search in history")
        self.session.click(x + width // 2, y + height // 2)
        self.session.type("b.wav")
        before = sound.place() or 0
        self.eventually(lambda: (sound.place() or 0) > before + 1, "the sound to go on")
        viewer.expect("Pause")
        window.expect("b.wav")
        self.eventually(lambda: len(self.history()) == 4, "all results")
        self.assertEqual(sorted(pathlib.Path(entry["sourceLabel"]).name for entry in self.history()),
                         ["a.wav", "b.wav", "rising.wav", "rising.wav"])
        window.press_row("Batch Processing")
        self.wait_for_rows(window, ["a.wav, Done", "b.wav, Done"])


if __name__ == "__main__":
    main(SIZE)
