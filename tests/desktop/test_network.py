"""The network icon: real traffic on an interface that Wine lists, and scripted tables that change, fail and lie."""

import pathlib
import re
import socket
import statistics
import threading
import time

from harness import NETWORK_TIMER, NIM_MODIFY, DesktopTest, every, main, pixels

BACKGROUND, DOWN, UP, BOTH = 0xFF000000, 0xFFFF0000, 0xFF009D00, 0xFFFFFF00

ETHERNET, LOOPBACK, TUNNEL = 6, 24, 131
HARDWARE, FILTER = 1, 2

UNITS = {"kbps": 1e3, "Mbps": 1e6, "Gbps": 1e9}
RATES = re.compile(r"(.*)\n(?:Down|Bajada): (\d+)[.,](\d+) (.bps)  (?:Up|Subida): (\d+)[.,](\d+) (.bps)", re.DOTALL)

TABLE_FAILED = "kestrane: GetIfTable2 ha fallado"
ADDRESSES_FAILED = "kestrane: GetAdaptersAddresses ha fallado; interfaces sin IP"

# The resolution of GetTickCount64.
CLOCK_STEP = 0.020


def rates_of(call):
    """Download and upload in bits per second; None if the text has none."""
    match = RATES.fullmatch(call.tip)
    if match is None:
        return None
    _, *figures = match.groups()
    down, up = (float(f"{whole}.{part}") * UNITS[unit] for whole, part, unit in (figures[:3], figures[3:]))
    return down, up


def label_of(call):
    match = RATES.fullmatch(call.tip)
    return match.group(1) if match else call.tip


def full_height(history):
    """The rate of a full column: the second highest in the icon, and never below 10 kbps."""
    shown = sorted(rate for rates in history for rate in rates)
    return max(shown[-2] if len(shown) > 2 else max(shown, default=0), 10000)


def picture(columns):
    """The icon with these pairs of heights, oldest first: the common part below, the rest of the taller above."""
    rows = [[BACKGROUND] * 16 for _ in range(16)]
    for x, (down, up) in enumerate(columns, start=16 - len(columns)):
        common = min(down, up)
        for height in range(max(down, up)):
            rows[15 - height][x] = BOTH if height < common else DOWN if down > up else UP
    return rows


class NetworkTest(DesktopTest):
    def network_changes(self, start):
        return [call for call in self.shell.since(start) if call.message == NIM_MODIFY and call.id == 4]

    def heights_in(self, call):
        """The pairs of heights of all columns; fails if the icon has any other pixels."""
        columns = [[row[x] for row in pixels(call)] for x in range(16)]
        heights = [tuple(column.count(BOTH) + column.count(color) for color in (DOWN, UP)) for column in columns]
        self.assertEqual(pixels(call), picture(heights))
        return heights

    def assert_columns_follow_the_rates(self, calls):
        """Each image is the history of the rates in the texts, which are rounded: a column may be off by one row."""
        history = []
        for call in calls:
            if rates_of(call) is not None:
                history = (history + [rates_of(call)])[-16:]
            expected = [[16 * rate / full_height(history) for rate in rates] for rates in history]
            expected = [(0, 0)] * (16 - len(expected)) + expected
            for shown, rates in zip(self.heights_in(call), expected):
                for height, rate in zip(shown, rates):
                    self.assertLessEqual(abs(height - min(rate, 16)), 1.0, (call.tip, history))


class Traffic:
    """Sends this machine datagrams at a given rate in bytes per second for the duration of the block."""

    def __init__(self, bytes_per_second):
        self.sent = 0
        self._rate = bytes_per_second
        self._ends = threading.Event()
        self._thread = threading.Thread(target=self._send)
        # Never read: once full, it drops the rest, but only after the interface has counted it.
        self._receiver = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._receiver.bind(("127.0.0.1", 0))

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._ends.set()
        self._thread.join()
        self._receiver.close()

    def _send(self):
        datagram = bytes(1000)
        start = time.monotonic()
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            while not self._ends.wait(0.005):
                while self.sent < self._rate * (time.monotonic() - start):
                    self.sent += sender.sendto(datagram, self._receiver.getsockname())


def received_octets():
    """The kernel's count of octets received by each interface so far."""
    lines = pathlib.Path("/proc/net/dev").read_text(encoding="ascii").splitlines()[2:]
    return {name.strip(): int(figures.split()[0]) for name, figures in (line.split(":") for line in lines)}


class RealTraffic(NetworkTest):
    RATE = 1_000_000
    TICKS = 7
    LOOPBACK_LUID = LOOPBACK << 48 | socket.if_nametoindex("lo") << 24

    def choose(self, *lines):
        self.desktop.write_ini("\n".join(("[network]", "refresh_ms=500", *lines)))
        self.start()
        self.shell.wait_for(lambda call: call.id == 4 and rates_of(call), self.first)

    def watch_traffic(self):
        """Ticks from before some traffic until after it, with the octets sent and those that the kernel counted."""
        first = self.shell.wait_for_ticks(1, icon=4)[0]
        before = received_octets()
        with Traffic(self.RATE) as traffic:
            self.shell.wait_for_ticks(self.TICKS, icon=4)
        self.shell.wait_for_ticks(2, icon=4)
        seen = {name: octets - before.get(name, 0) for name, octets in received_octets().items()}
        changes = self.network_changes(self.first)
        return changes[changes.index(first) :], traffic.sent, seen

    @staticmethod
    def octets_shown(calls, direction):
        """The octets according to the texts: each rate times the duration of its tick."""
        return sum(rates_of(call)[direction] * (call.ms - last.ms) / 8000 for last, call in zip(calls, calls[1:]))

    def assert_tells_of(self, calls, sent, octets):
        self.assertGreaterEqual(octets, sent)
        for direction in (0, 1):
            told = self.octets_shown(calls, direction)
            self.assertLess(abs(told - octets), octets / 5, f"{told} of {octets}: {[call.tip for call in calls]}")
        # Most of the ticks lie within the traffic.
        typical = statistics.median(rates_of(call)[0] for call in calls[1:])
        self.assertLess(abs(typical - 8 * self.RATE), 4 * self.RATE)

    def test_an_interface_chosen_by_its_number(self):
        self.choose(f"interfaces={self.LOOPBACK_LUID:016X}", "interface_aliases=whatever")
        calls, sent, seen = self.watch_traffic()
        self.assertEqual({label_of(call) for call in calls}, {"lo"})
        self.assert_tells_of(calls, sent, seen["lo"])
        self.assert_columns_follow_the_rates(self.network_changes(self.first))
        # There was almost no traffic before and after, so the columns rise and fall.
        self.assertGreaterEqual(max(height for height, _ in self.heights_in(calls[-1])), 8)
        self.assertLessEqual(self.heights_in(calls[-1])[-1][0], 1)

    def test_an_interface_whose_number_has_changed_is_found_by_its_name(self):
        self.choose("interfaces=1", "interface_aliases=LO")
        calls, sent, seen = self.watch_traffic()
        self.assertEqual({label_of(call) for call in calls}, {"lo"})
        self.assert_tells_of(calls, sent, seen["lo"])

    def test_all_connections_are_those_to_the_outside(self):
        self.choose("interfaces=*")
        calls, sent, seen = self.watch_traffic()
        self.assertEqual({label_of(call) for call in calls}, {"All connections"})
        outside = sum(octets for name, octets in seen.items() if name != "lo")
        self.assertLess(abs(self.octets_shown(calls, 0) - outside), outside / 5 + sent / 4)


def row(luid, alias, received, sent, kind=ETHERNET, state=1, flags=HARDWARE):
    return f"row|{luid:X}|{alias}|{kind}|{state}|{flags}|{received}|{sent}"


class Tick:
    """One tick on demand: its result, and the two moments between which it read the clock."""

    def __init__(self, test):
        self.from_time = time.monotonic()
        calls = [call for call in test.tick(NETWORK_TIMER) if call.id == 4]
        self.to_time = time.monotonic()
        self.call = calls[-1]


class ScriptedTable(NetworkTest):
    options = {"network": []}
    settings = every(10000)

    # Long enough to tell the moments apart.
    PAUSE = 0.25

    def start_with(self, rows, *chosen):
        """Starts with these interfaces (numbers and names) chosen, and waits until there are rates."""
        self.desktop.write_network(rows)
        numbers = ",".join(f"{luid:X}" for luid, _ in chosen) or "*"
        names = "|".join(name for _, name in chosen)
        self.desktop.write_ini(every(10000, network=f"interfaces={numbers}\ninterface_aliases={names}"))
        process = self.start()
        self.tick(NETWORK_TIMER)
        return process

    def show(self, rows):
        self.desktop.write_network(rows)
        return Tick(self)

    def between(self, before, after):
        """Ticks with two tables in sequence, without a tick of the real timer in between."""
        while True:
            start = self.shell.mark()
            first = self.show(before)
            time.sleep(self.PAUSE)
            second = self.show(after)
            if len(self.network_changes(start)) == 2:
                return first, second

    def assert_rates(self, before, after, down, up):
        """The rates between two tables with these differences in octets, over the time actually elapsed."""
        first, second = self.between(before, after)
        shortest = second.from_time - first.to_time - CLOCK_STEP
        longest = second.to_time - first.from_time + CLOCK_STEP
        for octets, rate in zip((down, up), rates_of(second.call)):
            self.assertGreaterEqual(rate * 1.01 + 50, octets * 8 / longest)
            self.assertLessEqual(rate * 0.99 - 50, octets * 8 / shortest)
        return second.call


class Connections(ScriptedTable):
    def test_rates_come_with_the_third_reading(self):
        rows = [row(1, "Ethernet", 0, 0)]
        self.desktop.write_network(rows)
        self.start()
        self.assertEqual({call.tip for call in self.network_changes(self.first)}, {"All connections"})
        self.assertEqual(self.show(rows).call.tip, "All connections")
        self.assertEqual(self.show(rows).call.tip, "All connections\nDown: 0.0 kbps  Up: 0.0 kbps")

    def test_download_and_upload_have_their_rates_and_colours(self):
        zero = [row(1, "Ethernet", 0, 0)]
        self.start_with(zero)
        million = 10**6
        for down, up in (
            (5 * million, 0),
            (0, 5 * million),
            (4 * million, 2 * million),
            (300, 40 * million),
            (0, 0),
            (10**11, 1),
        ):
            with self.subTest(down=down, up=up):
                self.assert_rates(zero, [row(1, "Ethernet", down, up)], down, up)
        changes = self.network_changes(self.first)
        self.assert_columns_follow_the_rates(changes)
        shown = {color for call in changes for line in pixels(call) for color in line}
        self.assertEqual(shown, {BACKGROUND, DOWN, UP, BOTH})

    def test_all_connections_are_the_real_ones(self):
        def table(octets):
            return [
                row(1, "Ethernet", octets, 2 * octets),
                row(2, "Ethernet-QoS Packet Scheduler-0000", octets, octets, flags=HARDWARE | FILTER),
                row(3, "Ethernet-WFP Native Filter-0000", octets, octets, flags=FILTER),
                row(4, "Loopback Pseudo-Interface 1", octets, octets, kind=LOOPBACK, flags=0),
                row(5, "Loopback with a plug", octets, octets, kind=LOOPBACK),
                row(6, "Teredo", octets, octets, kind=TUNNEL, flags=0),
                row(7, "Tunnel of metal", 3 * octets, 5 * octets, kind=TUNNEL),
                row(8, "Wi-Fi", octets, octets, state=2),
                row(9, "Virtual switch", octets, octets, flags=0),
                row(10, "Second card", octets, octets),
            ] + [row(100 + number, f"Filter {number}", octets, octets, flags=FILTER) for number in range(60)]

        self.start_with(table(0))
        shown = self.assert_rates(table(0), table(10**6), 5 * 10**6, 8 * 10**6)
        self.assertEqual(label_of(shown), "All connections")

    def test_no_connection_at_all_is_silence(self):
        self.start_with([row(1, "Ethernet", 0, 0, state=2)])
        for rows in ([row(1, "Ethernet", 5000, 5000, state=2)], []):
            self.assertEqual(self.show(rows).call.tip, "All connections\nDown: 0.0 kbps  Up: 0.0 kbps")

    def test_chosen_interfaces_count_whatever_they_are(self):
        def table(octets):
            return [
                row(1, "Ethernet", octets, 0),
                row(2, "Loopback", 2 * octets, octets, kind=LOOPBACK, flags=0),
                row(3, "Filter", 4 * octets, 3 * octets, flags=FILTER),
                row(4, "Wi-Fi", octets, octets, state=2),
            ]

        n = 10**6
        for chosen, label, down, up in (
            ([(1, "")], "Ethernet", n, 0),
            ([(2, "")], "Loopback", 2 * n, n),
            ([(3, "")], "Filter", 4 * n, 3 * n),  # by its number, not by its name
            ([(3, ""), (1, "")], "Filter, Ethernet", 5 * n, 3 * n),
            ([(1, ""), (1, "")], "Ethernet, Ethernet", 2 * n, 0),  # chosen twice counts twice
            ([(1, ""), (4, "")], "Ethernet, Wi-Fi", n, 0),  # one that is down is only named
            ([(1, ""), (9, "Gone")], "Ethernet, Gone", n, 0),
            ([(9, "eTHERNET")], "Ethernet", n, 0),
            ([(9, "Gone"), (8, "LOOPBACK")], "Gone, Loopback", 2 * n, n),
        ):
            with self.subTest(chosen):
                self.start_with(table(0), *chosen)
                shown = self.assert_rates(table(0), table(n), down, up)
                self.assertEqual(label_of(shown), label)
                self.desktop.end_kestrane()

    def test_a_chosen_interface_that_is_down_or_gone_is_disconnected(self):
        up = [row(1, "Área local", 0, 0)]
        self.start_with(up, (1, "Old name"))
        for rows, shown in (
            ([row(1, "Área local", 9, 9, state=2)], "Área local: disconnected"),
            ([row(1, "Área local", 9, 9, state=7)], "Área local: disconnected"),
            ([], "Old name: disconnected"),
            ([row(2, "Old name too", 9, 9)], "Old name: disconnected"),
            ([row(2, "Old name", 9, 9, flags=FILTER)], "Old name: disconnected"),  # a filter is not found by name
            ([row(1, "", 9, 9, state=2)], "Network: disconnected"),
        ):
            with self.subTest(rows):
                self.assertEqual(self.show(rows).call.tip, shown)
        self.assert_rates(up, [row(1, "Área local", 10**6, 10**6)], 10**6, 10**6)

    def test_a_changed_number_is_bridged_by_the_name_whatever_its_case(self):
        self.start_with([row(1, "Conexión ñandú", 10**6, 10**6)], (1, "cONEXIón ñANDú"))
        second = [row(2, "Conexión ñandú", 10**6, 10**6)]
        zero = "Conexión ñandú\nDown: 0.0 kbps  Up: 0.0 kbps"
        self.assertEqual(self.show(second).call.tip, zero)  # its first tick
        self.assert_rates(second, [row(2, "Conexión ñandú", 2 * 10**6, 4 * 10**6)], 10**6, 3 * 10**6)

    def test_a_list_that_is_malformed_means_all_connections(self):
        rows = [row(0x1F, "Ethernet", 0, 0)]
        for numbers in ("", "1F,", "0", "1F,*", "xyz", "12345678901234567"):
            with self.subTest(numbers):
                self.desktop.write_network(rows)
                self.desktop.write_ini(every(10000, network=f"interfaces={numbers}\ninterface_aliases=Ethernet"))
                self.start()
                self.assertEqual(self.show(rows).call.tip, "All connections")
                self.desktop.end_kestrane()


class HostileTables(ScriptedTable):
    def test_a_counter_that_falls_counts_nothing_in_its_direction(self):
        high, low = [row(1, "Ethernet", 10**12, 10**6)], [row(1, "Ethernet", 100, 3 * 10**6)]
        self.start_with(high)
        self.assert_rates(high, low, 0, 2 * 10**6)
        self.assert_rates(low, [row(1, "Ethernet", 100 + 10**6, 3 * 10**6)], 10**6, 0)

    def test_an_interface_counts_from_its_second_tick_and_not_after_its_last(self):
        one = [row(1, "Ethernet", 0, 0)]
        both = one + [row(2, "Wi-Fi", 10**15, 10**15)]
        self.start_with(one)
        self.assert_rates(one, both, 0, 0)
        self.assert_rates(both, one + [row(2, "Wi-Fi", 10**15 + 10**6, 10**15)], 10**6, 0)
        self.assert_rates(both, [row(1, "Ethernet", 10**6, 0)], 10**6, 0)
        self.assert_rates(list(reversed(both)), both, 0, 0)

    def test_a_failing_table_costs_two_ticks(self):
        zero, million = [row(1, "Ethernet", 0, 0)], [row(1, "Ethernet", 10**6, 10**6)]
        silence = "All connections\nDown: 0.0 kbps  Up: 0.0 kbps"
        self.start_with(zero)
        for failure in (["table|1F"], ["table|0"]):  # an error, and success without a table
            with self.subTest(failure):
                self.assertEqual(self.show(failure + zero).call.tip, silence)
                self.assertEqual(self.show(million).call.tip, silence)
                self.assert_rates(zero, million, 10**6, 10**6)

    def test_a_failing_table_leaves_the_names_of_the_chosen(self):
        rows = [row(1, "Ethernet", 0, 0)]
        self.start_with(rows, (1, "As it was"), (2, ""), (3, "Third"))
        self.assertEqual(self.show(["table|1F"]).call.tip, "As it was, , Third: disconnected")
        self.assertEqual(label_of(self.show(rows).call), "Ethernet, , Third")

    def test_failures_are_told(self):
        for failure, told in (
            ("table|1F", TABLE_FAILED),
            ("addresses|5", ADDRESSES_FAILED),
            ("addresses|6F", ADDRESSES_FAILED),  # no buffer is ever large enough
        ):
            with self.subTest(failure):
                self.desktop.write_network([failure, row(1, "Ethernet", 0, 0)])
                start = self.shell.mark()
                self.desktop.start_kestrane_logged()
                self.shell.wait_for_ticks(2, icon=4, start=start)
                self.assertIn(told, self.desktop.debug_lines())
                self.tick(NETWORK_TIMER)
                zero, million = [row(1, "Ethernet", 0, 0)], [row(1, "Ethernet", 10**6, 0)]
                self.assert_rates(zero, million, 10**6, 0)
                self.desktop.end_kestrane()

    def test_long_and_strange_names_do_no_harm(self):
        self.start_with([row(1, "Ethernet", 0, 0)], (1, "x"))
        rates = "\nDown: 0.0 kbps  Up: 0.0 kbps"
        for name, shown in (
            ("", "Network" + rates),
            ("n" * 127, "n" * 127),  # the rates are cut away
            ("n" * 257, "n" * 127),  # without a terminator
            ("n" * 300, "n" * 127),
            ("n" * (127 - len(rates)), "n" * (127 - len(rates)) + rates),
            ("n" * (128 - len(rates)), "n" * (128 - len(rates)) + rates[:-1]),
            ("{0} %s \\n \t", "{0} %s \\n \t" + rates),
            ("ñ € 中文 😀", "ñ € 中文 😀" + rates),
        ):
            with self.subTest(name):
                rows = [row(1, name, 0, 0)]
                self.show(rows)
                self.assertEqual(self.show(rows).call.tip, shown)

    def test_counters_at_their_limits_and_crowds_do_no_harm(self):
        most = 2**64 - 1
        process = self.start_with([row(1, "Ethernet", 0, 0)])
        for rows in (
            [row(1, "Ethernet", most, most)],
            [row(1, "Ethernet", 0, 0)],
            [row(1, "Ethernet", most, most), row(1, "Ethernet", most, most)],
            [row(number, "Ethernet", most, most) for number in range(3000)],
            [row(number, "Ethernet", number, number) for number in range(3000)],
            [row(0, "", 0, 0, kind=2**32 - 1, state=2**31 - 1, flags=255)],
        ):
            self.assertIsNotNone(rates_of(self.show(rows).call))
        zero = [row(1, "Ethernet", 0, 0)]
        self.assert_rates(zero, [row(1, "Ethernet", 10**6, 10**6)], 10**6, 10**6)
        self.assertIsNone(process.poll())


class SpanishNames(ScriptedTable):
    options = {**ScriptedTable.options, "language": "es_ES"}

    def test_texts_are_spanish(self):
        rows = [row(1, "Ethernet", 0, 0)]
        self.start_with(rows)
        self.assertEqual(self.show(rows).call.tip, "Todas las conexiones\nBajada: 0,0 kbps  Subida: 0,0 kbps")
        self.desktop.end_kestrane()
        self.start_with(rows, (1, "x"))
        self.assertEqual(self.show([row(1, "Ethernet", 0, 0, state=2)]).call.tip, "Ethernet: desconectada")
        self.assertEqual(self.show([row(1, "", 0, 0, state=2)]).call.tip, "Red: desconectada")


if __name__ == "__main__":
    main()
