"""What one would hear of a session, and a file whose sound tells where it stands."""

import subprocess

from sound_server import RATE, SoundServer

FIRST_PITCH = 300  # Hz
RISE = 10  # Hz a second


def rising_tone(path, seconds):
    """Makes a WAV whose pitch rises steadily, so that a piece of it tells its place."""
    subprocess.run(["sox", "-n", "-r", "16000", "-b", "16", path, "synth", str(seconds), "sine",
                    f"{FIRST_PITCH}:{FIRST_PITCH + RISE * seconds}", "gain", "-6"], check=True)
    return path


class Sound(SoundServer):
    """The sound of a session. All programs that it starts from now on play there."""

    def place(self, length=0.25):
        """Where in a rising tone stands what is heard now, in seconds of the file; None for silence."""
        samples = self.hear(length)
        if max(abs(sample) for sample in samples) < 300:
            return None
        rises = [i for i in range(1, len(samples)) if samples[i - 1] < 0 <= samples[i]]
        if len(rises) < 2:
            return None
        pitch = (len(rises) - 1) * RATE / (rises[-1] - rises[0])
        return (pitch - FIRST_PITCH) / RISE
