# SPDX-License-Identifier: GPL-3.0-or-later
"""What the benchmarks share: a pseudo-terminal as the serial link, a private
screen that watches windows, and a started program with its figures from /proc.

Python 3 standard library only; Xvfb and libX11 are needed where a window is watched, libXtst where it is
worked by keys and clicks.
"""
import ctypes
import fcntl
import glob
import os
import select
import struct
import subprocess
import termios
import threading
import time
import tty

TICK = os.sysconf("SC_CLK_TCK")


class Link:
    """A pseudo-terminal: the benchmark is the instrument (master), the program opens `path`.

    The slave stays open here too, in raw mode, so that nothing is lost or echoed
    before the program has set the port up, or while it closes and reopens it.
    """

    def __init__(self):
        self.master, self.slave = os.openpty()
        tty.setraw(self.slave)
        os.set_blocking(self.master, False)
        self.path = os.ttyname(self.slave)

    def unread(self):
        """Bytes that wait in the line discipline for the program to read them."""
        return struct.unpack("i", fcntl.ioctl(self.slave, termios.FIONREAD, b"\0" * 4))[0]

    def write_some(self, data):
        """Writes what fits at once; returns how many bytes that was."""
        try:
            return os.write(self.master, data)
        except BlockingIOError:
            return 0

    def wait_writable(self, seconds):
        return bool(select.select([], [self.master], [], seconds)[1])

    def wait_drained(self, seconds):
        """Waits until the program has read everything; returns the time it had, or None."""
        deadline, empty_since = time.monotonic() + seconds, None
        while time.monotonic() < deadline:
            if self.unread():
                empty_since = None
            else:
                empty_since = empty_since or time.monotonic()
                if time.monotonic() - empty_since > 0.02:
                    return empty_since
            time.sleep(0.001)
        return None

    def close(self):
        os.close(self.master)
        os.close(self.slave)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


class Screen:
    """A private Xvfb without a window manager."""

    def __init__(self, size="1280x800x24"):
        read_end, write_end = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", size, "-nolisten", "tcp",
             "-noreset"],
            pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as numbers:
            self.name = ":" + numbers.readline().strip()

    def close(self):
        self.process.terminate()
        self.process.wait()


class Windows:
    """One X connection that sees windows being mapped and asks them whether they answer.

    Answering is the _NET_WM_PING handshake, which Qt and GTK serve from their event
    loop: the time to the answer is how long a key stroke would have waited.
    """
    MAP_NOTIFY, CLIENT_MESSAGE, NOTIFY_MASKS = 19, 33, 1 << 17 | 1 << 19
    lib = None

    def __init__(self, display):
        if Windows.lib is None:
            Windows.lib = ctypes.CDLL("libX11.so.6")
            Windows.lib.XInitThreads()
            Windows.lib.XOpenDisplay.restype = ctypes.c_void_p
            Windows.lib.XDefaultRootWindow.restype = ctypes.c_ulong
            Windows.lib.XInternAtom.restype = ctypes.c_ulong
            handler = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)
            Windows.on_error = handler(lambda *_: 0)  # a window may vanish at any time
            Windows.lib.XSetErrorHandler(Windows.on_error)
        self.display = ctypes.c_void_p(self.lib.XOpenDisplay(display.encode()))
        if not self.display:
            raise OSError(f"no X connection to {display}")
        self.root = self.lib.XDefaultRootWindow(self.display)
        self.protocols = self.lib.XInternAtom(self.display, b"WM_PROTOCOLS", 0)
        self.ping_atom = self.lib.XInternAtom(self.display, b"_NET_WM_PING", 0)
        self.lib.XSelectInput(self.display, ctypes.c_ulong(self.root),
                              ctypes.c_long(self.NOTIFY_MASKS))
        self.lib.XSync(self.display, 0)
        self.fd = self.lib.XConnectionNumber(self.display)
        self.sequence = 0
        self.mapped = []  # windows that came while an answer was waited for

    def _next_event(self, deadline):
        while not self.lib.XPending(self.display):
            left = deadline - time.monotonic()
            if left <= 0 or not select.select([self.fd], [], [], left)[0]:
                return None
        event = ctypes.create_string_buffer(192)
        self.lib.XNextEvent(self.display, event)
        return event.raw

    def wait_mapped(self, seconds):
        """The next window that is mapped and is no menu or tooltip, or None."""
        deadline = time.monotonic() + seconds
        while not self.mapped and (event := self._next_event(deadline)):
            self._take_mapped(event)
        return self.mapped.pop(0) if self.mapped else None

    def _take_mapped(self, event):
        if struct.unpack_from("i", event)[0] == self.MAP_NOTIFY:
            window, is_popup = struct.unpack_from("Li", event, 40)
            if not is_popup:
                self.mapped.append(window)

    def ping(self, window, seconds):
        """Seconds until the window's program answered, or None."""
        self.sequence += 1
        event = struct.pack("iLiLLLi5L", self.CLIENT_MESSAGE, 0, 1, 0, window,
                            self.protocols, 32, self.ping_atom, self.sequence, window, 0, 0)
        start = time.monotonic()
        self.lib.XSendEvent(self.display, ctypes.c_ulong(window), 0, ctypes.c_long(0),
                            ctypes.create_string_buffer(event, 192))
        self.lib.XFlush(self.display)
        while answer := self._next_event(start + seconds):
            self._take_mapped(answer)
            if struct.unpack_from("i", answer)[0] == self.CLIENT_MESSAGE:
                if struct.unpack_from("LL", answer, 56) == (self.ping_atom, self.sequence):
                    return time.monotonic() - start
        return None

    def title(self, window):
        name = ctypes.c_char_p()
        if not self.lib.XFetchName(self.display, ctypes.c_ulong(window), ctypes.byref(name)):
            return ""
        text = name.value.decode("latin-1")
        self.lib.XFree(name)
        return text

    def close(self):
        self.lib.XCloseDisplay(self.display)


class Pinger(threading.Thread):
    """Asks a window again and again whether it answers, on a connection of its own."""

    def __init__(self, display, window, pause=0.02):
        super().__init__(daemon=True)
        self.windows, self.window, self.pause = Windows(display), window, pause
        self.delays, self.stopping = [], threading.Event()
        self.start()

    def run(self):
        while not self.stopping.wait(self.pause):
            start = time.monotonic()
            answer = self.windows.ping(self.window, 60)
            self.delays.append(time.monotonic() - start if answer is None else answer)

    def finish(self):
        """(median, longest) delay in ms."""
        self.stopping.set()
        self.join()
        self.windows.close()
        ordered = sorted(self.delays) or [0.0]
        return round(ordered[len(ordered) // 2] * 1000, 2), round(ordered[-1] * 1000, 1)


class Hands:
    """Keys and clicks that come to a window as if somebody made them."""

    def __init__(self, display):
        self.x, self.test = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXtst.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XStringToKeysym.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(display.encode()))

    def focus(self, window):
        """There is no window manager to do that."""
        self.x.XSetInputFocus(self.display, ctypes.c_ulong(window), 1, ctypes.c_ulong(0))
        self.x.XSync(self.display, 0)
        time.sleep(0.3)

    def _code(self, name):
        return self.x.XKeysymToKeycode(self.display, ctypes.c_ulong(self.x.XStringToKeysym(name)))

    def _turn(self, name, down):
        self.test.XTestFakeKeyEvent(self.display, self._code(name), down, ctypes.c_ulong(0))

    def press(self, name):
        for down in (1, 0):
            self._turn(name, down)
            self.x.XFlush(self.display)

    def chord(self, *names):
        """All of them held down at once, such as Ctrl and a letter."""
        for name in names:
            self._turn(name, 1)
        for name in reversed(names):
            self._turn(name, 0)
        self.x.XFlush(self.display)

    def click(self, x, y):
        self.test.XTestFakeMotionEvent(self.display, -1, x, y, ctypes.c_ulong(0))
        for down in (1, 0):
            self.test.XTestFakeButtonEvent(self.display, 1, down, ctypes.c_ulong(0))
        self.x.XSync(self.display, 0)
        time.sleep(0.3)

    def close(self):
        self.x.XCloseDisplay(self.display)


class Program:
    """A started program; what it prints goes to the file `output`, or nowhere."""

    def __init__(self, argv, env, output=os.devnull):
        with open(output, "wb") as file:
            self.started = time.monotonic()
            self.process = subprocess.Popen(argv, env=env, stdin=subprocess.DEVNULL, stdout=file,
                                            stderr=file, start_new_session=True)
        self.pid = self.process.pid

    def alive(self):
        return self.process.poll() is None

    def has_open(self, path):
        for link in glob.glob(f"/proc/{self.pid}/fd/*"):
            try:
                if os.readlink(link) == path:
                    return True
            except OSError:
                pass
        return False

    def wait_open(self, path, seconds):
        """Seconds from start until the port was open, or None."""
        while time.monotonic() - self.started < seconds and self.alive():
            if self.has_open(path):
                return time.monotonic() - self.started
            time.sleep(0.001)
        return None

    def stop(self):
        """Ends it with SIGTERM; with SIGKILL where that takes more than 10 s."""
        if not self.alive():
            return
        self.process.terminate()
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()


def cpu_seconds(pid):
    """User and system time of all threads, ended ones too where only ticks know of them."""
    with open(f"/proc/{pid}/stat") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    ticks = (int(fields[11]) + int(fields[12])) / TICK
    fine = 0
    for path in glob.glob(f"/proc/{pid}/task/*/schedstat"):
        try:
            with open(path) as file:
                fine += int(file.read().split()[0])
        except OSError:
            pass
    return max(fine / 1e9, ticks - 1 / TICK)


def context_switches(pid):
    """(voluntary, forced) over all threads."""
    totals = [0, 0]
    for path in glob.glob(f"/proc/{pid}/task/*/status"):
        with open(path) as file:
            for line in file:
                if line.startswith("voluntary_ctxt"):
                    totals[0] += int(line.split()[1])
                elif line.startswith("nonvoluntary_ctxt"):
                    totals[1] += int(line.split()[1])
    return totals


def memory_mb(pid, field="VmRSS"):
    """VmRSS is the resident size now, VmHWM its peak so far."""
    with open(f"/proc/{pid}/status") as file:
        for line in file:
            if line.startswith(field + ":"):
                return round(int(line.split()[1]) / 1024, 2)
    return 0.0


def wait_quiet(pid, seconds, share=0.05, window=0.25):
    """Waits until the program uses less than `share` of a core; the time it became so, or None."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        start, used = time.monotonic(), cpu_seconds(pid)
        time.sleep(window)
        if cpu_seconds(pid) - used < share * window:
            return start
    return None
