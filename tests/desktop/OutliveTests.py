"""What was copied can still be pasted when the program that it came from has quit."""

import os
import pathlib
import sqlite3
import time
import unittest

from CopyTests import png
from palette_case import PaletteCase
from xsession import wait_for

TEXT = "Grüße from an editor that is gone"


class OutliveCase(PaletteCase):
    """A desktop on which programs copy and then quit."""

    texts = ()

    def copy_and_quit(self):
        """A GTK editor shows a file, copies all of it and is closed by its own key."""
        file = self.session.folder / "letter.txt"
        file.write_text(TEXT)
        editor = self.session.start("mousepad", str(file))
        self.session.activate(self.session.wait_window(window_class="[Mm]ousepad"))

        def copied():
            # A key that comes before the file is shown copies nothing.
            self.session.keys("ctrl+a")
            self.session.keys("ctrl+c")
            return self.session.query("SELECT 1 FROM clips WHERE text = ?", TEXT)
        wait_for(copied, what="the copy")
        self.session.keys("ctrl+q")
        wait_for(lambda: not editor.running(), what="the editor to quit")

    def own(self, *arguments):
        """Starts a program that owns the clipboard until it is told to quit."""
        owner = self.session.start(os.environ["SELECTION_PEER"], "own", *arguments)
        wait_for(lambda: "owned" in owner.output(), what="the clipboard to be owned")
        return owner

    def wait_pasted(self, data, target="UTF8_STRING"):
        wait_for(lambda: self.session.paste(target) == data, what=f"{target} of the program that is gone")

    def expect_no_new_clip(self, count):
        """A later copy is stored, and it is the only new one."""
        self.session.copy("a later copy")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'a later copy'")
        self.assertEqual(count + 1, self.clip_count())


class TextsOutlive(OutliveCase):
    def paste_into_editor(self, command):
        self.copy_and_quit()
        count = self.clip_count()
        file = self.session.folder / "answer.txt"
        file.write_text("")
        self.session.start(command, str(file))
        self.session.activate(self.session.wait_window(name="answer.txt"))
        self.session.type("They wrote: ")
        self.session.keys("ctrl+v")

        def saved():
            self.session.keys("ctrl+s")
            return file.read_text().strip() == f"They wrote: {TEXT}"
        wait_for(saved, what="the paste")
        self.expect_no_new_clip(count)

    def test_for_a_gtk_program(self):
        self.paste_into_editor("mousepad")

    def test_for_a_qt_program(self):
        self.paste_into_editor("featherpad")

    def test_for_a_terminal(self):
        self.copy_and_quit()
        count = self.clip_count()
        typed = self.session.folder / "typed"
        translations = "*VT100.translations: #override Ctrl Shift <Key>V: insert-selection(CLIPBOARD)"
        terminal = self.session.start("xterm", "-xrm", translations, "-e", "sh", "-c",
                                      f"stty -icanon -echo; exec cat > {typed}")
        self.session.activate(self.session.wait_window(window_class="XTerm"))
        wait_for(typed.exists, what="the terminal's program")
        self.session.keys("ctrl+shift+v")
        wait_for(lambda: typed.read_text() == TEXT, what="the paste")
        # What is copied while a terminal is in front counts only when its copy keys were pressed.
        terminal.stop()
        wait_for(lambda: not self.session.client_windows(), what="the terminal to go")
        self.expect_no_new_clip(count)

    def test_of_a_program_that_is_killed(self):
        owner = self.own("--offer", f"UTF8_STRING={TEXT}")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = ?", TEXT)
        count = self.clip_count()
        owner.process.kill()
        owner.wait()
        self.wait_pasted(TEXT.encode())
        self.expect_no_new_clip(count)

    def test_not_of_a_password(self):
        owner = self.own("--offer", "UTF8_STRING=hunter2", "--offer", "x-kde-passwordManagerHint=secret", "--save", "all")
        wait_for(lambda: "served x-kde-passwordManagerHint" in owner.output(), what="the hint to be read")
        owner.process.terminate()
        wait_for(lambda: "not saved" in owner.output(), what="the refusal to save it")
        owner.wait()
        self.assertEqual(b"", self.session.paste())
        self.expect_no_new_clip(0)


class PicturesOutlive(OutliveCase):
    def outlive(self, end):
        picture = png(2800, 2500, incompressible=True)
        self.assertGreater(len(picture), 20_000_000)
        source = self.session.folder / "picture"
        source.write_bytes(picture)
        owner = self.own("--offer-file", f"image/png={source}", "--offer", "text/html=<img>", "--save", "image/png,text/html")
        self.wait_for_row("SELECT image_path FROM clips WHERE kind = 'image'")
        end(owner)
        owner.wait()
        self.wait_pasted(picture, "image/png")
        return owner

    def test_of_a_program_that_quits(self):
        owner = self.outlive(lambda owner: owner.process.terminate())
        self.assertIn("saved", owner.output().splitlines())
        self.assertEqual(1, owner.output().count("served image/png"), "the picture was read twice")
        self.assertEqual(b"<img>", self.session.paste("text/html"))
        self.expect_no_new_clip(1)

    def test_of_a_program_that_is_killed(self):
        self.outlive(lambda owner: owner.process.kill())
        self.expect_no_new_clip(1)

    def test_of_a_gtk_program_that_quits_at_once(self):
        """It makes the picture's bytes only now, and waits until they are saved."""
        source = self.session.folder / "picture.png"
        source.write_bytes(png(2800, 2500, incompressible=True))
        owner = self.session.start("/usr/bin/python3", pathlib.Path(__file__).parent / "picture_owner.py", source)
        wait_for(owner.output, what="the copy")
        owner.process.terminate()
        owner.wait()
        stored = pathlib.Path(self.wait_for_row("SELECT image_path FROM clips WHERE kind = 'image'")[0])
        self.assertEqual(["copied", "quit"], owner.output().splitlines(), owner.error_lines())
        # GTK writes a picture in a way of its own: it is the dots that have to be the same.
        pasted = self.session.folder / "pasted.png"
        pasted.write_bytes(self.session.paste("image/png"))
        self.assertGreater(pasted.stat().st_size, 20_000_000)
        self.assertEqual(self.dots(source), self.dots(pasted))
        self.assertEqual(stored.read_bytes(), pasted.read_bytes())
        self.expect_no_new_clip(1)

    def dots(self, picture):
        return self.session.run("convert", picture, "-depth", "8", "rgb:-")


class SecretsExpire(OutliveCase):
    """A secret leaves the clipboard with its clip if it is Brimquill that offers it. It lives for a minute; a date that
    is nearer, put into its row, counts for what is copied out of the palette from then on."""

    LIFE = 8

    def test_off_the_clipboard(self):
        owner = self.own("--offer", "UTF8_STRING=482913")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = '482913' AND expires_at IS NOT NULL")
        expires_at = time.time() + self.LIFE
        connection = sqlite3.connect(self.session.database, timeout=30)
        with connection:
            connection.execute("UPDATE clips SET expires_at = ?", (expires_at,))
        connection.close()
        self.open_palette()
        self.session.keys("alt+Return")
        self.wait_closed()
        owner.wait()
        self.assertEqual(b"482913", self.session.paste())
        wait_for(lambda: self.session.paste() == b"", what="the secret to go")
        self.assertGreaterEqual(time.time(), expires_at - 0.1)


if __name__ == "__main__":
    unittest.main()
