"""Observing and acting on the screen: windows as another program finds them, pixels, and the mouse."""

import configparser
import json
import queue
import subprocess
import threading
import types

from harness import CORES, DISK, HIDDEN_WINDOW, TIMEOUT, TOTAL, DesktopTest, wait_until

GRAPH_CLASS = "kestrane.graph"
MENU_CLASS = "#32768"
DIALOG_CLASS = "#32770"

WS_EX_TOPMOST, WS_EX_TRANSPARENT, WS_EX_TOOLWINDOW = 0x8, 0x20, 0x80
WS_EX_LAYERED, WS_EX_NOACTIVATE = 0x80000, 0x8000000

# The notification area's events, as sent to the program.
WM_CONTEXTMENU, WM_LBUTTONDBLCLK, NIN_SELECT, NIN_KEYSELECT, NIN_BALLOONUSERCLICK = 0x7B, 0x203, 0x400, 0x401, 0x405
ICON_OF = {"cpu": 1, "disk": 2, "network": 4}
TITLES = {
    "en_US": {"cpu": "kestrane - CPU", "disk": "kestrane - disk", "network": "kestrane - network"},
    "es_ES": {"cpu": "kestrane - CPU", "disk": "kestrane - disco", "network": "kestrane - red"},
}

LEFT_BUTTON, RIGHT_BUTTON = 1, 3


KINDS = ("cpu", "disk", "network")

# Where the graphs first open on a screen of 1280 by 800: all end in the lower right corner.
FIRST_PLACES = {
    "network": (790, 650, 1280, 800),
    "cpu": (790, 500, 1280, 800),
    "disk": (790, 350, 1280, 800),
}

# Places at which they do not touch each other.
PLACES = {"cpu": (100, 100, 500, 300), "disk": (600, 100, 1000, 300), "network": (100, 400, 500, 600)}


def open_at(kind, rect, *more):
    """The settings of one open graph."""
    left, top, right, bottom = rect
    keys = ["graph=1", "refresh_ms=10000", f"x={left}", f"y={top}", f"width={right - left}", f"height={bottom - top}"]
    return "\n".join([f"[{kind}]", *keys, *more, ""])


def all_open(*more):
    return "".join(open_at(kind, PLACES[kind], *more) for kind in KINDS)


def double_click_time(milliseconds):
    """The options of a Desktop with this double-click time."""
    return {"registry": [("Control Panel\\\\Mouse", f'"DoubleClickSpeed"="{milliseconds}"')]}


def counters(value, read=None, write=None, cores=8):
    """A machine on which everything has this value, except its one disk if speeds are given."""
    read = value if read is None else read
    write = value if write is None else write
    lines = [f"value|{TOTAL}||{value}|0"]
    lines += [f"value|{CORES}|0,{number}|{value}|0" for number in range(cores)]
    for name in ("% Idle Time", "% Disk Read Time", "% Disk Write Time"):
        lines.append(rf"value|{DISK}\{name}|0 C:|{value}|0")
    lines.append(rf"value|{DISK}\Disk Read Bytes/sec|0 C:|{read}|0")
    lines.append(rf"value|{DISK}\Disk Write Bytes/sec|0 C:|{write}|0")
    return lines


class Neighbour:
    """Another program on the same desktop, see neighbour.cpp; its unsolicited messages are in `told`."""

    def __init__(self, desktop, where=None):
        arguments = [where] if where else []
        self._process = desktop.start("neighbour.exe", *arguments, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._answers = queue.Queue()
        self.told = []
        threading.Thread(target=self._read, daemon=True).start()
        self._take_answer("its first line")

    def _read(self):
        for line in self._process.stdout:
            try:
                record = json.loads(line, object_hook=lambda fields: types.SimpleNamespace(**fields))
            except json.JSONDecodeError:
                record = types.SimpleNamespace(answer=AssertionError(f"the neighbour says {line!r}"))
            if hasattr(record, "answer"):
                self._answers.put(record.answer)
            else:
                self.told.append(record)

    def _take_answer(self, what):
        try:
            answer = self._answers.get(timeout=TIMEOUT)
        except queue.Empty:
            raise AssertionError(f"no answer of the neighbour to {what}") from None
        if isinstance(answer, AssertionError):
            raise answer
        return answer

    def ask(self, *words):
        command = " ".join(map(str, words))
        self._process.stdin.write(command + "\n")
        self._process.stdin.flush()
        return self._take_answer(command)

    def windows(self, class_name):
        """The visible windows of a class, topmost first."""
        return [window for window in self.ask("windows") if window.name == class_name and window.visible]

    def find(self, class_name, title=None):
        """The first visible window of the class, or None."""
        found = [window for window in self.windows(class_name) if title in (None, window.title)]
        return found[0] if found else None

    def mode(self):
        return self.ask("mode", HIDDEN_WINDOW)


class Picture:
    """A snapshot of the screen, as 0xRRGGBB by column and row."""

    def __init__(self, desktop):
        command = ["import", "-display", desktop.display, "-window", "root", "-depth", "8", "ppm:-"]
        data = subprocess.run(command, check=True, capture_output=True).stdout
        kind, size, depth, pixels = data.split(b"\n", 3)
        assert (kind, depth) == (b"P6", b"255")
        self.width, self.height = map(int, size.split())
        self._pixels = pixels

    def at(self, x, y):
        start = 3 * (y * self.width + x)
        return int.from_bytes(self._pixels[start : start + 3], "big")

    def row(self, y, left, right):
        return [self.at(x, y) for x in range(left, right)]

    def column(self, x, top, bottom):
        return [self.at(x, y) for y in range(top, bottom)]

    def part(self, rect):
        """The bytes of a rectangle, for comparison with another snapshot."""
        left, top, right, bottom = rect
        rows = (3 * y * self.width for y in range(top, bottom))
        return b"".join(self._pixels[row + 3 * left : row + 3 * right] for row in rows)


def size_of(rect):
    left, top, right, bottom = rect
    return right - left, bottom - top


def holds(rect, x, y):
    left, top, right, bottom = rect
    return left <= x < right and top <= y < bottom


def middle_of(rect):
    left, top, right, bottom = rect
    return (left + right) // 2, (top + bottom) // 2


# The colours of a graph's frame and baseline, and of the readout box's frame.
FRAME, BOX_FRAME = 0x6D6D6D, 0x8A8A8A


def shows_readout(picture, rect):
    """Whether the top edge of a readout box is visible in a graph."""
    return BOX_FRAME.to_bytes(3, "big") * 30 in picture.part(rect)


class GraphTest(DesktopTest):
    """The graph windows of the real program, with another program running beside it."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.neighbour = Neighbour(cls.desktop)
        cls.titles = TITLES[cls.options.get("language", "en_US")]

    def setUp(self):
        super().setUp()
        self.point_at(1, 1)
        self.addCleanup(self.neighbour.ask, "hide")

    def start_with(self, *kinds):
        """Starts the program and waits for these graphs, which are open in the settings."""
        process = self.start()
        for kind in kinds:
            self.wait_for_graph(kind)
        return process

    def restart_with(self, *kinds):
        self.desktop.end_kestrane()
        return self.start_with(*kinds)

    # Observation.

    def graph(self, kind):
        """The shown window of a graph, or None."""
        return self.neighbour.find(GRAPH_CLASS, self.titles[kind])

    def rect(self, kind):
        graph = self.graph(kind)
        return tuple(graph.rect) if graph else None

    def wait_for_graph(self, kind):
        return wait_until(lambda: self.graph(kind), f"the {kind} graph")

    def wait_for_no_graph(self, kind):
        wait_until(lambda: not self.graph(kind), f"the end of the {kind} graph")

    def wait_for_rect(self, kind, rect):
        wait_until(lambda: self.rect(kind) == rect, f"the {kind} graph at {rect}, which is at {self.rect(kind)}", 30)

    def stack(self):
        """The graphs and the neighbour, the topmost first."""
        shown = [window for window in self.neighbour.ask("windows") if window.visible]
        return [window.title for window in shown if window.name in (GRAPH_CLASS, "neighbour")]

    def saved(self, section):
        """A section of the current settings file, which may be half written: so wait for the expected content."""
        file = configparser.ConfigParser(strict=False)
        try:
            file.read(self.desktop.ini_path, encoding="utf-8")
        except configparser.Error:
            return {}
        return dict(file[section]) if section in file else {}

    def saved_rect(self, kind):
        state = self.saved(kind)
        if not {"x", "y", "width", "height"} <= state.keys():
            return None
        try:
            x, y, width, height = (int(state[key] or 0) for key in ("x", "y", "width", "height"))
        except ValueError:
            return None  # it still holds what the test wrote
        return x, y, x + width, y + height

    def wait_for_saved(self, section, **values):
        wanted = {key: str(value) for key, value in values.items()}
        holds = lambda: wanted.items() <= self.saved(section).items()
        wait_until(holds, f"{wanted} in [{section}], which is {self.saved(section)}", 30)

    def wait_for_saved_rect(self, kind, rect):
        wait_until(lambda: self.saved_rect(kind) == rect, f"the {kind} graph saved at {rect}", 30)

    # The mouse.

    def point_at(self, x, y):
        self.desktop.use_mouse("mousemove", "--", x, y)

    def click(self, x, y, button=LEFT_BUTTON):
        self.desktop.use_mouse("mousemove", "--", x, y, "click", button)

    def press(self, x, y):
        """Presses the left button on a graph and waits until the system's move loop is running for it. It may still be
        running for another graph, from an earlier click."""
        under_mouse = lambda: [graph.handle for graph in self.neighbour.windows(GRAPH_CLASS) if holds(graph.rect, x, y)]
        self.desktop.use_mouse("mousemove", "--", x, y, "mousedown", LEFT_BUTTON)
        wait_until(lambda: self.neighbour.mode().moving in under_mouse(), f"a drag that begins at {x}, {y}")

    def release(self):
        self.desktop.use_mouse("mouseup", LEFT_BUTTON)
        wait_until(lambda: not self.neighbour.mode().moving, "the end of the drag")

    def drag(self, start, dx, dy):
        self.press(*start)
        self.point_at(start[0] + dx, start[1] + dy)
        self.release()

    # The icons, through the events that the shell sends.

    def send_to_icon(self, kind, event, x=600, y=600):
        self.shell.command(f"callback {ICON_OF[kind]} {event} {x} {y}")

    def click_icon(self, kind):
        self.send_to_icon(kind, NIN_SELECT)
