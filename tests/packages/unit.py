"""What systemd would do for the service's units, as far as a test without systemd can."""

import configparser
import json
import re
import socket
import subprocess
import threading
import time
from pathlib import Path

from harness.home.deadlines import EVENTUALLY, POLL

NAME = "quorvane-service"
ROLES = ("gateway", "api")


def unit_name(role):
    return f"{NAME}-{role}"


class Unit:
    """One unit on a machine. `network` is the command that enters its network."""

    def __init__(self, machine, role, network=("unshare", "--net")):
        self.machine = machine
        self.role = role
        self.network = network
        parser = configparser.ConfigParser(interpolation=None, strict=False)
        parser.optionxform = str
        parser.read(machine.root / f"lib/systemd/system/{unit_name(role)}.service", encoding="utf-8")
        self.settings = parser["Service"]
        self.user = self.settings["User"]
        self.process = None
        self._watch = None

    @property
    def capabilities(self):
        return self.settings["AmbientCapabilities"].split()

    @property
    def log(self):
        return self.machine.upper / f"{self.role}.log"

    def command(self, key):
        """The command line of a setting, with the unit's user and capabilities."""
        names = ",".join("+" + name.removeprefix("CAP_").lower() for name in self.capabilities)
        groups = f"{self.settings['Group']},{self.settings['SupplementaryGroups']}"
        setpriv = f"setpriv --reuid={self.user} --regid={self.settings['Group']} --groups={groups}"
        setpriv += (
            f" --no-new-privs --inh-caps=-all,{names} --ambient-caps={names} --bounding-set=-all,{names}"
        )
        return f"{setpriv} -- {self.settings[key]}"

    def start(self, prepare=""):
        """Runs ExecStartPre and ExecStart in the network, after the lines of `prepare`."""
        self._launch(prepare)
        if self.settings["Restart"] == "always":
            self._watch = threading.Thread(target=self._restart_always, args=(self.process,), daemon=True)
            self._watch.start()

    def _launch(self, prepare=""):
        for folder in ("RuntimeDirectory", "StateDirectory"):
            parent = "/run" if folder == "RuntimeDirectory" else "/var/lib"
            path = f"{parent}/{self.settings[folder]}"
            self.machine.run("install", "-d", "-o", self.user, "-g", self.user, "-m", "0700", path)
        before = f"{self.command('ExecStartPre')}\n" if "ExecStartPre" in self.settings else ""
        script = f"{prepare}{before}exec {self.command('ExecStart')}\n"
        with self.log.open("ab") as log:
            self.process = subprocess.Popen(
                [*self.network, "chroot", self.machine.root, "sh", "-ec", script],
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=log,
            )

    def _restart_always(self, process):
        """Starts it again whenever it has ended, until it is stopped."""
        while process.wait() == 0 and self._watch is not None:
            self._launch()
            process = self.process

    def status(self):
        """The process's own account of its state; None before it has one."""
        path = f"/run/{self.settings['RuntimeDirectory']}/control.sock"
        try:
            with socket.socket(socket.AF_UNIX) as connection:
                connection.settimeout(EVENTUALLY)
                connection.connect(f"/proc/{self.process.pid}/root{path}")
                connection.sendall(b'{"command":"status"}\n')
                return json.loads(connection.makefile("rb").readline())
        except OSError:
            return None

    def wait_ready(self):
        end = time.monotonic() + EVENTUALLY
        while not (self.status() or {}).get("ready"):
            log = self.log.read_text(encoding="utf-8")
            assert self.process.poll() is None and time.monotonic() < end, log
            time.sleep(POLL)

    def processes(self):
        """Of the process itself and of what it started: name -> status."""
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
        """Ends the process; returns its exit status."""
        watch, self._watch = self._watch, None
        self.process.terminate()
        status = self.process.wait(EVENTUALLY)
        if watch is not None:
            watch.join()
        return status

    def close(self):
        """Ends the process when it still runs, and waits for what it started."""
        if self.process is not None and self.process.poll() is None:
            self.stop()


class Units:
    """Both units in one network."""

    def __init__(self, machine, network=("unshare", "--net")):
        self.gateway, self.api = (Unit(machine, role, network) for role in ROLES)

    def start(self, prepare=""):
        self.gateway.start(prepare)
        self.api.start()

    def status(self):
        """What the gateway reports, and whether both are ready."""
        gateway, api = self.gateway.status() or {}, self.api.status() or {}
        return {**gateway, "ready": bool(gateway.get("ready") and api.get("ready"))}

    def wait_ready(self):
        self.gateway.wait_ready()
        self.api.wait_ready()

    def stop(self):
        """Ends both; returns 0 when both have ended well."""
        return self.api.stop() or self.gateway.stop()

    def close(self):
        self.api.close()
        self.gateway.close()
