#!/usr/bin/env python3
"""The preferences panel in real applications: each change is in force at once, here and elsewhere.
And how all panels look: in both languages, on light and dark desktops."""

import os
import plistlib
import subprocess
import unittest

import accessible
import applications
import harness
from harness import wait_for

PANEL = "^Velmora Preferences"
ENTRIES = {  # of the submenu, in English and German: what opens, under which name
    "gestures": ("Define Gestures…", "Gesten festlegen …"),
    "shortcuts": ("Define Menu Shortcuts…", "Tastenkürzel festlegen …"),
    "mnemonics": ("Define Mnemonics…", "Kurznamen festlegen …"),
    "snippets": ("Edit Text Snippets…", "Textbausteine bearbeiten …"),
    "scripts": ("Edit Scripts…", "Skripte bearbeiten …"),
    "preferences": ("Preferences…", "Einstellungen …"),
    "about": ("About Velmora", "Über Velmora"),
}
TITLES = {
    "gestures": ("Define Gestures", "Gesten festlegen"),
    "shortcuts": ("Define Menu Shortcuts", "Tastenkürzel festlegen"),
    "mnemonics": ("Define Mnemonics", "Kurznamen festlegen"),
    "snippets": ("Text Snippets", "Textbausteine"),
    "scripts": ("Scripts", "Skripte"),
    "preferences": ("Velmora Preferences", "Velmora-Einstellungen"),
    "about": ("About Velmora", "Über Velmora"),
}
HELP = ("Velmora Help", "Velmora-Hilfe")
MANUAL = ("/velmora/Manual", "/velmora/de.lproj/Manual")
# What stands beside one another in a panel; it must not overlap, nor leave the window.
SHOWN = ("label", "check box", "radio button", "push button", "text", "slider", "table")
DARK = {"Window": ("40,42,46", "230,230,230"), "View": ("28,30,33", "230,230,230"),
        "Button": ("55,58,63", "230,230,230"), "Selection": ("42,110,170", "255,255,255"),
        "Tooltip": ("40,42,46", "230,230,230")}


class Preferences:
    kind = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.accessibility = accessible.Accessibility(cls.screen)

    def open(self, **environment):
        return self.start(self.kind, environment={**self.accessibility.environment(),
                                                  **environment})

    def panel(self, application):
        accessible.choose(application, self.accessibility, application.first_menu, "Velmora",
                          "Preferences…")
        panel = accessible.Panel(application, self.accessibility, PANEL)
        wait_for(lambda: self.x.active_window() == panel.window, "the panel to be active")
        return panel

    def wait_stored(self, **values):
        def stored():
            file = self.home.preferences_file()
            return plistlib.loads(file.read_bytes()) if file.exists() else {}
        wait_for(lambda: all(stored().get(key) == value for key, value in values.items()),
                 f"{values} in {stored()}")

    def assert_stroke_runs(self, application):
        mark = application.mark()
        application.draw("dl")
        application.wait_text("^ran", mark)
        self.assertEqual(application.commands(mark), [self.kind.counted])

    def test_a_click_is_in_force_at_once(self):
        self.home.write_gestures(self.kind.process_name, ("dl", self.kind.counted))
        application = self.open()
        panel = self.panel(application)
        panel.click("radio button", "Gesture 1, Right")
        panel.click("check box", "Gesture 1, On")
        self.wait_stored(mouseButton0=1, isEnabled0=True)
        panel.click("check box", "Draw the stroke on the screen")
        self.wait_stored(drawsFeedback=False)
        panel.click("check box", "Presets, Green")
        self.wait_stored(flavor=20.0)
        wait_for(lambda: panel.find("slider").value > 0, "the slider to follow")
        panel.click("text", "Gesture timeout (milliseconds)")
        panel.keys("ctrl+a", "x", "Tab")
        wait_for(lambda: panel.find("text", "Gesture timeout (milliseconds)").text == "0",
                 "what was stored of a text that is no number")
        panel.keys("shift+Tab", *"700", "Tab")
        self.wait_stored(gestureTimeout=700)
        # Two lines with one combination: neither counts, and both titles change their colour.
        titles = [panel.find("label", f"Gesture {number}").area for number in (1, 2)]
        before = [self.x.picture(area) for area in titles]
        panel.click("radio button", "Gesture 2, Right")
        wait_for(lambda: all(self.x.picture(area) != was for area, was in zip(titles, before)),
                 "other colours")
        panel.screenshot(f"{self.kind.process_name}-preferences-illegal")
        panel.click("radio button", "Gesture 2, None")
        wait_for(lambda: self.x.picture(titles[0]) == before[0], "the colour of before")
        self.x.place(panel.window, harness.xclient.Geometry(620, 480, 640, 500))
        application.activate(application.main, at=(0.3, 0.01))
        self.assert_stroke_runs(application)
        self.x.close_window(panel.window)
        application.no_window(PANEL)
        self.assert_stroke_runs(application)

    def test_a_stored_button_that_no_one_offers_is_offered_and_kept(self):
        self.home.write_preferences(mouseButton1=7, isEnabled1=True)
        panel = self.panel(self.open())
        self.assertEqual([node.name for node in panel.all("radio button") if node.is_on()
                          and node.name.startswith("Gesture 2,")], ["Gesture 2, 8"])
        panel.screenshot(f"{self.kind.process_name}-preferences-button-8")
        panel.click("radio button", "Gesture 1, Middle")
        self.wait_stored(mouseButton0=2, mouseButton1=7)
        panel.click("radio button", "Gesture 2, None")
        self.wait_stored(mouseButton0=2, mouseButton1=-1)
        panel.click("radio button", "Gesture 2, 8")
        self.wait_stored(mouseButton0=2, mouseButton1=7)

    def test_another_applications_change_shows_when_this_one_becomes_active(self):
        application = self.open()
        panel = self.panel(application)
        application.leave()
        content = plistlib.dumps({"gestureSize": 33, "isEnabled1": True, "mouseButton1": 2})
        harness.write_file(self.home.preferences_file(), content)
        application.come_back()
        wait_for(lambda: panel.find("text", "Gesture size (pixels)").text == "33", "the new size")
        self.assertTrue(panel.find("check box", "Gesture 2, On").is_on())
        self.assertTrue(panel.find("radio button", "Gesture 2, Middle").is_on())

    def velmora(self, *arguments):
        """What the tool says, with its status in front."""
        done = subprocess.run([harness.VELMORA, *arguments], capture_output=True, text=True,
                              env={**os.environ, "HOME": str(self.home.path)})
        return f"{done.returncode} {done.stdout}{done.stderr}"

    def test_what_a_click_replaces_is_kept_and_brought_back(self):
        self.home.settings.rmdir()
        application = self.open()
        panel = self.panel(application)
        self.assertRegex(self.velmora("check"), "^1 .*VelmoraDefaults.plist: is missing")
        preferences, history = self.home.preferences_file(), self.home.settings / "History"
        panel.click("check box", "Gesture 1, Ctrl")
        self.wait_stored(modifiers0=8)
        for path, mode in ((self.home.settings, 0o700), (preferences, 0o600)):
            self.assertEqual(path.stat().st_mode & 0o777, mode)
        self.assertFalse(list(self.home.settings.glob("History/VelmoraDefaults*")))
        first = preferences.read_bytes()
        # Ten writes, one version.
        panel.click("check box", "Gesture 1, Shift")
        self.wait_stored(modifiers0=9)
        # The host answers when it is through with the click.
        wait_for(lambda: panel.find("check box", "Gesture 1, Shift").is_on(), "the tick")
        [version] = history.glob("VelmoraDefaults.plist.*")
        self.assertEqual(version.read_bytes(), first)
        self.assertEqual(history.stat().st_mode & 0o777, 0o700)
        name = version.name.removeprefix("VelmoraDefaults.plist.")
        self.assertRegex(self.velmora("history", "VelmoraDefaults.plist"),
                         f"^0 (?s:.*){name}(?s:.*)changed modifiers0 from 8 to 9")
        self.assertRegex(self.velmora("restore", "VelmoraDefaults.plist", "2000"), "^1 .*no version")
        self.assertRegex(self.velmora("restore", "VelmoraDefaults.plist", name), "^0 ")
        self.assertEqual(preferences.read_bytes(), first)
        self.assertEqual(len(list(history.glob("VelmoraDefaults.plist.*"))), 2)
        application.leave()
        application.come_back()
        wait_for(lambda: not panel.find("check box", "Gesture 1, Shift").is_on(),
                 "the version in the panel")

        # What is no file stays what it is.
        preferences.unlink()
        preferences.mkdir()
        (preferences / "inside").write_text("x")
        panel.click("check box", "Gesture 1, On")
        wait_for(lambda: panel.find("check box", "Gesture 1, On").is_on(), "the tick")
        self.assertEqual((preferences / "inside").read_text(), "x")
        self.assertEqual(len(list(history.glob("VelmoraDefaults.plist.*"))), 2)

    def test_the_keyboard_alone_does(self):
        self.home.write_definitions("Shortcuts", self.kind.process_name, (
            "8p", f"{self.kind.first_menu}/Velmora/Preferences…"))
        application = self.open()
        self.x.keys("ctrl+p")
        panel = accessible.Panel(application, self.accessibility, PANEL)
        wait_for(panel.focused, "the keyboard in the panel")
        panel.move_to("Gesture size (pixels)")
        panel.keys("ctrl+a", "2", "2", "Tab")
        self.wait_stored(gestureSize=22)
        panel.move_to("Gesture 1, Ctrl")
        panel.keys("space")
        panel.move_to("Gesture 1, None")
        panel.keys("Right", "Right")
        panel.move_to("Gesture 1, On")
        panel.keys("space")
        self.wait_stored(mouseButton0=1, isEnabled0=True, modifiers0=8)
        panel.move_to("Colour", key="shift+Tab")
        panel.keys("End")
        self.wait_stored(flavor=60.0)
        panel.keys("Escape")
        application.no_window(PANEL)

    def dark(self):
        """The colours of a desktop, as its applications read them; the environment that goes with
        it."""
        folder = self.home.path / ".config"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "kdeglobals").write_text("".join(
            f"[Colors:{group}]\nBackgroundNormal={back}\nBackgroundAlternate={back}\n"
            f"ForegroundNormal={front}\nForegroundInactive=140,140,140\n"
            for group, (back, front) in DARK.items()))
        return {"QT_QPA_PLATFORMTHEME": "kde", "XDG_CURRENT_DESKTOP": "KDE",
                "KDE_SESSION_VERSION": "5", "KDE_FULL_SESSION": "true"}

    def assert_nothing_overlaps(self, panel):
        nodes = panel.nodes()
        shown = [node for node in nodes if node.role in SHOWN and node.area.width > 0]
        window = nodes[0].area
        for node in shown:
            self.assertTrue(window.contains(*node.area[:2]) and window.contains(
                *node.area.at(1, 1)), f"{node} leaves {window}")
        for index, node in enumerate(shown):
            for other in shown[index + 1:]:
                self.assertFalse(node.area.intersects(other.area), f"{node} and {other}")

    def test_panels_in_both_languages_on_light_and_dark_desktops(self):
        self.home.write_preferences()
        process = self.kind.process_name
        for component, trigger in (("Gestures", "ldr"), ("Shortcuts", "8b"), ("Mnemonics", "do"),
                                   ("TextSnippets", "Greeting"), ("Scripts", "beep")):
            self.home.write_definitions(component, process, (trigger, self.kind.counted))
            self.home.write_definitions(component, "Velmora", (trigger + "2", "Help/About"))
        for language in ("en", "de"):
            for palette in ("light", "dark"):
                speaks = {"LC_ALL": "C.UTF-8" if language == "en" else "de_DE.UTF-8",
                          "LANGUAGE": language}
                application = self.open(**speaks, **(self.dark() if palette == "dark" else {}))
                for name, entries in ENTRIES.items():
                    with self.subTest(language=language, palette=palette, panel=name):
                        index = ("en", "de").index(language)
                        # A host that speaks the language too calls its first menu otherwise.
                        first = (application.first_menu, "Datei")
                        accessible.choose(application, self.accessibility, first, "Velmora",
                                          entries[index])
                        panel = accessible.Panel(application, self.accessibility,
                                                 f"^{TITLES[name][index]}")
                        self.assert_nothing_overlaps(panel)
                        panel.screenshot(f"panel-{process}-{language}-{palette}-{name}")
                        self.x.close_window(panel.window)
                        application.no_window(panel.title)
                accessible.choose(application, self.accessibility, first, "Velmora", HELP[index])
                application.wait_text(f"^opens file://.*{MANUAL[index]}/index.html$")
                application.stop()


class FeatherpadPreferences(Preferences, harness.DesktopTest):
    kind = applications.Featherpad


class LinguistPreferences(Preferences, harness.DesktopTest):
    kind = applications.Linguist


if __name__ == "__main__":
    unittest.main()
