#!/usr/bin/env python3
"""Makes the pictures of the README: the real program on the desktop of a made-up machine.

    pictures.py FOLDER
"""

import math
import pathlib
import random
import subprocess
import sys
import time

from harness import CPU_TIMER, DISK_TIMER, MEMORY_TIMER, NETWORK_TIMER, NIM_DELETE, Desktop, every
from show import latest_changes, save_icons

TOTAL = r"\Processor Information(_Total)\% Processor Utility"
CORES = r"\Processor Information(*)\% Processor Utility"
DISK = r"\PhysicalDisk(*)"

TICKS = 445
TICK_SECONDS = 0.05
CORE_COUNT = 8
ETHERNET, UP, HARDWARE = 6, 1, 1

# The taskbar's colour: as dark as that of Windows, for which the colours of the icons are made.
DARK = ("Control Panel\\\\Colors", '"Menu"="32 32 32"')

# Above the icons, one over the other; and the corner of the screen that holds them all.
GRAPHS = {"cpu": (840, 292), "disk": (840, 452), "network": (840, 612)}
GRAPH_WIDTH, GRAPH_HEIGHT = 430, 150
CORNER = "480x540+800+260"


def settings():
    text = every(10000)  # the ticks come from here
    for section, (x, y) in GRAPHS.items():
        place = f"graph=1\nx={x}\ny={y}\nwidth={GRAPH_WIDTH}\nheight={GRAPH_HEIGHT}\n"
        text = text.replace(f"[{section}]\n", f"[{section}]\n{place}style=lines\nfill=40\nsmoothing=1\n")
    return text


class Machine:
    """Loads that wander, with bursts."""

    def __init__(self):
        self._random = random.Random(7)
        self._received = self._sent = 0

    def _wave(self, tick, period, phase):
        wave = 0.5 + 0.5 * math.sin(2 * math.pi * (tick / period + phase))
        return max(0.0, min(1.0, wave**3 + self._random.gauss(0, 0.06)))

    def counters(self, tick):
        cores = [100 * self._wave(tick, 110, core / 20) for core in range(CORE_COUNT)]
        read, write = self._wave(tick, 90, 0.1), self._wave(tick, 60, 0.6)
        busy = 100 * min(1.0, 0.7 * read + 0.5 * write)
        lines = [f"value|{CORES}|0,{core}|{percent:.2f}|0" for core, percent in enumerate(cores)]
        lines.append(f"value|{TOTAL}||{sum(cores) / CORE_COUNT:.2f}|0")
        for name, value in (
            ("% Idle Time", 100 - busy),
            ("% Disk Read Time", 70 * read),
            ("% Disk Write Time", 50 * write),
            ("Disk Read Bytes/sec", 180e6 * read),
            ("Disk Write Bytes/sec", 90e6 * write),
        ):
            lines.append(f"value|{DISK}\\{name}|0 C:|{value:.2f}|0")
        return lines

    def network(self, tick):
        self._received += int(TICK_SECONDS * 9e6 * self._wave(tick, 110, 0.3))
        self._sent += int(TICK_SECONDS * 3e6 * self._wave(tick, 80, 0.7))
        return [f"row|1|Ethernet|{ETHERNET}|{UP}|{HARDWARE}|{self._received}|{self._sent}"]


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    machine = Machine()
    with Desktop(language="en_US", counters=machine.counters(0), network=machine.network(0), registry=[DARK]) as desktop:
        desktop.write_ini(settings())
        shell = desktop.start_taskbar()
        desktop.start_kestrane_at_taskbar()
        shell.wait_for_ticks(2, icon=4, start=0)
        for tick in range(TICKS):
            desktop.write_counters(machine.counters(tick))
            desktop.write_network(machine.network(tick))
            for timer in (CPU_TIMER, DISK_TIMER, MEMORY_TIMER, NETWORK_TIMER):
                shell.command(f"tick {timer}")
            time.sleep(TICK_SECONDS)
        desktop.take_screenshot(folder / "desktop.png")
        subprocess.run(["mogrify", "-crop", CORNER, "+repage", str(folder / "desktop.png")], check=True)
        save_icons(latest_changes(shell), folder / "icons.png")
        desktop.start_kestrane_at_taskbar("--exit")
        shell.wait_for_count(4, lambda call: call.message == NIM_DELETE and call.answer)


if __name__ == "__main__":
    main()
