"""Who may include whom."""
import re

from .tree import Finding

# A folder may include util, itself, and what stands in an earlier line.
LEVELS = [
    {"platform", "screen"},
    {"datatypes", "fulldiskaccess", "animations"},
    {"index"},
    {"searchmodes"},
    {"shell/registry"},
    {"fileops", "actions"},
    {"modes/framework"},
    {"core/state"},
    {"modes"},
    {"core"},
    {"shell"},
    {"core/app"},
]
# These stand apart: nobody but main.cpp, the tools and the tests includes them.
APART = {
    "views": {"screen", "animations"},
    "platform/linux": {"platform", "screen"},
    "platform/simulated": {"platform", "screen"},
}
# Headers that only some folders may include; no folder: nobody.
RESERVED = [
    (r"Q[A-Za-z]*$|Qt[A-Za-z]*/|q[a-z]+\.h$", {"views", "platform/linux", "main.cpp"}, "Qt"),
    (r"gio/|glib|gtk/", {"platform/linux"}, "GLib"),
    (r"xcb/|X11/|xkbcommon/", {"platform/linux"}, "the X server"),
    (r"sys/(inotify|fanotify)\.h", {"platform/linux"}, "file events"),
    (r"filesystem$", set(), "a path is bytes: FileURL"),
    (r"(ranges|format|source_location)$", set(), "clang 14 cannot compile it"),
    (r"(iostream|regex)$", set(), "log.h and ICU stand for it"),
]
INCLUDE = re.compile(r'\s*#\s*include\s*([<"])([^>"]+)[>"]')


def allowed():
    """Folder -> the folders that it may include."""
    table, below = {"util": {"util"}}, {"util"}
    for level in LEVELS:
        table.update({folder: below | {folder} for folder in level})
        below = below | level
    table.update({folder: {"util", folder} | more for folder, more in APART.items()})
    return table


TABLE = allowed()


def folder_of(path):
    """The row of the table that a path below src belongs to, or None."""
    parts = path.split("/")[:-1]
    for length in range(len(parts), 0, -1):
        if "/".join(parts[:length]) in TABLE:
            return "/".join(parts[:length])
    return None


def findings(tree):
    known = set(tree.files(("src/",)))
    for file in tree.files(("src/",), (".h", ".cpp")):
        path = file.removeprefix("src/")
        own = path if path == "main.cpp" else folder_of(path)
        if own is None:
            yield Finding(file, 1, "its folder has no row in the table of layers")
            continue
        for number, line in tree.lines(file):
            match = INCLUDE.match(line)
            if not match:
                continue
            for text in trouble(own, match[1] == '"', match[2], known):
                yield Finding(file, number, text)


def trouble(own, quoted, name, known):
    for pattern, folders, reason in RESERVED:
        if re.match(pattern, name) and not quoted and own not in folders:
            yield f"{own} may not include <{name}> ({reason})"
    if not quoted or name.endswith(".moc"):
        return
    target = folder_of(name)
    if "src/" + name not in known:
        yield f'"{name}" is no file below src'
    elif target is None:
        yield f'the folder of "{name}" has no row in the table of layers'
    elif own != "main.cpp" and target not in TABLE[own]:
        yield f'{own} may not include "{name}": {target} is no layer below it'
