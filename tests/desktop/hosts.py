"""Small host programs that do what they are told and say what happens in them."""

import harness
from harness import BUILD, wait_for


class ToldHost(harness.Application):
    """The program host-NAME for one version of Qt, once its first window is up and active."""

    def __init__(self, screen, home, name, qt, *arguments, environment=None):
        super().__init__(screen, home, [BUILD / f"tests/desktop/host-{name}-qt{qt}", *arguments],
                         stdin=True, environment=environment, name=f"{name}-{home.path.name}")
        self.wait_says("ready 1")
        self.wait_ready()
        self.windows_by_number = {1: self.window("Window 1")}
        self.activate_window(1)
        # By then the host knows where its window is, and can be asked for places in it.
        self.wait_text("^became active$")

    def said(self):
        return [line for line in self.output().splitlines() if not line.startswith("velmora: ")]

    def wait_says(self, line, count=1):
        wait_for(lambda: self.said().count(line) >= count, f"{line!r} from the host")

    def tell(self, line):
        """Tells the host to do something, and waits until it has. Returns what it said to that."""
        done = f"did {line}"
        before = self.said()
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()
        self.wait_says(done, before.count(done) + 1)
        return self.said()[len(before):-1]

    def open_window(self, number):
        self.tell("window")
        self.wait_says(f"ready {number}")
        self.windows_by_number[number] = self.window(f"Window {number}")
        wait_for(lambda: self.x.active_window() == self.windows_by_number[number],
                 "the new window to be active")

    def activate_window(self, number):
        """Clicks beside the menus of its bar, unless it is active."""
        window = self.windows_by_number[number]
        if self.x.active_window() != window:
            place = self.x.geometry(window)
            self.x.click(place.x + place.width - 5, place.y + 5)
        wait_for(lambda: self.x.active_window() == window, "the window to be active")
