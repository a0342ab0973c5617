#!/usr/bin/env python3
"""The user's shortcuts and extra mouse buttons in real applications, from the file that all of them
share and from their own."""

import unittest

import applications
import harness
from harness import wait_for
from xclient import MIDDLE

COMMANDS = ", ".join(f'{kind.process_name} = "{kind.switched}"' for kind in applications.ALL)
# One that no application has, and one that ends all of them.
SHARED = (("0" + chr(0xF70F), "F12", "switch",
           f"assert(velmora.run(({{{COMMANDS}}})[velmora.processName()]))"),
          ("8q", "ctrl+q", "write", '#!/bin/sh\necho written >> "$HOME/written"\n'))


class Keys:
    kind = None

    def open(self):
        kind = self.kind
        self.home.write_preferences()
        write = self.home.write_definitions
        write("Scripts", "Velmora", *((name, source) for _, _, name, source in SHARED))
        write("Shortcuts", "Velmora", *self.rows("File"))
        # What stands in the own file comes first.
        own = [] if kind.first_menu == "File" else self.rows(kind.first_menu)
        write("Shortcuts", kind.process_name, ("1j", kind.switched), ("1m3", kind.dialog),
              ("9e", kind.ending), *own)
        return self.start(kind)

    def rows(self, menu):
        return [(trigger, f"{menu}/Velmora/Scripts/{name}") for trigger, _, name, _ in SHARED]

    def test_keys_and_buttons_run_commands(self):
        application = self.open()
        for keys in ("super+j", "super+j", "F12"):
            before = application.settled_switch()
            self.x.keys(keys)
            wait_for(lambda: application.switch() != before, application.switched)
        written = self.home.path / "written"
        for count in (1, 2):
            self.x.keys("ctrl+q")
            wait_for(lambda: written.exists() and written.read_text().count("\n") == count,
                     "a file written by the script")
            application.check_alive()
        self.x.move(*application.empty_place())
        self.x.key_down("super")
        self.x.press(MIDDLE)
        self.x.release(MIDDLE)
        self.x.key_up("super")
        application.close_dialog()
        application.assert_usable()

        self.x.keys("ctrl+super+e")
        self.assertEqual(application.wait_exit(), 0)
        for path in (self.home.path / ".config").rglob("*"):
            if path.is_file():
                self.assertNotIn(b"Meta+J", path.read_bytes(), path)


for each in applications.ALL:
    globals()[f"{each.__name__}Keys"] = type(f"{each.__name__}Keys", (Keys, harness.DesktopTest),
                                             {"kind": each})

if __name__ == "__main__":
    unittest.main()
