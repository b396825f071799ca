"""Checks every command that the pages for developers show: it is there, and takes what it is given.

Building, measuring and fuzzing take minutes, so what they would do is asked for instead of done: a preset
and a target must be known to CMake, a filter must leave tests, a case or a fuzz target must be listed.
scripts/page_commands runs them all.
"""
import json
import pathlib
import re
import shlex
import subprocess
import sys

from developer_pages import page_commands

root, build = (pathlib.Path(argument) for argument in sys.argv[1:3])


def presets():
    listed = json.loads((root / "CMakePresets.json").read_text())
    return {kind: {preset["name"] for preset in listed[f"{kind}Presets"] if not preset.get("hidden")}
            for kind in ("configure", "build", "test")}


def targets():
    """Every target of the native build, and what names a program of another build of the same sources."""
    listed = subprocess.run(["ninja", "-C", str(build), "-t", "targets", "all"], capture_output=True, text=True, check=True)
    return {line.split(":")[0] for line in listed.stdout.split("\n")}


def leaves_tests(program, arguments):
    listed = subprocess.run([program, "--gtest_list_tests", *arguments], cwd=root, capture_output=True, text=True)
    return listed.returncode == 0 and "  " in listed.stdout


def after(words, option):
    return words[words.index(option) + 1] if option in words else None


def fault_of_cmake(words):
    known = presets()
    if "--build" in words:
        place = after(words, "--build") if after(words, "--build") != "--preset" else None
        if place and place.removeprefix("build/") not in known["configure"]:
            return "builds in a folder of no preset"
        if "--preset" in words and after(words, "--preset") not in known["build"]:
            return "names no build preset"
        target = after(words, "--target")
        return None if target is None or target in targets() else f"there is no target {target}"
    return None if after(words, "--preset") in known["configure"] else "names no configure preset"


def fault_of_ctest(words):
    known = presets()
    if "--preset" in words:
        return None if after(words, "--preset") in known["test"] else "names no test preset"
    if after(words, "--test-dir").removeprefix("build/") not in known["configure"]:
        return "names a folder of no preset"
    label = after(words, "-L")
    labels = re.findall(r"LABELS (\w+)", "".join(page.read_text() for page in root.glob("*/CMakeLists.txt")))
    return None if label is None or label in labels else f"no test has the label {label}"


def fault_of_test_program(words):
    # The sanitizer builds have the same programs; the native one answers for them.
    program = next((place for place in (build / "dist" / pathlib.Path(words[0]).name,
                                        build / pathlib.Path(*pathlib.Path(words[0]).parts[2:])) if place.exists()), build)
    if not program.is_file():
        return "is no program of the build"
    return None if leaves_tests(str(program), words[1:]) else "leaves no test to run"


def fault_of_script(words):
    script = root / words[0].removeprefix("./")
    if not script.is_file() or not script.stat().st_mode & 0o100:
        return "is no program"
    given = [word for word in words[1:] if not re.match(r"[A-Z\[]|\.\.\.|<|-", word)]
    usage = script.read_text()
    if words[0] in ("fuzz/run", "fuzz/coverage"):
        given = [word for word in (given[:1] if words[0] == "fuzz/run" else given) if not (root / "fuzz" / "targets" / f"{word}.cpp").exists()]
    elif words[0] == "bench/run":
        cases = "".join(page.read_text() for page in (root / "bench" / "cases").glob("*.cpp"))
        given = [word for word in given if not re.search(rf'"{word}\b', cases)]
    else:
        given = []
    if given:
        return f"does not know {given[0]}"
    unknown = [word for word in words[1:] if re.match(r"--\w", word) and word not in usage]
    return f"does not know {unknown[0]}" if unknown and words[0] in ("bench/run", "./coverage", "./mutants") else None


def fault_of(command):
    words = [word for word in shlex.split(command) if not re.match(r"\w+=", word)]
    if ">" in words:
        words = words[:words.index(">")]
    if words[0] == "cmake":
        return fault_of_cmake(words)
    if words[0] == "ctest":
        return fault_of_ctest(words)
    if words[0].startswith("build/"):
        return fault_of_test_program(words)
    return fault_of_script(words)


seen, faults = 0, []
for page, command in page_commands(root):
    seen += 1
    if (fault := fault_of(command)) is not None:
        faults.append(f"{page}: {command}\n  {fault}")
print(f"{seen} commands")
if seen < 20:
    faults.append("fewer commands were found than the pages have")
sys.exit("\n".join(faults) if faults else 0)
