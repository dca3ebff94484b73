"""Opening Task Manager: Wine's own really starts, and the settings file has the page of the clicked icon."""

import contextlib
import shutil
import subprocess

from harness import DISK_TIMER, every, main, wait_until, windows_path
from onscreen import (
    DIALOG_CLASS,
    KINDS,
    NIN_KEYSELECT,
    NIN_SELECT,
    PLACES,
    WM_LBUTTONDBLCLK,
    all_open,
    double_click_time,
    middle_of,
)
from test_disks import disk
from test_menu import MEMORY_ICON, MenuTest

TITLE = "Task Manager"
CPU_ICON, DISK_ICON, NETWORK_ICON = 1, 2, 4

# Read and write percentages: 5 and 5 on the first disk, 45 and 15 on the second, 3 and 48 on the third.
READ_MOST, WRITTEN_MOST = disk("1 D:", 40, 300, 100), disk("2 E:", 49, 30, 480)
MACHINE = disk("0 C:", 90, 100, 100) + READ_MOST + WRITTEN_MOST

NOT_WRITTEN = "kestrane: no se pudo escribir settings.json del Administrador de tareas"


def fresh(page):
    return b'{"DefaultStartPage":1,"CurrentView":%d}' % page


class TaskManagerTest(MenuTest):
    options = {"counters": MACHINE, **double_click_time(1)}
    settings = every(10000)
    TRIES_TO_END = 5

    def setUp(self):
        super().setUp()
        self.desktop.write_counters(MACHINE)
        shutil.rmtree(self.folder, ignore_errors=True)
        self.addCleanup(self.end_task_managers)

    @property
    def folder(self):
        return self.desktop.ini_path.parents[2] / "Local" / "Microsoft" / "Windows" / "TaskManager"

    @property
    def file(self):
        return self.folder / "settings.json"

    def write_file(self, content):
        self.folder.mkdir(parents=True, exist_ok=True)
        self.file.write_bytes(content)

    def task_managers(self):
        return [window for window in self.neighbour.windows(DIALOG_CLASS) if window.title == TITLE]

    def wait_for_task_managers(self, count=1):
        wait_until(lambda: len(self.task_managers()) == count, f"{count} task managers")

    def end_task_managers(self):
        """Wine 8 ends all of a name at once, Wine 10 one at a time, and one that is just starting may be missed."""
        for _ in range(self.TRIES_TO_END):
            count = len(self.task_managers())
            if count == 0:
                return
            self.desktop.run("taskkill", "/f", "/im", "taskmgr.exe")
            with contextlib.suppress(AssertionError):
                wait_until(lambda count=count: len(self.task_managers()) < count, "fewer task managers", 20)
        self.assertEqual(self.task_managers(), [])

    def choose_performance(self, icon=CPU_ICON):
        self.choose(self.PERFORMANCE, icon=icon)

    def double_click_memory(self):
        self.shell.command(f"callback {MEMORY_ICON} {WM_LBUTTONDBLCLK} 600 500")

    def assert_opens(self, action, content):
        """Task Manager starts with this content in its file, and is ended again."""
        action()
        self.wait_for_task_managers()
        self.assertEqual(self.file.read_bytes(), content)
        self.end_task_managers()


class Pages(TaskManagerTest):
    def test_the_entry_in_bold_opens_the_page_of_the_icon(self):
        self.start()
        for icon, page in ((CPU_ICON, 0), (DISK_ICON, 4), (MEMORY_ICON, 1), (NETWORK_ICON, 5)):
            with self.subTest(icon=icon):
                menu = self.open_menu(icon)
                weights = [entry.weight for entry in menu.entries]
                bold = weights.index(max(weights))
                self.assert_opens(lambda: self.click(*menu.middle_of(bold)), fresh(page))
                shutil.rmtree(self.folder)

    def test_a_double_click_on_the_memory_icon_opens_its_page(self):
        self.start()
        self.assert_opens(self.double_click_memory, fresh(1))

    def test_a_single_click_on_the_memory_icon_opens_nothing(self):
        self.start()
        for event in (NIN_SELECT, NIN_KEYSELECT):
            self.shell.command(f"callback {MEMORY_ICON} {event} 600 500")
        self.click_icon("cpu")
        self.wait_for_graph("cpu")  # once this is done, so are those
        self.assertFalse(self.folder.exists())
        self.assertEqual(self.task_managers(), [])

    def test_a_double_click_on_another_icon_opens_nothing(self):
        self.start()
        for icon in (CPU_ICON, DISK_ICON, NETWORK_ICON):
            self.shell.command(f"callback {icon} {WM_LBUTTONDBLCLK} 600 500")
        for kind in KINDS:
            self.wait_for_graph(kind)
        self.assertFalse(self.folder.exists())
        self.assertEqual(self.task_managers(), [])

    def test_the_menu_of_a_graph_opens_the_page_of_its_metric(self):
        self.desktop.write_ini(all_open())
        self.start_with(*KINDS)
        for kind, page in (("cpu", 0), ("disk", 4), ("network", 5)):
            with self.subTest(kind):
                self.click(*middle_of(PLACES[kind]), button=3)
                menu = self.read_menu()
                self.assert_opens(lambda: self.click(*menu.middle_of(self.PERFORMANCE)), fresh(page))
                shutil.rmtree(self.folder)

    def test_the_disk_is_the_busiest_of_this_moment(self):
        self.start()
        one, many = disk("0 C:", 100), disk("0 C:", 90, 100, 100)
        for counters, page in (
            (many + READ_MOST, 3),  # reading is more than writing
            (many + WRITTEN_MOST, 4),
            (many + READ_MOST + disk("2 E:", 55, 0, 1), 3),  # as much writing as reading
            (many + READ_MOST + disk("2 E:", 54, 0, 1), 4),
            (one, 2),
            (one + disk("12 Z:", 0, 1, 0), 14),
            (one + disk("99 Z:", 0, 1, 0), 101),
            (one + disk("123 Z:", 0, 1, 0), 101),
            ([], 2),  # no disk is left
        ):
            with self.subTest(counters):
                self.desktop.write_counters(counters)
                self.tick(DISK_TIMER)
                self.assert_opens(lambda: self.choose_performance(DISK_ICON), fresh(page))
                self.file.unlink()

    def test_the_network_is_behind_all_disks(self):
        self.start()
        for count in (1, 2, 20):
            with self.subTest(count):
                self.desktop.write_counters([line for n in range(count) for line in disk(f"{n} X:", 50, 1, 1)])
                self.tick(DISK_TIMER)
                self.assert_opens(lambda: self.choose_performance(NETWORK_ICON), fresh(count + 2))
                self.file.unlink()


class File(TaskManagerTest):
    def test_an_existing_file_changes_in_its_two_numbers_alone(self):
        every_byte = bytes(range(256)) + b"\r\n\n\r\x1a"
        long = every_byte * 100
        self.start()
        for before, after in (
            (b"{}", fresh(0)),
            (b'{"CurrentView": 2,"DefaultStartPage": 0}', b'{"CurrentView": 0,"DefaultStartPage": 1}'),
            (b'{"a":{"CurrentView":12}}', b'{"DefaultStartPage":1,"a":{"CurrentView":0}}'),
            (b'{"CurrentView":"x"}', b'{"DefaultStartPage":1,"CurrentView":0"x"}'),
            (b"", fresh(0)),
            (b" \r\n", fresh(0)),
            (b"{", b'{"DefaultStartPage":1,"CurrentView":0,'),
            (
                b'{"CurrentView":9' + long + b'"DefaultStartPage":-55' + long,
                b'{"CurrentView":0' + long + b'"DefaultStartPage":1' + long,
            ),
        ):
            with self.subTest(before[:40]):
                self.write_file(before)
                self.assert_opens(self.choose_performance, after)

    def test_only_this_file_is_made(self):
        before = set(self.desktop.ini_path.parents[2].rglob("*"))
        self.start()
        self.assert_opens(self.choose_performance, fresh(0))
        made = set(self.desktop.ini_path.parents[2].rglob("*")) - before
        self.assertEqual(made, {self.folder, self.file})

    def test_a_task_manager_that_runs_keeps_its_file(self):
        content = b'{"CurrentView":2}'
        self.write_file(content)
        age = self.file.stat().st_mtime_ns
        self.start()
        self.desktop.start("taskmgr.exe")
        self.wait_for_task_managers()
        for number, open_it in enumerate((self.choose_performance, self.double_click_memory), start=2):
            open_it()
            # On Windows the running instance comes to the front; Wine starts another.
            self.wait_for_task_managers(number)
        self.assertEqual((self.file.read_bytes(), self.file.stat().st_mtime_ns), (content, age))
        self.end_task_managers()
        self.assert_opens(self.double_click_memory, b'{"DefaultStartPage":1,"CurrentView":1}')


class OutOfReach(TaskManagerTest):
    def start(self):
        start = self.shell.mark()
        process = self.desktop.start_kestrane_logged()
        self.shell.wait_for_ticks(2, icon=4, start=start)
        return process

    def assert_opens_without_the_file(self):
        self.choose_performance()
        self.wait_for_task_managers()
        self.assertEqual(self.desktop.debug_lines().count(NOT_WRITTEN), 1)
        self.end_task_managers()

    def test_a_file_that_another_holds(self):
        content = b'{"CurrentView":2}'
        self.write_file(content)
        path = windows_path(self.file)
        holder = self.desktop.start("holder.exe", path, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(holder.stdout.readline().strip(), "held")
        self.start()
        self.assert_opens_without_the_file()
        self.assertEqual(self.file.read_bytes(), content)
        holder.stdin.close()
        holder.wait()
        self.assert_opens(self.double_click_memory, b'{"DefaultStartPage":1,"CurrentView":1}')

    def test_a_folder_in_the_file_s_place(self):
        self.file.mkdir(parents=True)
        self.start()
        self.assert_opens_without_the_file()
        self.assertTrue(self.file.is_dir())

    def test_a_file_in_the_folder_s_place(self):
        self.folder.write_bytes(b"mine")
        self.addCleanup(self.folder.unlink)
        self.start()
        self.assert_opens_without_the_file()
        self.assertEqual(self.folder.read_bytes(), b"mine")


class Beside(TaskManagerTest):
    def test_the_program_goes_on_and_ends_without_it(self):
        process = self.start()
        self.choose_performance()
        self.wait_for_task_managers()
        self.click_icon("cpu")
        self.wait_for_graph("cpu")
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertEqual(process.wait(timeout=60), 0)
        self.assertEqual(len(self.task_managers()), 1)


if __name__ == "__main__":
    main()
