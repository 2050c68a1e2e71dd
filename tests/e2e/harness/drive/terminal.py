"""Commands that control the running copy of the client."""

import json

DONE, FAILED, WRONG_USE, NOT_RUNNING, CANNOT_START, UNKNOWN_LOCATION, NOT_HIDDEN = range(7)


class Terminal:
    """A terminal of the user, in the client's session."""

    def __init__(self, client):
        self.client = client
        self.commands = 0

    def begin(self, *arguments, environment=None):
        """Starts a command and returns its key."""
        self.commands += 1
        key = f"command-{self.commands}"
        self.client.start(*arguments, key=key, environment=environment)
        return key

    def run(self, *arguments, environment=None):
        """(exit status, lines) of a command that has ended."""
        key = self.begin(*arguments, environment=environment)
        status = self.client.wait_exit(key=key)
        return status, self.client.output(key=key).splitlines()

    def status(self):
        code, lines = self.run("--status", "--json")
        assert code in (DONE, NOT_RUNNING) and len(lines) == 1
        status = json.loads(lines[0])
        assert status["running"] is (code == DONE)
        return status
