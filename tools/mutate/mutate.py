#!/usr/bin/env python3
"""Measures how much the tests notice: makes random one-line changes to a copy of the tree, builds, runs the tests and lists the changes that
no test noticed.

    tools/mutate/mutate.py --seed 1 --count 100              a pass; called again, it goes on where it was stopped
    tools/mutate/mutate.py --seed 1 --count 30 --file 'runtime/values/*.cpp'
    tools/mutate/mutate.py --seed 1 --again                  the survivors of the pass once more, after tests were added

What was done stands in build/mutate/SEED.jsonl. A change counts if it compiles, alters the programs and is not listed in equivalent.txt.
"""
import argparse
import fcntl
import hashlib
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).parent))
from changes import Change, draw

ROOT = Path(__file__).resolve().parents[2]
STATE = ROOT / "build/mutate"
PROGRAMS = ("arena_tests", "samples_tests")
STAGES = (0.05, 1.0, float("inf"))  # seconds that a test takes at most: the quick ones run first
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
    """What was done with one seed, kept in a file with a line for each change; the last line about a change holds."""

    def __init__(self, path):
        self.path = path
        self.done = {}
        if path.exists():
            for line in path.read_text(encoding="utf-8").splitlines():
                record = json.loads(line)
                self.done[self.place(Change(*(record[name] for name in Change._fields)))] = record

    @staticmethod
    def place(change):
        return (*change.key(), change.line)

    def add(self, change, outcome, by, seconds):
        record = {**change._asdict(), "outcome": outcome, "by": by, "seconds": round(seconds, 1)}
        self.done[self.place(change)] = record
        self.path.parent.mkdir(parents=True, exist_ok=True)
        with self.path.open("a", encoding="utf-8") as file:
            file.write(json.dumps(record) + "\n")

    def changes(self, outcomes, equivalent):
        found = [(Change(*(r[name] for name in Change._fields)), r) for r in self.done.values() if r["outcome"] in outcomes]
        return [(change, record) for change, record in found if change.key() not in equivalent]


def run_pass(drawn, done, count, equivalent, judge):
    """Judges changes until `count` of the pass count; those of earlier runs are not repeated."""
    counted = len(done.changes(("noticed", "survived"), equivalent))
    for change in drawn:
        if counted >= count:
            return
        if change.key() in equivalent or done.place(change) in done.done:
            continue
        counted += judge_one(change, done, judge) in ("noticed", "survived")


def judge_one(change, done, judge):
    begin = time.monotonic()
    outcome, by = judge(change)
    done.add(change, outcome, by, time.monotonic() - begin)
    print(f"{outcome:9} {time.monotonic() - begin:5.0f} s  {change.file}:{change.line}  {by}", flush=True)
    return outcome


def waited(process):
    try:
        return process.wait(1)
    except subprocess.TimeoutExpired:
        return None


class Copy:
    """A tree of its own to change, build and test in."""

    def __init__(self, tree):
        self.tree = tree
        self.build = tree / "build/test"
        self.log = STATE / "last.log"
        self.home = STATE / "home"  # the user's files of the programs that are tried
        self.home.mkdir(parents=True, exist_ok=True)
        self.synchronise()
        if not (self.build / "build.ninja").exists():
            self.run(["cmake", "--preset", "test"], None, self.tree, must="configure the copy")
        if not self.make(PROGRAMS):
            raise SystemExit(f"The unchanged tree does not build: {self.log}")
        self.unchanged = self.fingerprint()
        self.times = self.measure()

    def synchronise(self):
        """Copies what git knows or would add, and only files that differ, so that what is built stays built."""
        names = subprocess.run(["git", "ls-files", "-z", "-co", "--exclude-standard"], cwd=ROOT, check=True, capture_output=True).stdout
        wanted = {name for name in names.decode().split("\0") if name and (ROOT / name).is_file()}
        for name in wanted:
            target = self.tree / name
            content = (ROOT / name).read_bytes()
            if not target.exists() or target.read_bytes() != content:
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(ROOT / name, target)
        for folder, folders, files in os.walk(self.tree):
            if Path(folder) == self.tree:
                folders[:] = [name for name in folders if name not in ("build", ".git")]
            for name in files:
                if (Path(folder) / name).relative_to(self.tree).as_posix() not in wanted:
                    (Path(folder) / name).unlink()

    def run(self, command, seconds, where, must=None):
        """The exit status, None for what took too long or wrote without end. Nothing that was started stays."""

        def limits():
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        home = {"HOME": self.home, "XDG_DATA_HOME": self.home / "data", "XDG_CONFIG_HOME": self.home / "config"}
        home["CCACHE_DIR"] = os.environ.get("CCACHE_DIR", Path.home() / ".cache/ccache")
        with self.log.open("w") as log:
            process = subprocess.Popen(command, cwd=where, stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT, start_new_session=True,
                                       preexec_fn=limits, env={**os.environ, **{name: str(path) for name, path in home.items()}})
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

    def make(self, targets):
        return self.run(["cmake", "--build", ".", *(["--target", *targets] if targets else [])], None, self.build) == 0

    def fingerprint(self):
        return [hashlib.sha256((self.build / name).read_bytes()).hexdigest() for name in (*PROGRAMS, "pack", "arena")]

    def measure(self):
        """Seconds of every test of each program; taken once for the same programs."""
        kept = STATE / "times.json"
        if kept.exists():
            known = json.loads(kept.read_text())
            if known["programs"] == self.unchanged:
                return known["times"]
        times = {}
        for program in PROGRAMS:
            report = self.home / f"{program}.json"
            self.run([f"./{program}", "--gtest_brief=1", f"--gtest_output=json:{report}"], None, self.build, must=f"pass {program} unchanged")
            suites = json.loads(report.read_text())["testsuites"]
            times[program] = {f"{s['name']}.{t['name']}": float(t["time"].rstrip("s")) for s in suites for t in s["testsuite"]}
        if not self.make([]):
            raise SystemExit(f"The unchanged tree does not build: {self.log}")
        self.run(self.other_tests(), None, self.build, must="pass the other tests unchanged")
        kept.write_text(json.dumps({"programs": self.unchanged, "times": times}))
        return times

    @staticmethod
    def other_tests():
        return ["ctest", "-R", "^[a-z_]+$", "-E", "^mutate$", "--stop-on-failure", "--timeout", "300"]  # not those of PROGRAMS, which have a dot in their names

    def noticed_by(self):
        """The name of the first test that fails, or None."""
        for low, high in zip((-1.0, *STAGES), STAGES):
            for program in PROGRAMS:
                tests = {name: t for name, t in self.times[program].items() if low < t <= high}
                if not tests:
                    continue
                command = [f"./{program}", "--gtest_fail_fast", "--gtest_filter=" + ":".join(tests)]
                status = self.run(command, 30 + 5 * sum(tests.values()), self.build)
                if status != 0:
                    return self.failed_test(status)
        if not self.make([]):
            return "the build of the rest"
        status = self.run(self.other_tests(), None, self.build)  # which has time limits of its own
        return None if status == 0 else self.failed_test(status)

    def failed_test(self, status):
        """What the last log ends with: the first failure, or what was begun last when the program itself ended."""
        log = self.log.read_text(errors="replace")
        failed = re.search(r"\[  FAILED  \] (\S+)|Test +#\d+: (\w+) \.*\*\*\*", log)
        begun = re.findall(r"\[ RUN      \] (\S+)|Start +\d+: (\w+)", log)
        name = "".join(failed.groups("") if failed else begun[-1] if begun else "start")
        return name if failed else f"{name} ({'without end' if status is None else f'ended with {status}'})"

    def judge(self, change):
        path = self.tree / change.file
        unchanged = path.read_text(encoding="utf-8")
        lines = unchanged.split("\n")
        places = [at for at, line in enumerate(lines) if line == change.before]
        if not places:
            return "broken", "the line is not there any more"
        lines[min(places, key=lambda at: abs(at + 1 - change.line))] = change.after
        path.write_text("\n".join(lines), encoding="utf-8")
        try:
            if not self.make(PROGRAMS):
                return "broken", "does not compile"
            now = self.fingerprint()
            if now[2] != self.unchanged[2]:
                shutil.rmtree(self.tree / "build/asset_cache", ignore_errors=True)  # packed by a changed program
            if now == self.unchanged:
                return "same", "the programs are the same"
            by = self.noticed_by()
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
    parser.add_argument("--count", type=int, default=100, help="how many changes the pass counts in all")
    parser.add_argument("--file", metavar="PATTERN", help="only files whose path, from its end, matches")
    parser.add_argument("--again", action="store_true", help="try the survivors of the pass once more")
    parser.add_argument("--tree", type=Path, default=STATE / "tree", help="where the copy stands")
    options = parser.parse_args()
    os.nice(10)
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
        copy = Copy(options.tree.resolve())
        if options.again:
            for change, _ in done.changes(("survived",), equivalent):
                judge_one(change, done, copy.judge)
        else:
            run_pass(draw(ROOT, options.seed, options.file), done, options.count, equivalent, copy.judge)
    except KeyboardInterrupt:
        pass
    summary(done, equivalent)


if __name__ == "__main__":
    main()
