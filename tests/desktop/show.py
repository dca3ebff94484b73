#!/usr/bin/env python3
"""Runs kestrane.exe for some seconds on a virtual screen with a taskbar, on this machine's real load.

Prints the four latest tooltips as the shell got them, and saves two pictures into the given folder: the screen, and the
four icons enlarged. The language is that of the caller's locale.
"""

import os
import pathlib
import subprocess
import sys

from harness import DARK_TASKBAR, NIM_DELETE, NIM_MODIFY, Desktop, every, pixels

# Enough ticks to fill the history of a 16-column icon.
TICKS = 18

ENLARGED = "800%"
BEHIND_ICONS = "#303030"


def caller_language():
    locale = os.environ.get("LC_ALL") or os.environ.get("LANG") or ""
    name = locale.partition(".")[0]
    return name if "_" in name else "en_US"


def save_icons(calls, path):
    """Saves the images of the calls side by side, pixel for pixel as the shell got them."""
    command = ["convert", "-background", BEHIND_ICONS, "-bordercolor", BEHIND_ICONS]
    for call in calls:
        # ImageMagick wants red, green, blue, alpha; the shell got alpha in the highest byte.
        raw = b"".join(((p << 8 | p >> 24) & 0xFFFFFFFF).to_bytes(4, "big") for row in pixels(call) for p in row)
        part = path.with_suffix(f".{call.id}.rgba")
        part.write_bytes(raw)
        command += ["(", "-size", f"{call.width}x{call.height}", "-depth", "8", str(part), "-flatten"]
        command += ["-scale", ENLARGED, "-border", "20", ")"]
    subprocess.run([*command, "+append", str(path)], check=True)
    for call in calls:
        path.with_suffix(f".{call.id}.rgba").unlink()


def latest_changes(shell):
    """The latest change of each icon, in icon order."""
    changes = {call.id: call for call in shell.since(0) if call.message == NIM_MODIFY}
    return [changes[icon] for icon in sorted(changes)]


def main():
    folder = pathlib.Path(sys.argv[1])
    with Desktop(language=caller_language(), registry=DARK_TASKBAR) as desktop:
        desktop.write_ini(every(500))
        shell = desktop.start_taskbar()
        desktop.start_kestrane_at_taskbar()
        shell.wait_for_ticks(TICKS, icon=1, start=0)
        latest = latest_changes(shell)
        desktop.take_screenshot(folder / "screen.png")
        save_icons(latest, folder / "icons.png")
        desktop.start_kestrane_at_taskbar("--exit")
        shell.wait_for_count(4, lambda call: call.message == NIM_DELETE and call.answer)
    for call in latest:
        print(call.tip)
    print(f"the screen: {folder / 'screen.png'}\nthe four icons: {folder / 'icons.png'}")


if __name__ == "__main__":
    main()
