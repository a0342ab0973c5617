#!/usr/bin/env python3
"""Definition and preference files that are edited outside while applications run."""

import itertools
import os
import plistlib
import resource
import unittest

import harness
from applications import Featherpad, Linguist
from harness import wait_for, write_file
from xclient import MIDDLE, RIGHT

BROKEN = (
    b"",
    b"no property list",
    b"<?xml version=\"1.0\"?><plist version=\"1.0\"><array><dict><key>Trigger",
    b"bplist00" + bytes(range(256)) * 4,
    plistlib.dumps("a string"),
)


class Files:
    kind = None

    def edit(self, application, change):
        """Does it while another window is the active one, and comes back."""
        application.leave()
        change()
        application.come_back()

    def assert_runs(self, application, letters, path, **options):
        mark = application.mark()
        application.draw(letters, **options)
        application.wait_text("^ran ", mark)
        self.assertEqual(application.commands(mark), [path])

    def assert_beeps(self, application, letters):
        mark = application.mark()
        application.draw(letters)
        wait_for(lambda: application.beeps(mark) == 1, "the beep")
        self.assertEqual(application.commands(mark), [])

    def assert_click(self, application, button=RIGHT):
        """The button is the host's, whatever way it goes. Upwards is out of a menu of its."""
        mark = application.mark()
        application.draw("u", button=button)
        # Letters are told from where the pointer is, so it stays until the release has arrived.
        self.assertTrue(harness.stays(lambda: not application.gestures(mark), 0.1))
        application.close_menus()
        application.assert_usable()
        self.assertEqual(application.gestures(mark), [])

    def test_edited_files_take_effect_when_the_application_becomes_active(self):
        self.home.write_preferences()
        application = self.start(self.kind)
        self.assert_beeps(application, "r")

        self.edit(application, lambda: self.home.write_gestures(
            "Velmora", ("r", self.kind.counted), ("d", self.kind.switched)))
        self.assert_runs(application, "r", self.kind.counted)
        application.wait_count(1)
        self.assert_runs(application, "d", self.kind.switched)

        # What is taken away goes, what is changed is as it says now.
        self.edit(application, lambda: self.home.write_gestures(
            "Velmora", ("r", self.kind.switched)))
        self.assert_runs(application, "r", self.kind.switched)
        self.assert_beeps(application, "d")

        # Another button, and a size that the stroke does not reach.
        self.edit(application, lambda: self.home.write_preferences((0, 2)))
        self.assert_runs(application, "r", self.kind.switched, button=MIDDLE)
        self.assert_click(application, RIGHT)
        self.edit(application, lambda: self.home.write_preferences((0, 2), gestureSize=300))
        self.assert_click(application, MIDDLE)

        # Without a file nothing changes: what was in force stays.
        self.edit(application, self.home.preferences_file().unlink)
        self.assert_click(application, MIDDLE)
        self.edit(application, self.home.gestures_file().unlink)
        self.edit(application, self.home.write_preferences)
        self.edit(application, lambda: self.home.write_preferences(gestureSize=15))
        self.assert_beeps(application, "r")

    def test_files_that_are_no_property_lists_leave_the_host_running(self):
        for number, content in enumerate(BROKEN):
            with self.subTest(content=content[:30]):
                home = harness.Home(self.screen, f"broken-{number}")
                paths = (home.preferences_file(), home.gestures_file(),
                         home.gestures_file(self.kind.process_name))
                for path in paths:
                    write_file(path, content)
                application = self.kind(self.screen, home)
                self.applications.append(application)
                self.x.click(*application.view().at(0.5, 0.4), RIGHT)
                application.popup()
                application.close_menus()
                application.assert_usable()
                self.assertEqual(application.gestures(), [])
                # Nothing was written, so each file is as it was.
                self.assertEqual([path.read_bytes() for path in paths], [content] * len(paths))

                # Once they are whole they are read.
                def mend():
                    home.write_preferences()
                    home.write_gestures("Velmora", ("r", self.kind.switched))
                self.edit(application, mend)
                self.assert_runs(application, "r", self.kind.switched)
                application.check_alive()
                application.stop()

    def test_a_file_that_breaks_while_the_host_runs_reads_by_its_rule(self):
        self.home.write_preferences()
        self.home.write_gestures("Velmora", ("d", self.kind.switched))
        self.home.write_gestures(self.kind.process_name, ("r", self.kind.counted))
        application = self.start(self.kind)
        self.assert_runs(application, "d", self.kind.switched)

        # Preferences keep their values.
        preferences, gestures = self.home.preferences_file(), self.home.gestures_file()
        for content in BROKEN:
            self.edit(application, lambda: write_file(preferences, content))
            self.assert_runs(application, "d", self.kind.switched)
        # Shared definitions read as none; the application's own stay.
        self.edit(application, lambda: write_file(gestures, BROKEN[2]))
        self.assert_beeps(application, "d")
        self.assert_runs(application, "r", self.kind.counted)
        self.assertEqual(gestures.read_bytes(), BROKEN[2])
        self.assertEqual(preferences.read_bytes(), BROKEN[-1])
        application.wait_count(1)

    def test_a_fault_of_the_machine_takes_nothing_away(self):
        self.home.write_preferences()
        self.home.write_gestures("Velmora", ("d", self.kind.switched))
        application = self.start(self.kind)
        self.assert_runs(application, "d", self.kind.switched)

        # No file can be opened; what runs already has what it needs.
        mark = application.mark()
        application.leave()
        self.home.write_gestures("Velmora", ("d", self.kind.switched), ("r", self.kind.counted))
        process = application.process.pid
        limits = resource.prlimit(process, resource.RLIMIT_NOFILE)
        used = {int(name) for name in os.listdir(f"/proc/{process}/fd")}
        free = next(number for number in itertools.count() if number not in used)
        resource.prlimit(process, resource.RLIMIT_NOFILE, (free, limits[1]))
        try:
            application.come_back()
            application.wait_text("^Cannot read ", mark)
        finally:
            resource.prlimit(process, resource.RLIMIT_NOFILE, limits)
        self.assert_runs(application, "d", self.kind.switched)
        self.edit(application, lambda: None)
        self.assert_runs(application, "r", self.kind.counted)

        # The directory itself goes, as with a home that is not mounted, and comes back.
        aside = self.home.settings.with_name("aside")
        mark = application.mark()
        self.edit(application, lambda: self.home.settings.rename(aside))
        application.wait_text("^Cannot read .*folder", mark)
        self.assert_runs(application, "d", self.kind.switched)
        def bring_back():
            self.home.settings.rmdir()
            aside.rename(self.home.settings)
            self.home.write_gestures("Velmora", ("r", self.kind.switched))
        self.edit(application, bring_back)
        self.assert_runs(application, "r", self.kind.switched)
        self.assert_beeps(application, "d")


class FeatherpadFiles(Files, harness.DesktopTest):
    kind = Featherpad


class LinguistFiles(Files, harness.DesktopTest):
    kind = Linguist


if __name__ == "__main__":
    unittest.main()
