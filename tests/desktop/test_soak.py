"""Days of use in a minute: thousands of ticks with the graphs open, the menu opened, the shell restarted; and the
settings dialog opened and closed again and again.

scripts/soak.sh runs the same with 200,000 ticks of each kind and 200 openings of the dialog.
"""

import os
from collections import Counter

from harness import (
    BUILD,
    CPU_TIMER,
    DISK_TIMER,
    MEMORY_TIMER,
    NETWORK_TIMER,
    NIM_ADD,
    NIM_MODIFY,
    NO_CHECK,
    WM_TIMER,
    every,
    main,
    pixels,
    private_kilobytes,
    wait_until,
    windows_path,
    wineserver,
)
from onscreen import KINDS, PLACES, WM_CONTEXTMENU, GraphTest, Picture, all_open, counters, middle_of
from settings_window import TAB_BUTTONS, close_settings, open_settings, show_page

TIMERS = (CPU_TIMER, DISK_TIMER, MEMORY_TIMER, NETWORK_TIMER)
ICONS = {1, 2, 3, 4}

# Per timer; the shell restarts after every thousand. A GDI object leaked in every tick would exceed the 16,000 that
# Wine allows a process, and calls would fail; a leak in one kind of tick shows as memory growth.
TICKS = int(os.environ.get("KESTRANE_SOAK_TICKS", 5000))
ROUND = 1000

# Each opening creates a menu and an image for each of its entries.
MENUS_A_ROUND = 5
PAINTS_A_ROUND = 100

# Of the settings dialog; the first ones load what stays, such as fonts.
OPENINGS = int(os.environ.get("KESTRANE_SOAK_OPENINGS", 20))
FIRST_OPENINGS = 5

# The rings are allocated at startup, so nothing more should be needed after the first round. But Wine keeps the
# program's path for every icon that LoadImageW has created, even after DestroyIcon: a menu loads four, the dialog two
# for its buttons, five for its tabs and two for the boxes on its pages. And it keeps some 5 KB of any dialog with 200
# controls, even of bare ones.
ALLOWED_GROWTH_KB = 256
WINE_KEEPS_PER_ICON = 2 * len(windows_path(BUILD / "kestrane.exe")) + 48
WINE_KEEPS_BYTES = 4 * WINE_KEEPS_PER_ICON * MENUS_A_ROUND * TICKS / ROUND
WINE_KEEPS_PER_OPENING = (4 + 2 + 5 + 2) * WINE_KEEPS_PER_ICON + 5 * 1024


class Soak(GraphTest):
    options = {"counters": counters(50)}
    settings = all_open() + "[memory]\nrefresh_ms=10000\n" + NO_CHECK

    def run_ticks(self):
        """A thousand ticks of each kind, each of which updates its icon; the program's own timers add one now and
        then."""
        start = self.shell.mark()
        self.assertTrue(self.desktop.send_messages(len(TIMERS) * ROUND, WM_TIMER, *TIMERS))
        calls = self.shell.since(start)
        self.assertEqual({(call.message, call.answer) for call in calls}, {(NIM_MODIFY, 1)})
        self.assertEqual({(call.id, call.width, call.height) for call in calls}, {(icon, 16, 16) for icon in ICONS})
        self.assertGreaterEqual(min(Counter(call.id for call in calls).values()), ROUND)
        return {call.id: pixels(call) for call in calls}

    def paint_graphs(self):
        for kind in KINDS:
            self.assertTrue(self.neighbour.ask("paint", self.graph(kind).handle, PAINTS_A_ROUND))

    def open_and_close_menu(self):
        self.send_to_icon("cpu", WM_CONTEXTMENU)
        wait_until(lambda: self.neighbour.mode().menu, "the menu")
        self.click(1, 1)
        wait_until(lambda: not self.neighbour.mode().menu, "the end of the menu")

    def restart_shell(self):
        """All icons come back. One may be added twice: its tick may find it gone before the broadcast arrives."""
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
        self.desktop.check_for_crashes()

    def assert_shows_what_comes(self):
        """New figures reach icons and graphs; the network's are the machine's real ones, so its readout is moved
        instead."""
        icons = self.run_ticks()
        before = Picture(self.desktop)
        self.desktop.write_counters(counters(90, read=90000000, write=90000000))
        later = self.run_ticks()
        for icon in (1, 2):
            self.assertTrue(later[icon] != icons[icon], f"icon {icon} shows still what it showed before")
        left, top, _, _ = PLACES["network"]
        self.point_at(left + 150, top + 50)
        for kind in KINDS:
            place = PLACES[kind]
            wait_until(lambda: Picture(self.desktop).part(place) != before.part(place), f"a new picture of {kind}", 30)

    def test_a_long_life_leaves_nothing_behind(self):
        process = self.start_with(*KINDS)
        self.point_at(*middle_of(PLACES["network"]))  # so that this graph also paints its readout
        server = wineserver(self.desktop.prefix)
        sizes, server_sizes = [], []
        for done in range(ROUND, TICKS + 1, ROUND):
            self.run_round()
            sizes.append(private_kilobytes(process.pid))
            server_sizes.append(private_kilobytes(server))
            if done % (TICKS // 10 or 1) < ROUND:
                print(f"{done} ticks of each kind: {sizes[-1]} KB, the Wine server {server_sizes[-1]} KB", flush=True)
            self.assertIsNone(process.poll())
        # The lower of the last two: a leak is permanent, temporary use is not.
        growth = min(sizes[-2:]) - sizes[0] - WINE_KEEPS_BYTES / 1024
        self.assertLessEqual(growth, ALLOWED_GROWTH_KB, f"KB after each thousand: {sizes}")
        # Handles, windows and menus take memory in the server.
        growth = min(server_sizes[-2:]) - server_sizes[0]
        self.assertLessEqual(growth, ALLOWED_GROWTH_KB, f"KB of the Wine server: {server_sizes}")
        self.assert_shows_what_comes()
        print(f"{sizes[0]} KB after the first thousand, {sizes[-1]} KB after {TICKS}", flush=True)


class DialogSoak(GraphTest):
    settings = every(10000) + NO_CHECK

    def open_and_close(self):
        dialog = open_settings(self.desktop, self.shell, self.neighbour)
        for page in TAB_BUTTONS:
            show_page(self.neighbour, dialog, page)
        close_settings(self.neighbour, dialog)

    def test_the_settings_dialog_leaves_nothing_behind(self):
        """Memory, and in the server windows and icons. Fonts, brushes and bitmaps are counted one by one in
        settings_dialog_objects_test."""
        process = self.start()
        server = wineserver(self.desktop.prefix)
        sizes, server_sizes = [], []
        for done in range(1, OPENINGS + 1):
            self.open_and_close()
            self.assertIsNone(process.poll())
            sizes.append(private_kilobytes(process.pid))
            server_sizes.append(private_kilobytes(server))
            if done == FIRST_OPENINGS or done % (OPENINGS // 4 or 1) == 0:
                print(f"{done} openings: {sizes[-1]} KB, the Wine server {server_sizes[-1]} KB", flush=True)
        self.desktop.check_for_crashes()
        later = OPENINGS - FIRST_OPENINGS
        growth = min(sizes[-2:]) - sizes[FIRST_OPENINGS - 1] - later * WINE_KEEPS_PER_OPENING / 1024
        self.assertLessEqual(growth, ALLOWED_GROWTH_KB, f"KB after each opening: {sizes}")
        growth = min(server_sizes[-2:]) - server_sizes[FIRST_OPENINGS - 1]
        self.assertLessEqual(growth, ALLOWED_GROWTH_KB, f"KB of the Wine server: {server_sizes}")


if __name__ == "__main__":
    main()
