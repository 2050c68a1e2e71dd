#!/usr/bin/python3
"""Finds words that the glossary of CONTRIBUTING.md rules out.

scripts/words.txt lists them with what to write instead. They are looked for as whole words in every tracked
text: comments, documents, file names, and inside names (in toldQuiet the word "told" is found).
"""

import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
LIST = "scripts/words.txt"
# Words inside names begin with a capital letter or after any character that is no letter.
WORD = re.compile(r"[A-Z]?[a-z]+|[A-Z]+(?![a-z])")


class WordList:
    """The words with their replacements, and the texts in which they may stay."""

    def __init__(self, text):
        self.words = {}
        self.scopes = {}
        self.skipped = ()
        exceptions = []
        for number, line in enumerate(text.splitlines(), 1):
            line = line.strip()
            if not line or line.startswith("#"):
                continue
            kind, _, rest = line.partition(" ")
            if kind == "except":
                exceptions.append(rest.strip())
            elif kind == "skip":
                self.skipped += tuple(rest.split())
            elif kind.startswith("word"):
                self._add_words(kind, rest)
            else:
                raise ValueError(f"{LIST}, line {number}: not understood")
        self.exceptions = re.compile("|".join(exceptions) or r"(?!)")

    def _add_words(self, kind, rest):
        forms, _, replacement = rest.partition("->")
        for word in forms.split():
            self.words[word] = replacement.strip()
            self.scopes[word] = kind.partition("@")[2]

    def is_skipped(self, path):
        """Whether the file is not looked at."""
        return path.startswith(self.skipped)

    def findings(self, path, text):
        """Pairs of a word of the list and its replacement, as they come in the text."""
        for word in WORD.findall(self.exceptions.sub(" ", text)):
            word = word.lower()
            if word in self.words and path.startswith(self.scopes[word]):
                yield word, self.words[word]


def main():
    """Checks the tracked files; exit status 1 when a word was found."""
    words = WordList((ROOT / LIST).read_text(encoding="utf-8"))
    listing = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True, capture_output=True, text=True)
    found = False
    for path in filter(None, listing.stdout.split("\0")):
        if words.is_skipped(path) or not (ROOT / path).is_file():
            continue
        try:
            lines = (ROOT / path).read_text(encoding="utf-8").splitlines()
        except UnicodeDecodeError:
            continue
        for number, line in [(0, path)] + list(enumerate(lines, 1)):
            for word, replacement in words.findings(path, line):
                found = True
                print(f'{path}:{number}: "{word}": {replacement}', file=sys.stderr)
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
