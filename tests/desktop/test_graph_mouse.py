"""The graph windows under a real mouse: dragging, snapping, sizing, clicks, and the pin."""

from harness import CPU_TIMER, WM_TIMER, main, wait_until
from onscreen import (
    FRAME,
    LEFT_BUTTON,
    MENU_CLASS,
    PLACES,
    RIGHT_BUTTON,
    WS_EX_TRANSPARENT,
    GraphTest,
    Picture,
    all_open,
    counters,
    double_click_time,
    middle_of,
    open_at,
    shows_readout,
)


def moved(rect, dx, dy):
    left, top, right, bottom = rect
    return left + dx, top + dy, right + dx, bottom + dy


class Dragging(GraphTest):
    options = double_click_time(1)  # two drags from one place are not a double click
    settings = all_open()

    def setUp(self):
        super().setUp()
        self.process = self.start_with("cpu", "disk", "network")
        self.start_point = middle_of(PLACES["cpu"])

    def assert_drag(self, kind, dx, dy, rect, start=None):
        """A drag of the graph ends at `rect`, and that is saved."""
        self.drag(start or middle_of(self.rect(kind)), dx, dy)
        self.assertEqual(self.rect(kind), rect)
        self.wait_for_saved_rect(kind, rect)

    def test_goes_with_the_mouse_and_is_saved(self):
        self.assert_drag("cpu", 37, 41, (137, 141, 537, 341))
        self.assert_drag("network", -17, 60, (83, 460, 483, 660))
        self.assert_drag("disk", 60, 300, (660, 400, 1060, 600))
        self.wait_for_saved("disk", graph=1, pinned=0, x=660, y=400, width=400, height=200)

    def test_any_point_of_the_surface_will_do(self):
        for start in ((106, 106), (493, 106), (106, 293), (493, 293), (300, 294)):
            self.drag(start, 31, 13)
            self.assertEqual(self.rect("cpu"), moved(PLACES["cpu"], 31, 13))
            self.drag((start[0] + 31, start[1] + 13), -31, -13)
            self.assertEqual(self.rect("cpu"), PLACES["cpu"])

    def test_snaps_to_the_work_area(self):
        self.assert_drag("cpu", -92, -90, (0, 0, 400, 200))  # 8 and 10 away
        self.assert_drag("cpu", 25, 11, (25, 11, 425, 211))  # 11 away, too far
        self.assert_drag("disk", 271, 491, (880, 600, 1280, 800))  # 9 away
        self.assert_drag("disk", -30, -30, (850, 570, 1250, 770))

    def test_snaps_to_a_sister(self):
        self.assert_drag("cpu", 93, 7, (200, 100, 600, 300))  # its right side to the other's left, its top to its top
        self.assert_drag("network", 507, 50, (600, 450, 1000, 650))  # its left to the left
        self.assert_drag("network", 0, -143, (600, 300, 1000, 500))  # its top to the bottom

    def test_a_long_drag_adds_up_no_error(self):
        self.press(*self.start_point)
        for _ in range(3):
            for dx in (-95, -91, -98, -40, 95, 103, 60, 0):
                self.point_at(self.start_point[0] + dx, self.start_point[1] + 15)
        self.wait_for_rect("cpu", moved(PLACES["cpu"], 0, 15))
        self.release()
        self.wait_for_saved_rect("cpu", moved(PLACES["cpu"], 0, 15))

    def test_alt_turns_snapping_off(self):
        self.press(*self.start_point)
        self.desktop.use_mouse("keydown", "alt")
        self.addCleanup(self.desktop.use_mouse, "keyup", "alt")
        self.point_at(self.start_point[0] - 93, self.start_point[1] - 96)
        self.wait_for_rect("cpu", (7, 4, 407, 204))
        self.release()
        self.wait_for_saved_rect("cpu", (7, 4, 407, 204))

    def test_nothing_is_saved_before_the_end(self):
        self.press(*self.start_point)
        self.point_at(self.start_point[0] + 50, self.start_point[1] + 50)
        self.wait_for_rect("cpu", moved(PLACES["cpu"], 50, 50))
        self.assertEqual(self.saved_rect("cpu"), PLACES["cpu"])
        self.release()
        self.wait_for_saved_rect("cpu", moved(PLACES["cpu"], 50, 50))

    def test_the_figures_go_on_while_a_graph_is_held(self):
        self.press(*self.start_point)
        self.assertTrue(self.desktop.send_messages(50, WM_TIMER, CPU_TIMER))
        self.assertTrue(self.neighbour.mode().moving)
        self.release()

    def test_the_end_of_the_program_while_a_graph_is_held(self):
        self.press(*self.start_point)
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertEqual(self.process.wait(timeout=60), 0)
        self.desktop.use_mouse("mouseup", LEFT_BUTTON)


class Escape(GraphTest):
    """A drag is visible while it lasts, and Esc undoes it."""

    options = double_click_time(1)
    settings = all_open()

    # Where the CPU graph is grabbed, and its rectangle while it is dragged by 50, 40.
    WAYS = [
        ((300, 200), (150, 140, 550, 340)),
        ((499, 200), (100, 100, 550, 300)),
        ((300, 102), (100, 140, 500, 300)),
        ((101, 101), (150, 140, 500, 300)),
    ]

    def setUp(self):
        super().setUp()
        self.start_with("cpu", "disk", "network")

    def pull(self, start, rect):
        self.press(*start)
        self.point_at(start[0] + 50, start[1] + 40)
        self.wait_for_rect("cpu", rect)

    def escape(self):
        self.desktop.use_mouse("key", "Escape")
        wait_until(lambda: not self.neighbour.mode().moving, "the end of the drag")
        self.desktop.use_mouse("mouseup", LEFT_BUTTON)

    def test_puts_it_back_and_saves_nothing(self):
        for step, (start, rect) in enumerate(self.WAYS, 1):
            with self.subTest(start):
                self.pull(start, rect)
                self.escape()
                self.wait_for_rect("cpu", PLACES["cpu"])
                # Once the next drag is saved, this one is over and the file is complete.
                self.drag(middle_of(self.rect("disk")), 0, 20)
                self.wait_for_saved_rect("disk", moved(PLACES["disk"], 0, 20 * step))
                self.assertEqual(self.saved_rect("cpu"), PLACES["cpu"])
                self.assertEqual(self.rect("cpu"), PLACES["cpu"])

    def test_what_has_been_dragged_before_it_stays(self):
        start, rect = self.WAYS[0]
        self.pull(start, rect)
        self.release()
        self.wait_for_saved_rect("cpu", rect)
        self.press(*middle_of(rect))
        self.point_at(700, 600)
        wait_until(lambda: self.rect("cpu") != rect, "a second drag")
        self.escape()
        self.wait_for_rect("cpu", rect)
        self.restart_with("cpu")
        self.wait_for_rect("cpu", rect)


class Sizing(GraphTest):
    options = double_click_time(1)
    settings = all_open()

    def setUp(self):
        super().setUp()
        self.process = self.start_with("cpu", "disk", "network")

    def assert_sizes(self, start, dx, dy, rect):
        self.drag(start, dx, dy)
        self.assertEqual(self.rect("cpu"), rect)
        self.wait_for_saved_rect("cpu", rect)

    def test_each_edge_and_corner(self):
        # Where the CPU graph, at 100, 100 to 500, 300, is grabbed, and its rectangle after a drag by 33, 21.
        rows = [
            ((102, 200), (133, 100, 500, 300)),
            ((497, 200), (100, 100, 533, 300)),
            ((300, 102), (100, 121, 500, 300)),
            ((300, 297), (100, 100, 500, 321)),
            ((100, 100), (133, 121, 500, 300)),
            ((499, 104), (100, 121, 533, 300)),
            ((104, 299), (133, 100, 500, 321)),
            ((495, 295), (100, 100, 533, 321)),
        ]
        for start, rect in rows:
            with self.subTest(start):
                self.assert_sizes(start, 33, 21, rect)
                # Back by the same edge, which has moved with the mouse.
                self.assert_sizes((start[0] + 33, start[1] + 21), -33, -21, PLACES["cpu"])

    def test_the_end_of_the_program_while_an_edge_is_held(self):
        self.press(498, 200)
        self.point_at(560, 200)
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertEqual(self.process.wait(timeout=60), 0)
        self.desktop.use_mouse("mouseup", LEFT_BUTTON)

    def test_never_below_the_least_size(self):
        self.assert_sizes((498, 298), -600, -600, (100, 100, 300, 180))
        self.assert_sizes((298, 178), 200, 120, PLACES["cpu"])
        self.assert_sizes((101, 101), 600, 600, (300, 220, 500, 300))
        self.assert_sizes((498, 260), -600, 0, (300, 220, 500, 300))
        self.assert_sizes((400, 221), 0, 500, (300, 220, 500, 300))

    def test_snaps_the_edge_that_moves(self):
        self.assert_sizes((498, 200), 92, 0, (100, 100, 600, 300))  # 8 before the disk graph
        self.assert_sizes((300, 298), 0, 107, (100, 100, 600, 400))  # 7 past the top of the network graph
        self.assert_sizes((101, 101), -95, -91, (0, 0, 600, 400))  # the corner of the screen


class Clicks(GraphTest):
    options = {"counters": counters(50), **double_click_time(900)}  # the longest: of two quick clicks each counts
    settings = all_open("style=bars")

    def setUp(self):
        super().setUp()
        self.start_with("cpu", "disk", "network")

    def test_a_click_on_the_disk_graph_switches_its_view(self):
        labels = lambda: Picture(self.desktop).part((600, 100, 640, 280))
        wait_until(lambda: Picture(self.desktop).at(600, 100) == FRAME, "the painted disk graph")
        speeds = labels()
        self.click(*middle_of(PLACES["disk"]))
        self.wait_for_saved("disk", activity=1)
        wait_until(lambda: labels() != speeds, "the labels of the activity")
        self.click(*middle_of(PLACES["disk"]))
        self.wait_for_saved("disk", activity=0)
        wait_until(lambda: labels() == speeds, "the labels of the speeds")
        self.assertEqual(self.rect("disk"), PLACES["disk"])

    def test_so_does_each_of_ten_quick_clicks(self):
        x, y = middle_of(PLACES["disk"])
        self.desktop.use_mouse("mousemove", x, y, "click", "--repeat", 9, "--delay", 100, LEFT_BUTTON)
        self.wait_for_saved("disk", activity=1)  # the odd one
        self.click(x, y)
        self.wait_for_saved("disk", activity=0)

    def test_a_drag_right_after_a_click_moves(self):
        self.click(*middle_of(PLACES["disk"]))
        self.drag(middle_of(PLACES["disk"]), 40, 40)
        self.wait_for_saved_rect("disk", moved(PLACES["disk"], 40, 40))
        self.wait_for_saved("disk", activity=1)

    def test_a_click_saves_no_place(self):
        self.desktop.end_kestrane()
        self.desktop.write_ini("[disk]\ngraph=1\ntopmost=1\n")
        self.start_with("disk")
        place = self.rect("disk")
        self.click(*middle_of(place))
        self.wait_for_saved("disk", activity=1)
        self.click(place[0] + 2, middle_of(place)[1])  # a press on the border without a move
        self.click(*middle_of(place))
        self.wait_for_saved("disk", activity=0)
        self.assertEqual(self.rect("disk"), place)
        self.assertFalse({"x", "y", "width", "height"} & self.saved("disk").keys())

    def test_a_drag_of_one_pixel_does_not(self):
        self.drag(middle_of(PLACES["disk"]), 1, 0)
        self.wait_for_saved_rect("disk", moved(PLACES["disk"], 1, 0))
        self.drag(middle_of(PLACES["disk"]), -1, 0)
        self.wait_for_saved_rect("disk", PLACES["disk"])
        self.click(*middle_of(PLACES["disk"]))
        self.wait_for_saved("disk", activity=1)  # the first and only change

    def test_a_press_on_the_edge_does_not(self):
        self.click(602, 200)
        self.click(*middle_of(PLACES["disk"]))
        self.wait_for_saved("disk", activity=1)

    def test_a_click_on_another_graph_does_nothing(self):
        for kind in ("cpu", "network"):
            self.click(*middle_of(PLACES[kind]))
        self.drag(middle_of(PLACES["disk"]), 40, 40)  # once this is saved, the clicks are done
        self.wait_for_saved_rect("disk", moved(PLACES["disk"], 40, 40))
        self.assertNotIn("activity", self.saved("disk"))
        self.assertEqual((self.rect("cpu"), self.rect("network")), (PLACES["cpu"], PLACES["network"]))

    def test_a_right_click_shows_the_menu_where_it_was(self):
        for kind in ("cpu", "disk", "network"):
            x, y = middle_of(PLACES[kind])
            self.click(x, y, RIGHT_BUTTON)
            menu = wait_until(lambda: self.neighbour.find(MENU_CLASS), "the menu")
            self.assertEqual(tuple(menu.rect[:2]), (x, y))
            self.desktop.use_mouse("key", "Escape")
            wait_until(lambda: not self.neighbour.mode().menu, "the end of the menu")


class Pin(GraphTest):
    """The mouse goes through a pinned graph to the window below it."""

    settings = open_at("cpu", PLACES["cpu"], "pinned=1") + open_at("disk", PLACES["disk"])

    def setUp(self):
        super().setUp()
        self.neighbour.ask("show", 50, 50, 500, 300)  # before the graphs, or it would cover them on this screen
        del self.neighbour.told[:]
        self.start_with("cpu", "disk")
        wait_until(lambda: self.graph("cpu").extended & WS_EX_TRANSPARENT, "the pinned graph")
        wait_until(self.is_in_front, "the graph in front of the other window")

    def is_in_front(self):
        left, _, _, bottom = PLACES["cpu"]
        return Picture(self.desktop).row(bottom - 1, left, left + 5) == [FRAME] * 5

    def clicked_below(self):
        return [record.clicked for record in self.neighbour.told if hasattr(record, "clicked")]

    def test_a_click_a_drag_and_an_edge_belong_to_the_window_below(self):
        points = [[300, 200], [101, 101], [498, 200]]
        for point in points:
            self.desktop.use_mouse("mousemove", *point, "mousedown", LEFT_BUTTON)
            self.desktop.use_mouse("mousemove", point[0] + 40, point[1] + 40, "mouseup", LEFT_BUTTON)
        wait_until(lambda: self.clicked_below() == points, "three clicks below")
        self.assertEqual(self.rect("cpu"), PLACES["cpu"])
        self.assertTrue(self.is_in_front())

    def test_it_gives_no_readout(self):
        self.assertTrue(self.desktop.send_messages(300, WM_TIMER, CPU_TIMER))
        self.click(*middle_of(PLACES["cpu"]))
        wait_until(self.clicked_below, "a click below")
        self.assertTrue(self.neighbour.ask("paint", self.graph("cpu").handle, 1))
        self.assertFalse(shows_readout(Picture(self.desktop), PLACES["cpu"]))


if __name__ == "__main__":
    main()
