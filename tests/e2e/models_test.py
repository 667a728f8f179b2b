#!/usr/bin/python3
"""The section in which models are fetched and removed."""

from accessible_window import Atspi
from models_screen import ModelsScreen
from window_test import WINDOW, WindowTest, main

NO_MODELS = ("No models downloaded. Visit Models Settings to download a model into Application "
             "Support/Sorvanta/Models.")


class ModelsTest(ModelsScreen, WindowTest):
    def setUp(self):
        super().setUp()
        self.file_manager = None

    def tearDown(self):
        super().tearDown()
        if self.file_manager:
            self.file_manager.terminate()
            self.file_manager.wait()

    def place_file(self, name):
        self.models_folder().mkdir(parents=True, exist_ok=True)
        (self.models_folder() / name).write_text("Whatever it holds, it counts.\n")

    def start_file_manager(self):
        """Starts a file manager of the session. @return the file in which it tells what it selected"""
        record = self.session.home / "selected"
        self.file_manager = self.session.start([self.build / "tests/fake_file_manager", record])
        self.eventually(record.exists, "the file manager")
        return record

    def test_each_model_has_a_row_with_what_it_is_and_how_it_stands(self):
        self.place_file("ggml-large-v3.bin")
        self.place_file("ggml-base.bin.part")
        window = self.start_on_models()
        self.assertEqual(window.texts("Download and manage"), [
            "Download and manage bundled Whisper models. Files are stored in Application Support so they persist "
            "between app runs."])
        self.assertEqual(self.words(window, "Large V3 Turbo"), [
            "Recommended",
            "Performance-optimized Large V3 variant. Offers faster processing with a slight accuracy trade-off. "
            "Recommended for English; may be less reliable on non-English audio compared to standard Large V3.",
            "Not downloaded", "Download Model"])
        self.assertEqual(self.words(window, "Large V3"), [
            "Best for non-English",
            "Highest-accuracy model. Largest file size and slowest runtime. The only model recommended for "
            "high-quality non-English transcription.",
            "Ready", "Reveal in Finder", "Delete Local Copy", "Saved as ggml-large-v3.bin in Application Support."])
        for model in ("Medium", "Base", "Small", "Tiny"):
            self.assertEqual(self.words(window, model)[1:], ["Not downloaded", "Download Model"], model)

    def test_a_local_copy_is_deleted_without_asking_and_leaves_the_pickers(self):
        self.place_file("ggml-base.bin")
        self.place_file("ggml-tiny.bin")
        window = self.start_on_models()
        self.press(window, "Base", "Delete Local Copy")
        self.expect_status(window, "Base", "Not downloaded")
        self.assertEqual(sorted(path.name for path in self.models_folder().iterdir()), ["ggml-tiny.bin"])
        window.press_row("Transcript Audio From File")
        self.assertEqual(window.shown_choice("Model"), "Tiny")
        window.press_row("Models Settings")
        self.press(window, "Tiny", "Delete Local Copy")
        self.expect_status(window, "Tiny", "Not downloaded")
        window.press_row("Transcript Audio From File")
        window.expect(NO_MODELS)

    def test_a_copy_that_has_already_gone_needs_no_message(self):
        self.place_file("ggml-tiny.bin")
        window = self.start_on_models()
        (self.models_folder() / "ggml-tiny.bin").unlink()
        self.press(window, "Tiny", "Delete Local Copy")
        self.expect_status(window, "Tiny", "Not downloaded")
        self.assertEqual(self.words(window, "Tiny")[1:], ["Not downloaded", "Download Model"])

    def test_a_copy_that_cannot_be_removed_says_why(self):
        (self.models_folder() / "ggml-tiny.bin/full").mkdir(parents=True)
        window = self.start_on_models()
        self.press(window, "Tiny", "Delete Local Copy")
        self.expect_status(window, "Tiny", "Failed")
        words = self.words(window, "Tiny")[1:]
        self.assertTrue(words[1].startswith("Could not remove file: “ggml-tiny.bin”"), words[1])
        self.assertEqual(words[2:], ["Delete Local Copy", "Retry Download"])
        alerts = [node.get_name() for node in self.parts(window, "Tiny") if node.get_role() == Atspi.Role.ALERT]
        self.assertEqual(alerts, [words[1]])

    def test_the_file_manager_selects_the_file(self):
        record = self.start_file_manager()
        self.place_file("ggml-tiny.bin")
        before = len(self.session.opened_addresses())
        window = self.start_on_models()
        self.press(window, "Tiny", "Reveal in Finder")
        self.eventually(record.read_text, "the file manager to be asked")
        self.assertEqual(record.read_text(), (self.models_folder() / "ggml-tiny.bin").as_uri() + "\n")
        self.assertEqual(len(self.session.opened_addresses()), before, "the folder is not opened as well")

    def test_the_folder_is_opened_where_no_file_manager_selects(self):
        self.place_file("ggml-tiny.bin")
        before = len(self.session.opened_addresses())
        window = self.start_on_models()
        self.press(window, "Tiny", "Reveal in Finder")
        self.eventually(lambda: len(self.session.opened_addresses()) > before, "the folder to be opened")
        self.assertEqual(self.session.opened_addresses()[before:], [self.models_folder().as_uri()])

    def test_a_copy_is_deleted_by_keyboard_and_the_focus_stays_with_its_model(self):
        self.place_file("ggml-large-v3-turbo.bin")
        window = self.start_on_models()
        self.session.focus(WINDOW)
        self.tab_to(window, "Delete Local Copy")
        self.session.key("space")
        self.expect_status(window, "Large V3 Turbo", "Not downloaded")
        self.assertFalse((self.models_folder() / "ggml-large-v3-turbo.bin").exists())
        window.wait(lambda: window.focused() == "Download Model", "the focus of “Download Model”")


if __name__ == "__main__":
    main()
