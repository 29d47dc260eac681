"""The memory page, driven for real by a user without rights: ui_memory.py PROGRAM [TESTS…].

Needs root for its mounts.
"""
import pathlib
import subprocess
import unittest

from ui_desktop import BINARIES, Desktop, eventually, run_tests

PROGRAM = ""
HERE = "Clean Memory"


def meminfo(name):
    for line in pathlib.Path("/proc/meminfo").read_text().splitlines():
        if line.startswith(f"{name}:"):
            return int(line.split()[1]) / 1024 / 1024


class MemoryPage(unittest.TestCase):
    def start(self, tool=None):
        """Opens the page; `tool` is the script of the release tool in the place of the real one."""
        if tool:
            script = pathlib.Path("/run/stage/purge")
            script.write_text(f"#!/bin/sh\n{tool}\n")
            script.chmod(0o755)
            subprocess.run(["mount", "--bind", script, f"{BINARIES}/purge"], check=True)
            self.addCleanup(subprocess.run, ["umount", "-l", f"{BINARIES}/purge"], check=True)
        self.desktop = Desktop(PROGRAM)
        self.addCleanup(self.desktop.close)
        self.desktop.settings("DSToolbarItem", "4")
        self.desktop.start_program()
        self.desktop.wait_for(HERE, "Programs that hold most", "Available to programs")

    def after(self, title):
        """The number of gigabytes that stands behind a title."""
        names = self.desktop.names()
        words = names[names.index(title) + 1].split()
        return float(words[0]) / {"GB": 1, "MB": 1024, "KB": 1024 ** 2}[words[1]]

    def test_the_figures_are_those_of_the_kernel(self):
        self.start()
        self.assertAlmostEqual(self.after("Total"), meminfo("MemTotal"), delta=0.006)
        for title, name in (("Free", "MemFree"), ("Active", "Active"), ("Inactive", "Inactive"),
                            ("Available to programs", "MemAvailable")):
            self.assertTrue(eventually(lambda: abs(self.after(title) - meminfo(name)) < 0.1), title)

    def test_a_release_without_a_right_to_it_says_so(self):
        self.start()
        self.desktop.key("space", at=HERE)
        self.desktop.wait_for("No memory could be freed.", "Gives back memory")
        self.desktop.wait_for_mark(HERE, "focused")
        self.assertIn("Task finished. status = 1", self.desktop.log_text())

    def test_a_release_is_one_at_a_time_and_tells_its_end(self):
        self.start("echo run >> $HOME/runs; while [ ! -e $HOME/go ]; do sleep 0.1; done")
        home = pathlib.Path(self.desktop.folder, "home")
        self.desktop.press(HERE)
        self.assertTrue(eventually(lambda: (home / "runs").exists()))
        self.desktop.click_tray()
        # The button of the popup's row has the name of the page: a release of its own.
        self.assertTrue(eventually(lambda: self.desktop.read("places", "push button", "Free Memory")))
        left, top, width, height = self.desktop.read("places", "push button", "Free Memory")[-1]
        self.desktop.click((left + width // 2, top + height // 2))
        self.assertTrue(eventually(lambda: len((home / "runs").read_text()) == 8))
        (home / "go").touch()
        self.assertTrue(eventually(lambda: any(name.endswith(" freed.")
                                               for name in self.desktop.names())))
        self.desktop.wait_for("Available to programs: ")
        self.desktop.wait_for_mark(HERE, "enabled")


if __name__ == "__main__":
    run_tests()
