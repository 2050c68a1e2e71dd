"""From nothing to a lent address: the setup of the service on a bare Debian with a public address."""

import contextlib
import json
import os
import re
import signal
import subprocess
import time

import pytest

from harness.drive.client import Client
from harness.drive.terminal import DONE, Terminal
from harness.home.deadlines import EVENTUALLY, POLL
from layers import package_file
from setup_host import ADDRESSES, ARGUMENTS, ETC, GATEWAY, HOST, Host, session
from unit import NAME
from world import network
from world.accounts import ADA
from world.world import World

READY, NOT_READY, NOT_RUNNING = 0, 3, 4


@pytest.fixture(name="host")
def fixture_host(machine, debs, tmp_path):
    machine.install(package_file(debs, NAME))
    made = network.Network(tmp_path)
    host = Host(machine)
    yield host
    host.unit.close()
    made.close()


@pytest.fixture(name="lending")
def fixture_lending(host):
    """The host with a running service."""
    host.setup(*ARGUMENTS)
    host.unit.start()
    host.unit.wait_ready()
    return host


def differences(before, after):
    return sorted(name for name in before.keys() | after.keys() if before.get(name) != after.get(name))


def namespaces_and_links():
    """What a check makes and must remove."""
    links = json.loads(network.run("ip", "-n", network.GATEWAY, "-json", "link").stdout)
    return [link["ifname"] for link in links if link["ifname"].startswith("qrv-check")]


def test_two_commands_from_nothing_to_a_lent_address(machine, debs, tmp_path):
    made = network.Network(tmp_path)
    begun = time.monotonic()
    machine.install(package_file(debs, NAME))
    host = Host(machine)
    try:
        output = host.setup(*ARGUMENTS)
        assert "systemd does not run here" in output
        for line in (f"api_host = {HOST}", f"web_host = {HOST}", f"reachability_host = {HOST}"):
            assert f"{line}\n" in output
        host.unit.start()
        status, output = host.call("setup", "--check")
        assert status == 0, output
        seen = re.findall(r"^  address seen through the tunnel +[0-9.]+ s  (\S+)$", output, re.MULTILINE)
        assert seen == ["203.0.113.0", "203.0.113.15"], output
        print(f"from nothing to the first lent address: {time.monotonic() - begun:.1f} s\n{output}")
        assert host.routes() == [ADDRESSES] and not namespaces_and_links()
        assert host.unit.stop() == 0
    finally:
        host.unit.close()
        made.close()


@pytest.mark.parametrize("moved", [False, True])
def test_private_files_are_private(host, moved):
    host.setup(*ARGUMENTS)
    if moved:  # from another machine, where users have other numbers
        for path in host.path(".").iterdir():
            os.chown(path, 12345, 12345)
            path.chmod(0o644)
        host.setup("--listen", network.REAL_ADDRESS)
    users = {role: int(host.machine.run("id", "-u", f"quorvane-{role}")) for role in ("api", "gateway")}
    group = int(host.machine.run("getent", "group", NAME).split(":")[2])
    private = {"client-authority.pem": "api", "api.key": "api", "vpn.key": "gateway"}
    for name, (_, mode, owner, *_rest) in host.files().items():
        if name in private:
            assert (mode, owner[0]) == (0o600, users[private[name]]), name
        elif name in ("user.keys", "control.key", "client-authority.crt"):
            assert (mode, owner) == (0o640, (0, group)), name
        elif name.endswith(".key"):
            assert (mode, owner) == (0o600, (0, 0)), name
        elif name.endswith(".json"):
            assert (mode, owner) == (0o640, (0, group)), name
        else:
            assert (mode, owner) == (0o644, (0, 0)), name
    assert host.configuration()["vpn"]["tcp"]["port"] == 1194, "443 is the listener's"


def test_with_systemd_the_units_are_started(host):
    """A fake systemctl records what it is called with; the test then does it."""
    (host.machine.root / "run/systemd/system").mkdir(parents=True)
    calls = host.machine.root / "tmp/systemctl.log"
    calls.touch()
    program = host.machine.root / "usr/bin/systemctl"
    program.write_text('#!/bin/sh\necho "$*" >>/tmp/systemctl.log\n', encoding="ascii")
    program.chmod(0o755)

    def while_set_up(arguments, awaited, action):
        begun = len(calls.read_text(encoding="ascii"))
        command = [*GATEWAY, "chroot", host.machine.root, f"/usr/sbin/{NAME}", "setup", *arguments]
        with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as process:
            end = time.monotonic() + EVENTUALLY
            while awaited not in calls.read_text(encoding="ascii")[begun:]:
                assert process.poll() is None and time.monotonic() < end
                time.sleep(POLL)
            action()
            output = process.communicate()[0]
        assert process.returncode == 0 and "The service lends addresses." in output, output
        return calls.read_text(encoding="ascii")[begun:].splitlines()

    def restart():
        assert host.unit.stop() == 0
        host.unit.start()

    timer, units = f"{NAME}-renew.timer", [f"{NAME}-{role}.service" for role in ("gateway", "api")]
    enabled = [f"--quiet enable {name}" for name in (*units, timer)] + [f"start {timer}"]
    started = [*enabled, *(f"start {name}" for name in units)]
    assert while_set_up(ARGUMENTS, f"start {units[1]}", host.unit.start) == started
    again = while_set_up(("--city", "Bonn"), f"start {units[1]}", lambda: None)
    assert again == started, "the new city needs no restart"
    listen = ("--listen", f"{network.REAL_ADDRESS}:8443")
    restarted = [*enabled, *(f"restart {name}" for name in units)]
    assert while_set_up(listen, f"restart {units[1]}", restart) == restarted


def test_setup_again_changes_nothing(lending):
    before = lending.files()
    assert "No file had to be changed." in lending.setup(*ARGUMENTS)
    assert lending.files() == before
    lending.setup()
    assert lending.files() == before


def test_other_addresses_change_only_the_configuration(lending):
    edited = {**lending.configuration(), "limits": {"connections": 99}}
    lending.path("service.json").write_text(json.dumps(edited), encoding="utf-8")
    before = lending.files()
    with session(lending) as seen:
        assert seen() == "203.0.113.7"
        assert "The service lends addresses." in lending.setup("--addresses", "203.0.113.32/30,203.0.113.40")
        assert differences(before, lending.files()) == ["service.json"]
        assert seen() == "203.0.113.7", "a session goes on"
    configuration = lending.configuration()
    (group,) = configuration["groups"]
    expected = [f"203.0.113.{last}" for last in (32, 33, 34, 35, 40)]
    assert group == {**edited["groups"][0], "addresses": expected}
    assert configuration == {**edited, "groups": [group]}
    added = ["203.0.113.32/30", "203.0.113.40"]
    assert sorted(lending.routes()) == [ADDRESSES, *added], "that of the session, too"
    assert lending.unit.stop() == 0
    lending.unit.start()
    lending.unit.wait_ready()
    assert sorted(lending.routes()) == added


def test_wrong_arguments_change_nothing(host):
    for arguments, message in (
        ((), "--name is needed"),
        (("--name", HOST), "--addresses is needed"),
        (("--name", "a b", "--addresses", ADDRESSES), "--name: "),
        (("--name", HOST, "--addresses", "203.0.113.1/28"), "--addresses: "),
        (("--name", HOST, "--addresses", network.REAL_ADDRESS), "cannot be lent"),
        ((*ARGUMENTS, "--listen", "x"), "--listen: "),
        ((*ARGUMENTS, "--country", "D1"), "cannot be specified more than once"),
    ):
        status, output = host.call("setup", *arguments)
        assert status == 2 and message in output, output
    assert not list(host.path(".").iterdir())


def test_check_reports_the_step_that_fails_and_leaves_nothing(lending):
    rules = network.arriving("udp dport 1194 drop")
    with network.ruled(network.GATEWAY, rules):
        status, output = lending.call("setup", "--check")
    assert status == 1 and re.search(r"tunnel by OpenVPN, UDP port 1194 +FAILED", output), output
    assert "Look at: the firewall" in output
    assert not namespaces_and_links()
    assert lending.machine.run("ip", "netns", "list") == ""
    assert lending.call("setup", "--check")[0] == 0


def test_check_that_is_ended_leaves_nothing(lending):
    rules = network.arriving("udp dport 1194 drop")
    command = [*GATEWAY, "chroot", lending.machine.root, f"/usr/sbin/{NAME}", "setup", "--check"]
    with network.ruled(network.GATEWAY, rules):
        with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as process:
            end = time.monotonic() + EVENTUALLY
            while not (lending.machine.root / "run/quorvane-check/client.conf").exists():
                assert process.poll() is None and time.monotonic() < end
                time.sleep(POLL)
            process.send_signal(signal.SIGTERM)
            assert process.wait(EVENTUALLY) == 1
    assert not namespaces_and_links() and not (lending.machine.root / "run/quorvane-check").exists()
    assert lending.machine.run("ip", "netns", "list") == ""


def sign_earlier(host, days):
    """Replaces the listener's certificate by one that was made so many days ago for 90 days."""
    folder = host.machine.upper / "earlier"
    folder.mkdir(exist_ok=True)
    (folder / "extensions").write_text(f"subjectAltName=DNS:{HOST}\n", encoding="utf-8")
    key, authority = host.path("api.key"), [host.path("api-ca.crt"), "-CAkey", host.path("api-ca.key")]
    made = ["openssl", "req", "-new", "-key", key, "-subj", f"/CN={HOST}", "-out", folder / "request"]
    subprocess.run(made, check=True)
    signing = [
        "faketime",
        f"{days} days ago",
        "openssl",
        "x509",
        "-req",
        "-days",
        "90",
        "-in",
        folder / "request",
    ]
    signing += ["-extfile", folder / "extensions", "-CA", *authority, "-out", host.path("api.crt")]
    subprocess.run(signing, check=True, stderr=subprocess.DEVNULL)


def test_renewal_ends_no_session(lending):
    assert lending.renew() == []
    sign_earlier(lending, 50)
    assert lending.renew() == [], "more than a third of its life is left"
    sign_earlier(lending, 61)
    lending.unit.api.process.terminate()  # it is started again
    before, files = lending.path("api.crt").read_text(encoding="ascii"), lending.files()
    lending.wait_served(before)
    with session(lending) as seen:
        assert seen() == "203.0.113.7"
        assert lending.renew() == [f"{ETC}/api.crt"]
        lending.wait_served(lending.path("api.crt").read_text(encoding="ascii"))
        assert seen() == "203.0.113.7"
        assert lending.unit.status()["servers"]["udp"]["clients"] == 1
    assert differences(files, lending.files()) == ["api.crt"]


def test_status_in_its_three_states(host):
    host.setup(*ARGUMENTS)
    status, output = host.call("status")
    assert status == NOT_RUNNING and "the service does not run" in output
    configuration = host.path("service.json").read_text(encoding="utf-8")
    broken = json.loads(configuration)
    broken["gateway"]["openvpn"] = "/bin/false"
    host.path("service.json").write_text(json.dumps(broken), encoding="utf-8")
    host.unit.start()
    end = time.monotonic() + EVENTUALLY
    while host.unit.status().get("servers", {}).get("tcp") is None:
        assert host.unit.gateway.process.poll() is None and time.monotonic() < end
        time.sleep(POLL)
    status, output = host.call("status")
    assert status == NOT_READY and "runs and is not ready" in output
    assert host.unit.stop() == 0
    host.path("service.json").write_text(configuration, encoding="utf-8")
    host.unit.start()
    host.unit.wait_ready()
    with session(host):
        status, output = host.call("status")
        assert status == READY
        assert re.search(r"^server udp +ready, 1 sessions$", output, re.MULTILINE), output
        assert re.search(r"^lends +1 now, 1 since the start, 0 failed$", output, re.MULTILINE), output
        assert re.search(r"^tls\.certificate +until \S+, (89|90) days left$", output, re.MULTILINE), output
        status, output = host.call("status", "--json")
        assert status == READY and json.loads(output)["lends"] == {"now": 1, "all": 1, "failed": 0}


def test_certificate_of_another_program(host, tmp_path):
    """Its files are root's; the service gets a copy, which a renewal replaces."""

    def make(name):
        command = [
            "openssl",
            "req",
            "-x509",
            "-newkey",
            "ec",
            "-pkeyopt",
            "ec_paramgen_curve:P-256",
            "-nodes",
        ]
        command += ["-keyout", folder / "k.pem", "-out", folder / "c.pem", "-days", "30", "-subj", "/CN=x"]
        command += ["-addext", f"subjectAltName=DNS:{name}"]
        subprocess.run(command, check=True, stderr=subprocess.DEVNULL)
        (folder / "k.pem").chmod(0o600)

    assert tmp_path.exists()
    folder = host.machine.root / "etc/acme"
    folder.mkdir()
    make("other.example.org")
    given = ("--tls-certificate", "/etc/acme/c.pem", "--tls-key", "/etc/acme/k.pem")
    status, output = host.call("setup", *ARGUMENTS, *given)
    assert status == 1 and f"is not for {HOST}" in output
    make(HOST)
    assert "ca_file" not in host.setup(*ARGUMENTS, *given)
    host.unit.start()
    host.unit.wait_ready()
    assert host.call("setup", "--check")[0] == 0
    make(HOST)
    assert host.renew() == [f"{ETC}/given.pem"]
    make("other.example.org")
    status, output = host.call("renew")
    assert status == 1 and f"is not for {HOST}" in output


def reaches(address, port):
    """True when the home can connect to a TCP port, False without any answer."""
    with network.socket_in(network.HOME) as link:
        link.settimeout(3)
        try:
            link.connect((address, port))
            return True
        except TimeoutError:
            return False


def dropped():
    """Packets that the service's table has dropped because of their destination."""
    listed = network.inside(network.GATEWAY, "nft", "list", "chain", "ip", "quorvane", "guarded").stdout
    return int(re.search(r"counter packets (\d+) bytes \d+ drop", listed)[1])


def test_users_do_not_reach_the_gateway_nor_private_networks(lending):
    private, port = "10.77.0.1", 8080
    network.run("ip", "-n", network.INTERNET, "address", "add", private, "dev", "lo")
    with contextlib.ExitStack() as opened:
        for namespace in (network.GATEWAY, network.INTERNET):
            listener = opened.enter_context(network.socket_in(namespace))
            listener.bind(("0.0.0.0", port))
            listener.listen()
        assert reaches(network.REAL_ADDRESS, port) and reaches(private, port), "without the tunnel"
        with session(lending) as seen:
            assert seen() == "203.0.113.7" and dropped() == 0
            assert reaches(network.SERVICE_ADDRESS, port), "a public host"
            for address in (network.REAL_ADDRESS, private, "203.0.113.1"):
                before = dropped()
                assert not reaches(address, port) and dropped() > before, address
        changed = lending.configuration()
        changed["gateway"]["allow_private"] = [f"{private}/32"]
        lending.path("service.json").write_text(json.dumps(changed), encoding="utf-8")
        assert lending.unit.stop() == 0
        lending.unit.start()
        lending.unit.wait_ready()
        with session(lending):
            assert reaches(private, port) and not reaches(network.REAL_ADDRESS, port)


def test_installed_client_uses_the_printed_lines(machine, debs, installed):
    """The client on another machine, in the home of the test network."""
    machine.install(package_file(debs, NAME))
    world = World(serve=False, root=installed)
    host, client = Host(machine), None
    try:
        output = host.setup(*ARGUMENTS)
        host.unit.start()
        host.unit.wait_ready()
        lines = "".join(re.findall(r"^(?:\w+_host|ca_file) = .*\n", output, re.MULTILINE))
        assert lines.count("\n") == 4
        world.home.write("/etc/quorvane/service.conf", lines)
        world.home.write("/etc/quorvane/ca.crt", host.path("api-ca.crt").read_text(encoding="utf-8"))
        world.home.write("/etc/hosts", f"127.0.0.1 localhost\n{network.REAL_ADDRESS} {HOST}\n")
        client = Client(world, "joe")
        client.remember_administrator(ADA)
        terminal = Terminal(client)
        code, (lent,) = terminal.run("--hide", "Germany Berlin")
        assert code == DONE and lent in host.configuration()["groups"][0]["addresses"]
        assert terminal.status()["current_address"] == lent
        assert host.unit.status()["lends"] == {"now": 1, "all": 1, "failed": 0}
        assert terminal.run("--quit") == (DONE, [])
    finally:
        if client is not None:
            client.close()
        host.unit.close()
        world.close()
