#!/usr/bin/env python3
"""A context-menu stroke acts on what lies under its start, as a right click there would.

The host is host-views, which says what it does and does what it is told. One item of each view is
selected, and the strokes begin over others.
"""

import itertools
import unittest

import harness
import hosts
from harness import wait_for
from xclient import LEFT, RIGHT, Geometry

VIEWS = ("tree", "list", "table", "text", "graphics")
WAYS = [f"{moment}-{kind}" for moment in
        ("event", "custom", "press", "release", "queued", "cursor") for kind in ("exec", "popup")]
PATH = "Context Menu: Delete"
BAR_PATH = "File/Rest"
# What a right click makes the host say, whatever it does then.
CLICK = ("press", "release", "opens", *(f"context item{item}" for item in range(5)))
# As a person's Ctrl stands in the file.
CONTROL_KEY = 8


class ViewHost(hosts.ToldHost):
    def __init__(self, screen, home, qt):
        super().__init__(screen, home, "views", qt)

    def place(self, view, item):
        """The middle of an item, on the screen."""
        x, y = self.tell(f"item {view} {item}")[-1].split()[1:]
        return int(x), int(y)

    def stroke(self, start, letters="r"):
        corner = Geometry(0, 0, 4000, 4000)
        points = harness.stroke_points(letters, corner, 60)
        offset_x, offset_y = start[0] - points[0][0], start[1] - points[0][1]
        points = [(x + offset_x, y + offset_y) for x, y in points]
        self.x.move(*points[0])
        self.x.press(RIGHT)
        self.x.travel(points, 900)
        self.x.release(RIGHT)


class Views:
    qt = None

    def open(self):
        self.home.write_preferences((0, 1), (CONTROL_KEY, 1), drawsFeedback=False)
        self.home.write_gestures(f"host-views-qt{self.qt}", ("r", PATH),
                                 ("d", "Context Menu: Nothing"), ("dr", "Context Menu: Tools"),
                                 *(("dl", f"Context Menu: {title}")
                                   for title in ("Nothing", "Neither", "Delete")))
        self.host = self.start(ViewHost, self.qt)

    def draw(self, place, letters="r", key=None):
        """Draws a stroke while the first item of each view is selected, and a key is held. Returns
        what the host said meanwhile, and what is pressed or grabbed afterwards."""
        self.host.tell("decoy")
        before, mark = len(self.host.said()), self.host.mark()
        if key:
            self.x.key_down(key)
        self.host.stroke(place, letters)
        self.host.wait_text("^(ran |did not run|beep)", mark)
        if key:
            self.x.key_up(key)
        # What is told comes after whatever else the stroke did.
        self.host.tell("state")
        self.assertNothingHeld()
        return [line for line in self.host.said()[before:] if not line.startswith("did ")]

    def deletion(self, view, item, way):
        # A click beside the selection of a text leaves that where it is.
        selected = "item0" if view == "text" else f"item{item}"
        return f"deletes {view} {selected}" + ("" if way == "actions" else f" over item{item}")

    def test_what_lies_under_the_stroke_is_acted_upon(self):
        """In each view, however the menu comes, without being seen."""
        self.open()
        watch = self.screen.watch()
        self.addCleanup(watch.close)
        items = itertools.cycle((3, 1, 4, 2))
        for way in [*WAYS, "actions"]:
            self.host.tell(f"way {way}")
            for view in VIEWS:
                with self.subTest(way=way, view=view):
                    item = next(items)
                    said = self.draw(self.host.place(view, item))
                    acts = [line for line in said if line not in CLICK]
                    self.assertEqual(acts, [self.deletion(view, item, way)], said)
                    if way.endswith("popup") and not way.startswith("queued"):
                        self.assertEqual(said.count("opens"), 1, said)
        self.assertEqual([place for window, place in watch.seen()], [])

    def test_an_item_that_is_not_there_leaves_a_right_click(self):
        """The person's own click opens the menu afterwards, and the left button selects."""
        self.open()
        watch = self.screen.watch()
        for way in WAYS:
            self.host.tell(f"way {way}")
            for view in ("tree", "graphics"):
                with self.subTest(way=way, view=view):
                    said = self.draw(self.host.place(view, 2), "d")
                    self.assertEqual([line for line in said if line not in CLICK], [], said)
                    self.assertEqual(watch.seen(), [])
        watch.close()
        self.x.click(*self.host.place("tree", 3), RIGHT)
        self.host.popup()
        self.x.keys("Down", "Return")
        self.host.wait_says("deletes tree item3 over item3")
        self.host.no_popups()
        self.x.click(*self.host.place("graphics", 1), LEFT)
        wait_for(lambda: self.host.tell("state") == [], "nothing to be held")

    def test_several_definitions_of_one_stroke_are_one_click(self):
        self.open()
        for way in ("event-exec", "event-popup"):
            self.host.tell(f"way {way}")
            said = self.draw(self.host.place("tree", 2), "dl")
            self.assertEqual(said.count("press"), 1 if way == "event-popup" else 2, said)
            self.assertIn("deletes tree item2 over item2", said)

    def test_nothing_is_chosen_where_the_view_has_moved(self):
        """A host that waits for its menu has it opened a second time for the choice."""
        self.open()
        for kind, expected in (("exec", []), ("popup", ["deletes tree item3 over item3"])):
            self.host.tell(f"way shift-{kind}")
            with self.subTest(kind=kind):
                said = self.draw(self.host.place("tree", 3))
                self.assertEqual([line for line in said if line not in CLICK], expected, said)
        self.host.tell("way event-exec")
        self.assertIn("deletes tree item2 over item2", self.draw(self.host.place("tree", 2)))

    def test_a_press_that_is_answered_otherwise_is_followed_by_its_release(self):
        self.open()
        place = self.host.place("tree", 2)
        self.host.tell("way throw")
        said = self.draw(place)
        self.assertEqual(said, ["press", "release"])
        self.assertIn("Caught crash: no menu today", self.host.texts())

        self.host.tell("way loop")
        self.assertEqual(self.draw(place), ["press", "release", "context item2"])

        self.host.tell("way dialog")
        mark = self.host.mark()
        self.host.stroke(place)
        dialog = self.host.window("^Instead")
        wait_for(lambda: self.x.active_window() == dialog, "the dialog to be active")
        self.assertEqual(self.host.tell("state"), [])
        self.x.keys("Escape")
        self.host.wait_text("^beep", mark)
        self.assertEqual(self.host.tell("state"), [])

        self.host.tell("way press-exec")
        self.assertIn("deletes tree item3 over item3", self.draw(self.host.place("tree", 3)))

    def test_the_keys_of_the_stroke_are_none_of_the_click(self):
        """What the host asks the toolkit agrees with what the click says."""
        self.open()
        said = self.draw(self.host.place("tree", 3), key="Control_L")
        self.assertEqual([line for line in said if line not in CLICK],
                         ["deletes tree item3 over item3"], said)

    def test_the_menu_of_a_window_is_commanded_on_its_tool_bar(self):
        self.open()
        said = self.draw(self.host.place("tools", 0), "dr")
        self.assertIn("the tool bar is hidden", said)


class Qt5Views(Views, harness.DesktopTest):
    qt = 5


class Qt6Views(Views, harness.DesktopTest):
    qt = 6


if __name__ == "__main__":
    unittest.main()
