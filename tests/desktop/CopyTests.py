"""What is copied in other programs comes into the hoard."""

import os
import pathlib
import random
import struct
import unittest
import zlib

from desktop_case import DesktopCase
from xsession import wait_for

TERMINAL = "com.apple.Terminal"


def png(width, height, incompressible=False):
    """A PNG of that size; incompressible ones are about three bytes a pixel."""
    noise = random.Random(7)
    rows = b"".join(b"\0" + (noise.randbytes(width * 3) if incompressible else b"\x20\x60\xa0" * width)
                    for _ in range(height))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 0)) + chunk(b"IEND", b"")


GIF = (b"GIF89a\x02\x00\x02\x00\x80\x00\x00\xff\x00\x00\x00\x00\xff!\xf9\x04\x00\x0a\x00\x00\x00,\x00\x00\x00\x00\x02\x00\x02\x00"
       b"\x00\x02\x03\x44\x02\x05\x00;")


class CopiesOfText(DesktopCase):
    def test_text_copied_in_a_gtk_editor(self):
        self.session.start("mousepad")
        self.session.activate(self.session.wait_window(window_class="[Mm]ousepad"))
        self.session.type("grapefruit and lime")
        self.session.keys("ctrl+a")
        self.session.keys("ctrl+c")
        row = self.wait_for_row("SELECT kind, source_app FROM clips WHERE text = 'grapefruit and lime'")
        self.assertEqual("text", row[0])
        self.assertIn("mousepad", row[1].lower())

    def select_in_terminal(self, text, copies_on_select):
        """Selects the text in an xterm of its own by a drag; that program."""
        translations = "*VT100.translations: #override Ctrl Shift <Key>C: copy-selection(CLIPBOARD)"
        terminal = self.session.start("xterm", "-xrm", f"*selectToClipboard: {copies_on_select}", "-xrm", translations,
                                      "-geometry", "60x10+0+0", "-e", "sh", "-c", f"echo {text}; exec cat")
        window = self.session.wait_window(window_class="XTerm")
        self.session.activate(window)

        def selected():
            # A drag before the text is there selects nothing.
            self.session.run("xdotool", "mousemove", "--window", window, "4", "8", "mousedown", "1")
            self.session.run("xdotool", "mousemove", "--window", window, "300", "8", "mouseup", "1")
            selection = "clipboard" if copies_on_select == "true" else "primary"
            return text in self.session.run("xclip", "-selection", selection, "-out", check=False).decode()
        wait_for(selected, what="the selection")
        return terminal

    def test_a_terminal_copy_counts_only_when_it_was_asked_for(self):
        terminal = self.select_in_terminal("selected-by-mouse", "true")
        # Who asks for it to be saved has the answer once it is decided whether it counts, while the terminal is in front.
        self.session.run(os.environ["SELECTION_PEER"], "get", "SAVE_TARGETS", "--selection", "CLIPBOARD_MANAGER",
                         check=False)
        terminal.stop()
        wait_for(lambda: not self.session.client_windows(), what="the terminal to go")
        self.select_in_terminal("asked-for", "false")
        self.session.keys("ctrl+shift+c")
        row = self.wait_for_row("SELECT source_bundle_id FROM clips WHERE text LIKE '%asked-for%'")
        self.assertEqual(TERMINAL, row[0])
        self.assertEqual([], self.session.query("SELECT text FROM clips WHERE text LIKE '%selected-by-mouse%'"))


class CopiesOfPicturesAndFiles(DesktopCase):
    def image(self):
        return pathlib.Path(self.wait_for_row("SELECT image_path FROM clips WHERE kind = 'image'")[0])

    def test_a_gif_keeps_its_bytes(self):
        self.session.copy(GIF, "image/gif")
        self.assertEqual(GIF, self.image().read_bytes())

    def test_files_are_listed_in_their_order(self):
        paths = [self.session.folder / name for name in ("b one.txt", "a.txt", "ä.txt")]
        for path in paths:
            path.touch()
        self.session.copy("".join(path.as_uri() + "\r\n" for path in paths), "text/uri-list")
        self.assertEqual("\n".join(map(str, paths)), self.wait_for_row("SELECT text FROM clips WHERE kind = 'file'")[0])

    def test_the_hoard_is_private(self):
        self.session.copy(png(8, 8), "image/png")
        self.image()
        data = self.session.database.parent
        for path in (data, data / "images"):
            self.assertEqual(0o700, path.stat().st_mode & 0o777, path)
        for path in data.glob("brimquill.db*"):
            self.assertEqual(0o600, path.stat().st_mode & 0o777, path)


class CopiesSurviveAKill(DesktopCase):
    def test_nothing_is_lost(self):
        for text in ("first", "second", "third"):
            self.session.copy(text)
            self.wait_for_row("SELECT 1 FROM clips WHERE text = ?", text)
        self.program.process.kill()
        self.program.wait()
        self.start_program()
        self.session.copy("fourth")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'fourth'")
        texts = self.session.query("SELECT text FROM clips WHERE deleted = 0 ORDER BY created_at")
        self.assertEqual([("first",), ("second",), ("third",), ("fourth",)], texts)


if __name__ == "__main__":
    unittest.main()
