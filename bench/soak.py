#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs Quarlin headless for a long time against the simulated instrument, which spoils answers in every way
it knows, and compares what both have counted.

    soak.py --exchanges 200000 --link pty | tcp | udp --seed 1

What must agree, to the last one: requests of both sides and their bytes; each kind of fault with its verdict;
requests = good + failed + open; the record's sums, the counters, the printed report and LOG.TXT. The memory must
stay within 5 MB once the display and the record are full, and the number of open descriptors the same.

The seed decides which answers are spoiled, and how; the same seed spoils the same ones. The exit status is 0
when everything agreed. Python's standard library only.
"""
import argparse
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import harness

BINARIES = Path(__file__).resolve().parent.parent / "build" / "release" / "bin"

REQUEST = b"READ\r\n"
ANSWER_SIZE = 23        # "ST,GS,+00012.345 kg", two characters of checksum, CR LF
ANSWER_TIME = 500       # ms; no answer needs as long that was not dropped
RATES = {"drop": 0.001, "garble": 0.01, "short": 0.01, "bad-checksum": 0.01, "split": 0.01, "err": 0.01}
FULL = 60_000           # exchanges, then the display has had its 100,000 lines
MOST_GROWTH = 5.0       # MB
LOOK = 1.0              # seconds between two looks
STALLED = 60            # seconds without a request


class Instrument:
    def __init__(self, program, folder, options):
        place = {"pty": ["--link", str(folder / "port")], "tcp": ["--tcp", "0"], "udp": ["--udp", "0"]}
        faults = [word for kind, rate in RATES.items() for word in ("--" + kind, str(rate))]
        self.says = folder / "instrument.txt"
        self.program = harness.Program(
            [program, *place[options.link], "--seed", str(options.seed), "--checksum", "sysway", *faults],
            dict(os.environ), str(self.says))
        while b"\n" not in self.says.read_bytes():
            if not self.program.alive():
                raise RuntimeError(f"the instrument ended: {self.says.read_text()}")
            time.sleep(0.01)
        self.place = self.says.read_text().splitlines()[0]
        self.reports = 0

    def ask(self):
        """What it has counted so far."""
        os.kill(self.program.pid, signal.SIGUSR1)
        return self._next_report()

    def finish(self):
        self.program.stop()
        return self._next_report()

    def _next_report(self):
        self.reports += 1
        end = time.monotonic() + STALLED
        while time.monotonic() < end:
            reports = self.says.read_text().split("requests:")[1:]
            if len(reports) >= self.reports and "bytes-out:" in reports[self.reports - 1]:
                break
            time.sleep(0.01)
        text = "requests:" + reports[self.reports - 1]
        return {name: int(count) for name, count in re.findall(r"^([a-z-]+): +(\d+)$", text, re.M)}


def settings(options, instrument):
    network = options.link != "pty"
    return {"cboSerial": "NET" if network else instrument.place, "txtIp": "127.0.0.1",
            "txtPort": instrument.place.rpartition(":")[2] if network else "1",
            "chkUDP": int(options.link == "udp"), "CBOSEND": "READ", "Check1": 1, "Check2": 1,
            "Text1": options.exchanges, "txtInterval": 0, "txtAnswerTime": ANSWER_TIME,
            "txtlenrx": ANSWER_SIZE, "cboCheckSum": "Sysway"}


def start_program(options, folder, records):
    (folder / "config.cfg").write_text("".join(
        f"{name:20.20}{text!s:100.100}  " for name, text in records.items()))
    env = dict(os.environ, QUARLIN_HOME=str(folder))
    return harness.Program([str(options.program), "--headless", "LOAD", "LOG", "RUN", "EXIT"], env,
                           str(folder / "output.txt"))


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def watch(program, instrument, exchanges):
    """Looks at the program until it has ended; the memory and descriptors that it had meanwhile."""
    looks, last, asked = [], -1, time.monotonic()
    began = told = time.monotonic()
    while program.alive():
        count = instrument.ask()["requests"]
        now = time.monotonic()
        if count != last:
            last, asked = count, now
        elif now - asked > STALLED:
            raise RuntimeError(f"no request in {STALLED} s, after {count}")
        try:
            looks.append((count, harness.memory_mb(program.pid), descriptors(program.pid)))
        except OSError:
            break  # ended just now
        if now - told > 10:
            told = now
            print(f"{count:>9,} of {exchanges:,}, {count / (now - began):,.0f}/s, "
                  f"{looks[-1][1]} MB, {looks[-1][2]} descriptors", file=sys.stderr)
        try:
            program.process.wait(LOOK)
        except subprocess.TimeoutExpired:
            pass
    program.process.wait()
    return looks, time.monotonic() - began


class Verdict:
    """Collects what was compared and prints it line by line."""

    def __init__(self):
        self.good = True

    def same(self, what, ours, theirs, why=""):
        self.say(ours == theirs, f"{what}: {ours:,}" + ("" if ours == theirs else f", not {theirs:,}"), why)

    def say(self, good, text, why=""):
        self.good &= bool(good)
        print(("ok    " if good else "WRONG ") + text + (f" ({why})" if why else ""))


def report_number(text, label):
    found = re.findall(rf"^{label} *: *(\d+)", text, re.M)
    return int(found[-1]) if found else -1


def read_report(folder):
    if not (folder / "Report.json").exists():
        raise RuntimeError("it left no Report.json")
    return json.loads((folder / "Report.json").read_text())


def compare_record(verdict, report, made, exchanges):
    """The record and the counters beside what the instrument has made; how many exchanges failed, and how many
    answers were late."""
    sums, said = report["sums"], report["verdicts"]
    counters = {name: int(text) for name, text in report["counters"].items() if text.strip().isdigit()}
    # An answer that was late, on a machine that stood still, is unsolicited; its exchange is a time-out.
    late = sums["unsolicited"]
    unread = made["answers"] - sums["received"]

    verdict.same("requests", sums["requests"], made["requests"], "instrument")
    verdict.same("requests = good + failed + open", sums["requests"],
                 sums["good"] + sums["failed"] + sums["open"] + sums["unended"])
    verdict.same("sent", sums["sent"], sums["requests"])
    verdict.same("not sent", sums["notSent"], 0)
    verdict.same("instrument: answers + dropped", made["answers"] + made["dropped"], made["requests"])
    verdict.same("answers received", sums["received"], made["answers"] - (unread if late else 0), "instrument")
    verdict.same("time-outs + open", said["time-out"] + sums["open"],
                 made["dropped"] + late + (unread if late else 0), "dropped, and late ones")
    verdict.same("wrong length", said["wrong length"], made["short"], "short")
    verdict.same("wrong checksum", said["wrong checksum"], made["garbled"] + made["bad-checksum"],
                 "garbled, bad checksum")
    verdict.same("ERR", said["ERR"], made["err"], "err")
    failures = ("time-out", "not equal", "wrong length", "wrong checksum", "ERR", "not sent")
    failed = sum(said[kind] for kind in failures)
    if not late:
        verdict.same("failed", sums["failed"], failed, "one failure an answer")
    verdict.same("answers that were accepted", counters["Label7"], exchanges, "as asked for")
    verdict.same("counter lblsend", counters["lblsend"], sums["requests"])
    verdict.same("counter lblerror", counters["lblerror"], failed)
    verdict.same("counter lblErrorLen", counters["lblErrorLen"],
                 said["wrong length"] + said["wrong checksum"])
    verdict.same("bytes of the requests", made["bytes-in"], len(REQUEST) * made["requests"], "instrument")
    verdict.same("exit status in the report", report["exitStatus"], int(failed > 0))
    if late:
        print(f"      {late} answers were late: the machine stood still for {ANSWER_TIME} ms")
    latency = report["latencyMs"]
    print(f"      answers after {latency['p50']:.3f} ms (half of them), {latency['p99']:.3f} ms (99 %), "
          f"{latency['max']:.0f} ms (all)")
    return failed, late


def compare(verdict, folder, made, exchanges):
    """The same, and what a program without a window prints and logs."""
    report = read_report(folder)
    failed, late = compare_record(verdict, report, made, exchanges)
    printed = (folder / "output.txt").read_text()
    for label, value in (("Tx", report["sums"]["requests"]), ("Rx", exchanges), ("Error", failed)):
        verdict.same(f"printed {label}", report_number(printed, label), value)
    if not late:
        verdict.same("LOG.TXT, bytes", (folder / "LOG.TXT").stat().st_size,
                     made["bytes-in"] + made["bytes-out"], "both ways")
    return failed


def judge_descriptors(verdict, counts):
    if counts:
        verdict.say(min(counts) == max(counts), f"descriptors {min(counts)} to {max(counts)}")
    else:
        print("      descriptors not judged: the run was too short")


def judge_resources(verdict, looks):
    steady = [look for look in looks if look[0] >= FULL]
    memory = [look[1] for look in steady]
    if len(memory) < 5:
        print(f"      memory not judged: the display is full after {FULL:,} exchanges")
    else:
        growth = max(memory) - memory[0]
        verdict.say(growth <= MOST_GROWTH, f"memory {memory[0]} MB, grown by {growth:.2f} MB",
                    f"over {steady[-1][0] - steady[0][0]:,} exchanges")
    # The first look may come before the link and the logs are open, the last one while they are closed.
    judge_descriptors(verdict, [look[2] for look in looks[1:-1]])


def soak(options, folder):
    instrument, program = None, None
    try:
        instrument = Instrument(options.program.parent / "quarlin-instrument", folder, options)
        program = start_program(options, folder, settings(options, instrument))
        looks, seconds = watch(program, instrument, options.exchanges)
        made = instrument.finish()
        verdict = Verdict()
        failed = compare(verdict, folder, made, options.exchanges)
        verdict.same("exit status", program.process.returncode, int(failed > 0))
        judge_resources(verdict, looks)
        print(f"{'GOOD' if verdict.good else 'BAD'}: {options.link}, seed {options.seed}: "
              f"{made['requests']:,} requests in {seconds:.0f} s, {failed:,} failures")
        return verdict.good
    finally:
        for started in (program, instrument and instrument.program):
            if started:
                started.stop()


def main():
    parse = argparse.ArgumentParser(description=__doc__,
                                    formatter_class=argparse.RawDescriptionHelpFormatter)
    parse.add_argument("--exchanges", type=int, default=2000, help="answers to be accepted (2000)")
    parse.add_argument("--link", choices=["pty", "tcp", "udp"], default="pty")
    parse.add_argument("--seed", type=int, default=1)
    parse.add_argument("--program", type=Path, default=BINARIES / "quarlin")
    parse.add_argument("--keep", action="store_true", help="keep the program folder, and say where it is")
    options = parse.parse_args()
    options.program = options.program.resolve()
    if not options.program.exists():
        sys.exit(f"{options.program} is not built: cmake --build --preset release --target quarlin quarlin-instrument")
    folder = Path(tempfile.mkdtemp(prefix="quarlin-soak-"))
    try:
        return 0 if soak(options, folder) else 1
    except RuntimeError as failure:
        print(f"BAD: {failure}\n{(folder / 'output.txt').read_text()[-2000:]}" if (folder / "output.txt").exists()
              else f"BAD: {failure}")
        return 1
    finally:
        if options.keep:
            print(folder)
        else:
            shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
