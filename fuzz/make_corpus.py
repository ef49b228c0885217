#!/usr/bin/env python3
"""Makes the seeds of the fuzzers: corpus/<harness>/<name>, small files of each kind.

Run it after a change here and commit what it makes; it replaces the files that it names.
"""

import pathlib
import struct

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


def write(harness, seeds):
    folder = CORPUS / harness
    folder.mkdir(parents=True, exist_ok=True)
    for name, content in seeds.items():
        (folder / name).write_bytes(content)


write("DBFReaderFuzz", TABLES)
write("DBFReaderFileFuzz",
      {name: struct.pack("<BH", kind, len(t)) + t + memo for name, (kind, t, memo) in FILES.items()})
write("CPGFileFuzz", CODE_PAGES)
