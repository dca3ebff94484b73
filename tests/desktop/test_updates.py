"""Updates of the real program: the whole way to the next version, and what is sent of it."""

import time

import private_network
from harness import NIM_ADD, NO_CHECK, VERSION, every, main, wait_until, windows_path
from onscreen import DIALOG_CLASS, NIN_BALLOONUSERCLICK, Picture
from settings_dialog import CHECK_UPDATES, GENERAL_SAVE, GENERAL_TAB
from update_server import HOST, STATS_HOST, keep_silent, reply
from updates import (
    CLOSE,
    FIRST_CHECK,
    NEW_FILE,
    NEWER,
    OFFERED,
    PLAIN_HEADERS,
    PROGRESS,
    RUNNING,
    UPDATE,
    WEB_LINK,
    UpdateTest,
    leave_update_cut_off,
)

PLAIN_MENU, MENU_WITH_OFFER = "E-E-EE", "E-E-E-EE"

BAR_COLOR = 0x2F7DE1

INSTALL_ID = r"^[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}$"


class TheWholeWay(UpdateTest):
    settings = every(10000) + "[general]\nlanguage=1\n"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # Only in a locale that the C library has does Wine know letters outside ASCII in a path.
        cls.desktop.environment["LC_ALL"] = "C.UTF-8"

    def test_from_the_offer_to_the_next_version(self):
        self.install("Programas de Ñandú 𝒦")
        leave_update_cut_off(self.folder)
        began = time.monotonic()
        process = self.start()
        wait_until(lambda: self.files() == ["kestrane.exe"], "the end of what was left")
        self.assertRegex(wait_until(self.install_id, "the identity"), INSTALL_ID)
        self.sees_the_offer(began)
        self.sees_it_in_the_menu()
        self.leaves_the_dialog_by_each_way()
        self.assert_nothing_else_was_sent(checks=1)
        self.updates(process)
        self.next_version_is_as_the_last()
        self.next_version_ends_during_a_check()

    def sees_the_offer(self, began):
        balloon = self.wait_for_balloon()
        self.assertEqual(balloon.infoTitle, self.words.title)
        self.assertEqual(balloon.info, self.words.balloon.format(NEWER, VERSION))
        waited = self.checks()[0].time - began
        self.assertTrue(FIRST_CHECK <= waited < FIRST_CHECK + 12, waited)

    def sees_it_in_the_menu(self):
        menu = self.open_menu()
        self.assertEqual(menu.shape, MENU_WITH_OFFER)
        self.assertTrue(menu.entries[0].image)
        self.click(*menu.middle_of(0))
        self.wait_for_no_menu()
        offer = wait_until(self.offer, "the update dialog")
        texts = self.texts_of(offer)
        self.assertEqual(sorted(texts), sorted([*self.words.labels, VERSION, NEWER, self.words.note]))
        self.assertEqual((self.of_offer(RUNNING).text, self.of_offer(OFFERED).text), (VERSION, NEWER))
        self.assertEqual(self.note(), self.words.note)
        self.assertFalse(self.of_offer(WEB_LINK).visible or self.of_offer(PROGRESS).visible)
        self.assertTrue(self.of_offer(UPDATE).enabled)

    def leaves_the_dialog_by_each_way(self):
        self.keys("Escape")
        self.wait_for_no_offer()
        self.open_offer()
        self.use(CLOSE, of=self.offer())
        self.wait_for_no_offer()
        left, top, right, _ = self.open_offer().rect
        self.click(right - 14, top + 12)
        self.wait_for_no_offer()

    def updates(self, process):
        before = self.desktop.ini_path.read_bytes()
        gate = self.stop_the_download_halfway()
        self.open_offer()
        self.press_update()
        self.wait_for_note(self.words.downloading)
        self.sees_the_bar(gate.first_half * 1000 // len(self.newer))
        self.assertFalse(self.of_offer(UPDATE).enabled)
        self.assertEqual(self.files(), ["kestrane.exe", NEW_FILE])
        self.assertEqual(self.executable.read_bytes(), self.older)

        start = self.shell.mark()
        self.server.reception = keep_silent  # for the next version's check
        gate.open()
        self.assertEqual(process.wait(timeout=60), 0)
        self.shell.wait_for_count(4, lambda call: call.message == NIM_ADD and call.answer, start)
        self.assert_nothing_else_was_sent(checks=1, downloads=1)
        self.assertEqual(len([call for call in self.shell.since(self.first) if call.info]), 1)
        self.assertEqual(self.desktop.ini_path.read_bytes(), before)

    def sees_the_bar(self, permille):
        left, top, right, bottom = self.of_offer(PROGRESS).rect
        wanted = (right - left) * permille // 1000 - 1  # the frame covers the first column
        row = lambda: Picture(self.desktop).row((top + bottom) // 2, left, right)
        wait_until(lambda: row().count(BAR_COLOR) == wanted, f"a bar of {wanted} columns, not {row().count(BAR_COLOR)}")
        self.assertEqual(set(row()[1 : 1 + wanted]), {BAR_COLOR})

    def next_version_is_as_the_last(self):
        self.assertEqual(self.executable.read_bytes(), self.newer)
        wait_until(lambda: self.files() == ["kestrane.exe"], "the end of the old version")
        lines = list(self.running().values())
        self.assertEqual(lines, [[windows_path(self.executable), "--updated"]])
        self.choose(-2)
        box = wait_until(lambda: self.neighbour.find(DIALOG_CLASS), "the box about the program")
        self.assertEqual(max(self.texts_of(box), key=len).split("\n")[0], f"kestrane {NEWER}")
        self.answer(box)

    def next_version_ends_during_a_check(self):
        silent = lambda: any(visit.handshake == "kept silent" for visit in self.server.visits)
        wait_until(silent, "the next version's check")
        self.end_by_switch(waits_to_the_end=False)
        self.wait_for_end()


class Switch(UpdateTest):
    """The setting, in a build that reports its use."""

    settings = every(10000) + NO_CHECK

    def test_decides_whether_anything_is_sent_and_offered(self):
        self.install("kestrane", "kestrane-reporting.exe")
        packets = private_network.packets_sent()
        self.start()
        self.sends_nothing_while_off(packets)
        self.open_settings(GENERAL_TAB)
        self.reports_even_a_failed_check()
        self.offers_once_switched_off_and_on()
        self.brings_only_the_settings_to_the_front()
        self.takes_the_offer_back()

    def sends_nothing_while_off(self, packets):
        time.sleep(FIRST_CHECK + 2)  # nothing to wait for: the longest time in which a check would come
        self.assertEqual((self.server.visits, private_network.names_asked), ([], []))
        self.assertEqual(private_network.packets_sent(), packets)
        self.assertIsNone(self.install_id())

    def reports_even_a_failed_check(self):
        self.server.answers["/latest.json"] = reply(status=404)
        self.use(CHECK_UPDATES)
        self.wait_for(CHECK_UPDATES, ticked=True)
        wait_until(self.install_id, "the identity")
        self.use(GENERAL_SAVE)
        self.wait_for_saved("general", check_updates=1)
        self.identity = wait_until(self.install_id, "the identity")
        self.assertRegex(self.identity, INSTALL_ID)
        self.reported(1)

    def reported(self, count):
        """So many checks, and a report of each."""
        wait_until(lambda: len(self.server.requests) >= 2 * count, f"report {count}")
        self.assertEqual([request.path for request in self.server.requests], ["/latest.json", "/api/send"] * count)
        report = self.server.requests[-1]
        body = (
            '{"type":"event","payload":{"website":"W","hostname":"app","url":"/app","title":"kestrane","name":"check",'
            f'"id":"{self.identity}","data":{{"version":"{VERSION}","install":"{self.identity}"}}}}}}'
        )
        self.assertEqual((report.verb, report.query, report.body.decode()), ("POST", "", body))
        self.assertEqual(
            report.headers,
            {
                **PLAIN_HEADERS,
                "host": STATS_HOST,
                "content-type": "application/json",
                "content-length": str(len(body)),
                "user-agent": f"Mozilla/5.0 (Windows NT 10.0; Win64; x64) kestrane/{VERSION}",
            },
        )

    def offers_once_switched_off_and_on(self):
        self.assertFalse(any(call.info for call in self.shell.since(self.first)))
        self.publish()
        for ticked in (False, True):
            self.use(CHECK_UPDATES)
            self.wait_for(CHECK_UPDATES, ticked=ticked)
        self.wait_for_balloon()
        self.reported(2)

    def brings_only_the_settings_to_the_front(self):
        self.neighbour.ask("show", 400, 50, 500, 500)
        self.assertTrue(self.neighbour.ask("front"))

        def is_in_front():
            self.shell.command(f"callback 1 {NIN_BALLOONUSERCLICK} 600 500")
            return self.neighbour.ask("foreground") == DIALOG_CLASS

        wait_until(is_in_front, "the settings dialog in front", 30)
        self.assertIsNone(self.offer())
        self.neighbour.ask("hide")

    def takes_the_offer_back(self):
        self.use(CHECK_UPDATES)
        self.wait_for(CHECK_UPDATES, ticked=False)
        self.use(GENERAL_SAVE)
        self.wait_for_saved("general", check_updates=0)
        self.leave_settings()
        menu = self.open_menu()
        self.assertEqual(menu.shape, PLAIN_MENU)
        self.desktop.use_mouse("mousemove", *menu.middle_of(0), "key", "Escape")
        self.wait_for_no_menu()
        self.shell.command(f"callback 1 {NIN_BALLOONUSERCLICK} 600 500")
        self.click_icon("cpu")
        self.wait_for_graph("cpu")  # when this is done, so is that
        self.assertIsNone(self.offer())
        self.wait_for_saved("general", install_id=self.identity)  # the graph's place may be on its way to the file
        self.assertEqual(len(self.server.requests), 4)


if __name__ == "__main__":
    private_network.enter(HOST, STATS_HOST)
    main()
