"""Runs whole programs and tells what they cost."""

import os
import pathlib
import statistics
import subprocess
import sys
import threading
import time
from signal import SIGKILL

TIME = "/usr/bin/time"


class Failed(Exception):
    """A program ended with another code than 0."""

    def __init__(self, command, code):
        super().__init__(f"{command[0]} ended with code {code}")
        self.code = code


def require_time():
    if not os.access(TIME, os.X_OK):
        sys.exit(f"{pathlib.Path(sys.argv[0]).name}: {TIME} is missing: install the package time")


def run(command, output, scratch, before=(), patience=None):
    """Runs a program. Returns its times in seconds and its peak memory in MiB.

    `before` is a command that ends by becoming the one that is appended to it. After `patience`
    seconds the program is killed, and Failed raised.
    """
    # A child of Python counts Python's own memory; one of this small program does not.
    note = scratch / "memory"
    with open(output, "wb") as out:
        start = time.perf_counter()
        process = subprocess.Popen(
            [*before, TIME, "-f", "%M", "-o", note, *command], stdout=out, start_new_session=True
        )
        status, usage = _wait(process, patience)
        wall = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise Failed(command, process.returncode)
    memory = int(note.read_text().split()[-1]) / 1024
    return {"cpu": usage.ru_utime + usage.ru_stime, "wall": wall, "memory": memory}


def _wait(process, patience):
    """Waits for the leader of a process group, and kills the group when that takes too long or
    something is raised, such as by Ctrl-C."""
    killer = threading.Timer(patience or threading.TIMEOUT_MAX, os.killpg, (process.pid, SIGKILL))
    killer.daemon = True
    killer.start()
    try:
        _, status, usage = os.wait4(process.pid, 0)
        return status, usage
    except BaseException:
        os.killpg(process.pid, SIGKILL)
        process.wait()
        raise
    finally:
        killer.cancel()


def medians(runs):
    return {key: statistics.median(one[key] for one in runs) for key in ("cpu", "wall")} | {
        "memory": max(one["memory"] for one in runs)
    }


def rounds(works, count):
    """Each round runs all, so that whatever else the machine does meets all alike."""
    runs = {name: [] for name in works}
    for _ in range(count):
        for name, work in works.items():
            runs[name].append(work())
    return {name: medians(of_one) for name, of_one in runs.items()}


def warm(path):
    with open(path, "rb") as file:
        while file.read(1 << 20):
            pass


def chill(path):
    """Puts a file on the disk and out of the page cache."""
    with open(path, "rb") as file:
        os.fsync(file.fileno())
        os.posix_fadvise(file.fileno(), 0, 0, os.POSIX_FADV_DONTNEED)
