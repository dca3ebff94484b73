"""A minute of the program at its default periods against Wine's own task manager: processor time, memory, threads, and
the time from start to first icon. One program at a time on the same screen, in turn."""

import time

import measure
from harness import Desktop, thread_count, wait_until, wineserver

WM_CLOSE, WM_SYSCOMMAND, SC_MINIMIZE = 0x10, 0x112, 0xF020
SETTLE_SECONDS = 5

TASK_MANAGER_WINDOW = "#32770"
TASK_MANAGER_KEY = r"HKCU\Software\Wine\TaskManager"
# In hexadecimal digits, after the maximised flag and the four edges of the window.
ACTIVE_PAGE = slice(40, 48)
APPLICATIONS, PERFORMANCE = "00000000", "02000000"

GRAPHS = "".join(f"[{section}]\ngraph=1\nx={x}\ny=100\nwidth=400\nheight=150\n"
                 for section, x in (("network", 20), ("cpu", 440), ("disk", 860)))


class Kestrane:
    window = "kestrane.hidden"

    def __init__(self, desktop, settings):
        self.desktop, self.settings = desktop, settings

    def set_up(self):
        self.desktop.write_ini(self.settings)

    def start(self):
        return self.desktop.start_kestrane()

    def settle(self):
        """Nothing to do once it is running."""


class TaskManager:
    window = TASK_MANAGER_WINDOW

    def __init__(self, desktop, page, minimized):
        self.desktop, self.page, self.minimized = desktop, page, minimized
        self.path = str(desktop.prefix / "drive_c" / "windows" / "system32" / "taskmgr.exe")

    def _registry(self, *arguments):
        return self.desktop.run("reg.exe", *arguments).output

    def set_up(self):
        """It stores the current page in its settings, which it writes on exit."""
        words = self._registry("query", TASK_MANAGER_KEY, "/v", "Preferences").split()
        if "REG_BINARY" not in words:
            raise RuntimeError("the task manager has left no settings")
        digits = words[-1]
        digits = digits[:ACTIVE_PAGE.start] + self.page + digits[ACTIVE_PAGE.stop:]
        self._registry("add", TASK_MANAGER_KEY, "/v", "Preferences", "/t", "REG_BINARY", "/d", digits, "/f")

    def start(self):
        return self.desktop.start(self.path)

    def settle(self):
        if self.minimized:
            self.desktop.send_messages(1, WM_SYSCOMMAND, SC_MINIMIZE, class_name=self.window)


def end(desktop, program, process):
    desktop.send_messages(1, WM_CLOSE, 0, class_name=program.window)
    wait_until(lambda: process.poll() is not None, f"the end of {program.window}")


def start(shell, program):
    """Returns the process, and the seconds from its start to its first icon."""
    mark = shell.mark()
    started = time.monotonic()
    process = program.start()
    shell.wait_for(lambda call: call.width > 0, start=mark, what="the first icon")
    return process, time.monotonic() - started


def spent_milliseconds(pids, seconds):
    """The processor time of each process over that period."""
    before = [measure.cpu_seconds(pid) for pid in pids]
    time.sleep(seconds)
    return [(measure.cpu_seconds(pid) - seconds_before) * 1000 for pid, seconds_before in zip(pids, before)]


def watch(desktop, shell, program, seconds, idle_server):
    """`idle_server` is the server's processor time over that period without the program."""
    program.set_up()
    process, first_icon = start(shell, program)
    program.settle()
    time.sleep(SETTLE_SECONDS)
    own, server = spent_milliseconds((process.pid, wineserver(desktop.prefix)), seconds)
    sizes = measure.memory_kilobytes(process.pid)
    figures = {"cpu ms": own, "with server ms": own + server - idle_server,
               "private KB": sizes["private"], "resident KB": sizes["resident"],
               "threads": thread_count(process.pid), "first icon ms": first_icon * 1000}
    end(desktop, program, process)
    return figures


def run(rounds=3, seconds=60):
    measure.stay_on_one_processor()
    with Desktop() as desktop:
        shell = desktop.start_recorder()
        programs = {
            "kestrane, icons alone": Kestrane(desktop, ""),
            "taskmgr, minimised": TaskManager(desktop, APPLICATIONS, True),
            "kestrane, three graphs": Kestrane(desktop, GRAPHS),
            "taskmgr, performance page": TaskManager(desktop, PERFORMANCE, False),
        }
        # A warm-up run, so that the files are cached and the task manager has settings to change.
        for program in programs.values():
            process, _ = start(shell, program)
            end(desktop, program, process)
        samples = {name: [] for name in programs}
        for _ in range(rounds):
            idle_server, = spent_milliseconds([wineserver(desktop.prefix)], seconds)
            for name, program in programs.items():
                samples[name].append(watch(desktop, shell, program, seconds, idle_server))
    rows = [{"program": name, "samples": runs, **{key: measure.median([run[key] for run in runs]) for key in runs[0]}}
            for name, runs in samples.items()]
    return rows + [ratio_row(rows[0], rows[1]), ratio_row(rows[2], rows[3])]


def ratio_row(row, other):
    return {"program": "ratio, " + row["program"].split(", ")[1],
            **{key: row[key] / other[key] for key in row if key not in ("program", "samples")}}


def tables(rows):
    title = "A minute at the default periods against Wine's task manager, medians (goals: cpu, icons alone 0.5, all 1)"
    columns = ("program", "cpu ms", "with server ms", "private KB", "resident KB", "threads", "first icon ms")
    return [(title, columns, rows)]
