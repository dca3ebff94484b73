"""One tick of each metric in the real program against its floor, in processor time of the process and the Wine server.

Both programs run on the same screen with the same recording shell. They get their ticks in turn, as the same messages
from the same sender; the cost of delivering a message is measured too and subtracted from both.
"""

import measure
from harness import WM_TIMER, Desktop, every, wineserver

TIMERS = {"cpu": 1, "disk": 5, "memory": 3, "network": 4}
NO_TIMER = 99

# The floor's memory tick without the number on its icon.
BARE_MEMORY = 6

# So slow that almost all ticks come from the messages.
SLOW = every(10000)

DISK = r"\PhysicalDisk(*)"
COUNTERS = [
    r"value|\Processor Information(_Total)\% Processor Utility||50|0",
    *(rf"value|\Processor Information(*)\% Processor Utility|0,{i}|50|0" for i in range(8)),
    *(rf"value|{DISK}\{counter}|{disk}|40|0"
      for counter in ("% Idle Time", "% Disk Read Time", "% Disk Write Time", "Disk Read Bytes/sec",
                      "Disk Write Bytes/sec")
      for disk in ("0 C:", "1 D:")),
]


class Contest:
    """The program and its floor, both running."""

    def __init__(self, counters):
        self.desktop = Desktop(counters=counters)

    def __enter__(self):
        self.desktop.write_ini(SLOW)
        self.shell = self.desktop.start_recorder()
        kestrane = self.desktop.start_kestrane()
        floor = self.desktop.start("tick_floor.exe")
        self.shell.wait_for_ticks(2, icon=4, start=0)
        self.server = wineserver(self.desktop.prefix)
        self.sides = {"kestrane": (kestrane.pid, "kestrane.hidden"), "floor": (floor.pid, "kestrane.floor")}
        return self

    def __exit__(self, *_):
        self.desktop.close()

    def cost(self, side, timer, count):
        """Microseconds per message, over `count` messages."""
        pid, window = self.sides[side]
        before = measure.cpu_seconds(pid) + measure.cpu_seconds(self.server)
        if not self.desktop.send_messages(count, WM_TIMER, timer, class_name=window):
            raise RuntimeError(f"{side} does not answer")
        return (measure.cpu_seconds(pid) + measure.cpu_seconds(self.server) - before) / count * 1e6


def measure_metric(contest, name, timers, rounds, count):
    """`timers` are the program's and the floor's."""
    samples = {side: [] for side in contest.sides}
    for _ in range(rounds):
        for side, timer in zip(contest.sides, timers):
            delivery = contest.cost(side, NO_TIMER, count)
            samples[side].append(contest.cost(side, timer, count) - delivery)
    program, floor = measure.median(samples["kestrane"]), measure.median(samples["floor"])
    ratios = [a / b for a, b in zip(samples["kestrane"], samples["floor"])]
    return {"tick": name, "kestrane us": program, "floor us": floor, "ratio": measure.median(ratios),
            "samples": samples}


def run(rounds=9, count=200):
    measure.stay_on_one_processor()
    rows = []
    with Contest(None) as contest:
        for name in ("cpu", "memory", "network"):
            rows.append(measure_metric(contest, name, [TIMERS[name]] * 2, rounds, count))
        rows.append(measure_metric(contest, "memory, bare floor", (TIMERS["memory"], BARE_MEMORY), rounds, count))
    with Contest(COUNTERS) as contest:
        for name in ("cpu", "disk"):
            rows.append(measure_metric(contest, f"{name}, counters", [TIMERS[name]] * 2, rounds, count))
    return rows


def tables(rows):
    title = "One tick against its floor: processor time of the process and the Wine server, medians (goal: ratio 1.3)"
    return [(title, ("tick", "kestrane us", "floor us", "ratio"), rows)]
