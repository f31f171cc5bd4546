"""A library is called in the one place that is made for it, and own headers are named in full from the root."""

import re

# (what is included, where alone it may be)
PLACES = (
    (r"sqlite3\.h$", r"BrimquillCore/ClipStore|tests/|benchmarks/"),
    (r"unicode/", r"BrimquillCore/|tests/core/|benchmarks/"),
    (r"nlohmann/", r"BrimquillCore/|Platform/(Desktop|Helpers)/|Brimquill/(Sharing|Settings)/|tests/|benchmarks/|fuzz/"),
    (r"(xcb|X11)/", r"Platform/X11/|tests/platform/|benchmarks/"),
    (r"archive(_entry)?\.h$", r"Platform/Desktop/|tests/"),
    (r"(tesseract|leptonica|atspi)/", r"Platform/Helpers/"),
    (r"ZXing/", r"Platform/(Desktop|Helpers)/"),
)


def run(tree):
    findings = []
    known = set(tree.files)
    for path in tree.select(".h", ".cpp"):
        for number, name, quoted in tree.includes(path):
            findings += [f"{path}:{number}: {name} belongs in {place}" for library, place in PLACES
                         if re.match(library, name) and not re.match(place, path)]
            if quoted and name not in known and not name.endswith(".moc"):
                findings.append(f'{path}:{number}: "{name}" is not a path from the root of the tree')
    return findings
