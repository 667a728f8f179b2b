"""Makes the files that the tests transcribe."""

import pathlib
import subprocess

WORDS = "The quick brown fox jumps over the lazy dog while the rain falls on the roof of the old house."


class Media:
    """Files of spoken words in one folder, each made once."""

    def __init__(self, folder):
        self._folder = pathlib.Path(folder)
        self._folder.mkdir(parents=True, exist_ok=True)

    def speech(self, name, seconds):
        """A file of the kind that the extension says: "wav", "mp3", "m4a" or, with a picture, "mp4"."""
        path = self._folder / name
        if not path.exists():
            self._encode(self._wav(seconds), path, seconds)
        return path

    def repeated(self, name, path, times):
        """The sound and picture of that file so many times over."""
        result = self._folder / name
        if not result.exists():
            _run("ffmpeg", "-nostdin", "-v", "error", "-stream_loop", times - 1, "-i", path, "-c", "copy", result)
        return result

    def picture_only(self, name):
        """A film without sound."""
        path = self._folder / name
        if not path.exists():
            _run("ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i", "testsrc=size=320x240:rate=5:duration=2",
                 "-c:v", "mpeg4", path)
        return path

    def _wav(self, seconds):
        spoken = self._folder / ".spoken.wav"
        if not spoken.exists():
            _run("espeak-ng", "-w", spoken, WORDS)
        wav = self._folder / f".{seconds}.wav"
        if not wav.exists():
            _run("sox", spoken, "-r", "16000", wav, "repeat", "-", "trim", "0", seconds)
        return wav

    @staticmethod
    def _encode(wav, path, seconds):
        picture = ["-f", "lavfi", "-i", f"testsrc=size=320x240:rate=5:duration={seconds}"]
        arguments = {
            ".wav": ["-c:a", "copy"],
            ".mp3": ["-q:a", "6"],
            ".m4a": ["-c:a", "aac"],
            ".mp4": [*picture, "-c:v", "mpeg4", "-c:a", "aac", "-shortest"],
        }[path.suffix]
        _run("ffmpeg", "-nostdin", "-v", "error", "-i", wav, *arguments, path)


def _run(*command):
    subprocess.run([str(word) for word in command], check=True, stdout=subprocess.DEVNULL)
