#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the live plot costs: a running cycle at 1 ms with the plot window open, beside the same with it closed.

    plot.py [--program PATH] [--seconds 10] [--pairs 3] [--filter "Butterworth"]

Both run at the same time, each with an instrument and a screen of its own. Exit status 1 where the program with the
plot open takes more than 15 % of a core, or makes less than 0.95 of the exchanges of the other. Needs what measure.py needs, and libXtst.
"""
import argparse
import os
import statistics
import subprocess
import sys
import tempfile
import time
from contextlib import ExitStack
from pathlib import Path

import harness
import measure

MOST, LEAST = 15, 0.95  # % of a core, exchanges of those with the plot closed


class Side:
    def __init__(self, stack, options, pingpong, plotted):
        settings = {"CBOSEND": "READ", "Check1": 1, "txtAnswerTime": 1000, "txtInterval": 1}
        if options.filter:
            settings |= {"cboFilter": options.filter, "txtFilterRate": 1000, "txtFilterCutoff": 10}
        self.instrument = stack.enter_context(measure.Instrument(pingpong))
        self.session = stack.enter_context(
            measure.Session(options, self.instrument.port, ["LOAD", "RUN"], settings))
        if plotted:
            self.open_plot()

    def open_plot(self):
        windows = harness.Windows(self.session.screen.name)
        hands = harness.Hands(self.session.screen.name)
        hands.focus(self.session.window)
        hands.chord(b"Control_L", b"Shift_L", b"p")
        if windows.wait_mapped(10) is None:
            raise RuntimeError("the plot window did not come")
        windows.close()
        hands.close()

    def burst(self, seconds):
        """CPU percent of the program and of its X server, and points a second."""
        pids = (self.session.pid, self.session.screen.process.pid)
        before, answers, began = [harness.cpu_seconds(pid) for pid in pids], self.instrument.answers(), time.monotonic()
        yield
        took = time.monotonic() - began
        yield (*((harness.cpu_seconds(pid) - cpu) / took * 100 for pid, cpu in zip(pids, before)),
               (self.instrument.answers() - answers) / took)


def main():
    parse = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parse.add_argument("--program", type=Path, default=measure.HERE.parent / "build/release/bin/quarlin")
    parse.add_argument("--seconds", type=int, default=10)
    parse.add_argument("--pairs", type=int, default=3)
    parse.add_argument("--filter", default="")
    options = parse.parse_args()
    options.program = options.program.resolve()
    with ExitStack() as stack:
        folder = stack.enter_context(tempfile.TemporaryDirectory(prefix="quarlin-bench-"))
        pingpong = os.path.join(folder, "pingpong")
        subprocess.run(["cc", "-O2", "-o", pingpong, measure.HERE / "pingpong.c", "-lutil"], check=True)
        sides = {"closed": Side(stack, options, pingpong, False), "open": Side(stack, options, pingpong, True)}
        time.sleep(3)
        rows = {name: [] for name in sides}
        for _ in range(options.pairs):
            bursts = {name: side.burst(options.seconds) for name, side in sides.items()}
            for burst in bursts.values():
                next(burst)
            time.sleep(options.seconds)
            for name, burst in bursts.items():
                rows[name].append(next(burst))
    print(f"Load average {os.getloadavg()[0]:.2f}; medians of {options.pairs} times {options.seconds} s\n\n"
          "| plot | program, % of a core | X server | points a second |\n|---|---|---|---|")
    medians = {name: [statistics.median(column) for column in zip(*taken)] for name, taken in rows.items()}
    for name, (program, screen, rate) in medians.items():
        print(f"| {name} | {program:.1f} | {screen:.1f} | {rate:.0f} |")
    share = medians["open"][2] / medians["closed"][2]
    good = medians["open"][0] < MOST and share >= LEAST
    print(f"\nunder {MOST} % and at least {LEAST} of the exchanges ({share:.2f}): {'yes' if good else 'NO'}")
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
