"""The explorer of the palette, by keys and by the pointer."""

import sqlite3
import unittest

from palette_case import PALETTE, PaletteCase
from xsession import wait_for


class BrowsesInTheExplorer(PaletteCase):
    def setUp(self):
        super().setUp()
        with sqlite3.connect(self.session.database, timeout=30) as database:
            database.execute("INSERT INTO folders (id, name, uuid, modified_at) VALUES (7, 'Fruit', 'seven', 1)")
            database.execute("UPDATE clips SET folder_id = 7 WHERE text LIKE '%apple%'")
            database.execute("UPDATE clips SET tags = 'baking' WHERE text LIKE '%bread%'")
        _, self.typed = self.start_terminal()
        self.open_palette()

    def wait_pasted(self, text):
        self.session.keys("Return")
        wait_for(lambda: self.typed.read_text() == text, what=f"{text} to be pasted")
        self.wait_closed()

    def test_search_and_return(self):
        self.session.keys("ctrl+f")
        self.session.type("bak")
        self.session.keys("Down", "Return")
        self.wait_pasted("banana bread")

    def test_the_tree(self):
        self.session.keys("ctrl+f", "Down", "Return")
        self.wait_pasted("an apple a day")

    def test_escape_closes_it_alone_and_the_query_has_the_keys_again(self):
        self.session.keys("ctrl+f")
        self.session.type("bak")
        self.session.keys("Escape")
        self.session.type("apple")
        self.wait_pasted("an apple a day")

    def test_the_pointer(self):
        window = self.session.windows(name=PALETTE)[0]
        left, top, _, _ = self.session.geometry(window)
        self.session.click(left + 334, top + 22)
        # The second row, below the caption.
        self.session.click(left + 420, top + 116)
        self.wait_pasted("an apple a day")


if __name__ == "__main__":
    unittest.main()
