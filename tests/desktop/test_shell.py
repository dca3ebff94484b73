"""The four icons as the shell sees them, and when the shell refuses, forgets and restarts."""

from harness import (
    CPU_TIMER,
    NIF_GUID,
    NIF_ICON,
    NIF_MESSAGE,
    NIF_SHOWTIP,
    NIF_TIP,
    NIM_ADD,
    NIM_DELETE,
    NIM_MODIFY,
    NIM_SETVERSION,
    DesktopTest,
    every,
    main,
    pixels,
)

GUIDS = [f"{{8F41C7A2-52D6-4B19-A73E-641DC895200{id}}}" for id in (1, 2, 3, 4)]
PREPARED = NIF_MESSAGE | NIF_TIP | NIF_GUID | NIF_SHOWTIP
CALLBACK = 0x8001

GUID_REFUSED = "kestrane: NIM_ADD con GUID ha fallado; reintento sin GUID"
ADD_REFUSED = "kestrane: NIM_ADD ha fallado"


FAST = every(500)
SLOW = every(10000)  # no tick comes between the checked calls

ADDED = [(message, icon, True, 1) for icon in (1, 2, 3, 4) for message in (NIM_ADD, NIM_SETVERSION)]
REFRESHED = [(NIM_MODIFY, icon, True, 1) for icon in (1, 2, 3, 4)]


def is_image(call):
    return call.flags & NIF_ICON and call.width > 0


def steps(calls):
    """Calls in short: message, icon, by GUID or not, result."""
    return [(call.message, call.id, bool(call.flags & NIF_GUID), call.answer) for call in calls]


class Start(DesktopTest):
    options = {"language": "es_ES"}
    settings = SLOW

    def test_adds_four_icons_in_order_and_then_gives_each_its_image(self):
        self.start()
        calls = self.shell.calls[self.first :]
        # The first reading of the network shows at once.
        self.assertEqual(steps(calls), ADDED + REFRESHED[3:] + REFRESHED)

        adds, versions, images = calls[0:8:2], calls[1:8:2], calls[8:]
        self.assertEqual([call.guid for call in adds], GUIDS)
        self.assertEqual([call.tip for call in adds], ["CPU", "Disco", "Memoria", "Red"])
        self.assertEqual({call.flags for call in adds}, {PREPARED})
        self.assertEqual({call.callback for call in adds}, {CALLBACK})
        self.assertEqual({call.version for call in versions}, {4})
        self.assertEqual({call.flags for call in images}, {PREPARED | NIF_ICON})
        self.assertEqual({(call.width, call.height) for call in images}, {(16, 16)})
        self.assertEqual(len({call.window for call in calls}), 1)

    def test_a_new_shell_gets_all_four_icons_in_order_and_fresh_images(self):
        self.start()
        start = self.shell.command("restart")
        calls = self.shell.wait_for_count(12, start=start)
        self.assertEqual(steps(calls), ADDED + REFRESHED)
        self.assertEqual([call.guid for call in calls[:8:2]], GUIDS)
        self.assertTrue(all(is_image(call) for call in calls))

    def test_texts_are_spanish(self):
        self.start()
        cpu, disk, memory, network = (call.tip for call in self.shell.calls[-4:])
        self.assertRegex(cpu, r"^CPU: \d+ %$")
        self.assertEqual(disk, "Disco: sin datos (PDH)")  # Wine has no disk counters
        self.assertRegex(memory, r"^Memoria: \d+ % \(\d+,\d / \d+,\d GB\)$")
        self.assertRegex(network, r"^.+(: desconectada|\nBajada: \d+,\d kbps  Subida: \d+,\d kbps)?$")


class StartInEnglishOnADenseScreen(DesktopTest):
    options = {"language": "en_US", "dpi": 192}
    settings = SLOW

    def test_texts_are_english(self):
        self.start()
        self.assertEqual([call.tip for call in self.shell.calls[self.first :][0:8:2]], ["CPU", "Disk", "Memory", "Network"])
        cpu, disk, memory, network = (call.tip for call in self.shell.calls[-4:])
        self.assertRegex(cpu, r"^CPU: \d+ %$")
        self.assertEqual(disk, "Disk: no data (PDH)")
        self.assertRegex(memory, r"^Memory: \d+ % \(\d+\.\d / \d+\.\d GB\)$")
        self.assertRegex(network, r"^.+(: disconnected|\nDown: \d+\.\d kbps  Up: \d+\.\d kbps)?$")

    def test_images_are_twice_as_large(self):
        self.start()
        for call in self.shell.calls[-4:]:
            self.assertEqual((call.width, call.height), (32, 32))
            self.assertEqual([len(row) for row in pixels(call)], [32] * 32)


class Misbehaviour(DesktopTest):
    options = {"language": "es_ES"}
    settings = FAST

    def start_logged(self):
        """Starts without waiting for anything and returns the process."""
        return self.desktop.start_kestrane_logged()

    def wait_for_change(self, icon, start):
        """The first change of an icon that the shell accepted."""
        matches = lambda call: call.message == NIM_MODIFY and call.id == icon and call.answer
        return self.shell.wait_for(matches, start, f"a change of icon {icon}")

    def calls_of(self, icon, count, start):
        return steps(self.shell.wait_for_count(count, lambda call: call.id == icon, start))

    def test_a_refused_guid_is_given_up_for_good(self):
        self.desktop.write_ini(SLOW)
        start = self.shell.command("refuse guid on")
        self.start_logged()
        self.shell.wait_for_ticks(2, icon=4, start=start)
        for icon in (1, 2, 3, 4):
            self.assertEqual(
                self.calls_of(icon, 4, start),
                [
                    (NIM_ADD, icon, True, 0),
                    (NIM_ADD, icon, False, 1),
                    (NIM_SETVERSION, icon, False, 1),
                    (NIM_MODIFY, icon, False, 1),
                ],
            )
        self.assertEqual(self.desktop.debug_lines().count(GUID_REFUSED), 4)

        # A new shell would take GUIDs, but the icons stay as they are.
        self.shell.command("refuse guid off")
        later = self.shell.command("restart")
        self.shell.wait_for_count(12, start=later)
        self.assertEqual([call.message for call in self.tick(CPU_TIMER)], [NIM_MODIFY])
        self.assertEqual({bool(call.flags & NIF_GUID) for call in self.shell.since(later)}, {False})
        self.assertEqual(self.desktop.debug_lines().count(GUID_REFUSED), 4)

    def test_a_shell_that_refuses_everything_is_asked_again_at_each_tick(self):
        start = self.shell.command("refuse all on")
        process = self.start_logged()
        adds = self.shell.wait_for_count(4, lambda call: call.id == 1 and call.message == NIM_ADD, start)
        # At startup once by GUID and once without; then without, once with the first image and once per tick.
        self.assertEqual([bool(call.flags & NIF_GUID) for call in adds], [True, False, False, False])
        self.assertTrue(is_image(adds[2]))
        self.assertEqual({call.message for call in self.shell.since(start)}, {NIM_ADD})
        self.assertGreaterEqual(self.desktop.debug_lines().count(ADD_REFUSED), 4)
        self.assertIsNone(process.poll())

        healed = self.shell.command("refuse all off")
        for icon in (1, 3, 4):  # the disk has no data here, so it has no ticks that count
            added = self.shell.wait_for(lambda call, icon=icon: call.id == icon and call.answer, healed)
            self.assertEqual(added.message, NIM_ADD)
            self.assertTrue(is_image(added))

    def test_an_icon_that_the_shell_lost_is_added_again_within_the_tick(self):
        self.start()
        start = self.shell.command("forget")
        for icon in (1, 3, 4):
            self.assertEqual(
                self.calls_of(icon, 3, start),
                [(NIM_MODIFY, icon, True, 0), (NIM_ADD, icon, True, 1), (NIM_SETVERSION, icon, True, 1)],
            )
        self.wait_for_change(1, start)

    def test_a_change_refused_for_once_replaces_the_old_entry(self):
        for by_guid in (True, False):
            with self.subTest(by_guid=by_guid):
                self.shell.command(f"refuse guid {'off' if by_guid else 'on'}")
                self.start()
                start = self.shell.command("refuse modify 1")
                refused = self.shell.wait_for(lambda call: not call.answer, start)
                icon = refused.id
                self.assertEqual(
                    self.calls_of(icon, 6, start),
                    [
                        (NIM_MODIFY, icon, by_guid, 0),
                        (NIM_ADD, icon, by_guid, 0),  # the shell still holds the entry
                        (NIM_DELETE, icon, by_guid, 1),
                        (NIM_ADD, icon, by_guid, 1),
                        (NIM_SETVERSION, icon, by_guid, 1),
                        (NIM_MODIFY, icon, by_guid, 1),
                    ],
                )
                self.end_and_see_the_icons_go()

    def test_a_broadcast_of_the_same_shell_replaces_its_old_entries(self):
        for by_guid in (True, False):
            with self.subTest(by_guid=by_guid):
                self.shell.command(f"refuse guid {'off' if by_guid else 'on'}")
                process = self.start_logged()
                self.shell.wait_for_ticks(2, icon=4)
                start = self.shell.command("broadcast")
                self.shell.wait_for_count(4, lambda call: call.message == NIM_DELETE and call.answer, start)
                for icon in (1, 2, 3, 4):
                    replaced = lambda call, icon=icon: call.id == icon and call.message in (NIM_ADD, NIM_DELETE)
                    self.assertEqual(
                        steps(self.shell.wait_for_count(3, replaced, start)),
                        [(NIM_ADD, icon, by_guid, 0), (NIM_DELETE, icon, by_guid, 1), (NIM_ADD, icon, by_guid, 1)],
                    )
                self.assertNotIn(ADD_REFUSED, self.desktop.debug_lines())
                self.assertIsNone(process.poll())
                self.end_and_see_the_icons_go()

    def end_and_see_the_icons_go(self):
        start = self.shell.mark()
        self.desktop.end_kestrane()
        deletes = [call for call in self.shell.since(start) if call.message == NIM_DELETE]
        self.assertEqual([(call.id, call.answer) for call in deletes], [(1, 1), (2, 1), (3, 1), (4, 1)])


class HiddenIcons(DesktopTest):
    settings = FAST + "[icons]\nshow_cpu=0\nshow_net=0\n"

    def test_are_never_shown_not_even_to_a_new_shell(self):
        start = self.shell.mark()
        self.desktop.start_kestrane()
        shown = lambda message: lambda call: call.message == message and call.answer
        self.shell.wait_for_count(2, shown(NIM_MODIFY), start)
        self.shell.command("restart")
        self.shell.wait_for_count(4, shown(NIM_ADD), start)
        self.shell.wait_for_ticks(2, icon=3)
        self.assertEqual({call.id for call in self.shell.since(start)}, {2, 3})


if __name__ == "__main__":
    main()
