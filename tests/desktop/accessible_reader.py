#!/usr/bin/python3
"""Says what the windows of the applications on an accessibility bus hold, as assistive tools see it.

For each line on standard input, a pattern for the title of a window, one line of JSON comes back: a
list of [depth, role, name, [x, y, width, height], states, text, value], from the window down, or
null without such a window. Places are on the screen. For accessible.py, which starts it.
"""

import json
import re
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

# More children than anybody sees at once, of a table say.
MOST_CHILDREN = 300


def describe(node, depth):
    area = node.get_extents(Atspi.CoordType.SCREEN)
    states = sorted(state.value_nick for state in node.get_state_set().get_states())
    text, value = None, None
    if node.get_text_iface():
        text = Atspi.Text.get_text(node, 0, -1)
    if node.get_value_iface():
        value = Atspi.Value.get_current_value(node)
    return [depth, node.get_role_name(), node.get_name(),
            [area.x, area.y, area.width, area.height], states, text, value]


def walk(node, depth, found):
    found.append(describe(node, depth))
    for index in range(min(node.get_child_count(), MOST_CHILDREN)):
        child = node.get_child_at_index(index)
        if child:
            walk(child, depth + 1, found)


def window(pattern):
    desktop = Atspi.get_desktop(0)
    for number in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(number)
        for index in reversed(range(application.get_child_count() if application else 0)):
            child = application.get_child_at_index(index)
            if child and re.search(pattern, child.get_name() or ""):
                found = []
                walk(child, 0, found)
                if "showing" in found[0][4]:
                    return found
    return None


def main():
    for line in sys.stdin:
        # Without a main loop nothing else takes in what the bus has said.
        while GLib.MainContext.default().iteration(False):
            pass
        try:
            found = window(line.rstrip("\n"))
        except GLib.Error:
            # It has changed, or gone, meanwhile.
            found = None
        print(json.dumps(found), flush=True)


if __name__ == "__main__":
    main()
