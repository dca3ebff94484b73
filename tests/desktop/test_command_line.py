"""The command line and the single instance, with several real processes."""

import signal
import time

from harness import NIM_ADD, NIM_DELETE, NIM_MODIFY, DesktopTest, main, wait_until

RUN_KEY = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"

EXIT_WAIT = 5
UPDATE_WAIT = 20


class CommandLine(DesktopTest):
    settings = "[cpu]\nrefresh_ms=500\n"

    def assert_running_alone(self, process):
        self.assertIsNone(process.poll())
        self.assertEqual(self.desktop.count_windows(), 1)

    def window_of_last_call(self):
        return self.shell.calls[-1].window

    def test_starts_with_an_empty_command_line(self):
        process = self.start()
        self.assert_running_alone(process)

    def test_an_unknown_command_line_is_an_ordinary_start(self):
        for text in ("--EXIT", "--exit ", '"--exit"', "--autostart-machine  set", "--updated --updated", "hello"):
            with self.subTest(text):
                start = self.shell.mark()
                self.desktop.start_launched(text)
                self.shell.wait_for(lambda call: call.message == NIM_MODIFY and call.id == 4, start, "the icons")
                self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
                wait_until(lambda: self.desktop.count_windows() == 0, "the end of the window")

    def test_exit_without_an_instance_returns_at_once(self):
        before = self.shell.mark()
        begin = time.monotonic()
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertLess(time.monotonic() - begin, EXIT_WAIT)
        self.assertEqual(self.shell.since(before), [])

    def test_exit_ends_the_instance_and_takes_its_icons_away(self):
        process = self.start()
        before = self.shell.mark()
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertEqual(process.wait(), 0)
        self.assertEqual(self.desktop.count_windows(), 0)
        deleted = [(call.id, call.answer) for call in self.shell.since(before) if call.message == NIM_DELETE]
        self.assertEqual(deleted, [(1, 1), (2, 1), (3, 1), (4, 1)])

    def test_exit_gives_up_on_an_instance_that_does_not_go_and_leaves_it_alive(self):
        process = self.start()
        process.send_signal(signal.SIGSTOP)
        try:
            begin = time.monotonic()
            self.assertEqual(self.desktop.run_kestrane("--exit").code, 1)
            self.assertGreaterEqual(time.monotonic() - begin, EXIT_WAIT)
            self.assertIsNone(process.poll())
        finally:
            process.send_signal(signal.SIGCONT)
        self.assertEqual(process.wait(), 0)  # the message was still queued

    def test_a_second_start_leaves_in_silence(self):
        process = self.start()
        window = self.window_of_last_call()
        wait_until(lambda: b"install_id" in self.desktop.ini_path.read_bytes(), "the last write of the start")
        files = sorted(self.desktop.ini_path.parent.iterdir())
        text = self.desktop.ini_path.read_bytes()
        before = self.shell.mark()
        for command_line in ("", "--EXIT", "--autostart-machine  clear", "--updated "):
            with self.subTest(command_line):
                begin = time.monotonic()
                self.assertEqual(self.desktop.launch_kestrane(command_line).code, 0)
                self.assertLess(time.monotonic() - begin, UPDATE_WAIT)
        self.shell.wait_for_ticks(2, icon=1)
        self.assertEqual({call.message for call in self.shell.since(before)}, {NIM_MODIFY})
        self.assertEqual({call.window for call in self.shell.since(before)}, {window})
        self.assertEqual(sorted(self.desktop.ini_path.parent.iterdir()), files)
        self.assertEqual(self.desktop.ini_path.read_bytes(), text)
        self.assert_running_alone(process)

    def test_updated_without_another_instance_starts(self):
        self.assert_running_alone(self.start("--updated"))

    def start_successor(self):
        """An outgoing instance and, waiting for it, its successor."""
        outgoing = self.start()
        window = self.window_of_last_call()
        before = self.shell.mark()
        successor = self.desktop.start_kestrane("--updated")
        wait_until(lambda: self.desktop.has_mapped(successor, "kestrane.exe"), "the start of the successor")
        self.shell.wait_for_ticks(3, icon=1, start=before)
        self.assert_running_alone(outgoing)
        self.assertEqual({call.window for call in self.shell.since(before)}, {window})
        self.assertIsNone(successor.poll())
        return outgoing, successor

    def wait_for_icons_of_successor(self, start):
        adds = self.shell.wait_for_count(4, lambda call: call.message == NIM_ADD and call.answer, start)
        self.assertEqual([call.id for call in adds], [1, 2, 3, 4])

    def test_updated_waits_for_the_outgoing_instance_and_reads_what_it_wrote(self):
        outgoing, successor = self.start_successor()
        before = self.shell.mark()
        self.desktop.write_ini(self.settings + "[general]\nlanguage=1\n")
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertEqual(outgoing.wait(), 0)
        self.wait_for_icons_of_successor(before)
        self.shell.wait_for(lambda call: call.id == 3 and call.tip.startswith("Memoria: "), before, "a Spanish text")
        self.assert_running_alone(successor)

    def test_updated_takes_over_from_an_instance_that_died(self):
        outgoing, successor = self.start_successor()
        self.shell.command("forget")
        before = self.shell.mark()
        outgoing.kill()
        self.wait_for_icons_of_successor(before)
        self.assert_running_alone(successor)

    def test_updated_gives_up_when_the_other_instance_stays(self):
        process = self.start()
        begin = time.monotonic()
        self.assertEqual(self.desktop.run_kestrane("--updated").code, 0)
        self.assertGreaterEqual(time.monotonic() - begin, UPDATE_WAIT)
        self.shell.wait_for_ticks(1, icon=1)
        self.assert_running_alone(process)

    def read_run_value(self):
        return self.desktop.run("reg", "query", RUN_KEY, "/v", "kestrane").output

    def test_autostart_of_the_machine_is_set_and_cleared_beside_a_running_instance(self):
        process = self.start()
        self.assertEqual(self.desktop.run_kestrane("--autostart-machine", "set").code, 0)
        self.assertIn('kestrane.exe"', self.read_run_value())
        self.assertEqual(self.desktop.run_kestrane("--autostart-machine", "clear").code, 0)
        self.assertNotIn("kestrane.exe", self.read_run_value())
        self.assertEqual(self.desktop.run_kestrane("--autostart-machine", "clear").code, 0)  # nothing to remove
        self.assert_running_alone(process)


if __name__ == "__main__":
    main()
