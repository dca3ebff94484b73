"""One program in each session, whoever starts it, how often and when: many starts at once, copies in two folders,
starts while the former one ends, and two users at once."""

import itertools
import shutil
import subprocess

from harness import (
    BUILD,
    NIM_ADD,
    NIM_DELETE,
    NIM_MODIFY,
    NO_CHECK,
    TIMEOUT,
    DesktopTest,
    Recorder,
    every,
    main,
    wait_until,
    windows_path,
)

PROGRAM = windows_path(BUILD / "kestrane.exe")
ICONS = [1, 2, 3, 4]
COME = [(NIM_ADD, icon) for icon in ICONS]
GO = [(NIM_DELETE, icon) for icon in ICONS]

STARTS = 100
ROUNDS = 20
STARTS_A_ROUND = 3


def come_and_go(calls):
    """The icons that were taken or given up, in order."""
    return [(call.message, call.id) for call in calls if call.message in (NIM_ADD, NIM_DELETE) and call.answer]


class Crowd:
    """Programs that were started at one moment; each start is a number, a program and its arguments."""

    _numbers = itertools.count()

    def __init__(self, desktop, *starts):
        words = [str(word) or "-" for start in starts for word in start]
        self._output = desktop.folder / f"crowd-{next(self._numbers)}.txt"
        with open(self._output, "w", encoding="ascii") as file:
            self._process = desktop.start("crowd.exe", *words, stdout=file)
        wait_until(lambda: "started" in self._lines() or self._process.poll() is not None, "the start of a crowd")

    def _lines(self):
        return self._output.read_text(encoding="ascii").splitlines()

    def codes(self):
        """The exit codes of those that have ended."""
        return [int(line) for line in self._lines()[1:]]

    def wait(self):
        """The exit codes of all."""
        if self._process.wait(TIMEOUT) != 0:
            raise AssertionError("not all programs of a crowd could be started")
        return self.codes()


class InstancesTest(DesktopTest):
    settings = every(500) + NO_CHECK

    def files(self):
        return {path.name: path.read_bytes() for path in self.desktop.ini_path.parent.iterdir()}

    def assert_one_has_come(self, start):
        """Since call number `start` one program has taken its icons and shows figures; no other has asked for any."""
        self.shell.wait_for_ticks(2, icon=4, start=start)
        calls = self.shell.since(start)
        self.assertEqual([(call.message, call.id) for call in calls if call.message == NIM_ADD], COME)
        self.assertEqual(come_and_go(calls), COME)
        self.assertEqual(len({call.window for call in calls}), 1)
        self.assertEqual(self.desktop.count_windows(), 1)

    def end(self, program=PROGRAM):
        start = self.shell.mark()
        self.assertEqual(self.desktop.run(program, "--exit").code, 0)
        self.assertEqual(come_and_go(self.shell.since(start)), GO)
        self.assertEqual(self.desktop.count_windows(), 0)


class Instances(InstancesTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.copies = []
        for name in ("one", "other"):
            folder = cls.desktop.folder / name
            folder.mkdir()
            cls.copies.append(windows_path(shutil.copy(BUILD / "kestrane.exe", folder)))

    def test_of_a_hundred_starts_at_once_from_two_folders_one_lives_on(self):
        start, files = self.shell.mark(), self.files()
        crowd = Crowd(self.desktop, *[(STARTS // 2, copy, "") for copy in self.copies])
        wait_until(lambda: len(crowd.codes()) >= STARTS - 1, "the end of all but one")
        self.assert_one_has_come(start)
        self.assertEqual(crowd.codes(), [0] * (STARTS - 1))
        self.end()
        self.assertEqual(crowd.wait(), [0] * STARTS)
        self.assertEqual(self.files(), files)

    def test_a_copy_in_another_folder_is_the_same_program(self):
        for first, second in (self.copies, reversed(self.copies)):
            start = self.shell.mark()
            process = self.desktop.start(first)
            self.shell.wait_for_ticks(2, icon=4, start=start)
            self.assertEqual(self.desktop.run(second).code, 0)
            self.assert_one_has_come(start)
            self.end(second)
            self.assertEqual(process.wait(), 0)

    def replace(self, former):
        """Ends a program and starts others at the same moment. The crowd with the one that lives on, or None."""
        start = self.shell.mark()
        crowd = Crowd(self.desktop, (1, PROGRAM, "--exit"), (STARTS_A_ROUND, PROGRAM, ""))
        self.assertEqual(set(former.wait()), {0})

        def nobody_is_left():
            return len(crowd.codes()) == 1 + STARTS_A_ROUND

        def one_has_come():
            return len(crowd.codes()) == STARTS_A_ROUND and come_and_go(self.shell.since(start))[-1] == COME[-1]

        wait_until(lambda: nobody_is_left() or one_has_come(), "one new program or none")
        self.assertEqual(set(crowd.codes()), {0})
        alive = not nobody_is_left()
        self.assertEqual(come_and_go(self.shell.since(start)), GO + COME if alive else GO)
        self.assertEqual(self.desktop.count_windows(), int(alive))
        return crowd if alive else None

    def test_starts_while_the_former_one_ends_leave_one_or_none(self):
        files, alive, lived_on = self.files(), None, 0
        for _ in range(ROUNDS):
            if alive is None:
                start = self.shell.mark()
                alive = Crowd(self.desktop, (1, PROGRAM, ""))
                self.assert_one_has_come(start)
            alive = self.replace(alive)
            lived_on += alive is not None
        print(f"in {lived_on} of {ROUNDS} rounds a new one lives on", flush=True)
        self.assertEqual(self.files(), files)

    def test_a_start_in_the_middle_of_an_end_leaves_and_one_after_an_update_waits(self):
        former = self.start()
        self.shell.command("hold delete on")
        before = self.shell.mark()
        ends = self.desktop.start_kestrane("--exit")
        self.shell.wait_for(lambda call: call.message == NIM_DELETE, before, "the beginning of the end")
        successor = self.desktop.start_kestrane("--updated")
        wait_until(lambda: self.desktop.has_mapped(successor, "kestrane.exe"), "the start of the successor")
        held = self.shell.mark()
        crowd = Crowd(self.desktop, *[(STARTS_A_ROUND, copy, "") for copy in self.copies])
        self.assertEqual(crowd.wait(), [0] * (2 * STARTS_A_ROUND))
        self.assertEqual([process.poll() for process in (former, successor)], [None, None])
        self.assertEqual(self.shell.since(held), [])
        self.shell.command("hold delete off")
        self.assertEqual(former.wait(), 0)
        ends.wait()  # it may have given up meanwhile
        self.shell.wait_for_ticks(2, icon=4, start=held)
        self.assertEqual(come_and_go(self.shell.since(before)), GO + COME)
        self.assertEqual(self.desktop.count_windows(), 1)
        self.end()
        self.assertEqual(successor.wait(), 0)


class TwoUsers(InstancesTest):
    """The other user's session, in which Wine's explorer only provides the desktop, has a shell of its own."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.ini = cls.desktop.ini_path.parents[4] / "other/AppData/Roaming/kestrane/kestrane.ini"
        cls.ini.parent.mkdir(parents=True)
        desktop = cls.start_there("C:\\windows\\explorer.exe", "/desktop", stdout=subprocess.PIPE)
        if desktop.stdout.readline() != "begun\n":
            raise AssertionError(f"no second session: {desktop.wait()}")
        poster = windows_path(BUILD / "poster.exe")
        wait_until(lambda: cls.run_there(poster, "Shell_TrayWnd") == "1\n", "a desktop there")
        pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE}
        cls.shell_there = Recorder(cls.start_there(windows_path(BUILD / "recorder.exe"), **pipes))

    @classmethod
    def start_there(cls, program, arguments="-", **options):
        user = {"USER": "other", "LOGNAME": "other"}  # from which Wine derives the user's folders
        return cls.desktop.start("session.exe", "2", program, arguments, environment=user, **options)

    @classmethod
    def run_there(cls, program, arguments):
        output, _ = cls.start_there(program, arguments, stdout=subprocess.PIPE).communicate(timeout=TIMEOUT)
        return output

    def end_there(self):
        start = self.shell_there.mark()
        self.assertEqual(self.start_there(PROGRAM, "--exit").wait(TIMEOUT), 0)
        self.assertEqual(come_and_go(self.shell_there.since(start)), GO)

    def wait_for_memory(self, shell, word, start):
        """A program there shows figures, in this language."""
        shell.wait_for_ticks(2, icon=4, start=start)
        shell.wait_for(lambda call: call.id == 3 and call.tip.startswith(word + ": "), start, word)

    def assert_undisturbed(self, shell, start):
        shell.wait_for_ticks(2, icon=4, start=start)
        self.assertEqual({call.message for call in shell.since(start)}, {NIM_MODIFY})

    def test_have_a_program_each_with_settings_of_their_own(self):
        start, start_there = self.shell.mark(), self.shell_there.mark()
        texts = [self.settings.replace("[general]", f"[general]\nlanguage={number}") for number in (1, 2)]
        self.desktop.write_ini(texts[0])
        self.ini.write_text(texts[1], encoding="ascii")
        here = self.start()
        self.wait_for_memory(self.shell, "Memoria", start)
        start = self.shell.mark()
        there = self.start_there(PROGRAM)
        self.wait_for_memory(self.shell_there, "Memory", start_there)
        self.assertEqual(come_and_go(self.shell_there.since(start_there)), COME)
        self.assertEqual(self.start_there(PROGRAM).wait(TIMEOUT), 0)
        self.assertIsNone(there.poll())
        self.assert_undisturbed(self.shell, start)
        self.end_there()
        self.assertEqual(there.wait(), 0)
        self.assert_undisturbed(self.shell, start)
        start_there = self.shell_there.mark()
        there = self.start_there(PROGRAM)
        self.wait_for_memory(self.shell_there, "Memory", start_there)
        self.end()
        self.assertEqual(here.wait(), 0)
        self.assert_undisturbed(self.shell_there, self.shell_there.mark())
        self.end_there()
        self.assertEqual(there.wait(), 0)
        self.assertEqual([path.read_bytes().decode() for path in (self.desktop.ini_path, self.ini)], texts)


if __name__ == "__main__":
    main()
