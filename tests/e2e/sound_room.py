"""A private sound server for the programs of a session, with something to hear."""

import subprocess

from sound_server import SoundServer


class SoundRoom(SoundServer):
    """A room with sounds for the programs that the session starts from now on."""

    def __init__(self, session):
        super().__init__(session)
        self._players = []

    def play_tone(self, sink, frequency, seconds=120):
        """Plays a tone of the amplitude 0.25 into a sink: "speaker" is what the machine plays, "room" what its
        microphone hears."""
        path = self.session.folder / f"tone-{frequency}.wav"
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i",
                        f"aevalsrc=0.25*sin(2*PI*{frequency}*t):d={seconds}:s=48000", path], check=True)
        self._players.append(self.session.start(["paplay", f"--device={sink}", path]))

    def end(self):
        for player in self._players:
            player.kill()
            player.wait()
        super().end()


def tone_levels(path, frequencies, start, length):
    """The amplitudes of tones in a stretch of a file, as the ffmpeg program reads it."""
    raw = subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-ss", str(start), "-t", str(length), "-i", path, "-ac", "1",
                          "-ar", "8000", "-f", "s16le", "-"], check=True, stdout=subprocess.PIPE).stdout
    samples = memoryview(raw).cast("h")
    return [_amplitude(samples, frequency) for frequency in frequencies]


def _amplitude(samples, frequency):
    import cmath
    import math
    turn = -2j * math.pi * frequency / 8000
    total = sum(sample * cmath.exp(turn * i) for i, sample in enumerate(samples))
    return 2 * abs(total) / max(1, len(samples)) / 32768
