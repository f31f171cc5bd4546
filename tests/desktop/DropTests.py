"""Drops cards into programs that people use: a file manager and an editor."""

import pathlib
import unittest

from card_case import CardCase
from xsession import wait_for

# Prints a number that stands for the shape of the pointer, whenever a line comes in.
POINTER_SHAPE = """
import ctypes, sys
class Image(ctypes.Structure):
    _fields_ = [(name, ctypes.c_short) for name in ("x", "y")] + [
        (name, ctypes.c_ushort) for name in ("width", "height", "xhot", "yhot")] + [("serial", ctypes.c_ulong)]
library, fixes = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXfixes.so.3")
library.XOpenDisplay.restype = ctypes.c_void_p
fixes.XFixesGetCursorImage.restype = ctypes.POINTER(Image)
display = ctypes.c_void_p(library.XOpenDisplay(None))
first, second = ctypes.c_int(), ctypes.c_int()
fixes.XFixesQueryExtension(display, ctypes.byref(first), ctypes.byref(second))
print(fixes.XFixesGetCursorImage(display).contents.serial)
"""


class DropCase(CardCase):
    def pointer_shape(self):
        return int(self.session.run("/usr/bin/python3", "-c", POINTER_SHAPE))

    def place(self, window):
        self.session.run("xdotool", "windowmove", "--sync", window, "200", "50", "windowsize", "--sync", window, "800", "500")
        self.session.activate(window)

    def drop_card(self, index):
        """Drags a card into the window that was placed, first over the bare desktop, which takes nothing."""
        self.drag(self.card(index), (1300, 400))
        refusing = wait_for(self.pointer_shape, what="the shape of the pointer")
        self.session.run("xdotool", "mousemove", "--sync", 700, 400)

        def accepts():
            # A program may look at what comes before it takes it, and tells only when the pointer moves again.
            self.session.run("xdotool", "mousemove_relative", "--", "1", "0", "mousemove_relative", "--", "-1", "0")
            return self.pointer_shape() != refusing
        wait_for(accepts, what="the window to take the drag")
        self.release()


class DropsIntoAnEditor(DropCase):
    def test_text_stands_where_it_was_dropped(self):
        editor = self.start_editor("mousepad", "[Mm]ousepad")
        self.place(editor)
        self.session.type("Here: ")
        self.open_palette()
        self.drop_card(0)
        self.drop_card(1)
        self.assertTrue(self.is_open(), "The palette closed")
        self.assertEqual(editor, self.session.active_window())
        self.session.keys("Escape")
        self.wait_closed()
        wait_for(lambda: self.copied_from_editor() == "Here: cherry 🍒 piebanana bread", what="the text in the editor")


class DropsIntoAFolder(DropCase):
    def setUp(self):
        super().setUp()
        self.folder = self.session.folder / "dropped"
        self.folder.mkdir()

    def start_file_manager(self):
        self.session.start("pcmanfm", self.folder)
        self.place(self.session.wait_window(window_class="[Pp]cmanfm"))

    def assert_copied(self, original, content):
        copy = self.folder / original.name
        wait_for(lambda: copy.exists() and copy.read_bytes() == content, what="the copy in the folder")
        self.assertFalse(copy.is_symlink())
        self.assertEqual(content, original.read_bytes(), "The original was touched")

    def test_a_picture_and_a_file_are_copied(self):
        picture = self.session.folder / "picture.png"
        self.session.run("convert", "-size", "320x200", "gradient:red-blue", picture)
        self.session.copy(picture.read_bytes(), "image/png")
        path, = self.wait_for_row("SELECT image_path FROM clips WHERE kind = 'image'")
        stored, file = pathlib.Path(path), self.session.folder / "a file ü.txt"
        file.write_text("words")
        self.session.copy(f"{file.as_uri()}\r\n", "text/uri-list")
        self.wait_for_row("SELECT 1 FROM clips WHERE kind = 'file'")
        self.start_file_manager()
        self.open_palette()
        self.drop_card(0)
        self.assert_copied(file, b"words")
        self.drop_card(1)
        self.assert_copied(stored, stored.read_bytes())
        self.assertTrue(self.is_open(), "The palette closed")


if __name__ == "__main__":
    unittest.main()
