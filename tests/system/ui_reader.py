"""What an assistive program sees: ui_reader.py, told by lines of JSON what to do.

["tree"] is answered by [depth, role, states, name] of each visible thing of the program, ["told"]
by the names of all that has come on show so far, were it only for a moment. ["press", NAME] does
what a press on the thing of that name does, and is answered by whether it was there. ["places",
ROLE, NAME…] is answered by the [left, top, width, height] of such things, ["texts", NAME…] by what
stands in fields. What goes away while it
is read is left out.
"""
import json
import sys

from gi.repository import Gio, GLib

PROGRAM = "brightsweep"
PATIENCE = 60_000  # ms for each answer
ROOT = "/org/a11y/atspi/accessible/root"
REGISTRY = "org.a11y.atspi.Registry"
ACCESSIBLE = "org.a11y.atspi.Accessible"
ACTION = "org.a11y.atspi.Action"
COMPONENT = "org.a11y.atspi.Component"
EVENT = "org.a11y.atspi.Event.Object"
MENU = "popup menu"
# By their numbers in the protocol.
SHOWING, VISIBLE = 25, 30
ON_SCREEN = 0
MARKS = ((1, "active"), (4, "checked"), (8, "enabled"), (12, "focused"))


class Reader:
    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address, = self.call(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
        self.bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self.came = []  # names
        self.shown = []
        self.bus.signal_subscribe(None, EVENT, "StateChanged", None, "showing",
                                  Gio.DBusSignalFlags.NONE, self.changed)
        self.call(self.bus, REGISTRY, "/org/a11y/atspi/registry", REGISTRY, "RegisterEvent",
                  GLib.Variant("(sass)", ("object:state-changed:showing", [], "")))

    @staticmethod
    def call(bus, *words):
        arguments = words[4] if len(words) > 4 else None
        return bus.call_sync(*words[:4], arguments, None, Gio.DBusCallFlags.NONE, PATIENCE).unpack()

    def changed(self, bus, sender, path, interface, signal, words):
        thing = (sender, path)
        if not words.unpack()[1]:
            self.shown = [other for other in self.shown if other != thing]
            return
        self.shown.append(thing)
        self.names([thing], lambda names: self.came.extend(name for name in names if name))

    def ask(self, things, interface, method, arguments=None, then=None):
        """Asks all at once, and gives the answers or has them given; None is of what is gone."""
        answers = [None] * len(things)
        left = len(things)

        def answered(bus, result, index):
            nonlocal left
            try:
                answers[index] = bus.call_finish(result).unpack()[0]
            except GLib.Error:
                pass
            left -= 1
            if then and not left:
                then(answers)
        for index, (name, path) in enumerate(things):
            self.bus.call(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                          PATIENCE, None, answered, index)
        while left and not then:
            GLib.MainContext.default().iteration(True)
        return answers

    def names(self, things, then=None):
        return self.ask(things, "org.freedesktop.DBus.Properties", "Get",
                        GLib.Variant("(ss)", (ACCESSIBLE, "Name")), then)

    def roles(self, things):
        return self.ask(things, ACCESSIBLE, "GetRoleName")

    def children(self, things):
        return [below or [] for below in self.ask(things, ACCESSIBLE, "GetChildren")]

    def visible(self):
        """The top things, and {thing: (states, things below it)}, one level after the other."""
        programs, = self.children([(REGISTRY, ROOT)])
        programs = [program for program, name in zip(programs, self.names(programs))
                    if name and name.lower() == PROGRAM]
        top = [thing for below in self.children(programs) for thing in below]
        found = {}

        def descend(level, least):
            while level:
                shown = []
                for thing, words in zip(level, self.ask(level, ACCESSIBLE, "GetState")):
                    low, high = words or (0, 0)
                    states = {bit for bit in range(64) if (high << 32 | low) >> bit & 1}
                    if states & least:
                        shown.append((thing, states))
                below = self.children([thing for thing, _ in shown])
                found.update((thing, (states, things))
                             for (thing, states), things in zip(shown, below))
                level = [thing for things in below for thing in things if thing not in found]
                # The pages of the window that are not on show are kept, but hidden.
                least = {SHOWING}
        descend(top, {SHOWING, VISIBLE})
        # They are nothing's children.
        menus = [thing for thing, role in zip(self.shown, self.roles(self.shown)) if role == MENU]
        descend(menus, {SHOWING})
        return top + menus, found

    def tree(self):
        top, found = self.visible()
        things = list(found)
        names = dict(zip(things, self.names(things)))
        roles = dict(zip(things, self.roles(things)))
        lines = []

        def add(thing, depth):
            if names.get(thing) is not None and roles[thing] is not None:
                states, below = found[thing]
                marks = [mark for state, mark in MARKS if state in states]
                lines.append((depth, roles[thing], marks, names[thing]))
                for other in below:
                    add(other, depth + 1)
        for thing in top:
            add(thing, 0)
        return lines

    def told(self):
        return self.came

    def places(self, role, *names):
        things = list(self.visible()[1])
        found = [thing for thing, name, is_a in zip(things, self.names(things), self.roles(things))
                 if name in names and is_a == role]
        return self.ask(found, COMPONENT, "GetExtents", GLib.Variant("(u)", (ON_SCREEN,)))

    def texts(self, *names):
        """What stands in the fields of those names."""
        things = list(self.visible()[1])
        found = [thing for thing, name in zip(things, self.names(things)) if name in names]
        return self.ask(found, "org.a11y.atspi.Text", "GetText", GLib.Variant("(ii)", (0, -1)))

    def press(self, wanted):
        things = list(self.visible()[1])
        for thing, name in zip(things, self.names(things)):
            if name != wanted:
                continue
            actions, = self.ask([thing], ACTION, "GetActions")
            names = [action[0] for action in actions or []]
            for action in ("Press", "Toggle"):
                if action in names:
                    number = GLib.Variant("(i)", (names.index(action),))
                    self.ask([thing], ACTION, "DoAction", number)
                    return True
        return False

    def obey(self, source, condition):
        line = sys.stdin.buffer.raw.readline()
        if not line:
            sys.exit()
        act, *words = json.loads(line)
        print(json.dumps(getattr(self, act)(*words)), flush=True)
        return True


if __name__ == "__main__":
    # Whatever has been told by now is heard before the answer.
    GLib.io_add_watch(0, GLib.PRIORITY_LOW, GLib.IO_IN | GLib.IO_HUP, Reader().obey)
    GLib.MainLoop().run()
