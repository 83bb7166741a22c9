#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures what is sent by hand: a file as it is, and a typed key.

    by_hand.py file | key | all   [--runs 3]

  file  100 MB as they are, log off, without local echo, over a pseudo-terminal, from the first byte at the other
        end to the last; beside `cat FILE > PORT` on the same pseudo-terminal, before and after it; memory growth
  key   the time from a key's press at the X server to its byte at the other end of the pseudo-terminal

Both drive the real window: needs Xvfb, libX11 and libXtst.
"""
import argparse
import hashlib
import os
import select
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import harness
import measure
from measure import Figure, Session

measure.FIGURES.update({
    "file": [
        Figure("rate", "a file as it is", "MB/s", ">= 0.8", "cat", of_ratio=True),
        Figure("growth", "memory growth while it is sent", "MB", "< 5"),
        Figure("exact", "byte for byte", "", ">= 1"),
    ],
    "key": [
        Figure("median", "key to wire, half within", "ms", "< 2"),
        Figure("p99", "key to wire, 99 % within", "ms"),
    ],
})


def drain(link, size, begin):
    """Calls `begin` and takes `size` bytes; returns MB/s from the first to the last, and their digest."""
    digest, taken, first = hashlib.blake2b(), 0, None
    pieces = []
    begin()
    while taken < size and select.select([link.master], [], [], 20)[0]:
        piece = os.read(link.master, 1 << 16)
        first = first or time.monotonic()
        taken += len(piece)
        pieces.append(piece)
    seconds = time.monotonic() - first if first else 1
    for piece in pieces:
        digest.update(piece)
    return taken / seconds / 1e6, digest.digest()


def cat_rate(link, file, size):
    with open(link.path, "wb", buffering=0) as port:
        started = []
        rate, _ = drain(link, size,
                        lambda: started.append(subprocess.Popen(["cat", file], stdout=port)))
        started[0].wait()
    return rate


def send_file(session, hands, windows):
    hands.focus(session.window)
    hands.press(b"F6")
    dialog = windows.wait_mapped(10)
    if dialog is None:
        raise RuntimeError("the window did not ask for a file")
    hands.focus(dialog)
    hands.press(b"f")
    time.sleep(0.3)
    hands.press(b"Return")
    time.sleep(0.5)
    hands.focus(session.window)
    peak = harness.memory_mb(session.pid, "VmHWM")  # the dialog has had its memory
    hands.press(b"Return")
    return peak


def measure_file(options):
    size = options.megabytes * 1_000_000
    with tempfile.TemporaryDirectory(prefix="quarlin-bench-") as folder:
        content = os.urandom(size)
        Path(folder, "f").write_bytes(content)
        os.chdir(folder)  # where the program looks for files first
        with harness.Link() as link:
            before = cat_rate(link, "f", size)
            with Session(options, link.path, ["LOAD"], {"chkEcho": 0}) as session:
                session.settle()
                hands, windows = harness.Hands(session.screen.name), harness.Windows(session.screen.name)
                peaks = []
                rate, digest = drain(link, size,
                                     lambda: peaks.append(send_file(session, hands, windows)))
                growth = harness.memory_mb(session.pid, "VmHWM") - peaks[0]
                hands.close()
                windows.close()
            after = cat_rate(link, "f", size)
        os.chdir("/")
    return {"rate": rate, "cat": (before + after) / 2, "growth": growth,
            "exact": int(digest == hashlib.blake2b(content).digest())}


def measure_key(options):
    delays = []
    with harness.Link() as link, Session(options, link.path, ["LOAD"], {"chkTerminal": 1}) as session:
        session.settle()
        hands = harness.Hands(session.screen.name)
        hands.focus(session.window)
        hands.click(300, 400)  # into the display
        for _ in range(options.keys):
            time.sleep(0.02)
            start = time.monotonic()
            hands.press(b"a")
            if not select.select([link.master], [], [], 2)[0]:
                raise RuntimeError("a key did not arrive")
            delays.append((time.monotonic() - start) * 1000)
            if os.read(link.master, 100) != b"a":
                raise RuntimeError("another key arrived")
        hands.close()
    ordered = sorted(delays)
    return {"median": statistics.median(ordered), "p99": ordered[len(ordered) * 99 // 100]}


def main():
    parse = argparse.ArgumentParser(description=__doc__,
                                    formatter_class=argparse.RawDescriptionHelpFormatter)
    parse.add_argument("what", choices=["file", "key", "all"])
    parse.add_argument("--runs", type=int, default=3)
    parse.add_argument("--program", type=Path, default=measure.BINARIES / "quarlin")
    parse.add_argument("--megabytes", type=int, default=100)
    parse.add_argument("--keys", type=int, default=300)
    options = parse.parse_args()
    options.program = options.program.resolve()
    measure.MEASURES.update({"file": measure_file, "key": measure_key})
    names = ["file", "key"] if options.what == "all" else [options.what]
    good = [measure.measure(name, options) for name in names]
    return 0 if all(good) else 1


if __name__ == "__main__":
    sys.exit(main())
