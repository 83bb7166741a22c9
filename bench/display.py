#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What it costs to show a line at 921,600 baud: the program and its X server together, beside gtkterm.

    display.py AFTER [--before BEFORE] [--seconds 5] [--bursts 6]

AFTER and BEFORE are programs' paths. All run at the same time, each on a pseudo-terminal and a screen of its own, and
are sent lines in turn, so that what the machine does meanwhile strikes all alike. Quarlin writes LOG.TXT meanwhile;
gtkterm writes no log. Exit status 1 where AFTER takes more than 0.6 of gtkterm's CPU time. gtkterm is only measured:
apt-get install gtkterm. Needs Xvfb, libX11 and cc, as measure.py does.
"""
import argparse
import os
import signal
import statistics
import subprocess
import sys
import tempfile
import time
from contextlib import ExitStack
from pathlib import Path

import harness
import measure

RATE = 92160   # bytes a second at 921,600 baud
REACH = 0.6    # of gtkterm's CPU time
GTKTERM = """[default]
port = {port}
speed = 921600
bits = 8
stopbits = 1
parity = none
flow = none
font = "Monospace 10"
term_scrollback = 10000
"""


class Quarlin:
    """Connected, its log on and its display full."""

    def __init__(self, stack, program):
        self.link = stack.enter_context(harness.Link())
        self.session = stack.enter_context(
            measure.Session(argparse.Namespace(program=program), self.link.path, ["LOAD"], {"chkLog": 1}))
        self.pid, self.screen = self.session.pid, self.session.screen.process.pid
        measure.send_all(self.link, self.session.program, measure.numbered_lines(measure.DISPLAY_FULL))
        self.session.settle()


class Gtkterm:
    """Connected. It closes a port that the system's device list does not know, and opens it again when told to."""

    def __init__(self, stack, folder):
        library = folder / "modemlines.so"
        subprocess.run(["cc", "-O2", "-shared", "-fPIC", "-o", library, measure.HERE / "modemlines.c", "-ldl"],
                       check=True)
        self.link = stack.enter_context(harness.Link())
        (folder / ".config").mkdir()
        (folder / ".config/.gtktermrc").write_text(GTKTERM.format(port=self.link.path))
        display = harness.Screen()
        stack.callback(display.close)
        env = dict(os.environ, DISPLAY=display.name, HOME=str(folder), XDG_RUNTIME_DIR=str(folder), NO_AT_BRIDGE="1",
                   GSETTINGS_BACKEND="memory", DBUS_SESSION_BUS_ADDRESS="disabled:", LD_PRELOAD=str(library))
        watch = harness.Windows(display.name)
        program = harness.Program(["gtkterm", "-p", self.link.path, "-s", "921600"], env, str(folder / "output"))
        stack.callback(program.stop)
        if watch.wait_mapped(30) is None:
            raise RuntimeError("gtkterm shows no window")
        watch.close()
        time.sleep(1)
        os.kill(program.pid, signal.SIGUSR1)
        if program.wait_open(self.link.path, 30) is None:
            raise RuntimeError("gtkterm opens no port")
        self.pid, self.screen = program.pid, display.process.pid


def burst(side, seconds):
    """CPU percent of the program, of its X server, and of both."""
    data = measure.numbered_lines(seconds * RATE // len(measure.LINE % 0))
    drawn, began = harness.cpu_seconds(side.screen), time.monotonic()
    program, _ = measure.send_paced(side.link, side.pid, data, RATE)
    screen = (harness.cpu_seconds(side.screen) - drawn) / (time.monotonic() - began) * 100
    return program, screen, program + screen


def main():
    parse = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parse.add_argument("after", type=Path)
    parse.add_argument("--before", type=Path)
    parse.add_argument("--seconds", type=int, default=5, help="length of a burst")
    parse.add_argument("--bursts", type=int, default=6, help="of each program")
    options = parse.parse_args()
    with ExitStack() as stack:
        folder = Path(stack.enter_context(tempfile.TemporaryDirectory(prefix="quarlin-bench-")))
        sides = {"after": Quarlin(stack, options.after.resolve())}
        if options.before:
            sides["before"] = Quarlin(stack, options.before.resolve())
        sides["gtkterm"] = Gtkterm(stack, folder)
        rows = {name: [] for name in sides}
        for number in range(options.bursts):
            print(f"burst {number + 1} of {options.bursts}", file=sys.stderr)
            for name, side in sides.items():
                rows[name].append(burst(side, options.seconds))
    medians = {name: [statistics.median(column) for column in zip(*taken)] for name, taken in rows.items()}
    ratio = medians["after"][2] / medians["gtkterm"][2]
    print(f"Load average {os.getloadavg()[0]:.2f}; medians of {options.bursts} bursts of {options.seconds} s, in % of a core\n\n"
          "| | program | X server | both | of gtkterm's |\n|---|---|---|---|---|")
    for name, (program, screen, both) in medians.items():
        print(f"| {name} | {program:.2f} | {screen:.2f} | {both:.2f} | {both / medians['gtkterm'][2]:.2f} |")
    print(f"\nat most {REACH} of gtkterm's: {'yes' if ratio <= REACH else 'NO'}")
    return 0 if ratio <= REACH else 1


if __name__ == "__main__":
    sys.exit(main())
