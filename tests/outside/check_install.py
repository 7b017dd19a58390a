#!/usr/bin/env python3
"""Installs a build into an empty folder and runs what lies there, without the build in sight. check_install.py BUILD VERSION"""
import json
import os
import re
import shutil
import subprocess
import sys

EXPECTED = {"bin/arena", "share/arena/arena.dat", "share/applications/arena.desktop", "share/icons/hicolor/scalable/apps/arena.svg",
            "share/doc/arena/README.txt"}


def main():
    build, version = sys.argv[1:]
    prefix = os.path.join(build, "installed")
    shutil.rmtree(prefix, ignore_errors=True)
    subprocess.run(["cmake", "--install", build, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
    found = {os.path.relpath(os.path.join(where, name), prefix) for where, _, names in os.walk(prefix) for name in names}
    assert EXPECTED <= found, f"missing: {sorted(EXPECTED - found)}"
    others = {name for name in found - EXPECTED if not name.startswith("share/doc/arena/licences/")}
    assert not others, f"not expected: {sorted(others)}"
    assert len(found) > len(EXPECTED), "no licences"

    with open(os.path.join(prefix, "share/applications/arena.desktop"), encoding="utf-8") as file:
        entry = file.read().splitlines()
    lines = ["[Desktop Entry]", "Type=Application", "Name=Arena", "Comment=A top-down arena shooter", "Exec=arena", "Icon=arena"]
    assert entry[:1] == lines[:1] and set(lines) <= set(entry), entry

    # Elsewhere, and under another user's name, so that nothing but the installation is met.
    moved = os.path.join(build, "installed elsewhere é")
    shutil.rmtree(moved, ignore_errors=True)
    os.rename(prefix, moved)
    program, home = os.path.join(moved, "bin/arena"), os.path.join(moved, "home")
    os.makedirs(home)
    environment = {"HOME": home, "PATH": "/usr/bin:/bin"}

    def run(*arguments, told=""):
        return subprocess.run([program, *arguments], cwd="/", env=environment, input=told, check=True, capture_output=True, text=True).stdout

    assert re.fullmatch(rf"arena {re.escape(version)} \(edition [\w-]+, features .+\)\n", run("--version"))
    run("--headless", "--demo", "--frames", "120")
    reply = json.loads(run("--headless", "--console", told='{"step": 3}\n'))
    assert reply == {"frame": 3, "room": "rPrepare", "ended": False}, reply
    assert os.path.exists(os.path.join(home, ".local/share/arena/arena.log"))
    os.remove(os.path.join(moved, "share/arena/arena.dat"))
    broken = subprocess.run([program, "--headless", "--frames", "1"], cwd="/", env=environment, capture_output=True, text=True)
    assert broken.returncode == 1 and broken.stderr.count("\n") == 1, broken
    shutil.rmtree(moved)


if __name__ == "__main__":
    main()
