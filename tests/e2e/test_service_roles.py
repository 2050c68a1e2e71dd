"""One process answers requests, another one lends addresses; they share key files and nothing else."""

import pytest

from harness.conditions import roles
from harness.observe.outcomes import check_hidden, check_not_hidden
from world.accounts import ADA


@pytest.fixture(name="gateway")
def fixture_gateway(world):
    """The process that lends addresses; world.service is the one that answers requests."""
    with roles.divided(world) as gateway:
        yield gateway


def test_session(world, client, gateway):
    client.start_hidden(ADA)
    address = check_hidden(client)
    assert list(gateway.lent().values()) == [address]
    assert world.service.control("status")["servers"] == {}
    assert gateway.control("status")["servers"]["tcp"]["clients"] == 1
    assert not gateway.request_log.exists()
    client.stop()
    check_not_hidden(client)


def test_api_is_killed_during_a_session(world, client, gateway):
    """The session goes on, and a configuration of before is good for a login."""
    client.start_hidden(ADA)
    address = check_hidden(client)
    world.service.process.kill()
    world.service.process.wait()
    assert gateway.control("status")["servers"]["tcp"]["clients"] == 1
    (world.service.runtime / "listening").unlink()
    world.service.start()
    assert check_hidden(client) == address
    client.stop()
    client.hide()
    client.wait_hidden()
    check_hidden(client)
    assert len(world.service.requests_of("MRTSL")) == 1, "the API knows the user of the list of before"


def test_gateway_is_killed_during_a_session(world, client, gateway):
    """Its grants are known when it is back: the same OpenVPN connects anew, without another request."""
    client.start_hidden(ADA)
    address = check_hidden(client)
    before = client.openvpn()
    gateway.process.kill()
    gateway.process.wait()
    gateway.start()
    world.home.wait_for(lambda: list(gateway.lent().values()) == [address], "the address is lent again")
    assert check_hidden(client) == address
    assert client.openvpn() == before
    assert len(world.service.requests_of("VPNC")) == 1


def test_roles_with_keys_of_their_own_are_refused(world):
    """Keys that a process makes for itself would be of no use to the other."""
    world.service.stop()
    for role in ("api", "gateway"):
        world.service.role = role
        with pytest.raises(RuntimeError, match="ended with 2"):
            world.service.start()
        assert "keys: is missing; the other roles need the same file" in world.service.output.read_text()
    world.service.role = "all"
    world.service.start()
