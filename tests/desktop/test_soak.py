"""Days of use in a minute: thousands of ticks with the graphs open, the menu opened, the shell restarted, the computer
put to sleep and its screens, theme and language changed, updates offered and withdrawn; and the settings dialog opened
and closed again and again.

scripts/soak.sh runs the same with 200,000 ticks of each kind, or with those of a week, and 200 openings of the dialog.
"""

import json
import os
import pathlib
import signal
import tempfile
import time
from collections import Counter

import private_network
from harness import (
    BUILD,
    CPU_TIMER,
    DISK_TIMER,
    MEMORY_TIMER,
    NETWORK_TIMER,
    NIM_ADD,
    NIM_MODIFY,
    NIM_SETFOCUS,
    NO_CHECK,
    VERSION,
    WM_TIMER,
    every,
    main,
    pixels,
    private_kilobytes,
    thread_count,
    wait_until,
    windows_path,
    wineserver,
)
from onscreen import (
    FIRST_PLACES,
    KINDS,
    PLACES,
    WM_CONTEXTMENU,
    GraphTest,
    Picture,
    all_open,
    counters,
    middle_of,
)
from settings_window import TAB_BUTTONS, WM_COMMAND, close_settings, open_settings, show_page
from update_server import HOST, STATS_HOST, Authority, UpdateServer, reply

TIMERS = (CPU_TIMER, DISK_TIMER, MEMORY_TIMER, NETWORK_TIMER)
ICONS = {1, 2, 3, 4}

# Per timer; the shell restarts after every thousand. A GDI object leaked in every tick would exceed the 16,000 that
# Wine allows a process, and calls would fail; a leak in one kind of tick shows as memory growth.
TICKS = int(os.environ.get("KESTRANE_SOAK_TICKS", 4000))
ROUND = 1000

# Each opening creates a menu and an image for each of its entries.
MENUS_A_ROUND = 5
PAINTS_A_ROUND = 100

# Of the CPU's, disk's and network's timers, in seconds: a sleep takes one.
PERIOD = 1.5

# One round is 25 minutes at the default period; the settings dialog is opened after some of them.
ROUNDS_A_VISIT = 2 if TICKS < 20000 else 8

WM_SYSCOLORCHANGE, WM_SETTINGCHANGE, WM_DISPLAYCHANGE, WM_POWERBROADCAST = 0x15, 0x1A, 0x7E, 0x218
WM_DPICHANGED, WM_THEMECHANGED = 0x2E0, 0x31A
SUSPEND, RESUME_BY_USER, RESUME = 4, 7, 18
BM_CLICK, CB_SETCURSEL, CBN_SELCHANGE, CBN_DROPDOWN = 0xF5, 0x14E, 1, 7
LANGUAGE, CHECK_UPDATES = 1061, 1062
SPANISH, ENGLISH = 1, 2

# From the switch to the check, and what a busy machine may add.
LONGEST_CHECK = 8 + 60

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
    settings = all_open() + "[memory]\nrefresh_ms=10000\n[general]\nlanguage=2\n"

    @classmethod
    def setUpClass(cls):
        authority = Authority(tempfile.mkdtemp(dir=private_network.SCRATCH))
        private_network.trust(authority.root)
        cls.server = UpdateServer("127.0.0.1", authority.good)
        cls.addClassCleanup(cls.server.close)
        super().setUpClass()

    # The ticks, and what follows a thousand of them.

    def run_ticks(self):
        """A thousand ticks of each kind, each of which updates its icon; the program's own timers add one now and
        then, and a check for updates a balloon."""
        start = self.shell.mark()
        self.assertTrue(self.desktop.send_messages(len(TIMERS) * ROUND, WM_TIMER, *TIMERS))
        calls = [call for call in self.shell.since(start) if not call.info]
        self.assertEqual({(call.message, call.answer) for call in calls}, {(NIM_MODIFY, 1)})
        self.assertEqual({(call.id, call.width, call.height) for call in calls}, {(icon, 16, 16) for icon in ICONS})
        self.assertGreaterEqual(min(Counter(call.id for call in calls).values()), ROUND)
        return {call.id: pixels(call) for call in calls}

    def paint_graphs(self):
        for kind in KINDS:
            self.assertTrue(self.neighbour.ask("paint", self.graph(kind).handle, PAINTS_A_ROUND))

    def open_and_close_menu(self):
        """Each menu that ends without a choice gives the keyboard back, once. The click that has ended the last one may
        end this one as well: Wine closes a menu at the release of the button, which on a busy machine comes late."""
        start = self.shell.mark()
        focus_is_back = lambda: any(call.message == NIM_SETFOCUS for call in self.shell.since(start))
        self.send_to_icon("cpu", WM_CONTEXTMENU)
        wait_until(lambda: self.neighbour.mode().menu or focus_is_back(), "the menu")
        if not focus_is_back():
            self.click(1, 1)
        wait_until(lambda: focus_is_back() and not self.neighbour.mode().menu, "the end of the menu")
        answers = [call.message for call in self.shell.since(start) if call.message != NIM_MODIFY]
        self.assertEqual(answers, [NIM_SETFOCUS])

    def restart_shell(self):
        """All icons come back. One may be added twice: its tick may find it gone before the broadcast arrives."""
        start = self.shell.mark()
        self.shell.command("restart")
        for icon in ICONS:
            self.shell.wait_for(lambda call: (call.id, call.message, call.answer) == (icon, NIM_ADD, 1), start)
        self.shell.wait_for_ticks(1, icon=4, start=start)

    # The machine and its user.

    def tell(self, message, w_param=0, text="-"):
        self.assertTrue(self.neighbour.ask("tell", text, message, w_param))

    def is_asleep(self):
        """Whether each of its threads has been stopped."""
        tasks = pathlib.Path(f"/proc/{self.process.pid}/task").glob("*/stat")
        return {task.read_text(encoding="ascii", errors="replace").rpartition(") ")[2][0] for task in tasks} == {"T"}

    def sleep_and_resume(self):
        self.tell(WM_POWERBROADCAST, SUSPEND)
        self.process.send_signal(signal.SIGSTOP)
        wait_until(self.is_asleep, "sleep")
        time.sleep(PERIOD)
        self.process.send_signal(signal.SIGCONT)
        self.tell(WM_POWERBROADCAST, RESUME)
        self.tell(WM_POWERBROADCAST, RESUME_BY_USER)

    def lose_a_monitor(self):
        """The graph on it comes back where a graph first opens."""
        self.assertTrue(self.neighbour.ask("move", self.graph("disk").handle, -3000, 100))
        self.tell(WM_DISPLAYCHANGE)
        self.wait_for_rect("disk", FIRST_PLACES["disk"])

    def change_dpi(self):
        self.assertTrue(self.desktop.send_messages(1, WM_DPICHANGED, 144 << 16 | 144))
        for kind in KINDS:
            graph, before = self.graph(kind).handle, self.rect(kind)
            left, top, right, bottom = before
            self.assertTrue(self.neighbour.ask("dpi", graph, 144))
            self.wait_for_rect(kind, (left, top, left + (right - left) * 3 // 2, top + (bottom - top) * 3 // 2))
            self.assertTrue(self.neighbour.ask("dpi", graph, 64))
            self.wait_for_rect(kind, before)

    def change_theme(self):
        for text in ("ImmersiveColorSet", "intl", "Environment", "-"):
            self.tell(WM_SETTINGCHANGE, text=text)
        self.tell(WM_SYSCOLORCHANGE)
        self.tell(WM_THEMECHANGED)

    def control(self, dialog, id):
        return self.neighbour.ask("control", dialog.handle, id).handle

    def choose_language(self, dialog, language):
        start, combo = self.shell.mark(), self.control(dialog, LANGUAGE)
        for window, message, w_param, l_param in (
            (dialog.handle, WM_COMMAND, CBN_DROPDOWN << 16 | LANGUAGE, combo),  # which fills the list
            (combo, CB_SETCURSEL, language, 0),
            (dialog.handle, WM_COMMAND, CBN_SELCHANGE << 16 | LANGUAGE, combo),
        ):
            self.assertTrue(self.neighbour.ask("send", window, message, w_param, l_param))
        says = "Memoria: " if language == SPANISH else "Memory: "
        self.shell.wait_for(lambda call: call.id == 3 and call.tip.startswith(says), start, f"a text with {says!r}")

    def visit_settings(self):
        """All pages, the other language and back, and the checks for updates off and on, so that one comes as after a
        start. The last one has been answered."""
        dialog = open_settings(self.desktop, self.shell, self.neighbour)
        for page in TAB_BUTTONS:
            show_page(self.neighbour, dialog, page)
        for language in (SPANISH, ENGLISH):
            self.choose_language(dialog, language)
        self.wait_for_check()
        self.offer("0.2.0" if self.visits % 2 else VERSION)
        self.visits += 1
        for _ in range(2):
            self.assertTrue(self.neighbour.ask("send", self.control(dialog, CHECK_UPDATES), BM_CLICK, 0, 0))
        self.assertTrue(self.neighbour.ask("control", dialog.handle, CHECK_UPDATES).ticked)
        close_settings(self.neighbour, dialog)

    def offer(self, version):
        manifest = {"version": version, "url": f"https://{HOST}/kestrane.exe", "sha256": "0" * 64, "size": 1}
        self.server.answers["/latest.json"] = reply(json.dumps(manifest).encode())

    def wait_for_check(self):
        """One for the start and one for each visit. What became of the earlier ones is of no use any more."""
        wait_until(lambda: len(self.server.requests) > self.visits, f"check {self.visits + 1}", LONGEST_CHECK)

    def run_round(self, number):
        self.run_ticks()
        self.paint_graphs()
        for _ in range(MENUS_A_ROUND):
            self.open_and_close_menu()
        self.sleep_and_resume()
        self.lose_a_monitor()
        self.change_dpi()
        self.change_theme()
        self.restart_shell()
        if number % ROUNDS_A_VISIT == 1:
            self.visit_settings()
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
            place = self.rect(kind)
            wait_until(lambda: Picture(self.desktop).part(place) != before.part(place), f"a new picture of {kind}", 30)

    def test_a_long_life_leaves_nothing_behind(self):
        self.visits = 0
        self.offer(VERSION)
        self.process = self.start_with(*KINDS)
        self.point_at(*middle_of(PLACES["network"]))  # so that this graph also paints its readout
        server = wineserver(self.desktop.prefix)
        sizes, server_sizes, threads = [], [], []

        def measure():
            sizes.append(private_kilobytes(self.process.pid))
            server_sizes.append(private_kilobytes(server))
            threads.append(thread_count(self.process.pid))

        for number in range(1, TICKS // ROUND + 1):
            self.run_round(number)
            if number == 1:
                self.wait_for_check()
            measure()
            if number % (TICKS // ROUND // 40 or 1) == 0 or number == 1:
                print(
                    f"{number * ROUND} ticks of each kind, {self.visits} visits to the settings: {sizes[-1]} KB, "
                    f"{threads[-1]} threads, the Wine server {server_sizes[-1]} KB",
                    flush=True,
                )
            self.assertIsNone(self.process.poll())
        self.wait_for_check()
        wait_until(lambda: thread_count(self.process.pid) <= min(threads), "the end of the last connection")
        measure()
        # The lower of the first two and of the last two: a leak is permanent, temporary use is not. A check takes a
        # megabyte, and a thread for its connection, for some twenty seconds.
        kept = WINE_KEEPS_BYTES + (self.visits - 1) * WINE_KEEPS_PER_OPENING
        growth = min(sizes[-2:]) - min(sizes[:2]) - kept / 1024
        self.assertLessEqual(growth, ALLOWED_GROWTH_KB, f"KB after each thousand: {sizes}")
        # Handles, windows and menus take memory in the server.
        growth = min(server_sizes[-2:]) - server_sizes[0]
        self.assertLessEqual(growth, ALLOWED_GROWTH_KB, f"KB of the Wine server: {server_sizes}")
        self.assertLessEqual(min(threads[-2:]), threads[0], f"threads: {threads}")
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
    private_network.enter(HOST, STATS_HOST)
    main()
