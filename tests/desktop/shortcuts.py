#!/usr/bin/env python3
"""Shortcuts that the user chose, with real keys and buttons, in a host whose actions have shortcuts
of every kind; and text that is typed into its fields.

The host is host-shortcuts, which says what it does and does what it is told.
"""

import subprocess
import unittest

import harness
import hosts
from harness import stays, wait_for
from xclient import MIDDLE

# The buttons at the side of a mouse, as the X server numbers them.
BACK, FORWARD = 8, 9
# What the actions of the host have by themselves.
OWN = {"New": "Ctrl+N", "Open...": "Ctrl+O; Ctrl+Shift+O; Alt+O", "Save": "Ctrl+S; Ctrl+K, Ctrl+S",
       r"Key\tCtrl+E": "Ctrl+E", "Tool": "Ctrl+T; Alt+T", "Late": "",
       **dict.fromkeys(("One", "Two", "Three", "Four", "Five", "Six", "Seven", "Eight"), "")}


def function_key(number):
    return chr(0xF703 + number)


class ShortcutHost(hosts.ToldHost):
    def __init__(self, screen, home, qt):
        super().__init__(screen, home, "shortcuts", qt)

    def shortcuts(self, when="has", window=1):
        """What the actions of a window have: now, or when it last closed or the host quit. A menu
        that is open shows it."""
        head = f"{when} {window} "
        lines = self.tell("shortcuts") if when == "has" else self.said()
        return {"Late": "", **dict(line[len(head):].split(": ", 1) for line in lines
                                   if line.startswith(head))}

    def ran(self):
        return [line[4:] for line in self.said() if line.startswith("ran ")]


class Shortcuts:
    qt = None

    def open(self, *definitions, **files):
        """definitions: (trigger, path) each; every second one stands in the shared file."""
        self.home.write_preferences()
        full = [(trigger, path, "actionNew" if path == "File/New" else path)
                for trigger, path in definitions]
        self.home.write_definitions("Shortcuts", "Velmora", *full[::2])
        self.home.write_definitions("Shortcuts", f"host-shortcuts-qt{self.qt}", *full[1::2])
        self.host = self.start(ShortcutHost, self.qt)

    def assert_runs(self, chord, title, window=1):
        """Presses the keys, and exactly that one action runs. Returns what the host said."""
        before = self.host.said()
        self.x.keys(chord)
        what = f"{window} {title}"
        wait_for(lambda: self.host.ran()[self.count(before):], f"{chord} to run {what}")
        self.host.tell("text")
        self.assertEqual(self.host.ran()[self.count(before):], [what], chord)
        return self.host.said()[len(before):]

    def count(self, lines):
        return len([line for line in lines if line.startswith("ran ")])

    def assert_runs_nothing(self, *chords):
        before = self.host.ran()
        self.x.keys(*chords, "Shift_L")
        self.host.tell("text")
        self.assertTrue(stays(lambda: self.host.ran() == before, 0.1), self.host.ran())

    def wait_text(self, text):
        wait_for(lambda: self.host.tell("text")[-1:] == [f"text {text}"], f"{text!r} in the field")

    def assert_menu_shows(self, **expected):
        """What the host's first menu shows while it is open. Its actions have their own before and
        afterwards."""
        self.assertEqual(self.host.shortcuts(), OWN)
        self.x.keys("alt+f")
        self.host.popup()
        shown = self.host.shortcuts()
        self.x.keys("Escape")
        self.host.no_popups()
        self.x.keys("Escape")
        cut = {title.partition("\\t")[0]: keys for title, keys in shown.items()}
        self.assertEqual({title: cut[title] for title in expected}, expected)
        self.assertEqual(self.host.shortcuts(), OWN)

    def test_new_shortcuts_work_and_their_keys_are_not_the_hosts(self):
        self.open(("8d", "File/One"), ("0" + function_key(5), "File/Two"), ("2b", "File/Three"),
                  ("1c", "File/Four"), ("CÄ", "File/Five"))
        self.assert_menu_shows(One="Ctrl+D", Two="F5", Three="Alt+B", Four="Meta+C",
                               Five="Ctrl+Shift+Ä", New="Ctrl+N")
        for chord, title, key in (("ctrl+d", "One", "D"), ("F5", "Two", "F5")):
            for _ in range(2):
                said = self.assert_runs(chord, title)
                self.host.wait_says(f"release key {key}")
                self.assertNotIn(f"override key {key}", said)
                self.assertNotIn(f"press key {key}", said)
        for chord, title in (("alt+b", "Three"), ("super+c", "Four")) * 2:
            self.assert_runs(chord, title)

        # Held down; and the modifier let go first. An action may refuse to repeat.
        self.host.tell("once Four")
        for modifier, key, ran, repeats in (("ctrl", "d", "1 One", True), ("alt", "b", "1 Three", True),
                                            ("super", "c", "1 Four", False)):
            before = len(self.host.ran())
            release = f"release key {key.upper()}"
            released = self.host.said().count(release)
            self.x.key_down(modifier)
            self.x.key_down(key)
            if repeats:
                wait_for(lambda: len(self.host.ran()) > before + 3, "the key to repeat")
            else:
                # On a busy machine the toolkit itself takes a repeated key for one pressed anew.
                self.assertTrue(stays(lambda: len(self.host.ran()) - before <=
                                      1 + self.host.said().count(release) - released, 1))
            self.x.key_up(modifier)
            self.x.key_up(key)
            self.host.tell("text")
            self.assertEqual(set(self.host.ran()[before:]), {ran})
            self.assertNotIn(f"press key {key.upper()}", self.host.said())
        self.x.keys("a", "b")
        self.wait_text("ab")

    def test_keys_of_every_kind(self):
        rows = (("8\r", "ctrl+Return"), ("C\x19", "ctrl+shift+Tab"), ("8 ", "ctrl+space"),
                ("0\uf72c", "Prior"), ("8\uf700", "ctrl+Up"), ("8\x7f", "ctrl+BackSpace"),
                ("2\uf728", "alt+Delete"), ("C+", "ctrl+shift+equal"))
        titles = ("One", "Two", "Three", "Four", "Five", "Six", "Seven", "Eight")
        self.open(*((trigger, f"File/{title}") for (trigger, _), title in zip(rows, titles)))
        for (_, chord), title in zip(rows, titles):
            self.assert_runs(chord, title)
        self.x.keys("Caps_Lock")
        self.addCleanup(self.x.keys, "Caps_Lock")
        self.assert_runs("ctrl+Return", "One")
        self.assertEqual(self.host.tell("text")[-1], "text ")

    def test_no_menu_opens_when_alt_is_let_go_first(self):
        rows = (("2" + function_key(6), "One", "F6"), ("2b", "Two", "b"), ("2f", "Three", "f"),
                ("2o", "Four", "o"))
        self.open(*((trigger, f"File/{title}") for trigger, title, _ in rows))
        for count, (_, title, key) in enumerate(rows, 1):
            self.x.key_down("alt")
            self.x.key_down(key)
            wait_for(lambda: len(self.host.ran()) == count, f"{title} to run")
            self.x.key_up("alt")
            self.x.key_up(key)
            self.x.keys("x")
            self.wait_text("x" * count)
            self.assertEqual(self.host.ran()[-1], f"1 {title}")

    def test_the_user_s_combination_wins(self):
        """Over other items' first and further shortcuts, letters of the menu bar, tool bars'
        actions and shortcuts that stand in no menu."""
        rows = (("8n", "One", "ctrl+n"), ("8O", "Two", "ctrl+shift+o"), ("2o", "Three", "alt+o"),
                ("2f", "Four", "alt+f"), ("8t", "Five", "ctrl+t"), ("2t", "Six", "alt+t"),
                ("8y", "Seven", "ctrl+y"), ("2y", "Eight", "alt+y"))
        self.open(*((trigger, f"File/{title}") for trigger, title, _ in rows))
        for _ in range(2):
            for _, title, chord in rows:
                self.assert_runs(chord, title)
        self.assert_runs("ctrl+o", "Open...")
        self.assert_runs_nothing("ctrl+k", "ctrl+g")
        self.x.keys("ctrl+k")
        self.assert_runs("ctrl+s", "Save")
        # Also over what the host gives the combination to later.
        self.host.tell("give Save Alt+F")
        self.assert_runs("alt+f", "Four")

    def test_of_two_definitions_the_first_runs(self):
        """The shared file's come after the application's own, and the item that changed last shows
        the combination."""
        self.open(("2b", "File/One"), ("2b", "File/Two"), ("8d", "File/Three"), ("8d", "File/Four"))
        for change in ("text", "disable One", "enable One", "disable Three", "enable Three"):
            self.host.tell(change)
            for chord, title in (("alt+b", "Two"), ("ctrl+d", "Four")):
                self.assert_runs(chord, title)

    def test_plain_keys_are_typed_where_text_is_and_run_items_elsewhere(self):
        self.open(("0a", "File/One"), ("0B", "File/Two"))
        self.x.keys("a", "shift+b", "c")
        self.wait_text("aBc")
        self.host.tell("unfocus")
        self.assert_runs("a", "One")

    def test_with_a_hidden_menu_bar_all_combinations_work(self):
        self.home.write_definitions("TextSnippets", "Velmora", ("one", "typed"))
        self.open(("2b", "File/One"), ("8d", "File/Two"), ("0", "File/New"),
                  ("2y", "File/Velmora/Text Snippets/one"))
        self.host.tell("bar off")
        self.assert_runs("alt+b", "One")
        self.assert_runs("ctrl+d", "Two")
        self.assert_runs_nothing("ctrl+n")
        self.x.keys("alt+y")
        self.wait_text("typed")
        # The combination with which an item of ours comes.
        self.x.keys("ctrl+alt+m")
        self.host.window("Run Mnemonic")
        self.x.keys("Escape")
        self.host.no_window("Run Mnemonic")

    def test_a_combination_that_an_item_of_ours_comes_with_gives_way(self):
        self.home.write_definitions("TextSnippets", "Velmora", ("one", "typed"))
        self.open(("2f", "File/Velmora/Text Snippets/one"))
        # One that the user has given it does not, even after the menu was made anew.
        self.host.tell("give One Ctrl+Alt+M")
        self.assert_runs("ctrl+alt+m", "One")
        self.host.tell("give One Ctrl+P")
        self.x.keys("ctrl+alt+m")
        self.host.window("Run Mnemonic")
        self.x.keys("Escape")
        self.host.no_window("Run Mnemonic")
        self.host.activate_window(1)
        self.host.tell("greedy")
        self.x.keys("ctrl+alt+m")
        self.host.wait_says("press key M")
        self.host.tell("give One Alt+F")
        self.x.keys("alt+f")
        self.wait_text("typed")
        self.home.write_definitions("TextSnippets", "Velmora", ("one", "typed"), ("two", "more"))
        self.host.open_window(2)
        self.host.activate_window(1)
        self.x.keys("alt+f")
        self.wait_text("typedtyped")

    def test_a_trigger_without_a_key_takes_the_item_s_shortcut_away(self):
        self.open(("0", "File/New"), ("0", "File/Open..."), ("0", "File/Save"), ("0", "File/Key"))
        self.assert_menu_shows(**{"New": "", "Open...": "Ctrl+Shift+O; Alt+O", "Key": "",
                                  "Save": "Ctrl+K, Ctrl+S"})
        self.assert_runs_nothing("ctrl+n", "ctrl+o", "ctrl+s", "ctrl+e")
        # They are plain keys now.
        for key in "NOSE":
            self.assertIn(f"press key {key}", self.host.said())
        for chord in ("ctrl+shift+o", "alt+o"):
            self.assert_runs(chord, "Open...")
        self.x.keys("ctrl+k")
        self.assert_runs("ctrl+s", "Save")

    def test_items_that_come_later_and_hosts_that_change_theirs(self):
        self.open(("8j", "File/New"), ("8d", "File/One"), ("2b", "File/Two"), ("8l", "Lazy/Late"),
                  ("2g", "File/Added"), ("2n", "File/Insists"))
        # A menu that its opening fills, opened; in the second window it is not.
        self.x.keys("alt+l")
        self.host.popup()
        wait_for(lambda: self.host.shortcuts()["Late"] == "Ctrl+L", "the new item to show its key")
        self.x.keys("Escape")
        self.host.no_popups()
        self.x.keys("Escape")
        self.assert_runs("ctrl+l", "Late")
        self.host.tell("add Added")
        self.assert_runs("alt+g", "Added")
        for change in ("rebuild", "reset"):
            self.host.tell(change)
            self.assert_runs("alt+b", "Two")
            self.assert_runs("ctrl+j", "New")
            self.assert_runs_nothing("ctrl+n")
        self.host.tell("disable Two")
        self.host.tell("reset")
        self.assert_runs_nothing("alt+b")
        self.host.tell("enable Two")
        self.assert_runs("alt+b", "Two")
        self.host.open_window(2)
        for chord, title in (("alt+b", "Two"), ("ctrl+d", "One"), ("ctrl+l", "Late")):
            self.assert_runs(chord, title, 2)
        self.host.activate_window(1)
        for chord, title in (("alt+b", "Two"), ("ctrl+d", "One")):
            self.assert_runs(chord, title)

        # One that does not let go shows its own, and its item has the user's key all the same.
        self.host.tell("insist New")
        self.assert_menu_shows(New="Ctrl+N", One="Ctrl+D")
        self.assert_runs("ctrl+j", "New")

    def test_a_modal_dialog_has_its_keys_for_itself(self):
        self.open(("8a", "File/One"), ("0" + function_key(5), "File/Two"), ("2b", "File/Three"),
                  ("8m3", "File/Four"), ("1n", "File/New"))
        self.host.tell("dialog")
        dialog = self.host.window("Dialog")
        wait_for(lambda: self.x.active_window() == dialog, "the dialog to be active")
        # With Alt and Super, fields take letters as such.
        self.x.keys("b", "c", "ctrl+a", "F5", "alt+b", "super+n", "d")
        self.wait_text("bnd")
        self.x.key_down("ctrl")
        self.x.click(*self.x.geometry(dialog).at(0.5, 0.02), MIDDLE)
        self.x.key_up("ctrl")
        self.x.keys("e")
        self.wait_text("bnde")
        self.assertEqual(self.host.ran(), [])
        self.x.keys("Escape")
        self.host.no_window("Dialog")
        wait_for(lambda: self.x.active_window() == self.host.windows_by_number[1], "the window")
        for chord, title in (("ctrl+a", "One"), ("F5", "Two"), ("alt+b", "Three"),
                             ("super+n", "New")):
            self.assert_runs(chord, title)

    def test_the_host_s_actions_keep_their_own_shortcuts(self):
        """Whenever the host may save them."""
        self.open(("8j", "File/New"), ("2b", "File/Two"), ("8n", "File/One"), ("0", "File/Key"))
        self.host.open_window(2)
        for window in (1, 2):
            self.assertEqual(self.host.shortcuts(window=window), OWN)
        self.host.tell("close")
        self.assertEqual(self.host.shortcuts("closing", 2), OWN)
        self.host.activate_window(1)
        self.assert_runs("alt+b", "Two")
        self.x.keys("alt+f")
        self.host.popup()
        self.host.tell("quit")
        self.assertEqual(self.host.wait_exit(), 0)
        self.assertEqual(self.host.shortcuts("quitting"), OWN)

    def test_the_key_text_is_what_the_layout_gives(self):
        self.open(("8z", "File/One"), ("8ö", "File/Two"), ("8Ö", "File/Three"), ("2ö", "File/Four"),
                  ("8é", "File/Five"), ("C1", "File/Six"), ("8ы", "File/Seven"),
                  ("2ф", "File/Eight"))
        self.addCleanup(self.set_layout, "us")
        for layout, rows in {
                "us": (("ctrl+#52", "One"),),
                "de": (("ctrl+#29", "One"), ("ctrl+#47", "Two"), ("ctrl+shift+#47", "Three"),
                       ("alt+#47", "Four")),
                "fr": (("ctrl+#25", "One"), ("ctrl+#11", "Five"), ("ctrl+shift+#10", "Six")),
                "ru": (("ctrl+#39", "Seven"), ("alt+#38", "Eight")),
                "us,ru": (("ctrl+#39", "Save"),),
                "us,ru switched": (("ctrl+#39", "Seven"), ("alt+#38", "Eight"))}.items():
            self.set_layout(layout)
            for chord, title in rows:
                with self.subTest(layout=layout, chord=chord):
                    self.assert_runs(chord, title)

    def set_layout(self, layout):
        names, _, switched = layout.partition(" ")
        subprocess.run(["setxkbmap", "-display", self.screen.name, names], check=True)
        self.x.lock_layout(1 if switched else 0)

    def test_extra_mouse_buttons_run_items_and_reach_the_host(self):
        rows = (("1m3", "One", "super", MIDDLE, 4), ("8m3", "Two", "ctrl", MIDDLE, 4),
                ("0m4", "Three", None, BACK, 8), ("0m5", "Four", None, FORWARD, 16),
                ("Cm4", "Five", "ctrl+shift", BACK, 8))
        self.open(*((trigger, f"File/{title}") for trigger, title, *_ in rows))
        # None of it stands in a menu.
        self.assertEqual(self.host.shortcuts(), OWN)
        self.x.move(*self.x.geometry(self.host.windows_by_number[1]).at(0.5, 0.96))
        for _, title, keys, button, number in rows:
            before = self.host.ran()
            names = keys.split("+") if keys else ()
            for name in names:
                self.x.key_down(name)
            for count in (1, 2):
                self.x.press(button)
                self.x.release(button)
                self.host.wait_says(f"release button {number}")
                wait_for(lambda: len(self.host.ran()) >= len(before) + count, f"{title} to run")
            for name in names:
                self.x.key_up(name)
            self.host.tell("text")
            self.assertEqual(self.host.ran(), before + [f"1 {title}"] * 2)
            self.assertIn(f"press button {number}", self.host.said())

    def test_text_is_typed_into_fields_as_one_step_and_past_the_clipboard(self):
        lines = "one\n\tanother 😀 «ü»\nthird"
        self.home.write_definitions("TextSnippets", "Velmora", ("one", lines), ("two", lines))
        self.open(("8j", "File/Velmora/Text Snippets/one"),
                  ("1j", "File/Velmora/Text Snippets/two"))
        for selection in ("CLIPBOARD", "PRIMARY"):
            self.x.own_selection(selection)
        for _ in ("field of one line", "field of several"):
            for keys in ("ctrl+j", "super+j"):
                self.x.keys(keys)
                self.wait_text(lines.replace("\n", r"\n"))
                self.x.keys("ctrl+z")
                self.wait_text("")
            self.x.keys("Tab")
        for selection in ("CLIPBOARD", "PRIMARY"):
            self.assertTrue(self.x.owns_selection(selection), selection)


class Qt5Shortcuts(Shortcuts, harness.DesktopTest):
    qt = 5


class Qt6Shortcuts(Shortcuts, harness.DesktopTest):
    qt = 6


if __name__ == "__main__":
    unittest.main()
