"""Windows of real applications as assistive tools see them: what there is, what it is called, and
where it stands, for tests that click there. That everything has a name is tested by this alone."""

import contextlib
import json
import os
import pathlib
import re
import subprocess
import time

import harness
from harness import LIMIT, wait_for
from xclient import Geometry

READER = pathlib.Path(__file__).with_name("accessible_reader.py")


class Node:
    """Something in a window. `area` is on the screen."""

    def __init__(self, depth, role, name, area, states, text, value):
        self.depth, self.role, self.name = depth, role, name
        self.area, self.states, self.text, self.value = Geometry(*area), set(states), text, value

    def is_on(self):
        return "checked" in self.states

    def __repr__(self):
        return f"{'  ' * self.depth}{self.role} {self.name!r} {self.area} {self.text!r}"


class Accessibility:
    """An accessibility bus for the applications of a screen; start these with its environment."""

    def __init__(self, screen):
        home = screen.directory / "accessibility"
        environment = screen.environment(home)
        for name in ("NO_AT_BRIDGE", "DBUS_SESSION_BUS_ADDRESS"):
            environment.pop(name)
        with open(screen.directory / "accessibility.log", "wb") as log:
            bus = harness._start(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                                 environment, stdout=subprocess.PIPE, stderr=log, text=True)
            self.address = bus.stdout.readline().strip()
            environment["DBUS_SESSION_BUS_ADDRESS"] = self.address
            self._reader = harness._start(
                ["/usr/bin/python3", str(READER)], environment, stdin=subprocess.PIPE,
                stdout=subprocess.PIPE, stderr=log, text=True)
        screen._own += [bus, self._reader]
        # The bus itself is started by the first who asks for it.
        self.nodes("nothing has this title")

    def environment(self):
        return {"DBUS_SESSION_BUS_ADDRESS": self.address, "NO_AT_BRIDGE": "0",
                "QT_ACCESSIBILITY": "1", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}

    def nodes(self, title):
        """All of the topmost window whose title matches, or None."""
        self._reader.stdin.write(title + "\n")
        self._reader.stdin.flush()
        found = json.loads(self._reader.stdout.readline())
        return found and [Node(*node) for node in found]


class Panel:
    """A window, waited for. Clicks and keys go through the X server like a person's."""

    def __init__(self, application, accessibility, title, limit=LIMIT):
        self.application, self.x = application, application.x
        self._accessibility, self.title = accessibility, title
        self.window = application.window(title, limit)
        wait_for(self.nodes, f"{title} on the accessibility bus", limit)

    def nodes(self):
        return self._accessibility.nodes(self.title)

    def all(self, role=None, name=None):
        """Those that show; `name` is a whole name or a pattern that is compiled."""
        def fits(node):
            if role and node.role != role:
                return False
            if isinstance(name, re.Pattern):
                return bool(name.search(node.name))
            return name is None or node.name == name
        return [node for node in self.nodes() or [] if fits(node) and node.area.width > 0]

    def find(self, role=None, name=None, limit=LIMIT):
        found = wait_for(lambda: self.all(role, name), f"{role} {name!r} in {self.title}", limit)
        return found[0]

    def click(self, role, name, at=(0.5, 0.5)):
        node = self.find(role, name)
        self.x.click(*node.area.at(*at))
        return node

    def press_button(self, name):
        return self.click("push button", name)

    def cells(self):
        """The table's rows of cells, in order."""
        rows = {}
        for node in self.all("table cell"):
            rows.setdefault(node.area.y, []).append(node)
        return [sorted(rows[y], key=lambda node: node.area.x) for y in sorted(rows)]

    def rows(self):
        return [[cell.name for cell in row] for row in self.cells()]

    def wait_rows(self, wanted, limit=LIMIT):
        try:
            wait_for(lambda: self.rows() == wanted, f"the rows {wanted}", limit)
        except harness.Timeout as timeout:
            raise harness.Timeout(f"{timeout}; there are {self.rows()}") from None

    def place(self, geometry):
        """Puts the panel's inside there, and waits until it says so itself."""
        self.x.place(self.window, geometry)
        def is_there():
            now = self.x.geometry(self.window)
            centres = [cell.area.at(0.5, 0.5) for row in self.cells() for cell in row]
            # The window manager's frame is a little thick.
            return (abs(now.x - geometry.x) < 40 and abs(now.y - geometry.y) < 40
                    and all(now.contains(*centre) for centre in centres))

        wait_for(is_there, f"the panel at {geometry}")

    def click_cell(self, row, column):
        wait_for(lambda: len(self.cells()) > row, f"row {row}")
        self.x.click(*self.cells()[row][column].area.at(0.5, 0.5))

    def double_click(self, row, column):
        self.click_cell(row, column)
        # As long as a person needs; without it the server merges the two now and then.
        time.sleep(0.06)
        self.click_cell(row, column)

    def choose_in_cell(self, row, path):
        """From the menu that a click on the cell opens, by the arrow keys."""
        keys = keys_to(self.application, self._accessibility, path)
        self.click_cell(row, 1)
        self.application.popup()
        self.keys(*keys)
        self.application.no_popups()
        wait_for(lambda: self.rows()[row][1] == path, f"{path} in row {row}: {self.rows()}")

    def keys(self, *keys):
        """The bus hands keys on one after the other, each to who has the keyboard by then, so what
        a click or a key does must be done before the next one."""
        for key in keys:
            time.sleep(0.05)
            self.x.keys(key)

    def focused(self):
        found = [node for node in self.nodes() or [] if "focused" in node.states]
        # A table's current cell says so even while another control has the keyboard.
        return min(found, key=lambda node: node.role == "table cell", default=None)

    def move_to(self, name, key="Tab"):
        """Presses the key until that has the keyboard."""
        for _ in range(120):
            before = self.focused()
            if before and before.name == name:
                return before
            self.keys(key)
            # A table without rows does not say that it has the keyboard.
            with contextlib.suppress(harness.Timeout):
                wait_for(lambda: repr(self.focused()) != repr(before), "another one", limit=0.4)
        raise harness.Timeout(f"{key} never comes to {name}")

    def screenshot(self, name):
        harness.PICTURES.mkdir(parents=True, exist_ok=True)
        return self.x.screenshot(harness.PICTURES / f"{name}.png")


def choose(application, accessibility, *titles):
    """Opens the menus of the application's main window on the way, and clicks the last title. A title
    may be several, of which any will do."""

    def place(depth):
        """Where the item of that depth is, once it shows."""
        # The title may change meanwhile, as the document does.
        title = re.escape(application.x.title(application.main))
        nodes = accessibility.nodes(f"^{title}$")
        at = -1
        for title in titles[:depth + 1]:
            at = next((i for i in range(at + 1, len(nodes or []))
                       if nodes[i].role in ("menu item", "menu", "check menu item") and
                       nodes[i].name.split("\t")[0] in (
                           [title] if isinstance(title, str) else title)), None)
            if at is None:
                return None
        area = nodes[at].area
        return area if area.width > 0 and (depth == 0 or application.popups()) else None

    for depth, title in enumerate(titles):
        before = len(application.popups())
        x, y = wait_for(lambda: place(depth), f"the item {titles[:depth + 1]}").at(0.5, 0.5)
        application.x.click(x, y)
        if title != titles[-1]:
            wait_for(lambda: len(application.popups()) > before, f"the menu {title}")
    application.no_popups()


def keys_to(application, accessibility, path):
    """The arrow keys that lead to the item in a copy of the application's menu bar."""
    def main_window():
        title = re.escape(application.x.title(application.main))
        return accessibility.nodes(f"^{title}$")

    nodes = wait_for(main_window, "the main window on the bus")
    bar = next(i for i, node in enumerate(nodes) if node.role == "menu bar")
    depth, below, begin, keys = nodes[bar].depth, 1, bar + 1, []
    for title in path.split("/"):
        items = []
        for node in nodes[begin:]:
            if node.depth <= depth:
                break
            if node.depth == depth + below and node.role != "separator" and node.area.width:
                items.append(node)
        at = [item.name for item in items].index(title)
        keys += (["Right"] if keys else ["Down"]) + ["Down"] * at
        begin = nodes.index(items[at]) + 1
        # Its menu stands between an item and the items in it.
        depth, below = items[at].depth, 2
    return keys + ["Return"]
