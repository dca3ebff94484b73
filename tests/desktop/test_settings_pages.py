"""What only some pages of the settings dialog have, on the real machine: the interfaces, the language, the start with
Windows; and the dialog by the keyboard alone."""

import re
import subprocess

from harness import BUILD, NETWORK_TIMER, NIM_MODIFY, main, wait_until, windows_path
from onscreen import DIALOG_CLASS, RIGHT_BUTTON
from settings_dialog import (
    ALL_USERS,
    AUTOSTART,
    CHECK_UPDATES,
    CPU_BACK,
    CPU_REFRESH,
    CPU_SAVE,
    CPU_SHOW,
    CPU_TAB,
    GENERAL_SAVE,
    GENERAL_TAB,
    INTERFACES,
    LANGUAGE,
    LIST_CLASS,
    NETWORK_SAVE,
    NETWORK_TAB,
    SettingsDialogTest,
)
from settings_icons import MEMORY, NETWORK, network_row

RUN_KEY = r"Software\Microsoft\Windows\CurrentVersion\Run"


class Keyboard(SettingsDialogTest):
    def tab_to(self, control):
        """Presses Tab until a control has the keyboard."""
        passed = []
        while (focus := self.focus()) != control:
            self.assertNotIn(focus, passed, f"no way to {control}")
            passed.append(focus)
            self.keys("Tab")
            wait_until(lambda focus=focus: self.focus() != focus, f"the control after {focus}", 30)
        return passed

    def has_left(self, control):
        """After a Tab. The dialog is seen before the keyboard is with it; and on a screen without a window manager the end
        of the menu may leave the keys to no window at all, until a click on the title."""
        self.click(*self.point_on_title())
        self.keys("Tab")
        return self.focus() != control

    def test_everything_by_the_keyboard(self):
        self.start()
        self.open_settings()
        first = self.focus()
        wait_until(lambda: self.has_left(first), "the keyboard", 30)
        self.tab_to(CPU_SHOW)
        start = self.shell.mark()
        for enabled in (False, True):
            self.keys("space")
            self.wait_for(CPU_BACK, enabled=enabled)
        self.tab_to(CPU_REFRESH)
        text = self.control(CPU_REFRESH).text
        self.keys("alt+Down", "Up", "Return")
        self.wait_for(CPU_REFRESH, text="Lento - 5 s")
        self.assertNotEqual(text, "Lento - 5 s")
        self.wait_for(CPU_SAVE, enabled=True)
        self.assertEqual(self.saved("cpu").get("refresh_ms"), "10000")
        self.tab_to(CPU_SAVE)
        self.keys("Return")
        self.wait_for_saved("cpu", refresh_ms=5000)
        self.assertIsNotNone(self.dialog(), "Enter closes nothing")
        self.tab_to(CPU_TAB)
        self.keys("Tab", "space")
        wait_until(lambda: not self.control(CPU_SHOW).visible, "another page")
        self.keys("Escape")
        self.wait_for_no_dialog()
        self.assertEqual(self.shell.since(start)[-1].message, NIM_MODIFY)


class Interfaces(SettingsDialogTest):
    options = {
        **SettingsDialogTest.options,
        "network": [
            network_row(0, 0, luid=1, alias="Ethernet"),
            network_row(0, 0, luid=2, alias="Wi-Fi"),
            network_row(0, 0, luid=3, alias="Without address"),
            "address|1|192.168.1.7",
            "address|2|10.0.0.9",
        ],
    }

    def click_row(self, number):
        left, top, _, _ = self.control(INTERFACES).rect
        self.click(left + 60, top + 11 + 20 * number)

    def test_are_chosen_by_click_and_by_space(self):
        self.start()
        self.open_settings(NETWORK_TAB)
        self.assertEqual(self.control(INTERFACES).count, 1)
        self.click_row(2)  # below the last one
        self.click_row(0)
        self.wait_for(INTERFACES, count=3)
        self.wait_for(NETWORK_SAVE, enabled=False)  # nothing chosen means all
        self.click_row(2)
        self.wait_for(NETWORK_SAVE, enabled=True)
        self.keys("Up", "space")
        names = lambda: [call for call in self.tick(NETWORK_TIMER) if call.id == NETWORK][-1].tip.split("\n")[0]
        wait_until(lambda: "Ethernet" in names() and "Wi-Fi" in names(), f"both in the tooltip, which is {names()}", 30)
        self.click_row(1)
        wait_until(lambda: names() == "Wi-Fi", "one in the tooltip", 30)
        self.use(NETWORK_SAVE)
        self.wait_for_saved("network", interfaces=f"{2:016X}", interface_aliases="Wi-Fi")
        self.keys("Escape")
        self.wait_for_no_dialog()
        self.open_settings()
        self.assertEqual(self.control(INTERFACES).count, 3)
        self.click_row(0)
        self.wait_for(INTERFACES, count=1)
        wait_until(lambda: names() == "Todas las conexiones", "all in the tooltip", 30)


class General(SettingsDialogTest):
    def choose_language(self, key, title):
        self.choose_from(LANGUAGE, key)
        self.TITLE = title
        wait_until(self.dialog, title)

    def texts(self):
        return self.texts_of(self.dialog())

    def about_title(self):
        """The title of the box that the menu's entry before the last opens."""
        self.click(*self.open_menu().middle_of(-2))
        self.wait_for_no_menu()
        box = wait_until(lambda: self.neighbour.find(DIALOG_CLASS), "the box")
        self.answer(box)
        return box.title

    def test_the_language_changes_on_the_spot_and_stays(self):
        self.start()
        self.open_settings(GENERAL_TAB)
        spanish = self.texts()
        start = self.shell.mark()
        self.choose_language("End", "kestrane settings")
        self.shell.wait_for(lambda call: call.id == MEMORY and call.tip.startswith("Memory: "), start)
        self.wait_for(GENERAL_SAVE, text="Save", enabled=False)
        self.wait_for_saved("general", language=2)
        english = self.texts()
        self.assertEqual(len(english), len(spanish))
        for text in ("Start with Windows", "Show", "Restore defaults", "Network", "Preview", "Detected hardware"):
            self.assertIn(text, english)
        self.leave_settings()
        self.assertEqual(self.about_title(), "About kestrane")

        self.open_settings()
        self.assertEqual(self.control(LANGUAGE).text, "English")
        start = self.shell.mark()
        self.choose_language("Up", "Ajustes de kestrane")
        self.shell.wait_for(lambda call: call.id == MEMORY and call.tip.startswith("Memoria: "), start)
        self.wait_for(GENERAL_SAVE, text="Guardar")
        self.assertEqual([text for text in self.texts() if text not in spanish], ["Español"])
        self.leave_settings()
        self.wait_for_saved("general", language=1)
        self.assertEqual(self.about_title(), "Acerca de kestrane")

    def test_the_list_of_languages_stays_while_each_key_changes_the_language(self):
        self.start()
        self.open_settings(GENERAL_TAB)
        self.use(LANGUAGE)
        wait_until(lambda: self.neighbour.windows(LIST_CLASS), "the open list")
        for key, language, title in (
            ("Down", 1, "Ajustes de kestrane"),
            ("Down", 2, "kestrane settings"),
            ("Up", 1, "Ajustes de kestrane"),
        ):
            self.keys(key)
            self.wait_for_saved("general", language=language)
            self.TITLE = title
            wait_until(self.dialog, title)
            self.wait_for(LANGUAGE, count=3, chosen=language)
        self.assertTrue(self.neighbour.windows(LIST_CLASS))

    def run_value(self, root):
        output = self.desktop.run("reg", "query", rf"{root}\{RUN_KEY}", "/v", "kestrane").output
        found = re.search(r"kestrane +REG_SZ +(.*)", output)
        return found and found[1].strip()

    def save_autostart(self, *clicks, user, machine):
        for box in clicks:
            before = self.control(box).ticked
            self.use(box)
            self.wait_for(box, ticked=not before)
        self.wait_for(GENERAL_SAVE, enabled=True)
        self.use(GENERAL_SAVE)
        self.wait_for(GENERAL_SAVE, enabled=False)
        path = f'"{windows_path(BUILD / "kestrane.exe")}"'
        expected = [path if there else None for there in (user, machine)]
        self.assertEqual([self.run_value("HKCU"), self.run_value("HKLM")], expected)

    def test_starts_with_windows_for_one_user_or_for_all(self):
        self.start()
        self.open_settings(GENERAL_TAB)
        self.assertFalse(self.control(ALL_USERS).enabled)
        self.save_autostart(AUTOSTART, user=True, machine=False)
        self.assertTrue(self.control(ALL_USERS).enabled)
        self.save_autostart(ALL_USERS, user=False, machine=True)
        self.leave_settings()
        self.open_settings()
        self.assertEqual([self.control(box).ticked for box in (AUTOSTART, ALL_USERS)], [True, True])
        self.save_autostart(AUTOSTART, user=False, machine=False)
        self.assertEqual([self.control(ALL_USERS).ticked, self.control(ALL_USERS).enabled], [True, False])

    def test_the_check_for_updates_is_saved_by_its_button(self):
        self.start()
        self.open_settings(GENERAL_TAB)
        self.use(CHECK_UPDATES)
        self.wait_for(GENERAL_SAVE, enabled=True)
        self.assertNotEqual(self.saved("general").get("check_updates"), "0")
        self.use(GENERAL_SAVE)
        self.wait_for_saved("general", check_updates=0)
        self.wait_for(GENERAL_SAVE, enabled=False)

    def test_a_file_that_cannot_be_written_is_told(self):
        self.start()
        self.open_settings(CPU_TAB)
        self.use(CPU_BACK, RIGHT_BUTTON)
        file = self.file()
        holder = self.desktop.start(
            "holder.exe", windows_path(self.desktop.ini_path), stdin=subprocess.PIPE, stdout=subprocess.PIPE
        )
        self.assertEqual(holder.stdout.readline().strip(), "held")
        self.use(CPU_SAVE)
        box = self.wait_for_box()
        self.assertIn("No se pudo guardar el fichero de ajustes.", self.texts_of(box))
        self.answer(box)
        self.assertTrue(self.control(CPU_SAVE).enabled, "the page still counts as changed")
        self.assertEqual(self.file(), file)

        holder.stdin.close()
        holder.wait()
        self.use(CPU_SAVE)
        self.wait_for_saved("colors", cpu_bg="NONE")
        self.wait_for(CPU_SAVE, enabled=False)


if __name__ == "__main__":
    main()
