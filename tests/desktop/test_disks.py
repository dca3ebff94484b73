"""The disk icon: scripted machines with several disks, whose counters appear, vanish, fail and lie."""

import re

from harness import DISK_TIMER, NIM_MODIFY, DesktopTest, column_height, every, main, pixels

IDLE, READ_TIME, WRITE_TIME, READ_BYTES, WRITE_BYTES = COUNTERS = [
    rf"\PhysicalDisk(*)\{name}"
    for name in ("% Idle Time", "% Disk Read Time", "% Disk Write Time", "Disk Read Bytes/sec", "Disk Write Bytes/sec")
]

BACKGROUND, READ, WRITE = 0xFFFFF5E1, 0xFFCE8B00, 0xFF167B04

KIB, MIB, GIB = 2**10, 2**20, 2**30
INVALID_DATA, NO_SUCH_INSTANCE, NO_DATA = "C0000BBA", "800007D1", "800007D5"

NO_DISKS = "kestrane: no se pudieron anadir los contadores de disco"
NO_QUERY = "kestrane: PdhOpenQuery ha fallado; disco sin datos"


def disk(name, idle, read_time=0, write_time=0, read_bytes=0, write_bytes=0):
    """One disk in all five counters."""
    values = (idle, read_time, write_time, read_bytes, write_bytes)
    return [f"value|{path}|{name}|{value}|0" for path, value in zip(COUNTERS, values)]


def without(lines, path, name=None):
    """The remaining counters when one loses an instance, or all of them."""
    return [line for line in lines if not line.startswith(f"value|{path}|" + ("" if name is None else f"{name}|"))]


# 60 % busy, three quarters of it reading; and a second disk that is idle.
BUSY = disk("0 C:", 40, 300, 100, MIB, 2.5 * MIB)
BUSY_AND_RESTING = BUSY + disk("1 D:", 100, 300, 100)


def text_of(read, read_rate, write, write_rate):
    return f"Disk  R: {read} % · {read_rate}  W: {write} % · {write_rate}"


BUSY_TEXT = text_of(45, "1 MB/s", 15, "2.5 MB/s")


def percents_of(call):
    """The read and write percentages, from a text that may be cut after the first of the two speeds."""
    match = re.match(r"Disk  R: (\d+) % · [^ ]+ .B/s  W: (\d+) % · ", call.tip)
    return int(match.group(1)), int(match.group(2))


def picture(history):
    """The icon after these pairs of percentages, oldest first: the shorter column is in front of the taller."""
    rows = [[BACKGROUND] * 16 for _ in range(16)]
    for x, (read, write) in enumerate(history[-16:], start=16 - min(len(history), 16)):
        columns = sorted([(write, WRITE), (read, READ)], key=lambda column: column[0], reverse=True)
        if read == write:
            columns = [(read, READ), (write, WRITE)]  # the second is in front
        for percent, color in columns:
            for y in range(16 - column_height(percent), 16):
                rows[y][x] = color
    return rows


class DiskTest(DesktopTest):
    options = {"counters": BUSY, "more_disks": 1}
    settings = every(10000)
    """Ticks happen on demand, except for a rare one of the real timer."""

    def setUp(self):
        super().setUp()
        self.desktop.write_counters(BUSY)

    def start(self, *arguments, **options):
        start = self.shell.mark()
        process = super().start(*arguments, **options)
        self.ticks = self.shell.mark()
        self.opening = self.disk_changes(start)[0]
        return process

    def disk_changes(self, start):
        return [call for call in self.shell.since(start) if call.message == NIM_MODIFY and call.id == 2]

    def show(self, counters):
        """The icon after one tick with these counters."""
        self.desktop.write_counters(counters)
        changes = [call for call in self.tick(DISK_TIMER) if call.id == 2]
        self.assertTrue(changes, "the tick does not count")
        return changes[-1]

    def assert_shows(self, counters, *expected):
        self.assertEqual(self.show(counters).tip, text_of(*expected))

    def assert_dropped(self, counters):
        """A tick with these counters leaves text and image unchanged."""
        self.desktop.write_counters(counters)
        self.assertEqual([call.tip for call in self.tick(DISK_TIMER) if call.id == 2], [])

    def assert_pixels_follow_the_texts(self):
        history = []
        for call in self.disk_changes(self.ticks):
            history.append(percents_of(call))
            self.assertEqual(pixels(call), picture(history), history)


class Figures(DiskTest):
    def test_the_first_text_has_no_speed_and_no_columns_yet(self):
        self.start()
        self.assertEqual(self.opening.tip, text_of(45, "0 KB/s", 15, "0 KB/s"))
        self.assertEqual(pixels(self.opening), picture([]))

    def test_a_busy_and_a_resting_disk(self):
        self.start()
        self.assertEqual(self.show(BUSY_AND_RESTING).tip, BUSY_TEXT)
        self.assert_pixels_follow_the_texts()

    def test_how_busy_a_disk_is(self):
        self.start()
        for idle, read_time, write_time, read, write in (
            (100, 300, 100, 0, 0),  # the times give only the ratio
            (40, 300, 100, 45, 15),
            (40, 0, 0, 60, 0),
            (99.6, 1, 1, 0, 0),
            (99, 1, 0, 1, 0),  # a single pixel
            (0, 1, 0, 100, 0),  # a whole column
            (0, 0, 1, 0, 100),
            (0, 1, 1, 50, 50),
            (49, 1, 1, 26, 26),  # each is rounded up
            (50, -3, 7, 0, 50),
            (130, 1, 1, 0, 0),
            (-5, 1, 3, 25, 75),
            ("nan", 1, 1, 0, 0),
            ("inf", 1, 1, 0, 0),
            ("-1e300", 1, 1, 50, 50),
            (40, "nan", 10, 0, 60),
            (40, 10, "nan", 60, 0),
            (40, "inf", 1, 60, 0),
            (40, "1e300", "1e300", 30, 30),
        ):
            with self.subTest(idle=idle, read_time=read_time, write_time=write_time):
                self.assert_shows(disk("0 C:", idle, read_time, write_time), read, "0 KB/s", write, "0 KB/s")
        self.assert_pixels_follow_the_texts()

    def test_how_much_a_disk_moves(self):
        self.start()
        for amount, shown in (
            (512, "0.5 KB/s"),
            (KIB, "1 KB/s"),
            (10138, "9.9 KB/s"),
            (10189, "10 KB/s"),
            (1023900, "1000 KB/s"),
            (MIB, "1 MB/s"),
            (3.5 * GIB, "3.5 GB/s"),
            (4096 * GIB, "4096 GB/s"),
            (-5, "0 KB/s"),
            ("-1e300", "0 KB/s"),
            ("nan", "0 KB/s"),
        ):
            with self.subTest(amount):
                self.assert_shows(disk("0 C:", 100, 0, 0, amount, 0), 0, shown, 0, "0 KB/s")
                self.assert_shows(disk("0 C:", 100, 0, 0, 0, amount), 0, "0 KB/s", 0, shown)

    def test_a_speed_beyond_reason_is_cut_with_the_text(self):
        process = self.start()
        for amount in ("1e300", "inf"):
            text = self.show(disk("0 C:", 40, 300, 100, amount, amount)).tip
            self.assertEqual(len(text), 127)
            self.assertRegex(text, r"^Disk  R: 45 % · \d+$")
        self.assertEqual(self.show(BUSY).tip, BUSY_TEXT)
        self.assertIsNone(process.poll())


class SpanishFigures(DiskTest):
    options = {**DiskTest.options, "language": "es_ES"}

    def test_a_busy_and_a_resting_disk(self):
        self.start()
        self.assertEqual(self.opening.tip, "Disco  L: 45 % · 0 KB/s  E: 15 % · 0 KB/s")
        self.assertEqual(self.show(BUSY_AND_RESTING).tip, "Disco  L: 45 % · 1 MB/s  E: 15 % · 2,5 MB/s")


class SeveralDisks(DiskTest):
    def test_each_side_shows_its_busiest_disk_and_the_speeds_are_summed(self):
        self.start()
        reader, writer = disk("0 C:", 20, 9, 1, MIB, KIB), disk("1 D:", 40, 1, 2, 2 * MIB, 3 * KIB)
        self.assert_shows(reader + writer, 72, "3 MB/s", 40, "4 KB/s")
        self.assert_shows(writer + reader, 72, "3 MB/s", 40, "4 KB/s")
        self.assert_pixels_follow_the_texts()

    def test_the_total_is_no_disk(self):
        self.start()
        total = disk("_Total", 0, 1, 1, GIB, GIB)
        self.assertEqual(self.show(total + BUSY_AND_RESTING + total).tip, BUSY_TEXT)
        self.assert_dropped(total)

    def test_disks_come_and_go(self):
        self.start()
        second = disk("1 D:", 0, 1, 1, MIB, MIB)
        self.assert_shows(BUSY, 45, "1 MB/s", 15, "2.5 MB/s")
        self.assert_shows(BUSY + second, 50, "2 MB/s", 50, "3.5 MB/s")
        self.assert_shows(second, 50, "1 MB/s", 50, "1 MB/s")
        self.assert_dropped([])
        self.assert_shows(BUSY, 45, "1 MB/s", 15, "2.5 MB/s")
        self.assert_pixels_follow_the_texts()

    def test_a_disk_plugged_in_later_is_seen_but_not_summed(self):
        self.start()
        self.assert_shows(BUSY + disk("2 E:", 0, 1, 0, GIB, GIB), 100, "1 MB/s", 15, "2.5 MB/s")

    def test_instances_are_matched_by_name_in_any_order(self):
        self.start()
        lines = BUSY + disk("1 D:", 20, 1, 3, 2 * MIB, KIB)
        self.assert_shows(sorted(lines, reverse=True), 45, "3 MB/s", 60, "2.5 MB/s")

    def test_an_instance_that_one_counter_lacks(self):
        self.start()
        second = disk("1 D:", 20, 1, 3, 2 * MIB, KIB)
        for path, expected in (
            (IDLE, (45, "1 MB/s", 15, "2.5 MB/s")),  # not there at all
            (READ_TIME, (45, "3 MB/s", 80, "2.5 MB/s")),
            (WRITE_TIME, (80, "3 MB/s", 15, "2.5 MB/s")),
            (READ_BYTES, (45, "1 MB/s", 60, "2.5 MB/s")),
            (WRITE_BYTES, (45, "3 MB/s", 60, "2.5 MB/s")),
        ):
            with self.subTest(path):
                self.assert_shows(BUSY + without(second, path), *expected)
                bad = f"value|{path}|1 D:|0|{NO_SUCH_INSTANCE}"
                self.assert_shows(BUSY + without(second, path) + [bad], *expected)

    def test_strange_names_and_crowds_do_no_harm(self):
        process = self.start()
        no_numbers = ("", " ", "C:", "-1", "x7", "ñ € 😀", "10000 Z:", "99999999999999999999 C:", "9" * 250)
        names = (*no_numbers, "0" * 250 + "1 D:")
        strange = [line for name in names for line in disk(name, 100, 1, 1)]
        crowd = [line for number in range(1000) for line in disk(f"{number} X:", 50, 1, 1, KIB, KIB)]
        self.assertEqual(self.show(BUSY + strange).tip, BUSY_TEXT)
        self.assert_shows(strange, 0, "0 KB/s", 0, "0 KB/s")
        self.assert_shows(crowd, 25, "2 KB/s", 25, "2 KB/s")
        self.assert_shows(disk("0 C:", 50, 1, 1, KIB) * 3, 25, "3 KB/s", 25, "0 KB/s")  # one name, three times
        self.assertEqual(self.show(BUSY).tip, BUSY_TEXT)
        self.assertIsNone(process.poll())


class ChosenDisks(DiskTest):
    def test_the_choice_bounds_the_speeds_alone(self):
        counters = BUSY + disk("1 D:", 80, 0, 1, KIB, 2 * KIB) + disk("2 E:", 100, 0, 0, GIB, GIB)
        all_disks, first, second, none = (
            (45, "1 MB/s", 20, "2.5 MB/s"),
            (45, "1 MB/s", 20, "2.5 MB/s"),
            (45, "1 KB/s", 20, "2 KB/s"),
            (45, "0 KB/s", 20, "0 KB/s"),
        )
        for chosen, expected in (
            ("*", all_disks),
            ("0,1", all_disks),
            ("0", first),
            ("1", second),
            ("01,7", second),
            ("2", none),  # not one of the disks that the machine had at the start
            ("7", none),
            ("0,1,1", all_disks),  # malformed, so as if absent
            ("64", all_disks),
        ):
            with self.subTest(chosen):
                self.desktop.write_ini(every(10000, disk=f"disks={chosen}"))
                self.start()
                self.assert_shows(counters, *expected)
                self.desktop.end_kestrane()


class Failures(DiskTest):
    def test_a_failure_drops_the_tick(self):
        self.start()
        self.assertEqual(self.show(BUSY).tip, BUSY_TEXT)
        for failure in (
            [f"collect|{IDLE}|{NO_DATA}"],
            [f"read|{IDLE}|{INVALID_DATA}"],
            [f"read|{READ_TIME}|{INVALID_DATA}"],
            [f"read|{WRITE_TIME}|{INVALID_DATA}"],
        ):
            with self.subTest(failure):
                self.assert_dropped(failure + BUSY)
                self.assertEqual(self.show(BUSY).tip, BUSY_TEXT)
        for counters in ([], without(BUSY, IDLE), [f"value|{IDLE}|0 C:|40|{INVALID_DATA}"]):
            with self.subTest(counters):
                self.assert_dropped(counters)
                self.assertEqual(self.show(BUSY).tip, BUSY_TEXT)
        self.assert_pixels_follow_the_texts()

    def test_without_a_counter_of_bytes_the_tick_counts(self):
        self.start()
        self.assert_shows([f"read|{READ_BYTES}|{INVALID_DATA}"] + BUSY, 45, "0 KB/s", 15, "2.5 MB/s")
        self.assert_shows([f"read|{WRITE_BYTES}|{INVALID_DATA}"] + BUSY, 45, "1 MB/s", 15, "0 KB/s")
        self.assert_pixels_follow_the_texts()

    def test_a_repaint_after_a_dropped_tick_says_that_there_are_no_data(self):
        self.start()
        self.assertEqual(self.show(BUSY).tip, BUSY_TEXT)
        self.assert_dropped([])
        start = self.shell.command("restart")
        repainted = self.shell.wait_for(lambda call: call.id == 2 and call.message == NIM_MODIFY, start)
        self.assertEqual(repainted.tip, "Disk: no data (PDH)")
        self.assertEqual(pixels(repainted), picture([]))

        last = self.show(BUSY)  # the history is still there
        counted = [percents_of(call) for call in self.disk_changes(self.ticks) if call.tip == BUSY_TEXT]
        self.assertGreaterEqual(len(counted), 2)
        self.assertEqual(pixels(last), picture(counted))

    def test_a_missing_counter_leaves_no_data_for_the_whole_run(self):
        missing = [([f"add|{path}|C0000BB8"], NO_DISKS) for path in COUNTERS]
        for failure, told in missing + [(["open|C0000BBB"], NO_QUERY)]:
            with self.subTest(failure):
                self.desktop.write_counters(failure + BUSY)
                start = self.shell.mark()
                self.desktop.start_kestrane_logged()
                self.shell.wait_for_ticks(2, icon=4, start=start)
                (shown,) = self.disk_changes(start)
                self.assertEqual((shown.tip, pixels(shown)), ("Disk: no data (PDH)", picture([])))
                self.assertIn(told, self.desktop.debug_lines())
                self.assert_dropped(BUSY)
                self.desktop.end_kestrane()


if __name__ == "__main__":
    main()
