"""What can go wrong outside of the client."""

from harness.drive import client as ui
from harness.observe import outcomes
from world import network
from world.accounts import ADA
from world.service import BERLIN


def ask_as_a_script(world, target):
    return world.home.run(
        "curl",
        "-q",
        "-fsS",
        "--cacert",
        "/etc/quorvane/ca.crt",
        f"https://{network.API_HOST}{target}",
        user="joe",
    ).stdout


def test_wrong_vpn_credentials(world, client):
    """A stored configuration whose password the service does not know: AUTH_FAILED, then the alert."""
    answer = ask_as_a_script(world, "/?cmd=MRTSL&ver=1&device=1&systamp=MacOS,user,mobilebox&uniqueid=x")
    user = dict(line.split(":", 1) for line in answer.split("<br />") if ":" in line)["VPNUser"].strip()
    answer = ask_as_a_script(
        world,
        f"/?cmd=VPNC&ver=1&device=1&server=571&desiredip={BERLIN.addresses[0]}"
        f"&sessid={user}&&systamp=MacOS,user,mobilebox&uniqueid=x&proto=UDP",
    )
    path = f"{client.folder}/Documents/Quorvane/qrvp.ovpn"
    world.home.write(
        path, answer.partition("VPNConfig: ")[2].replace("<br />", "\n"), owner="joe", mode=0o600
    )
    client.remember_administrator(
        ADA, location=BERLIN.title, useSameIP=True, vpnConfigPath=path, vpnUsername=user, vpnPassword="wrong"
    )
    asked = len(world.service.requests_of("VPNC"))
    client.start()
    client.hide()
    world.home.wait_for(
        lambda: "AUTH_FAILED" in client.openvpn_log(), ui.SESSION, "the refusal in OpenVPN's log"
    )
    assert world.service.lent() == {}
    outcomes.check_given_up(client)
    assert world.service.lent() == {}
    assert len(world.service.requests_of("VPNC")) == asked, "the stored configuration was used"


def test_configuration_is_refused(world, client):
    """The service has forgotten the user since the server list: no tunnel, the alert at once."""
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    client.wait_ready()
    world.service.stop()
    world.service.start()
    client.hide()
    outcomes.check_given_up(client)
    assert world.service.lent() == {}
    assert len(world.service.requests_of("VPNC")) == 1
    assert client.openvpn_log() == ""


def test_service_goes_away_before_the_press(world, client):
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    client.wait_ready()
    world.service.stop()
    client.hide()
    alert = client.wait_alert(ui.FAILURE)
    assert alert["texts"] == outcomes.NOT_AVAILABLE["texts"]
    client.dismiss_alert()
    client.wait_not_hidden()
    assert client.openvpn() == []


def test_network_is_gone_at_the_press(world, client):
    client.remember_administrator(ADA)
    client.start()
    client.wait_ready()
    world.network.cut_home()
    world.home.wait_for(lambda: "inet NO" in client.output(), 10, "the client notices")
    client.press(ui.HIDE)
    alert = client.wait_alert(10)
    assert alert["title"] == "Quorvane" and alert["buttons"] == ["OK"]
    assert alert["texts"] == ["No Internet connection detected, please check your Internet settings."]
    client.dismiss_alert()
    assert client.alerts() == []
    assert not client.button_state()["checked"]
    assert client.text("Status line") == ui.NOT_HIDING
    world.network.reconnect_home()
    world.home.wait_for(
        lambda: client.output().count("inet YES") >= 2, 10, "the client notices the cable again"
    )
    assert world.service.requests_of("VPNC") == []
    client.hide()
    client.wait_hidden()


def test_no_network_at_the_start(world, client):
    """Nothing is asked until there is a network; then the server list, by itself."""
    client.remember_administrator(ADA)
    world.network.cut_home()
    client.start()
    client.wait(ui.HIDE, ui.ANSWER, showing=True)
    world.home.wait_for(lambda: "inet NO" in client.output(), 10, "the client notices")
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
    alert = client.wait_alert(ui.ANSWER)
    assert alert["title"] == "Error" and alert["buttons"] == ["OK"]
    assert alert["texts"] == [
        "There was a problem connecting to the Quorvane server, please check your Internet connection or firewall "
        "settings."
    ]
    assert client.current_address() == "0.0.0.0"
    client.dismiss_alert()
    client.wait({"role": "alert"}, 10, absent=True)
    assert not client.button_state()["enabled"], "controls stay as they are"
    assert client.text("Status line") == ui.NOT_HIDING
    assert client.alerts() == []
