#!/usr/bin/env python3
"""Menus of every kind, as they are at the moment of a stroke.

The host is host-menus, which says what it does and does what it is told. The strokes are drawn over
its windows, whose upper left corner holds nothing else.
"""

import unittest

import harness
import hosts
from harness import wait_for
from xclient import RIGHT, Geometry

# The letters that a test binds to its paths, in turn.
LETTERS = ("r", "d", "l", "u", "rd", "dr", "lu", "ul", "rdr", "drd")


class MenuHost(hosts.ToldHost):
    def __init__(self, screen, home, qt):
        super().__init__(screen, home, "menus", qt)

    def places(self, number):
        """The middles of the areas of a window."""
        self.tell("places")
        return {words[2]: (int(words[3]), int(words[4])) for words in map(str.split, self.said())
                if words[0] == "place" and words[1] == str(number)}

    def stroke(self, letters, start):
        """Draws from a place on the screen."""
        corner = Geometry(0, 0, 4000, 4000)
        points = harness.stroke_points(letters, corner, 60)
        offset_x, offset_y = start[0] - points[0][0], start[1] - points[0][1]
        points = [(x + offset_x, y + offset_y) for x, y in points]
        self.x.move(*points[0])
        self.x.press(RIGHT)
        self.x.travel(points, 900)
        self.x.release(RIGHT)


class Menus:
    qt = None

    def open(self, *paths):
        self.home.write_preferences(drawsFeedback=False)
        self.letters = dict(zip(paths, LETTERS))
        self.home.write_gestures(f"host-menus-qt{self.qt}",
                                 *((letters, path) for path, letters in self.letters.items()))
        self.host = self.start(MenuHost, self.qt)
        self.start_place = self.host.places(1)["throws"]

    def draw(self, path, start=None):
        """Draws the path's stroke and returns "ran" or "beep", whichever came."""
        mark = self.host.mark()
        self.host.stroke(self.letters[path], start or self.start_place)
        self.host.wait_text("^(ran |did not run|beep)", mark)
        commands, beeps = self.host.commands(mark), self.host.beeps(mark)
        self.assertEqual(len(commands) + beeps, 1, self.host.texts(mark))
        self.assertIn(commands, ([], [path]))
        return "ran" if commands else "beep"

    def assert_runs(self, path, line, start=None):
        """Draws the path's stroke; the host says the line exactly once more."""
        count = self.host.said().count(line)
        self.assertEqual(self.draw(path, start), "ran", path)
        self.host.wait_says(line, count + 1)
        # What is told comes after whatever else the stroke did.
        self.host.tell("places")
        self.assertEqual(self.host.said().count(line), count + 1)

    def assert_beeps(self, path, start=None):
        before = [line for line in self.host.said() if line.startswith("ran ")]
        self.assertEqual(self.draw(path, start), "beep", path)
        self.host.tell("places")
        self.assertEqual([line for line in self.host.said() if line.startswith("ran ")], before)

    def test_titles_are_the_ones_that_a_person_reads(self):
        tools = "ツール"
        self.open("File/Open...", f"{tools}/This & That", f"{tools}/Either/Or", f"{tools}/Checked",
                  f"{tools}/Disabled", f"{tools}/Hidden", f"{tools}/&This && That", f"{tools}/")
        self.assert_runs("File/Open...", "ran 1 &Open...")
        self.assert_runs(f"{tools}/This & That", "ran 1 This && &That\tCtrl+T")
        self.assert_runs(f"{tools}/Either/Or", "ran 1 Either/Or")
        for state in ("on", "off"):
            self.assert_runs(f"{tools}/Checked", f"ran 1 Checked {state}")
        for path in (f"{tools}/Disabled", f"{tools}/Hidden", f"{tools}/&This && That", f"{tools}/"):
            self.assert_beeps(path)

    def test_items_are_seen_as_they_are_now(self):
        self.open("File/New", "File/Fresh", "File/Open...")
        self.assert_runs("File/New", "ran 1 &New")
        self.host.tell("rename &New=&Fresh")
        self.assert_runs("File/Fresh", "ran 1 &Fresh")
        self.assert_beeps("File/New")
        self.host.tell("disable &Fresh")
        self.assert_beeps("File/Fresh")
        self.host.tell("enable &Fresh")
        self.assert_runs("File/Fresh", "ran 1 &Fresh")
        self.host.tell("rebuild")
        self.assert_runs("File/New", "ran 1 &New")
        self.host.tell("wipe")
        self.assert_runs("File/Open...", "ran 1 &Open...")
        self.host.tell("bar")
        self.assert_runs("File/New", "ran 1 &New")
        self.host.tell("disable &New")
        self.assert_beeps("File/New")

    def test_deep_menus_are_seen_down_to_a_limit(self):
        def path(item):
            return "/".join(["Deep", *map(str, range(2, item)), f"Item {item}"])

        self.open(path(14), path(33), path(34))
        self.assert_runs(path(14), "ran 1 Item 14")
        self.assert_runs(path(33), "ran 1 Item 33")
        self.assert_beeps(path(34))
        deeper = [line for line in self.host.texts() if "Menus deeper than 32 levels" in line]
        self.assertEqual(len(deeper), 1, deeper)

    def test_menus_that_their_opening_fills_are_filled(self):
        """An item that is not there yet beeps once; the look for it has filled the menus."""
        self.open("Lazy/First", "Lazy/Deeper/Second", "Recent/one.txt", "Fleeting/Now",
                  "ツール/Validated")
        self.draw("Lazy/First")
        self.assert_runs("Lazy/First", "ran 1 First")
        self.assert_runs("Lazy/Deeper/Second", "ran 1 Second")
        for _ in range(2):
            self.assert_runs("Recent/one.txt", "ran 1 one.txt")
        # Validation is part of an opening: what it disables does not run.
        self.assert_beeps("ツール/Validated")

    def test_a_mnemonic_runs_what_its_menu_allows_when_it_opens(self):
        self.home.write_definitions("Mnemonics", "Velmora", ("v", "ツール/Validated"),
                                    ("w", "ツール/Woken"))
        self.open()
        for name, ran in (("v", 0), ("w", 1)):
            self.x.keys("ctrl+alt+m")
            panel = self.host.window("^Run Mnemonic")
            wait_for(lambda: self.x.active_window() == panel, "the panel to be active")
            self.x.keys(name)
            self.host.no_window("^Run Mnemonic")
            self.host.wait_says("ran 1 Woken", ran)
            self.host.tell("places")
            self.assertEqual([line for line in self.host.said() if line.startswith("ran ")],
                             ["ran 1 Woken"] * ran)

    def test_a_command_with_a_modal_dialog_runs_once(self):
        self.open("ツール/Dialog...", "File/New")
        self.assert_runs("ツール/Dialog...", "opens Dialog")
        dialog = self.host.window("^Dialog")
        wait_for(lambda: self.x.active_window() == dialog, "the dialog to be active")
        self.x.keys("Escape")
        self.host.wait_says("closes Dialog")
        self.assertEqual(self.host.said().count("ran 1 Dialog..."), 1)
        wait_for(lambda: self.x.active_window() == self.host.windows_by_number[1],
                 "the window to be active again")
        self.assert_runs("File/New", "ran 1 &New")

    def test_the_submenu_stands_in_the_bar_of_every_window(self):
        path = "File/Velmora/Velmora Help"
        self.open(path, "File/New", "File/Only in 2")

        def opens_help():
            mark = self.host.mark()
            self.host.stroke(self.letters[path], self.start_place)
            self.host.wait_text("^opens file:.*/Manual/index.html$", mark)
            self.assertEqual(len([text for text in self.host.texts(mark)
                                  if text.startswith("opens ")]), 1)
        opens_help()
        self.host.open_window(2)
        self.start_place = self.host.places(2)["throws"]
        opens_help()
        self.assert_runs("File/Only in 2", "ran 2 Only in 2")
        for change in ("rebuild", "wipe", "bar"):
            self.host.tell(change)
            opens_help()
            self.assert_runs("File/New", "ran 2 &New")
        # The one of the other window is still there, and its items are its own.
        self.host.tell("close 2")
        wait_for(lambda: len(self.host.windows()) == 1, "the second window to go")
        self.host.activate_window(1)
        self.start_place = self.host.places(1)["throws"]
        opens_help()
        self.assert_beeps("File/Only in 2")
        self.assert_runs("File/New", "ran 1 &New")

    def seen(self, watch):
        return [place for window, place in watch.seen()]

    def test_context_menus_of_every_kind_are_commanded_unseen(self):
        rows = (("exec", "Paint", "chosen 1 &Paint\tCtrl+P"),
                ("exec", "More/Varnish", "chosen 1 &Varnish"),
                ("popup", "Paint", "triggered 1 &Paint\tCtrl+P"),
                ("popup", "More/Varnish", "triggered 1 &Varnish"),
                ("actions", "Keep It", "ran 1 Keep It"),
                ("actions", "Cut It", "ran 1 Cut It"),
                ("tree", "Plant", "ran 1 Plant"))
        self.open(*sorted({f"Context Menu: {item}" for _, item, _ in rows}))
        places = self.host.places(1)
        watch = self.screen.watch()
        self.addCleanup(watch.close)
        for area, item, line in rows:
            with self.subTest(area=area, item=item):
                for _ in range(2):
                    self.assert_runs(f"Context Menu: {item}", line, places[area])
                self.assertNothingHeld()
                self.assertEqual(self.seen(watch), [])
        for area, item in (("exec", "Keep It"), ("actions", "Paint"), ("throws", "Paint")):
            with self.subTest(area=area, item=item):
                self.assert_beeps(f"Context Menu: {item}", places[area])
                self.assertEqual(self.seen(watch), [])
        self.assertIn("Caught crash: no menu today", self.host.texts())
        # The person's own click opens the menu as ever.
        self.x.click(*places["exec"], RIGHT)
        self.host.popup()
        self.x.keys("Escape")
        self.host.no_popups()
        self.host.wait_says("chosen 1 nothing")

    def test_a_context_menu_item_with_a_dialog_runs_once(self):
        self.open("Context Menu: Ask...", "Context Menu: Paint")
        places = self.host.places(1)
        for area in ("exec", "popup"):
            with self.subTest(area=area):
                self.assertEqual(self.draw("Context Menu: Ask...", places[area]), "ran")
                dialog = self.host.window("^Asked")
                wait_for(lambda: self.x.active_window() == dialog, "the dialog to be active")
                self.x.keys("Escape")
                self.host.no_window("^Asked")
                wait_for(lambda: self.x.active_window() == self.host.windows_by_number[1],
                         "the window to be active again")
        self.assertEqual(self.host.said().count("opens Asked"), 2)
        self.assert_runs("Context Menu: Paint", "chosen 1 &Paint\tCtrl+P", places["exec"])


class Qt5Menus(Menus, harness.DesktopTest):
    qt = 5


class Qt6Menus(Menus, harness.DesktopTest):
    qt = 6


if __name__ == "__main__":
    unittest.main()
