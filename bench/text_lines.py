"""What the report says of delimited text."""

from ratios import Line, quotients


def tokenizer_lines(times):
    lines = []
    for kind, way in (("plain", "without quotes"), ("quotes", "with quotes")):
        ours = times[f"ParseText/{kind}"]
        for peer, name, bar in (
            ("GetlineStrtok", "getline + strtok", (">=", 1)),
            ("Libcsv", "libcsv", (">", 1)),
        ):
            what = f"Parse(string) {way}, as fast as {name}"
            lines.append(Line(what, quotients(times.get(peer), ours), "x", bar))
        raw = quotients(ours, times["ReadText"])
        lines.append(Line(f"Parse(string) {way}, as long as reading the bytes", raw, "x"))
    for between in ("commas", "blanks"):
        ratio = quotients(
            times[f"GetlineStrtokStrtod/{between}"], times[f"ParseNumbers/{between}"]
        )
        what = f"Parse(double) between {between}, as fast as getline + strtok + strtod"
        lines.append(Line(what, ratio, "x", (">=", 2)))
    return lines
