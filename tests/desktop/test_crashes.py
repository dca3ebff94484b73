"""A crash that Wine swallows is seen nonetheless: by the desktop tests, and by wine.sh for all other Windows programs."""

import subprocess
import unittest

from harness import BUILD, ROOT, Desktop, main


class SwallowedCrash(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.close)

    def test_a_desktop_tells_of_it_once(self):
        result = self.desktop.run("crasher.exe")
        self.assertEqual((result.code, result.output.strip()), (0, "lives on"))
        with self.assertRaisesRegex(AssertionError, "1 signs of a crash: crasher-0: .*ignoring exception"):
            self.desktop.check_for_crashes()
        self.desktop.check_for_crashes()

    def test_wine_sh_fails_with_it(self):
        command = [ROOT / "scripts" / "wine.sh", BUILD / "crasher.exe"]
        result = subprocess.run(command, env=self.desktop.environment, capture_output=True, text=True, check=False)
        self.assertEqual((result.returncode, result.stdout.strip()), (1, "lives on"))
        self.assertIn("a crash in a window callback, swallowed by Wine", result.stderr)

    def test_wine_sh_fails_without_the_expected_output(self):
        command = [ROOT / "scripts" / "wine.sh", "cmd", "/c", "echo all is well"]
        for expected, code in (("all is well", 0), ("[  PASSED  ]", 1)):
            environment = {**self.desktop.environment, "EXPECTED_OUTPUT": expected}
            result = subprocess.run(command, env=environment, capture_output=True, text=True, check=False)
            self.assertEqual((result.returncode, result.stdout.strip()), (code, "all is well"))


if __name__ == "__main__":
    main()
