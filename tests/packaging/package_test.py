#!/usr/bin/env python3
"""The Debian package: its texts, its files, and the program in it as a desktop starts it.

    tests/packaging/package_test.py CPACK_CONFIG HEADLESS

Ends with 0 if everything was as it should be.
"""
import glob
import gzip
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "e2e"))
from desktop import Failure, output, say, wait_for  # noqa: E402

ID = "com.orrinvale.Trovast"
TOOLS = ["cpack", "dpkg-deb", "dpkg-shlibdeps", "desktop-file-validate", "appstreamcli", "lintian",
         "gio", "gdbus", "gapplication", "update-desktop-database"]


def expect(what, holds):
    if not holds:
        raise Failure(what)


def run(*command, **options):
    result = subprocess.run(command, capture_output=True, text=True, timeout=30, **options)
    expect(f"{command[0]} ended with {result.returncode}:\n{result.stdout}{result.stderr}",
           result.returncode == 0)
    return result.stdout.strip()


def read(path):
    with (gzip.open if path.endswith(".gz") else open)(path, "rt") as file:
        return file.read()


def check_texts(package, root):
    share = f"{root}/usr/share"
    run("desktop-file-validate", f"{share}/applications/{ID}.desktop",
        f"{share}/trovast/autostart.desktop")
    run("appstreamcli", "validate", "--no-net", f"{share}/metainfo/{ID}.metainfo.xml")
    run("lintian", "--fail-on", "error,warning", package)
    metainfo = xml.etree.ElementTree.parse(f"{share}/metainfo/{ID}.metainfo.xml")
    versions = {
        "package": run("dpkg-deb", "-f", package, "Version"),
        "program": run(f"{root}/usr/bin/trovast", "--version").split()[-1],
        "changelog": re.search(r"\((.*?)\)", read(f"{share}/doc/trovast/changelog.gz"))[1],
        "manual": re.search(r'"Trovast (\S+)"', read(f"{share}/man/man1/trovast.1.gz"))[1],
        "metainfo": metainfo.find("releases/release").get("version"),
    }
    expect(f"one version everywhere: {versions}", len(set(versions.values())) == 1)
    manual = read(f"{share}/man/man1/trovast.1.gz").replace("\\-", "-")
    for option in re.findall(r"--[a-z]+", run(f"{root}/usr/bin/trovast", "--help")):
        expect(f"the manual explains {option}", option in manual)
    for icon in ("scalable/apps/" + ID, "symbolic/apps/" + ID + "-symbolic"):
        xml.etree.ElementTree.parse(f"{share}/icons/hicolor/{icon}.svg")


def check_removal(package, folder):
    """Installed and removed where nothing else is, it leaves nothing."""
    root = os.path.join(folder, "empty")
    os.makedirs(f"{root}/var/lib/dpkg/updates")
    os.makedirs(f"{root}/var/lib/dpkg/info")
    open(f"{root}/var/lib/dpkg/status", "w").close()
    dpkg = ("dpkg", f"--root={root}", "--force-depends", "--no-triggers")
    run(*dpkg, "--install", package)
    expect("it is installed", os.path.exists(f"{root}/usr/bin/trovast"))
    run(*dpkg, "--remove", "trovast")
    expect("nothing is left of it", not os.path.exists(f"{root}/usr"))
    expect("nor of its settings", "trovast" not in read(f"{root}/var/lib/dpkg/status"))


def check_start(root, headless, folder):
    """On a desktop that has found it as it finds what is installed."""
    share = f"{root}/usr/share"
    service = f"{share}/dbus-1/services/{ID}.service"
    unit = f"{root}/usr/lib/systemd/user/trovast.service"
    for file in (service, unit):
        expect(f"the program's path is in {file}", "/usr/bin/trovast --hidden\n" in read(file)
               and "@" not in read(file))
    text = read(service)
    with open(service, "w") as file:
        file.write(text.replace("=/usr", f"={root}/usr").replace("SystemdService=", "#"))
    run("update-desktop-database", f"{share}/applications")
    home = os.path.join(folder, "home")
    os.makedirs(f"{home}/Documents")
    os.makedirs(f"{home}/.config/trovast")
    with open(f"{home}/.config/trovast/settings.json", "w") as file:
        file.write('{"numberOfInvocations": 1, "showStatusMenu": false}')
    kept = {key: value for key, value in os.environ.items() if not key.startswith("XDG_")}
    environment = {**kept, "HOME": home, "PATH": f"{root}/usr/bin:" + os.environ["PATH"],
                   "XDG_DATA_DIRS": f"{share}:/usr/local/share:/usr/share",
                   "TROVAST_ROWS_TO": f"{folder}/rows"}
    result = subprocess.run([headless, sys.executable, __file__, "--inside"],
                            env=environment)
    expect("the program starts", result.returncode == 0)


# ---- On the desktop of its own

def call(destination, path, method, *arguments):
    return subprocess.run(["gdbus", "call", "--session", "-d", destination, "-o", path, "-m", method,
                           *arguments], capture_output=True, text=True)


def process():
    answer = call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.GetConnectionUnixProcessID", ID)
    found = re.search(r"uint32 (\d+)", answer.stdout)
    return found and found[1]


def is_visible():
    return process() and output("xdotool", "search", "--onlyvisible", "--pid", process())


def act(action):
    return call(ID, "/" + ID.replace(".", "/"), "org.freedesktop.Application.ActivateAction",
                action, "[]", "{}").returncode


def inside():
    run("dbus-update-activation-environment", "DISPLAY", "XAUTHORITY", "QT_QPA_PLATFORM")
    expect("not running yet", not process())
    run("gapplication", "launch", ID)
    wait_for("launched by the bus, it shows its window", is_visible)
    first = process()
    actions = run("gapplication", "list-actions", ID).split()
    expect(f"the desktop file has actions: {actions}", "browse" in actions)
    for action in actions:
        run("gapplication", "action", ID, action)
        run("trovast", "--action", action)
    run("trovast", "--action", "browse")
    rows = os.environ["TROVAST_ROWS_TO"]
    wait_for("the home folder is listed", lambda: read(rows).startswith("Documents\t"))
    expect("an action is there on the bus", act("search") == 0)
    expect("no other action is", act("quit") != 0)
    run("trovast")
    wait_for("a second start takes the window away", lambda: not is_visible())
    run("trovast", "--hidden")
    run("gio", "open", "trovast:search?query=a")
    wait_for("a link shows it", is_visible)
    expect("wrong words are refused",
           subprocess.run(["trovast", "--nonsense"], capture_output=True).returncode == 2)
    expect("it was one program all the time", process() == first)
    os.kill(int(first), 15)
    wait_for("it ends when asked to", lambda: not process())


def outside(cpack_config, headless):
    missing = [tool for tool in TOOLS if not shutil.which(tool)]
    if missing:
        say(f"package: {', '.join(missing)} is missing")
        return
    with tempfile.TemporaryDirectory(prefix="package-") as folder:
        run("cpack", "--config", cpack_config, "-G", "DEB", "-B", folder)
        package, = glob.glob(f"{folder}/*.deb")
        root = os.path.join(folder, "root")
        run("dpkg-deb", "-x", package, root)
        run("dpkg-deb", "-e", package, f"{folder}/control")
        expect("nothing is run at the installation",
               sorted(os.listdir(f"{folder}/control")) == ["control", "md5sums"])
        check_texts(package, root)
        if os.geteuid() == 0:
            check_removal(package, folder)
        check_start(root, headless, folder)


if __name__ == "__main__":
    try:
        inside() if sys.argv[1] == "--inside" else outside(*sys.argv[1:3])
    except Failure as failure:
        say(f"FAILED  {failure}")
        sys.exit(1)
