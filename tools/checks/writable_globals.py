"""Writable objects that live as long as the process: none but those of globals-allowed.txt.

Read from the object files: what stands in .data or .bss and is not of a thread. A constant that is
computed at start is among them; constexpr or a function's result stands for it.
"""
import fnmatch
import glob
import os
import re
import subprocess

from .tree import Finding

ALLOWED = "tools/checks/globals-allowed.txt"
WRITABLE = re.compile(r"\.(data|bss)(?!\.rel\.ro)\b")
MADE_BY_COMPILER = ("DW.ref.", "guard variable for ", "typeinfo ", "vtable ")


def findings(tree, build):
    objects = {}
    for path in glob.glob(os.path.join(build, "src", "**", "*.cpp.o"), recursive=True):
        source = re.sub(r"CMakeFiles/[^/]+\.dir/", "", os.path.relpath(path, build))[:-len(".o")]
        if os.path.isfile(tree.path(source)):
            objects[path] = source
    if not objects:
        yield Finding("CMakeLists.txt", 1, f"no object files in {build}")
        return
    allowed, used = read_allowed(tree), set()
    for source, name in writable(objects):
        row = next((row for row in allowed
                    if row[0] == source and fnmatch.fnmatchcase(name, row[1])), None)
        used.add(row)
        if row is None:
            yield Finding(source, line_of(tree, source, name), f"writable global: {name}")
    for row in allowed:
        if row not in used and row[0] in objects.values():
            yield Finding(ALLOWED, row[2], f"{row[0]} has no writable global {row[1]}")


def read_allowed(tree):
    """(source file, pattern of the name, line) rows."""
    rows = []
    for number, line in tree.lines(ALLOWED):
        words = line.partition("#")[0].split(None, 1)
        if words:
            rows.append((words[0], words[1].strip(), number))
    return rows


def writable(objects):
    command = ["nm", "--demangle", "--format=sysv", "--defined-only", *objects]
    output = subprocess.run(command, capture_output=True, text=True, check=True).stdout
    source = None
    for line in output.splitlines():
        if line.startswith("Symbols from "):
            source = objects[line.removeprefix("Symbols from ").rstrip(":")]
            continue
        cells = line.rsplit("|", 6)
        if len(cells) != 7 or cells[3].strip() != "OBJECT" or not WRITABLE.match(cells[6]):
            continue
        name = short(cells[0].strip())
        if not name.startswith(MADE_BY_COMPILER):
            yield source, name


def short(name):
    """Without what stands in brackets: template arguments, parameters."""
    while (less := re.sub(r"<[^<>]*>|\((?!anonymous)[^()]*\)(\s*const\b)?", "", name)) != name:
        name = less
    return name


def line_of(tree, source, name):
    word = re.search(r"(\w+)(\[abi:\w+\])?$", name)
    for number, line in tree.lines(source):
        if word and re.search(rf"\b{word[1]}\b", line):
            return number
    return 1
