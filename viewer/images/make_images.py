#!/usr/bin/env python3
"""Draws the tree-list's bitmaps and cursors from text.

Usage: make_images.py DRAWING... FOLDER      (DRAWING.txt becomes FOLDER/DRAWING.bmp or .cur)

The first line of a drawing is its kind and size, "bitmap 18x14" or "cursor 32x32 hotspot 15,15";
each further line is a row of pixels, a character each. Rows and ends of rows that are left out are
transparent. Bitmaps have 24 bits a pixel, with COLOURS["."] where they are transparent. Cursors are
black and white, so that they show on every background.
"""
import os
import re
import struct
import sys

COLOURS = {  # red, green, blue
    ".": (255, 0, 255),
    "k": (64, 64, 64),
    "w": (255, 255, 255),
    "y": (255, 215, 96),
    "o": (201, 142, 20),
    "b": (36, 84, 178),
    "g": (24, 128, 72),
    "r": (190, 48, 40),
    "s": (205, 212, 222),
}


def read_drawing(path):
    with open(path, encoding="ascii") as file:
        head, *rows = file.read().splitlines()
    match = re.fullmatch(r"(bitmap|cursor) (\d+)x(\d+)(?: hotspot (\d+),(\d+))?", head)
    if not match:
        sys.exit(f"{path}: the first line is no head")
    kind, (width, height) = match[1], (int(match[2]), int(match[3]))
    if len(rows) > height or any(len(row) > width for row in rows):
        sys.exit(f"{path}: the drawing is larger than its head says")
    pixels = [row.ljust(width, ".") for row in rows] + ["." * width] * (height - len(rows))
    return kind, width, height, (int(match[4] or 0), int(match[5] or 0)), pixels


def bitmap(width, height, pixels):
    data = b""
    for row in reversed(pixels):
        line = b"".join(bytes(reversed(COLOURS[pixel])) for pixel in row)
        data += line + bytes(-len(line) % 4)
    header = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(data), 2835, 2835, 0, 0)
    offset = 14 + len(header)
    return struct.pack("<2sIHHI", b"BM", offset + len(data), 0, 0, offset) + header + data


def mask(pixels, is_set):
    data = b""
    for row in reversed(pixels):
        bits = "".join("1" if is_set(pixel) else "0" for pixel in row)
        data += int(bits, 2).to_bytes(len(bits) // 8, "big")
    return data


def cursor(width, height, hotspot, pixels):
    colour = mask(pixels, lambda pixel: pixel == "w")
    shape = mask(pixels, lambda pixel: pixel == ".")
    header = struct.pack("<IiiHHIIiiII", 40, width, 2 * height, 1, 1, 0, 0, 0, 0, 2, 2)
    image = header + struct.pack("<II", 0x000000, 0xFFFFFF) + colour + shape
    entry = struct.pack("<BBBBHHII", width, height, 2, 0, *hotspot, len(image), 22)
    return struct.pack("<HHH", 0, 2, 1) + entry + image


def main():
    *drawings, folder = sys.argv[1:]
    os.makedirs(folder, exist_ok=True)
    for path in drawings:
        kind, width, height, hotspot, pixels = read_drawing(path)
        stem = os.path.splitext(os.path.basename(path))[0]
        if kind == "bitmap":
            name, data = stem + ".bmp", bitmap(width, height, pixels)
        else:
            name, data = stem + ".cur", cursor(width, height, hotspot, pixels)
        with open(os.path.join(folder, name), "wb") as file:
            file.write(data)


if __name__ == "__main__":
    main()
