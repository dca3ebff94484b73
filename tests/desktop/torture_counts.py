"""The file in which torture.dll counts the program's calls; see Counts in torture.cpp."""

import collections
import struct
import subprocess

HEAD = struct.Struct("<qq")
FUNCTION, FUNCTIONS = struct.Struct("<48sq"), 512
PLACE, PLACES = struct.Struct("<qqq"), 4096

SIZE = HEAD.size + FUNCTIONS * FUNCTION.size + PLACES * PLACE.size

Place = collections.namedtuple("Place", "function offset calls first")


class Counts:
    """`calls` by function, `places` from which they came, and whether the planned failure has happened: `reached`."""

    def __init__(self, path):
        data = path.read_bytes() if path.exists() else b""
        data += bytes(SIZE - len(data))
        reached, self.reached_at = HEAD.unpack_from(data)
        self.reached = reached != 0
        self.calls, names, at = {}, [], HEAD.size
        for name, calls in FUNCTION.iter_unpack(data[at : at + FUNCTIONS * FUNCTION.size]):
            names.append(name.rstrip(b"\0").decode("ascii"))
            self.calls[names[-1]] = calls
        at += FUNCTIONS * FUNCTION.size
        self.places = [
            Place(names[(key >> 32) - 1], key & 0xFFFFFFFF, calls, first)
            for key, calls, first in PLACE.iter_unpack(data[at : at + PLACES * PLACE.size])
            if key
        ]


def place_names(program, offsets):
    """The function of the program in which each offset of its image lies."""
    headers = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", program], check=True, capture_output=True, text=True)
    base = next(int(line.split()[1], 16) for line in headers.stdout.splitlines() if line.startswith("ImageBase"))
    addresses = [hex(base + offset) for offset in offsets]
    command = ["x86_64-w64-mingw32-addr2line", "--functions", "--demangle", "--exe", program, *addresses]
    lines = subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()
    return dict(zip(offsets, lines[::2]))
