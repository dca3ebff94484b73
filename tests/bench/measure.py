"""What a running process has cost: processor time to the nanosecond, memory, threads; and of Wine's server too."""

import os
import pathlib
import statistics


def stay_on_one_processor():
    """For this process and all that it starts from now on. Waking a process on another processor of a virtual machine
    costs more than the work that is to be measured, and whether that happens is up to the scheduler."""
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})


def cpu_seconds(pid):
    """The processor time of all threads that the process has now."""
    total = 0
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        total += int((task / "schedstat").read_text(encoding="ascii").split()[0])
    return total / 1e9


def memory_kilobytes(pid):
    """Private and resident memory."""
    sizes = {"private": 0, "resident": 0}
    for line in pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii").splitlines():
        field, *words = line.split()
        if field.startswith("Private_"):
            sizes["private"] += int(words[0])
        elif field == "Rss:":
            sizes["resident"] = int(words[0])
    return sizes


def thread_count(pid):
    return len(os.listdir(f"/proc/{pid}/task"))


def wineserver(prefix):
    """The process id of the server of a prefix; its working folder is named after the prefix's inode."""
    status = os.stat(prefix)
    name = f"server-{status.st_dev:x}-{status.st_ino:x}"
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if os.readlink(process / "cwd").endswith(name) and "wineserver" in (process / "comm").read_text():
                return int(process.name)
        except OSError:
            continue  # it ended meanwhile, or belongs to somebody else
    raise RuntimeError(f"no Wine server in {name}")


def median(values):
    return statistics.median(values)
