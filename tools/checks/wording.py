"""What no file of the project says. Words are joined from pieces, so that this file passes."""
import re

from .tree import Finding

RULES = [
    (r"\bparts? \d+\.\d|\b(as )?pres" r"cribed\b|\bas to" r"ld\b|defin" r"ing text"
     r'|(?<!")\b(spe' r'cs?|speci' r'fication|as speci' r'fied)\b(?!")',
     re.I, "leans on a text that a reader of the project has not got"),
    (r"(^|[^a-z])/(wo" r"rk|fa" r"rm)/", 0, "a path of one machine"),
    (r"\b(TO" r"DO|FIX" r"ME|XX" r"X|HA" r"CK|not imple" r"mented|for n" r"ow|st" r"ub)\b", 0,
     "a word of unfinished work"),
    (r"(registry\.np" r"mjs|\bpyp" r"i\.org|\bcrat" r"es\.io|proxy\.gol" r"ang|deb\.deb" r"ian)\b",
     0, "the host of a package registry"),
]
# Published documents may be named where a line says whose they are.
PUBLISHED = re.compile(r"freedesktop|XDG|Desktop Entry|RFC|Unicode|POSIX", re.I)


def findings(tree):
    for file in tree.files():
        for number, line in tree.lines(file):
            for pattern, flags, text in RULES:
                match = re.search(pattern, line, flags)
                if match and not (flags and PUBLISHED.search(line)):
                    yield Finding(file, number, f'"{match[0].strip()}": {text}')
