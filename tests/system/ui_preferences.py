"""The preferences page, driven for real by keyboard and by an assistive program, and compared with
what the command line says: ui_preferences.py PROGRAM [TESTS…].

Needs root for its mounts.
"""
import os
import pathlib
import unittest

from ui_desktop import Desktop, eventually, run_tests

PROGRAM = ""
DUPLICATES = "Duplicates: files larger than"


class Preferences(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(PROGRAM)
        self.addCleanup(self.desktop.close)
        self.desktop.start_program()
        self.desktop.wait_for("Scan")
        self.desktop.key("ctrl+comma")
        self.desktop.wait_for("Alarms", "Cleaning", "This Program")

    def stored(self, key):
        command = os.path.join(os.path.dirname(PROGRAM), "brightsweep-cli")
        return self.desktop.run(command, "settings", "get", key).stdout.strip()

    def wait_stored(self, key, value):
        self.assertTrue(eventually(lambda: self.stored(key) == value),
                        f"{key} is {self.stored(key)}, not {value}")

    def marks(self, name):
        return next(marks for _, _, marks, thing in self.desktop.tree() if thing == name)

    def test_every_check_box_goes_both_ways(self):
        for name, key, on, off in (
                ("Duplicates: hidden files as well", "DSHidenDuplication", "YES", "NO"),
                ("Duplicates: system files as well", "DSSystemDuplication", "YES", "NO"),
                ("May ask for administrator rights when items stay", "CleanMayAskForRights", "YES",
                 "NO"),
                ("Hide the icon in the tray", "DSShowStatusItem", "YES", "NO"),
                ("System Caches", "SystemCaches", "1", "0"), ("User Downloads", "UserDownloads", "1", "0"),
                ("Launch at login", "LoginCheck", "1", "0")):
            was = "checked" in self.marks(name)
            self.assertEqual(self.stored(key), on if was else off, name)
            self.desktop.press(name)
            self.wait_stored(key, off if was else on)
            self.desktop.settings(key, on if was else off)
            self.assertTrue(eventually(lambda: ("checked" in self.marks(name)) == was), name)
        entries = pathlib.Path(self.desktop.folder, "home/.config/autostart")
        self.desktop.press("Launch at login")
        self.assertTrue(eventually(lambda: entries.exists() and len(os.listdir(entries)) == 1))
        self.desktop.press("Launch at login")
        self.assertTrue(eventually(lambda: not os.listdir(entries)))

    def test_the_keyboard_alone_reaches_and_sets_everything(self):
        self.desktop.key("Right", at="Warn when a volume has no more free than, 10%")
        self.wait_stored("SpaceAlarm", "0.11")
        self.desktop.key("Tab", at="Warn when a volume has no more free than, 11%")
        self.desktop.key("Left", at="Warn when programs have no more memory available than, 10%")
        self.wait_stored("MemoryAlarm", "0.09")
        self.desktop.tap("Tab")
        for keys, value in (("ctrl+a", "1"), ("4", "4"), ("x", "4"), ("2", "42"), ("BackSpace", "4")):
            self.desktop.key(keys, at=DUPLICATES)
            self.wait_stored("DSDuplicationLimit", value)
        # The page and the command line in turns.
        self.desktop.settings("DSDuplicationLimit", "77")
        self.desktop.key("End", at=DUPLICATES)
        self.assertTrue(eventually(lambda: "77" in self.desktop.read("texts", DUPLICATES)))
        self.desktop.key("8", at=DUPLICATES)
        self.wait_stored("DSDuplicationLimit", "778")
        self.desktop.tap("Tab")
        self.desktop.key("Down", at="MB")
        self.wait_stored("DSDuplicatesUnit", "3")
        for _ in range(20):
            now = self.desktop.focused()
            if now == ["Open the log"]:
                return
            self.desktop.tap("Tab")
            self.assertTrue(eventually(lambda: self.desktop.focused() not in ([], now)), now)
        self.fail("the keyboard does not get to the end of the page")

    def test_the_tray_and_the_language_follow(self):
        self.assertTrue(eventually(self.desktop.tray_place))
        self.desktop.press("Hide the icon in the tray")
        self.assertTrue(eventually(lambda: not self.desktop.tray_place()))
        self.desktop.settings("DSShowStatusItem", "NO")
        self.assertTrue(eventually(self.desktop.tray_place))
        self.desktop.settings("Language", "de")
        self.desktop.press("Restart")
        self.desktop.wait_for("Schnell bereinigen")


if __name__ == "__main__":
    run_tests()
