"""Resources/extractip.sh against the real service and against none."""

import shutil
import tempfile
import time

import pytest
from harness import scripts
from world import home as homes
from world import network

SCRIPT = f"{homes.CONTENTS}/Resources/extractip.sh"
CONFIGURATION = "/var/tmp/qrvp.ovpn"
LONGEST = 3.3


@pytest.fixture
def make_home(make_world):
    folders = []

    def make(serve=True, **defaults):
        folders.append(tempfile.mkdtemp(prefix="quorvane-scripts-"))
        made = make_world(contents=scripts.contents(f"{folders[-1]}/contents", **defaults), serve=serve)
        made.home.write(CONFIGURATION, "client\nremote 203.0.113.40 1194\nremote 203.0.113.41 1194\n")
        return made

    yield make
    for folder in folders:
        shutil.rmtree(folder)


def run(world, configuration=CONFIGURATION, environment=None):
    begun = time.monotonic()
    done = world.home.run("/bin/bash", SCRIPT, configuration, user="joe", environment=environment, check=False)
    assert time.monotonic() - begun < LONGEST
    assert done.stderr == ""
    return done.returncode, done.stdout


def test_address_as_the_service_sees_it(make_home):
    world = make_home()
    assert run(world) == (0, network.REAL_ADDRESS + "\n")
    assert [request.target for request in world.service.requests()] == ["/ip"]


def test_settings_key_by_key(make_home):
    """The override file wins for the keys that it has; the defaults hold for the others."""
    world = make_home(web_host=network.WEB_HOST, ca_file="/nowhere")
    world.home.write("/etc/quorvane/service.conf", "  # only the authority\n ca_file=/etc/quorvane/ca.crt # ours\n")
    assert run(world) == (0, network.REAL_ADDRESS + "\n")
    world.home.write("/etc/quorvane/service.conf", "web_host = other.quorvane.test\n")
    assert run(world) == (0, "203.0.113.40\n")


def test_host_with_a_port(make_home):
    world = make_home()
    world.home.write("/etc/quorvane/service.conf",
                     f"web_host = {network.WEB_HOST}:443\nca_file = /etc/quorvane/ca.crt\n")
    assert run(world) == (0, network.REAL_ADDRESS + "\n")


def test_users_own_settings_do_not_matter(make_home):
    """Neither a proxy nor a .curlrc of the user's turns the question aside."""
    world = make_home()
    world.home.write("/home/joe/.curlrc", "url = https://192.0.2.99/\n", owner="joe")
    proxy = "http://192.0.2.99:1"
    assert run(world, environment={"https_proxy": proxy, "ALL_PROXY": proxy, "CURL_CA_BUNDLE": "/nowhere"}) == \
        (0, network.REAL_ADDRESS + "\n")


def test_authority_is_checked(make_home):
    world = make_home()
    world.home.write("/etc/quorvane/service.conf", f"web_host = {network.WEB_HOST}\n")
    assert run(world) == (0, "203.0.113.40\n")
    assert world.service.requests() == []


def test_service_down(make_home):
    assert run(make_home(serve=False)) == (0, "203.0.113.40\n")


def test_packets_are_swallowed(make_home):
    world = make_home()
    network.swallow("ip daddr 192.0.2.10")
    assert run(world) == (0, "203.0.113.40\n")


def test_name_servers_are_silent(make_home):
    world = make_home()
    network.swallow("udp dport 53")
    assert run(world) == (0, "203.0.113.40\n")


@pytest.mark.parametrize("text", ["client\n", "remote vpn.quorvane.test 1194\n", "remote 203.0.113.400 1194\n",
                                  "remote 203.0.113.4;id 1194\n", "#remote 203.0.113.4 1\n", ""])
def test_nothing_usable(make_home, text):
    world = make_home(serve=False)
    world.home.write(CONFIGURATION, text)
    assert run(world) == (1, "")


def test_no_configuration_file(make_home):
    world = make_home(serve=False)
    assert run(world, configuration="/nowhere") == (1, "")
    assert run(world, configuration="") == (1, "")
    assert run(world, configuration="/var/tmp") == (1, "")
