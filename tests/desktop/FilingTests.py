"""Tags, pinboards and texts, changed with real keys in front of the palette and after a snip."""

import unittest

from SightTests import READING, SnipCase
from palette_case import PALETTE, PaletteCase
from xsession import wait_for

ORGANIZE = "^Brimquill Organize$"
TAGS = "SELECT tags FROM clips WHERE text = 'banana bread'"


class FilesFromThePalette(PaletteCase):
    def setUp(self):
        super().setUp()
        self.window, self.typed = self.start_terminal()
        self.open_palette()
        self.session.type("banana")

    def open_form(self, chord):
        self.session.keys(chord)
        wait_for(lambda: self.session.windows(name=ORGANIZE), what="the form")
        self.assertEqual(self.window, self.session.active_window())

    def wait_form_closed(self):
        wait_for(lambda: not self.session.windows(name=ORGANIZE), what="the form to close")
        self.assertTrue(self.session.windows(name=PALETTE), "The palette went with the form")
        self.assertEqual(self.window, self.session.active_window())

    def paste_apple(self):
        """The palette takes keys again: its query is replaced, and what it finds is pasted."""
        self.session.keys("Escape")
        self.session.type("apple")
        self.session.keys("Return")
        wait_for(lambda: self.typed.read_text() == "an apple a day", what="the paste into the terminal")
        self.assertEqual(self.window, self.session.active_window())

    def test_tags(self):
        self.open_form("ctrl+t")
        self.session.type("Yellow, ,fruit")
        self.session.keys("Return")
        self.wait_form_closed()
        self.assertEqual([("yellow,fruit",)], self.session.query(TAGS))
        self.paste_apple()

    def test_pinboard_then_tags(self):
        self.open_form("ctrl+p")
        self.session.type("Kitchen/Sweet")
        self.session.keys("Tab")
        self.session.type("bake")
        self.session.keys("Return")
        self.wait_form_closed()
        self.assertEqual([("Kitchen", "Sweet", "bake")], self.session.query(
            "SELECT above.name, folder.name, clips.tags FROM clips JOIN folders folder ON folder.id = clips.folder_id "
            "JOIN folders above ON above.id = folder.parent_id WHERE clips.text = 'banana bread'"))
        self.paste_apple()

    def test_escape_saves_nothing(self):
        before = self.session.query(TAGS)
        self.open_form("super+t")
        self.session.type("never")
        self.session.keys("Escape")
        self.wait_form_closed()
        self.assertEqual(before, self.session.query(TAGS))
        self.paste_apple()

    def test_a_middle_click_brings_in_nothing(self):
        selected = self.session.folder / "selected"
        selected.write_text("selected")
        self.session.start("xclip", "-quiet", "-selection", "primary", "-in", selected)
        wait_for(lambda: self.session.run("xclip", "-selection", "primary", "-out", check=False) == b"selected", what="the selection")
        self.open_form("ctrl+t")
        form, = self.session.windows(name=ORGANIZE)
        x, y, width, _ = self.session.geometry(form)
        self.session.click(x + width // 2, y + 60, button=2)
        self.session.type("typed")
        self.session.keys("Return")
        self.wait_form_closed()
        self.assertEqual([("typed",)], self.session.query(TAGS))

    def test_a_click_elsewhere_takes_the_keys_from_the_form(self):
        self.session.run("xdotool", "windowmove", "--sync", self.window, "0", "0")
        self.open_form("ctrl+t")
        self.session.type("kept")
        self.session.click(20, 20)
        self.wait_closed()
        self.session.type("typed")
        wait_for(lambda: self.typed.read_text() == "typed", what="the text in the terminal")
        form, = self.session.windows(name=ORGANIZE)
        x, y, width, _ = self.session.geometry(form)
        self.session.click(x + width // 2, y + 30)
        self.session.keys("Return")
        wait_for(lambda: not self.session.windows(name=ORGANIZE), what="the form to close")
        self.assertEqual([("kept",)], self.session.query(TAGS))
        self.assertEqual("typed", self.typed.read_text())


class FilesAfterASnip(SnipCase):
    def setUp(self):
        super().setUp()
        self.snip_terminal()
        self.form, = wait_for(lambda: self.session.windows(name=ORGANIZE), READING, "the form")
        self.before = self.clips()
        self.assertEqual([("ocr", None, None)], [clip[1:4] for clip in self.before])

    def clips(self):
        return self.session.query("SELECT text, kind, tags, folder_id, image_path, name, pinned, deleted FROM clips")

    def expect_keys_in_terminal(self):
        """The form has gone, and what is typed comes to the terminal, which had none of the keys before."""
        wait_for(lambda: not self.session.windows(name=ORGANIZE), what="the form to close")
        self.assertEqual(self.terminal, self.session.active_window())
        self.session.type("back again")
        wait_for(lambda: self.typed.read_text().endswith("again"), what="the text in the terminal")
        self.assertEqual("back again", self.typed.read_text())

    def test_return_saves(self):
        self.session.type("Receipts, ,work")
        self.session.keys("Tab")
        self.session.type("Snips/Office")
        self.session.keys("Return")
        self.expect_keys_in_terminal()
        self.assertEqual([(self.before[0][0], "receipts,work", "Snips", "Office")], self.session.query(
            "SELECT clips.text, clips.tags, above.name, folder.name FROM clips JOIN folders folder ON folder.id = clips.folder_id "
            "JOIN folders above ON above.id = folder.parent_id"))
        self.assertEqual(1, self.count())

    def test_skip_leaves_the_clip_as_it_was(self):
        self.session.type("never")
        self.session.keys("Tab")
        self.session.type("Nowhere")
        x, y, width, height = self.session.geometry(self.form)
        self.session.click(x + width - 133, y + height - 30)
        self.expect_keys_in_terminal()
        self.assertEqual(self.before, self.clips())
        self.assertEqual([], self.session.query("SELECT name FROM folders"))
        self.assertTrue(self.images(), "the picture went")


if __name__ == "__main__":
    unittest.main()
