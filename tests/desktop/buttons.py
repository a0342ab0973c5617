#!/usr/bin/env python3
"""Buttons in a panel of ours, as real applications show them: the icon that runs through its hues.

Resources of the test's own put it into the panel in which mnemonics are typed.
"""

import shutil
import time
import unittest

import harness
from applications import Featherpad, Linguist
from harness import BUILD, stays, wait_for
from panels import open_panel, PANEL
from trace import Picture
from xclient import LEFT, Geometry

HOME_PAGE = "opens https://velmora.example/"
# Seconds of one core that a second of animation may take. About 0.01 is what it takes.
LARGEST_COST = 0.02


def coloured(rgb):
    """Whether the icon's hue rather than the panel's ground is seen in a pixel."""
    return max(rgb) - min(rgb) > 60


def processor_time(pid):
    """Seconds that all threads of the process have run."""
    total = 0
    for thread in harness.pathlib.Path(f"/proc/{pid}/task").iterdir():
        total += int((thread / "schedstat").read_text().split()[0])
    return total / 1e9


class Buttons:
    kind = None

    def resources(self):
        folder = self.screen.directory / f"resources-{self.id()}"
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(BUILD / "share" / "velmora", folder)
        file = folder / "interface" / "Velmora.plist"
        text = file.read_text()
        for place, added in (
                ('{ label = "Mnemonic:"; }, mnemonicsTF, define )', ", ( icon )"),
                ("objects = {", 'icon = { class = VelmoraAnimatedIcon; title = "Velmora Home Page";'
                                " imageOnly = YES; imageSize = 64; };")):
            self.assertIn(place, text)
            text = text.replace(place, place + added)
        file.write_text(text)
        return folder

    def open(self, scale=1):
        self.home.write_preferences()
        self.home.write_definitions("Shortcuts", self.kind.process_name,
                                    ("8m", f"{self.kind.first_menu}/Velmora/Run Mnemonic…"))
        application = self.start(self.kind, environment={
            "QT_SCALE_FACTOR": str(scale), "VELMORA_RESOURCES": str(self.resources())})
        panel = open_panel(application)
        place = self.x.geometry(panel)
        icon = wait_for(lambda: self.icon(place), "the icon")
        return application, panel, icon

    def icon(self, panel):
        """Where something coloured in the panel changes, and soon again; its first drawing does
        not count."""
        pictures = []
        for _ in range(3):
            pictures.append(Picture(self.x, panel))
            time.sleep(0.3)
        first, second, third = pictures
        again = set(third.differences(second))
        places = [place for place in second.differences(first)
                  if place in again and coloured(third.at(*place))]
        if not places:
            return None
        left, right = min(x for x, _ in places), max(x for x, _ in places)
        top, bottom = min(y for _, y in places), max(y for _, y in places)
        return Geometry(left, top, right - left + 1, bottom - top + 1)

    def wait_opened(self, application, times):
        wait_for(lambda: application.texts().count(HOME_PAGE) == times, "the home page")

    def wait_new_picture(self, icon):
        before = self.x.picture(icon)
        wait_for(lambda: self.x.picture(icon) != before, "another hue")

    def test_the_icon_runs_and_a_click_or_a_key_opens_the_home_page(self):
        application, panel, icon = self.open()
        self.wait_new_picture(icon)
        self.screen.screenshot(f"buttons-{self.kind.process_name}-1")
        self.x.click(*icon.at(0.5, 0.5), LEFT)
        self.wait_opened(application, 1)
        self.wait_new_picture(icon)
        # A press that is let go beside it is no click, but it has the keys.
        self.x.move(*icon.at(0.5, 0.5))
        self.x.press(LEFT)
        self.x.move(self.x.geometry(panel).x + 4, self.x.geometry(panel).y + 4)
        self.x.release(LEFT)
        self.wait_new_picture(icon)
        self.assertEqual(application.texts().count(HOME_PAGE), 1)
        self.x.keys("space")
        self.wait_opened(application, 2)
        # From the field to the icon by the keyboard; Return in the field presses nothing.
        self.x.keys("Tab", "Tab", "Return", "Tab")
        self.x.keys("space")
        self.wait_opened(application, 3)
        self.assertTrue(stays(lambda: application.texts().count(HOME_PAGE) == 3, 0.3))
        self.x.keys("Escape")
        application.no_window(PANEL)
        application.assert_usable()
        # It ran on meanwhile.
        panel = open_panel(application)
        wait_for(lambda: self.icon(self.x.geometry(panel)), "the icon again")

    def test_ten_frames_a_second_cost_about_a_hundredth_of_a_core(self):
        for scale in (1, 2):
            with self.subTest(scale=scale):
                application, panel, icon = self.open(scale)
                self.assertAlmostEqual(icon.width, 64 * scale, delta=12 * scale)
                self.screen.screenshot(f"buttons-{self.kind.process_name}-{scale}-scaled")
                seconds, frames, seen = 4, 0, None
                begin, used = time.monotonic(), processor_time(application.process.pid)
                while time.monotonic() - begin < seconds:
                    now = self.x.picture(icon)
                    frames += now != seen
                    seen = now
                    time.sleep(0.01)
                used = (processor_time(application.process.pid) - used) / (
                    time.monotonic() - begin)
                print(f"{self.kind.process_name} at scale {scale}: {frames / seconds:.1f} frames "
                      f"a second, {100 * used:.2f} % of a core")
                self.assertLess(used, LARGEST_COST)
                self.assertGreater(frames, 8 * seconds)
                self.assertLess(frames, 11 * seconds)
                self.end_applications()


class FeatherpadButtons(Buttons, harness.DesktopTest):
    kind = Featherpad


class LinguistButtons(Buttons, harness.DesktopTest):
    kind = Linguist


if __name__ == "__main__":
    unittest.main()
