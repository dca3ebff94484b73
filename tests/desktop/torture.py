"""The whole torture: scripts/torture.sh runs it. With a function, a call and perhaps a place it repeats one failure."""

import collections
import concurrent.futures
import os
import queue
import sys
import threading

import private_network
from harness import BUILD
from torture_counts import place_names
from torture_plan import FAILURES, Settings, is_for_update, judge, make_plan
from torture_scenario import PATIENCE, START, Rack, values_of
from update_server import HOST, STATS_HOST, Authority

PROGRAM = BUILD / "torture" / "kestrane.exe"
LIVES_WITHOUT_FAILURE = 2

# Of so many plans one may miss its call, which not every life makes.
PLANS_FOR_ONE_MISS = 20


class Torture:
    """Plans are worked off on several racks; what is found is printed at once and summed up at the end."""

    def __init__(self, racks):
        self.racks = racks
        self.settings = Settings(values_of(START))
        self.printing = threading.Lock()
        self.failed = []
        self.runs = self.reached = self.ended = 0
        self.seconds = 0.0
        self.by_section = collections.defaultdict(collections.Counter)

    def make_plans(self, rack):
        """From the counts of both lives without a failure, after having learned what the settings become."""
        plans = []
        for kind in ("", "update "):
            for _ in range(LIVES_WITHOUT_FAILURE):
                life = rack.live(kind, PATIENCE)
                self.settings.learn_from(life)
            if found := judge(life, self.settings):
                raise SystemExit(f"without a failure: {found}")
            known = {plan.split(" ")[0] for plan in plans}
            plans += [kind + plan for plan in make_plan(life.counts) if not kind or is_for_update(plan, known)]
        return plans

    def try_plan(self, rack, plan):
        life = rack.live_to_the_failure(plan)
        found = judge(life, self.settings)
        again = []
        if found:
            again = judge(rack.live(plan), self.settings)
        with self.printing:
            self._note(life, found, again)

    def _note(self, life, found, again):
        self.runs += 1
        self.reached += life.counts.reached
        self.ended += not life.was_told_to_end
        self.seconds += life.seconds
        row = self.by_section[FAILURES[life.failure.split(" ")[0]].section]
        row["runs"] += 1
        row["reached"] += life.counts.reached
        row["ended"] += not life.was_told_to_end
        row["failed"] += bool(found)
        state = "" if life.counts.reached else " (not reached)"
        if not life.was_told_to_end:
            state += f" (ended with {life.code})"
        print(f"{self.runs}: {life.plan}{state} {life.seconds:.1f} s", flush=True)
        if not found:
            return
        self.failed.append(life.plan)
        at = life.counts.reached_at
        print(f"FAILED {life.plan}, in {place_names(PROGRAM, [at])[at]}:", *found, sep="\n    ")
        print("    again:", *(again or ["nothing"]), sep="\n        ", flush=True)

    def misses_too_many(self):
        return (self.runs - self.reached) * PLANS_FOR_ONE_MISS > self.runs

    def sum_up(self):
        print(f"\n{'section':<10}{'runs':>7}{'reached':>9}{'ended':>7}{'failed':>8}")
        for section, row in self.by_section.items():
            print(f"{section:<10}{row['runs']:>7}{row['reached']:>9}{row['ended']:>7}{row['failed']:>8}")
        each = self.seconds / max(self.runs, 1)
        print(f"{self.runs} lives with a failure, {each:.1f} s each; {len(self.failed)} FAILED")
        if self.misses_too_many():
            print(f"FAILED: in {self.runs - self.reached} of them the call that was to fail has not come")
        for plan in self.failed:
            print(f"scripts/torture.sh {plan}")


def work_off(torture, number, authority, plans):
    with Rack(number, authority) as rack:
        while True:
            try:
                torture.try_plan(rack, plans.get_nowait())
            except queue.Empty:
                return


def main(words):
    if words and words[words[0] == "update"] not in FAILURES:
        sys.exit(f"{' '.join(words)}: no function that can fail")
    authority = Authority(private_network.SCRATCH / "authority")
    private_network.trust(authority.root)
    torture = Torture(int(os.environ.get("KESTRANE_TORTURE_DESKTOPS", 2)))
    with concurrent.futures.ThreadPoolExecutor(1) as alone:
        made = alone.submit(prepare, torture, authority).result()
    plans = queue.Queue()
    for plan in [" ".join(words)] if words else made:
        plans.put(plan)
    print(f"{plans.qsize()} plans", flush=True)
    with concurrent.futures.ThreadPoolExecutor(torture.racks) as pool:
        numbers = range(1, torture.racks + 1)
        for done in [pool.submit(work_off, torture, number, authority, plans) for number in numbers]:
            done.result()
    torture.sum_up()
    sys.exit(1 if torture.failed or torture.misses_too_many() else 0)


def prepare(torture, authority):
    with Rack(0, authority) as rack:
        return torture.make_plans(rack)


if __name__ == "__main__":
    private_network.enter(HOST, STATS_HOST)
    main(sys.argv[1:])
