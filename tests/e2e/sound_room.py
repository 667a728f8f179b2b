"""A private sound server for the programs of a session, with something to hear."""

import pathlib
import subprocess
import time

from waiting import comes

SERVER = pathlib.Path(__file__).resolve().parent.parent / "support/sound_server.sh"


class SoundRoom:
    """A server that the session's programs find from now on. It ends with the session."""

    def __init__(self, session):
        self._session = session
        folder = session.folder / f"sound{time.monotonic_ns()}"
        session.environment.update(PULSE_SERVER=f"unix:{folder}/native", PULSE_COOKIE=str(folder / "cookie"))
        self._process = session.start(["sh", SERVER, folder])
        self._players = []
        if not comes(self._answers):
            raise RuntimeError("the sound server did not start")

    def play_tone(self, sink, frequency, seconds=120):
        """Plays a tone of the amplitude 0.25 into a sink: "speaker" is what the machine plays, "room" what its
        microphone hears."""
        path = self._session.folder / f"tone-{frequency}.wav"
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i",
                        f"aevalsrc=0.25*sin(2*PI*{frequency}*t):d={seconds}:s=48000", path], check=True)
        self._players.append(self._session.start(["paplay", f"--device={sink}", path]))

    def end(self):
        for process in [*self._players, self._process]:
            process.kill()
            process.wait()

    def _answers(self):
        return subprocess.run(["pactl", "info"], env=self._session.environment, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0


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
