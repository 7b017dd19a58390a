#!/usr/bin/env python3
"""check_chance.py ROOT: no expression draws twice from a random generator in an order that the compiler chooses: among the arguments of one
call, or on both sides of one operator. Two compilers would play two games. Draws in braces, in a chain of calls, or around && || ?: << and =
have an order; what a draw is given is worked out before it.

A draw is a call of one of DRAWS, of a function that draws (scripts and methods of all games; elsewhere functions of the same file), or the
making of an instance, whose Create event may."""
import os
import re
import sys

SCRIPTS = ("game", "toolkit", "samples")
OTHERS = ("runtime", "engine", "apps")
DRAWS = {"choose", "random", "random_range", "irandom", "irandom_range", "array_shuffle", "ds_list_shuffle", "randomize", "game_random",
         "visual_random", "instance_create_layer", "instance_create_depth"}
KEYWORDS = {"if", "for", "while", "switch", "return", "sizeof", "catch", "alignas", "decltype", "static_assert", "operator", "do", "else"}

TOKEN = re.compile(r"""//[^\n]*|/\*.*?\*/|R"\((?P<raw>.*?)\)"|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])+'|^\s*\#(?:\\\n|[^\n])*|[A-Za-z_]\w*|\d[\w.']*
|->|\+\+|--|&&|\|\||<<=|>>=|<=>|<<|::|[-+*/%&|^=!<>]=|[^\s\w]""", re.S | re.X | re.M)
CLOSES = {"(": ")", "[": "]", "{": "}"}
# What stands on their left is done before what stands on their right, or the other way round.
IN_ORDER = {"&&", "||", "?", ":", "<<", "=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", ";", ",", "return"}
BINARY = {"+", "-", "*", "/", "%", "&", "|", "^", "==", "!=", "<=", ">=", "<", ">", "<=>", "!", "~"}


class Group:
    def __init__(self, opening, line, items):
        self.opening, self.line, self.items = opening, line, items


def parsed(text):
    """The tokens as nested lists: words with their lines, and groups in brackets."""
    outermost = Group("{", 1, [])
    stack, line, at = [outermost], 1, 0
    for found in TOKEN.finditer(text):
        line += text.count("\n", at, found.start())
        at = found.start()
        word = found.group()
        if word.startswith(("//", "/*")) or word.lstrip().startswith("#"):
            continue
        if word[0] in "\"'" or word.startswith('R"'):
            word = '""'
        if word in CLOSES:
            stack.append(Group(word, line, []))
            stack[-2].items.append(stack[-1])
        elif word in CLOSES.values():
            if len(stack) > 1:
                stack.pop()
        else:
            stack[-1].items.append((word, line))
    return outermost


def word_of(item):
    return item[0] if isinstance(item, tuple) else None


def functions(group):
    """(name, body) of everything that looks like a definition: of a function, a script, a method."""
    items = group.items
    for at, item in enumerate(items):
        if not isinstance(item, Group):
            continue
        if item.opening == "{":
            back = at - 1
            while back > 0 and (word_of(items[back]) is not None and word_of(items[back]) not in (";", ":", ",", "=")):
                back -= 1
            name = word_of(items[back - 1]) if back > 0 else None
            if isinstance(items[back], Group) and items[back].opening == "(" and name and re.match(r"[A-Za-z_]", name) and name not in KEYWORDS:
                if name in ("SCRIPT", "NUMBER_SCRIPT", "CONSTRUCTOR", "GLOBAL_SCRIPT"):
                    yield word_of(items[back].items[0]), item
                elif name in ("METHOD", "STATIC_METHOD"):
                    yield word_of(items[back].items[-1]) if len(items[back].items) < 6 else word_of(items[back].items[4]), item
                elif name != "EVENT":
                    yield name, item
        yield from functions(item)


def calls(group):
    """The names of all that is called in a group, by name(...) or object[name](...)."""
    for at, item in enumerate(group.items):
        if not isinstance(item, Group):
            continue
        if item.opening == "(" and at > 0:
            before = group.items[at - 1]
            if isinstance(before, tuple):
                yield before[0]
            elif before.opening == "[" and len(before.items) == 1:
                yield word_of(before.items[0])
        yield from calls(item)


def closure(bodies, drawing):
    """The names that draw, once all that call them are counted in."""
    grows = True
    while grows:
        grows = False
        for name, body in bodies:
            if name not in drawing and any(called in drawing for called in calls(body)):
                drawing.add(name)
                grows = True
    return drawing


class Finder:
    def __init__(self, drawing):
        self.drawing, self.found = drawing, []

    def group_draws(self, group):
        """Whether anything in the group draws; notes what has no order."""
        if group.opening == "(" and not any(word_of(item) == ";" for item in group.items):
            parts = [self.expression_draws(part) for part in self.split(group.items, {","})]
            if sum(parts) > 1:
                self.found.append((group.line, "two arguments of one call draw"))
            return any(parts)
        return any([self.expression_draws(part) for part in self.split(group.items, {",", ";"})])

    @staticmethod
    def split(items, at):
        part = []
        for item in items:
            if word_of(item) in at:
                yield part
                part = []
            else:
                part.append(item)
                # A block or a body ends a statement.
                if isinstance(item, Group) and item.opening == "{" and ";" in at:
                    yield part
                    part = []
        yield part

    def expression_draws(self, items):
        return any([self.ordered_draws(part) for part in self.split(items, IN_ORDER)])

    def ordered_draws(self, items):
        operands = [self.chain_draws(part) for part in self.split(items, BINARY)]
        if sum(operands) > 1:
            self.found.append((self.line_of(items), "both sides of an operator draw"))
        return any(operands)

    @staticmethod
    def line_of(items):
        return items[0].line if isinstance(items[0], Group) else items[0][1]

    def chain_draws(self, items):
        draws = False
        for at, item in enumerate(items):
            if not isinstance(item, Group):
                continue
            before = items[at - 1] if at > 0 else None
            name = before[0] if isinstance(before, tuple) else None
            if isinstance(before, Group) and before.opening == "[" and len(before.items) == 1:
                name = word_of(before.items[0])
            draws = self.group_draws(item) or draws or (item.opening == "(" and name in self.drawing)
        return draws


def sources(root, floors):
    for floor in floors:
        for folder, _, files in os.walk(os.path.join(root, floor)):
            for name in sorted(files):
                if name.endswith((".cpp", ".h")):
                    path = os.path.join(folder, name)
                    yield os.path.relpath(path, root), parsed(open(path, encoding="utf-8").read())


def problems_in(name, tree, drawing):
    finder = Finder(drawing)
    finder.group_draws(tree)
    return [f"{name}:{line}: {what} in an order that is the compiler's" for line, what in sorted(set(finder.found))]


# What the check must find, and what it must leave alone.
SAMPLES = {
    "f(random(1), random(2));": True, "x = irandom(2) + irandom(3);": True, "f(a, g(random(1)), -choose(1, 2));": True,
    "x = random(1) < random(2);": True, "f(helper(), random(1));": True, "a[helper](helper());": False, "x = object[helper]() * helper();": True,
    "f({random(1), random(2)});": False, "const Real a = random(1), b = random(2);": False, "random(random(2));": False,
    "x = random(1) < 1 ? random(2) : random(3);": False, "for (i = random(1); i < random(2); i += random(3)) {}": False,
    "f(random(1)); g(random(2));": False, "if (random(1)) { x = random(2); } else { y = random(3); }": False, "f(\"random(1)\", random(2));": False,
    "a(random(1)).b(random(2));": False, "f(x, y) + random(1); // random(2)": False, "x += random(1) - y * random(2);": True,
}


def main():
    root = sys.argv[1]
    helpers = "Real helper() { return random(1); }\n"
    for sample, has_fault in SAMPLES.items():
        tree = parsed(helpers + "void run() { " + sample + " }")
        drawing = closure(list(functions(tree)), set(DRAWS))
        if bool(problems_in("", tree, drawing)) != has_fault:
            print(f"the check itself is wrong about: {sample}")
            return 1
    scripts = list(sources(root, SCRIPTS))
    drawing = closure([each for _, tree in scripts for each in functions(tree)], set(DRAWS))
    if "--names" in sys.argv:
        print(*sorted(drawing - DRAWS))
    found = [line for name, tree in scripts for line in problems_in(name, tree, drawing)]
    for name, tree in sources(root, OTHERS):
        found += problems_in(name, tree, closure(list(functions(tree)), set(DRAWS)))
    for line in found:
        print(line)
    return 1 if found or not scripts else 0


if __name__ == "__main__":
    sys.exit(main())
