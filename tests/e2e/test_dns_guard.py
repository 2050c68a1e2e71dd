"""The check of the name servers, at the start and after the dialog."""

import re

from harness.conditions.resolvers import NetworkManager
from harness.drive import client as ui
from harness.drive import settings
from world.accounts import ADA
from world.service import BERLIN

RIGHT, WRONG = "8.8.8.8 8.8.4.4", "8.8.8.8"
SET_LINES = [
    f"networksetup -setdnsservers {service} 8.8.8.8 8.8.4.4" for service in ("Ethernet", "Wi-Fi", "AirPort")
]


def set_lines(world):
    """The commands that set name servers, in the order in which root ran them."""
    found = []
    for line in world.home.privileged_lines():
        found += re.findall(r"networksetup -setdnsservers \S+ [0-9.]+ [0-9.]+", line)
    return found


def test_wrong_on_the_wireless_service(world, client):
    """After a valid pair the servers of all three services are set, and no session starts."""
    manager = NetworkManager(world.home, wired=RIGHT, wireless=WRONG)
    client.start()
    client.wait_dialog()
    assert set_lines(world) == []
    client.enter_administrator(ADA.name, ADA.password)
    client.wait_dialog_closed()
    client.wait_ready()
    assert set_lines(world)[:3] == SET_LINES
    # The check that opened the dialog then sets them once more itself.
    world.home.wait_for(lambda: len(set_lines(world)) >= 6, "the check has set the servers")
    assert set_lines(world) == SET_LINES * 2
    assert manager.servers("Ethernet") == RIGHT and manager.servers("Wi-Fi") == RIGHT
    assert manager.changes()[0].startswith("modify Ethernet") and "modify Wi-Fi" in manager.changes()[2]

    assert world.service.requests_of("VPNC") == []
    assert client.openvpn() == []
    assert client.text("Status line") == ui.NOT_HIDING
    client.hide()
    client.wait_hidden()
    assert len(world.service.requests_of("VPNC")) == 1


def test_wrong_with_a_stored_pair(world, client):
    """The servers are set without a dialog, and no session starts."""
    manager = NetworkManager(world.home, wired=WRONG, wireless=RIGHT)
    client.remember_administrator(ADA)
    client.start()
    world.home.wait_for(lambda: len(set_lines(world)) >= 3, "the servers of three services are set")
    assert set_lines(world) == SET_LINES
    assert manager.servers("Ethernet") == RIGHT
    client.wait_ready()
    assert not client.dialog_open()
    assert world.service.requests_of("VPNC") == []


OF_THE_HOME = "192.168.77.1"
BOX = "Put back my name servers when I stop hiding"


def restored_lines(world):
    lines = world.home.privileged_lines()
    return [line for line in lines if "-setdnsservers" in line and "8.8.8.8" not in line]


def test_put_back_after_each_session(world, client):
    """Switched on in the settings: they are set for a session only, and back after its stop."""
    manager = NetworkManager(world.home, wired="", wireless=OF_THE_HOME)
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    world.home.wait_for(lambda: len(set_lines(world)) >= 3, "the servers of three services are set")
    client.wait_ready()
    settings.open_window(client)
    settings.switch(client, BOX, to=True)
    settings.close_window(client, "OK")
    for _session in range(2):
        client.hide()
        client.wait_hidden()
        assert (manager.servers("Ethernet"), manager.servers("Wi-Fi")) == (RIGHT, RIGHT)
        client.stop()
        world.home.wait_for(
            lambda: (manager.servers("Ethernet"), manager.servers("Wi-Fi")) == ("", OF_THE_HOME),
            "the servers of before are back",
        )
    assert manager.changes().count("modify Ethernet ipv4.dns= ignore-auto=no") == 2, "automatic again, twice"


def test_put_back_after_a_crash(world, client):
    """The client and OpenVPN are killed while hidden; the next start puts the servers back."""
    manager = NetworkManager(world.home, wired=OF_THE_HOME, wireless=OF_THE_HOME)
    client.start_hidden(ADA, location=BERLIN.title, restoreDns=True)
    assert manager.servers("Wi-Fi") == RIGHT
    client.kill()
    assert manager.servers("Wi-Fi") == RIGHT
    client.start()
    world.home.wait_for(
        lambda: (manager.servers("Ethernet"), manager.servers("Wi-Fi")) == (OF_THE_HOME, OF_THE_HOME),
        "the servers of before are back",
    )
    client.wait_no_openvpn()
    assert client.text("Status line") == ui.NOT_HIDING
    world.home.wait_for(lambda: "dnsBefore" not in client.preferences(), "nothing is left to put back")
    assert (len(set_lines(world)), len(restored_lines(world))) == (3, 3)


def test_put_back_by_the_button(world, client):
    """Without the setting, nothing is put back until the button is pressed."""
    manager = NetworkManager(world.home, wired=OF_THE_HOME, wireless=OF_THE_HOME)
    client.start_hidden(ADA, location=BERLIN.title)
    client.stop()
    assert restored_lines(world) == [] and manager.servers("Wi-Fi") == RIGHT
    settings.open_window(client)
    button = ui.button("Put back my name servers now", settings.TITLE)
    client.wait(button, showing=True, enabled=True)
    client.press(button)
    client.wait(button, enabled=False)
    assert (manager.servers("Ethernet"), manager.servers("Wi-Fi")) == (OF_THE_HOME, OF_THE_HOME)
    assert len(restored_lines(world)) == 3 and "restoreDns" not in client.preferences()


def test_right_on_both(world, client):
    """With the right servers nothing is set, and the session starts after the dialog."""
    manager = NetworkManager(world.home, wired=RIGHT, wireless="8.8.4.4 8.8.8.8 9.9.9.9")
    client.start()
    client.enter_administrator(ADA.name, ADA.password)
    client.wait_dialog_closed()
    client.wait_hidden()
    assert set_lines(world) == []
    assert manager.changes() == []


def test_wrong_in_resolv_conf(make_world, make_client):
    """Without a resolver service the file itself is changed."""
    world = make_world(name_servers="nameserver 8.8.4.4\n")
    client = make_client(world)
    client.remember_administrator(ADA)
    client.start()
    file = world.home.path("/etc/resolv.conf")
    world.home.wait_for(
        lambda: file.read_text(encoding="utf-8").startswith("nameserver 8.8.8.8\nnameserver 8.8.4.4\n"),
        "both servers in the file",
    )
    world.home.wait_for(lambda: len(set_lines(world)) >= 3, "the servers of three services are set")
    assert set_lines(world) == SET_LINES
