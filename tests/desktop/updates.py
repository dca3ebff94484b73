"""The real program, a later version of it, and the server from which it updates itself, in a network of their own."""

import hashlib
import json
import os
import pathlib
import re
import tempfile
import threading
import time

import private_network
from harness import BUILD, TIMEOUT, every, wait_until
from onscreen import DIALOG_CLASS, NIN_BALLOONUSERCLICK, double_click_time
from settings_dialog import SettingsDialogTest
from update_server import HOST, STATS_HOST, Authority, UpdateServer, head, reply

NEWER = "0.2.0"

# The update dialog's controls.
CLOSE, RUNNING, OFFERED, CHANGES_LINK, NOTE, PROGRESS, WEB_LINK, UPDATE = 2, 3002, 3003, 3004, 3005, 3006, 3007, 3008

# From the start of the program to its first question, in seconds.
FIRST_CHECK = 8

# The same until that question has reached the server.
LONGEST_CHECK = FIRST_CHECK + 30

# The longest that a request can keep the program from its end: 15 s for an answer, and what a busy machine may add.
LONGEST_END = 25

# Where the server keeps the new version.
DOWNLOAD = "/download/kestrane.exe"

# In the program's folder: the new version until it takes the program's place, and the program that has made room for it.
NEW_FILE, OLD_FILE = "kestrane.exe.new", "kestrane.exe.old"

# All that a request tells, but for the host and the user agent. Under Wine the flag by which no cache may answer gives
# both lines about caches.
PLAIN_HEADERS = {"connection": "Keep-Alive", "pragma": "no-cache", "cache-control": "no-cache"}


def leave_update_cut_off(folder):
    """What an update that was killed leaves beside the program, for the next start to remove."""
    for leftover in (NEW_FILE, OLD_FILE):
        (folder / leftover).write_text("of an update that was cut off")


class Words:
    """What the program says about an update."""

    def __init__(self, settings, title, balloon, note, downloading, mismatch, labels, box):
        self.settings, self.title, self.balloon, self.note = settings, title, balloon, note
        self.downloading, self.mismatch, self.labels, self.box = downloading, mismatch, labels, box


WORDS = {
    "es_ES": Words(
        settings="Ajustes de kestrane",
        title="Nueva versión de kestrane",
        balloon="Versión {} disponible (tienes la {}). Haz clic para ver los cambios y actualizar.",
        note="Al actualizar se descarga la versión nueva, se comprueba, se cierra kestrane y se vuelve a abrir ya "
        "actualizado.",
        downloading="Descargando la versión nueva...",
        mismatch="El fichero descargado no coincide con el publicado (tamaño o huella). No se ha cambiado nada; prueba "
        "más tarde.",
        labels=[
            "Hay una versión nueva de kestrane.",
            "Versión actual:",
            "Versión disponible:",
            "Ver los cambios de cada versión",
            "Ir a la web",
            "Cerrar",
            "Actualizar y reiniciar",
        ],
        box="Actualizar kestrane",
    ),
    "en_US": Words(
        settings="kestrane settings",
        title="New version of kestrane",
        balloon="Version {} available (you have {}). Click to see the changes and update.",
        note="Updating downloads and checks the new version, closes kestrane and opens it again already updated.",
        downloading="Downloading the new version...",
        mismatch="The downloaded file does not match the published one (size or fingerprint). Nothing was changed; try "
        "again later.",
        labels=[
            "There is a new version of kestrane.",
            "Current version:",
            "Available version:",
            "See what changed in each version",
            "Go to the website",
            "Close",
            "Update and restart",
        ],
        box="Update kestrane",
    ),
}


class Gate:
    """An answer that stops in the middle of its body until it is opened."""

    def __init__(self, content):
        self._content = content
        self._opened = threading.Event()
        self.first_half = len(content) // 2

    def __call__(self, visit):
        visit.send(head(200, len(self._content)) + self._content[: self.first_half])
        self._opened.wait(TIMEOUT)
        visit.send(self._content[self.first_half :])

    def open(self):
        self._opened.set()


class UpdateTest(SettingsDialogTest):
    """Each class has a screen, a prefix and a server; the program runs from a folder that is no part of a build."""

    options = {"language": "es_ES", **double_click_time(1)}
    settings = every(10000)

    @classmethod
    def setUpClass(cls):
        authority = Authority(tempfile.mkdtemp(dir=private_network.SCRATCH))
        private_network.trust(authority.root)
        cls.server = UpdateServer("127.0.0.1", authority.good)
        cls.addClassCleanup(cls.server.close)
        super().setUpClass()
        cls.words = WORDS[cls.options["language"]]
        cls.TITLE = cls.words.settings
        cls.scale = cls.options.get("dpi", 96) // 96
        cls.newer = (BUILD / "kestrane-newer.exe").read_bytes()
        cls.older = (BUILD / "kestrane.exe").read_bytes()

    def setUp(self):
        super().setUp()
        self.server.forget()
        self.server.answers.clear()
        self.publish()

    # The server.

    def publish(self, content=None, **changes):
        content = self.newer if content is None else content
        manifest = {
            "version": NEWER,
            "url": f"https://{HOST}{DOWNLOAD}",
            "sha256": hashlib.sha256(content).hexdigest(),
            "size": len(content),
            **changes,
        }
        self.server.answers["/latest.json"] = reply(json.dumps(manifest).encode())
        self.server.answers[DOWNLOAD] = reply(content)

    def stop_the_download_halfway(self):
        gate = self.server.answers[DOWNLOAD] = Gate(self.newer)
        return gate

    def checks(self):
        """The requests for the manifest so far."""
        return [request for request in self.server.requests if request.path == "/latest.json"]

    def assert_nothing_else_was_sent(self, checks, downloads=0, version="0.1.0"):
        """Exactly these requests, and not a word more in them than needed; no event, and no other name asked for."""
        told = [(request.verb, request.path, request.body) for request in self.server.requests]
        self.assertEqual(told, [("GET", "/latest.json", b"")] * checks + [("GET", DOWNLOAD, b"")] * downloads)
        for request in self.server.requests:
            is_check = request.path == "/latest.json"
            self.assertEqual(request.headers, {**PLAIN_HEADERS, "host": HOST, "user-agent": f"kestrane/{version}"})
            self.assertRegex(request.query, r"^t=\d+$" if is_check else "^$")
        self.assertEqual(private_network.names_asked, [])

    # The program, its folder and its processes.

    def install(self, folder, build="kestrane.exe"):
        """Puts the program into a new folder, from which it is started from now on."""
        self.folder = private_network.SCRATCH / folder
        self.desktop.run_kestrane_from(self.folder, build)
        self.executable = self.folder / "kestrane.exe"

    def files(self):
        return sorted(path.name for path in self.folder.iterdir())

    def visits(self):
        """What became of each connection to the server."""
        return [(visit.handshake, visit.ended_by) for visit in self.server.visits]

    def start_and_wait_for_offer(self):
        process = self.start()
        self.balloon = self.wait_for_balloon()
        return process

    def wait_for_balloon(self, start=None):
        try:
            return self.shell.wait_for(lambda call: call.info, self.first if start is None else start, "a balloon")
        except AssertionError as error:
            raise AssertionError(f"{error}; the server saw {self.visits()}") from error

    def running(self):
        """The command lines of all instances in this prefix, by process id."""
        found = {}
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                line = (process / "cmdline").read_bytes()
                environment = (process / "environ").read_bytes().split(b"\0")
            except OSError:
                continue  # it has ended meanwhile, or belongs to another user
            if b"\\kestrane.exe" in line and os.fsencode(f"WINEPREFIX={self.desktop.prefix}") in environment:
                found[int(process.name)] = os.fsdecode(line).rstrip("\0").split("\0")
        return found

    def wait_for_end(self):
        wait_until(lambda: not self.running(), "the end of the program", LONGEST_END)

    def end_by_switch(self, waits_to_the_end=True):
        code = self.desktop.run_kestrane("--exit").code
        if waits_to_the_end:
            self.assertEqual(code, 0)

    # The update dialog.

    def offer(self):
        """The update dialog's window, or None."""
        return self.neighbour.find(DIALOG_CLASS, self.words.title)

    def open_offer(self):
        """By a click on the balloon."""
        self.shell.command(f"callback 1 {NIN_BALLOONUSERCLICK} 600 500")
        return wait_until(self.offer, "the update dialog")

    def of_offer(self, id):
        return self.control(id, self.offer())

    def wait_for_no_offer(self):
        wait_until(lambda: not self.offer(), "the end of the update dialog", 30)

    def note(self):
        offer = self.offer()
        return self.control(NOTE, offer).text if offer else None

    def wait_for_note(self, text):
        wait_until(lambda: self.note() == text, f"{text!r} in place of {self.note()!r}", 60)

    def press_update(self):
        self.use(UPDATE, of=self.offer())

    def press_return_on(self, id):
        """With the keyboard on this button, which it must have by itself."""
        focus = lambda: self.neighbour.ask("focus", self.offer().handle)
        wait_until(lambda: focus() == id, f"the keyboard on {id}, which is on {focus()}", 30)
        self.keys("Return")

    def settle(self):
        """Leaves whatever box or dialog is open."""
        for _ in range(3):
            if not self.neighbour.windows(DIALOG_CLASS):
                break
            self.keys("Escape")
            time.sleep(0.2)

    def install_id(self):
        """The identity in the settings file, or None."""
        found = re.search(r"^install_id=(.*)$", self.desktop.ini_path.read_text(encoding="utf-8"), re.MULTILINE)
        return found.group(1).strip() if found else None
