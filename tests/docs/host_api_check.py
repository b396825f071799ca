"""Compares docs/host-api.md with the declarations in host/ and the plug-in's export list.

Usage: host_api_check.py PROJECT. Names every difference and ends with 1 when there is one.
"""
import re
import sys
from pathlib import Path

from host_headers import Headers


def one_line(text):
    return " ".join(text.replace("host::", "").replace(" * ", "* ").split())


def table_under(page, title):
    """The cells of the table behind a heading."""
    match = re.search(rf"^### {re.escape(title)}.*?\n\n\|.*?\n\|[-|]+\n((?:\|.*\n?)*)", page, re.M)
    return [[cell.strip() for cell in row.strip("|").split("|")] for row in match[1].splitlines()] if match else []


def check_records(page, headers):
    for name, (fields, size) in headers.records.items():
        documented = [tuple(row[:3]) for row in table_under(page, f"`{name}`, {size} bytes")]
        declared = [(str(offset), kind, f"`{field}`") for offset, kind, field in fields]
        for row in sorted(set(declared) ^ set(documented)):
            yield f"{name}: {row} is {'not on the page' if row in declared else 'not declared'}"


def check_numbers(page, headers):
    rows = re.findall(r"^\| (-?(?:0x)?[0-9A-F]+) \| `(\w+)` \|$", page, re.M)
    documented = {name: int(number, 0) for number, name in rows}
    for name, number in documented.items():
        if headers.numbers.get(name) != number:
            yield f"{name}: {number} on the page, {headers.numbers.get(name)} declared"
    for text in headers.texts.values():
        for enum, body in re.findall(r"enum (\w+) : \w+ \{(.*?)\};", text, re.S):
            if enum == "PluginOrdinal":
                continue
            for name in re.findall(r"(\w+) = ", body):
                if name not in documented:
                    yield f"{enum}: {name} is not on the page"


def check_entries(page, headers, project):
    exports = dict((name, number) for name, number in
                   re.findall(r"^(\w+) @(\d+)", (project / "frame/k32jpg.def").read_text(), re.M))
    rows = re.findall(r"^\| (\d+) \| `(kf\w+)` \| `(.+?)` \|", page, re.M)
    signatures = {one_line(signature) for signature in headers.entries.values()}
    for number, name, signature in rows:
        if exports.pop(name, number) != number:
            yield f"{name}: another ordinal than {number} is exported"
        if headers.numbers.get("ordinal" + re.sub(r"^kf(DLL)?", "", name)) != int(number):
            yield f"{name}: no such ordinal is declared"
        if signature not in signatures:
            yield f"{name}: no entry of that signature is declared"
    for name in exports:
        yield f"{name} is exported and not on the page"


def check_calls(page, headers):
    for name, (_, result, arguments) in headers.calls.items():
        line = one_line(f"{result} {name}({arguments})")
        if f"`{line}`" not in page:
            yield f"{name}: not on the page as {line}"
    for name, signature in headers.entries.items():
        if not name.endswith("Entry") and f"`{name}`: `{one_line(signature)}`" not in page:
            yield f"{name}: not on the page as {one_line(signature)}"


def main():
    project = Path(sys.argv[1])
    page = (project / "docs/host-api.md").read_text()
    headers = Headers(project / "host")
    assert len(headers.records) > 30 and len(headers.calls) > 25, "the headers could not be read"
    differences = [*check_records(page, headers), *check_numbers(page, headers),
                   *check_entries(page, headers, project), *check_calls(page, headers)]
    print("\n".join(differences) if differences else
          f"{len(headers.records)} records, {len(headers.calls)} calls: the page says what the headers declare")
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
