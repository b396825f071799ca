"""Runs every command that README.md shows, in order, and compares what it prints with what stands there.

A line "..." stands for any lines, blank spaces for any blank spaces. Pictures that a command needs and
no other makes are made first.
"""
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

root, build = (pathlib.Path(argument) for argument in sys.argv[1:3])
fiohost = build / "dist" / "fiohost"
make_stereo = build / "examples" / "make_stereo"


def blocks(page):
    """Commands, each with the lines behind it."""
    command, expected = None, []
    for line in page.split("\n") + [""]:
        if line.startswith("    $ "):
            if command is not None:
                yield command, expected
            command, expected = line[6:], []
        elif command is not None and command.endswith("\\") and line.startswith("    "):
            command = command[:-1] + line.strip()
        elif command is not None and line.startswith("    "):
            expected.append(line[4:])
        elif command is not None:
            yield command, expected
            command, expected = None, []


def words_of(command):
    words = shlex.split(command)
    if words[0] == "./run":
        files = all(pathlib.Path(folder, word).is_file() for word in words[1:])
        return [str(fiohost)] + (["show"] if files else []) + words[1:]
    return [str(root / "build" / words[0][len("build/"):]).replace("build/linux", str(build.relative_to(root)))] + words[1:]


def agrees(expected, printed):
    """Whether the lines agree, with "..." for any number of lines."""
    pattern = ""
    for line in expected:
        if line.strip() == "...":
            pattern += r"(?:.*\n)*?"
        else:
            pattern += r"\s*" + r"\s+".join(re.escape(word) for word in line.split()) + r"\s*\n"
    return re.fullmatch(pattern + (r"(?:.*\n)*" if expected and expected[-1].strip() == "..." else ""), printed) is not None


def prepare():
    """A stereo file whose index is stale, and one that bears the name of a JPEG file."""
    def run(*words):
        subprocess.run([str(word) for word in words], cwd=folder, check=True, stdout=subprocess.DEVNULL)
    run(make_stereo, "l.jpg", "r.jpg")
    run(fiohost, "mpo", "build", "-o", "pair.mpo", "l.jpg", "r.jpg", "--kind", "stereo")
    pair = pathlib.Path(folder, "pair.mpo").read_bytes()
    pathlib.Path(folder, "pair.jpg").write_bytes(pair)
    # An editor puts a comment into the first picture and leaves the index.
    comment = b"\xff\xfe\x00\x0aedited.."
    pathlib.Path(folder, "edited.mpo").write_bytes(pair[:2] + comment + pair[2:])
    for name in ("l.jpg", "r.jpg", "pair.mpo"):
        pathlib.Path(folder, name).unlink()


if not (root.parent / "shared" / "samples").is_dir():
    print("the samples' folder is not here: the commands that take pictures from it cannot be run")
    sys.exit(77)

bad = count = 0
with tempfile.TemporaryDirectory() as scratch:
    folder = pathlib.Path(scratch, "project")
    folder.mkdir()
    pathlib.Path(scratch, "shared").symlink_to(root.parent / "shared")
    prepare()
    for command, expected in blocks((root / "README.md").read_text()):
        count += 1
        result = subprocess.run(words_of(command), cwd=folder, capture_output=True, text=True, timeout=60)
        printed = result.stdout + result.stderr
        failed = result.returncode not in (0, 1) or (result.returncode != 0 and not result.stderr and not expected)
        if failed or (expected and not agrees(expected, printed)):
            bad += 1
            print(f"$ {command}\nprints\n{printed}\nnot\n" + "\n".join(expected))
if count == 0:
    sys.exit("README.md shows no command")
sys.exit(f"{bad} of {count} commands do not print what README.md says" if bad else 0)
