#!/usr/bin/env python3
"""Checks that every translation of resources/translations has the form of its source text.

That is: no form of it is empty, it has the same placeholders and markup, a mnemonic where the source has
one, and ends with a line break where the source does. Prints a line for each difference; no line means that
all is well.
"""

import re
import subprocess
import sys
import xml.etree.ElementTree as ET
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PLACEHOLDER = re.compile(r"%L?(?:[0-9]+|n)|</?[a-z]+[^>]*>")
MNEMONIC = re.compile(r"&(?=[^\s&])")


def catalogues():
    """The catalogues of the repository."""
    listed = subprocess.run(
        ["git", "-C", ROOT, "ls-files", "resources/translations/*.ts"],
        capture_output=True,
        text=True,
        check=True,
    )
    return [ROOT / line for line in listed.stdout.splitlines()]


def differences(source, form):
    """What distinguishes one form of a translation from its source text, in words."""
    if not form.strip():
        yield "is empty"
        return
    if sorted(PLACEHOLDER.findall(source)) != sorted(PLACEHOLDER.findall(form)):
        yield "has other placeholders"
    if len(MNEMONIC.findall(source)) != len(MNEMONIC.findall(form)):
        yield "has a mnemonic more or less"
    if source.endswith("\n") != form.endswith("\n"):
        yield "ends otherwise"


def problems(catalogue):
    """One line for each difference in the catalogue."""
    for message in ET.parse(catalogue).getroot().iter("message"):
        source = message.findtext("source", "")
        translation = message.find("translation")
        numbered = [form.text or "" for form in translation.iter("numerusform")]
        for form in numbered or [translation.text or ""]:
            for difference in differences(source, form):
                yield f"{catalogue.relative_to(ROOT)}: {source.strip()!r} {difference}: {form.strip()!r}"


def main():
    """Prints the problems of all catalogues; returns the exit status."""
    found = [problem for catalogue in catalogues() for problem in problems(catalogue)]
    for problem in found:
        print(problem, file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
