"""Lines of the report: ratios and their bars."""

import json
import operator
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile
from dataclasses import dataclass

COMPARISONS = {
    ">=": operator.ge,
    ">": operator.gt,
    "<=": operator.le,
    "<": operator.lt,
}


@dataclass
class Line:
    what: str
    # Numbers for the columns, CPU time and time, or memory; None where a column has no meaning.
    values: list
    unit: str
    bar: tuple | None = None  # such as (">=", 3)
    missing: str = "not measured"  # what stands there without values

    def holds(self):
        """None: there is no bar, or nothing was measured. Each column has to keep the bar."""
        if not self.values or self.bar is None:
            return None
        comparison, limit = self.bar
        numbers = [value for value in self.values if value is not None]
        return all(COMPARISONS[comparison](value, limit) for value in numbers)

    def text(self):
        columns = "".join(
            f"{'':12}" if value is None else f"{value:8.2f} {self.unit:3}" for value in self.values
        )
        bar = f"{self.bar[0]} {self.bar[1]:g} {self.unit}" if self.bar else ""
        verdict = {None: "", True: "holds", False: "DOES NOT HOLD"}[self.holds()]
        return f"{self.what:66}{columns or self.missing:26}{bar:11}{verdict}".rstrip()


def quotients(slow, fast):
    """How many times as long `slow` takes, by CPU time and by time; nothing if one is missing."""
    return [s / f for s, f in zip(slow, fast)] if slow and fast else []


def benchmark_times(program, repetitions, **settings):
    """Runs the benchmarks of one program, in turns. Returns the medians of their times by name.

    Those that count their shapes have their times for one shape: slow peers get fewer of them.
    """
    with tempfile.TemporaryDirectory(prefix="trovan-bench-") as folder:
        out = pathlib.Path(folder) / "times.json"
        run = subprocess.run(
            [
                program,
                "--benchmark_enable_random_interleaving=true",
                "--benchmark_min_time=0.1",
                f"--benchmark_repetitions={repetitions}",
                f"--benchmark_out={out}",
                "--benchmark_out_format=json",
            ],
            env=os.environ | settings,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.PIPE,
            text=True,
        )
        if run.returncode != 0:
            sys.exit(f"report: {program} failed:\n{run.stderr}")
        return _medians(json.loads(out.read_text())["benchmarks"])


def _medians(runs):
    by_name = {}
    for run in runs:
        if run.get("error_occurred"):
            sys.exit(f"report: {run['name']}: {run['error_message']}")
        if run["run_type"] == "iteration":
            name = re.sub(r"^BM_|/(iterations|repeats):\d+", "", run["run_name"])
            by_name.setdefault(name, []).append(run)
    return {
        name: [
            statistics.median(run[key] / run.get("shapes", 1) for run in of_one)
            for key in ("cpu_time", "real_time")
        ]
        for name, of_one in by_name.items()
    }
