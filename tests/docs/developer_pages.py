"""The commands that the pages for developers show."""
import re

PROGRAMS = r"(?:\./|cmake|ctest|build/|bench/|fuzz/|scripts/|tests/|packaging/|KF_\w+=)"
QUOTED = r"\./\w|(?:cmake|ctest) -|cmake/wine|(?:bench|fuzz|scripts)/(?:run|coverage|screenshots|page_commands|\w+\.sh)\b"


def commands_of(page):
    """The lines of indented blocks that begin with a program, and such words in backticks."""
    for line in page.split("\n"):
        if re.match(rf"    (?:\$ )?{PROGRAMS}", line):
            yield from re.split(r"\s+&&\s+", re.sub(r"\s+#.*|^\s+(\$ )?", "", line))
        elif not line.startswith("    "):
            for quoted in re.findall(r"`([^`]+)`", line):
                if re.match(QUOTED, quoted):
                    yield from re.split(r"\s+&&\s+", quoted)


def page_commands(root):
    """(page, command) for each command of each page but README.md, whose commands have a test of their own."""
    for page in ["CONTRIBUTING.md", "ARCHITECTURE.md", "SECURITY.md", *sorted(f"docs/{page.name}" for page in (root / "docs").glob("*.md"))]:
        for command in commands_of((root / page).read_text()):
            yield page, command
