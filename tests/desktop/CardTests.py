"""What the pointer does to a card: its menu, and dragging it out."""

import os
import pathlib
import unittest

from card_case import CardCase
from desktop_case import DesktopCase
from palette_case import HOT_KEY, PALETTE, PaletteCase
from xsession import wait_for


COMPOSITOR = """
import ctypes, time
library = ctypes.CDLL("libX11.so.6")
library.XOpenDisplay.restype = ctypes.c_void_p
library.XInternAtom.restype = library.XDefaultRootWindow.restype = library.XCreateSimpleWindow.restype = ctypes.c_ulong
display = ctypes.c_void_p(library.XOpenDisplay(None))
root = ctypes.c_ulong(library.XDefaultRootWindow(display))
window = library.XCreateSimpleWindow(display, root, 0, 0, 1, 1, 0, ctypes.c_ulong(0), ctypes.c_ulong(0))
name = library.XInternAtom(display, b"_NET_WM_CM_S0", 0)
library.XSetSelectionOwner(display, ctypes.c_ulong(name), ctypes.c_ulong(window), ctypes.c_ulong(0))
library.XSync(display, 0)
print("owned")
time.sleep(1000)
"""


class DragsOutOfThePalette(CardCase):
    def start_target(self):
        target = self.session.start(os.environ["DROP_TARGET"])
        window = self.session.wait_window(name="^Drop Target$")
        self.session.run("xdotool", "windowmove", "--sync", window, "200", "50")
        self.session.activate(window)
        return target, window

    def drop_card(self, index, target):
        """Drags a card to the target; what it got, by format."""
        end = (400, 200)
        self.drag(self.card(index), end)

        def accepts():
            # A second place is told only when the first one was answered.
            self.session.run("xdotool", "mousemove_relative", "--", "1", "0", "mousemove_relative", "--", "-1", "0")
            return target.output().count("move") > 3
        wait_for(accepts, what="the target to take the drag")
        self.release()
        wait_for(lambda: "\ndrop\n" in target.output(), what="the drop")
        lines = [line.split(" ", 3) for line in target.output().splitlines() if line.startswith("format ")]
        return {line[1]: line[3] for line in lines}

    def test_text(self):
        target, window = self.start_target()
        self.open_palette()
        got = self.drop_card(1, target)
        self.assertEqual("banana bread", got["text/plain"])
        self.assertNotIn("text/uri-list", got)
        self.assertTrue(self.is_open(), "The palette closed")
        self.assertEqual(window, self.session.active_window())
        # The palette has its keys after it; had the drag been captured, it would stand before this copy.
        self.session.type("apple")
        self.session.keys("alt+Return")
        self.wait_closed()
        self.session.copy("the next")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'the next'")
        self.assertEqual(self.count + 1, self.clip_count(), "What was dragged came back as a clip")

    def test_picture(self):
        picture = self.session.folder / "picture.png"
        self.session.run("convert", "-size", "320x200", "gradient:red-blue", picture)
        self.session.copy(picture.read_bytes(), "image/png")
        path, = self.wait_for_row("SELECT image_path FROM clips WHERE kind = 'image'")
        target, _ = self.start_target()
        self.open_palette()
        got = self.drop_card(0, target)
        self.assertEqual(f"file://{path}", got["text/uri-list"])
        self.assertIn("image/png", got)

    def test_files(self):
        """The first one goes; once that is gone, the text of the clip."""
        first, second = (self.session.folder / name for name in ("a first.txt", "second.txt"))
        for path in (first, second):
            path.write_text("words")
        self.session.copy(f"{first.as_uri()}\r\n{second.as_uri()}\r\n", "text/uri-list")
        self.wait_for_row("SELECT 1 FROM clips WHERE kind = 'file'")
        target, _ = self.start_target()
        self.open_palette()
        self.assertEqual(first.as_uri(), self.drop_card(0, target)["text/uri-list"])
        target.stop()
        # The palette still shows what it saw before.
        first.unlink()
        target, _ = self.start_target()
        got = self.drop_card(0, target)
        self.assertNotIn("text/uri-list", got)
        self.assertEqual(str(first), got["text/plain"])

    def test_a_target_that_ends(self):
        target, _ = self.start_target()
        self.open_palette()
        self.drag(self.card(1), (400, 200))
        wait_for(lambda: "enter" in target.output(), what="the target to see the drag")
        target.stop()
        self.release()
        self.session.type("apple")
        self.session.keys("alt+Return")
        self.wait_closed()
        wait_for(lambda: self.session.paste() == b"an apple a day", what="the palette to have copied")

    def test_a_palette_that_closes(self):
        self.open_palette()
        self.drag(self.card(1), (400, 200))
        self.session.keys(HOT_KEY)
        self.wait_closed()
        self.release()
        self.open_palette()
        self.session.keys("Escape")
        self.wait_closed()

    def test_escape_gives_it_up(self):
        editor = self.start_editor("mousepad", "[Mm]ousepad")
        self.session.run("xdotool", "windowmove", "--sync", editor, "200", "50")
        self.open_palette()
        self.drag(self.card(0), (400, 300))
        self.session.keys("Escape")
        wait_for(lambda: not self.is_dragging(), what="the end of the drag")
        self.session.run("xdotool", "mouseup", "1")
        self.assertTrue(self.is_open(), "The palette closed")
        self.session.keys("Escape")
        self.wait_closed()
        self.session.type("typed")
        wait_for(lambda: self.copied_from_editor() == "typed", what="the keys to reach the editor again")


class OpensAMenu(CardCase):
    def test_keys_and_clicks(self):
        editor = self.start_editor("mousepad", "[Mm]ousepad")
        self.session.run("xdotool", "windowmove", "--sync", editor, "200", "50")
        self.open_palette()
        x, y = self.card(1)
        self.session.click(x, y, button=3)
        self.session.keys("Down", "Down", "Return")
        wait_for(lambda: self.session.paste() == b"banana bread", what="the second row, which copies")
        self.assertTrue(self.is_open())
        # Beside the menu a click closes it, and does nothing to the card below.
        self.session.click(x, y, button=3)
        self.session.click(*self.card(4))
        self.session.click(x, y, button=3)
        self.session.keys("Up", "Return")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'banana bread' AND deleted = 1")
        self.session.click(*self.card(0), button=3)
        self.session.keys("Escape")
        self.assertTrue(self.is_open())
        # Outside the palette it takes the palette with it: who clicks there goes on there.
        self.session.click(*self.card(0), button=3)
        self.session.click(400, 300)
        self.wait_closed()
        self.open_palette()
        self.session.click(*self.card(0), button=3)
        self.session.keys("Down", "Return")
        self.wait_closed()
        wait_for(lambda: self.copied_from_editor() == "cherry 🍒 pie", what="the paste")
        self.assertEqual(editor, self.session.active_window())


class OpensFormsFromTheMenu(CardCase):
    def setUp(self):
        super().setUp()
        self.window, self.typed = self.start_terminal()
        self.open_palette()
        self.session.click(*self.card(1), button=3)

    def wait_form(self, name):
        form = wait_for(lambda: self.session.windows(name=name), what=f"the form {name}")
        self.assertEqual(self.window, self.session.active_window())
        return form

    def save_and_paste(self, name, text):
        """The form goes, the palette has the keys again and pastes the card that the form was of."""
        wait_for(lambda: not self.session.windows(name=name), what="the form to close")
        self.assertTrue(self.is_open(), "The palette went with the form")
        self.session.type(text.split()[0])
        self.session.keys("Return")
        wait_for(lambda: self.typed.read_text() == text, what="the paste into the terminal")
        self.assertEqual(self.window, self.session.active_window())

    def test_edit(self):
        self.session.keys("Down", "Down", "Down", "Return")
        self.wait_form("^Brimquill Edit$")
        self.session.keys("ctrl+a")
        self.session.type("mango bread")
        self.session.keys("ctrl+Return")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'mango bread'")
        self.save_and_paste("^Brimquill Edit$", "mango bread")

    def test_tags_and_pinboard(self):
        self.session.keys("Up", "Up", "Return")
        self.wait_form("^Brimquill Organize$")
        self.session.type("yellow")
        self.session.keys("Tab")
        self.session.type("Kitchen")
        self.session.keys("Return")
        self.wait_for_row("SELECT 1 FROM clips JOIN folders ON folders.id = folder_id "
                          "WHERE text = 'banana bread' AND tags = 'yellow' AND folders.name = 'Kitchen'")
        self.save_and_paste("^Brimquill Organize$", "banana bread")


class HasAShadow(CardCase):
    """Somebody composes the screen, or says so: the palette's window reaches further than the palette."""

    starts_program = False

    def start_program(self):
        self.session.start("/usr/bin/python3", "-u", "-c", COMPOSITOR)
        wait_for(lambda: "owned" in self.session.programs[-1].output(), what="the compositor")
        super().start_program()

    def setUp(self):
        DesktopCase.setUp(self)
        self.addCleanup(self.end_program)
        self.start_program()

    def test_a_click_on_it_is_one_outside(self):
        editor = self.start_editor("mousepad", "[Mm]ousepad")
        self.session.run("xdotool", "windowmove", "--sync", editor, "40", "300", "windowsize", "--sync", editor, "700", "690")
        self.open_palette()
        x, y, _, _ = self.session.geometry(self.session.windows(name=PALETTE)[0])
        self.session.click(x + 300, y + 40)
        self.assertTrue(self.is_open(), "A click on the palette is none outside")
        self.session.run("xdotool", "mousemove", x + 300, y + 10)
        below = self.session.run("xdotool", "getmouselocation", "--shell").decode()
        palette = self.session.windows(name=PALETTE)[0]
        self.assertNotIn(f"WINDOW={palette}\n", below, "The shadow takes clicks")
        self.session.click(x + 300, y + 10)
        self.wait_closed()
        self.assertEqual(editor, self.session.active_window())


class TellsAScreenReader(PaletteCase):
    """Another program listens on the accessibility bus, as a screen reader does."""

    environment = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}

    def test_the_focused_card_and_the_number_of_results(self):
        # Listens before the program starts: a running one learns some time later what it is to tell, or not at all.
        self.end_program()
        reader = self.session.start("/usr/bin/python3", "-u", pathlib.Path(__file__).parent / "screen_reader.py")
        wait_for(lambda: "listening" in reader.output(), what="the reader")
        self.start_program()
        editor = self.start_editor("mousepad", "[Mm]ousepad")

        def hears(after, *parts):
            wait_for(lambda: any(all(part in line for part in parts) for line in reader.output().splitlines()[after:]),
                     what=f"{parts} in {reader.output()} {reader.error_lines()}")

        def heard():
            return len(reader.output().splitlines())
        self.open_palette()
        hears(0, "focused", "Text, cherry 🍒 pie", "list item", "'1 of 3'")
        self.session.keys("Right")
        hears(0, "focused", "Text, banana bread", "'2 of 3'")
        for typed, number in (("apple", "'1 clip'"), (" pie", "'No matches for “apple pie”'"), (None, "'3 clips'")):
            with self.subTest(number):
                before = heard()
                if typed:
                    self.session.type(typed)
                else:
                    self.session.keys("Escape")
                hears(before, "named", number, "status bar")
        hears(0, "focused", "Text, an apple a day", "'1 of 1'")
        self.assertEqual(editor, self.session.active_window())
        self.session.keys("Escape")
        self.wait_closed()


if __name__ == "__main__":
    unittest.main()
