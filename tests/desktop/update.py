#!/usr/bin/env python3
"""The check for updates in a real application, with a web server of this machine behind it."""

import http.server
import os
import pathlib
import plistlib
import threading
import time
import unittest

import accessible
import harness
import hosts
from harness import wait_for

ALERT = "^Alert"
CURRENT = "^Your Velmora version is up to date!"
UNREACHABLE = "Can not connect to Velmora site!"
PAGE = "http://127.0.0.1:9/new%20version.html?from=1.04"


def described(form=plistlib.FMT_XML, **values):
    return plistlib.dumps(values, fmt=form)


# What the server answers: a status and the body. None: nothing at all.
NEWER = {
    "a minor version": (200, described(VersionMajor=1, VersionMinor=5, UpdateURL=PAGE)),
    "a major version, in binary": (200, described(plistlib.FMT_BINARY, VersionMajor=2,
                                                  VersionMinor=0, UpdateURL=PAGE)),
    "digits as text": (200, b'{ VersionMajor = "1"; VersionMinor = "12"; UpdateURL = "%s"; }'
                       % PAGE.encode()),
    "a long one of no stated length":
        (200, described(VersionMajor=2, UpdateURL=PAGE, More="x" * 900_000), False),
    "moved": (302, b"/elsewhere.plist"),
}
OLD = {
    "the same": (200, described(VersionMajor=1, VersionMinor=4, UpdateURL=PAGE)),
    "older": (200, described(VersionMajor=0, VersionMinor=9, UpdateURL=PAGE)),
    "no numbers": (200, described(UpdateURL=PAGE)),
}
USELESS = {
    "an array": (200, plistlib.dumps([1, 5])),
    "a page": (200, b"<!DOCTYPE html><html><body>Buy this name!</body></html>"),
    "nothing in it": (200, b""),
    "not found": (404, described(VersionMajor=2, UpdateURL=PAGE)),
    "far too much": (200, described(VersionMajor=2, UpdateURL=PAGE, More="x" * 2_000_000)),
    "far too much, of no stated length":
        (200, described(VersionMajor=2, UpdateURL=PAGE, More="x" * 2_000_000), False),
    "moved to a file": (302, b"file:///etc/hostname"),
}


class Site:
    """The product's web site. Says what it was asked for."""

    def __init__(self):
        self.answer, self.asked, self._end = None, [], threading.Event()
        site = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                site.asked.append(self.path)
                status, body, *states_length = site.answer or (None, None)
                if status is None:
                    site._end.wait()
                    return
                if self.path == "/elsewhere.plist":
                    status, body = NEWER["a minor version"]
                self.send_response(status)
                if status == 302:
                    self.send_header("Location", body.decode())
                    body = b""
                if not states_length:
                    self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                try:
                    self.wfile.write(body)
                except ConnectionError:
                    pass  # The reader has had enough.

            def log_message(self, *_):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self._server.daemon_threads = True
        self.address = f"http://127.0.0.1:{self._server.server_port}"
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def close(self):
        self._end.set()
        self._server.shutdown()
        self._server.server_close()


def children(pid):
    """The processes that it has started and not let go."""
    found = []
    for entry in pathlib.Path("/proc").iterdir():
        try:
            if entry.name.isdigit():
                name, rest = (entry / "stat").read_text().rsplit(")", 1)
                if int(rest.split()[1]) == pid:
                    found.append(name)
        except (FileNotFoundError, ProcessLookupError):
            pass
    return found


class Update:
    qt = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.accessibility = accessible.Accessibility(cls.screen)

    def open(self):
        self.site = Site()
        self.addCleanup(self.site.close)
        # What opens addresses on this desktop.
        programs = self.home.path / "programs"
        programs.mkdir(exist_ok=True)
        self.opened_file = self.home.path / "opened"
        opener = programs / "xdg-open"
        opener.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >> "{self.opened_file}"\n')
        opener.chmod(0o755)
        self.home.write_preferences()
        self.home.write_definitions("Shortcuts", "Velmora",
                                    ("8u", "File/Velmora/Check for Updates…"))
        self.host = self.start(hosts.ToldHost, "menus", self.qt, environment={
            **self.accessibility.environment(), "VELMORA_SITE": self.site.address,
            "PATH": f"{programs}:{os.environ['PATH']}"})

    def opened(self):
        return self.opened_file.read_text().splitlines() if self.opened_file.exists() else []

    def check(self):
        self.x.keys("ctrl+u")

    def close_alert(self, title):
        alert = self.host.window(title)
        wait_for(lambda: self.x.active_window() == alert, "the alert to be active")
        self.x.keys("Return")
        self.host.no_window(title)
        wait_for(lambda: self.x.active_window() == self.host.windows_by_number[1],
                 "the window to be active again")

    def assert_unreachable(self):
        panel = accessible.Panel(self.host, self.accessibility, ALERT)
        panel.find(name=UNREACHABLE)
        self.close_alert(ALERT)

    def assert_clean(self):
        self.host.tell("places")
        self.assertEqual(sorted(path.name for path in self.home.settings.iterdir()
                                if "Version" in path.name or "download" in path.name), [])
        wait_for(lambda: not [name for name in children(self.host.process.pid)
                              if "curl" in name], "the fetching process to go", 2)

    def test_a_newer_version_is_shown_and_all_else_is_told(self):
        self.open()
        for name, answer in NEWER.items():
            with self.subTest(newer=name):
                self.site.answer, before = answer, len(self.opened())
                self.check()
                wait_for(lambda: len(self.opened()) > before, "the page to be opened")
                self.assertEqual(self.opened()[before:], [PAGE])
                self.assert_clean()
        opened = self.opened()
        for name, answer in OLD.items():
            with self.subTest(old=name):
                self.site.answer = answer
                self.check()
                self.close_alert(CURRENT)
                self.assert_clean()
        for name, answer in USELESS.items():
            with self.subTest(useless=name):
                self.site.answer = answer
                self.check()
                self.assert_unreachable()
                self.assert_clean()
        self.site.close()
        self.check()
        self.assert_unreachable()
        self.assert_clean()
        self.assertEqual(self.opened(), opened)
        self.assertEqual(len(self.host.windows()), 1)
        self.assertEqual(set(self.site.asked), {"/VelmoraVersion.plist", "/elsewhere.plist"})


class Qt5Update(Update, harness.DesktopTest):
    qt = 5


class Qt6Update(Update, harness.DesktopTest):
    qt = 6

    def test_a_site_that_does_not_answer_holds_the_host_for_ten_seconds_at_most(self):
        self.open()
        begin = time.monotonic()
        self.check()
        wait_for(lambda: self.site.asked, "the question")
        # What a person types meanwhile comes too late: the alert is there first.
        self.x.keys("alt+f", "n")
        self.host.window(ALERT)
        taken = time.monotonic() - begin
        self.assertGreater(taken, 9)
        self.assertLess(taken, 12)
        self.assert_unreachable()
        self.assert_clean()
        self.assertNotIn("ran 1 &New", self.host.said())


if __name__ == "__main__":
    unittest.main()
