"""C++ is laid out as .clang-format says."""

import re

FINDING = re.compile(r"^(.*?:\d+):\d+: error: code should be clang-formatted", re.MULTILINE)


def sources(tree):
    return tree.select(".h", ".cpp")


def run(tree):
    failed = tree.run_each(lambda path: ["clang-format", "--dry-run", "--Werror", path], sources(tree))
    findings = []
    for path, _, output in failed:
        places = FINDING.findall(output)
        findings.append(f"{places[0]}: {len(places)} places; tools/check --fix mends them" if places
                        else f"{path}: {output.strip()}")
    return findings


def fix(tree):
    tree.run_each(lambda path: ["clang-format", "-i", path], sources(tree))
