"""The size of kestrane.exe by object file, according to the linker's map."""

import collections
import pathlib
import re

from harness import BUILD, ROOT
from test_executable import SIZE_LIMIT

SECTIONS = (".text", ".rdata", ".data", ".pdata", ".xdata", ".idata", ".rsrc", ".CRT", ".tls", ".ctors", ".dtors")
CONTRIBUTION = re.compile(r"^ (?P<section>\.\S+)?\s+0x(?P<address>[0-9a-f]+)\s+0x(?P<size>[0-9a-f]+)\s+(?P<file>\S.*)$")
SECTION_ALONE = re.compile(r"^ (\.\S+)$")
MEMBER = re.compile(r"([^/]+)\.a\((.+)\)$")

SRC = ROOT / "src"
ROOMS = {source.name + ".obj": source.relative_to(SRC).parts[0] for source in SRC.rglob("*.cpp")}


def contributions(map_text):
    """Pairs of file and number of bytes, for everything in the image."""
    section = None
    for line in map_text.split("Linker script and memory map")[1].splitlines():
        if alone := SECTION_ALONE.match(line):
            section = alone[1]  # a long name has its own line
            continue
        if part := CONTRIBUTION.match(line):
            name = part["section"] or section or ""
            if name.startswith(SECTIONS) and int(part["address"], 16) != 0:
                yield part["file"], int(part["size"], 16)
        section = None


def place(file):
    """The part of the program or of the runtime, and the object file."""
    member = MEMBER.search(file)
    if member is None:
        name = pathlib.Path(file).name
        return ("resources" if name.endswith(".res") else "src/" + ROOMS[name] if name in ROOMS else "start code"), name
    library, name = member.groups()
    if library == "libkestrane_core":
        return "src/" + ROOMS.get(name, "?"), name
    return library, name


def sum_up(keyed):
    totals = collections.Counter()
    for key, size in keyed:
        totals[key] += size
    return [{"what": key, "bytes": size} for key, size in totals.most_common()]


def run(objects=25):
    image = BUILD / "kestrane.exe"
    parts = [(*place(file), size) for file, size in
             contributions((BUILD / "kestrane.map").read_text(encoding="utf-8", errors="replace"))]
    return {"image": image.stat().st_size, "parts": sum_up((part, size) for part, _, size in parts),
            "objects": sum_up((f"{part}: {name}", size) for part, name, size in parts)[:objects]}


def tables(size):
    title = f"kestrane.exe has {size['image']} bytes (goal: below {SIZE_LIMIT:,}), by part"
    columns = ("what", "bytes")
    return [(title, columns, size["parts"]), ("The largest object files", columns, size["objects"])]
