"""Where a source can be changed, and how: each change is a choice that the running program makes.

The sources are formatted, which tells a comparison (" < ") from the bracket of a template ("<").
"""

import dataclasses
import re

OPPOSITES = {"==": "!=", "<=": "<", ">=": ">", "&&": "||", "++": "--", "+=": "-=", "+": "-", "true": "false"}
OPPOSITES |= {other: one for one, other in OPPOSITES.items()}
BY_STRENGTH = ["||"], ["&&"], ["|"], ["^"], ["&"], ["==", "!="], ["<", ">", "<=", ">="], ["+", "-"], ["*", "/", "%"]
STRENGTH = {operator: strength for strength, operators in enumerate(BY_STRENGTH) for operator in operators}
ENDS = {",", ";", "?", ":", "=", "+=", "-=", "*=", "/=", "|=", "&=", "<<", ">>", "return", "case", "throw", "else"}
OPEN, CLOSE = {"(", "[", "{", "t<"}, {")", "]", "}", "t>"}

TOKEN = re.compile(r"\w+|::|->|\+\+|--|(?<=\s)(?:<<=?|>>=?|<=?|>=?)|[=!+\-*/%&|^]=|&&|\|\||\S")
NO_CODE = re.compile(r'(?P<text>R"\((?:.|\n)*?\)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\')|//[^\n]*|/\*.*?\*/'
                     r"|^\s*#[^\n]*|\b(?:static_assert|template|operator)\b[^\n]*", re.S | re.M)
VALUE = re.compile(r"(?<![\w.])\d+(?![\w.'])|\b(?:true|false)\b")
STEP = re.compile(r"(?P<ahead>\+\+|--)[\w.\->\[\]]+|[\w.\->\[\]]+?(?P<behind>\+\+|--)(?!\w)")
ADDITION = re.compile(r"[\w.\->\[\]]+ (?P<sign>[-+]=) [^;]*(?=;)")
CONSTANT = re.compile(r"constexpr [^;()]*=[^;]*")
CONDITION = re.compile(r"\b(?:if|while) \(")
STATEMENT = re.compile(r"(?<=[;{})]\n)[ \t]+((?!return\b|throw\b|case\b|break\b|using\b|else\b)"
                       r"[\w:.\->\[\]()*]+(?:\([^;{}]*\)| [-+|&]?= [^;{}]*);)$", re.M)


@dataclasses.dataclass
class Change:
    file: str
    start: int  # offsets into the source of what is written anew
    end: int
    lines: range
    old: str
    new: str
    text: str  # what is written anew, with @ for the number of the change

    def overlaps(self, other):
        return self.file == other.file and self.start < other.end and other.start < self.end


def blanked(source):
    """The source with texts made words and comments made blank, place for place."""
    return NO_CODE.sub(lambda found: re.sub(r"[^\n]", "S" if found.group("text") else " ", found.group()), source)


def end_of_operand(tokens, index, step, weakest):
    """The last token of the operand beside the one at `index`, to the left or right; None without one."""
    depth, last = 0, None
    index += step
    while 0 <= index < len(tokens):
        token = tokens[index][0]
        depth += step * ((token in OPEN) - (token in CLOSE))
        weaker = STRENGTH.get(token, weakest) < weakest and last is not None  # the first is a sign
        if depth < 0 or depth == 0 and (token in ENDS or weaker):
            break
        last = index
        index += step
    return last


def operations(code):
    """(from, to, from and to of the operator) of each operation on two operands."""
    tokens = [("t" * (found.group() in "<>" and not code[found.start() - 1].isspace()) + found.group(), *found.span())
              for found in TOKEN.finditer(code)]
    for index, (token, start, end) in enumerate(tokens):
        if token in STRENGTH and token in OPPOSITES and code[start - 1].isspace() and code[end].isspace():
            left = end_of_operand(tokens, index, -1, STRENGTH[token])
            right = end_of_operand(tokens, index, 1, STRENGTH[token] + 1)
            if left is not None and right is not None:
                yield tokens[left][1], tokens[right][2], start, end


def choices(code):
    """(from, to, from and to of what differs, its other text) of each expression that can be another one."""
    for start, end, *operator in operations(code):
        other = OPPOSITES[code[slice(*operator)]]
        if other != "-" or not re.search(r"\bSS", code[start:end]):  # texts can be added only
            yield start, end, *operator, other
    for found in VALUE.finditer(code):
        yield *found.span(), *found.span(), OPPOSITES.get(found.group()) or str(int(found.group()) + 1)
    for pattern in STEP, ADDITION:
        for found in pattern.finditer(code):
            yield *found.span(), *found.span(found.lastgroup), OPPOSITES[found.group(found.lastgroup)]


def closing_bracket(code, start):
    depth = 1
    for found in re.compile(r"[()]").finditer(code, start):
        depth += 1 if found.group() == "(" else -1
        if depth == 0:
            return found.start()
    return start


def changes(file, source):
    """Every change of a source."""
    code = blanked(source)

    def change(start, end, new, text):
        old = source[start:end]
        lines = range(source.count("\n", 0, start) + 1, source.count("\n", 0, end) + 2)
        constant = code.rfind("constexpr ", 0, start)
        if constant >= 0 and CONSTANT.fullmatch(code, constant, start):
            # What the running program chooses is no constant to the compiler.
            text, start = "const " + source[constant + len("constexpr "):start] + text, constant
        return Change(file, start, end, lines, old, new, text)

    for start, end, first, last, other in choices(code):
        old, new = source[start:end], source[start:first] + other + source[last:end]
        if "//" not in old:
            yield change(start, end, new, f"(mutants::on(@) ? ({new})".replace("\n", " ") + f" : ({old}))")
    for found in CONDITION.finditer(code):
        start, end = found.end(), closing_bracket(code, found.end())
        old = source[start:end]
        yield change(start, end, f"!({old})", f"mutants::on(@) != static_cast<bool>({old})")
    for found in STATEMENT.finditer(code):
        start, end = found.span(1)
        yield change(start, end, ";", "{ if (!mutants::on(@)) { " + source[start:end] + " } }")
