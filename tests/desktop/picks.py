#!/usr/bin/env python3
"""What a person picks in the host's context menus while a row of the gestures panel is selected.

It goes into that row instead of acting, however the menu was opened and the item picked, and a
stroke runs it from then on.
"""

import plistlib
import re
import unittest

import accessible
import applications
import harness
import hosts
from harness import stays, wait_for
from xclient import LEFT, RIGHT, Geometry

TOOK = 'took the pick of "Context Menu: '


class Picks:
    """With an application whose gestures panel can be opened by a key."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.accessibility = accessible.Accessibility(cls.screen)

    def prepare(self, process, first_menu, *definitions):
        self.process = process
        self.home.write_preferences(drawsFeedback=False)
        self.home.write_gestures(process, *definitions)
        self.home.write_definitions("Shortcuts", process,
                                    ("8g", f"{first_menu}/Velmora/Define Gestures…"))

    def open_panel(self, application):
        self.x.keys("ctrl+g")
        self.panel = accessible.Panel(application, self.accessibility, "^Define Gestures")
        self.panel.place(Geometry(700, 560, 480, 240))

    def select(self, *rows):
        for row in rows:
            if row != rows[0]:
                self.x.key_down("Control_L")
            self.panel.click_cell(row, 2)
        if len(rows) > 1:
            self.x.key_up("Control_L")
        wait_for(lambda: [row for row, cells in enumerate(self.panel.cells())
                          if "selected" in cells[2].states] == list(rows), f"the rows {rows}")

    def confirm(self, application):
        self.panel.press_button("OK")
        application.no_window("^Define Gestures")

    def taken(self, application, since):
        return [text[len(TOOK):-1] for text in application.texts(since) if text.startswith(TOOK)]

    def bound(self):
        """The path of each definition in the file."""
        return [definition["Path"] for definition in
                plistlib.loads(self.home.gestures_file(self.process).read_bytes())]


class MenuHost(hosts.ToldHost):
    def __init__(self, screen, home, qt, environment):
        super().__init__(screen, home, "menus", qt, environment=environment)
        self.beside = 10
        self.places = {words[2]: (int(words[3]), int(words[4])) for words in
                       map(str.split, self.tell("places")) if words[0] == "place"}

    def open_menu(self, area, button=RIGHT):
        """Each time at another place: two clicks at one are a double click."""
        x, y = self.places[area]
        self.beside = -self.beside
        self.x.click(x + self.beside, y, button)
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
        return [line for line in self.said() if re.match("(ran|triggered|chosen) ", line)
                and not line.endswith(" nothing")]


class HostPicks(Picks):
    qt = None

    def open(self):
        self.prepare(f"host-menus-qt{self.qt}", "File", ("rd", "File/New"), ("dr", "File/New"))
        self.host = self.start(MenuHost, self.qt, self.accessibility.environment())
        self.open_panel(self.host)

    # The ways to pick

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

    def back(self, *titles):
        """Opens a submenu, and clicks in the menu below it after all."""
        for title in titles:
            place = self.host.item(title)
            self.x.travel([self.x.pointer()[:2], place], 400)
            self.x.click(*place)

    def keys(self, *names):
        self.x.keys(*names)

    ROWS = (("exec", "click", ("Paint",), "Paint", "chosen 1 &Paint\tCtrl+P"),
            ("exec", "click", ("More", "Varnish"), "More/Varnish", "chosen 1 &Varnish"),
            ("exec", "back", ("More", "Paint"), "Paint", "chosen 1 &Paint\tCtrl+P"),
            ("exec", "keys", ("Down", "Return"), "Paint", "chosen 1 &Paint\tCtrl+P"),
            ("exec", "keys", ("p",), "Paint", "chosen 1 &Paint\tCtrl+P"),
            ("exec", "keys", ("m", "v"), "More/Varnish", "chosen 1 &Varnish"),
            ("popup", "click", ("Paint",), "Paint", "triggered 1 &Paint\tCtrl+P"),
            ("popup", "drag", ("Paint", "Paint"), "Paint", "triggered 1 &Paint\tCtrl+P"),
            ("popup", "drag", ("Paint", "More", "Varnish"), "More/Varnish",
             "triggered 1 &Varnish"),
            ("popup", "keys", ("Down", "KP_Enter"), "Paint", "triggered 1 &Paint\tCtrl+P"),
            ("popup", "keys", ("Down", "Down", "Right", "Return"), "More/Varnish",
             "triggered 1 &Varnish"),
            ("actions", "click", ("Keep It",), "Keep It", "ran 1 Keep It"),
            ("actions", "click", ("Tick It",), "Tick It", "ran 1 Tick It on"),
            ("tree", "click", ("Plant",), "Plant", "ran 1 Plant"),
            ("shared", "click", ("Hammer",), "Hammer", "ran 1 Hammer"))

    def assert_picks(self, takes):
        for area, way, parts, path, line in self.ROWS:
            with self.subTest(takes=takes, area=area, way=way, path=path):
                mark, acts, said = self.host.mark(), self.host.acts(), self.host.said()
                self.host.open_menu(area)
                getattr(self, way)(*parts)
                self.host.no_popups()
                if takes:
                    self.host.wait_text(re.escape(TOOK), mark)
                else:
                    wait_for(lambda: self.host.acts() != acts, "the item to act")
                self.host.tell("places")
                self.assertEqual(self.host.acts()[len(acts):], [] if takes else [line])
                self.assertEqual(self.taken(self.host, mark), [path] if takes else [])
                if takes and area == "exec":
                    self.assertIn("chosen 1 nothing", self.host.said()[len(said):])
                self.assertNothingHeld()

    def test_a_pick_is_taken_instead_of_acting(self):
        """Only while exactly one row is selected; with the last one the panel is closed."""
        self.open()
        self.select(1)
        self.assert_picks(True)
        self.select(0, 1)
        self.assert_picks(False)
        self.select(0)
        self.host.open_menu("exec")
        self.click("More", "Varnish")
        self.host.no_popups()
        self.confirm(self.host)
        self.assertEqual(self.bound(), ["Context Menu: More/Varnish", "Context Menu: Hammer"])
        # Unseen, and past the panel that is no more.
        for letters, area, line in (("rd", "exec", "chosen 1 &Varnish"),
                                    ("dr", "shared", "ran 1 Hammer")):
            harness.draw(self.x, letters, Geometry(*self.host.places[area], 120, 120), leg=60)
            self.host.wait_says(line)

    def test_what_is_no_pick_in_a_context_menu_is_left_alone(self):
        self.open()
        self.select(1)
        mark, beside = self.host.mark(), self.host.acts()
        # Clicks that pick nothing.
        for area, title in (("exec", "Off"), ("popup", "Off")):
            self.host.open_menu(area)
            self.x.click(*self.host.item(title))
            self.x.keys("Escape")
            self.host.no_popups()
        self.host.open_menu("popup")
        self.x.keys("o", "Escape")
        self.host.no_popups()
        # Nor does the release of the button that has opened the menu.
        self.x.click(*self.host.places["popup"], RIGHT)
        self.host.popup()
        self.assertTrue(stays(self.host.popups, 0.2))
        self.x.keys("Escape")
        self.host.no_popups()
        self.assertEqual(self.host.acts(), beside)
        # Menus of a button and of the menu bar.
        self.host.open_menu("tool", LEFT)
        self.click("Hammer")
        self.host.wait_says("ran 1 Hammer")
        self.x.keys("alt+f", "n")
        self.host.wait_says("ran 1 &New")
        # And the one that a row of the panel itself offers: the host's menu bar.
        self.panel.click_cell(1, 1)
        self.host.popup()
        self.x.keys("Down", "Right", "Down", "Return")
        self.host.no_popups()
        self.assertEqual(self.taken(self.host, mark), [])
        self.confirm(self.host)
        self.assertEqual(self.bound(), ["File/New", "File/Open..."])


class RealPicks(Picks):
    kind = None

    def test_an_item_of_a_context_menu_is_bound_and_runs_by_a_stroke(self):
        kind = self.kind
        self.prepare(kind.process_name, kind.first_menu, ("rd", "File/New"), ("dr", "File/New"))
        application = self.start(kind, environment=self.accessibility.environment())
        application.assert_usable()
        area, item, state = application.contexts()[0]
        self.open_panel(application)
        self.select(1)
        wait_for(lambda: self.x.active_window() == self.panel.window, "the panel to be active")
        before = state()
        popup = application.open_context_menu()
        application.click_menu_item_above(10, popup)
        application.no_popups()
        application.wait_text(re.escape(TOOK))
        self.assertEqual(self.taken(application, 0), [item])
        self.confirm(application)
        self.assertEqual(self.bound(), ["File/New", f"Context Menu: {item}"])
        wait_for(lambda: self.x.active_window() == application.main, "the main window")
        self.assertEqual(state(), before)
        harness.draw(self.x, "dr", area, leg=60)
        application.wait_text("^ran ")
        wait_for(lambda: state() != before, f"the effect of {item}")
        self.assertEqual(application.commands(), [f"Context Menu: {item}"])
        application.assert_usable()


class FeatherpadPicks(RealPicks, harness.DesktopTest):
    kind = applications.Featherpad


class LinguistPicks(RealPicks, harness.DesktopTest):
    kind = applications.Linguist


class SpeedcrunchPicks(RealPicks, harness.DesktopTest):
    kind = applications.Speedcrunch


class DesignerPicks(RealPicks, harness.DesktopTest):
    kind = applications.Designer


class Qt5Picks(HostPicks, harness.DesktopTest):
    qt = 5


class Qt6Picks(HostPicks, harness.DesktopTest):
    qt = 6


if __name__ == "__main__":
    unittest.main()
