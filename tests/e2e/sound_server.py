"""A private sound server for the programs of a session."""

import array
import pathlib
import subprocess
import time

from waiting import comes

SCRIPT = pathlib.Path(__file__).resolve().parents[1] / "support/sound_server.sh"
RATE = 8000


class SoundServer:
    """A server that the programs that the session starts from now on find. It ends with the session."""

    def __init__(self, session):
        self.session = session
        folder = session.folder / f"sound{time.monotonic_ns()}"
        session.environment.update(PULSE_SERVER=f"unix:{folder}/native", PULSE_COOKIE=str(folder / "cookie"))
        self._process = session.start([SCRIPT, folder], stderr=subprocess.DEVNULL)
        if not comes(self._answers):
            raise RuntimeError("the sound server did not start")

    def end(self):
        self._process.kill()
        self._process.wait()

    def hear(self, seconds):
        """What is played from now on for so long: samples of 16 bits, RATE a second."""
        listener = self.session.start(
            ["parec", "--device=speaker.monitor", "--format=s16le", f"--rate={RATE}", "--channels=1",
             "--latency-msec=20", "--raw"], stdout=subprocess.PIPE)
        try:
            return array.array("h", listener.stdout.read(2 * int(RATE * seconds)))
        finally:
            listener.stdout.close()
            listener.kill()
            listener.wait()

    def _answers(self):
        return subprocess.run(["pactl", "info"], env=self.session.environment, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0
