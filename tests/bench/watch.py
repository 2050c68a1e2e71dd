"""What a running client does, observed from outside through /proc."""

import os
import threading
import time
from pathlib import Path

INTERVAL = 0.002


class Children(threading.Thread):
    """Reads the child processes of a client every 2 ms. `ended` may be read after `stop`."""

    def __init__(self, client):
        super().__init__(daemon=True)
        self._client = client
        self._own = command_of(client)
        self._others = set()
        self._running = {}
        self._done = threading.Event()
        self.ended = []  # {"name", "begin", "end"}

    def run(self):
        while not self._done.wait(INTERVAL):
            self._read_all()

    def stop(self):
        self._done.set()
        self.join()
        self.ended += self._running.values()

    def _read_all(self):
        now = time.monotonic()
        present = {int(name) for name in os.listdir("/proc") if name.isdigit()}
        for pid in set(self._running) - present:
            self.ended.append({**self._running.pop(pid), "end": now})
        self._others &= present
        for pid in present - self._others:
            try:
                self._read_one(pid, now)
            except OSError:
                continue

    def _read_one(self, pid, now):
        if pid not in self._running and parent_of(pid) != self._client:
            self._others.add(pid)
            return
        child = self._running.setdefault(pid, {"name": "", "begin": now, "end": now})
        child["end"] = now
        # Before it runs its program, a child is a copy of the client; a dead one has no command any more.
        command = command_of(pid)
        if command and command != self._own:
            child["name"] = command


def parent_of(pid):
    return int(Path(f"/proc/{pid}/stat").read_text("utf-8", "replace").rpartition(")")[2].split()[1])


def command_of(pid):
    return Path(f"/proc/{pid}/cmdline").read_text("utf-8", "replace").replace("\0", " ").strip()


def processor_seconds(pid):
    """The processor time that the present threads of a process have used so far."""
    return (
        sum(
            int(numbers.read_text("ascii").split()[0])
            for numbers in Path(f"/proc/{pid}/task").glob("*/schedstat")
        )
        / 1e9
    )
