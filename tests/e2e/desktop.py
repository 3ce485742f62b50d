"""A desktop for the tests of the whole program: a home folder, other programs, keys, pictures."""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import threading
import time

CTRL_ALT_SPACE = {"keyCode": 49, "modifierFlags": 1048576 | 262144}
FILES = ["Documents/Annual report.pdf.txt", "Documents/Letters/Reply to Anna.txt",
         "Pictures/Summer/lighthouse.txt", "Pictures/Summer/repair of the boat.txt", "music.txt"]


class Failure(Exception):
    """What the program did not do."""


def wait_for(what, holds, seconds=10.0):
    """Asks until holds() is true, and answers with what it said."""
    end = time.monotonic() + seconds
    while True:
        answer = holds()
        if answer:
            return answer
        if time.monotonic() > end:
            raise Failure(f"not within {seconds:g} s: {what}")
        time.sleep(0.01)


def output(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, **options).stdout.strip()


def press(*keys):
    subprocess.run(["xdotool", "key", "--delay", "20", *keys], check=True)


def hold(keys, seconds):
    """Down for a while: the keyboard repeats them."""
    for action in ("keydown", "keyup"):
        for key in keys if action == "keydown" else reversed(keys):
            subprocess.run(["xdotool", action, key], check=True)
        if action == "keydown":
            time.sleep(seconds)


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "25", "--", text], check=True)


class Other:
    """The other program, and the lines that it prints."""

    def __init__(self, path, *arguments):
        self.lines = []
        self.process = subprocess.Popen([path, *arguments], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self.process.stdout:
            self.lines.append(line.strip())

    def has_focus(self):
        return [line for line in self.lines if line.startswith("focus")][-1:] == ["focus 1"]

    def typed(self):
        return "".join(line[6:] for line in self.lines if line.startswith("typed "))

    def end(self):
        self.process.kill()
        self.process.wait()


class Home:
    """A home folder with files, settings, and one application for text."""

    def __init__(self, settings):
        self.path = tempfile.mkdtemp(prefix="home-")
        for name in FILES:
            self.write(name, "text\n")
        self.opened = os.path.join(self.path, ".opened")
        script = self.write(".bin/open", f'#!/bin/sh\nprintf "%s\\n" "$@" > "{self.opened}.new"\n'
                                         f'mv "{self.opened}.new" "{self.opened}"\n')
        os.chmod(script, 0o700)
        self.write(".local/share/applications/notes.desktop",
                   "[Desktop Entry]\nType=Application\nName=Notes\nMimeType=text/plain;\n"
                   f"Exec={script} %f\n")
        self.write(".config/mimeapps.list", "[Default Applications]\ntext/plain=notes.desktop\n")
        self.write(".config/trovast/settings.json", json.dumps(settings))
        self.settings_file = os.path.join(self.path, ".config/trovast/settings.json")
        self.rows_file = os.path.join(self.path, ".rows")

    def write(self, name, text):
        path = os.path.join(self.path, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w") as file:
            file.write(text)
        return path

    def rows(self):
        try:
            with open(self.rows_file) as file:
                return [line.split("\t")[0] for line in file.read().splitlines()]
        except FileNotFoundError:
            return []

    def has(self, *names):
        return all(os.path.lexists(os.path.join(self.path, name)) for name in names)

    def setting(self, key):
        try:
            with open(self.settings_file) as file:
                return json.load(file).get(key)
        except (FileNotFoundError, ValueError):
            return None

    def remove(self):
        shutil.rmtree(self.path, ignore_errors=True)


class Program:
    """The program under test, in a home folder of its own."""

    def __init__(self, path, other, settings=None, **environment):
        self.path, self.other = path, other
        self.home = Home({"hotKey": CTRL_ALT_SPACE, "numberOfInvocations": 3,
                          "showStatusMenu": False, **(settings or {})})
        kept = {key: value for key, value in os.environ.items() if not key.startswith("XDG_")}
        kept["XDG_RUNTIME_DIR"] = os.environ["XDG_RUNTIME_DIR"]
        self.environment = {**kept, "HOME": self.home.path, "TROVAST_ROWS_TO": self.home.rows_file,
                            "TROVAST_HIDDEN": "1",
                            **environment}
        self.errors = open(os.path.join(self.home.path, ".errors"), "w+")
        self.begun = time.monotonic()
        self.process = subprocess.Popen([path], env=self.environment, stdout=self.errors,
                                        stderr=self.errors)

    def wait_for_hot_key(self):
        wait_for("the program has its hot key", lambda: self.alive() and self.hot_key_is_held())

    def hot_key_is_held(self):
        return subprocess.run([self.other, "is-held"]).returncode == 0

    def alive(self):
        if self.process.poll() is not None:
            raise Failure(f"the program has ended with {self.process.returncode}")
        return True

    def window(self):
        """Of those that are seen, the id of the one named as the program."""
        found = output("xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid))
        return found.split("\n")[-1]

    def is_in_front(self):
        active = output("xdotool", "getactivewindow", "getwindowpid")
        return bool(self.window()) and active == str(self.process.pid)

    def focus_is_ours(self):
        """Without a window manager nobody names an active window."""
        return output("xdotool", "getwindowfocus", "getwindowpid") == str(self.process.pid)

    def is_hidden(self):
        return not self.window()

    def second_start(self):
        return subprocess.run([self.path], env=self.environment, timeout=20,
                              capture_output=True).returncode

    def act(self, action):
        return subprocess.run(
            ["gdbus", "call", "--session", "-d", "com.orrinvale.Trovast", "-o",
             "/com/orrinvale/Trovast", "-m", "org.freedesktop.Application.ActivateAction", action,
             "[]", "{}"], capture_output=True).returncode

    def log(self):
        """Errors and warnings; they stand in the log file and, the same, on standard error."""
        with open(self.errors.name, errors="replace") as file:
            return file.read()

    def terminate(self):
        """Asks it to end; answers with its status."""
        self.process.terminate()
        try:
            return self.process.wait(10)
        except subprocess.TimeoutExpired:
            return "none: it goes on"

    def end(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.errors.close()
        self.home.remove()


class Picture:
    """The screen, pixel by pixel."""

    def __init__(self, path):
        subprocess.run(["import", "-silent", "-window", "root", path], check=True)
        size = output("identify", "-format", "%w %h", path)
        self.width, self.height = map(int, size.split())
        self.data = subprocess.run(["convert", path, "-depth", "8", "rgb:-"], check=True,
                                   capture_output=True).stdout

    def at(self, x, y):
        begin = (y * self.width + x) * 3
        return self.data[begin:begin + 3]

    def is_like(self, x, y, colour):
        return sum(abs(a - b) for a, b in zip(self.at(x, y), colour)) <= 6

    def stretch(self, x, y, colour, dx, dy):
        """How far the colour reaches from a place."""
        length = 0
        while (0 <= x + dx < self.width and 0 <= y + dy < self.height
               and self.is_like(x + dx, y + dy, colour)):
            x, y, length = x + dx, y + dy, length + 1
        return length

    def colours(self, left, top, right, bottom):
        return {self.at(x, y) for y in range(top, bottom, 2) for x in range(left, right, 2)}


def say(text):
    print(text, file=sys.stderr, flush=True)
