#!/usr/bin/env python3
"""How long a panel takes to open in real applications: from the key to the picture that stays.

With no definition as the baseline, 1,000 (at most 150 ms) and 10,000 (at most 500 ms).
"""

import pathlib
import statistics
import sys
import time

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "desktop"))

import applications  # noqa: E402
import harness  # noqa: E402

ROUNDS = 7
TITLE = "^Define Mnemonics"


def open_once(application):
    """Seconds until the panel is there, drawn."""
    x = application.x
    begin = time.monotonic()
    x.keys("ctrl+j")
    panel = application.window(TITLE)
    before, changed = None, begin
    while time.monotonic() < changed + 0.15:
        now = x.picture(x.geometry(panel))
        if now != before:
            before, changed = now, time.monotonic()
    x.keys("Escape")
    application.no_window(TITLE)
    return changed - begin


def main():
    for kind in (applications.Featherpad, applications.Linguist):
        medians = []
        for count in (0, 1000, 10000):
            screen = harness.Screen()
            home = harness.Home(screen)
            home.write_preferences()
            home.write_definitions("Mnemonics", kind.process_name, *(
                (f"name {number}", f"File/Item {number}") for number in range(count)))
            home.write_definitions("Shortcuts", kind.process_name, (
                "8j", f"{kind.first_menu}/Velmora/Define Mnemonics…"))
            application = kind(screen, home)
            times = [1000 * open_once(application) for _ in range(ROUNDS)]
            medians.append(statistics.median(times))
            print(f"{kind.process_name:12} {count:6} definitions: median {medians[-1]:6.1f} ms, "
                  f"slowest {max(times):6.1f} ms, {medians[-1] / medians[0]:.2f} of none", flush=True)
            application.stop()
            screen.close()


if __name__ == "__main__":
    main()
