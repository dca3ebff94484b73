"""The places of the graph windows: after a restart, on a changed screen, and for anything in the settings file."""

from harness import main, wait_until
from onscreen import FIRST_PLACES, KINDS, PLACES, GraphTest, Picture, all_open, middle_of, open_at, size_of

WM_SETTINGCHANGE, WM_DISPLAYCHANGE = 0x1A, 0x7E


class Places(GraphTest):
    settings = all_open()

    def test_every_window_is_found_where_it_was(self):
        self.start_with(*KINDS)
        for number, kind in enumerate(KINDS):
            self.wait_for_rect(kind, PLACES[kind])
            self.drag(middle_of(PLACES[kind]), 21 + number, 32 + number)
        places = {kind: self.rect(kind) for kind in KINDS}
        self.assertEqual(places["cpu"], (121, 132, 521, 332))
        self.restart_with(*KINDS)
        for kind in KINDS:
            self.wait_for_rect(kind, places[kind])
            self.wait_for_saved_rect(kind, places[kind])

    def test_a_place_off_every_screen_is_replaced_and_saved_only_later(self):
        self.desktop.write_ini(open_at("cpu", (5000, 100, 5400, 300)) + open_at("disk", PLACES["disk"]))
        self.start_with("cpu", "disk")
        self.wait_for_rect("cpu", FIRST_PLACES["cpu"])
        self.wait_for_saved_rect("cpu", (5000, 100, 5400, 300))
        self.drag(middle_of(PLACES["disk"]), 0, 40)
        self.wait_for_saved_rect("cpu", FIRST_PLACES["cpu"])

    def test_a_lost_window_comes_back_with_the_news_of_the_screen_and_is_saved(self):
        self.start_with(*KINDS)
        for message in (WM_DISPLAYCHANGE, WM_SETTINGCHANGE):
            self.neighbour.ask("move", self.graph("disk").handle, -3000, 100)
            wait_until(lambda: self.rect("disk")[0] == -3000, "the lost window")
            self.assertTrue(self.desktop.send_messages(1, message, 0))
            self.wait_for_rect("disk", FIRST_PLACES["disk"])
            self.wait_for_saved_rect("disk", FIRST_PLACES["disk"])
        self.assertEqual(self.rect("cpu"), PLACES["cpu"])

    def test_a_new_taskbar_brings_back_lost_windows(self):
        self.start_with(*KINDS)
        self.neighbour.ask("move", self.graph("network").handle, 100, 3000)
        self.shell.command("restart")
        self.wait_for_rect("network", FIRST_PLACES["network"])
        self.wait_for_saved_rect("network", FIRST_PLACES["network"])

    def test_a_window_partly_on_the_screen_is_left_alone(self):
        self.start_with(*KINDS)
        self.neighbour.ask("move", self.graph("disk").handle, -399, 100)
        self.assertTrue(self.desktop.send_messages(1, WM_DISPLAYCHANGE, 0))
        self.assertEqual(self.rect("disk"), (-399, 100, 1, 300))
        self.wait_for_saved_rect("disk", PLACES["disk"])

    def test_a_monitor_that_goes_while_a_window_is_dragged(self):
        process = self.start_with(*KINDS)
        self.press(*middle_of(PLACES["disk"]))
        self.point_at(850, 250)
        self.neighbour.ask("move", self.graph("disk").handle, 9000, 9000)
        self.assertTrue(self.desktop.send_messages(1, WM_DISPLAYCHANGE, 0))
        self.wait_for_rect("disk", FIRST_PLACES["disk"])
        self.release()
        self.assertIsNone(process.poll())
        self.wait_for_saved_rect("disk", self.rect("disk"))
        self.drag(middle_of(self.rect("disk")), -100, -50)  # within reach, and responsive


class BadSettings(GraphTest):
    """Whatever the file says, the graph opens where the mouse can reach it."""

    LEAST, MOST = -2147483648, 2147483647

    def test_places(self):
        # x, y, width, height of the CPU graph, and its actual rectangle
        rows = [
            ((self.MOST, self.MOST, 400, 200), FIRST_PLACES["cpu"]),
            ((self.LEAST, self.LEAST, 400, 200), FIRST_PLACES["cpu"]),
            ((self.LEAST, self.MOST, 400, 200), FIRST_PLACES["cpu"]),
            ((self.MOST, 0, 10000, 10000), FIRST_PLACES["cpu"]),
            ((0, 0, 10000, 50), None),
            ((-9000, -9000, 10000, 10000), None),
            ((0, 0, 10001, 200), FIRST_PLACES["cpu"]),  # all four count or none
            ((100, 100, 99, 200), FIRST_PLACES["cpu"]),
            ((100, 100, "4294967296", 200), FIRST_PLACES["cpu"]),
            (("abc", 100, 400, 200), FIRST_PLACES["cpu"]),
            (("", 100, 400, 200), FIRST_PLACES["cpu"]),
            ((100, 100, 100, 50), (100, 100, 300, 180)),  # never below the minimum size
        ]
        for values, place in rows:
            with self.subTest(values):
                keys = "".join(f"{key}={value}\n" for key, value in zip(("x", "y", "width", "height"), values))
                self.desktop.write_ini("[cpu]\ngraph=1\n" + keys)
                process = self.start_with("cpu")
                if place:
                    self.wait_for_rect("cpu", place)
                self.assert_within_reach("cpu")
                self.assertIsNone(process.poll())
                self.desktop.end_kestrane()

    def assert_within_reach(self, kind):
        """The mouse can grab the graph and drag it elsewhere."""
        left, top, right, bottom = before = self.rect(kind)
        start = middle_of((max(left, 0), max(top, 0), min(right, 1280), min(bottom, 800)))
        self.drag(start, -50, -30)
        self.assertNotEqual(self.rect(kind), before)
        self.assertEqual(size_of(self.rect(kind)), size_of(before))
        self.wait_for_saved_rect(kind, self.rect(kind))

    def test_fonts_that_do_not_exist(self):
        for font in ("No Such Font At All", "x" * 31, "x" * 40, "\u00f1\u4e2d\u2603", "%s%n", "@@@"):
            with self.subTest(font):
                self.desktop.write_ini(
                    "".join(f"[{kind}]\ngraph=1\nfont_name={font}\nfont_size=999\nfont_bold=1\n" for kind in KINDS)
                )
                process = self.start_with(*KINDS)
                self.assert_painted(process, *KINDS)
                self.desktop.end_kestrane()

    def test_a_plot_of_one_pixel(self):
        for style in ("bars", "lines"):
            for font_size in (6, 32):
                more = ["margin=20", f"font_size={font_size}", f"style={style}", "per_core=1"]
                self.desktop.write_ini("".join(open_at(kind, (100, 100, 300, 180), *more) for kind in KINDS))
                with self.subTest(style=style, font_size=font_size):
                    process = self.start_with(*KINDS)
                    for kind in KINDS:
                        self.neighbour.ask("paint", self.graph(kind).handle, 3)
                    self.assertIsNone(process.poll())
                    self.desktop.end_kestrane()

    def assert_painted(self, process, *kinds):
        """The frame is visible around each graph, and the program keeps running."""
        for kind in kinds:
            self.neighbour.ask("paint", self.graph(kind).handle, 2)
            left, top, right, bottom = self.rect(kind)
            frame = lambda left=left, bottom=bottom: Picture(self.desktop).at(left, bottom - 1)
            wait_until(lambda: frame() == 0x6D6D6D, f"the frame of the {kind} graph")
        self.assertIsNone(process.poll())


class DenseScreen(GraphTest):
    options = {"dpi": 192}
    settings = "".join(f"[{kind}]\ngraph=1\n" for kind in KINDS)

    def test_sizes_are_doubled(self):
        self.start_with(*KINDS)
        self.wait_for_rect("network", (300, 500, 1280, 800))
        self.wait_for_rect("cpu", (300, 200, 1280, 800))
        self.wait_for_rect("disk", (300, 0, 1280, 800))  # three times the height does not fit

    def test_the_least_size_is_doubled(self):
        self.desktop.write_ini(open_at("cpu", (100, 100, 300, 180)))
        self.start_with("cpu")
        self.wait_for_rect("cpu", (100, 100, 500, 260))


if __name__ == "__main__":
    main()
