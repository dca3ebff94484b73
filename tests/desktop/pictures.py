#!/usr/bin/env python3
"""Makes the pictures of the README: the real program on the desktop of a made-up machine.

    pictures.py FOLDER
"""

import pathlib
import random
import subprocess
import sys
import time

import private_network
from harness import (
    COLORS,
    CORES,
    CPU_TIMER,
    DARK_TASKBAR,
    DISK,
    DISK_TIMER,
    MEMORY_TIMER,
    NETWORK_TIMER,
    TASKBAR_DESKTOP,
    TOTAL,
    Desktop,
    every,
    wait_until,
)
from onscreen import GRAPH_CLASS, MENU_CLASS, WM_CONTEXTMENU, Neighbour, Picture, all_open, shows_readout
from settings_window import open_settings, show_page
from show import latest_changes, save_icons

TICK_SECONDS = 0.05
CORE_COUNT = 8
ETHERNET, UP, HARDWARE = 6, 1, 1

# A taskbar as dark as that of Windows, for which the icons' colours are designed, and without the buttons that Wine
# gives even to tool windows.
BUTTON_PARTS = ("Face", "Text", "Hilight", "Shadow", "Light", "DkShadow", "AlternateFace")
BUTTON_COLORS = ("Hilight", *("Button" + part for part in BUTTON_PARTS))


def hidden_buttons(color):
    """Buttons of the taskbar's own colour."""
    return [(COLORS, f'"{name}"="{color}"') for name in BUTTON_COLORS]


DARK = DARK_TASKBAR + hidden_buttons("32 32 32")

# Wine ignores the transparency of menu images; on black they look as on Windows.
BLACK_MENU = [(COLORS, '"Menu"="0 0 0"\n"MenuText"="255 255 255"')]

# The settings dialog as on Windows: Open Sans is about as wide as Segoe UI, which only Windows has, and the grey of Wine
# is too light. It is photographed without the title bar and the frame that Wine draws.
DIALOG_LOOK = [
    ("Software\\\\Wine\\\\Fonts\\\\Replacements", '"Segoe UI"="Open Sans"'),
    (COLORS, '"GrayText"="109 109 109"'),
]
DIALOG_FRAME = (3, 22, 3, 3)
DIALOG_SCREEN = "1280x1000"

# The processor that the dialog names; Wine makes up the rest.
PROCESSOR = r"HKLM\HARDWARE\DESCRIPTION\System\CentralProcessor\0"
PROCESSOR_FACTS = (("ProcessorNameString", "REG_SZ", "Duo 3600"), ("~MHz", "REG_DWORD", "3600"))
WIFI = 71

# The graphs' places, and the part of the screen that contains them and the icons.
GRAPHS = {"cpu": (452, 408, 400, 360), "disk": (864, 408, 400, 174), "network": (864, 594, 400, 174)}
LEFT, TOP, RIGHT, BOTTOM = 440, 396, 1280, 800


def settings(cpu_keys, scale):
    text = every(10000)  # ticks are sent from here
    for section, rect in GRAPHS.items():
        x, y, width, height = (scale * edge for edge in rect)
        place = f"graph=1\nx={x}\ny={y}\nwidth={width}\nheight={height}\nstyle=lines\nsmoothing=1\nfill=50\n"
        text = text.replace(f"[{section}]\n", f"[{section}]\n{place}")
    return text.replace("[cpu]\n", "[cpu]\n" + "".join(key + "\n" for key in cpu_keys))


# With this seed all four icons have something to show at the end of these ticks.
SEED, TICKS = 159, 420
chance = random.Random()


class Load:
    """A load between 0 and 1 that fluctuates around a level, which changes now and then."""

    def __init__(self, chance, calm, busy):
        self._chance, self._calm, self._busy = chance, calm, busy
        self._level = self._value = calm

    def next(self):
        if chance.random() < self._chance:
            self._level = chance.choice((self._calm, self._calm, chance.uniform(self._calm, self._busy)))
        self._value += 0.22 * (self._level - self._value) + chance.gauss(0, 0.02 + 0.05 * self._value)
        self._value = max(0.0, min(1.0, self._value))
        return self._value


class Machine:
    def __init__(self, seed):
        chance.seed(seed)
        self._cores = [Load(0.05, 0.08, 0.95) for _ in range(CORE_COUNT)]
        self._read, self._write = Load(0.06, 0.02, 0.9), Load(0.06, 0.02, 0.8)
        self._down, self._up = Load(0.05, 0.02, 0.95), Load(0.05, 0.02, 0.6)
        self._received = self._sent = 0

    def counters(self):
        cores = [100 * core.next() for core in self._cores]
        read, write = self._read.next(), self._write.next()
        busy = 100 * min(1.0, 0.7 * read + 0.5 * write)
        lines = [f"value|{CORES}|0,{core}|{percent:.2f}|0" for core, percent in enumerate(cores)]
        lines.append(f"value|{TOTAL}||{sum(cores) / CORE_COUNT:.2f}|0")
        for name, value in (
            ("% Idle Time", 100 - busy),
            ("% Disk Read Time", 70 * read),
            ("% Disk Write Time", 50 * write),
            ("Disk Read Bytes/sec", 180e6 * read),
            ("Disk Write Bytes/sec", 120e6 * write),
        ):
            lines.append(f"value|{DISK}\\{name}|0 C:|{value:.2f}|0")
        return lines

    def network(self):
        self._received += int(TICK_SECONDS * 9e6 * self._down.next())
        self._sent += int(TICK_SECONDS * 6e6 * self._up.next())
        return [f"row|1|Ethernet|{ETHERNET}|{UP}|{HARDWARE}|{self._received}|{self._sent}"]


class Scene:
    """The made-up machine's desktop, with a taskbar and three graphs full of history. At a scale of 2 everything is
    twice as large."""

    def __init__(self, language, *cpu_keys, look=DARK, scale=1, more_settings="", seed=SEED, ticks=TICKS):
        machine = Machine(seed)
        self.scale = scale
        self.desktop = Desktop(
            language,
            dpi=96 * scale,
            screen=f"{1280 * scale}x{800 * scale}",
            counters=machine.counters(),
            network=machine.network(),
            registry=look,
        )
        self.desktop.write_ini(settings(cpu_keys, scale) + more_settings)
        self.shell = self.desktop.start_taskbar()
        self.neighbour = Neighbour(self.desktop, TASKBAR_DESKTOP)
        self.desktop.start_kestrane_at_taskbar()
        wait_until(lambda: len(self.neighbour.windows(GRAPH_CLASS)) == len(GRAPHS), "three graphs")
        for _ in range(ticks):
            self.desktop.write_counters(machine.counters())
            self.desktop.write_network(machine.network())
            for timer in (CPU_TIMER, DISK_TIMER, MEMORY_TIMER, NETWORK_TIMER):
                self.shell.command(f"tick {timer}")
            time.sleep(TICK_SECONDS)

    def save(self, path, left=LEFT, top=TOP, right=RIGHT, bottom=BOTTOM):
        save_part(self.desktop, path, tuple(self.scale * edge for edge in (left, top, right, bottom)))

    def save_readout(self, kind, dx, dy, path):
        """Saves a graph with the mouse at this point and its readout."""
        x, y, width, height = GRAPHS[kind]
        rect = x, y, x + width, y + height
        on_screen = tuple(self.scale * edge for edge in rect)
        self.desktop.use_mouse("mousemove", self.scale * (x + dx), self.scale * (y + dy))
        wait_until(lambda: shows_readout(Picture(self.desktop), on_screen), "a readout")
        self.save(path, *rect)


def save_part(desktop, path, rect):
    left, top, right, bottom = rect
    desktop.take_screenshot(path)
    part = f"{right - left}x{bottom - top}+{left}+{top}"
    subprocess.run(["mogrify", "-crop", part, "+repage", "+dither", "-colors", "255", str(path)], check=True)


def save_desktops(folder):
    english = Scene("en_US", "per_core=1")
    with english.desktop:
        english.save(folder / "desktop.png")
        save_icons(latest_changes(english.shell), folder / "icons.png")
        readouts = [folder / "graphs-cpu.png", folder / "graphs-disk.png"]
        english.save_readout("cpu", 255, 60, readouts[0])
        english.save_readout("disk", 260, 90, readouts[1])
    join_parts(readouts, folder / "graphs.png")

    spanish = Scene("es_ES")
    with spanish.desktop:
        spanish.save(folder / "desktop-es.png")


def save_menu(folder):
    with Desktop("en_US", dpi=192, registry=BLACK_MENU) as desktop:
        desktop.write_ini(all_open("pinned=1").replace("pinned=1", "pinned=0", 2))
        shell, neighbour = desktop.start_recorder(), Neighbour(desktop)
        desktop.start_kestrane()
        wait_until(lambda: len(neighbour.windows(GRAPH_CLASS)) == len(GRAPHS), "three graphs")
        shell.command(f"callback 1 {WM_CONTEXTMENU} 700 300")
        menu = wait_until(lambda: neighbour.find(MENU_CLASS), "the menu")
        blank = lambda: len(set(Picture(desktop).column(menu.rect[0] + 100, menu.rect[1] + 4, menu.rect[3] - 4))) < 3
        wait_until(lambda: not blank(), "the entries of the menu")
        save_part(desktop, folder / "menu.png", menu.rect)


def save_settings(language, path):
    """Two pages of the settings dialog side by side."""
    lines = "style=lines\nsmoothing=1\nfill=50"
    styles = {"cpu": lines, "network": lines + "\ninterfaces=1"}
    network = [f"row|1|Ethernet|{ETHERNET}|{UP}|{HARDWARE}|0|0", "address|1|192.0.2.10",
               f"row|2|Wi-Fi|{WIFI}|{UP}|{HARDWARE}|0|0", "address|2|198.51.100.23"]
    parts = {page: path.with_suffix(f".{page}.png") for page in styles}
    with Desktop(language, network=network, registry=DIALOG_LOOK, screen=DIALOG_SCREEN) as desktop:
        desktop.write_ini(every(1500, **styles))
        shell, neighbour = desktop.start_recorder(), Neighbour(desktop)
        for name, kind, value in PROCESSOR_FACTS:
            desktop.start("reg.exe", "add", PROCESSOR, "/v", name, "/t", kind, "/d", value, "/f").wait()
        desktop.start_kestrane()
        shell.wait_for_ticks(2, icon=4, start=0)
        dialog = open_settings(desktop, shell, neighbour)
        desktop.use_mouse("mousemove", 1, 1)
        left, top, right, bottom = (edge + inset for edge, inset in zip(dialog.rect, DIALOG_FRAME))
        for page, part in parts.items():
            show_page(neighbour, dialog, page)
            save_part(desktop, part, (left, top, right - 2 * DIALOG_FRAME[2], bottom - 2 * DIALOG_FRAME[3]))
    join_parts(parts.values(), path)


def join_parts(parts, path):
    """Side by side, with a gap."""
    command = ["convert", "-alpha", "set", "-background", "none", "-gravity", "center", *map(str, parts), "+smush", "12"]
    subprocess.run([*command, "-colors", "255", str(path)], check=True)
    for part in parts:
        part.unlink()


def main():
    private_network.enter()
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    save_desktops(folder)
    save_menu(folder)
    save_settings("en_US", folder / "settings.png")
    save_settings("es_ES", folder / "settings-es.png")


if __name__ == "__main__":
    main()
