"""A wall clock for the client only, which a test can set, by a preloaded library."""

import datetime
import re

LIBRARY = "/usr/lib/x86_64-linux-gnu/faketime/libfaketimeMT.so.1"
FILE = "/var/tmp/clock"
STAMP = re.compile(r"\.corrupt-(\d{8}T\d{6}Z)$")


class Clock:
    """The client's clock, some hours before or after the real one; monotonic time (timers) is not changed."""

    def __init__(self, client, hours=0):
        self._client = client
        self._hours = 0
        assert client.home.path(LIBRARY).exists(), "the package faketime is missing"
        self.set(hours)

    @property
    def environment(self):
        """The environment that the client must be started with."""
        return {
            "LD_PRELOAD": LIBRARY,
            "FAKETIME_TIMESTAMP_FILE": FILE,
            "FAKETIME_NO_CACHE": "1",
            "FAKETIME_DONT_FAKE_MONOTONIC": "1",
            "DONT_FAKE_MONOTONIC": "1",
        }

    def set(self, hours):
        """Sets the clock this number of hours after the real one; the file is replaced as a whole."""
        self._hours = hours
        self._client.home.write(f"{FILE}.new", f"{hours:+d}h\n")
        self._client.home.run("mv", f"{FILE}.new", FILE)

    def check(self):
        """A context that proves that the client uses this clock; in it the client must store its preferences.

        The file holds garbage then, which the client keeps in a file with the time of its clock in the name.
        """
        preferences = self._client.file("Library/Preferences/com.tallowind.Quorvane.plist")
        return _Stamped(preferences, self._hours)


class _Stamped:
    """Writes garbage over the preferences.

    At the end the garbage must have been kept with the clock's time.
    """

    def __init__(self, preferences, hours):
        self._preferences, self._hours = preferences, hours

    def __enter__(self):
        self._preferences.write_bytes(b"garbage")

    def __exit__(self, failure, *_details):
        if failure:
            return
        aside = [path for path in self._preferences.parent.iterdir() if STAMP.search(path.name)]
        assert len(aside) == 1, [path.name for path in self._preferences.parent.iterdir()]
        stamped = datetime.datetime.strptime(STAMP.search(aside[0].name)[1], "%Y%m%dT%H%M%SZ")
        expected = datetime.datetime.utcnow() + datetime.timedelta(hours=self._hours)
        assert abs(stamped - expected) < datetime.timedelta(minutes=10), f"{stamped}, not {expected}"
