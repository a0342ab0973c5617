#!/usr/bin/env python3
"""Applications that an interpreter runs, and the programs that applications start."""

import pathlib
import unittest

import accessible
import harness
from harness import BUILD, wait_for

HOST = pathlib.Path(__file__).resolve().parent / "host"


class Interpreters(harness.DesktopTest):
    bindings = (("PyQt5", 5), ("PySide2", 5), ("PyQt6", 6))

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.accessibility = accessible.Accessibility(cls.screen)

    def program(self, binding):
        """The application, and a wrapper of it in another language, as packages install them."""
        script = self.home.path / f"host-{binding.lower()}"
        script.write_text("#!/usr/bin/python3 -B\nimport sys\n\n"
                          f"sys.path.insert(0, '{HOST}')\n\n"
                          "import python_host\n"
                          f"from {binding} import QtCore, QtWidgets\n\n"
                          "python_host.main(QtCore, QtWidgets)\n")
        wrapper = self.home.path / f"wrapper-{binding.lower()}"
        wrapper.write_text(f'#!/bin/sh\nFOLDER={script.parent}\nexec $FOLDER/{script.name} "$@"\n')
        for path in (script, wrapper):
            path.chmod(0o755)
        self.home.write_preferences()
        self.home.write_gestures(script.name, ("d", "File/Show Environment"), ("r", "File/Quit"))
        return script, wrapper

    def launch(self, command, **options):
        application = self.start(harness.Application, command, name=command[-1].name, **options)
        application.main = application.window("^host$")
        application.wait_text("^launched")
        wait_for(lambda: self.x.active_window() == application.main, "the window to be active")
        return application

    def draw(self, application, letters):
        harness.draw(self.x, letters, self.x.geometry(application.main), leg=80)

    def said(self, application):
        """What is on its output but for the trace, which the tests have switched on."""
        return [line for line in application.output().splitlines()
                if not line.startswith("velmora: ")]

    def environment_of_children(self, application):
        before = len(self.said(application))
        self.draw(application, "d")
        return wait_for(lambda: (said := self.said(application)[before:])
                        and said[-1] == "shown" and said, "the environment of a program")[:-1]

    def test_a_script_runs_with_the_plug_in_of_its_qt_and_nothing_on_its_output(self):
        for binding, _ in self.bindings:
            for program in self.program(binding):
                with self.subTest(program=program.name):
                    application = self.launch([program],
                                              environment=self.accessibility.environment())
                    accessible.choose(application, self.accessibility, "File", "Velmora",
                                      "About Velmora")
                    about = application.window("^About Velmora")
                    self.x.close_window(about)
                    application.no_window("^About Velmora")
                    application.activate(application.main, at=(0.5, 0.5))
                    # What it starts has nothing of ours.
                    self.assertEqual(self.environment_of_children(application), [])
                    self.draw(application, "r")
                    self.assertEqual(application.wait_exit(), 4)
                    self.assertEqual(self.said(application), ["shown"])

    def test_programs_that_a_host_starts_have_what_the_session_has(self):
        for binding, qt in self.bindings:
            script, _ = self.program(binding)
            folder = BUILD / f"plugins/qt{qt}"
            others = {"QT_PLUGIN_PATH": "/nowhere", "QT_QPA_GENERIC_PLUGINS": "none"}
            session = {"QT_PLUGIN_PATH": f"/nowhere:{folder}",
                       "QT_QPA_GENERIC_PLUGINS": "velmora"}
            for plugin, environment in ((True, others), (True, session), (False, session)):
                with self.subTest(binding=binding, plugin=plugin, environment=environment):
                    log = self.screen.directory / f"{script.name}.log"
                    application = self.launch(
                        [script], plugin=plugin,
                        environment={**environment, "VELMORA_LOG": str(log), "VELMORA_TRACE": "1"})
                    self.assertEqual(self.environment_of_children(application),
                                     [f"{name}={value}" for name, value in environment.items()])
                    application.stop()
                    self.end_applications()


if __name__ == "__main__":
    unittest.main()
