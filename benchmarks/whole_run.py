#!/usr/bin/python3
"""Measures the whole program: whole_run.py BUILD_FOLDER [--minutes M] [--layers L] [--rounds N]

A long file goes through the application, driven through its accessibility tree, and through the bare engine, in turn.
Printed are the medians of the wall clock and their ratio, the application's own share of processor time, the time from
the start to the first frame, and the memory. It is no test: no figure makes it fail. Measure on a quiet machine."""

import argparse
import os
import pathlib
import statistics
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests/e2e"))
from accessible_window import AccessibleWindow  # noqa: E402
from media import Media  # noqa: E402
from virtual_session import VirtualSession  # noqa: E402

TICK = os.sysconf("SC_CLK_TCK")
ENGINE = "lib/sorvanta/sorvanta_extra_data/whisper.cpp/build/bin/whisper-cli"


def own_processor_time(process):
    """Seconds of processor time of that process without its children."""
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / TICK


def memory(process):
    """The resident memory now and at its highest, in MB."""
    status = dict(line.split(":", 1) for line in pathlib.Path(f"/proc/{process.pid}/status").read_text().splitlines())
    return tuple(int(status[key].split()[0]) / 1024 for key in ("VmRSS", "VmHWM"))


class Benchmark:
    def __init__(self, session, options):
        self._session = session
        self._build = options.build.resolve()
        self._options = options
        self._model = session.data / "Sorvanta/Models/ggml-tiny.bin"

    def run(self):
        self._prepare()
        self._measure_start()
        self._measure_runs()

    def _prepare(self):
        defaults = self._session.home / ".config/Sorvanta/Sorvanta.conf"
        defaults.parent.mkdir(parents=True)
        defaults.write_text("[General]\nhasAcceptedPolicies=true\n")
        self._model.parent.mkdir(parents=True)
        subprocess.run([self._build / "tests/make_scripted_model", self._model, str(self._options.layers)], check=True,
                       stdout=subprocess.DEVNULL)
        media = Media(self._session.folder / "media")
        self._audio = media.speech("long.wav", self._options.minutes * 60)

    def _start(self):
        return self._session.start([self._build / "bin/sorvanta"], stdout=subprocess.DEVNULL)

    def _measure_start(self):
        times, resident = [], []
        for _ in range(1 + 2 * self._options.rounds):  # the first one warms up
            begin = time.monotonic()
            program = self._start()
            while self._session.pixel(self._session.size[0] - 5, 5) == (0, 0, 0):
                time.sleep(0.002)
            times.append(time.monotonic() - begin)
            AccessibleWindow(program).expect("Choose File…")
            time.sleep(1)
            resident.append(memory(program)[0])
            program.terminate()
            program.wait()
            while self._session.pixel(self._session.size[0] - 5, 5) != (0, 0, 0):
                time.sleep(0.01)
        print(f"start to first frame: median {statistics.median(times[1:]) * 1000:.0f} ms of "
              + ", ".join(f"{value * 1000:.0f}" for value in times[1:]) + f"; the first one {times[0] * 1000:.0f} ms")
        print(f"resident memory after the start: {statistics.median(resident):.0f} MB")

    def _measure_runs(self):
        program = self._start()
        window = AccessibleWindow(program)
        window.press("Choose File…")
        window.choose_file(self._audio)
        application, bare, own, engine = [], [], [], []
        for _ in range(self._options.rounds):
            wall, processor = self._run_bare()
            bare.append(wall)
            engine.append(processor)
            wall, processor = self._run_application(program, window)
            application.append(wall)
            own.append(processor)
            print(f"  engine {bare[-1]:.2f} s, application {application[-1]:.2f} s, its own processor time "
                  f"{own[-1]:.2f} s, the engine's {engine[-1]:.2f} s", flush=True)
        ratio = statistics.median(application) / statistics.median(bare)
        share = statistics.median(own) / statistics.median(engine)
        now, highest = memory(program)
        print(f"{self._options.minutes} minutes of audio, {self._options.layers} layers, medians of "
              f"{self._options.rounds}: wall {statistics.median(application):.2f} s against "
              f"{statistics.median(bare):.2f} s, ratio {ratio:.3f}; own processor time {share * 100:.2f} % of the "
              f"engine's; resident memory {now:.0f} MB, at most {highest:.0f} MB")

    def _run_bare(self):
        begin, before = time.monotonic(), os.times()
        subprocess.run([self._build / ENGINE, "-m", self._model, "-f", self._audio, "-l", "auto"],
                       env=self._session.environment, check=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        after = os.times()
        return time.monotonic() - begin, (after.children_user - before.children_user
                                          + after.children_system - before.children_system)

    def _run_application(self, program, window):
        processor, begin = own_processor_time(program), time.monotonic()
        window.press("Transcribe")
        window.expect("Stop")
        # Looking costs the application time, so the end is told by the engine's.
        engine = self._engine_of(program)
        while engine.exists():
            time.sleep(0.01)
        window.expect("Done")
        return time.monotonic() - begin, own_processor_time(program) - processor


    @staticmethod
    def _engine_of(program):
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if (process / "stat").read_text().rpartition(")")[2].split()[1] == str(program.pid):
                    return process
            except OSError:
                continue
        raise RuntimeError("the engine did not start")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--minutes", type=int, default=30)
    parser.add_argument("--layers", type=int, default=1)
    parser.add_argument("--rounds", type=int, default=3)
    options = parser.parse_args()
    with VirtualSession() as session:
        Benchmark(session, options).run()


if __name__ == "__main__":
    main()
