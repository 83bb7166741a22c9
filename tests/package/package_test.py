#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes the package of the programs that are built, and tries what came of it.

Each test is named on the command line. "make" comes first; it leaves the package and a folder into which it was
unpacked, in which the others start the programs. Exit status 77: a program that is needed is not there.
"""
import argparse
import gzip
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

PROGRAMS = ("quarlin", "quarlin-instrument", "quarlin-script", "quarlin-data")
MARKDOWN_PICTURE = re.compile(r"!\[[^]]*\]\(([^)]+)\)")
OPTION = re.compile(r"(?<![\w-])--[a-z][a-z-]*")


def need(*programs):
    missing = [program for program in programs if shutil.which(program) is None]
    if missing:
        print("skipped: there is no", ", no ".join(missing))
        sys.exit(77)


def expect(condition, *told):
    if not condition:
        raise SystemExit("\n".join(str(line) for line in told))


def eventually(condition, what, patience=60):
    end = time.monotonic() + patience
    while not (answer := condition()):
        expect(time.monotonic() < end, f"{what} did not come")
        time.sleep(0.02)
    return answer


def output_of(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True,
                          timeout=90, **options).stdout


class Package:
    def __init__(self, source, build):
        self.source = source
        self.build = build
        self.folder = build / "package-test"
        self.root = self.folder / "root"

    def file(self):
        files = list(self.folder.glob("quarlin_*.deb"))
        expect(len(files) == 1, f"one package in {self.folder}, not {files}; was it made?")
        return files[0]

    def program(self, name):
        return self.root / "usr/bin" / name

    def snapshot(self):
        """Of every file below the unpacked root: what would change if it were written."""
        return {str(path.relative_to(self.root)): [path.lstat().st_size, path.lstat().st_mtime_ns]
                for path in sorted(self.root.rglob("*"))}

    def unpack(self):
        shutil.rmtree(self.root, ignore_errors=True)
        output_of("dpkg-deb", "-x", self.file(), self.root)
        (self.folder / "snapshot.json").write_text(json.dumps(self.snapshot()))

    def expect_untouched(self):
        before = json.loads((self.folder / "snapshot.json").read_text())
        expect(self.snapshot() == before, "something was written into the installation")


class Session:
    """A user with an empty home, and the programs that she starts."""

    def __enter__(self):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="quarlin-package-"))
        self.data = self.home / ".local/share/quarlin"
        self.started = []
        kept = {name: value for name, value in os.environ.items()
                if not name.startswith(("QUARLIN", "QT_", "XDG_")) and "DISPLAY" not in name}
        self.environment = {**kept, "HOME": str(self.home)}
        return self

    def start(self, *command, **options):
        process = subprocess.Popen([str(word) for word in command], env=self.environment, text=True, **options)
        self.started.append(process)
        return process

    def __exit__(self, *_):
        for process in reversed(self.started):
            process.terminate()
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.home)


def make(package):
    shutil.rmtree(package.folder, ignore_errors=True)
    output_of("cpack", "--config", package.build / "CPackConfig.cmake", "-B", package.folder)
    package.unpack()


def rows_of(package):
    """Mode, owner and path of everything in the package."""
    for row in output_of("dpkg-deb", "-c", package.file()).splitlines():
        mode, owner, _, _, _, path = row.split(maxsplit=5)
        yield mode, owner, path.removeprefix("./")


def contents(package):
    paths = set()
    for mode, owner, path in rows_of(package):
        program = path.startswith("usr/bin/") or path == "usr/lib/quarlin/quarlin-adapter"
        right = "drwxr-xr-x" if path.endswith("/") else "-rwxr-xr-x" if program else "-rw-r--r--"
        expect((mode, owner) == (right, "root/root") or path == "./", f"{mode} {owner} {path}")
        paths.add(path)
    wanted = {f"usr/bin/{name}" for name in PROGRAMS}
    wanted |= {f"usr/share/man/man1/{name}.1.gz" for name in PROGRAMS}
    wanted |= {f"usr/share/bash-completion/completions/{name}" for name in PROGRAMS}
    wanted |= {"usr/share/doc/quarlin/" + name for name in ("copyright", "changelog.gz", "docs/report.schema.json")}
    wanted |= {"usr/share/quarlin/" + str(path.relative_to(package.source))
               for path in package.source.glob("demo/**/*") if path.is_file()}
    wanted |= {"usr/share/doc/quarlin/" + str(path.relative_to(package.source))
               for path in package.source.glob("docs/*.md")}
    conffiles = output_of("dpkg-deb", "-I", package.file(), "conffiles").split()
    wanted |= {name.lstrip("/") for name in conffiles} | {"etc/quarlin/adapters.conf"}
    rules = (package.root / "usr/lib/udev/rules.d/60-quarlin.rules").read_text()
    wanted |= {name.lstrip("/") for name in re.findall(r'PROGRAM=="(\S+)', rules)}
    expect({path for path in paths if path.startswith("etc/") and not path.endswith("/")} ==
           {name.lstrip("/") for name in conffiles}, "what is in /etc is the user's:", conffiles)
    expect(wanted <= paths, "missing:", *sorted(wanted - paths))
    # The tree's own folder may have a name that is found anywhere, such as "/src".
    places = [package.build / "src", package.source / "src", package.source / "tools"]
    for file in package.root.rglob("*"):
        traces = [place for place in places if file.is_file() and f"{place}/".encode() in file.read_bytes()]
        expect(not traces, f"{file} tells where it was built")
    for page in package.root.glob("usr/share/doc/quarlin/**/*.md"):
        for picture in MARKDOWN_PICTURE.findall(page.read_text()):
            expect((page.parent / picture).is_file(), f"{page} shows {picture}, which is not there")
    needed = output_of("dpkg-deb", "-f", package.file(), "Depends")
    for library in ("libqt6widgets6", "libqcustomplot", "libqscintilla2", "libxlsxwriter", "libfmt", "libc6"):
        expect(library in needed, f"does not depend on {library}: {needed}")


def checkers(package):
    need("lintian", "desktop-file-validate", "appstreamcli", "man")
    failed = False
    share = package.root / "usr/share"
    commands = [["lintian", "--allow-root", "--fail-on", "error", package.file()],
                ["desktop-file-validate", *share.glob("applications/*.desktop")],
                ["appstreamcli", "validate", "--no-net", *share.glob("metainfo/*.xml")]]
    for command in commands:
        failed |= subprocess.run([str(word) for word in command], check=False).returncode != 0
    for page in share.glob("man/man1/*"):
        told = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", str(page)], check=False,
                              env={**os.environ, "LC_ALL": "C.UTF-8"}, stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE, text=True)
        print(told.stderr, end="")
        failed |= told.returncode != 0 or told.stderr != ""
    expect(not failed, "see above")


def options_of_help(package, program):
    return set(OPTION.findall(output_of(package.program(program), "--help")))


def help_agrees(package):
    """The manual page and --version say what the program says."""
    version = output_of("dpkg-deb", "-f", package.file(), "Version").strip()
    for program in PROGRAMS:
        page = gzip.open(package.root / f"usr/share/man/man1/{program}.1.gz", "rt").read().replace("\\-", "-")
        told, shown = set(OPTION.findall(page)), options_of_help(package, program)
        missing = shown - told if program == "quarlin" else shown ^ told  # the page has all of the toolkit's
        expect(not missing, f"the page of {program} and --help differ: {missing}")
        first, *rest = output_of(package.program(program), "--version").splitlines()
        expect(first == f"{program} {version}" and "General Public License" in "\n".join(rest), first, *rest)


# The words on the command line, the last one being typed, and what the shell offers.
COMPLETIONS = (
    (["quarlin", "LO"], "LOAD LOG LOGPAR"),
    (["quarlin", "LOAD", "R"], "RUN"),
    (["quarlin", "--platform", "x"], "xcb"),
    (["quarlin-instrument", "--checksum", "crc1"], "crc16modbus crc16xmodem crc16ccitt crc16arc"),
    (["quarlin-instrument", "--end", "=", "c"], "cr crlf"),
    (["quarlin-instrument", "--end", "="], "cr lf crlf"),
    (["quarlin-instrument", "--seed", ""], ""),
    (["quarlin-instrument", "--link", "some"], "some folder"),
    (["quarlin-script", ""], "some folder/a b.vbs/c.js"),
    (["quarlin-script", "a b.vbs", "T"], "Twice"),
    (["quarlin-script", "a b.vbs", "--send", "T"], ""),
    (["quarlin-script", "--inventory", "s"], "some folder"),
    (["quarlin-script", "a b.vbs", "--", "d"], "d.svg"),
    (["quarlin-data", "s"], "stats"),
    (["quarlin-data", "filter", "--kind", "m"], "moving-average median"),
    (["quarlin-data", "plot", "--o"], "--order"),
    (["quarlin-data", "filter", "--o"], "--order --out"),
    (["quarlin-data", "plot", "-o", ""], "some folder/d.svg"),
    (["quarlin-data", "filter", "--out", ""], "some folder"),
)
COMPLETE = """
source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
made=$(complete -p "$1"); made=${made#*-F }
"${made%% *}" "$1" "${COMP_WORDS[COMP_CWORD]}"
printf '%s/' "${COMPREPLY[@]}"
"""


def completion(package):
    need("bash")
    with Session() as session:
        (session.home / "some folder").mkdir()
        (session.home / "a b.vbs").write_text("Dim x\nPublic Function Twice(a)\nEnd Function\nSub Once: End Sub\n")
        for name in ("c.js", "d.svg"):
            (session.home / name).touch()

        def offered(words):
            file = package.root / "usr/share/bash-completion/completions" / words[0]
            text = output_of("bash", "--norc", "-c", COMPLETE, "bash", file, *words, cwd=session.home)
            return set(text.strip("/").split("/"))

        for words, wanted in COMPLETIONS:
            wanted = set(wanted.split("/") if "/" in wanted or "folder" in wanted else wanted.split(" "))
            expect(offered(words) == wanted, words, f"wanted {wanted}", f"offered {offered(words)}")
        for program in PROGRAMS:
            verbs = ("stats", "filter", "plot") if program == "quarlin-data" else ("",)
            words = set().union(*(offered([program, *filter(None, [verb]), "--"]) for verb in verbs))
            differ = options_of_help(package, program) - words | {
                word for word in words - options_of_help(package, program) if program != "quarlin"}
            expect(not differ, f"completion of {program} and --help differ: {differ}")


def headless(package):
    """The demo's test, repeated by the installed programs."""
    with Session() as session:
        port = session.home / "port"
        instrument = session.start(package.program("quarlin-instrument"), "--link", port, stdout=subprocess.PIPE)
        expect(instrument.stdout.readline().startswith("/dev/"), "the instrument says no port")
        session.data.mkdir(parents=True)
        config = (package.root / "usr/share/quarlin/demo/config.cfg").read_bytes()
        # A later record holds against an earlier one; a busy machine is no time-out.
        for name, text in (("cboSerial", str(port)), ("txtAnswerTime", "60000")):
            config += f"{name:20}{text:100}  ".encode()
        (session.data / "config.cfg").write_bytes(config)
        tester = session.start(package.program("quarlin"), "--headless", "LOAD", "RUN", "EXIT",
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        printed, _ = tester.communicate(timeout=90)
        expect(tester.returncode == 0, f"exit status {tester.returncode}", printed)
        sums = json.loads((session.data / "Report.json").read_text())["sums"]
        expect(sums["requests"] == sums["good"] == 100, sums)
        instrument.terminate()
        counts, _ = instrument.communicate(timeout=60)
        expect("\nrequests: 100\n" in "\n" + counts, counts)
        written = {path.name for path in session.data.iterdir()}
        expect({"LOG.TXT", "junit.xml"} <= written, written)
        script = package.root / "usr/share/quarlin/demo/scripts/stability.vbs"
        output_of(package.program("quarlin-script"), "--check", script, env=session.environment)
        figures = json.loads(output_of(package.program("quarlin-data"), "stats", "--json", "--match", r"GS,(\S+)",
                                       session.data / "LOG.TXT", env=session.environment))
        expect(figures["count"] == 100, figures)
        elsewhere = [path for path in session.home.rglob("*") if path.is_file() and session.data not in path.parents]
        expect(not elsewhere, "files outside the program folder:", *elsewhere)
    package.expect_untouched()


def window(package):
    """The program as the desktop entry starts it, on a screen of its own."""
    need("Xvfb", "xdotool")
    entry = (package.root / "usr/share/applications/quarlin.desktop").read_text()
    command = re.search("^Exec=(.+)$", entry, re.M).group(1)
    window_class = re.search("^StartupWMClass=(.+)$", entry, re.M).group(1)
    with Session() as session:
        read, write = os.pipe()
        # Without a reset when the last client goes: it would turn away whoever comes meanwhile.
        session.start("Xvfb", "-noreset", "-displayfd", write, "-screen", "0", "1366x768x24", pass_fds=[write],
                      stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as numbers:
            session.environment["DISPLAY"] = ":" + numbers.readline().strip()

        def look(*words):
            return subprocess.run(["xdotool", *words], env=session.environment, capture_output=True, text=True,
                                  check=False).stdout.splitlines()

        def shown():
            windows = look("search", "--onlyvisible", "--class", f"^{window_class}$")
            return [title for window in windows for title in look("getwindowname", window) if "Quarlin Ver" in title]

        program = session.start(package.program(command), stderr=subprocess.PIPE)
        eventually(lambda: shown() or program.poll() is not None, "the window")
        program.terminate()
        _, errors = program.communicate(timeout=60)
        expect(program.returncode == 0, f"exit status {program.returncode}", errors)
        expect((session.data / "position.ini").is_file(), "the window left nothing in", session.data)
    package.expect_untouched()


TESTS = {"make": make, "contents": contents, "checkers": checkers, "help": help_agrees, "completion": completion,
         "headless": headless, "window": window}


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("test", choices=TESTS)
    arguments.add_argument("--source", type=pathlib.Path, required=True)
    arguments.add_argument("--build", type=pathlib.Path, required=True)
    chosen = arguments.parse_args()
    need("cpack", "dpkg-shlibdeps", "dpkg-deb", "file", "strip")
    TESTS[chosen.test](Package(chosen.source.resolve(), chosen.build.resolve()))


if __name__ == "__main__":
    main()
