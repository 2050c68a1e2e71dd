"""The service under load, under attack and after SIGKILL: honest clients are served."""

import json
import os
import re
import signal
import subprocess
import time

import pytest

from harness.conditions import service_api
from harness.home.deadlines import EVENTUALLY
from harness.observe import figures, outcomes
from world import home as homes
from world import network, pki, service
from world.accounts import ADA
from world.service import BERLIN

ADDRESSES = [address for place in service.LOCATIONS for address in place.addresses]
CROWD = f"{homes.HARNESS}/crowd.py"
MANY = {
    "limits": {
        "connections": 4096,
        "handshake_seconds": 60,
        "request_seconds": 60,
        # All of them come from one home.
        "per_caller": {
            "connections": 0,
            "connections_per_second": 0,
            "handshakes_per_second": 0,
            "requests_per_second": 0,
            "configurations_per_second": 0,
        },
    },
    "log": {"bytes_per_second": 0},
}
# For tests that request more from one home than its clients do.
GREEDY = {"limits": {"per_caller": MANY["limits"]["per_caller"]}}
# Seconds: long enough for a login on a machine under full load.
GRANT = 10
# Options for OpenVPN without the client: it logs in, but changes nothing in the namespace.
HARMLESS = ["--dev", "null", "--route-noexec", "--ifconfig-noexec", "--verb", "3"]


def configuration(world, user, address):
    """The service's answer to a request for the configuration of an address."""
    return service_api.get(world.home, service_api.configuration_target(user, address))


def log_in(world, user, password, answer, namespace=network.HOME):
    """Logs in with the real OpenVPN under another name; returns "up", "refused", or its whole log."""
    folder = world.folder / "attacker"
    folder.mkdir(exist_ok=True)
    program = folder / "attacker"
    if not program.exists():
        program.symlink_to("/usr/sbin/openvpn")
    text = service_api.configuration_of(answer)
    (folder / "x.ovpn").write_text(
        re.sub(r"(?m)^(dev|redirect-gateway|block-ipv6|ifconfig-ipv6).*\n", "", text), encoding="ascii"
    )
    (folder / "pair").write_text(f"{user}\n{password}\n", encoding="ascii")
    (folder / "pair").chmod(0o600)
    with subprocess.Popen(
        [
            "ip",
            "netns",
            "exec",
            namespace,
            str(program),
            "--config",
            str(folder / "x.ovpn"),
            "--auth-user-pass",
            str(folder / "pair"),
            *HARMLESS,
        ],
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
    ) as process:
        lines = []
        end = time.monotonic() + EVENTUALLY
        try:
            for line in process.stdout:
                lines.append(line)
                if "Initialization Sequence Completed" in line:
                    return "up"
                if "AUTH_FAILED" in line:
                    return "refused"
                if time.monotonic() > end:
                    break
        finally:
            process.terminate()
        return "".join(lines)


def check_session(client):
    """An honest client starts, hides and stops as usual."""
    client.start_ready(ADA, location=BERLIN.title)
    outcomes.check_session(client)


def test_a_thousand_sessions_at_once(make_world, make_client):
    """1,000 connections are open together; then each requests the server list and a configuration."""
    world = make_world(**MANY)
    memory = [outcomes.memory(world.service.pid)]
    for _ in range(3):
        done = world.home.run("prlimit", "--nofile=8192", "/usr/bin/python3", "-B", CROWD, "1000", *ADDRESSES)
        result = json.loads(done.stdout)
        assert (result["sessions"], result["failed"]) == (1000, 0), result
        assert result["users"] == 1000, "each session has a user of its own"
        assert result["configurations"] == 1000, "each session receives the address that it requested"
        memory.append(outcomes.memory(world.service.pid))
    assert len(world.service.requests_of("VPNC")) == 3000
    figures.record("1,000 sessions: seconds to connect all", result["connecting"])
    figures.record("1,000 sessions: seconds for 2,000 answers", result["answering"])
    figures.record("1,000 sessions: service's resident KiB before and after each of three crowds", memory)
    assert memory[3] - memory[2] < 16 * 1024, "memory of an earlier crowd is used again"
    check_session(make_client(world))


def test_stalled_and_dripping_clients(make_world, make_client):
    """400 connections that send nothing or a part of a request: a session beside them works as usual."""
    world = make_world(**GREEDY)
    client = make_client(world)
    stalling = world.home.popen(
        "prlimit",
        "--nofile=8192",
        "/usr/bin/python3",
        "-B",
        CROWD,
        "--stall",
        "200",
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        text=True,
    )
    try:
        assert json.loads(stalling.stdout.readline()) == {"silent": 200, "dripping": 200}
        check_session(client)
    finally:
        stalling.stdin.close()
        stalling.wait(EVENTUALLY)


def test_expired_user(make_world):
    world = make_world(credential_seconds=10, **GREEDY)
    user, password = service_api.credentials(world.home)
    answer = configuration(world, user, BERLIN.addresses[0])
    assert answer.startswith("VPNConfig: ")
    world.home.wait_for(
        lambda: not configuration(world, user, BERLIN.addresses[0]).startswith("VPNConfig: "),
        "the user has expired",
    )
    assert configuration(world, user, BERLIN.addresses[0]) == "ERR: Unknown or expired session"
    assert log_in(world, user, password, answer) == "refused"
    assert world.service.lent() == {}


def test_expired_grant(make_world):
    """A configuration allows a login for a short time only."""
    world = make_world(grant_seconds=GRANT)
    user, password = service_api.credentials(world.home)
    answer = configuration(world, user, BERLIN.addresses[0])
    # A successful login would bind the grant to this place, so the test can only wait for its end.
    time.sleep(GRANT + 0.5)
    assert log_in(world, user, password, answer) == "refused"
    assert log_in(world, user, password, configuration(world, user, BERLIN.addresses[0])) == "up"


def test_replayed_credentials(world):
    """Credentials that were used from one place are refused from another one."""
    user, password = service_api.credentials(world.home)
    answer = configuration(world, user, BERLIN.addresses[0])
    assert log_in(world, user, password, answer) == "up"
    assert log_in(world, user, password, answer, namespace=network.INTERNET) == "refused"
    assert log_in(world, user, password, answer) == "up", "the first place can log in again"


def test_pairs_that_are_refused(world):
    user, password = service_api.credentials(world.home)
    other, other_password = service_api.credentials(world.home)
    address = BERLIN.addresses[0]
    answer = configuration(world, user, address)
    assert log_in(world, user, password[:-1], answer) == "refused", "not the whole password"
    assert log_in(world, user, other_password, answer) == "refused", "the password of another user"
    assert log_in(world, other, other_password, answer) == "refused", "the grant of another user"
    assert log_in(world, user, password, answer) == "up"


def test_certificates_that_are_refused(world):
    """Without the certificate that the service has made no caller gets as far as a login."""
    user, password = service_api.credentials(world.home)
    answer = configuration(world, user, BERLIN.addresses[0])
    foreign = pki.Authority(world.folder / "foreign").leaf(user, "DNS:foreign")
    blocks = {kind: file.read_text(encoding="ascii") for kind, file in zip(("cert", "key"), foreign)}
    other = answer
    for kind, text in blocks.items():
        block = f"<{kind}>\n{text}</{kind}>\n".replace("\n", "<br />")
        other = re.sub(rf"<{kind}>.*</{kind}><br />", lambda _match, block=block: block, other)
    without = re.sub(r"<cert>.*</key><br />", "", answer)
    for wrong in (other, without):
        assert "AUTH_FAILED" not in log_in(world, user, password, wrong)
        assert world.service.lent() == {}
    refused = (world.service.runtime / "udp.log").read_text(encoding="utf-8")
    assert "certificate verify failed" in refused
    assert "peer did not return a certificate" in refused
    assert log_in(world, user, password, answer) == "up"


def raw_request(world, target):
    """The answer to a target that curl would not send as it is."""
    request = f"GET {target} HTTP/1.1\r\nHost: {network.API_HOST}\r\nConnection: close\r\n\r\n"
    return world.home.run(
        "openssl",
        "s_client",
        "-quiet",
        "-connect",
        f"{network.API_HOST}:443",
        "-CAfile",
        "/etc/quorvane/ca.crt",
        input=request,
    ).stdout


def test_wrong_sessions(world):
    world.service.control("announce", pattern=".*", count=0)
    for sessid in (
        "x",
        "",
        "A" * 300,
        "%00",
        "..%2F..",
        "' OR 1=1",
        "$(id)",
        "<script>",
        "\x7f",
        "a&sessid=b",
    ):
        answer = raw_request(world, service_api.configuration_target(sessid, BERLIN.addresses[0]))
        assert answer.startswith("HTTP/1.1 ") and "VPNConfig" not in answer, sessid
        assert "ERR: " in answer or " 400 " in answer.splitlines()[0], (sessid, answer)
    assert service_api.get(world.home, "/ip").strip() == network.REAL_ADDRESS, "the service keeps working"


def test_addresses_that_the_service_does_not_own(world):
    user, _password = service_api.credentials(world.home)
    for address in (
        "192.0.2.10",
        "198.51.100.10",
        "203.0.113.250",
        "127.0.0.1",
        "0.0.0.0",
        "255.255.255.255",
        "203.0.113.040",
        "203.0.113.40,203.0.113.41",
        "::1",
        "203.0.113.40%0aup",
        "10.8.0.1",
    ):
        answer = configuration(world, user, address)
        assert answer in ("ERR: Address not available", "ERR: Argument parsing error"), address
    assert configuration(world, user, BERLIN.addresses[0]).startswith("VPNConfig: ")


def test_kill_of_the_service(world, client):
    """The service is ended by SIGKILL during a session, and started again."""
    client.start_hidden(ADA, location=BERLIN.title)
    os.kill(world.service.pid, signal.SIGKILL)
    world.service.process.wait()
    # Its OpenVPN servers end with it; its rules on the gateway are replaced at the next start.
    world.home.wait_for(
        lambda: "vpnsrv" not in network.inside(network.GATEWAY, "ss", "-Hltunp").stdout,
        "its OpenVPN servers have ended",
    )
    (world.service.runtime / "listening").unlink()
    world.service.start()
    assert world.service.lent() == {}
    client.stop()
    client.hide()
    # The user of the old list is still known: it follows from the service's key.
    client.wait_hidden()
    assert client.home.public_address() in BERLIN.addresses
    assert len(world.service.requests_of("MRTSL")) == 1
    client.terminate()
    check_session(client)


@pytest.mark.parametrize("protocol", ["udp", "tcp"])
def test_kill_of_a_gateway(world, client, protocol):
    """One OpenVPN server is ended by SIGKILL: its entries are removed, and it is started again."""
    client.start_ready(ADA, location=BERLIN.title)
    client.choose_protocol(protocol.upper())
    client.hide()
    client.wait_hidden()
    assert len(world.service.lent()) == 1
    listing = network.inside(network.GATEWAY, "ss", f"-Hl{protocol[0]}np").stdout
    server = int(re.search(r'"vpnsrv",pid=(\d+)', listing).group(1))
    os.kill(server, signal.SIGKILL)
    world.home.wait_for(lambda: world.service.lent() == {}, "its entries are removed")
    world.home.wait_for(lambda: world.service.control("status").get("ready"), "it runs again")
    client.stop()
    client.hide()
    client.wait_hidden()
    assert len(world.service.lent()) == 1
