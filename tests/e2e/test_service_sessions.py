"""Sessions of which the service decides: their users expire or are revoked, or the service drains."""

from harness.conditions import service_api
from harness.observe import outcomes
from harness.observe.outcomes import check_hidden, check_not_hidden
from world.accounts import ADA


def test_session_outlives_its_user(make_world, make_client):
    """The keys are renewed with the certificate and the user of the login when the user has expired."""
    world = make_world(credential_seconds=40, vpn_settings={"renegotiation_seconds": 50})
    client = make_client(world)
    client.start_hidden(ADA)
    address = check_hidden(client)
    log = world.service.runtime / "tcp.log"
    # The server begins the renewal when 90 to 100 % of the time have passed.
    world.home.wait_for(
        lambda: log.read_text(encoding="utf-8").count("Control Channel: TLSv1.3") == 2, "the keys are renewed"
    )
    user = world.service.requests_of("VPNC")[0].parameter("sessid")
    answer = service_api.get(world.home, service_api.configuration_target(user, address))
    assert "Unknown or expired session" in answer
    assert check_hidden(client) == address
    assert len(world.service.requests_of("MRTSL")) == 1


def test_revoked_user_is_not_hidden_any_more(world, client):
    """The client notices the end of its session, and says so."""
    client.start_hidden(ADA, noReconnect=True)
    user = world.service.requests_of("VPNC")[0].parameter("sessid")
    assert world.service.control("revoke", user=user) == {"ok": True, "ended": 1}
    client.wait_not_hidden()
    check_not_hidden(client)
    assert world.service.lent() == {}


def test_drained_service_keeps_its_sessions(world, client):
    client.start_hidden(ADA)
    address = check_hidden(client)
    assert world.service.control("drain") == {"ok": True}
    assert check_hidden(client) == address
    client.stop()
    client.hide()
    outcomes.accept_alert(client, outcomes.NOT_AVAILABLE)
    client.wait_not_hidden()
    assert world.service.lent() == {}
