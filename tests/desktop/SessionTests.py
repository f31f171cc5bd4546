"""The desktop that the other desktop tests stand on."""

import os
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))

from xsession import Session, SessionError, wait_for  # noqa: E402  (found by the line above)


class SessionEnd(unittest.TestCase):
    def test_nothing_of_a_session_outlives_it(self):
        session = Session()
        self.addCleanup(session.stop)
        deaf = session.start("bash", "-c", "trap '' TERM; setsid sleep 1000 & echo $!; read < <(sleep 1000)")
        strays = [int(wait_for(deaf.output, what="the stray's process id")), deaf.pid]
        strays += [service.pid for service in session.services]

        session.stop()

        # A process that has ended and was not yet collected by its new parent has no command line left.
        alive = [pid for pid in strays
                 if os.path.exists(f"/proc/{pid}") and pathlib.Path(f"/proc/{pid}/cmdline").read_bytes()]
        self.assertEqual([], alive)
        self.assertFalse(session.folder.exists())

    def test_two_sessions_have_nothing_in_common(self):
        with Session() as first, Session() as second:
            first.copy("only here")
            self.assertEqual(b"only here", first.paste())
            self.assertEqual(b"", second.paste())
            for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "HOME", "BRIMQUILL_DATA_DIR"):
                self.assertNotEqual(first.environment[name], second.environment[name])

    def test_a_wait_in_vain_says_for_what(self):
        with self.assertRaisesRegex(SessionError, "the moon"):
            wait_for(lambda: False, 0.01, "the moon")


if __name__ == "__main__":
    unittest.main()
