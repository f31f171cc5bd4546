"""C++ is laid out as .clang-format says."""

import re

FINDING = re.compile(r"^(.*?:\d+):\d+: error: code should be clang-formatted", re.MULTILINE)


BATCH = 16


def batches(tree):
    sources = tree.select(".h", ".cpp", changed=True)
    return [sources[start:start + BATCH] for start in range(0, len(sources), BATCH)]


def run(tree):
    failed = tree.run_each(lambda paths: ["clang-format", "--dry-run", "--Werror", *paths], batches(tree))
    findings = []
    for paths, _, output in failed:
        places = FINDING.findall(output)
        findings += [f"{place}: tools/check --fix lays it out" for place in places] or [f"{paths}: {output.strip()}"]
    return findings


def fix(tree):
    tree.run_each(lambda paths: ["clang-format", "-i", *paths], batches(tree))
