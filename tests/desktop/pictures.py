#!/usr/bin/env python3
"""The system's pictures where a host shows them, also on a display with two pixels a point."""

import unittest

import harness
from applications import Featherpad, Linguist
from harness import wait_for
from scrolling import BOTH, HORIZONTAL, JOG, SLOTS, VERTICAL
from xclient import RIGHT, write_png

WAYS = {"gesture": (RIGHT, None), "vertical": VERTICAL, "horizontal": HORIZONTAL, "both": BOTH,
        "jog": JOG}


def is_blown_up(picture):
    """Whether each of its pixels only stands for one of a smaller picture."""
    return all(row == below and row[::2] == row[1::2]
               for row, below in zip(picture[::2], picture[1::2]))


def enlarged(picture, times, ground=150):
    """RGB bytes, on a plain ground."""
    rows = []
    for row in picture:
        line = b"".join(bytes(min(255, part + ground * (255 - pixel[3]) // 255)
                              for part in pixel[:3]) * times for pixel in row)
        rows.append(line * times)
    return b"".join(rows)


class Pictures:
    kind = None

    def check(self, scale):
        self.home.write_preferences(**SLOTS)
        application = self.start(self.kind, environment={"QT_SCALE_FACTOR": str(scale)})
        application.wait_ready()
        window = self.x.geometry(application.window(self.kind.title))
        start, end = window.at(0.3, 0.6), window.at(0.4, 0.6)
        self.x.move(*start)
        side = 16 * scale
        shown = []

        def new_cursor():
            cursor = self.x.cursor()
            if (cursor.width, cursor.height) == (side, side) and cursor.pixels not in shown:
                return cursor
            return None

        for name, (button, key) in WAYS.items():
            self.x.move(*start)
            if key:
                self.x.key_down(key)
            self.x.press(button)
            cursor = wait_for(new_cursor, f"the {name} cursor")
            if name == "gesture":
                # A click would open a menu.
                self.x.travel([start, end], 600)
            self.x.release(button)
            if key:
                self.x.key_up(key)
            shown.append(cursor.pixels)
            wait_for(lambda: self.x.cursor().pixels not in shown, "the host's own cursor")
            self.assertEqual(cursor.hot_spot, (7 * scale, 7 * scale), name)
            self.assertEqual(is_blown_up(cursor.pixels), False, name)
        write_png(harness.PICTURES / f"cursors-{self.kind.process_name}-{scale}.png",
                  8 * side, 8 * side * len(shown),
                  b"".join(enlarged(pixels, 8) for pixels in shown))

    def test_cursors_have_their_size_and_hot_spot(self):
        self.check(1)

    def test_cursors_are_as_large_and_finer_on_a_scaled_display(self):
        self.check(2)


class FeatherpadPictures(Pictures, harness.DesktopTest):
    kind = Featherpad


class LinguistPictures(Pictures, harness.DesktopTest):
    kind = Linguist


if __name__ == "__main__":
    unittest.main()
