#!/usr/bin/env python3
"""A panel of ours among the windows of an application: strokes and scrolling over it and over others
while it has the keys, and where the mnemonic panel stands then."""

import plistlib
import unittest

import accessible
import applications
import harness
import hosts
from harness import wait_for
from windows import KEYS, SLOTS, stroke_right
from xclient import MIDDLE, Geometry

PREFERENCES, MNEMONIC = "Preferences", "^Run Mnemonic"


class PanelAmongWindows:
    """Three windows of an application: two with menus, and the preferences panel."""

    def write(self, process, menu, counted):
        # The middle button scrolls up and down.
        self.home.write_preferences(*SLOTS, (0, 2))
        self.home.write_gestures(process, ("r", counted))
        self.home.write_definitions("Shortcuts", process,
                                    ("8p", f"{menu}/Velmora/Preferences…"),
                                    ("8m", f"{menu}/Velmora/Run Mnemonic…"))

    def open_panel(self, application, corner):
        self.x.keys("ctrl+p")
        self.panel = application.window(PREFERENCES)
        self.assert_active(self.panel)
        self.place(self.panel, *corner)

    def place(self, window, x, y):
        """Up to the window manager's frame. Returns where it is then."""
        size = self.x.geometry(window)
        self.x.place(window, Geometry(x, y, size.width, size.height))

        def is_there():
            now = self.x.geometry(window)
            return now if abs(now.x - x) < 40 and abs(now.y - y) < 40 else None
        return wait_for(is_there, f"a window at {x} {y}")

    def assert_active(self, window):
        wait_for(lambda: self.x.active_window() == window,
                 f"{self.x.title(window)} to be active, not {self.x.title(self.x.active_window())}")

    def assert_mnemonic_panel_over_panel(self, application):
        self.x.keys("ctrl+m")
        mnemonic = application.window(MNEMONIC)
        self.assert_active(mnemonic)
        upper, lower = self.x.geometry(mnemonic).at(0.5, 0.5), self.x.geometry(self.panel).at(0.5, 0.5)
        for inner, outer in zip(upper, lower):
            self.assertAlmostEqual(inner, outer, delta=2)
        self.screen.screenshot(f"mnemonic-over-panel-{application.process_name}")
        self.x.keys("Escape")
        application.no_window(MNEMONIC)
        self.assert_active(self.panel)


class WithTwoWindows(PanelAmongWindows):
    qt = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.bus = accessible.Accessibility(cls.screen)

    def open(self):
        name = f"host-shortcuts-qt{self.qt}"
        self.write(name, "File", "File/One")
        self.host = self.start(hosts.ToldHost, "shortcuts", self.qt,
                               environment=self.bus.environment())
        self.host.process_name = name
        self.host.open_window(2)
        self.left = self.place(self.host.windows_by_number[1], 40, 60)
        self.right = self.place(self.host.windows_by_number[2], 700, 60)
        self.open_panel(self.host, (100, 520))

    def stroke(self, area, runs, active):
        before = self.host.said()
        stroke_right(self.x, area, KEYS)
        wait_for(lambda: runs in self.host.said()[len(before):], f"{runs} in {self.host.said()}")
        ran = [line for line in self.host.said()[len(before):] if line.startswith("ran")]
        self.assertEqual(ran, [runs])
        self.assert_active(active)
        self.assertIn(self.panel, self.host.windows())

    def test_the_window_under_the_stroke_takes_the_keys_from_the_panel(self):
        self.open()
        first, second = (self.host.windows_by_number[number] for number in (1, 2))
        panel_area = self.x.geometry(self.panel)
        # The menus over the panel are those of the last window that was active.
        self.stroke(panel_area, "ran 2 One", self.panel)
        self.stroke(self.left, "ran 1 One", first)
        self.stroke(self.right, "ran 2 One", second)
        self.stroke(panel_area, "ran 2 One", self.panel)
        self.stroke(self.left, "ran 1 One", first)
        self.screen.screenshot(f"panel-beside-key-window-qt{self.qt}")

    def test_the_mnemonic_panel_stands_over_the_panel(self):
        self.open()
        self.assert_mnemonic_panel_over_panel(self.host)

    def test_scrolling_over_the_panel_scrolls_what_is_there(self):
        self.open()
        slider = accessible.Panel(self.host, self.bus, PREFERENCES).find("slider")

        def flavor():
            return plistlib.loads(self.home.preferences_file().read_bytes()).get("flavor")

        before = flavor()
        start = slider.area.at(0.5, 0.5)
        self.x.move(*start)
        self.x.press(MIDDLE)
        self.x.travel([start, (start[0], start[1] - 60)], 300)
        self.x.release(MIDDLE)
        wait_for(lambda: flavor() != before, "another colour")
        self.assert_active(self.panel)


class Qt5WithTwoWindows(WithTwoWindows, harness.DesktopTest):
    qt = 5


class Qt6WithTwoWindows(WithTwoWindows, harness.DesktopTest):
    qt = 6


class RealApplicationAndPanel(PanelAmongWindows):
    kind = None

    def test_the_main_window_under_the_stroke_takes_the_keys_from_the_panel(self):
        kind = self.kind
        self.write(kind.process_name, kind.first_menu, kind.counted)
        application = self.start(kind)
        self.open_panel(application, (60, 520))
        self.assert_mnemonic_panel_over_panel(application)
        stroke_right(self.x, application.area(*self.uncovered), KEYS)
        application.wait_text(f'^ran "{kind.counted}')
        self.assert_active(application.main)
        application.wait_count(1)
        self.assertIn(self.panel, application.windows())


class FeatherpadAndPanel(RealApplicationAndPanel, harness.DesktopTest):
    kind = applications.Featherpad
    uncovered = (60, 160, 600, 120)


class LinguistAndPanel(RealApplicationAndPanel, harness.DesktopTest):
    kind = applications.Linguist
    uncovered = (560, 200, 600, 120)


if __name__ == "__main__":
    unittest.main()
