#!/usr/bin/python3
"""Checks that the guide fits to the program.

Every picture that a document shows exists, and every picture in docs/pictures is shown by a document. Every
alert of the program is explained in the guide's table of alerts, and every alert in that table is one of the
program's texts.
"""

import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
GUIDE = "docs/guide.md"
HEADING = "## Alerts and what to do"
# The calls that show an alert.
CALL = re.compile(r"\b(?:critical|criticalLater|criticalAndWait|alert)\(")
TEXT = re.compile(r'\b(?:tr|translate)\(\s*(?:"quorvane::\w+",\s*|"Start",\s*)?((?:"(?:[^"\\]|\\.)*"\s*)+)')
TITLES = {"Error", "Quorvane"}


def arguments(source, begin):
    """The text from `begin` to the parenthesis that closes the one before it."""
    depth = 1
    for place in range(begin, len(source)):
        depth += {"(": 1, ")": -1}.get(source[place], 0)
        if depth == 0:
            return source[begin:place]
    return ""


def texts_of(source):
    """Every text for users in the source, without the titles of alerts."""
    found = []
    for literals in TEXT.findall(source):
        text = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', literals))
        text = text.replace("\\n", " ").replace('\\"', '"').strip()
        if text not in TITLES:
            found.append(text)
    return found


def alerts(source):
    """For each call that shows an alert with a text of its own: the texts."""
    calls = (texts_of(arguments(source, call.end())) for call in CALL.finditer(source))
    return [texts for texts in calls if texts]


def explained(guide):
    """The beginnings of the alerts in the table; the rest of each is left out behind an ellipsis."""
    section = guide.partition(HEADING)[2].partition("\n## ")[0]
    return [
        text.removesuffix("...").strip()
        for text in re.findall(r'^\| "([^|]*)" \|', section, flags=re.MULTILINE)
    ]


def differences(shown, every, beginnings):
    """What is not explained, and what is explained but no text of the program."""
    lines = []
    for texts in shown:
        if not any(text.startswith(start) for text in texts for start in beginnings):
            lines.append(f"{GUIDE}: the alert is not explained: {texts[0]}")
    for start in beginnings:
        if not any(text.startswith(start) for text in every):
            lines.append(f"{GUIDE}: the program has no such alert: {start}")
    return lines


def tracked(*patterns):
    output = subprocess.run(
        ["git", "ls-files", "-z", *patterns], cwd=ROOT, check=True, stdout=subprocess.PIPE
    ).stdout
    return [Path(name) for name in output.decode().split("\0") if name and (ROOT / name).exists()]


def pictures():
    """Pictures that are shown and missing, and those that are there and not shown."""
    used = set()
    for document in tracked("*.md"):
        text = (ROOT / document).read_text(encoding="utf-8")
        for name in re.findall(r"!\[[^\]]*\]\(([^)]+\.png)\)", text):
            used.add((document.parent / name).as_posix())
    there = {path.as_posix() for path in tracked("docs/pictures/*.png")}
    lines = [f"{name}: a document shows this picture, which does not exist" for name in sorted(used - there)]
    return lines + [f"{name}: no document shows this picture" for name in sorted(there - used)]


def main():
    sources = [(ROOT / path).read_text(encoding="utf-8") for path in tracked("frontend/*.cpp")]
    shown = [texts for source in sources for texts in alerts(source)]
    every = [text for source in sources for text in texts_of(source)]
    if not shown:
        print("check_guide.py: no alert was found in the sources", file=sys.stderr)
        return 1
    guide = (ROOT / GUIDE).read_text(encoding="utf-8")
    lines = differences(shown, every, explained(guide)) + pictures()
    for line in lines:
        print(line, file=sys.stderr)
    return 1 if lines else 0


if __name__ == "__main__":
    sys.exit(main())
