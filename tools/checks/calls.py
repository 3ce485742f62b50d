"""Calls that have one place, or none."""
import re

from .tree import Finding

THREADS = ("src/util/queues/", "src/views/", "src/platform/linux/")
# What, where it is allowed, why it is not elsewhere.
RESERVED = [
    (r"std::(jthread|async)\b|std::thread\b(?!::(id|hardware_concurrency))|\bpthread_create\b",
     THREADS, "threads come from util/queues"),
    (r"\bQThread(Pool)?\b|\bQtConcurrent\b", THREADS, "threads come from util/queues"),
    (r"std::filesystem\b", (), "a path is bytes: FileURL"),
    (r"std::(views|ranges::views)::|std::source_location\b|std::format\b", (),
     "clang 14 cannot compile it"),
    (r"(?<![\w.>:])(system|popen|tmpnam|mktemp|gets|strtok)\s*\(", (),
     "unsafe: it goes through a shell, a guessed name or a hidden state"),
]
# Texts and comments are no calls.
NO_CODE = re.compile(r'"(\\.|[^"\\])*"|//.*')


def findings(tree):
    for file in tree.files(("src/",), (".h", ".cpp")):
        for number, line in tree.lines(file):
            code = NO_CODE.sub("", line)
            for pattern, places, reason in RESERVED:
                match = re.search(pattern, code)
                if match and not file.startswith(places or "\0"):
                    yield Finding(file, number, f"{match[0].rstrip(' (')}: {reason}")
