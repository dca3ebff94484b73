"""The growth of the pure operations, as Google Benchmark fits it."""

import json
import subprocess

from harness import ROOT

PROGRAM = ROOT / "build" / "bench" / "growth_bench"


def run():
    output = subprocess.run([PROGRAM, "--benchmark_format=json"], check=True, stdout=subprocess.PIPE).stdout
    rows = []
    for figure in json.loads(output)["benchmarks"]:
        name, _, size = figure["name"].rpartition("/")
        if figure.get("aggregate_name") == "BigO":
            rows.append({"operation": figure["run_name"], "input": "growth", "ns": figure["cpu_coefficient"],
                         "unit": figure["big_o"]})
        elif figure["run_type"] == "iteration":
            rows.append({"operation": name, "input": size, "ns": figure["cpu_time"], "unit": "ns"})
    return rows


def tables(rows):
    title = "Pure operations: processor time by size of the input, and the fitted growth (ns times what the unit says)"
    return [(title, ("operation", "input", "ns", "unit"), rows)]
