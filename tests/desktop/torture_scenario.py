"""A life of the program in a few seconds, in which everything is used once, and in which one system call may fail.

A `Rack` has a screen, a prefix and a server of its own and lives through it again and again. Each step is tried, and
what does not come within a moment is left out, as a failure may be why; what is asked of the program is in `Rack.live`.
"""

import contextlib
import hashlib
import json
import shutil
import subprocess
import time

import private_network
from harness import (
    BUILD,
    CPU_TIMER,
    DISK_TIMER,
    HIDDEN_WINDOW,
    MEMORY_TIMER,
    NETWORK_TIMER,
    NIM_MODIFY,
    Desktop,
    every,
    windows_path,
)
from onscreen import (
    DIALOG_CLASS,
    GRAPH_CLASS,
    LEFT_BUTTON,
    MENU_CLASS,
    NIN_SELECT,
    PLACES,
    WM_CONTEXTMENU,
    Neighbour,
    counters,
    double_click_time,
)
from settings_window import TAB_BUTTONS
from test_promotion import PROMOTION_TIMER, entry
from torture_counts import Counts
from update_server import HOST, UpdateServer, reply
from updates import (
    CLOSE,
    DOWNLOAD,
    NEW_FILE,
    NEWER,
    NIN_BALLOONUSERCLICK,
    UPDATE,
    WEB_LINK,
    WORDS,
    Gate,
    leave_update_cut_off,
)

TIMERS = (CPU_TIMER, DISK_TIMER, MEMORY_TIMER, NETWORK_TIMER)
ICONS = (1, 2, 3, 4)
DISK_ICON = 2
# Without its counters the disk's icon says so, and is not changed any more.
OPENS_COUNTERS = ("PdhOpenQueryW", "PdhAddEnglishCounterW")

WM_CLOSE, WM_COMMAND, WM_NCMOUSEMOVE, BM_CLICK = 0x10, 0x111, 0xA0, 0xF5
HTCAPTION = 2

# Entries of the menu, and how far above its end they are.
ABOUT, SETTINGS, PIN_NETWORK = "about", "settings", "pin"
MENU_ROWS = {ABOUT: 31, SETTINGS: 56, PIN_NETWORK: 84}

# A moment, in seconds: for what comes at once unless something has failed. And for what must come.
MOMENT, PATIENCE = 2, 30

# The edits of each page, all by a click, and its "Save".
EDITS = {
    "cpu": ((1242, 1234), 1014),
    "disk": ((1266, 1256), 1252),
    "memory": ((1068, 1067), 1017),
    "network": ((1119, 1116), 1114),
    "general": ((1060,), 1069),
}
COLOUR_WELL = 1001
SETTINGS_TITLE = WORDS["en_US"].settings

# Task Manager's settings before and after. One that cannot be opened counts as missing, and a write that fails has
# emptied it: Task Manager then begins anew.
TASK_MANAGER_FILES = (
    b'{"DefaultStartPage":1,"CurrentView":0,"Other":[1,2,3]}',
    b'{"DefaultStartPage":1,"CurrentView":1,"Other":[1,2,3]}',
)
TASK_MANAGER_ANEW = {"_wfopen_s": b'{"DefaultStartPage":1,"CurrentView":1}', "fwrite": b""}

# Two graphs have had their places, the third will be placed beside the taskbar.
START = every(
    10000,
    **{name: f"x={PLACES[name][0]}\ny={PLACES[name][1]}\nwidth=300\nheight=150" for name in ("cpu", "disk")},
)


class Life:
    """What became of one life of the program."""

    def __init__(self, plan):
        self.plan = plan
        self.updates = plan.startswith("update")
        self.failure = plan.removeprefix("update").strip()
        self.findings = []
        self.code, self.was_told_to_end = None, False
        self.seconds = 0.0
        self.counts = None
        self.snapshots = []
        self.settings = None


class Ended(Exception):
    """The program has ended by itself."""


def values_of(text):
    """All keys of a settings file with their sections, and their values. A line that is neither is a key of its own."""
    values, section = {}, ""
    for line in text.splitlines():
        if line.startswith("["):
            section = line
        elif line:
            key, _, value = line.partition("=")
            values[section, key] = value
    return values


class Rack:
    """What the program is tortured on."""

    def __init__(self, number, authority):
        self.address = f"127.0.1.{number}"
        self.number = number
        self.authority = authority
        self._stack = contextlib.ExitStack()

    def __enter__(self):
        private_network.lead_this_thread_to(self.address)
        with contextlib.ExitStack() as stack:
            self.server = stack.enter_context(UpdateServer(self.address, self.authority.good))
            self.folder = private_network.SCRATCH / f"rack {self.number}" / "kestrane"
            registry = [entry(1, windows_path(self.folder / "kestrane.exe")), *double_click_time(1)["registry"]]
            self.desktop = stack.enter_context(Desktop(counters=counters(50), registry=registry))
            self.folder.mkdir(parents=True)
            shutil.copy(BUILD / "torture" / "torture.dll", self.folder)
            self.original = BUILD / "torture" / "kestrane.exe"
            self.executable = self.folder / "kestrane.exe"
            self._replace_launched_programs()
            self.shell = self.desktop.start_recorder()
            self.neighbour = Neighbour(self.desktop)
            self.newer = (BUILD / "kestrane-newer.exe").read_bytes()
            self._stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._stack.close()

    def _replace_launched_programs(self):
        """Task Manager and the browser, which would stay open."""
        for program in ("taskmgr.exe", "winebrowser.exe"):
            target = self.desktop.prefix / "drive_c" / "windows" / "system32" / program
            target.unlink(missing_ok=True)  # a hard link into the pristine prefix
            shutil.copy(BUILD / "poster.exe", target)
        self.desktop.environment["WINEDLLOVERRIDES"] += ";taskmgr.exe,winebrowser.exe=n"

    # The life.

    def live_to_the_failure(self, plan):
        """On a busy machine what came late may have been given up before the call that was to fail: then again, with
        patience. What was found nonetheless counts too."""
        life = self.live(plan)
        if life.counts.reached:
            return life
        found = life.findings
        life = self.live(plan, PATIENCE)
        life.findings[:0] = found
        return life

    def live(self, plan="", moment=MOMENT):
        """Starts the program, uses it, ends it, and reports what it should not have done. A plan that begins with
        "update" is for the other life, in which the program moves in from its former name and updates itself. What does
        not come within a moment is taken for failed."""
        life = self.life = Life(plan)
        self.moment = moment
        began = time.monotonic()
        self._prepare()
        try:
            if life.updates:
                self._move_in_and_update()
            else:
                self._use()
        except Ended:
            pass
        except AssertionError as error:
            life.findings.append(str(error))
        self._end()
        life.counts = Counts(self.counts)
        self._judge()
        life.seconds = time.monotonic() - began
        return life

    def _prepare(self):
        self.server.forget()
        self.gate = None
        self.publish()
        self.shell.reset()
        self.shell.drop()
        self.shell_start = self.shell.mark()
        self.watches = []
        self.counts = self.desktop.folder / "counts"
        self.counts.unlink(missing_ok=True)
        self._put_original_back()
        self.desktop.write_ini(START)
        self.former = self.desktop.ini_path.parents[1] / "orvalite" / "orvalite.ini"
        shutil.rmtree(self.former.parent, ignore_errors=True)
        if self.life.updates:
            self.former.parent.mkdir()
            self.desktop.ini_path.rename(self.former)
        self.task_manager = self.desktop.ini_path.parents[2] / "Local/Microsoft/Windows/TaskManager/settings.json"
        self.task_manager.parent.mkdir(parents=True, exist_ok=True)
        self.task_manager.write_bytes(TASK_MANAGER_FILES[0])
        leave_update_cut_off(self.folder)

    def _put_original_back(self):
        """By a rename, as it may be running."""
        copy = self.folder / "copy"
        shutil.copy(self.original, copy)
        copy.replace(self.executable)

    def publish(self, content=None):
        """The offer, and what is downloaded in its place."""
        manifest = {
            "version": NEWER,
            "url": f"https://{HOST}{DOWNLOAD}",
            "sha256": hashlib.sha256(self.newer).hexdigest(),
            "size": len(self.newer),
        }
        self.server.answers["/latest.json"] = reply(json.dumps(manifest).encode())
        self.server.answers[DOWNLOAD] = reply(self.newer if content is None else content)

    def _use(self):
        self._start()
        self._step(self._see_icons)
        self._step(self._open_graphs)
        self._step(self._hover_and_drag)
        self._step(self._pin_and_unpin)
        self._step(self._open_task_manager)
        self._step(self._use_settings)
        self._step(self._promote)
        self._step(self._update)
        self._step(self._see_icons)
        self._step(self._restart_shell)
        self._step(self._see_icons)

    def _move_in_and_update(self):
        self._start()
        self._step(self._see_icons)
        self._step(lambda: self._choose(ABOUT))
        self._step(self._update_for_good)
        self._step(self._see_icons)

    def _update_for_good(self):
        if not self._has_offer() or not (offer := self._open_offer()):
            return
        self._click(UPDATE, offer)
        self.life.was_told_to_end = True
        self._may(lambda: not self._offer())
        self._may(lambda: False)  # until it has ended
        self.life.was_told_to_end = False  # the update has failed

    def _step(self, step):
        """After each the program answers, and nothing that it has opened is in the way of the next."""
        step()
        self._settle()
        self.life.snapshots.append(self._read_settings())

    def _start_tortured(self, *arguments):
        environment = {"KESTRANE_TORTURE": self.life.failure, "KESTRANE_TORTURE_COUNTS": windows_path(self.counts)}
        process = self.desktop.start(self.executable, *arguments, environment=environment)
        self.watches.append(self.desktop.take_last_watch())
        return process

    def _start(self):
        start = self.shell.mark()
        self.process = self._start_tortured()
        self._must(self._find_hidden, "the hidden window")
        # The network's icon is set twice.
        self._may(lambda: sum(call.message == NIM_MODIFY and call.id == 4 for call in self.shell.calls[start:]) >= 2)
        self._answers()

    def _find_hidden(self):
        self.hidden = next((w.handle for w in self.neighbour.ask("windows") if w.name == HIDDEN_WINDOW), None)
        return self.hidden

    def _tick(self):
        for timer in TIMERS:
            self.shell.command(f"tick {timer}")

    def _graphs(self):
        return self.neighbour.windows(GRAPH_CLASS)

    def _open_graphs(self):
        for icon in (1, 2, 4):
            self.shell.command(f"callback {icon} {NIN_SELECT} 600 500")
        self._may(lambda: len(self._graphs()) == 3)
        for graph in self._graphs():
            self.neighbour.ask("paint", graph.handle, 1)

    def _hover_and_drag(self):
        for graph in self._graphs():
            left, top, right, bottom = graph.rect
            x, y = (left + right) // 2, (top + bottom) // 2
            self.neighbour.ask("send", graph.handle, WM_NCMOUSEMOVE, HTCAPTION, y << 16 | x)
            self.neighbour.ask("paint", graph.handle, 1)
        for graph in self._graphs()[:1]:
            x, y = graph.rect[0] + 40, graph.rect[1] + 40
            self.desktop.use_mouse("mousemove", "--", x, y, "mousedown", LEFT_BUTTON)
            self._may(lambda: self.neighbour.mode().moving)
            self.desktop.use_mouse("mousemove", "--", x + 30, y + 20, "mouseup", LEFT_BUTTON)
            self._must(lambda: not self.neighbour.mode().moving, "the end of the drag")

    def _pin_and_unpin(self):
        for _ in range(2):
            self._choose(PIN_NETWORK)

    def _choose(self, entry):
        """An entry of the menu, with the mouse."""
        self.shell.command(f"callback 1 {WM_CONTEXTMENU} 600 500")
        menus = self._may(lambda: self.neighbour.windows(MENU_CLASS))
        if not menus:
            return
        left, _, _, bottom = menus[0].rect
        deadline = time.monotonic() + PATIENCE
        while self.neighbour.mode().menu:
            if time.monotonic() > deadline:
                raise AssertionError("the menu does not end")
            # Until it is mapped it gets no click.
            self.desktop.use_mouse("mousemove", "--", left + 40, bottom - MENU_ROWS[entry], "click", LEFT_BUTTON)
            self._may(lambda: not self.neighbour.mode().menu, MOMENT / 10)

    def _open_task_manager(self):
        self.shell.command("callback 3 0x203 600 500")

    def _dialog(self, title=SETTINGS_TITLE):
        return self.neighbour.find(DIALOG_CLASS, title)

    def _use_settings(self):
        for _ in range(2):
            self._choose(SETTINGS)
            if dialog := self._may(self._dialog):
                break
        else:
            return
        self.dialog = dialog.handle
        for page, (edits, save) in EDITS.items():
            self.neighbour.ask("post", self.dialog, WM_COMMAND, TAB_BUTTONS[page], 0)
            self.neighbour.ask("paint", self.dialog, 1)
            if page == "cpu":
                self._choose_colour()
            for control in edits:
                self._click(control)
            self._click(save)
            if page == "general":
                self._click(*EDITS["general"][0])
                self._click(save)
        self.neighbour.ask("post", self.dialog, WM_CLOSE, 0, 0)
        self._may(lambda: not self._dialog())

    def _click(self, id, dialog=None):
        """Posted, so that a box that opens does not keep the answer back."""
        control = self.neighbour.ask("control", dialog or self.dialog, id)
        if control is None:
            return
        self.neighbour.ask("post", control.handle, BM_CLICK, 0, 0)
        self._answers()
        self._close_dialogs(but=dialog or self.dialog)

    def _choose_colour(self):
        well = self.neighbour.ask("control", self.dialog, COLOUR_WELL)
        if well is None:
            return
        self.neighbour.ask("post", well.handle, BM_CLICK, 0, 0)
        others = lambda: [box for box in self.neighbour.windows(DIALOG_CLASS) if box.handle != self.dialog]
        if self._may(others):
            self.neighbour.ask("post", others()[0].handle, WM_COMMAND, 1, 0)  # OK
            self._may(lambda: not others())
        self._close_dialogs(but=self.dialog)

    def _close_dialogs(self, but=None):
        """Closes whatever else is open."""
        deadline = time.monotonic() + PATIENCE
        while boxes := [box.handle for box in self.neighbour.windows(DIALOG_CLASS) if box.handle != but]:
            self._look_alive()
            if time.monotonic() > deadline:
                raise AssertionError("a dialog does not close")
            for box in boxes:
                self.neighbour.ask("post", box, WM_CLOSE, 0, 0)
            time.sleep(0.05)

    def _promote(self):
        self.shell.command(f"tick {PROMOTION_TIMER}")

    def _update(self):
        """An offer, a download that is not what was promised, and one that is left in the middle."""
        if not self._has_offer():
            return
        self.publish(self.newer[:-1] + b"?")
        offer = self._open_offer()
        if not offer:
            return
        self._click(WEB_LINK, offer)
        self._click(UPDATE, offer)
        self._may(lambda: self._downloads() == 1)
        enabled = lambda: getattr(self.neighbour.ask("control", offer, UPDATE), "enabled", True)
        self._may(enabled)
        self.gate = self.server.answers[DOWNLOAD] = Gate(self.newer)
        self._click(UPDATE, offer)
        self._may(lambda: self._downloads() == 2)
        self._may(lambda: self.folder.joinpath(NEW_FILE).exists())
        self.neighbour.ask("post", offer, WM_COMMAND, CLOSE, 0)
        self.gate.open()
        self._may(lambda: not self._offer())

    def _has_offer(self):
        return self._may(lambda: any(call.info for call in self.shell.calls), 2 * self.moment)

    def _open_offer(self):
        self.shell.command(f"callback 1 {NIN_BALLOONUSERCLICK} 600 500")
        offer = self._may(self._offer)
        return offer.handle if offer else None

    def _offer(self):
        return self._dialog(WORDS["en_US"].title)

    def _downloads(self):
        return sum(request.path == DOWNLOAD for request in self.server.requests)

    def _restart_shell(self):
        self.shell_start = self.shell.mark()
        self.shell.command("restart")
        self._answers()

    def _see_icons(self):
        """Two ticks of each timer after the failure, even if it comes within the first two, each icon is there and has
        been changed."""
        had_failed = self._has_failed()
        missing = self._missing(self._two_ticks())
        if missing and self._has_failed() != had_failed:
            missing = self._missing(self._two_ticks())
        if missing:
            raise AssertionError(f"two ticks later the icons {missing} are not there")

    def _has_failed(self):
        return Counts(self.counts).reached

    def _two_ticks(self):
        start = self.shell.mark()
        for _ in range(2):
            self._tick()
        self._answers()
        return start

    def _missing(self, start):
        missing = set(ICONS) - self._changed_since(start)
        if self.life.failure.split(" ")[0] in OPENS_COUNTERS:
            missing -= {DISK_ICON} & self._changed_since(self.shell_start)
        return sorted(missing)

    def _changed_since(self, start):
        calls = [call for call in self.shell.since(start) if call.message <= NIM_MODIFY and call.width]
        return {call.id for call in calls if call.answer}

    # Waiting.

    def _look_alive(self):
        if self.process.poll() is not None:
            raise Ended

    def _may(self, condition, moment=None):
        """What comes at once if nothing has failed."""
        deadline = time.monotonic() + (moment or self.moment)
        while not (found := condition()):
            self._look_alive()
            if time.monotonic() > deadline:
                return found
            time.sleep(0.01)
        return found

    def _must(self, condition, what):
        found = self._may(condition, PATIENCE)
        if not found:
            raise AssertionError(f"waited {PATIENCE} s in vain for {what}")
        return found

    def _answers(self):
        """The program has worked off all that was posted."""
        self._look_alive()
        self._must(lambda: self.neighbour.ask("send", self.hidden, 0, 0, 0), "an answer of the program")

    def _settle(self):
        self._answers()
        self._close_dialogs()
        if self.neighbour.mode().menu:
            self.neighbour.ask("post", self.hidden, 0x1F, 0, 0)  # WM_CANCELMODE
            self._must(lambda: not self.neighbour.mode().menu, "the end of the menu")

    # The end, and what is left.

    def _end(self):
        running = self.process.poll() is None
        if self._executable_is(self.newer):
            self._wait_for_newer()
        self.life.was_told_to_end |= running
        if self.life.updates:
            self._judge_executable()
            # The call that fails may be one of this.
            self._put_original_back()
            self._wait_for_end(self._start_tortured("--exit"), "the --exit in which a call may fail")
        if running or self.life.updates:
            self._wait_for_end(self.desktop.start_kestrane("--exit"), "the --exit without a failure")
        self._wait_for_end(self.process, "the program that was told to end")
        self.life.code = self.process.returncode
        if self._find_hidden():
            self.life.findings.append("--exit leaves a window")
        if self.gate:
            self.gate.open()

    def _wait_for_end(self, process, what):
        try:
            process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            self.life.findings.append(f"waited {PATIENCE} s in vain for the end of {what}")
            process.kill()
            process.wait()

    def _wait_for_newer(self):
        """The new version comes up, unless the failure was of its start."""
        deadline = time.monotonic() + 2 * self.moment
        while not self._find_hidden() and time.monotonic() < deadline:
            time.sleep(0.05)

    def _read_settings(self):
        """None while the file is being replaced."""
        try:
            return values_of(self.desktop.ini_path.read_text(encoding="utf-8"))
        except (FileNotFoundError, UnicodeDecodeError):
            return None

    def _judge(self):
        """The settings are judged by the caller, who knows what others have written."""
        signs = [sign for watch in self.watches for sign in watch.look()]
        found = [sign for sign in signs if "exit code" not in sign]  # the caller knows which code is right
        self.life.settings = self._read_settings()
        anew = TASK_MANAGER_ANEW.get(self.life.failure.split(" ")[0])
        if self.task_manager.read_bytes() not in (*TASK_MANAGER_FILES, anew):
            found.append(f"Task Manager's settings are {self.task_manager.read_bytes()}")
        if self.life.updates and self.former.read_text(encoding="ascii") != START:
            found.append("the settings of the former name have changed")
        self.life.findings += found

    def _executable_is(self, content):
        return self.executable.exists() and self.executable.read_bytes() == content

    def _judge_executable(self):
        """It is the old one or the new one, and nothing else."""
        if not self._executable_is(self.original.read_bytes()) and not self._executable_is(self.newer):
            names = sorted(path.name for path in self.folder.iterdir())
            self.life.findings.append(f"the executable is not whole: {names}")
