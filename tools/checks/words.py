"""The project speaks of itself alone: no paths of a machine, no documents that are not part of it."""

import re

FORBIDDEN = re.compile(r"(?<![.>])\bspe[c]\b|\bthe specificatio[n]\b|\bPart \d|(?-i:/wor[k]/)", re.IGNORECASE)
# Files that hold other people's words, or this list.
LEFT_OUT = re.compile(r"tools/checks/words\.py$|LICENSE$|.*\.(png|gif|jpg|ico|ttf|db)$|tests/.*/(data|fixtures)/")


def run(tree):
    findings = []
    for path in tree.files:
        if LEFT_OUT.match(path):
            continue
        if FORBIDDEN.search(path):
            findings.append(f"{path}: the name itself")
        findings += [f"{path}:{number}: {found[0]!r}"
                     for number, line in enumerate(tree.text(path).splitlines(), 1)
                     if (found := FORBIDDEN.search(line))]
    if tree.base:
        messages = tree.git("log", "--format=%h %B", f"{tree.base}..HEAD")
        findings += [f"commit message: {line}" for line in messages.splitlines() if FORBIDDEN.search(line)]
    return findings
