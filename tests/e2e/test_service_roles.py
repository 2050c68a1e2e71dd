"""One process answers requests, another one lends addresses; they share key files and nothing else."""

import contextlib
import shutil

import pytest

from harness.observe.outcomes import check_hidden, check_not_hidden
from world import service
from world.accounts import ADA

KEYS = ("user.keys", "control.key", "client-authority.pem")


@pytest.fixture(name="gateway")
def fixture_gateway(world):
    """Divides the service: world.service answers requests from now on, and the other one lends addresses."""
    api = world.service
    api.stop()
    shared = world.folder / "shared"
    shared.mkdir()
    for name in KEYS:
        shutil.move(api.runtime / name, shared / name)
    users, control_key, authority = (str(shared / name) for name in KEYS)
    vpn = {**api.vpn_settings, "control_key": control_key, "client_authority": authority}
    gateway = service.Service(api.program, world.folder / "gateway", world.authority, keys=users, vpn=vpn)
    gateway.role, api.role = "gateway", "api"
    api.configure(keys=users, vpn={**vpn, "certificate": "/none", "key": "/none"})
    gateway.configure(tls={"certificate": "/none", "key": "/none"})
    with contextlib.ExitStack() as ends:
        ends.callback(lambda: gateway.end())  # pylint: disable=unnecessary-lambda
        gateway.start()
        api.start()
        yield gateway
        assert gateway.end() == 0


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
