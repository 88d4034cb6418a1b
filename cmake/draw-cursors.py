"""Turns the text files of a folder into cursors: draw-cursors.py FOLDER OUTPUT.res

Each file GROUP-NAME.txt holds one group of cursors, the same picture in one or more sizes. A picture begins with a
line like

    cursor 16 size 32 bits 1 hot 15 15

(the number of its resource, width and height, bits of each pixel, the point that points) and has a line for each of
its rows from the top, with a character for each pixel:

    .  transparent    #  black    o  white

and, with 4 bits, the other colours of the standard palette: r red, g green, y yellow, b blue, m magenta, t cyan, in
capitals for the bright ones, d dark grey, s light grey. Lines that begin with "# " are comments.

What is written is a compiled resource file: resource compilers would give the pictures numbers of their own, and
some of them forget the number of bits.
"""

import pathlib
import re
import struct
import sys

# In the order of the palette; the colours are red, green, blue.
COLORS = {
    "#": (0, 0, 0), "r": (128, 0, 0), "g": (0, 128, 0), "y": (128, 128, 0),
    "b": (0, 0, 128), "m": (128, 0, 128), "t": (0, 128, 128), "d": (128, 128, 128),
    "s": (192, 192, 192), "R": (255, 0, 0), "G": (0, 255, 0), "Y": (255, 255, 0),
    "B": (0, 0, 255), "M": (255, 0, 255), "T": (0, 255, 255), "o": (255, 255, 255),
}
CURSOR, GROUP_CURSOR = 1, 12  # the numbers of the types of resources
HEAD = re.compile(r"cursor (\d+) size (\d+) bits ([14]) hot (\d+) (\d+)")


def read_pictures(path):
    """The pictures of a file, each as (number, size, bits, hot spot, rows)."""
    pictures = []
    for line in path.read_text(encoding="ascii").splitlines():
        head = HEAD.fullmatch(line)
        if head:
            number, size, bits, hot_x, hot_y = map(int, head.groups())
            pictures.append((number, size, bits, (hot_x, hot_y), []))
        elif not line.startswith("# "):
            if not pictures:
                sys.exit(f"{path}: no line that begins a picture")
            pictures[-1][4].append(line)
    for number, size, bits, hot_spot, rows in pictures:
        allowed = ".#o" if bits == 1 else "." + "".join(COLORS)
        if len(rows) != size or any(len(row) != size for row in rows):
            sys.exit(f"{path}: picture {number} is not {size} by {size}")
        if max(hot_spot) >= size:
            sys.exit(f"{path}: the hot spot of picture {number} is outside of it")
        if any(pixel not in allowed for row in rows for pixel in row):
            sys.exit(f"{path}: picture {number} has a pixel that is none of {allowed}")
    return pictures


def pack_row(values, bits):
    """Pixels as bytes, the first one highest, filled up to a multiple of four bytes."""
    digits = "".join(format(value, f"0{bits}b") for value in values)
    digits = digits.ljust((len(digits) + 31) // 32 * 32, "0")
    return int(digits, 2).to_bytes(len(digits) // 8, "big")


def make_image(size, bits, rows):
    """Header, palette, colours and mask, as they stand in a file and in a resource."""
    palette = ["#", "o"] if bits == 1 else list(COLORS)
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, bits, 0, 0, 0, 0, 0, 0)
    colors = b"".join(bytes(reversed(COLORS[name])) + b"\0" for name in palette)
    rows = list(reversed(rows))  # the bottom row comes first
    pixels = b"".join(pack_row([0 if p == "." else palette.index(p) for p in row], bits) for row in rows)
    mask = b"".join(pack_row([int(p == ".") for p in row], 1) for row in rows)
    return header + colors + pixels + mask


def make_group(pictures, sizes):
    group = struct.pack("<HHH", 0, 2, len(pictures))
    for (number, size, bits, _, _), byte_count in zip(pictures, sizes):
        group += struct.pack("<HHHHIH", size, 2 * size, 1, bits, byte_count, number)
    return group


def make_resource(kind, number, data):
    """An entry of a compiled resource file: discardable, in no language."""
    header = struct.pack("<HHHHIHHII", 0xFFFF, kind, 0xFFFF, number, 0, 0x1030, 0, 0, 0)
    return struct.pack("<II", len(data), 8 + len(header)) + header + data + bytes(-len(data) % 4)


def main(folder, output):
    resources = {}
    for path in sorted(pathlib.Path(folder).glob("*.txt")):
        pictures = read_pictures(path)
        sizes = []
        for number, size, bits, hot_spot, rows in pictures:
            data = struct.pack("<HH", *hot_spot) + make_image(size, bits, rows)
            sizes.append(len(data))
            if (CURSOR, number) in resources:
                sys.exit(f"{path}: there is another picture with the number {number}")
            resources[CURSOR, number] = data
        group = int(path.stem.split("-")[0])
        if (GROUP_CURSOR, group) in resources:
            sys.exit(f"{path}: there is another cursor with the number {group}")
        resources[GROUP_CURSOR, group] = make_group(pictures, sizes)
    head = make_resource(0, 0, b"")[:-16] + bytes(16)
    entries = [make_resource(kind, number, data) for (kind, number), data in sorted(resources.items())]
    pathlib.Path(output).write_bytes(head + b"".join(entries))


main(*sys.argv[1:])
