#!/usr/bin/env python3
"""Applications whose log has a reader that is slow, has gone or is not there yet go on as ever."""

import fcntl
import os
import unittest

from applications import Featherpad, Linguist
import harness
from harness import wait_for


def fill(descriptor):
    """Until the pipe takes nothing more."""
    flags = fcntl.fcntl(descriptor, fcntl.F_GETFL)
    fcntl.fcntl(descriptor, fcntl.F_SETFL, flags | os.O_NONBLOCK)
    try:
        for size in (4096, 1):
            try:
                while True:
                    os.write(descriptor, b"." * size)
            except BlockingIOError:
                pass
    finally:
        fcntl.fcntl(descriptor, fcntl.F_SETFL, flags)


def drain(descriptor):
    os.set_blocking(descriptor, False)
    content = b""
    try:
        while part := os.read(descriptor, 65536):
            content += part
    except BlockingIOError:
        pass
    return content.decode().replace(".", "")


class LogReaders:
    kind = None

    def open(self, **options):
        self.home.write_preferences()
        self.home.write_gestures(self.kind.process_name, ("r", self.kind.counted))
        return self.start(self.kind, **options)

    def open_with_pipe(self):
        reader, writer = os.pipe()
        self.addCleanup(os.close, writer)
        return self.open(stderr=writer), reader, writer

    def use(self, application, runs):
        """A stroke that nothing is defined for, which beeps, and one that runs a command."""
        beeps = application.beeps()
        application.draw("l")
        wait_for(lambda: application.beeps() > beeps, "the beep")
        application.draw("r")
        application.wait_count(runs)
        application.assert_usable()

    def test_standard_error_without_a_reader(self):
        application, reader, _ = self.open_with_pipe()
        os.close(reader)
        for runs in (1, 2):
            self.use(application, runs)
        self.assertEqual(application.beeps(), 2)

    def test_standard_error_that_is_full(self):
        application, reader, writer = self.open_with_pipe()
        self.addCleanup(os.close, reader)
        fill(writer)
        flags = fcntl.fcntl(writer, fcntl.F_GETFL)
        self.use(application, 1)
        self.assertEqual(fcntl.fcntl(writer, fcntl.F_GETFL), flags)
        lost = len(application.lines())
        drain(reader)
        application.draw("l")
        wait_for(lambda: application.beeps() == 2, "the beep")
        self.assertRegex(drain(reader), r"^velmora: [1-9]\d* lines were lost\nvelmora: \w")
        self.assertGreater(lost, 0)

    def test_a_pipe_for_a_log_without_a_reader(self):
        pipe = self.screen.directory / "pipe"
        os.mkfifo(pipe)
        self.addCleanup(pipe.unlink)
        said = lambda line: lambda: line in application.output()

        class Piped(self.kind):
            def wait_ready(self):
                wait_for(lambda: "velmora: launched" in self.output(), "the plug-in to be ready")

        self.home.write_preferences()
        self.home.write_gestures(self.kind.process_name, ("r", self.kind.counted))
        application = self.start(Piped, environment={"VELMORA_LOG": str(pipe)})
        application.draw("l")
        wait_for(said("velmora: beep"), "the beep")
        reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
        application.draw("r")
        wait_for(said("velmora: ran"), "the command")
        self.assertRegex(drain(reader), r"^\d+ \S+: [1-9]\d* lines were lost\n\d+ \S+: gesture")
        os.close(reader)
        application.draw("l")
        wait_for(lambda: application.output().count("velmora: beep") == 2, "another beep")
        application.assert_usable()


class FeatherpadLogReaders(LogReaders, harness.DesktopTest):
    kind = Featherpad


class LinguistLogReaders(LogReaders, harness.DesktopTest):
    kind = Linguist


if __name__ == "__main__":
    unittest.main()
