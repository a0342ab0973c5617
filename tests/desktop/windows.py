#!/usr/bin/env python3
"""Strokes over one of several windows of an application."""

import subprocess
import unittest

import harness
from applications import Featherpad, Linguist
from harness import wait_for
from xclient import RIGHT, Geometry


BUTTON, KEYS = "button", "keys"
SLOTS = ((0, 1), (0b1100, -1))


def stroke_right(x, area, by=BUTTON):
    """Draws to the right through the middle of an area, with the right button or Ctrl and Alt.

    A press of any button in a window that is not active makes Qt ask for it to be; keys do not.
    """
    start, end = area.at(0.3, 0.5), area.at(0.7, 0.5)
    x.move(*start)
    if by is BUTTON:
        x.press(RIGHT)
        x.travel([start, end], 600)
        x.release(RIGHT)
        return
    x.key_down("ctrl")
    x.key_down("alt")
    x.travel([start, end], 600)
    x.key_up("alt")
    x.key_up("ctrl")


class TwoMainWindows(harness.DesktopTest):
    """Two windows of one process, each with a menu bar of its own."""

    def open(self, makes_key):
        self.home.write_preferences(*SLOTS, makeGestureWindowKey=makes_key)
        self.home.write_gestures("featherpad", ("r", Featherpad.counted), ("l", "File/Close"))
        bus = self.start_bus()
        self.application = self.start(Featherpad, environment=bus)
        self.first = self.application.main
        self.second_document = self.home.path / "second.txt"
        self.second_document.write_text("four\n")
        opener = harness.Application(self.screen, self.home,
                                     ["featherpad", "--win", self.second_document], plugin=False,
                                     environment=bus, name="opener")
        self.assertEqual(opener.wait_exit(), 0)
        self.second = self.application.window(r"second\.txt")
        # It covers the lower right of the first one.
        place = Geometry(400, 380, 800, 600)
        self.x.place(self.second, place)
        wait_for(lambda: self.x.geometry(self.second) == place, "the second window at its place")
        wait_for(lambda: self.x.active_window() == self.second, "the second window to be active")
        self.application.wait_drawn()
        self.uncovered = self.application.area(60, 160, 600, 120)
        self.covered = Geometry(450, 560, 400, 100)
        self.alone = Geometry(960, 560, 200, 100)

    def start_bus(self):
        """This application opens a second window only when it is asked to through a bus."""
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                               env=self.screen.environment(self.home.path))

        def end():
            bus.kill()
            bus.wait()
            bus.stdout.close()
        self.addCleanup(end)
        return {"DBUS_SESSION_BUS_ADDRESS": bus.stdout.readline().strip()}

    def dates(self, number, expected):
        """How often the command ran on the first and on the second document."""
        application = self.application
        for window, document, wanted in ((self.first, application.document, expected[0]),
                                         (self.second, self.second_document, expected[1])):
            modified = lambda: "*" in self.x.title(window)
            if not wanted:
                self.assertFalse(modified())
                continue
            wait_for(modified, f"a change of {document.name}")
            self.assertEqual(self.x.active_window(), window)
            self.x.keys("ctrl+s")
            wait_for(lambda: not modified(), "the document to be saved")
            self.assertEqual(application.count_in(document.read_text()), wanted)
        self.assertEqual(len(application.commands()), number)

    def test_the_window_under_the_stroke_becomes_key_and_is_commanded(self):
        self.open(makes_key=True)
        for number, (by, area, window, expected) in enumerate((
                (KEYS, self.covered, self.second, (0, 1)),
                (KEYS, self.uncovered, self.first, (1, 0)),
                (KEYS, self.uncovered, self.first, (2, 0)),
                (KEYS, self.alone, self.second, (0, 2)),
                (BUTTON, self.alone, self.second, (0, 3)),
                (BUTTON, self.uncovered, self.first, (3, 0))), 1):
            mark = self.application.mark()
            stroke_right(self.x, area, by)
            self.application.wait_text("^ran ", mark)
            wait_for(lambda: self.x.active_window() == window, "the window to be active")
            self.dates(number, expected)

    def test_the_key_window_is_commanded_where_the_preference_is_off(self):
        self.open(makes_key=False)
        for number, area in enumerate((self.uncovered, self.covered), 1):
            mark = self.application.mark()
            stroke_right(self.x, area, KEYS)
            self.application.wait_text("^ran ", mark)
            self.dates(number, (0, number))
            self.assertEqual(self.x.active_window(), self.second)

    def test_the_other_window_goes_on_when_one_is_closed_by_a_stroke(self):
        self.open(makes_key=True)
        # The document is closed first; without one left, the window stays and is closed by hand.
        start, end = self.uncovered.at(0.7, 0.5), self.uncovered.at(0.3, 0.5)
        self.x.move(*start)
        self.x.press(RIGHT)
        self.x.travel([start, end], 600)
        self.x.release(RIGHT)
        self.application.wait_text('^ran "File/Close"')
        wait_for(lambda: "words" not in self.x.title(self.first), "the document to be closed")
        self.x.close_window(self.first)
        wait_for(lambda: self.application.windows() == [self.second], "one window to be left")
        wait_for(lambda: self.x.active_window() == self.second, "it to be active")
        stroke_right(self.x, self.covered)
        wait_for(lambda: "*" in self.x.title(self.second), "a change of its document")


class MainWindowAndPanel(harness.DesktopTest):
    """A main window and one that has no menu bar."""

    def open(self, makes_key):
        self.home.write_preferences(*SLOTS, makeGestureWindowKey=makes_key)
        self.home.write_gestures("linguist", ("r", Linguist.counted), ("d", "Edit/Find..."))
        self.application = self.start(Linguist)
        self.application.draw("d")
        self.panel = self.application.window("^Find")
        place = Geometry(60, 560, 454, 263)
        self.x.place(self.panel, place)
        wait_for(lambda: self.x.geometry(self.panel) == place, "the panel at its place")
        wait_for(lambda: self.x.active_window() == self.panel, "the panel to be active")

    def test_the_main_window_under_the_stroke_becomes_key(self):
        self.open(makes_key=True)
        stroke_right(self.x, self.application.view(), KEYS)
        self.application.wait_text('^ran "Translation')
        wait_for(lambda: self.x.active_window() == self.application.main,
                 "the main window to be active")
        self.application.wait_count(1)

    def test_the_panel_stays_key_where_the_preference_is_off(self):
        self.open(makes_key=False)
        stroke_right(self.x, self.application.view(), KEYS)
        self.application.wait_text('^ran "Translation')
        self.assertTrue(harness.stays(lambda: self.x.active_window() == self.panel, 0.2))
        self.application.wait_count(1)

    def test_a_stroke_over_a_window_without_menus_commands_the_main_window(self):
        self.open(makes_key=True)
        stroke_right(self.x, self.x.geometry(self.panel))
        self.application.wait_text('^ran "Translation')
        self.assertEqual(self.x.active_window(), self.panel)
        self.application.wait_count(1)


class ModalDialog:
    kind = None

    def test_nothing_runs_behind_a_modal_dialog(self):
        self.home.write_preferences()
        self.home.write_gestures(self.kind.process_name, ("r", self.kind.counted),
                                 ("d", self.kind.dialog))
        application = self.start(self.kind)
        application.draw("d")
        dialog = application.window(application.dialog_title)
        wait_for(lambda: self.x.active_window() == dialog, "the dialog to be active")
        stroke_right(self.x, self.x.geometry(dialog))
        wait_for(lambda: application.beeps() == 1, "the beep")
        self.assertEqual(application.commands(), [self.kind.dialog])
        application.close_menus()
        application.close_dialog()
        application.assert_usable()
        application.draw("r")
        application.wait_count(1)


class FeatherpadModalDialog(ModalDialog, harness.DesktopTest):
    kind = Featherpad


class LinguistModalDialog(ModalDialog, harness.DesktopTest):
    kind = Linguist


if __name__ == "__main__":
    unittest.main()
