"""What the tests start from that use the palette."""

from desktop_case import DesktopCase
from xsession import wait_for

HOT_KEY = "super+shift+v"
PALETTE = "^Brimquill Palette$"


class PaletteCase(DesktopCase):
    """A desktop with a few clips in the hoard."""

    texts = ("an apple a day", "banana bread", "cherry 🍒 pie")

    def setUp(self):
        super().setUp()
        for text in self.texts:
            self.session.copy(text)
            self.wait_for_row("SELECT 1 FROM clips WHERE text = ?", text)
        self.count = self.clip_count()

    def clip_count(self):
        """How many clips there are, deleted ones included; none before there is a database."""
        return sum(row[0] for row in self.session.query("SELECT COUNT(*) FROM clips"))

    def is_open(self):
        return bool(self.session.windows(name=PALETTE))

    def open_palette(self):
        self.session.keys(HOT_KEY)
        wait_for(self.is_open, what="the palette")

    def wait_closed(self):
        wait_for(lambda: not self.is_open(), what="the palette to close")

    def start_editor(self, command, window_class):
        """Starts a program that edits text and gives it the keyboard; its window."""
        self.session.start(command)
        window = self.session.wait_window(window_class=window_class)
        self.session.activate(window)
        return window

    def start_terminal(self):
        """An xterm whose input lands in the file that is returned beside its window."""
        typed = self.session.folder / "typed"
        self.session.start("xterm", "-e", "sh", "-c", f"stty -icanon -echo; exec cat > {typed}")
        window = self.session.wait_window(window_class="XTerm")
        self.session.activate(window)
        wait_for(typed.exists, what="the terminal's program")
        return window, typed

    def copied_from_editor(self):
        """What the active editor holds, copied out of it by its own keys."""
        self.session.keys("ctrl+a")
        self.session.keys("ctrl+c")
        return self.session.paste().decode()
