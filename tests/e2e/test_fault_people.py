"""Several users of one machine; unusual home folders, names and passwords."""

import pytest

from harness.conditions.verifier import Verifier
from harness.drive import client as ui
from harness.observe.outcomes import (
    check_given_up,
    check_hidden,
    check_not_hidden,
    check_session,
    check_shown_not_hidden,
)
from world import network
from world.accounts import ADA, SUE, Account
from world.service import BERLIN

PRINTABLE = "".join(chr(code) for code in range(0x20, 0x7F))


def test_two_users_at_once(world, make_client):
    """Each start and stop ends every tunnel of the machine; no client crashes, both can be used in turn."""
    joe, sue = make_client(world, "joe"), make_client(world, "sue")
    joe.remember_administrator(ADA, location=BERLIN.title, noReconnect=True)
    sue.remember_administrator(SUE, location=BERLIN.title, noReconnect=True)
    joe.start()
    joe.hide()
    check_hidden(joe)

    # Sue's start ends Joe's tunnel, which Joe's window shows.
    sue.start()
    sue.wait_ready()
    sue.wait_no_openvpn()
    check_not_hidden(sue)
    joe.wait_not_hidden()
    check_not_hidden(joe)

    # Sue's tunnel is that of the whole machine: Joe uses it as well, but Joe's window does not show it.
    sue.hide()
    sues = check_hidden(sue)
    assert world.home.public_address("joe") == sues
    check_shown_not_hidden(joe)

    # Joe's attempt ends Sue's tunnel.
    joe.hide()
    check_hidden(joe)
    sue.wait_not_hidden()
    check_shown_not_hidden(sue)
    joe.stop()
    check_not_hidden(joe)
    for client in (joe, sue, joe):
        check_session(client)
    assert joe.running() and sue.running()
    for client in (joe, sue):
        uid = world.home.uid(client.user)[0]
        for name in (ui.PREFERENCES, "Documents/Quorvane/qrvp.ovpn", "Documents/Quorvane/openvpn.log"):
            assert client.file(name).stat().st_uid == uid, name
    assert joe.preferences()["vpnConfigPath"] != sue.preferences()["vpnConfigPath"]
    assert (joe.preferences()["un"], sue.preferences()["un"]) == (
        ui.scrambled(ADA.name),
        ui.scrambled(SUE.name),
    )


@pytest.mark.slow
def test_each_user_runs_one_instance(world, make_client):
    """The lock is per user: a second copy of the same user is refused, one of another user starts."""
    joe, sue = make_client(world, "joe"), make_client(world, "sue")
    joe.remember_administrator(ADA)
    sue.remember_administrator(SUE)
    joe.start()
    joe.wait_ready()
    sue.start()
    sue.wait_ready()
    sue.start(key="second")
    assert sue.wait_alert(key="second")["texts"][0] == "Quorvane is already running."
    sue.dismiss_alert(key="second")
    assert sue.wait_exit(key="second") == 0
    assert joe.running() and sue.running()


def account_with(folder):
    return Account("odd", "Odd Home", "odd-pw", home=folder)


@pytest.mark.parametrize(
    "folder",
    [
        pytest.param("/home/two  blanks and end ", id="blanks", marks=pytest.mark.slow),
        pytest.param('/home/"quoted" $HOME `id` \\n *', id="quotes-and-signs"),
        pytest.param("/home/José Ñandú 家 🙂", id="non-ascii", marks=pytest.mark.slow),
    ],
)
def test_odd_home_folder(make_world, make_client, folder):
    """A path in single quotes reaches the shell unchanged."""
    world = make_world(people=[account_with(folder)])
    client = make_client(world, "odd")
    client.start_ready(ADA, location=BERLIN.title)
    check_session(client)
    assert client.preferences()["vpnConfigPath"] == f"{folder}/Documents/Quorvane/qrvp.ovpn"
    assert client.file("Documents/Quorvane/openvpn.log").stat().st_size > 0
    client.terminate()


RAN = "/var/tmp/ran"
COMMAND = f"x' ; id -u > {RAN} ; '"


def check_refused(world, client, path):
    """The attempt ends with the message box, and root's shell received no line with the path."""
    client.hide()
    check_given_up(client)
    assert f"not started: there is an apostrophe in {path}" in client.output()
    assert not [line for line in world.home.privileged_lines() if "--config" in line]
    assert not world.home.path(RAN).exists()


@pytest.mark.parametrize(
    "folder",
    [
        pytest.param(
            "/home/o'brien", id="one", marks=pytest.mark.slow
        ),  # alone, the shell would only complain
        pytest.param("/home/o'b'rien", id="two", marks=pytest.mark.slow),  # another path would be meant
        pytest.param(f"/home/{COMMAND}", id="command", marks=pytest.mark.slow),  # and this would be run
    ],
)
def test_apostrophe_in_the_home_folder(make_world, make_client, folder):
    """The apostrophe would end the shell's quotes: the attempt fails instead, and nothing is run."""
    world = make_world(people=[account_with(folder)])
    client = make_client(world, "odd")
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    check_refused(world, client, f"{folder}/Documents/Quorvane/")
    assert client.file(
        "Documents/Quorvane/qrvp.ovpn"
    ).exists(), "everything before the start of OpenVPN was done"
    check_refused(world, client, f"{folder}/Documents/Quorvane/")


def test_apostrophe_in_the_name_of_a_chosen_configuration(world, client):
    """A file whose name contains a command: the command is not run, and other configurations work."""
    path = f"{client.folder}/{COMMAND}.ovpn"
    world.home.write(path, "client\n", owner="joe")
    client.remember_administrator(ADA, location=BERLIN.title, useSameIP=True, vpnConfigPath=path)
    client.start()
    check_refused(world, client, path)
    client.request("choose", key="first", query=ui.label("Location choice"), entry="Japan Tokyo")
    check_hidden(client)
    client.stop()
    check_session(client)


ODD_TEXTS = [
    pytest.param(PRINTABLE, id="every-printable-character"),
    pytest.param("  blanks around  ", id="blanks-around", marks=pytest.mark.slow),
    pytest.param("Zoë ‹ß› пароль 密码 🙂", id="non-ascii", marks=pytest.mark.slow),
    pytest.param("long " + "0123456789" * 20, id="long", marks=pytest.mark.slow),
]


@pytest.mark.parametrize("text", ODD_TEXTS)
def test_odd_name_and_password_of_the_administrator(make_world, make_client, text):
    """They are typed into the dialog, stored and passed to sudo unchanged; also by the next run."""
    # A colon ends a field of /etc/passwd, and a comma ends the name in its field.
    boss = Account("boss", text.replace(":", "").replace(",", ""), text, administrator=True)
    world = make_world(people=[boss])
    client = make_client(world)
    client.start()
    client.enter_administrator(boss.full_name, boss.password)
    client.wait_dialog_closed()
    check_hidden(client)
    assert client.stored_pair() == (boss.full_name, boss.password)
    assert boss.password not in client.output()
    client.terminate()
    client.start(key="next")
    check_session(client, key="next")


@pytest.mark.slow
@pytest.mark.parametrize("text", ODD_TEXTS)
def test_odd_vpn_pair(world, client, text):
    """A stored configuration's user name and password reach the server byte for byte."""
    verifier = Verifier(world)
    path = f"{client.folder}/Documents/Quorvane/own.ovpn"
    world.home.write(path, verifier.configuration(), owner="joe", mode=0o600)
    user, password = "u" + text.strip(), text
    client.start_ready(
        ADA, location=BERLIN.title, useSameIP=True, vpnConfigPath=path, vpnUsername=user, vpnPassword=password
    )
    client.hide()
    try:
        assert verifier.wait_pair() == (user, password)
        assert (
            client.file("Documents/Quorvane/.vpnCreds.txt").read_text(encoding="utf-8")
            == f"{user}\n{password}"
        )
        client.wait_alert()
        assert "AUTH_FAILED" in client.openvpn_log()
        client.dismiss_alert()
        check_not_hidden(client)
        assert password not in client.output() and password not in client.openvpn_log()
    finally:
        verifier.close()
    assert world.home.public_address() == network.REAL_ADDRESS
