#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares two builds of Quarlin: both run at the same time and work in turn, in short bursts, so that what the
machine does meanwhile strikes both alike.

    compare.py BEFORE AFTER [exchange | flood | paced | idle | dialog]... [--bursts 30]

BEFORE and AFTER are the programs' paths. Each figure is the median of its bursts; the ratio is AFTER to BEFORE.
The exit status is 1 where AFTER is worse by more than its limit.

  exchange  CPU time of an exchange at interval 0, without a window
  flood     lines as fast as they are read, display and LOG.TXT on: CPU time of a MB
  paced     lines at 921,600 baud: CPU
  idle      connected, nothing on the line: CPU time and voluntary context switches in 20 s
  dialog    CPU time of an answer over TCP and over a pseudo-terminal

Needs Xvfb, libX11 and cc, as measure.py does.
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
import network
from measure import ANSWER, Session

NAMES = ("before", "after")


def options_of(program):
    return argparse.Namespace(program=program)


def alternate(bursts, sides):
    """The median of what `bursts` calls of each side gave, one after the other: {side: {figure: median}}"""
    rows = {name: [] for name in NAMES}
    for burst in range(bursts):
        for name in NAMES if burst % 2 else reversed(NAMES):
            rows[name].append(sides[name]())
    return {name: {figure: statistics.median(row[figure] for row in rows[name]) for figure in rows[name][0]}
            for name in NAMES}


class Exchanges:
    """A running cycle; its instrument answers during a burst only, and between them nothing is asked."""

    def __init__(self, stack, program, pingpong):
        self.instrument = stack.enter_context(measure.Instrument(pingpong))
        settings = {"CBOSEND": "READ", "Check1": 1, "txtlenrx": len(ANSWER), "txtAnswerTime": 600_000,
                    "txtInterval": 0, "chkLog": 1}
        self.session = stack.enter_context(
            Session(options_of(program), self.instrument.port, ["LOAD", "RUN"], settings, headless=True))
        stack.callback(self.go_on)  # a stopped process would not end
        while not self.instrument.answers():
            time.sleep(0.01)
        time.sleep(1)
        self.instrument.process.send_signal(signal.SIGSTOP)

    def go_on(self):
        self.instrument.process.send_signal(signal.SIGCONT)

    def burst(self):
        self.go_on()
        answers, cpu = self.instrument.answers(), harness.cpu_seconds(self.session.pid)
        time.sleep(0.4)
        cpu = harness.cpu_seconds(self.session.pid) - cpu
        answers = self.instrument.answers() - answers
        self.instrument.process.send_signal(signal.SIGSTOP)
        return {"CPU µs of an exchange": cpu / answers * 1e6, "exchanges/s": answers / 0.4}


def compare_exchange(stack, programs, bursts):
    folder = stack.enter_context(tempfile.TemporaryDirectory(prefix="quarlin-bench-"))
    pingpong = os.path.join(folder, "pingpong")
    subprocess.run(["cc", "-O2", "-o", pingpong, measure.HERE / "pingpong.c", "-lutil"], check=True)
    return alternate(bursts, {name: Exchanges(stack, programs[name], pingpong).burst for name in NAMES})


class Listening:
    """A window that shows and logs what comes, its display full."""

    def __init__(self, stack, program):
        self.link = stack.enter_context(harness.Link())
        self.session = stack.enter_context(
            Session(options_of(program), self.link.path, ["LOAD"], {"chkLog": 1}))
        measure.send_all(self.link, self.session.program, measure.numbered_lines(measure.DISPLAY_FULL))
        self.session.settle()

    def flood(self):
        data = measure.numbered_lines(50_000)
        cpu = harness.cpu_seconds(self.session.pid)
        seconds = measure.send_all(self.link, self.session.program, data)
        time.sleep(0.3)  # what is read must still be shown and logged
        cpu = harness.cpu_seconds(self.session.pid) - cpu
        megabytes = len(data) / 1e6
        return {"CPU ms of a MB": cpu / megabytes * 1e3, "MB/s": megabytes / seconds}

    def pace(self):
        rate = 92160  # bytes a second at 921,600 baud
        data = measure.numbered_lines(rate // len(measure.LINE % 0))
        return {"CPU % of a core": measure.send_paced(self.link, self.session.pid, data, rate)[0]}


def compare_flood(stack, programs, bursts):
    return alternate(bursts, {name: Listening(stack, programs[name]).flood for name in NAMES})


def compare_paced(stack, programs, bursts):
    return alternate(bursts, {name: Listening(stack, programs[name]).pace for name in NAMES})


def compare_idle(stack, programs, _):
    """Both in the same 20 s: an idle program holds nobody up."""
    sessions = {}
    for name in NAMES:
        link = stack.enter_context(harness.Link())
        sessions[name] = stack.enter_context(Session(options_of(programs[name]), link.path, ["LOAD"], {}))
    for session in sessions.values():
        session.settle()
    before = {name: (harness.cpu_seconds(session.pid), harness.context_switches(session.pid)[0])
              for name, session in sessions.items()}
    time.sleep(20)
    return {name: {"CPU ms in 20 s": (harness.cpu_seconds(session.pid) - before[name][0]) * 1e3,
                   "switches in 20 s": harness.context_switches(session.pid)[0] - before[name][1]}
            for name, session in sessions.items()}


class Answering:
    """A window in the dialog mode; `file` asks it."""

    def __init__(self, file, pid):
        self.file, self.pid = file, pid

    def burst(self):
        cpu, seconds = harness.cpu_seconds(self.pid), 0.3
        rate, half, _ = network.ask(self.file, seconds)
        return {"CPU µs of an answer": (harness.cpu_seconds(self.pid) - cpu) / (rate * seconds) * 1e6,
                "µs to half of the answers": half}


def compare_dialog(stack, programs, bursts):
    tcp, pty = {}, {}
    for name in NAMES:
        options = options_of(programs[name])
        session, port = network.listener(options)
        stack.enter_context(session)
        tcp[name] = Answering(stack.enter_context(network.connected(port)).fileno(), session.pid)
        link = stack.enter_context(harness.Link())
        session = stack.enter_context(network.dialog_session(options, link.path, {}))
        session.settle()
        pty[name] = Answering(link.master, session.pid)
    figures = {name: {} for name in NAMES}
    for kind, sides in (("TCP", tcp), ("pty", pty)):
        medians = alternate(bursts, {name: side.burst for name, side in sides.items()})
        for name in NAMES:
            figures[name].update({f"{kind}: {figure}": value for figure, value in medians[name].items()})
    return figures


COMPARISONS = {"exchange": compare_exchange, "flood": compare_flood, "paced": compare_paced,
               "idle": compare_idle, "dialog": compare_dialog}
LIMIT = 1.03           # of every CPU figure
IDLE_SLACK = 5.0       # ms: a ratio of next to nothing says nothing


def compare(name, programs, bursts):
    """Prints one comparison; whether AFTER keeps within the limit."""
    print(f"{name}: {bursts} bursts each", file=sys.stderr)
    load = os.getloadavg()[0]
    with ExitStack() as stack:
        figures = COMPARISONS[name](stack, programs, bursts)
    good = True
    for figure, before in figures["before"].items():
        after, verdict = figures["after"][figure], ""
        ratio = after / before if before else float("nan")
        if "CPU" in figure:
            within = after <= before * LIMIT or (name == "idle" and after <= before + IDLE_SLACK)
            verdict = f"<= {LIMIT}: {'yes' if within else 'NO'}"
            good &= within
        print(f"| {name}: {figure} | {measure.number(before)} | {measure.number(after)} | {ratio:.3f} | {verdict} |")
    print(f"| {name}: load average | {load:.2f} | {os.getloadavg()[0]:.2f} | | |", flush=True)
    return good


def main():
    parse = argparse.ArgumentParser(description=__doc__,
                                    formatter_class=argparse.RawDescriptionHelpFormatter)
    parse.add_argument("before", type=Path)
    parse.add_argument("after", type=Path)
    parse.add_argument("what", nargs="*", help=", ".join(COMPARISONS) + "; all of them by default")
    parse.add_argument("--bursts", type=int, default=30)
    options = parse.parse_args()
    unknown = set(options.what) - set(COMPARISONS)
    if unknown:
        parse.error(f"no such comparison: {', '.join(sorted(unknown))}")
    programs = {"before": options.before.resolve(), "after": options.after.resolve()}
    for program in programs.values():
        if not program.exists():
            sys.exit(f"{program} is not there")
    print("| figure | before | after | ratio | limit |\n|---|---|---|---|---|")
    return 0 if all([compare(name, programs, options.bursts) for name in options.what or COMPARISONS]) else 1


if __name__ == "__main__":
    sys.exit(main())
