#!/usr/bin/env python3
"""What a person picks in the host's context menus while a row of the gestures panel is selected.

It goes into that row instead of acting, however the menu was opened and the item picked, and a
stroke runs it from then on.
"""

import os
import re
import time
import unittest

import applications
import harness
import hosts
from harness import stays, wait_for
from xclient import LEFT, RIGHT

TOOK = 'took the pick of "Context Menu: '
FAKE = os.environ.get("FAKE_PICKS")


class Taking:
    """An application whose next picks are taken, as long as it says so."""

    def __init__(self, test, application):
        self.test, self.application, self.x = test, application, application.x

    def begin(self):
        open(FAKE, "w").close()

    def end(self):
        os.remove(FAKE)

    def taken(self, since=0):
        return [text[len(TOOK):-1] for text in self.application.texts(since)
                if text.startswith(TOOK)]


class MenuHost(hosts.ToldHost):
    def __init__(self, screen, home, qt):
        super().__init__(screen, home, "menus", qt, environment={"FAKE_PICKS": FAKE})
        self.places = {words[2]: (int(words[3]), int(words[4])) for words in
                       map(str.split, self.tell("places")) if words[0] == "place"}

    def open_menu(self, area):
        self.x.click(*self.places[area], LEFT if area == "tool" else RIGHT)
        self.popup()

    def item(self, text):
        """The middle of an open menu's item."""
        def find():
            for line in self.tell("items"):
                match = re.fullmatch(r"item (-?\d+) (-?\d+) (.*)", line)
                if match and match[3].replace("&", "") == text:
                    return int(match[1]), int(match[2])
            return None
        return wait_for(find, f"the item {text!r}")

    def acts(self):
        """What it has said of items that acted."""
        return [line for line in self.said() if re.match("(ran|triggered|chosen|opens [A-Z]) ", line)
                and not line.endswith(" nothing")]


class Picks:
    qt = None

    def open(self):
        self.home.write_preferences(drawsFeedback=False)
        self.home.write_gestures(f"host-menus-qt{self.qt}", ("rd", "File/New"), ("dr", "File/New"))
        self.host = self.start(MenuHost, self.qt)
        self.taking = Taking(self, self.host)

    # --- the ways to pick ----------------------------------------------------------------------

    def click(self, *titles):
        for title in titles:
            self.x.click(*self.host.item(title))

    def drag(self, *titles):
        """Presses on the first item and lets go on the last."""
        start = self.host.item(titles[0])
        self.x.move(*start)
        self.x.press(LEFT)
        for title in titles[1:]:
            place = self.host.item(title)
            # Along the item, and straight over into the menu beside it.
            self.x.travel([start, (place[0], start[1]), place], 400)
            start = place
        self.x.release(LEFT)

    def keys(self, *names):
        self.x.keys(*names)

    ROWS = (("exec", "click", ("Paint",), "Paint", "chosen 1 &Paint\tCtrl+P"),
            ("exec", "click", ("More", "Varnish"), "More/Varnish", "chosen 1 &Varnish"),
            ("exec", "keys", ("Down", "Return"), "Paint", "chosen 1 &Paint\tCtrl+P"),
            ("exec", "keys", ("p",), "Paint", "chosen 1 &Paint\tCtrl+P"),
            ("exec", "keys", ("m", "v"), "More/Varnish", "chosen 1 &Varnish"),
            ("popup", "click", ("Paint",), "Paint", "triggered 1 &Paint\tCtrl+P"),
            ("popup", "drag", ("Paint", "Paint"), "Paint", "triggered 1 &Paint\tCtrl+P"),
            ("popup", "drag", ("Paint", "More", "Varnish"), "More/Varnish",
             "triggered 1 &Varnish"),
            ("popup", "keys", ("Down", "space"), "Paint", "triggered 1 &Paint\tCtrl+P"),
            ("popup", "keys", ("Down", "Down", "Down", "Right", "KP_Enter"), "More/Varnish",
             "triggered 1 &Varnish"),
            ("actions", "click", ("Keep It",), "Keep It", "ran 1 Keep It"),
            ("actions", "click", ("Tick It",), "Tick It", "ran 1 Tick It on"),
            ("tree", "click", ("Plant",), "Plant", "ran 1 Plant"),
            ("shared", "click", ("Hammer",), "Hammer", "ran 1 Hammer"))

    def test_a_pick_is_taken_instead_of_acting(self):
        """And acts as ever once nobody takes it."""
        self.open()
        for takes in (True, False):
            if takes:
                self.taking.begin()
            else:
                self.taking.end()
            for area, way, parts, path, line in self.ROWS:
                with self.subTest(takes=takes, area=area, way=way, path=path):
                    mark, acts = self.host.mark(), self.host.acts()
                    self.host.open_menu(area)
                    getattr(self, way)(*parts)
                    self.host.no_popups()
                    if takes:
                        self.host.wait_text(re.escape(TOOK), mark)
                    else:
                        wait_for(lambda: self.host.acts() != acts, "the item to act")
                    self.host.tell("places")
                    self.assertEqual(self.host.acts()[len(acts):], [] if takes else [line])
                    self.assertEqual(self.taking.taken(mark), [path] if takes else [])
                    if takes and area == "exec":
                        self.assertEqual(self.host.said()[-1], "chosen 1 nothing")
                    self.assertNothingHeld()


class Qt5Picks(Picks, harness.DesktopTest):
    qt = 5


class Qt6Picks(Picks, harness.DesktopTest):
    qt = 6


if __name__ == "__main__":
    unittest.main()
