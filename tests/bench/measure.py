"""The cost of a running process: processor time to the nanosecond, memory."""

import os
import pathlib
import statistics


def stay_on_one_processor():
    """Pins this process and all that it starts from now on. Waking a process on another processor of a virtual machine
    costs more than the work to be measured, and whether that happens is up to the scheduler."""
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})


def cpu_seconds(pid):
    """The processor time of all current threads of the process."""
    total = 0
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        total += int((task / "schedstat").read_text(encoding="ascii").split()[0])
    return total / 1e9


def memory_kilobytes(pid):
    """Private memory (written by the process and not shared) and resident memory."""
    sizes = {}
    for line in pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii").splitlines()[1:]:
        field, size, _ = line.split()
        sizes[field] = int(size)
    return {"private": sizes["Private_Dirty:"], "resident": sizes["Rss:"]}


def median(values):
    return statistics.median(values)
