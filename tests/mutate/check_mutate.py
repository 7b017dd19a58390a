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
import switches

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
    ("BUILTIN(name, Kind());", set()),
    ("  virtual void f() = 0;", set()),
    ("  Made take() && {", set()),
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


# A line, what it becomes, and both in one, N standing for what is asked; None where it cannot be asked at run time.
SWITCHES = [
    ("  x = a * b + c / d;", "  x = a * b - c / d;", "  x = (N ? (a * b - c / d) : (a * b + c / d));"),
    ("  if (a < b + 1 && c) call();", "  if (a <= b + 1 && c) call();", "  if ((N ? (a <= b + 1) : (a < b + 1)) && c) call();"),
    ("  if (a < b) call();", "  if (a < b) {}", "  if (a < b) { if (!N) call(); }"),
    ("  else call(f(a, b));  // why", "  else {}  // why", "  else { if (!N) call(f(a, b)); }  // why"),
    ("  x += f(a, b);", "  x -= f(a, b);", "  { if (N) x -= f(a, b); else x += f(a, b); }"),
    ("  if (--count == 0) end();", "  if (++count == 0) end();", "  if ((N ? (++count) : (--count)) == 0) end();"),
    ("  for (int i = 0; i < n; ++i) f(i);", "  for (int i = 0; i < n; --i) f(i);", "  for (int i = 0; i < n; (N ? (--i) : (++i))) f(i);"),
    ("  return is ? a : b + 1;", "  return is ? a : b - 1;", "  return is ? a : (N ? (b - 1) : (b + 1));"),
    ("  return !is;", "  return is;", "  return (N ? (is) : (!is));"),
    ("  f(-a, b);", "  f(a, b);", "  f((N ? (a) : (-a)), b);"),
    ("  const bool is = true;", "  const bool is = false;", "  const bool is = (N ? false : true);"),
    ("constexpr int kMost = 8;", "constexpr int kMost = 9;", "const int kMost = (N ? 9 : 8);"),
    ("inline constexpr int kMost = 8;", "inline constexpr int kMost = 9;", "inline const int kMost = (N ? 9 : 8);"),
    ("  {0x1p-47, 1},", "  {0x1p-46, 1},", None),
    ("  case 8: return;", "  case 9: return;", None),
    ("  case 8: return 2;", "  case 8: return 3;", "  case 8: return (N ? 3 : 2);"),
    ("  for (; i < n; i += 2) f(i);", "  for (; i < n; i -= 2) f(i);", "  for (; i < n; (N ? (i -= 2) : (i += 2))) f(i);"),
    ("  const int* const all[3] = {&a, &b, &c};", "  const int* const all[2] = {&a, &b, &c};", None),
    ("  return all[3];", "  return all[4];", "  return all[(N ? 4 : 3)];"),
    ("  x = long_sum + a", "  x = long_sum - a", None),
    ('  f("a + 1", b + 1);', '  f("a + 1", b - 1);', '  f("a + 1", (N ? (b - 1) : (b + 1)));'),
]


def check_switches():
    for before, after, wanted in SWITCHES:
        text, done = switches.switch_lines(f"{{\n{before}\n  .end();", [(1, changes.Change("f.cpp", 2, before, after))])
        got = text.split("\n")[1].replace("arena_change(1)", "N") if done else None
        assert got == wanted, f"{before}: {got}"


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
    judged, built = [], []

    class Bench:
        """Switches lines with an even number."""

        desks = 1

        def prepare(self, batch):
            built.append([change.line for change in batch])
            return {change: number for number, change in enumerate(batch, 1) if change.line % 2 == 0}

        def judge_switched(self, change, number, desk):
            assert built[-1][number - 1] == change.line and desk == 0
            return self.judge_alone(change)

        def judge_alone(self, change):
            judged.append(change.line)
            return outcomes.get(change.line, "noticed"), "Test"

    bench = Bench()
    mutate.BATCH = 4
    listed = Path(folder, "equivalent.txt")
    listed.write_text("# a comment\n\nf.cpp\n- x = 6;\n+ x = 7;\n# why\n")
    equivalent = mutate.read_equivalent(listed)
    path = Path(folder, "1.jsonl")
    mutate.run_pass(drawn, mutate.Pass(path), 2, equivalent, bench)
    assert judged == [2, 4, 1, 3], f"two that count, those that are switched before the others: {judged}"
    mutate.run_pass(drawn, mutate.Pass(path), 3, equivalent, bench)
    assert judged[4:] == [8, 5, 7], f"a pass goes on where it was, without what alters nothing: {judged}"
    outcomes[3] = "noticed"
    mutate.run_again(drawn, mutate.Pass(path), equivalent, bench)
    left = [c.line for c, _ in mutate.Pass(path).changes(("survived",), equivalent)]
    assert judged[7:] == [4, 3] and left == [4], f"survivors again: {judged[7:]}, left {left}"
    assert built == [[1, 2, 3, 4], [5, 6, 7, 8], [1, 2, 3, 4]], f"a batch is always the same: {built}"
    listed.write_text("f.cpp\n- x = 6;\n+ x = 7;\n")
    try:
        mutate.read_equivalent(listed)
    except ValueError:
        return
    raise AssertionError("a listed change without a reason is taken")


check_lines()
check_switches()
check_drawing()
with tempfile.TemporaryDirectory() as folder:
    check_passes(folder)
mutate.read_equivalent(ROOT / "tools/mutate/equivalent.txt")
