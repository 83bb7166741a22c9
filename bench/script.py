#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures the script language beside the same programs in python3, and what a script costs the traffic.

    bench/script.py programs | load | hooks | all [--runs N] [--bin FOLDER]

Every figure is the median of the runs; a ratio is the median of the runs' ratios, script and python3 taken
one after the other. Above 1 the script is faster.
"""
import argparse
import os
import pathlib
import re
import resource
import statistics
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
PROGRAMS = ["fib", "calls", "loops", "strings", "sort", "dictionary", "characters"]


def timed(command, **options):
    """Seconds of processor time that the command took, and what it printed."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    done = subprocess.run(command, capture_output=True, text=True, check=True, **options)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime, done.stdout


def load_average():
    return "load %s" % " ".join(str(round(value, 2)) for value in os.getloadavg())


def programs(arguments, environment):
    """The interpreter beside python3, both without the time of an empty program."""
    tool = str(arguments.bin / "quarlin-script")
    print(f"programs, {arguments.runs} runs, {load_average()}")
    print(f"{'':12} {'script':>9} {'python3':>9} {'ratio':>7}")
    good = True
    with tempfile.TemporaryDirectory() as folder:
        empty = pathlib.Path(folder, "empty.vbs")
        empty.write_text("Sub Main()\nEnd Sub\n")
        for name in PROGRAMS:
            own, peer, ratios = [], [], []
            for _ in range(arguments.runs):
                idle, _ = timed([tool, str(empty), "Main"], env=environment)
                took, printed = timed([tool, str(HERE / "scripts" / f"{name}.vbs"), "Main"], env=environment)
                peer_idle, _ = timed(["python3", "-c", "pass"])
                peer_took, peer_printed = timed(["python3", str(HERE / "scripts" / f"{name}.py")])
                if printed.split() != peer_printed.split():
                    sys.exit(f"{name}: the script printed {printed!r}, python3 {peer_printed!r}")
                own.append(max(took - idle, 0.001))
                peer.append(max(peer_took - peer_idle, 0.001))
                ratios.append(peer[-1] / own[-1])
            ratio = statistics.median(ratios)
            good = good and ratio >= 1
            print(f"{name:12} {statistics.median(own) * 1000:7.0f}ms {statistics.median(peer) * 1000:7.0f}ms {ratio:7.2f}")
    return good


def long_script(lines):
    """Procedures of sixteen lines each, none of which is called."""
    body = """Sub Proc{0}(value, ByVal limit)
  Dim i, text, list(10)
  For i = 1 To limit
    If value > {0} And i Mod 2 = 0 Then
      text = text & "V{0}:" & CStr(i) & vbCrLf
    ElseIf InStr(text, "x") > 0 Then
      list(i Mod 10) = Mid(text, 2, 3)
    End If
    total = total + value * i
  Next
  Select Case total
    Case {0}: text = ""
    Case Else: total = 0
  End Select
End Sub
"""
    return "Dim total\n" + "".join(body.format(number) for number in range(lines // 15))


def load(arguments, environment):
    """From the start of the tool to its end, less the same for an empty script."""
    tool = str(arguments.bin / "quarlin-script")
    with tempfile.TemporaryDirectory() as folder:
        script, empty = pathlib.Path(folder, "long.vbs"), pathlib.Path(folder, "empty.vbs")
        script.write_text(long_script(5000))
        empty.write_text("")
        took = []
        for _ in range(max(arguments.runs, 5)):
            times = []
            for file in (empty, script):
                begin = time.monotonic()
                subprocess.run([tool, str(file)], check=True, env=environment)
                times.append(time.monotonic() - begin)
            took.append((times[1] - times[0]) * 1000)
    middle = statistics.median(took)
    print(f"load: a script of 5,000 lines in {middle:.1f} ms (reach 50), {load_average()}")
    return middle < 50


def hooks(arguments, _):
    """What a hook costs in each language, by the benchmark library."""
    done = subprocess.run([str(arguments.bin / "script_bench"), "--benchmark_min_time=0.5"],
                          capture_output=True, text=True, check=True)
    print("hooks,", load_average())
    for line in done.stdout.splitlines():
        if re.match(r"\w+/", line):
            print(" ", line)
    return True


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("what", choices=["programs", "load", "hooks", "all"])
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--bin", type=pathlib.Path, default=HERE.parent / "build" / "release" / "bin")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        environment = dict(os.environ, QUARLIN_HOME=folder)
        chosen = [programs, load, hooks] if arguments.what == "all" else [globals()[arguments.what]]
        results = [measure(arguments, environment) for measure in chosen]
    sys.exit(0 if all(results) else 1)


main()
