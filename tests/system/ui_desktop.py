"""A desktop of its own for the real program: display, window manager, tray, buses, disks.

Everything runs in a mount namespace with a /run, /dev and /media of its own and ends with the
process. The program and the desktop run as a user without rights; only mounts are made as root.
"""
import os
import pathlib
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time

USER = 61234
NAME = "bstester"
HERE = pathlib.Path(__file__).resolve().parent
PATIENCE = 30.0
NODES = (("null", 1, 3), ("zero", 1, 5), ("random", 1, 8), ("urandom", 1, 9), ("fuse", 10, 229),
         ("loop-control", 10, 237))


def enter_namespace():
    """Starts this script again in a namespace of its own; returns inside."""
    if os.environ.get("STAGE_INSIDE") != "1":
        os.environ["STAGE_INSIDE"] = "1"
        os.execvp("unshare", ["unshare", "--mount", "--propagation", "private", sys.executable,
                              *sys.argv])


def eventually(condition, patience=PATIENCE):
    end = time.monotonic() + patience
    while True:
        value = condition()
        if value or time.monotonic() > end:
            return value
        time.sleep(0.1)


def mount_over(place, *options):
    os.makedirs(place, exist_ok=True)
    subprocess.run(["mount", "-t", "tmpfs", "-o", ",".join(("mode=755", *options)), "stage", place],
                   check=True)


class Machine:
    """The system's side: buses, device manager, disks service, rights for everybody."""

    def __init__(self):
        self.processes = []
        self.devices = []
        self.images = tempfile.mkdtemp(prefix="brightsweep-ui-")
        os.chmod(self.images, 0o755)
        for place in ("/run", "/media", "/dev", "/var/lib/udisks2"):
            mount_over(place)
        mount_over("/dev/shm", "mode=1777")
        for name, major, minor in NODES:
            os.mknod(f"/dev/{name}", 0o020666, os.makedev(major, minor))
            os.chmod(f"/dev/{name}", 0o666)
        for number in range(16):
            os.mknod(f"/dev/loop{number}", 0o060600, os.makedev(7, number))
        for place in ("/run/dbus", "/run/stage/rules"):
            os.makedirs(place)
        pathlib.Path("/run/stage/passwd").write_text(
            pathlib.Path("/etc/passwd").read_text() +
            f"{NAME}:x:{USER}:{USER}::{self.images}:/bin/sh\n")
        subprocess.run(["mount", "--bind", "/run/stage/passwd", "/etc/passwd"], check=True)
        pathlib.Path("/run/stage/rules/00-stage.rules").write_text(
            "polkit.addRule(function(action, subject) {\n"
            '    if (action.id.indexOf("org.freedesktop.udisks2.") == 0)\n'
            "        return polkit.Result.YES;\n});\n")
        subprocess.run(["mount", "--bind", "/run/stage/rules", "/etc/polkit-1/rules.d"], check=True)
        os.makedirs("/tmp/.X11-unix", exist_ok=True)
        os.chmod("/tmp/.X11-unix", 0o1777)

    def start(self, *command):
        with open(f"/run/stage/{os.path.basename(command[0])}.log", "wb") as log:
            self.processes.append(subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log,
                                                   stderr=log))

    def start_disks(self):
        self.start("dbus-daemon", "--system", "--nofork", "--nopidfile")
        assert eventually(lambda: os.path.exists("/run/dbus/system_bus_socket"))
        self.start("/usr/lib/polkit-1/polkitd", "--no-debug")
        manager = next(path for path in ("/usr/lib/systemd/systemd-udevd", "/sbin/udevd")
                       if os.path.exists(path))
        self.start(manager)
        assert eventually(lambda: os.path.exists("/run/udev/control"))
        subprocess.run(["udevadm", "trigger", "--subsystem-match=block", "--action=add", "--settle"])
        self.start("/usr/libexec/udisks2/udisksd")
        for name in ("org.freedesktop.PolicyKit1", "org.freedesktop.UDisks2"):
            assert eventually(lambda name=name: subprocess.run(
                ["dbus-send", "--system", "--print-reply", "--dest=org.freedesktop.DBus", "/",
                 "org.freedesktop.DBus.GetNameOwner", f"string:{name}"],
                capture_output=True).returncode == 0), name

    def mount_disk(self, label):
        """Mounts a fresh image below /media and gives its device."""
        image = os.path.join(self.images, f"{label}.img")
        subprocess.run(["truncate", "-s", "64M", image], check=True)
        subprocess.run(["mkfs.ext4", "-q", "-F", "-L", label, image], check=True)
        device = subprocess.run(["losetup", "-f", "--show", image], check=True, text=True,
                                capture_output=True).stdout.strip()
        self.devices.append(device)
        subprocess.run(["udevadm", "settle"])
        place = f"/media/{label}"
        os.makedirs(place)
        subprocess.run(["mount", device, place], check=True)
        return device

    def is_attached(self, device):
        return os.path.exists(f"/sys/block/{os.path.basename(device)}/loop/backing_file")

    def close(self):
        for place in os.listdir("/media"):
            subprocess.run(["umount", f"/media/{place}"], capture_output=True)
        for device in self.devices:
            if self.is_attached(device):
                subprocess.run(["losetup", "-d", device])
        for process in reversed(self.processes):
            process.terminate()
            process.wait()
        shutil.rmtree(self.images, ignore_errors=True)


class Desktop:
    """One user's session: a display, a session bus and what is asked for of the rest."""

    def __init__(self, program, display="x11", tray=True):
        self.program = program
        self.processes = []
        self.folder = tempfile.mkdtemp(prefix="brightsweep-ui-")
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
            self.close()
            raise

    def start_session(self, bus, display, tray):
        self.start("dbus-daemon", "--session", f"--address={bus}", "--nofork", "--nopidfile")
        assert eventually(lambda: os.path.exists(f"{self.folder}/runtime/bus"))
        if display == "x11":
            self.start_x11()
            self.start("openbox")
            assert eventually(lambda: self.run("xdotool", "get_desktop").returncode == 0)
            if tray:
                self.start_tray()
        else:
            self.environment["WAYLAND_DISPLAY"] = "stage"
            self.start("weston", "--backend=headless-backend.so", "--socket=stage", "--idle-time=0",
                       "--width=1280", "--height=900")
            assert eventually(lambda: os.path.exists(f"{self.folder}/runtime/stage"))

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
        self.display = self.start("Xvfb", "-displayfd", str(writes), "-screen", "0", "1280x900x24",
                                  "-nolisten", "tcp", pass_fds=(writes,))
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

    def settings(self, key, value):
        command = os.path.join(os.path.dirname(self.program), "brightsweep-cli")
        return self.run(command, "settings", "set", key, value)

    def tree(self):
        """(depth, role, states, name) of everything on show."""
        lines = self.run("/usr/bin/python3", str(HERE / "ui_reader.py"), "tree").stdout.splitlines()
        return [tuple(line.split("\t", 3)) for line in lines if line.count("\t") >= 3]

    def names(self):
        return [thing[3] for thing in self.tree()]

    def shows(self, beginning):
        return any(name.startswith(beginning) for name in self.names())

    def wait_for(self, beginning):
        assert eventually(lambda: self.shows(beginning)), f"{beginning!r} in {self.names()}"

    def wait_without(self, beginning):
        assert eventually(lambda: not self.shows(beginning)), f"{beginning!r} in {self.names()}"

    def press(self, name):
        result = self.run("/usr/bin/python3", str(HERE / "ui_reader.py"), "press", name)
        assert result.returncode == 0, f"cannot press {name!r}: {result.stderr} {self.tree()}"

    def geometry(self, window):
        words = self.run("xdotool", "getwindowgeometry", "--shell", window).stdout.split()
        return dict(word.split("=") for word in words)

    def width(self, window):
        return int(self.geometry(window).get("WIDTH", 0))

    def tray_place(self):
        """The middle of the icon in the tray, or None."""
        for window in self.run("xdotool", "search", "--class", "brightsweep").stdout.split():
            place = self.geometry(window)
            if place and int(place["Y"]) >= 860 and int(place["WIDTH"]) <= 40:
                return (int(place["X"]) + int(place["WIDTH"]) // 2,
                        int(place["Y"]) + int(place["HEIGHT"]) // 2)
        return None

    def click(self, place):
        self.run("xdotool", "mousemove", str(place[0]), str(place[1]), "click", "1")

    def key(self, keys):
        self.run("xdotool", "key", keys)

    def choose(self, *keys):
        """Opens the application menu, goes by the keys and presses there."""
        def windows():
            found = self.run("xdotool", "search", "--onlyvisible", "--class", "brightsweep")
            return {window for window in found.stdout.split() if self.width(window) >= 150}
        assert eventually(lambda: self.run("xdotool", "getactivewindow").stdout)
        closed = windows()

        def opened():
            # A window that has just come may not have the keyboard yet.
            self.key("F10")
            return eventually(lambda: windows() - closed, 3)
        assert eventually(opened), "no menu"
        # At a person's pace: the menu takes hold of the keyboard only after it is seen.
        self.run("xdotool", "key", "--delay", "300", "Shift_L", *keys, "Return")

    def log_text(self):
        return pathlib.Path(self.log).read_text(errors="replace") if os.path.exists(self.log) else ""

    def close(self):
        for process in reversed(self.processes):
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
