#!/usr/bin/env python3
"""Writes the sample tables of this folder. They are of our own making and may be used freely.

    python3 samples/make_samples.py            writes them beside this script
    python3 samples/make_samples.py FOLDER     writes them elsewhere

The output is the same at each run. Each set shows one road to the right letters:

    towns      a shapefile whose .cpg says UTF-8
    stations   a shapefile whose .cpg names a Windows page (ANSI 1251, Cyrillic)
    rivers     a lone table whose language byte means an OEM page (852, Central European)
    sights     a lone Visual FoxPro table with memos (.fpt) and binary values
    diary      a lone dBASE III table with memos (.dbt), page 437
"""

import pathlib
import struct
import sys

DATE = bytes([124, 6, 1])  # last update: 1 June 2024


class Field:
    def __init__(self, name, kind, length, decimals=0):
        self.name, self.kind, self.length, self.decimals = name, kind, length, decimals

    def descriptor(self):
        return struct.pack("<11sc4xBB14x", self.name.encode(), self.kind.encode(), self.length,
                           self.decimals)

    def store(self, value, encoding):
        if value is None:
            stored = b""
        elif isinstance(value, bytes):
            stored = value
        elif self.kind in "NF":
            stored = f"{value:.{self.decimals}f}".rjust(self.length).encode()
        else:
            stored = str(value).encode(encoding)
        assert len(stored) <= self.length, (self.name, value)
        return stored.ljust(self.length)


def table(fields, rows, encoding, version=0x03, language=0, deleted=(), back_link=False):
    """The bytes of a .dbf file."""
    header_length = 32 + 32 * len(fields) + 1 + (263 if back_link else 0)
    record_length = 1 + sum(field.length for field in fields)
    out = struct.pack("<B3sIHH17xBxx", version, DATE, len(rows), header_length, record_length,
                      language)
    out += b"".join(field.descriptor() for field in fields) + b"\r"
    out += bytes(263 if back_link else 0)
    for number, row in enumerate(rows):
        out += b"*" if number in deleted else b" "
        out += b"".join(field.store(value, encoding) for field, value in zip(fields, row))
    return out + b"\x1a"


def point_shapefile(points):
    """The bytes of a .shp file of points and of its .shx index (ESRI, July 1998)."""
    records, index = b"", b""
    for number, (x, y) in enumerate(points, 1):
        offset = 100 + len(records)
        content = struct.pack("<idd", 1, x, y)
        records += struct.pack(">ii", number, len(content) // 2) + content
        index += struct.pack(">ii", offset // 2, len(content) // 2)
    xs, ys = zip(*points)
    box = struct.pack("<ii4d4d", 1000, 1, min(xs), min(ys), max(xs), max(ys), 0, 0, 0, 0)

    def with_header(body):
        return struct.pack(">i20xi", 9994, (100 + len(body)) // 2) + box + body

    return with_header(records), with_header(index)


class FoxProMemos:
    """A .fpt file: block 0 is the header, each memo begins with its type and length, high byte first."""

    def __init__(self, block_size):
        self.block_size, self.blocks = block_size, b""
        self.first = -(-512 // block_size)

    def add(self, text, kind=1):
        block = self.first + len(self.blocks) // self.block_size
        body = struct.pack(">II", kind, len(text)) + text
        self.blocks += body + bytes(-len(body) % self.block_size)
        return struct.pack("<I", block)

    def file(self):
        head = struct.pack(">IHH", self.first + len(self.blocks) // self.block_size, 0,
                           self.block_size)
        return head.ljust(self.first * self.block_size, b"\0") + self.blocks


class DBase3Memos:
    """A .dbt file of dBASE III: blocks of 512 bytes, each text ends at two bytes 1A."""

    def __init__(self):
        self.blocks = b""

    def add(self, text):
        block = 1 + len(self.blocks) // 512
        body = text + b"\x1a\x1a"
        self.blocks += body + bytes(-len(body) % 512)
        return f"{block:10d}".encode()

    def file(self):
        head = struct.pack("<I12xB", 1 + len(self.blocks) // 512, 3)
        return head.ljust(512, b"\0") + self.blocks


def towns():
    rows = [
        ("København", "DK", 660842, 12.5683, 55.6761), ("Łódź", "PL", 658444, 19.4560, 51.7592),
        ("Αθήνα", "GR", 643452, 23.7275, 37.9838), ("Київ", "UA", 2952301, 30.5234, 50.4501),
        ("القاهرة", "EG", 10107125, 31.2357, 30.0444), ("東京", "JP", 14094034, 139.6917, 35.6895),
        ("São Paulo", "BR", 11451999, -46.6333, -23.5505), ("Reykjavík", "IS", 139875, -21.9426, 64.1466),
        ("Zürich", "CH", 434335, 8.5417, 47.3769), ("Hà Nội", "VN", 8435700, 105.8342, 21.0278),
    ]
    fields = [Field("NAME", "C", 24), Field("COUNTRY", "C", 2), Field("PEOPLE", "N", 10),
              Field("LON", "N", 10, 4), Field("LAT", "N", 10, 4)]
    shp, shx = point_shapefile([row[3:] for row in rows])
    return {"towns.dbf": table(fields, rows, "utf-8"), "towns.shp": shp, "towns.shx": shx,
            "towns.cpg": b"UTF-8\r\n"}


def stations():
    rows = [
        ("Подбаба", "1962-03", "T", 187.5, 14.3936, 50.1113),
        ("Вышгород", "1871-09", "F", 221.0, 14.4197, 50.0644),
        ("Белая Гора", "1998-11", "T", 381.2, 14.3236, 50.0783),
        ("Речной порт", None, None, None, 14.4600, 50.0990),
    ]
    rows = [(name, since.replace("-", "") + "01" if since else None, open_, height, x, y)
            for name, since, open_, height, x, y in rows]
    fields = [Field("NAME", "C", 20), Field("SINCE", "D", 8), Field("OPEN", "L", 1),
              Field("HEIGHT", "N", 8, 1)]
    shp, shx = point_shapefile([row[4:] for row in rows])
    # The language byte says Western European; the .cpg file overrules it.
    return {"stations.dbf": table(fields, rows, "cp1251", language=0x57), "stations.shp": shp,
            "stations.shx": shx, "stations.cpg": b"ANSI 1251\r\n"}


def rivers():
    rows = [("Vltava", "Černá hora", 430, 149.90), ("Dyje", "Panenská, \"malá\"", 311, 43.89),
            ("Úhlava", "Pancíř", 108, 5.94), ("Ploučnice", "Ještěd", 106, 8.60),
            ("Křivý potok", "smazáno", 0, 0.0)]
    fields = [Field("RIVER", "C", 16), Field("SOURCE", "C", 20), Field("KM", "N", 5),
              Field("FLOW", "F", 8, 2)]
    return {"rivers.dbf": table(fields, rows, "cp852", language=0x64, deleted={4})}


def sights():
    memos = FoxProMemos(64)
    texts = [
        ("Windmühle", 1794, 4.50, "Holländerwindmühle mit Galerie.\r\nDie Flügel drehen sich jeden Sonntag."),
        ("Café Océan", 1931, 12.00, "Terrasse sur la jetée ; « vue à 180° »."),
        ("Lighthouse", 1858, 0.0, "Closed in storms. " + "The stairs have 215 steps. " * 40),
        ("Ruin", 1190, 0.0, None),
    ]
    rows = []
    for number, (name, year, fee, text) in enumerate(texts, 1):
        block = memos.add(text.encode("cp1252")) if text else struct.pack("<I", 0)
        day = 2460463 + number  # Julian day number: June 2024
        rows.append((struct.pack("<i", number), name, year, struct.pack("<q", round(fee * 10000)),
                     struct.pack("<ii", day, 34_200_000), block))
    fields = [Field("ID", "I", 4), Field("NAME", "C", 16), Field("BUILT", "N", 4),
              Field("FEE", "Y", 8, 4), Field("SEEN", "T", 8), Field("NOTES", "M", 4)]
    return {"sights.dbf": table(fields, rows, "cp1252", version=0x30, language=0x03, back_link=True),
            "sights.fpt": memos.file()}


def diary():
    memos = DBase3Memos()
    rows = [
        ("19870314", memos.add("Frühling! Die Störche sind zurück.".encode("cp437"))),
        ("19870315", None),
        ("19870316", memos.add(("Regen, 12½ mm. " * 60).encode("cp437"))),
    ]
    fields = [Field("DAY", "D", 8), Field("TEXT", "M", 10)]
    return {"diary.dbf": table(fields, rows, "cp437", version=0x83, language=0x01),
            "diary.dbt": memos.file()}


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent)
    folder.mkdir(parents=True, exist_ok=True)
    for make in (towns, stations, rivers, sights, diary):
        for name, content in make().items():
            (folder / name).write_bytes(content)


if __name__ == "__main__":
    main()
