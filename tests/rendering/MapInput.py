"""Shapefiles as SVG documents, read by ourselves (ESRI, "Shapefile Technical Description")."""

import math
import struct

LINES = (3, 13, 23)
AREAS = (5, 15, 25)

# How trovan draws maps: a page of this size in its longer direction, with a margin around.
PAGE = 1000.0
MARGIN = 10.0
INK = {"stroke": "#4a5548", "vector-effect": "non-scaling-stroke"}
PAPER = "#e4ead8"


class Damaged(Exception):
    """A record does not fit into the file."""


class MapInput:
    def __init__(self, path):
        with open(path, "rb") as file:
            self.shapes = list(Shapes(file.read()))
        points = [point for _, parts in self.shapes for part in parts for point in part]
        if points:
            left, right = min(x for x, _ in points), max(x for x, _ in points)
            low, high = min(y for _, y in points), max(y for _, y in points)
            self.box = (left, low, right - left, high - low)

    def IsDrawable(self):
        """Whether there are areas and lines alone, with an extent."""
        kinds = {kind for kind, _ in self.shapes}
        return bool(kinds) and kinds <= set(LINES + AREAS) and min(self.box[2:]) > 0

    def PlaceOnPage(self, region):
        """The page is that of what the region and the map both cover."""
        points = [point for ring in region.rings for point in ring]
        left = max(self.box[0], min(x for x, _ in points))
        low = max(self.box[1], min(y for _, y in points))
        right = min(self.box[0] + self.box[2], max(x for x, _ in points))
        high = min(self.box[1] + self.box[3], max(y for _, y in points))
        self.scale = max(right - left, high - low) / (PAGE - 2 * MARGIN)
        self.origin = (left - MARGIN * self.scale, high + MARGIN * self.scale)
        self.natural = tuple(math.ceil(side / self.scale - 1e-6) + 2 * MARGIN
                             for side in (right - left, high - low))

    def Size(self, longer):
        scale = longer / max(self.natural)
        return tuple(max(1, round(side * scale)) for side in self.natural)

    def Document(self, content):
        return ('<svg xmlns="http://www.w3.org/2000/svg" width="%g" height="%g" '
                'viewBox="0 0 %g %g" fill-rule="evenodd">%s</svg>'
                % (self.natural + self.natural + (content,))).encode()

    def Clipped(self, region):
        clip = '<clipPath id="r"><path clip-rule="evenodd" d="%s"/></clipPath>' \
            % self.PathData(region.rings, True)
        drawn = "".join(self.Element(kind, parts) for kind, parts in self.shapes)
        return self.Document('%s<g clip-path="url(#r)"><g %s>%s</g></g>' % (
            clip, " ".join('%s="%s"' % item for item in INK.items() if item[0] == "stroke"), drawn))

    def Band(self, region, width):
        return self.Document('<path fill="none" stroke="black" stroke-linejoin="round" '
                             'stroke-width="%g" d="%s"/>'
                             % (width, self.PathData(region.rings, True)))

    def WidestStroke(self):
        return 0.0  # on the page; it is one pixel wide

    def Element(self, kind, parts):
        return '<path fill="%s" vector-effect="%s" d="%s"/>' % (
            PAPER if kind in AREAS else "none", INK["vector-effect"],
            self.PathData(parts, kind in AREAS))

    def PathData(self, parts, isClosed):
        texts = []
        for part in parts:
            places = (("%.6f,%.6f" % ((x - self.origin[0]) / self.scale,
                                      (self.origin[1] - y) / self.scale)) for x, y in part)
            texts.append("M" + " ".join(places) + ("Z" if isClosed else ""))
        return "".join(texts)


def Shapes(data):
    """The kind of each shape and its parts, lists of points; those without points left out."""
    place = 100
    while place + 12 <= len(data):
        words, = struct.unpack_from(">i", data, place + 4)
        kind, = struct.unpack_from("<i", data, place + 8)
        if words < 2 or place + 8 + 2 * words > len(data):
            raise Damaged(f"record of {words} words at byte {place}")
        content = data[place + 8:place + 8 + 2 * words]
        place += 8 + 2 * words
        if kind in LINES + AREAS:
            count, total = struct.unpack("<36xii", content[:44])
            starts = struct.unpack_from("<%di" % count, content, 44) + (total,)
            values = struct.unpack_from("<%dd" % (2 * total), content, 44 + 4 * count)
            points = list(zip(values[::2], values[1::2]))
            yield kind, [points[a:b] for a, b in zip(starts, starts[1:])]
        elif kind != 0:
            yield kind, []
