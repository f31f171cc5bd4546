#!/usr/bin/python3
"""How well and how quickly pictures are read, by the recogniser itself.

    benchmarks/desktop/reading.py BUILD_DIRECTORY [FIGURE...]

BUILD_DIRECTORY holds bin/brimquill-recognizer. Figures: accuracy (word error rate over generated screenshots), speed (of a screenshot
of 1200x300 with six lines of text). The pictures are the same each time.
"""

import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

from PIL import Image, ImageDraw, ImageFont

FONTS = {"sans": "NotoSans-Regular.ttf", "serif": "NotoSerif-Regular.ttf", "mono": "DejaVuSansMono.ttf"}
SIZES = (12, 15, 22)
SCALES = (1, 2)
THEMES = {"dark on light": ("#202020", "#ffffff"), "light on dark": ("#d8dee9", "#1e222a"), "gray on gray": ("#707070", "#f0f0f0")}
LINES = (
    "The quick brown fox jumps over the lazy dog near the river bank.",
    "Invoice 20417 is due on 14 March 2025; the total is 1,286.40 euros.",
    "Please restart the server before noon and write to admin@example.com.",
    "Open the file menu, choose Preferences and then Keyboard Shortcuts.",
    "Error: connection refused by host 192.168.10.24 after 30 seconds.",
    "Meeting notes: Anna presents the budget, Peter the hiring plan.",
)
ROUNDS = 21
COLD_ROUNDS = 11


def picture(font, size, theme, scale):
    ink, paper = THEMES[theme]
    face = ImageFont.truetype(FONTS[font], size * scale)
    step = round(size * 1.6) * scale
    width = max(face.getbbox(line)[2] for line in LINES) + 40 * scale
    image = Image.new("RGB", (width, step * len(LINES) + 24 * scale), paper)
    draw = ImageDraw.Draw(image)
    for number, line in enumerate(LINES):
        draw.text((20 * scale, 12 * scale + number * step), line, ink, face)
    return image


def screenshot():
    """Six lines of 22, 15 and 12 pixels on 1200x300."""
    image = Image.new("RGB", (1200, 300), "white")
    draw = ImageDraw.Draw(image)
    for number, (line, size) in enumerate(zip(LINES, (22, 22, 15, 15, 12, 12))):
        draw.text((24, 20 + number * 44), line, "#202020", ImageFont.truetype(FONTS["sans"], size))
    return image


def distance(wanted, got):
    """The fewest words to insert, drop or replace."""
    row = list(range(len(got) + 1))
    for i, word in enumerate(wanted, 1):
        above, row[0] = row[0], i
        for j, other in enumerate(got, 1):
            above, row[j] = row[j], min(row[j] + 1, row[j - 1] + 1, above + (word != other))
    return row[-1]


class Recognizer:
    def __init__(self, build):
        self.process = subprocess.Popen([build / "bin" / "brimquill-recognizer"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        env={**os.environ, "OMP_THREAD_LIMIT": "1"})

    def read(self, path):
        self.process.stdin.write(json.dumps({"path": str(path), "low": True}).encode() + b"\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())["lines"]

    def end(self):
        self.process.stdin.close()
        self.process.wait()


def accuracy(build, folder):
    recognizer = Recognizer(build)
    wanted = " ".join(LINES).split()
    totals = {}
    path = folder / "picture.png"
    for font in FONTS:
        for size in SIZES:
            for theme in THEMES:
                for scale in SCALES:
                    picture(font, size, theme, scale).save(path)
                    lines = recognizer.read(path)
                    wrong = distance(wanted, " ".join(lines).split())
                    for group in ("all", font, f"{size} px", theme, f"{scale}x"):
                        errors, words = totals.get(group, (0, 0))
                        totals[group] = errors + wrong, words + len(wanted)
                    if wrong and "-v" in sys.argv:
                        print(font, size, theme, scale, wrong, [line for line in lines if line not in LINES])
    recognizer.end()
    print("word error rate: " + ", ".join(f"{group} {100 * errors / words:.1f} %" for group, (errors, words) in totals.items()))


def speed(build, folder):
    path = folder / "screenshot.png"
    screenshot().save(path)
    cold, warm = [], []
    for _ in range(COLD_ROUNDS):
        start = time.perf_counter()
        recognizer = Recognizer(build)
        recognizer.read(path)
        cold.append((time.perf_counter() - start) * 1000)
        recognizer.end()
    recognizer = Recognizer(build)
    recognizer.read(path)
    for _ in range(ROUNDS):
        start = time.perf_counter()
        recognizer.read(path)
        warm.append((time.perf_counter() - start) * 1000)
    recognizer.end()
    for what, times in (("not yet running", cold), ("running", warm)):
        print(f"a screenshot of 1200x300 read, recogniser {what}: {statistics.median(times):.0f} ms "
              f"(min {min(times):.0f}, max {max(times):.0f}, {len(times)} runs)")


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    names = [name for name in sys.argv[2:] if name != "-v"] or ["accuracy", "speed"]
    with tempfile.TemporaryDirectory(dir="/dev/shm") as folder:
        for name in names:
            {"accuracy": accuracy, "speed": speed}[name](build, pathlib.Path(folder))


if __name__ == "__main__":
    main()
