"""A desktop whose hoard holds ten thousand clips, and what it should hold after each action of a person."""

import re
import sqlite3
import time
import uuid

from palette_case import PaletteCase
from xsession import wait_for

CLIPS = 10_000
COLUMNS = "id, text, name, tags, pinned, created_at"
FRUIT = ("apple", "banana", "cherry", "damson", "elderberry", "fig", "grape", "huckleberry", "ilama", "jujube", "kumquat")


class Clip:
    def __init__(self, id, text, name, tags, pinned, created_at):
        self.id, self.text, self.name, self.pinned, self.created_at = id, text, name, bool(pinned), created_at
        self.tags = tags.split(",") if tags else []

    def is_link(self):
        return self.text.startswith(("http://", "https://"))

    def answers(self, query):
        """Whether each word of the query begins a word of the clip."""
        words = re.findall(r"[a-z0-9]+", self.text.lower())
        return all(any(word.startswith(asked) for word in words) for asked in query.lower().split())


class Hoard:
    """What the clips are and what the palette should show of them; knows nothing of the program."""

    def __init__(self, rows):
        self.clips = {row[0]: Clip(*row) for row in rows}
        self.deleted = set()
        self.undo = []

    def add(self, row):
        self.clips[row[0]] = Clip(*row)

    def strip(self, query="", tag=None, links=False):
        """The cards for a query (of no words that name a tag or a snippet), a tag, and whether links alone are wanted."""
        found = sorted((clip for clip in self.live() if clip.answers(query)),
                       key=lambda clip: (clip.name is None, not clip.pinned, -clip.created_at))
        if tag is None and not query:
            found = [clip for clip in found if clip.name is None]
        if tag is None and (query or not links):
            found = found[:50]
        return [clip for clip in found if (tag is None or tag in clip.tags) and (not links or clip.is_link())][:60]

    def live(self):
        return [clip for clip in self.clips.values() if clip.id not in self.deleted]

    def snippets(self):
        return sorted((clip for clip in self.live() if clip.name is not None), key=lambda clip: clip.name.lower())

    def delete(self, clips):
        ids = [clip.id for clip in clips]
        self.deleted |= set(ids)
        self.undo.append(ids)

    def undo_delete(self):
        if self.undo:
            self.deleted -= set(self.undo.pop())


def seed(database, clips):
    """Fills an empty hoard: texts with a number of their own, links, tags, pinned ones and snippets among them."""
    now = time.time()
    with sqlite3.connect(database) as connection:
        for index in range(clips):
            text = f"entry {index:05d} {FRUIT[index % 11]} of day {index // 7}"
            if index % 90 == 61:
                text = f"https://example.org/{FRUIT[index % 11]}/{index:05d}"
            tags = {1: "work", 2: "work,later", 3: "work", 23: "later"}.get(index % 50)
            name = f"Snippet {index // 2500}" if index % 2500 == 1234 else None
            connection.execute(
                "INSERT INTO clips (text, kind, created_at, source_app, uuid, modified_at, pinned, tags, name) "
                "VALUES (?, 'text', ?, 'Editor', ?, ?, ?, ?, ?)",
                (text, now - clips + index, str(uuid.UUID(int=index)), now, index in (17, 4000), tags, name))


class HoardCase(PaletteCase):
    """A palette over ten thousand clips and a terminal as its target."""

    texts = ()
    starts_program = False
    clips = CLIPS
    settings = {**PaletteCase.settings, "maxHistoryItems": 2 * CLIPS}

    def setUp(self):
        super().setUp()
        self.addCleanup(self.end_program)
        self.start_program()
        self.end_program()
        seed(self.session.database, self.clips)
        self.hoard = Hoard(self.session.query(f"SELECT {COLUMNS} FROM clips"))
        self.count = len(self.hoard.clips)
        self.prepare()
        self.start_program()
        self.terminal, self.typed = self.start_terminal()
        self.clipboard, self.target = "", ""

    def prepare(self):
        """What is to happen between the first start, which makes the database, and the second."""

    def paste_expected(self, text):
        self.clipboard = text
        self.target += text

    def state(self):
        return {"deleted": {row[0] for row in self.session.query("SELECT id FROM clips WHERE deleted = 1")},
                "count": self.clip_count(), "clipboard": self.session.paste().decode(),
                "target": self.typed.read_text(), "open": self.is_open()}

    def check(self, what):
        """Waits until database, clipboard and target are as the hoard and the texts noted say, the palette closed."""
        expected = {"deleted": self.hoard.deleted, "count": len(self.hoard.clips), "clipboard": self.clipboard,
                    "target": self.target, "open": False}
        last = {}

        def reached():
            last.update(self.state())
            return last == expected

        try:
            wait_for(reached, what=what)
        except Exception:
            for part, value in expected.items():
                self.assertEqual(value, last[part], f"{part} after: {what}")
            raise
