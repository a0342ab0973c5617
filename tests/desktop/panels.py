#!/usr/bin/env python3
"""The mnemonic panel as a window of real applications, and text that is typed into their views."""

import time
import unittest

import applications
import harness
from harness import BUILD, stays, wait_for
from xclient import LEFT

# Some applications append their name.
PANEL = "^Run Mnemonic"
LINES = "one line\n\tanother 😀 «ü»\n"
LONG = "0123456789 abcdefghi\n" * 4762


def open_panel(application):
    application.x.keys("ctrl+m")
    panel = application.window(PANEL)
    wait_for(lambda: application.x.active_window() == panel, "the panel to be active")
    return panel


class Panels:
    kind = None

    def open(self):
        kind = self.kind
        self.home.write_preferences()
        own = f"{kind.first_menu}/Velmora"
        # Half of it in the files that all applications share.
        write = self.home.write_definitions
        write("Mnemonics", "Velmora", ("co", kind.switched), ("dialog", kind.dialog),
              ("done", kind.counted or ""), ("three", f"{own}/Text Snippets/three"))
        write("Mnemonics", kind.process_name, ("end", kind.ending))
        write("TextSnippets", "Velmora", ("three", LINES))
        write("TextSnippets", kind.process_name, ("long", LONG))
        write("Shortcuts", kind.process_name, ("8m", f"{own}/Run Mnemonic…"),
              ("8j", f"{own}/Text Snippets/long"))
        return self.start(kind)

    def assertCentred(self, panel, main):
        """Up to what the two kinds of windows' decorations differ by."""
        inner, outer = self.x.geometry(panel), self.x.geometry(main)
        self.assertAlmostEqual(inner.x + inner.width / 2, outer.x + outer.width / 2, delta=2)
        self.assertAlmostEqual(inner.y + inner.height / 2, outer.y + outer.height / 2, delta=2)

    def run_mnemonic(self, application, name):
        open_panel(application)
        self.x.keys(*name)
        application.no_window(PANEL)

    def back(self, application):
        application.no_window(PANEL)
        wait_for(lambda: self.x.active_window() == application.main,
                 "the main window to be active again")

    def test_a_mnemonic_runs_with_its_last_letter(self):
        application = self.open()
        for expected in (1, 2):
            before = application.settled_switch()
            panel = open_panel(application)
            self.assertCentred(panel, application.main)
            self.x.keys("c")
            self.x.keys("Return", "Tab", "Tab", "End")
            self.assertTrue(stays(lambda: panel in application.windows(), 0.2))
            self.assertEqual(len(application.commands()), expected - 1)
            self.x.keys("o")
            self.back(application)
            wait_for(lambda: application.switch() != before, application.switched)
            self.assertEqual(application.commands(), [application.switched] * expected)
        # The dialog stays open: the command's own loop is none of ours.
        self.run_mnemonic(application, "dialog")
        application.window(application.dialog_title)
        application.close_dialog()
        application.assert_usable()

    def test_the_panel_is_closed_without_a_command(self):
        application = self.open()
        for close in (lambda panel: self.x.keys("Escape"), self.x.close_window):
            panel = open_panel(application)
            self.x.keys("c")
            close(panel)
            self.back(application)
        # The window below cannot be closed meanwhile, and nothing of it can be clicked.
        panel = open_panel(application)
        self.x.click(*self.x.geometry(application.main).at(0.05, 0.01), LEFT)
        self.x.close_window(application.main)
        self.assertTrue(stays(lambda: len(application.windows()) == 2, 0.3))
        self.x.keys("Escape")
        self.back(application)
        self.assertEqual(application.commands(), [])
        application.assert_usable()

    def test_closing_the_panel_under_the_pointer_leaves_no_errors(self):
        # Once it is hidden, the toolkit asks for the frame that the window manager takes down.
        application = self.open()
        self.x.move(*self.x.geometry(application.main).at(0.5, 0.5))
        for _ in range(25):
            open_panel(application)
            self.x.keys("Escape")
            self.back(application)
        self.assertNotIn("XCB error", application.output())

    def test_a_mnemonic_can_end_the_application(self):
        application = self.open()
        self.run_mnemonic(application, "end")
        self.assertEqual(application.wait_exit(), 0)


class Texts(Panels):
    """Of applications with a document."""

    def test_text_is_typed_into_the_focused_view_as_one_step(self):
        application = self.open()
        self.run_mnemonic(application, "done")
        application.wait_count(1)
        self.run_mnemonic(application, "three")
        wait_for(lambda: "*" in self.x.title(application.main), "a changed document")
        application.save()
        self.assertEqual(application.document.read_text().count(LINES), 1)
        self.x.keys("ctrl+z")
        wait_for(lambda: "*" in self.x.title(application.main), "a changed document")
        application.save()
        self.assertNotIn("another", application.document.read_text())

        begin = time.monotonic()
        self.x.keys("ctrl+j")
        wait_for(lambda: "*" in self.x.title(application.main), "the long text")
        self.assertLess(time.monotonic() - begin, 3, "on a busy machine")
        application.save()
        self.assertEqual(application.document.read_text().count(LONG), 1)


class FeatherpadPanels(Texts, harness.DesktopTest):
    kind = applications.Featherpad


class LinguistPanels(Texts, harness.DesktopTest):
    kind = applications.Linguist


class SpeedcrunchPanels(Panels, harness.DesktopTest):
    kind = applications.Speedcrunch


class DesignerPanels(Panels, harness.DesktopTest):
    kind = applications.Designer


class EndingHosts:
    """What ends or loses its window under the panel."""

    qt = None

    def leave(self, mode):
        self.end_applications()
        self.home.write_preferences()
        self.home.write_definitions("Shortcuts", "Velmora",
                                    ("8m", "File/Velmora/Run Mnemonic…"))
        application = self.start(harness.Application,
                                 [BUILD / "tests/desktop" / f"host-leaving-qt{self.qt}", mode],
                                 name=f"leaving-{mode}")
        window = application.window("first")
        application.wait_ready()
        self.x.click(*self.x.geometry(window).at(0.5, 0.5), LEFT)
        wait_for(lambda: self.x.active_window() == window, "the window to be active")
        self.x.keys("g", "ctrl+m")
        wait_for(lambda: "gone" in application.output().splitlines(), "the host's moment")
        return application

    def test_a_host_that_ends_under_the_panel_ends_as_without_us(self):
        for mode, status in {"quit": 0, "exit": 5, "end": 6, "close": 0}.items():
            with self.subTest(mode=mode):
                self.assertEqual(self.leave(mode).wait_exit(), status)

    def test_a_window_that_goes_under_the_panel_leaves_the_others_usable(self):
        for mode in ("delete", "hide"):
            with self.subTest(mode=mode):
                application = self.leave(mode)
                application.no_window("first")
                panel = application.window(PANEL)
                application.activate(panel, at=(0.5, 0.1))
                self.x.keys("Escape")
                application.no_window(PANEL)
                second = application.window("second")
                self.x.click(*self.x.geometry(second).at(0.5, 0.5), LEFT)
                wait_for(lambda: self.x.active_window() == second, "the other window to be active")
                self.x.keys("q")
                self.assertEqual(application.wait_exit(), 8)


class Qt5EndingHosts(EndingHosts, harness.DesktopTest):
    qt = 5


class Qt6EndingHosts(EndingHosts, harness.DesktopTest):
    qt = 6


if __name__ == "__main__":
    unittest.main()
