#!/usr/bin/env python3
"""The program as a user meets it, on a desktop of its own.

    tools/headless tests/e2e/end_to_end.py PROGRAM OTHER_PROGRAM FOLDER [SCENARIO...]

Pictures of the screen are left in FOLDER. Ends with 0 if everything was as it should be.
"""
import os
import subprocess
import sys
import tempfile
import time
import traceback

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop import (Failure, Other, Picture, Program, hold, output, press, say,  # noqa: E402
                     type_text, wait_for)

HOT_KEY = "ctrl+alt+space"


def expect(what, holds):
    if not holds:
        raise Failure(what)


class Scene:
    """One program and one other window, which both end with it."""

    def __init__(self, program, other, settings=None, **environment):
        self.other = Other(other, "window")
        wait_for("the other window has the keyboard", self.other.has_focus)
        self.program = Program(program, other, settings, **environment)

    def __enter__(self):
        return self

    def __exit__(self, kind, error, _):
        if error:
            say(self.program.log())
        self.program.end()
        self.other.end()

    def call_up(self):
        press(HOT_KEY)
        wait_for("the window is in front", self.program.is_in_front)

    def expect_gone(self):
        wait_for("the window is away", self.program.is_hidden)
        wait_for("the keyboard is back in the other window", self.other.has_focus)

    def search(self, text, name):
        type_text(text)
        wait_for(f"a row {name}", lambda: name in self.program.home.rows(), 20)

    def expect_other_gets(self, letter):
        before = self.other.typed()
        type_text(letter)
        wait_for("what is typed is in the other window",
                 lambda: self.other.typed() == before + letter)


def from_hot_key_to_opened_file(program, other, _):
    with Scene(program, other) as scene:
        scene.program.wait_for_hot_key()
        expect("no window before it is called", scene.program.is_hidden())
        scene.call_up()
        scene.search("report", "Annual report.pdf.txt")
        expect("the other window got none of it", scene.other.typed() == "")
        press("Return")
        opened = scene.program.home.opened
        wait_for("the file is opened", lambda: os.path.exists(opened))
        expect("it is opened by its path", open(opened).read() == os.path.join(
            scene.program.home.path, "Documents/Annual report.pdf.txt") + "\n")
        scene.expect_gone()
        scene.expect_other_gets("k")
        press(HOT_KEY, HOT_KEY, HOT_KEY)
        wait_for("after three presses it is in front", scene.program.is_in_front)
        expect("ended in order", scene.program.terminate() == 0)


def the_text_stays_and_escape_leaves(program, other, _):
    with Scene(program, other) as scene:
        scene.program.wait_for_hot_key()
        scene.call_up()
        scene.search("report", "Annual report.pdf.txt")
        place = output("xdotool", "getwindowgeometry", scene.program.window())
        press(HOT_KEY)
        scene.expect_gone()
        scene.call_up()
        expect("its rows are those of the same text",
               "Annual report.pdf.txt" in scene.program.home.rows())
        expect("it stands where it stood",
               output("xdotool", "getwindowgeometry", scene.program.window()) == place)
        press("Escape")
        wait_for("the first Escape empties the field", lambda: not scene.program.home.rows())
        expect("and leaves the window", scene.program.is_in_front())
        press("Escape")
        scene.expect_gone()
        scene.expect_other_gets("e")


def other_ways_in(program, other, _):
    with Scene(program, other) as scene:
        scene.program.wait_for_hot_key()
        expect("a second start ends well", scene.program.second_start() == 0)
        wait_for("a second start shows the window", scene.program.is_in_front)
        expect("a second start ends well", scene.program.second_start() == 0)
        scene.expect_gone()
        expect("an action is taken", scene.program.act("toggle") == 0)
        wait_for("the action shows the window", scene.program.is_in_front)
        expect("an action is taken", scene.program.act("toggle") == 0)
        scene.expect_gone()
        expect("an unknown action is refused", scene.program.act("quit") != 0)
        expect("it goes on", scene.program.alive() and scene.program.is_hidden())
        scene.call_up()
        expect("ended in order", scene.program.terminate() == 0)


def how_it_looks(program, other, folder):
    for scale in (1, 2):
        with Scene(program, other, QT_SCALE_FACTOR=str(scale)) as scene:
            scene.program.wait_for_hot_key()
            scene.call_up()
            scene.search("re", "Annual report.pdf.txt")
            path = os.path.join(folder, f"window-{scale}.png")
            try:  # the rows may still be on their way
                wait_for("it looks right",
                         lambda: not what_is_wrong(path, scene.program.window(), scale), 5)
            except Failure:
                raise Failure(f"at scale {scale} there is no " + ", no ".join(
                    what_is_wrong(path, scene.program.window(), scale))) from None


def what_is_wrong(path, window, scale):
    """The sheet should be there, as wide as it is, rounded, with rows in it."""
    picture = Picture(path)
    facts = dict(line.split("=") for line in
                 output("xdotool", "getwindowgeometry", "--shell", window).split("\n"))
    middle = int(facts["X"]) + int(facts["WIDTH"]) // 2
    # Above the middle of the field, right of the text, there is nothing but the ground.
    x, y = middle + 100 * scale, int(facts["Y"]) + 30 * scale
    ground = picture.at(x, y)
    up = picture.stretch(x, y, ground, 0, -1)
    left, right = (picture.stretch(x, y - up + 12 * scale, ground, dx, 0) for dx in (-1, 1))
    top = y - up
    corner, width = (x + right, top), (left + right) / scale
    holds = {
        "a sheet of one colour": 400 < width < 700,
        "a rounded corner": not picture.is_like(*corner, ground),
        "second row": picture.is_like(middle + 180 * scale, top + 117 * scale, ground),
        "pictures and texts in the rows": len(picture.colours(
            middle - 270 * scale, top + 94 * scale, middle, top + 138 * scale)) > 30,
    }
    return [name for name, is_so in holds.items() if not is_so]


def without_a_session_bus(program, other, _):
    with Scene(program, other, DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent") as scene:
        scene.program.wait_for_hot_key()
        scene.call_up()
        scene.search("boat", "repair of the boat.txt")
        press(HOT_KEY)
        scene.expect_gone()
        expect("ended in order", scene.program.terminate() == 0)


def with_the_hot_key_held_by_another(program, other, _):
    holder = Other(other, "hold")
    try:
        wait_for("the other program holds the key", lambda: holder.lines == ["held"])
        with Scene(program, other) as scene:
            text = "Another program holds Ctrl+Alt+Space"
            wait_for("the log says who has the key", lambda: text in scene.program.log())
            expect("the program still works", scene.program.act("toggle") == 0)
            wait_for("the window is in front", scene.program.is_in_front)
            expect("one line says it", scene.program.log().count(text) == 1)
            expect("ended in order", scene.program.terminate() == 0)
    finally:
        holder.end()


def without_a_window_manager(program, other, _):
    """On an X server of its own."""
    numbers = tempfile.TemporaryFile("w+")
    server = subprocess.Popen(["Xvfb", "-displayfd", str(numbers.fileno()), "-screen", "0",
                               "1280x800x24", "-nolisten", "tcp"],
                              pass_fds=[numbers.fileno()], stderr=subprocess.DEVNULL)
    usual = os.environ["DISPLAY"]

    def number():
        numbers.seek(0)
        return numbers.read().strip()

    try:
        os.environ["DISPLAY"] = ":" + wait_for("the X server answers", number)
        other_window = Other(other, "window")
        wait_for("the other window is there", lambda: other_window.lines)
        window = other_window.lines[0].split()[1]
        subprocess.run(["xdotool", "windowfocus", window], check=True)
        wait_for("the other window has the keyboard", other_window.has_focus)
        tested = Program(program, other)
        try:
            tested.wait_for_hot_key()
            press(HOT_KEY)
            wait_for("the window has the keyboard", tested.focus_is_ours)
            type_text("boat")
            wait_for("a row", lambda: "repair of the boat.txt" in tested.home.rows(), 20)
            press(HOT_KEY)
            wait_for("the window is away", tested.is_hidden)
            wait_for("the keyboard is back in the other window", other_window.has_focus)
            expect("ended in order", tested.terminate() == 0)
        finally:
            say(tested.log())
            tested.end()
            other_window.end()
    finally:
        os.environ["DISPLAY"] = usual
        server.terminate()
        server.wait()


def rename(home, keys, name, end="Return"):
    """The selected row gets another name, typed over the whole old one."""
    press(keys, "ctrl+a")
    if name:
        type_text(name)
    else:
        press("BackSpace")
    press(end)
    time.sleep(0.3)  # for the end of the editor, which nothing tells of


def browsing_renaming_and_marking(program, other, _):
    with Scene(program, other) as scene:
        home = scene.program.home
        for name in ("a.txt", "b.txt", "sub/inner.txt"):
            home.write("Work/" + name, name)
        home.write("shut/c.txt", "c")
        os.chmod(os.path.join(home.path, "shut"), 0o555)
        scene.program.wait_for_hot_key()
        scene.call_up()

        def rows(*names):
            wait_for(f"the rows {names}", lambda: home.rows() == list(names))

        press("Tab")
        wait_for("the home folder", lambda: "Work" in home.rows())
        type_text("work")
        rows("Work")
        press("ctrl+Down")
        rows("a.txt", "b.txt", "sub")
        press("Down")  # from the first row to b.txt
        for keys, name, what in (("F2", "a.txt", "an existing name"), ("F2", "", "an empty name"),
                                 ("alt+Return", "x/y", "a name with a slash"),
                                 ("F2", "b.txt", "the same name")):
            rename(home, keys, name)
            expect(what + " changes nothing", home.has("Work/a.txt", "Work/b.txt")
                   and not home.has("Work/x"))
            with open(os.path.join(home.path, "Work/a.txt")) as file:
                expect(what + " replaces nothing", file.read() == "a.txt")
        rename(home, "F2", "never.txt", "Escape")
        expect("Escape keeps the name", home.has("Work/b.txt"))
        rename(home, "F2", "new name.txt")
        rows("a.txt", "new name.txt", "sub")
        expect("the new name is on the disk", home.has("Work/new name.txt"))

        # A key that is held is one command, and no typing.
        hold(["alt", "m"], 0.9)
        wait_for("the renamed file is marked", lambda: list(home.setting("markedItems") or []) == [
            os.path.join(home.path, "Work/new name.txt")])
        rows("a.txt", "new name.txt", "sub")
        press("Up", "alt+m")
        press("ctrl+m")
        wait_for("both are marked", lambda: set(home.rows()) == {"a.txt", "new name.txt"})
        press("ctrl+b", "ctrl+r", "ctrl+b")
        rows("a.txt", "new name.txt", "sub")
        press("End", "ctrl+Down")
        rows("inner.txt")
        press("ctrl+Up")
        rows("a.txt", "new name.txt", "sub")
        press("Tab", "Tab")
        rows("a.txt", "new name.txt", "sub")
        if os.geteuid() != 0:
            press("ctrl+Up")
            rows("Work")  # with the text that was there
            press("Escape")
            type_text("shut")
            rows("shut")
            press("ctrl+Down")
            rows("c.txt")
            rename(home, "F2", "d.txt", "Return")  # which answers the alert instead
            expect("the file keeps its name", home.has("shut/c.txt"))
        press("ctrl+1")
        wait_for("the project's folder", lambda: "Work" in home.rows())
        expect("ended in order", scene.program.terminate() == 0)


def with_alt_and_super_swapped(program, other, _):
    settings = {"swapControlAndOption": True,  # so that this is Ctrl+Alt+Space
                "hotKey": {"keyCode": 49, "modifierFlags": 1048576 | 524288}}
    with Scene(program, other, settings) as scene:
        scene.program.wait_for_hot_key()
        scene.call_up()
        scene.search("report", "Annual report.pdf.txt")
        press("super+m")
        wait_for("Super is Control: it marks", lambda: scene.program.home.setting("markedItems"))
        press("alt+Return")  # Alt is Option: it copies
        scene.expect_gone()


def shadow_and_sheet(window):
    """How far the shadow reaches at the left and above, and the left edge, top and width within."""
    facts = dict(line.split("=") for line in
                 output("xdotool", "getwindowgeometry", "--shell", window).split("\n"))
    extents = output("xprop", "-id", window, "_GTK_FRAME_EXTENTS").partition("=")[2]
    left, right, top, _ = map(int, extents.split(","))
    return (left, top), (int(facts["X"]) + left, int(facts["Y"]) + top,
                         int(facts["WIDTH"]) - left - right)


def on_two_monitors(program, other, _):
    """The right half of the screen is the primary one; the left half is not as high."""
    for monitor in (("*right", "640/170x800/200+640+0", "screen"),
                    ("left", "640/170x600/150+0+0", "none")):
        subprocess.run(["xrandr", "--setmonitor", *monitor], check=True,
                       stdout=subprocess.DEVNULL)
    subprocess.run(["xdotool", "mousemove", "100", "100"], check=True)
    try:
        with Scene(program, other) as scene:
            tested = scene.program
            tested.wait_for_hot_key()
            scene.call_up()
            left, _, width = shadow_and_sheet(tested.window())[1]
            expect("it comes up where the pointer is", 0 <= left and left + width <= 640)

            def move(x, y):
                shadow = shadow_and_sheet(tested.window())[0]
                subprocess.run(["xdotool", "windowmove", tested.window(), str(x - shadow[0]),
                                str(y - shadow[1])], check=True)
                stands_at(x, y)

            def stands_at(x, y):
                wait_for(f"it stands at {x}, {y}",
                         lambda: shadow_and_sheet(tested.window())[1][:2] == (x, y))

            def place_on_the_right():
                return (tested.home.setting("searchPanelTopLeft") or {}).get("{640, 800}")

            move(641, 100)
            wait_for("its place is kept, counted from the primary one",
                     lambda: place_on_the_right() == "{1, 700}")
            move(1, 200)
            subprocess.run(["xrandr", "--delmonitor", "left"], check=True)
            stands_at(641, 100)
            shadow = shadow_and_sheet(tested.window())[0]
            subprocess.run(["xdotool", "windowmove", tested.window(), str(700 - shadow[0]),
                            str(150 - shadow[1])], check=True)  # as a window manager may
            scene.search("repo", "Annual report.pdf.txt")
            stands_at(641, 100)
            time.sleep(1.5)  # for what others would still move
            type_text("r")
            time.sleep(0.5)
            stands_at(641, 100)
            expect("its place is as the user left it", place_on_the_right() == "{1, 700}")
            expect("ended in order", tested.terminate() == 0)
    finally:
        for name in ("left", "right"):
            subprocess.run(["xrandr", "--delmonitor", name], capture_output=True)


SCENARIOS = [from_hot_key_to_opened_file, the_text_stays_and_escape_leaves, other_ways_in,
             how_it_looks, browsing_renaming_and_marking,
             with_alt_and_super_swapped, without_a_session_bus,
             with_the_hot_key_held_by_another, without_a_window_manager, on_two_monitors]


def main():
    program, other, folder = (os.path.abspath(argument) for argument in sys.argv[1:4])
    os.makedirs(folder, exist_ok=True)
    chosen = [s for s in SCENARIOS if not sys.argv[4:] or s.__name__ in sys.argv[4:]]
    failed = 0
    for scenario in chosen:
        try:
            scenario(program, other, folder)
            say(f"ok      {scenario.__name__}")
        except Exception as error:
            failed += 1
            say(f"FAILED  {scenario.__name__}: {error}")
            if not isinstance(error, Failure):
                traceback.print_exc()
    return 1 if failed or not chosen else 0


if __name__ == "__main__":
    sys.exit(main())
