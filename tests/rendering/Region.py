"""The region that a drawing is clipped to: a star with a hole that is a star, too."""

import math


class Region:
    def __init__(self, box):
        """`box`: the left, the top, the width and the height of what the drawing covers."""
        left, top, width, height = box
        center = (left + 0.5 * width, top + 0.5 * height)
        self.rings = [
            Star(center, (0.49 * width, 0.49 * height), 7, 0.75, 0.3),
            Star((center[0] + 0.08 * width, center[1] - 0.1 * height),
                 (0.14 * width, 0.14 * height), 5, 0.6, 1.0)]

    def Wkt(self):
        rings = []
        for ring in self.rings:
            rings.append("(%s)" % ", ".join("%.17g %.17g" % p for p in ring + ring[:1]))
        return "POLYGON (%s)" % ", ".join(rings)

    def PathData(self):
        return " ".join("M" + " ".join("%.17g,%.17g" % p for p in ring) + "Z"
                        for ring in self.rings)


def Star(center, radius, tips, depth, turn):
    points = []
    for i in range(2 * tips):
        angle = turn + math.pi * i / tips
        reach = 1.0 if i % 2 == 0 else depth
        points.append((center[0] + radius[0] * reach * math.cos(angle),
                       center[1] + radius[1] * reach * math.sin(angle)))
    return points
