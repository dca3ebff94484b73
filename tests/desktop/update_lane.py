"""A program with a screen, a prefix and a server of its own, for tests of updates that run several at once.

A check comes some seconds after the checks have been switched on; meanwhile a lane only waits. All lanes of a test run
in threads of one script, each on its own address of loopback, to which the hosts' names lead for its program.
"""

import concurrent.futures
import contextlib
import socket
import threading
import time

import private_network
from harness import BUILD, HIDDEN_WINDOW, MEMORY_TIMER, NIM_MODIFY, VERSION, Desktop, every, wait_until
from onscreen import DIALOG_CLASS, LEFT_BUTTON, MENU_CLASS, WM_CONTEXTMENU, Neighbour, Picture
from settings_dialog import CHECK_UPDATES
from settings_window import SETTINGS_ENTRY, close_settings, show_page
from test_menu import Menu
from update_server import Authority, UpdateServer
from updates import WORDS

# From the switch to the check, and what a busy machine may add.
FIRST_CHECK, PATIENCE = 8, 90

# For a check that is stopped, at once or between two bytes that drip.
LONGEST_STOP = 10

# Starts of screens and prefixes are hard work; more at once would only be in each other's way.
STARTS_AT_ONCE = threading.BoundedSemaphore(2)

# For the news of an answer to get from the thread that took it to the window.
GRACE = 0.5

MEMORY_ICON = 3
PLAIN_MENU, MENU_WITH_OFFER = "E-E-EE", "E-E-E-EE"
BM_CLICK, WM_CANCELMODE = 0xF5, 0x1F

SAID = WORDS["en_US"]


def require(condition, what):
    if not condition:
        raise AssertionError(f"not true: {what}")


class Lane:
    """A program and all that it sees of the world. What a lane does is `work`, of its own class."""

    build = "kestrane.exe"

    def __init__(self, number, authority):
        self.number, self.authority = number, authority
        self.address = f"127.0.1.{number}"
        self.failures = []
        self.menu = None  # while it is open

    def run(self, *arguments):
        """What went wrong, in words."""
        private_network.lead_this_thread_to(self.address)
        with contextlib.ExitStack() as stack:
            self.plain = stack.enter_context(socket.create_server((self.address, 80)))
            self.server = stack.enter_context(UpdateServer(self.address, self.authority.good))
            with STARTS_AT_ONCE:
                self.desktop = stack.enter_context(Desktop())
                self.prepare()
            self.work(*arguments)
            self.plain.setblocking(False)
            require(not self.was_asked_plainly(), "nothing is asked in plain HTTP")
        return self.failures

    def was_asked_plainly(self):
        try:
            self.plain.accept()
        except BlockingIOError:
            return False
        return True

    def prepare(self):
        self.folder = private_network.SCRATCH / f"lane {self.number}"
        self.folder.mkdir()
        self.desktop.run_kestrane_from(self.folder)
        self.original = (BUILD / self.build).read_bytes()
        (self.folder / "kestrane.exe").write_bytes(self.original)
        self.desktop.write_ini(every(10000))
        self.shell = self.desktop.start_recorder()
        self.neighbour = Neighbour(self.desktop)

    def start(self):
        self.first = self.shell.mark()
        self.program = self.desktop.start_kestrane()
        self.shell.wait_for_ticks(2, icon=4, start=self.first)
        self.hidden = next(window for window in self.neighbour.ask("windows") if window.name == HIDDEN_WINDOW)

    def open_menu(self):
        """The menu, once it is fully painted."""
        self.shell.command(f"callback 1 {WM_CONTEXTMENU} 600 500")

        def painted():
            window = self.neighbour.find(MENU_CLASS)
            menu = window and Menu(Picture(self.desktop), window.rect)
            return menu if menu and menu.shape in (PLAIN_MENU, MENU_WITH_OFFER) else None

        return wait_until(painted, "the menu", 30)

    def check_again(self, arrange):
        """Switches the checks off and on, so that one comes as after a start; `arrange` is called in between."""
        menu, self.menu = self.menu or self.open_menu(), None
        self.desktop.use_mouse("mousemove", *menu.middle_of(SETTINGS_ENTRY), "click", LEFT_BUTTON)
        dialog = wait_until(lambda: self.neighbour.find(DIALOG_CLASS), "the settings dialog")
        show_page(self.neighbour, dialog, "general")
        switch = self.neighbour.ask("control", dialog.handle, CHECK_UPDATES)
        began = time.monotonic()
        self.press(switch)
        waited = time.monotonic() - began
        arrange()
        self.first = self.shell.mark()
        self.press(switch)
        require(self.neighbour.ask("control", dialog.handle, CHECK_UPDATES).ticked, "the checks are on again")
        close_settings(self.neighbour, dialog)
        require(waited < LONGEST_STOP, f"the last check could be stopped at once, and not after {waited:.1f} s")

    def press(self, switch):
        require(self.neighbour.ask("send", switch.handle, BM_CLICK, 0, 0), "the switch obeys")

    def wait_for_offer(self, version):
        balloon = self.shell.wait_for(lambda call: call.info, self.first, "a balloon", FIRST_CHECK + PATIENCE)
        require(balloon.info == SAID.balloon.format(version, VERSION), f"the balloon says {balloon.info!r}")

    def look_alive(self):
        require(self.program.poll() is None, "the program runs")
        at = self.shell.mark()
        self.shell.command(f"tick {MEMORY_TIMER}")
        ticks = [call for call in self.shell.since(at) if call.message == NIM_MODIFY and call.id == MEMORY_ICON]
        require(ticks, "a tick works")

    def look_unchanged(self):
        require([path.name for path in self.folder.iterdir()] == ["kestrane.exe"], "the folder is as it was")
        require((self.folder / "kestrane.exe").read_bytes() == self.original, "the executable is as it was")

    def look_for_offers(self, balloons):
        """So many since the last switch, and the menu's entry if there are any. The menu stays open."""
        seen = [call.info for call in self.shell.since(self.first) if call.info]
        require(len(seen) == balloons, f"the balloons are {seen}")
        self.menu = self.open_menu()
        wanted = MENU_WITH_OFFER if balloons else PLAIN_MENU
        require(self.menu.shape == wanted, f"the menu is {self.menu.shape} with {balloons} balloons")

    def leave_menu(self):
        require(self.neighbour.ask("send", self.hidden.handle, WM_CANCELMODE, 0, 0), "the menu can be left")
        wait_until(lambda: not self.neighbour.mode().menu, "the end of the menu")
        self.menu = None

    def end(self):
        if self.menu:
            self.leave_menu()
        require(self.desktop.run_kestrane("--exit").code == 0, "the program can be told to end")
        require(self.program.wait(timeout=60) == 0, "it ends as it should")


def run_lanes(test, lanes):
    """Each lane with its arguments, all at once; the test fails with what went wrong in any."""
    authority = Authority(private_network.SCRATCH / "authority")
    private_network.trust(authority.root)
    with concurrent.futures.ThreadPoolExecutor(len(lanes)) as pool:
        running = [pool.submit(kind(number, authority).run, *rest) for number, (kind, *rest) in enumerate(lanes, 1)]
    for lane in running:
        with test.subTest():
            test.assertEqual(lane.result(), [])
