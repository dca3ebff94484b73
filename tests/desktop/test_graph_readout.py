"""A graph's readout under the mouse: known values, checked pixel by pixel."""

from harness import CPU_TIMER, DISK_TIMER, WM_TIMER, main, wait_until
from onscreen import (
    BOX_FRAME,
    FRAME,
    GRAPH_CLASS,
    GraphTest,
    Picture,
    counters,
    middle_of,
    open_at,
    shows_readout,
    size_of,
)

# The readout on a graph with a margin of 3 at 96 DPI.
MARGIN, RADIUS = 3, 2
CONTRAST, CROSSHAIR, BOX = 0xE0E0E0, 0x868686, 0x202020
CPU, DISK_READ = 0x007BB7, 0xCE8B00
DISK_WRITE_READABLE = 0x71A867  # the write colour is too dark on black
MIB = 1048576
CELL_BORDER = 0x434343

CPU_PLACE, DISK_PLACE = (100, 100, 590, 300), (600, 400, 1090, 600)


class Plot:
    """The layout of a graph, measured from its pixels."""

    def __init__(self, picture, rect):
        self.picture = picture
        self.left, self.top, self.right, self.bottom = rect
        width, height = size_of(rect)
        middle = [y for y in range(height) if self.at(MARGIN + 1, y) == FRAME]
        self.plot_bottom = middle[1]  # skipping the upper frame
        self.text_height = height - 2 * MARGIN - self.plot_bottom - 2
        self.plot_top = MARGIN + 1 + self.text_height // 2
        self.plot_right = width - MARGIN - 2
        self.inset = max(4, self.text_height // 3)

    def at(self, x, y):
        return self.picture.at(self.left + x, self.top + y)

    def marker_row(self, part):
        """The row of the marker of a value at this fraction of full scale."""
        height = int((self.plot_bottom - self.plot_top) * part + 0.5)
        return self.plot_bottom - max(height - 1, 0) - 1

    def marker_at(self, x, y):
        """The colour of the marker there; None unless it is a complete square with a black outline."""
        color = self.at(x, y)
        around = range(-RADIUS - 1, RADIUS + 2)
        for dx in around:
            for dy in around:
                outline = RADIUS + 1 in (abs(dx), abs(dy))
                if self.at(x + dx, y + dy) != (0 if outline else color):
                    return None
        return color


class Readout(GraphTest):
    options = {"counters": counters(20)}

    def fill(self, value, read, write, ticks):
        self.desktop.write_counters(counters(value, read, write))
        self.assertTrue(self.desktop.send_messages(2 * ticks, WM_TIMER, CPU_TIMER, DISK_TIMER))

    def start_with_history(self, *more):
        """Forty points of 20 %, then forty of 80 %; reading 2 and 8 MB/s, writing 6 and 4."""
        self.desktop.write_ini(open_at("cpu", CPU_PLACE, *more) + open_at("disk", DISK_PLACE, *more))
        self.start_with("cpu", "disk")
        self.fill(20, 2 * MIB, 6 * MIB, 40)
        self.fill(80, 8 * MIB, 4 * MIB, 40)

    def hover(self, rect, x, y):
        """Rests the mouse on a point of a graph until its readout appears, and returns a snapshot."""
        self.point_at(rect[0] + x, rect[1] + y)
        wait_until(lambda: shows_readout(Picture(self.desktop), rect), "a readout")
        self.assertTrue(self.neighbour.ask("paint", self.neighbour.windows(GRAPH_CLASS)[0].handle, 1))
        return Plot(Picture(self.desktop), rect)

    def wait_for_no_readout(self, rect, where):
        wait_until(lambda: not shows_readout(Picture(self.desktop), rect), f"no readout with the mouse at {where}")

    def assert_box(self, plot, x, y, lines):
        """The box, with this many lines, is beside the point and above it."""
        height = lines * plot.text_height + 2 * plot.inset
        top = min(max(y - height - plot.inset, 3), max(3, plot.bottom - plot.top - height - 3))
        right = x - 2 * plot.inset - 1  # there is no room on the right
        for row in (top, top + height - 1):
            self.assertEqual({plot.at(right - dx, row) for dx in range(30)}, {BOX_FRAME})
        self.assertEqual({plot.at(right, top + dy) for dy in range(height)}, {BOX_FRAME})
        self.assertEqual({plot.at(right - 1, top + dy) for dy in range(1, height - 1)}, {BOX})
        self.assertNotEqual({plot.at(right - 1, top - 1), plot.at(right - 1, top + height)}, {BOX_FRAME})

    def assert_crosshair(self, plot, x):
        dotted = [plot.at(x, y) for y in range(plot.plot_top, plot.plot_top + 9, 2)]
        self.assertEqual(dotted, [CROSSHAIR] * 5)

    def test_tells_the_value_under_the_mouse(self):
        for style in ("bars", "lines"):
            with self.subTest(style):
                self.start_with_history(f"style={style}", "smoothing=2", "fill=0")
                right = size_of(CPU_PLACE)[0] - MARGIN - 2
                for age, part in ((20, 0.8), (60, 0.2)):
                    x = right - age
                    plot = self.hover(CPU_PLACE, x, 100)
                    y = plot.marker_row(part)
                    self.assertEqual(plot.marker_at(x, y), CPU)
                    self.assert_crosshair(plot, x)
                    self.assert_box(plot, x, y, lines=2)
                self.desktop.end_kestrane()

    def test_tells_both_series_of_the_disk(self):
        for style in ("bars", "lines"):
            with self.subTest(style):
                self.start_with_history(f"style={style}", "smoothing=0", "fill=0")
                right = size_of(DISK_PLACE)[0] - MARGIN - 2
                for age, read, write in ((20, 1, 0.5), (60, 0.25, 0.75)):
                    x = right - age
                    plot = self.hover(DISK_PLACE, x, 100)
                    rows = [plot.marker_row(part) for part in (read, write)]
                    self.assertEqual([plot.marker_at(x, y) for y in rows], [DISK_READ, DISK_WRITE_READABLE])
                    # Read, write, activity, and time ago.
                    self.assert_box(plot, x, min(rows), lines=4)
                self.desktop.end_kestrane()

    def test_goes_when_the_mouse_goes(self):
        self.start_with_history("style=bars")
        for number, away in enumerate(((1, 1), (CPU_PLACE[0] - 5, 200), middle_of(DISK_PLACE))):
            self.hover(CPU_PLACE, 440 + number, 100)  # Wine ignores a return to the same point
            self.point_at(*away)
            self.wait_for_no_readout(CPU_PLACE, away)

    def test_there_is_none_where_there_is_no_history(self):
        self.start_with_history("style=bars")
        # Left of the points, on the axis, and on the sizing border.
        for x, y in ((200, 100), (10, 100), (489, 100), (440, 1)):
            self.point_at(CPU_PLACE[0] + x, CPU_PLACE[1] + y)
            self.assertTrue(self.neighbour.ask("paint", self.graph("cpu").handle, 2))
            self.assertFalse(shows_readout(Picture(self.desktop), CPU_PLACE), f"the mouse at {x}, {y}")
        self.hover(CPU_PLACE, 440, 100)

    def test_there_is_none_while_a_graph_is_dragged(self):
        self.start_with_history("style=bars")
        self.hover(CPU_PLACE, 440, 100)
        self.press(CPU_PLACE[0] + 440, CPU_PLACE[1] + 100)
        self.wait_for_no_readout(CPU_PLACE, "a held graph")
        self.release()

    def test_tells_the_processor_under_the_mouse(self):
        self.start_with_history("per_core=1", "style=bars")
        idle = Plot(Picture(self.desktop), CPU_PLACE)
        row = idle.plot_bottom // 4
        borders = [x for x in range(1, size_of(CPU_PLACE)[0] - 1) if idle.at(x, row) == CELL_BORDER]
        self.assertEqual(len(borders), 8)  # two rows of four, each with a border on either side

        plot = self.hover(CPU_PLACE, borders[3] - 20, row)
        lit = [x for x in borders if plot.at(x, row) == CONTRAST]
        self.assertEqual(lit, borders[2:4])
        markers = [y for y in range(4, plot.plot_bottom - 4) if plot.marker_at(borders[3] - 20, y)]
        self.assertEqual(len(markers), 1)


if __name__ == "__main__":
    main()
