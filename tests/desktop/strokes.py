#!/usr/bin/env python3
"""Strokes that run commands, and strokes that run none."""

import statistics
import time
import unittest

import harness
from applications import Featherpad, Linguist
from harness import wait_for
from xclient import LEFT, MIDDLE, RIGHT

REPEATS = 20
SLOWEST, FASTEST = 200, 1500


class Strokes:
    kind = None

    def open(self, *definitions, **preferences):
        self.home.write_preferences(**preferences)
        self.home.write_gestures(self.kind.process_name, *definitions)
        return self.start(self.kind)

    def repeat(self, application, letters, path, confirm):
        """Draws one stroke again and again, from slow to fast, and waits for each effect."""
        mark = application.mark()
        seen = []
        for number in range(REPEATS):
            speed = SLOWEST + (FASTEST - SLOWEST) * number // (REPEATS - 1)
            before = application.mark()
            state = application.switch()
            application.draw(letters, speed, leg=max(60, speed * 7 // 100))
            released = time.perf_counter()
            application.wait_text("^ran ", before, interval=0.0005)
            seen.append((time.perf_counter() - released) * 1000)
            confirm(state)
            self.assertEqual(application.commands(before), [path], f"at {speed} pixels a second")
            self.assertEqual(application.gestures(before), [letters])
        self.assertEqual(application.commands(mark), [path] * REPEATS)
        self.assertEqual(application.gestures(mark), [letters] * REPEATS)
        self.assertEqual(application.beeps(mark), 0)
        delays = application.delays(mark)
        print(f"\n{application.process_name}: {letters}: the command ran "
              f"{statistics.median(delays):.1f} ms after the host had the button's release "
              f"(longest {max(delays):.1f}), and that was seen "
              f"{statistics.median(seen):.1f} ms after it")
        self.assertLess(statistics.median(delays), 16)

    def test_strokes_run_their_own_commands_without_a_miss_or_a_double(self):
        application = self.open(("r", self.kind.counted), ("dlu", self.kind.switched),
                                ("rdldru", self.kind.dialog))
        self.repeat(application, "dlu", self.kind.switched,
                    lambda state: wait_for(lambda: application.switch() != state, "the switch"))
        self.repeat(application, "r", self.kind.counted, lambda state: None)
        application.wait_count(REPEATS)
        self.repeat(application, "rdldru", self.kind.dialog,
                    lambda state: application.close_dialog())
        self.assertNothingHeld()
        application.assert_usable()
        application.wait_count(REPEATS)

    def test_an_unbound_stroke_beeps_and_leaves_the_host_untouched(self):
        application = self.open(("r", self.kind.counted), ("u", ""), ("ud", "No/Such Item"))
        seen = application.quiet()
        before = application.pixels(seen)
        for number, letters in enumerate(("d", "rd", "u", "ud"), 1):
            application.draw(letters)
            application.wait_text(f'gesture "{letters}"')
            wait_for(lambda: application.beeps() == number, "the beep")
        self.assertEqual(application.commands(), [])
        self.assertFalse(application.popups())
        application.assert_usable()
        # The trace fades in a tenth of a second.
        wait_for(lambda: application.pixels(seen) == before, "the trace to go", 0.3)
        self.assertEqual(application.count(), 0)
        self.assertNothingHeld()

    def test_a_disabled_item_leaves_its_stroke_to_the_next_definition(self):
        application = self.open(("lr", self.kind.disabled), ("lr", self.kind.counted),
                                ("lr", self.kind.dialog), ("rl", self.kind.disabled))
        application.draw("lr")
        application.wait_text("^ran ")
        self.assertEqual(application.commands(), [self.kind.counted])
        application.wait_count(1)
        application.draw("rl")
        wait_for(lambda: application.beeps() == 1, "the beep")
        self.assertEqual(application.commands(), [self.kind.counted])

    def test_another_button_or_key_aborts_a_stroke(self):
        application = self.open(("l", self.kind.counted), ("lu", self.kind.counted))
        # Away from a menu that the press may open, so that its release chooses nothing.
        points = harness.stroke_points("lu", application.view(), 100)
        for aborted, again in (
                (lambda: self.x.press(LEFT), lambda: self.x.release(LEFT)),
                (lambda: self.x.press(MIDDLE), lambda: self.x.release(MIDDLE)),
                (lambda: self.x.key_down("F12"), lambda: self.x.key_up("F12"))):
            self.x.move(*points[0])
            self.x.press(RIGHT)
            self.x.travel(points[:2], 600)
            aborted()
            again()
            self.x.travel(points[1:], 600)
            self.x.release(RIGHT)
            self.assertNothingHeld()
            # The press reaches the host when the stroke ends, which may open a menu.
            application.close_menus()
            application.assert_usable()
            self.assertEqual(application.gestures(), [])
            self.assertEqual(application.commands(), [])
            self.assertEqual(application.beeps(), 0)
        application.draw("l")
        application.wait_text("^ran ")
        application.wait_count(1)

    def test_a_stroke_that_rests_too_long_is_given_up(self):
        application = self.open(("l", self.kind.counted), gestureTimeout=150)
        points = harness.stroke_points("l", application.view(), 150)
        self.x.move(*points[0])
        self.x.press(RIGHT)
        self.x.travel(points, 600)
        # The press is the host's then, and opens its menu while the button is still held.
        application.popup()
        self.x.release(RIGHT)
        application.close_menus()
        application.assert_usable()
        self.assertEqual(application.gestures(), [])
        self.assertEqual(application.count(), 0)

    def test_a_stroke_can_end_the_application(self):
        application = self.open(("d", self.kind.ending))
        application.draw("d")
        self.assertEqual(application.wait_exit(), 0)
        self.assertEqual(application.commands(), [self.kind.ending])
        self.assertNothingHeld()

    def test_keys_alone_begin_and_end_a_stroke(self):
        self.home.write_preferences((0b1100, -1), (0, 1))
        self.home.write_gestures(self.kind.process_name, ("rd", self.kind.counted),
                                 ("ur", self.kind.switched))
        application = self.start(self.kind)
        for number, (held, released) in enumerate(
                [(("ctrl", "alt"), "ctrl"), (("alt", "ctrl"), "ctrl"), (("ctrl", "alt"), "alt")],
                1):
            mark = application.mark()
            points = harness.stroke_points("rd", application.view(), 100)
            self.x.move(*points[0])
            for key in held:
                self.x.key_down(key)
            self.x.travel(points, 700)
            self.x.key_up(released)
            application.wait_text("^ran ", mark)
            self.x.release_everything()
            self.assertEqual(application.gestures(mark), ["rd"])
            self.assertEqual(application.commands(mark), [self.kind.counted])
            # The host's own shortcuts work as before: this saves with one.
            application.wait_count(number)

        # Another key ends it without a command, and the keys of one modifier alone begin nothing.
        mark = application.mark()
        for keys in (("ctrl", "alt", "shift"), ("ctrl",), ("alt",), ("ctrl", "shift")):
            points = harness.stroke_points("rd", application.view(), 100)
            self.x.move(*points[0])
            for key in keys:
                self.x.key_down(key)
            self.x.travel(points, 700)
            self.x.release_everything()
        application.close_menus()
        application.assert_usable()
        self.assertEqual(application.gestures(mark), [])
        # A stroke of the button works beside the other.
        application.draw("ur")
        application.wait_text("^ran ", mark)
        self.assertEqual(application.commands(mark), [self.kind.switched])
        self.assertNothingHeld()
        self.assertEqual(application.count(), 3)


class FeatherpadStrokes(Strokes, harness.DesktopTest):
    kind = Featherpad


class LinguistStrokes(Strokes, harness.DesktopTest):
    kind = Linguist


if __name__ == "__main__":
    unittest.main()
