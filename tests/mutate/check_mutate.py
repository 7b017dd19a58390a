#!/usr/bin/env python3
"""Checks how tools/mutate draws changes and goes on with a pass, without building anything."""
import sys
import tempfile
from pathlib import Path

ROOT = Path(sys.argv[1])
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tools/mutate"))
import changes
import mutate

# Every line with what it may become; none for what is no code.
LINES = [
    ('  if (a < b) call("x < 1 && 2");  // 3 + 4', {'  if (a <= b) call("x < 1 && 2");  // 3 + 4', '  if (a < b) {}  // 3 + 4'}),
    ("  x = y + 10;", {"  x = y - 10;", "  x = y + 11;", "  x = y + 9;", "  {}"}),
    ("  std::vector<int> list;", set()),
    ("  const auto& each = list[kFirst];", set()),
    ("  use(each, !found);", {"  use(each, found);", "  {}"}),
    ("  return std::min(a, b);", {"  return std::max(a, b);"}),
    ("  const char letter = '+';", set()),
    ("  /* a + b", set()),
    ("     1 < 2 */", set()),
    ('  text = R"(a + 1', set()),
    ('    b - 2)";', set()),
    ("  long_call(a,", set()),
    ("            f(b));", set()),
    ("  assert(a == b);", set()),
    ('  log_warning("no " + name);', set()),
    ("  static_assert(sizeof(A) == 8);", set()),
    ("#define TWICE(x) (x + x) \\", set()),
    ("  call(1 + 1);", set()),
    ("  static constexpr auto fields() {", set()),
    ('    return std::tuple(field("a", 1));', set()),
    ("  }", set()),
    ("  int count = 0x1F;", {"  int count = 0x20;"}),
    ("  ++count;", {"  --count;"}),
]


def check_lines():
    found = {number: set(after) for number, _, after in changes.places_of("\n".join(line for line, _ in LINES))}
    for number, (line, wanted) in enumerate(LINES, 1):
        assert found.get(number, set()) == wanted, f"{line}: {found.get(number, set())}"


def check_drawing():
    first = changes.draw(ROOT, 7)
    assert len(first) > 1000 and {c.file.split("/")[0] for c in first} == set(changes.FOLDERS)
    lines = {file: (ROOT / file).read_text(encoding="utf-8").split("\n") for file in {c.file for c in first}}
    for change in first:
        assert lines[change.file][change.line - 1] == change.before != change.after and "\n" not in change.after, change
    limited = changes.draw(ROOT, 7, "runtime/values/*.cpp")
    assert limited == [c for c in first if Path(c.file).match("runtime/values/*.cpp")] != [], "a limit alters the order, or the seed is not all"
    assert limited != changes.draw(ROOT, 8, "runtime/values/*.cpp"), "seeds draw alike"


def check_passes(folder):
    drawn = [changes.Change("f.cpp", n, f"x = {n};", f"x = {n + 1};") for n in range(1, 11)]
    outcomes = {1: "broken", 2: "same", 3: "survived", 4: "survived"}
    judged = []

    def judge(change):
        judged.append(change.line)
        return outcomes.get(change.line, "noticed"), "Test"

    listed = Path(folder, "equivalent.txt")
    listed.write_text("# a comment\n\nf.cpp\n- x = 6;\n+ x = 7;\n# why\n")
    equivalent = mutate.read_equivalent(listed)
    path = Path(folder, "1.jsonl")
    mutate.run_pass(drawn, mutate.Pass(path), 2, equivalent, judge)
    assert judged == [1, 2, 3, 4], f"two that count: {judged}"
    mutate.run_pass(drawn, mutate.Pass(path), 5, equivalent, judge)
    assert judged == [1, 2, 3, 4, 5, 7, 8], f"a pass goes on where it was, without what alters nothing: {judged}"
    outcomes[3] = "noticed"
    done = mutate.Pass(path)
    for change, _ in done.changes(("survived",), equivalent):
        mutate.judge_one(change, done, judge)
    left = [c.line for c, _ in mutate.Pass(path).changes(("survived",), equivalent)]
    assert judged[7:] == [3, 4] and left == [4], f"survivors again: {judged[7:]}, left {left}"
    listed.write_text("f.cpp\n- x = 6;\n+ x = 7;\n")
    try:
        mutate.read_equivalent(listed)
    except ValueError:
        return
    raise AssertionError("a listed change without a reason is taken")


check_lines()
check_drawing()
with tempfile.TemporaryDirectory() as folder:
    check_passes(folder)
mutate.read_equivalent(ROOT / "tools/mutate/equivalent.txt")
