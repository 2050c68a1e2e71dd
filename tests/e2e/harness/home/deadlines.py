"""How long the tests wait. Imported by the tests and by the programs in the home, which see this folder only.

A wait polls often and ends as soon as its condition holds, so a long deadline costs nothing in a run that
passes. It only decides when a test gives up, and on a machine under full load everything is slow.
"""

import time

# Seconds for whatever must happen in the end. Longer than the longest pause of the client's own: a failed
# attempt can use up a minute before the message box shows.
EVENTUALLY = 120

# Seconds between two polls of a condition.
POLL = 0.02


def pause_after(begun):
    """Seconds until the next poll, after one that began at this time (CLOCK_MONOTONIC).

    As long as the poll itself took, so that a costly one does not keep the processor from what it waits for.
    """
    return max(POLL, time.monotonic() - begun)
