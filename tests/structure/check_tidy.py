#!/usr/bin/env python3
"""check_tidy.py ROOT: scripts/tidy reads what changed, and fails on what it finds there. Tried in a small repository with the list of
checks of this one."""
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(sys.argv[1])
CMAKE = """cmake_minimum_required(VERSION 3.25)
project(small LANGUAGES CXX)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
include_directories(${CMAKE_SOURCE_DIR})
file(GLOB SOURCES CONFIGURE_DEPENDS runtime/*.cpp)
add_library(small OBJECT ${SOURCES})
foreach(GENERATED data_schema script_face arena_header samples_header)
  add_custom_target(${GENERATED})
endforeach()
"""
HEADER = "#pragma once\n\ninline int %s(int number) { return number + 1; }\n"
SOURCE = '#include "runtime/shared.h"\n\nint %s(int number) { return shared(number); }\n'
wrong = []


def run(folder, *words):
    return subprocess.run(words, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)


def commit(folder):
    run(folder, "git", "add", "-A")
    run(folder, "git", "-c", "user.name=n", "-c", "user.email=e", "commit", "-qm", "a commit")


def expect(what, good, seen):
    if not good:
        wrong.append(f"{what}:\n{seen}")


def expect_list(what, folder, files):
    listed = run(folder, "scripts/tidy", "--list")
    if files:
        expect(what, listed.returncode == 0 and sorted(listed.stdout.split()) == sorted(f"runtime/{name}" for name in files), listed.stdout)
    else:
        expect(what, listed.returncode == 0 and listed.stdout.startswith("nothing to read changed"), listed.stdout)


def check_lists(repository, clone):
    runtime = repository / "runtime"
    expect_list("a repository of one commit", repository, [])
    (runtime / "shared.h").write_text(HEADER % "shared" + "// changed\n")
    with_header = ["shared.h", "one.cpp", "two.cpp"]
    expect_list("a changed header, with those that include it", repository, with_header)
    (runtime / "new.cpp").write_text("int fresh() { return 1; }\n")
    (runtime / "notes.txt").write_text("no source\n")
    expect_list("a file that git does not know yet", repository, [*with_header, "new.cpp"])
    commit(repository)
    expect_list("without an upstream, the last commit", repository, [*with_header, "new.cpp"])
    run(repository, "git", "clone", "-q", str(repository), str(clone))
    expect_list("a fresh clone", clone, [])
    for name in ("one", "two"):
        (clone / f"runtime/{name}.cpp").write_text(SOURCE % name + "// changed\n")
        commit(clone)
    (clone / "runtime/apart.cpp").unlink()
    expect_list("all commits since the upstream, and nothing that is gone", clone, ["one.cpp", "two.cpp"])


def check_findings(folder):
    (folder / "runtime/shared.h").write_text(HEADER.replace("number + 1", "number > 1 == true ? 1 : 0") % "shared")
    faulty = run(folder, "scripts/tidy")
    expect("a finding in a header that two files include is printed once, and fails",
           faulty.returncode == 1 and faulty.stdout.count("runtime/shared.h:3:") == 1 and "1 findings" in faulty.stdout, faulty.stdout)
    (folder / "runtime/shared.h").write_text(HEADER % "shared")
    mended = run(folder, "scripts/tidy")
    expect("once mended it passes", mended.returncode == 0 and "2 files, 0 of them known" in mended.stdout, mended.stdout)
    (folder / "runtime/two.cpp").write_text(SOURCE % "two" + "// again\n")
    again = run(folder, "scripts/tidy")
    expect("what was clean is not read again", again.returncode == 0 and "2 files, 1 of them known" in again.stdout, again.stdout)
    (folder / "runtime/two.cpp").write_text("int broken(")
    broken = run(folder, "scripts/tidy", "--all")
    expect("what does not compile fails", broken.returncode == 1 and "runtime/two.cpp" in broken.stdout, broken.stdout)


def main():
    with tempfile.TemporaryDirectory() as work:
        repository, clone = Path(work) / "repository", Path(work) / "clone"
        (repository / "runtime").mkdir(parents=True)
        (repository / "scripts").mkdir()
        for file in ("scripts/tidy", ".clang-tidy", "CMakePresets.json", ".gitignore"):
            shutil.copy(ROOT / file, repository / file)
        (repository / "CMakeLists.txt").write_text(CMAKE)
        (repository / "runtime/shared.h").write_text(HEADER % "shared")
        (repository / "runtime/apart.cpp").write_text("int apart() { return 2; }\n")
        for name in ("one", "two"):
            (repository / f"runtime/{name}.cpp").write_text(SOURCE % name)
        run(repository, "git", "init", "-q")
        commit(repository)
        check_lists(repository, clone)
        check_findings(clone)
    print("\n".join(wrong))
    sys.exit(1 if wrong else 0)


main()
