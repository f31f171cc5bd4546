"""clang-tidy, with the short list of .clang-tidy, over what a build has made known."""

import hashlib
import json
import re

FINDING = re.compile(r"^([^:\s]+:\d+):\d+: (?:warning|error): (.*)$", re.MULTILINE)


def build_folder(tree):
    built = [folder for folder in ("build/dev", "build/release") if (tree.root / folder / "compile_commands.json").exists()]
    return built[0] if built else None


def dependencies(tree, path, seen):
    """The own files that a source includes, itself among them."""
    if path not in seen:
        seen.add(path)
        for _, name, quoted in tree.includes(path):
            if quoted and name in tree.files:
                dependencies(tree, name, seen)
    return seen


def fingerprint(tree, path):
    digest = hashlib.sha256(tree.text(".clang-tidy").encode())
    for name in sorted(dependencies(tree, path, set())):
        digest.update(name.encode() + b"\0" + tree.text(name).encode())
    return digest.hexdigest()


def run(tree):
    folder = build_folder(tree)
    if folder is None:
        return ["no build to take the compiler's flags from: run tools/build dev first"]
    commands = json.loads((tree.root / folder / "compile_commands.json").read_text())
    known = {entry["file"].removeprefix(f"{tree.root}/") for entry in commands}
    # A source that was found clean stays so until it or something it includes changes.
    clean = tree.root / "build" / "tidy"
    clean.mkdir(parents=True, exist_ok=True)
    marks = {path: clean / fingerprint(tree, path) for path in tree.select(".cpp", changed=True) if path in known}
    to_do = [path for path, mark in marks.items() if not mark.exists()]

    failed = tree.run_each(lambda path: ["clang-tidy", "--quiet", "--extra-arg=-w", "-p", folder, path], to_do)
    failed_paths = {path for path, _, _ in failed}
    for path in to_do:
        if path not in failed_paths:
            marks[path].touch()
    return sorted({f"{place}: {words}" for path, _, output in failed
                   for place, words in FINDING.findall(output.replace(f"{tree.root}/", "")) or [(path, output.strip()[-300:])]})
