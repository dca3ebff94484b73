#!/usr/bin/env python3
"""Runs the benchmarks named, or all, prints their tables and writes everything as JSON to the file named first.

    bench.py FILE [growth] [size] [ticks] [paint] [minute]
"""

import json
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "desktop"))

import bench_growth
import bench_minute
import bench_paint
import bench_size
import bench_ticks
from table import print_table

MEASURED = {"growth": bench_growth, "ticks": bench_ticks, "paint": bench_paint, "minute": bench_minute}


def run_size():
    size = bench_size.run()
    print_table(f"kestrane.exe has {size['image']} bytes (goal: below 1,000,000), by part", bench_size.COLUMNS,
                size["parts"])
    print_table("The largest object files", bench_size.COLUMNS, size["objects"])
    return size


def main():
    target, *names = sys.argv[1:]
    results = {}
    for name in names or ("growth", "size", "ticks", "paint", "minute"):
        if name == "size":
            results[name] = run_size()
        else:
            results[name] = MEASURED[name].run()
            print_table(MEASURED[name].TITLE, MEASURED[name].COLUMNS, results[name])
        sys.stdout.flush()
    pathlib.Path(target).write_text(json.dumps(results, indent=1), encoding="utf-8")


if __name__ == "__main__":
    main()
