"""The settings dialog as a window: where and how it opens, what goes on beside it, and how it ends with the program."""

import hashlib

from harness import NIM_ADD, NIM_DELETE, main, wait_until
from onscreen import DIALOG_CLASS, MENU_CLASS, RIGHT_BUTTON, WM_CONTEXTMENU, middle_of, open_at
from settings_dialog import (
    CPU_BACK,
    CPU_GRAPH_SAMPLE,
    CPU_SAMPLE,
    CPU_SAVE,
    CPU_SHOW,
    CPU_TAB,
    DISK_SHOW,
    DISK_TAB,
    MEMORY_SHOW,
    MEMORY_TAB,
    NETWORK_SHOW,
    NETWORK_TAB,
    SettingsDialogTest,
)

WM_CLOSE, WM_ENDSESSION = 0x10, 0x16


class Opening(SettingsDialogTest):
    def test_opens_at_the_click_at_first(self):
        self.start()
        self.open_settings(x=1000, y=790)
        self.assertEqual(tuple(self.dialog().rect[2:]), (1000, 790))
        self.assertTrue(self.control(CPU_SHOW).visible)

    def test_is_moved_into_the_screen(self):
        self.start()
        self.open_settings(x=30, y=20)
        self.assertEqual(tuple(self.dialog().rect[:2]), (0, 0))

    def drag_by_its_title(self, dx, dy):
        x, y = self.point_on_title()
        self.desktop.use_mouse("mousemove", x, y, "mousedown", 1)
        wait_until(lambda: self.neighbour.mode().moving == self.dialog().handle, "a drag of the dialog")
        self.point_at(x + dx, y + dy)
        self.release()

    def test_opens_again_where_and_how_it_was_left_even_by_another_run(self):
        self.start()
        self.open_settings(x=700, y=780)
        first = self.dialog().rect
        self.drag_by_its_title(150, -60)
        place = [first[0] + 150, first[1] - 60, first[2] + 150, first[3] - 60]
        wait_until(lambda: self.dialog().rect == place, f"the dialog at {place}", 30)
        self.go_to(NETWORK_TAB)
        for restart in (False, True):
            self.leave_settings()
            self.wait_for_saved("dialog", x=place[0], y=place[1], tab=3)
            if restart:
                self.desktop.end_kestrane()
                self.start()
            self.open_settings(x=300, y=300)
            self.assertEqual(self.dialog().rect, place)
            self.assertTrue(self.control(NETWORK_SHOW).visible)

    def pictures(self, count):
        """The first pictures of each sample of the CPU as it moves, each one once."""
        seen, last = {CPU_SAMPLE: [], CPU_GRAPH_SAMPLE: []}, {}

        def look():
            for (id, pictures), shown in zip(seen.items(), self.sample(*seen)):
                picture = hashlib.sha256(shown).hexdigest()
                is_painted = len(set(zip(shown[::3], shown[1::3], shown[2::3]))) > 2
                # One that is seen only once may be half painted.
                if is_painted and last.get(id) == picture and picture not in pictures:
                    pictures.append(picture)
                last[id] = picture
            return all(len(pictures) >= count for pictures in seen.values())

        wait_until(look, f"{count} pictures of each sample")
        return seen

    def test_the_samples_move_and_begin_alike_at_each_opening(self):
        self.start()
        self.open_settings()
        first = self.pictures(3)
        self.leave_settings()
        self.open_settings()
        # Should this machine be slow, the first picture that is seen is a later one.
        for id, pictures in self.pictures(1).items():
            self.assertIn(pictures[0], first[id])


class BesideTheDialog(SettingsDialogTest):
    CPU_PLACE, DISK_PLACE = (20, 100, 320, 300), (20, 400, 320, 600)
    settings = open_at("cpu", CPU_PLACE) + open_at("disk", DISK_PLACE)

    def test_a_right_click_brings_it_to_the_front_in_place_of_a_menu(self):
        self.start_with("cpu", "disk")
        self.open_settings(x=1200, y=790)
        place = self.dialog().rect
        self.neighbour.ask("show", 400, 50, 500, 500)
        ways = [lambda icon=icon: self.shell.command(f"callback {icon} {WM_CONTEXTMENU} 100 100") for icon in (1, 3)]
        ways.append(lambda: self.click(*middle_of(self.CPU_PLACE), button=RIGHT_BUTTON))
        for way in ways:
            self.assertTrue(self.neighbour.ask("front"))
            wait_until(lambda: self.is_in_front_after(way), "the dialog in front", 30)
            self.assertEqual(self.neighbour.windows(MENU_CLASS), [])
        self.assertEqual([window.rect for window in self.neighbour.windows(DIALOG_CLASS)], [place])

    def is_in_front_after(self, way):
        """To be asked again: the screen's late news of the neighbour's focus can bring the neighbour back."""
        way()
        return self.neighbour.ask("foreground") == DIALOG_CLASS

    def test_graphs_open_and_move_but_the_disk_graph_keeps_its_view(self):
        self.start_with("cpu", "disk")
        self.open_settings(x=1200, y=790)
        self.drag(middle_of(self.CPU_PLACE), 30, -40)
        self.wait_for_saved_rect("cpu", (50, 60, 350, 260))
        self.click(*middle_of(self.DISK_PLACE))
        self.click_icon("network")
        self.wait_for_graph("network")  # when this is done, so is that
        self.assertNotEqual(self.saved("disk").get("activity"), "1")
        self.leave_settings()
        self.click(*middle_of(self.DISK_PLACE))
        self.wait_for_saved("disk", activity=1)

    def test_a_restarted_shell_gets_all_icons_again(self):
        self.start_with("cpu", "disk")
        self.open_settings(x=1200, y=790)
        start = self.shell.mark()
        self.shell.command("restart")
        adds = self.shell.wait_for_count(4, lambda call: call.message == NIM_ADD and call.answer, start)
        self.assertEqual([call.id for call in adds], [1, 2, 3, 4])
        pixel = self.after(lambda: self.use(CPU_BACK, RIGHT_BUTTON))[1].pixels[0].split()[0]
        self.assertEqual(pixel, "00000000")


class NewShell(SettingsDialogTest):
    def test_a_shell_that_died_is_followed_by_another(self):
        self.start()
        self.open_settings()
        self.shell.kill()
        self.use(CPU_BACK, RIGHT_BUTTON)  # with nobody to show it
        self.wait_for(CPU_SAVE, enabled=True)
        type(self).shell = self.desktop.start_recorder()
        self.shell.command("broadcast")
        adds = self.shell.wait_for_count(4, lambda call: call.message == NIM_ADD and call.answer)
        self.assertEqual([call.id for call in adds], [1, 2, 3, 4])
        self.assertEqual(self.images_since(0)[1].pixels[0].split()[0], "00000000")


class Ending(SettingsDialogTest):
    """The program ends while the dialog is open, with an edit that is not saved."""

    def setUp(self):
        super().setUp()
        self.process = self.start()
        self.open_settings()
        self.use(CPU_BACK, RIGHT_BUTTON)
        self.wait_for(CPU_SAVE, enabled=True)
        self.before = self.file()

    def assert_ended(self):
        self.assertEqual(self.process.wait(timeout=60), 0)
        self.desktop.check_for_crashes()
        self.assertEqual(self.file(), self.before)
        self.assertEqual(self.neighbour.windows(DIALOG_CLASS), [])

    def close_hidden_window(self):
        self.assertTrue(self.desktop.send_messages(1, WM_CLOSE, 0))

    def test_by_another_instance(self):
        start = self.shell.mark()
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assert_ended()
        self.shell.wait_for_count(4, lambda call: call.message == NIM_DELETE and call.answer, start)

    def test_under_a_message_box(self):
        for tab, switch in ((DISK_TAB, DISK_SHOW), (MEMORY_TAB, MEMORY_SHOW), (NETWORK_TAB, NETWORK_SHOW)):
            self.go_to(tab)
            self.use(switch)
        self.go_to(CPU_TAB)
        self.use(CPU_SHOW)
        self.wait_for_box()
        self.close_hidden_window()
        self.assert_ended()

    def test_under_the_colour_dialog(self):
        self.use(CPU_BACK)
        wait_until(lambda: len(self.neighbour.windows(DIALOG_CLASS)) == 2, "the colour dialog")
        self.close_hidden_window()
        self.assert_ended()

    def test_with_the_session(self):
        start = self.shell.mark()
        self.assertTrue(self.desktop.send_messages(1, WM_ENDSESSION, 1))
        self.shell.wait_for_count(4, lambda call: call.message == NIM_DELETE and call.answer, start)
        self.process.kill()  # as Windows does then
        self.process.wait()
        self.assertEqual(self.file(), self.before)


if __name__ == "__main__":
    main()
