"""What the tests on real applications share: a private X server, applications on it, their log.

Nothing here sleeps to let something happen: everything waits for a condition, with a limit.
"""

import atexit
import contextlib
import functools
import os
import pathlib
import plistlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import xclient

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("VELMORA_BUILD") or ROOT / "build").resolve()
PICTURES = BUILD / "desktop"
VELMORA = BUILD / "velmora"

# Enough for a machine that compiles meanwhile; nothing waits that long when all is well.
LIMIT = 20
SCREEN = xclient.Geometry(0, 0, 1280, 1024)

# A window manager that leaves buttons and keys to the windows: it binds nothing but the click that
# makes a window active.
OPENBOX = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse><focusLast>yes</focusLast></focus>
  <placement><policy>Smart</policy></placement>
  <theme><name>Clearlooks</name></theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <keyboard><chainQuitKey>C-A-g</chainQuitKey></keyboard>
  <mouse>
    <dragThreshold>8</dragThreshold><doubleClickTime>200</doubleClickTime>
    <context name="Client">
      <mousebind button="Left" action="Press">
        <action name="Focus"/><action name="Raise"/>
      </mousebind>
    </context>
    <context name="Titlebar">
      <mousebind button="Left" action="Press">
        <action name="Focus"/><action name="Raise"/>
      </mousebind>
    </context>
  </mouse>
  <menu/>
  <applications/>
</openbox_config>
"""


class Timeout(AssertionError):
    """What was waited for did not come."""


def wait_for(condition, what, limit=LIMIT, interval=0.004):
    """Returns the condition's first true value; fails with `what` when none comes in time."""
    deadline = time.monotonic() + limit
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise Timeout(f"waited {limit} s in vain for {what}")
        time.sleep(interval)


def stays(condition, seconds):
    """Whether the condition holds at every look for that long: for what must not happen."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if not condition():
            return False
        time.sleep(0.01)
    return True


_processes, _directories = [], []


def _end_everything(*_):
    for process in reversed(_processes):
        if process.poll() is None:
            process.kill()
            process.wait()
    for directory in _directories:
        shutil.rmtree(directory, ignore_errors=True)


atexit.register(_end_everything)
for _number in (signal.SIGTERM, signal.SIGHUP):
    signal.signal(_number, lambda number, frame: sys.exit(128 + number))


def _start(command, environment, **options):
    options.setdefault("stdin", subprocess.DEVNULL)
    process = subprocess.Popen(command, env=environment, start_new_session=True, **options)
    _processes.append(process)
    return process


class Screen:
    """An X server with a window manager and a scratch home directory, for one test or several.

    With a display's name it uses that one as it is, and its window manager.
    """

    def __init__(self, display=None, window_manager=True, compositor=False, size=SCREEN):
        self.directory = pathlib.Path(tempfile.mkdtemp(prefix="velmora-desktop-"))
        _directories.append(self.directory)
        self._own = []
        self._size = size
        self.is_private = display is None
        try:
            if display is None:
                display = self._start_server()
            self.name = display
            self.x = xclient.Display(display)
            if self.is_private:
                self.x.switch_acceleration_off()
            if self.is_private and window_manager:
                self._start_window_manager()
            if self.is_private and compositor:
                self.start_compositor()
        except BaseException:
            self.close()
            raise

    def environment(self, home):
        """What applications run in: nothing of the person's who runs this but the path."""
        kept = {name: os.environ[name] for name in (
            "PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "XAUTHORITY")
            if name in os.environ}
        folders = {name: str(home / folder) for name, folder in (
            ("XDG_CONFIG_HOME", ".config"), ("XDG_CACHE_HOME", ".cache"),
            ("XDG_DATA_HOME", ".local/share"), ("XDG_STATE_HOME", ".local/state"),
            ("XDG_RUNTIME_DIR", ".runtime"))}
        for folder in folders.values():
            os.makedirs(folder, mode=0o700, exist_ok=True)
        # Whatever opens an address would start one of the person's programs.
        opener = home / "programs" / "xdg-open"
        opener.parent.mkdir(exist_ok=True)
        if not opener.exists():
            opener.write_text("#!/bin/sh\n")
            opener.chmod(0o755)
        kept["PATH"] = f"{opener.parent}:{kept['PATH']}"
        return {**kept, **folders, "HOME": str(home), "DISPLAY": self.name, "LANG": "C.UTF-8",
                "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "xcb", "NO_AT_BRIDGE": "1",
                "QT_ACCESSIBILITY": "0", "QT_SCALE_FACTOR": "1",
                # No services: an address where nobody listens keeps them from being started.
                "DBUS_SESSION_BUS_ADDRESS": f"unix:path={home}/.runtime/none"}

    def _start_server(self):
        reader, writer = os.pipe()
        with open(self.directory / "xvfb.log", "wb") as log:
            server = _start(["Xvfb", "-displayfd", str(writer), "-screen", "0",
                             f"{self._size.width}x{self._size.height}x24", "-nolisten", "tcp", "-noreset"],
                            os.environ, stdout=log, stderr=log, pass_fds=[writer])
        self._own.append(server)
        self.server_pid = server.pid
        os.close(writer)
        with os.fdopen(reader) as stream:
            number = stream.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start:\n" + (self.directory / "xvfb.log").read_text())
        return f":{number}"

    def _start_window_manager(self):
        home = self.directory / "window-manager"
        environment = self.environment(home)
        configuration = self.directory / "openbox.xml"
        configuration.write_text(OPENBOX)
        with open(self.directory / "openbox.log", "wb") as log:
            self._own.append(_start(["openbox", "--sm-disable", "--config-file", configuration],
                                    environment, stdout=log, stderr=log))
        wait_for(lambda: self.x.property(self.x.root, "_NET_SUPPORTING_WM_CHECK"),
                 "the window manager")

    def start_compositor(self):
        """From here on windows can be translucent, until the process that is returned ends."""
        with open(self.directory / "compositor.log", "wb") as log:
            process = _start(["xcompmgr"], self.environment(self.directory / "compositor"),
                             stdout=log, stderr=log)
        self._own.append(process)
        wait_for(lambda: self.x.has_owner("_NET_WM_CM_S0"),
                 "the compositing manager")
        return process

    def split(self):
        """Makes two screens of one, side by side, of which the right one is the main one."""
        width, height = self._size.width // 2, self._size.height
        for name, left, output in (("*right", width, "screen"), ("left", 0, "none")):
            subprocess.run(["xrandr", "-d", self.name, "--setmonitor", name,
                            f"{width}/340x{height}/270+{left}+0", output],
                           check=True, stdout=subprocess.DEVNULL)

    def watch(self):
        return xclient.WindowWatch(self.name)

    def screenshot(self, name):
        PICTURES.mkdir(parents=True, exist_ok=True)
        return self.x.screenshot(PICTURES / f"{name}.png")

    def close(self):
        if hasattr(self, "x"):
            self.x.close()
        for process in reversed(self._own):
            process.terminate()
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.directory, ignore_errors=True)


class Home:
    """A scratch home directory with the settings in it."""

    def __init__(self, screen, name="home"):
        self.path = screen.directory / name
        self.settings = self.path / "Library" / "Application Support" / "Velmora"
        self.settings.mkdir(parents=True)

    def preferences_file(self):
        return self.settings / "VelmoraDefaults.plist"

    def write_preferences(self, *slots, **values):
        """slots: (modifier mask, button) each, as the file has them: button 1 is a person's right
        one, 2 the middle one, -1 none. Without any, the right button draws strokes."""
        content = {}
        for slot, (modifiers, button) in enumerate(slots or [(0, 1)]):
            content.update({f"modifiers{slot}": modifiers, f"mouseButton{slot}": button,
                            f"isEnabled{slot}": True})
        write_file(self.preferences_file(), plistlib.dumps({**content, **values}))

    def gestures_file(self, process="Velmora"):
        return self.definitions_file("Gestures", process)

    def definitions_file(self, component, process="Velmora"):
        """The own file of a process, or the one that all share."""
        return self.settings / f"{process}{component}.plist"

    def write_gestures(self, process, *definitions):
        self.write_definitions("Gestures", process, *definitions)

    def write_definitions(self, component, process, *definitions):
        """definitions: (trigger, path) or (trigger, path, selector) each, in order."""
        # In binary form, since Python's XML takes no control characters.
        write_file(self.definitions_file(component, process), plistlib.dumps([
            {"Trigger": trigger, "Path": path, "Selector": rest[0] if rest else "",
             "isGlobal": process == "Velmora"}
            for trigger, path, *rest in definitions], fmt=plistlib.FMT_BINARY))


def write_file(path, content):
    """Replaces a file as an editor would: aside, then in place."""
    aside = path.with_name(path.name + ".new")
    aside.write_bytes(content)
    os.replace(aside, path)


class Line:
    """One line of the log: when (seconds of the process's clock), who, what."""

    def __init__(self, time, process, text):
        self.time, self.process, self.text = time, process, text

    def __repr__(self):
        return f"{self.time:.4f} {self.process}: {self.text}"


class Application:
    """A running application, with the plug-in or without."""

    def __init__(self, screen, home, command, plugin=True, environment=None, name="application",
                 trace=True, stdin=False, stderr=None):
        self.screen, self.x, self.home = screen, screen.x, home
        self.log_file = screen.directory / f"{name}.log"
        self.output_file = screen.directory / f"{name}.out"
        for path in (self.log_file, self.output_file):
            path.unlink(missing_ok=True)
        settings = screen.environment(home.path)
        command = [str(part) for part in command]
        if plugin:
            settings.update(VELMORA_LOG=str(self.log_file), VELMORA_TRACE="1" if trace else "0")
            command = [str(VELMORA), "run"] + command
        settings.update(environment or {})
        self.command = command
        with open(self.output_file, "wb") as output:
            self.process = _start(command, settings, stdout=output, cwd=home.path,
                                  stderr=output if stderr is None else stderr,
                                  stdin=subprocess.PIPE if stdin else subprocess.DEVNULL)

    # --- windows -------------------------------------------------------------------------------

    def windows(self):
        """Its windows, the topmost last."""
        return [window for window in self.x.managed_windows()
                if self.x.pid(window) == self.process.pid]

    def window(self, title=None, limit=LIMIT):
        """Waits for a window whose title matches the pattern."""
        def find():
            self.check_alive()
            for window in reversed(self.windows()):
                if title is None or re.search(title, self.x.title(window)):
                    return window
            return None
        return wait_for(find, f"a window called {title!r} of {self.command[-1]}", limit)

    def no_window(self, title, limit=LIMIT):
        wait_for(lambda: not [window for window in self.windows()
                              if re.search(title, self.x.title(window))],
                 f"the window {title!r} to go", limit)

    def is_active(self):
        return self.x.active_window() in self.windows()

    def activate(self, window, at=(0.5, 0.98)):
        """Clicks into a window, at a place where a click does nothing else, until it is active."""
        def is_active():
            return self.x.active_window() == window

        for _ in range(4):
            if is_active():
                return
            # The window may still be on its way when it is clicked.
            self.x.click(*self.x.geometry(window).at(*at))
            with contextlib.suppress(Timeout):
                wait_for(is_active, "the window to be active", LIMIT / 4)
        wait_for(is_active, "the window to be active", LIMIT / 4)

    def popup(self, limit=LIMIT):
        """Waits for a menu of the application, and that it is drawn; returns the topmost."""
        return wait_for(lambda: (self.popups() or [None])[-1], "a menu", limit)

    def popups(self):
        """Its menus on the screen, the topmost last."""
        def is_shown(window):
            place = self.x.geometry(window)
            return place and place.intersects(SCREEN)
        return [window for window in self.x.popups()
                if self.x.pid(window) == self.process.pid and is_shown(window)
                and self.x.kind(window) in ("POPUP_MENU", "DROPDOWN_MENU", "MENU", "NORMAL")]

    def no_popups(self, limit=LIMIT):
        wait_for(lambda: not self.popups(), "the menus to go", limit)

    # --- the log -------------------------------------------------------------------------------

    def lines(self, since=0):
        """Complete lines of the log from a mark on."""
        try:
            text = self.log_file.read_bytes()[since:].decode("utf-8", "replace")
        except FileNotFoundError:
            return []
        found = []
        for line in text.split("\n")[:-1]:
            match = re.match(r"([\d.]+) (\S+\[\d+\]): (.*)", line)
            if match:
                found.append(Line(float(match[1]), match[2], match[3]))
        return found

    def mark(self):
        """The place in the log from which on lines() shall read."""
        try:
            return self.log_file.stat().st_size
        except FileNotFoundError:
            return 0

    def texts(self, since=0):
        return [line.text for line in self.lines(since)]

    def commands(self, since=0):
        """The commands that ran, by path."""
        return [match[1] for match in (re.match(r'ran "(.*)"( [\d.]+ ms after the release)?$', text)
                                       for text in self.texts(since)) if match]

    def delays(self, since=0):
        """Milliseconds from the button's release to each command that followed one."""
        return [float(match[1]) for match in (re.match(r'ran ".*" ([\d.]+) ms after', text)
                                              for text in self.texts(since)) if match]

    def gestures(self, since=0):
        """The gesture strings that were recognised."""
        return [match[1] for match in (re.match(r'gesture "(\w*)"', text)
                                       for text in self.texts(since)) if match]

    def beeps(self, since=0):
        return self.texts(since).count("beep")

    def wait_text(self, pattern, since=0, limit=LIMIT, interval=0.004):
        """Waits for a line of the log."""
        return wait_for(lambda: [text for text in self.texts(since) if re.search(pattern, text)],
                        f"{pattern!r} in the log", limit, interval)[0]

    def wait_ready(self):
        """Waits until the plug-in watches the events of the application."""
        self.window()
        self.wait_text("^launched")

    # --- the process ---------------------------------------------------------------------------

    def check_alive(self):
        status = self.process.poll()
        if status is not None:
            raise AssertionError(f"{self.command[-1]} ended with status {status}")

    def wait_exit(self, limit=LIMIT):
        try:
            return self.process.wait(limit)
        except subprocess.TimeoutExpired:
            raise Timeout(f"{self.command[-1]} did not end within {limit} s") from None

    def output(self):
        return self.output_file.read_text(errors="replace")

    def stop(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        if self.process.stdin:
            self.process.stdin.close()


def stroke_points(letters, area, leg):
    """The corners of a stroke, start and end included, that stands in the middle of an area."""
    x = y = 0
    points = [(0, 0)]
    for letter in letters:
        across, down = {"u": (0, -1), "d": (0, 1), "l": (-1, 0), "r": (1, 0)}[letter]
        x, y = x + across * leg, y + down * leg
        points.append((x, y))
    left, right = min(x for x, _ in points), max(x for x, _ in points)
    top, bottom = min(y for _, y in points), max(y for _, y in points)
    if right - left > area.width or bottom - top > area.height:
        raise ValueError(f"no room for {letters} with legs of {leg} pixels in {area}")
    offset_x = area.x + (area.width - right - left) // 2
    offset_y = area.y + (area.height - bottom - top) // 2
    return [(x + offset_x, y + offset_y) for x, y in points]


def draw(display, letters, area, speed=800, leg=100, button=xclient.RIGHT):
    """Draws a stroke with a held button, in pixels a second, and returns its corners."""
    points = stroke_points(letters, area, leg)
    display.move(*points[0])
    display.press(button)
    display.travel(points, speed)
    display.release(button)
    return points


def _reporting(test):
    @functools.wraps(test)
    def run(self, *arguments):
        try:
            test(self, *arguments)
        except BaseException:
            self.report()
            raise
        name = self.id().split(".", 1)[-1]
        (PICTURES / f"failed-{name}.png").unlink(missing_ok=True)
        self.screen.screenshot(name)
    return run


class DesktopTest(unittest.TestCase):
    """Tests that share a screen. Each has a home directory of its own, and its applications end
    with it. It leaves a picture of the screen, and prints what they said when it fails."""

    def __init_subclass__(cls, **options):
        super().__init_subclass__(**options)
        for name in dir(cls):
            value = getattr(cls, name)
            if name.startswith("test") and not hasattr(value, "__wrapped__"):
                setattr(cls, name, _reporting(value))

    @classmethod
    def setUpClass(cls):
        cls.screen = Screen()
        cls.addClassCleanup(cls.screen.close)
        cls.x = cls.screen.x

    def setUp(self):
        self.home = Home(self.screen, f"home-{self._testMethodName}")
        self.applications = []
        self.addCleanup(self.end_applications)

    @contextlib.contextmanager
    def subTest(self, *arguments, **parameters):
        with super().subTest(*arguments, **parameters):
            try:
                yield
            except BaseException:
                self.report()
                raise

    def start(self, kind, *arguments, **options):
        application = kind(self.screen, self.home, *arguments, **options)
        self.applications.append(application)
        return application

    def end_applications(self):
        """So that the next one has the screen for itself."""
        self.x.release_everything()
        for application in self.applications:
            application.stop()
        wait_for(lambda: not self.x.managed_windows() and not self.x.popups(),
                 "the windows of ended applications to go")
        # Where no window opens.
        self.x.move(SCREEN.width - 1, 0)

    def report(self):
        picture = self.screen.screenshot(f"failed-{self.id().split('.', 1)[-1]}")
        print(f"\n--- {self.id()}: the screen is in {picture}", file=sys.stderr)
        for application in self.applications:
            name = pathlib.Path(application.command[-1]).name
            print(f"--- {name}: exit status {application.process.poll()}", file=sys.stderr)
            for line in application.output().splitlines()[-40:]:
                print(f"{name} | {line}", file=sys.stderr)
            for line in application.lines()[-60:]:
                print(f"{name} log | {line}", file=sys.stderr)

    def assertNothingHeld(self):
        """No button is down, and no modifier key."""
        self.assertEqual(self.x.pointer()[2] & xclient.HELD_MASK, 0, "a button or key is held")
