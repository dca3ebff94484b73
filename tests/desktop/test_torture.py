"""A sample of the torture: one system call fails, in each life of the program another one.

scripts/torture.sh runs the whole of it, some two thousand such lives.
"""

import unittest

import private_network
from harness import main
from torture_plan import Settings, judge
from torture_scenario import PATIENCE, START, Rack, values_of
from update_server import HOST, STATS_HOST, Authority

# Spread over all DLLs, and over what happens to files and to the registry. "update" is the life in which the program
# comes from its former name and updates itself.
SAMPLE = (
    "CreateWindowExW 1",
    "GetPrivateProfileStringW 40",
    "WritePrivateProfileStringW 9",
    "RegSetValueExW 1",
    "RegOpenKeyExW 2",
    "Shell_NotifyIconW 1",
    "Shell_NotifyIconW 15",
    "CoInitializeEx 1",
    "SHGetKnownFolderPath 1",
    "ChooseColorW 1",
    "DialogBoxParamW 1",
    "CreateDIBSection 6",
    "malloc 700",
    "_beginthreadex 1",
    "PdhCollectQueryData 2",
    "GetIfTable2 1",
    "update CopyFileW 1",
    "update CreateFileW 2",
    "update WriteFile 2",
    "update MoveFileExW 1",
    "update MoveFileExW 2",
    "update CreateProcessW 1",
    "update BCryptFinishHash 1",
    "update WinHttpReadData 2",
)


class Torture(unittest.TestCase):
    def test_one_failure_does_no_harm(self):
        authority = Authority(private_network.SCRATCH / "authority")
        private_network.trust(authority.root)
        settings = Settings(values_of(START))
        with Rack(1, authority) as rack:
            for plan in ("", "update"):
                life = rack.live(plan, PATIENCE)
                settings.learn_from(life)
                self.assertEqual(judge(life, settings), [])
            for plan in SAMPLE:
                with self.subTest(plan):
                    life = rack.live_to_the_failure(plan)
                    self.assertTrue(life.counts.reached, "the call that was to fail has not come")
                    self.assertEqual(judge(life, settings), [])


if __name__ == "__main__":
    private_network.enter(HOST, STATS_HOST)
    main()
