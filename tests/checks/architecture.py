#!/usr/bin/env python3
"""Checks the architecture: include rules, what the program may use, and no leftovers.

Prints each violation as FILE:LINE: MESSAGE and exits with 1 if there are any. An argument names another tree to check.
"""

import pathlib
import re
import sys

# From the bottom up: a room may include itself and those before it.
ROOMS = ["base", "text", "settings", "metrics", "history", "graph", "tray", "hardware", "update", "dialog", "app"]

# The texts, the settings and the application belong to the UI thread. All of the update room may run on the worker or
# on the download thread and must not get at them, except for these files, which only the UI thread calls.
BACKGROUND_ROOM = "update"
UI_THREAD_FILES = {"install_id_win32", "self_replacer_win32", "update_dialog_win32", "update_texts"}
UI_THREAD_ROOMS = {"settings", "dialog", "app"}
UI_THREAD_HEADERS = {"text/translation.h"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')

# Streams, regular expressions and std::filesystem pull in the locale machinery, which makes the program several times
# larger.
HEAVY_HEADERS = {
    "iostream", "istream", "ostream", "sstream", "fstream", "iomanip", "locale", "regex", "format", "filesystem",
}

# A call of the ANSI variant of a Win32 function.
NARROW_CALL = re.compile(r"\b(?!LANG)[A-Z][A-Za-z]*[a-z]A\(")

# A function that the system calls, from its name to the end of its head.
CALLBACK = re.compile(r"\bCALLBACK\s+([\w:]+)\([^;{]*")

MARKERS = re.compile(
    r"\b(TODO|FIXME|XXX|HACK|WIP|TBD)\b|\bGTEST_SKIP\b|\bDISABLED_\w|\bunittest\.(skip|expectedFailure)|<<<<<<<|>>>>>>>"
)
MARKED_FOLDERS = ["src", "tests", "scripts", "res", "cmake", ".ci", "docs"]
TEXT_SUFFIXES = {"", ".h", ".cpp", ".c", ".py", ".sh", ".txt", ".cmake", ".rc", ".md", ".svg", ".in", ".def", ".yml"}


def lines_of(path, errors="strict"):
    return enumerate(path.read_text(encoding="utf-8", errors=errors).splitlines(), start=1)


def is_platform(path):
    return path.stem.endswith("_win32")


def check_first_include(src, path):
    """A header that some file includes first is proven self-contained. So each file begins with its own header or, if
    it is part of something larger and has none, with that one's."""
    includes = (INCLUDE.match(line) for _, line in lines_of(path))
    quote, name = next((match.groups() for match in includes if match), ("", ""))
    own = path.with_suffix(".h")
    if own.is_file() and name != str(own.relative_to(src)):
        return [f"{path}:1: the first include is not its own header"]
    if not own.is_file() and (quote != '"' or pathlib.Path(name).parts[0] != path.relative_to(src).parts[0]):
        return [f"{path}:1: the first include is not a header of its own room"]
    return []


def check_includes(src, path):
    """Checks the include rules of one file; returns the project files that it includes."""
    breaches, targets = [], []
    room = path.relative_to(src).parts[0]
    if path.suffix == ".cpp":
        breaches += check_first_include(src, path)
    for number, line in lines_of(path):
        match = INCLUDE.match(line)
        if match is None:
            continue
        quote, name = match.groups()
        where = f"{path}:{number}: "
        if quote == "<":
            # Only the standard library's headers have no suffix.
            if "." in name and not is_platform(path):
                breaches.append(where + f"a pure file includes the platform header <{name}>")
            if name in HEAVY_HEADERS:
                breaches.append(where + f"<{name}> makes the program several times as large")
            continue
        target = src / name
        if not target.is_file():
            breaches.append(where + f'"{name}" is no file below src')
            continue
        targets.append(target)
        if is_platform(target) and not is_platform(path):
            breaches.append(where + f'a pure file includes the platform header "{name}"')
        other = target.relative_to(src).parts[0]
        if ROOMS.index(other) > ROOMS.index(room):
            breaches.append(where + f'room "{room}" includes from room "{other}", which stands above it')
    return breaches, targets


def check_callbacks(path):
    """An exception that left a callback would meet the system's frames: there it is swallowed, or unwinds to a place that
    nobody has foreseen. So each callback ends the program instead."""
    text = path.read_text(encoding="utf-8")
    return [
        f"{path}:{text.count(chr(10), 0, head.start()) + 1}: {head[1]} must be noexcept, as the system calls it"
        for head in CALLBACK.finditer(text)
        if "noexcept" not in head[0]
    ]


def find_circle(graph):
    """A cycle of files that include each other, as a list whose ends are the same; empty if there is none."""
    finished = set()

    def visit(path, road):
        if path in road:
            return road[road.index(path) :] + [path]
        if path in finished:
            return []
        for target in graph[path]:
            if circle := visit(target, road + [path]):
                return circle
        finished.add(path)
        return []

    for path in graph:
        if circle := visit(path, []):
            return circle
    return []


def is_for_the_ui_thread(src, path):
    room = path.relative_to(src).parts[0]
    return (
        room in UI_THREAD_ROOMS
        or str(path.relative_to(src)) in UI_THREAD_HEADERS
        or (room == BACKGROUND_ROOM and path.stem in UI_THREAD_FILES)
    )


def find_road(graph, start, is_goal):
    """The shortest way from a file to one that fulfils `is_goal`, over what each includes and, because a header's
    functions may be called, over what each header's source includes; empty if there is none."""
    roads, reached = [[start]], {start}
    for road in roads:
        if is_goal(road[-1]):
            return road
        for target in [*graph[road[-1]], road[-1].with_suffix(".cpp")]:
            if target in graph and target not in reached:
                reached.add(target)
                roads.append(road + [target])
    return []


def check_background(src, graph):
    background = {
        path
        for path in graph
        if path.relative_to(src).parts[0] == BACKGROUND_ROOM and not is_for_the_ui_thread(src, path)
    }
    breaches = []
    for path in sorted(background):
        road = find_road(graph, path, lambda target: is_for_the_ui_thread(src, target))
        if road and not background.intersection(road[1:]):  # else another file is to blame
            names = " -> ".join(str(step.relative_to(src)) for step in road)
            breaches.append(f"{path}:1: background code reaches what belongs to the UI thread: {names}")
    return breaches


def check_sources(root):
    src = root / "src"
    breaches, graph = [], {}
    for path in sorted(src.rglob("*")):
        if path.suffix not in {".h", ".cpp"}:
            continue
        if path.relative_to(src).parts[0] not in ROOMS:
            breaches.append(f"{path}:1: this file stands in none of the rooms")
            continue
        found, graph[path] = check_includes(src, path)
        breaches += found + check_callbacks(path)
        for number, line in lines_of(path):
            if NARROW_CALL.search(line):
                breaches.append(f"{path}:{number}: only the W functions are called")
    if circle := find_circle(graph):
        names = " -> ".join(str(path.relative_to(src)) for path in circle)
        breaches.append(f"{circle[0]}:1: a circle of includes: {names}")
    return breaches + check_background(src, graph)


def check_markers(root):
    breaches = []
    for folder in MARKED_FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if not path.is_file() or path.suffix not in TEXT_SUFFIXES or path.resolve() == pathlib.Path(__file__).resolve():
                continue
            for number, line in lines_of(path, errors="replace"):  # test data may be binary
                if MARKERS.search(line):
                    breaches.append(f"{path}:{number}: left over: {line.strip()}")
    return breaches


def main():
    default = pathlib.Path(__file__).resolve().parents[2]
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else default
    breaches = check_sources(root) + check_markers(root)
    print("\n".join(breaches) or "the house is in order")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
