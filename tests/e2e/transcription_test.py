#!/usr/bin/python3
"""The main job: a file, Transcribe, the growing text, the history; and Stop."""

import contextlib
import datetime
import os
import pathlib
import re
import signal
import time

from waiting import PATIENCE
from window_test import FIRST_LINES, WindowTest, main

SECONDS = 100
LINES = 15  # what the computed model recites for that
SLOW = 32
SLICE = 0.3  # seconds for which the engine works between two looks at the window
PREPARATION = ["Preparing file…", "Audio detected, no conversion needed.", "Starting transcription…", "Preparing…"]


def conversion(name):
    """The messages before the run of a file that has to be converted."""
    return ["Preparing file…", f"Converting {name} to wav audio…", "Conversion finished, starting transcription…",
            "Starting transcription…", "Preparing…"]


def is_in_order(seen, whole):
    """Whether `seen` leaves out parts of `whole`, but changes no order."""
    rest = iter(whole)
    return all(text in rest for text in seen)


def send(number, process):
    with contextlib.suppress(ProcessLookupError):  # it has just ended
        os.kill(process, number)


class TranscriptionTest(WindowTest):
    def follow(self, window, statuses):
        """Watches a run to its end. @return the messages, percentages and numbers of rows that were seen, each once"""
        messages, percentages, rows = [], [], []
        end = time.monotonic() + PATIENCE
        while "Done" not in messages:
            self.assertLess(time.monotonic(), end, window.summary())
            with self.held_engine():
                texts = window.texts()
                count = len(window.transcript())
            for text in texts:
                if text in statuses and text not in messages:
                    messages.append(text)
                if text.startswith("Progress: ") and text not in percentages:
                    percentages.append(text)
            if count not in rows:
                rows.append(count)
            time.sleep(SLICE)
        return messages, percentages, rows

    @contextlib.contextmanager
    def held_engine(self):
        """The engine stands still meanwhile, so that no step of it passes unseen while the window is read."""
        engines = self.engines()
        for engine in engines:
            send(signal.SIGSTOP, engine)
        try:
            yield
        finally:
            for engine in engines:
                send(signal.SIGCONT, engine)

    def check_history(self, path):
        """The entry of a run that has just ended, with its files."""
        entries = self.history()
        self.assertEqual(len(entries), 1)
        entry = entries[0]
        self.assertEqual(entry["sourceLabel"], str(path))
        self.assertEqual(entry["model"], "Tiny")
        self.assertEqual(entry["language"], "auto")
        self.assertIs(entry["diarization"], False)
        self.assertNotIn("recordingPath", entry)
        self.assertRegex(entry["id"], r"^\d{13}-[0-9a-f]{6}$")
        self.assertRegex(entry["createdAt"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z$")
        created = datetime.datetime.fromisoformat(entry["createdAt"].replace("Z", "+00:00"))
        self.assertLess(abs((datetime.datetime.now(datetime.timezone.utc) - created).total_seconds()), 60)
        lines = entry["text"].split("\n")
        self.assertEqual(lines[:2], FIRST_LINES)
        self.assertEqual(len(lines), LINES)
        for key, ending in (("txtPath", ".txt"), ("srtPath", ".srt")):
            file = pathlib.Path(entry[key])
            self.assertEqual(file.parent, self.store_folder() / "transcripts")
            self.assertRegex(file.name, r"^whisper-\d{13}-[0-9a-f]{6}" + re.escape(ending) + "$")
        self.assertEqual(pathlib.Path(entry["txtPath"]).read_text(encoding="utf-8"), entry["text"])
        subtitles = pathlib.Path(entry["srtPath"]).read_text(encoding="utf-8")
        self.assertTrue(subtitles.startswith("1\n00:00:00,000 --> 00:00:04,200\n" + FIRST_LINES[0] + "\n\n2\n"))
        self.assertEqual(subtitles.count(" --> "), LINES)

    def check_run(self, name, preparation=PREPARATION):
        path = self.media.speech(name, SECONDS)
        window = self.start_on_file_screen(SLOW)
        self.transcribe(window, path)
        messages, percentages, rows = self.follow(window, [*preparation, "Done"])
        self.assertTrue(is_in_order(messages, [*preparation, "Done"]), messages)
        values = [int(re.fullmatch(r"Progress: (\d+)%", text).group(1)) for text in percentages]
        self.assertEqual(values, sorted(values))
        self.assertGreaterEqual(len([value for value in values if 0 < value < 100]), 2, values)
        self.assertEqual(rows, sorted(rows), "the text grows")
        self.assertGreaterEqual(len([count for count in rows if count > 0]), 2, rows)
        window.expect("Transcribe")
        self.assertEqual(window.texts("Progress: "), [], "the progress row is gone")
        self.assertIsNone(window.find("Stop"))
        self.check_history(path)
        self.assertEqual(list(self.session.temporary.iterdir()), [], "no temporary file is left")
        return messages

    def test_a_wav_is_transcribed(self):
        self.check_run("talk.wav")

    def test_an_mp3_is_transcribed(self):
        self.check_run("talk.mp3")

    def test_an_m4a_goes_to_the_engine_as_it_stands(self):
        self.check_run("talk.m4a")

    def test_an_mp4_with_a_picture_is_transcribed(self):
        self.check_run("talk.mp4", conversion("talk.mp4"))

    def test_a_conversion_tells_what_it_does_and_leaves_no_file_after_a_stop(self):
        messages = conversion("film.mp4")
        window = self.start_on_file_screen(SLOW)
        self.transcribe(window, self.media.repeated("film.mp4", self.media.speech("talk.mp4", SECONDS), 24))
        seen = []

        def look():
            seen.extend(text for text in window.texts() if text in messages and text not in seen)
            return self.engines()

        self.eventually(look, "the engine")
        self.assertTrue(is_in_order(seen, messages), seen)
        self.assertIn(messages[1], seen)
        self.assertEqual([file.suffix for file in self.session.temporary.iterdir()], [".wav"])
        window.press("Stop")
        window.expect("Cancelled")
        self.assertEqual(list(self.session.temporary.iterdir()), [])

    def test_a_stop_in_mid_run_keeps_the_partial_text_and_no_history(self):
        window = self.start_on_file_screen(SLOW)
        self.transcribe(window, self.media.speech("long.wav", 600))
        window.wait(lambda: len(window.transcript()) >= 6, "the first window's lines")
        self.assertEqual(len(self.engines()), 1)
        window.press("Stop")
        window.expect("Cancelled")
        self.assertEqual(self.wait_for_engines(0), [])
        self.assertEqual(window.transcript()[:2], FIRST_LINES)
        self.assertIsNone(window.find("Stop"))
        self.assertIsNone(window.find("Copy Error"))
        self.assertEqual(self.history(), [])
        window.press("Transcribe")
        window.expect("Stop")
        window.expect_gone("Cancelled")

    def test_another_section_does_not_disturb_a_run(self):
        window = self.start_on_file_screen(SLOW)
        self.transcribe(window, self.media.speech("talk.wav", SECONDS))
        window.expect("Stop")
        window.press_row("Help")
        window.expect("Key links")
        self.assertIsNone(window.find("Stop"), "a hidden screen is not read out")
        self.eventually(self.history, "the end of the run behind the other section")
        window.press_row("Transcript Audio From File")
        window.expect("Done")
        self.assertEqual(window.transcript()[:2], FIRST_LINES)


if __name__ == "__main__":
    main()
