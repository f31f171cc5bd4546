"""The files that the checks look at, read once."""

import concurrent.futures
import os
import re
import subprocess

INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]')


class Tree:
    """The tracked and the new files of a checkout. Paths are relative to its root, with slashes."""

    def __init__(self, root, changed_only):
        """With `changed_only` the slow checks take what differs from origin/main alone, where there is one."""
        self.root = root
        self.jobs = os.cpu_count() or 1
        self.files = self._existing(self.git("ls-files", "--cached", "--others", "--exclude-standard"))
        self.base = self.git("merge-base", "HEAD", "origin/main").strip()
        self.changed = set(self.files)
        if changed_only and self.base:
            self.changed = set(self._existing(self.git("diff", "--name-only", self.base)))
            self.changed |= set(self._existing(self.git("ls-files", "--others", "--exclude-standard")))
        self._texts = {}

    def git(self, *arguments):
        """What a git command prints; an empty string where git does not know the answer."""
        done = subprocess.run(["git", *arguments], cwd=self.root, capture_output=True, text=True)
        return done.stdout if done.returncode == 0 else ""

    def _existing(self, listing):
        return sorted(path for path in set(listing.splitlines()) if (self.root / path).is_file())

    def select(self, *suffixes, changed=False):
        """The files with one of the suffixes, of all or of the changed ones."""
        return [path for path in self.files if path.endswith(suffixes) and (not changed or path in self.changed)]

    def text(self, path):
        if path not in self._texts:
            self._texts[path] = (self.root / path).read_text(errors="replace")
        return self._texts[path]

    def includes(self, path):
        """The include lines of a source: (line number, name, whether it is in quotation marks)."""
        for number, line in enumerate(self.text(path).splitlines(), 1):
            found = INCLUDE.match(line)
            if found:
                yield number, found[2], found[1] == '"'

    def run_each(self, command, items):
        """Runs `command(item)` for each item, some at once; gives (item, status, output) of those that failed."""
        def run(item):
            done = subprocess.run(command(item), cwd=self.root, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, text=True, errors="replace")
            return item, done.returncode, done.stdout

        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            return [result for result in pool.map(run, items) if result[1] != 0]
