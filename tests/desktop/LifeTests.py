"""How the program starts and ends, and what it does about what it finds."""

import os
import pathlib
import sqlite3

from desktop_case import DesktopCase
from palette_case import PaletteCase
from xsession import wait_for


class StartsAndEnds(PaletteCase):
    texts = ("kept",)

    def test_asked_to_end_it_ends_well(self):
        program, self.program = self.program, None
        self.assertEqual(0, program.stop())
        self.assertEqual([], self.unexpected(program.error_lines()))

    def test_a_second_start_opens_the_palette_of_the_first(self):
        second = self.session.start(os.environ["BRIMQUILL_BINARY"])
        self.assertEqual(0, second.wait())
        self.assertEqual([], self.unexpected(second.error_lines()))
        wait_for(self.is_open, what="the palette")

    def test_the_second_is_told_by_its_data_however_that_is_named(self):
        elsewhere = self.session.folder / "elsewhere"
        elsewhere.mkdir()
        (elsewhere / "Brimquill").symlink_to(self.session.database.parent)
        second = self.session.start(os.environ["BRIMQUILL_BINARY"],
                                    environment={"BRIMQUILL_DATA_DIR": "", "XDG_DATA_HOME": str(elsewhere)})
        self.assertEqual(0, second.wait())
        wait_for(self.is_open, what="the palette")


class FindsOddFiles(DesktopCase):
    starts_program = False
    expected_errors = (r"preferences cannot be read; set aside as .*\.damaged-1\.json$",)

    def setUp(self):
        super().setUp()
        self.addCleanup(self.end_program)

    def test_a_database_of_a_newer_version_is_used(self):
        self.start_program()
        self.session.copy("from now")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'from now'")
        self.end_program()
        with sqlite3.connect(self.session.database) as connection:
            connection.execute("ALTER TABLE clips ADD COLUMN from_the_future TEXT")
            connection.execute("PRAGMA user_version = 99")
        connection.close()
        self.start_program()
        self.session.copy("from later")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'from later'")
        self.assertEqual([("from now",), ("from later",)],
                         self.session.query("SELECT text FROM clips ORDER BY created_at, id"))
        self.assertEqual([(99,)], self.session.query("PRAGMA user_version"))

    def test_damaged_settings_are_set_aside(self):
        self.session.write_settings(self.settings)
        folder = pathlib.Path(self.session.environment["XDG_CONFIG_HOME"]) / "brimquill"
        [file] = folder.glob("*.json")
        file.write_text('{"onboardingShown": tru')
        self.start_program()
        [aside] = folder.glob("*.damaged-1.json")
        self.assertEqual('{"onboardingShown": tru', aside.read_text())
        self.assertEqual(1, sum("set aside" in line for line in self.program.error_lines()))
        self.session.copy("all the same")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'all the same'")
