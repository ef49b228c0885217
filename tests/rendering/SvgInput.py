"""An SVG document as it is, and drawn under a clip path."""

import math
import re
import xml.etree.ElementTree as ElementTree

SVG = "http://www.w3.org/2000/svg"
PIXELS = {"": 1.0, "px": 1.0, "pt": 4 / 3, "pc": 16.0, "mm": 96 / 25.4, "cm": 96 / 2.54,
          "in": 96.0}

ElementTree.register_namespace("", SVG)
ElementTree.register_namespace("xlink", "http://www.w3.org/1999/xlink")


class Unplaced(Exception):
    """The document does not tell the place or the size of its page."""


def Name(element):
    return element.tag.rpartition("}")[2] if isinstance(element.tag, str) else ""


def Property(element, name):
    """What the attributes of the element say, without style sheets."""
    found = re.search(rf"(?:^|;)\s*{name}\s*:\s*([^;]+)", element.get("style", ""))
    return found.group(1).strip() if found else element.get(name)


def Pixels(text):
    found = re.fullmatch(r"\s*([-+]?[\d.]+(?:[eE][-+]?\d+)?)\s*([a-z]*)\s*", text or "")
    return float(found.group(1)) * PIXELS[found.group(2)] if found and found.group(2) in PIXELS \
        else None


class SvgInput:
    def __init__(self, path):
        self.root = ElementTree.parse(path).getroot()
        width, height = Pixels(self.root.get("width")), Pixels(self.root.get("height"))
        numbers = [float(n) for n in re.split(r"[\s,]+", self.root.get("viewBox", "").strip())
                   if n]
        if len(numbers) == 4 and numbers[2] > 0 and numbers[3] > 0:
            self.box = tuple(numbers)
        elif width and height:
            self.box = (0.0, 0.0, width, height)
        else:
            raise Unplaced(path)
        # How large it wants to be drawn.
        self.natural = (width or self.box[2], height or self.box[3])

    def Size(self, longer):
        """The pixels of a picture that has so many in its longer direction."""
        scale = longer / max(self.natural)
        return tuple(max(1, round(side * scale)) for side in self.natural)

    def WidestStroke(self):
        """In user units of the page, or rather more."""
        return Widest(self.root, 1.0, 0.0)

    def Frame(self):
        """An empty document with the page of this one."""
        frame = ElementTree.Element(f"{{{SVG}}}svg")
        for name in ("width", "height", "preserveAspectRatio"):
            if name in self.root.attrib:
                frame.set(name, self.root.get(name))
        frame.set("viewBox", " ".join("%.17g" % n for n in self.box))
        return frame

    def Clipped(self, region):
        frame = self.Frame()
        clip = ElementTree.SubElement(frame, f"{{{SVG}}}clipPath", {"id": "the-region"})
        ElementTree.SubElement(clip, f"{{{SVG}}}path",
                               {"d": region.PathData(), "clip-rule": "evenodd"})
        group = ElementTree.SubElement(frame, f"{{{SVG}}}g", {"clip-path": "url(#the-region)"})
        group.append(self.Nested())
        return ElementTree.tostring(frame)

    def Nested(self):
        """The root as an element of a page with the same user units."""
        nested = ElementTree.Element(self.root.tag, dict(self.root.attrib))
        nested.text = self.root.text
        nested.extend(self.root)
        for name, value in zip(("x", "y", "width", "height"), self.box):
            nested.set(name, "%.17g" % value)
        nested.set("viewBox", " ".join("%.17g" % n for n in self.box))
        nested.set("overflow", "visible")
        return nested

    def Band(self, region, width):
        """The edge of the region as a line of this width in user units."""
        frame = self.Frame()
        ElementTree.SubElement(frame, f"{{{SVG}}}path", {
            "d": region.PathData(), "fill": "none", "stroke": "black", "stroke-linejoin": "round",
            "stroke-width": "%.17g" % width})
        return ElementTree.tostring(frame)


def Widest(element, scale, width):
    scale *= Scale(element.get("transform", ""))
    stated = Property(element, "stroke-width")
    if stated:
        number = re.match(r"[-+]?[\d.]+(?:[eE][-+]?\d+)?", stated)
        width = abs(float(number.group())) if number else width
        # Parts of a page that tests use; wider than it is does no harm.
        width *= 3.0 if stated.endswith("%") else PIXELS.get(stated[len(number.group()):], 16.0) \
            if number else 1.0
    stroke = Property(element, "stroke")
    if stroke and stroke != "none" and not stated:
        width = max(width, 1.0)
    return max([width * scale] + [Widest(child, scale, width) for child in element])


def Scale(transform):
    scale = 1.0
    for kind, text in re.findall(r"(\w+)\s*\(([^)]*)\)", transform):
        n = [float(x) for x in re.findall(r"[-+]?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?", text)]
        if kind == "scale" and n:
            scale *= max(abs(x) for x in n[:2])
        elif kind == "matrix" and len(n) == 6:
            scale *= max(math.hypot(n[0], n[1]), math.hypot(n[2], n[3]))
    return scale
