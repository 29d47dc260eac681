"""The resident program, started for real by a user without rights: ui_session.py PROGRAM [TESTS…].

Needs root for its mounts.
"""
import os
import pathlib
import select
import socket
import unittest

from ui_desktop import USER, Desktop, eventually, run_tests

NOTIFICATIONS = """
import dbus, dbus.service, dbus.mainloop.glib, sys
from gi.repository import GLib
dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
class Server(dbus.service.Object):
    @dbus.service.method("org.freedesktop.Notifications", in_signature="susssasa{sv}i", out_signature="u")
    def Notify(self, name, replaces, icon, summary, body, actions, hints, expires):
        print(f"{summary}|{body}|{','.join(actions)}", flush=True)
        return 1
    @dbus.service.method("org.freedesktop.Notifications", out_signature="as")
    def GetCapabilities(self):
        return ["body", "actions"]
    @dbus.service.method("org.freedesktop.Notifications", out_signature="ssss")
    def GetServerInformation(self):
        return ("stage", "stage", "1", "1.2")
    @dbus.service.method("org.freedesktop.Notifications", in_signature="u")
    def CloseNotification(self, number):
        pass
name = dbus.service.BusName("org.freedesktop.Notifications", bus)
server = Server(bus, "/org/freedesktop/Notifications")
GLib.MainLoop().run()
"""

BUBBLE_WIDTH = 226

PROGRAM = ""
MACHINE = None


class Session(unittest.TestCase):
    def desktop(self, **kinds):
        desktop = Desktop(PROGRAM, **kinds)
        self.addCleanup(desktop.close)
        return desktop

    def notified(self, desktop):
        desktop.start("/usr/bin/python3", "-c", NOTIFICATIONS)
        path = f"{desktop.folder}/python3.log"
        self.assertTrue(eventually(lambda: desktop.run(
            "dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/",
            "org.freedesktop.DBus.GetNameOwner",
            "string:org.freedesktop.Notifications").returncode == 0))
        return lambda: pathlib.Path(path).read_text().splitlines()

    def started(self, **kinds):
        desktop = self.desktop(**kinds)
        desktop.start_program()
        desktop.wait_for("Fast Clean")
        return desktop

    def open_popup(self, desktop):
        self.assertTrue(eventually(desktop.has_keyboard))
        desktop.click_tray()
        desktop.wait_for("Quit Brightsweep")

    def quit(self, desktop):
        desktop.press("Quit Brightsweep")
        self.assertEqual(desktop.wait_for_end(), 1)


class Tray(Session):
    def test_volumes_come_and_go_in_the_open_popup(self):
        desktop = self.started()
        self.open_popup(desktop)
        names = desktop.names()
        machine = socket.gethostname()
        self.assertTrue(any(name.startswith(f"{machine}, ") and " free of " in name
                            for name in names), names)
        self.assertTrue(any(name.startswith("Memory, ") for name in names), names)
        self.assertIn("Eject All", names)

        device = MACHINE.mount_disk("Photos")
        desktop.wait_for_one("Photos is mounted successfully!")
        # The open popup has come back.
        desktop.wait_for("Photos, ", "Quit Brightsweep")

        desktop.press("Eject Photos")
        desktop.wait_for_one("Photos is unmounted successfully!")
        self.assertTrue(eventually(lambda: not MACHINE.is_attached(device)))
        self.open_popup(desktop)
        self.assertFalse(desktop.shows("Photos, "))

        self.quit(desktop)

    def test_bubbles_stack_and_go_and_take_no_focus(self):
        desktop = self.started()
        self.assertTrue(eventually(desktop.has_keyboard))
        front = desktop.run("xdotool", "getwindowfocus").stdout
        labels = ("One", "Two", "Three")
        devices = [MACHINE.make_disk(label) for label in labels]
        # The program meets the three at once, so that all its bubbles live at the same time.
        with desktop.stopped():
            for label, device in zip(labels, devices):
                MACHINE.mount_disk(label, device)

        def places():
            return sorted((top, left + width) for left, top, width, _ in desktop.windows()
                          if width == BUBBLE_WIDTH)
        self.assertTrue(eventually(lambda: len(places()) == len(labels)))
        self.assertEqual(places(), [(10, 1270), (70, 1270), (130, 1270)])
        for label in labels:
            desktop.wait_for_one(f"{label} is mounted")
        self.assertTrue(desktop.has_keyboard())
        self.assertEqual(desktop.run("xdotool", "getwindowfocus").stdout, front)
        for label in labels:
            desktop.wait_without(f"{label} is mounted")

    def test_the_tray_may_come_late_and_come_again(self):
        desktop = self.desktop(tray=False)
        desktop.start_program()
        desktop.wait_for("Volumes and memory")
        desktop.start_tray()
        self.assertTrue(eventually(desktop.tray_place))
        desktop.wait_without("Volumes and memory")
        desktop.tray.terminate()
        desktop.tray.wait()
        desktop.wait_for("Volumes and memory")
        desktop.start_tray()
        self.open_popup(desktop)

class Window(Session):
    def test_a_second_start_shows_the_page_last_used(self):
        desktop = self.started()
        volumes = "Drop a folder here, or choose a volume, to see what takes its space."
        desktop.press("Disk Usage")
        desktop.wait_for(volumes)
        desktop.key("ctrl+w")
        desktop.wait_without(volumes)
        self.assertIsNone(desktop.running.poll(), "closing does not end it")
        desktop.activate()
        desktop.wait_for(volumes)
        self.assertFalse(desktop.shows("Open Downloads"))
        desktop.key("ctrl+q")
        self.assertEqual(desktop.wait_for_end(), 1)

    def test_the_application_menu_opens_by_its_key(self):
        desktop = self.started()
        self.assertEqual(desktop.choose("Preferences"), ["Scan", "Quick Clean…", "Free Space",
                                                         "Uninstall", "Preferences"])
        desktop.wait_for("Alarms")
        self.assertEqual(desktop.choose("About", "Up"), ["Scan", "Quit", "About"])
        desktop.wait_for("About Brightsweep")

    def test_started_at_login_it_opens_no_window(self):
        desktop = self.desktop(tray=False)
        told = self.notified(desktop)
        desktop.settings("LoginCheck", "1")
        desktop.start_program()

        def where():
            # The machine's own disk may be nearly full, which is told as well.
            return [line for line in told() if line.endswith(",Open")]
        self.assertTrue(eventually(where), "no word of where the program is")
        self.assertEqual(len(where()), 1)
        self.assertFalse(desktop.shows("Fast Clean"))
        desktop.activate()
        desktop.wait_for("Fast Clean")

    def test_the_display_goes(self):
        desktop = self.started()
        desktop.display.kill()
        self.assertEqual(desktop.wait_for_end(), 1)
        self.assertIn("The display has gone; the program ends.", desktop.log_text())

    def test_no_graphics_driver_is_loaded(self):
        desktop = self.started()
        with open(f"/proc/{desktop.running.pid}/maps") as maps:
            loaded = maps.read()
        for part in ("_dri.so", "libGLX_mesa", "libEGL_mesa", "libQt6Qml", "libQt6Quick"):
            self.assertNotIn(part, loaded)


class SilentBus(Session):
    def silent_address(self, desktop):
        """Of a socket that takes connections and never says a word."""
        place = f"{desktop.folder}/runtime/silent"
        listener = socket.socket(socket.AF_UNIX)
        listener.setblocking(False)
        self.addCleanup(listener.close)
        self.listener = listener
        listener.bind(place)
        listener.listen(64)
        os.chown(place, USER, USER)
        return f"unix:path={place}"

    def check_that_it_works(self, desktop):
        # Without a bus nobody says what is on show.
        desktop.start_program()
        self.assertTrue(eventually(lambda: any(width >= 600 for _, _, width, _
                                               in desktop.windows())), "no window")
        desktop.activate()
        owner = ("xdotool", "getwindowfocus", "getwindowpid")
        self.assertTrue(eventually(
            lambda: desktop.run(*owner).stdout.strip() == str(desktop.running.pid)))
        desktop.tap("ctrl+q")
        self.assertEqual(desktop.wait_for_end(), 1)
        heard = []
        while select.select([self.listener], [], [], 0)[0]:
            with self.listener.accept()[0] as caller:
                heard.append(caller.recv(100))
        question = b"\0AUTH\r\n"
        self.assertIn(question, heard)
        self.assertLessEqual(set(heard), {b"", question}, "nobody waits for its words")

    def test_of_the_session(self):
        desktop = self.desktop(tray=False)
        desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = self.silent_address(desktop)
        self.check_that_it_works(desktop)
        self.assertIn("The session bus does not answer", desktop.log_text())

    def test_of_the_system(self):
        desktop = self.desktop(tray=False)
        desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.silent_address(desktop)
        self.check_that_it_works(desktop)


class Wayland(Session):
    def test_window_popup_and_a_mount_told_by_notification(self):
        desktop = self.desktop(display="wayland")
        told = self.notified(desktop)
        desktop.start_program()
        desktop.wait_for("Fast Clean")
        desktop.wait_for("Volumes and memory")
        desktop.press("Volumes and memory")
        desktop.wait_for("Quit Brightsweep")
        MACHINE.mount_disk("Wayland")
        self.assertTrue(eventually(
            lambda: any("Wayland is mounted successfully!" in line for line in told())), told())
        desktop.wait_for("Wayland, ")
        self.quit(desktop)


if __name__ == "__main__":
    run_tests(disks=True)
