#!/usr/bin/env python3
"""Makes halcyrane.ico out of halcyrane.svg; needs rsvg-convert. Run it after a change and commit what it has written.

Small sizes are stored as plain bitmaps, which every part of the shell reads, the largest as a PNG.
"""
import pathlib
import struct
import subprocess
import zlib

FOLDER = pathlib.Path(__file__).parent
BITMAP_SIZES = (16, 20, 24, 32, 40, 48, 64)
PNG_SIZE = 256


def draw(size):
    source = str(FOLDER / "halcyrane.svg")
    return subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), source], check=True,
                          stdout=subprocess.PIPE).stdout


def unfilter(kind, line, above):
    """One line of a PNG, four bytes a pixel, from the difference to its neighbours."""
    for i, value in enumerate(line):
        left = line[i - 4] if i >= 4 else 0
        up = above[i]
        corner = above[i - 4] if i >= 4 else 0
        guess = left + up - corner
        paeth = min((left, up, corner), key=lambda known: abs(guess - known))
        line[i] = (value + (0, left, up, (left + up) // 2, paeth)[kind]) & 0xFF
    return line


def pixels(png, size):
    """The lines of a PNG with eight bits per channel, as lists of (red, green, blue, alpha)."""
    at, packed = 8, b""
    while at < len(png):
        length, kind = struct.unpack(">I4s", png[at:at + 8])
        if kind == b"IDAT":
            packed += png[at + 8:at + 8 + length]
        at += length + 12
    raw = zlib.decompress(packed)
    lines, above, width = [], bytearray(size * 4), size * 4 + 1
    for start in range(0, len(raw), width):
        above = unfilter(raw[start], bytearray(raw[start + 1:start + width]), above)
        lines.append([tuple(above[i:i + 4]) for i in range(0, len(above), 4)])
    return lines


def bitmap(size):
    """Lines from the bottom up, blue first, and behind them a mask of one bit a pixel that nothing needs any more."""
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    colours = b"".join(bytes((blue, green, red, alpha)) for line in reversed(pixels(draw(size), size))
                       for red, green, blue, alpha in line)
    return header + colours + bytes((size + 31) // 32 * 4 * size)


def main():
    images = [(size, bitmap(size)) for size in BITMAP_SIZES] + [(PNG_SIZE, draw(PNG_SIZE))]
    out = struct.pack("<HHH", 0, 1, len(images))
    at = len(out) + 16 * len(images)
    for size, image in images:
        out += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), at)
        at += len(image)
    (FOLDER / "halcyrane.ico").write_bytes(out + b"".join(image for _, image in images))


if __name__ == "__main__":
    main()
