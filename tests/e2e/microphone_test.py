#!/usr/bin/python3
"""A take from the microphone, with a pause, played, saved and transcribed, and its one entry in the history."""

import pathlib
import re
import subprocess
import time

from accessible_window import Atspi
from recording_test import RecordingTest, length
from sound_room import tone_levels
from window_test import FIRST_LINES, main

VOICE = 1000
LEVEL = 0.25
SECTION = "Record Audio to Transcript"
READY = re.compile(r"Ready to transcribe \((microphone_\d{4}-\d\d-\d\d_\d\d-\d\d_[0-9a-f]{6}\.wav), (\d+):(\d\d)\)")


def form(path):
    return subprocess.run(["ffprobe", "-v", "error", "-show_entries", "stream=codec_name,sample_rate,channels", "-of",
                           "csv=p=0", path], check=True, stdout=subprocess.PIPE).stdout.decode().strip()


class MicrophoneTest(RecordingTest):
    def start_on_microphone_screen(self):
        return self.start_on(SECTION, "Press Record to capture microphone audio.")

    def takes(self):
        return self.temporary("microphone_*")

    def ready_take(self, window):
        """The path of the closed take and the seconds that the screen tells of it."""
        text = window.expect(lambda name: READY.fullmatch(name) is not None).get_name()
        name, minutes, seconds = READY.fullmatch(text).groups()
        return self.session.temporary / name, 60 * int(minutes) + int(seconds)

    def test_a_take_with_a_pause_becomes_a_transcript(self):
        self.room.play_tone("room", VOICE)
        window = self.start_on_microphone_screen()
        window.expect("Not recording")
        started = time.monotonic()
        window.press("Record")
        window.expect("Stop Recording")
        window.expect("Listening…")
        window.expect_clock("Recording time: ", 2)
        window.press("Pause")
        window.expect("Recording paused.")
        paused = time.monotonic()
        still = window.expect(lambda name: name.startswith("Paused at ")).get_name()
        window.expect("No voice detected from your microphone")
        time.sleep(3)
        self.assertEqual(window.texts("Paused at "), [still], "the time stands still")
        pause = time.monotonic() - paused
        window.press("Resume")
        window.expect("Listening…")
        time.sleep(2)
        window.press("Stop Recording")
        window.expect("Record")
        longest = time.monotonic() - started - pause
        window.expect("Recording ready. Transcribe when you're ready.")
        window.expect("Latest recording ready")
        take, seconds = self.ready_take(window)
        self.assertEqual(self.takes(), [take])
        self.assertEqual(form(take), "pcm_s16le,16000,1")
        self.assertAlmostEqual(length(take), seconds, delta=0.55)
        self.assertGreater(length(take), 3)
        self.assertLess(length(take), longest, "the pause is not in it")
        for start in (0.3, length(take) - 1.3):
            self.assertAlmostEqual(tone_levels(take, [VOICE], start, 1)[0], LEVEL, delta=0.01)

        entries = self.history()
        self.assertEqual([(entry["sourceLabel"], entry["text"]) for entry in entries], [(str(take), "")])

        window.press("Play Recording")
        window.expect("Playing recording…")
        window.press("Pause Playback")
        window.expect("Play Recording")

        self.save_audio(window, take)

        window.press("Transcribe")
        window.expect("Done")
        self.assertEqual(window.transcript()[:1], FIRST_LINES[:1])
        entries = self.history()
        self.assertEqual([entry["sourceLabel"] for entry in entries], [str(take)], "one entry a take")
        self.assertTrue(entries[0]["text"].startswith(FIRST_LINES[0]))
        self.assertEqual(entries[0]["model"], "Tiny")
        recording = pathlib.Path(entries[0]["recordingPath"])
        self.assertEqual(recording.read_bytes(), take.read_bytes())

        window.press("Record")
        window.expect("Recording…")
        self.assertFalse(take.exists(), "a new take replaces the old one")
        self.assertTrue(recording.exists())
        window.press("Stop Recording")
        window.expect("Latest recording ready")
        self.assertEqual(len(self.history()), 2)

    def test_transcribe_ends_the_take(self):
        self.room.play_tone("room", VOICE)
        window = self.start_on_microphone_screen()
        window.press("Record")
        window.expect_clock("Recording time: ", 2)
        window.press("Transcribe")
        window.expect("Done")
        take, _ = self.ready_take(window)
        self.assertEqual([entry["sourceLabel"] for entry in self.history()], [str(take)])
        self.assertTrue(self.history()[0]["text"].startswith(FIRST_LINES[0]))

    def test_a_take_goes_on_behind_another_section(self):
        window = self.start_on_microphone_screen()
        window.press("Record")
        window.expect_clock("Recording time: ", 1)
        window.press_row("Help")
        time.sleep(2)
        window.press_row(SECTION)
        window.expect_clock("Recording time: ", 3)
        window.press("Stop Recording")
        take, seconds = self.ready_take(window)
        self.assertAlmostEqual(length(take), seconds, delta=0.55)

    def test_a_killed_take_can_be_played(self):
        self.room.play_tone("room", VOICE)
        window = self.start_on_microphone_screen()
        window.press("Record")
        window.expect_clock("Recording time: ", 3)
        self.program.kill()
        self.program.wait()
        self.assertEqual(len(self.takes()), 1)
        self.assertGreater(length(self.takes()[0]), 2)
        self.assertAlmostEqual(tone_levels(self.takes()[0], [VOICE], 0.5, 1)[0], LEVEL, delta=0.01)

    def test_a_take_is_kept_when_the_system_asks_the_program_to_end(self):
        self.room.play_tone("room", VOICE)
        window = self.start_on_microphone_screen()
        window.press("Record")
        window.expect_clock("Recording time: ", 2)
        self.program.terminate()
        self.assertEqual(self.exit_code(), 0)
        entries = self.history()
        self.assertEqual([entry["sourceLabel"] for entry in entries], [str(take) for take in self.takes()])
        self.assertGreater(length(entries[0]["recordingPath"]), 1)

    def test_without_a_sound_server_it_says_so(self):
        self.room.end()
        window = self.start_on_microphone_screen()
        window.press("Record")
        window.expect("Could not start recording: There is no sound server.")
        window.expect("Press Record to capture microphone audio.")
        self.assertEqual(self.takes(), [])

    def test_a_sound_server_that_goes_is_told_and_waited_for(self):
        window = self.start_on_microphone_screen()
        window.press("Record")
        window.expect_clock("Recording time: ", 1)
        self.room.end()
        window.expect(lambda name: "sound server" in name, roles=[Atspi.Role.ALERT])
        window.press("Stop Recording")
        take, seconds = self.ready_take(window)
        self.assertAlmostEqual(length(take), seconds, delta=0.55)


if __name__ == "__main__":
    main()
