"""The clean page, driven for real by a user without rights: ui_clean.py PROGRAM POLICY [TESTS…].

Every test compares the disk with what the page said, byte by byte. Needs root for its mounts.
"""
import hashlib
import os
import pathlib
import re
import shutil
import stat
import subprocess
import unittest

from ui_desktop import USER, Desktop, eventually, run_tests

PROGRAM = ""
MACHINE = None

CACHES = "home/.cache"
TRASH = "home/.local/share/Trash"
DOWNLOADS = "home/Downloads"
LOGS = "home/.npm/_logs"
SYSTEM_LOGS = "root/var/log/apt"
# What the program and its toolkit keep for themselves.
OWN_FILES = re.compile(r"Brightsweep|DeskSweeper|^home/\.config|^home/Library|fontconfig|mesa|qt")
QUESTION = "Are you sure you want to continue?"
NO_RIGHTS = "You do not have privileges to clean these files."
SETTINGS = ("SystemCaches", "UserCaches", "SystemLogs", "UserLogs", "UserTrash", "UserDownloads")


def snapshot(folder):
    """What is there, to the byte; the program's own files aside."""
    things = {}
    for place, folders, files in os.walk(folder):
        for name in folders + files:
            path = os.path.join(place, name)
            content = ""
            try:
                status = os.lstat(path)
                if stat.S_ISREG(status.st_mode):
                    content = hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()
            except FileNotFoundError:
                continue  # removed meanwhile
            short = os.path.relpath(path, folder)
            if short.startswith(("home/", "root/")) and not OWN_FILES.search(short):
                things[short] = (oct(status.st_mode), content)
    return things


class CleanPage(unittest.TestCase):
    def prepare(self, *ticked):
        """A session with something in five categories; the system's logs belong to root."""
        self.desktop = Desktop(PROGRAM)
        self.addCleanup(self.desktop.close)
        self.folder = self.desktop.folder
        self.files = f"{self.folder}/files"
        self.desktop.environment["BRIGHTSWEEP_SYSTEM_ROOT"] = f"{self.folder}/root"
        for folder, names in (
                (CACHES, ("one/a.bin", "one/b.bin", "two.dat", "b<b>old&.dat")),
                (f"{TRASH}/files", ("old.txt", "older.txt")),
                (DOWNLOADS, ("paper.pdf", "line\nbreak.jpg")),
                (LOGS, ("2026-01-01-debug.log",)),
                ("home/Documents", ("kept.txt",))):
            for number, name in enumerate(names):
                path = pathlib.Path(self.folder, folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(os.urandom(100_000 * (number + 1)))
        info = pathlib.Path(self.folder, TRASH, "info")
        info.mkdir()
        for name in ("old.txt", "older.txt"):
            (info / f"{name}.trashinfo").write_text(
                f"[Trash Info]\nPath=/nowhere/{name}\nDeletionDate=2026-11-20T10:00:00\n")
        pathlib.Path(self.folder, CACHES, "link").symlink_to("../Documents")
        subprocess.run(["chown", "-Rh", f"{USER}:{USER}", f"{self.folder}/home"], check=True)
        os.chmod(f"{self.folder}/{TRASH}/files", 0o700)
        system = pathlib.Path(self.folder, SYSTEM_LOGS)
        system.mkdir(parents=True)
        (system / "history.log.1.gz").write_bytes(os.urandom(5000))
        for key in SETTINGS:
            self.desktop.settings(key, "1" if key in ticked else "0")
        self.before = snapshot(self.folder)

    def start(self):
        self.desktop.start_program()
        self.desktop.wait_for("Scan")

    def scan(self):
        self.start()
        self.desktop.press("Scan")
        line = eventually(self.line)
        self.assertTrue(line, self.desktop.names())
        self.selected = int(line.split()[0])

    def press_clean(self):
        """Answers nothing yet."""
        self.desktop.press("Clean")
        self.desktop.wait_for(QUESTION)

    def wait_for_line(self, beginning):
        self.assertTrue(eventually(lambda: (self.line() or "").startswith(beginning)), self.line())

    def tap_and_move(self, key):
        before = self.desktop.focused()
        self.desktop.tap(key)
        self.assertTrue(eventually(lambda: self.desktop.focused() not in ([], before)), before)

    def line(self):
        """"3 of 9 selected, 0.60 MB will free up.", or nothing yet."""
        return next((name for name in self.desktop.names() if name.endswith("will free up.")), None)

    def cleaned(self):
        return next((name for name in self.desktop.names() if name.endswith(" is cleaned")), None)

    def gone(self):
        after = snapshot(self.folder)
        for path, value in after.items():
            self.assertEqual(self.before.get(path), value, f"{path} was changed")
        return {path for path in self.before if path not in after}

    def wait_until_gone(self, *folders):
        """What is being removed may look changed, and is not compared."""
        paths = self.below(*folders)
        self.assertTrue(eventually(lambda: not any(
            os.path.lexists(f"{self.folder}/{path}") for path in paths)))
        self.assertEqual(self.gone(), paths)

    def below(self, *folders):
        return {path for path in self.before
                for folder in folders if path.startswith(f"{folder}/")}

    def trashed(self):
        return self.below(f"{TRASH}/files", f"{TRASH}/info")

    def test_the_downloads_are_asked_for_and_kept(self):
        self.prepare("UserCaches", "UserLogs", "UserDownloads")
        self.scan()
        line = self.line()
        self.press_clean()
        self.desktop.key("Escape", at="Cancel")
        self.desktop.wait_without(QUESTION)
        self.assertEqual(self.gone(), set(), "Esc calls the whole clean off")
        self.assertEqual(self.line(), line)

        self.press_clean()
        self.desktop.press("No")
        self.assertTrue(eventually(self.cleaned))
        self.assertEqual(self.gone(), self.below(CACHES, LOGS))
        self.assertIn("home/Documents/kept.txt", snapshot(self.folder))

    def test_yes_takes_the_downloads_too_and_the_trash_keeps_its_records(self):
        self.prepare("UserTrash", "UserDownloads")
        self.scan()
        self.press_clean()
        self.desktop.press("Yes")
        self.assertTrue(eventually(self.cleaned))
        self.assertEqual(self.cleaned(), "600.00 KB is cleaned")
        self.assertEqual(self.gone(), self.trashed() | self.below(DOWNLOADS))
        history = next(pathlib.Path(self.folder, "home").glob("**/.norvex.log.bin"))
        self.assertIn("iSize=600000", history.read_text())

    def test_the_keyboard_ticks_and_enter_removes_nothing(self):
        self.prepare("UserCaches")
        self.scan()
        # The outline has the keyboard, on its first group.
        self.desktop.key("space", at="Results")
        self.wait_for_line("0 of ")
        self.desktop.tap("space")
        self.wait_for_line(f"{self.selected} of ")
        self.tap_and_move("Down")
        self.desktop.tap("space")
        self.wait_for_line(f"{self.selected - 1} of ")
        # Through the whole page; in the toolbar Enter would go to another one.
        for _ in range(20):
            focused = self.desktop.focused()
            if "Fast Clean" in focused:
                break
            if "Back" not in focused:
                self.desktop.tap("Return")
            self.tap_and_move("Tab")
        else:
            self.fail("the keyboard does not come round to the toolbar")
        self.assertIsNone(self.cleaned())
        self.assertEqual(self.gone(), set())

        self.desktop.press("Clean")
        self.assertTrue(eventually(self.cleaned))
        # The first leaf was left out, and what a link leads to is never touched.
        left = self.below(CACHES) - self.gone()
        self.assertEqual(len([path for path in left if path.count("/") == 2]), 1)

    def test_what_is_protected_stays_until_the_padlock_is_open(self):
        self.prepare("SystemLogs", "UserLogs")
        self.scan()
        self.desktop.press("Clean")
        self.desktop.wait_for(NO_RIGHTS)
        self.assertEqual(self.gone(), self.below(LOGS))
        self.desktop.press("OK")
        self.desktop.wait_without(NO_RIGHTS)
        self.desktop.press("Padlock")
        self.desktop.wait_for_mark("Padlock", "checked")
        self.desktop.press("Clean")
        self.wait_until_gone(LOGS, SYSTEM_LOGS)
        self.assertTrue(os.path.isdir(f"{self.folder}/{SYSTEM_LOGS}"))

    def test_closing_and_quitting_during_a_clean(self):
        self.prepare("UserCaches")
        many = pathlib.Path(self.folder, CACHES, "many")
        for number in range(20_000):
            path = many / str(number % 100) / str(number)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.touch()
        subprocess.run(["chown", "-R", f"{USER}:{USER}", str(many)], check=True)
        subprocess.run(["chmod", "500", *map(str, many.iterdir())], check=True)
        self.before = snapshot(self.folder)
        self.scan()
        self.desktop.press("Clean")
        self.desktop.key("ctrl+w")
        self.assertTrue(eventually(lambda: not self.desktop.names()), "the window stays")
        self.assertIsNone(self.desktop.running.poll())
        self.desktop.activate()
        self.desktop.key("ctrl+q")
        self.assertEqual(self.desktop.wait_for_end(), 1)
        self.assertEqual(self.gone() - self.below(CACHES), set())
        # What its owner had closed, and what is left of it, is closed again.
        for folder in many.iterdir() if many.exists() else ():
            self.assertEqual(stat.S_IMODE(folder.stat().st_mode), 0o500, folder)

    def test_a_stopped_scan_asks_for_a_restart(self):
        self.prepare("UserCaches")
        deep = pathlib.Path(self.folder, CACHES, "many")
        for number in range(60_000):
            path = deep / str(number % 300) / str(number)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.touch()
        self.before = snapshot(self.folder)
        self.start()
        self.assertTrue(eventually(lambda: self.desktop.has_keyboard("Scan")))
        # The program meets the second press right behind the first.
        with self.desktop.stopped():
            for _ in range(2):
                self.desktop.tap("space")
            # All that came before has been passed on when the display answers.
            self.desktop.run("xdotool", "getmouselocation")
        self.desktop.wait_for("Restart")
        self.assertEqual(self.gone(), set())
        self.desktop.press("Restart")
        self.desktop.wait_for("Finds caches, logs")
        self.desktop.press("Scan")
        self.assertTrue(eventually(self.line), "the same process, started anew, scans")
        self.assertIsNone(self.desktop.running.poll())


class QuickClean(CleanPage):
    def ask_for_it(self):
        self.desktop.choose("Quick Clean…")
        self.desktop.wait_for("Everything in these folders will be removed.")

    def test_it_asks_names_the_folders_and_reports_in_a_bubble(self):
        self.prepare("UserCaches", "UserLogs")
        stays = pathlib.Path(self.folder, CACHES, "stays", "file")  # of another user
        stays.parent.mkdir()
        stays.touch()
        self.before = snapshot(self.folder)
        self.start()
        self.ask_for_it()
        self.assertTrue(self.desktop.shows("User Caches: ~/.cache\n"))
        self.desktop.key("Return", at="Cancel")
        self.desktop.wait_without("Everything in these folders will be removed.")
        self.assertEqual(self.gone(), set(), "Enter is no yes to a removal")

        self.ask_for_it()
        self.desktop.press("Clean")
        self.desktop.wait_for_one("Items cleaned: ")
        self.assertTrue(self.desktop.shows("1 item needs administrator rights"))
        self.assertTrue(stays.exists())
        shutil.rmtree(stays.parent)
        self.wait_until_gone(CACHES, LOGS)
        self.desktop.wait_without("Items cleaned: ")
        self.assertIsNone(self.desktop.running.poll())


def load_tests(loader, tests, pattern):
    suite = unittest.TestSuite()
    for case in (CleanPage, QuickClean):
        for name in sorted(vars(case)):
            if name.startswith("test_"):
                suite.addTest(case(name))
    return suite


if __name__ == "__main__":
    run_tests(rights=True, disks=True)
