#!/usr/bin/env python3
"""The trace of a stroke, on the screen."""

import unittest

import harness
from applications import Featherpad, Linguist
from harness import wait_for
from xclient import RIGHT, Geometry

# Hue 0, as the preferences have it without a file.
TRACE = (251, 105, 105)
LONGEST_FADE = 0.3


class Trace:
    kind = None

    def traced(self, area):
        """How many pixels of the area have the colour of the trace."""
        _, _, rgb = self.x.picture(area)
        return sum(all(abs(part - wanted) <= 12 for part, wanted in zip(rgb[i:i + 3], TRACE))
                   for i in range(0, len(rgb), 3))

    def check(self, scale):
        self.home.write_preferences()
        self.home.write_gestures(self.kind.process_name, ("r", ""))
        application = self.start(self.kind, environment={"QT_SCALE_FACTOR": scale})
        application.wait_ready()
        window = self.x.geometry(application.window(self.kind.title))
        x, y = window.at(0.3, 0.6)
        near = Geometry(x + 20, y - 12, 100, 24)
        active = self.x.active_window()
        self.x.move(x, y)
        self.assertEqual(self.traced(near), 0)
        self.x.press(RIGHT)
        self.x.travel([(x, y), (x + 150, y)], 600)
        wait_for(lambda: self.traced(near) > 40, "the trace", 0.4)
        self.screen.screenshot(f"trace-{self.kind.process_name}-{scale}")
        self.assertEqual(self.x.active_window(), active)
        self.x.release(RIGHT)
        wait_for(lambda: self.traced(near) == 0, "the trace to go", LONGEST_FADE)

    def test_a_stroke_is_traced_while_it_is_drawn_and_not_after(self):
        self.check("1")

    def test_the_trace_follows_the_pointer_on_a_scaled_display(self):
        self.check("2")


class FeatherpadTrace(Trace, harness.DesktopTest):
    kind = Featherpad


class LinguistTrace(Trace, harness.DesktopTest):
    kind = Linguist


if __name__ == "__main__":
    unittest.main()
