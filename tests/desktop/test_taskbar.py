"""The icons in Wine's own taskbar: their look, and real clicks."""

import unittest

from harness import (
    CPU_TIMER,
    DISK,
    DISK_TIMER,
    NIM_DELETE,
    NIM_MODIFY,
    TASKBAR_DESKTOP,
    TOTAL,
    Desktop,
    every,
    main,
    pixels,
    wait_until,
)
from onscreen import DIALOG_CLASS, GRAPH_CLASS, LEFT_BUTTON, MENU_CLASS, RIGHT_BUTTON, Neighbour, Picture

EDGE = 16

# The taskbar is at the bottom edge of the screen.
STRIP = range(770, 800 - EDGE + 1)

# The X server's name for the window below the mouse.
POINTER_ROOT = 1

# The memory icon has a transparent background, so its look depends on the taskbar.
OPAQUE_ICONS = {1: "cpu", 2: "disk", 4: "network"}


def counters(percent):
    """CPU and disk at this percentage, the disk for both reading and writing."""
    return [
        f"value|{TOTAL}||{percent}|0",
        rf"value|{DISK}\% Idle Time|0 C:|{100 - percent}|0",
        rf"value|{DISK}\% Disk Read Time|0 C:|1|0",
        rf"value|{DISK}\% Disk Write Time|0 C:|2|0",
        rf"value|{DISK}\Disk Read Bytes/sec|0 C:|1000|0",
        rf"value|{DISK}\Disk Write Bytes/sec|0 C:|2000|0",
    ]


def find_image(picture, rows):
    """The position of these pixels on the taskbar; None if they are not there."""
    wanted = [[pixel & 0xFFFFFF for pixel in row] for row in rows]
    for y in STRIP:
        for x in range(picture.width - EDGE, picture.width // 2, -1):
            if all(picture.row(y + i, x, x + EDGE) == wanted[i] for i in range(EDGE)):
                return x, y
    return None


class Taskbar(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(counters=counters(50))
        self.addCleanup(self.desktop.close)
        # Away from the icons, which the graphs would cover here: Wine does not exclude the taskbar from the work area.
        place = "x=100\ny={}\nwidth=400\nheight=200\n"
        settings = every(10000).replace("[cpu]\n", "[cpu]\n" + place.format(100))
        self.desktop.write_ini(settings.replace("[disk]\n", "[disk]\n" + place.format(400)))
        self.shell = self.desktop.start_taskbar()
        self.neighbour = Neighbour(self.desktop, TASKBAR_DESKTOP)
        self.desktop.start_kestrane_at_taskbar()
        self.shell.wait_for_ticks(2, icon=4, start=0)
        for percent in (10, 90, 40, 70, 20):  # so that all icons differ
            self.desktop.write_counters(counters(percent))
            self.shell.command(f"tick {CPU_TIMER}")
            self.shell.command(f"tick {DISK_TIMER}")

    def latest_image(self, icon):
        calls = self.shell.since(0)
        return pixels([call for call in calls if call.message == NIM_MODIFY and call.id == icon][-1])

    def wait_for_icon(self, icon):
        rows = self.latest_image(icon)
        return wait_until(lambda: find_image(Picture(self.desktop), rows), f"the {OPAQUE_ICONS[icon]} icon on the screen")

    def click(self, icon, button):
        x, y = self.wait_for_icon(icon)
        self.desktop.use_mouse("mousemove", x + EDGE // 2, y + EDGE // 2, "click", button)

    def test_icons_stand_there_pixel_by_pixel_in_their_order(self):
        places = [self.wait_for_icon(icon) for icon in OPAQUE_ICONS]
        self.assertEqual(len({y for _, y in places}), 1)
        # Wine's taskbar puts each new icon to the left of the others.
        self.assertEqual([x for x, _ in places], sorted((x for x, _ in places), reverse=True))

    def test_a_left_click_opens_the_graph(self):
        self.click(1, LEFT_BUTTON)
        wait_until(lambda: self.neighbour.find(GRAPH_CLASS, "kestrane - CPU"), "the CPU graph")
        self.assertEqual(len(self.neighbour.windows(GRAPH_CLASS)), 1)

    def test_a_double_click_opens_the_graph_once(self):
        (x, y), (disk_x, disk_y) = self.wait_for_icon(1), self.wait_for_icon(2)
        self.desktop.use_mouse("mousemove", x + EDGE // 2, y + EDGE // 2, "click", "--repeat", 2, LEFT_BUTTON)
        wait_until(lambda: self.neighbour.find(GRAPH_CLASS, "kestrane - CPU"), "the CPU graph")
        # Once a later click has taken effect, so has all of the double click.
        self.desktop.use_mouse("mousemove", disk_x + EDGE // 2, disk_y + EDGE // 2, "click", LEFT_BUTTON)
        wait_until(lambda: self.neighbour.find(GRAPH_CLASS, "kestrane - disk"), "the disk graph")
        self.assertEqual(len(self.neighbour.windows(GRAPH_CLASS)), 2)

    def test_a_double_click_on_the_memory_icon_opens_task_manager(self):
        (disk_x, y), (network_x, _) = self.wait_for_icon(2), self.wait_for_icon(4)
        x = (disk_x + network_x) // 2  # it is between those two
        self.desktop.use_mouse("mousemove", x + EDGE // 2, y + EDGE // 2, "click", "--repeat", 2, LEFT_BUTTON)
        wait_until(lambda: self.neighbour.find(DIALOG_CLASS, "Task Manager"), "Task Manager")
        file = self.desktop.ini_path.parents[2] / "Local" / "Microsoft" / "Windows" / "TaskManager" / "settings.json"
        self.assertEqual(file.read_bytes(), b'{"DefaultStartPage":1,"CurrentView":1}')

    def test_a_right_click_opens_the_menu_and_escape_closes_it(self):
        self.click(4, RIGHT_BUTTON)
        menu = wait_until(lambda: self.neighbour.find(MENU_CLASS), "the menu")
        # Wine 10 gives the keyboard to a taskbar that was clicked, and leaves it there. Now it is the menu's, below the mouse.
        self.desktop.use_mouse("mousemove", menu.rect[0] + 5, menu.rect[1] + 5, "windowfocus", POINTER_ROOT, "key", "Escape")
        wait_until(lambda: not self.neighbour.find(MENU_CLASS), "the end of the menu")

        self.desktop.start_kestrane_at_taskbar("--exit")
        self.shell.wait_for_count(4, lambda call: call.message == NIM_DELETE and call.answer)


if __name__ == "__main__":
    main()
