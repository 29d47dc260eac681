"""What an assistive program sees: ui_reader.py tree | press NAME [ROLE].

"tree" prints a line for each visible thing of the program: its depth, role, states and name. "press"
does what a press on the thing of that name does.
"""
import sys

import pyatspi

PROGRAM = "brightsweep"
MARKS = ((pyatspi.STATE_CHECKED, "checked"), (pyatspi.STATE_FOCUSED, "focused"),
         (pyatspi.STATE_ENABLED, "enabled"))


def programs():
    for application in pyatspi.Registry.getDesktop(0):
        if application and application.name.lower() == PROGRAM:
            yield application


def visible(thing, depth=0):
    for child in thing:
        if child is None:
            continue
        states = child.getState()
        # The pages of the window that are not on show are kept, but hidden.
        if states.contains(pyatspi.STATE_SHOWING) or depth == 0 and \
                states.contains(pyatspi.STATE_VISIBLE):
            yield depth, child, states
            yield from visible(child, depth + 1)


def tree():
    for program in programs():
        for depth, thing, states in visible(program):
            marks = ",".join(mark for state, mark in MARKS if states.contains(state))
            print(f"{depth}\t{thing.getRoleName()}\t{marks}\t{thing.name}")


def press(name, role=None):
    for program in programs():
        for _, thing, _ in visible(program):
            if thing.name == name and (role is None or thing.getRoleName() == role):
                action = thing.queryAction()
                names = [action.getName(i) for i in range(action.nActions)]
                for wanted in ("Press", "Toggle"):
                    if wanted in names:
                        return 0 if action.doAction(names.index(wanted)) else 1
    return 2


if __name__ == "__main__":
    sys.exit(tree() if sys.argv[1] == "tree" else press(*sys.argv[2:]))
