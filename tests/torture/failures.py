"""The table of failures, and what a build makes of it: failures.py PROGRAM OUTPUT writes it as rows of C++.

Fails if the program imports or loads a function that is missing in the table, or if the table names one that the
program does not call, unless only the runtime of some compilers does: so the table stays whole.
"""

import collections
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
SYSTEM_DLLS = HERE.parents[1] / "src" / "base" / "system_dlls"

Failure = collections.namedtuple("Failure", "name section kind result error is_errno ends some")

CALLED_EVERY_TIME = ("file", "registry", "shell", "objects")
ROW = re.compile(r"(\w+)\s+(?:(never|data)|(-?\w+)\s+(errno )?(-|\d+)(?:\s+ends=([\d,]+|any))?)(\s+some)?$")


def read_table():
    """All rows, in their order."""
    rows, section = [], None
    for line in (HERE / "failures.txt").read_text(encoding="ascii").splitlines():
        if line.startswith("["):
            section = line.strip("[]")
        elif line and not line.startswith("#"):
            found = ROW.match(line)
            if not found:
                raise SystemExit(f"failures.txt: not a row: {line}")
            name, kind, result, errno, error, ends, some = found.groups()
            codes = frozenset(range(256)) if ends == "any" else frozenset(map(int, ends.split(",") if ends else ()))
            number = int(result or "0", 0) % 2**64
            rows.append(Failure(name, section, kind or "fails", number, int(error.replace("-", "0")) if error else 0,
                                bool(errno), codes, bool(some)))
    return rows


def imported(program):
    import pefile

    image = pefile.PE(program, fast_load=True)
    image.parse_data_directories([pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_IMPORT"]])
    return {entry.name.decode() for dll in image.DIRECTORY_ENTRY_IMPORT for entry in dll.imports}


def loaded_at_first_call():
    sources = "".join(path.read_text(encoding="utf-8") for path in sorted(SYSTEM_DLLS.glob("*.cpp")))
    return set(re.findall(r"SystemFunction<&(\w+)>", sources))


def main():
    program, output = sys.argv[1:]
    rows = read_table()
    named, called = {row.name for row in rows}, imported(program) | loaded_at_first_call()
    wrong = [f"no failure for {name}" for name in sorted(called - named)]
    wrong += [f"{row.name} is not called" for row in rows if row.name not in called and not row.some]
    if len(named) < len(rows):
        wrong.append("a function stands twice")
    if wrong:
        raise SystemExit("failures.txt: " + "; ".join(wrong))
    lines = [
        f'    {{"{row.name}", Kind::{row.kind.title()}, {row.result:#x}U, {row.error}, {str(row.is_errno).lower()}}},'
        for row in rows
    ]
    pathlib.Path(output).write_text("\n".join(lines) + "\n", encoding="ascii")


if __name__ == "__main__":
    main()
