"""Measured figures: printed, and appended to the file QUORVANE_E2E_FIGURES, one JSON object a line.

    QUORVANE_E2E_FIGURES=/tmp/figures.jsonl /usr/bin/python3 -m pytest tests/e2e/test_leaks.py
"""

import json
import os
from pathlib import Path

VARIABLE = "QUORVANE_E2E_FIGURES"


def record(name, value):
    """Records one figure of the running test; `value` is of a type for JSON, `name` contains the unit."""
    # pytest sets it to "file.py::test (call)"; outside of pytest the name is empty.
    test = os.environ.get("PYTEST_CURRENT_TEST", "").rpartition(" ")[0].rpartition("/")[2]
    line = json.dumps({"test": test, "name": name, "value": value}, ensure_ascii=False)
    print(f"figure: {line}")
    path = os.environ.get(VARIABLE)
    if path:
        with Path(path).open("a", encoding="utf-8") as file:
            file.write(line + "\n")
