"""Painting graphs: NaN and infinite figures, and thousands of paints."""

import pathlib

from harness import CPU_TIMER, DISK_TIMER, WM_TIMER, main, private_kilobytes, wait_until
from onscreen import FIRST_PLACES, KINDS, GraphTest, Picture, counters, middle_of, open_at


class BadFigures(GraphTest):
    options = {"counters": counters(50)}

    def test_rings_that_are_empty_or_full_of_nonsense(self):
        for value in ("nan", "inf", "-1e300", "1e300", "-1"):
            for style, more in (("bars", ""), ("lines", "smoothing=3\nfill=100\n")):
                with self.subTest(value=value, style=style):
                    self.desktop.write_counters(counters(value))
                    keys = f"graph=1\nrefresh_ms=10000\nstyle={style}\nper_core=1\n{more}"
                    self.desktop.write_ini("".join(f"[{kind}]\n{keys}" for kind in KINDS))
                    process = self.start_with(*KINDS)
                    self.paint_all()  # the rings are empty
                    self.assertTrue(self.desktop.send_messages(600, WM_TIMER, CPU_TIMER, DISK_TIMER))
                    self.paint_all()
                    for kind in KINDS:
                        self.point_at(*middle_of(FIRST_PLACES[kind]))
                        self.paint_all()
                    self.assertIsNone(process.poll())
                    self.desktop.end_kestrane()

    def paint_all(self):
        for kind in KINDS:
            self.assertTrue(self.neighbour.ask("paint", self.graph(kind).handle, 2))


class Painting(GraphTest):
    """Each paint creates a bitmap, a font and pens, and releases them."""

    options = {"counters": counters(50)}

    # Wine allows a process some 16,000 GDI objects: a leak in one view shows as memory growth, a leak in all of them as
    # a graph that is no longer painted.
    WARM_UP = 300
    PAINTS = 2000
    ALLOWED_GROWTH_KB = 512

    # Faster paints would not be real.
    LEAST_SECONDS = 0.05 * PAINTS / 1000

    def paint_views(self, count):
        for kind in KINDS:
            self.assertTrue(self.neighbour.ask("paint", self.graph(kind).handle, count))

    def assert_paints_leave_memory_flat(self, style):
        more = [f"style={style}", "smoothing=3", "per_core=1" if style == "lines" else "per_core=0"]
        rects = {"cpu": (100, 100, 300, 200), "disk": (400, 100, 600, 200), "network": (100, 300, 300, 400)}
        self.desktop.write_ini("".join(open_at(kind, rects[kind], *more) for kind in KINDS))
        process = self.start_with(*KINDS)
        self.assertTrue(self.desktop.send_messages(200, WM_TIMER, CPU_TIMER, DISK_TIMER))
        self.point_at(*middle_of(rects["cpu"]))  # so that this graph also paints its readout
        self.paint_views(self.WARM_UP)
        before, time_before = private_kilobytes(process.pid), processor_seconds(process)
        self.paint_views(self.PAINTS)
        after, seconds = private_kilobytes(process.pid), processor_seconds(process) - time_before
        print(f"{style}: {3 * self.PAINTS} paints, {seconds:.1f} s, {before} KB before and {after} KB after", flush=True)
        self.assertLessEqual(after - before, self.ALLOWED_GROWTH_KB)
        self.assertGreater(seconds, self.LEAST_SECONDS)

        # It still shows new data.
        picture = Picture(self.desktop).part(rects["disk"])
        self.desktop.write_counters(counters(90, read=9000000))
        self.assertTrue(self.desktop.send_messages(50, WM_TIMER, CPU_TIMER, DISK_TIMER))
        wait_until(lambda: Picture(self.desktop).part(rects["disk"]) != picture, "a new picture")

    def test_bars(self):
        self.assert_paints_leave_memory_flat("bars")

    def test_lines_and_the_grid_of_processors(self):
        self.assert_paints_leave_memory_flat("lines")


def processor_seconds(process):
    """The user and system processor time of a program so far."""
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text(encoding="ascii").rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / 100


if __name__ == "__main__":
    main()
