#!/usr/bin/python3
"""scripts/tidy_tests.py BUILD STAMPS: clang-tidy over the tests, with the compile commands of a built tree.

A test includes most of Qt and GoogleTest, which costs more than its own lines. So files with similar commands
are looked at together, in one translation unit that includes them. A file whose local names are also those
of an earlier one does not compile there; it is looked at with the others of which that is true, in the end
alone, with its own command. A file that passed is not looked at again until it, a header of the tests or the
list of checks changes.
"""

import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
from multiprocessing.pool import ThreadPool
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parent.parent
LARGEST_GROUP = 24
# The dialect. The product's other checks would find little here for three times the time.
CHECKS = "-*,readability-braces-around-statements,readability-function-size,readability-identifier-naming"
# What CMake adds for precompiled headers; the last word is their list as a text.
PRECOMPILED = re.compile(
    r"-Winvalid-pch (?:-Xclang -include-pch -Xclang \S+ )?(?:-Xclang )?-include (?:-Xclang )?(\S+)"
)
# The first line of what clang-tidy reports about one place.
REPORT = re.compile(r"^(?=/\S+?:\d+:\d+: (?:error|warning): )", re.MULTILINE)
NOT_COMPILED = "[clang-diagnostic-error]"
# A wrong name in the last line of every unit: its report shows that the checks ran and came to the end.
LAST_NAME = "LastNameOfTheUnit"


class Command(NamedTuple):
    """How a file is compiled, without the file and the output."""

    directory: str
    headers: tuple  # those that come first
    definitions: tuple
    folders: tuple  # of includes, with the option before each
    others: tuple

    def merged(self, other):
        """One command for the files of both; None when there is none."""
        if (self.directory, self.headers, self.others) != (other.directory, other.headers, other.others):
            return None
        definitions = tuple(dict.fromkeys(self.definitions + other.definitions))
        names = {definition.partition("=")[0] for definition in definitions}
        if len(names) != len(definitions):
            return None
        folders = tuple(dict.fromkeys(self.folders + other.folders))
        return Command(self.directory, self.headers, definitions, folders, self.others)

    def options(self):
        """The words of the command line."""
        return [*self.definitions, *(word for folder in self.folders for word in folder), *self.others]


def listed(*patterns):
    """The tracked files that match."""
    done = subprocess.run(
        ["git", "ls-files", *patterns], cwd=ROOT, check=True, capture_output=True, text=True
    )
    return [path for path in done.stdout.split() if (ROOT / path).exists()]


def digest(paths):
    seen = hashlib.sha256()
    for path in paths:
        seen.update((ROOT / path).read_bytes())
    return seen.hexdigest()[:16]


def parsed(directory, text):
    """A command of a compiler."""
    headers = tuple(PRECOMPILED.findall(text))
    words = shlex.split(PRECOMPILED.sub("", text))
    words = words[next(i for i, word in enumerate(words) if word.startswith("-")) : words.index("-o")]
    definitions, folders, others = [], [], []
    remaining = iter(words)
    for word in remaining:
        if word == "-isystem":
            folders.append((word, next(remaining)))
        elif word.startswith("-I"):
            folders.append((word,))
        elif word.startswith("-D"):
            definitions.append(word)
        elif word != "-Werror":
            others.append(word)
    return Command(directory, headers, tuple(definitions), tuple(folders), tuple(others))


def commands_of(build):
    """File -> its command."""
    found = {}
    for entry in json.loads(Path(build, "compile_commands.json").read_text(encoding="utf-8")):
        path = os.path.relpath(entry["file"], ROOT)
        found.setdefault(path, parsed(entry["directory"], entry["command"]))
    return found


def grouped(commands, paths):
    """A list of groups of files, each with the command that serves them all; the largest come first."""
    kinds = []
    for path in paths:
        for kind in kinds:
            command = kind[0].merged(commands[path])
            if command:
                kind[0] = command
                kind[1].append(path)
                break
        else:
            kinds.append([commands[path], [path]])
    groups = []
    for command, members in kinds:
        count = -(-len(members) // LARGEST_GROUP)
        groups += [(command, members[first::count]) for first in range(count)]
    return sorted(groups, key=lambda group: -len(group[1]))


def not_compiled(reports, paths):
    """Those of the files that do not compile in one unit with the others.

    A report whose place is in a file is due to that file. One whose place is in a header is due to the files
    that its notes name; when they name none, it may be due to any.
    """
    broken = set()
    for report in reports:
        if NOT_COMPILED in report:
            place = {path for path in paths if report.startswith(f"{ROOT / path}:")}
            broken |= place or {path for path in paths if f"{ROOT / path}:" in report} or set(paths)
    return broken


class Tidy:
    """One run of clang-tidy for each group of files."""

    def __init__(self, commands, stamps, stamp_of):
        self.commands = commands
        self.folder = Path(stamps, "tests")
        self.folder.mkdir(parents=True, exist_ok=True)
        self.stamp_of = stamp_of

    def look_at(self, command, paths):
        """Returns what clang-tidy reports about the files; those without a report get a stamp."""
        if len(paths) == 1:
            return self.look_at_one(paths[0])
        reports, complete = self.run(command, paths)
        broken = not_compiled(reports, paths) if complete else set(paths)
        again = [path for path in paths if path in broken]
        if len(again) == len(paths):
            half = len(paths) // 2
            return self.look_at(command, paths[:half]) + self.look_at(command, paths[half:])
        kept = [
            report
            for report in reports
            if NOT_COMPILED not in report and not any(report.startswith(f"{ROOT / path}:") for path in again)
        ]
        if not kept:
            for path in paths:
                if path not in broken:
                    self.stamp(path)
        return "".join(kept) + (self.look_at(command, again) if again else "")

    def look_at_one(self, path):
        """The same for one file, with its own command. Here all that is reported counts."""
        reports, complete = self.run(self.commands[path], [path])
        if not complete:
            reports.append(f"{path}: clang-tidy did not come to its end\n")
        if not reports:
            self.stamp(path)
        return "".join(reports)

    def run(self, command, paths):
        """What clang-tidy reports about one unit of the files, and whether it came to its end."""
        unit = self.folder / f"{digest(paths)}.cpp"
        included = [*command.headers, *(str(ROOT / path) for path in paths)]
        lines = [*(f'#include "{path}"' for path in included), f"int {LAST_NAME} = 1;\n"]
        unit.write_text("\n".join(lines), encoding="utf-8")
        done = subprocess.run(
            ["clang-tidy", "--quiet", f"--checks={CHECKS}", f"--config-file={ROOT}/.clang-tidy"]
            + [rf"--header-filter=^{ROOT}/tests/.*\.(h|cpp)$", str(unit), "--"]
            + [*command.options(), "-Wno-unknown-warning-option", "-ferror-limit=0"],
            cwd=command.directory,
            check=False,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        unit.unlink()
        reports = [report for report in REPORT.split(done.stdout) if report.strip()]
        found = [report for report in reports if LAST_NAME not in report]
        return found, len(found) < len(reports)

    def stamp(self, path):
        for old in self.folder.glob(f"{path.replace('/', '_')}-*"):
            old.unlink()
        self.stamp_of(path).touch()


def main():
    """Exit status 1 when something was found."""
    build, stamps = (Path(folder).resolve() for folder in sys.argv[1:3])
    common = digest(listed("tests/*.h", ".clang-tidy", "scripts/tidy_tests.py"))

    def stamp_of(path):
        return Path(stamps, "tests", f"{path.replace('/', '_')}-{common}-{digest([path])}")

    commands = commands_of(build)
    paths = listed("tests/*.cpp")
    missing = [path for path in paths if path not in commands]
    for path in missing:
        print(f"{path}: no program of this build is made of it")
    groups = grouped(commands, [path for path in paths if path in commands and not stamp_of(path).exists()])
    failed = bool(missing)
    tidy = Tidy(commands, stamps, stamp_of)
    with ThreadPool(os.cpu_count()) as pool:
        for found in pool.imap_unordered(lambda group: tidy.look_at(*group), groups):
            failed = failed or bool(found)
            print(found, end="", flush=True)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
