"""The graph windows: how they open, what opens and closes them, and what is saved."""

import time

from harness import NO_CHECK, every, main, wait_until
from onscreen import (
    FIRST_PLACES,
    KINDS,
    NIN_KEYSELECT,
    NIN_SELECT,
    PLACES,
    WM_LBUTTONDBLCLK,
    WS_EX_LAYERED,
    WS_EX_NOACTIVATE,
    WS_EX_TOOLWINDOW,
    WS_EX_TOPMOST,
    WS_EX_TRANSPARENT,
    GraphTest,
    double_click_time,
    open_at,
)

FLYOUT = WS_EX_NOACTIVATE | WS_EX_LAYERED | WS_EX_TOOLWINDOW
STYLES = FLYOUT | WS_EX_TOPMOST | WS_EX_TRANSPARENT


class Opening(GraphTest):
    settings = NO_CHECK + "".join(f"[{kind}]\ngraph=1\n" for kind in KINDS)

    def test_graphs_without_a_place_stand_at_the_taskbar(self):
        self.start_with(*KINDS)
        for kind, place in FIRST_PLACES.items():
            self.wait_for_rect(kind, place)
            graph = self.graph(kind)
            self.assertEqual(graph.extended & STYLES, FLYOUT | WS_EX_TOPMOST)
            self.assertEqual(graph.alpha, 90 * 255 // 100)
        self.assertEqual(self.desktop.ini_path.read_text(encoding="utf-8"), self.settings)

    def test_style_follows_the_settings(self):
        rows = [
            # opacity, pinned, topmost: alpha, styles
            ((100, 0, 0), 255, 0),
            ((30, 0, 1), 76, WS_EX_TOPMOST),
            ((50, 1, 0), 127, WS_EX_TOPMOST | WS_EX_TRANSPARENT),  # pinned means on top
            ((55, 1, 1), 229, WS_EX_TOPMOST | WS_EX_TRANSPARENT),  # not in the list of choices: the default
            ((-2147483648, 0, 0), 229, 0),
        ]
        for (opacity, pinned, topmost), alpha, styles in rows:
            with self.subTest(opacity=opacity, pinned=pinned, topmost=topmost):
                self.desktop.write_ini(f"[cpu]\ngraph=1\nopacity={opacity}\npinned={pinned}\ntopmost={topmost}\n")
                self.start_with("cpu")
                wait_until(lambda: self.graph("cpu").alpha == alpha, f"an alpha of {alpha}")
                self.assertEqual(self.graph("cpu").extended & STYLES, FLYOUT | styles)
                self.desktop.end_kestrane()

    def test_a_hidden_icon_hides_its_graph_and_leaves_the_setting(self):
        self.desktop.write_ini("[icons]\nshow_cpu=0\n" + self.settings)
        self.start_with("disk", "network")
        self.assertIsNone(self.graph("cpu"))
        self.assertEqual(self.saved("cpu"), {"graph": "1"})

    def test_a_graph_that_opens_leaves_the_foreground_alone(self):
        self.neighbour.ask("show", 0, 0, 100, 100)
        self.assertTrue(self.neighbour.ask("front"))
        self.start_with(*KINDS)
        self.assertEqual(self.neighbour.ask("foreground"), "neighbour")


class Clicks(GraphTest):
    """With a double-click time so short that two clicks never make a double click."""

    options = double_click_time(1)
    settings = every(10000)

    def pass_double_click_time(self):
        time.sleep(0.05)

    def test_a_click_opens_and_the_next_hides(self):
        self.start()
        for kind in KINDS:
            self.click_icon(kind)
            self.wait_for_graph(kind)
            self.wait_for_saved(kind, graph=1, pinned=0, x=0, y=0, width=0, height=0)  # not moved yet
            self.pass_double_click_time()
            self.click_icon(kind)
            self.wait_for_no_graph(kind)
            self.wait_for_saved(kind, graph=0)

    def test_the_keyboard_opens_too(self):
        self.start()
        self.send_to_icon("disk", NIN_KEYSELECT)
        self.wait_for_graph("disk")

    def test_an_event_that_is_no_click_does_nothing(self):
        self.start()
        for event in (0, 0x200, 0x201, 0x202, 0x402, 0x403, 0x404, 0x406, 0x407, 0xFFFF):
            self.send_to_icon("cpu", event)
        self.click_icon("disk")
        self.wait_for_graph("disk")
        self.assertIsNone(self.graph("cpu"))

    def test_a_pinned_graph_stays(self):
        self.desktop.write_ini(open_at("cpu", PLACES["cpu"], "pinned=1"))
        self.start_with("cpu")
        self.click_icon("cpu")
        self.click_icon("disk")
        self.wait_for_graph("disk")
        self.assertEqual(self.rect("cpu"), PLACES["cpu"])
        self.wait_for_saved("cpu", graph=1, pinned=1)

    def wait_until_idle(self, kind):
        """Waits until the program has processed everything before and paints this graph."""
        self.assertTrue(self.neighbour.ask("paint", self.wait_for_graph(kind).handle, 1))

    def cover(self, kind):
        """Another program's window comes over the graph."""
        left, top, right, bottom = PLACES[kind]
        self.neighbour.ask("show", left - 10, top - 10, right - left + 20, bottom - top + 20)
        self.assertTrue(self.neighbour.ask("front"))

    def test_a_covered_graph_comes_to_the_front_with_one_click(self):
        self.desktop.write_ini(open_at("cpu", PLACES["cpu"], "topmost=0"))
        self.start_with("cpu")
        self.wait_until_idle("cpu")
        self.cover("cpu")
        self.assertEqual(self.stack(), ["neighbour", "kestrane - CPU"])
        self.click_icon("cpu")
        wait_until(lambda: self.stack() == ["kestrane - CPU", "neighbour"], "the graph in front")
        wait_until(lambda: not self.graph("cpu").extended & WS_EX_TOPMOST, "a graph that is not topmost for ever")
        self.assertEqual(self.neighbour.ask("foreground"), "neighbour")

        # Now it is on top: the next click hides it.
        self.pass_double_click_time()
        self.click_icon("cpu")
        self.wait_for_no_graph("cpu")

    def test_a_topmost_graph_cannot_be_covered(self):
        self.desktop.write_ini(open_at("cpu", PLACES["cpu"]))
        self.start_with("cpu")
        self.wait_until_idle("cpu")
        self.cover("cpu")
        self.assertEqual(self.stack(), ["kestrane - CPU", "neighbour"])
        self.click_icon("cpu")
        self.wait_for_no_graph("cpu")

    def show_and_hide_over(self, kind, class_name):
        """A window of this class comes to the foreground over the graph and disappears again."""
        left, top, right, bottom = PLACES[kind]
        self.assertTrue(self.neighbour.ask("as", class_name, left - 10, top - 10, right - left + 20, bottom - top + 20))
        self.assertEqual(self.neighbour.ask("foreground"), class_name)
        self.wait_until_idle(kind)
        self.neighbour.ask("hide")

    def test_the_shell_on_the_way_to_an_icon_does_not_cover_it(self):
        for class_name in ("NotifyIconOverflowWindow", "TopLevelWindowForOverflowXamlIsland", "Windows.UI.Core.CoreWindow"):
            with self.subTest(class_name):
                self.desktop.write_ini(open_at("cpu", PLACES["cpu"], "topmost=0"))
                self.start_with("cpu")
                self.wait_until_idle("cpu")
                self.show_and_hide_over("cpu", class_name)
                self.click_icon("cpu")
                self.wait_for_no_graph("cpu")
                self.desktop.end_kestrane()

    def test_a_file_window_does(self):
        self.desktop.write_ini(open_at("cpu", PLACES["cpu"], "topmost=0"))
        self.start_with("cpu")
        self.wait_until_idle("cpu")
        self.show_and_hide_over("cpu", "CabinetWClass")
        self.click_icon("cpu")
        self.pass_double_click_time()
        self.assertIsNotNone(self.graph("cpu"))
        self.click_icon("cpu")
        self.wait_for_no_graph("cpu")

    def test_a_window_beside_the_graph_does_not_cover_it(self):
        self.desktop.write_ini(open_at("cpu", PLACES["cpu"], "topmost=0"))
        self.start_with("cpu")
        self.wait_until_idle("cpu")
        self.cover("network")
        self.click_icon("cpu")
        self.wait_for_no_graph("cpu")


class DoubleClicks(GraphTest):
    """With the longest double-click time, so that all clicks of a test fall within it."""

    options = double_click_time(5000)
    settings = every(10000)

    def test_clicks_within_the_double_click_time_of_the_system_count_once(self):
        self.start()
        for event in (NIN_SELECT, WM_LBUTTONDBLCLK, NIN_SELECT, WM_LBUTTONDBLCLK):
            self.send_to_icon("cpu", event)
        self.wait_for_graph("cpu")
        time.sleep(0.6)  # longer than the system's default
        self.click_icon("cpu")

        # Each icon has its own filter; and once the disk's click is done, so are those before it.
        self.click_icon("disk")
        self.wait_for_graph("disk")
        self.assertIsNotNone(self.graph("cpu"))
        self.wait_for_saved("cpu", graph=1)

    def test_a_double_click_comes_alone_when_the_first_was_lost(self):
        self.start()
        self.send_to_icon("network", WM_LBUTTONDBLCLK)
        self.wait_for_graph("network")


class Shortcut(GraphTest):
    settings = every(10000)

    def setUp(self):
        super().setUp()
        # Keys go to the window under the mouse, and through it to the whole system.
        self.neighbour.ask("show", 0, 0, 50, 50)
        self.point_at(20, 20)

    def press_shortcut(self):
        self.desktop.use_mouse("key", "ctrl+shift+b")

    def test_toggles_the_network_graph(self):
        self.start()
        for _ in range(2):
            self.press_shortcut()
            self.wait_for_graph("network")
            self.wait_for_saved("network", graph=1)
            self.press_shortcut()
            self.wait_for_no_graph("network")
            self.wait_for_saved("network", graph=0)

    def test_does_nothing_without_the_network_icon(self):
        self.desktop.write_ini("[icons]\nshow_net=0\n" + self.settings)
        start = self.shell.mark()
        self.desktop.start_kestrane()
        self.shell.wait_for_ticks(1, icon=3, start=start)
        self.click_icon("disk")
        self.wait_for_graph("disk")  # startup is over
        self.press_shortcut()
        self.click_icon("cpu")
        self.wait_for_graph("cpu")
        self.assertIsNone(self.graph("network"))
        self.wait_for_saved("network", graph=0)


class TakenShortcut(GraphTest):
    options = {"language": "es_ES"}
    settings = every(500)

    def test_is_told_and_all_else_works(self):
        self.assertTrue(self.neighbour.ask("hotkey"))
        self.neighbour.ask("show", 0, 0, 50, 50)
        self.point_at(20, 20)
        start = self.shell.mark()
        process = self.desktop.start_kestrane_logged()
        self.shell.wait_for_ticks(3, icon=4, start=start)
        told = "kestrane: Ctrl+Shift+B ya lo usa otro programa; sin atajo para la grafica"
        wait_until(lambda: told in self.desktop.debug_lines(), "the line about the shortcut")

        self.desktop.use_mouse("key", "ctrl+shift+b")
        wait_until(lambda: any(hasattr(record, "hotkey") for record in self.neighbour.told), "the other's shortcut")
        self.assertIsNone(self.graph("network"))
        self.click_icon("network")
        self.wait_for_graph("network")
        self.shell.wait_for_ticks(2, icon=1)
        self.desktop.end_kestrane()
        self.assertEqual(process.wait(), 0)


if __name__ == "__main__":
    main()
