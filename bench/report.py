"""The benchmark's figures as one table, or as JSON.

Usage: report.py table|json RESULTS.json...
Exit code 0 when every limit is reached, 1 when one is missed, 2 when a case could not be measured.
"""

import json
import os
import sys


def rows_of(path):
    """The cases of one result file; none when the file was not written."""
    if not os.path.exists(path) or os.path.getsize(path) == 0:
        return []
    with open(path, encoding="utf-8") as file:
        results = json.load(file).get("benchmarks", [])
    return [row_of(result) for result in results]


def row_of(result):
    """One case as the table has it."""
    row = {"case": result["name"].split("/iterations")[0].split("/manual_time")[0]}
    if result.get("error_occurred"):
        return row | {"error": result["error_message"]}
    beside, unit = result["label"].rsplit("|", 1)
    at_least = result["atLeast"] != 0
    figure, limit = result["figure"], result["limit"]
    reached = figure >= limit if at_least else figure <= limit
    return row | {"beside": beside, "unit": unit, "figure": figure, "limit": limit,
                  "atLeast": at_least, "reached": reached,
                  "ours": result["ours"], "besideSeconds": result["beside"]}


def limit_text(row):
    return ("at least " if row["atLeast"] else "at most ") + f"{row['limit']:g}"


def cells_of(row):
    if "error" in row:
        return [row["case"], row["error"], "", "", "not measured"]
    unit = "" if row["unit"] == "ratio" else " " + row["unit"]
    return [row["case"], row["beside"], f"{row['figure']:.3f}{unit}", limit_text(row),
            "reached" if row["reached"] else "missed"]


def print_table(rows):
    table = [["case", "beside", "figure", "to reach", ""]] + [cells_of(row) for row in rows]
    widths = [max(len(line[column]) for line in table) for column in range(5)]
    for line in table:
        print("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |")
        if line is table[0]:
            print("|" + "|".join("-" * (width + 2) for width in widths) + "|")


def main():
    form, paths = sys.argv[1], sys.argv[2:]
    rows = [row for path in paths for row in rows_of(path)]
    if form == "json":
        print(json.dumps(rows, indent=2))
    else:
        print_table(rows)
    if not rows or any("error" in row for row in rows):
        return 2
    return 0 if all(row["reached"] for row in rows) else 1


if __name__ == "__main__":
    sys.exit(main())
