#!/usr/bin/python3
"""scripts/tidy_tests.py BUILD STAMPS: clang-tidy over the tests, with the compile commands of a built tree.

A test includes most of Qt and GoogleTest, which costs more than its own lines. So files with the same command
are looked at together, in one translation unit that includes them. A file whose local names are also those
of an earlier one does not compile there; it is looked at with the others of which that is true. A file that
passed is not looked at again until it, a header of the tests or the list of checks changes.
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

ROOT = Path(__file__).resolve().parent.parent
LARGEST_GROUP = 12
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


def compile_arguments(build):
    """File -> the folder, the headers that come first, and the options without the file and the output."""
    found = {}
    for entry in json.loads(Path(build, "compile_commands.json").read_text(encoding="utf-8")):
        headers = tuple(PRECOMPILED.findall(entry["command"]))
        words = shlex.split(PRECOMPILED.sub("", entry["command"]))
        options = words[next(i for i, word in enumerate(words) if word.startswith("-")) : words.index("-o")]
        options = tuple(option for option in options if option != "-Werror")
        found.setdefault(os.path.relpath(entry["file"], ROOT), (entry["directory"], headers, options))
    return found


class Tidy:
    """One run of clang-tidy for each group of files."""

    def __init__(self, stamps, stamp_of):
        self.folder = Path(stamps, "tests")
        self.folder.mkdir(parents=True, exist_ok=True)
        self.stamp_of = stamp_of

    def look_at(self, command, paths):
        """Returns what clang-tidy reports about the files; those without a report get a stamp."""
        output = self.run(command, paths)
        reports = [report for report in REPORT.split(output) if report.strip()]
        if not any(LAST_NAME in report for report in reports):
            if len(paths) == 1:
                return f"{output}{paths[0]}: clang-tidy did not come to its end\n"
            return "".join(self.look_at(command, [path]) for path in paths)
        reports = [report for report in reports if LAST_NAME not in report]
        places = [report.split(":")[0] for report in reports]
        broken = {place for place, report in zip(places, reports) if NOT_COMPILED in report}
        again = [path for path in paths if str(ROOT / path) in broken]
        if len(paths) > 1 and len(again) == len(paths):
            return "".join(self.look_at(command, [path]) for path in paths)
        if len(paths) > 1 and again:
            found = self.look_at(command, again)
        else:
            found, again = "", []
        kept = [
            report
            for place, report in zip(places, reports)
            if place not in {str(ROOT / path) for path in again}
        ]
        for path in paths:
            if not kept and path not in again:
                self.stamp(path)
        return found + "".join(kept)

    def run(self, command, paths):
        """The output of clang-tidy for one translation unit of the files."""
        directory, headers, options = command
        unit = self.folder / f"{digest(paths)}.cpp"
        included = [*headers, *(str(ROOT / path) for path in paths)]
        lines = [*(f'#include "{path}"' for path in included), f"int {LAST_NAME} = 1;\n"]
        unit.write_text("\n".join(lines), encoding="utf-8")
        done = subprocess.run(
            ["clang-tidy", "--quiet", f"--checks={CHECKS}", f"--config-file={ROOT}/.clang-tidy"]
            + [rf"--header-filter=^{ROOT}/tests/.*\.(h|cpp)$", str(unit), "--"]
            + [*options, "-Wno-unknown-warning-option", "-ferror-limit=0"],
            cwd=directory,
            check=False,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        unit.unlink()
        return done.stdout

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

    arguments = compile_arguments(build)
    groups = {}
    missing = []
    for path in listed("tests/*.cpp"):
        if path not in arguments:
            missing.append(path)
        elif not stamp_of(path).exists():
            groups.setdefault(arguments[path], []).append(path)
    parts = [
        (command, paths[first : first + LARGEST_GROUP])
        for command, paths in groups.items()
        for first in range(0, len(paths), LARGEST_GROUP)
    ]
    failed = bool(missing)
    for path in missing:
        print(f"{path}: no program of this build is made of it")
    with ThreadPool(os.cpu_count()) as pool:
        tidy = Tidy(stamps, stamp_of)
        for found in pool.imap_unordered(lambda part: tidy.look_at(*part), parts):
            failed = failed or bool(found)
            print(found, end="", flush=True)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
