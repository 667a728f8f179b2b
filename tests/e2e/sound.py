"""A private sound server for a session, what one would hear from it, and a file whose sound tells where it stands."""

import array
import pathlib
import subprocess

from waiting import comes

SERVER = pathlib.Path(__file__).resolve().parents[1] / "support/sound_server.sh"
RATE = 8000
FIRST_PITCH = 300  # Hz
RISE = 10  # Hz a second


def rising_tone(path, seconds):
    """Makes a WAV whose pitch rises steadily, so that a piece of it tells its place."""
    subprocess.run(["sox", "-n", "-r", "16000", "-b", "16", path, "synth", str(seconds), "sine",
                    f"{FIRST_PITCH}:{FIRST_PITCH + RISE * seconds}", "gain", "-6"], check=True)
    return path


class Sound:
    """The sound of a session. All programs that it starts from now on play there."""

    def __init__(self, session):
        self._session = session
        folder = session.folder / "sound"
        session.environment.update(PULSE_SERVER=f"unix:{folder}/native", PULSE_COOKIE=str(folder / "cookie"))
        self._server = session.start([SERVER, folder], stderr=subprocess.DEVNULL)
        if not comes(self._answers):
            raise RuntimeError("the sound server (pulseaudio) did not start")

    def end(self):
        self._server.kill()
        self._server.wait()

    def place(self, length=0.25):
        """Where in a rising tone stands what is heard now, in seconds of the file; None for silence."""
        samples = self._hear(length)
        if max(abs(sample) for sample in samples) < 300:
            return None
        rises = [i for i in range(1, len(samples)) if samples[i - 1] < 0 <= samples[i]]
        if len(rises) < 2:
            return None
        pitch = (len(rises) - 1) * RATE / (rises[-1] - rises[0])
        return (pitch - FIRST_PITCH) / RISE

    def _hear(self, seconds):
        listener = self._session.start(
            ["parec", "--device=speaker.monitor", "--format=s16le", f"--rate={RATE}", "--channels=1",
             "--latency-msec=20", "--raw"], stdout=subprocess.PIPE)
        try:
            samples = array.array("h", listener.stdout.read(2 * int(RATE * seconds)))
        finally:
            listener.stdout.close()
            listener.kill()
            listener.wait()
        return samples

    def _answers(self):
        return subprocess.run(["pactl", "info"], env=self._session.environment, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0
