#!/usr/bin/env python3
"""Writes the sample maps of this folder. They are of our own making and may be used freely.

    python3 samples/make_maps.py            writes them beside this script
    python3 samples/make_maps.py FOLDER     writes them elsewhere

The output is the same at each run. Coordinates are metres on a plane, y to the north:

    archipelago   islands with lakes, hundreds of skerries, roads and towns, as GeoJSON
    fjord         a region to clip it to, with a ragged edge and a hole
"""

import json
import math
import pathlib
import random
import sys

SEED = 20260314
FIRST = ["Gran", "Ulv", "Horn", "Sund", "Lang", "Stor", "Mid", "Ost", "Vest", "Nor", "Raud", "Kval"]
SECOND = ["øya", "holm", "vik", "nes", "sund", "berg", "havn", "sand"]


def ring(rng, x, y, radius, points, roughness):
    """A closed, counter-clockwise ring: a circle with waves of random height and phase."""
    waves = [(k, rng.gauss(0, roughness / k), rng.uniform(0, 2 * math.pi)) for k in range(2, 24)]
    corners = []
    for i in range(points):
        angle = 2 * math.pi * i / points
        r = radius * max(0.25, 1 + sum(a * math.sin(k * angle + p) for k, a, p in waves))
        corners.append([round(x + r * math.cos(angle)), round(y + r * math.sin(angle))])
    return corners + corners[:1]


def feature(kind, name, geometry_type, coordinates):
    properties = {"kind": kind, "name": name} if name else {"kind": kind}
    return {"type": "Feature", "properties": properties,
            "geometry": {"type": geometry_type, "coordinates": coordinates}}


def road(rng, start, end, steps=24):
    """A line that wanders a little."""
    bow = rng.uniform(-0.2, 0.2)
    points = []
    for i in range(steps + 1):
        t = i / steps
        sway = bow * math.sin(math.pi * t) + 0.02 * math.sin(9 * t + bow)
        points.append([round(start[0] + t * (end[0] - start[0]) - sway * (end[1] - start[1])),
                       round(start[1] + t * (end[1] - start[1]) + sway * (end[0] - start[0]))])
    return points


def archipelago():
    rng = random.Random(SEED)
    names = [a + b for b in SECOND for a in FIRST]
    rng.shuffle(names)
    land, roads, towns, places = [], [], [], []
    while len(places) < 13:
        x, y, radius = rng.uniform(0, 60000), rng.uniform(0, 40000), rng.uniform(2500, 6500)
        if all(math.hypot(x - a, y - b) > 1.3 * (radius + r) for a, b, r in places):
            places.append((x, y, radius))
    for x, y, radius in places:
        lake = ring(rng, x, y, radius * 0.14, 36, 0.2)[::-1]
        coast = ring(rng, x, y, radius, 220, 0.22)
        land.append(feature("island", names.pop(), "Polygon", [coast, lake]))
        stops = [(x + 0.55 * radius * math.cos(a), y + 0.55 * radius * math.sin(a))
                 for a in (rng.uniform(0, 2), rng.uniform(2, 4), rng.uniform(4, 6))]
        for i, stop in enumerate(stops):
            towns.append(feature("town", names.pop(), "Point", [round(v) for v in stop]))
            roads.append(feature("road", None, "LineString", road(rng, stop, stops[i - 1])))
    for _ in range(320):
        x, y, radius = rng.choice(places)
        angle, distance = rng.uniform(0, 2 * math.pi), radius * rng.uniform(1.25, 1.8)
        centre = (x + distance * math.cos(angle), y + distance * math.sin(angle))
        if all(math.hypot(centre[0] - a, centre[1] - b) > 1.2 * r for a, b, r in places):
            land.append(feature("skerry", None, "Polygon",
                                [ring(rng, *centre, rng.uniform(60, 420), 14, 0.25)]))
    return {"type": "FeatureCollection", "features": land + roads + towns}


def fjord():
    rng = random.Random(SEED + 1)
    return feature("region", "Fjord", "Polygon",
                   [ring(rng, 30000, 20000, 17000, 700, 0.12),
                    ring(rng, 34000, 18000, 3000, 90, 0.1)[::-1]])


def write(path, collection):
    """One feature a line."""
    if collection["type"] == "Feature":
        text = json.dumps(collection, ensure_ascii=False, separators=(",", ":"))
    else:
        lines = [json.dumps(f, ensure_ascii=False, separators=(",", ":"))
                 for f in collection["features"]]
        text = '{"type":"FeatureCollection","features":[\n' + ",\n".join(lines) + "\n]}"
    path.write_text(text + "\n", encoding="utf-8")


if __name__ == "__main__":
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent)
    write(folder / "archipelago.geojson", archipelago())
    write(folder / "fjord.geojson", fjord())
