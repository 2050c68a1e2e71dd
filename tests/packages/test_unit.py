"""The systemd unit of the service, run as it says: its command, its user and its capabilities."""

import json
import shutil
import signal
import subprocess

import pytest

from harness.home.deadlines import EVENTUALLY
from layers import package_file
from unit import NAME, RUNTIME, Unit
from world import pki, service

ADDRESS, LENT = "192.0.2.1", service.BERLIN.addresses
ETC, LOGS = (f"{folder}/{NAME}" for folder in ("/etc", "/var/log"))
# The kernel's numbers of the capabilities of the unit.
CAPABILITIES = {"CAP_NET_BIND_SERVICE": 10, "CAP_NET_ADMIN": 12}


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
    made.close()


def test_servers_run_without_other_rights(unit):
    unit.start(f"ip link set lo up\nip address add {ADDRESS} dev lo\n")
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
