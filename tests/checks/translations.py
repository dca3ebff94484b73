#!/usr/bin/env python3
"""Every text that the program shows has a row in the translation table, and finished features use all of theirs.

A text need not be in the call of Tr itself: it may come from a table. So every wide literal in src counts as a text,
unless it looks like an internal name (a key, a path, a class name, a debug line) or is listed below; and so do captions
and controls of the dialog templates, which are translated when a dialog opens. Prints each
violation as FILE:LINE: MESSAGE and exits with 1 if there are any; then the rows that wait for their feature. An
argument names another tree to check.
"""

import pathlib
import re
import sys

# Texts that are the same in both languages, and Windows names that are plain words.
SAME_IN_BOTH = {
    "CPU: ", " kbps", " Mbps", " Gbps", " GHz base", "FB-DIMM", "Español", "English", "kestrane - CPU", "General", "Normal",
    "Windows",
}
NAMES_OF_WINDOWS = {"Progman", "Segoe UI", "Segoe UI Variable Display Semibold"}

# Before the titles of the settings dialog's tabs, and skipped before they are translated.
TITLE_INDENT = " " * 7

# Texts have a word of at least three letters; units and marks do not.
WORD = re.compile(r"[^\W\d_]{3}")
# Settings keys and window classes; words with an inner capital, such as SATA or TaskbarCreated, or with a dot; paths
# and anything with an underscore; switches; addresses, paths on a server and user agents; debug lines, which are always
# Spanish.
MACHINE_WORD = re.compile(
    r"[a-z0-9._-]+|~?[A-Za-z0-9]+[A-Z][A-Za-z0-9]*|\w+(?:\.\w+)+|.*[\\_].*"
    r'|(?:" )?--[a-z -]+|(?:https:/)?/.*|.*\bkestrane/|Mozilla/.*|kestrane: .*',
    re.DOTALL | re.ASCII,
)

# The table's groups (named by the comment above each) whose features are finished: all their rows must be in use.
FINISHED_GROUPS = {"Tray menu", "Tooltips", "Graphs", "Updates"}

TOKEN = re.compile(
    r'(?P<comment>//[^\n]*|/\*.*?\*/)|(?P<wide>L"(?:[^"\\\n]|\\.)*")|(?P<narrow>"(?:[^"\\\n]|\\.)*")'
    r"|(?P<character>L?'(?:[^'\\\n]|\\.)+')|(?P<call>\b(?:Tr|FormatText)\s*\()|(?P<other>\w+|\S)",
    re.DOTALL,
)
# In a resource script. A quote within a text is doubled.
TEMPLATE_TEXT = re.compile(r'\s*(?:CAPTION|[CLR]TEXT|(?:DEF)?PUSHBUTTON|GROUPBOX|CONTROL)\s+"((?:[^"]|"")*)"')
ESCAPE = re.compile(r'\\(?:u([0-9A-Fa-f]{4})|([n"\\t]))')


def tokens_of(text):
    """Kind, text and line of each token, without preprocessor lines."""
    text = re.sub(r"^[ \t]*#[^\n]*", "", text, flags=re.MULTILINE)
    for match in TOKEN.finditer(text):
        yield match.lastgroup, match.group(), text.count("\n", 0, match.start()) + 1


def plain(literal):
    """A literal's value as the program sees it."""
    signs = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}
    content = literal[literal.index('"') + 1 : -1]
    return ESCAPE.sub(lambda match: chr(int(match[1], 16)) if match[1] else signs[match[2]], content)


def literals_of(text):
    """Each wide literal, its parts joined, with its line and whether it is an argument of Tr or FormatText."""
    found, depth, first_arguments = [], 0, []
    joined = False
    for kind, token, line in tokens_of(text):
        if kind == "comment":
            continue
        if kind in ("wide", "narrow") and joined:
            found[-1][0] += plain(token)
            continue
        joined = kind == "wide"
        if kind == "wide":
            found.append([plain(token), line, bool(first_arguments)])
        if kind == "call" or token in ("(", "{", "["):
            depth += 1
        elif token in (")", "}", "]"):
            depth -= 1
        if kind == "call":
            first_arguments.append(depth)
        elif first_arguments and (depth < first_arguments[-1] or (depth == first_arguments[-1] and token == ",")):
            first_arguments.pop()
    return found


def texts_of_templates(root):
    """Each text of a dialog template in res, with its file and line."""
    for path in sorted((root / "res").glob("*.rc")):
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), start=1):
            if match := TEMPLATE_TEXT.match(line):
                yield path, number, match[1].replace('""', '"')


def read_table(path):
    """The Spanish text of each row, with line and group."""
    group, rows = "", {}
    pending = []
    for kind, token, line in tokens_of(path.read_text(encoding="utf-8")):
        if kind == "comment" and token.endswith("."):
            group = token.strip("/ .")
        elif token == "{":
            pending = []
        elif kind == "wide":
            pending.append((plain(token), line))
        elif token == "," and pending:
            text = "".join(part for part, _ in pending)
            rows.setdefault(text, (pending[0][1], group))
            pending = []
        elif token == "}":
            pending = []
    return rows


def is_shown(text):
    return bool(WORD.search(text)) and not MACHINE_WORD.fullmatch(text) and text not in SAME_IN_BOTH | NAMES_OF_WINDOWS


def shown(text):
    """On one line, as in the source."""
    return '"' + text.replace("\n", "\\n") + '"'


def check(root):
    src = root / "src"
    table = next(src.rglob("translation_table.cpp"))
    rows = read_table(table)
    breaches, used = [], set()
    for path in sorted(src.rglob("*")):
        if path.suffix not in {".h", ".cpp"} or path == table:
            continue
        for text, line, translated in literals_of(path.read_text(encoding="utf-8")):
            text = text.removeprefix(TITLE_INDENT)
            if text in rows:
                used.add(text)
            elif translated or is_shown(text):
                breaches.append(f"{path}:{line}: no row has {shown(text)}; if nobody reads it, name it here")
    for path, line, text in texts_of_templates(root):
        used.add(text)
        if text not in rows and is_shown(text):
            breaches.append(f"{path}:{line}: no row has {shown(text)}")
    waiting = []
    for text, (line, group) in rows.items():
        if text not in used and group in FINISHED_GROUPS:
            breaches.append(f"{table}:{line}: nobody shows {shown(text)}")
        elif text not in used:
            waiting.append(f"{table}:{line}: waits for its feature: {shown(text)}")
    return rows, breaches, waiting


def main():
    default = pathlib.Path(__file__).resolve().parents[2]
    rows, breaches, waiting = check(pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else default)
    if not rows:
        breaches.append("the translation table cannot be read")
    print("\n".join(breaches + waiting))
    print(f"rows: {len(rows)}, waiting: {len(waiting)}, breaches: {len(breaches)}")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
