"""How long the tests wait. Imported by the tests and by the programs in the home, which see this folder only.

A wait polls often and ends as soon as its condition holds, so a long deadline costs nothing in a run that
passes. It only decides when a test gives up, and on a machine under full load everything is slow.
"""

# Seconds for whatever must happen in the end. Longer than the longest pause of the client's own: a failed
# attempt can use up a minute before the message box shows.
EVENTUALLY = 120

# Seconds between two polls of a condition.
POLL = 0.02
