"""The program checks its own engines, without a desktop."""

import json
import os
import pathlib
import sqlite3
import subprocess
import tempfile
import unittest

PASSED = 15


class SelfTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="brimquill-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_program(self, *arguments):
        """Runs the program with no display in reach; its exit status and the lines of its standard output."""
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "LANG": "C.UTF-8",
                       "XDG_CONFIG_HOME": str(self.folder / "config"), "BRIMQUILL_DATA_DIR": str(self.folder / "data"),
                       "BRIMQUILL_DEFAULTS_SUITE": "brimquill.test"}
        done = subprocess.run([os.environ["BRIMQUILL_BINARY"], *arguments], env=environment, capture_output=True,
                              stdin=subprocess.DEVNULL, timeout=60)
        return done.returncode, done.stdout.decode().splitlines()

    def assert_passes(self, *arguments):
        status, lines = self.run_program(*arguments)
        self.assertEqual(0, status, lines)
        self.assertEqual(PASSED, sum(line.startswith("PASS ") for line in lines), lines)
        self.assertEqual(["", "All self-tests passed."], lines[-2:])

    def test_a_new_store_twice_in_a_row(self):
        self.assert_passes("--selftest")
        self.assert_passes("--other", "--selftest", "--picker")

    def test_a_store_with_ten_thousand_clips(self):
        self.assert_passes("--selftest")
        with sqlite3.connect(self.folder / "data" / "brimquill.db") as database:
            database.executemany("INSERT INTO clips (text, kind, created_at, uuid, modified_at) VALUES (?, 'text', ?, ?, ?)",
                                 ((f"clip {n}", 1.0e9 + n, f"{n:032x}", 1.0e9 + n) for n in range(10_000)))
        self.assert_passes("--selftest")

    def test_with_detection_switched_off(self):
        config = self.folder / "config" / "brimquill"
        config.mkdir(parents=True, mode=0o700)
        (config / "brimquill.test.json").write_text(json.dumps({"secretAutoExpiry": False}))
        status, lines = self.run_program("--selftest")
        self.assertEqual(1, status)
        self.assertEqual(["FAIL OTP detected", "FAIL Visa test number detected (Luhn)"],
                         [line for line in lines if line.startswith("FAIL")])
        self.assertEqual("2 self-test(s) FAILED.", lines[-1])


if __name__ == "__main__":
    unittest.main()
