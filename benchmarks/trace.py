#!/usr/bin/env python3
"""What the trace of a stroke costs in a real application, however long the stroke.

usage: trace.py [--samples N]

Draws a spiral, one motion in 10 ms, and reads the processor time that the application and the X
server have used: with the trace and without, on a screen with a compositing manager and on one
without. The difference, divided by the samples, is what a frame costs. It is printed for the first
and for the last tenth of the stroke; the budget is 3 ms a frame in the application.
"""

import argparse
import math
import pathlib
import sys
import time

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "desktop"))

import harness  # noqa: E402
from applications import Featherpad, Linguist  # noqa: E402
from xclient import RIGHT  # noqa: E402

INTERVAL = 0.01
BUDGET = 3.0
# The way from sample to sample, and from one turn of the spiral to the next, in pixels.
WAY, TURN = 12, 20


def processor_time(pid):
    """Milliseconds that all threads of a process have run."""
    return sum(int(path.read_text().split()[0])
               for path in pathlib.Path(f"/proc/{pid}/task").glob("*/schedstat")) / 1e6


def spiral(count, area):
    """So many points from the middle of the area on, which they never leave."""
    x, y = area.at(0.5, 0.5)
    largest = min(area.width, area.height) / 2 - 10
    angle, radius = 0.0, 10.0
    for _ in range(count):
        yield x + radius * math.cos(angle), y + radius * math.sin(angle)
        angle += WAY / radius
        radius = min(radius + TURN * WAY / radius / math.tau, largest)


def draw(screen, application, server, count):
    """Milliseconds of (application, server) a sample, for the first tenth and for the last."""
    points = list(spiral(count, application.x.geometry(application.main)))
    tenth = count // 10
    used = lambda: (processor_time(application.process.pid), processor_time(server))
    marks = {}
    screen.x.move(*points[0])
    screen.x.press(RIGHT)
    begin = time.perf_counter()
    for number, point in enumerate(points):
        if number in (tenth // 10, tenth, count - tenth):
            marks[number] = used()
        screen.x.move(*point)
        time.sleep(max(0, begin + (number + 1) * INTERVAL - time.perf_counter()))
    marks[count] = used()
    screen.screenshot(f"trace-bench-{application.process_name}")
    screen.x.release(RIGHT)

    def each(first, last):
        return [(after - before) / (last - first)
                for before, after in zip(marks[first], marks[last])]
    return each(tenth // 10, tenth), each(count - tenth, count)


def measure(kind, compositor, count):
    screen = harness.Screen(compositor=compositor)
    try:
        found = []
        for feedback in (False, True):
            home = harness.Home(screen, f"{kind.process_name}-{feedback}")
            # No letter and no timeout ends the stroke.
            home.write_preferences(drawsFeedback=feedback, gestureSize=40000,
                                   gestureTimeout=10 ** 6)
            home.write_gestures("Velmora", ("r", kind.counted))
            application = kind(screen, home, environment={}, trace=True)
            found.append(draw(screen, application, screen.server_pid, count))
            application.stop()
    finally:
        screen.close()
    for name, without, with_trace in zip(("first tenth", "last tenth"), *found):
        host, server = (after - before for before, after in zip(without, with_trace))
        verdict = "within" if host <= BUDGET else "OVER"
        print(f"  {name:<14}{without[0]:>8.2f} ms{with_trace[0]:>8.2f} ms{host:>+8.2f} ms"
              f"{server:>+8.2f} ms   {verdict} the budget of {BUDGET:.0f} ms", flush=True)


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("usage: ")[1].split("\n")[0])
    parser.add_argument("--samples", type=int, default=1000)
    count = parser.parse_args().samples
    print(f"{'a sample':16}{'without':>11}{'with':>11}{'frame':>11}{'server':>11}")
    for kind in (Featherpad, Linguist):
        for compositor in (False, True):
            print(f"{kind.process_name}, {'with' if compositor else 'without'} a compositing "
                  f"manager, {count} samples")
            measure(kind, compositor, count)


if __name__ == "__main__":
    main()
