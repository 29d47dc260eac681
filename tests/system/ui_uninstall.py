"""The uninstall page, driven for real by a user without rights: ui_uninstall.py PROGRAM POLICY
[TESTS…].

Every test compares the disk with what the page said, byte by byte. Needs root for its mounts.
"""
import os
import pathlib
import re
import stat
import subprocess
import unittest

from ui_desktop import USER, Desktop, eventually, run_tests

PROGRAM = ""
DONE = "Selected application(s) were uninstalled successfully."
# What the program, its toolkit and the desktop keep for themselves.
OWN_FILES = re.compile(r"Brightsweep|DeskSweeper|fontconfig|mesa|qt|openbox|dconf")


class UninstallPage(unittest.TestCase):
    def setUp(self):
        """Bundles, an AppImage and a program in a folder of its own, with what they left."""
        self.desktop = Desktop(PROGRAM)
        self.addCleanup(self.desktop.close)
        # No package manager but an empty one.
        self.desktop.environment["BRIGHTSWEEP_SYSTEM_ROOT"] = f"{self.desktop.folder}/root"
        self.home = pathlib.Path(self.desktop.folder, "home")
        for name, identifier in (("Photo", "com.example.photo"), ("Text", "com.example.text")):
            self.write(f"Applications/{name}.app/Contents/Info.plist",
                       f'{{"CFBundleIdentifier": "{identifier}"}}')
        self.write("Applications/Photo.app/Contents/data", "x" * 1_000_000)
        self.write(".config/com.example.photo/settings", "y" * 2000)
        self.write(".cache/com.example.photo.cache", "z" * 3000)
        self.write(".local/share/com.example.photo2/other", "of another one")
        image = bytearray(pathlib.Path("/bin/true").read_bytes())
        image[8:11] = b"AI\x02"
        self.write("Applications/Drawing.AppImage", bytes(image), 0o755)
        self.entry("drawing", "Drawing", "Applications/Drawing.AppImage")
        self.write(".config/drawing/settings", "1")
        self.write(".local/opt/bricks/bricks", pathlib.Path("/bin/true").read_bytes(), 0o755)
        self.entry("bricks", "Bricks", ".local/opt/bricks/bricks")
        self.write(".var/app/org.gone.Player/data", "music")
        self.write("Documents/precious", "text")
        subprocess.run(["chown", "-R", f"{USER}:{USER}", self.home], check=True)
        self.before = self.snapshot()

    def write(self, name, content, mode=0o644):
        path = self.home / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        path.chmod(mode)

    def entry(self, identifier, name, program):
        self.write(f".local/share/applications/{identifier}.desktop",
                   f"[Desktop Entry]\nType=Application\nName={name}\nExec={self.home / program}\n")

    def snapshot(self):
        things = {}
        for path in self.home.rglob("*"):
            name = str(path.relative_to(self.home))
            if OWN_FILES.search(name):
                continue
            status = path.lstat()
            things[name] = (oct(status.st_mode),
                            path.read_bytes() if stat.S_ISREG(status.st_mode) else None)
        return things

    def gone(self):
        """The topmost names that went; all else is as it was."""
        after = self.snapshot()
        for name, value in after.items():
            self.assertEqual(self.before.get(name), value, f"{name} was changed")
        gone = {name for name in self.before if name not in after}
        return {name for name in gone if os.path.dirname(name) not in gone}

    def start(self):
        self.desktop.start_program()
        self.desktop.wait_for("Uninstall")
        self.desktop.press("Uninstall")
        self.desktop.wait_for("All Applications", "Bricks, ")

    def search(self, words):
        self.desktop.key("ctrl+f")
        self.desktop.key("ctrl+a", at="Search applications")
        self.desktop.run("xdotool", "type", words)

    def answer(self, keys):
        """To the sheet, which begins on Cancel."""
        self.desktop.wait_for("Uninstall Applications", "Cancel")
        for key in keys:
            self.desktop.tap(key)

    def place(self, name, role="tree item"):
        left, top, width, height = self.desktop.read("places", role, name)[0]
        return left + width // 2, top + height // 2

    def test_by_keyboard_a_bundle_goes_with_what_it_left(self):
        self.start()
        self.search("photo")
        self.desktop.wait_without("Drawing, ")
        self.desktop.tap("Escape")
        self.desktop.wait_for("Drawing, ")
        self.search("photo")
        self.desktop.wait_without("Drawing, ")
        self.desktop.tap("Tab")
        for key in ("Down", "Up", "space", "Delete"):
            self.desktop.key(key, at="Applications")
        self.desktop.wait_for("~/.config/com.example.photo, settings",
                              "~/.cache/com.example.photo.cache, cache",
                              "~/.local/share/com.example.photo2, data")
        self.desktop.wait_for("1.01 MB go: 1 application, 2 leftovers.")
        self.answer(("Return",))
        self.desktop.wait_without("Cancel")
        self.assertEqual(self.gone(), set(), "Enter is no yes to a removal")
        self.desktop.key("Delete", at="Applications")
        self.answer(("Tab", "space"))
        self.desktop.wait_for(DONE)
        self.assertEqual(self.gone(), {"Applications/Photo.app", ".config/com.example.photo",
                                       ".cache/com.example.photo.cache"})

    def test_by_mouse_and_what_the_search_hides_stays(self):
        self.start()
        for name in ("Drawing, AppImage", "Bricks, Own folder"):
            self.desktop.click(self.place(name))
            self.desktop.tap("space")
        self.desktop.wait_for("2 of 4 selected.")
        self.search("draw")
        self.desktop.wait_for("1 ticked application is not shown here.", "1 of 1 selected.")
        self.desktop.click(self.place("Uninstall", "push button"))
        self.answer(("Tab", "space"))
        self.desktop.wait_for(DONE)
        self.assertEqual(self.gone(), {"Applications/Drawing.AppImage", ".config/drawing",
                                       ".local/share/applications/drawing.desktop"})

    def test_the_list_follows_and_rights_are_asked_for_after_a_failure(self):
        self.start()
        for name in ("Text", "Text/Contents"):
            os.chown(self.home / "Applications" / f"{name.replace('Text', 'Text.app')}", 0, 0)
        self.write("Applications/New.app/Contents/Info.plist", "{}")
        self.desktop.wait_for("New.app, Bundle")
        self.before = self.snapshot()
        self.desktop.click(self.place("Text.app, Bundle"))
        self.desktop.tap("space")
        self.desktop.wait_for("1 of 5 selected.")
        self.desktop.tap("Delete")
        self.answer(("Tab", "space"))
        self.desktop.wait_for(DONE)
        self.assertEqual(self.gone(), {"Applications/Text.app"})
        self.desktop.wait_for_mark("Padlock", "checked")

    def package(self, name, depends=""):
        folder = pathlib.Path(self.desktop.folder, name)
        for path, text in (("DEBIAN/control",
                            f"Package: {name}\nVersion: 1:2.0-3\nArchitecture: all\n"
                            f"Maintainer: x <x@x>\nDescription: x\n{depends}"),
                           (f"usr/share/applications/{name}.desktop",
                            f"[Desktop Entry]\nType=Application\nName=The {name}\nExec={name}\n"),
                           (f"usr/bin/{name}", "#!/bin/sh\n")):
            file = folder / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text)
            file.chmod(0o755 if path.startswith("usr/bin") else 0o644)
        subprocess.run(["dpkg-deb", "-Zgzip", "--root-owner-group", "-b", folder], check=True,
                       stdout=subprocess.DEVNULL)
        subprocess.run(["dpkg", "--force-unsafe-io", "-i", f"{folder}.deb"], check=True,
                       stdout=subprocess.DEVNULL)

    def states(self):
        """Of all packages."""
        return set(subprocess.run(["dpkg-query", "-W", "-f",
                                   "${binary:Package} ${db:Status-Abbrev}\n"], check=True,
                                  capture_output=True, text=True).stdout.splitlines())

    def test_a_package_goes_with_what_needs_it_and_with_its_settings(self):
        del self.desktop.environment["BRIGHTSWEEP_SYSTEM_ROOT"]
        self.package("demo-writer")
        self.package("demo-plugin", "Depends: demo-writer\n")
        self.package("demo-calc")
        for name in ("demo-writer", "demo-calc"):
            self.write(f".config/{name}/settings", "1")
            self.write(f".local/share/{name}/text", "2")
        subprocess.run(["chown", "-R", f"{USER}:{USER}", self.home], check=True)
        self.before = self.snapshot()
        states = self.states()
        self.start()
        self.search("demo-writer")
        self.desktop.wait_for("The demo-writer, 2.0, Package")
        self.desktop.wait_without("Bricks, ")
        for key in ("Tab", "space", "Delete"):
            self.desktop.tap(key)
        self.desktop.wait_for("1 other package that cannot do without it goes along: demo-plugin.",
                              "~/.config/demo-writer, settings", "~/.local/share/demo-writer, data")
        self.assertEqual(self.states(), states)
        self.answer(("Tab", "space"))
        self.desktop.wait_for(DONE)
        self.assertEqual(states - self.states(), {"demo-writer ii ", "demo-plugin ii "})
        self.assertEqual(self.states() - states, set())
        self.assertEqual(self.gone(), {".config/demo-writer"})

    def test_without_permission_nothing_goes(self):
        rules = pathlib.Path("/run/rules/00-test.rules")
        allowed = rules.read_text()

        def rule(text, status):
            rules.write_text(text)
            self.assertTrue(eventually(lambda: subprocess.run(
                ["pkcheck", "-a", "com.norvmac.DeskSweeperPro.packages", "-p",
                 str(self.desktop.running.pid)], capture_output=True).returncode == status))
        del self.desktop.environment["BRIGHTSWEEP_SYSTEM_ROOT"]
        self.package("demo-denied")
        self.write(".config/demo-denied/settings", "1")
        subprocess.run(["chown", "-R", f"{USER}:{USER}", self.home], check=True)
        self.before = self.snapshot()
        states = self.states()
        self.start()
        rule(allowed.replace("Result.YES", "Result.NO"), 1)
        self.addCleanup(rule, allowed, 0)
        self.search("demo-denied")
        self.desktop.wait_without("Bricks, ")
        for key in ("Tab", "space", "Delete"):
            self.desktop.tap(key)
        self.answer(("Tab", "space"))
        self.desktop.wait_for("Failed to uninstall the selected application(s). Please refe...")
        self.desktop.wait_for("1 application", "The demo-denied, 2.0, Package")
        self.assertEqual((self.states(), self.gone()), (states, set()))

    def test_what_was_left_behind_goes_only_when_ticked(self):
        self.start()
        self.desktop.click(self.place("Left behind", "list item"))
        item = "~/.var/app/org.gone.Player, data · the Flatpak is not installed"
        self.desktop.wait_for(item, "0 of 1 selected.")
        self.desktop.click(self.place(item))
        self.desktop.tap("space")
        self.desktop.wait_for("1 of 1 selected.")
        self.desktop.tap("Delete")
        self.desktop.wait_for("Remove 1 item, ")
        self.assertEqual(self.gone(), set())
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("space", at="Remove")
        self.desktop.wait_for("1 item removed, ")
        self.assertEqual(self.gone(), {".var/app/org.gone.Player"})


if __name__ == "__main__":
    run_tests(rights=True, disks=True, verb="burn")
