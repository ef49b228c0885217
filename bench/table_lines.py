"""What the report says of attribute tables."""

from ratios import Line, quotients

LARGEST_MEMORY = 32  # MiB


def reading_lines(times):
    ours = times["EnumRecord/sequential"]
    raw = quotients(ours, times["RawRead"])
    lines = [Line("EnumRecord sequential, as long as a raw read", raw, "x", ("<", 3))]
    for order, bar in (
        ("sequential", (">=", 5)),
        ("backward", None),
        ("every_tenth", None),
        ("random", None),
    ):
        lines.append(
            Line(
                f"EnumRecord {order.replace('_', ' ')}, as fast as DBFReadTuple",
                quotients(times.get(f"DBFReadTuple/{order}"), times[f"EnumRecord/{order}"]),
                "x",
                bar,
            )
        )
    ogr = quotients(times.get("OgrFeatures"), ours)
    lines.append(Line("EnumRecord sequential, as fast as OGR features", ogr, "x"))
    return lines


def cat_lines(result):
    runs = result["runs"]
    lines = []
    for place in ("a file", "/dev/null"):
        pair = [runs.get(f"{program} to {place}") for program in ("ogr2ogr", "cat")]
        slow, fast = ([one["cpu"], one["wall"]] if one else [] for one in pair)
        what = f"table cat, as fast as ogr2ogr -f CSV, to {place}"
        lines.append(Line(what, quotients(slow, fast), "x", (">=", 3)))
    for name, memory in result["cat memory"].items():
        lines.append(Line(f"table cat, memory, {name}", [memory], "MiB", ("<", LARGEST_MEMORY)))
    peer = runs.get("ogr2ogr to a file")
    memory = [peer["memory"]] if peer else []
    lines.append(Line("ogr2ogr, memory, the first of these tables", memory, "MiB"))
    return lines
