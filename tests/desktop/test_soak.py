"""Days of life in a minute: ticks by the thousand with the graphs open, the menu opened and closed, the shell restarted.

scripts/soak.sh runs the same with 200,000 ticks of each kind.
"""

import os

from harness import (
    CPU_TIMER,
    DISK_TIMER,
    MEMORY_TIMER,
    NETWORK_TIMER,
    NIM_ADD,
    NIM_MODIFY,
    WM_TIMER,
    main,
    private_kilobytes,
    wait_until,
)
from onscreen import KINDS, PLACES, WM_CONTEXTMENU, GraphTest, Picture, all_open, counters, middle_of

TIMERS = (CPU_TIMER, DISK_TIMER, MEMORY_TIMER, NETWORK_TIMER)
ICONS = {1, 2, 3, 4}

# Of each of the four kinds; the shell restarts after every thousand. More icons than the 16,000 GDI objects that a process
# may have under Wine: one lost a tick would stop the painting before the end.
TICKS = int(os.environ.get("KESTRANE_SOAK_TICKS", 5000))
ROUND = 1000

# Each opening makes a menu and an image for each of its entries.
MENUS_A_ROUND = 5
PAINTS_A_ROUND = 100

# What the rings take they have from the start, so after the first round nothing more should be needed. But Wine keeps
# some 80 bytes of every icon that LoadImageW has made, DestroyIcon or not, and a menu takes five.
ALLOWED_GROWTH_KB = 512
WINE_KEEPS_KB = 0.5 * MENUS_A_ROUND * TICKS / ROUND


class Soak(GraphTest):
    options = {"counters": counters(50)}
    settings = all_open() + "[memory]\nrefresh_ms=10000\n"

    def run_ticks(self):
        """A thousand ticks of each kind, and each has shown its icon."""
        start = self.shell.mark()
        self.assertTrue(self.desktop.send_messages(len(TIMERS) * ROUND, WM_TIMER, *TIMERS))
        calls = self.shell.wait_for_count(len(TIMERS) * ROUND, start=start)
        self.assertEqual({(call.message, call.answer) for call in calls}, {(NIM_MODIFY, 1)})
        self.assertEqual({(call.id, call.width, call.height) for call in calls}, {(icon, 16, 16) for icon in ICONS})

    def paint_graphs(self):
        for kind in KINDS:
            self.assertTrue(self.neighbour.ask("paint", self.graph(kind).handle, PAINTS_A_ROUND))

    def open_and_close_menu(self):
        self.send_to_icon("cpu", WM_CONTEXTMENU)
        wait_until(lambda: self.neighbour.mode().menu, "the menu")
        self.click(1, 1)
        wait_until(lambda: not self.neighbour.mode().menu, "the end of the menu")

    def restart_shell(self):
        """All icons come back. One may be added twice: a tick of its own may find it gone before the news arrives."""
        start = self.shell.mark()
        self.shell.command("restart")
        for icon in ICONS:
            self.shell.wait_for(lambda call: (call.id, call.message, call.answer) == (icon, NIM_ADD, 1), start)
        self.shell.wait_for_ticks(1, icon=4, start=start)

    def run_round(self):
        self.run_ticks()
        self.paint_graphs()
        for _ in range(MENUS_A_ROUND):
            self.open_and_close_menu()
        self.restart_shell()
        self.shell.drop()

    def assert_graphs_show_what_comes(self):
        before = Picture(self.desktop)
        self.desktop.write_counters(counters(90, read=90000000, write=90000000))
        self.assertTrue(self.desktop.send_messages(100, WM_TIMER, CPU_TIMER, DISK_TIMER))
        for kind in ("cpu", "disk"):
            place = PLACES[kind]
            wait_until(lambda: Picture(self.desktop).part(place) != before.part(place), f"a new picture of {kind}")

    def test_a_long_life_leaves_nothing_behind(self):
        process = self.start_with(*KINDS)
        self.point_at(*middle_of(PLACES["network"]))  # this graph shows its readout too
        self.run_round()
        first = largest = private_kilobytes(process)
        for done in range(2 * ROUND, TICKS + 1, ROUND):
            self.run_round()
            now = private_kilobytes(process)
            largest = max(largest, now)
            if done % (TICKS // 10 or 1) < ROUND:
                print(f"{done} ticks of each kind: {now} KB", flush=True)
            self.assertIsNone(process.poll())
        growth = f"{first} KB after the first thousand, then {largest}"
        self.assertLessEqual(largest - first, ALLOWED_GROWTH_KB + WINE_KEEPS_KB, growth)
        self.assert_graphs_show_what_comes()
        print(f"{first} KB after the first thousand, at most {largest} KB after {TICKS}", flush=True)


if __name__ == "__main__":
    main()
