#!/usr/bin/python3
"""What goes wrong, and what stays whole all the same."""

from virtual_session import kill
from window_test import FIRST_LINES, WindowTest, main

NO_MODEL = ("No models downloaded. Visit Models Settings to download a model into "
            "Application Support/Sorvanta/Models.")
HAS_MODEL = "Need another model? Open Models Settings to download it."


class FailuresTest(WindowTest):
    def test_a_failure_of_the_engine_is_shown_with_its_log_and_can_be_copied(self):
        self.accept_policies()
        self.models_folder().mkdir(parents=True)
        model = self.models_folder() / "ggml-tiny.bin"
        model.write_text("This is no model.\n")
        window = self.start()
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Copy Error")
        error = window.texts("Whisper failed: ")
        self.assertEqual(len(error), 1)
        self.assertIn("invalid model data (bad magic)", error[0])
        self.assertIn("error: failed to initialize whisper context", error[0])
        self.assertGreater(error[0].count("\n"), 3, "the whole log")
        window.press("Copy Error")
        self.eventually(lambda: self.clipboard().rstrip() == error[0], "the error on the clipboard")
        self.assertIsNone(window.find("Stop"))
        self.assertEqual(self.history(), [])

        self.provide_model()
        window.press("Transcribe")
        window.expect("Done")
        self.assertIsNone(window.find("Copy Error"), "the next run takes the message away")
        self.assertEqual(window.transcript()[:2], FIRST_LINES)
        self.assertEqual(len(self.history()), 1)

    def test_a_video_without_sound_is_told_and_leaves_the_button_usable(self):
        silent = self.media.picture_only("silent.mp4")
        window = self.start_on_file_screen()
        self.transcribe(window, silent)
        window.expect("Could not convert silent.mp4 to audio. The file might not contain an audio track.")
        window.expect("Conversion failed.")
        self.assertEqual(self.history(), [])
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Done")
        self.assertEqual(window.texts("Could not"), [])

    def test_without_a_model_the_hint_tells_it_and_the_button_does_nothing(self):
        self.accept_policies()
        window = self.start()
        window.expect(NO_MODEL)
        self.choose(window, self.media.speech("talk.wav", 100))
        window.press("Transcribe")
        window.expect("Transcribe")
        self.assertEqual(window.texts("Please"), [], "the press did not arrive")
        self.assertEqual(self.engines(), [])

    def test_without_a_file_the_button_does_nothing(self):
        window = self.start_on_file_screen()
        window.expect("No file selected")
        window.press("Transcribe")
        window.expect("Transcribe")
        self.assertEqual(window.texts("Please"), [], "the press did not arrive")
        self.assertEqual(self.engines(), [])

    def test_model_files_put_into_the_folder_by_hand_are_taken_up_at_the_start(self):
        self.accept_policies()
        self.start().expect(NO_MODEL)
        kill(self.program)
        self.provide_model(name="ggml-tiny.bin")
        self.provide_model(name="ggml-base.bin")
        window = self.start()
        window.expect(HAS_MODEL)
        self.assertIsNone(window.find(NO_MODEL))
        self.assertEqual(window.picker_items("Model"), ["Base", "Tiny"])
        self.choose(window, self.media.speech("talk.wav", 100))
        window.choose("Model", "Tiny")
        window.choose("Language", "Belarusian (be)")
        window.press("Transcribe")
        window.expect("Done")
        self.assertEqual([(entry["model"], entry["language"]) for entry in self.history()], [("Tiny", "be")])

    def test_a_killed_application_leaves_no_engine_and_a_whole_history(self):
        window = self.start_on_file_screen(layers=32)
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Done")
        before = self.history_file().read_bytes()
        self.assertEqual(len(self.history()), 1)

        self.transcribe(window, self.media.speech("long.wav", 600))
        window.wait(lambda: len(window.transcript()) >= 6, "the first window's lines")
        self.assertEqual(len(self.engines()), 1)
        kill(self.program)
        self.assertEqual(self.wait_for_engines(0), [])
        self.assertEqual(self.history_file().read_bytes(), before)

        window = self.start()
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Done")
        entries = self.history()
        self.assertEqual(len(entries), 2)
        self.assertIn(entries[1]["id"], before.decode(), "the earlier entry was found again")


if __name__ == "__main__":
    main()
