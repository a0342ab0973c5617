"""One application of a list, run without the plug-in and with it, and what is seen of it.

An entry says how the application is started and which command of its menus opens a window; all that
is looked at needs no more than that: windows that open, pictures that change, what the trace tells.
"""

import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import time

import harness
import host_documents
import host_state
from harness import Timeout, wait_for
from xclient import MIDDLE, RIGHT, Geometry

# What is looked at, in order: (name, heading, what it says).
POINTS = (
    ("alike", "alike", "exit status, output and files are as without Velmora"),
    ("submenu", "submenu", "its first menu holds the submenu, whose About panel opens"),
    ("stroke", "stroke", "a stroke runs a menu command, and its window opens"),
    ("unknown", "unknown", "a stroke that nobody defined beeps, and nothing happens"),
    ("scroll", "scroll", "a held button scrolls by the motion of the mouse"),
    ("context", "context", "a stroke picks an item of the context menu, on something unselected"),
    ("click", "click", "a click of the stroke's button opens the menu that it opens without us"),
    ("drag", "drag", "a drag with that button and Ctrl, which is nobody's, is the application's"),
    ("alt_key", "Alt key", "a key combination with Alt runs a command"),
    ("new_key", "new key", "so does a new one with Ctrl"),
    ("taken_key", "taken key", "so does one that the application has for something else"),
    ("mnemonic", "name", "so does a typed name"),
    ("snippet", "snippet", "a stored text is typed into what has the keyboard"),
    ("panel", "panel", "a panel opens and closes"),
    ("hidden_bar", "hidden bar", "a stroke runs its command while the menu bar is hidden"),
    ("idle", "idle", "processor time while nothing happens, milliseconds a second, without → with"),
    ("memory", "memory", "memory of its own and its share of what others have too, MB, without → with"),
    ("first_window", "window", "until the first window, milliseconds, without → with"),
)

NAME = "zq"
SNIPPET = "Velmora was here "
ABOUT = "Velmora/About Velmora"
# F9, as definitions write it.
F9 = "\uf70c"

# Seconds for what a person sees at once; much more than it takes, on a machine that is busy.
SHORT = 8


class Entry:
    """One application of the list."""

    def __init__(self, table):
        self.name = table["name"]
        self.package = table.get("package", self.name)
        self.qt = table["qt"]
        self.command = table.get("command", [self.name])
        self.process = table.get("process", pathlib.Path(self.command[0]).name)
        self.document = table.get("document")
        self.title = table.get("title")
        self.first = table.get("first", "File")
        self.menu = table.get("menu")
        # An item of the context menu, and where it is opened, as fractions of the window.
        self.context = table.get("context")
        self.at = tuple(table.get("at", (0.5, 0.5)))
        self.view = tuple(table.get("view", (0.3, 0.3, 0.4, 0.4)))
        self.scrolls = table.get("scrolls", False)
        self.types = table.get("types", False)
        self.hide = table.get("hide")
        self.taken = table.get("taken", "o")
        self.bus = table.get("bus", False)
        self.files = table.get("files", {})
        self.environment = table.get("environment", {})
        self.dismiss = table.get("dismiss", [])
        self.known = table.get("known", {})
        self.note = table.get("note", "")

    def program(self):
        return shutil.which(self.command[0], path=os.environ["PATH"] + ":/usr/games")

    def prepare(self, home):
        """Writes what the application finds in the home directory; returns the command line."""
        for name, content in self.files.items():
            path = home.path / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(content)
        document = self.document and host_documents.KINDS[self.document](home.path)
        return [self.program()] + [document if part == "{document}" else part
                                   for part in self.command[1:]]

    def write_definitions(self, home):
        home.write_preferences((0, 1), mouseButton2=2, modifiers2=0, isEnabled2=True)
        ours = f"{self.first}/Velmora/"
        gestures = [("ur", self.first + "/" + ABOUT), ("rul", ours + "Define Gestures…"),
                    ("lur", ours + "Text Snippets/Word"), ("rur", ours + "Run Mnemonic…")]
        if self.menu:
            gestures.append(("dr", self.menu))
            # Of several for one item the first one is the one that it shows.
            home.write_definitions("Shortcuts", self.process, ("2j", self.menu),
                                   ("C" + F9, self.menu), ("8" + self.taken, self.menu))
            home.write_definitions("Mnemonics", self.process, (NAME, self.menu))
        if self.context:
            gestures.append(("ld", "Context Menu: " + self.context))
        if self.hide:
            gestures.append(("dlu", self.hide))
        home.write_gestures(self.process, *gestures)
        home.write_definitions("TextSnippets", "Velmora", ("Word", SNIPPET))


class Host(harness.Application):
    """The application of an entry, once its windows have come to rest."""

    def __init__(self, screen, home, entry, plugin, trace=False, environment=None):
        self.entry = entry
        started = time.monotonic()
        super().__init__(screen, home, entry.prepare(home), plugin=plugin, trace=trace,
                         environment={"PATH": os.environ["PATH"] + ":/usr/games",
                                      # Lists that are kept in the order of a table of hashes.
                                      "QT_HASH_SEED": "0",
                                      **(environment or {}), **entry.environment},
                         name=f"{entry.name}-{home.path.name}")
        self.window(limit=25)
        self.first_window = time.monotonic() - started
        self.main = None
        self.settle()

    def settle(self, quiet=1.2, limit=15):
        """Waits until no window comes any more, closes dialogs, and finds the main window."""
        seen, since, end = None, time.monotonic(), time.monotonic() + limit
        while time.monotonic() < end:
            self.check_alive()
            state = [(each, self.x.geometry(each)) for each in self.windows()]
            if state != seen:
                seen, since = state, time.monotonic()
            if time.monotonic() - since < quiet or not state:
                time.sleep(0.03)
                continue
            main = self.find_main()
            if not main:
                # Something is asked before the main window comes.
                self.x.keys(*self.entry.dismiss)
                seen = None
            others = [each for each in self.windows() if each != main and self.is_dialog(each)]
            if main and not others:
                self.main = main
                self.wait_idle()
                self.wait_drawn()
                if self.find_main() == main:
                    return self.take_keyboard()
                # Some make their window anew after a while.
                seen = None
            for each in others:
                self.x.close_window(each)
            seen = None
        raise Timeout(f"the windows do not come to rest: "
                      f"{[self.x.title(each) for each in self.windows()]}")

    def find_main(self):
        def size(window):
            place = self.x.geometry(window)
            return place.width * place.height if place else 0
        found = [each for each in self.windows()
                 if not self.entry.title or re.search(
                     self.entry.title, self.x.title(each))]
        plain = [each for each in found if not self.is_dialog(each)]
        return max(plain or found, key=size, default=None)

    def is_dialog(self, window):
        return (self.x.kind(window) in ("DIALOG", "UTILITY", "SPLASH")
                or bool(self.x.property(window, "WM_TRANSIENT_FOR")))

    def take_keyboard(self):
        with contextlib.suppress(Timeout):
            wait_for(lambda: self.x.active_window() == self.main, "the window to be active", 1)
            return
        self.x.click(*self.empty_place())
        wait_for(lambda: self.x.active_window() == self.main, "the window to be active", SHORT)

    # --- places --------------------------------------------------------------------------------

    def frame(self):
        screen = self.x.size()
        place = wait_for(lambda: self.x.geometry(self.main), "the main window", SHORT)
        left, top = max(0, place.x), max(0, place.y)
        return Geometry(left, top, min(place.x + place.width, screen.width) - left,
                        min(place.y + place.height, screen.height) - top)

    def empty_place(self):
        frame = self.frame()
        return frame.x + frame.width - 8, frame.y + 8

    def view(self):
        frame = self.frame()
        left, top, width, height = self.entry.view
        return Geometry(frame.x + int(left * frame.width), frame.y + int(top * frame.height),
                        int(width * frame.width), int(height * frame.height))

    def place(self):
        return self.frame().at(*self.entry.at)

    # --- what is seen ------------------------------------------------------------------------

    def look(self):
        """All of the main window, for changed()."""
        return self.x.picture(self.frame())

    def changed(self, before, least=120):
        """Whether more has changed than a text cursor and a tool tip's edge do."""
        now = self.look()
        if now[:2] != before[:2]:
            return True
        first, then = memoryview(before[2]), memoryview(now[2])
        rows, line, count = now[1], now[0] * 3, 0
        for row in range(rows):
            a, b = first[row * line:(row + 1) * line], then[row * line:(row + 1) * line]
            if a != b:
                count += sum(a[i] != b[i] for i in range(0, line, 3))
                if count > least:
                    return True
        return False

    def menu_at(self, place, button=RIGHT, wait=1.5):
        """Clicks, and returns the size of the menu that opens, or None. The menu is closed."""
        self.x.click(*place, button)
        with contextlib.suppress(Timeout):
            self.popup(limit=wait)
        return self.close_popups()

    def close_popups(self):
        time.sleep(0.15)
        sizes = [self.x.geometry(each) for each in self.popups()]
        for _ in range(5):
            if not self.popups():
                break
            self.x.keys("Escape")
            with contextlib.suppress(Timeout):
                count = len(self.popups())
                wait_for(lambda: len(self.popups()) < count, "a menu to close", 1)
        return (sizes[0].width, sizes[0].height) if sizes and sizes[0] else None

    def drag_of_nobody(self):
        """Drags the right button with Ctrl held; returns what menu that opens. The way leads away
        from where a menu would open, so that nothing in it is chosen."""
        view = self.view()
        self.x.move(*view.at(0.7, 0.7))
        self.x.key_down("ctrl")
        self.x.press(RIGHT)
        self.x.travel([view.at(0.7, 0.7), view.at(0.4, 0.4)], 800)
        self.x.release(RIGHT)
        self.x.key_up("ctrl")
        time.sleep(0.4)
        return self.close_popups()

    def draw(self, letters):
        view = self.view()
        leg = max(24, min(80, view.width // 3, view.height // 3))
        self.last_stroke = harness.draw(self.x, letters, view, 700, leg)

    def new_window(self, before, limit=SHORT):
        return wait_for(lambda: next((each for each in self.windows() if each not in before), None),
                        "a new window", limit)

    def close_others(self):
        """Closes what has opened beside the windows that were there at rest."""
        self.x.release_everything()
        self.close_popups()
        for _ in range(4):
            others = [each for each in self.windows()
                      if each != self.main and self.is_dialog(each)]
            if not others:
                break
            for how in (lambda: self.x.keys("Escape"), lambda: self.x.close_window(others[-1])):
                if others[-1] in self.windows():
                    how()
                    with contextlib.suppress(Timeout):
                        wait_for(lambda: others[-1] not in self.windows(), "a window to close", 1.5)
        if self.main not in self.windows():
            self.settle()
        self.take_keyboard()

    # --- what it uses ------------------------------------------------------------------------

    def processor_time(self):
        """Seconds, of the process and the threads in it."""
        fields = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def wait_idle(self, limit=10):
        """Waits while it is busy, as some are with a document after their window has come."""
        end = time.monotonic() + limit
        while time.monotonic() < end:
            before = self.processor_time()
            time.sleep(0.5)
            if self.processor_time() - before < 0.2:
                return

    def wait_drawn(self, limit=10):
        """Waits while the window is empty: some look for other programs before they go on."""
        with contextlib.suppress(Timeout, ValueError):
            wait_for(lambda: len(set(self.look()[2][::997])) > 3, "the window to be drawn", limit)

    def idle(self, seconds=3):
        """Milliseconds of processor time a second, while nothing happens."""
        self.x.move(self.x.size().width - 1, 0)
        time.sleep(0.7)
        before = self.processor_time()
        time.sleep(seconds)
        return (self.processor_time() - before) * 1000 / seconds

    def memory(self):
        """MB; what several processes share counts in parts."""
        text = pathlib.Path(f"/proc/{self.process.pid}/smaps_rollup").read_text()
        return next(int(line.split()[1]) for line in text.splitlines()
                    if line.startswith("Pss:")) / 1024


def quiet_run(screen, entry, name, plugin, environment):
    """Starts it, looks, clicks twice, and closes it: as much as must be the same with us."""
    home = harness.Home(screen, name)
    entry.write_definitions(home)
    host = Host(screen, home, entry, plugin, environment=environment)
    try:
        found = {"first_window": host.first_window * 1000, "idle": host.idle(),
                 "memory": host.memory()}
        found["click"] = host.menu_at(host.place())
        found["drag"] = host.drag_of_nobody()
        host.close_others()
        found["status"] = end(host)
        found["output"] = host_state.output(host.output(), home.path)
        found["files"] = host_state.files(home.path)
        return found
    finally:
        screen.x.release_everything()
        host.stop()
        try:
            wait_for(lambda: not screen.x.managed_windows(), "the windows to go", SHORT)
        except Timeout as timeout:
            left = [(screen.x.title(each), screen.x.pid(each))
                    for each in screen.x.managed_windows()]
            raise Timeout(f"{timeout}; there are {left}, the process was {host.process.pid}") from None


def end(host):
    """Closes the window as its button does. Returns the exit status or what happens instead."""
    host.x.close_window(host.main)
    try:
        return host.wait_exit(limit=8)
    except Timeout:
        left = [host.x.title(each) for each in host.windows()]
        return f"stays, with {len(left)} windows"


class Session:
    """The probes of an application with the plug-in, in one run of it."""

    def __init__(self, screen, entry, environment, pictures):
        self.screen, self.entry, self.pictures = screen, entry, pictures
        self.environment = environment
        self.cells, self.runs, self.host = {}, 0, None

    def start(self):
        home = harness.Home(self.screen, f"used-{self.runs}")
        self.runs += 1
        self.entry.write_definitions(home)
        self.host = Host(self.screen, home, self.entry, True, trace=True,
                         environment=self.environment)
        if self.entry.first:
            self.host.wait_text("^launched", limit=SHORT)

    def probe(self, name):
        """Runs one probe, and puts all right again whatever came of it."""
        try:
            if self.host is None or self.host.process.poll() is not None:
                self.start()
            value = getattr(self, name)()
            self.cells[name] = {"value": "-" if value is None else "yes"}
        except (AssertionError, ValueError, OSError) as problem:
            self.cells[name] = {"value": "no", "note": str(problem)}
            self.keep_evidence(name)
        if self.host is None:
            return
        status = self.host.process.poll()
        if status is not None:
            self.cells[name] = {"value": "no", "note": f"the application has ended: {status}"}
            return
        try:
            self.host.close_others()
        except (AssertionError, OSError):
            self.stop()

    def keep_evidence(self, name):
        """What the screen and the log show of a probe that failed."""
        path = self.pictures / f"{self.entry.name}-{name}"
        with contextlib.suppress(ValueError):
            self.screen.x.screenshot(path.with_suffix(".png"))
        if self.host:
            path.with_suffix(".txt").write_text("\n".join(map(str, self.host.lines()[-40:])))

    def stop(self):
        if self.host:
            self.screen.x.release_everything()
            self.host.stop()
            self.host = None

    # --- the probes: None says that the point does not apply ------------------------------------

    def runs_menu(self, action):
        """Does it, and fails unless the entry's command runs and a window opens."""
        if not self.entry.menu:
            return None
        host = self.host
        mark, before = host.mark(), host.windows()
        action()
        host.wait_text("^ran ", mark, SHORT)
        commands = host.commands(mark)
        if commands != [self.entry.menu]:
            raise Timeout(f"ran {commands}")
        host.new_window(before)
        return True

    def opens_ours(self, letters, title):
        if not self.entry.first:
            return None
        host = self.host
        host.draw(letters)
        window = host.window(title, SHORT)
        time.sleep(0.3)
        host.x.close_window(window)
        host.no_window(title, SHORT)
        return True

    def submenu(self):
        return self.opens_ours("ur", "^About Velmora")

    def stroke(self):
        return self.runs_menu(lambda: self.host.draw("dr"))

    def unknown(self):
        if not self.entry.first:
            return None
        mark, before = self.host.mark(), self.host.windows()
        self.host.draw("ud")
        wait_for(lambda: self.host.beeps(mark), "the beep", SHORT)
        assert not self.host.commands(mark), f"ran {self.host.commands(mark)}"
        time.sleep(0.3)
        assert not self.host.popups(), "a menu opened"
        assert self.host.windows() == before, "a window opened"
        return True

    def context(self):
        if not self.entry.context:
            return None
        host = self.host
        x, y = host.place()
        # What is under the pointer in the end is lit before, too.
        host.x.move(x - 50, y + 50)
        time.sleep(0.4)
        mark, windows, before = host.mark(), host.windows(), host.look()
        harness.draw(host.x, "ld", Geometry(x - 50, y, 50, 50), 700, 50)
        host.wait_text("^gesture", mark, SHORT)
        # Where the application itself runs the item, the trace does not tell.
        wait_for(lambda: host.beeps(mark) or host.windows() != windows or host.changed(before, 60),
                 "an effect that is seen", SHORT)
        assert not host.beeps(mark), "a beep"
        assert not host.popups(), "the menu stays"
        return True

    def new_key(self):
        return self.runs_menu(lambda: self.host.x.keys("ctrl+shift+F9"))

    def taken_key(self):
        return self.runs_menu(lambda: self.host.x.keys("ctrl+" + self.entry.taken))

    def alt_key(self):
        # The application's own shortcuts may run it, of which the trace does not tell.
        if not self.entry.menu:
            return None
        before = self.host.windows()
        self.host.x.keys("alt+j")
        self.host.new_window(before)
        return True

    def mnemonic(self):
        if not self.entry.menu:
            return None
        host = self.host
        mark, before = host.mark(), host.windows()
        host.draw("rur")
        panel = host.window("^Run Mnemonic", SHORT)
        wait_for(lambda: host.x.active_window() == panel, "the panel to be active", SHORT)
        host.x.keys(*NAME)
        host.wait_text("^ran ", mark, SHORT)
        host.no_window("^Run Mnemonic", SHORT)
        host.new_window(before)
        return True

    def snippet(self):
        if not self.entry.types:
            return None
        host = self.host
        host.x.click(*host.place())
        time.sleep(0.4)
        before = host.look()
        host.draw("lur")
        wait_for(lambda: host.changed(before), "the text", SHORT)
        return True

    def scroll(self):
        if not self.entry.scrolls:
            return None
        host = self.host
        host.x.move(*host.place())
        time.sleep(0.4)
        before = host.look()
        host.x.press(MIDDLE)
        for _ in range(6):
            host.x.move_by(0, 20)
            time.sleep(0.03)
        wait_for(lambda: host.changed(before, 1000), "the view to scroll", SHORT)
        host.x.release(MIDDLE)
        wait_for(lambda: host.x.pointer()[:2] == host.place(), "the pointer where it was", SHORT)
        return True

    def panel(self):
        return self.opens_ours("rul", "^Define Gestures")

    def hidden_bar(self):
        if not self.entry.hide:
            return None
        host = self.host
        mark, before = host.mark(), host.look()
        host.draw("dlu")
        host.wait_text("^ran ", mark, SHORT)
        wait_for(lambda: host.changed(before, 600), "the menu bar to go", SHORT)
        host.close_others()
        return self.runs_menu(lambda: host.draw("dr"))


def look_at(entry, pictures):
    """All cells of the entry: {point: {"value": "yes", "no" or "-", "note": why, "text": shown}}."""
    screen = harness.Screen()
    try:
        environment = session_bus(screen) if entry.bus else {}
        without = quiet_run(screen, entry, "home-1", False, environment)
        again = quiet_run(screen, entry, "home-2", False, environment)
        with_us = [quiet_run(screen, entry, "home-3", True, environment)]
        cells = compared(without, again, with_us)
        if any(cell["value"] == "no" for cell in cells.values()):
            # What is so only once is chance.
            with_us.append(quiet_run(screen, entry, "home-4", True, environment))
            cells = compared(without, again, with_us)
        session = Session(screen, entry, environment, pictures)
        for name, _, _ in POINTS:
            if name not in cells:
                session.probe(name)
        session.stop()
        return {**cells, **session.cells}
    finally:
        screen.close()


def compared(without, again, with_us):
    """The cells of two runs without us and of one or more with us, of which the best counts."""
    cells = {}

    def cell(name, problems, text=None):
        cells[name] = {"value": "no" if problems else "yes"}
        if problems:
            cells[name]["note"] = "; ".join(problems)[:1500]
        if text:
            cells[name]["text"] = text

    cell("alike", min((unlike(without, again, each) for each in with_us), key=len))
    for name in ("click", "drag"):
        expected = {without[name], again[name]}
        seen = [each[name] for each in with_us]
        cell(name, [] if expected & set(seen) else [
            f"a menu of {seen[0]} pixels, without us {without[name]}"],
             "✔ none" if expected == {None} and name == "click" else None)

    def number(name, most):
        plain, ours = min(without[name], again[name]), min(each[name] for each in with_us)
        cell(name, [f"{plain:.0f} became {ours:.0f}"] if ours > most(plain) else [],
             f"{plain:.0f} → {ours:.0f}")
    number("idle", lambda plain: plain * 1.25 + 8)
    number("memory", lambda plain: plain + 16)
    number("first_window", lambda plain: plain * 1.25 + 100)
    return cells


def unlike(without, again, with_us):
    """What the run with us leaves otherwise, as lines."""
    problems = []
    if with_us["status"] not in (without["status"], again["status"]):
        problems.append(f"ends with {with_us['status']} instead of {without['status']}")
    problems += [f"says {line!r}" for line in host_state.said_only_with_us(
        without["output"], again["output"], with_us["output"])]
    return problems + host_state.differences(without["files"], again["files"], with_us["files"])


def session_bus(screen):
    """A bus of the screen's own, for applications that end without one."""
    environment = screen.environment(screen.directory / "bus")
    environment.pop("DBUS_SESSION_BUS_ADDRESS")
    bus = harness._start(["dbus-daemon", "--session", "--nofork", "--print-address=1"], environment,
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    screen._own.append(bus)
    return {"DBUS_SESSION_BUS_ADDRESS": bus.stdout.readline().strip()}


def menus(entry):
    """The menu bar as assistive tools see it, and the context menu at the entry's place, as text."""
    import accessible
    screen = harness.Screen()
    try:
        access = accessible.Accessibility(screen)
        host = Host(screen, harness.Home(screen), entry, False, environment=access.environment())
        title = re.escape(screen.x.title(host.main))
        # Some call the window otherwise there.
        nodes = access.nodes(f"^{title}$") or access.nodes("") or []
        lines = [f"window {screen.x.title(host.main)!r} {host.frame()}"]
        bar = next((i for i, each in enumerate(nodes) if each.role == "menu bar"), None)
        for node in nodes[bar + 1:] if bar is not None else []:
            if node.depth <= nodes[bar].depth:
                break
            if node.name and node.role != "separator":
                lines.append("  " * (node.depth - nodes[bar].depth) + node.name)
        screen.x.click(*host.place(), RIGHT)
        with contextlib.suppress(Timeout):
            host.popup(limit=3)
            time.sleep(0.3)
        harness.PICTURES.mkdir(parents=True, exist_ok=True)
        lines.append(f"picture: {screen.screenshot('menus-' + entry.name)}")
        return "\n".join(lines)
    finally:
        screen.close()
