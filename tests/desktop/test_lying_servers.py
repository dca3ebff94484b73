"""Manifests and servers that lie, and the real program, which must offer nothing, change nothing and live on.

Some programs run at once, each with its server and its share of the cases, after each of which it checks anew. All end
with an honest manifest, which must be offered: so that a program that is deaf does not pass.
"""

import json
import subprocess
import time
import unittest

import private_network
from harness import ROOT, main, wait_until
from lies import ACCEPTED, HONEST, LIES, WHOLE, manifest, text
from update_lane import FIRST_CHECK, GRACE, PATIENCE, Lane, require, run_lanes
from update_server import (
    HOST,
    OTHER_HOST,
    STATS_HOST,
    cut_handshake,
    drip,
    head,
    keep_silent,
    raw,
    reply,
    silence,
    talk_nonsense,
    welcome,
)

LANES = 10

LAST = "9.9.9"

KEY = ROOT / "tests" / "desktop" / "manifest_key.pem"

# How long the program waits for a server that says nothing, and what a busy machine may add.
TIME_OUT, DELAY = 15, 15


class Case:
    """What a server does for one check, and which version is to be offered then, if any."""

    def __init__(self, name, answer=None, offered=None, certificate="good", reception=welcome):
        self.name, self.answer, self.offered = name, answer or manifest(), offered
        self.certificate, self.reception = certificate, reception

    def is_over(self, visits):
        """Whether the program has had its answer and let go of it."""
        return all(visit.ended_by for visit in visits)

    def check_times(self, visits):
        pass


class Redirect(Case):
    """To another host, on the same server."""

    def is_over(self, visits):
        return len(visits) >= 2 and super().is_over(visits)

    def check_times(self, visits):
        require(not any(visit.requests for visit in visits[1:]), "nothing is asked of the other host")


class Silence(Case):
    """The program must give up by itself."""

    def check_times(self, visits):
        require([visit.ended_by for visit in visits] == ["client"], "the program gives up once")
        waited = visits[0].ended - visits[0].began
        require(TIME_OUT - 1 < waited < TIME_OUT + DELAY, f"it waits {TIME_OUT} s, not {waited:.1f}")


class Dripping(Case):
    """The program takes what comes for as long as it comes. The next case begins with the end of that."""

    def is_over(self, visits):
        return visits[0].sent > len(head(200, len(WHOLE))) + 3


class Lies(Lane):
    def work(self, cases):
        """Takes cases from an iterator that other lanes share."""
        self.arrange(next(cases))
        self.start()
        self.observe()
        for case in cases:
            self.check_again(lambda: self.arrange(case))
            self.observe()
        self.check_again(lambda: self.arrange(self.honest_end()))
        self.observe()
        self.end()

    def honest_end(self):
        return Case("the honest end", manifest(version=LAST), offered=LAST)

    def arrange(self, case):
        self.case = case
        self.server.forget()
        self.server.certificate = getattr(self.authority, case.certificate)
        self.server.reception = case.reception
        self.server.answers["/latest.json"] = case.answer

    def observe(self):
        case, visits = self.case, self.server.visits
        try:
            wait_until(lambda: visits, "a visit of the program", FIRST_CHECK + PATIENCE)
            self.look_alive()
            wait_until(lambda: case.is_over(visits), "the end of the check", PATIENCE)
            case.check_times(visits)
            if case.offered:
                self.wait_for_offer(case.offered)
            else:
                time.sleep(GRACE)
            self.look_alive()
            self.look_for_offers(1 if case.offered else 0)
            self.look_unchanged()
        except AssertionError as error:
            self.failures.append(f"{case.name}: {error}")
            require(self.program.poll() is None, f"the program has ended: {self.failures}")


class EndDuringSilence(Lies):
    """The program is told to end while it waits for a server."""

    def work(self):
        self.arrange(Case("silence", silence))
        self.start()
        wait_until(lambda: self.server.requests, "the check", FIRST_CHECK + PATIENCE)
        self.look_alive()
        self.desktop.run_kestrane("--exit")  # does not wait that long
        require(self.program.wait(timeout=60) == 0, "it ends as it should")
        waited = time.monotonic() - self.server.visits[0].began
        require(TIME_OUT - 1 < waited < TIME_OUT + DELAY, f"it ends after {TIME_OUT} s, and not {waited:.1f}")
        self.look_unchanged()


class Signed(Lies):
    """A build that believes only what has been signed."""

    build = "kestrane-signed.exe"

    def work(self):
        good = self.sign("own", text())
        stolen = json.loads(good)["signature"]
        flipped = f"{int(stolen, 16) ^ 1:0128x}"
        other_key = private_network.SCRATCH / "other_key.pem"
        openssl = ["openssl", "ecparam", "-name", "prime256v1", "-genkey", "-noout", "-out", other_key]
        subprocess.run(openssl, check=True)
        forgeries = [
            Case("no signature", manifest()),
            Case("a signature by another key", reply(self.sign("other", text(), other_key))),
            Case("a signature with a changed bit", manifest(signature=flipped)),
            Case("a signature of another version", manifest(version="0.3.0", signature=stolen)),
            Case("a signature of another hash", manifest(sha256="f" * 64, signature=stolen)),
            Case("a signature of another size", manifest(size=HONEST["size"] + 1, signature=stolen)),
            Case("a signature of another address", manifest(url=HONEST["url"] + "e", signature=stolen)),
            Case("an older manifest, well signed", reply(self.sign("older", text(version="0.0.9")))),
        ]
        super().work(iter(forgeries))

    def honest_end(self):
        return Case("a good signature", reply(self.sign("good", text())), offered=HONEST["version"])

    @staticmethod
    def sign(name, manifest_text, key=KEY):
        file = private_network.SCRATCH / f"{name}.json"
        file.write_text(manifest_text, encoding="utf-8")
        command = [ROOT / "scripts" / "sign.sh", key, file]
        return subprocess.run(command, check=True, capture_output=True).stdout


REDIRECT = "a redirect to a host without a certificate"


def cases():
    slow = [
        Silence("accepts and is silent", reception=keep_silent),
        Silence("no TLS, and then nothing", reception=talk_nonsense),
        Silence("silent for the request", silence),
        Silence("silent after the headers", raw(head(200, len(WHOLE)))),
        Dripping("drips", drip(WHOLE, at_once=head(200, len(WHOLE)))),
    ]
    lies = [(Redirect if name == REDIRECT else Case)(name, answer) for name, answer in LIES.items()]
    lies += [
        Case(f"certificate {name}", certificate=name)
        for name in ("self_signed", "expired", "elsewhere", "unknown_authority")
    ]
    lies += [Case("TLS cut off", reception=cut_handshake)]
    return slow + lies + [Case(f"accepted as {version}", answer, version) for version, answer in ACCEPTED.items()]


class LyingServers(unittest.TestCase):
    def test_are_not_believed(self):
        shared = iter(cases())  # of a list: the next one can be taken by any thread
        run_lanes(self, [(EndDuringSilence,), (Signed,), *[(Lies, shared)] * LANES])


if __name__ == "__main__":
    private_network.enter(HOST, STATS_HOST, OTHER_HOST)
    main()
