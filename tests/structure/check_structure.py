#!/usr/bin/env python3
"""Checks the shape of the source tree: includes point only downwards, no file is too long, headers are guarded."""
import os
import re
import sys

FLOORS = {"runtime": 1, "engine": 2, "toolkit": 3, "game": 4, "samples": 4, "apps": 5, "tools": 5, "bench": 6, "tests": 6}
GAMES = ("game", "samples")
SCRIPTS = ("toolkit",) + GAMES
# What stands with a game and belongs to its program: it sees what the program sees.
PROGRAM_PARTS = ("game/autoplayer/",)
# Inside runtime/ the folders that scripts are written on stand above the others, and the rows of the built-in functions above those.
RUNTIME_FLOORS = {"script": 1, "builtins": 2, "": 3}
LONGEST = 600


def sources(root):
    for floor in FLOORS:
        for folder, _, files in os.walk(os.path.join(root, floor)):
            for name in files:
                if name.endswith((".cpp", ".h")):
                    yield floor, os.path.join(folder, name)


def runtime_floor(floor, path):
    """Of a file under runtime/; whatever is outside may include all of them."""
    folders = path.split("/")[1:-1]
    return RUNTIME_FLOORS.get(folders[0] if folders else "", 0) if floor == "runtime" else max(RUNTIME_FLOORS.values())


def problems(root):
    for floor, path in sources(root):
        relative = os.path.relpath(path, root)
        lines = open(path, encoding="utf-8").read().splitlines()
        if len(lines) > LONGEST:
            yield f"{relative}: {len(lines)} lines, {LONGEST} are the most"
        if path.endswith(".h") and (not lines or lines[0] != "#pragma once"):
            yield f"{relative}: does not begin with #pragma once"
        for number, line in enumerate(lines, 1):
            found = re.match(r'#include "([a-z_]+)/', line)
            if not found or found.group(1) not in FLOORS:
                continue
            target = found.group(1)
            if floor in GAMES and relative.startswith(PROGRAM_PARTS):
                wrong = FLOORS[target] > FLOORS["apps"] or target in GAMES and not line[10:].startswith(PROGRAM_PARTS)
            else:
                upwards = FLOORS[target] > FLOORS[floor]
                past_the_face = floor in SCRIPTS and (target == "engine" or target == "runtime" and '"runtime/script' not in line)
                of_a_game = target in GAMES and target != floor and floor not in ("bench", "tests")
                wrong = upwards or past_the_face or of_a_game
                wrong = wrong or runtime_floor(target, line[10:-1]) > runtime_floor(floor, relative)
            if wrong:
                yield f"{relative}:{number}: {floor} may not include {line[10:-1]}"


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


def main():
    root = sys.argv[1]
    found = list(problems(root)) + list(circles(root))
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
