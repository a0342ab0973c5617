#!/usr/bin/env python3
"""However a host ends, and whatever of ours is up then: status and output are those without us."""

import unittest

import harness
from harness import BUILD, wait_for
from xclient import MIDDLE, RIGHT

# The rows of host-ending's table.
WAYS = ("quit", "status", "close", "exit", "thread", "quick", "at-once", "abort", "abort-handled",
        "terminate-handled", "killed", "other", "again", "left", "left-exit", "left-thread",
        "left-quick", "deleted", "deleted-exit", "deleted-at-exit", "static", "static-exit",
        "static-pointer", "static-window", "static-window-exit")

# What of ours is up at the end.
MOMENTS = ("stroke", "fade", "scroll", "panel", "modal panel", "menu", "closed panel")

# Whose application object is destroyed while the process ends. Both versions of Qt crash there by
# themselves once such a host has destroyed any window, be it that of a menu.
STATIC = tuple(way for way in WAYS if way.startswith("static"))
STATIC_MOMENTS = MOMENTS[:5]


class Endings:
    qt = None

    def setUp(self):
        super().setUp()
        self.home.write_preferences((0, 1), (0, 0), (0, 2), isEnabled1=False)
        self.home.write_gestures("Velmora", ("d", "File/Velmora/Preferences…"),
                                 ("u", "File/Velmora/Run Mnemonic…"), ("l", "File/Say"))

    def begin(self, way, plugin):
        host = self.start(
            harness.Application, [BUILD / f"tests/desktop/host-ending-qt{self.qt}", way],
            plugin=plugin, stdin=True, name=f"ending-{len(self.applications)}")
        window = host.window("Window 1")
        wait_for(lambda: self.x.active_window() == window, "the window to be active")
        if plugin:
            host.wait_ready()
        if way not in STATIC:
            self.tell(host, "dialog")
            dialog = host.window("Dialog")
            wait_for(lambda: self.x.active_window() == dialog, "the dialog to be active")
            self.tell(host, "close")
            host.no_window("Dialog")
            wait_for(lambda: self.x.active_window() == window, "the window to be active again")
        return host, window

    def tell(self, host, line):
        host.process.stdin.write(f"{line}\n".encode())
        host.process.stdin.flush()
        if line != "end":
            wait_for(lambda: f"did {line}" in host.output(), f"{line!r} to be done")

    def end(self, host):
        self.tell(host, "end")
        status = host.wait_exit()
        self.x.release_everything()
        self.assertNothingHeld()
        return status, self.said(host)

    @staticmethod
    def said(host):
        """What it has printed, without the lines of ours, what tells of the run before, and what Qt
        may say of its own variables when they go before the application object."""
        return [line for line in host.output().splitlines()
                if not line.startswith(("velmora: ", "command", "QThreadStorage: "))]

    def bring_up(self, moment, host, window):
        area = self.x.geometry(window)
        wait_for(lambda: "velmora: became active" in host.output(), "it to become active")
        harness.draw(self.x, "l", area, 800, 80)
        wait_for(lambda: "command" in host.output(), "the first stroke's command")
        left, right = area.at(0.4, 0.5), area.at(0.6, 0.5)
        if moment == "stroke":
            self.x.move(*left)
            self.x.press(RIGHT)
            self.x.travel([left, right, left, right], 800)
        elif moment == "scroll":
            self.x.move(*left)
            self.x.press(MIDDLE)
            self.x.move_by(0, 30)
        elif moment == "fade":
            # The trace fades after each stroke, as it does now.
            harness.draw(self.x, "l", area, 800, 80)
        elif moment == "menu":
            self.x.click(*left, RIGHT)
            host.popup()
        else:
            title = "^Run Mnemonic" if moment == "modal panel" else "Preferences"
            harness.draw(self.x, "u" if moment == "modal panel" else "d", area, 800, 80)
            panel = host.window(title)
            if moment == "closed panel":
                self.x.close_window(panel)
                host.no_window(title)

    def compare(self, way, moments):
        host, _ = self.begin(way, plugin=False)
        expected = self.end(host)
        self.end_applications()
        self.assertIn("ends", expected[1])
        for moment in moments:
            with self.subTest(way=way, moment=moment):
                host, window = self.begin(way, plugin=True)
                self.bring_up(moment, host, window)
                self.assertEqual(self.end(host), expected)
            self.end_applications()

    def test_a_host_ends_as_without_us(self):
        for number, way in enumerate(WAYS):
            moments = STATIC_MOMENTS if way in STATIC else MOMENTS
            self.compare(way, [moments[(number + step) % len(moments)] for step in (0, 3)])


class Qt5Endings(Endings, harness.DesktopTest):
    qt = 5


class Qt6Endings(Endings, harness.DesktopTest):
    qt = 6


if __name__ == "__main__":
    unittest.main()
