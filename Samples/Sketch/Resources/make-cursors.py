#!/usr/bin/env python3
"""Draws the mouse shapes of Sketch: make-cursors.py, in this folder.

Each is black with a white edge, 32 pixels square, one bit a pixel, so that it looks alike everywhere.
"""
import struct

SIZE = 32


def line(points, x0, y0, x1, y1):
    steps = max(abs(x1 - x0), abs(y1 - y0), 1)
    for i in range(steps + 1):
        points.add((round(x0 + (x1 - x0) * i / steps), round(y0 + (y1 - y0) * i / steps)))


def arrow_head(points, x, y, dx, dy):
    """The head of an arrow whose tip is at (x, y) and which points along (dx, dy)."""
    for back in range(4):
        for side in range(-back, back + 1):
            if dx and dy:  # a corner
                if abs(side) <= back:
                    points.add((x - dx * back, y))
                    points.add((x, y - dy * back))
                    for k in range(back):
                        points.add((x - dx * k, y - dy * (back - 1 - k)))
            else:
                points.add((x - dx * back + side * abs(dy), y - dy * back + side * abs(dx)))


def double_arrow(dx, dy, reach):
    points = set()
    line(points, 15 - dx * reach, 15 - dy * reach, 15 + dx * reach, 15 + dy * reach)
    arrow_head(points, 15 + dx * reach, 15 + dy * reach, dx, dy)
    arrow_head(points, 15 - dx * reach, 15 - dy * reach, -dx, -dy)
    return points


def cross():
    points = set()
    for a, b in ((5, 12), (18, 25)):
        line(points, a, 15, b, 15)
        line(points, 15, a, 15, b)
    points.add((15, 15))
    return points


def point():
    points = set()
    for a, b in ((6, 11), (19, 24)):
        line(points, a, 15, b, 15)
        line(points, 15, a, 15, b)
    for x in range(12, 19):
        for y in (12, 18):
            points.add((x, y))
            points.add((y, x))
    return points


def save(name, points):
    edge = {(x + dx, y + dy) for x, y in points for dx in (-1, 0, 1) for dy in (-1, 0, 1)} - points
    color = bytearray()
    mask = bytearray()
    for y in range(SIZE - 1, -1, -1):
        for rows, is_set in ((color, lambda p: p in edge), (mask, lambda p: p not in edge and p not in points)):
            bits = sum(1 << (SIZE - 1 - x) for x in range(SIZE) if is_set((x, y)))
            rows += bits.to_bytes(4, "big")
    header = struct.pack("<IiiHHIIiiII", 40, SIZE, 2 * SIZE, 1, 1, 0, len(color) + len(mask), 0, 0, 2, 0)
    image = header + struct.pack("<II", 0x000000, 0xFFFFFF) + bytes(color) + bytes(mask)
    with open(name + ".cur", "wb") as file:
        file.write(struct.pack("<HHH", 0, 2, 1))
        file.write(struct.pack("<BBBBHHII", SIZE, SIZE, 2, 0, 15, 15, len(image), 22))
        file.write(image)


save("Move", double_arrow(1, 0, 9) | double_arrow(0, 1, 9))
save("Point", point())
save("Cross", cross())
save("SizeWE", double_arrow(1, 0, 8))
save("SizeNS", double_arrow(0, 1, 8))
save("SizeNWSE", double_arrow(1, 1, 6))
save("SizeNESW", double_arrow(1, -1, 6))
