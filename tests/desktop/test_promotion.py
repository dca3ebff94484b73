"""Promotion of the icons in the registry of a shell that keeps entries, by the real program."""

from harness import DesktopTest, every, main

PROMOTION_TIMER = 2
ENTRIES = "Control Panel\\\\NotifyIconSettings"
PROGRAM_FILES = "{6D809377-6AF0-444B-8957-A3773F02200E}"


def entry(number, path):
    """The Desktop option for an entry that names a program."""
    return (f"{ENTRIES}\\\\{number}", f'"ExecutablePath"="{path}"'.replace("\\", "\\\\"))


class UnderProgramFiles(DesktopTest):
    options = {
        "registry": [
            entry(1, rf"{PROGRAM_FILES}\kestrane\kestrane.exe"),
            entry(2, rf"{PROGRAM_FILES}\another\kestrane.exe"),
            entry(3, r"C:\Program Files\Kestrane\Kestrane.exe"),
            entry(4, r"C:\elsewhere\kestrane.exe"),
        ]
    }
    settings = every(10000)

    def promoted(self, number):
        key = ("HKCU\\" + ENTRIES).replace("\\\\", "\\") + f"\\{number}"
        return "0x1" in self.desktop.run("reg", "query", key, "/v", "IsPromoted").output

    def test_own_entries_are_promoted_also_where_a_known_folder_stands_in_front(self):
        self.desktop.run_kestrane_from(self.desktop.prefix / "drive_c" / "Program Files" / "kestrane")
        start = self.shell.mark()
        self.desktop.start_kestrane_logged()
        self.shell.wait_for_ticks(2, icon=4, start=start)
        self.tick(PROMOTION_TIMER)
        self.assertIn("kestrane: iconos promocionados a la barra: 2", self.desktop.debug_lines())
        self.assertEqual([self.promoted(number) for number in (1, 2, 3, 4)], [True, False, True, False])


if __name__ == "__main__":
    main()
