"""The service under load and under attack, and after a kill: what honest clients get meanwhile and afterwards."""

import json
import os
import re
import signal
import subprocess
import time

import pytest

from harness.drive import client as ui
from harness.observe import figures, outcomes
from world import home as homes
from world import network, service
from world.accounts import ADA
from world.service import BERLIN

ADDRESSES = [address for place in service.LOCATIONS for address in place.addresses]
CROWD = f"{homes.HARNESS}/crowd.py"
MANY = {"limits": {"connections": 4096, "handshake_seconds": 60, "request_seconds": 60}}
TUNNEL = "/var/tmp/tunnel"
# What OpenVPN is started with outside of the client: it logs in, but changes nothing on the machine.
HARMLESS = ["--dev", "null", "--route-noexec", "--ifconfig-noexec", "--verb", "3"]


def ask(world, target):
    return world.home.run(
        "curl",
        "-q",
        "-fsS",
        "--cacert",
        "/etc/quorvane/ca.crt",
        f"https://{network.API_HOST}{target}",
        user="joe",
    ).stdout


def servers(world):
    """A fresh user and password, as a client gets them."""
    answer = ask(world, "/?cmd=MRTSL&ver=1&device=1&systamp=MacOS,user,mobilebox&uniqueid=x")
    values = dict(line.partition(":")[::2] for line in answer.split("<br />"))
    return values["VPNUser"].strip(), values["VPNPass"].strip()


def configuration(world, user, address):
    return ask(
        world,
        f"/?cmd=VPNC&ver=1&device=1&server=571&desiredip={address}&sessid={user}"
        "&&systamp=MacOS,user,mobilebox&uniqueid=x&proto=UDP",
    )


def log_in(world, user, password, answer, namespace=network.HOME, seconds=20):
    """Logs in with the real OpenVPN, under a name of its own; "up", "refused" or what it wrote instead."""
    folder = world.folder / "attacker"
    folder.mkdir(exist_ok=True)
    program = folder / "attacker"
    if not program.exists():
        program.symlink_to("/usr/sbin/openvpn")
    text = answer.partition("VPNConfig: ")[2].replace("<br />", "\n")
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
        end = time.monotonic() + seconds
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


def check_session(world, client):
    """An honest client starts, hides and stops as if nothing was going on."""
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    outcomes.check_session(client)


def test_a_thousand_sessions_at_once(make_world, make_client):
    """1,000 connections are open together; then each asks for the servers and a configuration."""
    world = make_world(**MANY)
    memory = [outcomes.memory(world.service.pid)]
    for _ in range(3):
        done = world.home.run("prlimit", "--nofile=8192", "/usr/bin/python3", "-B", CROWD, "1000", *ADDRESSES)
        result = json.loads(done.stdout)
        assert (result["sessions"], result["failed"]) == (1000, 0), result
        assert result["users"] == 1000, "everybody has a user of his own"
        assert result["configurations"] == 1000, "everybody gets the address that he asked for"
        memory.append(outcomes.memory(world.service.pid))
    assert len(world.service.requests_of("VPNC")) == 3000
    figures.record("1,000 sessions: seconds to connect all", result["connecting"])
    figures.record("1,000 sessions: seconds for 2,000 answers", result["asking"])
    figures.record("1,000 sessions: service's resident KiB before and after each of three crowds", memory)
    assert memory[3] - memory[2] < 16 * 1024, "what a crowd took is used again"
    check_session(world, make_client(world))


def test_stalled_and_dripping_clients(world, client):
    """400 connections that say nothing or a letter only: a session goes on beside them as ever."""
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
        check_session(world, client)
    finally:
        stalling.stdin.close()
        stalling.wait(20)


def test_expired_user(make_world):
    world = make_world(credential_seconds=3)
    user, password = servers(world)
    answer = configuration(world, user, BERLIN.addresses[0])
    assert answer.startswith("VPNConfig: ")
    world.home.wait_for(
        lambda: not configuration(world, user, BERLIN.addresses[0]).startswith("VPNConfig: "),
        10,
        "the user expires",
    )
    assert configuration(world, user, BERLIN.addresses[0]) == "ERR: Unknown or expired session"
    assert log_in(world, user, password, answer) == "refused"
    assert world.service.lent() == {}


def test_expired_grant(make_world):
    """A configuration opens the door for a short time only."""
    world = make_world(grant_seconds=1)
    user, password = servers(world)
    answer = configuration(world, user, BERLIN.addresses[0])
    # Each try is a login of the real OpenVPN; a right one would tie the grant to this place, so the first must fail.
    time.sleep(1.5)  # the time that is to run out, not one to wait for something
    assert log_in(world, user, password, answer) == "refused"
    assert log_in(world, user, password, configuration(world, user, BERLIN.addresses[0])) == "up"


def test_replayed_credentials(world):
    """What was used from one place is worth nothing at another."""
    user, password = servers(world)
    answer = configuration(world, user, BERLIN.addresses[0])
    assert log_in(world, user, password, answer) == "up"
    assert log_in(world, user, password, answer, namespace=network.INTERNET) == "refused"
    assert log_in(world, user, password, answer) == "up", "its own place may come back"


def test_pairs_that_open_nothing(world):
    user, password = servers(world)
    other, other_password = servers(world)
    address = BERLIN.addresses[0]
    answer = configuration(world, user, address)
    assert log_in(world, user, password[:-1], answer) == "refused", "not the whole password"
    assert log_in(world, user, other_password, answer) == "refused", "somebody else's password"
    assert log_in(world, other, other_password, answer) == "refused", "a user without a grant"
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
        answer = raw_request(
            world,
            f"/?cmd=VPNC&ver=1&device=1&server=571&desiredip={BERLIN.addresses[0]}"
            f"&sessid={sessid}&&systamp=MacOS,user,mobilebox&uniqueid=x&proto=UDP",
        )
        assert answer.startswith("HTTP/1.1 ") and "VPNConfig" not in answer, sessid
        assert "ERR: " in answer or " 400 " in answer.splitlines()[0], (sessid, answer)
    assert ask(world, "/ip").strip() == network.REAL_ADDRESS, "and it goes on"


def test_addresses_that_the_service_does_not_own(world):
    user, _password = servers(world)
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
    """The service is gone with kill -9 in the middle of a session, and comes back."""
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    client.hide()
    client.wait_hidden()
    os.kill(world.service.pid, signal.SIGKILL)
    world.service.process.wait()
    # Its OpenVPN servers end with it; what it had made on the gateway is replaced at the next start.
    world.home.wait_for(
        lambda: "vpnsrv" not in network.inside(network.GATEWAY, "ss", "-Hltunp").stdout, 20, "its servers end"
    )
    (world.service.runtime / "listening").unlink()
    world.service.start()
    assert world.service.lent() == {}
    client.stop()
    client.hide()
    # The user of the list is not known any more: the attempt ends, the next list brings a new one.
    assert client.wait_alert(ui.FAILURE)["texts"] == [
        "Location is not available.",
        "Please try a different location.",
    ]
    client.dismiss_alert()
    client.wait({"role": "alert"}, 10, absent=True)
    client.signal(signal.SIGTERM)
    client.wait_exit()
    check_session(world, client)


@pytest.mark.parametrize("protocol", ["udp", "tcp"])
def test_kill_of_a_gateway(world, client, protocol):
    """One OpenVPN server is gone with kill -9: its rows go, and it is there again for the next session."""
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    client.choose_protocol(protocol.upper())
    client.hide()
    client.wait_hidden()
    assert len(world.service.lent()) == 1
    listing = network.inside(network.GATEWAY, "ss", f"-Hl{protocol[0]}np").stdout
    server = int(re.search(r'"vpnsrv",pid=(\d+)', listing).group(1))
    os.kill(server, signal.SIGKILL)
    world.home.wait_for(lambda: world.service.lent() == {}, 20, "its rows go")
    world.home.wait_for(lambda: world.service.control("status").get("ready"), 20, "it is there again")
    client.stop()
    client.hide()
    client.wait_hidden()
    assert len(world.service.lent()) == 1
