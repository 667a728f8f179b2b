#!/usr/bin/python3
"""Shows the main job of the application where there is no display: demonstration.py BUILD_FOLDER

The real program runs in a virtual display and is driven as a user would drive it: the agreement, a file, Transcribe, the
growing text, the entry in the history. Nothing of the user's own history or models is touched."""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import time

from accessible_window import AccessibleWindow, NotFound
from virtual_session import VirtualSession
from waiting import PATIENCE

PROJECT = pathlib.Path(__file__).resolve().parents[2]
SPEECH = PROJECT / "node_modules/nodejs-whisper/cpp/whisper.cpp/samples/jfk.mp3"
MODEL_NAMES = {  # the models of the application, in its order, with the names of its picker
    "ggml-large-v3-turbo.bin": "Large V3 Turbo", "ggml-large-v3.bin": "Large V3", "ggml-medium.bin": "Medium",
    "ggml-base.bin": "Base", "ggml-small.bin": "Small", "ggml-tiny.bin": "Tiny",
}


def step(text):
    print("==", text, flush=True)


def user_models():
    """The models that the user downloaded."""
    data = pathlib.Path(os.environ.get("XDG_DATA_HOME") or pathlib.Path.home() / ".local/share")
    folder = data / "Sorvanta/Models"
    return [folder / name for name in MODEL_NAMES if (folder / name).is_file()]


def provide_model(session, build):
    """Puts a model where the program of this session looks for it."""
    folder = session.data / "Sorvanta/Models"
    folder.mkdir(parents=True, exist_ok=True)
    downloaded = user_models()
    if downloaded:
        (folder / downloaded[0].name).symlink_to(downloaded[0])
        step(f"Using your downloaded model {MODEL_NAMES[downloaded[0].name]}")
        return
    subprocess.run([build / "tests/make_scripted_model", folder / "ggml-tiny.bin"], check=True,
                   stdout=subprocess.DEVNULL)
    step("No downloaded model is there, so a computed one takes its place. It recites a fixed text and RECOGNISES "
         "NOTHING: the words below are not those of the file")


def follow(window):
    """Prints each row of the transcript as it comes, until the run is done."""
    seen = []
    while True:
        is_done = window.find("Done")
        rows = window.transcript()
        for i, row in enumerate(rows):
            if row not in seen[i:i + 1]:
                print("  ", row, flush=True)
        seen = rows
        if is_done:
            return
        if window.find("Copy Error"):
            raise NotFound("the transcription failed: " + window.summary())
        time.sleep(0.05)


def show(session, build, results):
    program = session.start([build / "bin/sorvanta"], stdout=subprocess.DEVNULL)
    window = AccessibleWindow(program)
    step("Agreeing to the terms")
    window.press("I Agree and Continue")
    step(f"Choosing {SPEECH.name}")
    window.press("Choose File…")
    window.choose_file(SPEECH)
    step("Transcribing")
    window.press("Transcribe")
    follow(window)
    session.focus("Sorvanta")
    screenshot = results / "screenshot.png"
    session.screenshot(screenshot)
    history = session.data / "sorvanta/transcription-history.json"
    entry = json.loads(history.read_text(encoding="utf-8"))[0]
    step("The transcript, as the history keeps it:")
    print(entry["text"])
    step(f"History file: {history}")
    step(f"Screenshot: {screenshot}")
    program.terminate()
    program.wait(PATIENCE)


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    results = build / "demonstration"
    if results.exists():
        shutil.rmtree(results)
    results.mkdir(parents=True)
    try:
        with VirtualSession(results / "session") as session:
            provide_model(session, build)
            show(session, build, results)
    except (NotFound, OSError, RuntimeError, subprocess.CalledProcessError) as failure:
        print("The demonstration could not go on:", failure, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
