"""Downloads that are not what the manifest promised: the real program says so, keeps what it has, and tries again when
told to. In the end it takes the right one, in the same dialog."""

import hashlib
import unittest

import private_network
from harness import BUILD, main, wait_until
from lies import manifest
from onscreen import DIALOG_CLASS, NIN_BALLOONUSERCLICK
from update_lane import BM_CLICK, SAID, Lane, require, run_lanes
from update_server import (
    HOST,
    OTHER_HOST,
    STATS_HOST,
    Visit,
    cut,
    cut_handshake,
    drip,
    head,
    raw,
    reply,
    welcome,
)
from updates import CLOSE, DOWNLOAD, NEW_FILE, NOTE, PROGRESS, UPDATE

NO_ANSWER = "The new version could not be downloaded: no answer from the server."
DROPPED = "The new version could not be downloaded: the connection dropped."
MISMATCH = SAID.mismatch

# The program waits 15 s for the next bytes, and the machine may be busy.
RECEIVE_LIMIT, LONGEST_WAIT = 15, 40

# For a download that is given up between two bytes that drip.
LONGEST_CLOSE = 5

NEWER = (BUILD / "kestrane-newer.exe").read_bytes()
HALF = len(NEWER) // 2
CHANGED = NEWER[:HALF] + bytes([NEWER[HALF] ^ 1]) + NEWER[HALF + 1 :]
ANOTHER = bytes(reversed(NEWER))


def promise(version, content=NEWER, **changes):
    fields = {"sha256": hashlib.sha256(content).hexdigest(), "size": len(content), **changes}
    return manifest(version=version, url=f"https://{HOST}{DOWNLOAD}", **fields)


# What a server does when it is asked for the promised file, and what the dialog says of it.
LIES = {
    "status 404": (reply(NEWER, 404), NO_ANSWER),
    "status 500": (reply(NEWER, 500), NO_ANSWER),
    "status 204": (reply(status=204), NO_ANSWER),
    "status 206": (reply(NEWER, 206), NO_ANSWER),
    "a redirect to a host without a certificate": (reply(status=301, Location=f"https://{OTHER_HOST}/"), NO_ANSWER),
    "a redirect to plain HTTP": (reply(status=302, Location=f"http://{HOST}{DOWNLOAD}"), NO_ANSWER),
    "hung up before an answer": (cut(b"", Visit.hang_up), NO_ANSWER),
    "a byte short": (reply(NEWER[:-1]), MISMATCH),
    "a byte too long": (reply(NEWER + b"\0"), MISMATCH),
    "far too long": (reply(NEWER * 20), MISMATCH),
    "empty": (reply(), MISMATCH),
    "a byte changed": (reply(CHANGED), MISMATCH),
    "another file of the same size": (reply(ANOTHER), MISMATCH),
    "a page to sign in": (reply(b"<html>Please sign in.</html>", Content_Type="text/html"), MISMATCH),
    "hung up in the middle": (cut(head(200, len(NEWER)) + NEWER[:HALF], Visit.hang_up), MISMATCH),
    "closed in the middle": (cut(head(200, len(NEWER)) + NEWER[:HALF], Visit.close), MISMATCH),
    "silent after the headers": (raw(head(200, len(NEWER))), DROPPED),
    "silent in the middle": (raw(head(200, len(NEWER)) + NEWER[:HALF]), DROPPED),
}

BAD_CERTIFICATES = ("self_signed", "expired", "elsewhere", "unknown_authority")

# Offers in which the promise itself is wrong; the server then sends the new version as it is.
FALSE_PROMISES = {
    "another file's hash": {"sha256": hashlib.sha256(ANOTHER).hexdigest()},
    "a size that is smaller": {"size": len(NEWER) - 1},
    "a size that is larger": {"size": len(NEWER) + 1},
    "a size of 2^63": {"size": 2**63},
}


class Downloads(Lane):
    def offer(self):
        return self.neighbour.find(DIALOG_CLASS, SAID.title)

    def open_offer(self):
        self.shell.command(f"callback 1 {NIN_BALLOONUSERCLICK} 600 500")
        self.dialog = wait_until(self.offer, "the update dialog", 30)

    def control(self, id):
        found = self.neighbour.ask("control", self.dialog.handle, id)
        require(found, "the update dialog is there")
        return found

    def press(self, control):
        require(self.neighbour.ask("send", control.handle, BM_CLICK, 0, 0), f"control {control.id} obeys")

    def close_offer(self):
        self.press(self.control(CLOSE))
        wait_until(lambda: not self.offer(), "the end of the update dialog", LONGEST_CLOSE)

    def files(self):
        return sorted(path.name for path in self.folder.iterdir())

    def begin_download(self):
        self.server.forget()
        self.press(self.control(UPDATE))

    def try_in_vain(self, name, *messages):
        """One download, which is to fail with one of these messages."""
        try:
            self.begin_download()
            wait_until(lambda: self.server.visits, f"a request for {name}", LONGEST_WAIT)
            self.look_alive()
            require(self.neighbour.ask("paint", self.dialog.handle, 1), "the dialog paints itself meanwhile")
            wait_until(lambda: self.control(UPDATE).enabled, "the end of the download", LONGEST_WAIT)
            note = self.control(NOTE).text
            require(note in messages, f"the dialog says {note!r}")
            require(not self.control(PROGRESS).visible, "the bar is gone")
            require(self.offer(), "the dialog stays")
            self.look_alive()
            self.look_unchanged()
        except AssertionError as error:
            self.failures.append(f"{name}: {error}")
            require(self.offer(), f"the update dialog is still there: {self.failures}")
            wait_until(lambda: self.control(UPDATE).enabled, f"the end of {self.failures}")


class OneDialog(Downloads):
    """All that a server can do to a promise that is true."""

    def work(self):
        self.server.answers["/latest.json"] = promise("0.2.0")
        self.start()
        self.wait_for_offer("0.2.0")
        self.drip_and_be_given_up()
        self.open_offer()
        for name, (answer, *messages) in LIES.items():
            self.server.answers[DOWNLOAD] = answer
            self.try_in_vain(name, *messages)
        self.be_reset()
        self.meet_bad_certificates()
        self.meet_cut_handshake()
        self.update()

    def drip_and_be_given_up(self):
        self.open_offer()
        self.server.answers[DOWNLOAD] = drip(NEWER, at_once=head(200, len(NEWER)))
        self.begin_download()
        dripped = lambda: self.server.visits and self.server.visits[-1].sent > len(head(200, len(NEWER))) + 2
        wait_until(dripped, "some bytes that drip", LONGEST_WAIT)
        require(self.files() == ["kestrane.exe", NEW_FILE], f"the new file grows in {self.files()}")
        require(self.control(NOTE).text == SAID.downloading, "the dialog tells of the download")
        require(self.control(PROGRESS).visible and not self.control(UPDATE).enabled, "the bar is there")
        require(self.neighbour.ask("paint", self.dialog.handle, 1), "the dialog paints itself")
        self.look_alive()
        self.close_offer()
        self.look_unchanged()
        self.look_alive()

    def be_reset(self):
        """In the middle of the body. A reset may overtake the headers, so it comes only once the client has read them."""

        def reset(visit):
            wait_until(lambda: NEW_FILE in self.files(), "the new file", LONGEST_WAIT)
            visit.reset()

        self.server.answers[DOWNLOAD] = cut(head(200, len(NEWER)) + NEWER[:HALF], reset)
        # Wine takes a reset for the end of the body.
        self.try_in_vain("reset in the middle", DROPPED, MISMATCH)

    def meet_bad_certificates(self):
        self.server.answers[DOWNLOAD] = reply(NEWER)
        for name in BAD_CERTIFICATES:
            self.server.certificate = getattr(self.authority, name)
            self.try_in_vain(f"certificate {name}", NO_ANSWER)
            require(not self.server.requests, f"nothing is asked of a server with the certificate {name}")
        self.server.certificate = self.authority.good

    def meet_cut_handshake(self):
        self.server.reception = cut_handshake
        self.try_in_vain("TLS cut off", NO_ANSWER)
        self.server.reception = welcome

    def update(self):
        """In the same dialog, the right file takes the program's place."""
        self.server.answers[DOWNLOAD] = reply(NEWER)
        self.begin_download()
        require(self.program.wait(timeout=LONGEST_WAIT) == 0, "the program makes room for the next version")
        self.shell.wait_for_ticks(2, icon=4, start=self.shell.mark())
        wait_until(lambda: self.files() == ["kestrane.exe"], "the end of the old version", LONGEST_WAIT)
        require((self.folder / "kestrane.exe").read_bytes() == NEWER, "the new version stands there")
        require(self.desktop.run_kestrane("--exit").code == 0, "the new version can be told to end")


class FalsePromises(Downloads):
    """A file that is what it is, and a promise that is not true: one offer after the other."""

    def work(self):
        self.server.answers[DOWNLOAD] = reply(NEWER)
        for number, (name, changes) in enumerate(FALSE_PROMISES.items()):
            version = f"0.3.{number}"
            answer = promise(version, **changes)
            if number == 0:
                self.server.answers["/latest.json"] = answer
                self.start()
            else:
                self.check_again(lambda: self.server.answers.update({"/latest.json": answer}))
            self.wait_for_offer(version)
            self.open_offer()
            self.try_in_vain(name, MISMATCH)
            self.close_offer()
        self.end()


class LyingDownloads(unittest.TestCase):
    def test_leave_the_program_as_it_is_until_the_right_file_comes(self):
        run_lanes(self, [(OneDialog,), (FalsePromises,)])


if __name__ == "__main__":
    private_network.enter(HOST, STATS_HOST, OTHER_HOST)
    main()
