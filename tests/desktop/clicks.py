#!/usr/bin/env python3
"""The button that draws strokes, used for what it did before; and context menus run by strokes."""

import unittest

import harness
from applications import Featherpad, Linguist
from harness import wait_for
from xclient import LEFT, MIDDLE, RIGHT


class Clicks:
    kind = None

    def open(self, *definitions, **preferences):
        self.home.write_preferences(**preferences)
        self.home.write_gestures(self.kind.process_name, *definitions)
        application = self.start(self.kind)
        # What tells the effect of the view's menu may save the document.
        self.where, self.item, self.state = application.contexts()[0]
        return application

    def use_last_item(self, application, popup):
        before = self.untouched
        application.click_menu_item_above(10, popup)
        application.no_popups()
        wait_for(lambda: self.state() != before, "the effect of the menu's item")
        self.untouched = self.state()

    def reset(self, application):
        """Takes the effect of the menu's item away where it shows only once."""
        if self.kind is Linguist:
            self.x.click(*application.view().at(0.5, 0.8), LEFT)
            wait_for(lambda: self.state() != self.untouched, "the selection to go")
            self.untouched = self.state()

    def test_a_click_opens_the_hosts_own_menu_again_and_again(self):
        application = self.open(("r", self.kind.counted))
        self.untouched = self.state()
        for _ in range(5):
            popup = application.open_context_menu()
            self.assertNothingHeld()
            self.use_last_item(application, popup)
            self.reset(application)
            application.assert_usable()
        # Small motion that is no letter is a click too.
        x, y = application.view().at(0.5, 0.4)
        self.x.move(x, y)
        self.x.press(RIGHT)
        self.x.travel([(x, y), (x + 8, y + 8), (x, y)], 200)
        self.x.release(RIGHT)
        application.popup()
        application.close_menus()
        self.assertEqual(application.commands(), [])
        self.assertEqual(application.beeps(), 0)
        application.assert_usable()

    def test_a_button_held_too_long_is_a_click(self):
        application = self.open(("r", self.kind.counted))
        self.untouched = self.state()
        for _ in range(2):
            self.x.move(*application.view().at(0.5, 0.4))
            self.x.press(RIGHT)
            popup = application.popup()
            # The menu opened under the held button; letting go chooses nothing in it.
            self.x.release(RIGHT)
            self.assertNothingHeld()
            self.assertTrue(harness.stays(application.popups, 0.3))
            self.use_last_item(application, popup)
            self.reset(application)
            application.assert_usable()
        application.draw("r")
        application.wait_text("^ran ")
        self.assertEqual(application.commands(), [self.kind.counted])

    def test_buttons_without_a_slot_are_the_hosts(self):
        application = self.open(("u", self.kind.counted))
        for button in (LEFT, MIDDLE):
            application.draw("u", button=button)
        application.assert_usable()
        self.assertEqual(application.gestures(), [])
        self.assertEqual(application.commands(), [])
        self.assertEqual(application.beeps(), 0)

    def test_a_stroke_runs_an_item_of_a_menu_that_nobody_sees(self):
        application = self.open()
        for number, (where, item, state) in enumerate(application.contexts()):
            with self.subTest(item=item):
                before = state()
                application.leave()
                self.home.write_gestures("Velmora", ("l", f"Context Menu: {item}"))
                application.come_back()
                mark = application.mark()
                watch = self.screen.watch()
                self.addCleanup(watch.close)
                for repeat in range(1, 4):
                    x, y = where.at(0.5, 0.5)
                    self.x.move(x, y)
                    self.x.press(RIGHT)
                    self.x.travel([(x, y), (x - 90, y)], 700)
                    self.x.release(RIGHT)
                    wait_for(lambda: len(application.commands(mark)) == repeat, "the command")
                    self.assertEqual(application.commands(mark),
                                     [f"Context Menu: {item}"] * repeat)
                    if repeat == 1:
                        wait_for(lambda: state() != before, "its effect")
                seen = [place for window, place in watch.seen()
                        if self.x.kind(window) not in ("TOOLTIP", "UTILITY")]
                self.assertEqual(seen, [], "a menu was seen")
                self.assertEqual(application.gestures(mark), ["l"] * 3)
                self.assertNothingHeld()
                application.assert_usable()

    def test_an_item_that_the_menu_lacks_is_passed_over(self):
        application = self.open(("l", "Context Menu: No Such Item"), ("l", self.kind.counted),
                                ("r", "Context Menu: No Such Item"), drawsFeedback=False)
        watch = self.screen.watch()
        self.addCleanup(watch.close)
        application.draw("l")
        application.wait_text("^ran ")
        self.assertEqual(application.commands(), [self.kind.counted])
        application.draw("r")
        wait_for(lambda: application.beeps() == 1, "the beep")
        self.assertEqual(watch.seen(), [], "a menu was seen")
        application.assert_usable()
        # The host's menu is as it always is.
        self.untouched = self.state()
        self.use_last_item(application, application.open_context_menu())


class FeatherpadClicks(Clicks, harness.DesktopTest):
    kind = Featherpad


class LinguistClicks(Clicks, harness.DesktopTest):
    kind = Linguist


if __name__ == "__main__":
    unittest.main()
