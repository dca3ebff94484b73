"""What the four icons look like for given settings, on a machine whose counters and interfaces are scripted."""

import contextlib

from harness import (
    CPU_TIMER,
    DISK_TIMER,
    MEMORY_TIMER,
    NETWORK_TIMER,
    NIM_MODIFY,
    DesktopTest,
    column_height,
    pixels,
)

CPU, DISK, MEMORY, NETWORK = 1, 2, 3, 4

DISK_COUNTERS = ("% Idle Time", "% Disk Read Time", "% Disk Write Time", "Disk Read Bytes/sec", "Disk Write Bytes/sec")
# CPU at half load; a disk that is busy for 60 %, three quarters of it reading; a second one that writes a little.
COUNTERS = [r"value|\Processor Information(_Total)\% Processor Utility||50|0"] + [
    rf"value|\PhysicalDisk(*)\{counter}|{name}|{value}|0"
    for name, values in (("0 C:", (40, 300, 100, 1024, 2048)), ("1 D:", (80, 0, 1, 0, 2**20)))
    for counter, value in zip(DISK_COUNTERS, values)
]

COLOR_KEYS = (
    "cpu_bg cpu_fg cpu_graph_bg cpu_border cpu_graph_fg cpu_graph_perf cpu_graph_eff "
    "disk_bg disk_read disk_write disk_graph_bg disk_border disk_graph_read disk_graph_write "
    "mem_bg mem_text mem1_bg mem1_text mem2_bg mem2_text mem3_bg mem3_text "
    "mem_border mem1_border mem2_border mem3_border "
    "net_bg net_down net_up net_both net_graph_bg net_border net_graph_down net_graph_up net_graph_both"
).split()

NONE = None  # transparent
DEFAULTS = {
    **dict(cpu_bg=0xCCEEFF, cpu_fg=0x007BB7, cpu_border=NONE),
    **dict(disk_bg=0xFFF5E1, disk_read=0xCE8B00, disk_write=0x167B04, disk_border=NONE),
    **dict(net_bg=0x000000, net_down=0xFF0000, net_up=0x009D00, net_both=0xFFFF00, net_border=NONE),
    **dict(mem_bg=NONE, mem_text=0xFFFFFF, mem_border=NONE, mem1_bg=NONE, mem1_text=0xFFFFFF, mem1_border=NONE),
    **dict(mem2_bg=NONE, mem2_text=0xFFFF28, mem2_border=NONE, mem3_bg=NONE, mem3_text=0xFF5555, mem3_border=NONE),
}


def network_row(down, up, luid=1, alias="Ethernet"):
    return f"row|{luid:X}|{alias}|6|1|1|{down}|{up}"


def pixel(color):
    return 0 if color is NONE else 0xFF000000 | color


def framed(rows, border):
    """A picture with a one-pixel frame, unless `border` is NONE."""
    if border is not NONE:
        for i in range(16):
            rows[0][i] = rows[15][i] = rows[i][0] = rows[i][15] = pixel(border)
    return rows


def picture(background, columns, border):
    """The icon with these columns at its right edge, each a list of heights with colours, the front one last."""
    rows = [[pixel(background)] * 16 for _ in range(16)]
    for x, column in enumerate(columns, start=16 - len(columns)):
        for height, color in column:
            for y in range(16 - height, 16):
                rows[y][x] = pixel(color)
    return framed(rows, border)


def cpu_picture(colors):
    return picture(colors["cpu_bg"], [[(column_height(50), colors["cpu_fg"])]], colors["cpu_border"])


def disk_picture(colors):
    column = [(column_height(45), colors["disk_read"]), (column_height(20), colors["disk_write"])]
    return picture(colors["disk_bg"], [column], colors["disk_border"])


def network_pictures(colors):
    """The icon after only a download, then only an upload, then both at once at rates that dwarf them."""
    down, up, both = ([(16, colors[key])] for key in ("net_down", "net_up", "net_both"))
    histories = ([down], [down, up], [[], [], both])
    return [picture(colors["net_bg"], columns, colors["net_border"]) for columns in histories]


def percent_of(call):
    return int(call.tip.split(": ")[1].split(" %")[0])


def level_of(percent, thresholds=(50, 75, 90)):
    return sum(percent >= threshold for threshold in thresholds)


def level_colors(colors, level):
    """Background, text and border of a level of the memory icon."""
    prefix = f"mem{level or ''}_"
    return [colors[prefix + part] for part in ("bg", "text", "border")]


def blend(one, other):
    """The colour halfway between two."""
    return sum((((one >> shift & 255) + (other >> shift & 255) + 1) // 2) << shift for shift in (16, 8, 0))


def ini_colors(colors):
    lines = (f"{key}={'NONE' if value is NONE else f'{value:06X}'}" for key, value in colors.items())
    return "\n".join(("[colors]", *lines, ""))


class SettingsTest(DesktopTest):
    options = {"counters": COUNTERS, "network": [], "more_disks": 1}

    @contextlib.contextmanager
    def case(self, name):
        """One row of a table, with its own run of the program."""
        with self.subTest(name):
            self.first = self.shell.mark()
            try:
                yield
            finally:
                self.desktop.end_kestrane()

    def run_with(self, settings):
        """Starts with a settings file, lets each icon tick once, and returns the last call of each icon."""
        self.desktop.write_ini(settings)
        return self.run_with_the_file()

    def run_with_the_file(self):
        self.desktop.write_network([network_row(0, 0)])
        self.start()
        for timer in (CPU_TIMER, DISK_TIMER, MEMORY_TIMER, NETWORK_TIMER):
            self.tick(timer)
        return {call.id: call for call in self.shell.since(self.first) if call.message == NIM_MODIFY}

    def show_traffic(self):
        """Three network ticks: only download, only upload, and both at a thousand times the rate."""
        images = []
        for down, up in ((10**6, 0), (10**6, 10**6), (10**9, 10**9)):
            self.desktop.write_network([network_row(down, up)])
            images.append(pixels([call for call in self.tick(NETWORK_TIMER) if call.id == NETWORK][-1]))
        return images

    def assert_memory_icon(self, call, colors, thresholds=(50, 75, 90), bar=True):
        """Checks everything but the digits, which depend on the font."""
        background, text, border = level_colors(colors, level_of(percent_of(call), thresholds))
        inset = 0 if border is NONE else 1
        rows = [[pixel(background)] * 16 for _ in range(16)]
        top = inset
        if bar:
            top += 4
            inside = 14 - 2 * inset
            filled = (inside * percent_of(call) + 50) // 100
            for y in range(inset, top):
                rows[y][inset : 16 - inset] = [pixel(blend(text, background or 0))] * (16 - 2 * inset)
            for y in range(inset + 1, top - 1):
                rows[y][inset + 1 : 15 - inset] = [pixel(text)] * filled + [pixel(background)] * (inside - filled)
        shown, expected = pixels(call), framed(rows, border)
        self.assertEqual(shown[:top], expected[:top])
        changed = [shown[y][x] for y in range(top, 16) for x in range(16) if shown[y][x] != expected[y][x]]
        self.assertTrue(changed, "no digits")
        if background is NONE:
            self.assertEqual({value & 0xFFFFFF for value in changed}, {text})  # whatever its alpha

    def assert_defaults(self, shown):
        self.assertEqual([shown[icon].tip.split(":")[0] for icon in (CPU, MEMORY)], ["CPU", "Memory"])
        self.assertEqual(shown[DISK].tip, "Disk  R: 45 % · 1 KB/s  W: 20 % · 1 MB/s")
        self.assertEqual(shown[NETWORK].tip.split("\n")[0], "All connections")
        self.assertEqual(self.network_colors_of(shown), (DEFAULTS["net_bg"],))
        self.assertEqual(pixels(shown[CPU])[0][0], pixel(DEFAULTS["cpu_bg"]))
        self.assertEqual(pixels(shown[CPU])[15][15], pixel(DEFAULTS["cpu_fg"]))
        self.assertEqual(pixels(shown[DISK])[15][15], pixel(DEFAULTS["disk_write"]))
        self.assert_memory_icon(shown[MEMORY], DEFAULTS)

    def network_colors_of(self, shown):
        return tuple({value & 0xFFFFFF for row in pixels(shown[NETWORK]) for value in row})
