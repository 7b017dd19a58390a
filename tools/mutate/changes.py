"""Which one-line changes there are: every place of the sources that a change can be made at, and an order of them for each seed."""
import hashlib
import random
import re
from decimal import Decimal
from pathlib import Path
from typing import NamedTuple

FOLDERS = ("runtime", "engine", "toolkit", "game")
# Built for another system only.
ELSEWHERE = re.compile(r"d3d11|windows|standard_streams")

OPERATORS = {
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||",
    "||": "&&", "&": "|", "|": "&", "^": "&", "<<": ">>", ">>": "<<", "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "|=": "&=", "&=": "|=",
}
WORDS = {
    "true": "false", "false": "true", "min": "max", "max": "min", "sin": "cos", "cos": "sin", "floor": "ceil", "ceil": "floor",
    "lengthdir_x": "lengthdir_y", "lengthdir_y": "lengthdir_x", "front": "back", "back": "front", "any_of": "all_of", "all_of": "any_of",
    "lower_bound": "upper_bound", "upper_bound": "lower_bound",
}
NUMBER = re.compile(r"(?<![\w.'])(\d[\d']*(?:\.\d+)?|\.\d+|0x[0-9a-fA-F]+)([fFuUlL]*)(?![\w.'])")
# The formatter sets operators of two operands between spaces, template brackets and references never: ` < ` compares.
BINARY = re.compile(r"(?<= )(?!&& (?:\{|=|;|const|noexcept))(\+|-|\*|/|%|<=?|>=?|==|!=|&&?|\|\|?|\^|<<|>>|[-+*/|&]=)(?= |$)")
STEP = re.compile(r"\+\+|--")
UNARY = re.compile(r"(?<=[(\s,!])[!-](?=[\w(])|(?<=^)[!-](?=[\w(])")
STATEMENT = re.compile(r"^(?P<before>\s*(?:(?:\} )?else )?(?:if \((?P<condition>.*?)\) |else )?)(?P<statement>[A-Za-z_*(][^;{}]*;)$")
CALL = re.compile(r"^[\w:.\[\]]+(?:->[\w:.\[\]]+)*(?:<[\w:, ]+>)?\(.*\);$")
ASSIGNMENT = re.compile(r"^\*?[\w:.\[\]()]+(?:->[\w:.\[\]()]+)* (?:[-+*/%|&^]|<<|>>)?= .*;$")
LEFT_ALONE = re.compile(
    r"^\s*(#|using |virtual |namespace |template |static_assert|assert\(|ASSERT|friend |extern |class |enum |return messages::)|\b(static_assert|assert|log_\w+|message_\w+)\("
)


class Change(NamedTuple):
    file: str
    line: int  # from 1
    before: str
    after: str

    def key(self):
        return (self.file, self.before.strip(), self.after.strip())


def without_texts(source):
    """The same number of characters in the same lines, with blanks for comments, texts and characters."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|(?<![0-9a-zA-Z_])\'(?:\\.|[^\'\\\n])+\'', re.S)
    return pattern.sub(lambda found: re.sub(r"[^\n]", "\x00", found.group()), source)


def neighbours(text):
    """The numbers beside a number, in its own notation."""
    if text.startswith("0x"):
        return [f"0x{int(text, 16) + 1:x}"]
    value = Decimal(text.replace("'", ""))
    return [str(value + 1)] + ([str(value - 1)] if value >= 1 else [])


def closed(text):
    depth = 0
    for letter in text:
        depth += (letter in "([{") - (letter in ")]}")
        if depth < 0:
            return False
    return depth == 0


def changes_of_line(line, code):
    """What the line may become; `code` is the line with its texts blanked."""
    places = []  # from, to, by what
    for found in BINARY.finditer(code):
        places.append((found.start(), found.end(), OPERATORS[found.group()]))
    for found in STEP.finditer(code):
        places.append((found.start(), found.end(), "--" if found.group() == "++" else "++"))
    for found in UNARY.finditer(code):
        places.append((found.start(), found.end(), ""))
    for found in NUMBER.finditer(code):
        for value in neighbours(found.group(1)):
            places.append((found.start(1), found.end(1), value))
    for found in re.finditer(r"\b[a-z_]+\b", code):
        if found.group() in WORDS:
            places.append((found.start(), found.end(), WORDS[found.group()]))
    found = STATEMENT.match(code)
    if found and code[0] == " " and closed(found["statement"]) and not re.match(r"(return|throw|delete|else|if|for|while|case)\b", found["statement"]):
        if CALL.match(found["statement"]) or ASSIGNMENT.match(found["statement"]):
            places.append((found.start("statement"), found.end("statement"), "{}"))
    return [line[:start] + by + line[end:] for start, end, by in places]


def places_of(source):
    """(number of the line from 1, the line, what it may become) of every line that holds code."""
    lines, codes = source.split("\n"), without_texts(source).split("\n")
    table, continued = 0, False
    begun = False  # the line before left a statement open: what follows is no statement of its own
    for number, (line, code) in enumerate(zip(lines, codes), 1):
        trimmed = code.rstrip("\x00 ")
        macro = continued or trimmed.lstrip().startswith("#")
        continued = macro and trimmed.endswith("\\")
        if not macro and re.search(r"\bauto fields\(\)", code) or table:
            table += code.count("{") - code.count("}")
            continue
        if macro:
            continue
        if trimmed and not LEFT_ALONE.search(code):
            found = changes_of_line(line, trimmed)
            if begun:
                found = [text for text in found if text.strip() != "{}"]
            if found:
                yield number, line, found
        if trimmed:
            begun = trimmed[-1] not in ";{}:)"


def sources(root):
    for folder in FOLDERS:
        for path in sorted(Path(root, folder).rglob("*")):
            if path.suffix in (".cpp", ".h") and not ELSEWHERE.search(str(path.relative_to(root))):
                yield path.relative_to(root).as_posix()


def draw(root, seed, pattern=None):
    """All lines with code in the order of the seed, each with one change of it. What is edited elsewhere does not alter the order of the others."""
    drawn = []
    for file in sources(root):
        if pattern and not Path(file).match(pattern):
            continue
        times = {}
        for number, line, found in places_of(Path(root, file).read_text(encoding="utf-8")):
            times[line] = times.get(line, 0) + 1
            order = hashlib.sha256(f"{seed}\n{file}\n{line}\n{times[line]}".encode()).hexdigest()
            drawn.append((order, Change(file, number, line, random.Random(order).choice(found))))
    return [change for _, change in sorted(drawn)]
