"""What the tests of both screens that record share: a sound server of their own, and the files that a screen makes."""

import subprocess

from sound_room import SoundRoom
from window_test import WindowTest


def length(path):
    """The length of a sound file in seconds, as the ffprobe program reads it."""
    return float(subprocess.run(["ffprobe", "-v", "error", "-show_entries", "format=duration", "-of", "csv=p=0", path],
                                check=True, stdout=subprocess.PIPE).stdout)


class RecordingTest(WindowTest):
    def setUp(self):
        super().setUp()
        self.room = SoundRoom(self.session)
        for file in self.session.temporary.iterdir():
            file.unlink()

    def tearDown(self):
        super().tearDown()
        self.room.end()

    def start_on(self, section, first_words):
        """The window of a program that has a model, with the screen of that section on show."""
        self.accept_policies()
        self.provide_model()
        window = self.start()
        window.press_row(section)
        window.expect(first_words)
        return window

    def temporary(self, pattern):
        return sorted(self.session.temporary.glob(pattern))

    def save_audio(self, window, recording):
        """Saves what was recorded, a file of the screen, to another place."""
        kept = self.session.home / ("kept" + recording.suffix)
        window.press("Save Audio")
        self.assertEqual(window.save_file(kept), recording.name)
        window.expect(f"Saved recording to {kept.name}")
        self.assertEqual(kept.read_bytes(), recording.read_bytes())
