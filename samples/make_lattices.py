#!/usr/bin/env python3
"""Writes the sample lattices of this folder. They are of our own making and may be used freely.

    python3 samples/make_lattices.py            writes them beside this script
    python3 samples/make_lattices.py FOLDER     writes them elsewhere

The output is the same at each run:

    island     heights of an island in the sea, an ESRI ASCII grid; a lake was not surveyed
    current    a stream of water in three components on four planes, an ENVI raster: one band after
               the other, top row first, big-endian; a few values are no numbers
    tank       temperatures in a tank, a VTK rectilinear grid with equally spaced axes
    basin      depths of a round basin, a VTK structured grid: each node has its own place
"""

import math
import pathlib
import struct
import sys

SEA = -9999


def hill(x, y, centre_x, centre_y, height, width):
    return height * math.exp(-((x - centre_x) ** 2 + (y - centre_y) ** 2) / width**2)


def island_height(x, y):
    """Metres above the sea at x, y from 0 to 1."""
    ridges = 90 * math.sin(19 * x + 6 * y) * math.sin(15 * y - 5 * x) + 30 * math.sin(43 * x * y + 9 * x)
    mountains = hill(x, y, 0.38, 0.62, 900, 0.17) + hill(x, y, 0.66, 0.40, 620, 0.2)
    return mountains + hill(x, y, 0.5, 0.5, 260, 0.33) + ridges - 160


def island(columns=144, rows=108):
    """Top row first. Heights in whole metres; -9999 where nobody measured."""
    lines = [f"ncols {columns}", f"nrows {rows}", "xllcorner 412000", "yllcorner 5633000",
             "cellsize 50", f"NODATA_value {SEA}"]
    for row in range(rows):
        y = 1 - (row + 0.5) / rows
        heights = []
        for column in range(columns):
            x = (column + 0.5) / columns
            height = round(island_height(x, y))
            in_lake = (x - 0.55) ** 2 + (1.3 * (y - 0.53)) ** 2 < 0.0022
            heights.append(str(SEA if in_lake else max(height, 0)))
        lines.append(" ".join(heights))
    return ("\n".join(lines) + "\n").encode()


def current(columns=60, rows=45, planes=4):
    """The header and the values: band = plane * 3 + component."""
    bands = []
    for plane in range(planes):
        for component in range(3):
            values = []
            for row in range(rows):
                y = 1 - row / (rows - 1)
                for column in range(columns):
                    x = column / (columns - 1)
                    speed = math.exp(-((y - 0.5 - 0.2 * math.sin(6 * x)) ** 2) / 0.02) / (plane + 1)
                    turn = 1.2 * math.cos(6 * x)
                    vector = (speed * math.cos(turn), speed * math.sin(turn), -0.02 * plane * speed)
                    hole = (column - 40) ** 2 + (row - 12) ** 2 < 10 and plane == 0
                    values.append(math.nan if hole else round(vector[component], 4) + 0.0)
            bands.append(struct.pack(f">{len(values)}f", *values))
    names = ", ".join(f"{name} at {5 * plane} m" for plane in range(planes)
                      for name in ("east", "north", "up"))
    header = "\n".join([
        "ENVI", "description = {Surface current}", f"samples = {columns}", f"lines = {rows}",
        f"bands = {planes * 3}", "header offset = 0", "file type = ENVI Standard", "data type = 4",
        "interleave = bsq", "byte order = 1",
        "map info = {Arbitrary, 1, 1, 9.975, 57.825, 0.05, 0.05, 0, North}",
        f"band names = {{{names}}}", ""])
    return header.encode(), b"".join(bands)


def tank(columns=9, rows=7, planes=5):
    lines = ["# vtk DataFile Version 3.0", "Temperatures in a tank", "ASCII",
             "DATASET RECTILINEAR_GRID", f"DIMENSIONS {columns} {rows} {planes}"]
    for name, count, step in (("X", columns, 0.5), ("Y", rows, 0.25), ("Z", planes, 1)):
        lines += [f"{name}_COORDINATES {count} float", " ".join(str(i * step) for i in range(count))]
    lines += [f"POINT_DATA {columns * rows * planes}", "SCALARS temperature float 1",
              "LOOKUP_TABLE default"]
    for z in range(planes):
        for y in range(rows):
            row = (12 + 3 * z + 6 * math.sin(math.pi * x / (columns - 1)) - y / 2
                   for x in range(columns))
            lines.append(" ".join(f"{value:.2f}" for value in row))
    return ("\n".join(lines) + "\n").encode()


def basin(around=25, outward=9):
    places, depths = [], []
    for ring in range(outward):
        radius = 2 + ring
        for step in range(around):
            angle = 2 * math.pi * step / (around - 1)
            places += [round(radius * math.cos(angle), 6), round(radius * math.sin(angle), 6), 0.0]
            depths.append(round(30 * (1 - (radius / 11) ** 2)))
    head = (f"# vtk DataFile Version 3.0\nDepths of a round basin\nBINARY\nDATASET STRUCTURED_GRID\n"
            f"DIMENSIONS {around} {outward} 1\nPOINTS {len(depths)} double\n")
    values = f"\nPOINT_DATA {len(depths)}\nSCALARS depth short 1\nLOOKUP_TABLE default\n"
    return (head.encode() + struct.pack(f">{len(places)}d", *places) + values.encode() +
            struct.pack(f">{len(depths)}h", *depths) + b"\n")


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent)
    header, values = current()
    for name, content in {"island.asc": island(), "current.hdr": header, "current.img": values,
                          "tank.vtk": tank(), "basin.vtk": basin()}.items():
        (folder / name).write_bytes(content)


if __name__ == "__main__":
    main()
