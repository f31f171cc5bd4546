"""Scripts parse: Python, shell and JSON."""

import json
import subprocess


def python_fault(text, path):
    try:
        compile(text, path, "exec")
    except SyntaxError as fault:
        return f"{path}:{fault.lineno}: {fault.msg}"
    return None


def shell_fault(text, path):
    done = subprocess.run(["bash", "-n"], input=text, capture_output=True, text=True)
    return f"{path}: {done.stderr.strip()}" if done.returncode else None


def json_fault(text, path):
    try:
        json.loads(text)
    except ValueError as fault:
        return f"{path}: {fault}"
    return None


def fault_of(tree, path):
    if path.endswith(".json"):
        return json_fault(tree.text(path), path) if "/data/" not in path else None
    first_line = tree.text(path).partition("\n")[0] if "." not in path.rpartition("/")[2][1:] else ""
    if path.endswith(".py") or first_line.startswith("#!") and "python" in first_line:
        return python_fault(tree.text(path), path)
    if path.endswith(".sh") or first_line.startswith("#!") and first_line.endswith("sh"):
        return shell_fault(tree.text(path), path)
    return None


def run(tree):
    return [fault for path in tree.files if (fault := fault_of(tree, path))]
