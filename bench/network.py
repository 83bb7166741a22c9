#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures the dialog mode and the network link, as measure.py measures the rest.

    network.py dialog | latency | entries | flood | all   [--runs 3]

  dialog   answers a second with one client that waits for each, over TCP and over a pseudo-terminal,
           beside a responder in Python that does the same; time from the last byte in to the first out;
           CPU time of an answer
  latency  time of an answer over a pseudo-terminal: in the dialog mode, and given by a script in either language
  entries  dialog with 10,000 entries in Dialog.txt beside 10
  flood    200 MB over TCP into the receive side, display and LOG.TXT on, beside `nc -l > file`

Needs Xvfb and libX11 for the window; latency also libXtst, flood nc (netcat-openbsd).
"""
import argparse
import os
import select
import shutil
import socket
import statistics
import subprocess
import sys
import tempfile
import time
from contextlib import ExitStack
from pathlib import Path

import harness
import measure
from measure import ANSWER, REQUEST, Figure, Session

measure.FIGURES.update({
    "dialog": [
        Figure("tcp", "TCP: answers", "1/s", ">= 1.0", "python_tcp", of_ratio=True),
        Figure("tcp_p50", "TCP: half of the answers within", "µs", "", "python_tcp_p50"),
        Figure("tcp_p99", "TCP: 99 % within", "µs", "", "python_tcp_p99"),
        Figure("tcp_cpu", "TCP: CPU time of an answer", "µs", "", "python_tcp_cpu"),
        Figure("pty", "pseudo-terminal: answers", "1/s", ">= 1.0", "python_pty", of_ratio=True),
        Figure("pty_p50", "pseudo-terminal: half within", "µs", "", "python_pty_p50"),
        Figure("pty_p99", "pseudo-terminal: 99 % within", "µs", "", "python_pty_p99"),
        Figure("pty_cpu", "pseudo-terminal: CPU time of an answer", "µs", "", "python_pty_cpu"),
    ],
    "latency": [
        Figure(f"{key}{suffix}", f"{label}: {within} within", "µs")
        for key, label in (("dialog", "dialog mode"), ("vbs", "VBScript"), ("js", "JScript"))
        for suffix, within in (("_p50", "half of the answers"), ("_p99", "99 %"))
    ],
    "entries": [Figure("many", "TCP, 10,000 entries: answers", "1/s", ">= 0.9", "few", of_ratio=True)],
    "flood": [
        Figure("lines", "lines", "1/s"),
        Figure("lost", "lines lost", "", "< 1"),
        Figure("rate", "TCP until all is in the file", "MB/s", "", "nc"),
        Figure("peak", "peak memory", "MB", "< 150"),
        Figure("exact", "LOG.TXT byte for byte", "", ">= 1"),
    ],
})

# What the dialog mode is held against: it answers every line, and nothing else.
TCP_RESPONDER = """
import socket, sys
server = socket.create_server(("127.0.0.1", int(sys.argv[1])))
while True:
    peer, _ = server.accept()
    peer.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
    buffer = b""
    while data := peer.recv(4096):
        buffer += data
        while b"\\n" in buffer:
            line, buffer = buffer.split(b"\\n", 1)
            if line == b"READ\\r":
                peer.sendall(b"ST,GS,+00012.345 kg\\r\\n")
"""
PTY_RESPONDER = """
import os, sys, tty
port = os.open(sys.argv[1], os.O_RDWR | os.O_NOCTTY)
tty.setraw(port)
buffer = b""
while data := os.read(port, 4096):
    buffer += data
    while b"\\n" in buffer:
        line, buffer = buffer.split(b"\\n", 1)
        if line == b"READ\\r":
            os.write(port, b"ST,GS,+00012.345 kg\\r\\n")
"""


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def connected(port):
    """A connection to whatever will listen there soon."""
    deadline = time.monotonic() + 30
    while time.monotonic() < deadline:
        try:
            link = socket.create_connection(("127.0.0.1", port))
            link.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            return link
        except ConnectionRefusedError:
            time.sleep(0.02)
    raise RuntimeError("nobody listens")


def ask(file, seconds):
    """(answers a second, median and 99th percentile in µs) of a client that waits for each answer."""
    times, end = [], time.monotonic() + seconds
    while time.monotonic() < end:
        begun = time.perf_counter()
        os.write(file, REQUEST)
        answer = b""
        while not answer.endswith(b"\n"):
            if not select.select([file], [], [], 5)[0]:
                raise RuntimeError(f"no answer, {answer!r}")
            if not answer:
                times.append(time.perf_counter() - begun)
            answer += os.read(file, 4096)
        if answer != ANSWER:
            raise RuntimeError(f"answer {answer!r}")
    times.sort()
    return len(times) / seconds, statistics.median(times) * 1e6, times[len(times) * 99 // 100] * 1e6


class Responder:
    """The reference, in a process of its own."""

    def __init__(self, text, word):
        self.process = subprocess.Popen([sys.executable, "-c", text, str(word)])

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()


def dialog_session(options, port, settings, entries=10):
    table = "".join(f"CMD{number}=ANSWER{number}\n" for number in range(entries))
    text = f"[COMMAND]\n{table}READ={ANSWER.decode().strip()}\n"
    return Session(options, port, ["LOAD", "DIALOG"], settings, headless=False,
                   files={"Dialog.txt": text})


def alternate(ends, seconds, bursts=20):
    """Asks each of {name: (file, process id)} in turn, in short bursts: what is compared shares the state of the
    machine that way. {name: (mean answers a second, medians of ask()'s times, CPU µs of an answer)}"""
    results = {name: [] for name in ends}
    for burst in range(bursts):
        for name in sorted(ends, reverse=bool(burst % 2)):
            file, pid = ends[name]
            cpu = harness.cpu_seconds(pid)
            rate, half, most = ask(file, seconds / bursts)
            results[name].append((rate, half, most, harness.cpu_seconds(pid) - cpu))
    figures = {}
    for name, rows in results.items():
        rates, halves, mosts, cpus = zip(*rows)
        answers = sum(rates) * seconds / bursts
        figures[name] = (statistics.mean(rates), statistics.median(halves), statistics.median(mosts),
                         sum(cpus) / answers * 1e6)
    return figures


def named(results):
    """The figures of alternate() under the keys of FIGURES."""
    return {name + suffix: value for name, result in results.items()
            for suffix, value in zip(("", "_p50", "_p99", "_cpu"), result)}


def listener(options, entries=10):
    """(session, port) of a program that answers over TCP."""
    port = free_port()
    return dialog_session(options, "NET", {"chkListen": 1, "txtPort": port}, entries), port


def measure_dialog(options):
    port = free_port()
    with Responder(TCP_RESPONDER, port) as python, connected(port) as python_link:
        session, port = listener(options)
        with session, connected(port) as link:
            figures = named(alternate({"python_tcp": (python_link.fileno(), python.process.pid),
                                       "tcp": (link.fileno(), session.pid)}, options.seconds))
    with harness.Link() as python_link, Responder(PTY_RESPONDER, python_link.path) as python, \
            harness.Link() as link, dialog_session(options, link.path, {}) as session:
        time.sleep(0.5)
        figures.update(named(alternate({"python_pty": (python_link.master, python.process.pid),
                                        "pty": (link.master, session.pid)}, options.seconds)))
    return figures


# Scripts that answer as the dialog mode does.
ANSWERING = {
    "vbs": """Sub ReceiveString()
  If StringReceived.InputString = "READ" & vbCrLf Then FormMain.SendString "ST,GS,+00012.345 kg" & vbCrLf
  StringReceived.OutputString = StringReceived.InputString
End Sub
""",
    "js": """function ReceiveString() {
  if (StringReceived.InputString == "READ\\r\\n") FormMain.SendString("ST,GS,+00012.345 kg\\r\\n");
  StringReceived.OutputString = StringReceived.InputString;
}
""",
}


def answering_session(options, port, kind):
    if kind == "dialog":
        return dialog_session(options, port, {})
    files = {"any.vbs": "", f"answer.{kind}": ANSWERING[kind]}  # a list without any .vbs would not open
    settings = {"chkEnableScript": 1, "txtScriptFile": f"answer.{kind}"}
    return Session(options, port, ["LOAD"], settings, files=files)


def measure_latency(options):
    with ExitStack() as stack:
        ends = {}
        for kind in ("dialog", *ANSWERING):
            link = stack.enter_context(harness.Link())
            session = stack.enter_context(answering_session(options, link.path, kind))
            ends[kind] = (link.master, session.pid)
        time.sleep(1)
        return named(alternate(ends, options.seconds))


def measure_entries(options):
    few, few_port = listener(options, 10)
    with few, connected(few_port) as few_link:
        many, many_port = listener(options, 10_000)
        with many, connected(many_port) as many_link:
            return named(alternate({"few": (few_link.fileno(), few.pid),
                                    "many": (many_link.fileno(), many.pid)}, options.seconds))


def pour(port, file, data):
    """Seconds until all of `data` is in `file`."""
    with connected(port) as link:
        begun = time.monotonic()
        link.sendall(data)
        while not file.exists() or file.stat().st_size < len(data):
            if time.monotonic() - begun > 120:
                raise RuntimeError(f"{file} stays at {file.stat().st_size} bytes")
            time.sleep(0.002)
        return time.monotonic() - begun


def measure_flood(options):
    data = measure.numbered_lines(200_000_000 // len(measure.LINE % 0))
    folder, port = Path(tempfile.mkdtemp(prefix="quarlin-bench-")), free_port()
    with open(folder / "kept", "wb") as kept:
        nc = subprocess.Popen(["nc", "-l", "127.0.0.1", str(port)], stdout=kept,
                              stdin=subprocess.DEVNULL)
        time.sleep(0.5)
        nc_seconds = pour(port, folder / "kept", data)
        nc.kill()
        nc.wait()
    shutil.rmtree(folder)
    port = free_port()
    with Session(options, "NET", ["LOAD"], {"chkListen": 1, "txtPort": port, "chkLog": 1}) as session:
        session.settle()
        seconds = pour(port, session.log, data)
        peak, logged = harness.memory_mb(session.pid, "VmHWM"), session.logged()
        return {"rate": len(data) / 1e6 / seconds, "nc": len(data) / 1e6 / nc_seconds, "peak": peak,
                "lines": data.count(b"\n") / seconds, "lost": measure.lost_lines(data, logged),
                "exact": int(logged == data)}


NAMES = {"dialog": measure_dialog, "latency": measure_latency, "entries": measure_entries, "flood": measure_flood}
measure.MEASURES.update(NAMES)


def main():
    parse = argparse.ArgumentParser(description=__doc__,
                                    formatter_class=argparse.RawDescriptionHelpFormatter)
    parse.add_argument("what", choices=[*NAMES, "all"])
    parse.add_argument("--runs", type=int, default=3)
    parse.add_argument("--program", type=Path, default=measure.BINARIES / "quarlin")
    parse.add_argument("--seconds", type=float, default=5, help="length of each count")
    options = parse.parse_args()
    options.headless = False
    options.program = options.program.resolve()
    chosen = list(NAMES) if options.what == "all" else [options.what]
    return 0 if all([measure.measure(name, options) for name in chosen]) else 1


if __name__ == "__main__":
    sys.exit(main())
