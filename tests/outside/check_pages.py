#!/usr/bin/env python3
"""Builds what the pages of docs/ show as one game beside a finished build, as a stranger would, and runs each example headless: what it
logs must be what the page says. check_pages.py ROOT BUILD [PAGE ...]

A page names its files as docs/first-game.md does: a line with the path in backquotes, an empty line, a fenced block. Scripts of different
pages have names of their own; JSON files of the same path are merged. Besides files a page may have

  `log of rFiles`          the lines that the example logs when the game begins in that room: this makes it an example that is run
  `requests to rFiles`     what the console is asked meanwhile, a JSON object a line; {"step": 60} where the page has none

A line of a log may hold ... where the page leaves something out."""
import json
import os
import re
import shutil
import subprocess
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from check_first_game import cached, files_of, run  # noqa: E402

A_GAME_OF_ITS_OWN = "first-game.md"
OBJECTS = {"oSteadyDeltaTime": {"persistent": True, "events": ["Create_0", "Step_1"]}}


def merged(base, more, where):
    for key, value in more.items():
        if key in base and isinstance(base[key], dict) and isinstance(value, dict):
            merged(base[key], value, where + "/" + key)
        elif key in base and base[key] != value:
            sys.exit(f"{where}: two pages have another '{key}'")
        else:
            base[key] = value
    return base


class Pages:
    def __init__(self, root, wanted):
        self.files, self.logs, self.requests, self.page_of = {}, {}, {}, {}
        for name in sorted(os.listdir(os.path.join(root, "docs"))):
            if not name.endswith(".md") or name == A_GAME_OF_ITS_OWN or (wanted and name not in wanted):
                continue
            for title, text in files_of(open(os.path.join(root, "docs", name), encoding="utf-8").read()).items():
                self.add(name, title, text)

    def add(self, page, title, text):
        for kind, into in (("log of ", self.logs), ("requests to ", self.requests)):
            if title.startswith(kind):
                into[title.removeprefix(kind)] = text.splitlines()
                self.page_of[title.removeprefix(kind)] = page
                return
        if title.endswith(".json") and title in self.files:
            text = json.dumps(merged(json.loads(self.files[title]), json.loads(text), title))
        elif title in self.files:
            sys.exit(f"docs/{page}: another page has a {title}, too")
        self.files[title] = text

    def write(self, folder):
        base = {"assets/rooms/rooms.json": {"first": next(iter(self.logs)), "starters": ["oSteadyDeltaTime"]}, "assets/objects.json": OBJECTS}
        for title, content in base.items():
            self.files[title] = json.dumps(merged(content, json.loads(self.files.get(title, "{}")), title))
        self.files["CMakeLists.txt"] = ("cmake_minimum_required(VERSION 3.25)\nproject(pages)\nfind_package(arena_runtime REQUIRED)\n"
                                        "add_game(pages SCRIPTS scripts ASSETS assets)\n")
        for title, text in self.files.items():
            path = os.path.join(folder, title)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)


def fits(expected, line):
    return re.fullmatch(".*".join(re.escape(part) for part in expected.split("...")), line) is not None


def problems_of(program, room, requests, expected):
    asked = [line for line in requests if line] or ['{"step": 60}']
    done = subprocess.run([program, "--headless", "--console", "--seed", "1", "--room", room], text=True, capture_output=True, timeout=120,
                          input="\n".join(asked + ['{"log": true}', '{"quit": true}']) + "\n")
    replies = [json.loads(line) for line in done.stdout.splitlines()]
    if len(replies) != len(asked) + 2:
        return [f"ended early: {done.stdout[-500:]}{done.stderr[-2000:]}"]
    found = [f"{asked[i]}: {reply}" for i, reply in enumerate(replies[:len(asked)]) if "error" in reply or "errors" in reply]
    logged = [line for entry in replies[-2]["log"] if not entry.startswith("WBC lookup") for line in entry.split("\n")]
    if len(logged) != len(expected) or not all(map(fits, expected, logged)):
        found.append("the page says\n    " + "\n    ".join(expected) + "\n  and the example logs\n    " + "\n    ".join(logged))
    return found


def main():
    root, build, *wanted = sys.argv[1:]
    pages = Pages(root, wanted)
    if not pages.logs:
        sys.exit("no page has an example")
    folder = os.path.join(build, "pages")
    shutil.rmtree(os.path.join(folder, "scripts"), ignore_errors=True)
    shutil.rmtree(os.path.join(folder, "assets"), ignore_errors=True)
    pages.write(folder)
    settings = [f"-D{name}={cached(build, name)}" for name in ("CMAKE_CXX_COMPILER", "CMAKE_BUILD_TYPE", "CMAKE_COMPILE_WARNING_AS_ERROR")]
    run("cmake", "-S", folder, "-B", folder + "/build", "-G", "Ninja", f"-Darena_runtime_DIR={build}", *settings)
    run("cmake", "--build", folder + "/build")
    failed = 0
    for room, expected in pages.logs.items():
        for problem in problems_of(folder + "/build/pages", room, pages.requests.get(room, []), expected):
            print(f"docs/{pages.page_of[room]}, {room}: {problem}")
            failed += 1
    print(f"{len(pages.logs)} examples, {failed} problems")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
