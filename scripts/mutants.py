"""Changes the plug-in's sources one place at a time and tells which changes no test notices.

A change is a condition turned round, a constant or an offset moved by one, a logical operator
exchanged. Each is built in a copy of the sources and put before the test programs, the quick ones
first. A change that does not compile does not count; one that makes a program fail, crash or hang is
noticed. The places are drawn from all by a seed, so that a run can be repeated.
"""
import argparse
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys

FOLDERS = ("frame", "jpeg", "mpo", "property", "exif", "viewer")
COPIED = FOLDERS + ("host", "platform", "companions", "fiohost", "tests", "examples", "cmake", "CMakeLists.txt",
                    "CMakePresets.json", "docs", "fuzz", "bench")

# What stands in the source, and what takes its place. Operators stand between spaces in this layout,
# which tells them from template brackets, pointers and references.
OPERATORS = {" == ": " != ", " != ": " == ", " < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ",
             " && ": " || ", " || ": " && ", " + ": " - ", " - ": " + ", " += ": " -= ", " -= ": " += ",
             " << ": " >> ", " >> ": " << "}
WORDS = {"return true;": "return false;", "return false;": "return true;"}
OPERATOR = re.compile("|".join(re.escape(key) for key in sorted(list(OPERATORS) + list(WORDS), key=len, reverse=True)))
NUMBER = re.compile(r"(?<![\w.'\"])(0x[0-9A-Fa-f]+|\d+)(?=[uU]?[\W])")
NEGATION = re.compile(r"(?<=[( ])!(?=[A-Za-z_(])")
LEFT_OUT = re.compile(r"^\s*(//|#|static_assert|using |template|namespace |HOST_)|operator|\[\[nodiscard\]\] .*;$")


# Test programs with their filters and the seconds after which one hangs, the quick ones first; those of
# the companions alone cannot notice. Of the failing machine's tests those of the plug-in's entries: those
# of the commands take minutes.
PROGRAMS = [(f"tests/{name}", [], 60) for name in (
    "plugin_tests/property_tests", "plugin_tests/jpeg_tests", "plugin_tests/mpo_tests",
    "plugin_tests/viewer_tests", "plugin_tests/plugin_tests", "plugin_tests/exif_tests", "plugin_tests/heap_tests",
    "companions_missing_test/companions_missing_test", "resources_missing_test/resources_missing_test",
    "companion_search_test/companion_search_test", "tables_missing_test/tables_missing_test",
    "long_texts_test/long_texts_test", "segment_tables_missing_test/segment_tables_missing_test",
    "jpeg_real_codec_tests/jpeg_real_codec_tests", "mpo_real_codec_tests/mpo_real_codec_tests")]
PROGRAMS += [("dist/fault_tests", ["--gtest_filter=-AllThatWrite*"], 120),
             ("tests/exif_round_trip_tests/exif_round_trip_tests", [], 300),
             ("tests/fiohost_tests/fiohost_tests", [], 600)]


# What nothing notices is put before the plug-in's tests again with the C library's own check of what is written
# behind a block, which stands in for the sanitizer build. It takes its time over a test that asks for gigabytes.
HEAP_CHECK = {"LD_PRELOAD": "libc_malloc_debug.so.0", "MALLOC_CHECK_": "3"}
HEAP_CHECKED = [(program, ["--gtest_filter=-ScaledRead.ABlockThatCannotBeHad*"], seconds)
                for program, _, seconds in PROGRAMS if program.startswith("tests/plugin_tests/")]


class Change:
    def __init__(self, file, line, column, length, text):
        self.file, self.line, self.column, self.length, self.text = file, line, column, length, text

    def apply(self, source):
        lines = source.split("\n")
        before = lines[self.line]
        lines[self.line] = before[:self.column] + self.text + before[self.column + self.length:]
        return "\n".join(lines)

    def describe(self, source):
        before = source.split("\n")[self.line].strip()
        after = self.apply(source).split("\n")[self.line].strip()
        return f"{self.file}:{self.line + 1}: {before}  ->  {after}"


def code_of(line):
    """The line with comments and texts blanked out, at the same columns."""
    line = re.sub(r'"(\\.|[^"\\])*"', lambda m: '"' + "_" * (len(m.group()) - 2) + '"', line)
    line = re.sub(r"'(\\.|[^'\\])+'", lambda m: "'" + "_" * (len(m.group()) - 2) + "'", line)
    return re.sub(r"//.*", lambda m: " " * len(m.group()), line)


def changes_of(file, source):
    for number, raw in enumerate(source.split("\n")):
        if LEFT_OUT.search(raw):
            continue
        line = code_of(raw)
        for found in OPERATOR.finditer(line):
            text = OPERATORS.get(found.group()) or WORDS[found.group()]
            yield Change(file, number, found.start(), len(found.group()), text)
        for found in NUMBER.finditer(line):
            text = found.group()
            moved = hex(int(text, 16) + 1) if text.startswith("0x") else str(int(text) + 1)
            yield Change(file, number, found.start(), len(text), moved)
        for found in NEGATION.finditer(line):
            yield Change(file, number, found.start(), 1, "")


def compiled_sources(root, build):
    """The plug-in's sources that the native build compiles, and their folders' headers."""
    entries = json.loads((build / "compile_commands.json").read_text())
    sources = set()
    for entry in entries:
        path = pathlib.Path(os.path.relpath(entry["file"], root))
        if path.parts[0] in FOLDERS:
            sources.add(path)
            header = path.with_suffix(".h")
            if (root / header).exists():
                sources.add(header)
    return sorted(sources)


class Bench:
    """A copy of the sources with a build of its own."""

    def __init__(self, root, folder):
        self.root, self.folder, self.build = root, folder, folder / "build" / "linux"
        folder.mkdir(parents=True, exist_ok=True)
        for name in COPIED:
            source = root / name
            if source.is_dir():
                # What differs is as new as the copying: a change that was stopped half-way is built again.
                subprocess.run(["rsync", "-rlpc", "--delete", f"{source}/", f"{folder / name}/"], check=True)
            elif source.exists():
                shutil.copy(source, folder / name)

    def configure(self):
        subprocess.run(["cmake", "--preset", "linux", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0"],
                       cwd=self.folder, check=True, stdout=subprocess.DEVNULL)

    def make(self):
        return subprocess.run(["cmake", "--build", str(self.build)], stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True)

    def noticed_by(self):
        return self.failing(PROGRAMS, {}) or self.failing(HEAP_CHECKED, HEAP_CHECK)

    def failing(self, programs, checks):
        for path, filters, seconds in programs:
            program = self.build / path
            if not program.exists():
                sys.exit(f"mutants: a test program is missing: {program}")
            try:
                result = subprocess.run([str(program), "--gtest_brief=1", "--gtest_fail_fast", *filters],
                                        cwd=self.build, env={**os.environ, **checks}, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL, timeout=seconds)
            except subprocess.TimeoutExpired:
                return program.name + " (hangs)"
            if result.returncode != 0:
                return program.name
        return None


def main():
    arguments = argparse.ArgumentParser(prog="mutants", description=__doc__.split("\n")[0])
    arguments.add_argument("count", nargs="?", type=int, default=300, help="how many changes (300)")
    arguments.add_argument("--seed", type=int, default=20261121)
    arguments.add_argument("--again", action="store_true", help="only what survived the last time")
    arguments.add_argument("--root", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    options = arguments.parse_args()

    kept = options.root / "build" / "mutants" / "survivors.txt"
    last = set()
    if options.again:
        if not kept.exists():
            sys.exit("mutants: there was no last time; run ./mutants first")
        last = set(filter(None, kept.read_text().split("\n")))
        if not last:
            print("Nothing survived the last time.")
            return

    bench = Bench(options.root, options.root / "build" / "mutants")
    bench.configure()
    made = bench.make()
    if made.returncode != 0:
        sys.exit(made.stdout[-2000:])
    if (broken := bench.noticed_by()) is not None:
        sys.exit(f"mutants: {broken} fails without any change")

    # The copy's sources: the others may be worked on meanwhile.
    candidates = [change for source in compiled_sources(bench.folder, bench.build)
                  for change in changes_of(source, (bench.folder / source).read_text())]
    random.Random(options.seed).shuffle(candidates)
    if options.again:
        candidates = [change for change in candidates
                      if change.describe((bench.folder / change.file).read_text()) in last]
    noticed, survivors, invalid = 0, [], 0
    for change in candidates:
        if noticed + len(survivors) == options.count:
            break
        path = bench.folder / change.file
        source = path.read_text()
        path.write_text(change.apply(source))
        try:
            if bench.make().returncode != 0:
                invalid += 1
                continue
            by = bench.noticed_by()
        finally:
            path.write_text(source)
        if by is None:
            survivors.append(change.describe(source))
            kept.write_text("\n".join(survivors))
        else:
            noticed += 1
        print(f"{noticed + len(survivors):4} {by or 'SURVIVES'}: {change.describe(source)}", flush=True)
    kept.write_text("\n".join(survivors))
    total = noticed + len(survivors)
    print(f"\n{len(candidates)} places, seed {options.seed}: {total} changes, {noticed} noticed, "
          f"{len(survivors)} not ({100 * len(survivors) / max(total, 1):.1f} %), {invalid} more did not compile")
    for line in survivors:
        print("  " + line)
    sys.exit(0 if len(survivors) * 10 < total else 1)


if __name__ == "__main__":
    main()
