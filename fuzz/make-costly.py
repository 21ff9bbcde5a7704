#!/usr/bin/env python3
"""Makes the costly inputs of docs/limits.md: make-costly.py [--maxima] FOLDER.

Each asks for far more work, memory or words than its size explains. With --maxima, makes instead many fonts: each table
of the seed rich.ttf, repeated to 200 KB, with one of its first words at its maximum, one font for each word and width.
The costs of a folder's files are printed by fuzz-replay-WholeFile --cost FOLDER, all by one process.
"""

import pathlib
import struct
import sys

SEED = pathlib.Path(__file__).parent / "seeds" / "WholeFile" / "rich.ttf"
GLYPHS = 65535
P = struct.pack


def padded(data):
    return data + b"\0" * (-len(data) % 4)


def directory(tables, at):
    """The directory of a font whose tables lie one after the other from there on."""
    entries = b""
    for tag, data in tables.items():
        entries += tag.encode() + P(">III", 0, at, len(data))
        at += len(padded(data))
    return P(">IHHHH", 0x10000, len(tables), 0, 0, 0) + entries


def bodies(tables):
    return b"".join(padded(data) for data in tables.values())


def font(tables):
    return directory(tables, 12 + 16 * len(tables)) + bodies(tables)


def collection(count, tables):
    """Fonts with directories of their own over the same tables."""
    size = 12 + 16 * len(tables)
    start = 12 + 4 * count
    offsets = b"".join(P(">I", start + i * size) for i in range(count))
    return (b"ttcf" + P(">II", 0x10000, count) + offsets + directory(tables, start + count * size) * count +
            bodies(tables))


def tables_of(data):
    count = struct.unpack(">H", data[4:6])[0]
    entries = (struct.unpack(">4sIII", data[12 + 16 * i:28 + 16 * i]) for i in range(count))
    return {tag.decode(): data[offset:offset + length] for tag, _, offset, length in entries}


# Tables.

HEAD = P(">IIIIHHqqhhhhHHhhh", 0x10000, 0, 0, 0x5F0F3CF5, 0, 1000, 0, 0, 0, 0, 1000, 1000, 0, 8, 2, 1, 0)
POST = P(">IIhhIIIII", 0x30000, *[0] * 8)


def maxp(glyphs):
    return P(">IH13H", 0x10000, glyphs, 4, 1, 0, 0, 2, *[0] * 8)


def hhea(metrics):
    return P(">IhhhHhhhhhhhhhhhH", 0x10000, 800, -200, 0, 1000, 0, 0, 1000, 1, 0, 0, 0, 0, 0, 0, 0, metrics)


def name(records, storage=b""):
    """Records of platform, script, language, code, length and offset."""
    return P(">HHH", 0, len(records), 6 + 12 * len(records)) + b"".join(P(">6H", *r) for r in records) + storage


def cmap(subtable, records=GLYPHS):
    """Records that share one subtable."""
    return P(">HH", 0, records) + P(">HHI", 3, 1, 4 + 8 * records) * records + subtable


NAMES = name([(3, 1, 0x409, code, 2, 0) for code in (3, 4, 6)], b"\0X")
BARE = {"head": HEAD, "name": NAMES}
METRICS = {"hhea": hhea(1), "maxp": maxp(GLYPHS), "hmtx": P(">HH", 500, 0) + b"\0\0" * (GLYPHS - 1)}


def outlines(glyf, offsets):
    """A font of 65,535 glyphs over this 'glyf'."""
    loca = b"".join(P(">I", offset) for offset in offsets)
    empty = P(">HHHHHHH", 4, 24, 0, 2, 2, 0, 0) + P(">HHHHH", 0xFFFF, 0, 0xFFFF, 1, 0)
    return BARE | METRICS | {"cmap": cmap(empty, 1), "post": POST, "loca": loca, "glyf": glyf}


def alternating(start, end):
    """Offsets that make every other glyph the same record."""
    return [start if i % 2 == 0 else end for i in range(GLYPHS + 1)]


def glyph(contours, *rest):
    return P(">hhhhh", contours, 0, 0, 9, 9) + b"".join(rest)


SQUARE = glyph(1, P(">HH", 3, 0), bytes([1] * 4), P(">8h", 0, 0, 9, 0, 0, 9, -9, 0))


# What is costly of each.

def glyphs():
    points = glyph(1, P(">HH", GLYPHS - 1, 0), b"\x39\xff" * 255 + b"\x39\xfe" + b"\0" * 70000)
    yield "shared-points.ttf", font(outlines(points, alternating(0, len(points))))
    words = glyph(1, P(">HH", 29999, 0), b"\x01" * 30000, b"\x12\x34" * 60000)
    yield "shared-words.ttf", font(outlines(words, alternating(0, len(words))))
    contours = glyph(32767, b"".join(P(">H", i) for i in range(32767)), P(">H", 0), b"\x31" * 32767)
    yield "shared-contours.ttf", font(outlines(contours, alternating(0, len(contours))))
    program = glyph(1, P(">HH", 0, 65000), b"\x4f" * 65000, b"\x31" * 5000)
    yield "shared-program.ttf", font(outlines(program, alternating(0, len(program))))
    square = padded(SQUARE)
    components = square + glyph(-1, P(">HHH", 0x20, 0, 0) * 10920, P(">HHH", 0, 0, 0))
    yield "shared-components.ttf", font(outlines(components, [0] + alternating(len(square), len(components))[:-1]))
    for what, first in (("chain", square), ("bad-chain", glyph(1, P(">HH", 3, 0), b"\x01"))):
        glyf, offsets = bytearray(first), [0]
        for i in range(1, GLYPHS):
            offsets.append(len(glyf))
            glyf += glyph(-1, P(">HHH", 0, i - 1, 0))
        tables = outlines(bytes(glyf), offsets + [len(glyf)])
        yield f"{what}-of-65535-components.ttf", font(tables)
        yield f"{what}-of-65535-components-1000.ttc", collection(1000, tables)
    yield "empty-glyphs-5000.ttc", collection(5000, outlines(SQUARE, [0] * (GLYPHS + 1)))
    yield "bad-glyphs-20000.ttc", collection(
        20000, outlines(SQUARE[:12], [0] + [12] * 300) | {"maxp": maxp(300), "hmtx": P(">HH", 500, 0) + bytes(598)})


def encodings():
    groups = P(">HHIII", 12, 0, 16 + 12 * 6000, 0, 6000)
    groups += b"".join(P(">III", 3 * i, 3 * i + 2, 5) for i in range(6000))
    everything = P(">HHIIIIII", 13, 0, 28, 0, 1, 0, 0x10FFFF, 1)
    count = 8000
    segments = P(">HHHHHHH", 4, 0xFFFF, 0, 2 * count, 0, 0, 0)
    segments += b"".join(P(">H", 8 * i + 7) for i in range(count - 1)) + P(">HH", 0xFFFF, 0)
    segments += b"".join(P(">H", 8 * i) for i in range(count)) + b"\0\0" * count + P(">H", 6) * count
    rows = P(">HHH", 2, 6000, 0) + b"".join(P(">H", 8 * (i % 200)) for i in range(256))
    rows += P(">HHhH", 0, 256, 1, 2) * 255 + b"\0\7" * 5000
    subtables = {"0": P(">HHH", 0, 262, 0) + b"\5" * 256, "2": rows, "4": segments + b"\0\5" * 20000, "12": groups,
                 "13": everything}
    tables = BARE | METRICS | {"maxp": maxp(100)}
    for number, subtable in subtables.items():
        yield f"65535-encodings-over-one-format-{number}.ttf", font(tables | {"cmap": cmap(subtable)})
    yield "65535-encodings-over-one-format-4-1000.ttc", collection(1000, tables | {"cmap": cmap(subtables["4"])})
    yield "20000-encodings-20000.ttc", collection(20000, tables | {"cmap": cmap(b"\0" * 8, 20000)})
    ranges = P(">I", 20000) + b"".join((7 * i).to_bytes(3, "big") + b"\xff" for i in range(20000))
    variations = P(">HII", 14, 0, 3000)
    variations += b"".join((0xFE00 + i).to_bytes(3, "big") + P(">II", 10 + 11 * 3000, 0) for i in range(3000)) + ranges
    both = P(">HHHHIHHI", 0, 2, 0, 4, 20, 0, 5, 20 + len(groups)) + groups + variations
    yield "3000-selectors-over-one-range-table.ttf", font(tables | {"cmap": both})
    yield "84-encodings-and-2000-tables.ttf", font(
        BARE | {"cmap": cmap(groups, 84)} | {f"{i:04d}": b"" for i in range(2000)})


def metrics():
    wide = BARE | {"hhea": hhea(GLYPHS), "maxp": maxp(GLYPHS), "hmtx": P(">HH", 0, 0) * GLYPHS}
    for what, count, size in (("no-bytes", 65535, 0), ("a-byte", 65535, 1), ("half-a-gigabyte", 10, 0x10000000)):
        hdmx = P(">HHI", 0, count, size) + bytes([12, 9]) + b"\x09" * 130000
        yield f"device-records-of-{what}.ttf", font(wide | {"hdmx": hdmx})
    yield "metrics-20000.ttc", collection(20000, BARE | METRICS)


def names():
    text = b"\x30\x42" * 33000
    long = name([(3, 1, 0x409, code, 65000, 0) for code in (3, 4, 6)], text)
    yield "long-names-20000.ttc", collection(20000, {"head": HEAD, "name": long})
    yield "4000-names-over-one-text.ttf", font(
        {"head": HEAD, "name": name([(3, 1, 0x409, i % 7, 65000, 0) for i in range(4000)], text)})
    yield "5000-names-over-one-text-200.ttc", collection(
        200, {"head": HEAD, "name": name([(3, 1, 0x409, i % 20, 64000, 0) for i in range(5000)], text)})
    yield "5000-empty-names-20000.ttc", collection(20000, {"head": HEAD, "name": name([(1, 0, 0, 1, 0, 0)] * 5000)})
    yield "names-of-six-bytes-20000.ttc", collection(20000, {"head": HEAD, "name": P(">HHH", 0, 65535, 6)})
    stored = b"".join(b"\10g%07d" % i for i in range(65000))
    post = P(">IIhhIIIII", 0x20000, *[0] * 8) + P(">H", GLYPHS)
    post += b"".join(P(">H", 258 + i % 65000) for i in range(GLYPHS)) + stored
    yield "65535-glyph-names-2000.ttc", collection(2000, BARE | {"post": post, "maxp": maxp(GLYPHS)})


def programs_and_layout():
    program = b"\x2c" + b"\x4f" * (1 << 20) + b"\x2d"
    yield "programs-20000.ttc", collection(20000, BARE | {"fpgm": program, "prep": program[1:-1]})
    yield "postscript-20000.ttc", collection(20000, BARE | {"CID ": b"/" * (1 << 20), "TYP1": b"\\" * 1000})
    small = BARE | {"maxp": maxp(3)}
    chains = P(">HHI", 2, 0, 60000) + P(">IIII", 1, 16, 0, 0) * 60000
    yield "60000-chains-20000.ttc", collection(20000, small | {"morx": chains})
    claimed = P(">HHI", 2, 0, 0xFFFFFFFF) + P(">IIII", 1, 0, 4000, 0) + P(">HHII", 1, 1, 1, 0) * 4000
    yield "four-billion-chains.ttf", font(small | {"morx": claimed})
    yield "four-billion-chains-20000.ttc", collection(20000, small | {"morx": claimed})
    overlapping = P(">HHI", 2, 0, 4000) + P(">IIII", 1, 16, 5000, 0) * 4000 + b"\1" * 70000
    yield "4000-chains-that-overlap-500.ttc", collection(500, small | {"morx": overlapping})
    kern = P(">HH", 0, 65535) + P(">HHH", 0, 6, 1) * 65535
    yield "65535-kern-subtables-1000.ttc", collection(1000, small | {"kern": kern, "glyf": bytes(100)})


def bitmaps():
    strikes = 2000
    array = b"".join(P(">HHI", 0, 65535, 8 * 2000) for _ in range(2000))
    index = P(">HHI", 1, 1, 4) + bytes(262144)
    strike = P(">IIII", 8 + 48 * strikes, len(array) + len(index), 2000, 0) + bytes(24)
    location = P(">II", 0x20000, strikes) + (strike + P(">HHBBBB", 0, 65535, 12, 12, 1, 1)) * strikes + array + index
    tables = BARE | {"maxp": maxp(GLYPHS), "EBLC": location, "EBDT": P(">I", 0x20000) + bytes(60000)}
    yield "2000-strikes-over-one-index.ttf", font(tables)
    yield "2000-strikes-over-one-index-500.ttc", collection(500, tables)


def files():
    entries = b"".join(b"%04x" % i + P(">III", 0, 0, 0) for i in range(65500))
    yield "65500-tables.ttf", P(">IHHHH", 0x10000, 65500, 0, 0, 0) + entries
    yield "65535-fonts.ttc", collection(65535, BARE)
    everything = tables_of(SEED.read_bytes())
    yield "everything-5000.ttc", collection(5000, everything)
    for kind, resource in ((b"FOND", bytes(52)), (b"sfnt", font(BARE))):
        references = P(">hHIi", 0, 0xFFFF, 0, 0) * 65536
        types = P(">H", 0) + kind + P(">HH", 65535, 10)
        data = P(">I", len(resource)) + resource
        resource_map = bytes(24) + P(">HH", 28, 28 + len(types) + len(references) & 0xFFFF) + types + references
        header = P(">IIII", 16, 16 + len(data), len(data), len(resource_map))
        yield f"65536-resources-over-one-{kind.decode()}", header + data + resource_map


def maxima():
    tables = tables_of(SEED.read_bytes())
    for tag, data in tables.items():
        if not data:
            continue
        long = (data * (200000 // len(data) + 1))[:200000]
        for at in range(0, min(len(data), 64), 2):
            for maximum in (b"\xff\xff", b"\x7f\xff", b"\xff\xff\xff\xff"):
                damaged = long[:at] + maximum + long[at + len(maximum):]
                plain = tag.replace("/", "_").strip()
                yield f"{plain}-{at:02d}-{maximum.hex()}.ttf", font(tables | {tag: damaged})


def main():
    arguments = sys.argv[1:]
    makers = [glyphs, encodings, metrics, names, programs_and_layout, bitmaps, files]
    if "--maxima" in arguments:
        arguments.remove("--maxima")
        makers = [maxima]
    if len(arguments) != 1:
        sys.exit(__doc__)
    folder = pathlib.Path(arguments[0])
    folder.mkdir(parents=True, exist_ok=True)
    for maker in makers:
        for file, data in maker():
            (folder / file).write_bytes(data)


if __name__ == "__main__":
    main()
