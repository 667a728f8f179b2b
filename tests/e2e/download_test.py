#!/usr/bin/python3
"""Models that are fetched in the window from a real HTTPS server, and what can be done with them."""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))

from exports import Exports
from model_server import ModelServer
from models_screen import ModelsScreen
from window_test import WINDOW, WindowTest, main

ADDRESS = "/OrvaneKest/whisper/resolve/main/ggml-tiny.bin"
SIZE = (1200, 700)


class DownloadTest(ModelsScreen, Exports, WindowTest):
    def setUp(self):
        super().setUp()
        folder = self.session.home / "server"
        folder.mkdir()
        self.server = ModelServer(folder)
        self.session.environment.update(self.server.environment())

    def tearDown(self):
        super().tearDown()
        for name in self.server.environment():
            self.session.environment.pop(name)
        self.server.close()

    def computed_model(self):
        """The bytes of a model that recites, which is nowhere on the disk afterwards."""
        self.provide_model()
        path = self.models_folder() / "ggml-tiny.bin"
        content = path.read_bytes()
        path.unlink()
        return content

    def names(self):
        return sorted(path.name for path in self.models_folder().iterdir())

    def expect_to_be_downloading(self, window):
        self.eventually(lambda: re.fullmatch(r"Downloading \d+%", self.words(window, "Tiny")[1]), "a download")
        self.assertRegex(self.words(window, "Tiny")[-1], r"^(Zero KB|0(\.\d)? MB|\d\.?\d? MB) / .* MB")

    def test_a_model_is_fetched_and_transcribes_and_its_text_leaves_in_every_format(self):
        content = self.computed_model()
        goes_on = self.server.serve_file(ADDRESS, content, hold_at=len(content) * 2 // 5)
        downloads = self.make_downloads()
        window = self.start_on_models()
        self.press(window, "Tiny", "Download Model")
        self.expect_to_be_downloading(window)
        self.assertNotIn("Download Model", self.words(window, "Tiny"))
        self.assertEqual(self.names(), ["ggml-tiny.bin.part"])
        goes_on.set()
        self.expect_status(window, "Tiny", "Ready")
        self.assertEqual(self.names(), ["ggml-tiny.bin"])
        self.assertEqual((self.models_folder() / "ggml-tiny.bin").read_bytes(), content)

        self.session.resize(WINDOW, *SIZE)
        window.press_row("Transcript Audio From File")
        self.assertEqual(window.shown_choice("Model"), "Tiny")
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Done")
        entry = self.history()[0]
        self.assertEqual(entry["model"], "Tiny")
        self.save_every_format(window, entry, "talk")
        self.download_every_format(window, entry, "talk", downloads)

    def test_nothing_is_sent_but_a_plain_get(self):
        self.server.serve_file(ADDRESS, b"short")
        window = self.start_on_models()
        self.press(window, "Tiny", "Download Model")
        self.expect_status(window, "Tiny", "Ready")
        requests = [request for request in self.server.requests if request["to"] == "server"]
        self.assertEqual([request["target"] for request in requests], [f"{ADDRESS}?download=true"])
        lines = requests[0]["head"].strip().split("\r\n")
        self.assertEqual(lines[0], f"GET {ADDRESS}?download=true HTTP/1.1")
        self.assertLessEqual({line.split(":")[0].lower() for line in lines[1:]}, {"host", "accept", "accept-encoding"})

    def test_a_failure_says_why_and_is_tried_again(self):
        self.server.serve_as(ADDRESS, "/status/404")
        window = self.start_on_models()
        self.press(window, "Tiny", "Download Model")
        self.expect_status(window, "Tiny", "Failed")
        self.assertEqual(self.words(window, "Tiny")[1:], ["Failed", "Server responded with 404", "Retry Download"])
        self.assertEqual(self.names(), [])
        self.server.serve_file(ADDRESS, b"content")
        self.press(window, "Tiny", "Retry Download")
        self.expect_status(window, "Tiny", "Ready")
        self.assertEqual((self.models_folder() / "ggml-tiny.bin").read_bytes(), b"content")

    def test_a_quit_in_the_midst_leaves_a_part_that_the_next_try_throws_away(self):
        goes_on = self.server.serve_file(ADDRESS, b"x" * 4_000_000, hold_at=1_000_000)
        window = self.start_on_models()
        self.press(window, "Tiny", "Download Model")
        self.expect_to_be_downloading(window)
        self.program.terminate()
        self.exit_code()
        goes_on.set()
        self.assertEqual(self.names(), ["ggml-tiny.bin.part"])

        window = self.start_again_on_models()
        self.assertIn("Not downloaded", self.words(window, "Tiny"))
        self.press(window, "Tiny", "Download Model")
        self.expect_status(window, "Tiny", "Ready")
        self.assertEqual(self.names(), ["ggml-tiny.bin"])


if __name__ == "__main__":
    main()
