#!/usr/bin/env python3
"""Enters the delay-import directory of a linked PE file into its data directories.

The linker lays the delay-import descriptors out one after another (section .text$2) but leaves data
directory 13 of the optional header empty. The run-time helper does not need it; tools that list a
module's dependencies do.  Usage: set_delay_directory.py FILE
"""
import struct
import sys

DELAY_IMPORT_DIRECTORY = 13
DESCRIPTOR_SIZE = 32
SYMBOL_PREFIX = "__DELAY_IMPORT_DESCRIPTOR_"
END_SYMBOL = "delayImportDirectoryEnd"


def symbols(image, table, count):
    """Yields (name, section number, value) of every COFF symbol."""
    strings = table + count * 18
    index = 0
    while index < count:
        raw, value, section, _, _, auxiliaries = struct.unpack_from(
            "<8sIhHBB", image, table + index * 18)
        if raw[:4] == b"\0\0\0\0":
            start = strings + struct.unpack_from("<I", raw, 4)[0]
            raw = image[start:image.index(b"\0", start)]
        yield raw.rstrip(b"\0").decode("ascii", "replace"), section, value
        index += 1 + auxiliaries


def main(path):
    with open(path, "rb") as file:
        image = bytearray(file.read())
    header = struct.unpack_from("<I", image, 0x3C)[0]
    if image[header:header + 4] != b"PE\0\0":
        sys.exit(f"{path}: not a PE file")
    sections_count, _, table, count, optional_size = struct.unpack_from("<HIIIH", image, header + 6)
    optional = header + 24
    first_section = optional + optional_size
    starts = [struct.unpack_from("<I", image, first_section + 40 * i + 12)[0]
              for i in range(sections_count)]

    descriptors, end = [], None
    for name, section, value in symbols(image, table, count):
        if name.startswith(SYMBOL_PREFIX):
            descriptors.append(starts[section - 1] + value)
        elif name == END_SYMBOL:
            end = starts[section - 1] + value
    descriptors.sort()
    if not descriptors or end is None:
        sys.exit(f"{path}: no delay-import descriptors found")
    expected = list(range(descriptors[0], end, DESCRIPTOR_SIZE))
    if descriptors != expected:
        sys.exit(f"{path}: the delay-import descriptors are not contiguous")

    size = end + DESCRIPTOR_SIZE - descriptors[0]
    struct.pack_into("<II", image, optional + 112 + 8 * DELAY_IMPORT_DIRECTORY, descriptors[0], size)
    with open(path, "wb") as file:
        file.write(image)


if __name__ == "__main__":
    main(sys.argv[1])
