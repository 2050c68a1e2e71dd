"""Measured figures: printed, and appended to the file that QUORVANE_E2E_FIGURES names, one JSON object a line.

    QUORVANE_E2E_FIGURES=/tmp/figures.jsonl /usr/bin/python3 -m pytest tests/e2e/test_leaks.py
"""

import json
import os
from pathlib import Path

VARIABLE = "QUORVANE_E2E_FIGURES"


def record(name, value):
    """Notes one figure of the running test; `value` is what json can write, its unit belongs into the name."""
    # pytest says "file.py::test (call)"; outside of pytest there is no row.
    row = os.environ.get("PYTEST_CURRENT_TEST", "").rpartition(" ")[0].rpartition("/")[2]
    line = json.dumps({"row": row, "name": name, "value": value}, ensure_ascii=False)
    print(f"figure: {line}")
    path = os.environ.get(VARIABLE)
    if path:
        with Path(path).open("a", encoding="utf-8") as file:
            file.write(line + "\n")
