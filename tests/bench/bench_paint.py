"""PaintGraph against filling the same buffer once and blitting it, for each view, from a small window to a full screen.

Processor time of the painting process. "fresh" is the floor with a new buffer, which every paint must allocate: the
system supplies its pages one by one, zeroed. The cost of "paint" beyond "fresh" is layout, columns and text.
"""

import subprocess

import measure
from harness import Desktop

SIZES = ((490, 150), (1920, 1080), (3840, 2160))
VIEWS = [f"{view} {style}" for view in ("network", "cpu", "disk", "activity", "grid8", "grid64", "grid256")
         for style in ("bars", "lines")]
SIDES = ("paint", "floor", "fresh")

# Paints per job, enough that the clock's resolution and the pipe do not matter.
COUNTS = {490: 100, 1920: 8, 3840: 3}


class Painter:
    def __init__(self, desktop):
        self.process = desktop.start("paint_bench.exe", stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def run(self, side, view, size, count):
        self.process.stdin.write(f"{side} {view} {size[0]} {size[1]} {count}\n")
        self.process.stdin.flush()
        if self.process.stdout.readline().strip() != "done":
            raise RuntimeError("paint_bench has ended")

    def cost(self, side, view, size):
        """Microseconds per paint: the difference of two jobs, which cancels the fixed cost of a job."""
        spent = []
        for count in (1, 1 + COUNTS[size[0]]):
            before = measure.cpu_seconds(self.process.pid)
            self.run(side, view, size, count)
            spent.append(measure.cpu_seconds(self.process.pid) - before)
        return (spent[1] - spent[0]) / COUNTS[size[0]] * 1e6


def measure_view(painter, view, size, rounds):
    samples = {side: [] for side in SIDES}
    for _ in range(rounds):
        for side in SIDES:
            samples[side].append(painter.cost(side, view, size))
    paint, floor, fresh = (measure.median(samples[side]) for side in SIDES)
    return {"view": view, "size": f"{size[0]}x{size[1]}", "paint us": paint, "floor us": floor, "fresh us": fresh,
            "ratio": measure.median([a / b for a, b in zip(samples["paint"], samples["floor"])]),
            "over fresh us": paint - fresh, "samples": samples}


def add_growth(rows):
    """Growth relative to width plus area, since both matter; 1 is linear, less is better."""
    cost = {row["size"]: row["paint us"] for row in rows}
    for row, (smaller, larger) in zip(rows[1:], zip(SIZES, SIZES[1:])):
        expected = (larger[0] + larger[0] * larger[1]) / (smaller[0] + smaller[0] * smaller[1])
        row["growth"] = cost[row["size"]] / cost[f"{smaller[0]}x{smaller[1]}"] / expected


def run(rounds=5):
    measure.stay_on_one_processor()
    rows = []
    with Desktop() as desktop:
        painter = Painter(desktop)
        for view in VIEWS:
            view_rows = [measure_view(painter, view, size, rounds) for size in SIZES]
            add_growth(view_rows)
            rows += view_rows
    return rows


def tables(rows):
    title = "PaintGraph against one fill and one blit, medians (goals: ratio 4 on a full screen, growth 1)"
    return [(title, ("view", "size", "paint us", "floor us", "fresh us", "ratio", "growth", "over fresh us"), rows)]
