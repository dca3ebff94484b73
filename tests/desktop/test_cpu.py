"""The CPU icon: scripted counters, hostile replies, and the machine's own figures when counters fail."""

import multiprocessing
import pathlib
import re

from harness import CORES, NIM_MODIFY, TOTAL, DesktopTest, column_height, column_heights, main

FOREGROUND = 0xFF007BB7
INVALID_DATA = "C0000BBA"

# The permitted difference between the counter and GetSystemTimes, in percentage points: their time spans differ
# slightly.
TOLERANCE = 20


def total(value, status="0"):
    return f"value|{TOTAL}||{value}|{status}"


def core(name, value, status="0"):
    return f"value|{CORES}|{name}|{value}|{status}"


def percent_of(call):
    return int(re.fullmatch(r"CPU: (\d+) %", call.tip).group(1))


class CpuTest(DesktopTest):
    settings = "[cpu]\nrefresh_ms=500\n"

    def next_percent(self):
        """The figure of a tick that certainly began after now: the second one seen from now on."""
        return percent_of(self.shell.wait_for_ticks(2, icon=1)[1])

    def machine_and_program(self):
        """The load of one tick as counted by the kernel and as shown by the program."""
        self.shell.wait_for_ticks(1, icon=1)
        before = self.read_times()
        call = self.shell.wait_for_ticks(1, icon=1)[0]
        idle, all_times = (after - start for after, start in zip(self.read_times(), before))
        return round(100 * (all_times - idle) / max(all_times, 1)), percent_of(call)

    @staticmethod
    def read_times():
        """Idle and total time so far, from the four columns that Wine uses."""
        user, nice, system, idle = map(int, pathlib.Path("/proc/stat").read_text(encoding="ascii").split()[1:5])
        return idle, user + nice + system + idle

    def assert_follows_the_machine(self):
        """The median of three differences is small: on a busy machine one tick may be seen late."""
        pairs = [self.machine_and_program() for _ in range(3)]
        differences = sorted(abs(machine - program) for machine, program in pairs)
        self.assertLessEqual(differences[1], TOLERANCE, pairs)


class ScriptedCounters(CpuTest):
    options = {"counters": [total(50)]}

    def setUp(self):
        super().setUp()
        self.desktop.write_counters([total(50), core("0,0", 50), core("_Total", 50)])

    def assert_columns_follow_the_texts(self):
        """Each image is the history of the figures in the texts, the newest at the right."""
        changes = [call for call in self.shell.since(self.first) if call.message == NIM_MODIFY and call.id == 1]
        history = []
        for call in changes[1:]:  # the first comes before any tick and shows an empty history
            history.append(column_height(percent_of(call)))
            shown = ([0] * 16 + history)[-16:]
            self.assertEqual(column_heights(call, FOREGROUND), shown)

    def test_figures_are_rounded_and_clamped(self):
        self.start()
        for value, shown in (
            ("0", 0),
            ("0.4", 0),
            ("0.5", 1),
            ("42", 42),
            ("99.4", 99),
            ("99.5", 100),
            ("137.2", 100),  # "Utility" exceeds 100 on real machines
            ("-5", 0),
            ("100", 100),
            ("nan", 0),
            ("1e300", 100),
            ("-1e300", 0),
            ("inf", 100),
            ("7", 7),
        ):
            with self.subTest(value):
                self.desktop.write_counters([total(value), core("0,0", value)])
                self.assertEqual(self.next_percent(), shown)
        self.assert_columns_follow_the_texts()

    def test_new_data_counts_as_valid(self):
        self.start()
        self.desktop.write_counters([total(31, status="1")])
        self.assertEqual(self.next_percent(), 31)

    def test_strange_processors_do_no_harm(self):
        process = self.start()
        crowd = [core(f"{group},{number}", 100) for group in range(64) for number in range(64)]
        for cores in (
            crowd + crowd,
            [core(name, 50) for name in ("", ",", "0,", ",0", "a,b", "64,64", "0,4294967296", "9" * 250, "ñ,1")],
            [core("0,0", value) for value in ("nan", "-1e300", "1e300", "inf")],
            [core("0,0", 50, status=INVALID_DATA)],
            [],
        ):
            self.desktop.write_counters([total(64)] + cores)
            self.assertEqual(self.next_percent(), 64)
        self.assertIsNone(process.poll())

    def test_a_failure_shows_the_figure_of_the_system_until_it_passes(self):
        self.start()
        for failure in (
            [total(50, status=INVALID_DATA)],
            [f"collect|{TOTAL}|800007D5", total(50)],
            [f"read|{TOTAL}|{INVALID_DATA}", total(50)],
            [],
        ):
            with self.subTest(failure):
                self.desktop.write_counters(failure)
                self.assert_follows_the_machine()
                self.desktop.write_counters([total(23)])
                self.assertEqual(self.next_percent(), 23)

    def test_missing_core_counters_leave_the_figure_of_the_machine(self):
        self.desktop.write_counters([total(77), f"add|{CORES}|C0000BB9"])
        self.start()
        self.assertEqual(self.next_percent(), 77)

    def test_a_refused_counter_is_told_and_the_system_stands_in(self):
        for refusal in ([f"add|{TOTAL}|C0000BB9", total(50)], ["open|C0000BBB", total(50)]):
            with self.subTest(refusal):
                self.desktop.write_counters(refusal)
                start = self.shell.mark()
                self.desktop.start_kestrane_logged()
                self.shell.wait_for_ticks(2, icon=4, start=start)
                told = "kestrane: sin contador % Processor Utility; CPU con GetSystemTimes" in self.desktop.debug_lines()
                self.assertEqual(told, refusal[0].startswith("add"))
                self.assert_follows_the_machine()
                self.desktop.end_kestrane()


class RealLoad(CpuTest):
    def test_the_figure_rises_and_falls_with_the_load(self):
        self.start()
        self.assert_follows_the_machine()
        busy = [multiprocessing.Process(target=burn, daemon=True) for _ in range(multiprocessing.cpu_count())]
        for process in busy:
            process.start()
        try:
            self.assertGreaterEqual(self.next_percent(), 100 - TOLERANCE)
        finally:
            for process in busy:
                process.kill()
                process.join()
        self.assert_follows_the_machine()


def burn():
    while True:
        pass


if __name__ == "__main__":
    main()
