#!/usr/bin/env python3
"""Applications whose windows have no menu bar: the main menu is made of what a window offers.

The host is host-barless, whose window has buttons with menus, a tool bar and actions of its own.
"""

import unittest

import harness
import hosts
from harness import stays, wait_for
from xclient import LEFT, MIDDLE, RIGHT, Geometry

PANEL = "^Run Mnemonic"
APPLICATION = "Barless"
OWN_MENU = "Main menu/Velmora"


class Host(hosts.ToldHost):
    """With a window, or with a login first, or without any window."""

    def __init__(self, screen, home, qt, mode="buttons"):
        if mode in ("buttons", "plain"):
            super().__init__(screen, home, "barless", qt, mode)
            return
        program = harness.BUILD / f"tests/desktop/host-barless-qt{qt}"
        harness.Application.__init__(self, screen, home, [program, mode], stdin=True,
                                     name=f"barless-{home.path.name}")
        self.windows_by_number = {}

    def place(self, area, number=1):
        for words in map(str.split, self.tell("places")):
            if words[:3] == ["place", str(number), area]:
                return int(words[3]), int(words[4])
        raise AssertionError(f"no area {area}")

    def items(self):
        """The texts of the items of the open menus, and where they are."""
        found = [line.split(maxsplit=3)[1:] for line in self.tell("items")]
        return [(text, (int(x), int(y))) for x, y, text in found]

    def holds(self, number=1):
        """What stands in the line, and how far the text is scrolled."""
        said = dict(((word, int(at)), rest) for word, at, *rest in (
            line.split(maxsplit=2) for line in self.tell("contents")))
        return " ".join(said["line", number]), int(said["scrolled", number][0])

    def stroke(self, letters, start):
        points = harness.stroke_points(letters, Geometry(0, 0, 4000, 4000), 60)
        across, down = start[0] - points[0][0], start[1] - points[0][1]
        points = [(x + across, y + down) for x, y in points]
        self.x.move(*points[0])
        self.x.press(RIGHT)
        self.x.travel(points, 900)
        self.x.release(RIGHT)


class Barless:
    qt = None

    def open(self, *paths, mode="buttons", own=OWN_MENU):
        """Each path gets a stroke of its own; the text and the script have keys."""
        process = f"host-barless-qt{self.qt}"
        self.home.write_preferences((0, 1), (0, -1), (0, 2), drawsFeedback=False)
        letters = ("r", "d", "l", "u", "rd", "dr", "lu", "ul", "rdr", "drd", "lul", "ulu")
        self.letters = dict(zip(paths, letters, strict=False))
        self.home.write_gestures(process, *((stroke, path) for path, stroke in self.letters.items()))
        self.home.write_definitions("TextSnippets", process, ("greeting", "Hello, you"))
        self.home.write_definitions(
            "Scripts", process, ("mark", f"#!/bin/sh\ntouch '{self.home.path}/marked'\n"))
        self.home.write_definitions("Shortcuts", process, ("8j", f"{own}/Text Snippets/greeting"),
                                    ("8k", f"{own}/Scripts/mark"), ("8p", f"{own}/Preferences…"))
        self.host = self.start(Host, self.qt, mode)
        return self.host

    def draw(self, letters, number=1, start=None):
        """Returns the command that the stroke ran, or None for a beep."""
        mark = self.host.mark()
        x, y = self.host.place("area", number)
        self.host.stroke(letters, start or (x - 60, y - 40))
        self.host.wait_text("^(ran |did not run|beep)", mark)
        commands = self.host.commands(mark)
        self.assertEqual(len(commands) + self.host.beeps(mark), 1, self.host.texts(mark))
        return commands[0] if commands else None

    def assert_runs(self, path, line, number=1):
        count = self.host.said().count(line)
        self.assertEqual(self.draw(self.letters[path], number), path)
        self.host.wait_says(line, count + 1)

    def assert_beeps(self, path):
        self.assertIsNone(self.draw(self.letters[path]))

    def click_item(self, text):
        items = dict(wait_for(lambda: [item for item in self.host.items() if item[0] == text],
                              f"the item {text}"))
        self.x.click(*items[text])

    def open_menu(self):
        self.x.click(*self.host.place("hamburgerButton"))
        self.host.popup()
        return [text for text, _ in self.host.items()]

    def assert_keys_work(self):
        """Of the submenu's own items, and those that a person gave to what it holds."""
        main = self.host.windows_by_number[1]
        self.x.click(*self.host.place("line"))
        self.x.keys("ctrl+j")
        wait_for(lambda: self.host.holds()[0].endswith("Hello, you"), "the text in the line")
        self.x.keys("ctrl+k")
        wait_for((self.home.path / "marked").exists, "the script")
        self.x.keys("ctrl+alt+m")
        panel = self.host.window(PANEL)
        wait_for(lambda: self.x.active_window() == panel, "the panel to be active")
        self.x.keys("Escape")
        self.host.no_window(PANEL)
        wait_for(lambda: self.x.active_window() == main, "the window to be active again")
        self.x.keys("ctrl+p")
        preferences = self.host.window("Preferences")
        self.x.close_window(preferences)
        self.host.no_window("Preferences")

    def test_strokes_run_what_the_window_offers(self):
        self.open("Main menu/Open...", "Main menu/More/Deeper", "Sort/By Date", "Recent/one.txt",
                  "Barless/Reload", "Barless/Refresh", "Barless/Stop", "Barless/Zoom In",
                  "Barless/Disabled", "Late/Comes Late", "Context Menu: Varnish")
        rows = (("Main menu/Open...", "ran 1 Open..."), ("Main menu/More/Deeper", "ran 1 Deeper"),
                ("Sort/By Date", "ran 1 By Date"), ("Recent/one.txt", "ran 1 one.txt"),
                ("Barless/Reload", "ran 1 &Reload"), ("Barless/Refresh", "ran 1 Refresh"),
                ("Barless/Stop", "ran 1 Stop"), ("Barless/Zoom In", "ran 1 Zoom In"))
        for path, line in rows:
            with self.subTest(path=path):
                self.assert_runs(path, line)
        for path in ("Barless/Disabled", "Late/Comes Late"):
            self.assert_beeps(path)
        self.assertIsNone(self.draw("durl"), "no such stroke")
        self.host.tell("menu")
        self.assert_runs("Late/Comes Late", "ran 1 Comes Late")
        # Titles of windows go with their documents, paths do not.
        self.host.tell("document other")
        self.assert_runs("Barless/Reload", "ran 1 &Reload")
        # What is behind a modal dialog cannot be used.
        self.host.tell("dialog")
        dialog = self.host.window("^Dialog")
        wait_for(lambda: self.x.active_window() == dialog, "the dialog to be active")
        self.assertIsNone(self.draw(self.letters["Barless/Refresh"],
                                    start=self.x.geometry(dialog).at(0.3, 0.1)))
        self.x.close_window(dialog)
        self.host.no_window("^Dialog")
        # The window that is key is commanded.
        self.host.open_window(2)
        self.assert_runs("Main menu/Open...", "ran 2 Open...", 2)
        self.host.activate_window(1)
        self.assert_runs("Main menu/Open...", "ran 1 Open...")

    def test_a_click_is_a_click_and_context_menus_and_scrolling_work(self):
        self.open("Context Menu: Varnish")
        place = self.host.place("area")
        self.x.click(*place, RIGHT)
        self.host.popup()
        self.click_item("Paint")
        self.host.wait_says("chosen Paint")
        self.assertEqual([line for line in self.host.said() if line.startswith(("press", "rel"))],
                         ["press 2"])
        self.host.stroke(self.letters["Context Menu: Varnish"], place)
        self.host.wait_says("chosen Varnish")
        self.assertEqual(self.host.holds()[1], 0)
        self.x.move(*self.host.place("text"))
        self.x.press(MIDDLE)
        for _ in range(30):
            self.x.move_by(0, 3)
        wait_for(lambda: self.host.holds()[1] > 0, "the text to scroll")
        self.x.release(MIDDLE)
        self.assertNothingHeld()

    def test_the_submenu_stands_in_the_menu_of_the_application(self):
        self.open()
        self.assertEqual(self.open_menu(),
                         ["New", "Open...", "-", "Velmora", "-", "More", "-", "Quit"])
        self.screen.screenshot(f"barless-menu-qt{self.qt}")
        self.click_item("Velmora")
        self.click_item("About Velmora")
        about = self.host.window("About")
        self.x.close_window(about)
        self.host.no_window("About")
        self.assert_keys_work()
        # A menu of ours in each window's, and the host's own left as it is.
        self.host.open_window(2)
        self.x.click(*self.host.place("hamburgerButton", 2))
        self.host.popup()
        self.assertIn("Velmora", [text for text, _ in self.host.items()])
        self.click_item("New")
        self.host.wait_says("ran 2 New")

    def test_a_window_with_nothing_but_a_tool_bar_has_the_keys(self):
        self.open("Barless/Reload", mode="plain", own=f"{APPLICATION}/Velmora")
        self.assert_runs("Barless/Reload", "ran 1 &Reload")
        self.assert_keys_work()

    def test_a_menu_bar_that_comes_later_replaces_it(self):
        self.open("File/Open...", "Edit/Find", "Main menu/New", own="File/Velmora")
        self.assert_runs("Main menu/New", "ran 1 New")
        self.host.tell("bar")
        # The file's menu holds ours, by the rule for any first menu.
        window = self.x.geometry(self.host.windows_by_number[1])
        self.x.click(window.x + 15, window.y + 10)
        self.host.popup()
        self.assertEqual([text for text, _ in self.host.items()],
                         ["New", "-", "Velmora", "-", "Open...", "-", "Quit"])
        self.x.keys("Escape")
        self.host.no_popups()
        self.assert_runs("File/Open...", "ran 1 Open...")
        self.assert_runs("Edit/Find", "ran 1 Find")
        self.assert_beeps("Main menu/New")
        self.assertNotIn("Velmora", self.open_menu())
        self.x.keys("Escape")
        self.host.no_popups()
        self.assert_keys_work()

    def test_a_login_comes_before_the_window_with_the_menu_bar(self):
        self.open("File/Open...", mode="login", own="File/Velmora")
        self.host.wait_ready()
        place = self.x.geometry(self.host.window("^Login"))
        wait_for(lambda: self.host.is_active(), "the login to be active")
        mark = self.host.mark()
        self.host.stroke("r", place.at(0.2, 0.9))
        self.host.wait_text("^beep", mark)
        # Beside the line, at the bottom.
        self.x.keys("Tab", "space")
        self.host.wait_says("ready 1")
        self.host.windows_by_number[1] = self.host.window("Window 1")
        self.host.no_window("^Login")
        self.host.activate_window(1)
        window = self.x.geometry(self.host.windows_by_number[1])
        self.x.click(window.x + 15, window.y + 10)
        self.host.popup()
        self.assertIn("Velmora", [text for text, _ in self.host.items()])
        self.x.keys("Escape")
        self.host.no_popups()
        self.x.keys("Escape")
        self.assert_runs("File/Open...", "ran 1 Open...")
        self.assert_keys_work()

    def test_a_host_without_windows_is_left_alone(self):
        host = self.open(mode="tray")
        host.wait_says("ready")
        self.assertTrue(stays(lambda: not host.texts(), 0.6), host.texts())
        host.tell("window")
        host.wait_text("^launched")


class Qt5Barless(Barless, harness.DesktopTest):
    qt = 5


class Qt6Barless(Barless, harness.DesktopTest):
    qt = 6


if __name__ == "__main__":
    unittest.main()
