"""The disk usage page, driven for real by a user without rights: ui_usage.py PROGRAM [TESTS…].

Every test compares the disk with what the page said, byte by byte. Needs root for its mounts.
"""
import os
import pathlib
import subprocess
import unittest

from ui_clean import snapshot
from ui_desktop import USER, Desktop, run_tests

PROGRAM = ""
TREE = "home/tree"


class UsagePage(unittest.TestCase):
    def setUp(self):
        self.make()

    def make(self, **kinds):
        self.desktop = Desktop(PROGRAM, **kinds)
        self.addCleanup(self.desktop.close)
        self.folder = self.desktop.folder
        for name, size in (("a/deep/large", 800_000), ("a/other", 300_000), ("a/small", 900),
                           ("d/log\nfile", 400_000), ("d/stays", 200_000), ("own.iso", 300_000),
                           ("closed/file", 150_000)):
            path = pathlib.Path(self.folder, TREE, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(os.urandom(size))
        subprocess.run(["chown", "-R", f"{USER}:{USER}", f"{self.folder}/home"], check=True)
        # Another user's folder: its files stay without an administrator's rights.
        subprocess.run(["chown", "-R", "root:root", f"{self.folder}/{TREE}/closed"], check=True)
        self.desktop.settings("DSDiskUsageShowStyle", "true")
        self.desktop.settings("DSDiskUsageLimit", "1")
        self.desktop.settings("DSDiskUsageUnit", "1")
        self.before = snapshot(self.folder)

    def start(self):
        self.desktop.start_program("--usage", f"{self.folder}/{TREE}")
        self.desktop.wait_for("a, 1.10 MB", "d, 600.00 KB", "own.iso, 300.00 KB", "closed")

    def gone(self):
        after = snapshot(self.folder)
        for path, value in after.items():
            if path.startswith(TREE):
                self.assertEqual(self.before.get(path), value, f"{path} was changed")
        return {path[len(TREE) + 1:] for path in self.before
                if path.startswith(TREE) and path not in after}

    def keys(self, *keys, at="Folders and large files"):
        for key in keys:
            self.desktop.key(key, at=at)

    def test_colours_sizes_and_folders_left_out_and_read_again(self):
        self.start()
        for keys, told in ((("Down", "Return"), "\u25a0"), (("Up", "Return"), "own.iso, 303.10 KB")):
            self.desktop.press("View")
            for key in keys:
                self.desktop.tap(key)
            self.desktop.wait_for(told)
        self.keys("shift+F10")
        for key in ("Up", "Up", "Return"):
            self.desktop.tap(key)
        self.desktop.wait_for("1 folder is left out.")
        self.assertFalse(self.desktop.shows("a, "))
        self.desktop.press("Show all")
        self.desktop.wait_for("a, 1.11 MB")
        self.desktop.wait_without("1 folder is left out.")
        pathlib.Path(self.folder, TREE, "d/more").write_bytes(b"x" * 819_200)
        self.keys("F5")
        self.desktop.wait_for("d, 1.42 MB")

    def tick_in_two_folders(self):
        self.start()
        self.keys("Return")
        self.desktop.wait_for("deep, 800.00 KB", "other, 300.00 KB")
        self.assertFalse(self.desktop.shows("small"), "below the limit")
        self.keys("Down", "space")
        self.desktop.wait_for("1 items are selected.")
        self.keys("BackSpace")
        self.desktop.wait_for("own.iso, 300.00 KB")
        self.keys("Down", "Return")
        self.desktop.wait_for("stays, 200.00 KB")
        self.keys("space")
        self.desktop.wait_for("2 items are selected.")

    def test_what_was_ticked_in_two_folders_goes(self):
        self.tick_in_two_folders()
        self.keys("Delete")
        self.desktop.wait_for("Remove 2 items?")
        self.desktop.key("Return", at="Cancel")
        self.desktop.wait_without("Remove 2 items?")
        self.assertEqual(self.gone(), set(), "Enter is no yes to a removal")
        self.desktop.wait_for("2 items are selected.")
        self.keys("Delete")
        self.desktop.wait_for("Remove 2 items?")
        self.desktop.key("Escape", at="Cancel")
        self.desktop.wait_without("Remove 2 items?")
        self.keys("Delete")
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("Tab", at="Move to Trash")
        self.desktop.key("space", at="Remove")
        self.desktop.wait_for("2 items removed")
        self.assertEqual(self.gone(), {"a/other", "d/log\nfile"})
        self.assertFalse(self.desktop.shows("Some files that require"))

    def test_what_stays_is_told_a_second_later(self):
        self.start()
        before = self.desktop.read("places", "filler", "Ring chart")
        self.keys("End", "space")
        self.desktop.wait_for("1 items are selected.")
        self.assertEqual(self.desktop.read("places", "filler", "Ring chart"), before)
        self.keys("Up", "space")
        self.desktop.wait_for("2 items are selected.")
        self.keys("Delete")
        self.desktop.key("Escape", at="Cancel")
        self.desktop.wait_without("Remove 2 items?")
        self.keys("space")
        self.desktop.wait_for("1 items are selected.")
        self.keys("space")
        self.desktop.wait_for("2 items are selected.")
        self.keys("Delete")
        self.desktop.wait_for("Remove 2 items?")
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("Tab", at="Move to Trash")
        self.desktop.key("space", at="Remove")
        self.desktop.wait_for("Some files that require admin access can't be removed!")
        self.desktop.key("Return", at="OK")
        self.desktop.wait_for("1 item removed, 303.10 KB freed. 1 item stayed: closed")
        self.assertEqual(self.gone(), {"own.iso"})

    def test_the_chart_goes_in_and_out_by_keyboard_and_mouse(self):
        self.start()
        left, top, width, height = self.desktop.read("places", "filler", "Ring chart")[0]
        # The middle of the first ring.
        aside = min(width, height) * 15 // 100
        self.desktop.click((left + width // 2 + aside, top + height // 2))
        self.desktop.wait_for("deep, 800.00 KB")
        self.desktop.click((left + width // 2, top + height // 2))
        self.desktop.wait_for("own.iso, 300.00 KB")
        self.desktop.press("Back")
        self.desktop.wait_for("Choose Folder…")
        self.assertEqual(self.gone(), set())

    def test_the_list_takes_what_is_ticked_itself(self):
        self.desktop.settings("DSDiskUsageShowStyle", "false")
        deep = pathlib.Path(self.folder, TREE, "a/deep", *map(str, range(1, 32)))
        deep.mkdir(parents=True)
        (deep.parent / "file").write_bytes(b"x" * 820_000)
        self.before = snapshot(self.folder)
        self.desktop.start_program("--usage", f"{self.folder}/{TREE}")
        self.desktop.wait_for("a, 1.92 MB", "d, 600.00 KB")
        # A blank in a name that is typed ticks nothing, one on the largest item does.
        self.desktop.run("xdotool", "key", "x", "space", "Up", "space")
        self.desktop.wait_for("1 items are selected.")
        for keys, told in ((30 * ["Right"], "30, 820.00 KB"),
                           (29 * ["Left"] + ["Down", "space"], "1.62 MB"),
                           (["space", "Up", "space"], "300.00 KB")):
            self.desktop.run("xdotool", "key", *keys)
            self.desktop.wait_for(told)
        self.desktop.wait_without("2, 820.00 KB")
        self.desktop.wait_for("1 items are selected.")  # the folder itself stays then
        self.desktop.tap("Delete")
        self.desktop.wait_for("Remove 1 item?")
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("Tab", at="Move to Trash")
        self.desktop.key("space", at="Remove")
        self.desktop.wait_for("1 item removed")
        self.assertEqual(self.gone(), {"a/other"})

    def test_without_x11_it_is_painted(self):
        self.make(display="wayland")
        self.start()
        self.assertIn("Ring chart: QPainter", self.desktop.log_text())


if __name__ == "__main__":
    run_tests()
