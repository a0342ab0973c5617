#!/usr/bin/env python3
"""Keys that are typed into a panel of ours are the panel's, whatever the host does to have them.

The host is host-keyhunter: it filters the events of its application, and has shortcuts for keys of
all kinds that are in force in all of its windows.
"""

import plistlib
import unittest

import accessible
import harness
import hosts
from harness import wait_for
from xclient import RIGHT

MNEMONIC, PREFERENCES = "^Run Mnemonic", "Preferences"


class PanelKeys:
    qt = None
    bus = None

    def open(self, takes):
        process = f"host-keyhunter-qt{self.qt}"
        self.home.write_preferences(drawsFeedback=False)
        self.home.write_definitions("Mnemonics", process, ("ab", "File/Say"))
        self.home.write_definitions("Shortcuts", process, ("8m", "File/Velmora/Run Mnemonic…"),
                                    ("8p", "File/Velmora/Preferences…"))
        environment = self.bus.environment() if self.bus else {}
        self.host = self.start(hosts.ToldHost, "keyhunter", self.qt, environment=environment)
        if takes:
            self.host.tell("filter")

    def open_panel(self, key, title):
        wait_for(self.host.is_active, "the host to be active")
        self.x.keys(key)
        panel = self.host.window(title)
        wait_for(lambda: self.x.active_window() == panel, "the panel to be active")
        return panel

    def back(self, title):
        self.host.no_window(title)
        main = self.host.windows_by_number[1]
        wait_for(lambda: self.x.active_window() == main, "the window to be active again")

    def hunted(self):
        """What reached the host, or ran there, of keys in panels."""
        return [line for line in self.host.said()
                if line in ("filter", "notify") or line.startswith("ran Hunt")]

    def wait_stored(self, **values):
        def stored():
            return plistlib.loads(self.home.preferences_file().read_bytes())
        wait_for(lambda: all(stored().get(key) == value for key, value in values.items()),
                 f"{values} in {stored()}")

    def assert_a_mnemonic_runs(self):
        self.open_panel("ctrl+m", MNEMONIC)
        # A text that is no name is replaced by one that is.
        for key in ("x", "ctrl+a", "a", "b"):
            self.x.keys(key)
        self.host.wait_says("ran Say")
        self.back(MNEMONIC)

    def test_the_keys_of_a_panel_are_the_panels(self):
        for takes in (False, True):
            with self.subTest(takes=takes):
                self.end_applications()
                self.open(takes)
                self.assert_a_mnemonic_runs()
                for key, title in (("ctrl+m", MNEMONIC), ("ctrl+p", PREFERENCES)):
                    self.open_panel(key, title)
                    self.x.keys("Escape")
                    self.back(title)
                # Those that are typed during a stroke come after it.
                panel = self.open_panel("ctrl+m", MNEMONIC)
                start, end = (self.x.geometry(panel).at(*at) for at in ((0.1, 0.9), (0.9, 0.9)))
                self.x.move(*start)
                self.x.press(RIGHT)
                self.x.travel([start, end], 900)
                self.x.keys("a", "b")
                self.x.release(RIGHT)
                self.host.wait_says("ran Say", 2)
                self.back(MNEMONIC)
                # The first text has the keyboard.
                self.open_panel("ctrl+p", PREFERENCES)
                self.x.keys("ctrl+a", "1", "1", "Tab")
                self.wait_stored(gestureSize=11)
                # Copied from one and pasted into the next, taken back, and written over.
                self.x.keys("shift+Tab", "ctrl+a", "ctrl+c", "Tab", "ctrl+a", "ctrl+v", "1", "Tab")
                self.wait_stored(gestureTimeout=111)
                self.x.keys("shift+Tab", "End", "BackSpace", "ctrl+z", "Return")
                self.x.keys("End", "BackSpace", "Tab")
                self.wait_stored(gestureTimeout=11)
                self.x.keys("Escape")
                self.back(PREFERENCES)
                self.assertEqual(self.hunted(), [])
                # In its own window the host has them all.
                self.x.keys("a", "Escape", "ctrl+a")
                for text in ("a", "Escape", "Ctrl+A"):
                    self.host.wait_says(f"ran Hunt {text}")


class Qt5PanelKeys(PanelKeys, harness.DesktopTest):
    qt = 5


class Qt6PanelKeys(PanelKeys, harness.DesktopTest):
    qt = 6


class WithAssistiveTools(PanelKeys, harness.DesktopTest):
    """Which have each key before the panel has it, as in any window."""

    qt = 6

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.bus = accessible.Accessibility(cls.screen)

    def test_the_keys_of_a_panel_are_the_panels(self):
        self.open(takes=True)
        self.assert_a_mnemonic_runs()
        self.open_panel("ctrl+m", MNEMONIC)
        self.x.keys("Escape")
        self.back(MNEMONIC)


if __name__ == "__main__":
    unittest.main()
