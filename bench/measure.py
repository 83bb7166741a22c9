#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures Quarlin from outside, on a pseudo-terminal: how soon it is there and what it costs.

    measure.py start | idle | paced | hook | flood | cycle | interval | memory | micro | all   [--runs 3]

Each figure is the median of the runs, with the lowest and highest beside it. Where something
simpler does the same work it is measured in the same run, and the ratio is the median of the
runs' ratios. The tables are Markdown; the exit status is 1 where a reach was missed.
bench/README.md tells what the figures mean. Needs Xvfb and libX11; cycle also cc; with a script also libXtst.
"""
import argparse
import json
import os
import select
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time
import tty
from dataclasses import dataclass
from pathlib import Path

import harness
import picture

HERE = Path(__file__).resolve().parent
BINARIES = HERE.parent / "build" / "release" / "bin"

LINE = "ST,GS,+00012.345 kg %07d\r\n"
REQUEST, ANSWER = b"READ\r\n", b"ST,GS,+00012.345 kg\r\n"
INTERVALS = (1, 100)  # ms
DISPLAY_FULL = 150_000  # lines; the display keeps 100,000
RECORD_FULL = 15_000    # pieces of 40 lines, a string each; the record of the run keeps 10,000, and 1 KiB of each
BLOCK = 65536


@dataclass
class Figure:
    key: str
    label: str
    unit: str = ""
    reach: str = ""         # such as "< 0.25"; empty where nothing was promised
    reference: str = ""     # key of what it is compared with
    of_ratio: bool = False  # the reach is the ratio's


FIGURES = {
    "start": [
        Figure("mapped", "exec to window mapped", "s", "< 0.25", "version"),
        Figure("answers", "exec to window answering", "s", "< 0.25", "version"),
        Figure("memory", "resident once connected", "MB"),
    ],
    "idle": [
        Figure("cpu", "CPU time in 20 s", "ms", "< 20"),
        Figure("switches", "voluntary context switches in 20 s", "", "< 120"),
    ],
    "paced": [
        Figure("cpu", "CPU, of a core", "%", "< 3", "cat_cpu"),
        Figure("growth", "memory growth, all full", "MB"),
        Figure("backlog", "longest queue before the program", "bytes"),
        Figure("exact", "LOG.TXT byte for byte", "", ">= 1"),
    ],
    "hook": [
        Figure("cpu_vbs", "VBScript: CPU, of a core", "%", "< 25"),
        Figure("exact_vbs", "VBScript: LOG.TXT byte for byte", "", ">= 1"),
        Figure("cpu_js", "JScript: CPU, of a core", "%", "< 25"),
        Figure("exact_js", "JScript: LOG.TXT byte for byte", "", ">= 1"),
    ],
    "flood": [
        Figure("lines", "lines", "1/s"),
        Figure("lost", "lines lost", "", "< 1"),
        Figure("rate", "read", "MB/s", ">= 0.4", "cat_rate", of_ratio=True),
        Figure("settled", "until at rest", "s"),
        Figure("cpu", "CPU time", "s", "", "cat_cpu"),
        Figure("peak", "peak memory", "MB", "< 150"),
        Figure("ping", "longest time without an answer", "ms", "< 100"),
        Figure("exact", "LOG.TXT byte for byte", "", ">= 1"),
    ],
    "cycle": [
        Figure("rate", "interval 0: requests", "1/s", ">= 0.75", "python", of_ratio=True),
        Figure("limit", "  blocking C client", "1/s", "", "python"),
        Figure("cost", "interval 0: CPU time a request", "µs", "", "python_cost"),
        Figure("exact", "interval 0: LOG.TXT complete, in order", "", ">= 1"),
        Figure("rate_1ms", "interval 1 ms: requests", "1/s", ">= 950"),
        Figure("cpu_1ms", "interval 1 ms: CPU, of a core", "%", "< 15"),
        Figure("exact_1ms", "interval 1 ms: LOG.TXT complete, in order", "", ">= 1"),
    ],
    "interval": [
        Figure(f"{key}_{interval}{state}", f"{interval} ms{what}: {label}", unit)
        for interval in INTERVALS for state, what in (("", ""), ("_busy", ", cores busy"))
        for key, label, unit in (("half", "half of the distances off by less than", "ms"),
                                 ("p99", "99 % of them", "ms"), ("longest", "all of them", "ms"),
                                 ("missed", "ticks left out, of a thousand", ""))
    ],
    "memory": [
        Figure("growth", "resident growth, all full", "MB", "< 5"),
        Figure("resident", "resident at the end", "MB"),
        Figure("rate", "read", "million lines/s"),
    ],
}
# The report has the error counters, and only a program without a window prints it at its end.
FIGURES["cycle --headless"] = FIGURES["cycle"] + [
    Figure("errors", "interval 0: errors in the report", "", "< 1"),
]


def numbered_lines(count):
    return "".join(LINE % n for n in range(count)).encode()


class Session:
    """Quarlin in a fresh program folder, connected to `port` where its words say so."""

    screen_size = "1280x800x24"

    def __init__(self, options, port, words, settings, headless=False, files=None):
        self.folder = Path(tempfile.mkdtemp(prefix="quarlin-bench-"))
        self.output, self.log = self.folder / "output", self.folder / "LOG.TXT"
        self.screen, self.program = None, None
        records = {"cboSerial": port, "ComboBaud": "921600", "ComboWord": "n,8,1", **settings}
        (self.folder / "config.cfg").write_text("".join(
            f"{name:20.20}{text!s:100.100}  " for name, text in records.items()))
        for name, text in (files or {}).items():
            (self.folder / name).write_text(text)
        try:
            if not headless:
                self.screen = harness.Screen(self.screen_size)
            watch = harness.Windows(self.screen.name) if self.screen else None
            argv = [str(options.program), *(["--headless"] if headless else []), *words]
            self.program = harness.Program(argv, self._environment(), str(self.output))
            if watch:
                self._await_window(watch)
                if settings.get("chkEnableScript"):
                    self._choose_script(watch)
                watch.close()
            if port != "NET" and self.program.wait_open(port, 30) is None:
                raise RuntimeError(f"the port was not opened: {self.output.read_text()}")
        except BaseException:
            self.close()
            raise
        self.pid = self.program.pid

    def _environment(self):
        env = dict(os.environ, QUARLIN_HOME=str(self.folder), HOME=str(self.folder),
                   XDG_RUNTIME_DIR=str(self.folder), NO_AT_BRIDGE="1",
                   DBUS_SESSION_BUS_ADDRESS="disabled:")
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
            env.pop(name, None)
        if self.screen:
            env["DISPLAY"] = self.screen.name
        return env

    def _await_window(self, watch):
        self.window = watch.wait_mapped(30)
        self.mapped = time.monotonic() - self.program.started
        if self.window is None or watch.ping(self.window, 30) is None:
            raise RuntimeError(f"no window that answers: {self.output.read_text()}")
        self.answers = time.monotonic() - self.program.started

    def _choose_script(self, watch):
        """The list opens with the script in front that config.cfg names."""
        scripts = watch.wait_mapped(30)
        if scripts is None:
            raise RuntimeError(f"the list of scripts did not come: {self.output.read_text()}")
        hands = harness.Hands(self.screen.name)
        hands.focus(scripts)
        hands.press(b"Return")
        hands.close()

    def settle(self):
        """Waits until what belongs to the start, or to a flood, is over."""
        time.sleep(1)
        harness.wait_quiet(self.pid, 120)

    def logged(self):
        """What LOG.TXT has. Ends the program, so that nothing waits to be written."""
        self.program.stop()
        return self.log.read_bytes()

    def close(self):
        if self.program:
            self.program.stop()
        if self.screen:
            self.screen.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


class Cat:
    """cat PORT > file, as the reference of what reading and keeping cost at least."""

    def __init__(self, port):
        self.folder = Path(tempfile.mkdtemp(prefix="quarlin-bench-"))
        self.program = harness.Program(["cat", port], dict(os.environ), str(self.folder / "kept"))
        self.pid = self.program.pid
        self.program.wait_open(port, 30)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.program.stop()
        shutil.rmtree(self.folder)


def push(link, program, data):
    """Writes all of it, as fast as there is room."""
    data, sent = memoryview(data), 0
    while sent < len(data):
        if not program.alive() or not link.wait_writable(60):
            raise RuntimeError(f"the program stopped reading after {sent} bytes")
        sent += link.write_some(data[sent:sent + BLOCK])


def send_all(link, program, data):
    """Sends as fast as the program reads; returns the seconds until it had read everything."""
    start = time.monotonic()
    push(link, program, data)
    drained = link.wait_drained(60)
    if drained is None:
        raise RuntimeError("the program did not read to the end")
    return drained - start


def fill(link, session):
    """Sends until the display and the record of the run have all that they keep; what that was."""
    lines, piece = numbered_lines(DISPLAY_FULL), numbered_lines(40)
    send_all(link, session.program, lines)
    for _ in range(RECORD_FULL):
        push(link, session.program, piece)
        time.sleep(0.001)  # else several of them are one string
    session.settle()
    return lines + piece * RECORD_FULL


def send_paced(link, pid, data, rate):
    """Sends `rate` bytes a second in pieces of 5 ms; (CPU percent, longest queue in bytes)."""
    cpu, start, sent, backlog = harness.cpu_seconds(pid), time.monotonic(), 0, 0
    while sent < len(data):
        due = min(len(data), int((time.monotonic() - start) * rate))
        sent += link.write_some(data[sent:due]) if due > sent else 0
        backlog = max(backlog, due - sent + link.unread())
        time.sleep(0.005)
    link.wait_drained(60)
    return (harness.cpu_seconds(pid) - cpu) / (time.monotonic() - start) * 100, backlog


def measure_start(options):
    began = time.monotonic()
    subprocess.run([options.program, "--version"], check=True, stdout=subprocess.DEVNULL)
    version = time.monotonic() - began
    with harness.Link() as link, Session(options, link.path, ["LOAD"], {}) as session:
        session.settle()
        return {"mapped": session.mapped, "answers": session.answers, "version": version,
                "memory": harness.memory_mb(session.pid)}


def measure_idle(options):
    with harness.Link() as link, Session(options, link.path, ["LOAD"], {}) as session:
        session.settle()
        cpu = harness.cpu_seconds(session.pid)
        switches = harness.context_switches(session.pid)[0]
        time.sleep(20)
        return {"cpu": (harness.cpu_seconds(session.pid) - cpu) * 1000,
                "switches": harness.context_switches(session.pid)[0] - switches}


def measure_paced(options):
    seconds, rate = 20, 92160  # 921,600 baud with start and stop bit
    data = numbered_lines(seconds * rate // len(LINE % 0))
    with harness.Link() as link, Cat(link.path) as cat:
        cat_cpu, _ = send_paced(link, cat.pid, data, rate)
    with harness.Link() as link, Session(options, link.path, ["LOAD"], {"chkLog": 1}) as session:
        session.settle()
        before = fill(link, session)
        resident = harness.memory_mb(session.pid)
        cpu, backlog = send_paced(link, session.pid, data, rate)
        return {"cpu": cpu, "cat_cpu": cat_cpu, "backlog": backlog,
                "growth": harness.memory_mb(session.pid) - resident,
                "exact": int(session.logged() == before + data)}


HOOKS = {
    "vbs": "Sub ReceiveChar\nCharReceived.OutputString = CharReceived.InputString\nEnd Sub\n",
    "js": "function ReceiveChar() { CharReceived.OutputString = CharReceived.InputString; }\n",
}


def measure_hook(options):
    """Every character through a script. Without a window, since nobody is there to choose the script."""
    seconds, rate = 10, 92160
    data, taken = numbered_lines(seconds * rate // len(LINE % 0)), {}
    for kind, text in HOOKS.items():
        settings = {"chkLog": 1, "txtScriptFile": f"hook.{kind}", "chkEnableScript": 1}
        files = {"any.vbs": "", f"hook.{kind}": text}
        with harness.Link() as link, Session(options, link.path, ["LOAD"], settings, True, files) as session:
            session.settle()
            taken[f"cpu_{kind}"], _ = send_paced(link, session.pid, data, rate)
            taken[f"exact_{kind}"] = int(session.logged() == data)
    return taken


def lost_lines(sent, logged):
    """How many of the lines are not in the log, however often others are."""
    return 0 if logged == sent else len(set(sent.splitlines()) - set(logged.splitlines()))


def measure_flood(options):
    data = numbered_lines(options.megabytes * 1_000_000 // len(LINE % 0))
    with harness.Link() as link, Cat(link.path) as cat:
        cat_seconds = send_all(link, cat.program, data)
        cat_cpu = harness.cpu_seconds(cat.pid)
    with harness.Link() as link, Session(options, link.path, ["LOAD"], {"chkLog": 1}) as session:
        session.settle()
        pinger = harness.Pinger(session.screen.name, session.window)
        cpu, began = harness.cpu_seconds(session.pid), time.monotonic()
        seconds = send_all(link, session.program, data)
        settled = harness.wait_quiet(session.pid, 300) or time.monotonic()
        taken = {"rate": len(data) / 1e6 / seconds, "cat_rate": len(data) / 1e6 / cat_seconds,
                 "lines": data.count(b"\n") / seconds,
                 "settled": max(settled - began, seconds), "ping": pinger.finish()[1],
                 "cpu": harness.cpu_seconds(session.pid) - cpu, "cat_cpu": cat_cpu,
                 "peak": harness.memory_mb(session.pid, "VmHWM")}
        logged = session.logged()
        return {**taken, "lost": lost_lines(data, logged), "exact": int(logged == data)}


def measure_memory(options):
    block = numbered_lines(100_000)
    with harness.Link() as link, Session(options, link.path, ["LOAD"], {}) as session:
        session.settle()
        fill(link, session)
        resident = harness.memory_mb(session.pid)
        seconds = sum(send_all(link, session.program, block)
                      for _ in range(options.lines // 100_000))
        session.settle()
        after = harness.memory_mb(session.pid)
        return {"growth": after - resident, "resident": after,
                "rate": options.lines / 1e6 / seconds}


class Instrument:
    """pingpong's instrument; `answers()` is how many it has given."""

    def __init__(self, pingpong):
        self.process = subprocess.Popen([pingpong, "serve"], stdout=subprocess.PIPE, text=True)
        self.port = self.process.stdout.readline().strip()

    def answers(self):
        self.process.send_signal(signal.SIGUSR1)
        return int(self.process.stdout.readline())

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()
        self.process.stdout.close()


def ask_select(pingpong, seconds):
    """A user's script: os.write, select with a time-out, os.read. (Requests a second, CPU µs a request)"""
    with Instrument(pingpong) as instrument:
        file = os.open(instrument.port, os.O_RDWR | os.O_NOCTTY)
        tty.setraw(file)
        start, cpu, trips = time.monotonic(), time.process_time(), 0
        while time.monotonic() - start < seconds:
            os.write(file, REQUEST)
            answer = b""
            while not answer.endswith(b"\n") and select.select([file], [], [], 1)[0]:
                answer += os.read(file, 4096)
            if answer != ANSWER:
                raise RuntimeError(f"answer {answer!r}")
            trips += 1
        took = time.monotonic() - start
        os.close(file)
        return trips / took, (time.process_time() - cpu) / trips * 1e6


def run_cycle(options, pingpong, interval, headless):
    """Counts from a second after the first answer on, so that the start is not in it."""
    settings = {"CBOSEND": "READ", "Check1": 1, "txtlenrx": len(ANSWER), "txtAnswerTime": 1000,
                "txtInterval": interval, "chkLog": 1}
    with Instrument(pingpong) as instrument, \
            Session(options, instrument.port, ["LOAD", "RUN"], settings, headless) as session:
        while not instrument.answers():
            if not session.program.alive() or time.monotonic() - session.program.started > 30:
                raise RuntimeError("it never asked")
            time.sleep(0.01)
        time.sleep(1)
        start, cpu = time.monotonic(), harness.cpu_seconds(session.pid)
        before = instrument.answers()
        time.sleep(options.seconds)
        took = time.monotonic() - start
        rate = (instrument.answers() - before) / took
        percent = (harness.cpu_seconds(session.pid) - cpu) / took * 100
        log = session.logged()
        pairs = len(log) // len(REQUEST + ANSWER)
        rest = log[pairs * len(REQUEST + ANSWER):]  # a request at the very end has no answer yet
        exact = log[:len(log) - len(rest)] == (REQUEST + ANSWER) * pairs and rest in (b"", REQUEST)
        return rate, percent, int(exact), reported_errors(session) if headless else 0


def reported_errors(session):
    for line in reversed(session.output.read_text().splitlines()):
        if line.startswith("Error     :"):
            return int(line.split(":")[1])
    raise RuntimeError("no report")


def measure_cycle(options):
    with tempfile.TemporaryDirectory(prefix="quarlin-bench-") as folder:
        pingpong = os.path.join(folder, "pingpong")
        subprocess.run(["cc", "-O2", "-o", pingpong, HERE / "pingpong.c", "-lutil"], check=True)
        limit = json.loads(subprocess.run([pingpong, "client", str(options.seconds)], check=True,
                                          capture_output=True).stdout)
        python, python_cost = ask_select(pingpong, options.seconds)
        rate, cpu, exact, errors = run_cycle(options, pingpong, 0, options.headless)
        rate_1ms, cpu_1ms, exact_1ms, _ = run_cycle(options, pingpong, 1, options.headless)
        return {"limit": limit["trips_per_s"], "python": python, "python_cost": python_cost,
                "rate": rate, "cost": cpu / 100 / rate * 1e6, "exact": exact, "errors": errors,
                "rate_1ms": rate_1ms, "cpu_1ms": cpu_1ms, "exact_1ms": exact_1ms}


class Busy:
    """A process on each core that does nothing but compute."""

    def __enter__(self):
        self.processes = [subprocess.Popen([sys.executable, "-c", "while True: pass"]) for _ in range(os.cpu_count())]

    def __exit__(self, *_):
        for process in self.processes:
            process.kill()
            process.wait()


class Prompt:
    """Whoever takes the times comes before the busy ones, where the system permits it; else its own delay counts."""

    def __enter__(self):
        try:
            os.sched_setscheduler(0, os.SCHED_FIFO, os.sched_param(1))
        except PermissionError:
            print("Not permitted to come first: the delays of this script are in the figures.", file=sys.stderr)

    def __exit__(self, *_):
        os.sched_setscheduler(0, os.SCHED_OTHER, os.sched_param(0))


def request_times(link, seconds):
    """When each request came within the next seconds."""
    times, end = [], time.monotonic() + seconds
    while time.monotonic() < end:
        if select.select([link.master], [], [], 1)[0]:
            requests = os.read(link.master, 4096).count(b"\n")
            times += [time.monotonic()] * requests
    return times


def run_interval(options, interval, seconds):
    """The distances from one request to the next, in ms."""
    settings = {"CBOSEND": "READ", "Check1": 0, "txtInterval": interval}
    with harness.Link() as link, Session(options, link.path, ["LOAD", "RUN"], settings) as session:
        request_times(link, 2)  # the start is over
        with Prompt():
            times = request_times(link, seconds)
        if not session.program.alive() or len(times) < 2:
            raise RuntimeError(f"{len(times)} requests")
    return [(later - earlier) * 1000 for earlier, later in zip(times, times[1:])]


def measure_interval(options):
    taken = {"distances": {}}
    for interval in INTERVALS:
        seconds = options.seconds * (2 if interval < 10 else 6)
        distances = {"": run_interval(options, interval, seconds)}
        with Busy():
            distances["_busy"] = run_interval(options, interval, seconds)
        for state, values in distances.items():
            off = sorted(abs(value - interval) for value in values)
            ticks = round(sum(values) / interval)
            taken.update({f"half_{interval}{state}": statistics.median(off),
                          f"p99_{interval}{state}": off[len(off) * 99 // 100], f"longest_{interval}{state}": off[-1],
                          f"missed_{interval}{state}": (ticks - len(values)) / ticks * 1000})
        taken["distances"][interval] = distances
    return taken


def draw_intervals(options, runs):
    """Two pictures of all runs."""
    for interval in INTERVALS:
        together = {name: [value for run in runs for value in run["distances"][interval][state]]
                    for state, name in (("", "the machine as it was"), ("_busy", "and a busy process on each core"))}
        centres = [interval + place / 20 for place in range(-20, 21)]
        picture.histogram(options.pictures / f"interval-{interval}ms.svg", f"A request every {interval} ms",
                          centres, together)


def run_micro(options):
    """The rooms' own benchmarks, as Google Benchmark prints them."""
    for name in ("macro_bench", "display_bench"):
        program = options.program.parent / name
        if not program.exists():
            sys.exit(f"{name} is not built: cmake --build build/release --target {name}")
        subprocess.run([program, f"--benchmark_repetitions={options.runs}",
                        "--benchmark_report_aggregates_only=true"], check=True)


MEASURES = {"start": measure_start, "idle": measure_idle, "paced": measure_paced, "hook": measure_hook,
            "flood": measure_flood, "cycle": measure_cycle, "interval": measure_interval, "memory": measure_memory}
DRAWINGS = {"interval": draw_intervals}


def number(value):
    return f"{value:.0f}" if value == int(value) or abs(value) >= 1000 else f"{value:.3g}"


def reached(value, reach):
    sign, limit = reach.split()
    return value < float(limit) if sign == "<" else value >= float(limit)


def row(figure, runs):
    """A line of the table, and whether it is within its reach."""
    values = [run[figure.key] for run in runs]
    shown = [figure.label, f"{number(statistics.median(values))} {figure.unit}".strip(),
             f"{number(min(values))}–{number(max(values))}"]
    judged = statistics.median(values)
    if figure.reference:
        references = [run[figure.reference] for run in runs]
        ratios = [value / other for value, other in zip(values, references) if other]
        ratio = statistics.median(ratios) if ratios else float("nan")
        shown += [number(statistics.median(references)), f"{ratio:.2f}"]
        judged = ratio if figure.of_ratio else judged
    else:
        shown += ["", ""]
    good = not figure.reach or reached(judged, figure.reach)
    verdict = f"{figure.reach}{' of it' if figure.of_ratio else ''}: {'yes' if good else 'NO'}"
    return "| " + " | ".join(shown + [verdict if figure.reach else ""]) + " |", good


def measure(name, options):
    """Runs and prints one table; returns whether all was within reach."""
    title = name + (" --headless" if name == "cycle" and options.headless else "")
    load = os.getloadavg()[0]
    runs = []
    for count in range(options.runs):
        print(f"{title}: run {count + 1} of {options.runs}", file=sys.stderr)
        runs.append(MEASURES[name](options))
    lines = [row(figure, runs) for figure in FIGURES[title]]
    print(f"\n### {title}\n\nMedian of {options.runs} runs; load average {load:.2f} before, "
          f"{os.getloadavg()[0]:.2f} after.\n\n"
          "| figure | measured | lowest–highest | reference | ratio | reach |\n"
          "|---|---|---|---|---|---|")
    print(*(text for text, _ in lines), sep="\n", flush=True)
    if name in DRAWINGS and options.pictures:
        DRAWINGS[name](options, runs)
    return all(good for _, good in lines)


def measure_all(options):
    good = [measure(name, options) for name in MEASURES]
    if not options.headless:
        headless = argparse.Namespace(**{**vars(options), "headless": True})
        good.append(measure("cycle", headless))
    run_micro(options)
    return all(good)


def main():
    parse = argparse.ArgumentParser(description=__doc__,
                                    formatter_class=argparse.RawDescriptionHelpFormatter)
    parse.add_argument("what", choices=[*MEASURES, "micro", "all"])
    parse.add_argument("--runs", type=int, default=3)
    parse.add_argument("--program", type=Path, default=BINARIES / "quarlin")
    parse.add_argument("--headless", action="store_true", help="cycle: without a window")
    parse.add_argument("--seconds", type=float, default=5, help="cycle: length of each count; interval: half of it at 1 ms")
    parse.add_argument("--megabytes", type=int, default=20, help="flood: what is sent")
    parse.add_argument("--lines", type=int, default=10_000_000, help="memory: what is sent")
    parse.add_argument("--pictures", type=Path, help="interval: folder for its two histograms")
    options = parse.parse_args()
    options.program = options.program.resolve()
    if not options.program.exists():
        sys.exit(f"{options.program} is not built: cmake --build build/release --target quarlin")
    if os.getloadavg()[0] > 1.5:
        print("The machine is busy; figures will be worse than the program's.", file=sys.stderr)
    if options.what == "micro":
        run_micro(options)
        return 0
    good = measure_all(options) if options.what == "all" else measure(options.what, options)
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
