"""What can be in the way of an update of the real program: the folder, the disk, other programs, and its end."""

import contextlib
import re
import subprocess

import private_network
from harness import main, wait_until, windows_path
from onscreen import double_click_time
from update_server import HOST, STATS_HOST, reply
from updates import CLOSE, DOWNLOAD, LONGEST_END, NEW_FILE, PROGRESS, UPDATE, WEB_LINK, UpdateTest

SHARING_VIOLATION, DISK_FULL = 32, 112


class Obstacles(UpdateTest):
    options = {"language": "en_US", **double_click_time(1)}

    NOT_WRITABLE = (
        "There is no permission to write to kestrane's folder, so it cannot update itself. Download the new version "
        "from the website and replace it by hand."
    )
    NOT_SAVED = "The new version could not be saved next to kestrane (code {})."
    NOT_REPLACED = (
        "The new version could not replace the current one (code {}).\n\nkestrane stays on the version you had."
    )

    def test_each_leaves_the_old_version_and_none_stays_in_the_way(self):
        disk = private_network.SCRATCH / "long" / ("a" * 100) / ("b" * 100)
        disk.mkdir(parents=True)
        with private_network.small_disk(disk, 4 * len(self.older)):
            self.install(disk / ("c" * 100))
            process = self.start_and_wait_for_offer()
            for obstacle in (
                self.read_only_folder,
                self.full_disk,
                self.changed_download,
                self.held_download,
                self.held_executable,
            ):
                with self.subTest(obstacle.__name__):
                    obstacle()
                    self.assertIsNone(process.poll())
                    self.assertEqual(self.executable.read_bytes(), self.older)
                    self.assertEqual(self.files(), ["kestrane.exe"])
                    self.settle()
            self.open_offer()
            self.press_return_on(UPDATE)
            self.assertEqual(process.wait(timeout=60), 0)
            self.assertEqual(self.executable.read_bytes(), self.newer)
            # Wine starts no program whose path has more than 260 characters by itself.
            self.end_by_switch()
            self.start()
            wait_until(lambda: self.files() == ["kestrane.exe"], "the end of the old version")
            self.end_by_switch()

    def read_only_folder(self):
        with private_network.read_only(self.folder):
            self.open_offer()
            self.assertEqual(self.note(), self.NOT_WRITABLE)
            self.assertTrue(self.of_offer(WEB_LINK).visible)
            self.assertFalse(self.of_offer(UPDATE).enabled)
            self.press_update()
            self.press_return_on(CLOSE)
            self.wait_for_no_offer()
        self.assert_nothing_else_was_sent(checks=1)

    def full_disk(self):
        filler = self.folder.parent / "filler"
        with contextlib.suppress(OSError), open(filler, "wb", buffering=0) as file:
            file.write(bytes(8 * len(self.older)))
        try:
            self.tries_in_vain_to_save(DISK_FULL)
            self.settle()
            with open(filler, "r+b") as file:
                file.truncate(filler.stat().st_size - len(self.newer) // 2)
            self.tries_in_vain_to_save(DISK_FULL)  # now in part
        finally:
            filler.unlink()

    def changed_download(self):
        self.server.answers[DOWNLOAD] = reply(self.newer[:-1] + b"?")
        self.open_offer()
        self.press_update()
        self.wait_for_note(self.words.mismatch)
        self.publish()

    def held_download(self):
        new = self.folder / NEW_FILE
        new.write_text("of another program")
        with self.held(new):
            self.tries_in_vain_to_save(SHARING_VIOLATION)
            self.assertEqual(new.read_text(), "of another program")
        new.unlink()

    def tries_in_vain_to_save(self, code):
        self.open_offer()
        self.press_update()
        pattern = re.escape(self.NOT_SAVED).replace(re.escape("{}"), str(code))
        wait_until(lambda: re.fullmatch(pattern, self.note()), f"{pattern!r} in place of {self.note()!r}", 60)
        self.assertTrue(self.of_offer(UPDATE).enabled)
        self.assertFalse(self.of_offer(PROGRESS).visible)

    def held_executable(self):
        with self.held(self.executable):
            self.open_offer()
            self.press_update()
            box = self.wait_for_box(self.words.box)
            self.assertIn(self.NOT_REPLACED.format(SHARING_VIOLATION), self.texts_of(box))
            self.assertIsNone(self.offer())
            self.answer(box)

    @contextlib.contextmanager
    def held(self, path):
        """Another program has a file open and shares it with nobody."""
        holder = self.desktop.start("holder.exe", windows_path(path), stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(holder.stdout.readline().strip(), "held")
        try:
            yield
        finally:
            holder.stdin.close()
            holder.wait(timeout=60)


class DevelopmentCopy(UpdateTest):
    options = {"language": "es_ES", "dpi": 192, **double_click_time(1)}

    BLOCKED = (
        "kestrane se está ejecutando desde una compilación, no desde el exe publicado: no se cambia nada. Descarga la "
        "versión nueva desde la web."
    )

    def test_is_not_replaced_and_can_be_ended_with_the_dialog_open(self):
        self.install("Build")
        process = self.start_and_wait_for_offer()
        self.open_offer()
        self.assertEqual(self.note(), self.BLOCKED)
        self.assertTrue(self.of_offer(WEB_LINK).visible)
        self.assertFalse(self.of_offer(UPDATE).enabled)
        self.press_update()
        self.assert_nothing_else_was_sent(checks=1)
        self.end_by_switch()
        self.assertEqual(process.wait(timeout=LONGEST_END), 0)
        self.assertEqual(self.files(), ["kestrane.exe"])


class DuringADownload(UpdateTest):
    options = {"language": "en_US", "dpi": 192, **double_click_time(1)}

    def test_the_program_can_be_ended(self):
        self.install("kestrane")
        process = self.start_and_wait_for_offer()
        self.stop_the_download_halfway()
        self.open_offer()
        self.press_update()
        self.wait_for_note(self.words.downloading)
        self.end_by_switch(waits_to_the_end=False)
        self.assertEqual(process.wait(timeout=LONGEST_END), 0)
        self.assertEqual(self.files(), ["kestrane.exe"])
        self.assertEqual(self.executable.read_bytes(), self.older)


if __name__ == "__main__":
    private_network.enter(HOST, STATS_HOST)
    main()
