"""Failures outside of the client: credentials, configuration, service and network."""

import re

from harness.conditions import service_api
from harness.drive import client as ui
from harness.observe import outcomes
from world import network
from world.accounts import ADA
from world.service import BERLIN


def failed_tries(client):
    """The number that the client has logged for each failed try, in order."""
    return re.findall(r"rndLocationCounter= (\d+)$", client.output(), re.MULTILINE)


def hide_with_wrong_password(world, client, **preferences):
    """Starts a session with a stored configuration and a wrong VPN password."""
    user, _password = service_api.credentials(world.home)
    answer = service_api.get(world.home, service_api.configuration_target(user, BERLIN.addresses[0]))
    path = f"{client.folder}/Documents/Quorvane/qrvp.ovpn"
    world.home.write(path, service_api.configuration_of(answer), owner="joe", mode=0o600)
    client.remember_administrator(
        ADA, useSameIP=True, vpnConfigPath=path, vpnUsername=user, vpnPassword="wrong", **preferences
    )
    client.start()
    client.hide()


def test_wrong_vpn_credentials(world, client):
    """AUTH_FAILED in OpenVPN's log, then the message box."""
    hide_with_wrong_password(world, client, location=BERLIN.title)
    world.home.wait_for(lambda: "AUTH_FAILED" in client.openvpn_log(), "the refusal in OpenVPN's log")
    assert world.service.lent() == {}
    outcomes.check_given_up(client)
    assert world.service.lent() == {}
    assert len(world.service.requests_of("VPNC")) == 1, "only the one of this test"
    assert failed_tries(client) == ["0"], "a fixed location is tried once"


def test_without_a_location_there_are_four_tries(world, client):
    """The message box comes after the last one only."""
    hide_with_wrong_password(world, client)
    outcomes.check_given_up(client)
    assert failed_tries(client) == ["0", "1", "2", "3"]
    assert world.service.lent() == {}


def test_configuration_is_refused(world, client):
    """The service has new keys, so it refuses the user of the server list: no tunnel, and the message box."""
    client.start_ready(ADA, location=BERLIN.title)
    world.service.stop()
    world.service.remove_user_keys()
    world.service.start()
    client.hide()
    outcomes.check_given_up(client)
    assert world.service.lent() == {}
    assert len(world.service.requests_of("VPNC")) == 1
    assert client.openvpn_log() == ""


def test_service_restarts_before_the_press(world, client):
    """It still knows the user of the server list."""
    client.start_ready(ADA, location=BERLIN.title)
    world.service.stop()
    world.service.start()
    client.hide()
    client.wait_hidden()
    assert len(world.service.requests_of("MRTSL")) == 1
    assert list(world.service.lent().values()) == [client.current_address()]


def test_service_goes_away_before_the_press(world, client):
    client.start_ready(ADA, location=BERLIN.title)
    world.service.stop()
    client.hide()
    outcomes.accept_alert(client, outcomes.NOT_AVAILABLE)
    client.wait_not_hidden()
    assert client.openvpn() == []


def test_network_is_gone_at_the_press(world, client):
    client.start_ready(ADA)
    with client.noticed_loss(world.network.unplugged_cable()):
        client.press(ui.HIDE)
        outcomes.accept_alert(client, outcomes.NO_INTERNET)
        assert not client.button_state()["checked"]
        assert client.text("Status line") == ui.NOT_HIDING
    assert world.service.requests_of("VPNC") == []
    client.hide()
    client.wait_hidden()


def test_no_network_at_the_start(world, client):
    """Without a network no request is sent; then the client requests the server list by itself."""
    client.remember_administrator(ADA)
    world.network.cut_home()
    client.start()
    client.wait(ui.HIDE, showing=True)
    client.wait_output("inet NO", "the client notices that there is no network")
    assert not client.button_state()["enabled"]
    assert world.service.requests() == []
    world.network.reconnect_home()
    client.wait_ready()
    assert len(world.service.requests_of("MRTSL")) == 1
    assert client.current_address() == network.REAL_ADDRESS


def test_service_down_at_the_start(make_world, make_client):
    world = make_world(serve=False)
    client = make_client(world)
    client.remember_administrator(ADA)
    client.start()
    outcomes.accept_alert(client, outcomes.NO_SERVICE)
    assert client.current_address() == "0.0.0.0"
    assert not client.button_state()["enabled"], "the controls are not changed"
    assert client.text("Status line") == ui.NOT_HIDING
    assert client.alerts() == []
