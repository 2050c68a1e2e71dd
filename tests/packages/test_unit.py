"""The systemd unit of the service, run as it says: its command, its user and its capabilities."""

import configparser
import json
import re
import shutil
import signal
import socket
import subprocess
import time
from pathlib import Path

import pytest

from harness.home.deadlines import EVENTUALLY, POLL
from layers import package_file
from world import pki, service

NAME = "quorvane-service"
ADDRESS, LENT = "192.0.2.1", service.BERLIN.addresses
ETC, RUNTIME, LOGS = (f"{folder}/{NAME}" for folder in ("/etc", "/run", "/var/log"))
# The kernel's numbers of the capabilities of the unit.
CAPABILITIES = {"CAP_NET_BIND_SERVICE": 10, "CAP_NET_ADMIN": 12}


class Unit:
    """What systemd would do for the unit, as far as a test without systemd can."""

    def __init__(self, machine):
        self.machine = machine
        parser = configparser.ConfigParser(interpolation=None, strict=False)
        parser.optionxform = str
        parser.read(machine.root / f"lib/systemd/system/{NAME}.service", encoding="utf-8")
        self.settings = parser["Service"]
        self.capabilities = self.settings["AmbientCapabilities"].split()
        self.process = None

    def start(self):
        """Starts ExecStart with the network interfaces of a gateway of its own."""
        user = self.settings["User"]
        self.machine.run("install", "-d", "-o", user, "-g", user, "-m", "0700", RUNTIME)
        names = ",".join("+" + name.removeprefix("CAP_").lower() for name in self.capabilities)
        setpriv = f"setpriv --reuid={user} --regid={self.settings['Group']} --init-groups --no-new-privs"
        setpriv += f" --inh-caps=-all,{names} --ambient-caps={names} --bounding-set=-all,{names}"
        addresses = "".join(f"ip address add {address} dev lo\n" for address in (ADDRESS, *LENT))
        script = f"ip link set lo up\n{addresses}exec {setpriv} -- {self.settings['ExecStart']}\n"
        with (self.machine.upper / "service.log").open("wb") as log:
            self.process = subprocess.Popen(
                ["unshare", "--net", "chroot", self.machine.root, "sh", "-ec", script],
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


@pytest.fixture(name="unit")
def fixture_unit(machine, debs):
    machine.install(package_file(debs, NAME))
    authority = pki.Authority(machine.upper / "pki")
    files = {"ca.crt": authority.certificate}
    for name, alternative in (("api", f"IP:{ADDRESS}"), ("vpn", "DNS:vpn")):
        files[f"{name}.crt"], files[f"{name}.key"] = authority.leaf(name, alternative)
    for name, file in files.items():
        shutil.copy(file, machine.root / ETC[1:] / name)
    settings = {
        "listen": [{"address": ADDRESS, "port": 443}],
        "tls": {"certificate": f"{ETC}/api.crt", "key": f"{ETC}/api.key"},
        "groups": service.groups([service.BERLIN]),
        "request_log": f"{LOGS}/requests.jsonl",
        "runtime_folder": RUNTIME,
        "vpn": {
            "ca": f"{ETC}/ca.crt",
            "certificate": f"{ETC}/vpn.crt",
            "key": f"{ETC}/vpn.key",
            "udp": {"port": 1194, "network": "10.8.0.0/16"},
            # The listener has this address only, so the port is free at the lent ones.
            "tcp": {"port": 1194, "network": "10.9.0.0/16"},
        },
        "gateway": {"command": []},
    }
    (machine.root / ETC[1:] / "service.json").write_text(json.dumps(settings), encoding="utf-8")
    machine.run("chown", "-R", f"root:{NAME}", ETC)
    machine.run("sh", "-c", f"chmod 0640 {ETC}/*")
    made = Unit(machine)
    yield made
    if made.process is not None and made.process.poll() is None:
        made.process.kill()
        made.process.wait()


def test_servers_run_without_other_rights(unit):
    unit.start()
    unit.wait_ready()
    processes = unit.processes()
    assert len(processes[NAME[:15]]) == 1 and len(processes["vpnsrv"]) == 2
    (user, _, number, group, *_rest) = unit.machine.run("getent", "passwd", NAME).strip().split(":")
    assert user == NAME
    allowed = sum(1 << CAPABILITIES[name] for name in unit.capabilities)
    for status in (status for found in processes.values() for status in found):
        assert set(status["Uid"].split()) == {number} and set(status["Gid"].split()) == {group}
        assert status["NoNewPrivs"] == "1"
        for kind in ("CapInh", "CapPrm", "CapEff", "CapBnd", "CapAmb"):
            assert int(status[kind], 16) & ~allowed == 0, status
    tables = subprocess.run(
        ["nsenter", f"--net=/proc/{unit.process.pid}/ns/net", "nft", "list", "tables"],
        check=True,
        stdout=subprocess.PIPE,
        text=True,
    )
    assert "table ip quorvane" in tables.stdout
    unit.process.send_signal(signal.SIGTERM)
    assert unit.process.wait(EVENTUALLY) == 0
    assert (unit.machine.root / LOGS[1:] / "requests.jsonl").exists()
