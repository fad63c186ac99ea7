"""The mutants of a C++ source: what each changes, told by the text before and after.

A mutant is known by its text, not by its place: it keeps its identifier when lines move.
"""

import dataclasses
import hashlib
import random
import re


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    kind: str
    begin: int  # the part of the file that `new` takes the place of
    end: int
    new: str
    line: int
    before: str  # the lines that change, as one
    after: str
    occurrence: int  # from 1, among the mutants of the file with the same change

    @property
    def id(self):
        key = "\0".join((self.file, self.before, self.after, str(self.occurrence)))
        return hashlib.sha1(key.encode()).hexdigest()[:8]

    def applied_to(self, text):
        return text[:self.begin] + self.new + text[self.end:]


def blanked(text):
    return re.sub(r"[^\n]", " ", text)


TOKENS = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)|(?P<preprocessor>^[ ]*\#(?:[^\n]*\\\n)*[^\n]*)"""
    r"""|"(?P<string>(?:\\.|[^"\\\n])*)"|'(?P<character>(?:\\.|[^'\\\n])*)'""",
    re.DOTALL | re.MULTILINE)
NOT_RUN = re.compile(
    r"static_assert\s*\([^;]*;|\bQ_(?:OBJECT|DECLARE_METATYPE)\b[^\n]*|\btemplate\s*<[^\n]*>$"
    r"|^(?:using|typedef|extern)\b[^;]*;|\[\[[^\]]*\]\]|(?<=\)) (?:const )?= 0;", re.MULTILINE)


def code_of(text):
    """The text with everything blank that is not run: same length, same lines."""
    def blank_token(match):
        for name in ("string", "character"):
            if match[name] is not None:
                return match[0][0] + " " * len(match[name]) + match[0][-1]
        return blanked(match[0])

    code = TOKENS.sub(blank_token, text)
    return NOT_RUN.sub(lambda match: blanked(match[0]), code)


def closing(code, opening):
    """The place of the bracket that closes the one at `opening`."""
    depth = 0
    for at in range(opening, len(code)):
        depth += {"(": 1, ")": -1}.get(code[at], 0)
        if depth == 0:
            return at
    return len(code) - 1


BINARY = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], ">": [">=", "<="], "<=": ["<", ">="],
    ">=": [">", "<="], "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"],
    "%": ["*"], "|": ["&"], "+=": ["-="], "-=": ["+="], "|=": ["&="],
}
BINARY_OPERATOR = re.compile(r"(?<=[\w)\]>] )(%s)(?=[ \n])" % "|".join(
    re.escape(operator) for operator in sorted(BINARY, key=len, reverse=True)))
WORDS = {
    "true": "false", "false": "true", "qMin": "qMax", "qMax": "qMin", "max": "min", "min": "max",
    "LOG_LEVEL_ERROR": "LOG_LEVEL_INFO", "LOG_LEVEL_INFO": "LOG_LEVEL_ERROR",
    "critical": "warning", "begin": "end", "front": "back", "back": "front",
}
WORD = re.compile(r"\b(?:%s)\b(?!:)" % "|".join(WORDS))
INTEGER = re.compile(r"(?<![\w.])(?:0x[0-9A-Fa-f]+|\d+)(?=[uUlL]*(?![\w.]))")
FLOAT = re.compile(r"(?<![\w.])\d+\.\d+(?=F?\b)")


def operators(code):
    for match in BINARY_OPERATOR.finditer(code):
        for new in BINARY[match[1]]:
            yield "operator", match.start(), match.end(), new
    for match in re.finditer(r"\+\+|--", code):
        yield "operator", match.start(), match.end(), "--" if match[0] == "++" else "++"
    for match in re.finditer(r"!(?!=)", code):
        yield "dropped !", match.start(), match.end(), ""
    for match in re.finditer(r"(?:(?<=[(,=?:<>&|{\[] )|(?<=[(\[{])|(?<=return ))-(?=[\w(])", code):
        yield "sign", match.start(), match.end(), ""


def constants(code):
    for match in INTEGER.finditer(code):
        value = int(match[0], 0)
        form = "0x{:X}" if match[0].startswith("0x") else "{}"
        others = [value + 1, value - 1] if 0 < value < 0xFFFFFFFF else [abs(value - 1)]
        for other in others:
            yield "constant", match.start(), match.end(), form.format(other)
    for match in FLOAT.finditer(code):
        yield "constant", match.start(), match.end(), str(float(match[0]) + 1)
    for match in WORD.finditer(code):
        yield "constant", match.start(), match.end(), WORDS[match[0]]


def conditions(code):
    for match in re.finditer(r"\b(?:if|while) \(", code):
        begin = match.end() - 1
        end = closing(code, begin) + 1
        condition = code[begin:end]
        is_simple = "&&" not in condition and "||" not in condition
        if is_simple and re.search(r"!|==", condition):
            continue  # the operator's mutant is the same
        if not re.search(r"\w[*& ]+\w+ = ", condition):  # a declaration
            yield "negated condition", begin, end, f"(!{condition})"
    for match in re.finditer(r"(?<= )\?(?= )", code):
        yield "negated condition", match.start(), match.end(), "|| true ?"
        yield "negated condition", match.start(), match.end(), "&& false ?"


CONTROL = re.compile(r"\s*(?:else\b\s*|(?:if|for|while|switch) (?=\())")
PLACE = r"\*?[A-Za-z_]\w*(?:<[^;()]*>)?(?:::\w+|\.\w+|->\w+|\[[^\]]*\]|\([^;]*?\))*"
DROPPED = re.compile(
    rf"(?:Q_EMIT )?{PLACE}\(.*\)$|{PLACE} (?:[-+|&]?=|<<|>>) |(?:\+\+|--)|break$", re.DOTALL)
RETURNED = re.compile(r"return (?!(?:\{\}|false|true|0|nullptr|QString\(\))$)", re.DOTALL)


def statements(code):
    """Where the statements are that end with a semicolon, without what controls them."""
    outer = []
    depth, begin = 0, 0
    for at, character in enumerate(code):
        if character == "(":
            depth += 1
        elif character == ")":
            depth -= 1
        elif character == "{":
            outer.append((depth, begin))
            depth, begin = 0, at + 1
        elif character == "}" and outer:
            depth, begin = outer.pop()
            if depth == 0 and not re.match(r"\s*[;,.)]", code[at + 1:at + 40]):
                begin = at + 1
        elif character == ":" and depth == 0 and re.match(
                r"\s*(?:case\b|default\b|public\b|protected\b|private\b)[^;]*$", code[begin:at]):
            if ":" not in (code[at - 1], code[at + 1]):
                begin = at + 1
        elif character == ";" and depth == 0:
            start = begin
            while match := CONTROL.match(code, start):
                start = match.end()
                if code[start:start + 1] == "(":
                    start = closing(code, start) + 1
            start += len(code[start:at]) - len(code[start:at].lstrip())
            if start < at:
                yield start, at
            begin = at + 1


def dropped_statements(code):
    for begin, end in statements(code):
        statement = code[begin:end]
        if RETURNED.match(statement):
            yield "returned value", begin, end, "return {}"
        elif DROPPED.match(statement):
            yield "dropped statement", begin, end, ""


LOG_CALL = re.compile(r"\bKxSDKCommonLog\s*\(|\.critical\s*\(|\bkModule = ")
STRING = re.compile(r'"((?:\\.|[^"\\\n])*)"')


def log_texts(text, code, seed):
    for match in LOG_CALL.finditer(code):
        end = code.index(";", match.end())
        for string in STRING.finditer(text, match.start(), end):
            places = [at for at in re.finditer(r"%[\dx]?[a-z]|\\.|([A-Za-z,:!()<=])", string[1])
                      if at[1]]
            if places:
                place = random.Random(f"{seed} {string[1]}").choice(places)
                begin = string.start(1) + place.start()
                new = "y" if place[0] == "x" else "x"
                yield "log text", begin, begin + 1, new


def without_enumerators(code):
    """Of a header these are declarations, of which all that includes it would be made anew."""
    return re.sub(r"\benum [^{;]*\{[^}]*\}", lambda match: blanked(match[0]), code)


def mutants_of(file, text, seed):
    """All mutants of a file in the order of their places."""
    code = code_of(text)
    if file.endswith(".h"):
        code = without_enumerators(code)
    found = [*operators(code), *constants(code), *conditions(code), *dropped_statements(code),
             *log_texts(text, code, seed)]
    occurrences = {}
    for kind, begin, end, new in sorted(set(found), key=lambda one: (one[1], one[2], one[3])):
        first = text.rfind("\n", 0, begin) + 1
        last = text.find("\n", end)
        before = " ".join(text[first:last].split())
        after = " ".join((text[first:begin] + new + text[end:last]).split())
        occurrence = occurrences[before, after] = occurrences.get((before, after), 0) + 1
        line = text.count("\n", 0, begin) + 1
        yield Mutant(file, kind, begin, end, new, line, before, after, occurrence)
