#!/usr/bin/env python3
"""Feeds scenario files to the line console and compares its replies.

usage: run_scenarios.py CONSOLE FILE.jsonl...

A scenario is a list of lines, each one of
  {"note": text}
  {"make": {"folders": [...], "files": [...], "links": {name: target}, "remove": [...]}}
                                     changes the scenario's temporary folder, in this order
  {"send": request, "expect": reply} or, for what is no proper request, {"raw": text, "expect": …}
  {"type": text, "keys": [[code, flags], [code, flags, consumed], [code, flags, consumed, characters]],
   "commands": [identifier...], "requests": [...], "state": reply}
                                     each of them may be missing: what is typed, keys and commands,
                                     one after another, each to its end; what they asked of the
                                     desktop, and what is to be seen then
Each console has HOME below the temporary folder, whose path stands for $TMP in every text.

What is expected is a part of the reply: of an object the keys that are given, of a list every
element. "$length" beside an object's keys, or alone for a list or text, is the number of its elements.
Numbers with a decimal point are compared to 1e-10, all else exactly.
"""
import contextlib
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time


def difference(expected, actual, where="reply"):
    """What differs first, in words, or None."""
    if isinstance(expected, dict) and "$length" in expected:
        expected = dict(expected)
        length = expected.pop("$length")
        if not isinstance(actual, (list, dict, str)) or len(actual) != length:
            return f"{where}: expected {length} elements, got {actual!r}"
        if not expected:
            return None
    if isinstance(expected, dict):
        if not isinstance(actual, dict):
            return f"{where}: expected an object, got {actual!r}"
        for key, value in expected.items():
            if key not in actual:
                return f"{where}.{key} is missing"
            found = difference(value, actual[key], f"{where}.{key}")
            if found:
                return found
        return None
    if isinstance(expected, list):
        if not isinstance(actual, list) or len(actual) != len(expected):
            return f"{where}: expected {expected!r}, got {actual!r}"
        found = (difference(e, a, f"{where}[{i}]") for i, (e, a) in enumerate(zip(expected, actual)))
        return next((each for each in found if each), None)
    if isinstance(expected, float):
        same = isinstance(actual, (int, float)) and abs(expected - actual) <= 1e-10
    else:
        same = expected == actual and type(expected) is type(actual)
    return None if same else f"{where}: expected {expected!r}, got {actual!r}"


def replaced(value, folder):
    if isinstance(value, str):
        return value.replace("$TMP", folder)
    if isinstance(value, list):
        return [replaced(each, folder) for each in value]
    if isinstance(value, dict):
        return {replaced(key, folder): replaced(each, folder) for key, each in value.items()}
    return value


def make(changes, folder):
    def inside(name):
        return os.fsencode(os.path.join(folder, name))

    for name in changes.get("folders", []):
        os.makedirs(inside(name), exist_ok=True)
    for name in changes.get("files", []):
        os.makedirs(os.path.dirname(inside(name)), exist_ok=True)
        with open(inside(name), "wb") as file:
            file.write(b"12345")
    for name, target in changes.get("links", {}).items():
        os.symlink(os.fsencode(target), inside(name))
    for name in changes.get("remove", []):
        path = inside(name)
        if os.path.isdir(path) and not os.path.islink(path):
            shutil.rmtree(path)
        else:
            os.remove(path)


class Console:
    def __init__(self, program, folder):
        environment = dict(os.environ, HOME=os.path.join(folder, "home"), TZ="UTC", LC_ALL="C.UTF-8")
        self.process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        env=environment)

    def ask(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def close(self):
        self.process.stdin.close()
        return self.process.wait(timeout=60)


@contextlib.contextmanager
def temporary_folder():
    """Of digits alone: a scenario that searches for letters must not find it."""
    folder = os.path.join(os.path.realpath(tempfile.gettempdir()), f"{os.getpid()}{time.time_ns()}")
    os.mkdir(folder)
    try:
        yield folder
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def exchanges(line):
    """Each request of a line as it is sent, with what is expected of the reply."""
    settled = (json.dumps({"op": "app.settle"}), {"settled": True})
    desktop = json.dumps({"op": "app.desktop"})
    if "expect" in line:
        yield line["raw"] if "raw" in line else json.dumps(line["send"]), line["expect"]
    if "requests" in line:
        yield desktop, {"ok": True}
    if "type" in line:
        yield json.dumps({"op": "app.type", "text": line["type"]}), {"ok": True}
        yield settled
    for code, flags, *more in line.get("keys", []):
        request = {"op": "app.key", "keyCode": code, "flags": flags, "characters": "".join(more[1:])}
        yield json.dumps(request), {"consumed": more[0] if more else True}
        yield settled
    for identifier in line.get("commands", []):
        yield json.dumps({"op": "app.shortcut", "identifier": identifier}), {"consumed": True}
        yield settled
    if "requests" in line:
        yield desktop, {"requests": line["requests"]}
    if "state" in line:
        yield json.dumps({"op": "app.state"}), line["state"]


def run(program, file):
    """The number of expectations that were not met."""
    failed = 0
    with temporary_folder() as folder, open(file, encoding="utf-8") as lines:
        console = Console(program, folder)
        for number, text in enumerate(lines, 1):
            if not text.strip():
                continue
            line = replaced(json.loads(text), folder)
            if "make" in line:
                make(line["make"], folder)
            for request, expected in exchanges(line):
                found = difference(expected, console.ask(request))
                if found:
                    failed += 1
                    print(f"{file}:{number}: {found}".encode("ascii", "backslashreplace").decode())
        status = console.close()
        if status != 0:
            failed += 1
            print(f"{file}: the console ended with status {status}")
    return failed


if __name__ == "__main__":
    sys.exit(1 if sum(run(sys.argv[1], each) for each in sys.argv[2:]) else 0)
