#!/usr/bin/env python3
"""Scrolling by the mouse's motion: in two applications and in a host with all that scrolls."""

import unittest

import harness
from applications import Designer, Featherpad
from hosts import ToldHost
from harness import wait_for
from xclient import MIDDLE, Geometry

# The buttons (of the server) and keys of each way to scroll.
VERTICAL, HORIZONTAL, BOTH, JOG = (MIDDLE, None), (MIDDLE, "shift"), (8, None), (9, None)
SLOTS = {"modifiers2": 0, "mouseButton2": 2, "isEnabled2": True,
         "modifiers4": 1, "mouseButton4": 2, "isEnabled4": True,
         "modifiers6": 0, "mouseButton6": 3, "isEnabled6": True,
         "modifiers8": 0, "mouseButton8": 4, "isEnabled8": True}


class Scrolling(harness.DesktopTest):
    def setUp(self):
        super().setUp()
        self.home.write_preferences(**SLOTS)

    def pointer(self):
        return self.x.pointer()[:2]

    def rests_at(self, place):
        return harness.stays(lambda: self.pointer() == place, 0.03)

    def begin(self, way, place):
        button, key = way
        place = tuple(place)
        # Until the last scrolling has ended, the pointer is set back.
        wait_for(lambda: self.x.move(*place) or self.rests_at(place), "the pointer to be free")
        if key:
            self.x.key_down(key)
        self.x.press(button)

    def end(self, way):
        button, key = way
        self.x.release(button)
        if key:
            self.x.key_up(key)

    def scroll(self, way, place, *motions):
        """Holds the button there while the mouse goes that way, in pieces of three pixels."""
        place = tuple(place)
        self.begin(way, place)
        for across, down in motions:
            pieces = max(abs(across), abs(down)) // 3
            for _ in range(pieces):
                self.x.move_by(across // pieces, down // pieces)
            # It is set back when the motion has been read.
            wait_for(lambda: self.rests_at(place), "the pointer to be where it was")
        self.end(way)
        self.assertNothingHeld()


class HostScrolling(Scrolling):
    """In the host program, which tells where its bars stand."""

    qt = 6

    def setUp(self):
        super().setUp()
        self.host = self.start(ToldHost, "scrolling", self.qt)
        self.find_places()

    def find_places(self):
        self.places = {}
        for line in self.host.tell("places"):
            word, name, *numbers = line.split()
            if word == "place":
                self.places[name] = tuple(int(number) for number in numbers)

    def bars(self):
        found = {}
        for line in self.host.tell("bars"):
            word, name, *numbers = line.split()
            if word == "bars":
                found[name] = tuple(int(number) for number in numbers)
        return found

    def end(self, way):
        super().end(way)
        # Motion that comes before it has ended would scroll too.
        wait_for(lambda: "cursor 0" in self.host.tell("cursor"), "the host's own cursor", limit=5)

    def wait_bars(self, name, expected):
        try:
            wait_for(lambda: self.bars()[name] == expected, f"{name} at {expected}", limit=5)
        except harness.Timeout:
            self.fail(f"{name} is at {self.bars()[name]}, not at {expected}")

    def assert_released(self):
        self.assertNothingHeld()
        wait_for(lambda: "cursor 0" in self.host.tell("cursor"), "the host's own cursor", limit=5)
        wait_for(lambda: "grab none" in self.host.tell("grab"), "the mouse to be free", limit=5)

    def test_each_way_scrolls_the_right_bars_by_a_step_for_three_pixels(self):
        # A list moves by whole items, so by one for three pixels; an area by 20 pixels.
        for name, way, motions, expected in (
                ("list", VERTICAL, [(30, 30)], (0, 10)),
                ("list", VERTICAL, [(0, 30), (0, -12)], (0, 6)),
                ("list", VERTICAL, [(0, -30), (0, 3)], (0, 1)),
                ("area", VERTICAL, [(30, 30)], (0, 200)),
                ("area", HORIZONTAL, [(30, 30)], (200, 0)),
                ("area", BOTH, [(30, 0), (0, 15)], (200, 100)),
                ("area", JOG, [(0, 30)], (0, 200)),
                ("area", JOG, [(30, 0)], (200, 0)),
                # The first step says which bar; a circle, clockwise, goes on and on.
                ("area", JOG, [(12, 0), (0, 12), (-12, 0), (0, -12)], (320, 0)),
                ("area", JOG, [(30, 0), (0, -12)], (120, 0)),
                ("nest", VERTICAL, [(0, 30)], (0, 200)),
                # Nothing goes past an end.
                ("area", BOTH, [(-60, 0), (0, -60)], (0, 0))):
            with self.subTest(name=name, way=way, motions=motions):
                self.host.tell("reset")
                before = self.bars()
                self.scroll(way, self.places[name], *motions)
                self.wait_bars(name, expected)
                self.assertEqual(self.bars(), {**before, name: expected}, "others moved")
        self.assert_released()

    def test_views_with_a_will_of_their_own(self):
        self.host.tell("middle")
        before = self.bars()
        # From right to left a bar grows to the left; to the right is to the right all the same.
        self.scroll(HORIZONTAL, self.places["reversed"], (30, 0))
        x, y = before["reversed"]
        self.wait_bars("reversed", (x - 200, y))
        self.scroll(BOTH, self.places["table"], (30, 0), (0, 30))
        wait_for(lambda: self.bars()["table"] > before["table"], "the table to scroll")
        self.assertGreater(self.bars()["table"][1], before["table"][1])
        # What takes no scrolling gets the turns of a wheel, 40 for a line.
        self.scroll(VERTICAL, self.places["plain"], (0, 30))
        after = self.bars()
        self.assertEqual(after["disabled"], before["disabled"])
        self.assert_released()

    def test_a_burst_of_motion_is_exact_and_the_pointer_stands_still(self):
        self.begin(VERTICAL, self.places["area"])
        for _ in range(150):
            self.x.move_by(1, 2)
        for _ in range(150):
            self.x.move_by(-3, -1)
        # 150 pixels down; what the remainders add depends on how many events came at once.
        wait_for(lambda: self.pointer() == self.places["area"], "the pointer at its place")
        self.assertIn("cursor 1", self.host.tell("cursor"))
        self.end(VERTICAL)
        wait_for(lambda: self.bars()["area"][1] > 0, "the area to scroll")
        self.assertEqual(self.bars()["area"][0], 0)
        self.assertEqual(self.pointer(), self.places["area"])
        # Steps of three pixels leave no remainder, however many come at once; 150 do not reach the
        # end of the document.
        self.host.tell("reset")
        self.begin(VERTICAL, self.places["area"])
        for _ in range(150):
            self.x.move_by(5, 3)
        for _ in range(50):
            self.x.move_by(-5, -3)
        self.end(VERTICAL)
        self.wait_bars("area", (0, 2000))
        self.assert_released()

    def test_at_the_edge_of_the_screen_motion_goes_on(self):
        window = self.host.windows_by_number[1]
        place = self.x.geometry(window)
        self.x.place(window, Geometry(harness.SCREEN.width - 250, harness.SCREEN.height - 250,
                                      place.width, place.height))
        wait_for(lambda: self.x.geometry(window).x > 900, "the window at its place")
        self.find_places()
        self.host.tell("reset")
        x, y = harness.SCREEN.width - 3, harness.SCREEN.height - 120
        # Under the pointer is what stands there; the mouse goes on beyond the edge.
        self.scroll(BOTH, (x, y), (300, 0))
        wait_for(lambda: sum(bars[0] for name, bars in self.bars().items() if name != "plain") > 0,
                 "something to scroll")
        self.assert_released()

    def test_thirty_starts_and_stops_leave_the_host_usable(self):
        for _ in range(15):
            self.scroll(VERTICAL, self.places["list"], (0, 6))
            self.scroll(BOTH, self.places["area"], (6, 0))
        self.wait_bars("list", (0, 30))
        self.wait_bars("area", (600, 0))
        self.assert_released()
        presses = self.host.said().count("press 1")
        self.x.click(*self.places["plain"])
        self.host.wait_says("press 1", presses + 1)

    def test_what_ends_it_leaves_nothing_pinned(self):
        def still_free():
            self.x.release_everything()
            self.assert_released()
            for place in ((30, 30), (200, 600)):
                self.x.move(*place)
                self.assertTrue(harness.stays(lambda: self.pointer() == place, 0.1))

        with self.subTest("another window of nobody's"):
            self.begin(VERTICAL, self.places["area"])
            self.x.move_by(0, 30)
            self.wait_bars("area", (0, 200))
            mark = self.host.mark()
            other = self.x.create_window("elsewhere", (1100, 20, 100, 30))
            self.host.wait_text("^resigned active", mark)
            still_free()
            self.x.destroy_window(other)
            self.host.activate_window(1)
        with self.subTest("a key"):
            self.host.tell("reset")
            self.begin(VERTICAL, self.places["area"])
            self.x.move_by(0, 30)
            self.wait_bars("area", (0, 200))
            self.x.keys("Escape")
            wait_for(lambda: "cursor 0" in self.host.tell("cursor"), "the host's own cursor")
            self.x.move_by(0, 30)
            still_free()
            self.assertEqual(self.bars()["area"], (0, 200))
        with self.subTest("a dialog"):
            self.host.tell("later dialog")
            self.begin(VERTICAL, self.places["area"])
            self.x.move_by(0, 30)
            dialog = self.host.window("Dialog")
            wait_for(lambda: self.x.active_window() == dialog, "the dialog to be active")
            self.end(VERTICAL)
            still_free()
            self.x.keys("Escape")
            self.host.wait_says("done dialog")
            self.host.activate_window(1)
        with self.subTest("the window goes"):
            self.host.tell("later delete")
            self.begin(VERTICAL, self.places["area"])
            while "done delete" not in self.host.said():
                self.x.move_by(0, 3)
                self.x.move_by(0, -3)
            self.end(VERTICAL)
            self.host.wait_says("ready 2")
            still_free()
            window = self.host.windows_by_number[2] = self.host.window("Window 2")
            self.host.activate_window(2)
            self.assertTrue(window)
            self.find_places()
            self.scroll(VERTICAL, self.places["area"], (0, 30))
            self.wait_bars("area", (0, 200))
        self.assert_released()


class HostScrollingQt5(HostScrolling):
    qt = 5


class ApplicationScrolling(Scrolling):
    """What an application shows tells by how much it has scrolled."""

    def shift(self, area, before, limit=120):
        """By how many pixels what was seen has gone up in the area (negative: down)."""
        width, height, pixels = before
        now = self.x.picture(area)[2]
        row = width * 3
        for distance in range(limit):
            part = (height - limit) * row
            for sign in (1, -1):
                top, other = (distance, 0) if sign > 0 else (0, distance)
                if pixels[top * row:top * row + part] == now[other * row:other * row + part]:
                    return sign * distance
        return None

    def scrolled(self, way, area, *motions):
        """Scrolls there, and returns by how many pixels that was."""
        before = self.x.picture(area)
        self.scroll(way, area.at(0.5, 0.5), *motions)
        return wait_for(lambda: self.shift(area, before), "what is seen to scroll", limit=5)

    def test_a_text_editor(self):
        prepare = Featherpad.prepare.__func__

        class Long(Featherpad):
            @classmethod
            def prepare(cls, home):
                command = prepare(cls, home)
                command[-1].write_text("".join(f"{number} {'word ' * (number % 7)}\n"
                                               for number in range(500)))
                return command

        application = self.start(Long)
        # Beside the line of the text cursor, which is in the first line.
        area = application.area(60, 200, 500, 400)
        line = self.scrolled(VERTICAL, area, (0, 9)) / 3
        self.assertIn(int(line), range(8, 30))
        self.assertEqual(self.scrolled(VERTICAL, area, (0, 6)), 2 * line)
        self.assertEqual(self.scrolled(VERTICAL, area, (0, -9)), -3 * line)
        self.assertEqual(self.scrolled(JOG, area, (0, 9)), 3 * line)
        # To the beginning, and no further.
        self.scroll(VERTICAL, area.at(0.5, 0.5), (0, -900))
        picture = self.x.picture(area)
        self.scroll(VERTICAL, area.at(0.5, 0.5), (0, -90))
        self.assertEqual(self.shift(area, picture), 0)
        self.assertNothingHeld()

    def test_item_views_of_an_application(self):
        application = self.start(Designer)
        self.x.keys("Escape")
        box = self.widget_box(application)
        down = self.scrolled(VERTICAL, box, (0, 12))
        self.assertGreater(down, 3)
        self.assertEqual(self.scrolled(VERTICAL, box, (0, -12)), -down)
        self.assertNothingHeld()
        application.check_alive()

    @staticmethod
    def widget_box(application):
        return application.area(10, 250, 130, 400)


if __name__ == "__main__":
    unittest.main()
