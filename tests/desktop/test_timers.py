"""Hours of ticks in a minute: the program keeps running, painting, and its size."""

from harness import (
    CORES,
    CPU_TIMER,
    DISK,
    DISK_TIMER,
    MEMORY_TIMER,
    NETWORK_TIMER,
    NIM_MODIFY,
    NO_CHECK,
    TOTAL,
    WM_TIMER,
    DesktopTest,
    every,
    main,
    private_kilobytes,
)

# More ticks than the GDI objects that Wine allows a process (some 16,000): an icon or bitmap leaked per tick would stop
# the painting before the end.
WARM_UP = 2000
TICKS = 20000

# The rings have their full size from the start, so a tick must release all it allocates.
ALLOWED_GROWTH_KB = 512

COUNTERS = [
    f"value|{TOTAL}||50|0",
    f"value|{CORES}|0,0|50|0",
    rf"value|{DISK}\% Idle Time|0 C:|40|0",
    rf"value|{DISK}\% Disk Read Time|0 C:|10|0",
    rf"value|{DISK}\% Disk Write Time|0 C:|20|0",
    rf"value|{DISK}\Disk Read Bytes/sec|0 C:|1048576|0",
    rf"value|{DISK}\Disk Write Bytes/sec|0 C:|2097152|0",
]


class Timers(DesktopTest):
    options = {"counters": COUNTERS}
    settings = NO_CHECK

    def send_ticks(self, count):
        timers = (CPU_TIMER, DISK_TIMER, MEMORY_TIMER, NETWORK_TIMER)
        self.assertTrue(self.desktop.send_messages(count, WM_TIMER, *timers))

    def test_many_ticks_leave_the_program_alive_and_its_memory_flat(self):
        process = self.start()
        self.send_ticks(WARM_UP)
        before = private_kilobytes(process.pid)
        start = self.shell.mark()
        self.send_ticks(TICKS)
        after = private_kilobytes(process.pid)
        self.assertLessEqual(after - before, ALLOWED_GROWTH_KB, f"{before} KB became {after} KB")
        self.assertIsNone(process.poll())

        changes = self.shell.wait_for_count(TICKS, start=start)
        self.assertEqual({(call.message, call.answer) for call in changes}, {(NIM_MODIFY, 1)})
        self.assertEqual({(call.width, call.height) for call in changes}, {(16, 16)})
        self.assertEqual({call.id for call in changes[-8:]}, {1, 2, 3, 4})

    def test_an_unknown_timer_does_nothing(self):
        self.desktop.write_ini(every(10000) + NO_CHECK)
        process = self.start()
        start = self.shell.mark()
        self.assertTrue(self.desktop.send_messages(7, WM_TIMER, 0, 6, 7, 100, 65536, 0x7FFFFFFF, 2**32 - 1))
        self.assertEqual(self.shell.since(start), [])
        self.assertIsNone(process.poll())


if __name__ == "__main__":
    main()
