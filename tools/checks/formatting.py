"""Layout by .clang-format, and the shell scripts' grammar."""
import concurrent.futures
import os
import re
import shutil
import subprocess

from .tree import Finding

ERROR = re.compile(r"(.*?):(\d+):\d+: error: code should be clang-formatted")


def findings(tree):
    yield from layout(tree)
    yield from scripts(tree)


def layout(tree):
    if not shutil.which("clang-format"):
        yield Finding(".clang-format", 1, "clang-format is missing")
        return
    files = tree.files(("src/", "tests/", "tools/", "bench/", "fuzz/"), (".cpp", ".h"))
    count = os.cpu_count() or 1
    parts = [files[i::count] for i in range(count) if files[i::count]]
    with concurrent.futures.ThreadPoolExecutor(count) as pool:
        for output in pool.map(lambda part: dry_run(tree.top, part), parts):
            seen = set()
            for file, line in ERROR.findall(output):
                if file not in seen:
                    yield Finding(file, int(line), f"call clang-format -i {file}")
                seen.add(file)


def dry_run(top, files):
    command = ["clang-format", "--dry-run", "-Werror", "-style=file", *files]
    return subprocess.run(command, cwd=top, capture_output=True, text=True).stderr


def scripts(tree):
    for file in tree.files():
        if tree.text(file).startswith("#!/usr/bin/env bash"):
            result = subprocess.run(["bash", "-n", tree.path(file)], capture_output=True, text=True)
            if result.returncode:
                line = re.search(r"line (\d+)", result.stderr)
                yield Finding(file, int(line[1]) if line else 1, result.stderr.strip())
            if not os.access(tree.path(file), os.X_OK):
                yield Finding(file, 1, "a script that cannot be executed")
