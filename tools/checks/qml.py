"""QML parses."""

import os


def run(tree):
    tool = next((tool for tool in ("/usr/lib/qt6/bin/qmllint", "/usr/bin/qmllint6") if os.access(tool, os.X_OK)), "qmllint")
    failed = tree.run_each(lambda path: [tool, path], tree.select(".qml", changed=True))
    return [f"{path}: {output.strip()}" for path, _, output in failed]
