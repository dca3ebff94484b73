"""Manifests and servers that lie, and the real program, which must offer nothing, change nothing and live on.

Some programs run at once, each with its server and its share of the cases, after each of which it checks anew. All end
with an honest manifest, which must be offered: so that a program that is deaf does not pass.
"""

import time
import unittest

import private_network
from harness import main, wait_until
from lies import ACCEPTED, LIES, manifest
from update_lane import FIRST_CHECK, GRACE, PATIENCE, Lane, require, run_lanes
from update_server import HOST, OTHER_HOST, STATS_HOST, cut_handshake, welcome

LANES = 8

LAST = "9.9.9"


class Case:
    """What a server does for one check, and which version is to be offered then, if any."""

    def __init__(self, name, answer=None, offered=None, certificate="good", reception=welcome, visits=1):
        self.name, self.answer, self.offered = name, answer or manifest(), offered
        self.certificate, self.reception, self.visits = certificate, reception, visits

    def is_over(self, server):
        """Whether the program has had its answer and let go of it."""
        visits = list(server.visits)
        return len(visits) >= self.visits and all(visit.ended_by for visit in visits)


class Lies(Lane):
    def work(self, cases):
        self.arrange(cases[0])
        self.start()
        for case in cases:
            if case is not cases[0]:
                self.check_again(lambda: self.arrange(case))
            self.observe(case)
        self.end()

    def arrange(self, case):
        self.server.forget()
        self.server.certificate = getattr(self.authority, case.certificate)
        self.server.reception = case.reception
        self.server.answers["/latest.json"] = case.answer

    def observe(self, case):
        try:
            wait_until(lambda: case.is_over(self.server), "the end of the check", FIRST_CHECK + PATIENCE)
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


def cases():
    lies = [Case(name, answer) for name, answer in LIES.items()]
    lies += [
        Case(f"certificate {name}", certificate=name)
        for name in ("self_signed", "expired", "elsewhere", "unknown_authority")
    ]
    lies += [Case("TLS cut off", reception=cut_handshake)]
    return lies + [Case(f"accepted as {version}", answer, version) for version, answer in ACCEPTED.items()]


def share(everything, number):
    """A lane's part of the cases, and an honest end."""
    return everything[number::LANES] + [Case("the honest end", manifest(version=LAST), offered=LAST)]


class Manifests(unittest.TestCase):
    def test_only_the_honest_ones_are_believed(self):
        everything = cases()
        run_lanes(self, [(Lies, share(everything, number)) for number in range(LANES)])


if __name__ == "__main__":
    private_network.enter(HOST, STATS_HOST, OTHER_HOST)
    main()
