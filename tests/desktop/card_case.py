"""What the tests start from that take the pointer to the palette's cards."""

from palette_case import PALETTE, PaletteCase
from xsession import wait_for


class CardCase(PaletteCase):
    # A toast would be a window of the program beside the palette, as the picture of a dragged card is.
    settings = {**PaletteCase.settings, "showCaptureToasts": False}

    def open_palette(self):
        super().open_palette()
        window = self.session.windows(name=PALETTE)[0]
        # Where the cards are is known once the window is on the screen at its place.
        wait_for(lambda: self.session.geometry(window)[3] >= 280, what="the palette's place")
        self.left, self.top, _, _ = self.session.geometry(window)

    def card(self, index):
        """A point in the middle of a card."""
        return self.left + 14 + 192 * index + 89, self.top + 72 + 93

    def drag(self, start, end):
        """Presses on a card and moves away as a hand does, in small steps; the button stays down."""
        self.session.run("xdotool", "mousemove", *start, "mousedown", "1")
        for step in range(1, 21):
            x, y = (round(a + (b - a) * step / 20) for a, b in zip(start, end))
            self.session.run("xdotool", "mousemove", "--sync", x, y)
            if step == 3:
                wait_for(self.is_dragging, what="the drag")

    def is_dragging(self):
        """The picture of the card that hangs at the pointer is a window of its own."""
        return len(self.session.windows(window_class="brimquill")) > 1

    def release(self):
        self.session.run("xdotool", "mouseup", "1")
        wait_for(lambda: not self.is_dragging(), what="the end of the drag")
