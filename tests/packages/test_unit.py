"""The systemd units of the service, run as they say: their commands, users and capabilities."""

import json
import shutil
import signal
import subprocess

import pytest

from harness.home.deadlines import EVENTUALLY
from layers import package_file
from unit import NAME, Unit
from world import pki, service

ADDRESS, LENT = "192.0.2.1", service.BERLIN.addresses
ETC, LOGS = (f"{folder}/{NAME}" for folder in ("/etc", "/var/log"))
# The kernel's numbers of the capabilities of the units.
CAPABILITIES = {"CAP_NET_BIND_SERVICE": 10, "CAP_NET_ADMIN": 12}
SHARED = {"control_key": f"{ETC}/control.key", "client_authority": f"{ETC}/client-authority.pem"}


@pytest.fixture(name="configured")
def fixture_configured(machine, debs):
    """A machine with the package, and a configuration for both units."""
    machine.install(package_file(debs, NAME))
    authority = pki.Authority(machine.upper / "pki")
    files = {"ca.crt": authority.certificate}
    for name, alternative in (("api", f"IP:{ADDRESS}"), ("vpn", "DNS:vpn")):
        files[f"{name}.crt"], files[f"{name}.key"] = authority.leaf(name, alternative)
    folder = machine.root / ETC[1:]
    for name, file in files.items():
        shutil.copy(file, folder / name)
    (folder / "user.keys").write_text("0" * 64 + "\n", encoding="ascii")
    control = folder / "control.key"
    subprocess.run(["openvpn", "--genkey", "tls-crypt-v2-server", control], check=True)
    (folder / "client-authority.pem").write_bytes(
        authority.certificate.read_bytes() + (authority.folder / "ca.key").read_bytes()
    )
    settings = {
        "listen": [{"address": ADDRESS, "port": 443}],
        "tls": {"certificate": f"{ETC}/api.crt", "key": f"{ETC}/api.key"},
        "groups": service.groups([service.BERLIN]),
        "keys": f"{ETC}/user.keys",
        "request_log": f"{LOGS}/requests.jsonl",
        "runtime_folder": f"/run/{NAME}",
        "roles": {role: {"runtime_folder": f"/run/quorvane-{role}"} for role in ("api", "gateway")},
        "vpn": {
            "ca": f"{ETC}/ca.crt",
            "certificate": f"{ETC}/vpn.crt",
            "key": f"{ETC}/vpn.key",
            **SHARED,
            "udp": {"port": 1194, "network": "10.8.0.0/16"},
            # The listener has this address only, so the port is free at the lent ones.
            "tcp": {"port": 1194, "network": "10.9.0.0/16"},
        },
        "gateway": {"command": []},
    }
    (folder / "service.json").write_text(json.dumps(settings), encoding="utf-8")
    machine.run("chown", "-R", f"root:{NAME}", ETC)
    machine.run("sh", "-c", f"chmod 0640 {ETC}/*")
    return machine


@pytest.fixture(name="unit")
def fixture_unit(request, configured):
    made = Unit(configured, request.param)
    yield made
    made.close()


def start(unit):
    unit.start(f"ip link set lo up\nip address add {ADDRESS} dev lo\n")
    unit.wait_ready()


def check_user(unit, statuses):
    """All processes are of the unit's own user, which cannot get other rights."""
    (user, _, number, group, *_rest) = unit.machine.run("getent", "passwd", unit.user).strip().split(":")
    assert user == f"quorvane-{unit.role}"
    for status in statuses:
        assert set(status["Uid"].split()) == {number} and set(status["Gid"].split()) == {group}
        assert status["NoNewPrivs"] == "1"


@pytest.mark.parametrize("unit", ["gateway"], indirect=True)
def test_servers_run_without_other_rights(unit):
    start(unit)
    processes = unit.processes()
    assert len(processes[NAME[:15]]) == 1 and len(processes["vpnsrv"]) == 2
    statuses = [status for found in processes.values() for status in found]
    check_user(unit, statuses)
    allowed = sum(1 << CAPABILITIES[name] for name in unit.capabilities)
    for status in statuses:
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


@pytest.mark.parametrize("unit", ["api"], indirect=True)
def test_listener_runs_without_any_right(unit):
    start(unit)
    ((status,),) = unit.processes().values()
    check_user(unit, [status])
    for kind in ("CapInh", "CapPrm", "CapEff", "CapAmb"):
        assert int(status[kind], 16) == 0, status
    assert status["Seccomp"] == "2" and unit.status()["confined"]
    assert (unit.machine.root / LOGS[1:] / "requests.jsonl").exists()
    assert unit.stop() == 0
