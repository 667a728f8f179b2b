#!/usr/bin/python3
"""Measures reading along: reading.py BUILD_FOLDER [--seconds N]

The application, drawn in software, plays a transcribed file with its viewer window open, on a private sound server.
Printed is the processor time of the whole application over the wall time while it plays, with the text at several sizes,
beside the same while it is paused. It is no test: no figure makes it fail. Measure on a quiet machine."""

import argparse
import os
import pathlib
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests/e2e"))
from accessible_window import AccessibleWindow, Atspi  # noqa: E402
from media import Media  # noqa: E402
from sound import Sound  # noqa: E402
from virtual_session import VirtualSession  # noqa: E402

TICK = os.sysconf("SC_CLK_TCK")
AUDIO_SECONDS = 600


def processor_time(process):
    """Seconds of processor time of that process, all threads."""
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / TICK


def share(process, seconds):
    """The share of one core that the process takes, in percent."""
    before, begin = processor_time(process), time.monotonic()
    time.sleep(seconds)
    return 100 * (processor_time(process) - before) / (time.monotonic() - begin)


def transcribed(session, build):
    """The program behind a finished run. @return it, and its window"""
    defaults = session.home / ".config/Sorvanta/Sorvanta.conf"
    defaults.parent.mkdir(parents=True)
    defaults.write_text("[General]\nhasAcceptedPolicies=true\n")
    model = session.data / "Sorvanta/Models/ggml-tiny.bin"
    model.parent.mkdir(parents=True)
    subprocess.run([build / "tests/make_scripted_model", model], check=True, stdout=subprocess.DEVNULL)
    program = session.start([build / "bin/sorvanta"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    window = AccessibleWindow(program)
    window.press("Choose File…")
    window.choose_file(Media(session.folder / "media").speech("talk.wav", AUDIO_SECONDS))
    window.press("Transcribe")
    window.expect("Done", patience=120)
    return program, window


def measure(session, build, seconds):
    program, window = transcribed(session, build)
    print(f"no viewer, nothing played: {share(program, seconds):.1f} % of a core", flush=True)
    window.press("Open Full View")
    viewer = window.inside("Transcript Viewer")
    viewer.wait(viewer.transcript, "the lines in the viewer")
    for size in (16, 12, 96):
        viewer.expect("Text Size", [Atspi.Role.SLIDER]).set_current_value(float(size))
        time.sleep(1)
        paused = share(program, seconds)
        viewer.press("Play")
        viewer.expect("Pause")
        time.sleep(1)
        playing = share(program, seconds)
        viewer.press("Pause")
        viewer.expect("Play")
        print(f"text size {size}: playing {playing:.1f} % of a core, paused {paused:.1f} %", flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--seconds", type=int, default=20)
    options = parser.parse_args()
    with VirtualSession(size=(1400, 900)) as session:
        Sound(session)
        measure(session, options.build.resolve(), options.seconds)


if __name__ == "__main__":
    main()
