"""Resources/networksetup, in a new home for every test."""

import shutil
import tempfile

import pytest

from harness.conditions import scripts
from harness.conditions.resolvers import NetworkManager, Resolved
from world import home as homes

TOOL = f"{homes.CONTENTS}/Resources/networksetup"
SERVICES = ("Ethernet", "Wi-Fi", "AirPort")


@pytest.fixture
def home(make_world):
    folder = tempfile.mkdtemp(prefix="quorvane-scripts-")
    yield make_world(contents=scripts.contents(f"{folder}/contents"), program="/bin/false", serve=False).home
    shutil.rmtree(folder)


def run(home, *arguments, user="root"):
    done = home.run(TOOL, *arguments, user=user, check=False)
    return done.returncode, done.stdout, done.stderr


def resolv_conf(home):
    return home.path("/etc/resolv.conf").read_text(encoding="utf-8")


@pytest.mark.parametrize("service", SERVICES)
def test_file_get(home, service):
    assert run(home, "-getdnsservers", service, user="joe") == (0, "8.8.8.8\n8.8.4.4\n", "")


@pytest.mark.parametrize("service", SERVICES)
def test_file_set(home, service):
    assert run(home, "-setdnsservers", service, "9.9.9.9", "2620:fe::fe") == (0, "", "")
    assert resolv_conf(home) == "nameserver 9.9.9.9\nnameserver 2620:fe::fe\noptions timeout:1 attempts:2\n"
    assert home.path("/etc/resolv.conf").stat().st_mode & 0o7777 == 0o644
    assert run(home, "-getdnsservers", "Ethernet", user="joe")[1] == "9.9.9.9\n2620:fe::fe\n"
    assert not list(home.path("/etc").glob(".resolv.conf*")), "no temporary file is left"


def test_file_empty(home):
    assert run(home, "-setdnsservers", "Ethernet", "empty") == (0, "", "")
    assert resolv_conf(home) == "options timeout:1 attempts:2\n"
    assert run(home, "-getdnsservers", "Wi-Fi") == (0, "There aren't any DNS Servers set on Wi-Fi.\n", "")


def test_file_that_can_only_be_written(home):
    """In containers a file is bound over /etc/resolv.conf: it can be written, but not replaced."""
    home.write("/var/tmp/resolv.conf", "nameserver 1.1.1.1\nsearch lan\n")
    home.run("mount", "--bind", "/var/tmp/resolv.conf", "/etc/resolv.conf")
    assert run(home, "-setdnsservers", "Ethernet", "8.8.8.8")[0] == 0
    assert home.run("cat", "/etc/resolv.conf").stdout == "nameserver 8.8.8.8\nsearch lan\n"


def test_file_needs_root(home):
    before = resolv_conf(home)
    assert run(home, "-setdnsservers", "Ethernet", "8.8.8.8", user="joe") == (
        14,
        "",
        "** Error: Command requires admin privileges.\n",
    )
    assert resolv_conf(home) == before


@pytest.mark.parametrize(
    "address",
    [
        "8.8.8",
        "8.8.8.256",
        "8.8.8.8.8",
        "dns.example",
        "1::2::3",
        ":",
        "",
        "$(id)",
        "8.8.8.8\nnameserver 6.6.6.6",
        "8.8.8.8 6.6.6.6",
        "-1.2.3.4",
        "8.8.8.8;id",
    ],
)
def test_invalid_addresses(home, address):
    before = resolv_conf(home)
    status, output, error = run(home, "-setdnsservers", "Ethernet", "8.8.8.8", address)
    assert (status, output) == (5, "") and "is not a valid IP address" in error
    assert resolv_conf(home) == before


@pytest.mark.parametrize("service", ["Ethernet 2", "ethernet", "", "*", "../x"])
def test_unknown_service(home, service):
    before = resolv_conf(home)
    text = f"{service} is not a recognized network service.\n"
    assert run(home, "-getdnsservers", service) == (4, "", text)
    assert run(home, "-setdnsservers", service, "8.8.8.8") == (4, "", text)
    assert resolv_conf(home) == before


@pytest.mark.parametrize(
    "arguments",
    [
        (),
        ("-getdnsservers",),
        ("-getdnsservers", "Ethernet", "x"),
        ("-setdnsservers", "Ethernet"),
        ("-listallnetworkservices", "x"),
    ],
)
def test_other_uses(home, arguments):
    status, output, error = run(home, *arguments)
    assert (status, output) == (2, "") and error.startswith("usage: networksetup")


def test_environment_is_not_trusted(home):
    """Neither PATH nor another variable of the caller decides what root runs."""
    home.write("/var/tmp/evil/awk", "#!/bin/sh\ntouch /var/tmp/evil/ran\n", mode=0o755)
    home.write("/var/tmp/evil/start", "touch /var/tmp/evil/ran\n")
    done = home.run(
        TOOL,
        "-getdnsservers",
        "Ethernet",
        environment={
            "PATH": "/var/tmp/evil:/usr/bin:/bin",
            "ENV": "/var/tmp/evil/start",
            "BASH_ENV": "/var/tmp/evil/start",
            "IFS": "8",
            "NETWORKSETUP_BACKEND": "nm",
        },
    )
    assert done.stdout == "8.8.8.8\n8.8.4.4\n"
    assert not home.path("/var/tmp/evil/ran").exists()


def test_networkmanager_profiles_of_their_own(home):
    manager = NetworkManager(home, wired="8.8.8.8 8.8.4.4", wireless="8.8.8.8")
    assert run(home, "-getdnsservers", "Ethernet", user="joe")[1] == "8.8.8.8\n8.8.4.4\n"
    assert run(home, "-getdnsservers", "Wi-Fi", user="joe")[1] == "8.8.8.8\n"
    assert run(home, "-getdnsservers", "AirPort", user="joe")[1] == "8.8.8.8\n", "the older name of Wi-Fi"
    assert run(home, "-setdnsservers", "Wi-Fi", "9.9.9.9", "1.1.1.1") == (0, "", "")
    assert (manager.servers("Ethernet"), manager.servers("Wi-Fi")) == ("8.8.8.8 8.8.4.4", "9.9.9.9 1.1.1.1")
    assert manager.changes() == ["modify Wi-Fi ipv4.dns=9.9.9.9 1.1.1.1 ignore-auto=yes", "reapply wlan0"]


def test_networkmanager_without_radio(home):
    manager = NetworkManager(home, wired="9.9.9.9")
    for service in SERVICES:
        assert run(home, "-getdnsservers", service, user="joe")[1] == "9.9.9.9\n"
        assert run(home, "-setdnsservers", service, "8.8.8.8", "8.8.4.4")[0] == 0
        assert manager.servers("Ethernet") == "8.8.8.8 8.8.4.4"
        assert run(home, "-setdnsservers", service, "9.9.9.9")[0] == 0


def test_networkmanager_empty(home):
    manager = NetworkManager(home, wired="8.8.8.8")
    assert run(home, "-setdnsservers", "Ethernet", "empty")[0] == 0
    assert manager.changes()[0] == "modify Ethernet ipv4.dns= ignore-auto=no"
    assert run(home, "-getdnsservers", "Ethernet")[1] == "There aren't any DNS Servers set on Ethernet.\n"


def test_networkmanager_refuses(home):
    manager = NetworkManager(home, wired="9.9.9.9")
    status, _output, error = run(home, "-setdnsservers", "Ethernet", "8.8.8.8", user="joe")
    assert status == 6
    assert error.endswith("** Error: The DNS servers of Ethernet could not be set.\n")
    assert manager.servers("Ethernet") == "9.9.9.9"


def test_networkmanager_without_profiles(home):
    """NetworkManager runs without profiles: the file is used."""
    NetworkManager(home)
    assert run(home, "-getdnsservers", "Ethernet")[1] == "8.8.8.8\n8.8.4.4\n"


def test_resolved(home):
    resolved = Resolved(home, "9.9.9.9 1.1.1.1")
    for service in SERVICES:
        assert run(home, "-getdnsservers", service, user="joe")[1] == "9.9.9.9\n1.1.1.1\n"
    assert run(home, "-setdnsservers", "Wi-Fi", "8.8.8.8", "8.8.4.4") == (0, "", "")
    assert resolved.servers() == "8.8.8.8 8.8.4.4"
    assert resolved.changes() == ["domain eth0 ~."]
    assert run(home, "-setdnsservers", "Wi-Fi", "8.8.8.8", user="joe")[0] == 6
    assert run(home, "-setdnsservers", "Ethernet", "empty")[0] == 0
    assert run(home, "-getdnsservers", "Ethernet")[1] == "There aren't any DNS Servers set on Ethernet.\n"


def test_resolved_that_is_not_used(home):
    """resolv.conf does not lead to systemd-resolved: the file is used."""
    Resolved(home, "9.9.9.9")
    home.write("/etc/resolv.conf", "nameserver 1.1.1.1\n")
    assert run(home, "-getdnsservers", "Ethernet")[1] == "1.1.1.1\n"


RESTORED = {
    "file": "9.9.9.9 1.1.1.1",
    "profile": "9.9.9.9 1.1.1.1",
    "automatic profile": "empty",
    "profile and automatic": "9.9.9.9 automatic",
    "resolved": "9.9.9.9 1.1.1.1",
    "resolved, as networkd set it": "empty",
}


def set_up(home, kind):
    if kind == "file":
        home.write("/etc/resolv.conf", "nameserver 9.9.9.9\nnameserver 1.1.1.1\n")
        return
    if kind.startswith("resolved"):
        Resolved(home, "9.9.9.9 1.1.1.1")
        if "networkd" in kind:
            index = home.run("cat", "/sys/class/net/eth0/ifindex").stdout.strip()
            home.write(f"/run/systemd/netif/links/{index}", "ADMIN_STATE=configured\nDNS=9.9.9.9 1.1.1.1\n")
        return
    servers = {"profile": "9.9.9.9 1.1.1.1", "automatic profile": ""}.get(kind, "9.9.9.9")
    manager = NetworkManager(home, wired=servers, wireless=servers)
    if kind == "profile and automatic":
        for name in ("Ethernet", "Wi-Fi"):
            home.write(f"{manager.STATE}/{name}/ignore-auto", "no\n")


@pytest.mark.parametrize("kind", RESTORED)
def test_words_that_bring_the_servers_back(home, kind):
    """The words are what -setdnsservers needs: afterwards everything is as before."""
    set_up(home, kind)
    for service in SERVICES:
        words = run(home, "-getdnsrestore", service, user="joe")
        assert words == (0, RESTORED[kind] + "\n", "")
        before = run(home, "-getdnsservers", service)
        assert run(home, "-setdnsservers", service, "8.8.8.8", "8.8.4.4")[0] == 0
        assert run(home, "-getdnsrestore", service)[1] == "8.8.8.8 8.8.4.4\n"
        assert run(home, "-setdnsservers", service, *RESTORED[kind].split())[0] == 0
        if kind == "resolved, as networkd set it":
            # The fake forgets the servers at a revert; the real one has those of networkd then.
            home.write(f"{Resolved.STATE}/eth0", "9.9.9.9 1.1.1.1\n")
        assert run(home, "-getdnsservers", service) == before
        assert run(home, "-getdnsrestore", service) == words
