"""Compares EXIF, GPS and IPTC values of real files, as `fiohost properties` gives them, with exiftool's.

usage: exiftool_comparison.py FIOHOST SAMPLES

Every value that both have must agree. exiftool tells values in units of its own (APEX values as
times and apertures, positions in degrees); CONVERSIONS does the same to the stored numbers. Prints
how many values were compared, agree and are excepted. Without exiftool or the samples it says so and
succeeds.
"""

import json
import math
import pathlib
import shutil
import struct
import subprocess
import sys

# (file, group, tag): why the two may differ.
EXCEPTIONS = {}

# Tags whose values exiftool takes apart or shows as something else than a value.
NOT_TOLD = {
    0x927C: "the maker note is decoded, not told",
    0x02BC: "the XMP packet is decoded, not told",
    0x83BB: "the IPTC block is decoded, not told",
}

# Datasets of IIM's envelope record, which share their numbers with those of the application record.
ENVELOPE = {
    "EnvelopeRecordVersion", "Destination", "FileFormat", "FileVersion", "ServiceIdentifier",
    "EnvelopeNumber", "ProductID", "EnvelopePriority", "DateSent", "TimeSent",
    "CodedCharacterSet", "UniqueObjectName", "ARMIdentifier", "ARMVersion",
}

TIFF_FORMATS = {
    "BYTE": "B", "SHORT": "H", "LONG": "I", "SBYTE": "b", "SSHORT": "h", "SLONG": "i",
    "FLOAT": "f", "DOUBLE": "d",
}


def run_json(command):
    output = subprocess.run(command, capture_output=True, check=False).stdout
    # Numbers stay text: what counts is what was printed.
    return json.loads(output.decode("utf-8", "replace"), parse_float=str, parse_int=str)


def fractions(data, signed):
    words = struct.unpack(f"<{len(data) // 4}{'i' if signed else 'I'}", data[: len(data) // 4 * 4])
    pairs = zip(words[::2], words[1::2])
    return [n / d if d else (math.inf if n else math.nan) for n, d in pairs]


def stored_numbers(value):
    data, kind = value["data"], value["type"]
    if kind in ("RATIONAL", "SRATIONAL"):
        return fractions(data, kind == "SRATIONAL")
    if kind not in TIFF_FORMATS:
        return None
    form = TIFF_FORMATS[kind]
    size = struct.calcsize(form)
    if value["kind"] == "number":  # one number, in two or four bytes whatever its type
        data = data[:size].ljust(size, b"\0")
    return list(struct.unpack(f"<{len(data) // size}{form}", data[: len(data) // size * size]))


def text_of(data):
    return data.split(b"\0")[0].decode("utf-8", "replace").rstrip()


def degrees(value):
    numbers = stored_numbers(value)
    return [sum(part / 60**place for place, part in enumerate(numbers) if not math.isnan(part))]


def apex_time(value):
    exponent = stored_numbers(value)[0]
    return [2.0**-exponent if abs(exponent) < 100 else 0.0]  # exiftool's own limit


def apex_aperture(value):
    return [2.0 ** (stored_numbers(value)[0] / 2)]


def time_of_day(value):
    return [float(part) for part in stored_numbers(value)]


def charset_text(value):
    head, data = value["data"][:8], value["data"][8:]
    if head == b"UNICODE\0":
        return None
    return text_of(data)


def listed_bytes(value):
    return [float(byte) for byte in value["data"]]


def colour_filter(value):
    """EXIF 2.32, CFAPattern: two counts, in either byte order in practice, and the colours."""
    data = value["data"]
    counts = struct.unpack(">HH" if data[0] == 0 else "<HH", data[:4])
    return [float(number) for number in (*counts, *data[4:])]


def record_version(value):
    """IIM 4.2, dataset 2:00: a binary number of two octets."""
    return [float(int.from_bytes(value["data"], "big"))]


def iptc_date(value):
    text = text_of(value["data"])
    return f"{text[:4]}:{text[4:6]}:{text[6:]}"


def iptc_time(value):
    text = text_of(value["data"])
    zone = f"{text[6:9]}:{text[9:]}" if len(text) > 6 else ""
    return f"{text[:2]}:{text[2:4]}:{text[4:6]}{zone}"


CONVERSIONS = {
    ("EXIF", 0x9201): apex_time,
    ("EXIF", 0x9202): apex_aperture,
    ("EXIF", 0x9205): apex_aperture,
    ("EXIF", 0x9286): charset_text,
    ("EXIF", 0x9101): listed_bytes,
    ("EXIF", 0xA300): listed_bytes,
    ("EXIF", 0xA301): listed_bytes,
    ("EXIF", 0xA302): colour_filter,
    ("IPTC", 0): record_version,
    ("IPTC", 55): iptc_date,
    ("IPTC", 60): iptc_time,
    ("GPS", 2): degrees,
    ("GPS", 4): degrees,
    ("GPS", 20): degrees,
    ("GPS", 22): degrees,
    ("GPS", 7): time_of_day,
    ("GPS", 0x1B): charset_text,
    ("GPS", 0x1C): charset_text,
}


def told_numbers(told):
    numbers = []
    for word in told.replace(":", " ").split():
        try:
            numbers.append({"undef": math.nan, "inf": math.inf}.get(word) or float(word))
        except ValueError:
            return None
    return numbers


def same_number(ours, told):
    if math.isnan(ours) or math.isnan(told):
        return math.isnan(ours) and math.isnan(told)
    return math.isclose(ours, told, rel_tol=2e-7, abs_tol=1e-12)


def same_numbers(ours, told):
    return told is not None and len(ours) == len(told) and all(map(same_number, ours, told))


def agrees(value, told):
    convert = CONVERSIONS.get((value["directory"], value["tag"]))
    if convert:
        converted = convert(value)
        if converted is None:
            return None
        return (converted == told.rstrip() if isinstance(converted, str)
                else same_numbers(converted, told_numbers(told)))
    numbers = stored_numbers(value) if not value["text"] else None
    if numbers is not None:
        return same_numbers(numbers, told_numbers(told))
    if told.startswith("(Binary data"):
        return told.startswith(f"(Binary data {len(value['data'])} bytes")
    if text_of(value["data"]) == told.rstrip():
        return True
    # Text in the Windows character set, which IIM leaves open.
    latin = value["data"].split(b"\0")[0].decode("cp1252", "replace").rstrip()
    return latin == told.rstrip()


def our_values(entry):
    """The values of one file by (directory, tag), in record order."""
    values = {}
    for field in entry.get("properties", []):
        if field["tag"] is None or "bytes" not in field:
            continue
        directory = {"Image": "EXIF"}.get(field["group"], field["group"])
        value = {"directory": directory, "tag": int(field["tag"]), "type": field["type"],
                 "data": bytes.fromhex(field["bytes"]),
                 "text": field["kind"] == "text", "kind": field["kind"],
                 "name": field["name"]}
        values.setdefault((directory, value["tag"]), []).append(value)
    return values


def told_values(entry):
    """exiftool's values of the same directories, in file order."""
    values = {}
    for key, item in entry.items():
        if not isinstance(item, dict):
            continue
        group, name = key.split(":")[0], key.split(":")[-1]
        directory = {"IFD0": "EXIF", "ExifIFD": "EXIF", "GPS": "GPS", "IPTC": "IPTC"}.get(group)
        if directory is None or name in ENVELOPE or not str(item["id"]).isdigit():
            continue
        told = item["val"] if isinstance(item["val"], list) else [item["val"]]
        values.setdefault((directory, int(item["id"])), []).extend(str(each) for each in told)
    return values


def compare_file(path, ours, told, counts, differences):
    for key, values in ours.items():
        if key[0] == "EXIF" and key[1] in NOT_TOLD:
            continue
        for value, text in zip(values, told.get(key, [])):
            counts["compared"] += 1
            if (path.name, *key) in EXCEPTIONS:
                counts["excepted"] += 1
            elif agrees(value, text):
                counts["agreeing"] += 1
            else:
                differences.append(f"{path.name}: {key[0]} {key[1]:#06x} {value['name']}: "
                                   f"{value['type']} {value['data'][:40]!r}, exiftool {text[:60]!r}")


def sample_files(samples):
    return sorted(path for path in samples.rglob("*") if path.suffix in (".jpg", ".mpo"))


def main(fiohost, samples):
    exiftool = shutil.which("exiftool")
    if exiftool is None:
        print("there is no exiftool to compare with")
        return 1
    if not samples.is_dir():
        print(f"there is no folder {samples}")
        return 77
    files = sample_files(samples)
    names = [str(path) for path in files]
    ours = run_json([fiohost, "properties", "--json", "--raw", *names])
    told = {entry["SourceFile"]: entry
            for entry in run_json([exiftool, "-n", "-j", "-D", "-G1:4", "-a", *names])}
    counts = {"compared": 0, "agreeing": 0, "excepted": 0}
    differences = []
    for path, entry in zip(files, ours):
        compare_file(path, our_values(entry), told_values(told.get(str(path), {})), counts,
                     differences)
    for difference in differences:
        print(difference)
    print(f"{len(files)} files: {counts['compared']} values compared, {counts['agreeing']} agree, "
          f"{counts['excepted']} excepted, {len(differences)} differ")
    return 1 if differences or counts["compared"] == 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], pathlib.Path(sys.argv[2])))
