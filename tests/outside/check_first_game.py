#!/usr/bin/env python3
"""Takes the game out of docs/first-game.md, builds it beside a finished build as a stranger would, and plays it from outside: it moves,
shoots and scores. check_first_game.py ROOT BUILD"""
import json
import os
import re
import shutil
import subprocess
import sys

LONGEST = 120  # lines that a stranger writes


def files_of(page):
    return dict(re.findall(r"^`([^`\n]+)`\n\n```\w+\n(.*?)^```$", page, re.M | re.S))


def cached(build, name):
    found = re.search(rf"^{name}:\w+=(.*)$", open(os.path.join(build, "CMakeCache.txt"), encoding="utf-8").read(), re.M)
    return found.group(1) if found else ""


def run(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        sys.exit(" ".join(command) + "\n" + done.stdout[-4000:])


class Game:
    def __init__(self, program):
        self.process = subprocess.Popen([program, "--headless", "--console", "--seed", "1"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def ask(self, **request):
        self.process.stdin.write(json.dumps(request) + "\n")
        self.process.stdin.flush()
        reply = json.loads(self.process.stdout.readline())
        assert "error" not in reply and "errors" not in reply, (request, reply)
        return reply

    def value(self, statement):
        return self.ask(eval=statement)["value"]


def play(game):
    assert game.value("oShip.x") == 640
    game.ask(key=39, down=True)
    game.ask(step=30)
    game.ask(key=39, down=False)
    moved = game.value("oShip.x")
    assert 840 < moved < 860, f"half a second at 420 pixels/s, and the ship is at {moved}"
    game.ask(step=30)
    assert game.value("oShip.x") == moved, "the ship stands when no key is held"
    game.ask(key=32, down=True)
    game.ask(step=40)
    assert game.value("instance_number(oShot)") == 3, "a shot each quarter of a second"
    assert game.value("global.score") == 0
    game.value("oRock.x = oShip.x; oRock.y = 0")
    game.ask(step=120)
    assert game.value("global.score") >= 1, "the rock above the ship is hit"
    score = game.value("global.score")
    game.ask(draws=True)
    drawn = [call["args"][2] for call in game.ask(draws=True)["draws"] if call["call"] == "draw_text"]
    assert drawn == [f"Score {score}"], drawn
    told = [line for line in game.ask(log=True)["log"] if not line.startswith("WBC lookup")]
    assert told == [], told


def main():
    root, build = sys.argv[1:]
    files = files_of(open(os.path.join(root, "docs/first-game.md"), encoding="utf-8").read())
    lines = sum(text.count("\n") for text in files.values())
    assert lines <= LONGEST, f"{lines} lines of one's own, {LONGEST} were promised"
    folder = os.path.join(build, "first_game")
    shutil.rmtree(folder, ignore_errors=True)
    for name, text in files.items():
        path = os.path.join(folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
    settings = [f"-D{name}={cached(build, name)}" for name in ("CMAKE_CXX_COMPILER", "CMAKE_BUILD_TYPE", "CMAKE_COMPILE_WARNING_AS_ERROR")]
    run("cmake", "-S", folder, "-B", folder + "/build", "-G", "Ninja", f"-Darena_runtime_DIR={build}", *settings)
    run("cmake", "--build", folder + "/build")
    game = Game(folder + "/build/first")
    play(game)
    game.ask(quit=True)
    assert game.process.wait(10) == 0
    print(f"{len(files)} files, {lines} lines")


if __name__ == "__main__":
    main()
