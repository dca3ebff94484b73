"""Opening the settings dialog against a bare one with as many plain controls, the samples of each page, and the whole
program with the dialog open.

Processor time of the process and the Wine server. Both dialogs belong to one process and open in turn; the time ends
when everything is painted.
"""

import subprocess
import time

import measure
from harness import Desktop, every, wineserver
from onscreen import Neighbour
from settings_window import TAB_BUTTONS, close_settings, open_settings, show_page

PAGES = tuple(TAB_BUTTONS)
PERIOD_SECONDS = 2
SETTLE_SECONDS = 2


class Dialogs:
    def __init__(self, desktop):
        self._process = desktop.start("dialog_bench.exe", stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._process.stdout.readline()  # its first line: it is running, and so is the server
        self._server = wineserver(desktop.prefix)

    def ask(self, *words):
        """The processor seconds of the process and of the server until it has answered."""
        before = self._seconds()
        self._process.stdin.write(" ".join(map(str, words)) + "\n")
        self._process.stdin.flush()
        if self._process.stdout.readline().strip() != "done":
            raise RuntimeError("dialog_bench has ended")
        return [after - start for after, start in zip(self._seconds(), before)]

    def _seconds(self):
        return [measure.cpu_seconds(pid) for pid in (self._process.pid, self._server)]


def open_in_turn(dialogs, rounds):
    """One row per side, and their ratio."""
    samples = {"kestrane": [], "bare": []}
    for number in range(rounds + 1):
        for side, spent in samples.items():
            cost = dialogs.ask("open", side)
            dialogs.ask("close")
            if number > 0:  # the first opening loads fonts and DLLs
                spent.append({"own": cost[0] * 1000, "with server": sum(cost) * 1000})
    rows = [{"dialog": side, **{f"{key} ms": measure.median([cost[key] for cost in spent]) for key in spent[0]},
             "samples": spent} for side, spent in samples.items()]
    return rows + [{"dialog": "ratio", **{key: rows[0][key] / rows[1][key] for key in ("own ms", "with server ms")}}]


def tick_pages(dialogs, rounds, count):
    dialogs.ask("open", "kestrane")
    rows = []
    for number, page in enumerate(PAGES):
        dialogs.ask("page", number)
        samples = [sum(dialogs.ask("tick", count)) / count for _ in range(rounds)]
        seconds = measure.median(samples)
        rows.append({"page": page, "ms": seconds * 1000, "% of a core": seconds / PERIOD_SECONDS * 100,
                     "samples": samples})
    dialogs.ask("close")
    return rows


def percent_of_a_core(pids, seconds):
    time.sleep(SETTLE_SECONDS)
    before = sum(map(measure.cpu_seconds, pids))
    time.sleep(seconds)
    return (sum(map(measure.cpu_seconds, pids)) - before) / seconds * 100


def watch_program(rounds, seconds):
    """The program with slow icons, without the dialog and with each of its pages open, in turn."""
    samples = {"no dialog": [], **{page: [] for page in PAGES}}
    with Desktop() as desktop:
        desktop.write_ini(every(10000))
        shell, neighbour = desktop.start_recorder(), Neighbour(desktop)
        process = desktop.start_kestrane()
        shell.wait_for_ticks(2, icon=4, start=0)
        pids = process.pid, wineserver(desktop.prefix)
        for _ in range(rounds):
            samples["no dialog"].append(percent_of_a_core(pids, seconds))
            dialog = open_settings(desktop, shell, neighbour)
            for page in PAGES:
                show_page(neighbour, dialog, page)
                samples[page].append(percent_of_a_core(pids, seconds))
            close_settings(neighbour, dialog)
    rows = [{"open": name, "% of a core": measure.median(shares), "samples": shares} for name, shares in samples.items()]
    for row in rows[1:]:
        row["more"] = row["% of a core"] - rows[0]["% of a core"]
    return rows


def run(rounds=15, tick_rounds=5, ticks=50, program_rounds=3, seconds=20):
    measure.stay_on_one_processor()
    with Desktop() as desktop:
        dialogs = Dialogs(desktop)
        opened, ticked = open_in_turn(dialogs, rounds), tick_pages(dialogs, tick_rounds, ticks)
    return {"open": opened, "ticks": ticked, "program": watch_program(program_rounds, seconds)}


def tables(results):
    return [("Opening the settings dialog against as many plain controls, medians (goal: ratio 1.5)",
             ("dialog", "own ms", "with server ms"), results["open"]),
            ("The samples of a page, made and painted every two seconds, medians (goal: below 1 %)",
             ("page", "ms", "% of a core"), results["ticks"]),
            ("The program with a page of the dialog open, medians (goal: at most 1 % more)",
             ("open", "% of a core", "more"), results["program"])]
