"""What the program finds under its former name at the start: settings that show at once, and its start with Windows."""

import shutil

from harness import BUILD, NO_CHECK, every, main, pixels, wait_until, windows_path
from settings_icons import CPU, DEFAULTS, SettingsTest, cpu_picture, ini_colors

RUN_KEY = r"Software\Microsoft\Windows\CurrentVersion\Run"
ROOTS = ("HKCU", "HKLM")

COLORS = {**DEFAULTS, "cpu_bg": 0x123456, "cpu_fg": 0xFEDCBA, "cpu_border": 0x00FF00}
FORMER_SETTINGS = every(10000) + ini_colors(COLORS) + NO_CHECK
COPIED = "kestrane: ajustes copiados de la carpeta del nombre anterior"


class Migration(SettingsTest):
    def setUp(self):
        super().setUp()
        shutil.rmtree(self.desktop.ini_path.parent)
        self.former = self.desktop.ini_path.parents[1] / "orvalite" / "orvalite.ini"
        self.former.parent.mkdir()
        self.addCleanup(shutil.rmtree, self.former.parent)

    def write_former(self):
        self.former.write_text(FORMER_SETTINGS, encoding="ascii", newline="\r\n")
        return self.former.read_bytes()

    def set_value(self, root, name, value):
        self.assertEqual(self.desktop.run("reg", "add", rf"{root}\{RUN_KEY}", "/v", name, "/d", value, "/f").code, 0)

    def value(self, root, name):
        """None without one."""
        output = self.desktop.run("reg", "query", rf"{root}\{RUN_KEY}", "/v", name).output
        lines = [line for line in output.splitlines() if "REG_SZ" in line]
        return lines[0].split("REG_SZ")[1].strip() if lines else None

    def test_the_former_settings_show_in_the_icons(self):
        former = self.write_former()
        shown = self.run_with_the_file()
        self.assertEqual(pixels(shown[CPU]), cpu_picture(COLORS))
        self.assertEqual(self.desktop.ini_path.read_bytes(), former)
        self.assertEqual(self.former.read_bytes(), former)

    def test_it_is_told_to_a_debugger_once(self):
        self.write_former()
        for lines in ([COPIED], []):
            program = self.desktop.start_kestrane_logged()
            wait_until(lambda: self.desktop.count_windows() == 1, "its window")
            self.desktop.end_kestrane()
            self.assertEqual(program.returncode, 0)
            self.assertEqual([line for line in self.desktop.debug_lines() if line == COPIED], lines)

    def test_present_settings_are_kept(self):
        self.write_former()
        present = every(10000) + NO_CHECK
        shown = self.run_with(present)
        self.assertEqual(pixels(shown[CPU]), cpu_picture(DEFAULTS))
        self.assertEqual(self.desktop.ini_path.read_text(encoding="ascii"), present)

    def test_the_start_with_windows_moves_to_the_present_name_and_file(self):
        for root in ROOTS:
            self.set_value(root, "orvalite", r"C:\Old place\orvalite.exe")
        self.start()
        for root in ROOTS:
            self.assertIsNone(self.value(root, "orvalite"), root)
            self.assertEqual(self.value(root, "kestrane"), f'"{windows_path(BUILD / "kestrane.exe")}"', root)

    def test_a_one_shot_command_takes_nothing_over(self):
        self.write_former()
        self.set_value("HKCU", "orvalite", "orvalite.exe")
        self.assertEqual(self.desktop.run_kestrane("--exit").code, 0)
        self.assertEqual(self.value("HKCU", "orvalite"), "orvalite.exe")
        self.assertFalse(self.desktop.ini_path.exists())


if __name__ == "__main__":
    main()
