"""Programs with little memory, the page cache included: in a control group of Linux."""

import os
import pathlib
import time
from contextlib import contextmanager


def _own_groups():
    """Yields the folder of this process's own group in each hierarchy that may limit memory, and
    the name of the limit there."""
    for line in pathlib.Path("/proc/self/cgroup").read_text().splitlines():
        _, controllers, path = line.split(":", 2)
        if "memory" in controllers.split(","):
            yield pathlib.Path("/sys/fs/cgroup/memory" + path), "memory.limit_in_bytes"
        elif controllers == "":
            yield pathlib.Path("/sys/fs/cgroup" + path), "memory.max"


def _remove(group):
    for _ in range(50):  # a process that has ended may count for a moment
        try:
            group.rmdir()
            return
        except OSError:
            time.sleep(0.1)
    print(f"cannot remove {group}; rmdir does, when nothing runs in it", flush=True)


def _limited_group(limit):
    """A group within that of this process, so that all limits that hold stay in force; or None."""
    for parent, name in _own_groups():
        group = parent / f"trovan-bench-{os.getpid()}"
        try:
            group.mkdir()
        except OSError:
            continue
        try:
            # A file that is not there: the hierarchy does not pass this controller on.
            with open(group / name, "r+") as file:
                file.write(str(limit))
            return group
        except OSError:
            _remove(group)
    return None


@contextmanager
def memory_limit(limit):
    """Gives the beginning of a command that runs the rest of it with `limit` bytes of memory, or
    None where that cannot be set up: it takes Linux and, mostly, root."""
    group = _limited_group(limit)
    if group is None:
        yield None
        return
    try:
        yield ["/bin/sh", "-c", 'echo $$ > "$0" && exec "$@"', group / "cgroup.procs"]
    finally:
        _remove(group)
