#!/usr/bin/python3
"""Figures of the whole program on a desktop of its own, each a median with its bound measured in the same run.

    benchmarks/desktop/figures.py BUILD_DIRECTORY [FIGURE...]

BUILD_DIRECTORY holds bin/brimquill, bin/desktop_probe, bin/selection_peer and benchmarks/libbusy_times.so (the `benchmark` preset makes
them). Without names all figures are taken. Close other work first: the figures are of wall-clock time.
"""

import json
import pathlib
import random
import sqlite3
import statistics
import struct
import subprocess
import sys
import time
import uuid
import zlib

TOOLS = pathlib.Path(__file__).resolve().parents[2] / "tools"
sys.path.insert(0, str(TOOLS))

from xsession import Session, SessionError, wait_for  # noqa: E402  (found by the line above)

CLIPS = 10_000
MANY_CLIPS = 100_000
FEW_CLIPS = 100
PICTURES = 60
ROUNDS = 21
SCREENSHOTS = 20
HOT_KEY = "super+shift+v"
COLUMNS = ("id, kind, text, created_at, source_app, pinned, image_path, name, keyword, folder_id, expires_at, tags, uuid, "
           "modified_at, deleted, source_bundle_id")


def png(width, height, seed):
    """A picture that takes some work to read: a texture of its own over a gradient, 8 bits for each of three colours."""
    noise = random.Random(seed).randbytes(3 * width + height)
    rows = bytearray()
    for y in range(height):
        row = bytearray(noise[y:y + 3 * width])
        row[::3] = bytes([y * 255 // height]) * width
        rows += b"\0" + row

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(bytes(rows), 1)) + chunk(b"IEND", b"")


class Figures:
    def __init__(self, build, clips=CLIPS, moves=False):
        self.build = pathlib.Path(build).resolve()
        self.binaries = self.build / "bin"
        self.clips = clips
        self.session = Session()
        self.session.write_settings({"onboardingShown": True, "showCaptureToasts": False, "maxHistoryItems": 2 * clips})
        if not moves:
            self.keep_still()
        self.program = None

    def keep_still(self):
        """Without motion the last change on the screen is the last of what was to be painted."""
        portal = self.session.start(TOOLS / "settings_portal.py", "org.gnome.desktop.interface", "enable-animations", "false")
        wait_for(portal.output, what="the portal")

    def start_program(self, environment=None):
        self.program = self.session.start(self.binaries / "brimquill", environment=environment)
        started = time.monotonic()
        while "Brimquill: ready" not in self.program.error_lines():
            if time.monotonic() - started > 30:
                raise SystemExit(f"The program did not start: {self.program.error_lines()}")
            time.sleep(0.001)
        return (time.monotonic() - started) * 1000

    def stop_program(self):
        self.program.stop()
        self.session.programs.remove(self.program)

    def fill(self):
        """Makes the program create its database, then fills it with clips of 200 characters."""
        self.start_program()
        self.stop_program()
        words = [w.strip() for w in ("alpha bravo charlie delta echo foxtrot golf hotel india juliet kilo lima mike november "
                                     "oscar papa quebec romeo sierra tango uniform victor whiskey xray yankee zulu").split()]
        rng = random.Random(1)
        now = time.time()
        with sqlite3.connect(self.session.database) as database:
            for index in range(self.clips):
                text = ""
                while len(text) < 200:
                    text += f"{rng.choice(words)}{rng.randrange(1000)} "
                database.execute(
                    "INSERT INTO clips (text, kind, created_at, source_app, uuid, modified_at) VALUES (?, 'text', ?, 'xterm', ?, ?)",
                    (text[:200], now - self.clips + index, str(uuid.UUID(int=rng.getrandbits(128))), now))

    def probe(self, chord, quiet=0.3, window=None):
        out = self.session.run(self.binaries / "desktop_probe", chord, quiet, *([window] if window else [])).decode().split()
        if out[2] == "0":
            raise SystemExit(f"{chord} changed nothing on the screen")
        return float(out[0]), float(out[1])

    def statement(self, sql, *values):
        """Milliseconds of a raw statement, all its rows read, after a rest as long as the program's before a key."""
        with sqlite3.connect(self.session.database) as database:
            times = []
            for _ in range(ROUNDS):
                time.sleep(0.3)
                start = time.perf_counter()
                database.execute(sql, values).fetchall()
                times.append((time.perf_counter() - start) * 1000)
        return statistics.median(times)

    # The figures

    def start(self):
        times = []
        for _ in range(ROUNDS):
            times.append(self.start_program())
            self.stop_program()
        listed = self.statement(f"SELECT {COLUMNS} FROM clips WHERE name IS NULL AND deleted = 0 "
                                "ORDER BY pinned DESC, created_at DESC LIMIT 200")
        self.tell("process start to capturing", times, "ms", f"of which the statement that lists the newest 200: {listed:.1f}")

    def memory(self):
        self.start_program()
        time.sleep(3)
        after_start = self.resident()
        self.open_and_close()
        time.sleep(1)
        self.tell("resident memory after start", [after_start], "MiB")
        self.tell("resident memory after the first palette", [self.resident()], "MiB")
        for _ in range(200):
            self.open_and_close()
        self.tell("resident memory after 200 openings more", [self.resident()], "MiB")
        self.stop_program()

    def resident(self):
        for line in pathlib.Path(f"/proc/{self.program.pid}/status").read_text().splitlines():
            if line.startswith("VmRSS"):
                return int(line.split()[1]) / 1024
        return 0

    def open_and_close(self):
        self.session.keys(HOT_KEY)
        wait_for(self.palette_windows, what="the palette")
        self.session.keys("Escape")
        wait_for(lambda: not self.palette_windows(), what="the palette to go")

    def palette_windows(self):
        return self.session.windows(name="^Brimquill Palette$")

    def many(self):
        """The palette over ten times as many clips."""
        self.on_another(Figures(self.build, clips=MANY_CLIPS), "palette")

    def strip(self):
        """→ held down through cards with pictures, with all motion."""
        self.on_another(Figures(self.build, moves=True), "hold_arrow")

    @staticmethod
    def on_another(figures, name):
        try:
            figures.fill()
            getattr(figures, name)()
        finally:
            figures.session.stop()

    def hold_arrow(self):
        """As a keyboard repeats it, through pictures of the size of a screen."""
        self.add_pictures()
        self.start_watched()
        time.sleep(2)
        walls, processor = [], []
        for _ in range(ROUNDS):
            self.session.keys(HOT_KEY)
            wait_for(self.palette_windows, what="the palette")
            self.session.keys("ctrl+i")
            time.sleep(0.5)
            start = time.monotonic() * 1000
            self.session.run("xdotool", "key", "--delay", "33", *["Right"] * PICTURES)
            time.sleep(0.3)
            end = time.monotonic() * 1000
            within = self.turns(start, end)
            walls.append(max(turn[1] for turn in within))
            processor.append(max(turn[2] for turn in within))
            self.session.keys("ctrl+m", "Escape")
            wait_for(lambda: not self.palette_windows(), what="the palette to go")
        self.tell(f"longest turn of the main thread with → held through {PICTURES} pictures", walls, "ms",
                  f"of the processor {statistics.median(processor):.1f} ms (max {max(processor):.1f}); first time {walls[0]:.1f} ms")
        self.stop_program()

    def start_watched(self):
        """Starts the program so that `turns` tells of its main thread."""
        self.busy_times = self.session.folder / "busy-times"
        self.start_program({"LD_PRELOAD": str(self.build / "benchmarks" / "libbusy_times.so"), "BUSY_TIMES": str(self.busy_times)})

    def turns(self, start, end):
        """What the main thread did between two times (milliseconds of the monotonic clock) from one wait to the next: when it
        ended, how long that took, and how much of it the processor worked."""
        lines = (tuple(map(float, line.split())) for line in self.busy_times.read_text().splitlines())
        return [turn for turn in lines if start <= turn[0] <= end]

    def add_pictures(self):
        folder = self.session.database.parent / "pictures"
        folder.mkdir(exist_ok=True)
        now = time.time()
        with sqlite3.connect(self.session.database) as database:
            for index in range(PICTURES):
                path = folder / f"{index}.png"
                path.write_bytes(png(1920, 1080, index))
                database.execute(
                    "INSERT INTO clips (text, kind, created_at, source_app, uuid, modified_at, image_path) "
                    "VALUES ('', 'image', ?, 'xterm', ?, ?, ?)", (now + index / 100, str(uuid.uuid4()), now, str(path)))

    def palette(self):
        self.start_program()
        time.sleep(2)
        shown, typed = [], []
        for _ in range(ROUNDS):
            shown.append(self.probe(HOT_KEY)[1])
            typed.append(self.probe("g")[1])
            self.session.keys("Escape", "Escape")
            wait_for(lambda: not self.palette_windows(), what="the palette to go")
        newest = self.statement(f"SELECT {COLUMNS} FROM clips WHERE name IS NULL AND deleted = 0 "
                                "ORDER BY pinned DESC, created_at DESC LIMIT 50")
        tags = self.statement("SELECT tags FROM clips WHERE tags IS NOT NULL")
        joined = ", ".join("c." + name.strip() for name in COLUMNS.split(","))
        found = self.statement(f"SELECT {joined} FROM clips_fts f JOIN clips c ON c.id = f.rowid WHERE clips_fts MATCH ? "
                               "AND c.deleted = 0 ORDER BY (c.name IS NOT NULL) DESC, c.pinned DESC, c.created_at DESC "
                               "LIMIT 50", '"g"*')
        liked = self.statement(f"SELECT {COLUMNS} FROM clips WHERE tags LIKE ? AND deleted = 0 "
                               "ORDER BY created_at DESC LIMIT 50", "%g%")
        snippets = self.statement(f"SELECT {COLUMNS} FROM clips WHERE name IS NOT NULL AND deleted = 0 "
                                  "ORDER BY folder_id, name COLLATE NOCASE")
        self.tell(f"hot key to palette painted, {self.clips} clips", shown, "ms", f"statements: newest 50 {newest:.1f}, tags {tags:.1f}")
        self.tell(f"keystroke to results painted, {self.clips} clips", typed, "ms",
                  f"statements: match {found:.1f}, snippets {snippets:.1f}, tags {liked:.1f}")
        self.stop_program()

    def explorer(self):
        self.fill_explorer(pinboards=300, tags=500)
        self.start_program()
        time.sleep(2)
        opened = []
        for _ in range(ROUNDS):
            self.session.keys(HOT_KEY)
            wait_for(self.palette_windows, what="the palette")
            time.sleep(1)
            opened.append(self.probe("ctrl+f")[1])
            self.session.keys("Escape", "Escape")
            wait_for(lambda: not self.palette_windows(), what="the palette to go")
        bound = sum(self.statement(sql) for sql in (
            "SELECT id, name, parent_id, uuid, color FROM folders WHERE deleted = 0 ORDER BY name COLLATE NOCASE",
            "SELECT folder_id, COUNT(*) FROM clips WHERE folder_id IS NOT NULL AND deleted = 0 GROUP BY folder_id",
            "SELECT tags FROM clips WHERE tags IS NOT NULL",
            "SELECT kind, COUNT(*) FROM clips WHERE deleted = 0 GROUP BY kind ORDER BY COUNT(*) DESC",
            "SELECT source_app, source_bundle_id, COUNT(*) FROM clips WHERE deleted = 0 AND source_app IS NOT NULL "
            "GROUP BY source_app ORDER BY COUNT(*) DESC LIMIT 12"))
        self.tell("explorer open to painted, 300 pinboards and 500 tags", opened, "ms",
                  f"the first {opened[0]:.1f}; statements, run beforehand: {bound:.1f}")
        self.stop_program()

    def fill_explorer(self, pinboards, tags):
        """Three levels of pinboards, ten below each other one; every clip filed and tagged."""
        with sqlite3.connect(self.session.database) as database:
            now = time.time()
            for index in range(pinboards):
                parent = None if index < 10 else index // 10
                database.execute("INSERT INTO folders (id, name, parent_id, uuid, modified_at) VALUES (?, ?, ?, ?, ?)",
                                 (index + 1, f"pinboard {index}", parent, str(uuid.uuid4()), now))
            database.execute(f"UPDATE clips SET folder_id = id % {pinboards} + 1, tags = 'tag' || id % {tags}")

    def capture(self):
        """What has to be read before a clip is written grows with the store, so also over few clips."""
        self.time_captures()
        self.on_another(Figures(self.build, clips=FEW_CLIPS), "time_captures")

    def time_captures(self):
        self.start_program()
        owner = subprocess.Popen([self.binaries / "selection_peer", "own", "--changes", str(ROUNDS), "--every", "300"],
                                 env=self.session.environment, stdout=subprocess.PIPE, text=True)
        journal = self.session.database.with_name(self.session.database.name + "-journal")
        times = []
        owner.stdout.readline()
        while len(times) < ROUNDS - 1:
            time.sleep(0.15)  # by then all that followed the copy before is written
            before = self.changed()
            while owner.stdout.readline() != "owned\n":
                pass
            start = time.perf_counter()
            # A look into the database would hold it just when the program wants to write; the journal goes with the commit.
            while self.changed() == before or journal.exists():
                time.sleep(0.0001)
            times.append((time.perf_counter() - start) * 1000)
        owner.kill()
        owner.wait()
        newest = self.statement(f"SELECT {COLUMNS} FROM clips WHERE name IS NULL AND deleted = 0 "
                                "ORDER BY pinned DESC, created_at DESC LIMIT 1")
        self.tell(f"owner change to row committed, {self.clips} clips", times, "ms",
                  f"SQLite's own commit: {self.commit():.1f}, the statement that finds the newest clip: {newest:.1f}")
        self.stop_program()

    def changed(self):
        return self.session.database.stat().st_mtime_ns

    def commit(self):
        """Milliseconds of an insert with its commit, beside the store on the same disk."""
        path = self.session.database.with_name("bound.db")
        with sqlite3.connect(path, isolation_level=None) as database:
            database.execute("CREATE TABLE t (x)")
            times = []
            for _ in range(ROUNDS):
                start = time.perf_counter()
                database.execute("INSERT INTO t VALUES ('copied')")
                times.append((time.perf_counter() - start) * 1000)
        return statistics.median(times)

    def burst(self):
        self.start_watched()
        before, start = self.burst_count(), time.monotonic() * 1000
        peer = self.session.start(self.binaries / "selection_peer", "own", "--changes", "500", "--every", "50")
        try:
            wait_for(lambda: peer.output().count("owned") >= 500, 120, "500 copies to be made")
            wait_for(lambda: self.burst_count() - before >= 500, 60, "500 copies to be kept")
        except SessionError as failure:
            print(failure)
        peer.stop()
        self.session.programs.remove(peer)
        self.tell("of 500 copies 50 ms apart, kept", [self.burst_count() - before], "")
        walls = sorted(turn[1] for turn in self.turns(start, time.monotonic() * 1000))
        self.tell("longest turn of the main thread meanwhile", [walls[-1]], "ms",
                  f"of {len(walls)} the tenth longest {walls[-10]:.1f}, the median {statistics.median(walls):.1f}")
        self.stop_program()

    def burst_count(self):
        return self.session.query("SELECT COUNT(*) FROM clips WHERE text LIKE 'change %'")[0][0]

    def paste(self):
        self.start_program()
        typed = self.session.folder / "typed"
        self.session.start("xterm", "-e", "sh", "-c", f"stty -icanon -echo; exec cat > {typed}", name="xterm")
        self.session.activate(self.session.wait_window(window_class="XTerm"))
        wait_for(typed.exists, what="the terminal's program")
        times, size = [], 0
        for _ in range(ROUNDS):
            self.session.keys(HOT_KEY)
            wait_for(self.palette_windows, what="the palette")
            start = time.perf_counter()
            key = subprocess.Popen(["xdotool", "key", "Return"], env=self.session.environment)
            while typed.stat().st_size == size:
                time.sleep(0.0002)
                if time.perf_counter() - start > 10:
                    raise SystemExit("the text did not arrive")
            times.append((time.perf_counter() - start) * 1000)
            key.wait()
            time.sleep(0.3)
            size = typed.stat().st_size
        self.tell("Return (xdotool's start included) to text in xterm", times, "ms", "of which the pause of 150 ms")
        self.stop_program()

    def idle(self):
        self.start_program()
        time.sleep(5)
        before, ticks = self.switches()
        time.sleep(60)
        after, later = self.switches()
        self.tell("wake-ups a second, idle for 60 s", [(after - before) / 60], "", f"CPU {(later - ticks) * 10} ms in all")
        self.stop_program()

    def switches(self):
        total = 0
        for task in pathlib.Path(f"/proc/{self.program.pid}/task").iterdir():
            for line in (task / "status").read_text().splitlines():
                if line.startswith("voluntary_ctxt_switches"):
                    total += int(line.split()[1])
        fields = pathlib.Path(f"/proc/{self.program.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return total, int(fields[11]) + int(fields[12])

    def toast(self):
        self.session.write_settings({"onboardingShown": True})
        self.start_program()
        time.sleep(2)
        editor = self.session.start("mousepad")
        self.session.activate(self.session.wait_window(window_class="[Mm]ousepad"))
        self.session.type("copied")
        self.session.keys("ctrl+a")
        times = []
        for _ in range(ROUNDS):
            time.sleep(3)  # the toast before it goes
            times.append(self.probe("ctrl+c", 0.5)[0])
        self.tell("Control+C in an editor to the first of the toast painted", times, "ms")
        editor.stop()
        self.session.programs.remove(editor)
        self.stop_program()

    def reading(self):
        """As many screenshots at once as are told; the words of each mean an index built anew, so also over few clips."""
        self.read_screenshots()
        self.on_another(Figures(self.build, clips=FEW_CLIPS), "read_screenshots")

    def read_screenshots(self):
        folder, aside = self.session.folder / "screenshots", self.session.folder / "aside"
        for path in (folder, aside):
            path.mkdir()
        self.session.write_settings({"onboardingShown": True, "captureScreenshotFiles": True})
        (pathlib.Path(self.session.environment["XDG_CONFIG_HOME"]) / "brimquill" / "com.apple.screencapture.json").write_text(
            json.dumps({"location": str(folder)}))
        self.start_watched()
        time.sleep(2)
        picture = self.picture_of_words(aside)

        def save(names):
            for name in names:
                (aside / "copy").write_bytes(picture)
                (aside / "copy").rename(folder / f"Screenshot {name}.png")
        save(["first"])  # with it the toast is made and the helper started
        wait_for(lambda: self.read_count() == 1, 60, "the first to be read")
        time.sleep(2)
        start = time.monotonic()
        save(range(SCREENSHOTS))
        wait_for(lambda: self.read_count() == SCREENSHOTS + 1, 120, "all to be read")
        end = time.monotonic()
        turns = sorted(self.turns(start * 1000, end * 1000), key=lambda turn: turn[1])
        self.tell(f"longest turn of the main thread while {SCREENSHOTS} screenshots are read, {self.clips} clips", [turns[-1][1]], "ms",
                  f"of the processor {turns[-1][2]:.1f}; the tenth longest {turns[-10][1]:.1f}; all read after {end - start:.1f} s; "
                  f"the index built anew: {self.index_statement():.1f}")
        self.stop_program()

    def picture_of_words(self, folder):
        path = folder / "picture.png"
        self.session.run("convert", "-size", "1200x300", "xc:white", "-font", "DejaVu-Sans", "-pointsize", "22", "-annotate", "+20+56",
                         "marmalade sandwich\npeppermint teapot\ncinnamon biscuit\nhazelnut pancake", path)
        return path.read_bytes()

    def read_count(self):
        return self.session.query("SELECT COUNT(*) FROM clips WHERE source_app = 'Screenshot' AND text LIKE '%marmalade%'")[0][0]

    def index_statement(self):
        """Milliseconds of building the index of words anew, in a copy of the store."""
        path = self.session.database.with_name("copy.db")
        path.write_bytes(self.session.database.read_bytes())
        with sqlite3.connect(path, isolation_level=None) as database:
            times = []
            for _ in range(ROUNDS):
                start = time.perf_counter()
                database.execute("INSERT INTO clips_fts(clips_fts) VALUES ('rebuild')")
                times.append((time.perf_counter() - start) * 1000)
        return statistics.median(times)

    @staticmethod
    def tell(what, values, unit, beside=""):
        low, middle, high = min(values), statistics.median(values), max(values)
        spread = f" (min {low:.1f}, max {high:.1f}, {len(values)} runs)" if len(values) > 1 else ""
        print(f"{what}: {middle:.1f} {unit}{spread}{'; ' + beside if beside else ''}", flush=True)


def main():
    names = sys.argv[2:] or ["start", "memory", "capture", "burst", "palette", "paste", "explorer", "toast", "reading", "idle", "many", "strip"]
    figures = Figures(sys.argv[1])
    try:
        figures.fill()
        for name in names:
            getattr(figures, name)()
    finally:
        figures.session.stop()


if __name__ == "__main__":
    main()
