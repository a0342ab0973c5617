#!/usr/bin/env python3
"""Hosts that leave, lose their windows or have no widgets: they end as without us.

The programs stand in host/. Each run with the plug-in is held against one without it.
"""

import unittest

import harness
from harness import BUILD, wait_for
from xclient import LEFT, RIGHT

# Mode of host-leaving, and the status with which it ends.
ENDING = {"quit": 0, "exit": 5, "end": 6, "close": 0}
LOSING = {"delete": 8, "hide": 8}


class HostPrograms:
    qt = None

    def launch(self, name, *arguments, plugin=True):
        self.home.write_preferences()
        program = f"host-{name}-qt{self.qt}"
        self.home.write_gestures("Velmora", ("rd", "File/Say"), ("r", "File/Say"))
        application = self.start(
            harness.Application, [BUILD / "tests/desktop" / program, *arguments], plugin=plugin,
            name=f"{program}-{len(self.applications)}")
        return application

    def focus(self, application, window):
        self.x.click(*self.x.geometry(window).at(0.5, 0.5), LEFT)
        wait_for(lambda: self.x.active_window() == window, "the window to be active")

    def says(self, application, line, limit=harness.LIMIT):
        wait_for(lambda: line in application.output().splitlines(), f"{line!r} from the host",
                 limit)

    def stroke_until(self, window, condition):
        """Presses the right button and keeps drawing, until the condition holds."""
        area = self.x.geometry(window)
        left, right = area.at(0.4, 0.4), area.at(0.6, 0.4)
        self.x.move(*left)
        self.x.press(RIGHT)
        for _ in range(200):
            self.x.travel([left, right, left], 1000)
            if condition():
                return
        self.fail("the host did not do what it was to do during the stroke")

    def leave(self, mode, plugin, releases):
        application = self.launch("leaving", mode, plugin=plugin)
        window = application.window("first")
        last = application.window("second") if mode in LOSING else window
        wait_for(lambda: self.x.active_window() == last, "the last window to be active")
        if plugin:
            application.wait_ready()
        self.focus(application, window)
        self.x.keys("g")
        self.stroke_until(window, lambda: "gone" in application.output().splitlines())
        if releases:
            self.x.release(RIGHT)
        # Held on without motion, the stroke is given up after its time.
        return application

    def test_a_host_that_ends_during_a_stroke_ends_as_without_us(self):
        for mode, status in ENDING.items():
            for plugin in (False, True):
                for releases in (True, False):
                    with self.subTest(mode=mode, plugin=plugin, releases=releases):
                        self.end_applications()
                        application = self.leave(mode, plugin, releases)
                        self.assertEqual(application.wait_exit(), status)
                        self.x.release_everything()
                        self.assertNotIn("command first", application.output())
                        self.assertNothingHeld()

    def test_a_window_that_goes_during_a_stroke_leaves_the_others_usable(self):
        for mode, status in LOSING.items():
            for plugin in (False, True):
                for releases in (True, False):
                    with self.subTest(mode=mode, plugin=plugin, releases=releases):
                        self.end_applications()
                        application = self.leave(mode, plugin, releases)
                        application.no_window("first")
                        self.x.release_everything()
                        self.assertNothingHeld()
                        second = application.window("second")
                        self.focus(application, second)
                        # Buttons and keys go where they belong.
                        self.x.click(*self.x.geometry(second).at(0.5, 0.5), RIGHT)
                        self.says(application, "context menu")
                        if plugin:
                            harness.draw(self.x, "rd", self.x.geometry(second), 600, 80)
                            self.says(application, "command second")
                            application.wait_text("^ran ")
                        self.x.keys("q")
                        self.assertEqual(application.wait_exit(), status)
                        self.assertNotIn("command first", application.output())

    def test_a_host_without_widgets_is_left_alone(self):
        said = []
        for plugin in (False, True):
            application = self.launch("windowless", plugin=plugin)
            window = application.window("host")
            self.focus(application, window)
            for button in (RIGHT, LEFT):
                harness.draw(self.x, "rd", self.x.geometry(window), 600, 80, button=button)
                self.x.click(*self.x.geometry(window).at(0.5, 0.5), button)
            self.x.keys("x", "ctrl+x", "q")
            self.assertEqual(application.wait_exit(), 7)
            # The click that gave the focus may have been needed, or not.
            said.append([line for line in application.output().splitlines()
                         if not line.endswith(" 1")])
            self.assertEqual(application.gestures(), [])
            self.assertEqual(application.beeps(), 0)
        self.assertEqual(said[0], said[1])
        self.assertIn("press 2", said[1])


class Qt5HostPrograms(HostPrograms, harness.DesktopTest):
    qt = 5


class Qt6HostPrograms(HostPrograms, harness.DesktopTest):
    qt = 6


if __name__ == "__main__":
    unittest.main()
