"""What systemd would do for the service's unit, as far as a test without systemd can."""

import configparser
import json
import re
import socket
import subprocess
import time
from pathlib import Path

from harness.home.deadlines import EVENTUALLY, POLL

NAME = "quorvane-service"
RUNTIME = f"/run/{NAME}"


class Unit:
    """The unit on a machine. `network` is the command that enters its network."""

    def __init__(self, machine, network=("unshare", "--net")):
        self.machine = machine
        self.network = network
        parser = configparser.ConfigParser(interpolation=None, strict=False)
        parser.optionxform = str
        parser.read(machine.root / f"lib/systemd/system/{NAME}.service", encoding="utf-8")
        self.settings = parser["Service"]
        self.capabilities = self.settings["AmbientCapabilities"].split()
        self.process = None

    def command(self, key):
        """The command line of a setting, with the unit's user and capabilities."""
        user = self.settings["User"]
        names = ",".join("+" + name.removeprefix("CAP_").lower() for name in self.capabilities)
        setpriv = f"setpriv --reuid={user} --regid={self.settings['Group']} --init-groups --no-new-privs"
        setpriv += f" --inh-caps=-all,{names} --ambient-caps={names} --bounding-set=-all,{names}"
        return f"{setpriv} -- {self.settings[key]}"

    def start(self, prepare=""):
        """Runs ExecStartPre and ExecStart in the network, after the lines of `prepare`."""
        user = self.settings["User"]
        self.machine.run("install", "-d", "-o", user, "-g", user, "-m", "0700", RUNTIME)
        script = f"{prepare}{self.command('ExecStartPre')}\nexec {self.command('ExecStart')}\n"
        with (self.machine.upper / "service.log").open("ab") as log:
            self.process = subprocess.Popen(
                [*self.network, "chroot", self.machine.root, "sh", "-ec", script],
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=log,
            )

    def status(self):
        """The service's own account of its state; None before it has one."""
        try:
            with socket.socket(socket.AF_UNIX) as connection:
                connection.settimeout(EVENTUALLY)
                connection.connect(f"/proc/{self.process.pid}/root{RUNTIME}/control.sock")
                connection.sendall(b'{"command":"status"}\n')
                return json.loads(connection.makefile("rb").readline())
        except OSError:
            return None

    def wait_ready(self):
        end = time.monotonic() + EVENTUALLY
        while not (self.status() or {}).get("ready"):
            log = (self.machine.upper / "service.log").read_text(encoding="utf-8")
            assert self.process.poll() is None and time.monotonic() < end, log
            time.sleep(POLL)

    def processes(self):
        """Of the service itself and of what it started: name -> status."""
        own = str(self.process.pid)
        found = {}
        for folder in Path("/proc").glob("[0-9]*"):
            try:
                status = dict(re.findall(r"^(\w+):\s*(.*)$", (folder / "status").read_text(), re.MULTILINE))
            except OSError:
                continue
            if own in (status["Pid"], status["PPid"]):
                found.setdefault(status["Name"], []).append(status)
        return found

    def stop(self):
        """Ends the service; returns its exit status."""
        self.process.terminate()
        return self.process.wait(EVENTUALLY)

    def close(self):
        """Ends the service when it still runs, and waits for what it started."""
        if self.process is not None and self.process.poll() is None:
            self.stop()
