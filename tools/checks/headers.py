"""Each header compiles by itself.

A header whose own source includes it first is proven by the build; the others are compiled alone.
"""

import subprocess

QT = ("Qt6Core", "Qt6Gui", "Qt6Qml", "Qt6Quick", "Qt6Network", "Qt6DBus", "Qt6Widgets", "Qt6Test")


def flags(modules):
    done = subprocess.run(["pkg-config", "--cflags", *modules], capture_output=True, text=True)
    return done.stdout.split() if done.returncode == 0 else []


def proven_by_build(tree, path):
    source = path[:-2] + ".cpp"
    return source in tree.files and next(tree.includes(source), (0, "", True))[1] == path


def run(tree):
    headers = [path for path in tree.select(".h", changed=True) if not proven_by_build(tree, path)]
    compile_alone = ["g++", "-std=c++20", "-fsyntax-only", "-fPIC", "-Wall", "-Wextra", "-Werror", "-DQT_NO_KEYWORDS",
                     "-DQT_NO_CAST_FROM_ASCII", "-I", ".", *flags(QT), *flags(["glib-2.0"]), "-x", "c++", "/dev/null"]
    failed = tree.run_each(lambda path: [*compile_alone, "-include", path], headers)
    findings = []
    for path, _, output in failed:
        error = next((line for line in output.splitlines() if "error:" in line), output.strip())
        findings.append(f"{path} does not compile by itself: {error}")
    return findings
