"""Programs that misuse the clipboard do not keep the program from its work."""

import os
import pathlib

from CopyTests import png
from palette_case import PALETTE, PaletteCase
from xsession import wait_for


class HostileCase(PaletteCase):
    """A desktop with a terminal, on which owners of the clipboard misbehave one after the other."""

    texts = ("banana bread",)

    def own(self, *arguments):
        """Starts a peer that owns the clipboard, and waits until it does."""
        peer = self.session.start(os.environ["SELECTION_PEER"], "own", *arguments)
        wait_for(lambda: "owned" in peer.output(), what="the peer to own the clipboard")
        return peer

    def start_editor_and_terminal(self):
        """Both windows and the file of what the terminal received; the editor is the active one.

        What is copied while a terminal is active counts only when its copy keys were pressed.
        """
        terminal, typed = self.start_terminal()
        return self.start_editor("mousepad", "[Mm]ousepad"), terminal, typed

    def endure(self, peers):
        """Lets each of `peers` (name: (arguments, what the peer tells when it was read)) misbehave while the palette is used."""
        editor, terminal, typed = self.start_editor_and_terminal()
        expected = ""
        for number, (name, (arguments, sign)) in enumerate(peers.items()):
            with self.subTest(name):
                peer = self.own(*arguments)
                wait_for(lambda: sign in peer.output(), what=f"the program to meet the misbehaviour of {name}")
                self.session.activate(terminal)
                self.open_palette()
                self.session.type("banana")
                self.session.keys("Return")
                expected += "banana bread"
                wait_for(lambda: typed.read_text() == expected, what=f"the paste past {name}")
                self.wait_closed()
                self.session.activate(editor)
                proper = f"proper copy {number}"
                self.session.copy(proper)
                self.wait_for_row("SELECT 1 FROM clips WHERE text = ?", proper)


class OwnersThatDoNotAnswer(HostileCase):
    def test_work_goes_on(self):
        text = ("--offer", "UTF8_STRING=never arrives")
        self.endure({
            "hung from the start": ((*text, "--do", "hang"), "hung at TARGETS"),
            "hung at its text": ((*text, "--do", "hang@UTF8_STRING"), "hung at UTF8_STRING"),
            "refusing all": ((*text, "--do", "refuse"), "refused TARGETS"),
            "no targets": ((), "served TARGETS"),
            "two thousand targets": ((*text, "--do", "many"), "served TARGETS"),
        })
        self.assertEqual([], self.session.query("SELECT text FROM clips WHERE text = ''"))


class OwnersWithOddTransfers(HostileCase):
    def test_work_goes_on(self):
        text = ("--offer-pattern", "UTF8_STRING=300000")
        self.endure({
            "dying in mid-transfer": ((*text, "--do", "die@UTF8_STRING"), "served UTF8_STRING"),
            "a huge announced size": ((*text, "--do", "huge@UTF8_STRING"), "served UTF8_STRING"),
            "an endless transfer": ((*text, "--do", "endless@UTF8_STRING"), "served UTF8_STRING"),
            "a trickle": ((*text, "--do", "trickle@UTF8_STRING"), "served UTF8_STRING"),
        })


class OwnersThatChange(HostileCase):
    expected_errors = (r"A copy cannot be read: ",)

    def test_work_goes_on(self):
        text = ("--offer", "UTF8_STRING=before")
        self.endure({
            "changing during the read": ((*text, "--do", "change@UTF8_STRING"), "served UTF8_STRING"),
            "claiming anew at each request": ((*text, "--do", "reown"), "served TARGETS"),
        })

    def test_five_hundred_changes(self):
        _, terminal, typed = self.start_editor_and_terminal()
        peer = self.own("--changes", "500", "--every", "20")
        self.open_palette()
        self.session.type("banana")
        self.session.keys("Escape", "Escape")
        self.wait_closed()
        wait_for(lambda: peer.output().count("owned") == 500, what="all changes")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'change 500'")
        self.session.activate(terminal)
        self.open_palette()
        self.session.type("banana")
        self.session.keys("Return")
        wait_for(lambda: typed.read_text() == "banana bread", what="the paste")


class SelectionsThatNobodyAnswers(HostileCase):
    def test_a_middle_click_asks_nobody(self):
        _, terminal, typed = self.start_editor_and_terminal()
        peer = self.own("--selection", "PRIMARY", "--offer", "UTF8_STRING=never arrives", "--do", "hang")
        self.session.activate(terminal)
        self.open_palette()
        x, y, _, _ = self.session.geometry(self.session.windows(name=PALETTE)[0])
        self.session.click(x + 120, y + 30, button=2)
        self.session.type("banana")
        self.session.keys("Return")
        wait_for(lambda: typed.read_text() == "banana bread", what="the paste")
        self.assertNotIn("hung", peer.output())


class ConcealedCopies(HostileCase):
    def test_a_password_is_not_stored(self):
        peer = self.own("--offer", "UTF8_STRING=correct horse", "--offer", "x-kde-passwordManagerHint=secret")
        wait_for(lambda: "served x-kde-passwordManagerHint" in peer.output(), what="the hint to be read")
        self.session.copy("after the password")
        self.wait_for_row("SELECT 1 FROM clips WHERE text = 'after the password'")
        self.assertEqual([], self.session.query("SELECT 1 FROM clips WHERE text LIKE '%correct horse%'"))


class LargePictures(HostileCase):
    def test_there_and_back(self):
        picture = png(2800, 2500, incompressible=True)
        source = self.session.folder / "picture"
        source.write_bytes(picture)
        owner = self.own("--offer-file", f"image/png={source}")
        path = pathlib.Path(self.wait_for_row("SELECT image_path FROM clips WHERE kind = 'image'")[0])
        self.assertEqual(picture, path.read_bytes())
        # What is read below is what the program offers.
        owner.stop()
        self.open_palette()
        self.session.keys("alt+Return")
        self.wait_closed()
        offered = wait_for(lambda: self.session.paste("image/png"), what="the picture on the clipboard")
        self.assertTrue(picture == offered, f"{len(offered)} bytes came back of {len(picture)}")
