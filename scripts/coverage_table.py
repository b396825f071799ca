"""Prints what the coverage report says, folder by folder, and judges the plug-in's."""
import json
import pathlib
import sys

PLUGIN = ("frame", "jpeg", "mpo", "property", "exif", "viewer")
LINES, BRANCHES = 95.0, 85.0


def totals(files):
    keys = ("line_covered", "line_total", "branch_covered", "branch_total")
    return {key: sum(file[key] for file in files) for key in keys}


def percent(part, whole):
    return 100.0 * part / whole if whole else 100.0


def print_row(name, sums):
    lines = percent(sums["line_covered"], sums["line_total"])
    branches = percent(sums["branch_covered"], sums["branch_total"])
    print(f"{name:<22} {sums['line_covered']:>6} of {sums['line_total']:>6} lines {lines:6.1f} %   "
          f"{sums['branch_covered']:>6} of {sums['branch_total']:>6} branches {branches:6.1f} %")
    return lines, branches


def print_missing(report):
    for file in json.loads((report / "lines.json").read_text())["files"]:
        if file["file"].split("/")[0] not in PLUGIN:
            continue
        for line in file["lines"]:
            if line["gcovr/noncode"]:
                continue
            taken = [branch for branch in line["branches"] if branch["count"]]
            if line["count"] == 0:
                print(f"{file['file']}:{line['line_number']}: not run")
            elif len(taken) < len(line["branches"]):
                print(f"{file['file']}:{line['line_number']}: {len(taken)} of {len(line['branches'])} branches")


def main():
    report = pathlib.Path(sys.argv[1])
    files = json.loads((report / "summary.json").read_text())["files"]
    folders = {}
    for file in files:
        parts = file["filename"].split("/")
        folders.setdefault(parts[0] if parts[0] != "companions" else "/".join(parts[:2]), []).append(file)
    if "--missing" in sys.argv[2:]:
        print_missing(report)
    for name in sorted(folders, key=lambda name: (name not in PLUGIN, name)):
        print_row(name, totals(folders[name]))
    lines, branches = print_row("the plug-in's folders", totals([file for name in PLUGIN for file in folders.get(name, [])]))
    sys.exit(0 if lines >= LINES and branches >= BRANCHES else 1)


if __name__ == "__main__":
    main()
