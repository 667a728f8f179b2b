#!/usr/bin/python3
"""Measures a download over TLS: download.py BUILD_FOLDER [--gigabytes G] [--rounds N]

A file is fetched from a server on this machine by the application's own machinery and by the curl program, in turn.
The application flushes the file to the disk before it gives it its name, which curl does not; so curl is also measured
with a flush behind it. Printed are the medians and their ratios, what the main thread had to do, and by how much memory
grew; and how many of 60 frames a second the models page draws meanwhile. It is no test: no figure makes it fail. Needs twice the size of the file on the disk of the temporary folder."""

import argparse
import json
import os
import pathlib
import socket
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests/support"))
from model_server import Certificates  # noqa: E402


class Server:
    """The server of the openssl program, which sends files that hold head and body. It is quick, and takes one request
    after the other."""

    def __init__(self, folder, size):
        certificates = Certificates(folder, ["localhost"])
        self.authority = certificates.authority
        with open(folder / "file", "wb") as file:
            file.write(f"HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: {size}\r\n\r\n".encode())
            head = file.tell()
            block = os.urandom(1 << 20)
            while file.tell() < head + size:
                file.write(block[:head + size - file.tell()])
        with socket.create_server(("127.0.0.1", 0)) as probe:
            port = probe.getsockname()[1]
        self.url = f"https://localhost:{port}/file"
        self._process = subprocess.Popen(
            ["openssl", "s_server", "-quiet", "-HTTP", "-accept", f"127.0.0.1:{port}", "-cert", certificates.good,
             "-key", certificates.good.with_suffix(".key")],
            cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(0.5)

    def close(self):
        self._process.terminate()
        self._process.wait()


def timed(function):
    os.sync()  # what an earlier run left to be written is not this one's
    begin = time.monotonic()
    result = function()
    return time.monotonic() - begin, result


def compare(server, folder, options):
    environment = {name: value for name, value in os.environ.items() if not name.lower().endswith("_proxy")}
    environment["SSL_CERT_FILE"] = str(server.authority)
    target = folder / "by-curl"
    fetch = ["curl", "-sS", "--fail", "--cacert", server.authority, "-o", target, server.url]

    def by_curl():
        subprocess.run(fetch, env=environment, check=True)

    def by_curl_with_a_flush():
        by_curl()
        subprocess.run(["sync", target], check=True)

    def by_application():
        command = [options.build / "benchmarks/one_download", server.url, folder / "own"]
        return json.loads(subprocess.run(command, env=environment, check=True, stdout=subprocess.PIPE).stdout)

    by_curl()  # warms up
    curl, flushed, own, costs = [], [], [], []
    for _ in range(options.rounds):
        for times, way in ((curl, by_curl), (flushed, by_curl_with_a_flush), (own, by_application)):
            seconds, cost = timed(way)
            times.append(seconds)
            if cost:
                costs.append(cost)
            target.unlink(missing_ok=True)
        (folder / "own/Sorvanta/Models/ggml-tiny.bin").unlink()
        print(f"  curl {curl[-1]:.2f} s, with a flush {flushed[-1]:.2f} s, application {own[-1]:.2f} s", flush=True)
    median = {name: statistics.median(times) for name, times in (("curl", curl), ("flushed", flushed), ("own", own))}
    print(f"{options.gigabytes} GB, medians of {options.rounds}: curl {median['curl']:.2f} s, curl with a flush "
          f"{median['flushed']:.2f} s, application {median['own']:.2f} s; speed of the application over that of curl "
          f"{median['curl'] / median['own']:.2f}, over curl with a flush {median['flushed'] / median['own']:.2f}")
    print(f"main thread: {max(cost['main_thread_seconds'] for cost in costs) * 1000:.1f} ms of processor time at most, "
          f"for {max(cost['changes'] for cost in costs)} changes at most")
    print(f"memory grew by at most {max(cost['growth'] for cost in costs):.1f} MB")


def measure_frames(server, folder, options):
    environment = {name: value for name, value in os.environ.items() if not name.lower().endswith("_proxy")}
    environment["SSL_CERT_FILE"] = str(server.authority)
    for _ in range(options.rounds):
        command = [options.build / "benchmarks/download_frames", server.url, folder / "shown"]
        seen = json.loads(subprocess.run(command, env=environment, check=True, stdout=subprocess.PIPE).stdout)
        (folder / "shown/Sorvanta/Models/ggml-large-v3-turbo.bin").unlink()
        print(f"frames: {seen['frames']} a second, {seen['gap']} ms between two at most; at rest "
              f"{seen['resting_frames']} and {seen['resting_gap']} ms", flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--gigabytes", type=float, default=2)
    parser.add_argument("--rounds", type=int, default=5)
    options = parser.parse_args()
    options.build = options.build.resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        server = Server(folder, int(options.gigabytes * 1e9))
        try:
            compare(server, folder, options)
            measure_frames(server, folder, options)
        finally:
            server.close()


if __name__ == "__main__":
    main()
