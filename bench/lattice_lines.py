"""What the report says of lattices."""

from ratios import Line, quotients

LARGEST_MEMORY = 64  # MiB


def array_lines(times):
    lines = []
    for type_name in ("double", "float"):
        for name, limit in (
            ("FilterInvalidNodes/clean", "ReadPass"),
            ("FilterOutOfRangeNodes/clean", "ReadPass"),
            ("IsEquallySpaced", "ReadPass"),
            ("MaxDeviationFromUniform", "ReadPass"),
            ("FilterInvalidNodes/bad", "ReadAndWritePass"),
            ("FilterOutOfRangeNodes/bad", "ReadAndWritePass"),
        ):
            passing = "a read" if limit == "ReadPass" else "read + write"
            what = f"{name.replace('/', ', ')}, {type_name}s, as long as {passing} pass"
            ratio = quotients(times[f"{name}/{type_name}"], times[f"{limit}/{type_name}"])
            lines.append(Line(what, ratio, "x", ("<=", 1.3)))
    return lines


def resequencer_lines(times):
    lines = []
    for work, what in (
        ("WriteComponents/bsq", "component rows written, band order"),
        ("WriteComponents/bil", "component rows written, line order"),
        ("ReadComponents/bsq", "component rows read, band order"),
        ("ReadComponents/bil", "component rows read, line order"),
    ):
        ours = times[f"{work}/ours"]
        naive = quotients(ours, times[f"{work}/naive"])
        typed = quotients(ours, times[f"{work}/typed"])
        lines.append(Line(f"{what}, as long as by hand", naive, "x", ("<=", 0.8)))
        lines.append(Line(f"{what}, as long as typed by hand", typed, "x"))
    # Rows of nodes need nothing that could be done better than by hand: no bars.
    for work, limit, what in (
        ("WriteRows", "WriteFile", "node rows written"),
        ("ReadRows", "ReadFile", "node rows read"),
    ):
        ours = times[f"{work}/ours"]
        naive = quotients(ours, times[f"{work}/naive"])
        whole = quotients(ours, times[limit])
        lines.append(Line(f"{what}, as long as by hand", naive, "x"))
        lines.append(Line(f"{what}, as long as the whole file", whole, "x"))
    return lines


def _times(runs, name):
    one = runs.get(name)
    return [one["cpu"], one["wall"]] if one else []


def convert_lines(result):
    runs = result["runs"]
    ours = _times(runs, "ours")
    copies = quotients(ours, _times(runs, "copies"))
    lines = [Line("lattice convert, as long as two plain copies", copies, "x", ("<=", 3))]
    for name, peer, bar in (
        ("hdf5", "HDF5", (">", 1)),
        ("gdal", "gdal_translate", (">", 1)),
        ("numpy", "NumPy", None),
    ):
        ratio = quotients(_times(runs, name), ours)
        lines.append(Line(f"lattice convert, as fast as {peer}", ratio, "x", bar))
    memory = runs["ours"]["memory"]
    lines.append(Line("lattice convert, memory", [memory], "MiB", ("<", LARGEST_MEMORY)))
    return lines + beyond_memory_lines(result)


def beyond_memory_lines(result):
    """By time only: mostly it is the disk that is waited for."""
    runs = result["beyond"] or {}
    what = f"convert in {result['beyond memory']} MiB"
    ours = runs.get("ours")
    copies = runs.get("copies")
    ratio = [None, ours["wall"] / copies["wall"]] if ours else []
    lines = [Line(f"{what}, as long as two plain copies", ratio, "x")]
    for name, peer, bar in (("numpy", "NumPy", (">", 1)), ("gdal", "gdal_translate", None)):
        one = runs.get(name, {})
        # A peer that was stopped would have taken longer still: its ratio is a lower limit.
        wall = one.get("wall", one.get("stopped"))
        lines.append(
            Line(
                f"{what}, as fast as {peer}" + (", stopped then" if "stopped" in one else ""),
                [None, wall / ours["wall"]] if wall else [],
                "x",
                bar,
                "killed: no memory" if "killed" in one else "not measured",
            )
        )
    memory = [ours["memory"]] if ours else []
    lines.append(Line(f"{what}, resident memory", memory, "MiB", ("<", LARGEST_MEMORY)))
    return lines
