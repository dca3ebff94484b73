#!/usr/bin/env python3
"""Makes the pictures of the web pages: the real program at twice the size, for a light page and for a dark one.

    site_pictures.py FOLDER
"""

import pathlib
import subprocess
import sys

import private_network
from harness import COLORS, Desktop, every, pixels
from onscreen import Neighbour
from pictures import (
    BOTTOM,
    DIALOG_LOOK,
    ETHERNET,
    HARDWARE,
    LEFT,
    PROCESSOR,
    PROCESSOR_FACTS,
    RIGHT,
    TOP,
    UP,
    Scene,
    hidden_buttons,
    save_part,
)
from settings_window import open_settings, show_page
from show import latest_changes

# Twice as wide a graph shows twice as much history.
SCALE, SEED, TICKS = 2, 391, 700
LANGUAGES = {"en": "en_US", "es": "es_ES"}

# On a phone only the right column of the graphs, with the icons below it.
NARROW_LEFT = 852

# Open Sans is about as wide as Segoe UI, which only Windows has.
FONT = DIALOG_LOOK[:1]


def look(taskbar, text, wallpaper):
    colors = f'"Menu"="{taskbar}"\n"MenuText"="{text}"\n"Background"="{wallpaper}"'
    return FONT + [(COLORS, colors)] + hidden_buttons(taskbar)


LOOKS = {"light": look("238 240 243", "32 32 32", "196 215 228"), "dark": look("32 32 32", "255 255 255", "24 40 56")}

# What a user of a light taskbar would choose: white graphs, and dark digits of the memory icon.
WHITE = ("cpu_graph_bg", "disk_graph_bg", "net_graph_bg")
DARK = ("mem_text", "mem1_text")
LIGHT_COLORS = "[colors]\n" + "".join([f"{key}=FFFFFF\n" for key in WHITE] + [f"{key}=202020\n" for key in DARK])
MORE_SETTINGS = {"light": LIGHT_COLORS, "dark": ""}

# The frame of the dialog's window at this scale, drawn by Wine, and the height of what the page holds.
DIALOG_FRAME = (4, 41, 4)
PAGE_HEIGHT = 1226
DIALOG_SCREEN = "2560x2000"


def save_icons(calls, folder, scheme):
    """One picture per icon, pixel for pixel as the shell got it."""
    for name, call in zip(("cpu", "disk", "memory", "network"), calls):
        # ImageMagick wants red, green, blue, alpha; the shell got alpha in the highest byte.
        raw = b"".join(((p << 8 | p >> 24) & 0xFFFFFFFF).to_bytes(4, "big") for row in pixels(call) for p in row)
        size = f"{call.width}x{call.height}"
        path = folder / f"icon-{name}-{scheme}.png"
        subprocess.run(["convert", "-size", size, "-depth", "8", "rgba:-", str(path)], input=raw, check=True)


def save_scene(folder, language, scheme):
    scene = Scene(
        LANGUAGES[language],
        "per_core=1",
        look=LOOKS[scheme],
        scale=SCALE,
        more_settings=MORE_SETTINGS[scheme],
        seed=SEED,
        ticks=TICKS,
    )
    name = f"{language}-{scheme}.png"
    with scene.desktop:
        scene.save(folder / f"desktop-{name}", LEFT, TOP, RIGHT, BOTTOM)
        scene.save(folder / f"narrow-{name}", NARROW_LEFT, TOP, RIGHT, BOTTOM)
        save_icons(latest_changes(scene.shell), folder, scheme)
        scene.save_readout("disk", 260, 90, folder / f"moment-{name}")


def save_settings(folder, language):
    lines = "style=lines\nsmoothing=1\nfill=50"
    network = [f"row|1|Ethernet|{ETHERNET}|{UP}|{HARDWARE}|0|0", "address|1|192.0.2.10"]
    options = {"dpi": 96 * SCALE, "network": network, "registry": DIALOG_LOOK, "screen": DIALOG_SCREEN}
    with Desktop(LANGUAGES[language], **options) as desktop:
        desktop.write_ini(every(1500, cpu=lines))
        shell, neighbour = desktop.start_recorder(), Neighbour(desktop)
        for name, kind, value in PROCESSOR_FACTS:
            desktop.start("reg.exe", "add", PROCESSOR, "/v", name, "/t", kind, "/d", value, "/f").wait()
        desktop.start_kestrane()
        shell.wait_for_ticks(2, icon=4, start=0)
        dialog = open_settings(desktop, shell, neighbour)
        desktop.use_mouse("mousemove", 1, 1)
        show_page(neighbour, dialog, "cpu")
        left, top, right = (edge + inset for edge, inset in zip(dialog.rect, DIALOG_FRAME))
        width = (right - 2 * DIALOG_FRAME[2] - left) // SCALE * SCALE
        page = left, top, left + width, top + PAGE_HEIGHT
        save_part(desktop, folder / f"settings-{language}.png", page)


def main():
    private_network.enter()
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for language in LANGUAGES:
        for scheme in LOOKS:
            save_scene(folder, language, scheme)
        save_settings(folder, language)
    subprocess.run(["optipng", "-quiet", "-o5", "-strip", "all", *sorted(map(str, folder.glob("*.png")))], check=True)


if __name__ == "__main__":
    main()
