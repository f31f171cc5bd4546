"""The project speaks of itself alone: no paths of a machine, no documents that are not part of it."""

import re

FORBIDDEN = re.compile(
    r"(?<![.>])\bspec\b|\bspec\.md\b|\bthe specification\b|\bPart \d|(?-i:/work/)|/tmp/brief|\bsub-?agents?\b|\bLLM\b"
    r"|\bthis (developer )?session's\b|\bthe brief\b|\bCo-Authored-By\b|\bGenerated with\b",
    re.IGNORECASE)
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
