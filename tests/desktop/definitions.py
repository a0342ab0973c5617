#!/usr/bin/env python3
"""The panels in which things are defined, in real applications: opened from the menu, filled with
clicks and keys, accepted or closed; and what was defined, used in the same application and in another
one."""

import plistlib
import re
import time
import unittest

import accessible
import applications
import harness
from harness import stays, wait_for
from xclient import MIDDLE, Geometry

# Where neither the applications' menus nor the views that strokes are drawn in are.
ASIDE = Geometry(560, 690, 620, 300)


class Definitions:
    kind = None
    other = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.accessibility = accessible.Accessibility(cls.screen)

    def open(self, kind=None):
        return self.start(kind or self.kind, environment=self.accessibility.environment())

    def choose(self, application, *titles):
        accessible.choose(application, self.accessibility, application.first_menu, "Velmora",
                          *titles)

    def panel(self, application, entry, title):
        self.choose(application, entry)
        panel = accessible.Panel(application, self.accessibility, f"^{title}")
        self.x.place(panel.window, ASIDE)
        wait_for(lambda: abs(self.x.geometry(panel.window).y - ASIDE.y) < 40, "the panel aside")
        wait_for(lambda: self.x.active_window() == panel.window, "the panel to be active")
        return panel

    def accept(self, application, panel):
        panel.press_button("OK")
        application.no_window(panel.title)
        application.activate(application.main, at=(0.6, 0.01))

    def saved(self, component, process=None):
        file = self.home.definitions_file(component, process or self.kind.process_name)
        return plistlib.loads(file.read_bytes()) if file.exists() else []

    def test_a_gesture_is_learned_and_used_in_two_applications(self):
        self.home.write_preferences()
        application = self.open()
        about = f"{application.first_menu}/Velmora/About Velmora"
        panel = self.panel(application, "Define Gestures…", "Define Gestures")
        panel.press_button("Add")
        panel.choose_in_cell(0, about)
        panel.click_cell(0, 0)
        wait_for(lambda: panel.cells()[0][0].is_on(), "the globe")
        panel.press_button("Add")
        panel.choose_in_cell(1, self.kind.counted)
        for row, letters in ((0, "rd"), (1, "dl")):
            panel.double_click(row, 2)
            prompt = accessible.Panel(application, self.accessibility, "^Learn Gesture")
            prompt.screenshot(f"{self.id()}-prompt")
            mark = application.mark()
            application.draw(letters)
            application.no_window("^Learn Gesture")
            wait_for(lambda: panel.rows()[row][2] == letters, f"{letters}: {panel.rows()}")
            self.assertEqual(application.commands(mark), [])
        self.assertEqual(self.saved("Gestures"), [])
        self.accept(application, panel)
        self.assertEqual([(item["Trigger"], item["Path"]) for item in self.saved("Gestures")],
                         [("rd", about), ("dl", self.kind.counted)])

        mark = application.mark()
        application.draw("dl")
        application.wait_text("^ran", mark)
        self.assertEqual(application.commands(mark), [self.kind.counted])
        application.wait_count(1)
        application.stop()
        second = self.open(self.other)
        second.draw("rd")
        accessible.Panel(second, self.accessibility, "^About Velmora").find("push button",
                                                                           "Velmora Help")

    def test_closing_a_panel_takes_everything_back(self):
        self.home.write_preferences()
        self.home.write_gestures(self.kind.process_name, ("dl", self.kind.counted))
        application = self.open()
        kept = [["Global", self.kind.counted, "dl"]]
        for close in (self.x.close_window, lambda window: self.x.keys("Escape")):
            panel = self.panel(application, "Define Gestures…", "Define Gestures")
            panel.wait_rows(kept)
            panel.press_button("Add")
            panel.wait_rows(kept + [["Global", "", ""]])
            panel.click_cell(0, 2)
            panel.press_button("Delete")
            panel.wait_rows([["Global", "", ""]])
            # The prompt goes with the panel, and strokes run their commands again.
            panel.double_click(0, 2)
            application.window("^Learn Gesture")
            self.x.close_window(panel.window)
            application.no_window("^Define Gestures")
            application.no_window("^Learn Gesture")
            panel = self.panel(application, "Define Gestures…", "Define Gestures")
            panel.wait_rows(kept)
            close(panel.window)
            application.no_window("^Define Gestures")
        application.activate(application.main, at=(0.6, 0.01))
        mark = application.mark()
        application.draw("dl")
        application.wait_text("^ran", mark)
        application.assert_usable()

    def test_a_shortcut_is_captured_and_used(self):
        application = self.open()
        panel = self.panel(application, "Define Menu Shortcuts…", "Define Menu Shortcuts")

        def shows(trigger, text):
            wait_for(lambda: panel.rows() and panel.rows()[0][2] == text, f"{text}: {panel.rows()}")
            self.assertEqual([item["Trigger"] for item in self.saved("Shortcuts")], [trigger])

        # The button has the focus, and the new row is selected.
        panel.press_button("Add")
        wait_for(lambda: len(panel.rows()) == 1, "the new row")
        self.x.keys("ctrl+alt+j")
        shows("Aj", "Ctrl+Alt+J")
        self.x.keys("F9")
        shows("0" + chr(0xF70C), "F9")
        panel.choose_in_cell(0, self.kind.counted)
        panel.click_cell(0, 2)
        self.x.keys("ctrl+shift+alt+j")
        shows("AJ", "Ctrl+Alt+Shift+J")
        # What is seen are signs; the tool tip says what they are.
        panel.screenshot(f"{self.id()}-signs")
        self.x.move(*panel.cells()[0][2].area.at(0.4, 0.4))
        self.x.move(*panel.cells()[0][2].area.at(0.5, 0.5))
        wait_for(lambda: self.accessibility.nodes(r"^Ctrl\+Alt\+Shift\+J$"), "the tool tip")
        self.x.click(*panel.cells()[0][2].area.at(0.5, 0.5), MIDDLE)
        shows("0m3", "Mouse button 3")
        self.x.keys("Delete")
        shows("0", "")
        # Both applications save with this.
        mark = application.mark()
        self.x.keys("ctrl+s")
        sheet = accessible.Panel(application, self.accessibility, "^Shortcut already in use")
        sheet.screenshot(f"{self.id()}-sheet")
        sheet.find("label", re.compile("^The shortcut 'Ctrl\\+S' is already in use for '"))
        sheet.press_button("Cancel")
        application.no_window("^Shortcut already")
        shows("0", "")
        self.x.keys("ctrl+alt+j")
        shows("Aj", "Ctrl+Alt+J")
        self.assertEqual(application.commands(mark), [])
        # From now on it is a definition's, and runs its item in the panel too.
        self.x.keys("ctrl+alt+j")
        application.wait_text("^ran", mark)
        shows("Aj", "Ctrl+Alt+J")
        self.accept(application, panel)
        self.x.keys("ctrl+alt+j")
        wait_for(lambda: len(application.commands(mark)) == 2, "the second run")
        self.assertEqual(application.commands(mark), [self.kind.counted] * 2)
        application.wait_count(2)

    def test_a_mnemonic_is_named_and_run_and_rows_are_dragged(self):
        application = self.open()
        panel = self.panel(application, "Define Mnemonics…", "Define Mnemonics")
        for row, (path, name) in enumerate(((self.kind.counted, "do"), (self.kind.dialog, "dia"),
                                            (self.kind.ending, "end"))):
            panel.press_button("Add")
            panel.choose_in_cell(row, path)
            panel.double_click(row, 2)
            panel.keys(*name, "Return")
            wait_for(lambda: panel.rows()[row][2] == name, f"{name}: {panel.rows()}")
        # The first below the last.
        areas = [row[2].area for row in panel.cells()]
        self.x.move(*areas[0].at(0.3, 0.5))
        self.x.press(1)
        for step in range(1, 12):
            self.x.move_by(0, (areas[2].y + areas[2].height - areas[0].y) // 12)
            time.sleep(0.02)
        self.x.release(1)
        wait_for(lambda: [row[2] for row in panel.rows()][-1] == "do", f"{panel.rows()}")
        self.accept(application, panel)
        self.assertEqual(sorted(item["Trigger"] for item in self.saved("Mnemonics")),
                         ["dia", "do", "end"])
        self.choose(application, "Run Mnemonic…")
        application.window("^Run Mnemonic")
        mark = application.mark()
        panel.keys("d", "o")
        application.wait_text("^ran", mark)
        application.wait_count(1)

    def test_a_panel_is_worked_by_the_keyboard_alone(self):
        self.home.write_definitions("Shortcuts", self.kind.process_name, (
            "8k", f"{self.kind.first_menu}/Velmora/Define Mnemonics…"), (
            "8j", f"{self.kind.first_menu}/Velmora/Run Mnemonic…"))
        application = self.open()
        keys = accessible.keys_to(application, self.accessibility, self.kind.counted)
        self.x.keys("ctrl+k")
        panel = accessible.Panel(application, self.accessibility, "^Define Mnemonics")
        wait_for(lambda: self.x.active_window() == panel.window, "the panel to be active")
        for _ in range(2):
            panel.move_to("Add")
            panel.keys("space")
        panel.wait_rows([["Global", "", ""]] * 2)
        panel.move_to("Delete")
        panel.keys("space")
        panel.wait_rows([["Global", "", ""]])
        # Over "Add" into the table.
        panel.keys("shift+Tab", "shift+Tab", "space")
        wait_for(lambda: panel.cells()[0][0].is_on(), "the globe")
        panel.keys("Right", "space")
        application.popup()
        panel.keys(*keys)
        application.no_popups()
        panel.wait_rows([["Global", self.kind.counted, ""]])
        panel.keys("Right", "F2", "g", "o", "Return")
        panel.wait_rows([["Global", self.kind.counted, "go"]])
        panel.move_to("OK")
        panel.keys("space")
        application.no_window(panel.title)
        self.assertEqual([item["Trigger"] for item in self.saved("Mnemonics", "Velmora")], ["go"])
        mark = application.mark()
        wait_for(lambda: self.x.active_window() == application.main, "the window to be active")
        panel.keys("ctrl+j")
        application.window("^Run Mnemonic")
        panel.keys("g", "o")
        application.wait_text("^ran", mark)

    def test_escape_leaves_a_text_before_it_closes_the_panel(self):
        application = self.open()
        panel = self.panel(application, "Edit Text Snippets…", "Text Snippets")
        panel.press_button("Add")
        panel.wait_rows([["Global", "Untitled"]])
        area = panel.find("text").area
        for text in ("a", "ab"):
            self.x.click(*area.at(0.5, 0.5))
            panel.keys(text[-1])
            wait_for(lambda: panel.find("text").text == text, "the text")
            panel.keys("Escape")
            # What comes now is not for the text.
            panel.keys("Home")
            self.assertTrue(harness.stays(
                lambda: panel.find("text").text == text and application.window(panel.title), 0.3))
        panel.keys("Escape")
        application.no_window(panel.title)
        self.assertEqual(self.saved("TextSnippets"), [])

    def test_texts_and_scripts_are_written_and_used(self):
        application = self.open()
        for entry, title, text in (("Edit Text Snippets…", "Text Snippets", "xyz"),
                                   ("Edit Scripts…", "Scripts", "nonsense")):
            panel = self.panel(application, entry, title)
            panel.press_button("Add")
            panel.wait_rows([["Global", "Untitled"]])
            area = panel.find("text").area
            self.x.click(*area.at(0.5, 0.5))
            panel.keys(*text)
            wait_for(lambda: panel.find("text").text == text, "the text")
            panel.press_button("Add")
            wait_for(lambda: panel.find("text").text == "", "the text of the new row")
            panel.press_button("Delete")
            wait_for(lambda: panel.find("text").text == text, "the text of the first row")
            self.accept(application, panel)
        self.assertEqual([item["Path"] for item in self.saved("TextSnippets")], ["xyz"])
        # After this command both have the keyboard in a text.
        accessible.choose(application, self.accessibility, *self.kind.counted.split("/"))
        self.choose(application, "Text Snippets", "Untitled")
        wait_for(lambda: "*" in self.x.title(application.main), "a changed document")
        application.save()
        self.assertIn("xyz", application.document.read_text())
        self.choose(application, "Scripts", "Untitled")
        application.wait_text("execution error")
        application.assert_usable()


class FeatherpadDefinitions(Definitions, harness.DesktopTest):
    kind, other = applications.Featherpad, applications.Linguist


class LinguistDefinitions(Definitions, harness.DesktopTest):
    kind, other = applications.Linguist, applications.Featherpad


if __name__ == "__main__":
    unittest.main()
