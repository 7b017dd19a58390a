#!/usr/bin/env python3
"""Checks the shape of the source tree: includes point only downwards, no file is too long, headers are guarded.

    tests/structure/check_structure.py ROOT          what is wrong
    tests/structure/check_structure.py ROOT --draw   the floors with their folders, and who sees whom
"""
import os
import re
import sys
from collections import defaultdict

# From the ground up. The folders of one line see nothing of each other, only what stands below; "." is the floor's own folder.
HOUSE = [
    ("runtime", ["checks calendar", "memory", "session", "program", "reports", "values", "arrays_structs", "variables_calls", "input", "instances_loop",
                 "script", "builtins", "."]),
    ("engine", ["formats gpu audio licence", "files", "data buffers machine gpu/gl33 gpu/d3d11 gpu/recorder audio/openal files/silent",
                "draw platform documents", "host", "recording console"]),
    ("toolkit", [".", "support ui/layout", "ui", "viewer"]),
    ("game", [".", "support decals", "combat", "loot", "enemies player", "flow"]),
    ("samples", ["."]),
    ("apps", [".", "verifier"]),
    ("tools", ["sources", "index pack"]),
    ("bench", ["."]),
    ("tests", None),  # whatever stands there sees everything
]
GAMES = ("game", "samples")
BESIDE = {"samples": "game", "tools": "apps", "tests": "bench"}  # as high as that one
SCRIPTS = ("toolkit",) + GAMES
# What stands with a game and belongs to its program: it sees what the program sees.
PROGRAM_PARTS = ("game/autoplayer",)
LONGEST = 600  # lines

FLOORS = {}
for place, (name, _) in enumerate(HOUSE):
    FLOORS[name] = FLOORS[BESIDE[name]] if name in BESIDE else place
LEVELS = {name: {folder: level for level, line in enumerate(lines) for folder in line.split()} for name, lines in HOUSE if lines}


def sources(root):
    for floor, _ in HOUSE:
        for folder, _, files in os.walk(os.path.join(root, floor)):
            for name in sorted(files):
                if name.endswith((".cpp", ".h")):
                    yield floor, os.path.join(folder, name)


def folder_of(path):
    return os.path.relpath(os.path.dirname(path), path.split("/")[0])


def includes_of(lines):
    for number, line in enumerate(lines, 1):
        found = re.match(r'#include "([a-z_0-9]+)/([^"]*)"', line)
        if found and found.group(1) in FLOORS:
            yield number, found.group(1), found.group(1) + "/" + found.group(2)


def is_allowed(floor, relative, target, included):
    if relative.startswith(PROGRAM_PARTS):
        return FLOORS[target] <= FLOORS["apps"] and (target not in GAMES or included.startswith(PROGRAM_PARTS))
    if FLOORS[target] > FLOORS[floor] or target in GAMES and target != floor and floor not in ("bench", "tests"):
        return False
    if floor in SCRIPTS and (target == "engine" or target == "runtime" and not included.startswith("runtime/script")):
        return False
    if target != floor or folder_of(included) == folder_of(relative) or floor not in LEVELS:
        return True
    return LEVELS[floor].get(folder_of(included), 99) < LEVELS[floor].get(folder_of(relative), -1)


def problems(root):
    for floor, path in sources(root):
        relative = os.path.relpath(path, root)
        lines = open(path, encoding="utf-8").read().splitlines()
        if len(lines) > LONGEST:
            yield f"{relative}: {len(lines)} lines, {LONGEST} are the most"
        if path.endswith(".h") and (not lines or lines[0] != "#pragma once"):
            yield f"{relative}: does not begin with #pragma once"
        if floor in LEVELS and folder_of(relative) not in LEVELS[floor] and not relative.startswith(PROGRAM_PARTS):
            yield f"{relative}: its folder has no place in the order of {floor}/"
        own, first = relative[:-len(".cpp")] + ".h", next(includes_of(lines), (0, "", ""))[2]
        if path.endswith(".cpp") and first != own and os.path.exists(os.path.join(root, own)):
            yield f"{relative}: does not include {own} first, which proves that it compiles alone"
        for number, target, included in includes_of(lines):
            if not is_allowed(floor, relative, target, included):
                yield f"{relative}:{number}: may not include {included}"


def circles(root):
    includes = {}
    for _, path in sources(root):
        text = open(path, encoding="utf-8").read()
        includes[os.path.relpath(path, root)] = [f for f in re.findall(r'#include "([^"]+)"', text)]
    state = {}

    def visit(name, trail):
        if state.get(name) == "done" or name not in includes:
            return None
        if name in trail:
            return trail[trail.index(name):] + [name]
        for target in includes[name]:
            found = visit(target, trail + [name])
            if found:
                return found
        state[name] = "done"
        return None

    for name in list(includes):
        found = visit(name, [])
        if found:
            yield "includes go in a circle: " + " > ".join(found)
            return


def draw(root):
    """The floors from the top down; behind each folder what it includes, and how often."""
    seen = defaultdict(lambda: defaultdict(int))
    for floor, path in sources(root):
        relative = os.path.relpath(path, root)
        own = floor + "/" + folder_of(relative)
        for _, target, included in includes_of(open(path, encoding="utf-8").read().splitlines()):
            to = target + "/" + folder_of(included) if target == floor else target
            if to != own:
                seen[own][to] += 1
    for floor, lines in reversed(HOUSE):
        if lines is None:
            continue
        print(floor + "/")
        for line in reversed(lines):
            for folder in line.split():
                targets = sorted(seen[floor + "/" + folder].items())
                shown = ", ".join(f"{to.removeprefix(floor + '/')} {count}" for to, count in targets)
                print(f"    {folder:16} {'-> ' + shown if shown else ''}".rstrip())


def main():
    root = sys.argv[1]
    if "--draw" in sys.argv:
        draw(root)
    found = list(problems(root)) + list(circles(root))
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
