"""Sizes of the files, the opening of headers, and that nothing is left out of the build."""
import re

from .tree import Finding

CODE = ("src/", "tests/", "tools/", "bench/", "fuzz/")
CPP_LINES_WARN, CPP_LINES, HEADER_LINES = 400, 700, 300


def findings(tree):
    yield from sizes(tree)
    yield from openings(tree)
    yield from left_out(tree)
    yield from kept(tree)


def sizes(tree):
    for file in tree.files(CODE, (".cpp", ".h", ".py")):
        length = tree.text(file).count("\n")
        limit = HEADER_LINES if file.endswith(".h") else CPP_LINES
        if length > limit:
            yield Finding(file, limit, f"{length} lines, more than {limit}: it holds two things")
        elif length > CPP_LINES_WARN:
            yield Finding(file, CPP_LINES_WARN, f"{length} lines, aim at less", fails=False)


def openings(tree):
    for file in tree.files(("src/", "tools/"), (".h",)):
        lines = [line for _, line in tree.lines(file)]
        if "#pragma once" not in lines:
            yield Finding(file, 1, "no #pragma once")
        if not any(line.lstrip().startswith("//") for line in lines):
            yield Finding(file, 1, "no comment says what this is")


def left_out(tree):
    """A source file is named in the CMakeLists.txt nearest to it."""
    lists = {file.removesuffix("CMakeLists.txt") for file in tree.files(("",), ("CMakeLists.txt",))}
    for file in tree.files(CODE, (".cpp",)):
        folder = file
        while folder not in lists:
            folder = folder.rstrip("/").rpartition("/")[0]
            folder += "/" if folder else ""
        name = file.removeprefix(folder)
        if not re.search(rf"(?<![\w/]){re.escape(name)}\b", tree.text(folder + "CMakeLists.txt")):
            yield Finding(file, 1, f"not named in {folder}CMakeLists.txt: it is not built")


def kept(tree):
    """Where behaviour that looks wrong is marked as wanted, a test holds it."""
    held = {file.split("/")[1] for file in tree.files(("tests/",)) if "Keeps" in tree.text(file)}
    for file in tree.files(("src/",), (".cpp", ".h")):
        if file.split("/")[1] not in held:
            for number, line in tree.lines(file):
                if "// Kept:" in line:
                    yield Finding(file, number, "no test named Keeps... for this folder")
