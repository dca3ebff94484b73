"""A settings file that is corrupt, hostile or inaccessible: the program uses its defaults and leaves the file alone, but
for the identity of the installation, which it adds."""

import random
import re
import shutil
import subprocess

from harness import main, windows_path
from settings_icons import COLOR_KEYS, MEMORY, SettingsTest

IDENTITY = re.compile(rb"install_id=[0-9a-f]{8}-([0-9a-f]{4}-){3}[0-9a-f]{12}\s")


class Ruined(SettingsTest):
    GOOD = "[general]\nlanguage=1\n[colors]\ncpu_bg=000000\n[memory]\nbar=0\n"

    def assert_left_alone(self, content):
        """The program uses the defaults, and the file keeps its content and its time stamp."""
        path = self.desktop.ini_path
        before = path.stat().st_mtime_ns
        self.assert_defaults(self.run_with_the_file())
        self.desktop.end_kestrane()
        self.assertEqual(path.read_bytes(), content)
        self.assertEqual(path.stat().st_mtime_ns, before)
        self.assertEqual([file.name for file in path.parent.iterdir()], [path.name])

    def assert_only_identified(self, content):
        """The program uses the defaults, and the first start adds the identity, which the second one finds there."""
        self.desktop.write_ini_bytes(content)
        self.assert_defaults(self.run_with_the_file())
        self.desktop.end_kestrane()
        identified = self.desktop.ini_path.read_bytes()
        self.assertEqual(len(IDENTITY.findall(identified.replace(b"\0", b""))), 1)
        self.assert_left_alone(identified)

    def test_a_ruined_file_is_as_good_as_none(self):
        noise = random.Random(5)
        every_key = "".join(f"{key}={{0}}\n" for key in COLOR_KEYS)
        keys = b"".join(b"key%d=%d\n" % (number, number) for number in range(100000))
        for name, content in (
            ("empty", b""),
            ("noise", noise.randbytes(50000)),
            ("noise in letters", bytes(noise.choices(b"[]=;,\r\n0123456789abcdefgeneral", k=50000))),
            ("zeros", bytes(50000)),
            ("ones", b"\xff" * 50000),
            ("the beginning of a write", self.GOOD.encode()[:15]),
            ("UTF-16 of the other order", b"\xfe\xff" + "[x]\n[general\nlanguage=1\n".encode("utf-16-be")),
            ("half of a UTF-16 character", "[x]\ny=z".encode("utf-16") + b"\n"),
            ("keys without sections", self.GOOD.replace("[", ";[").encode()),
            ("sections without ends", self.GOOD.replace("]", "").encode()),
            ("a line without an end", b"[general]" + b"x" * 10**6),
            ("a key of a megabyte", b"[general]\n" + b"k" * 10**6 + b"=1\n"),
            ("values of a megabyte", b"[general]\nlanguage=" + b"1" * 10**6 + b"\n[colors]\ncpu_bg=" + b"0" * 10**6),
            ("100,000 sections", b"".join(b"[s%d]\n" % number for number in range(100000))),
            ("100,000 keys", b"[general]\n" + keys),
            ("formats as colours", f"[colors]\n{every_key.format('%s%n')}".encode()),
            ("numbers as colours", f"[colors]\n{every_key.format('-1')}".encode()),
        ):
            with self.case(name):
                self.assert_only_identified(content)

    def test_numbers_out_of_all_bounds(self):
        graph = "graph pinned x y width height opacity margin font_size fill style smoothing topmost"
        sections = {
            "icons": "show_cpu show_disk show_mem show_net",
            "memory": "threshold1 threshold2 threshold3 font_bold bar",
            "general": "language install_id refresh_ms",
            "network": f"icon_border {graph}",
            "cpu": f"per_core {graph}",
            "disk": f"activity disks {graph}",
        }
        enormous = "99999999999999999999"
        for value in (enormous, "-" + enormous, "-1", "2147483648", "-2147483649", "1e9", "0x1", "{0}", ",", "|"):
            with self.case(value):
                lines = ((f"[{name}]", *(f"{key}={value}" for key in keys.split())) for name, keys in sections.items())
                content = "\n".join(line for section in lines for line in section).encode()
                self.assert_only_identified(content)

    def test_a_file_that_somebody_else_holds(self):
        content = self.GOOD.encode()
        self.desktop.write_ini_bytes(content)
        path = windows_path(self.desktop.ini_path)
        holder = self.desktop.start("holder.exe", path, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(holder.stdout.readline().strip(), "held")
        self.assert_left_alone(content)
        holder.stdin.close()
        holder.wait()
        self.assertEqual(self.run_with_the_file()[MEMORY].tip.split(":")[0], "Memoria")

    def test_a_folder_in_its_place(self):
        path = self.desktop.ini_path
        path.unlink()
        path.mkdir()
        self.addCleanup(shutil.rmtree, path)
        self.assert_defaults(self.run_with_the_file())


if __name__ == "__main__":
    main()
