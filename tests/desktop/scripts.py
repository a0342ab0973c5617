#!/usr/bin/env python3
"""Scripts in real applications: programs in processes of their own, Lua inside the host."""

import os
import pathlib
import plistlib
import signal
import time
import unittest

import applications
import harness
from harness import wait_for

SCRIPT = pathlib.Path("/tmp/_velmoraScript_")
KEYS = {"program": "j", "failing": "k", "lua": "m", "endless": "y", "asks": "u", "today": "b",
        "beeps": "e", "sorts": "r", "waits": "i"}
PANEL = "^Run Mnemonic$"


class Scripts:
    kind = None

    def open(self, application_kind=None):
        return self.start(application_kind or self.kind)

    def define(self):
        """All of it in the files that the applications share."""
        kind, home = self.kind, self.home
        self.told = home.path / "told"
        self.home.write_preferences()
        self.home.write_definitions(
            "Scripts", "Velmora",
            # What it starts is without the plug-in, and it has no file of the host's.
            ("program", f"#!/bin/sh\nexec >{self.told}\ncat\n"
                        "echo ${QT_QPA_GENERIC_PLUGINS-none} $(ls /proc/$$/fd | wc -l)\n"
                        "stat -c '%A %u' $0\nid -u\n"),
            ("failing", "#!/bin/sh\nexit 3\n"),
            ("lua", f"print(velmora.run('{kind.counted}'), velmora.run('No/Such'))"),
            ("asks", f"velmora.run('{kind.first_menu}/Velmora/Run Mnemonic…') print('answered')"),
            ("today", "velmora.run('Edit/Select All')\n"
                      "velmora.type(os.date('%Y-') .. velmora.processName() .. '\\n😀')"),
            ("endless", "while true do pcall(string.rep, 'x', 10) end"),
            ("beeps", "while true do pcall(velmora.beep) end"),
            ("sorts", "local t = {} for i = 1, 1e6 do t[i] = i end while true do table.sort(t) end"),
            ("waits", "#!/bin/sh\nexec sleep 600\n"))
        self.home.write_definitions("Mnemonics", "Velmora", ("end", kind.ending))
        self.home.write_definitions(
            "Shortcuts", "Velmora",
            *((f"8{key}", f"{kind.first_menu}/Velmora/Scripts/{name}")
              for name, key in KEYS.items()))

    def run_script(self, name):
        self.x.keys(f"ctrl+{KEYS[name]}")

    def switch(self, before, now):
        """The window that was active goes aside, since it covers the other one."""
        for application, left in ((before, 1200), (now, now.place.x)):
            place = application.place._replace(x=left)
            self.x.place(application.main, place)
            # The window manager moves it later, and a click must not hit the other one.
            wait_for(lambda: abs(self.x.geometry(application.main).x - left) < 40,
                     f"the window to be at {left}")
        now.activate(now.main)

    def test_programs_run_in_processes_and_lua_in_the_host(self):
        self.define()
        application = self.open()
        self.run_script("program")
        wait_for(lambda: self.told.exists() and self.told.read_text().count("\n") == 3,
                 "what the program tells")
        inherited, mode, user = self.told.read_text().splitlines()
        # 0, 1, 2 and the script, and sometimes one that the listing itself holds.
        self.assertRegex(inherited, "^none [345]$")
        self.assertEqual(mode, f"-rwxr--r-- {user}")
        self.run_script("failing")
        application.wait_text("^Script failed.$")
        wait_for(lambda: not SCRIPT.exists(), "the file to be removed")

        self.run_script("lua")
        application.wait_text("^true\tfalse$")
        application.wait_count(1)
        self.run_script("endless")
        application.wait_text("^Applescript execution error: .*has run for too long")
        application.assert_usable()
        since = len(application.texts())
        self.run_script("sorts")
        application.wait_text("^Applescript execution error: .*has run for too long", since, limit=30)
        self.run_script("beeps")
        application.wait_text("^Applescript execution error: .*more than 1,000 commands", since)
        self.assertEqual(application.texts(since).count("beep"), 1000)
        application.assert_usable()

        # A folder stands where the program would be: the host says so and goes on.
        SCRIPT.mkdir()
        self.addCleanup(lambda: SCRIPT.exists() and SCRIPT.rmdir())
        self.run_script("program")
        application.wait_text(f"^Failed to create script at path '{SCRIPT}'$")
        self.assertTrue(SCRIPT.is_dir())
        SCRIPT.rmdir()
        application.assert_usable()

    def test_a_program_that_never_ends_is_told_and_keeps_no_other_application_waiting(self):
        self.define()
        other = self.open(self.other)
        application = self.open()
        self.run_script("waits")
        file = self.home.path / ".runtime" / "velmora" / f"script-{application.process.pid}.plist"
        wait_for(file.exists, "the file that tells of the program")
        told = wait_for(lambda: file.read_bytes() and plistlib.loads(file.read_bytes()), "what it tells")
        program = told["Process"]
        self.addCleanup(lambda: file.exists() and os.kill(program, signal.SIGKILL))
        self.assertEqual({"Script": "waits", "Process": program, "Host": self.kind.process_name,
                          "HostProcess": application.process.pid}, told)
        self.assertEqual(SCRIPT.read_text(), "#!/bin/sh\nexec sleep 600\n")

        self.switch(application, other)
        begin = time.monotonic()
        self.run_script("program")
        other.wait_text(f"^Failed to create script at path '{SCRIPT}'$")
        # The script starts after a fifth of a second.
        self.assertLess(time.monotonic() - begin, 4.5)
        other.assert_usable()

        application.wait_text(f'^The script "waits" still runs, as process {program}, .*"kill {program}"')
        os.kill(program, signal.SIGTERM)
        application.wait_text("^Script failed.$")
        wait_for(lambda: not file.exists() and not SCRIPT.exists(), "the files to be removed")
        self.switch(other, application)
        application.assert_usable()

    def test_a_script_waits_for_the_panel_that_it_has_opened(self):
        self.define()
        application = self.open()
        for name in ("Escape",), ("e", "n", "d"):
            answered = application.texts().count("answered")
            self.run_script("asks")
            panel = application.window(PANEL)
            wait_for(lambda: self.x.active_window() == panel, "the panel to be active")
            # Another one is to start meanwhile.
            self.run_script("failing")
            self.x.keys(*name)
            application.no_window(PANEL)
            wait_for(lambda: application.texts().count("answered") > answered, "the script's end")
        self.assertEqual(application.wait_exit(), 0)


class FeatherpadScripts(Scripts, harness.DesktopTest):
    kind = applications.Featherpad
    other = applications.Linguist

    def test_commands_and_typing_keep_their_order(self):
        self.define()
        application = self.open()
        self.run_script("today")
        wait_for(lambda: "*" in self.x.title(application.main), "a changed document")
        application.save()
        self.assertRegex(application.document.read_text(), r"^\d{4}-featherpad\n😀\n?$")


class LinguistScripts(Scripts, harness.DesktopTest):
    kind = applications.Linguist
    other = applications.Featherpad


if __name__ == "__main__":
    unittest.main()
