"""Which calls fail, and what the settings file may hold when one of them has failed."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "torture"))

from failures import CALLED_EVERY_TIME, read_table

FAILURES = {row.name: row for row in read_table() if row.kind == "fails"}

# Of a function whose every call fails once these are the most, spread over all; of an allocator these.
MOST_CALLS, MOST_ALLOCATIONS = 150, 100
CHOSEN_CALLS = (1, 2, 50)

# The most important first.
ORDER = (
    *("file", "registry", "shell", "process", "memory", "window"),
    *("network", "counters", "facts", "objects", "drawing", "runtime"),
)

# The compiler's own start, before the program begins, copies the command line and does not look whether it could.
UNCHECKED = ("malloc", 2)

NUMBERS = ("x", "y", "width", "height", "tab")
ANY_WHOLE_NUMBER = re.compile(r"-?\d+$")
# A key that cannot be read counts as missing: its page shows the default, and saves what it shows.
READING, PERIOD, DEFAULT_PERIOD = "GetPrivateProfileStringW", "refresh_ms", "1500"
INSTALL_ID = re.compile(r"[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}$")

# What the scenario switches by a click, which a failure can keep from it: its edits in the dialog, the graphs that it
# opens, and the menu's entries for pinning them, which move up if one of the graphs is missing.
SWITCHED = {
    **{(f"[{name}]", key): {"0", "1"} for name in ("cpu", "disk", "network") for key in ("graph", "pinned", "topmost")},
    ("[cpu]", "per_core"): {"0", "1"},
    ("[disk]", "activity"): {"0", "1"},
    ("[memory]", "bar"): {"0", "1"},
    ("[memory]", "font_bold"): {"0", "1"},
    ("[network]", "style"): {"bars", "lines"},
}


def spread(count, most):
    """Numbers of calls from 1 to `count`, at most so many and evenly apart."""
    if count <= most:
        return list(range(1, count + 1))
    return sorted({1 + (count - 1) * number // (most - 1) for number in range(most)})


def chosen_calls(row, calls):
    if row.section in CALLED_EVERY_TIME:
        return spread(calls, MOST_CALLS)
    if row.section == "memory":
        skipped = UNCHECKED[1] if row.name == UNCHECKED[0] else 0
        return [skipped + number for number in spread(calls - skipped, MOST_ALLOCATIONS)]
    return [call for call in CHOSEN_CALLS if call <= calls]


def make_plan(counts):
    """All plans, in the words that torture.dll takes, for a life with these counts: the first calls first."""
    plans = []
    for section in ORDER:
        for row in FAILURES.values():
            calls = counts.calls.get(row.name, 0)
            if row.section != section or calls == 0:
                continue
            numbers = chosen_calls(row, calls)
            plans += [f"{row.name} {number}" for number in numbers]
            places = sorted(place for place in counts.places if place.function == row.name)
            plans += [
                f"{row.name} 1 {place.offset:x}"
                for place in places
                if place.first not in numbers and not (row.name == UNCHECKED[0] and place.first <= UNCHECKED[1])
            ]
    return sorted(plans, key=lambda plan: not plan.endswith(" 1"))


def is_for_update(plan, known):
    """Whether a plan is worth another life, in which the program updates itself: what the first does not reach, and the
    files and the memory."""
    row = FAILURES[plan.split(" ")[0]]
    return row.name not in known or row.section in ("file", "memory") or row.name == "FindWindowW"


class Settings:
    """What the file can hold: for each key what it held before, and what the program has written without failures."""

    def __init__(self, start):
        self._start = start
        self._values = {key: {value} for key, value in start.items()}

    def learn_from(self, life):
        """What the file has held in a life without a failure."""
        for snapshot in (*life.snapshots, life.settings):
            for key, value in (snapshot or {}).items():
                self._values.setdefault(key, set()).add(value)

    def has_begun_with_start(self, settings):
        return any(key in (settings or {}) for key in self._start)

    def wrong(self, settings, more=()):
        """What of these settings is neither old nor new, nor a period that is one of `more`, in words."""
        if settings is None:
            return ["the settings file is gone or unreadable"]
        lost = [f"{key} is lost" for key in self._start if key not in settings]
        return lost + [f"{key} is {value!r}" for key, value in settings.items() if not self._is_valid(key, value, more)]

    def _is_valid(self, key, value, more):
        name = key[1]
        if key not in self._values:
            return False
        if name in NUMBERS:
            return bool(ANY_WHOLE_NUMBER.match(value))
        if name == "install_id":
            return bool(INSTALL_ID.match(value))
        return value in self._values[key] or value in SWITCHED.get(key, ()) or (name == PERIOD and value in more)


def judge(life, settings):
    """All that went wrong in one life."""
    found, function = list(life.findings), life.failure.split(" ")[0]
    # Where the former settings could not be copied they are kept, and the file begins anew.
    if not life.updates or settings.has_begun_with_start(life.settings):
        found += settings.wrong(life.settings, {DEFAULT_PERIOD} if function == READING else ())
    ends = FAILURES[function].ends if life.failure and life.counts.reached else frozenset()
    allowed = ({0} if life.was_told_to_end else set()) | ends
    if life.code not in allowed:
        found.append(f"it ended {'' if life.was_told_to_end else 'by itself '}with {life.code}")
    return found
