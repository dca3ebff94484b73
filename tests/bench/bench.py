#!/usr/bin/env python3
"""Runs the named benchmarks, or all, prints their tables and writes each into the JSON file, which keeps its figures
for the others.

    bench.py FILE [growth] [size] [ticks] [paint] [dialog] [minute]
"""

import argparse
import json
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "desktop"))

import bench_dialog
import bench_growth
import bench_minute
import bench_paint
import bench_size
import bench_ticks
import private_network
from table import print_table

MEASURED = {
    "growth": bench_growth,
    "size": bench_size,
    "ticks": bench_ticks,
    "paint": bench_paint,
    "dialog": bench_dialog,
    "minute": bench_minute,
}


def parse_arguments():
    parser = argparse.ArgumentParser(prog="scripts/bench.sh")
    parser.add_argument("file", type=pathlib.Path, help=argparse.SUPPRESS)
    parser.add_argument("names", nargs="*", metavar="NAME", help=", ".join(MEASURED))
    arguments = parser.parse_args()
    if unknown := set(arguments.names) - set(MEASURED):
        parser.error(f"no such benchmark: {', '.join(sorted(unknown))}")
    return arguments.file, arguments.names or list(MEASURED)


def main():
    file, names = parse_arguments()
    private_network.enter()  # the program looks for updates as usual, and nobody is asked
    results = json.loads(file.read_text(encoding="utf-8")) if file.exists() else {}
    for name in names:
        results[name] = MEASURED[name].run()
        for title, columns, rows in MEASURED[name].tables(results[name]):
            print_table(title, columns, rows)
        sys.stdout.flush()
        file.write_text(json.dumps(results, indent=1), encoding="utf-8")


if __name__ == "__main__":
    main()
