#!/usr/bin/env python3
"""Draws the icon of Sketch and writes Sketch.ico beside this file: a pencil on a blue tile, drawing a curve.

Needs nothing but Python's standard library. The picture is described in units of a tile of 64 by 64; each size is
drawn from it with 8 by 8 samples a pixel.
"""
import math
import pathlib
import struct
import zlib

SIZES = (16, 32, 48, 128, 256)
SAMPLES = 8


def rounded_box(x, y, left, top, right, bottom, radius):
    """The distance to the edge of a box with round corners; negative inside."""
    dx = abs(x - (left + right) / 2) - (right - left) / 2 + radius
    dy = abs(y - (top + bottom) / 2) - (bottom - top) / 2 + radius
    return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius


def along(x, y, ax, ay, bx, by):
    """How far along the line from a to b, from 0 to 1, and how far to the side a point lies."""
    length = math.hypot(bx - ax, by - ay)
    ux, uy = (bx - ax) / length, (by - ay) / length
    return ((x - ax) * ux + (y - ay) * uy) / length, abs((x - ax) * uy - (y - ay) * ux)


CURVE = []
for step in range(41):
    t = step / 40  # a cubic curve from the lower left to the tip of the pencil
    points = ((11, 45), (16, 20), (26, 64), (34, 40))
    weights = ((1 - t) ** 3, 3 * t * (1 - t) ** 2, 3 * t * t * (1 - t), t ** 3)
    CURVE.append(tuple(sum(w * p[i] for w, p in zip(weights, points)) for i in (0, 1)))


def on_curve(x, y, half_width):
    return any(math.hypot(x - px, y - py) < half_width for px, py in CURVE)


def color_at(x, y, small):
    """Red, green, blue of the picture at a point, or None outside of it."""
    if rounded_box(x, y, 2, 2, 62, 62, 13) > 0:
        return None
    # The pencil, from its tip to its end.
    t, side = along(x, y, 34, 40, 55, 9)
    half = 7.5 if small else 6.5
    if 0 <= t <= 1 and side < half * min(1, t / 0.34):
        if t < 0.12:
            return (38, 46, 60)  # lead
        if t < 0.34:
            return (250, 226, 186)  # wood
        if t > 0.88:
            return (232, 109, 98)  # rubber
        if t > 0.80:
            return (214, 219, 226)  # metal
        return (255, 200, 64) if side < half * 0.42 else (240, 172, 40)
    if on_curve(x, y, 3.6 if small else 2.6):
        return (255, 255, 255)
    share = y / 64
    return tuple(round(a + (b - a) * share) for a, b in zip((79, 142, 247), (38, 92, 200)))


def draw(size):
    """Rows of (blue, green, red, alpha), from the top."""
    rows = []
    for row in range(size):
        line = []
        for column in range(size):
            total, count = [0, 0, 0], 0
            for i in range(SAMPLES * SAMPLES):
                x = (column + (i % SAMPLES + 0.5) / SAMPLES) * 64 / size
                y = (row + (i // SAMPLES + 0.5) / SAMPLES) * 64 / size
                color = color_at(x, y, size <= 16)
                if color:
                    count += 1
                    total = [a + b for a, b in zip(total, color)]
            mean = [round(a / count) if count else 0 for a in total]
            line.append((mean[2], mean[1], mean[0], round(255 * count / SAMPLES ** 2)))
        rows.append(line)
    return rows


def as_bitmap(size, rows):
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    pixels = b"".join(bytes(pixel) for line in reversed(rows) for pixel in line)
    mask_bytes = (size + 31) // 32 * 4
    mask = b""
    for line in reversed(rows):
        bits = "".join("0" if pixel[3] else "1" for pixel in line).ljust(mask_bytes * 8, "0")
        mask += int(bits, 2).to_bytes(mask_bytes, "big")
    return header + pixels + mask


def as_png(size, rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    lines = b"".join(b"\0" + b"".join(bytes((r, g, b, a)) for b, g, r, a in line) for line in rows)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(lines, 9)) + chunk(b"IEND", b""))


images = [as_png(size, draw(size)) if size > 48 else as_bitmap(size, draw(size)) for size in SIZES]
entries, offset = b"", 6 + 16 * len(SIZES)
for size, image in zip(SIZES, images):
    entries += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
    offset += len(image)
path = pathlib.Path(__file__).with_name("Sketch.ico")
path.write_bytes(struct.pack("<HHH", 0, 1, len(SIZES)) + entries + b"".join(images))
