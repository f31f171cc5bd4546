"""What the pointer does to a card: its menu, and dragging it out."""

import re
import unittest

from palette_case import PALETTE, PaletteCase
from xsession import wait_for


class CardCase(PaletteCase):
    def open_palette(self):
        super().open_palette()
        window = self.session.windows(name=PALETTE)[0]
        # Where the cards are is known once the window is on the screen at its place.
        shape = wait_for(lambda: self.geometry(window), what="the palette's place")
        self.left, self.top = shape

    def geometry(self, window):
        shape = self.session.run("xdotool", "getwindowgeometry", "--shell", window).decode()
        values = dict(re.findall(r"(\w+)=(-?\d+)", shape))
        return (int(values["X"]), int(values["Y"])) if int(values["HEIGHT"]) >= 280 else None

    def card(self, index):
        """A point in the middle of a card."""
        return self.left + 14 + 192 * index + 89, self.top + 72 + 93

    def drag(self, start, end):
        """Drags as a hand does, in small steps."""
        self.session.run("xdotool", "mousemove", str(start[0]), str(start[1]), "mousedown", "1")
        for step in range(1, 21):
            x, y = (round(a + (b - a) * step / 20) for a, b in zip(start, end))
            self.session.run("xdotool", "mousemove", "--sync", str(x), str(y))
        # The target answers each place that it is told of; the last answer must be in before the button goes up.
        for x in (1, 0, 1, 0):
            self.session.run("xdotool", "mousemove", "--sync", str(end[0] + x), str(end[1]))


class DragsOutOfThePalette(CardCase):
    def test_text_into_an_editor(self):
        editor = self.start_editor("mousepad", "[Mm]ousepad")
        self.session.run("xdotool", "windowmove", "--sync", editor, "200", "50")
        self.open_palette()
        self.drag(self.card(1), (400, 300))
        self.session.run("xdotool", "mouseup", "1")
        wait_for(lambda: not self.is_dragging(), what="the end of the drag")
        self.assertTrue(self.is_open(), "The palette closed")
        self.assertEqual(editor, self.session.active_window())
        # The palette has its keys after it, and the strip its clicks.
        self.session.keys("Escape")
        self.wait_closed()
        wait_for(lambda: self.copied_from_editor() == "banana bread", what="the dragged text")
        # Other words, so that the editor's copy of them is a clip of its own.
        self.session.keys("ctrl+End")
        self.session.type("!")
        wait_for(lambda: self.copied_from_editor() == "banana bread!", what="the dragged text and what was typed")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'banana bread!'")
        # The two copies out of the editor, and no more.
        self.assertEqual(self.count + 2, self.clip_count(), "What was dragged came back as a clip")

    def test_escape_gives_it_up(self):
        editor = self.start_editor("mousepad", "[Mm]ousepad")
        self.session.run("xdotool", "windowmove", "--sync", editor, "200", "50")
        self.open_palette()
        self.drag(self.card(0), (400, 300))
        wait_for(self.is_dragging, what="the drag")
        self.session.keys("Escape")
        wait_for(lambda: not self.is_dragging(), what="the end of the drag")
        self.session.run("xdotool", "mouseup", "1")
        self.assertTrue(self.is_open(), "The palette closed")
        self.session.keys("Escape")
        self.wait_closed()
        self.session.type("typed")
        wait_for(lambda: self.copied_from_editor() == "typed", what="the keys to reach the editor again")

    def is_dragging(self):
        """The picture of the card that hangs at the pointer is a window of its own."""
        return len(self.session.windows(window_class="brimquill")) > 1


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
        # Outside the palette too it is only the menu that goes.
        self.session.click(*self.card(0), button=3)
        self.session.click(400, 300)
        self.assertTrue(self.is_open())
        self.session.click(*self.card(0), button=3)
        self.session.keys("Down", "Return")
        self.wait_closed()
        wait_for(lambda: self.copied_from_editor() == "cherry 🍒 pie", what="the paste")
        self.assertEqual(editor, self.session.active_window())


if __name__ == "__main__":
    unittest.main()
