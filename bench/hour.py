#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""An hour of use: Quarlin in its real window with everything on, looked at every five seconds.

    hour.py [--minutes 60] [--interval 20] [--out FOLDER]

A request every 20 ms waits for its answer from the simulated instrument, which spoils answers in every way it
knows. Meanwhile both logs are written, the parser works, a script sees every character and string and has a
task of its own, the plot window is open with a filter, the table of errors too, and keys find, scroll, switch
and zoom now and then. At the end the record, the counters, the logs and the script must agree with the
instrument to the last exchange, and memory, descriptors and clocks must be where they belong.

With --interval 2 the exchanges of an hour are made in some ten minutes.

Writes hour.csv into the folder, a row for each look, and pictures of it. The exit status is 0 when everything
was as it should be. Needs Xvfb, libX11 and libXtst, and quarlin, quarlin-instrument and quarlin-data in one folder.
"""
import argparse
import csv
import os
import re
import shutil
import statistics
import subprocess
import sys
import time
from contextlib import ExitStack
from datetime import datetime
from pathlib import Path

import harness
import measure
import soak

TASK = 100                    # ms
ACCEPTED_A_MINUTE = 2_910     # of 3,000 ticks of 20 ms: a time-out is 25 of them, and not every answer is accepted
LOOK, LOOKS_A_DEED = 5, 3     # seconds between two looks, looks between two deeds by hand
FULL = 50_000                 # exchanges of two lines, then the display has had its 100,000
MOST_GROWTH = 5.0             # MB beyond what these need, in bytes:
POINT = 2 * 16.3              # a number in its curves, raw and filtered
STATISTICS = 16 + 2 * 8 + 2 * (16 + 8 + 8 + 16)   # its copy, its values, and the spectrum, up to twice as long
ERROR_ROW = 600               # a row of the table of errors with its texts
LONGEST_SILENCE = 250         # ms without an answer of the window

SCRIPT = f"""' Counts all that it sees; the window's title tells how much that was.
Dim ticks, characters, strings, sends
Sub InitTask()
  TimerTask.Interval = {TASK}
  ticks = 0: characters = 0: strings = 0: sends = 0
  FrmCommand.Show
End Sub
Sub ReceiveChar()
  characters = characters + 1
  CharReceived.OutputString = CharReceived.InputString
End Sub
Sub ReceiveString()
  strings = strings + 1
  StringReceived.OutputString = StringReceived.InputString
End Sub
Sub SendString()
  sends = sends + 1
  StringToSend.OutputString = StringToSend.InputString
End Sub
Sub Task()
  ticks = ticks + 1
  FrmCommand.TextIO(0).Text = CStr(strings)
  If ticks Mod 20 < 10 Then FrmCommand.ShpOutput(0).FillColor = vbGreen Else FrmCommand.ShpOutput(0).FillColor = vbRed
  FormMain.Caption = "ticks=" & ticks & " characters=" & characters & " strings=" & strings & " sends=" & sends & _
                     " elapsed=" & FormMain.lbltempo.Caption & " scripterrors=" & FormMain.lblScriptErrors.Caption & _
                     " running=" & Abs(FormMain.Command1.Caption = "&Stop")
End Sub
"""

PLACES = """[frmMain]
Place=0,0,1040,760
[FrmPlot]
Place=1045,0,860,560
[FrmCommand]
Place=1045,570,600,460
"""

CONTROL, SHIFT, ALT = b"Control_L", b"Shift_L", b"Alt_L"
# What is done by hand, one after the other: the window, and the keys.
DEEDS = [
    ("main", [(CONTROL, b"f"), *((digit,) for digit in (b"1", b"2")), (b"Return",), (b"F3",), (b"F3",), (b"Escape",)]),
    ("plot", [*[(b"plus",)] * 4, *[(b"Left",)] * 5, (b"space",), (b"Right",), (b"space",), (b"f",)]),
    ("main", [*[(b"Prior",)] * 8, (b"Next",), (CONTROL, b"End"), (b"End",)]),
    ("main", [(ALT, page) for page in (b"1", b"2", b"3", b"4", b"5", b"6", b"2")]),
    ("plot", [*[(b"minus",)] * 3, (b"c",), (CONTROL, b"Right"), (b"c",), (b"Home",), (b"f",)]),
    ("main", [(CONTROL, b"h"), (CONTROL, b"h"), (CONTROL, b"j"), (CONTROL, b"j"), (CONTROL, b"t"), (CONTROL, b"t")]),
    ("main", [(CONTROL, SHIFT, b"e"), (b"Prior",), (CONTROL, SHIFT, b"e"), (b"End",)]),
]


class Hour(measure.Session):
    """The program with a script and all its windows."""

    screen_size = "1920x1080x24"

    def open_rest(self):
        self.hands, self.watch = harness.Hands(self.screen.name), harness.Windows(self.screen.name)
        self.await_told(lambda _: True, 10)
        while self.watch.wait_mapped(0.5):
            pass  # the command panel, which the script shows
        self.hands.focus(self.window)
        self.hands.chord(CONTROL, SHIFT, b"p")
        plot = self.watch.wait_mapped(10)
        if plot is None:
            raise RuntimeError("the plot window did not come")
        self.hands.focus(self.window)
        self.hands.press(b"F7")
        self.windows = {"main": self.window, "plot": plot}

    def do(self, deed):
        window, keys = deed
        self.hands.focus(self.windows[window])
        for names in keys:
            self.hands.chord(*names)
            time.sleep(0.2)

    def told(self):
        """What the script says in the title."""
        words = dict(re.findall(r"(\w+)=([\d:]+)", self.watch.title(self.window)))
        if "running" not in words:
            return None
        hours, minutes, seconds = words.pop("elapsed").split(":")
        return {**{name: int(text) for name, text in words.items()},
                "elapsed": int(hours) * 3600 + int(minutes) * 60 + int(seconds)}

    def await_told(self, condition, seconds):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            told = self.told()
            if told and condition(told):
                return told
            time.sleep(0.01)
        raise RuntimeError(f"the script said {self.watch.title(self.window)!r}")


class Looks:
    """A row for each look, also in the file."""

    def __init__(self, session, pinger, file):
        self.session, self.pinger, self.file, self.rows = session, pinger, file, []
        self.cpu, self.pings = 0.0, 0
        self.writer = None
        # The script's clock and the shown one begin where a tick and a second have just begun.
        first = session.told()
        told = session.await_told(lambda now: now["ticks"] > first["ticks"], 5)
        self.ticks, self.began = told["ticks"], time.monotonic()
        told = session.await_told(lambda now: now["elapsed"] > told["elapsed"], 5)
        self.elapsed, self.elapsed_began = told["elapsed"], time.monotonic()
        self.clock = time.time() - time.monotonic()

    def take(self, made, told):
        pid, now = self.session.pid, time.monotonic()
        cpu, pings = harness.cpu_seconds(pid), len(self.pinger.delays)
        before = self.rows[-1]["seconds"] if self.rows else 0
        row = {"seconds": round(now - self.began, 3),
               "resident_mb": harness.memory_mb(pid), "anonymous_mb": harness.memory_mb(pid, "RssAnon"),
               "descriptors": soak.descriptors(pid),
               "cpu_percent": round((cpu - self.cpu) / max(now - self.began - before, 0.001) * 100, 2),
               "requests": made["requests"], "answers": made["answers"],
               "ticks_behind": round((now - self.began) / TASK * 1000 - (told["ticks"] - self.ticks), 1),
               "elapsed_behind_s": round(now - self.elapsed_began - (told["elapsed"] - self.elapsed), 2),
               "clock_ms": round((time.time() - now - self.clock) * 1000, 3),
               "silence_ms": round(max(self.pinger.delays[self.pings:], default=0) * 1000, 1),
               "load": round(os.getloadavg()[0], 2)}
        if self.writer is None:
            self.writer = csv.DictWriter(self.file, row)
            self.writer.writeheader()
            row["cpu_percent"] = 0.0  # the start is not in it
        self.writer.writerow(row)
        self.file.flush()
        self.cpu, self.pings = cpu, pings
        self.rows.append(row)


def settings(options, instrument):
    return {**soak.settings(options, instrument), "txtInterval": options.interval, "chkLog": 1, "chkLogRows": 1,
            "chkLogPar": 1, "chkParser": 1, "cboParser": "R" * soak.ANSWER_SIZE, "chkEnableScript": 1,
            "txtScriptFile": "hour.vbs", "cboFilter": "Butterworth", "txtFilterRate": 1000 // options.interval,
            "txtFilterCutoff": 2}


def use(session, looks, instrument):
    """Looks and works by hand until the run has ended."""
    count, last, asked = 0, -1, time.monotonic()
    while True:
        if not session.program.alive():
            raise RuntimeError(f"it ended: {session.output.read_text()[-2000:]}")
        made, told = instrument.ask(), session.told()
        if not told["running"]:
            return
        looks.take(made, told)
        if made["requests"] != last:
            last, asked = made["requests"], time.monotonic()
        elif time.monotonic() - asked > soak.STALLED:
            raise RuntimeError(f"no request in {soak.STALLED} s, after {last}")
        if count % 12 == 0:
            row = looks.rows[-1]
            print(f"{row['seconds'] / 60:5.1f} min {row['requests']:>9,} requests, {row['resident_mb']} MB, "
                  f"{row['descriptors']} descriptors", file=sys.stderr)
        due = time.monotonic() + LOOK
        if count % LOOKS_A_DEED == LOOKS_A_DEED - 1:
            session.do(DEEDS[count // LOOKS_A_DEED % len(DEEDS)])
        count += 1
        time.sleep(max(due - time.monotonic(), 0))


def read_log(path):
    """Bytes of the wire in a log with times, {direction: bytes}, and the times of the rows that were sent."""
    counts, sent = {"->": 0, "<-": 0}, []
    with open(path, encoding="latin-1", newline="\r\n") as log:
        for row in log:
            day, clock, direction, text = row[:-2].split(" ", 3)
            counts[direction] += len(re.sub(r"\{[0-9A-F]{2}\}", "?", text))
            if direction == "->":
                sent.append(datetime.fromisoformat(f"{day} {clock}").timestamp())
    return counts, sent


def grid_drift(sent, interval):
    """How far, in ms, the sends of each minute stand off the grid of the interval that the first minute had.

    A request leaves at its tick or a little later, so the earliest tenth of a minute tells where the ticks are.
    """
    minutes, reference = {}, sent[0]
    for when in sent:
        minutes.setdefault(int((when - reference) // 60), []).append((when - reference) * 1000)
    if len(minutes) > 1:
        minutes.popitem()  # the last one is not whole
    offsets = []
    for stamps in minutes.values():
        base = offsets[0] if offsets else 0.0
        phases = sorted((stamp - base + interval / 2) % interval - interval / 2 for stamp in stamps)
        offsets.append(base + phases[len(phases) // 10] if offsets else phases[len(phases) // 10])
    return [offset - offsets[0] for offset in offsets]


def compare(verdict, session, made, told, options):
    report = soak.read_report(session.folder)
    failed, _ = soak.compare_record(verdict, report, made, options.exchanges)
    counts, sent = read_log(session.log)
    verdict.same("LOG.TXT, bytes sent", counts["->"], made["bytes-in"], "instrument")
    verdict.same("LOG.TXT, bytes received", counts["<-"], made["bytes-out"], "instrument")
    verdict.same("LOGPAR.TXT, bytes", (session.folder / "LOGPAR.TXT").stat().st_size,
                 soak.ANSWER_SIZE * options.exchanges, "a row for each accepted answer")
    verdict.same("script: characters", told["characters"], made["bytes-out"], "instrument")
    verdict.same("script: strings", told["strings"], made["answers"] - made["err"], "all but ERR")
    verdict.same("script: strings to send", told["sends"], made["requests"], "instrument")
    verdict.same("script: errors", told["scripterrors"], 0)
    verdict.same("exit status", session.program.process.returncode, int(failed > 0))
    return sent, failed


def judge_clocks(verdict, rows, sent, interval):
    # One that comes more than its interval late, since the machine stood still, is left out and not made up for.
    # The title comes up to a frame, 33 ms, after the tick.
    behind, ticks = [row["ticks_behind"] for row in rows], rows[-1]["seconds"] * 1000 / TASK
    verdict.say(max(behind) < 2.5 + ticks / 1000,
                f"script's task: {int(behind[-1])} of {ticks:,.0f} ticks of {TASK} ms left out")
    shown = [row["elapsed_behind_s"] for row in rows]
    verdict.say(max(shown) < 1.6 and min(shown) > -0.6, f"elapsed time shown: {min(shown)} to {max(shown)} s behind",
                "a second is shown until it is over")
    drift = grid_drift(sent, interval)
    verdict.say(max(map(abs, drift)) <= 2, f"cycle's grid: {drift[-1]:+.1f} ms off at the end",
                f"at most {max(map(abs, drift)):.1f} ms; the log tells whole ones")
    steps = max(abs(row["clock_ms"]) for row in rows)
    print(f"      the system's clock moved by {steps:.1f} ms against the steady one at most")


def judge_resources(verdict, rows, pinger_figures, failed):
    # Once every window has been worked in.
    soak.judge_descriptors(verdict, [row["descriptors"] for row in rows if row["seconds"] > 45])
    steady = [row for row in rows if row["requests"] >= FULL]
    if len(steady) < 5:
        print(f"      memory not judged: the display is full after {FULL:,} exchanges")
    else:
        first, last = steady[0], steady[-1]
        points = last["answers"] - first["answers"]
        kept = (points * (POINT + STATISTICS) + failed * points / last["answers"] * ERROR_ROW) / 1e6
        growth = last["anonymous_mb"] - first["anonymous_mb"]
        verdict.say(growth - kept <= MOST_GROWTH, f"memory {first['anonymous_mb']} MB once the display was full, "
                    f"{last['anonymous_mb']} MB at the end", f"curves, statistics and errors need {kept:.1f} MB more")
    median, longest = pinger_figures
    verdict.say(longest < LONGEST_SILENCE, f"window: half of its answers within {median} ms, all within {longest} ms")
    print(f"      resident {rows[-1]['resident_mb']} MB; CPU "
          f"{statistics.median(row['cpu_percent'] for row in rows):.1f} % of a core; "
          f"load {min(row['load'] for row in rows)} to {max(row['load'] for row in rows)}")


def draw(options, name, column, what, shown=float):
    """The column over the time, as quarlin-data draws it."""
    table, picture = options.out / "hour.csv", options.out / f"hour-{name}.svg"
    numbers = options.out / f"{name}.csv"
    with open(table) as source, open(numbers, "w") as target:
        target.write(f"seconds,{what}\n")
        target.writelines(f"{row['seconds']},{shown(float(row[column]))}\n" for row in csv.DictReader(source))
    subprocess.run([options.program.parent / "quarlin-data", "plot", numbers, "-o", picture, "--column", "2",
                    "--time-column", "1"], check=True)
    numbers.unlink()


def run(options):
    with ExitStack() as stack:
        folder = options.out / "instrument"
        folder.mkdir()
        stack.callback(shutil.rmtree, folder)
        instrument = soak.Instrument(options.program.parent / "quarlin-instrument", folder, options)
        stack.callback(instrument.program.stop)
        session = stack.enter_context(Hour(options, instrument.place, ["LOAD", "RUN"], settings(options, instrument),
                                           files={"hour.vbs": SCRIPT, "position.ini": PLACES}))
        print(f"screen {session.screen.name}, folder {session.folder}", file=sys.stderr)
        session.open_rest()
        pinger = harness.Pinger(session.screen.name, session.window, 0.05)
        file = stack.enter_context(open(options.out / "hour.csv", "w", newline=""))
        looks = Looks(session, pinger, file)
        use(session, looks, instrument)
        time.sleep(1)
        told, figures = session.told(), pinger.finish()
        session.hands.focus(session.window)
        session.hands.chord(CONTROL, b"r")
        time.sleep(3)
        session.program.stop()
        made = instrument.finish()
        verdict = soak.Verdict()
        sent, failed = compare(verdict, session, made, told, options)
        judge_clocks(verdict, looks.rows, sent, options.interval)
        judge_resources(verdict, looks.rows, figures, failed)
        draw(options, "memory", "anonymous_mb", "Memory [MB]")
        draw(options, "descriptors", "descriptors", "Descriptors")
        draw(options, "ticks", "ticks_behind", "Ticks left out", int)
        print(f"{'GOOD' if verdict.good else 'BAD'}: {made['requests']:,} requests in "
              f"{looks.rows[-1]['seconds'] / 60:.1f} minutes, {failed:,} failures")
        return verdict.good


def main():
    parse = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parse.add_argument("--minutes", type=float, default=60)
    parse.add_argument("--interval", type=int, default=20, help="ms of the cycle (20)")
    parse.add_argument("--seed", type=int, default=1)
    parse.add_argument("--program", type=Path, default=measure.BINARIES / "quarlin")
    parse.add_argument("--out", type=Path, default=Path("hour"), help="folder of hour.csv and the pictures (hour)")
    options = parse.parse_args()
    options.program, options.out = options.program.resolve(), options.out.resolve()
    options.link, options.exchanges = "pty", round(options.minutes * ACCEPTED_A_MINUTE)
    options.out.mkdir(parents=True, exist_ok=True)
    try:
        return 0 if run(options) else 1
    except RuntimeError as failure:
        print(f"BAD: {failure}")
        return 1


if __name__ == "__main__":
    sys.exit(main())
