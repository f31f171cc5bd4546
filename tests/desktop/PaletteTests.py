"""From the hot key to the text in the program that the user came from."""

import unittest

from desktop_case import DesktopCase
from palette_case import HOT_KEY, PALETTE, PaletteCase
from xsession import wait_for


class PastesIntoATerminal(PaletteCase):
    def test_search_and_return(self):
        window, typed = self.start_terminal()
        self.open_palette()
        self.assertEqual(window, self.session.active_window())
        self.session.type("ban")
        self.session.keys("Return")
        wait_for(lambda: typed.read_text() == "banana bread", what="the paste")
        self.assertFalse(self.is_open())
        self.assertEqual(window, self.session.active_window())
        self.assertEqual(self.count, self.clip_count(), "What the program put on the clipboard came back as a clip")

    def test_quick_paste_and_arrows(self):
        _, typed = self.start_terminal()
        self.open_palette()
        self.session.keys("ctrl+2")
        wait_for(lambda: typed.read_text() == "banana bread", what="the second card")
        self.open_palette()
        self.session.keys("Right", "Right", "Return")
        wait_for(lambda: typed.read_text() == "banana breadan apple a day", what="the third card")

    def test_copy_without_pasting(self):
        _, typed = self.start_terminal()
        self.open_palette()
        self.session.type("apple")
        self.session.keys("alt+Return")
        self.wait_closed()
        wait_for(lambda: self.session.paste() == b"an apple a day", what="the clipboard")
        self.assertEqual("", typed.read_text())


class PastesIntoEditors(PaletteCase):
    def paste_into(self, command, window_class):
        window = self.start_editor(command, window_class)
        self.open_palette()
        self.assertEqual(window, self.session.active_window())
        self.session.type("cherry")
        self.session.keys("Return")
        self.wait_closed()
        wait_for(lambda: self.copied_from_editor() == "cherry 🍒 pie", what="the paste")
        self.assertEqual(window, self.session.active_window())

    def test_gtk(self):
        self.paste_into("mousepad", "[Mm]ousepad")

    def test_qt(self):
        self.paste_into("featherpad", "[Ff]eather[Pp]ad")


class LeavesThePalette(PaletteCase):
    def test_escape_goes_back_level_by_level(self):
        window = self.start_editor("mousepad", "[Mm]ousepad")
        self.open_palette()
        self.session.type("apple")
        self.session.keys("Escape")
        self.session.type("banana")
        self.session.keys("Escape", "Escape")
        self.wait_closed()
        self.session.type("typed below")
        wait_for(lambda: self.copied_from_editor() == "typed below", what="the keys to reach the editor again")
        self.assertEqual(window, self.session.active_window())

    def test_the_hot_key_closes_it_again(self):
        self.start_editor("mousepad", "[Mm]ousepad")
        self.open_palette()
        self.session.keys(HOT_KEY)
        self.wait_closed()

    def test_an_outside_click_reaches_its_target(self):
        self.start_editor("mousepad", "[Mm]ousepad")
        terminal, _ = self.start_terminal()
        self.session.run("xdotool", "windowmove", "--sync", terminal, "900", "50")
        editor = self.session.wait_window(window_class="[Mm]ousepad")
        self.session.run("xdotool", "windowmove", "--sync", editor, "50", "50")
        self.open_palette()
        self.session.click(150, 200)
        self.wait_closed()
        wait_for(lambda: self.session.active_window() == editor, what="the editor to become active by the click")


class OpensOverAMenu(PaletteCase):
    def test_while_a_menu_holds_the_keyboard(self):
        self.start_editor("mousepad", "[Mm]ousepad")
        self.session.keys("shift+F10")
        wait_for(lambda: len(self.session.windows(window_class="[Mm]ousepad")) > 1, what="the menu")
        self.session.keys(HOT_KEY)
        # The menu keeps the keyboard for as long as it is open; the palette comes at the latest when it closes.
        self.session.keys("Escape")
        if not self.is_open():
            self.open_palette()
        self.session.type("ban")
        self.session.keys("Return")
        self.wait_closed()
        wait_for(lambda: self.copied_from_editor() == "banana bread", what="the paste")


class HotKeyTaken(DesktopCase):
    """Another program holds the snip's hot key when the program starts."""

    expected_errors = (r"hotkey ⇧⌘2 OCR FAILED to register, OSStatus -9878 \(already taken by another app\)",)
    starts_program = False

    def test_the_others_work(self):
        self.session.start("xterm", "-xrm", "*VT100.translations: #override", name="target")
        self.take("super+shift+2")
        self.addCleanup(self.end_program)
        self.start_program()
        wait_for(lambda: any("⇧⌘2 OCR" in line for line in self.program.error_lines()), what="the keys to be registered")
        taken = [line for line in self.program.error_lines() if "already taken" in line]
        self.assertEqual(1, len(taken), self.program.error_lines())
        self.session.keys(HOT_KEY)
        wait_for(lambda: self.session.windows(name=PALETTE), what="the palette")
        self.session.keys("Escape")

    def take(self, chord):
        """Makes the window manager hold a chord, by its configuration."""
        names = {"super": "W", "shift": "S"}
        key = "-".join(names.get(part, part) for part in chord.split("+"))
        folder = self.session.folder / "config" / "openbox"
        folder.mkdir(parents=True)
        (folder / "rc.xml").write_text(
            '<openbox_config xmlns="http://openbox.org/3.4/rc"><keyboard>'
            f'<keybind key="{key}"><action name="Iconify"/></keybind></keyboard></openbox_config>')
        self.session.run("openbox", "--reconfigure")


if __name__ == "__main__":
    unittest.main()
