"""What a running client does, observed from outside through /proc."""

import re
from pathlib import Path


def processor_seconds(pid):
    """The processor time that the present threads of a process have used so far."""
    return (
        sum(
            int(numbers.read_text("ascii").split()[0])
            for numbers in Path(f"/proc/{pid}/task").glob("*/schedstat")
        )
        / 1e9
    )


def wake_ups(pid):
    """How often the present threads of a process were scheduled because something had happened."""
    return sum(
        int(re.search(r"^voluntary_ctxt_switches:\s*(\d+)", status.read_text("utf-8"), re.MULTILINE)[1])
        for status in Path(f"/proc/{pid}/task").glob("*/status")
    )
