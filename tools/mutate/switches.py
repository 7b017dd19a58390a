"""Both texts of a changed line in one: `a + b` becomes `(arena_change(17) ? (a - b) : (a + b))`, so that many changes cost one build."""
import re

from changes import BINARY, ASSIGNMENT, CALL, closed, without_texts

# Included into every file of a tree with switches.
HEADER = """#pragma once
#include <cstdlib>

namespace arena_switch {
inline const int chosen = [] {
  const char* number = std::getenv("ARENA_CHANGE");
  return number != nullptr ? std::atoi(number) : 0;
}();
}  // namespace arena_switch

// Constant expressions cannot ask: what they need is built alone.
constexpr bool arena_change(int number) { return number > 0 && number == arena_switch::chosen; }
"""

# Higher binds closer. What binds less than a changed operator ends its expression.
PRECEDENCE = {operator: at for at, row in enumerate(
    ["= += -= *= /= %= |= &= ^= <<= >>=", "? :", "||", "&&", "|", "^", "&", "== !=", "< <= > >=", "<=>", "<< >>", "+ -", "* / %"]) for operator in row.split()}
STEPS = 13  # ++ and --
OPERATOR = re.compile(r"(?<= )(<=>|<<=|>>=|[-+*/%|&^<>=!]=|<<|>>|&&|\|\||[-+*/%<>&|^=?:])(?= |$)")
KEYWORD = re.compile(r"\b(return|throw|case|else|co_return)\b")
CONSTANT = re.compile(r"^(\s*)((?:static |inline )*)constexpr (?=[^()]*=)")
STEP_ALONE = re.compile(r"(\+\+|--)[\w:.\[\]>-]+;$|[\w:.\[\]>-]+(\+\+|--);$")
LENGTH = re.compile(r"[\w>&*] \w+\[$")  # what stands before the length of an array
TOKEN = re.compile(r"[\w.']+")


def differing(before, after):
    """Where `before` differs: from, to, and what stands there in `after`."""
    start = 0
    while start < min(len(before), len(after)) and before[start] == after[start]:
        start += 1
    end = 0
    while end < min(len(before), len(after)) - start and before[-1 - end] == after[-1 - end]:
        end += 1
    return start, len(before) - end, len(after) - end


def widened(before, after):
    """The differing part as whole words or operators."""
    start, stop, stop_after = differing(before, after)
    pattern = re.compile(r"[\w.'\x00]+|[-+*/%<>=!&|^]+")
    for found in pattern.finditer(before):
        if found.start() <= start and stop <= found.end() and (found.start(), found.end()) != (start, stop):
            return found.start(), found.end(), stop_after + found.end() - stop
    return start, stop, stop_after


def reach(code, at, step, stops):
    """How far an expression goes from a place, backwards (step -1) or forwards (1): to one of `stops`, a comma, or what encloses it. None where
    the line ends inside of its brackets."""
    opening, closing = ("([{", ")]}") if step > 0 else (")]}", "([{")
    depth = 0
    while 0 <= (letter := at if step > 0 else at - 1) < len(code) and (depth > 0 or at not in stops and code[letter] not in ",;" + closing):
        depth += (code[letter] in opening) - (code[letter] in closing)
        at += step
    return at if depth == 0 else None


def operand_bounds(code, start, stop, strength):
    """The expression around a place: as far as to what encloses it or binds less. None where it goes on in another line."""
    stops = [(m.start(), m.end()) for m in OPERATOR.finditer(code) if PRECEDENCE[m.group()] < strength] + [m.span() for m in KEYWORD.finditer(code)]
    left = reach(code, start, -1, {end for _, end in stops})
    right = reach(code, stop, 1, {begin for begin, _ in stops})
    return (left, right) if left is not None and right is not None else None


def as_statement(code, begins):
    """From where to where the line holds one whole statement that declares nothing, behind what it hangs on."""
    found = re.match(r"^(\s+(?:\} else |else )?(?:(?:if|for|while) \(.*\) )?)([^\s].*;)$", code)
    if not begins or not found or not closed(found[2]) or not closed(found[1].replace("}", "")):
        return None
    is_statement = not found[2].startswith(("return", "throw")) and any(kind.match(found[2]) for kind in (CALL, ASSIGNMENT, STEP_ALONE))
    return (found.start(2), found.end(2)) if is_statement else None


def switched(change, number, begins, ends):
    """The line with both texts, or None. `begins` and `ends`: the line begins and ends an expression, as far as those beside it tell."""
    before, after = change.before, change.after
    code = without_texts(before).rstrip("\x00 ")
    chosen = f"arena_change({number})"
    start, stop, stop_after = widened(before, after)
    if stop > len(code) or re.match(r"\s*case [^?]*:$|BUILTIN", code[:code.find(": ", stop) + 1] or code):
        return None
    old, new = before[start:stop], after[start:stop_after]
    constant = CONSTANT.match(code)

    def finished(line):
        if not constant:
            return line
        words = constant[2] if "static" in constant[2] or "inline" in constant[2] else ""
        if "static" in words and change.file.endswith(".h") and "inline" not in words:
            words += "inline "
        return constant[1] + words + "const " + line[constant.end():]

    if TOKEN.fullmatch(old) and (re.match(r"[\d.]", old) or old in ("true", "false")):
        if re.search(r"p[-+]$", before[:start]):
            return None  # the exponent of a hexadecimal number
        if LENGTH.search(code[:start]) and not KEYWORD.search(code[:start]):
            return None
        return finished(f"{before[:start]}({chosen} ? {new} : {old}){before[stop:]}")
    statement = as_statement(code, begins)
    if after[differing(before, after)[0]:].startswith("{}"):
        if not statement:
            return None
        begin, end = statement
        return f"{before[:begin]}{{ if (!{chosen}) {before[begin:end]} }}{before[end:]}"
    operator = BINARY.search(before[:stop] + " ", start) if old in PRECEDENCE else None
    strength = STEPS if old in ("++", "--") else PRECEDENCE[old] if operator else 1
    strength = min(strength, PRECEDENCE.get(new, strength))
    in_statement = statement and statement[0] <= start
    if strength > 0 or not in_statement:
        bounds = operand_bounds(code, start, stop, strength)
        if bounds:
            left, right = bounds
            left += len(before[left:]) - len(before[left:].lstrip())
            right = left + len(before[left:right].rstrip())
            inside = before[left:right]
            # At an edge of the line it must be known that nothing of the expression stands beyond.
            whole = (left > len(before) - len(before.lstrip()) or begins) and (right < len(code) or ends)
            declares = left == len(before) - len(before.lstrip()) and not re.match(r"[(!]", inside) and re.match(r"[\w:<>*&, ]+ [\w]+$", inside)
            if whole and inside and not declares and closed(inside):
                changed = before[left:start] + new + before[stop:right]
                return finished(f"{before[:left]}({chosen} ? ({changed}) : ({inside})){before[right:]}")
    if in_statement and not constant:
        begin, end = statement
        changed = after[begin:len(after) - (len(before) - end)]
        return f"{before[:begin]}{{ if ({chosen}) {changed} else {before[begin:end]} }}{before[end:]}"
    return None


def switch_lines(text, changes):
    """The text with all changes that can be switched, and their numbers. `changes` has (number, change) of this file; one a line."""
    lines = text.split("\n")
    codes = [line.rstrip("\x00 ") for line in without_texts(text).split("\n")]
    taken, done = set(), []
    for number, change in changes:
        at = change.line - 1
        if at in taken or lines[at] != change.before:
            continue
        above = next((code for code in reversed(codes[:at]) if code), ";")
        below = next((code for code in codes[at + 1:] if code), ";").lstrip()
        last = codes[at].split(" ")[-1]
        begins = above[-1] in ";{}(,:=)" or above.split(" ")[-1] in ("&&", "||", "?", "return") or above.lstrip().startswith("#")
        ends = last in ("&&", "||", "?", "{") or codes[at][-1] in ";,{" or below[:1] in ("?", ":", ")")
        line = switched(change, number, begins, ends)
        if line is not None:
            lines[at] = line
            taken.add(at)
            done.append(number)
    return "\n".join(lines), done
