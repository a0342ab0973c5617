#!/usr/bin/env python3
"""A short pass over one real application for each version of Qt."""

import unittest

import harness
from applications import Featherpad, Linguist, LongText
from harness import Timeout, wait_for
from xclient import LEFT, MIDDLE


class Smoke:
    kind = None

    def setUp(self):
        super().setUp()
        self.home.write_preferences()
        self.home.write_gestures(self.kind.process_name, ("dr", self.kind.dialog))

    def test_a_stroke_a_click_and_the_submenu(self):
        application = self.start(self.kind)
        name = application.process_name

        application.draw("dr")
        application.wait_text("^ran ")
        self.assertEqual(application.commands(), [application.dialog])
        self.assertEqual(application.gestures(), ["dr"])
        self.screenshot(application, "dialog")
        application.close_dialog()

        popup = application.open_context_menu()
        self.assertNothingHeld()
        self.screenshot(application, "context-menu")
        state = application.contexts()[0][2]
        before = state() if name == "linguist" else 0
        application.click_menu_item_above(10, popup)
        wait_for(lambda: state() != before, "the effect of the menu's last item")
        application.no_popups()
        application.assert_usable()

        self.open_submenu(application)
        self.screenshot(application, "submenu")
        application.leave_menu_bar()
        application.assert_usable()
        self.assertEqual(application.commands(), [application.dialog])

    def screenshot(self, application, what):
        application.wait_drawn()
        self.screen.screenshot(f"smoke-{application.process_name}-{what}")

    def open_submenu(self, application):
        """The submenu of ours is the lowest one in the first menu: the pointer goes up the menu
        until one opens."""
        first = application.area(20, 12, 1, 1)

        # Of the clicks that come while it still shows a new row, the application loses one in
        # twenty, without the plug-in too.
        def opened():
            self.x.click(first.x, first.y, LEFT)
            try:
                return application.popup(limit=2)
            except Timeout:
                return None
        menu = application.x.geometry(wait_for(opened, "the first menu"))
        for y in range(menu.y + menu.height - 6, menu.y + menu.height // 2, -8):
            self.x.move(menu.x + menu.width // 2, y)
            try:
                wait_for(lambda: len(application.popups()) > 1, "a submenu", limit=0.4)
            except Timeout:
                continue
            self.x.click(menu.x + menu.width // 2, y, LEFT)
            wait_for(lambda: len(application.popups()) > 1, "the submenu")
            return
        self.fail("no submenu stands in the lower half of the first menu")


class FeatherpadSmoke(Smoke, harness.DesktopTest):
    kind = Featherpad


class LinguistSmoke(Smoke, harness.DesktopTest):
    kind = Linguist


class ScrollingSmoke(harness.DesktopTest):
    def test_a_held_button_scrolls_while_the_pointer_stands_still(self):
        self.home.write_preferences(mouseButton2=2, modifiers2=0, isEnabled2=True)
        application = self.start(LongText)
        place = tuple(application.text().at(0.5, 0.5))
        before = application.pixels(application.text())
        self.x.move(*place)
        self.x.press(MIDDLE)
        self.x.move_by(0, 30)
        wait_for(lambda: application.pixels(application.text()) != before, "the text to scroll")
        wait_for(lambda: self.x.pointer()[:2] == place, "the pointer to be where it was")
        self.x.release(MIDDLE)
        self.assertNothingHeld()
        application.assert_usable()


if __name__ == "__main__":
    unittest.main()
