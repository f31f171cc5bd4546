"""Each check of the tree finds what it is there for, and nothing in what is right."""

import importlib
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))

from checks.tree import Tree  # noqa: E402  (found by the line above)

LAYOUT = pathlib.Path(__file__).resolve().parents[2] / ".clang-format"

# (check, path, content, whether the check finds something)
CASES = (
    ("floors", "BrimquillCore/A.h", '#include "Platform/Types.h"\n', True),
    ("floors", "BrimquillCore/A.h", "#include <QString>\n", True),
    ("floors", "BrimquillCore/A.h", '#include "BrimquillCore/B.h"\n#include <string>\n', False),
    ("floors", "Platform/A.h", "#include <QtCore/QObject>\n", True),
    ("floors", "Platform/A.h", "#  include <xcb/xcb.h>\n", True),
    ("floors", "Platform/A.h", '#include "BrimquillCore/B.h"\n', False),
    ("floors", "Platform/Desktop/A.cpp", "#include <X11/Xlib.h>\n", True),
    ("floors", "Platform/X11/A.cpp", "#include <xcb/xcb.h>\n", False),
    ("floors", "Platform/Factory.cpp", '#include "Platform/X11/A.h"\n', False),
    ("floors", "Brimquill/Paste/A.cpp", '#include "Platform/X11/A.h"\n', True),
    ("floors", "Brimquill/Paste/A.cpp", '#include "Platform/Pasteboard.h"\n#include <QObject>\n', False),
    ("libraries", "Brimquill/A.cpp", "#include <sqlite3.h>\n", True),
    ("libraries", "BrimquillCore/ClipStoreWrites.cpp", "#include <sqlite3.h>\n", False),
    ("libraries", "Brimquill/A.cpp", "#include <unicode/brkiter.h>\n", True),
    ("libraries", "Brimquill/A.cpp", '#include "A.h"\n', True),
    ("libraries", "Brimquill/A.cpp", '#include "Brimquill/A.cpp"\n', False),
    ("sources", "Brimquill/Lost.cpp", "", True),
    ("sources", "Brimquill/Commented.cpp", "", True),
    ("sources", "Brimquill/Views/Listed.qml", "", False),
    ("words", "docs/a.md", "as " + "Part " + "4.1 has it\n", True),
    ("words", "docs/a.md", "a part of the whole, inspected\n", False),
    ("scripts", "tools/a.py", "def broken(:\n", True),
    ("scripts", "tools/a", "#!/bin/bash\nif then\n", True),
    ("scripts", "tools/a", "#!/usr/bin/env python3\nprint('fine')\n", False),
    ("scripts", "a.json", "{", True),
    ("formatting", "Brimquill/A.cpp", "int  a;\n", True),
    ("formatting", "Brimquill/A.cpp", "int a;\n", False),
    ("headers", "BrimquillCore/A.h", "#pragma once\nstd::string a();\n", True),
    ("headers", "BrimquillCore/A.h", "#pragma once\n#include <string>\nstd::string a();\n", False),
)
LISTS = "add_library(x\n  A.cpp\n  # Commented.cpp\n  Views/Listed.qml\n)\n"


class Checks(unittest.TestCase):
    def findings(self, check, path, content):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            subprocess.run(["git", "init", "-q", root], check=True)
            for name, text in (("Brimquill/CMakeLists.txt", LISTS), (".clang-format", LAYOUT.read_text()), (path, content)):
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(text)
            return importlib.import_module(f"checks.{check}").run(Tree(root, changed_only=False))

    def test_what_each_check_finds(self):
        for check, path, content, expected in CASES:
            with self.subTest(check=check, path=path, content=content):
                findings = self.findings(check, path, content)
                self.assertEqual(expected, any(path in finding for finding in findings), findings)

    def test_a_header_that_its_source_includes_first_is_left_to_the_build(self):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            subprocess.run(["git", "init", "-q", root], check=True)
            (root / "A.h").write_text("not C++\n")
            for first, expected in (('#include "A.h"\n', 0), ('#include <string>\n#include "A.h"\n', 1)):
                (root / "A.cpp").write_text(first)
                self.assertEqual(expected, len(importlib.import_module("checks.headers").run(Tree(root, False))))


if __name__ == "__main__":
    unittest.main()
