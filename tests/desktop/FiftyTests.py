"""The palette worked with at length, by real keys, and where it has to stand."""

import json
import random
import unittest

from hoard_case import COLUMNS, FRUIT, HoardCase
from palette_case import HOT_KEY, PALETTE, PaletteCase
from xsession import Session, wait_for

STACK_KEY = "alt+super+v"


class FiftyActions(HoardCase):
    """Each action is one appearance of the palette, or what a person does between two."""

    def setUp(self):
        super().setUp()
        self.random = random.Random(50)
        self.session.start("xev", "-event", "mouse", "-name", "elsewhere")
        self.elsewhere = self.session.wait_window(name="^elsewhere$")
        self.session.activate(self.terminal)

    def test_fifty_actions_leave_what_they_should(self):
        actions = [self.quick_paste, self.paste_by_arrows, self.paste_by_number, self.copy_only, self.paste_several,
                   self.delete_one, self.delete_what_is_found, self.undo, self.paste_a_link, self.paste_tagged,
                   self.copy_elsewhere, self.paste_a_snippet, self.leave]
        session = [self.random.choice(actions) for _ in range(50 - len(actions))] + actions
        self.random.shuffle(session)
        for number, action in enumerate(session):
            self.check(f"action {number}: {action()}")

    # Each says what it did.

    def quick_paste(self):
        number = self.random.randint(1, 9)
        self.open_palette()
        self.session.keys(f"ctrl+{number}")
        self.paste_expected(self.hoard.strip()[number - 1].text)
        return f"pasted card {number}"

    def paste_by_arrows(self):
        right, left = self.random.randint(3, 12), self.random.randint(0, 3)
        self.open_palette()
        self.session.keys(*["Right"] * right, *["Left"] * left, "Return")
        self.paste_expected(self.hoard.strip()[right - left].text)
        return f"pasted by {right} to the right and {left} back"

    def paste_by_number(self):
        wanted = self.random.choice([clip for clip in self.hoard.live() if clip.text.startswith("entry")])
        query = " ".join(wanted.text.split()[:2])
        self.open_palette()
        self.session.type(query)
        self.session.keys("Return")
        self.paste_expected(wanted.text)
        return f"pasted what {query} finds"

    def copy_only(self):
        query = self.random.choice(FRUIT)[:4]
        self.open_palette()
        self.session.type(query)
        self.session.keys("Right", "alt+Return")
        self.clipboard = self.hoard.strip(query)[1].text
        return f"copied the second that {query} finds"

    def paste_several(self):
        first, count = self.random.randint(0, 5), self.random.randint(1, 4)
        self.open_palette()
        self.session.keys(*["Right"] * first, *["shift+Right"] * count, "Return")
        self.paste_expected("\n".join(clip.text for clip in self.hoard.strip()[first:first + count + 1]))
        return f"pasted {count + 1} from {first} on"

    def delete_one(self):
        at = self.random.randint(0, 8)
        self.open_palette()
        self.session.keys(*["Down"] * at, "ctrl+BackSpace", "Escape")
        self.hoard.delete([self.hoard.strip()[at]])
        return f"deleted card {at}"

    def delete_what_is_found(self):
        query = f"day {self.random.randint(100, 1400)}"
        self.open_palette()
        self.session.type(query)
        self.session.keys("ctrl+a", "BackSpace", "Escape", "Escape")
        self.hoard.delete(self.hoard.strip(query))
        return f"deleted all that {query} finds"

    def undo(self):
        self.open_palette()
        self.session.keys("ctrl+z", "Escape")
        self.hoard.undo_delete()
        return "undid a deletion"

    def paste_a_link(self):
        at = self.random.randint(0, 5)
        self.open_palette()
        self.session.keys("ctrl+l", *["Right"] * at, "Return")
        self.paste_expected(self.hoard.strip(links=True)[at].text)
        self.check(f"pasted link {at}")
        # The type stays for the next appearance.
        self.open_palette()
        self.session.keys("Escape", "Escape")
        return "left the links"

    def paste_tagged(self):
        query = self.random.choice(FRUIT)
        self.open_palette()
        self.session.keys("ctrl+shift+t")
        self.session.type(query)
        self.session.keys("Return")
        self.paste_expected(self.hoard.strip(query, tag="work")[0].text)
        return f"pasted the newest {query} of #work"

    def copy_elsewhere(self):
        text = f"copied elsewhere {len(self.hoard.clips)}"
        self.session.activate(self.elsewhere)  # what the owner of the clipboard alone does in a terminal is no copy
        self.session.copy(text)
        self.hoard.add(self.wait_for_row(f"SELECT {COLUMNS} FROM clips WHERE text = ?", text))
        self.clipboard = text
        self.session.activate(self.terminal)
        return "copied in another program"

    def paste_a_snippet(self):
        at = self.random.randint(0, 3)
        self.open_palette()
        self.session.keys("Tab", *["Right"] * at, "Return")
        self.paste_expected(self.hoard.snippets()[at].text)
        return f"pasted snippet {at}"

    def leave(self):
        self.open_palette()
        self.session.type("kumq")
        self.session.keys("Tab", "Right", "ctrl+y", "Escape", "Escape", "Escape", "Escape")
        return "left without doing anything"


class TypesFasterThanItSearches(HoardCase):
    """So many clips that a search takes longer than the next key."""

    clips = 100_000
    settings = {**HoardCase.settings, "maxHistoryItems": 200_000}

    def test_no_key_is_lost_and_the_last_text_counts(self):
        expected = ""
        for number in (31415, 27182):
            self.open_palette()
            self.session.type(f"entry 9{number}")
            self.session.keys(*["BackSpace"] * 6)
            self.session.type(f"{number}")
            self.session.keys("Return")
            expected += next(clip.text for clip in self.hoard.clips.values() if clip.text.startswith(f"entry {number}"))
            wait_for(lambda: self.typed.read_text() == expected, what=f"the paste of {number}")
            self.wait_closed()


class BacksOutOfAHoard(HoardCase):
    def test_each_escape_takes_one_level(self):
        """Type, scope, query, palette: what Return pastes tells the level that Escape has reached."""
        levels = [dict(query="ch", tag="work", links=True), dict(query="ch", tag="work"), dict(query="ch"), {}]
        strips = [self.hoard.strip(**level) for level in levels]
        self.assertEqual(len(levels), len({strip[0].text for strip in strips}), "Levels that look the same tell nothing")
        for escapes, strip in enumerate(strips):
            self.open_palette()
            self.session.keys("ctrl+m", "ctrl+shift+t")
            self.session.type("ch")
            self.session.keys("ctrl+l", *["Escape"] * escapes, "Return")
            self.paste_expected(strip[0].text)
            self.check(f"{escapes} times Escape, then Return")
            self.open_palette()
            self.session.keys("ctrl+m", "Escape")
            self.check("left with the filters cleared")
        self.open_palette()
        self.session.keys("ctrl+shift+t")
        self.session.type("ch")
        self.session.keys("ctrl+l", *["Escape"] * 4)
        self.check("four times Escape")
        self.session.type("below")
        self.target += "below"
        self.check("the keys reach the terminal again")


class PastesSeveral(HoardCase):
    """Over a full hoard, in the order of the strip."""

    def card(self, index):
        """Where a card lies on the screen."""
        return 24 + 16 + 12 + index * 192, 1000 - 16 - 100

    def test_in_the_order_of_the_strip(self):
        self.open_palette()
        self.session.run("xdotool", "keydown", "ctrl")
        for index in (4, 0, 2):
            self.session.click(*self.card(index))
        self.session.run("xdotool", "keyup", "ctrl")
        self.session.keys("Return")
        strip = self.hoard.strip()
        self.paste_expected("\n".join(strip[index].text for index in (0, 2, 4)))
        self.check("three marked by clicks")

    def test_a_range_by_a_click(self):
        self.open_palette()
        self.session.keys("Right")
        self.session.run("xdotool", "keydown", "shift")
        self.session.click(*self.card(5))
        self.session.run("xdotool", "keyup", "shift")
        self.session.keys("Return")
        self.paste_expected("\n".join(clip.text for clip in self.hoard.strip()[1:6]))
        self.check("a range")


class PastesTheStack(HoardCase):
    """The stack was filled in an earlier run; a clip of it was deleted meanwhile."""

    def prepare(self):
        strip = self.hoard.strip()
        self.stacked = [strip[index] for index in (7, 2, 40)]
        ids = [str(self.stacked[0].id), "no id", "987654321", *(str(clip.id) for clip in self.stacked[1:])]
        self.session.write_settings({**self.settings, "pasteStackIds": ids})

    def stored(self):
        path = next((self.session.folder / "config" / "brimquill").glob("*.json"))
        return json.loads(path.read_text()).get("pasteStackIds")

    def test_one_after_the_other_and_over_a_restart(self):
        self.session.keys(STACK_KEY)
        self.paste_expected(self.stacked[0].text)
        self.check("the first of the stack")
        wait_for(lambda: self.stored() == ["987654321", *(str(clip.id) for clip in self.stacked[1:])], what="the stack to be kept")
        self.end_program()
        self.start_program()
        self.session.activate(self.terminal)
        for clip in self.stacked[1:]:
            self.session.keys(STACK_KEY)
            self.paste_expected(clip.text)
            self.check("the next of the stack")
        wait_for(lambda: self.stored() == [], what="the stack to be empty")
        self.session.keys(STACK_KEY)
        self.open_palette()
        self.session.keys("ctrl+1")
        self.paste_expected(self.hoard.strip()[0].text)
        self.check("an empty stack pastes nothing")


    def test_a_key_that_is_held_on(self):
        """While it is down, the keyboard is the program's, and a paste sent then would be lost."""
        self.session.run("xdotool", "keydown", "alt", "keydown", "super", "keydown", "v")
        wait_for(lambda: self.session.windows(window_class="[Bb]rimquill"), what="the word of the paste")
        wait_for(lambda: not self.session.windows(window_class="[Bb]rimquill"), what="the word to go")
        self.session.run("xdotool", "keyup", "v", "keyup", "super", "keyup", "alt")
        self.paste_expected(self.stacked[0].text)
        self.check("the first of the stack by a long press")


class StandsWhereItShould(PaletteCase):
    def geometry(self):
        return self.session.geometry(self.session.windows(name=PALETTE)[0])

    def paste(self, query, text):
        """Pastes what the query finds into the terminal, through the palette that is open."""
        before = self.typed.read_text()
        self.session.type(query)
        self.session.keys("Return")
        self.wait_closed()
        wait_for(lambda: self.typed.read_text() == before + text, what="the paste")


class OverAFullScreen(StandsWhereItShould):
    def test_over_a_window_that_fills_the_screen(self):
        window, self.typed = self.start_terminal()
        self.session.keys("alt+Return")

        def fills():
            shown = self.session.run("xwininfo", "-id", window).decode()
            return "FULLSCREEN" in self.session.window_property(window, "_NET_WM_STATE") and "Width: 1600" in shown

        wait_for(fills, what="the terminal to fill the screen")
        self.open_palette()
        self.assertEqual((24, 1000 - 16 - 280, 1600 - 48, 280), self.geometry())
        stacked = self.session.run("xwininfo", "-root", "-tree").decode()
        self.assertLess(stacked.index("Brimquill Palette"), stacked.index(hex(window)), "The palette lies below")
        self.paste("ban", "banana bread")
        self.assertTrue(fills(), "The terminal fills the screen no more")
        self.assertEqual(window, self.session.active_window())


class OnAScreenThatChanges(StandsWhereItShould):
    """The screen becomes smaller, as when a projector is plugged in, and the palette stays within it."""

    def test_palette_and_form_follow(self):
        window, self.typed = self.start_terminal()
        self.open_palette()
        self.session.keys("ctrl+t")
        form = wait_for(lambda: self.session.windows(name="^Brimquill Organize$"), what="the form")[0]
        self.session.run("xrandr", "--newmode", "small", "60", *"1280 1281 1282 1283 720 721 722 723".split())
        self.session.run("xrandr", "--addmode", "screen", "small")
        self.session.run("xrandr", "--output", "screen", "--mode", "small")
        wait_for(lambda: self.geometry() == (24, 720 - 16 - 280, 1280 - 48, 280), what="the palette to follow")

        def is_centred():
            x, y, width, height = self.session.geometry(form)
            return abs(2 * x + width - 1280) <= 1 and 0 <= y and y + height <= 720 - 16 - 280
        wait_for(is_centred, what="the form to follow")
        self.session.keys("Escape")
        wait_for(lambda: not self.session.windows(name="^Brimquill Organize$"), what="the form to close")
        self.paste("ban", "banana bread")
        self.assertEqual(window, self.session.active_window())


class OnASecondScreen(StandsWhereItShould):
    """Two screens side by side; the palette comes to the one that the person works on."""

    def make_session(self):
        session = super().make_session()
        session.run("xrandr", "--setmonitor", "left", "800/212x1000/265+0+0", "screen")
        session.run("xrandr", "--setmonitor", "right", "800/212x1000/265+800+0", "none")
        return session

    def test_follows_the_active_window(self):
        window, self.typed = self.start_terminal()
        for x, query, text in ((850, "ban", "banana bread"), (20, "app", "an apple a day")):
            self.session.run("xdotool", "windowmove", "--sync", window, x, 40)
            self.open_palette()
            self.assertEqual((24 if x < 800 else 824, 1000 - 16 - 280, 800 - 48, 280), self.geometry())
            self.paste(query, text)

    def test_a_click_on_the_other_screen_closes_it(self):
        """At the very place, but on the other screen, and with nothing active that would hold it to one."""
        self.session.run("xdotool", "mousemove", 300, 300)
        self.open_palette()
        self.assertEqual(24, self.geometry()[0])
        self.session.click(800 + 300, 850)
        self.wait_closed()


class AtTwiceTheScale(StandsWhereItShould):
    """Each point is two pixels wide."""

    environment = {"QT_SCALE_FACTOR": "2"}

    def test_covers_the_same_points(self):
        _, self.typed = self.start_terminal()
        self.open_palette()
        self.assertEqual((48, 1000 - 32 - 560, 1600 - 96, 560), self.geometry())
        self.session.click(48 + 700, 1000 - 32 - 200)
        wait_for(lambda: self.session.paste() == b"banana bread", what="the copy of the second card")
        self.assertTrue(self.is_open(), "A click inside closed it")
        self.paste("app", "an apple a day")
        self.open_palette()
        self.session.click(800, 200)
        self.wait_closed()

    def test_is_carried_along_by_its_background(self):
        _, self.typed = self.start_terminal()
        self.open_palette()
        x, y, width, height = self.geometry()
        self.session.run("xdotool", "mousemove", x + width - 100, y + 90, "mousedown", 1)
        for step in range(1, 6):
            self.session.run("xdotool", "mousemove", x + width - 100 - 6 * step, y + 90 - 60 * step)
        self.session.run("xdotool", "mouseup", 1)
        wait_for(lambda: self.geometry() == (x - 30, y - 300, width, height), what="the palette to be carried along")
        self.paste("ban", "banana bread")
        self.open_palette()
        self.assertEqual((x, y, width, height), self.geometry())


class AClickOutside(PaletteCase):
    def test_reaches_what_lies_below(self):
        target = self.session.start("xev", "-event", "button", "-name", "target", "-geometry", "400x300+100+100")
        self.session.wait_window(name="^target$")
        self.open_palette()
        self.session.click(250, 250)
        self.wait_closed()
        wait_for(lambda: "ButtonRelease event" in target.output(), what="the click")
        self.assertEqual(1, target.output().count("ButtonPress event"))


if __name__ == "__main__":
    unittest.main()
