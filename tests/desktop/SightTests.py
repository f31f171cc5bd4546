"""Pictures are read: copied ones, parts of the screen, screenshots; and another program that holds the keyboard is seen."""

import ctypes
import json
import pathlib
import re
import unittest

from desktop_case import DesktopCase
from xsession import SessionError, wait_for

# Reading waits for its turn behind everything else that the machine does.
READING = 100.0
FONT = "DejaVu-Sans"
# A QR code of "brimquill-2041": its rows as bits, the leftmost highest.
QR_SIZE = 21
QR_PAYLOAD = "brimquill-2041"
QR_ROWS = (0x1fc57f, 0x105541, 0x17565d, 0x17415d, 0x175d5d, 0x105c41, 0x1fd57f,
           0x001000, 0x1a6776, 0x0f2979, 0x1a45e1, 0x1a104a, 0x04f701, 0x0019ed,
           0x1fd336, 0x104283, 0x1741a0, 0x175f1f, 0x1745fd, 0x105f10, 0x1fdbd2)


def is_pointer_held(display):
    """Whether a program has grabbed the pointer; tries to, with the server stopped meanwhile, so that nobody notices."""
    library = ctypes.CDLL("libX11.so.6")
    library.XOpenDisplay.restype = ctypes.c_void_p
    library.XDefaultRootWindow.restype = ctypes.c_ulong
    connection = ctypes.c_void_p(library.XOpenDisplay(display.encode()))
    root, none, asynchronous = ctypes.c_ulong(library.XDefaultRootWindow(connection)), ctypes.c_ulong(0), 1
    library.XGrabServer(connection)
    status = library.XGrabPointer(connection, root, 0, 0, asynchronous, asynchronous, none, none, ctypes.c_ulong(0))
    library.XUngrabPointer(connection, ctypes.c_ulong(0))
    library.XUngrabServer(connection)
    library.XCloseDisplay(connection)
    return status == 1  # AlreadyGrabbed


class SightCase(DesktopCase):
    """What the tests of this file share."""

    def draw(self, path, words, size="700x90"):
        """Makes a picture file with a line of words, in the format of its extension."""
        self.session.run("convert", "-size", size, "xc:white", "-font", FONT, "-pointsize", "32", "-fill", "black",
                         "-annotate", "+20+56", words, path)
        return path

    def wait_found(self, query, clip_kind="image"):
        """Waits until the full-text search finds a clip of that kind; its image's path and its source."""
        try:
            return wait_for(lambda: self.session.query(
                "SELECT c.image_path, c.source_app FROM clips_fts f JOIN clips c ON c.id = f.rowid "
                "WHERE clips_fts MATCH ? AND c.kind = ? AND c.deleted = 0", query, clip_kind), READING, f"{query} to be found")[0]
        except SessionError as failure:
            raise SessionError(f"{failure}; stored: {self.session.query('SELECT kind, text FROM clips')}") from failure

    def count(self):
        return self.session.query("SELECT COUNT(*) FROM clips")[0][0]

    def images(self):
        folder = self.session.database.parent / "images"
        return sorted(folder.iterdir()) if folder.exists() else []


class CopiedPicturesAreRead(SightCase):
    def test_by_their_words_in_every_format(self):
        cases = (("png", "image/png", "marmalade sandwich"), ("jpg", "image/jpeg", "peppermint teapot"),
                 ("bmp", "image/bmp", "cinnamon biscuit"), ("webp", "image/webp", "hazelnut pancake"))
        for extension, target, words in cases:
            with self.subTest(extension):
                picture = self.draw(self.session.folder / f"words.{extension}", words)
                self.session.copy(picture.read_bytes(), target)
                self.assertTrue(pathlib.Path(self.wait_found(words)[0]).name.endswith(".png"))


class DamagedPicturesAreEndured(SightCase):
    expected_errors = (r"libpng error: ", r"QML Image: Error decoding: .*/images/clip-")

    def test_one_that_cannot_be_read_does_not_keep_the_next_from_it(self):
        whole = self.draw(self.session.folder / "whole.png", "marmalade sandwich").read_bytes()
        self.session.copy(whole[:len(whole) // 2], "image/png")
        self.wait_for_row("SELECT 1 FROM clips WHERE kind = 'image'")
        self.session.copy(self.draw(self.session.folder / "next.png", "peppermint teapot").read_bytes(), "image/png")
        self.wait_found("peppermint teapot")


class SnipCase(SightCase):
    """A terminal with a line of words and a code in front; what is typed into it lands in the file `typed`."""

    settings = {**SightCase.settings, "showCaptureToasts": False}

    def setUp(self):
        super().setUp()
        # The terminal's own ground is the light part of the code, reversed blanks are the dark one.
        rows = ["    " + "".join("\033[7m  \033[0m" if bits >> (QR_SIZE - 1 - column) & 1 else "  " for column in range(QR_SIZE))
                for bits in QR_ROWS]
        shown = self.session.folder / "shown"
        shown.write_text("\n\n       marmalade sandwich\n\n" + "\n".join(rows) + "\n")
        self.drawn, self.typed = (self.session.folder / name for name in ("drawn", "typed"))
        script = f"stty -icanon -echo; cat {shown}; touch {self.drawn}; exec cat > {self.typed}"
        self.terminal_program = self.session.start("xterm", "-fa", "DejaVu Sans Mono", "-fs", "12", "-bg", "white", "-fg",
                                                   "black", "-geometry", "56x30+40+40", "-e", "sh", "-c", script)
        self.terminal = self.session.wait_window(window_class="XTerm")
        wait_for(self.drawn.exists, what="the terminal to be filled")
        self.session.activate(self.terminal)
        wait_for(self.is_painted, what="the terminal to be painted")

    def is_painted(self):
        """Whether a good part of the terminal is dark: the code is there."""
        mean = self.session.run("import", "-window", self.terminal, "-colorspace", "gray", "-format", "%[fx:mean]", "info:")
        return float(mean) < 0.85

    def begin_drag(self, start, end):
        """Asks for a snip and drags until the tool shows its frame; the button stays down."""
        x, y = start
        self.session.keys("super+shift+2")
        frame = wait_for(lambda: self.session.windows(window_class="^slop$"), what="the capture tool")[0]
        wait_for(lambda: is_pointer_held(self.session.environment["DISPLAY"]), what="the capture tool to watch the pointer")
        # It may miss a button that goes down just when it begins to watch.
        if not any(self.press(frame, x, y, patience) for patience in (2, 4, 8, 16)):
            self.fail("The capture tool does not see the button")
        width, height = end[0] - x, end[1] - y
        wait_for(lambda: all(abs(found - wanted) < 30 for found, wanted in zip(self.drag(frame, *end), (width, height))),
                 what="the whole frame")

    def press(self, frame, x, y, patience):
        """Presses the button and waits until the frame begins near there: before, it is around the window below.

        It begins where the pointer is when the tool sees the button, and a pointer that stays there draws none.
        """
        self.session.run("xdotool", "mouseup", "1", "mousemove", x, y, "mousedown", "1")
        try:
            return wait_for(lambda: any(max(self.drag(frame, x + by, y + by)) < 60 for by in (8, 20)), patience, "the frame")
        except SessionError:
            return False

    def drag(self, frame, x, y):
        """Moves the pointer, which makes the tool draw its frame; how large that is."""
        self.session.run("xdotool", "mousemove", x - 1, y - 1, "mousemove", x, y)
        return self.frame_size(frame)

    def frame_size(self, window):
        shown = self.session.run("xwininfo", "-id", window, "-shape", check=False).decode()
        found = re.search(r"Window shape extents: +(\d+)x(\d+)", shown)
        return (int(found[1]), int(found[2])) if found else (10_000, 10_000)

    def snip_terminal(self):
        """Drags over what the terminal shows, and lets go."""
        x, y, width, height = self.session.geometry(self.terminal)
        self.begin_drag((x + 4, y + 4), (x + width - 8, y + height - 8))
        self.session.run("xdotool", "mouseup", "1")
        wait_for(lambda: not self.tools(), what="the capture tool to end")

    def tools(self):
        """The capture tools that run in the session."""
        found = []
        for entry in pathlib.Path("/proc").iterdir():
            try:
                if entry.name.isdigit() and (entry / "comm").read_text() == "maim\n" and \
                        self.session.mark.encode() in (entry / "environ").read_bytes():
                    found.append(int(entry.name))
            except OSError:
                continue
        return found


class PartsOfTheScreenAreRead(SnipCase):
    def copy_elsewhere(self):
        """Copies something while no terminal is in front, and waits for it: what came before it is in by then."""
        self.terminal_program.stop()
        wait_for(lambda: not self.session.client_windows(), what="the terminal to go")
        self.session.copy("copied afterwards")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'copied afterwards'")

    def shown_windows(self):
        return self.session.run("xdotool", "search", "--onlyvisible", "--pid", self.program.pid, check=False).split()

    def test_a_drag_gives_the_code_and_the_words(self):
        self.snip_terminal()
        path, source = self.wait_found("marmalade sandwich", "ocr")
        self.assertEqual("Screen OCR", source)
        text = self.session.query("SELECT text FROM clips WHERE kind = 'ocr'")[0][0]
        self.assertEqual([QR_PAYLOAD, "marmalade sandwich"], text.split("\n")[:2])
        wait_for(lambda: self.session.paste().decode() == text, what="the text to lie on the clipboard")
        self.assertEqual([pathlib.Path(path)], self.images())
        self.assertEqual(0o600, pathlib.Path(path).stat().st_mode & 0o777)
        self.copy_elsewhere()
        self.assertEqual(2, self.count(), "the program's own copy is no new clip")

    def test_escape_during_the_drag_leaves_nothing(self):
        x, y, _, _ = self.session.geometry(self.terminal)
        before = self.shown_windows()
        self.begin_drag((x + 20, y + 20), (x + 300, y + 200))
        self.session.run("xdotool", "keydown", "Escape")  # the tool looks now and then at what is down
        wait_for(lambda: not self.tools(), what="the capture tool to end")
        self.session.run("xdotool", "keyup", "Escape", "mouseup", "1")
        self.copy_elsewhere()
        self.assertEqual(1, self.count())
        self.assertEqual([], self.images())
        self.assertEqual(before, self.shown_windows())


class ScreenshotsAreTaken(SightCase):
    settings = {**SightCase.settings, "captureScreenshotFiles": True}
    starts_program = False

    def folder(self, name):
        path = pathlib.Path(self.session.environment["HOME"]) / name
        path.mkdir(parents=True)
        return path

    def start_watching(self, folder):
        self.start_program()
        wait_for(lambda: f"Brimquill: watching screenshot folder {folder}" in self.program.error_lines(),
                 what=f"{folder} to be watched")

    def taken(self):
        return [pathlib.Path(path) for path, in self.session.query("SELECT image_path FROM clips WHERE source_app = 'Screenshot'")]

    def test_a_burst_of_them_each_once_and_whole(self):
        self.addCleanup(self.end_program)
        desktop = self.folder("Desktop")
        self.start_watching(desktop)
        aside = self.folder("aside")
        slow = self.draw(aside / "slow.png", "marmalade sandwich", "1600x1000").read_bytes()
        contents = {}
        with open(desktop / "Screenshot slow.png", "wb") as writing:
            writing.write(slow[:1000])
            writing.flush()
            for index in range(18):
                name = f"Screenshot {index}.png"
                made = self.draw(aside / name, str(index), "200x90")
                contents[name] = made.read_bytes()
                if index % 2:
                    made.rename(desktop / name)
                else:
                    (desktop / name).write_bytes(contents[name])
            wait_for(lambda: len(self.taken()) == 18, what="the quick ones")
            writing.write(slow[1000:-6])
            writing.flush()
            last = self.draw(aside / "last.png", "peppermint teapot").rename(desktop / "Screenshot last.png")
            wait_for(lambda: len(self.taken()) == 19, what="one more")
            writing.write(slow[-6:])
        contents[last.name] = last.read_bytes()
        wait_for(lambda: len(self.taken()) >= 20, what="the slow one")
        self.assertEqual(slow, pathlib.Path(self.wait_found("marmalade sandwich")[0]).read_bytes())
        self.assertEqual(sorted([slow, *contents.values()]), sorted(path.read_bytes() for path in self.taken()))
        self.wait_found("peppermint teapot")
        for name, content in contents.items():
            self.assertEqual(content, (desktop / name).read_bytes(), "the file stays as it is")

    def test_from_the_folder_that_was_chosen(self):
        configuration = pathlib.Path(self.session.environment["XDG_CONFIG_HOME"])
        desktop, tool, own = (self.folder(name) for name in ("Desktop", "Xfce shots", "own"))

        def choose(folder):
            suite = configuration / "brimquill" / "com.apple.screencapture.json"
            suite.write_text(json.dumps({"location": f"~/{folder.name}"}))

        def tell_tool(folder):
            (configuration / "xfce4").mkdir()
            (configuration / "xfce4" / "xfce4-screenshooter").write_text(f"app=none\nscreenshot_dir={folder.as_uri()}\n")

        steps = ((desktop, lambda _: None, "nothing chosen"), (tool, tell_tool, "the desktop's tool"), (own, choose, "the user's wish"))
        for number, (folder, prepare, what) in enumerate(steps, 1):
            with self.subTest(what):
                prepare(folder)
                self.start_watching(folder)
                self.draw(folder / "Screenshot.png", "words", "200x90")
                wait_for(lambda: len(self.taken()) == number, what=what)
                self.end_program()


class AHeldKeyboardIsSeen(SightCase):
    def wait_told(self, line):
        wait_for(lambda: any(line in told for told in self.told()), what=line)

    def told(self):
        return [line for line in self.program.error_lines() if "secure input" in line]

    def test_xterms_secure_keyboard(self):
        self.session.start("xterm", "-xrm", "*VT100.translations: #override <Key>F12: secure()")
        self.session.activate(self.session.wait_window(window_class="XTerm"))
        self.session.keys("F12")
        self.wait_told("secure input held by ")
        self.assertRegex(self.told()[0].lower(), "held by .*(xterm|terminal)")
        self.session.keys("F12")
        self.wait_told("secure input released")
        self.assertEqual(2, len(self.told()))

    def test_a_password_dialog(self):
        display = self.session.environment["DISPLAY"]
        self.session.start("sh", "-c", f"(echo SETDESC marmalade; echo GETPIN; exec sleep 1000) | pinentry-gtk-2 --display {display}")
        self.session.wait_window(window_class="[Pp]inentry")
        self.wait_told("secure input held by ")
        self.assertIn("pinentry", self.told()[0].lower())
        self.session.keys("Escape")
        self.wait_told("secure input released")

    def test_an_open_menu_does_not_count(self):
        for command, window_class in (("mousepad", "[Mm]ousepad"), ("featherpad", "[Ff]eather[Pp]ad")):
            with self.subTest(command):
                editor = self.session.start(command)
                self.session.activate(self.session.wait_window(window_class=window_class))
                alone = self.session.windows(window_class=window_class)
                self.session.keys("alt+f")
                wait_for(lambda: len(self.session.windows(window_class=window_class)) > len(alone), what="the menu")
                looked = self.wake_ups()
                # Each look, and what would follow from it, wakes the program.
                wait_for(lambda: self.wake_ups() > looked + 12, READING, "the program to have looked several times")
                self.assertEqual([], self.told())
                editor.stop()

    def wake_ups(self):
        status = pathlib.Path(f"/proc/{self.program.pid}/status").read_text()
        return int(status.split("\nvoluntary_ctxt_switches:")[1].split()[0])


if __name__ == "__main__":
    unittest.main()
