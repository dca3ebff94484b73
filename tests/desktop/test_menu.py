"""The icons' menu: its look, its entries under a real mouse, and events while it is open."""

import subprocess

from harness import (
    HIDDEN_WINDOW,
    NIM_DELETE,
    NIM_MODIFY,
    NIM_SETFOCUS,
    NO_CHECK,
    ROOT,
    VERSION,
    every,
    main,
    wait_until,
)
from onscreen import (
    DIALOG_CLASS,
    KINDS,
    MENU_CLASS,
    NIN_KEYSELECT,
    NIN_SELECT,
    PLACES,
    RIGHT_BUTTON,
    WM_CONTEXTMENU,
    WS_EX_TOPMOST,
    WS_EX_TRANSPARENT,
    GraphTest,
    Picture,
    all_open,
    double_click_time,
    open_at,
)

MEMORY_ICON = 3

WHITE = 0xFFFFFF


class Entry:
    """One visible entry: its rows on the screen, and whether it has a check mark or an image before its text."""

    def __init__(self, rows, checked, image, weight):
        self.top, self.bottom = rows
        self.checked, self.image, self.weight = checked, image, weight


class Menu:
    """The open menu, read from its pixels: columns of check marks, images and texts, from left to right.

    The letters of `shape` are its entries from top to bottom: E for an entry, - for a separator.
    """

    def __init__(self, picture, rect, scale=1):
        self.rect = left, top, right, bottom = tuple(rect)
        self._picture = picture
        self._checks = left + 3, left + 16 * scale
        self._images = left + 20 * scale, left + 35 * scale
        self._texts = left + 37 * scale, right - 4
        self.shape, self.entries = "", []
        for rows in self._runs(top + 2, bottom - 2):
            self._add(rows)

    def _has_ink(self, y, columns):
        return any(pixel != WHITE for pixel in self._picture.row(y, *columns))

    def _runs(self, top, bottom):
        """Runs of rows with something in the text column."""
        runs, start = [], None
        for y in range(top, bottom + 1):
            ink = y < bottom and self._has_ink(y, self._texts)
            if ink and start is None:
                start = y
            if not ink and start is not None:
                runs.append((start, y))
                start = None
        return runs

    def _add(self, rows):
        top, bottom = rows
        if WHITE not in self._picture.row(top, *self._texts):
            self.shape += "-"
            return
        self.shape += "E"
        seen = lambda columns: any(self._has_ink(y, columns) for y in range(top, bottom))
        self.entries.append(Entry(rows, seen(self._checks), seen(self._images), self._weight(rows)))

    def _weight(self, rows):
        """The average horizontal stroke length of a text: longer in bold."""
        ink = ["".join("#" if p != WHITE else " " for p in self._picture.row(y, *self._texts)) for y in range(*rows)]
        strokes = [len(stroke) for row in ink for stroke in row.split()]
        return sum(strokes) / len(strokes)

    def middle_of(self, number):
        entry = self.entries[number]
        return (self._texts[0] + 20, (entry.top + entry.bottom) // 2)


def load_image(name, size):
    """The pixels of a menu image as rows of (red, green, blue, alpha)."""
    icon = ROOT / "res" / "icons" / f"{name}.ico"
    sizes = subprocess.run(["identify", "-format", "%w ", str(icon)], check=True, capture_output=True, text=True).stdout
    frame = f"{icon}[{sizes.split().index(str(size))}]"
    data = subprocess.run(["convert", frame, "-depth", "8", "rgba:-"], check=True, capture_output=True).stdout
    pixels = [tuple(data[i : i + 4]) for i in range(0, len(data), 4)]
    return [pixels[i : i + size] for i in range(0, len(pixels), size)]


def shows_image(picture, image, left, top):
    """Whether the opaque pixels of an image are at this position."""
    return all(
        picture.at(left + x, top + y) == red << 16 | green << 8 | blue
        for y, row in enumerate(image)
        for x, (red, green, blue, alpha) in enumerate(row)
        if alpha == 255
    )


class MenuTest(GraphTest):
    options = {"language": "es_ES", **double_click_time(1)}
    settings = every(10000)
    scale = 1

    # Positions of the entries, with all three pin entries present.
    PERFORMANCE, PIN_CPU, PIN_DISK, PIN_NETWORK, SETTINGS, ABOUT, EXIT = range(7)

    def open_menu(self, icon=1, x=600, y=500):
        self.shell.command(f"callback {icon} {WM_CONTEXTMENU} {x} {y}")
        return self.read_menu()

    def read_menu(self):
        """The menu, once it is fully painted."""

        def painted():
            window = self.neighbour.find(MENU_CLASS)
            menu = window and Menu(Picture(self.desktop), window.rect, self.scale)
            return menu if menu and len(menu.entries) >= 4 else None

        return wait_until(painted, "the menu")

    def wait_for_no_menu(self):
        wait_until(lambda: not self.neighbour.mode().menu, "the end of the menu")
        self.assertEqual(self.neighbour.windows(MENU_CLASS), [])

    def choose(self, number, **where):
        menu = self.open_menu(**where)
        self.click(*menu.middle_of(number))
        self.wait_for_no_menu()


class Look(MenuTest):
    def test_entries_follow_the_graphs_that_are_shown(self):
        rows = [
            ((), "E-E-EE"),
            (("disk",), "E-E-E-EE"),
            (("cpu", "network"), "E-EE-E-EE"),
            (KINDS, "E-EEE-E-EE"),
        ]
        for kinds, shape in rows:
            with self.subTest(kinds):
                self.desktop.write_ini("".join(open_at(kind, PLACES[kind]) for kind in kinds))
                self.start_with(*kinds)
                for icon in (1, 2, MEMORY_ICON, 4):  # the same menu for all
                    menu = self.open_menu(icon)
                    self.assertEqual(menu.shape, shape)
                    self.desktop.use_mouse("mousemove", *menu.middle_of(0), "key", "Escape")
                    self.wait_for_no_menu()
                self.desktop.end_kestrane()

    def test_default_entry_images_and_check_marks(self):
        self.desktop.write_ini(open_at("cpu", PLACES["cpu"]) + open_at("disk", PLACES["disk"], "pinned=1"))
        self.start_with("cpu", "disk")
        menu = self.open_menu()
        self.assertEqual(menu.shape, "E-EE-E-EE")
        self.assertEqual([entry.checked for entry in menu.entries], [False, False, True, False, False, False])
        self.assertEqual([entry.image for entry in menu.entries], [True, False, False, True, True, True])
        weights = [entry.weight for entry in menu.entries]
        self.assertGreater(weights[0], 1.2 * max(weights[1:]))

    def test_opens_at_its_point_and_stays_on_the_screen(self):
        self.start()
        self.assertEqual(self.open_menu(x=600, y=500).rect[:2], (600, 500))
        for x, y in ((0, 0), (1279, 10), (600, 799), (1279, 799), (-50, 300), (600, -32768), (32767, 32767)):
            self.click(30, 400)  # outside, to close the last one
            self.wait_for_no_menu()
            left, top, right, bottom = self.open_menu(x=x, y=y).rect
            self.assertTrue(0 <= left and 0 <= top and right <= 1280 and bottom <= 800, (left, top, right, bottom))


class DenseLook(MenuTest):
    options = {**MenuTest.options, "dpi": 192}
    scale = 2

    def test_images_are_twice_as_large(self):
        self.start()
        assert_images(self, self.open_menu())


class OrdinaryLook(MenuTest):
    def test_images_are_the_program_s_own(self):
        self.start()
        assert_images(self, self.open_menu())


def assert_images(test, menu):
    """Each of the four images is before its text, checked by its opaque pixels, at small icon size."""
    test.assertEqual(menu.shape, "E-E-EE")
    picture = Picture(test.desktop)
    size = 16 * test.scale
    for number, name in enumerate(("menu-performance", "menu-settings", "menu-about", "menu-exit")):
        image = load_image(name, size)
        entry = menu.entries[number]
        places = [
            (x, y)
            for x in range(menu.rect[0], menu.rect[0] + 3 * size)
            for y in range(entry.top - size // 2, entry.top + size // 2)
            if shows_image(picture, image, x, y)
        ]
        test.assertEqual(len(places), 1, name)


class RightAligned(MenuTest):
    """As on a tablet, or with the handedness setting."""

    options = {
        "registry": [("Control Panel\\\\Desktop", '"MenuDropAlignment"="1"')]
    }

    def test_the_menu_ends_at_its_point(self):
        self.start()
        self.assertEqual(self.open_menu(x=600, y=500).rect[2], 600)


class Commands(MenuTest):
    def test_each_pin_entry_pins_its_graph_and_unpins_it(self):
        self.desktop.write_ini(all_open("topmost=0"))
        self.start_with(*KINDS)
        pinned = lambda kind: self.graph(kind).extended & WS_EX_TRANSPARENT
        for number, kind in ((self.PIN_CPU, "cpu"), (self.PIN_DISK, "disk"), (self.PIN_NETWORK, "network")):
            others = [other for other in KINDS if other != kind]
            self.choose(number)
            self.wait_for_saved(kind, graph=1, pinned=1)
            wait_until(lambda: pinned(kind), f"a pinned {kind} graph")
            self.assertTrue(self.graph(kind).extended & WS_EX_TOPMOST)
            self.assertFalse(any(pinned(other) for other in others))
            self.assertEqual([entry.checked for entry in self.open_menu().entries].index(True), number)

            self.click(*self.read_menu().middle_of(number))
            self.wait_for_no_menu()
            self.wait_for_saved(kind, graph=1, pinned=0)
            wait_until(lambda: not pinned(kind), f"an unpinned {kind} graph")
            self.assertFalse(self.graph(kind).extended & WS_EX_TOPMOST)
            self.assertEqual(self.rect(kind), PLACES[kind])

    def test_a_pinned_graph_is_pinned_after_a_restart(self):
        self.desktop.write_ini(all_open())
        self.start_with(*KINDS)
        self.choose(self.PIN_NETWORK)
        self.wait_for_saved("network", pinned=1)
        self.restart_with(*KINDS)
        wait_until(lambda: self.graph("network").extended & WS_EX_TRANSPARENT, "the pinned network graph")

    def test_exit_ends_the_program_and_takes_the_icons_away(self):
        process = self.start()
        start = self.shell.mark()
        menu = self.open_menu()
        self.click(*menu.middle_of(3))
        self.assertEqual(process.wait(timeout=60), 0)
        deletes = self.shell.wait_for_count(4, lambda call: call.message == NIM_DELETE, start)
        self.assertEqual([call.answer for call in deletes], [1, 1, 1, 1])

    def test_a_click_elsewhere_chooses_nothing(self):
        self.desktop.write_ini(all_open() + NO_CHECK)
        process = self.start_with(*KINDS)
        before = self.desktop.ini_path.read_bytes()
        self.open_menu()
        self.neighbour.ask("show", 900, 500, 200, 200)
        self.click(1000, 600)
        self.wait_for_no_menu()
        self.assertIsNone(process.poll())
        self.assertEqual(self.desktop.ini_path.read_bytes(), before)


class Keyboard(MenuTest):
    def focused(self, start):
        return [call.id for call in self.shell.since(start) if call.message == NIM_SETFOCUS]

    def test_goes_back_to_the_icon_whose_menu_is_left(self):
        self.start()
        for icon in (1, 2, MEMORY_ICON, 4):
            menu = self.open_menu(icon)
            start = self.shell.mark()
            self.desktop.use_mouse("mousemove", *menu.middle_of(0), "key", "Escape")
            self.wait_for_no_menu()
            self.shell.wait_for(lambda call: call.message == NIM_SETFOCUS, start)
            self.assertEqual(self.focused(start), [icon])

    def test_goes_back_to_the_window_that_had_it_before_the_menu_of_a_graph(self):
        self.desktop.write_ini(all_open())
        self.start_with(*KINDS)
        self.neighbour.ask("show", 900, 500, 200, 200)
        start = self.shell.mark()
        for number in (None, self.PIN_DISK):
            self.assertTrue(self.neighbour.ask("front"))
            self.click(300, 200, button=RIGHT_BUTTON)
            menu = self.read_menu()
            self.assertEqual(self.neighbour.ask("foreground"), HIDDEN_WINDOW)
            # Under Wine the keyboard stays with the neighbour, so dismiss the menu with a click on the desktop.
            self.click(*(menu.middle_of(number) if number is not None else (30, 700)))
            self.wait_for_no_menu()
            wait_until(lambda: self.neighbour.ask("foreground") == "neighbour", "the neighbour in the foreground", 30)
        self.assertEqual(self.focused(start), [])

    def test_a_graph_stays_in_front_of_the_window_that_has_it_back(self):
        self.neighbour.ask("show", 50, 50, 600, 400)
        self.assertTrue(self.neighbour.ask("front"))
        self.desktop.write_ini(open_at("cpu", PLACES["cpu"], "topmost=0"))
        self.start_with("cpu")
        wait_until(lambda: self.stack() == ["kestrane - CPU", "neighbour"], "the graph in front")
        self.click(300, 200, button=RIGHT_BUTTON)
        self.read_menu()
        self.click(30, 700)
        self.wait_for_no_menu()
        wait_until(lambda: self.neighbour.ask("foreground") == "neighbour", "the neighbour in the foreground", 30)
        # The neighbour raises itself when it gets round to it. Windows then sends an event; under Wine it does so itself.
        self.assertTrue(self.neighbour.ask("front"))
        wait_until(lambda: self.stack() == ["kestrane - CPU", "neighbour"], "the graph in front again", 30)


class About(MenuTest):
    TITLE = "Acerca de kestrane"
    FIRST = "Monitor de CPU, disco, memoria y red en la bandeja."
    LAST = "Iconos: Fugue Icons de Marlo Tesshin (CC BY 3.0)."
    SETTINGS_FILE = "Ajustes"

    def test_tells_the_version_and_where_the_settings_are(self):
        process = self.start()
        self.choose(2)
        dialog = wait_until(lambda: self.neighbour.find(DIALOG_CLASS, self.TITLE), "the box")
        text = max(self.neighbour.ask("texts", DIALOG_CLASS), key=len)
        lines = text.split("\n")
        self.assertEqual(lines[0], f"kestrane {VERSION}")
        self.assertEqual((lines[2], lines[-1]), (self.FIRST, self.LAST))
        self.assertRegex(lines[-3], rf"^{self.SETTINGS_FILE}: C:\\users\\.*\\AppData\\Roaming\\kestrane\\kestrane\.ini$")
        self.assertEqual(len(lines), 10)

        # The icons keep updating meanwhile, and everything else works too.
        self.click_icon("cpu")
        self.wait_for_graph("cpu")
        self.desktop.use_mouse("mousemove", dialog.rect[0] + 50, dialog.rect[1] + 50, "key", "Escape")
        wait_until(lambda: not self.neighbour.find(DIALOG_CLASS), "the end of the box")
        self.assertIsNone(process.poll())

    def test_does_not_keep_the_program_from_its_end(self):
        process = self.start()
        self.choose(2)
        wait_until(lambda: self.neighbour.find(DIALOG_CLASS, self.TITLE), "the box")
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertEqual(process.wait(timeout=60), 0)


class AboutInEnglish(About):
    options = double_click_time(1)
    TITLE = "About kestrane"
    FIRST = "CPU, disk, memory and network monitor for the tray."
    LAST = "Icons: Fugue Icons by Marlo Tesshin (CC BY 3.0)."
    SETTINGS_FILE = "Settings"


class WhileOpen(MenuTest):
    def test_a_second_right_click_is_ignored(self):
        self.start()
        first = self.open_menu()
        for icon in (1, 2, MEMORY_ICON, 4):
            self.shell.command(f"callback {icon} {WM_CONTEXTMENU} 100 100")
        self.click_icon("disk")  # once this is done, so are those
        self.wait_for_graph("disk")
        menus = self.neighbour.windows(MENU_CLASS)
        self.assertEqual([tuple(menu.rect) for menu in menus], [first.rect])

    def test_icons_and_graphs_go_on(self):
        self.desktop.write_ini(every(500))
        self.start()
        self.open_menu()
        start = self.shell.mark()
        for icon in (1, MEMORY_ICON, 4):
            self.shell.wait_for(lambda call, icon=icon: call.message == NIM_MODIFY and call.id == icon, start)
        for kind in KINDS:
            self.click_icon(kind)
            self.wait_for_graph(kind)
        self.assertTrue(self.neighbour.mode().menu)

    def test_a_pin_entry_outlives_its_graph(self):
        self.desktop.write_ini(open_at("cpu", PLACES["cpu"]))
        process = self.start_with("cpu")
        menu = self.open_menu()
        self.click_icon("cpu")
        self.wait_for_no_graph("cpu")
        self.click(*menu.middle_of(self.PIN_CPU))
        self.wait_for_saved("cpu", graph=0, pinned=1)
        self.assertIsNone(process.poll())

    def test_the_program_can_be_ended(self):
        process = self.start()
        self.open_menu()
        start = self.shell.mark()
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertEqual(process.wait(timeout=60), 0)
        self.shell.wait_for_count(4, lambda call: call.message == NIM_DELETE and call.answer, start)
        self.assertEqual(self.neighbour.windows(MENU_CLASS), [])

    def test_the_program_can_be_ended_from_the_menu_of_a_graph(self):
        self.desktop.write_ini(all_open())
        process = self.start_with(*KINDS)
        self.click(300, 200, button=3)
        menu = self.read_menu()
        self.click(*menu.middle_of(self.EXIT))
        self.assertEqual(process.wait(timeout=60), 0)


class MemoryIcon(MenuTest):
    def test_a_click_does_nothing(self):
        self.start()
        for event in (NIN_SELECT, NIN_KEYSELECT):
            self.shell.command(f"callback {MEMORY_ICON} {event} 600 500")
        self.click_icon("cpu")
        self.wait_for_graph("cpu")
        self.assertEqual([self.graph(kind) for kind in ("disk", "network")], [None, None])


if __name__ == "__main__":
    main()
