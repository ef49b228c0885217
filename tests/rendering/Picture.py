"""Pictures: drawn by rsvg-convert, read from PNG, compared, written to PNG."""

import struct
import subprocess
import zlib

import numpy

# How much of 255 two pixels may differ in a channel and still look the same.
SAMPLE_TOLERANCE = 48


def Draw(program, path, size):
    """The picture of an SVG document as premultiplied RGBA, an array of rows of pixels."""
    width, height = size
    png = subprocess.run(
        [program, "--unlimited", f"--width={width}", f"--height={height}", path],
        check=True, capture_output=True, timeout=120).stdout
    return Premultiplied(DecodePng(png))


def Premultiplied(picture):
    alpha = picture[:, :, 3:4].astype(numpy.uint16)
    colors = (picture[:, :, :3] * alpha + 127) // 255
    return numpy.concatenate([colors, alpha], axis=2).astype(numpy.int16)


def DecodePng(png):
    """A PNG of 8 bits a sample, RGB or RGBA, without interlacing: what cairo writes."""
    assert png[:8] == b"\x89PNG\r\n\x1a\n", "this is no PNG"
    place, packed = 8, b""
    while place < len(png):
        length, kind = struct.unpack(">I4s", png[place:place + 8])
        content = png[place + 8:place + 8 + length]
        if kind == b"IHDR":
            width, height, bits, color, _, _, interlaced = struct.unpack(">IIBBBBB", content)
            assert bits == 8 and color in (2, 6) and not interlaced, "an unknown kind of PNG"
        elif kind == b"IDAT":
            packed += content
        place += 12 + length
    samples = 4 if color == 6 else 3
    rows = numpy.frombuffer(zlib.decompress(packed), dtype=numpy.uint8)
    rows = Unfiltered(rows.reshape(height, 1 + width * samples), samples)
    picture = rows.reshape(height, width, samples)
    if samples == 3:
        opaque = numpy.full((height, width, 1), 255, dtype=numpy.uint8)
        picture = numpy.concatenate([picture, opaque], axis=2)
    return picture


def Unfiltered(rows, samples):
    """Undoes the filters of PNG (RFC 2083, "Filter Algorithms"): each row names its own."""
    result = numpy.zeros((rows.shape[0] + 1, rows.shape[1] - 1), dtype=numpy.uint8)
    for y, row in enumerate(rows):
        kind, line, above = row[0], row[1:], result[y]
        if kind == 0:
            result[y + 1] = line
        elif kind == 1:
            pixels = line.reshape(-1, samples)
            result[y + 1] = numpy.cumsum(pixels, axis=0, dtype=numpy.uint8).reshape(-1)
        elif kind == 2:
            result[y + 1] = line + above
        else:
            result[y + 1] = UnfilterByNeighbours(kind, line.tolist(), above.tolist(), samples)
    return result[1:]


def UnfilterByNeighbours(kind, line, above, samples):
    for x, value in enumerate(line):
        left, corner = (line[x - samples], above[x - samples]) if x >= samples else (0, 0)
        up = above[x]
        if kind == 3:
            guess = (left + up) // 2
        else:
            a, b, c = abs(up - corner), abs(left - corner), abs(left + up - 2 * corner)
            guess = left if a <= b and a <= c else up if b <= c else corner
        line[x] = (value + guess) & 255
    return line


def Differences(picture, other):
    """Where no pixel around the same place of the other looks as this one does, either way."""
    return Missing(picture, other) | Missing(other, picture)


def Missing(picture, other):
    height, width = picture.shape[:2]
    padded = numpy.pad(other, ((1, 1), (1, 1), (0, 0)), mode="edge")
    missing = numpy.ones((height, width), dtype=bool)
    for y in range(3):
        for x in range(3):
            apart = numpy.abs(picture - padded[y:y + height, x:x + width]).max(axis=2)
            missing &= apart > SAMPLE_TOLERANCE
    return missing


def WritePng(path, picture):
    """Writes an array of rows of RGB pixels."""
    height, width = picture.shape[:2]
    rows = numpy.zeros((height, 1 + width * 3), dtype=numpy.uint8)
    rows[:, 1:] = picture.reshape(height, width * 3)
    chunks = [(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)),
              (b"IDAT", zlib.compress(rows.tobytes())), (b"IEND", b"")]
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n")
        for kind, content in chunks:
            file.write(struct.pack(">I", len(content)) + kind + content
                       + struct.pack(">I", zlib.crc32(kind + content)))


def OnWhite(picture):
    return numpy.clip(picture[:, :, :3] + (255 - picture[:, :, 3:4]), 0, 255)


def SideBySide(expected, found, ignored, differing):
    """What it should be, what it is, and where they differ: red; the ignored band is grey."""
    map_ = numpy.full(expected.shape[:2] + (3,), 255)
    map_[ignored] = (220, 220, 220)
    map_[differing] = (255, 0, 0)
    rule = numpy.zeros((expected.shape[0], 2, 3))
    return numpy.concatenate([OnWhite(expected), rule, OnWhite(found), rule, map_],
                             axis=1).astype(numpy.uint8)
