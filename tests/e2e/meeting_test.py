#!/usr/bin/python3
"""A meeting from its recording, with the microphone, a pause and a stop, to its transcript in the history."""

import pathlib
import re
import time

from recording_test import RecordingTest, length
from sound_room import tone_levels
from window_test import FIRST_LINES, main

SYSTEM, VOICE = 440, 1000
SECTION = "Record Meeting (System Audio)"
FINAL = re.compile(r"Latest recording ready: (meeting_\d{4}-\d\d-\d\d_\d\d-\d\d_[0-9a-f]{6}\.m4a)")


class MeetingTest(RecordingTest):
    def start_on_meeting_screen(self):
        return self.start_on(SECTION, "Press Record to capture system output audio.")

    def final_file(self, window):
        text = window.expect(lambda name: FINAL.fullmatch(name) is not None).get_name()
        return self.session.temporary / FINAL.fullmatch(text).group(1)

    def expect_the_voice_alone_in_the_pause(self, final):
        """What is played in a pause leaves silence; the microphone goes on."""
        step = 0.25
        levels = [tone_levels(final, [SYSTEM, VOICE], i * step, step) for i in range(2, int(length(final) / step) - 2)]
        quiet = [i for i, (system, _) in enumerate(levels) if system < 0.01]
        self.assertGreaterEqual(len(quiet), 6, "the pause of two seconds")
        self.assertEqual(quiet, list(range(quiet[0], quiet[-1] + 1)), "one pause")
        for i in quiet:
            self.assertGreater(levels[i][1], 0.1)

    def test_a_meeting_with_the_microphone_becomes_a_transcript(self):
        self.room.play_tone("speaker", SYSTEM)
        self.room.play_tone("room", VOICE)
        window = self.start_on_meeting_screen()
        window.press("Record System Audio + Microphone")
        window.expect("Stop Recording")
        window.expect("Recording system audio.")
        window.expect_clock("Recording system audio… ", 2)
        window.press("Pause")
        window.expect("Recording paused.")
        still = window.expect(lambda name: name.startswith("Recording system audio… ")).get_name()
        time.sleep(2)
        self.assertEqual(window.texts("Recording system audio… "), [still], "the time stands still")
        window.press("Resume")
        window.expect("Recording system audio.")
        time.sleep(2)
        window.press("Stop Recording")
        final = self.final_file(window)
        window.expect("Captured audio. Use Transcribe below.")
        raw = self.temporary("meeting-system-*.m4a")
        self.assertEqual(len(raw), 1)
        self.assertEqual(len(self.temporary("meeting-mic-*.wav")), 1)
        self.assertAlmostEqual(length(final), length(raw[0]), delta=0.01)
        self.assertGreater(length(final), 6)
        system, voice = tone_levels(final, [SYSTEM, VOICE], 0.5, 1)
        self.assertAlmostEqual(system, 0.25, delta=0.02)
        self.assertAlmostEqual(voice, 0.25, delta=0.02)
        self.expect_the_voice_alone_in_the_pause(final)

        # Both files are in the history, the final one first.
        self.assertEqual([entry["sourceLabel"] for entry in self.history()], [str(final), str(raw[0])])
        self.assertEqual([entry["text"] for entry in self.history()], ["", ""])

        window.press("Play Latest")
        window.expect("Playing latest recording…")
        window.press("Pause Playback")
        window.expect("Playback paused.")
        window.press("Resume Playback")
        window.expect("Pause Playback")
        window.expect(lambda name: re.fullmatch(r"0:0[2-5]", name) is not None)  # it is longer than that

        self.save_audio(window, final)

        window.press("Transcribe")
        window.expect("Done")
        self.assertEqual(window.transcript()[:1], FIRST_LINES[:1])
        entries = self.history()
        self.assertEqual([entry["sourceLabel"] for entry in entries], [str(final), str(raw[0])])
        self.assertTrue(entries[0]["text"].startswith(FIRST_LINES[0]))
        self.assertEqual(entries[1]["text"], "")
        self.assertEqual(entries[0]["model"], "Tiny")
        for entry in entries:
            recording = pathlib.Path(entry["recordingPath"])
            self.assertEqual(recording.parent, self.store_folder() / "recordings")
            self.assertTrue(recording.exists())
        self.assertEqual(len(list((self.store_folder() / "recordings").iterdir())), 2)
        self.assertEqual(self.temporary("meeting-transcribe-*"), [])

    def test_transcribe_during_a_recording_takes_the_system_alone(self):
        self.room.play_tone("speaker", SYSTEM)
        self.room.play_tone("room", VOICE)
        window = self.start_on_meeting_screen()
        window.press("Record System Audio + Microphone")
        window.expect_clock("Recording system audio… ", 3)
        window.press("Transcribe")
        window.expect("Done")
        window.expect("Record System Audio + Microphone")
        final = self.final_file(window)
        raw = self.temporary("meeting-system-*.m4a")[0]
        system, voice = tone_levels(raw, [SYSTEM, VOICE], 0.5, 1)
        self.assertAlmostEqual(system, 0.25, delta=0.02)
        self.assertLess(voice, 0.01)
        entries = self.history()
        self.assertEqual({entry["sourceLabel"] for entry in entries}, {str(final), str(raw)})
        self.assertEqual(len(entries), 2)
        texts = sorted(entry["text"] for entry in entries)
        self.assertEqual(texts[0], "")
        self.assertTrue(texts[1].startswith(FIRST_LINES[0]))

    def test_a_killed_recording_is_found_again(self):
        self.room.play_tone("speaker", SYSTEM)
        window = self.start_on_meeting_screen()
        window.press("Include microphone (your voice)", roles=None)
        window.press("Record System Audio")
        window.expect_clock("Recording system audio… ", 4)
        self.program.kill()
        self.program.wait()
        files = self.temporary("meeting-system-*.m4a")
        self.assertEqual(len(files), 1)
        self.assertGreaterEqual(length(files[0]), 2)
        self.assertAlmostEqual(tone_levels(files[0], [SYSTEM], 0.5, 1)[0], 0.25, delta=0.02)

    def test_without_a_sound_server_it_says_so(self):
        self.room.end()
        window = self.start_on_meeting_screen()
        window.press("Record System Audio + Microphone")
        window.expect("There is no sound server.")
        window.expect("Press Record to capture system output audio.")
        self.assertEqual(self.temporary("meeting*"), [])


if __name__ == "__main__":
    main()
