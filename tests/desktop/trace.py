#!/usr/bin/env python3
"""The trace of a stroke, on the screen."""

import time
import unittest

import harness
from applications import Featherpad, Linguist
from harness import wait_for
from xclient import RIGHT, Geometry

# Hue 0, as the preferences have it without a file.
TRACE = (251, 105, 105)
WHITE = (255, 255, 255)
# Seconds; the fade itself takes a tenth.
LONGEST_FADE = 0.3
# From the line's middle to its edge, and to the edge of its window, in points.
HALF_WIDTH, MARGIN = 2, 3

# Corners of the stroke, from its start: it goes to all sides.
CORNERS = ((0, 0), (150, 0), (150, 80), (-60, -60), (20, 90))


class Picture:
    """A part of the screen at a moment."""

    def __init__(self, display, area):
        self.area = area
        self.rgb = display.picture(area)[2]

    def at(self, x, y):
        start = 3 * ((y - self.area.y) * self.area.width + x - self.area.x)
        return tuple(self.rgb[start:start + 3])

    def part(self, area):
        return b"".join(bytes(self.at(x, y)) for y in range(area.y, area.y + area.height)
                        for x in range(area.x, area.x + area.width))

    def differences(self, before):
        """The places that look otherwise than before."""
        for index in range(0, len(self.rgb), 3):
            if self.rgb[index:index + 3] != before.rgb[index:index + 3]:
                y, x = divmod(index // 3, self.area.width)
                yield x + self.area.x, y + self.area.y


def distance(point, start, end):
    """From a point to a line between two."""
    (x, y), (ax, ay), (bx, by) = point, start, end
    length = (bx - ax) ** 2 + (by - ay) ** 2
    part = max(0, min(1, ((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / length)) if length else 0
    return ((x - ax - part * (bx - ax)) ** 2 + (y - ay - part * (by - ay)) ** 2) ** 0.5


def bounds(points):
    left, top = (min(numbers) for numbers in zip(*points))
    right, bottom = (max(numbers) for numbers in zip(*points))
    return Geometry(left, top, right - left, bottom - top)


def close(color, wanted):
    return all(abs(part - other) <= 2 for part, other in zip(color, wanted))


class TraceTest(harness.DesktopTest):
    def open(self, kind, scale, **preferences):
        self.home.write_preferences(gestureTimeout=60000, **preferences)
        self.home.write_gestures("Velmora", ("r", ""))
        application = self.start(kind, environment={"QT_SCALE_FACTOR": str(scale)})
        application.wait_ready()
        return application

    def start_of_stroke(self, application):
        """From where the stroke passes nothing that changes by itself."""
        place = (0.6, 0.4) if application.process_name == "featherpad" else (0.75, 0.3)
        return self.x.geometry(application.main).at(*place)

    def window_around(self, application, points, scale):
        """The window of the trace once it is as large as a trace through the points, or None."""
        inner, margin = bounds(points), MARGIN * scale
        wanted = (inner.x - margin, inner.y - margin, inner.width + 2 * margin,
                  inner.height + 2 * margin)
        for window in self.x.popups():
            place = self.x.pid(window) == application.process.pid and self.x.geometry(window)
            # The pixels that it costs to round to points.
            if place and all(abs(seen - each) <= 2 * scale for seen, each in zip(place, wanted)):
                return window
        return None

    def settled(self, area):
        """The picture there once the host has drawn what it had to draw."""
        def stands():
            nonlocal latest
            latest = Picture(self.x, area)
            return harness.stays(lambda: Picture(self.x, area).rgb == latest.rgb, 0.2)
        latest = None
        wait_for(stands, "the host to have drawn")
        return latest

    def check_stroke(self, application, scale, translucent, start, corners=CORNERS):
        points = [(start[0] + x, start[1] + y) for x, y in corners]
        whole = bounds(points)
        area = Geometry(whole.x - 20, whole.y - 20, whole.width + 40, whole.height + 40)
        active = self.x.active_window()
        self.x.move(*points[0])
        before = self.settled(area)
        self.x.press(RIGHT)
        for number in range(1, len(points)):
            self.x.travel(points[number - 1:number + 1], 600)
            # Stays at each corner until that is drawn.
            window = wait_for(lambda: self.window_around(application, points[:number + 1], scale),
                              "a window as large as the trace")
            x, y = points[number]
            near = Geometry(x - 3, y - 3, 7, 7)
            wait_for(lambda: Picture(self.x, near).rgb != before.part(near),
                     "the trace at the pointer")
        self.screen.screenshot(f"{self.id().split('.', 1)[-1]}-{scale}")
        now = Picture(self.x, area)
        changed = list(now.differences(before))
        self.assertEqual(self.x.active_window(), active)

        # Nothing is drawn beside the line.
        legs = list(zip(points, points[1:]))
        for place in changed:
            self.assertLess(min(distance(place, *leg) for leg in legs),
                            HALF_WIDTH * scale + 2, f"{place}: {now.at(*place)}")
        colored = sum(close(now.at(*place), TRACE) for place in changed)
        white = sum(now.at(*place) == WHITE for place in changed)
        length = sum(distance(first, second, second) for first, second in legs)
        self.assertGreater(colored, length * scale / 4)
        others = len(changed) - colored - white
        if translucent:
            self.assertGreater(others, length / 4, "the edges are not smooth")
        else:
            self.assertEqual(others, 0, "there is more than the line and its core")

        self.x.release(RIGHT)
        released = time.perf_counter()
        alphas = []

        def gone():
            value = self.x.property(window, "_NET_WM_WINDOW_OPACITY")
            if value and value[0] not in alphas:
                alphas.append(value[0])
            return window not in self.x.popups()
        wait_for(gone, "the trace to go", interval=0.001)
        self.assertLess(time.perf_counter() - released, LONGEST_FADE)
        self.assertGreater(time.perf_counter() - released, 0.07)
        self.assertEqual(alphas, sorted(alphas, reverse=True))
        if translucent:
            self.assertGreater(len(alphas), 4, "it does not fade")
        wait_for(lambda: not list(Picture(self.x, area).differences(before)),
                 "everything to look as before")

    def test_the_trace_is_where_the_pointer_goes_at_every_scale(self):
        for kind in (Featherpad, Linguist):
            for scale in (1, 1.5, 2):
                with self.subTest(kind=kind.process_name, scale=scale):
                    self.end_applications()
                    application = self.open(kind, scale)
                    start = self.start_of_stroke(application)
                    for _ in range(2):
                        self.check_stroke(application, scale, self.translucent, start)

    translucent = False


class TraceWithoutCompositor(TraceTest):
    def test_a_compositing_manager_may_come_and_go(self):
        application = self.open(Featherpad, 1)
        start = self.start_of_stroke(application)
        self.check_stroke(application, 1, False, start)
        compositor = self.screen.start_compositor()
        self.addCleanup(compositor.kill)
        application.wait_drawn()
        self.check_stroke(application, 1, True, start)
        compositor.terminate()
        compositor.wait()
        wait_for(lambda: not self.x.has_owner("_NET_WM_CM_S0"), "the end of the manager")
        application.wait_drawn()
        self.check_stroke(application, 1, False, start)

    def test_no_trace_is_drawn_where_the_preference_is_off(self):
        application = self.open(Featherpad, 1, drawsFeedback=False)
        watch = self.screen.watch()
        self.addCleanup(watch.close)
        application.draw("r")
        application.wait_text("^beep")
        self.assertEqual(watch.seen(), [])


class TraceWithCompositor(TraceTest):
    translucent = True

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.screen.start_compositor()


class TraceOnTwoScreens(TraceTest):
    """The main screen lies right of the other, so coordinates there are below zero."""

    @classmethod
    def setUpClass(cls):
        cls.screen = harness.Screen(size=Geometry(0, 0, 2560, 1024))
        cls.addClassCleanup(cls.screen.close)
        cls.x = cls.screen.x
        cls.screen.split()

    def test_the_trace_is_where_the_pointer_goes_at_every_scale(self):
        # Of the two, Qt 6 alone knows of screens that are no outputs of their own.
        for scale in (1, 2):
            with self.subTest(scale=scale):
                self.end_applications()
                application = self.open(Linguist, scale)
                self.check_stroke(application, scale, False,
                                  self.start_of_stroke(application))
                self.x.place(application.main, Geometry(1300, 40, 1100, 900))
                wait_for(lambda: self.x.geometry(application.main).x > 1280, "the main screen")
                application.wait_drawn()
                self.check_stroke(application, scale, False,
                                  self.start_of_stroke(application))


del TraceTest

if __name__ == "__main__":
    unittest.main()
