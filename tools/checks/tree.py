"""The project's files, as the checks see them."""
import os
import shutil
import subprocess
from typing import NamedTuple

SKIPPED = {".git", ".cache", "build", "out", "__pycache__"}


class Finding(NamedTuple):
    path: str
    line: int
    text: str
    fails: bool = True


class Tree:
    """All files that belong to the project: committed or not, but not ignored."""

    def __init__(self, top):
        self.top = top
        self._files = sorted(f for f in self._listed() if os.path.isfile(self.path(f)))
        self._texts = {}

    def _listed(self):
        command = ["git", "-C", self.top, "ls-files", "-z", "--cached", "--others",
                   "--exclude-standard"]
        if os.path.exists(self.path(".git")) and shutil.which("git"):
            listed = subprocess.run(command, capture_output=True)
            if listed.returncode == 0:
                return set(os.fsdecode(listed.stdout).split("\0")) - {""}
        return self._walked()

    def _walked(self):
        for folder, folders, names in os.walk(self.top):
            folders[:] = [f for f in folders if f not in SKIPPED]
            for name in names:
                yield os.path.relpath(os.path.join(folder, name), self.top)

    def path(self, file):
        return os.path.join(self.top, file)

    def files(self, folders=("",), suffixes=("",)):
        """Files below one of the folders whose name ends in one of the suffixes."""
        return [f for f in self._files if f.startswith(folders) and f.endswith(suffixes)]

    def text(self, file):
        """The file's text; empty for what is no text."""
        if file not in self._texts:
            with open(self.path(file), "rb") as source:
                data = source.read()
            self._texts[file] = "" if b"\0" in data else data.decode("utf-8", "replace")
        return self._texts[file]

    def lines(self, file):
        """(number, line) pairs, counted from 1."""
        return enumerate(self.text(file).split("\n"), 1)
