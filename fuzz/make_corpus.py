#!/usr/bin/env python3
"""Makes the seeds of the fuzzers: corpus/<harness>/<name>, small files of each kind.

Run it after a change here and commit what it makes; it replaces the files that it names.
"""

import base64
import pathlib
import struct
import zlib

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"


def table(fields, records, *, version=0x03, language=0, back_link=b"", count=None,
          header_length=None, end=b"\x1a"):
    """The bytes of a table. `fields` are (name, type, length); `records` bytes without their flag."""
    descriptors = b"".join(
        struct.pack("<11sc4xB15x", name, kind, length) for name, kind, length in fields)
    head = descriptors + b"\x0d" + back_link
    width = 1 + sum(length for _, _, length in fields)
    header = struct.pack(
        "<B3BIHH17xB2x", version, 124, 2, 29,
        len(records) if count is None else count,
        32 + len(head) if header_length is None else header_length,
        width, language)
    return header + head + b"".join(b" " + r.ljust(width - 1) for r in records) + end


def fpt(texts, block=64):
    """A memo file as FoxPro lays it out, its first text in block 1."""
    blocks = [struct.pack(">IHH", len(texts) + 1, 0, block).ljust(block, b"\0")]
    blocks += [struct.pack(">II", 1, len(t)) + t for t in texts]
    return b"".join(b.ljust(-(-len(b) // block) * block, b"\0") for b in blocks)


def dbt(texts, block=512):
    """A memo file as dBASE IV lays it out, its first text in block 1."""
    blocks = [struct.pack("<I", len(texts) + 1).ljust(block, b"\0")]
    blocks += [b"\xff\xff\x08\x00" + struct.pack("<I", len(t) + 8) + t for t in texts]
    return b"".join(b.ljust(-(-len(b) // block) * block, b"\0") for b in blocks)


TOWNS = table([(b"NAME", b"C", 4), (b"AREA", b"N", 6)], [b"Oslo454.00", b"Rome 12.85"],
              language=0x57)
NOTES = table([(b"NOTE", b"M", 10)], [b"         1", b"         2"])

TABLES = {
    "towns": TOWNS,
    "notes": NOTES,
    "empty": table([(b"A", b"C", 4)], [], end=b"\x1a" * 5),
    "back_link": table([(b"ID", b"I", 4)], [b"\x01\0\0\0"], version=0x30, back_link=bytes(263)),
    "no_end_mark": table([(b"A", b"C", 1)], [b"x"], end=b""),
    "wrapping_count": table([(b"A", b"C", 1)], [b"a", b"b"], count=0x80000002),
    "no_terminator_counted": table([(b"A", b"C", 1)], [b"a"], header_length=64),
    "no_fields": table([], [b""]),
    "cut_header": TOWNS[:70],
}

FILES = {
    "towns_fpt": (0, TOWNS, fpt([b"a memo"])),
    "notes_fpt": (0, NOTES, fpt([b"the first", b"the second " * 20])),
    "notes_dbt": (1, NOTES, dbt([b"the first", b"the second"])),
    "notes_dbt_end_mark": (1, NOTES, bytes(512) + b"the text\x1a\x1a".ljust(512, b"\0")),
    "cut_memo": (0, NOTES, fpt([b"the first"])[:71]),
    "empty_memo": (0, NOTES, b""),
    "cut_header": (0, TOWNS[:70], b""),
    "no_fields": (1, table([], [b""]), dbt([b"x"])),
}

CODE_PAGES = {
    "number": b"1252\r\n",
    "utf8": b"UTF-8\r\n",
    "name": b"ANSI 1251",
    "oem": b"oem 866\n",
    "iso": b"ISO 885915",
    "signed": b" -5 and more",
    "too_large": b"99999999999",
    "two_lines": b"850\n437\n",
    "nul": b"1250\0junk",
    "empty": b"",
}


def table7(fields, records):
    """The bytes of a table of level 7."""
    descriptors = b"".join(
        struct.pack("<32scB14x", name, kind, length) for name, kind, length in fields)
    width = 1 + sum(length for _, _, length in fields)
    header = struct.pack("<B3BIHH56x", 4, 124, 2, 29, len(records), 69 + len(descriptors), width)
    return header + descriptors + b"\x0d" + b"".join(b" " + r for r in records) + b"\x1a"


def with_flags(content, flags):
    """The table with these flags of its fields, as Visual FoxPro writes them."""
    changed = bytearray(content)
    for i, flag in enumerate(flags):
        changed[32 + 32 * i + 18] = flag
    return bytes(changed)


def long_texts():
    """A table with a text of 300 bytes, whose length reaches into the byte of the decimals."""
    changed = bytearray(table([(b"A", b"C", 300 % 256)], [b"x" * 300]))
    changed[32 + 17] = 300 // 256
    changed[10:12] = struct.pack("<H", 301)
    return bytes(changed)


EVERY_TYPE = table(
    [(b"C", b"C", 6), (b"N", b"N", 6), (b"F", b"F", 6), (b"D", b"D", 8), (b"L", b"L", 1),
     (b"M", b"M", 4), (b"I", b"I", 4), (b"B", b"B", 8), (b"T", b"T", 8), (b"Y", b"Y", 8),
     (b"G", b"G", 4), (b"X", b"X", 2)],
    [b"Troms\xf8  12.5+007. 20240229T" + struct.pack("<IidIIqI", 8, -7, 0.1, 2451545, 3723040,
                                                    12000, 8) + b"\x01\xff",
     b" " * 65],
    version=0x30, language=0x03)
VARIABLE = with_flags(
    table([(b"V", b"V", 5), (b"Q", b"Q", 4), (b"A", b"C", 2), (b"_NullFlags", b"0", 1)],
          [b"ab  \x02\x01\x02\0\x02xx\x03", b"abcdeabcdxx\x08"], version=0x32),
    [2, 0, 2, 5])
LEVEL7 = table7([(b"AUTO", b"+", 4), (b"REAL", b"O", 8), (b"TIME", b"@", 8), (b"TEXT", b"C", 4)],
                [struct.pack(">Iq", 0x80000001, -0x4000000000000000) +
                 struct.pack(">d", 62135683200000.0) + b"Oslo"])
DAMAGED = table([(b"M", b"M", 10), (b"A", b"C", 4)],
                [b"        99abcd", b"       abcabcd", b"         1"], count=9)

# The first number: the kind of the memo file and the options; see the harness.
EXPORTS = {
    "every_type": (0, EVERY_TYPE, bytes(6) + struct.pack(">H", 64) + bytes(504) +
                   struct.pack(">II", 1, 5) + b"memo\n"),
    "every_type_raw": (6, EVERY_TYPE, b""),
    "variable": (4, VARIABLE, b""),
    "level7": (4, LEVEL7, b""),
    "utf8": (8, TOWNS.replace(b"Oslo", b"\xc3\x85s\xff"), b""),
    "damaged": (5, DAMAGED, dbt([b"text \xff\"quoted\""])),
    "dbase3": (1, NOTES, bytes(512) + b"the text\x1a\x1a".ljust(512, b"\0")),
    "dbase4": (1, NOTES, bytes(20) + b"\0\x02" + dbt([b"the first", b"second"])[22:]),
    "long_texts": (0, long_texts(), b""),
}

ASCII_GRIDS = {
    "corner": b"ncols 3\nnrows 2\nxllcorner 100\nyllcorner 200\ncellsize 10\nNODATA_value -9999\n"
              b"1 2 3\n4 -9999 6\n",
    "centre": b"NROWS 1\r\nNCOLS 2\r\nYLLCENTER .5\r\nXLLCENTER -1e3\r\nDX .5\r\nDY 2.\r\n"
              b"nan -inf\r\n",
    "void_nan": b"ncols 1 nrows 1 xllcorner 0 yllcorner 0 cellsize .1e1 nodata_value nan\n+1e-400",
    "too_few": b"ncols 2\nnrows 2\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2 3\n",
    "large": b"ncols 4294967295\nnrows 4294967295\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2 3\n",
}

UNIFORM = b"DATASET STRUCTURED_POINTS\nDIMENSIONS 2 2 1\nORIGIN 1 2 3\nSPACING 1 -2 1\n"
VTK_FILES = {
    "points": b"# vtk DataFile Version 3.0\ntitle\nASCII\n" + UNIFORM +
              b"POINT_DATA 4\nSCALARS s float 1\nLOOKUP_TABLE default\n1 2 nan 4e-5\n",
    "points_binary": b"# vtk DataFile Version 1.0\n\nBINARY\n" + UNIFORM +
                     b"POINT_DATA 4\nSCALARS s double 2\nLOOKUP_TABLE default\n" +
                     struct.pack(">8d", *range(8)) + b"\n",
    "rectilinear": b"# vtk DataFile Version 4.2\nt\nASCII\nDATASET RECTILINEAR_GRID\n"
                   b"DIMENSIONS 2 2 1\nX_COORDINATES 2 int\n0 5\nY_COORDINATES 2 float\n3 1\n"
                   b"Z_COORDINATES 1 char\n7\nPOINT_DATA 4\nVECTORS v short\n"
                   b"1 2 3 4 5 6 7 8 9 10 11 12\n",
    "grid_binary": b"# vtk DataFile Version 5.1\nt\nBINARY\nDATASET STRUCTURED_GRID\n"
                   b"FIELD FieldData 1\nTIME 1 1 double\n" + bytes(8) +
                   b"\nDIMENSIONS 2 1 1\nPOINTS 2 float\n" + struct.pack(">6f", *range(6)) +
                   b"\nMETADATA\nINFORMATION 0\n\nCELL_DATA 1\nSCALARS c int\nLOOKUP_TABLE x\n" +
                   bytes(4) + b"\nPOINT_DATA 2\nFIELD f 2\nmany 6 2 vtktypeint64\n" +
                   struct.pack(">12q", *range(12)) + b"\nMETADATA\nx\n\nbits 1 2 bit\n\x80\n",
    "attributes": b"# vtk DataFile Version 2.0\nt\nASCII\nDATASET STRUCTURED_POINTS\n"
                  b"DIMENSIONS 1 1 1\nASPECT_RATIO 1 1 1\nORIGIN 0 0 0\nPOINT_DATA 1\n"
                  b"COLOR_SCALARS c 3\n.5 0 1\nNORMALS n float\n0 0 1\n"
                  b"TEXTURE_COORDINATES t 2 float\n0 1\nTENSORS m double\n1 0 0 0 1 0 0 0 1\n"
                  b"LOOKUP_TABLE x 1\n0 0 0 1\nGLOBAL_IDS i int\n7\n",
    "large": b"# vtk DataFile Version 3.0\nt\nBINARY\nDATASET STRUCTURED_POINTS\n"
             b"DIMENSIONS 2000000000 2000000000 2\nPOINT_DATA 8000000000000000000\n"
             b"SCALARS s double 4\nLOOKUP_TABLE default\n",
}


def envi(samples, lines, bands, code, *more):
    """The header of an ENVI raster; the harness has 512 bytes of values for it."""
    fields = [f"samples = {samples}", f"lines = {lines}", f"bands = {bands}", f"data type = {code}"]
    return "\n".join(["ENVI", *fields, *more, ""]).encode()


ENVI_HEADERS = {
    "one_band": envi(4, 3, 1, 1),
    "sequential": envi(4, 3, 2, 2, "interleave = bsq", "byte order = 1"),
    "by_line": envi(3, 2, 4, 5, "interleave = bil", "byte order = 0", "header offset = 5"),
    "by_pixel": envi(3, 2, 6, 12, "interleave = BIP", "Byte  Order = 1"),
    "lists": envi(2, 2, 2, 1, "interleave = bil", "description = {", "; a comment", "two {bands}}",
                  "band names = {red,", " near infrared}", "wavelength = {1.5, 2}"),
    "map": envi(2, 2, 1, 4, "byte order = 0", "data ignore value = -1e30",
                "map info = {UTM, 1.5, 1.5, 500000, 6.65e6, 30.1, 20.3, 33, North, rotation=3}"),
    "upward": envi(2, 3, 1, 13, "byte order = 0", "data ignore value = nan",
                   "map info = {Arbitrary, 1, 1, 0.1, 0.2, -0.3, -0.7}"),
    "windows": envi(2, 2, 1, 1, "description = {\xe5}").replace(b"\n", b"\r\n"),
    "large": envi(4294967295, 4294967295, 4294967295, 14, "interleave = bsq", "byte order = 0"),
    "complex": envi(2, 2, 1, 6, "byte order = 0"),
    "other_program": b"BYTEORDER I\nLAYOUT BIL\nNROWS 2\n",
    "open_brace": envi(2, 2, 1, 1, "band names = {a,"),
}

HGT_TILES = {
    "two": bytes(range(8)),
    "three": struct.pack(">9h", *range(-4, 5)),
    "void": struct.pack(">4h", -32768, 0, 1, -32768),
    "no_square": bytes(10),
    "empty": b"",
}

# The first byte chooses the format; 0x80 makes lines that start with "#" comments.
DELIMITED_TEXTS = {
    "commas": b"\0NAME,AREA\nOslo,454.03\nRome,\n,\n",
    "quotes": b"\0\"a \"\"b\"\"\",\"c\nd\"\r\n\"e\" f,\"\"\n\"\"",
    "blanks": b"\x01 1.5  2,5\t\"a b\" \n\n\"c\"d \f e",
    "semicolons": b"\x02'a;b';\"c'd\";\n1,5;2,5;\n",
    "tabs": b"\x03a\t\"b\t\tc\n",
    "both": b"\x04 a , \"b\" ,\n c",
    "lines": b"\x05a, b\nc\n",
    "comments": b"\x80# one\n\n#two\na,#b\n\"c\n#d\"\n#e",
    "open_quote": b"\0a,b\nc,\"d\"\"\n",
    "returns": b"\0\ra,\r\"b\"\r\"c\"\r\n\r\n\"d\"\r",
    "form_feeds": b"\0\fa,\f\"b\"\fc\f",
    "nul": b"\0a\0,\0\n\"\0\"",
    "mark": b"\0\xef\xbb\xbfa,\xe9\n",
    "empty": b"\0",
}


def text(content, *, sets=(b" \t", b",", b'"'), steps=b""):
    """A text with the sets to read it by; `steps` are the first calls, by their numbers."""
    return b"".join(bytes([len(s)]) + s for s in sets) + bytes([len(steps)]) + steps + content


# Calls: 0 a text, 1 one with quotes, 2 an integer, 3 a real number, 4 a boolean. What the caller
# does to the file: 5 takes a byte, 6 pushes one back, 7 moves, each with an argument in steps of 8.
TEXTS = {
    "line": text(b"a,b,d\n"),
    "empty_fields": text(b",a,,b,\n,\f\fc"),
    "blanks": text(b"  a b   ,\tc \n d "),
    "quotes": text(b'"a, ""b""\n",c\n"d"xy, "e"  ,"', steps=b"\x01" * 6),
    "windows": text(b'a,"b\r\nc"\r\n\r\nd\r', steps=b"\x01" * 4),
    "numbers": text(b"12 12abc -7.5e3,0x1p4,.5 nan(7) 1e400 \"5\" true 0 99999999999,",
                    steps=b"\x02\x02\x03\x03\x03\x03\x03\x02\x04\x04\x02"),
    "bytes": text(b"a\0b\xff\x80,\xe9", sets=(b"\x80", b"\xff", b"\xe9")),
    "two_sets": text(b" a,'b' c\nd,' ", sets=(b" '\n", b",'\f", b"'\n\r"), steps=b"\x01" * 5),
    "no_sets": text(b"a, \"b\"\n\n\fc", sets=(b"", b"", b"")),
    "moves": text(b"ab cd,ef,\ngh", steps=b"\x00\x05\x86\x00\x0f\x00\x26\x07\x01"),
    "long": text(b"word " * 40 + b"x" * 600 + b',"' + b"y\n" * 300 + b'"\n'),
}


def chunk(kind, content):
    return struct.pack(">I", len(content)) + kind + content + struct.pack(
        ">I", zlib.crc32(kind + content))


def png(width, height, depth, color_type, rows, *chunks, interlace=0):
    """A PNG file; each of the rows begins with its filter."""
    header = struct.pack(">2I5B", width, height, depth, color_type, 0, 0, interlace)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + b"".join(chunks) +
            chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def segment(marker, content):
    return struct.pack(">2BH", 0xFF, marker, len(content) + 2) + content


def jpeg(components, scans, frame=0xC0, size=8):
    """A JPEG file; its Huffman tables know DC differences of 0 and 7 bits, and no AC ones."""
    ids = range(1, components + 1)
    sof = struct.pack(">B2HB", 8, size, size, components) + b"".join(
        bytes([i, 0x11, 0]) for i in ids)
    return (b"\xff\xd8" + segment(0xDB, b"\0" + b"\x01" * 64) + segment(frame, sof) +
            segment(0xC4, b"\0" + bytes([0, 2] + [0] * 14) + b"\0\x07") +
            segment(0xC4, b"\x10" + bytes([1] + [0] * 15) + b"\0") +
            b"".join(scans) + b"\xff\xd9")


def scan(ids, data, spectral=(0, 63, 0)):
    head = bytes([len(ids)]) + b"".join(bytes([i, 0]) for i in ids) + bytes(spectral)
    return segment(0xDA, head) + data


PNG = png(2, 2, 8, 6, b"\0" + bytes(range(8)) + b"\x01" + bytes(8))
PICTURES = {
    "rgba.png": PNG,
    "grey.png": png(3, 1, 8, 0, b"\0\x01\x80\xff"),
    "bits.png": png(9, 1, 1, 0, b"\0\xa5\x80", chunk(b"tRNS", b"\0\x01")),
    "deep.png": png(1, 2, 16, 4, b"\0" + bytes(4) + b"\x02" + b"\xff" * 4),
    "colors.png": png(1, 1, 16, 2, b"\0" + bytes(range(6)), chunk(b"tRNS", bytes(range(6)))),
    "palette.png": png(4, 1, 2, 3, b"\0\x1b", chunk(b"PLTE", bytes(range(12))),
                       chunk(b"tRNS", b"\0\x80")),
    "interlaced.png": png(2, 2, 8, 0, b"\0\x01" + b"\0\x02" + b"\x04\x03\x04", interlace=1),
    "large.png": png(65500, 65500, 8, 6, b"\0"),
    "cut.png": PNG[:-20],
    "grey.jpg": jpeg(1, [scan([1], b"\x60\x3f")]),
    "colors.jpg": jpeg(3, [scan([1, 2, 3], b"\x00\x7f")]),
    "separate.jpg": jpeg(3, [scan([i], b"\x1f") for i in (1, 2, 3)]),
    "progressive.jpg": jpeg(1, [scan([1], b"\x3f", (0, 0, 1)), scan([1], b"\x7f", (0, 0, 0x10)),
                                scan([1], b"\x7f", (1, 63, 0))], frame=0xC2),
    "four.jpg": jpeg(4, [scan([1, 2, 3, 4], b"\0\x0f")]),
    "large.jpg": jpeg(1, [scan([1], b"\x60")], size=65500),
    "cut.jpg": jpeg(1, [])[:-2],
}

ADDRESSES = {
    "base64": b"data:image/png;base64," + base64.b64encode(PNG),
    "spaced": b"data:;base64, QU\n\tJD =",
    "percents": b"DATA:image/png;charset=x; BASE64 ,QUI%3D%3d%0a",
    "bytes": b"data:,%00a%zz%f",
    "empty": b"data:,",
    "no_comma": b"data:;base64",
}


def svg(content, attributes=b"viewBox='0 0 1000 1000'", head=b""):
    """An SVG document."""
    return (head + b"<svg xmlns='http://www.w3.org/2000/svg' " + attributes + b">" + content +
            b"</svg>")


SVG_DOCUMENTS = {
    "shapes": svg(b"<rect width='9' height='5%' rx='2'/><circle r='1em'/><ellipse rx='3' ry='2'/>"
                  b"<line x2='9' stroke='red'/><polygon points='0,0 9,0 9 9'/>"
                  b"<polyline points='1-1.5.5 3 4'/>"),
    "path": svg(b"<path d='M0 0h9v9H0VzL1 1C1 2 3 4 5 6s7 8 9 0Q1 2 3 4t5 6a9 5 30 1010 5A1 1 0 01 "
                b"5 5z' fill-rule='evenodd' stroke='#f80' stroke-dasharray='1 2px 3%' "
                b"stroke-linecap='round'/>"),
    "styles": svg(b"<style>/* x */ @media x{a{b:c}} g>path.c,#i *[id~='j']{fill:hsl(9,9%,9%)"
                  b"!important;opacity:.5}</style><g id='i' style='font:bold 2em x;color:#123'>"
                  b"<path class='c d' id='j' fill='currentColor' d='M0 0h9v9z'/></g>"),
    "clips": svg(b"<clipPath id='a' clipPathUnits='objectBoundingBox'><circle r='.5'/></clipPath>"
                 b"<clipPath id='b' clip-path='url(#a)'><use href='#r'/></clipPath>"
                 b"<g clip-path='url(#b)'><rect id='r' width='99' height='99' stroke='red' "
                 b"stroke-width='9'/></g>"),
    "uses": svg(b"<symbol id='s' viewBox='0 0 9 9' preserveAspectRatio='xMinYMax slice'><g id='g'>"
                b"<use href='#g'/><path d='M0 0h9v9z'/></g></symbol><use href='#s' width='5' "
                b"height='7' transform='rotate(30,1 2) skewX(3) matrix(1 2 3 4 5 6)'/>"
                b"<svg x='5' width='50%' height='9' viewBox='1 2 3 4'><use href='#g'/></svg>"
                b"<switch><g systemLanguage='de'/><a><use href='#s'/></a></switch>"),
    "paints": svg(b"<linearGradient id='a'><stop stop-color='red' stop-opacity='50%'/>"
                  b"</linearGradient><radialGradient id='b' href='#a'/><rect width='9' height='9' "
                  b"fill='url(#b) blue' stroke='url(#c) none'/>"),
    "text": svg(b"<text x='1 2' dx='3' text-anchor='end' xml:space='preserve'>a&#228;<tspan y='5' "
                b"font-size='larger'>b</tspan><textPath href='#x'>c</textPath></text>"),
    "entities": svg(b"<rect &a; width='&b;'/>",
                    head=b"<?xml version='1.0'?><!DOCTYPE svg [<!ENTITY a \"height='&b;'\">"
                         b"<!ENTITY b '9'>]>"),
    "sizes": svg(b"<path d='M1 1L9 9'/>", attributes=b"width='5mm' height='100%'"),
    "images": svg(b"<image href='data:;base64," + base64.b64encode(PNG) + b"' x='5' width='9' "
                  b"height='5%' preserveAspectRatio='xMaxYMin slice' opacity='.5' transform="
                  b"'rotate(30)'/><image href='data:,GIF' width='auto'/><image href='a.png'/>"),
    "cut": svg(b"<g><path d='M0 0h9"),
}


WELL_KNOWN_TEXTS = {
    "polygon": b"POLYGON ((0 0, 4 0, 4 4, 0 0), (2 1, 3 1, 3 2, 2 1))",
    "several": b"MultiPolygon Z (((0 0 1,1 0 1,1 1 1)),EMPTY,((5 5 2,6 5 2,6 6 2)))",
    "empty": b"polygonzm empty",
    "empty_ring": b"POLYGON (EMPTY, (1e3 -.5, +2 3., 4 5))",
    "cut": b"POLYGON ((0 0, 1 1",
}


def feature(geometry, properties=b"null"):
    return b'{"type":"Feature","geometry":%s,"properties":%s}' % (geometry, properties)


def geometry(kind, coordinates):
    return b'{"type":"%s","coordinates":%s}' % (kind, coordinates)


GEO_JSON = {
    "point": geometry(b"Point", b"[1,2.5e1,3]"),
    "lines": geometry(b"MultiLineString", b"[[[0,0],[1,1]],[[2,2],[3,3]]]"),
    "polygon": geometry(b"Polygon", b"[[[0,0],[9,0],[9,9],[0,0]],[[5,1],[6,1],[6,2],[5,1]]]"),
    "features": b'{"type":"FeatureCollection","features":[%s,%s]}' % (
        feature(geometry(b"MultiPolygon", b"[[[[0,0],[9,0],[9,9]]],[]]"),
                b'{"a":"b","c":[1,{"d":null}],"e":true}'),
        feature(b"null")),
    "collection": b'{"geometries":[%s],"type":"GeometryCollection"}' % (
        geometry(b"MultiPoint", b"[[1,2],[3,4]]")),
    "foreign": b'\xef\xbb\xbf{"type":"Point","bbox":[1,2],"x":{"type":[]},"coordinates":[1,2]}',
    "cut": b'{"type":"Point","coordinates":[1,',
}


def shapefile(kind, records):
    body = b"".join(struct.pack(">2i", i + 1, len(r) // 2) + r for i, r in enumerate(records))
    head = struct.pack(">7i", 9994, 0, 0, 0, 0, 0, (100 + len(body)) // 2)
    return head + struct.pack("<2i8d", 1000, kind, *[0.0, 0, 9, 9, 0, 0, 0, 0]) + body


def parts(kind, *rings, tail=b""):
    points = [p for ring in rings for p in ring]
    firsts = [sum(len(r) for r in rings[:i]) for i in range(len(rings))]
    return (struct.pack("<i4d2i", kind, 0, 0, 9, 9, len(rings), len(points))
            + struct.pack("<%di" % len(rings), *firsts)
            + b"".join(struct.pack("<2d", *p) for p in points) + tail)


RING = [(0, 0), (0, 9), (9, 9), (0, 0)]
SHAPEFILES = {
    "points": shapefile(1, [struct.pack("<i2d", 1, 1, 2), struct.pack("<i4d", 11, 1, 2, 3, 4),
                            struct.pack("<i3d", 21, 5, 6, 7), struct.pack("<i", 0)]),
    "lines": shapefile(3, [parts(3, RING[:2], RING[1:]), parts(23, RING)]),
    "polygons": shapefile(5, [parts(5, RING, [(1, 2), (2, 3), (1, 3)])]),
    "heights": shapefile(15, [parts(15, RING, tail=struct.pack("<6d", 0, 1, 2, 3, 4, 5))]),
    "sets": shapefile(8, [struct.pack("<i4di4d", 8, 0, 0, 9, 9, 2, 1, 2, 3, 4)]),
    "patches": shapefile(31, [parts(31, RING)]),
    "no_extent": shapefile(1, [struct.pack("<i2d", 1, 1, 2)])[:36] + b"\xff" * 32
                 + shapefile(1, [struct.pack("<i2d", 1, 1, 2)])[68:],
    "cut": shapefile(5, [parts(5, RING)])[:-9],
    "huge": shapefile(5, [struct.pack("<i4d2I", 5, 0, 0, 9, 9, 0xFFFFFFFF, 0xFFFFFFFF)]),
}


def write(harness, seeds):
    folder = CORPUS / harness
    folder.mkdir(parents=True, exist_ok=True)
    for name, content in seeds.items():
        (folder / name).write_bytes(content)


write("DBFReaderFuzz", TABLES)
write("DBFReaderFileFuzz",
      {name: struct.pack("<BH", kind, len(t)) + t + memo for name, (kind, t, memo) in FILES.items()})
write("CPGFileFuzz", CODE_PAGES)
write("FileTokenizerFuzz", TEXTS)
write("TableExportFuzz",
      {name: struct.pack("<BH", kind, len(t)) + t + memo
       for name, (kind, t, memo) in EXPORTS.items()})
write("AsciiGridFuzz", ASCII_GRIDS)
write("VtkReaderFuzz", VTK_FILES)
write("EnviHeaderFuzz", ENVI_HEADERS)
write("HgtFuzz", HGT_TILES)
write("DelimitedReaderFuzz", DELIMITED_TEXTS)
write("DataUriFuzz", ADDRESSES)
write("PictureFuzz", PICTURES)
write("SvgImportFuzz", SVG_DOCUMENTS)
write("WktPolygonFuzz", WELL_KNOWN_TEXTS)
write("GeoJsonFuzz", GEO_JSON)
write("ShapefileFuzz", SHAPEFILES)
