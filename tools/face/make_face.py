#!/usr/bin/env python3
"""make_face.py ROOT OUTPUT: the headers of runtime/script/ for those who write games, each with all that it includes of the runtime written
into it. In a folder that holds nothing else, an inner header of the runtime cannot be found at all."""
import os
import re
import sys

INCLUDE = re.compile(r'#include "(runtime/[^"]+)"')


def expanded(root, header, seen):
    seen.add(header)
    path, guard = os.path.join(root, header), "FACE_" + re.sub(r"\W", "_", header)
    yield f"#ifndef {guard}\n#define {guard}\n#line 1 \"{path}\"\n"
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            found = INCLUDE.match(line)
            if found and found.group(1) not in seen:
                yield from expanded(root, found.group(1), seen)
                yield f'#line {number + 1} "{path}"\n'
            else:
                yield "\n" if found or line.startswith("#pragma once") else line
    yield "#endif\n"


def main():
    root, output = sys.argv[1:]
    headers = ["runtime/script.h"] + ["runtime/script/" + name for name in os.listdir(os.path.join(root, "runtime/script")) if name.endswith(".h")]
    for header in headers:
        text = "".join(expanded(root, header, set()))
        path = os.path.join(output, header)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        if os.path.exists(path) and open(path, encoding="utf-8").read() == text:
            continue  # nothing needs to be compiled anew
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)


main()
