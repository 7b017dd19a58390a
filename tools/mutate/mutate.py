#!/usr/bin/env python3
"""Measures how much the tests notice: makes random one-line changes to a copy of the tree, builds, runs the tests and lists the changes that
no test noticed. A build holds many changes, of which the environment chooses one for a run (switches.py); what cannot be chosen at run time
is built alone.

    tools/mutate/mutate.py --seed 1 --count 100              a pass; called again, it goes on where it was stopped
    tools/mutate/mutate.py --seed 1 --count 30 --file 'runtime/values/*.cpp'
    tools/mutate/mutate.py --seed 1 --again                  the survivors of the pass once more, after tests were added

What was done stands in build/mutate/SEED.jsonl. A change counts if it compiles, alters the programs and is not listed in equivalent.txt.
Only tests of the programs and the display are tried; those of the sources look at no line's meaning.
"""
import argparse
import concurrent.futures
import fcntl
import hashlib
import json
import os
import queue
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time
from pathlib import Path
from typing import NamedTuple

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).parent))
from changes import FOLDERS, Change, draw
from switches import HEADER, switch_lines

ROOT = Path(__file__).resolve().parents[2]
STATE = ROOT / "build/mutate"
PROGRAMS = ("arena_tests", "samples_tests")
OTHER_TESTS = ("ctest", "-R", "^display$", "--timeout", "300")
BATCH = 150  # changes that one build holds
DISPLAY_SECONDS = 10
GOLDEN = ("Of/GoldenRecordings", "Samples.GoldenRecordings")
QUICK = 1.0  # seconds of a test that runs before the others
# Quickly built; the forced header is what switches ask. Whether they warn does not matter.
FLAGS = ("-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG", "-DCMAKE_COMPILE_WARNING_AS_ERROR=OFF",
         f"-DCMAKE_CXX_FLAGS=-w -Wno-narrowing -include {STATE}/switch.h")
MEMORY = 8 << 30
OUTPUT = 1 << 29


def read_equivalent(path):
    """The keys of changes that alter nothing observable. Each stands as `file`, `- before`, `+ after`, `# reason`."""
    keys, block = {}, []
    for line in [*path.read_text(encoding="utf-8").splitlines(), ""]:
        if line.strip():
            block.append(line)
            continue
        if any(not text.startswith("#") for text in block):
            if len(block) < 4 or block[1][:2] != "- " or block[2][:2] != "+ " or any(text[:2] != "# " for text in block[3:]):
                raise ValueError(f"{path}: not file, - before, + after, # reason: {block[0]}")
            keys[(block[0].strip(), block[1][2:].strip(), block[2][2:].strip())] = " ".join(text[2:] for text in block[3:])
        block = []
    return keys


class Pass:
    """What was done with one seed, kept in a file with a line for each change; the last line about a change holds. Lines may have moved since:
    a change is known by its texts, and of two alike one is tried."""

    def __init__(self, path):
        self.path = path
        self.done = {}
        if path.exists():
            for line in path.read_text(encoding="utf-8").splitlines():
                record = json.loads(line)
                self.done[Change(*(record[name] for name in Change._fields)).key()] = record

    def add(self, change, outcome, by, seconds):
        record = {**change._asdict(), "outcome": outcome, "by": by, "seconds": round(seconds, 1)}
        self.done[change.key()] = record
        self.path.parent.mkdir(parents=True, exist_ok=True)
        with self.path.open("a", encoding="utf-8") as file:
            file.write(json.dumps(record) + "\n")

    def changes(self, outcomes, equivalent):
        found = [(Change(*(r[name] for name in Change._fields)), r) for r in self.done.values() if r["outcome"] in outcomes]
        return [(change, record) for change, record in found if change.key() not in equivalent]


def run_again(drawn, done, equivalent, bench):
    """Judges the survivors once more, each in the batch that it was in."""
    for first in range(0, len(drawn), BATCH):
        batch = drawn[first : first + BATCH]
        survivors = {change.key() for change, _ in done.changes(("survived",), equivalent)}
        again = [change for change in batch if change.key() in survivors]
        if again:
            judge_batch(batch, again, done, bench)


def run_pass(drawn, done, count, equivalent, bench):
    """Judges whole batches until `count` changes of the pass count; those of earlier runs are not repeated. A batch is what one build holds:
    always the same part of the order, so that a pass that goes on finds its batch built."""
    for first in range(0, len(drawn), BATCH):
        if len(done.changes(("noticed", "survived"), equivalent)) >= count:
            return
        batch = drawn[first : first + BATCH]
        left = [change for change in batch if change.key() not in equivalent and change.key() not in done.done]
        if left:
            judge_batch(batch, left, done, bench)


def judge_batch(batch, left, done, bench):
    """Judges those left of a batch: first what is switched, then what has to be built alone."""
    numbers = bench.prepare(batch)
    lock = threading.Lock()

    def judge(change, desk):
        begin = time.monotonic()
        number = numbers.get(change)
        outcome, by = bench.judge_switched(change, number, desk) if number else bench.judge_alone(change)
        with lock:
            done.add(change, outcome, by, time.monotonic() - begin)
            print(f"{outcome:9} {time.monotonic() - begin:5.0f} s  {change.file}:{change.line}  {by}", flush=True)

    switched = queue.SimpleQueue()
    for change in left:
        if change in numbers:
            switched.put(change)

    def work(desk):
        while True:
            try:
                change = switched.get_nowait()
            except queue.Empty:
                return
            judge(change, desk)

    with concurrent.futures.ThreadPoolExecutor() as pool:
        workers = [pool.submit(work, desk) for desk in range(bench.desks)]
        try:
            for worker in workers:
                worker.result()
        except BaseException:
            while not switched.empty():
                switched.get()
            raise
    for change in left:
        if change not in numbers:
            judge(change, 0)


def waited(process):
    try:
        return process.wait(0.2)
    except subprocess.TimeoutExpired:
        return None


class Desk:
    """Where programs are tried: a home and a log of its own, so that several can be tried at a time."""

    def __init__(self, number):
        self.log = STATE / f"last-{number}.log"
        self.home = STATE / f"home-{number}"
        self.home.mkdir(parents=True, exist_ok=True)

    def run(self, command, seconds, where, must=None, chosen=0):
        """The exit status, None for what took too long or wrote without end. Nothing that was started stays."""
        env = {"HOME": self.home, "XDG_DATA_HOME": self.home / "data", "XDG_CONFIG_HOME": self.home / "config", "ARENA_CHANGE": chosen}
        env["CCACHE_DIR"] = os.environ.get("CCACHE_DIR", Path.home() / ".cache/ccache")
        with self.log.open("w") as log:
            process = subprocess.Popen(command, cwd=where, stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT, start_new_session=True,
                                       env={**os.environ, **{name: str(value) for name, value in env.items()}})
            resource.prlimit(process.pid, resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.prlimit(process.pid, resource.RLIMIT_CORE, (0, 0))
            try:
                end = time.monotonic() + seconds if seconds else float("inf")
                while (status := waited(process)) is None and time.monotonic() < end and self.log.stat().st_size < OUTPUT:
                    pass
            finally:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()
        if must and status != 0:
            raise SystemExit(f"Cannot {must}: {self.log}")
        return status

    def failed_test(self, status):
        """What the last log ends with: the first failure, or what was begun last when the program itself ended."""
        log = self.log.read_text(errors="replace")
        failed = re.search(r"\[  FAILED  \] (\S+)|Test +#\d+: (\w+) \.*\*\*\*", log)
        begun = re.findall(r"\[ RUN      \] (\S+)|Start +\d+: (\w+)", log)
        name = "".join(failed.groups("") if failed else begun[-1] if begun else "start")
        return name if failed else f"{name} ({'without end' if status is None else f'ended with {status}'})"


class Test(NamedTuple):
    program: str
    name: str
    folder: str  # in tests/
    seconds: float


def stages(tests, file):
    """In which order tests are tried: those whose folder mirrors the changed file's, golden runs, the other quick ones, the rest."""
    def stage(test):
        if test.seconds <= QUICK and test.folder in Path(file).parts:
            return 0
        if test.name.startswith(GOLDEN):
            return 1
        return 2 if test.seconds <= QUICK else 3

    grouped = {}
    for test in tests:
        grouped.setdefault((stage(test), test.program), []).append(test)
    return [group for _, group in sorted(grouped.items())]


class Bench:
    """A tree of its own to change, build and test in."""

    def __init__(self, tree, desks, slowest):
        self.tree = tree
        self.slowest = slowest
        self.build = tree / "build/test"
        self.desks = desks
        self.desk = [Desk(number) for number in range(desks)]
        self.kept = STATE / "alone.json"  # what cannot be switched
        self.alone = {tuple(key) for key in json.loads(self.kept.read_text())} if self.kept.exists() else set()

    def prepare(self, batch):
        """Builds all changes into one program, and measures the tests while none is chosen. Returns the numbers of those that can be chosen."""
        while True:
            self.switched = {number: change for number, change in enumerate(batch, 1) if change.key() not in self.alone}
            numbers = self.synchronise()
            if not (self.build / "build.ninja").exists():
                (STATE / "switch.h").write_text(HEADER)
                self.desk[0].run(["cmake", "--preset", "test", *FLAGS], None, self.tree, must="configure the copy")
            if self.make():
                break
            self.leave_out(numbers)
        self.unchanged = self.fingerprint()
        self.tests = self.measure()
        return {self.switched[number]: number for number in numbers}

    def leave_out(self, numbers):
        """Reads in the log which switches do not compile."""
        log = self.desk[0].log.read_text(errors="replace")
        places = {(file, int(line)) for file, line in re.findall(r"((?:%s)/[\w/]+\.(?:cpp|h)):(\d+)" % "|".join(FOLDERS), log)}
        near = [c for c in (self.switched[number] for number in numbers) if any(c.file == file for file, _ in places)]
        found = [c for c in near if (c.file, c.line) in places] or [c for c in near if "constexpr" in c.before] or near
        if not found:
            raise SystemExit(f"The unchanged tree does not build: {self.desk[0].log}")
        self.alone |= {change.key() for change in found}
        self.kept.write_text(json.dumps(sorted(self.alone)))
        print(f"{len(found)} cannot be switched: " + ", ".join(f"{c.file}:{c.line}" for c in found), flush=True)

    def synchronise(self):
        """Copies what git knows or would add, with switches, and only files that differ, so that what is built stays built.
        Returns the numbers that were switched."""
        names = subprocess.run(["git", "ls-files", "-z", "-co", "--exclude-standard"], cwd=ROOT, check=True, capture_output=True).stdout
        wanted = {name for name in names.decode().split("\0") if name and (ROOT / name).is_file()}
        by_file, numbers = {}, []
        for number, change in self.switched.items():
            by_file.setdefault(change.file, []).append((number, change))
        for name in wanted:
            content = (ROOT / name).read_bytes()
            if name in by_file:
                text, done = switch_lines(content.decode(), by_file[name])
                content = text.encode()
                numbers += done
            target = self.tree / name
            if not target.exists() or target.read_bytes() != content:
                target.parent.mkdir(parents=True, exist_ok=True)
                target.write_bytes(content)
                shutil.copymode(ROOT / name, target)
        for folder, folders, files in os.walk(self.tree):
            if Path(folder) == self.tree:
                folders[:] = [name for name in folders if name not in ("build", ".git")]
            for name in files:
                if (Path(folder) / name).relative_to(self.tree).as_posix() not in wanted:
                    (Path(folder) / name).unlink()
        return numbers

    def make(self):
        return self.desk[0].run(["cmake", "--build", ".", "--target", *PROGRAMS], None, self.build) == 0

    def fingerprint(self):
        return [hashlib.sha256((self.build / name).read_bytes()).hexdigest() for name in (*PROGRAMS, "pack", "arena")]

    def measure(self):
        """Every test of each program with its seconds; taken once for the same programs."""
        kept = STATE / "times.json"
        if kept.exists():
            known = json.loads(kept.read_text())
            if known["programs"] == self.unchanged:
                return [Test(*test) for test in known["tests"]]
        tests = []
        for program in PROGRAMS:
            report = self.desk[0].home / f"{program}.json"
            command = [f"./{program}", "--gtest_brief=1", f"--gtest_output=json:{report}"]
            self.desk[0].run(command, None, self.build, must=f"pass {program} unchanged")
            for suite in json.loads(report.read_text())["testsuites"]:
                for test in suite["testsuite"]:
                    folder = Path(test["file"]).parent.name
                    tests.append(Test(program, f"{suite['name']}.{test['name']}", folder, float(test["time"].rstrip("s"))))
        self.desk[0].run(OTHER_TESTS, None, self.build, must="pass the other tests unchanged")
        kept.write_text(json.dumps({"programs": self.unchanged, "tests": tests}))
        return tests

    def noticed_by(self, change, number, desk):
        """The name of the first test that fails, or None."""
        desk = self.desk[desk]
        tried = [test for test in self.tests if test.seconds <= self.slowest or test.name.startswith(GOLDEN)]
        for group in stages(tried, change.file):
            command = [f"./{group[0].program}", "--gtest_fail_fast", "--gtest_filter=" + ":".join(test.name for test in group)]
            status = desk.run(command, 20 + 4 * sum(test.seconds for test in group), self.build, chosen=number)
            if status != 0:
                return desk.failed_test(status)
        if self.slowest < DISPLAY_SECONDS:
            return None
        status = desk.run(OTHER_TESTS, None, self.build, chosen=number)  # which have time limits of their own
        return None if status == 0 else desk.failed_test(status)

    def judge_switched(self, change, number, desk):
        by = self.noticed_by(change, number, desk)
        return ("noticed", by) if by else ("survived", "")

    def judge_alone(self, change):
        path = self.tree / change.file
        unchanged = path.read_text(encoding="utf-8")
        lines = unchanged.split("\n")
        if change.line > len(lines) or lines[change.line - 1] != change.before:
            return "broken", "the line is not there any more"
        lines[change.line - 1] = change.after
        path.write_text("\n".join(lines), encoding="utf-8")
        try:
            if not self.make():
                return "broken", "does not compile"
            now = self.fingerprint()
            if now[2] != self.unchanged[2]:
                shutil.rmtree(self.tree / "build/asset_cache", ignore_errors=True)  # packed by a changed program
            if now == self.unchanged:
                return "same", "the programs are the same"
            by = self.noticed_by(change, 0, 0)
            return ("noticed", by) if by else ("survived", "")
        finally:
            path.write_text(unchanged, encoding="utf-8")


def summary(done, equivalent):
    survivors = done.changes(("survived",), equivalent)
    counted = len(done.changes(("noticed", "survived"), equivalent))
    for change, _ in sorted(survivors):
        print(f"\n{change.file}:{change.line}\n- {change.before.strip()}\n+ {change.after.strip()}")
    if counted:
        share = 100 * (counted - len(survivors)) / counted
        print(f"\n{counted} changes, {counted - len(survivors)} noticed ({share:.0f} %), {len(survivors)} survived")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=100, help="how many changes the pass counts in all, or a few more: batches are finished")
    parser.add_argument("--file", metavar="PATTERN", help="only files whose path, from its end, matches")
    parser.add_argument("--again", action="store_true", help="try the survivors of the pass once more")
    parser.add_argument("--jobs", type=int, default=2, help="how many changes are tried at a time")
    parser.add_argument("--slowest", type=float, default=float("inf"), help="seconds of a test; slower ones but golden runs are left out: a "
                        "third of the time, and survivors that --again may notice without this limit")
    parser.add_argument("--tree", type=Path, default=STATE / "tree", help="where the copy stands")
    options = parser.parse_args()
    os.nice(2)
    STATE.mkdir(parents=True, exist_ok=True)
    lock = (STATE / "lock").open("w")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except OSError:
        raise SystemExit("Another pass is running in build/mutate.") from None
    equivalent = read_equivalent(Path(__file__).parent / "equivalent.txt")
    done = Pass(STATE / f"{options.seed}.jsonl")
    for stop in (signal.SIGINT, signal.SIGTERM):
        signal.signal(stop, signal.default_int_handler)
    try:
        bench = Bench(options.tree.resolve(), options.jobs, options.slowest)
        drawn = draw(ROOT, options.seed, options.file)
        if options.again:
            run_again(drawn, done, equivalent, bench)
        else:
            run_pass(drawn, done, options.count, equivalent, bench)
    except KeyboardInterrupt:
        pass
    summary(done, equivalent)


if __name__ == "__main__":
    main()
