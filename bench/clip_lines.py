"""What the report says of clipping."""

from ratios import Line, quotients

# How many times as fast as GEOS, whose geometries are prepared.
GEOS_BARS = {
    ("Polygons", "coast"): (">=", 20),
    ("Polygons", "star"): (">=", 5),
    ("Polylines", "coast"): (">=", 80),
    ("Markers", "coast"): (">=", 6),
}
PEERS = {
    "geos": "GEOS, prepared",
    "clipbyrect": "GEOSClipByRect",
    "clipper": "Clipper alone",
    "boost": "Boost.Geometry",
}
# On rectangles, polygons are not to be slower than what GEOS has for just these.
OTHER_BARS = {("Polygons", "rectangle", "clipbyrect"): (">=", 1)}


def _bar(shapes, region, peer):
    if peer == "geos":
        return GEOS_BARS.get((shapes, region))
    return OTHER_BARS.get((shapes, region, peer))


def _peers_of(shapes, region):
    yield "geos"
    if region == "rectangle" and shapes != "Markers":
        yield "clipbyrect"
    if shapes in ("Polygons", "Large"):
        yield "clipper"
    if shapes == "Polygons":
        yield "boost"


def clip_lines(times):
    lines = []
    for region in ("rectangle", "star", "coast"):
        for shapes in ("Polygons", "Polylines", "Markers", "Large"):
            ours = times[f"{shapes}/{region}/ours"]
            for peer in _peers_of(shapes, region):
                what = f"{shapes} in the {region}, times as fast as {PEERS[peer]}"
                ratio = quotients(times.get(f"{shapes}/{region}/{peer}"), ours)
                lines.append(Line(what, ratio, "x", _bar(shapes, region, peer)))
    for region in ("rectangle", "star", "coast"):
        for shapes in ("Polygons", "Polylines"):
            what = f"{shapes} in the {region}, as long as a copy of their points"
            ratio = quotients(
                times[f"{shapes}/{region}/ours"], times[f"Copy{shapes}/{region}/ours"]
            )
            lines.append(Line(what, ratio, "x"))
    for region in ("rectangle", "star", "coast"):
        for shapes in ("Polygons", "Polylines", "Markers"):
            what = f"{shapes} in the {region} by the filter, as long as the calls"
            ratio = quotients(
                times[f"{shapes}/{region}/filter"], times[f"{shapes}/{region}/calls"]
            )
            lines.append(Line(what, ratio, "x", ("<=", 2)))
    return lines
