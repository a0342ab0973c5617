#!/usr/bin/env python3
"""How long two real applications take to start, with the plug-in and without.

usage: startup.py [--pairs N]

Measures alternating pairs, on an X server without a window manager: the time from the start of the
process to its first window on the screen, and the processor time that the process has used once it
rests. The medians are compared, and so are the differences within the pairs. The budget is the
greater of 5 ms and 3 % of the time to the first window.
"""

import argparse
import pathlib
import statistics
import sys
import time

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "desktop"))

import harness  # noqa: E402
from applications import Featherpad, Linguist  # noqa: E402


def processor_time(pid):
    """Milliseconds that all threads of a process have run."""
    return sum(int(path.read_text().split()[0])
               for path in pathlib.Path(f"/proc/{pid}/task").glob("*/schedstat")) / 1e6


def rest(pid):
    """Waits until a process does nothing; returns the processor time that it has used."""
    used, since = processor_time(pid), time.monotonic()
    while time.monotonic() - since < 0.15:
        time.sleep(0.01)
        now = processor_time(pid)
        # A blinking text cursor is rest.
        if now - used > 0.5:
            used, since = now, time.monotonic()
    return used


def start(screen, home, command, plugin):
    """(milliseconds to the first window, milliseconds of processor time)"""
    watch = screen.watch()
    begin = time.perf_counter()
    application = harness.Application(screen, home, command, plugin=plugin, trace=False)
    if not watch.wait_for_window(harness.LIMIT):
        sys.exit(f"startup: no window of {command[0]}\n{application.output()}")
    shown = (time.perf_counter() - begin) * 1000
    used = rest(application.process.pid)
    application.stop()
    watch.close()
    return shown, used


def report(title, pairs, budget=None):
    without, with_plugin = (statistics.median(column) for column in zip(*pairs))
    difference = statistics.median(after - before for before, after in pairs)
    line = (f"  {title:<20}{without:>9.1f} ms{with_plugin:>9.1f} ms{difference:>+9.1f} ms"
            f"{with_plugin / without:>9.3f}")
    if budget:
        allowed = max(5, without * 0.03)
        line += f"   {'within' if difference <= allowed else 'OVER'} the budget of {allowed:.1f} ms"
    print(line, flush=True)


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("usage: ")[1].split("\n")[0])
    parser.add_argument("--pairs", type=int, default=15)
    count = parser.parse_args().pairs
    screen = harness.Screen(window_manager=False)
    try:
        print(f"{'':22}{'without':>12}{'with':>12}{'difference':>12}{'ratio':>9}")
        for kind in (Featherpad, Linguist):
            home = harness.Home(screen, kind.process_name)
            home.write_preferences()
            home.write_gestures("Velmora", ("r", kind.counted), ("d", kind.dialog))
            command = kind.prepare(home)
            for plugin in (False, True):
                start(screen, home, command, plugin)
            shown, used = [], []
            for number in range(count):
                order = (False, True) if number % 2 else (True, False)
                results = {plugin: start(screen, home, command, plugin) for plugin in order}
                shown.append((results[False][0], results[True][0]))
                used.append((results[False][1], results[True][1]))
            print(f"{kind.process_name}, {count} pairs, medians")
            report("first window", shown, budget=True)
            report("processor time", used)
    finally:
        screen.close()


if __name__ == "__main__":
    main()
