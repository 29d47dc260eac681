"""The duplicates page, driven for real by a user without rights: ui_duplicates.py PROGRAM POLICY
[TESTS…].

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


class DuplicatesPage(unittest.TestCase):
    def setUp(self):
        """Three groups; in each the contents of all files are equal."""
        self.desktop = Desktop(PROGRAM)
        self.addCleanup(self.desktop.close)
        self.folder = self.desktop.folder
        for size, names in ((819_200, ("a/photo.jpg", "b/photo.jpg", "c/line\nbreak.jpg")),
                            (409_600, ("a/text.txt", "b/<b>text&.txt")),
                            (204_800, ("a/rest", "c/rest"))):
            content = os.urandom(size)
            for name in names:
                path = pathlib.Path(self.folder, TREE, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(content)
        pathlib.Path(self.folder, TREE, "only.bin").write_bytes(os.urandom(819_200))
        subprocess.run(["chown", "-R", f"{USER}:{USER}", f"{self.folder}/home"], check=True)
        self.desktop.settings("DSDuplicationLimit", "0")
        for name in ("photo.jpg", "text.txt", "rest"):
            os.utime(f"{self.folder}/{TREE}/a/{name}", (1e9, 1e9))
        self.before = snapshot(self.folder)

    def test_a_later_start_hands_its_folder_over(self):
        self.desktop.start_program()
        self.desktop.wait_for("Duplicates")
        result = self.desktop.run(PROGRAM, "--duplicates", f"{TREE}/a/../../tree")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.desktop.wait_for("7 files in tree.")
        # One that is not there changes nothing; one that is takes the question about the old away.
        result = self.desktop.run(PROGRAM, "--duplicates", "nowhere")
        self.assertEqual((result.returncode, result.stderr.count("there is no folder")), (1, 1))
        self.tick(("ctrl+a", "space", "Delete"), "4 of 7 selected.")
        self.desktop.wait_for("Remove 4 files and free 2.25 MB?")
        self.assertEqual(self.desktop.run(PROGRAM, "--duplicates", f"{TREE}/a").returncode, 0)
        self.desktop.wait_for("0 files in a.")
        self.desktop.wait_without("Remove 4 files")
        self.assertEqual(self.gone(), set())

    def search(self):
        self.desktop.start_program()
        self.desktop.wait_for("Duplicates")
        self.desktop.press("Duplicates")
        self.desktop.wait_for("Choose Folder…")
        self.desktop.press("Choose Folder…")
        self.desktop.wait_for("Choose a path to search")
        self.desktop.key("ctrl+a", at="Directory:")
        self.desktop.run("xdotool", "type", f"{self.folder}/{TREE}")
        self.desktop.tap("Return")
        self.desktop.wait_for("7 files in tree.")

    def gone(self):
        after = snapshot(self.folder)
        for path, value in after.items():
            if path.startswith(TREE):
                self.assertEqual(self.before.get(path), value, f"{path} was changed")
        return {path for path in self.before if path not in after}

    def tick(self, keys, told):
        for key in keys:
            self.desktop.key(key, at="Results")
        self.desktop.wait_for(told)

    def keep_oldest(self):
        """Ticks all but those in the folder a."""
        self.desktop.press("Tick")
        for key in ("Down", "Return"):
            self.desktop.tap(key)
        self.desktop.wait_for("4 of 7 selected.")

    def test_what_was_ticked_goes_and_nothing_else(self):
        self.search()
        # The group that wastes most is open, and the keyboard is on it.
        self.tick(("Down", "space"), "1 of 7 selected.")
        ticked = next(name for name in self.desktop.focused() if TREE in name)
        self.tick(("Delete",), "Remove 1 file and free 819.20 KB?")
        self.desktop.key("Return", at="Cancel")
        self.desktop.wait_without("Remove 1 file")
        self.assertEqual(self.gone(), set(), "Enter is no yes to a removal")
        self.tick(("Delete",), "Remove 1 file and free 819.20 KB?")
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("space", at="Remove")
        self.desktop.wait_for("1 file removed, 819.20 KB freed.", "6 files in tree.")
        self.assertEqual([path.replace("\n", "\\n") for path in self.gone()],
                         [os.path.relpath(ticked, self.folder)])

    def test_all_but_one_of_each_go_to_the_trash(self):
        self.search()
        self.tick(("ctrl+a", "space"), "4 of 7 selected.")
        self.desktop.press("Remove")
        self.desktop.wait_for("Remove 4 files and free 2.25 MB?")
        self.desktop.press("Move to Trash")
        self.desktop.wait_for("4 files moved to the trash.", "No duplicates left")
        self.assertEqual(len(self.gone()), 4)
        kept = {value for path, value in snapshot(self.folder).items() if path.startswith(TREE)}
        self.assertEqual(kept, {value for path, value in self.before.items()
                                if path.startswith(TREE)}, "one of each stays")
        trash = pathlib.Path(self.folder, "home/.local/share/Trash/files")
        self.assertEqual(len(list(trash.iterdir())), 4)


    def test_the_mouse_ticks_and_a_rule_is_taken_back(self):
        self.search()
        left, top, width, height = self.desktop.read(
            "places", "tree item", f"{self.folder}/{TREE}/b/photo.jpg")[0]
        self.desktop.click((left + width // 2, top + height // 2))
        self.desktop.wait_for("1 of 7 selected.")
        self.keep_oldest()
        self.desktop.key("ctrl+z", at="Results")
        self.desktop.wait_for("1 of 7 selected.")
        self.desktop.key("ctrl+z", at="Results")
        self.keep_oldest()
        self.desktop.key("Delete", at="Results")
        self.desktop.wait_for("Remove 4 files and free 2.25 MB?", "Cancel")
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("space", at="Remove")
        self.desktop.wait_for("4 files removed, 2.25 MB freed.")
        gone = self.gone()
        self.assertEqual(len(gone), 4)
        self.assertFalse([name for name in gone if name.startswith(f"{TREE}/a/")])


    def test_the_last_file_of_a_group_is_asked_about(self):
        self.search()
        question = "Are you sure you want to delete all the duplicate files?"
        told = "2 of 7 selected."
        self.tick(("Down", "space", "Down", "space"), told)
        for keys in (("Escape",), ("Return",)):
            self.tick(("Down", "space"), question)
            self.desktop.key(keys[0], at="Cancel")
            self.desktop.wait_without(question)
            self.tick(("Up",), told)
        self.tick(("Down", "space"), question)
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("space", at="OK")
        self.desktop.wait_for("3 of 7 selected.")
        self.tick(("Delete",), "Remove 3 files and free 2.46 MB?")
        self.desktop.wait_for("Pictures:\u00a03\n\nOf 1 group all files go")
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("space", at="Remove")
        self.desktop.wait_for("3 files removed, 2.46 MB freed.")
        self.assertEqual(len(self.gone()), 3)

    def test_ticked_files_share_their_blocks(self):
        image, place = f"{self.folder}/disk", f"{self.folder}/home/shared"
        os.truncate(os.open(image, os.O_CREAT | os.O_RDWR), 320 << 20)
        os.mkdir(place)
        for command in (["mkfs.xfs", "-q", image], ["mount", "-o", "loop", image, place]):
            subprocess.run(command, check=True)
        self.addCleanup(subprocess.run, ["umount", place], check=True)
        content = os.urandom(409_600)
        paths = [pathlib.Path(place, name) for name in ("one.txt", "two.txt", "three.txt")]
        for path in paths:
            path.write_bytes(content)
        subprocess.run(["chown", "-R", f"{USER}:{USER}", place], check=True)
        os.sync()
        self.desktop.start_program("--duplicates", place)
        self.desktop.wait_for("3 files in shared.", "819.20 KB")
        self.tick(("ctrl+a", "space", "Delete"), "Remove 2 files and free 819.20 KB?")
        self.desktop.wait_for_mark("Share Blocks", "enabled")
        self.desktop.press("Share Blocks")
        self.desktop.wait_for("2 files share their blocks now, 819.20 KB freed.",
                              "0.00 KB", f"{place}/one.txt, shares its blocks")
        self.assertEqual({path.read_bytes() for path in paths}, {content})
        extents = subprocess.run(["filefrag", "-v", *paths], check=True, capture_output=True,
                                 text=True).stdout
        self.assertEqual(extents.count(",shared,"), 3, extents)

    def test_a_protected_file_goes_once_the_padlock_is_open(self):
        locked = pathlib.Path(self.folder, TREE, "b")
        os.chown(locked, 0, 0)
        self.search()
        self.keep_oldest()
        self.tick(("Delete",), "Remove 4 files and free 2.25 MB?")
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("space", at="Remove")
        self.desktop.wait_for("Some files that require admin access can't be removed!")
        self.desktop.key("Return", at="OK")
        self.assertEqual({name[len(TREE):] for name in self.gone()}, {"/c/line\nbreak.jpg", "/c/rest"})
        self.desktop.wait_for("2 of ")
        self.desktop.press("Padlock")
        self.desktop.wait_for_mark("Padlock", "checked")
        self.desktop.key("Delete", at="Results")
        self.desktop.wait_for("Remove ", "Move to Trash")
        self.desktop.key("Tab", at="Cancel")
        self.desktop.key("space", at="Remove")
        self.desktop.wait_for("No duplicates left")
        self.assertEqual(len(self.gone()), 4)


if __name__ == "__main__":
    run_tests(rights=True, disks=True)
