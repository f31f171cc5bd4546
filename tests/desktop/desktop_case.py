"""What every desktop test starts from: the shipped program, running on a desktop of its own."""

import os
import pathlib
import re
import signal
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))

from xsession import Session, wait_for  # noqa: E402  (found by the line above)

# The program's own log may tell anything but trouble; whatever else appears on standard error is trouble.
LOG_LINE = re.compile(r"Brimquill: ")
TROUBLE = re.compile(r"fail|error|warn|cannot|could not|unable|taken", re.IGNORECASE)


class DesktopCase(unittest.TestCase):
    """Starts the program of the environment variable BRIMQUILL_BINARY before each test and ends it after.

    A test fails when the program is gone at its end, does not end cleanly, or wrote a line to standard error that
    `expected_errors` (regular expressions) does not cover.
    """

    arguments = ()
    settings = {"onboardingShown": True, "showFloatingPill": False}
    environment = {}
    expected_errors = ()
    starts_program = True

    def setUp(self):
        self.session = self.make_session()
        self.addCleanup(self.session.stop)
        self.session.write_settings(self.settings)
        self.addCleanup(self.keep_screenshot)
        self.program = None
        if self.starts_program:
            self.addCleanup(self.end_program)
            self.start_program()

    def make_session(self):
        """The desktop of one test."""
        return Session(environment=self.environment)

    def start_program(self):
        """Starts the program and returns once it captures what is copied."""
        self.program = self.session.start(os.environ["BRIMQUILL_BINARY"], *self.arguments)
        wait_for(lambda: not self.program.running() or "Brimquill: ready" in self.program.error_lines(),
                 what="the program to be ready")
        self.assertTrue(self.program.running(), f"The program ended at its start: {self.program.error_lines()}")

    def end_program(self):
        """Ends the program and checks what it said and how it went. A second call does nothing."""
        program, self.program = self.program, None
        if program is None:
            return
        was_running = program.running()
        status = program.stop()
        self.assertEqual([], self.unexpected(program.error_lines()), "The program complained on standard error")
        self.assertTrue(was_running, f"The program had ended by itself with status {status}")
        self.assertIn(status, (0, -signal.SIGTERM), "The program did not end cleanly")

    def unexpected(self, lines):
        """The lines of the program's standard error that no desktop test may leave unexplained."""
        return [line for line in lines
                if not (LOG_LINE.match(line) and not TROUBLE.search(line))
                and not any(re.search(expected, line) for expected in self.expected_errors)]

    def keep_screenshot(self):
        """Keeps how the screen looked at the end, for whoever has to find out why a test failed."""
        folder = os.environ.get("BRIMQUILL_SCREENSHOTS")
        server = self.session.services[0]
        if folder and server.running():
            self.session.screenshot(pathlib.Path(folder) / f"{self.id()}.png")

    def wait_for_row(self, sql, *values):
        """Waits until a query on the program's database gives a row and returns the first."""
        return wait_for(lambda: self.session.query(sql, *values), what=f"a row of {sql} {values}")[0]
