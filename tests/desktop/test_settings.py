"""The settings file: the icons obey it, even if it was edited by hand."""

import math

from harness import MEMORY_TIMER, NIM_ADD, every, main, pixels, wait_until
from settings_icons import (
    COLOR_KEYS,
    CPU,
    DEFAULTS,
    DISK,
    MEMORY,
    NETWORK,
    NONE,
    SettingsTest,
    cpu_picture,
    disk_picture,
    ini_colors,
    network_pictures,
    percent_of,
)


# The available periods, in milliseconds.
PERIODS = (500, 1000, 1500, 3000, 5000, 10000)


class Icons(SettingsTest):
    def assert_icons_show(self, colors, settings):
        shown = self.run_with(every(10000) + settings)
        self.assertEqual(pixels(shown[CPU]), cpu_picture(colors))
        self.assertEqual(pixels(shown[DISK]), disk_picture(colors))
        self.assert_memory_icon(shown[MEMORY], colors)
        self.assertEqual(self.show_traffic(), network_pictures(colors))

    def test_without_a_word_of_them(self):
        self.assert_icons_show(DEFAULTS, "")

    def test_each_key_has_its_place(self):
        colors = {key: 0x07050B * (number + 1) for number, key in enumerate(COLOR_KEYS)}
        self.assertEqual(len(set(colors.values())), 35)
        self.assert_icons_show(colors, ini_colors(colors))

    def test_digits_of_either_case(self):
        colors = {**DEFAULTS, "cpu_fg": 0xABCDEF, "disk_read": 0xFEDCBA}
        self.assert_icons_show(colors, "[colors]\ncpu_fg=abcDEF\ndisk_read=fedcba\n")

    def test_what_is_no_colour_leaves_the_default(self):
        nonsense = ("", "None", "#123456", "12345", "1234567", "GGGGGG", "-12345", "0x1234", "１２３４５６", "red", "%s")
        values = dict(zip((key for key in COLOR_KEYS if "graph" not in key), nonsense * 3))
        self.assert_icons_show(DEFAULTS, "[colors]\n" + "".join(f"{key}={value}\n" for key, value in values.items()))

    def test_none_is_a_hole_but_not_in_the_network_icon(self):
        for keys, seen in (
            (("cpu_fg", "disk_read", "disk_write"), NONE),
            (("net_down", "net_up", "net_both"), DEFAULTS["net_bg"]),
        ):
            with self.case(keys):
                lines = (f"{key}={word}\n" for key, word in zip(keys, ("NONE", "none", "NONE")))
                self.assert_icons_show({**DEFAULTS, **dict.fromkeys(keys, seen)}, "[colors]\n" + "".join(lines))

    def test_backgrounds_may_be_missing_and_borders_there(self):
        backgrounds = dict.fromkeys(("cpu_bg", "disk_bg", "net_bg"), NONE)
        borders = dict(cpu_border=0x111111, disk_border=0x222222, net_border=0x333333)
        borders.update(mem_border=0x444444, mem1_border=0x555555, mem2_border=0x666666, mem3_border=0x777777)
        self.assert_icons_show({**DEFAULTS, **backgrounds, **borders}, ini_colors({**backgrounds, **borders}))


    def test_thresholds_choose_the_colours(self):
        names = ("mem", "mem1", "mem2", "mem3")
        colors = {f"{name}_bg": 0x204060 + 0x101010 * number for number, name in enumerate(names)}
        colors.update({f"{name}_text": 0xF0E0D0 - 0x101010 * number for number, name in enumerate(names)})
        colors.update({f"{name}_border": NONE for name in names})
        for written, valid in (
            ((1, 2, 3), (1, 2, 3)),
            ((1, 2, 100), (1, 2, 100)),
            ((1, 99, 100), (1, 99, 100)),
            ((98, 99, 100), (98, 99, 100)),
            ((1, 2, 2), (50, 75, 90)),  # one bad value discards all three
            ((0, 1, 2), (50, 75, 90)),
            ((1, 2, 101), (50, 75, 90)),
            ((1, "+2", 3), (50, 75, 90)),
            ((1, "abc", 3), (50, 75, 90)),
            (("001", "0002", 3), (50, 75, 90)),
        ):
            with self.case(written):
                lines = "".join(f"threshold{number}={value}\n" for number, value in enumerate(written, start=1))
                shown = self.run_with(every(10000, memory=lines) + ini_colors(colors))
                self.assert_memory_icon(shown[MEMORY], colors, valid)

    def test_the_bar_can_be_turned_off(self):
        for value, bar in (("0", False), ("1", True), ("yes", True)):
            with self.case(value):
                shown = self.run_with(every(10000, memory=f"bar={value}"))
                self.assert_memory_icon(shown[MEMORY], DEFAULTS, bar=bar)


class Fonts(SettingsTest):
    """Compares the digits of two fonts at the same percentage, never with fixed pixels."""

    def setUp(self):
        super().setUp()
        self.images = {}

    def show(self, lines):
        shown = self.run_with(every(10000, memory=lines))[MEMORY]
        self.images.setdefault(lines, {})[percent_of(shown)] = pixels(shown)[4:]  # below the bar
        self.desktop.end_kestrane()

    def compare(self, one, other):
        """The digits with each of two settings, at a percentage that both have shown."""
        for _ in range(20):
            common = self.images.get(one, {}).keys() & self.images.get(other, {}).keys()
            if common:
                percent = common.pop()
                return self.images[one][percent], self.images[other][percent]
            self.show(one)
            self.show(other)
        self.fail("the memory in use does not stand still")

    def assert_same(self, one, other):
        self.assertEqual(*self.compare(one, other))

    def assert_differ(self, one, other):
        self.assertNotEqual(*self.compare(one, other))

    @staticmethod
    def ink(image):
        """The total amount of the colour, and the number of rows it covers."""
        return sum(value >> 24 for row in image for value in row), sum(any(row) for row in image)

    def test_the_size(self):
        small, large = self.compare("font_size=6", "font_size=12")
        self.assertLess(self.ink(small)[1], self.ink(large)[1])
        self.assert_same("font_size=12", "")
        self.assert_same("font_size=12", "font_size=12abc")
        self.assert_same("font_size=6", "font_size=abc")
        self.assert_same("font_size=6", "font_size=-99999999999999999999")
        self.assert_same("font_size=32", "font_size=99999999999999999999")

    def test_bold(self):
        plain, bold = self.compare("font_size=8\nfont_bold=0", "font_size=8\nfont_bold=1")
        self.assertLess(self.ink(plain)[0], self.ink(bold)[0])
        self.assert_same("font_size=8\nfont_bold=0", "font_size=8\nfont_bold=2")

    def test_the_name(self):
        self.assert_differ("font_name=DejaVu Serif\nfont_bold=1", "font_name=DejaVu Sans\nfont_bold=1")
        self.assert_same("font_name=" + "DejaVu Serif".ljust(32, "x"), "")  # too long by one


class Presence(SettingsTest):
    def visible_with(self, lines):
        self.desktop.write_ini(every(10000) + "[icons]\n" + lines)
        start = self.shell.mark()
        self.desktop.start_kestrane()
        self.shell.wait_for(lambda call: call.message == NIM_ADD and call.answer, start)
        self.tick(MEMORY_TIMER)  # processed after startup
        self.desktop.end_kestrane()
        return {call.id for call in self.shell.since(start) if call.message == NIM_ADD and call.answer}

    def test_icons_can_be_hidden_but_not_all(self):
        names = ("show_cpu", "show_disk", "show_mem", "show_net")
        for values, visible in (
            ("0111", {2, 3, 4}),
            ("1011", {1, 3, 4}),
            ("1101", {1, 2, 4}),
            ("1110", {1, 2, 3}),
            ("0010", {3}),
            ("0000", {1, 2, 3, 4}),
            ("2000", {1}),  # neither 0 nor 1, so as if absent
        ):
            with self.case(values):
                lines = "".join(f"{name}={value}\n" for name, value in zip(names, values))
                self.assertEqual(self.visible_with(lines), visible)

    def average_ms(self, icon, start):
        times = [call.ms for call in self.shell.since(start) if call.id == icon]
        return (times[-1] - times[0]) / (len(times) - 1)

    def assert_periods(self, settings, slowest, **periods):
        """On average an icon's ticks are closer to its period than to any other choice, however busy this machine
        is."""
        icons = {"cpu": CPU, "disk": DISK, "memory": MEMORY, "network": NETWORK}
        self.desktop.write_ini(settings)
        self.start()
        start = self.shell.mark()
        self.shell.wait_for_ticks(3, icon=icons[slowest])

        def nearest_choices():
            averages = {name: self.average_ms(icons[name], start) for name in periods}
            return {
                name: min(PERIODS, key=lambda choice: abs(math.log(average / choice)))
                for name, average in averages.items()
            }

        wait_until(lambda: nearest_choices() == periods, f"{periods} on average")

    def test_each_icon_has_its_own_period(self):
        written = {"cpu": 500, "disk": 1000, "memory": 700, "network": 3000}
        settings = "".join(f"[{section}]\nrefresh_ms={period}\n" for section, period in written.items())
        # 700 is not a choice, so it becomes the default.
        self.assert_periods(settings, "network", cpu=500, disk=1000, memory=1500, network=3000)

    def test_a_former_common_period_leaves_the_network_alone(self):
        self.assert_periods("[general]\nrefresh_ms=500\n", "network", cpu=500, disk=500, memory=500, network=1500)

    def test_a_former_period_of_the_processor_is_that_of_the_disk_too(self):
        self.assert_periods("[cpu]\nrefresh_ms=500\n", "network", cpu=500, disk=500, memory=1500, network=1500)

    def test_the_period_of_the_processor_is_its_own(self):
        settings = "[cpu]\nrefresh_ms=500\nper_core=0\n"
        self.assert_periods(settings, "network", cpu=500, disk=1500, memory=1500, network=1500)


class Language(SettingsTest):
    automatic = "English"

    def test_the_language(self):
        texts = {
            "English": ("Disk  R: 45 % · 1 KB/s  W: 20 % · 1 MB/s", "Memory", "All connections"),
            "Spanish": ("Disco  L: 45 % · 1 KB/s  E: 20 % · 1 MB/s", "Memoria", "Todas las conexiones"),
        }
        for value, language in (
            ("0", self.automatic),
            ("1", "Spanish"),
            ("2", "English"),
            ("3", self.automatic),
            ("es", self.automatic),
            ("", self.automatic),
        ):
            with self.case(value):
                shown = self.run_with(every(10000) + f"[general]\nlanguage={value}\n")
                disk, memory, network = (shown[icon].tip for icon in (DISK, MEMORY, NETWORK))
                self.assertEqual((disk, memory.split(":")[0], network.split("\n")[0]), texts[language])


class LanguageOfASpanishSystem(Language):
    options = {**Language.options, "language": "es_ES"}
    automatic = "Spanish"


class HandWritten(SettingsTest):
    LINES = """
        ; what I like
        [General]
        LANGUAGE = 1
        Check_Updates = 0

        [COLORS]
        CPU_FG = ff0000
            cpu_bg=00FF00   \t
        disk_Write = 0000ff
        [icons]
        [disk]
        disks = 1
        Refresh_Ms = 10000
        [network]
        interfaces = 7,8
        interface_aliases = gone|ETHERNET
        [nonsense]
        language = 2
        no key at all
        = no key either
        [memory]
        bar = 0
        [colors]
        cpu_fg = 123456
    """

    def assert_obeyed(self):
        shown = self.run_with_the_file()
        self.assertEqual(shown[DISK].tip, "Disco  L: 45 % · 0 KB/s  E: 20 % · 1 MB/s")
        self.assertEqual(shown[NETWORK].tip.split("\n")[0], "gone, Ethernet")
        self.assert_memory_icon(shown[MEMORY], DEFAULTS, bar=False)
        self.assertEqual(pixels(shown[CPU])[0][0], 0xFF00FF00)
        self.assertEqual(pixels(shown[CPU])[15][15], 0xFFFF0000)
        self.assertEqual(pixels(shown[DISK])[15][15], 0xFF0000FF)

    def test_is_obeyed_in_every_form_of_text(self):
        unix = "\n".join(line.removeprefix("        ") for line in self.LINES.split("\n"))
        dos = unix.replace("\n", "\r\n")
        many_keys = b"".join(b"key%d=%d\r\n" % (number, number) for number in range(100000))
        for name, content in (
            ("line feeds", unix.encode()),
            ("carriage returns and line feeds", dos.encode()),
            ("no end of the last line", dos.rstrip().encode()),
            ("a mark of UTF-8", b"\xef\xbb\xbf" + dos.encode()),
            ("UTF-16", dos.encode("utf-16")),
            ("100,000 other keys before it", b"[other]\r\n" + many_keys + dos.encode()),
        ):
            with self.case(name):
                self.desktop.write_ini_bytes(content)
                self.assert_obeyed()
                self.desktop.end_kestrane()
                self.assertEqual(self.desktop.ini_path.read_bytes(), content)

    def test_is_obeyed_where_it_must_not_be_written(self):
        self.desktop.write_ini(self.LINES)
        self.desktop.ini_path.chmod(0o444)
        self.addCleanup(self.desktop.ini_path.chmod, 0o644)
        self.assert_obeyed()
        self.desktop.end_kestrane()
        self.assertEqual(self.desktop.ini_path.read_text(encoding="utf-8"), self.LINES)


if __name__ == "__main__":
    main()
