"""The login items page, driven for real by a user without rights: ui_login_items.py PROGRAM [TESTS…].

Every test compares the autostart folder with what the page said, byte by byte, and asks systemd's
own generator what would start. Needs root for its namespaces.
"""
import contextlib
import hashlib
import os
import pathlib
import subprocess
import unittest

from ui_desktop import USER, Desktop, eventually, run_tests

PROGRAM = ""
GENERATOR = "/usr/lib/systemd/user-generators/systemd-xdg-autostart-generator"
OWN = "com.norvmac.DeskSweeperPro.desktop"
HEAD = b"[Desktop Entry]\nType=Application\n"
MAIL = b"# mine\r\n[Desktop Entry]\r\nType=Application\r\nName=Mail\r\nX-Odd = \xff\r\nExec=sh -c \"a b\"\r\n"
CHAT = HEAD + b"Name=Chat\nExec=/usr/bin/env A=b true\nX-GNOME-Autostart-enabled=false"
GONE = HEAD + b"Name=Gone\nExec=/no/such\n"
SOUND = HEAD + b"Name=Sound Server\nExec=/bin/true\n"


class LoginItemsPage(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(PROGRAM)
        self.addCleanup(self.desktop.close)
        self.home = pathlib.Path(self.desktop.folder, "home")
        self.autostart = self.home / ".config/autostart"
        self.autostart.mkdir(parents=True)
        self.system = pathlib.Path(self.desktop.folder, "xdg")
        (self.system / "autostart").mkdir(parents=True)
        (self.system / "autostart/sound.desktop").write_bytes(SOUND)
        self.desktop.environment["XDG_CONFIG_DIRS"] = str(self.system)
        self.desktop.environment["XDG_CURRENT_DESKTOP"] = "GNOME"
        self.files = {"chat.desktop": CHAT, "gone.desktop": GONE, "mail.desktop": MAIL,
                      "notes.txt": b"no entry"}
        for name, text in self.files.items():
            (self.autostart / name).write_bytes(text)
        subprocess.run(["chown", "-R", f"{USER}:{USER}", self.home], check=True)
        self.desktop.settings("DSToolbarItem", "5")

    def start(self):
        self.desktop.start_program()
        self.desktop.wait_for("Mail", "Chat", "Gone, what it starts is no longer there",
                              "Also started by the system (1)")

    def disk(self):
        """The folder's files; none of those that go while they are read, as a write comes."""
        files = {}
        for path in self.autostart.iterdir():
            with contextlib.suppress(FileNotFoundError):
                files[path.name] = path.read_bytes()
        return files

    def wait_for_files(self, files):
        self.assertTrue(eventually(lambda: self.disk() == files), self.disk())

    def is_started(self, name):
        """Whether the user's session starts the entry of that file."""
        out = pathlib.Path(self.desktop.folder, "out")
        subprocess.run(["rm", "-rf", out])
        out.mkdir()
        os.chown(out, USER, USER)
        self.desktop.run(GENERATOR, out, out, out)
        return (out / f"app-{name}@autostart.service").exists()

    def keys(self, *keys):
        for key in keys:
            self.desktop.key(key, at="Login Items")

    def to_table(self):
        """Gives the table the keyboard, at its first row."""
        left, top, _, _ = next(place for place in self.desktop.read("places", "tree", "Login Items"))
        self.desktop.click((left + 150, top + 45))
        self.assertTrue(eventually(lambda: self.desktop.has_keyboard("Chat")
                                   or self.desktop.has_keyboard("Login Items")), self.desktop.tree())

    def test_hiding_and_showing_changes_one_value(self):
        self.start()
        self.to_table()
        self.desktop.tap("space")  # GNOME's key hides it
        shown = CHAT.replace(b"enabled=false", b"enabled=true") + b"\nHidden=false"
        self.wait_for_files({**self.files, "chat.desktop": shown})
        self.assertTrue(self.is_started("chat"))
        self.desktop.tap("End")
        self.desktop.tap("space")
        hidden = MAIL + b"Hidden=true\r\n"
        self.wait_for_files({**self.files, "chat.desktop": shown, "mail.desktop": hidden})
        self.assertFalse(self.is_started("mail"))
        self.desktop.tap("space")
        self.wait_for_files({**self.files, "chat.desktop": shown,
                             "mail.desktop": MAIL + b"Hidden=false\r\n"})

    def test_what_is_removed_goes_and_nothing_else(self):
        self.start()
        self.to_table()
        self.desktop.tap("Down")
        self.desktop.tap("Delete")
        self.desktop.wait_without("Gone")
        del self.files["gone.desktop"]
        self.wait_for_files(self.files)
        # The keyboard goes on at the row that came in its place.
        self.desktop.tap("Delete")
        self.desktop.wait_without("Mail")
        del self.files["mail.desktop"]
        self.wait_for_files(self.files)

    def test_changes_from_outside_are_shown(self):
        self.start()
        (self.autostart / "new.desktop").write_bytes(HEAD + b"Name=New One\nExec=true\n")
        self.desktop.wait_for("New One")
        with open(self.autostart / "new.desktop", "r+b") as entry:  # in place
            entry.write(HEAD + b"Name=Neu One")
        self.desktop.wait_for("Neu One")
        os.rename(self.autostart, self.home / "away")
        self.desktop.wait_without("Neu One")
        self.desktop.wait_for("Nothing of yours starts with the session")
        self.desktop.wait_for("Also started by the system (1)")
        os.rename(self.home / "away", self.autostart)
        self.desktop.wait_for("Neu One", "Mail")
        self.autostart.chmod(0)
        self.desktop.wait_for("Your login items cannot be read",
                              "The folder “autostart” in your settings cannot be read: Permission denied")
        self.autostart.chmod(0o700)
        self.desktop.wait_for("Neu One", "Mail")

    def test_the_systems_entries_are_switched_for_this_user(self):
        self.start()
        self.desktop.press("Also started by the system (1)")
        self.desktop.wait_for("Sound Server")
        self.assertTrue(self.is_started("sound"))
        self.desktop.press("Sound Server")
        hidden = SOUND + b"Hidden=true\nX-Brightsweep-Override=%b\n"
        seal = hashlib.sha1(hidden % b"").hexdigest().encode()
        self.wait_for_files({**self.files, "sound.desktop": hidden % seal})
        self.assertFalse(self.is_started("sound"))
        self.desktop.press("Sound Server")
        self.wait_for_files(self.files)
        self.assertTrue(self.is_started("sound"))
        self.assertEqual((self.system / "autostart/sound.desktop").read_bytes(), SOUND)

    def test_the_programs_own_entry_and_its_flag(self):
        self.start()
        self.desktop.click_tray()
        self.desktop.press("Launch at login")
        self.assertTrue(eventually(lambda: OWN in self.disk()), self.disk())
        self.assertIn(f"Exec={PROGRAM}\n".encode(), self.disk()[OWN])
        self.assertTrue(self.is_started("com.norvmac.DeskSweeperPro"))
        settings = self.home / ".config/com.norvmac.DeskSweeperPro.conf"
        self.assertIn("LoginCheck=1", settings.read_text())
        self.desktop.wait_for("Brightsweep")
        self.to_table()
        self.desktop.tap("End")
        self.desktop.tap("Delete")
        self.wait_for_files(self.files)
        self.assertTrue(eventually(lambda: "LoginCheck=0" in settings.read_text()))

    def test_what_is_chosen_is_added(self):
        self.start()
        for button, path in (("Add…", self.home / "a b.pdf"), ("Add Folder…", self.home / "a c")):
            (path.touch if path.suffix else path.mkdir)()
            self.desktop.press(button)
            self.desktop.wait_for("Choose a login item")
            self.assertTrue(eventually(lambda: self.desktop.has_keyboard("File name:")
                                       or self.desktop.has_keyboard("Directory:")),
                            self.desktop.tree())
            self.desktop.run("xdotool", "type", str(path))
            self.desktop.tap("Return")
            self.assertTrue(eventually(lambda: f"{path.name}.desktop" in self.disk()),
                            self.desktop.tree())
            text = self.disk()[f"{path.name}.desktop"]
            self.assertIn(f'Exec=xdg-open "{path}"\n'.encode(), text)
            self.desktop.wait_for(path.name)
            self.desktop.wait_without("Choose a login item")

    def test_the_command_line_and_the_page_change_one_list(self):
        self.start()
        command = os.path.join(os.path.dirname(PROGRAM), "brightsweep-cli")
        result = self.desktop.run(command, "login-items", "add", "/bin/true")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.desktop.wait_for("true")
        self.to_table()
        self.desktop.tap("End")
        self.desktop.tap("space")
        self.assertTrue(eventually(lambda: b"Hidden=true" in self.disk()["true.desktop"]))
        listed = self.desktop.run(command, "login-items").stdout
        self.assertRegex(listed, r"3 +hidden +true +true\.desktop +/bin/true")


if __name__ == "__main__":
    run_tests()
