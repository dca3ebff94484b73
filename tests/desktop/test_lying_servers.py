"""Manifests and servers that lie, and the real program, which must offer nothing, change nothing and live on.

A check comes some seconds after it has been switched on, so many programs run at once, each in a lane of its own: with
its screen, its prefix, its server, and the switch pressed anew for each case. All lanes end with an honest manifest,
which must be offered.
"""

import concurrent.futures
import time
import unittest

import private_network
from harness import BUILD, HIDDEN_WINDOW, MEMORY_TIMER, NIM_MODIFY, VERSION, Desktop, every, main, wait_until
from lies import ACCEPTED, LIES, manifest
from onscreen import DIALOG_CLASS, LEFT_BUTTON, MENU_CLASS, WM_CONTEXTMENU, Neighbour, Picture
from settings_window import SETTINGS_ENTRY, close_settings, show_page
from test_menu import Menu
from update_server import HOST, OTHER_HOST, STATS_HOST, Authority, UpdateServer, cut_handshake, welcome

LANES = 8

# From the switch to the check, and what a busy machine may add.
FIRST_CHECK, PATIENCE = 8, 90

# For the news of an answer to get from the thread that took it to the window.
GRACE = 0.5

# Between two bytes that drip, or at once.
LONGEST_STOP = 10

MEMORY_ICON = 3
PLAIN_MENU = "E-E-EE"
BM_CLICK, WM_CANCELMODE = 0xF5, 0x1F
CHECK_UPDATES = 1062

LAST = "9.9.9"
BALLOON = f"Version {{}} available (you have {VERSION}). Click to see the changes and update."


class Case:
    """What a server does for one check, and which version is to be offered then, if any."""

    def __init__(self, name, answer=None, offered=None, certificate="good", reception=welcome):
        self.name, self.answer, self.offered = name, answer or manifest(), offered
        self.certificate, self.reception = certificate, reception

    def is_over(self, server):
        """Whether the program has had its answer and let go of it."""
        return server.visits and all(visit.ended_by and visit.handshake != "begun" for visit in server.visits)


class Lane:
    """A program with all that it sees of the world."""

    def __init__(self, number, authority):
        self.number, self.authority = number, authority
        self.address = f"127.0.1.{number}"
        self.failures = []

    def run(self, cases):
        """What went wrong, in words."""
        private_network.lead_this_thread_to(self.address)
        with UpdateServer(self.address, self.authority.good) as self.server, Desktop() as self.desktop:
            self.arrange(cases[0])
            self.start()
            for case in cases:
                if case is not cases[0]:
                    self.check_again(case)
                self.observe(case)
            require(self.desktop.run_kestrane("--exit").code == 0, "the program can be told to end")
            require(self.program.wait(timeout=60) == 0, "it ends as it should")
        return self.failures

    def arrange(self, case):
        self.server.forget()
        self.server.certificate = getattr(self.authority, case.certificate)
        self.server.reception = case.reception
        self.server.answers["/latest.json"] = case.answer

    def start(self):
        self.folder = private_network.SCRATCH / f"lane {self.number}"
        self.desktop.run_kestrane_from(self.folder)
        self.original = (BUILD / "kestrane.exe").read_bytes()
        self.desktop.write_ini(every(10000))
        self.shell = self.desktop.start_recorder()
        self.neighbour = Neighbour(self.desktop)
        self.first = self.shell.mark()
        self.program = self.desktop.start_kestrane()
        self.shell.wait_for_ticks(2, icon=4, start=self.first)
        self.hidden = next(window for window in self.neighbour.ask("windows") if window.name == HIDDEN_WINDOW)
        self.learn_the_menu()

    def learn_the_menu(self):
        """How tall it is without an offer, and how far from its end the settings are."""
        rect = self.open_menu()
        menu = wait_until(lambda: (read := Menu(Picture(self.desktop), rect)).shape == PLAIN_MENU and read, "the menu")
        self.plain_height = self.height_of(rect)
        self.to_settings = rect[3] - menu.middle_of(SETTINGS_ENTRY)[1]
        require(self.neighbour.ask("send", self.hidden.handle, WM_CANCELMODE, 0, 0), "the menu can be left")
        self.wait_for_no_menu()

    def open_menu(self):
        self.shell.command(f"callback 1 {WM_CONTEXTMENU} 600 500")
        return wait_until(lambda: self.neighbour.find(MENU_CLASS), "the menu").rect

    def wait_for_no_menu(self):
        wait_until(lambda: not self.neighbour.mode().menu, "the end of the menu")

    @staticmethod
    def height_of(rect):
        return rect[3] - rect[1]

    def check_again(self, case):
        """Switches the checks off and on, so that one comes as after a start."""
        left, _, right, bottom = self.open_menu()
        self.desktop.use_mouse("mousemove", (left + right) // 2, bottom - self.to_settings, "click", LEFT_BUTTON)
        dialog = wait_until(lambda: self.neighbour.find(DIALOG_CLASS), "the settings dialog")
        show_page(self.neighbour, dialog, "general")
        switch = self.neighbour.ask("control", dialog.handle, CHECK_UPDATES)
        began = time.monotonic()
        self.press(switch)
        waited = time.monotonic() - began
        self.arrange(case)
        self.first = self.shell.mark()
        self.press(switch)
        require(self.neighbour.ask("control", dialog.handle, CHECK_UPDATES).ticked, "the checks are on again")
        close_settings(self.neighbour, dialog)
        require(waited < LONGEST_STOP, f"the check before {case.name} could be stopped at once, not after {waited:.1f} s")

    def press(self, switch):
        require(self.neighbour.ask("send", switch.handle, BM_CLICK, 0, 0), "the switch obeys")

    def observe(self, case):
        try:
            wait_until(lambda: case.is_over(self.server), "the end of the check", FIRST_CHECK + PATIENCE)
            if case.offered:
                balloon = self.shell.wait_for(lambda call: call.info, self.first, "a balloon", 10)
                require(balloon.info == BALLOON.format(case.offered), f"the balloon says {balloon.info!r}")
            else:
                time.sleep(GRACE)
            self.look(case)
        except AssertionError as error:
            self.failures.append(f"{case.name}: {error}")
            require(self.program.poll() is None, f"the program has ended: {self.failures}")

    def look(self, case):
        """The program lives, has offered what it was to offer and no more, and its folder is as it was."""
        at = self.shell.mark()
        self.shell.command(f"tick {MEMORY_TIMER}")
        ticks = [call for call in self.shell.since(at) if call.message == NIM_MODIFY and call.id == MEMORY_ICON]
        require(ticks, "a tick works")
        balloons = [call.info for call in self.shell.since(self.first) if call.info]
        require(len(balloons) == bool(case.offered), f"the balloons are {balloons}")
        taller = self.height_of(self.open_menu()) - self.plain_height
        require(self.neighbour.ask("send", self.hidden.handle, WM_CANCELMODE, 0, 0), "the menu can be left")
        self.wait_for_no_menu()
        require(bool(taller) == bool(case.offered), f"the menu is taller by {taller}")
        require([path.name for path in self.folder.iterdir()] == ["kestrane.exe"], "the folder is as it was")
        require((self.folder / "kestrane.exe").read_bytes() == self.original, "the executable is as it was")
        require(self.program.poll() is None, "the program runs")


def require(condition, what):
    if not condition:
        raise AssertionError(f"not true: {what}")


def cases():
    lies = [Case(name, answer) for name, answer in LIES.items()]
    lies += [
        Case(f"certificate {name}", certificate=name)
        for name in ("self_signed", "expired", "elsewhere", "unknown_authority")
    ]
    lies += [Case("TLS cut off", reception=cut_handshake)]
    return lies + [Case(f"accepted as {version}", answer, version) for version, answer in ACCEPTED.items()]


def share(everything, number):
    """A lane's part of the cases, and an honest end."""
    return everything[number::LANES] + [Case("the honest end", manifest(version=LAST), offered=LAST)]


class Manifests(unittest.TestCase):
    def test_only_the_honest_ones_are_believed(self):
        authority = Authority(private_network.SCRATCH / "authority")
        private_network.trust(authority.root)
        every_case = cases()
        with concurrent.futures.ThreadPoolExecutor(LANES) as pool:
            lanes = [pool.submit(Lane(number, authority).run, share(every_case, number)) for number in range(LANES)]
        for lane in lanes:
            for failure in lane.result():
                with self.subTest():
                    self.fail(failure)


if __name__ == "__main__":
    private_network.enter(HOST, STATS_HOST, OTHER_HOST)
    main()
