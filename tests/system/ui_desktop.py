"""A desktop of its own for the real program: display, window manager, tray, buses, disks.

Everything runs in namespaces with processes, a /run, a /dev and a /media of their own and ends with
the script. The program and the desktop run as a user without rights; only mounts are made as root.
Nothing here goes by pace: a key is pressed once, when what is to take it has the keyboard, and what
it does is waited for.
"""
import contextlib
import fcntl
import json
import os
import pathlib
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

USER = 61234
NAME = "bstester"
BINARIES = "/run/stage/bin"
READER = "/run/stage/ui_reader.py"
PATIENCE = 90.0
FOLDERS = "brightsweep-stage-"
TOOL = str(pathlib.Path(__file__).resolve().with_name("machine"))


def enter_namespace(verb="enter"):
    """Starts this script again in namespaces that end with it; returns inside. With "burn" the whole
    machine is a copy that goes with them. Without root it ends as skipped."""
    if os.environ.get("STAGE_INSIDE") != "1":
        os.environ["STAGE_INSIDE"] = "1"
        os.execv(TOOL, [TOOL, verb, sys.executable, *sys.argv])


def eventually(condition, patience=PATIENCE):
    end = time.monotonic() + patience
    while True:
        value = condition()
        if value or time.monotonic() > end:
            return value
        time.sleep(0.1)


def attached_disks():
    """(device, image) of all disks that are made of files."""
    for path in pathlib.Path("/sys/block").glob("loop*/loop/backing_file"):
        try:
            yield f"/dev/{path.parts[3]}", path.read_text().strip()
        except OSError:
            pass  # let go meanwhile


def locked(folder, how):
    """A descriptor that holds the folder for as long as it is open, or None."""
    try:
        descriptor = os.open(folder, os.O_RDONLY)
    except FileNotFoundError:
        return None
    try:
        fcntl.flock(descriptor, how)
        return descriptor
    except BlockingIOError:
        os.close(descriptor)
        return None


def clear_away(folder):
    """Lets go of the disks whose images are in the folder, and removes it."""
    for device, image in attached_disks():
        if image.startswith(f"{folder}/"):
            subprocess.run(["losetup", "-d", device])
    shutil.rmtree(folder, ignore_errors=True)


def folder_of_this_run():
    """Makes the folder that holds all folders of this run, and clears away those of killed runs."""
    place = tempfile.gettempdir()
    gate = locked(place, fcntl.LOCK_EX)
    for other in pathlib.Path(place).glob(f"{FOLDERS}*"):
        held = locked(other, fcntl.LOCK_EX | fcntl.LOCK_NB)
        if held is not None:
            clear_away(other)
            os.close(held)
    folder = tempfile.mkdtemp(prefix=FOLDERS)
    os.chmod(folder, 0o755)
    locked(folder, fcntl.LOCK_EX)
    os.close(gate)
    tempfile.tempdir = folder
    return folder


def tool(*words, **more):
    """What the tool makes in these namespaces, and what it says."""
    return subprocess.run([TOOL, *words], check=True, text=True, stdout=subprocess.PIPE,
                          **more).stdout.strip()


class Machine:
    """The system's side: buses, device manager, disks service, rights for everybody; and the
    program where everybody can reach it."""

    def __init__(self, program):
        self.processes = []
        tool("places")
        self.images = folder_of_this_run()
        os.makedirs(BINARIES)
        subprocess.run(["mount", "--bind", os.path.dirname(os.path.abspath(program)), BINARIES],
                       check=True)
        self.program = f"{BINARIES}/{os.path.basename(program)}"
        shutil.copy(pathlib.Path(__file__).with_name(os.path.basename(READER)), READER)
        tool("user", NAME, str(USER), self.images)
        tool("rules", input="""polkit.addRule(function(action, subject) {
    if (action.id.indexOf("org.freedesktop.udisks2.") == 0)
        return polkit.Result.YES;
});
""")

    def start_disks(self):
        for service, ready in (("bus", ("wait", "org.freedesktop.DBus")),
                               ("authority", ("wait", "org.freedesktop.PolicyKit1")),
                               ("devices", ("plug",)),
                               ("disks", ("wait", "org.freedesktop.UDisks2"))):
            self.processes.append(subprocess.Popen([TOOL, service]))
            tool(*ready)

    def make_disk(self, label):
        """Gives the device of a fresh image."""
        return tool("disk", label, "ext4", f"{self.images}/{label}.img")

    def mount_disk(self, label, device=None):
        """Mounts the device, or a fresh image, below /media and gives the device."""
        device = device or self.make_disk(label)
        place = f"/media/{label}"
        os.makedirs(place)
        subprocess.run(["mount", device, place], check=True)
        return device

    def is_attached(self, device):
        return device in dict(attached_disks())

    def close(self):
        for place in os.listdir("/media"):
            subprocess.run(["umount", f"/media/{place}"], capture_output=True)
        clear_away(self.images)
        for process in reversed(self.processes):
            process.terminate()
            process.wait()


class Desktop:
    """One user's session: a display, a session bus and what is asked for of the rest."""

    def __init__(self, program, display="x11", tray=True):
        self.program = program
        self.processes = []
        self.folder = tempfile.mkdtemp()
        self.environment = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "USER": NAME,
                            "HOME": f"{self.folder}/home",
                            "XDG_RUNTIME_DIR": f"{self.folder}/runtime",
                            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "NO_AT_BRIDGE": "0",
                            # A program under a sanitizer reports races of its own alone.
                            **{key: os.environ[key] for key in ("ASAN_OPTIONS", "TSAN_OPTIONS")
                               if key in os.environ}}
        for place in ("", "home", "runtime", "home/.local/share/Brightsweep"):
            os.makedirs(f"{self.folder}/{place}", exist_ok=True)
        for place, _, _ in os.walk(self.folder):
            os.chown(place, USER, USER)
        os.chmod(f"{self.folder}/runtime", 0o700)
        self.log = f"{self.folder}/home/.local/share/Brightsweep/norvex.log"
        bus = f"unix:path={self.folder}/runtime/bus"
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus
        try:
            self.start_session(bus, display, tray)
        except BaseException:
            self.tell_logs()
            self.close()
            raise

    def start_session(self, bus, display, tray):
        self.start("dbus-daemon", "--session", f"--address={bus}", "--nofork", "--nopidfile")
        assert eventually(lambda: os.path.exists(f"{self.folder}/runtime/bus")), "no session bus"
        if display == "x11":
            self.start_x11()
            self.start("openbox")
            assert eventually(lambda: self.run("xdotool", "get_desktop").returncode == 0), \
                "no window manager"
            if tray:
                self.start_tray()
        else:
            self.environment["WAYLAND_DISPLAY"] = "stage"
            self.start("weston", "--backend=headless-backend.so", "--socket=stage", "--idle-time=0",
                       "--width=1280", "--height=900")
            assert eventually(lambda: os.path.exists(f"{self.folder}/runtime/stage")), "no display"
        with open(f"{self.folder}/reader.log", "wb") as log:
            self.reader = subprocess.Popen(
                ["/usr/bin/python3", READER], stderr=log, stdout=subprocess.PIPE,
                **{**self.as_user(), "stdin": subprocess.PIPE})
        self.processes.append(self.reader)
        self.read("told")  # From now on it hears of everything.

    def as_user(self):
        return {"user": USER, "group": USER, "extra_groups": [], "env": self.environment,
                "cwd": self.folder, "stdin": subprocess.DEVNULL}

    def start(self, *command, **more):
        with open(f"{self.folder}/{os.path.basename(command[0])}.log", "ab") as log:
            process = subprocess.Popen(command, stdout=log, stderr=log, **self.as_user(), **more)
        self.processes.append(process)
        return process

    def run(self, *command):
        return subprocess.run(command, capture_output=True, text=True, timeout=2 * PATIENCE,
                              **self.as_user())

    def start_x11(self):
        reads, writes = os.pipe()
        # A key that is let go of late must not count as many, and the display must not begin anew
        # when one program has gone before the next one comes.
        self.display = self.start("Xvfb", "-r", "-noreset", "-displayfd", str(writes), "-screen",
                                  "0", "1280x900x24", "-nolisten", "tcp", pass_fds=(writes,))
        os.close(writes)
        number = b""
        while not number.endswith(b"\n"):
            ready, _, _ = select.select([reads], [], [], PATIENCE)
            assert ready, "the display does not come up"
            number += os.read(reads, 16)
        self.environment["DISPLAY"] = ":" + number.decode().strip()
        os.close(reads)

    def start_tray(self):
        self.tray = self.start("trayer", "--edge", "bottom", "--align", "right", "--width", "10",
                               "--height", "32", "--SetPartialStrut", "true")

    # -- The program

    def start_program(self, *arguments):
        self.running = self.start(self.program, *arguments)
        return self.running

    def activate(self):
        """Starts the program a second time."""
        result = self.run(self.program, "--activate")
        assert result.returncode == 0, result.stderr

    def wait_for_end(self):
        """The program's exit status."""
        return self.running.wait(PATIENCE)

    def settings(self, key, value):
        command = os.path.join(os.path.dirname(self.program), "brightsweep-cli")
        result = self.run(command, "settings", "set", key, value)
        assert result.returncode == 0, result.stderr

    # -- What is on show

    def read(self, *words):
        self.reader.stdin.write(json.dumps(words).encode() + b"\n")
        self.reader.stdin.flush()
        ready, _, _ = select.select([self.reader.stdout], [], [], 2 * PATIENCE)
        answer = self.reader.stdout.readline() if ready else b""
        assert answer, pathlib.Path(self.folder, "reader.log").read_text()
        return json.loads(answer)

    def tree(self):
        """(depth, role, marks, name) of everything on show."""
        return self.read("tree")

    def names(self):
        return [thing[3] for thing in self.tree()]

    def shows(self, *beginnings):
        names = self.names()
        return all(any(name.startswith(beginning) for name in names) for beginning in beginnings)

    def wait_for(self, *beginnings):
        """Waits until all are on show together."""
        assert eventually(lambda: self.shows(*beginnings)), f"{beginnings!r} in {self.names()}"

    def wait_for_one(self, beginning):
        """Waits until it has come, even if it has gone again."""
        assert eventually(lambda: any(name.startswith(beginning) for name in self.read("told"))), \
            f"{beginning!r} in {self.read('told')}"

    def wait_without(self, beginning):
        assert eventually(lambda: not self.shows(beginning)), f"{beginning!r} in {self.names()}"

    def wait_for_mark(self, name, mark):
        assert eventually(lambda: any(mark in marks and name == thing
                                      for _, _, marks, thing in self.tree())), self.tree()

    def focused(self):
        return [name for _, _, marks, name in self.tree() if "focused" in marks]

    def windows(self):
        """The places of the program's windows, (left, top, width, height)."""
        words = self.run("xdotool", "search", "--onlyvisible", "--class", "brightsweep",
                         "getwindowgeometry", "--shell", "%@").stdout
        numbers = dict.fromkeys(("X", "Y", "WIDTH", "HEIGHT"))
        places = []
        for word in words.split():
            key, _, value = word.partition("=")
            numbers[key] = int(value)
            if key == "HEIGHT":
                places.append(tuple(numbers[name] for name in ("X", "Y", "WIDTH", "HEIGHT")))
        return places

    def tray_place(self):
        """The middle of the icon in the tray, or None."""
        return next(((left + width // 2, top + height // 2)
                     for left, top, width, height in self.windows()
                     if top >= 860 and width <= 40), None)

    # -- What a person does

    def press(self, name):
        assert eventually(lambda: self.read("press", name)), f"cannot press {name!r}: {self.tree()}"

    def click(self, place):
        self.run("xdotool", "mousemove", str(place[0]), str(place[1]), "click", "1")

    def click_tray(self):
        """Clicks the tray's icon; again only if it moved away."""
        assert eventually(self.tray_place), "no icon in the tray"

        def clicked():
            place = self.tray_place()
            if place:
                self.click(place)
            return place and place == self.tray_place()
        assert eventually(clicked), "the tray's icon keeps moving"

    def has_keyboard(self, name=None):
        """Whether the thing of that name, or else any window, has the keyboard, for the program and
        for the display."""
        owner = self.run("xdotool", "getwindowfocus", "getwindowpid").stdout.strip()
        return owner == str(self.running.pid) and any(
            "active" in marks if name is None else name == thing and "focused" in marks
            for _, _, marks, thing in self.tree())

    def key(self, keys, at=None):
        assert eventually(lambda: self.has_keyboard(at)), f"no keyboard for {keys}: {self.tree()}"
        self.tap(keys)

    def tap(self, keys):
        """For keys whose taker is known to have the keyboard."""
        self.run("xdotool", "key", keys)

    @contextlib.contextmanager
    def stopped(self):
        """The program meets all that is done meanwhile at once."""
        self.running.send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            self.running.send_signal(signal.SIGCONT)

    def menu(self):
        """(marks, name) of the items of the open menu."""
        return [(marks, name) for _, role, marks, name in self.tree() if role == "menu item"]

    def highlighted(self):
        return next((name for marks, name in self.menu() if "focused" in marks), None)

    def open_menu(self):
        self.key("F10")
        assert eventually(self.highlighted), f"no menu: {self.tree()}"

    def end_menu(self, key):
        self.tap(key)
        assert eventually(lambda: not self.menu()), "the menu stays open"

    def choose(self, name, key="Down"):
        """Opens the application menu, goes to that item and presses it; gives the items passed."""
        self.open_menu()
        count = len(self.menu())
        passed = [self.highlighted()]
        while passed[-1] != name:
            assert len(passed) < count, f"no {name!r} among {passed}"
            self.tap(key)
            assert eventually(lambda: self.highlighted() not in (None, passed[-1])), \
                f"stays at {passed}"
            passed.append(self.highlighted())
        self.end_menu("Return")
        return passed

    def tell_logs(self):
        """What the processes of a session that has failed have said."""
        for process in self.processes:
            print(process.args[0], process.poll(), file=sys.stderr)
        for log in sorted(pathlib.Path(self.folder).glob("*.log")):
            print(f"{log.name}: {log.read_text(errors='replace')[-2000:]}", file=sys.stderr)

    def log_text(self):
        return pathlib.Path(self.log).read_text(errors="replace") if os.path.exists(self.log) else ""

    def close(self):
        for process in reversed(self.processes):
            for pipe in (process.stdin, process.stdout):
                if pipe:
                    pipe.close()
            if process.poll() is None:
                process.send_signal(signal.SIGTERM)
                try:
                    process.wait(5)
                except subprocess.TimeoutExpired:
                    process.kill()
                    process.wait()
        # The program's own exit status may be the same as a sanitizer's.
        said = pathlib.Path(self.folder, f"{os.path.basename(self.program)}.log")
        said = said.read_text(errors="replace") if said.exists() else ""
        shutil.rmtree(self.folder, ignore_errors=True)
        assert "Sanitizer: " not in said and "runtime error: " not in said, said


def allow_rights(policy):
    """Lets the program's own helper be started by the real pkexec without a question."""
    tool("policy", policy, f"{BINARIES}/brightsweep-helper")
    rules = pathlib.Path("/run/rules/00-test.rules")
    rules.write_text(rules.read_text() +
                     "polkit.addRule(function(action, subject) {\n"
                     '    if (action.id.indexOf("com.norvmac.DeskSweeperPro.") == 0)\n'
                     "        return polkit.Result.YES;\n});\n")


def run_tests(rights=False, disks=False, verb="enter"):
    """Runs the tests of the script that was started, in namespaces of its own, for the program that
    its first argument names; with `rights` the second one is the policy. The script's PROGRAM and
    MACHINE are set."""
    enter_namespace(verb)
    script = sys.modules["__main__"]
    script.MACHINE = Machine(sys.argv.pop(1))
    script.PROGRAM = script.MACHINE.program
    if rights:
        allow_rights(os.path.abspath(sys.argv.pop(1)))
    if disks:
        script.MACHINE.start_disks()
    try:
        unittest.main(module=script, verbosity=2)
    finally:
        script.MACHINE.close()
