#!/usr/bin/env python3
"""Measures the resident program against two rivals: resident_bench.py PROGRAM [ROUNDS [SECONDS]].

As an ordinary user on a display, session bus and, unless --no-disks is given, system bus of its own:
the time from the start of the process to the window's map and to its first content, of all three in
turn; the memory with the window closed after every page was shown, against the rivals' first page;
and what SECONDS (60) without the window cost in processor time and messages. Needs root, for
the namespace that it runs in. Ends with 1 where a limit is not kept.
"""
import ctypes
import os
import pathlib
import statistics
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests/system"))
from ui_desktop import Desktop, Machine, enter_namespace, eventually  # noqa: E402

ROUNDS = 9
IDLE_SECONDS = 60
PATIENCE = 20.0
LEAST_WINDOW = 300
# Fewer colours are a background that waits for its content.
CONTENT_COLOURS = 16
MAXIMUM = {"mib": 45.0, "idle hour": 0.8, "of qdirstat": 0.5, "of stacer": 1.0}
PANELS = ("Fast Clean", "Duplicates", "Disk Usage", "Uninstall", "Free Memory", "Login Items",
          "Preferences")


class Attributes(ctypes.Structure):
    """XWindowAttributes up to the state of the window."""
    _fields_ = [("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int),
                ("height", ctypes.c_int), ("border", ctypes.c_int), ("depth", ctypes.c_int),
                ("visual", ctypes.c_void_p), ("root", ctypes.c_ulong), ("klass", ctypes.c_int),
                ("bits", ctypes.c_int), ("window_gravity", ctypes.c_int),
                ("backing", ctypes.c_int), ("planes", ctypes.c_ulong), ("pixel", ctypes.c_ulong),
                ("save_under", ctypes.c_int), ("colormap", ctypes.c_ulong),
                ("installed", ctypes.c_int), ("state", ctypes.c_int), ("rest", ctypes.c_char * 64)]


class Image(ctypes.Structure):
    """XImage up to its lines."""
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("offset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.c_void_p), ("byte_order", ctypes.c_int),
                ("unit", ctypes.c_int), ("bit_order", ctypes.c_int), ("pad", ctypes.c_int),
                ("depth", ctypes.c_int), ("line", ctypes.c_int)]


class Display:
    """Looks at windows without starting a program for each look."""
    VIEWABLE, Z_PIXMAP = 2, 2

    def __init__(self, name):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x.XGetImage.restype = ctypes.POINTER(Image)
        handler = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)
        # A window may go between two questions about it.
        self.ignore = handler(lambda display, error: 0)
        self.x.XSetErrorHandler(self.ignore)
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(name.encode()))
        self.root = self.x.XDefaultRootWindow(self.display)

    def children(self, window):
        root, parent = ctypes.c_ulong(), ctypes.c_ulong()
        array, count = ctypes.POINTER(ctypes.c_ulong)(), ctypes.c_uint()
        if not self.x.XQueryTree(self.display, ctypes.c_ulong(window), ctypes.byref(root),
                                 ctypes.byref(parent), ctypes.byref(array), ctypes.byref(count)):
            return []
        found = array[:count.value]
        if count.value:
            self.x.XFree(array)
        return found

    def shown(self, window):
        """The place of a window that is mapped and large, or None."""
        it = Attributes()
        if not self.x.XGetWindowAttributes(self.display, ctypes.c_ulong(window), ctypes.byref(it)):
            return None
        large = it.width >= LEAST_WINDOW and it.height >= LEAST_WINDOW
        return it if large and it.state == self.VIEWABLE else None

    def client(self):
        """(window, its attributes) of the first large window within a frame, or None."""
        for frame in reversed(self.children(self.root)):
            if not self.shown(frame):
                continue
            for window in reversed(self.children(frame)):
                if place := self.shown(window):
                    return window, place
        return None

    def colours(self, window, place):
        """How many colours a band through the window shows."""
        band = 24
        image = self.x.XGetImage(self.display, ctypes.c_ulong(window), 0, place.height // 2 - band,
                                 place.width, 2 * band, ctypes.c_ulong(0xffffffff), self.Z_PIXMAP)
        if not image:
            return 0
        lines = image.contents
        pixels = ctypes.string_at(lines.data, lines.line * lines.height)
        self.x.XDestroyImage(image)
        return len(set(memoryview(pixels).cast("I")))


def end(process):
    process.kill()
    process.wait()


def start_time(desktop, display, command):
    """Milliseconds until the window is mapped, and until it shows content."""
    begin = time.monotonic()
    process = desktop.start(*command)
    mapped = painted = None
    try:
        while not painted:
            now = time.monotonic()
            assert now - begin < PATIENCE, f"{command[0]} shows no window"
            client = display.client()
            if client and not mapped:
                mapped = now - begin
            if client and display.colours(*client) >= CONTENT_COLOURS:
                painted = time.monotonic() - begin
            else:
                time.sleep(0.002)
    finally:
        end(process)
        assert eventually(lambda: not display.client())
    return mapped * 1000, painted * 1000


def memory(process):
    """(resident, proportional) in MiB."""
    def kibibytes(name, key):
        lines = pathlib.Path(f"/proc/{process.pid}/{name}").read_text().splitlines()
        return next(int(line.split()[1]) for line in lines if line.startswith(key + ":"))
    return kibibytes("status", "VmRSS") / 1024, kibibytes("smaps_rollup", "Pss") / 1024


def processor_seconds(process):
    """The scheduler's own account of all threads; the ticks of the stat file are too coarse."""
    total = 0
    for task in pathlib.Path(f"/proc/{process.pid}/task").iterdir():
        total += int((task / "schedstat").read_text().split()[0])
    return total / 1e9


def rival_memory(desktop, display, command):
    process = desktop.start(*command)
    try:
        assert eventually(display.client)
        time.sleep(3)
        return memory(process)
    finally:
        end(process)


def toolbar_places(desktop):
    """Where the window's toolbar has its items, as an assistive program sees them."""
    return [(left + width // 2, top + height // 2)
            for left, top, width, height in desktop.read("places", "check box", *PANELS)]


def show_all_pages(desktop, display, places):
    for place in places:
        desktop.click(place)
        time.sleep(0.5)
    desktop.tap("alt+F4")
    assert eventually(lambda: not display.client()), "the window does not close"


class Listener:
    """Counts what a program sends on a bus."""

    def __init__(self, desktop, bus):
        self.desktop, self.bus = desktop, bus
        self.path = f"{desktop.folder}/messages{bus}"
        with open(self.path, "wb") as out:
            self.process = subprocess.Popen(["dbus-monitor", bus], stdout=out,
                                            stderr=subprocess.DEVNULL,
                                            **({} if bus == "--system" else desktop.as_user()))

    def senders(self):
        lines = pathlib.Path(self.path).read_text(errors="replace").splitlines()
        return [line.split("sender=")[1].split()[0] for line in lines
                if line.startswith(("method call", "signal")) and "sender=" in line]

    def is_of(self, sender, process):
        words = self.desktop.run("dbus-send", self.bus, "--print-reply=literal",
                                 "--dest=org.freedesktop.DBus", "/",
                                 "org.freedesktop.DBus.GetConnectionUnixProcessID",
                                 f"string:{sender}").stdout.split()
        return words[-1:] == [str(process.pid)]


def words_of_free_space():
    """As fine as the program shows it."""
    status = os.statvfs("/")
    return round(status.f_bavail * status.f_frsize / 2 ** 30, 2)


def idle(desktop, process, seconds, disks):
    """(processor seconds, messages sent by bus, changes of the free space) of so many seconds."""
    listeners = [Listener(desktop, "--session")] + ([Listener(desktop, "--system")] if disks else [])
    time.sleep(12)  # the answers to the start, and the notice that no tray is there
    before = processor_seconds(process), [len(listener.senders()) for listener in listeners]
    changes, shown = 0, words_of_free_space()
    end_of_it = time.monotonic() + seconds
    while time.monotonic() < end_of_it:
        time.sleep(1)
        was, shown = shown, words_of_free_space()
        changes += was != shown
    spent = processor_seconds(process) - before[0]
    messages = []
    for listener, was in zip(listeners, before[1]):
        senders = listener.senders()[was:]
        own = [sender for sender in set(senders) if listener.is_of(sender, process)]
        messages.append(sum(sender in own for sender in senders))
        end(listener.process)
    return spent, messages, changes


def load():
    return pathlib.Path("/proc/loadavg").read_text().split()[0]


def main():
    enter_namespace()
    words = [word for word in sys.argv[1:] if not word.startswith("--")]
    disks = "--no-disks" not in sys.argv
    rounds = int(words[1]) if len(words) > 1 else ROUNDS
    seconds = int(words[2]) if len(words) > 2 else IDLE_SECONDS
    machine = Machine(words[0])
    program = machine.program
    if disks:
        machine.start_disks()
    desktop = Desktop(program, tray=False)
    kept = True

    def check(what, value, limit, form="{:.2f}"):
        nonlocal kept
        good = value <= limit
        kept = kept and good
        print(f"  {what}: {form.format(value)}, at most {form.format(limit)}: "
              f"{'kept' if good else 'MISSED'}")

    try:
        plain = {key: value for key, value in desktop.environment.items()
                 if key not in ("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "NO_AT_BRIDGE")}
        display = Display(desktop.environment["DISPLAY"])

        desktop.start_program("--activate")
        desktop.wait_for("Fast Clean")
        places = eventually(lambda: toolbar_places(desktop))
        end(desktop.running)
        end(desktop.reader)
        assert len(places) == len(PANELS), places
        desktop.environment = plain

        commands = {"brightsweep": [program], "qdirstat": ["qdirstat"], "stacer": ["stacer"]}
        times = {name: [] for name in commands}
        for turn in range(rounds + 1):
            for name, command in commands.items():
                measured = start_time(desktop, display, command)
                if turn > 0:  # the first turn fills the caches
                    times[name].append(measured)
        print(f"start, median of {rounds} turns, load {load()}")
        medians = {}
        for name, measured in times.items():
            medians[name] = [statistics.median(column) for column in zip(*measured)]
            least = [min(column) for column in zip(*measured)]
            print(f"  {name:12} mapped {medians[name][0]:6.1f} ms (least {least[0]:6.1f})  "
                  f"content {medians[name][1]:6.1f} ms (least {least[1]:6.1f})")
        for rival in ("qdirstat", "stacer"):
            for column, what in enumerate(("mapped", "content")):
                check(f"{what}, of {rival}", medians["brightsweep"][column] / medians[rival][column],
                      MAXIMUM[f"of {rival}"])

        print("memory")
        for name in ("qdirstat", "stacer"):
            resident, proportional = rival_memory(desktop, display, commands[name])
            print(f"  {name:12} {resident:6.1f} MiB resident, {proportional:6.1f} proportional")
        process = desktop.start_program()
        assert eventually(display.client)
        time.sleep(1)
        print("  brightsweep, first page: {:.1f} resident, {:.1f} proportional".format(
            *memory(process)))
        show_all_pages(desktop, display, places)
        spent, messages, changes = idle(desktop, process, seconds, disks)
        resident, proportional = memory(process)
        print(f"  brightsweep  {resident:6.1f} MiB resident, {proportional:6.1f} proportional, "
              "closed after all pages")
        check("MiB resident", resident, MAXIMUM["mib"], "{:.1f}")
        print(f"idle for {seconds} s, load {load()}")
        check("seconds of processor time in an hour", spent * 3600 / seconds, MAXIMUM["idle hour"])
        print(f"  the root's free space changed {changes} times meanwhile")
        for bus, count in zip(("session", "system"), messages):
            # A change is told: an icon, a title and a tool tip at most.
            check(f"messages sent on the {bus} bus", count, 3 * changes, "{:d}")
        end(process)
    finally:
        desktop.close()
        machine.close()
    return 0 if kept else 1


if __name__ == "__main__":
    sys.exit(main())
