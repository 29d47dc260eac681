#!/usr/bin/python3
"""cancelling-agent.py PROGRAM [ARGUMENT...]

Becomes the program, after a child of it has registered as its authentication agent: one whose user
closes every dialog. It is the agent of a process that the program divides itself into, too, and ends
with the program.
"""

import os
import signal
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

PATH = "/cancelling/agent"


class Cancelled(dbus.DBusException):
    _dbus_error_name = "org.freedesktop.PolicyKit1.Error.Cancelled"


class Agent(dbus.service.Object):
    @dbus.service.method("org.freedesktop.PolicyKit1.AuthenticationAgent", in_signature="sssa{ss}saa{sa{sv}}")
    def BeginAuthentication(self, action, message, icon, details, cookie, identities):
        raise Cancelled("the user has closed the dialog")

    @dbus.service.method("org.freedesktop.PolicyKit1.AuthenticationAgent", in_signature="s")
    def CancelAuthentication(self, cookie):
        pass


def start_time(process):
    with open(f"/proc/{process}/stat") as file:
        return int(file.read().rpartition(")")[2].split()[19])


def children_alike(process):
    """The children that run the same program."""
    try:
        with open(f"/proc/{process}/task/{process}/children") as file:
            children = [int(child) for child in file.read().split()]
        own = os.readlink(f"/proc/{process}/exe")
        return {child for child in children if os.readlink(f"/proc/{child}/exe") == own}
    except OSError:
        return set()


def serve(process, ready):
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SystemBus()
    Agent(bus, PATH)
    authority = dbus.Interface(
        bus.get_object("org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority"),
        "org.freedesktop.PolicyKit1.Authority",
    )

    def register(whom):
        subject = (
            "unix-process",
            {
                "pid": dbus.UInt32(whom),
                "start-time": dbus.UInt64(start_time(whom)),
                "uid": dbus.Int32(os.getuid()),
            },
        )
        authority.RegisterAuthenticationAgent(subject, "C", PATH)

    register(process)
    known = set()
    os.write(ready, b"x")
    os.close(ready)
    loop = GLib.MainLoop()

    def look():
        if os.getppid() != process:
            loop.quit()
        for child in children_alike(process) - known - {os.getpid()}:
            # It is not to ask before there is somebody to answer.
            os.kill(child, signal.SIGSTOP)
            register(child)
            known.add(child)
            os.kill(child, signal.SIGCONT)
        return True

    GLib.timeout_add(1, look)
    loop.run()


def main():
    program = os.getpid()
    reading, writing = os.pipe()
    if os.fork() == 0:
        os.close(reading)
        serve(program, writing)
        return
    os.close(writing)
    if os.read(reading, 1) != b"x":
        sys.exit("the agent could not be registered")
    os.close(reading)
    os.execv(sys.argv[1], sys.argv[1:])


main()
