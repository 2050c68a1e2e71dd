#!/usr/bin/python3
"""Checks that every include follows an allowed arrow.

scripts/include-arrows.txt lists, for each folder, the folders that its files may include from. This script
fails on an include that follows no arrow, on an include that is not found, on arrows that form a cycle, and
on units (a header with its source) that include each other in a circle.
"""

import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
ARROWS = "scripts/include-arrows.txt"
# Where a quoted include is looked for besides the folder of the file that has it.
INCLUDE_ROOTS = ["", "service/", "tests/"]
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
GENERATED = re.compile(r"^ui_\w+\.h$|\.moc$")


def read_arrows(text):
    """Returns folder -> set of folders, or raises ValueError for a line that is not understood."""
    arrows = {}
    for number, line in enumerate(text.splitlines(), 1):
        line = line.split("#")[0].strip()
        if not line:
            continue
        folder, colon, targets = line.partition(":")
        if not colon or folder in arrows:
            raise ValueError(f"{ARROWS}, line {number}: not understood, or a second line for one folder")
        arrows[folder.strip()] = set(targets.split())
    for folder, targets in arrows.items():
        for target in targets - {"*"}:
            if target not in arrows:
                raise ValueError(f"{ARROWS}: {folder} points to {target}, which has no line")
    return arrows


def folder_of(path, arrows):
    """The deepest folder of the table that contains the file."""
    for parent in Path(path).parents:
        if str(parent) in arrows:
            return str(parent)
    return None


def find_cycle(graph):
    """Returns one cycle of the graph as a list of nodes, or None."""
    done, on_path = set(), []

    def visit(node):
        if node in on_path:
            return on_path[on_path.index(node) :] + [node]
        if node in done:
            return None
        on_path.append(node)
        for target in sorted(graph.get(node, ())):
            cycle = visit(target)
            if cycle:
                return cycle
        on_path.pop()
        done.add(node)
        return None

    for start in sorted(graph):
        cycle = visit(start)
        if cycle:
            return cycle
    return None


def resolve(include, path, files):
    """The file that a quoted include means, or None."""
    candidates = [str((Path(path).parent / include))] + [root + include for root in INCLUDE_ROOTS]
    return next((candidate for candidate in candidates if candidate in files), None)


def check(files, arrows, read):
    """Returns the problems found, one line each."""
    problems = []
    units = {}
    product = {folder: targets - {"*"} for folder, targets in arrows.items() if "*" not in targets}
    cycle = find_cycle(product)
    if cycle:
        problems.append(f"{ARROWS}: the arrows form a cycle: {' -> '.join(cycle)}")
    for path in sorted(files):
        folder = folder_of(path, arrows)
        if folder is None:
            problems.append(f"{path}: its folder has no line in {ARROWS}")
            continue
        for include in INCLUDE.findall(read(path)):
            if GENERATED.search(include):
                continue
            target = resolve(include, path, files)
            if target is None:
                problems.append(f'{path}: "{include}" is not found')
                continue
            target_folder = folder_of(target, arrows)
            allowed = arrows[folder] | {folder}
            if "*" not in allowed and target_folder not in allowed:
                problems.append(f"{path}: no arrow from {folder} to {target_folder} ({include})")
            if "*" not in allowed:
                unit, target_unit = str(Path(path).with_suffix("")), str(Path(target).with_suffix(""))
                if unit != target_unit:
                    units.setdefault(unit, set()).add(target_unit)
    cycle = find_cycle(units)
    if cycle:
        problems.append(f"units include each other in a circle: {' -> '.join(cycle)}")
    return problems


def main():
    """Checks the sources of the checkout; exit status 1 when there is a problem."""
    listing = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.h", "*.cpp"],
        cwd=ROOT,
        check=True,
        capture_output=True,
        text=True,
    )
    files = {path for path in listing.stdout.split() if (ROOT / path).exists()}
    try:
        arrows = read_arrows((ROOT / ARROWS).read_text(encoding="utf-8"))
    except ValueError as error:
        sys.exit(str(error))
    problems = check(files, arrows, lambda path: (ROOT / path).read_text(encoding="utf-8"))
    for problem in problems:
        print(problem, file=sys.stderr)
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
