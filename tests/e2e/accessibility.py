#!/usr/bin/env python3
"""The program as a screen reader meets it: over the accessibility bus, without a look at the screen.

    tools/headless tests/e2e/accessibility.py PROGRAM OTHER_PROGRAM
"""
import re
import subprocess
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, __file__.rpartition("/")[0])
from desktop import Failure, Program, output, press, say, type_text, wait_for  # noqa: E402

ACCESSIBLE = "org.a11y.atspi.Accessible"
ROOT = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
REFERENCE = re.compile(r"\('([^']+)', (?:objectpath )?'([^']+)'\)")
SELECTED, CHECKED, FOCUSED = 23, 4, 12  # bits of a state
BUS = ["gdbus", "call", "--session", "-d", "org.a11y.Bus", "-o", "/org/a11y/bus", "-m",
       "org.a11y.Bus.GetAddress"]


def expect(what, holds):
    if not holds:
        raise Failure(what)


class Reader:
    """Asks what a reader asks."""

    def __init__(self):
        self.address = wait_for("the accessibility bus",
                                lambda: re.findall(r"'(.+)'", output(*BUS)))[0]

    def call(self, node, method, *arguments):
        return output("gdbus", "call", "--address", self.address, "-d", node[0], "-o", node[1],
                      "-m", method, *arguments)

    def children(self, node):
        return REFERENCE.findall(self.call(node, f"{ACCESSIBLE}.GetChildren"))

    def property(self, node, name):
        answer = self.call(node, "org.freedesktop.DBus.Properties.Get", ACCESSIBLE, name)
        found = re.match(r"""\(<(['"])(.*)\1>,\)$""", answer, re.S)
        return found.group(2) if found else ""

    def role(self, node):
        return re.findall(r"'(.*)'", self.call(node, f"{ACCESSIBLE}.GetRoleName"))[0]

    def has(self, node, state):
        numbers = re.findall(r"\d+", self.call(node, f"{ACCESSIBLE}.GetState").replace("uint32", ""))
        return bool(int(numbers[0]) >> state & 1)

    def tree(self, node):
        for child in self.children(node):
            yield child, self.role(child), self.property(child, "Name")
            yield from self.tree(child)


def read(reader, program):
    application = wait_for("the program is on the accessibility bus", lambda: [
        each for each in reader.children(ROOT) if reader.property(each, "Name") == "Trovast"])[0]
    type_text("rep")
    wait_for("rows", lambda: {"Annual report.pdf.txt", "Reply to Anna.txt"}
             <= set(program.home.rows()), 20)

    def part(role):
        return next((node for node, its, _ in reader.tree(application) if its == role), None)
    rows = wait_for("the rows", lambda: reader.children(part("list")))
    names = [reader.property(row, "Name") for row in rows]
    count = len(names)
    expect(f"each row has its file's name: {names}", names == program.home.rows())
    expect("a row says where its file is",
           "Documents" in "".join(reader.property(row, "Description") for row in rows))
    expect("the first row alone is selected",
           [reader.has(row, SELECTED) for row in rows] == [True] + [False] * (count - 1))

    nameless = [(role, node) for node, role, name in reader.tree(application)
                if not name and role not in ("filler", "unknown")]
    expect(f"everything has a name: {nameless}", not nameless)
    toggles = {name: node for node, role, name in reader.tree(application)
               if role in ("check box", "toggle button", "push button")}
    expect(f"the buttons are there: {list(toggles)}", len(toggles) >= 5)
    files = next(node for name, node in toggles.items() if name.startswith("Hide Files"))
    expect("a button says whether it is on", reader.has(files, CHECKED))

    field, status = part("text"), part("status bar")
    expect("the field has the keyboard", reader.has(field, FOCUSED))
    expect("the status bar says the count", f"[{count}/{count}]" in reader.property(status, "Name"))
    press("Down")
    wait_for("the field tells the row that was moved to",
             lambda: reader.property(field, "Description").endswith(f"2 of {count}")
             and reader.property(field, "Description").startswith(names[1]))
    wait_for("and what Return does to it, once that is known",
             lambda: "Return: Open with Notes" in reader.property(field, "Description"))
    expect("the second row is selected",
           reader.has(rows[1], SELECTED) and not reader.has(rows[0], SELECTED))
    type_text("qqqq")
    wait_for("the status bar says that there is nothing",
             lambda: "Nothing found" in reader.property(status, "Name"))
    press("Escape")
    return True


def main():
    program_path, other = sys.argv[1:3]
    subprocess.run(BUS, capture_output=True, check=True)
    program = Program(program_path, other, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    try:
        program.wait_for_hot_key()
        program.second_start()
        wait_for("the window is in front", program.is_in_front)
        read(Reader(), program)
    except Failure as failure:
        say(f"FAILED  {failure}")
        say(program.log())
        return 1
    finally:
        program.end()
    return 0


if __name__ == "__main__":
    sys.exit(main())
