"""Every source is listed in the CMakeLists.txt of its folder or of one above it."""

import pathlib
import re


def run(tree):
    lists = {str(pathlib.PurePosixPath(path).parent): re.sub(r"#.*", "", tree.text(path))
             for path in tree.select("CMakeLists.txt")}
    findings = []
    for path in tree.select(".cpp", ".qml"):
        pure = pathlib.PurePosixPath(path)
        listed = any(re.search(rf"(?<![\w./-]){re.escape(str(pure.relative_to(folder)))}(?![\w.-])", lists[str(folder)])
                     for folder in pure.parents if str(folder) in lists)
        if not listed:
            findings.append(f"{path}: is in no CMakeLists.txt")
    return findings
