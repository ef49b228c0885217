"""What `trovan clip` writes looks like the drawing under an SVG clip path.

    RenderingTest.py --command TROVAN --data FOLDER --pictures FOLDER PART...

A part is a folder below the data folder. Both documents are drawn by librsvg and compared pixel by
pixel, but for a band along the edge of the region: there lines end across themselves, not along the
region. Pictures of differences go to the pictures' folder. Without parts the test tests itself.
"""

import argparse
import collections
import fnmatch
import os
import shutil
import subprocess
import sys
import unittest

SKIPPED = 77  # what CTest takes for "not run"
try:
    import numpy
except ImportError:
    print("Skipped: this Python has no NumPy (package python3-numpy)", sys.executable)
    sys.exit(SKIPPED)

sys.dont_write_bytecode = True  # the sources may be read-only, and stay clean
import Picture
from MapInput import Damaged, MapInput
from Region import Region
from SvgInput import SvgInput

LONGER_SIDE = 397  # pixels; prime, so that few edges fall between pixels
BAND = 2.0  # pixels on each side of the region's edge, besides half of the widest stroke
# The share of the pixels that may differ: corners of lines depend on how curves are flattened.
ALLOWED_SHARE = 1 / 2000

HERE = os.path.dirname(os.path.abspath(__file__))
Result = collections.namedtuple("Result", "count allowed compared picture")
options = None


def ReadExcluded():
    """The reasons by name or pattern."""
    excluded = {}
    with open(os.path.join(HERE, "Excluded.txt"), encoding="utf-8") as file:
        for line in file:
            name, _, reason = line.partition("|")
            if reason and not line.startswith("#"):
                excluded[name.strip()] = reason.strip()
    return excluded


def Save(name, content):
    path = os.path.join(options.pictures, name)
    with open(path, "wb") as file:
        file.write(content)
    return path


def Clip(path, region, output):
    subprocess.run([options.command, "clip", path, output, "--region", region.Wkt()],
                   capture_output=True, check=True, timeout=300)


def Compare(path, clipTo=Region):
    """Clips the drawing to a region, and compares with the drawing under a clip path."""
    name = os.path.relpath(path, options.data).replace(os.sep, "_")
    isMap = path.endswith(".shp")
    drawing = MapInput(path) if isMap else SvgInput(path)
    region = Region(drawing.box)
    if isMap:
        drawing.PlaceOnPage(region)
    size = drawing.Size(LONGER_SIDE)
    userUnits = max(drawing.natural) if isMap else drawing.box[2]
    pixel = userUnits / (max(size) if isMap else size[0])
    ours = os.path.join(options.pictures, name + ".ours.svg")
    Clip(path, clipTo(drawing.box), ours)
    reference = Save(name + ".reference.svg", drawing.Clipped(region))
    band = Save(name + ".band.svg",
                drawing.Band(region, drawing.WidestStroke() + 2 * BAND * pixel))
    try:
        expected, found, edge = (Picture.Draw(options.rsvg, document, size)
                                 for document in (reference, ours, band))
    finally:
        for document in (reference, ours, band):
            if not options.keep:
                os.remove(document)
    ignored = edge[:, :, 3] > 0
    differing = Picture.Differences(expected, found) & ~ignored
    allowed = int(differing.size * ALLOWED_SHARE)
    picture = os.path.join(options.pictures, name + ".png")
    if differing.sum() > allowed:
        Picture.WritePng(picture, Picture.SideBySide(expected, found, ignored, differing))
    elif os.path.exists(picture):
        os.remove(picture)
    return Result(int(differing.sum()), allowed, 1 - ignored.mean(), picture)


class Rendering(unittest.TestCase):
    def testClippedDrawingsLookAsUnderAClipPath(self):
        excluded, reasons, compared = ReadExcluded(), collections.Counter(), []
        for path in Drawings():
            if path.endswith(".shp") and not IsDrawableMap(path):
                reasons["maps: have places or patches, no extent, or damage"] += 1
                continue
            name = os.path.relpath(path, os.path.join(options.data, "svg")).replace(os.sep, "/")
            pattern = next((p for p in excluded if "*" in p and fnmatch.fnmatch(name, p)), name)
            reason = excluded.get(pattern)
            if reason:
                reasons[reason] += 1
            if pattern != name:
                continue
            with self.subTest(drawing=path):
                if reason:
                    self.assertFalse(LooksTheSame(path),
                                     "looks the same now: take it off Excluded.txt")
                    continue
                result = Compare(path)
                compared.append(result.compared)
                self.assertLessEqual(
                    result.count, result.allowed,
                    f"pixels differ: expected, found, and where: {result.picture}")
        print(len(compared), "drawings compared")
        for reason, count in reasons.most_common():
            print(f"{count:4} left out: {reason}")
        self.assertTrue(compared or reasons, "there are no drawings")


def LooksTheSame(path):
    try:
        result = Compare(path)
    except subprocess.CalledProcessError:
        return False
    return result.count <= result.allowed


def Drawings():
    for part in options.parts:
        for folder, _, names in sorted(os.walk(os.path.join(options.data, part))):
            for name in sorted(names):
                path = os.path.join(folder, name)
                if name.endswith((".svg", ".shp")):
                    yield path


def IsDrawableMap(path):
    try:
        return MapInput(path).IsDrawable()
    except Damaged:
        return False


class WithoutHole(Region):
    def __init__(self, box):
        super().__init__(box)
        del self.rings[1:]


class TheTestItself(unittest.TestCase):
    DRAWING = b"""<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 300 200" width="400"
  height="400" preserveAspectRatio="none"><rect width="300" height="200" fill="#8cf"/>
  <g transform="rotate(20 150 100)" stroke-width="6"><path stroke="#a00" fill="none"
  d="M20 40C150 0 150 200 280 160"/><ellipse cx="90" cy="120" rx="60" ry="30" fill="#080"/></g>
  </svg>"""

    def setUp(self):
        options.data = options.pictures
        self.path = Save("Itself.svg", self.DRAWING)

    def testAcceptsWhatIsTheSame(self):
        result = Compare(self.path)
        self.assertLessEqual(result.count, result.allowed, result.picture)
        self.assertGreater(result.compared, 0.5)

    def testSeesAMissingHole(self):
        result = Compare(self.path, clipTo=WithoutHole)
        self.assertGreater(result.count, 10 * result.allowed)
        self.assertTrue(os.path.exists(result.picture))

    def testReadsWhatItWrites(self):
        picture = numpy.arange(5 * 7 * 3, dtype=numpy.uint8).reshape(5, 7, 3)
        path = os.path.join(options.pictures, "Written.png")
        Picture.WritePng(path, picture)
        with open(path, "rb") as file:
            read = Picture.DecodePng(file.read())
        self.assertTrue((read[:, :, :3] == picture).all())
        self.assertTrue((read[:, :, 3] == 255).all())

    def testUndoesEachFilterOfPng(self):
        rows = numpy.array([[1, 10, 20, 30, 1, 1, 1], [2, 5, 5, 5, 5, 5, 5],
                            [3, 10, 10, 10, 10, 10, 10], [4, 1, 2, 3, 4, 5, 6],
                            [0, 9, 8, 7, 6, 5, 4]], dtype=numpy.uint8)
        self.assertEqual(Picture.Unfiltered(rows, 3).tolist(), [
            [10, 20, 30, 11, 21, 31], [15, 25, 35, 16, 26, 36], [17, 22, 27, 26, 34, 41],
            [18, 24, 30, 30, 39, 47], [9, 8, 7, 6, 5, 4]])


def Skip(why):
    print("Skipped:", why)
    sys.exit(SKIPPED)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--command", required=True)
    parser.add_argument("--data", required=True)
    parser.add_argument("--pictures", required=True)
    parser.add_argument("--keep", action="store_true", help="keep the documents")
    parser.add_argument("parts", nargs="*")
    options = parser.parse_args()
    options.rsvg = shutil.which("rsvg-convert")
    if options.rsvg is None:
        Skip("there is no rsvg-convert (package librsvg2-bin)")
    for part in options.parts:
        if not os.path.isdir(os.path.join(options.data, part)):
            Skip(f"there is no folder {os.path.join(options.data, part)}: set the CMake variable "
                 "TROVAN_TEST_DATA to a folder that has it")
    os.makedirs(options.pictures, exist_ok=True)
    case = Rendering if options.parts else TheTestItself
    suite = unittest.defaultTestLoader.loadTestsFromTestCase(case)
    sys.exit(0 if unittest.TextTestRunner().run(suite).wasSuccessful() else 1)
