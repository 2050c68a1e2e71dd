"""The table of what was checked on which desktop, made from the results of the tests."""

PASSED, FAILED, CANNOT, NOT_RUN = "yes", "FAILED", "no", "not checked"


class Table:
    """Cells by desktop and check. A cell is "yes" only when all tests of it have passed."""

    def __init__(self):
        self._cells = {}
        self._reasons = {}

    def note(self, desktop, check, result, reason=""):
        """Adds the result of one test; a failure stays."""
        cell = self._cells.setdefault((desktop, check), [])
        cell.append(result)
        if reason:
            self._reasons[desktop, check] = reason

    def _text(self, desktop, check, notes):
        results = self._cells.get((desktop, check), [])
        if FAILED in results:
            return FAILED
        reason = self._reasons.get((desktop, check))
        if reason is None:
            return PASSED if results else NOT_RUN
        if reason not in notes:
            notes.append(reason)
        return f"{PASSED if PASSED in results else CANNOT} ({notes.index(reason) + 1})"

    def text(self):
        """The table as Markdown, with the reasons of what a desktop cannot do below it."""
        desktops = list(dict.fromkeys(desktop for desktop, _ in self._cells))
        checks = list(dict.fromkeys(check for _, check in self._cells))
        notes = []
        lines = [f"| check | {' | '.join(desktops)} |", "|---|" + "---|" * len(desktops)]
        for check in checks:
            cells = " | ".join(self._text(desktop, check, notes) for desktop in desktops)
            lines.append(f"| {check} | {cells} |")
        lines += ["", *(f"{number}. {reason}" for number, reason in enumerate(notes, 1))] if notes else []
        return "\n".join(lines) + "\n"
