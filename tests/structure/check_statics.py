#!/usr/bin/env python3
"""No variable with static storage changes after start-up: lists the writable symbols of the object files and holds them against a
short list, each with its reason. What is declared const (names, compiled functions, tables, kinds of parts) is filled before the first
session begins and needs none."""
import os
import re
import subprocess
import sys

TARGETS = ("runtime", "engine", "toolkit", "program", "arena_scripts", "arena_about", "samples_scripts", "samples_about")

ALLOWED = {
    # The program: chains and tables that static construction and the start-up lookup fill.
    "arena::(anonymous namespace)::first_chain": "chain of registered objects",
    "arena::(anonymous namespace)::first_function": "chain of registered objects",
    "arena::(anonymous namespace)::first_kind": "chain of registered objects",
    "arena::(anonymous namespace)::first_name": "chain of registered objects",
    "arena::(anonymous namespace)::first_static_method": "chain of registered objects",
    "arena::(anonymous namespace)::first_table": "chain of registered objects",
    "arena::(anonymous namespace)::first_tool": "chain of registered objects",
    "arena::(anonymous namespace)::scripts": "function table, ordered by the start-up lookup",
    "arena::(anonymous namespace)::handlers": "function table, ordered by the start-up lookup",
    "arena::(anonymous namespace)::builtins": "function table, ordered by the start-up lookup",
    "arena::(anonymous namespace)::static_methods": "function table, ordered by the start-up lookup",
    "arena::(anonymous namespace)::names_of_code": "names, complete after the start-up lookup",
    "arena::detail::code_names": "names, complete after the start-up lookup",
    "arena::(anonymous namespace)::table()::variables": "built-in variables, registered by static construction",
    "arena::(anonymous namespace)::describe_event": "set once by static construction",
    "arena::(anonymous namespace)::first": "chain of registered objects",
    "game::(anonymous namespace)::first": "chain of the samples on the menu",
    # The process.
    "arena::(anonymous namespace)::mutex": "guards the log, into which sessions and workers may speak at once",
    "arena::(anonymous namespace)::sink": "where the process writes its log",
    "arena::(anonymous namespace)::sink_repeats": "where the process writes its log",
    "arena::platform::(anonymous namespace)::request": "a signal asks the process to end",
    "arena::detail::current_session": "which session this thread runs",
    "arena::WorkerLock::mutexes": "locks guard whatever session is at work",
    "arena::WorkerLock::registered_workers": "workers are threads of the process",
}
# Reports of native crashes describe the process and must not touch a session that may be damaged.
ALLOWED_FILES = {"engine/platform/crash_reports.cpp": "a native crash is the process's",
                 "engine/platform/crash_folder.cpp": "a native crash is the process's"}

STORAGE = re.compile(r"^[0-9a-f]{16} [bBdDuV] (.*)$")
FOREIGN = re.compile(r"^(std::|nlohmann::|typeinfo|vtable|VTT|guard variable|DW\.ref|__|testing::|\.)")
# Objects that the script macros make; all of them are const.
BY_MACRO = re.compile(r"^(registered|static)_\w+$")
MACRO_USES = re.compile(r"\b(?:STATIC_)?METHOD\(\w+, (\w+), (\w+)|\b(?:SCRIPT|NUMBER_SCRIPT|CONSTRUCTOR|GLOBAL_SCRIPT|BUILTIN|BUILTIN_NAMED)\((\w+)")


def declared_constants(text):
    names = set()
    for statement in re.finditer(r"(?m)^\s*(?:(?:inline|static|extern|constinit)\s+)*const(?:expr)?\b([^;]*;)", text):
        names.update(re.findall(r"\b([A-Za-z_]\w*)\s*(?=[{\[=;,(])", statement.group(1)))
    for owner, method, script in MACRO_USES.findall(text):
        names.add(script or f"{owner}_{method}")
    return names


def plain_name(symbol):
    name = re.sub(r"\[abi:\w+\]", "", symbol.replace("(anonymous namespace)", "anonymous"))
    name = re.sub(r"<.*>", "", re.sub(r"\(.*\)( const)?", "", name))
    return name.split("::")[-1].strip()


def main():
    root, build = sys.argv[1], sys.argv[2]
    headers = set()
    for folder in ("runtime", "engine", "toolkit", "game", "samples", "apps"):
        for where, _, names in os.walk(os.path.join(root, folder)):
            for name in names:
                if name.endswith(".h"):
                    headers |= declared_constants(open(os.path.join(where, name), encoding="utf-8").read())
    for where, _, names in os.walk(os.path.join(build, "generated")):
        for name in names:
            if name == "assets.h":
                headers |= declared_constants(open(os.path.join(where, name), encoding="utf-8").read())

    problems, met, files = {}, set(), 0
    for target in TARGETS:
        objects = os.path.join(build, "CMakeFiles", target + ".dir")
        for where, _, names in os.walk(objects):
            for name in names:
                if not name.endswith(".o"):
                    continue
                path = os.path.join(where, name)
                source = os.path.relpath(path, objects)[: -len(".o")]
                if source in ALLOWED_FILES or not os.path.exists(os.path.join(root, source)):
                    continue
                files += 1
                constants = declared_constants(open(os.path.join(root, source), encoding="utf-8").read()) | headers
                listing = subprocess.run(["nm", "-C", path], capture_output=True, text=True, check=True).stdout
                for line in listing.splitlines():
                    found = STORAGE.match(line)
                    if not found or FOREIGN.match(found.group(1)):
                        continue
                    symbol = found.group(1)
                    met.add(symbol)
                    name_alone = plain_name(symbol)
                    if symbol in ALLOWED or name_alone in constants or BY_MACRO.match(name_alone):
                        continue
                    problems.setdefault(symbol, source)
    if files == 0:
        print("no object files were found")
        return 1
    for symbol, source in sorted(problems.items()):
        print(f"{source}: '{symbol}' may change after start-up; make it a part of the session")
    stale = sorted(set(ALLOWED) - met)
    for symbol in stale:
        print(f"'{symbol}' is excused but does not exist")
    return 1 if problems or stale else 0


if __name__ == "__main__":
    sys.exit(main())
