#!/usr/bin/env python3
"""record_figures.py FOLDER: writes the figures of one run of ./check into docs/figures.md.

./check --record calls it with its folder of results: `command`, `load`, `steps`, `programs`, `e2e`,
`measured` and `fuzz`; all but the first may be missing. The section of the same command in the document is
replaced, the others stay.
"""

import collections
import datetime
import json
import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
DOCUMENT = ROOT / "docs" / "figures.md"


def table(titles, entries):
    """The lines of a Markdown table; the first column is text, the others are numbers or text."""
    cells = [[str(cell).replace("|", "\\|") for cell in entry] for entry in (titles, *entries)]
    lines = [f"| {' | '.join(entry)} |" for entry in cells]
    lines.insert(1, "|" + "---|" * len(titles))
    return lines


def replace_section(document, name, lines):
    """Replaces the lines between the marks of a section, which a document without them gets at its end."""
    begin, end = f"<!-- figures of {name} -->", f"<!-- end of the figures of {name} -->"
    section = "\n".join([begin, "", *lines, "", end])
    text = document.read_text(encoding="utf-8")
    pattern = re.compile(re.escape(begin) + ".*?" + re.escape(end), re.DOTALL)
    if pattern.search(text):
        text = pattern.sub(lambda _found: section, text)
    else:
        text = text.rstrip("\n") + "\n\n" + section + "\n"
    document.write_text(text, encoding="utf-8")


def git(*arguments):
    return subprocess.run(
        ["git", "-C", ROOT, *arguments], capture_output=True, text=True, check=True
    ).stdout.strip()


def circumstances():
    """When, of which commit and on what the figures were measured."""
    commit = git("rev-parse", "--short=9", "HEAD")
    if git("status", "--porcelain", "--untracked-files=no"):
        commit += " with changes that are not committed"
    now = datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d %H:%M UTC")
    return f"{now}, commit {commit}, {os.cpu_count()} processors"


def read(folder, name):
    path = Path(folder) / name
    return path.read_text(encoding="utf-8").splitlines() if path.exists() else []


def end_to_end(lines):
    """Tables of the results of the end-to-end tests: one entry for each file, and the tests that failed."""
    counted = collections.defaultdict(collections.Counter)
    seconds = collections.Counter()
    failed = []
    for line in lines:
        found = re.fullmatch(r"(\S+?)::(.*): (left out|[a-z]+).*?(?:, ([\d.]+) s)?", line)
        if not found:
            raise ValueError(f"not a result of an end-to-end test: {line}")
        file, test, outcome, duration = found.groups()
        counted[file][outcome] += 1
        seconds[file] += float(duration or 0)
        if outcome not in ("passed", "left out"):
            failed.append((file, test, outcome))
    if not counted:
        return []
    total = sum(counted.values(), collections.Counter())
    entries = [
        (
            name,
            count["passed"],
            count.total() - count["passed"] - count["left out"],
            count["left out"],
            round(time),
        )
        for name, count, time in [
            *((name, counted[name], seconds[name]) for name in sorted(counted)),
            ("all", total, seconds.total()),
        ]
    ]
    lines = [
        "",
        *table(("end-to-end tests", "passed", "failed", "left out (slow)", "seconds of the tests"), entries),
    ]
    if failed:
        lines += ["", *table(("failed", "test", "outcome"), failed)]
    return lines


def shown(value):
    """A measured value as text: of a list of texts their number, of an object its fields in turn."""
    if isinstance(value, list):
        if value and all(isinstance(one, str) for one in value):
            return str(len(value))
        return ", ".join(map(shown, value)) or "0"
    if isinstance(value, dict):
        return ", ".join(f"{key} {shown(one)}" for key, one in value.items()) or "0"
    return "none" if value is None else str(value)


def measured(lines):
    """A table of the figures that the tests have measured; a figure that was measured often has one entry."""
    values = collections.defaultdict(list)
    for line in lines:
        one = json.loads(line)
        values[one["test"], one["name"]].append(shown(one["value"]))
    entries = [(*key, "; ".join(held)) for key, held in sorted(values.items())]
    return ["", *table(("measured by", "figure", "value"), entries)] if entries else []


def sections(folder):
    """The lines of the section for the results in the folder."""
    (command,) = read(folder, "command")
    load = "".join(f", load averages {load}" for load in read(folder, "load"))
    lines = [f"## `{command}`", "", f"{circumstances()}{load}."]
    steps = [line.split(" ", 2) for line in read(folder, "steps")]
    if steps:
        lines += ["", *table(("step", "result", "seconds"), steps)]
    programs = [line.split() for line in read(folder, "programs")]
    if programs:
        lines += ["", *table(("build", "test programs", "passed", "failed"), programs)]
    lines += end_to_end(read(folder, "e2e"))
    fuzz = [
        (line, re.match(r"(\S+) +(\S+) executions +(\S+)/s +(.*)", line)) for line in read(folder, "fuzz")
    ]
    if fuzz:
        entries = [found.groups() if found else (line, "", "", "") for line, found in fuzz]
        lines += ["", *table(("fuzz target", "inputs", "a second", "result"), entries)]
    return command, lines + measured(read(folder, "measured"))


def main():
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    command, lines = sections(sys.argv[1])
    replace_section(DOCUMENT, command, lines)
    print(f"{DOCUMENT.relative_to(ROOT)}: the figures of {command}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
