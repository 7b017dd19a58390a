#!/usr/bin/env python3
"""Scripts are compiled where no header of the engine, of the program or of the runtime's inside can be found. check_face.py ROOT BUILD"""
import json
import os
import re
import sys

SCRIPTS = ("toolkit/", "game/", "samples/")
PROGRAM_PARTS = ("game/autoplayer/",)
HIDDEN = ("engine", "apps", "runtime/values", "runtime/arrays_structs", "runtime/variables_calls", "runtime/instances_loop", "runtime/session")


def main():
    root, build = sys.argv[1:]
    seen, problems = set(), []
    for command in json.load(open(os.path.join(build, "compile_commands.json"), encoding="utf-8")):
        source = os.path.relpath(command["file"], root)
        if not source.startswith(SCRIPTS) or source.startswith(PROGRAM_PARTS):
            continue
        seen.add(source.split("/")[0])
        for folder in re.findall(r"-(?:I|isystem) ?(\S+)", command["command"]):
            problems += [f"{source}: {folder} holds {name}" for name in HIDDEN if os.path.exists(os.path.join(folder, name))]
    for line in problems:
        print(line)
    missing = [name for name in SCRIPTS if name.rstrip("/") not in seen]
    if missing:
        print("nothing is compiled of", *missing)
    return 1 if problems or missing else 0


if __name__ == "__main__":
    sys.exit(main())
