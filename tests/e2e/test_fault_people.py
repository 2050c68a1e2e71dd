"""Several people at one machine; homes, names and passwords that are anything but plain."""

import signal

import pytest

from harness.conditions.verifier import Verifier
from harness.drive import client as ui
from harness.observe.outcomes import check_given_up, check_hidden, check_not_hidden, check_session
from world import network
from world.accounts import ADA, SUE, Account
from world.service import BERLIN

PRINTABLE = "".join(chr(code) for code in range(0x20, 0x7F))


def shown(client):
    return client.text("Status line"), client.text("State picture"), client.current_address()


def test_two_users_at_once(world, make_client):
    """Each start and stop ends every tunnel of the machine; nobody crashes, and both can go on in turn."""
    joe, sue = make_client(world, "joe"), make_client(world, "sue")
    joe.remember_administrator(ADA, location=BERLIN.title)
    sue.remember_administrator(SUE, location=BERLIN.title)
    joe.start()
    joe.hide()
    check_hidden(joe)
    joes = shown(joe)

    # Sue's start ends Joe's tunnel. His window is not told; hers is right.
    sue.start()
    sue.wait_ready()
    sue.wait_no_openvpn()
    check_not_hidden(sue)
    assert shown(joe) == joes and joe.alerts() == []

    # Sue's tunnel is the machine's: Joe goes through it as well, whatever his window says.
    sue.hide()
    sues = check_hidden(sue)
    assert world.home.public_address("joe") == sues
    assert shown(joe) == joes

    # Joe's stop ends hers.
    joe.stop()
    check_not_hidden(joe)
    assert sue.text("State picture") == "IP hidden" and sue.alerts() == []
    sue.stop()
    check_not_hidden(sue)
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
def test_two_users_run_the_client_each_in_his_own_instance(world, make_client):
    """The lock is each user's own: a second copy of the same user's is refused, another user's starts."""
    joe, sue = make_client(world, "joe"), make_client(world, "sue")
    joe.remember_administrator(ADA)
    sue.remember_administrator(SUE)
    joe.start()
    joe.wait_ready()
    sue.start()
    sue.wait_ready()
    sue.start(key="second")
    assert sue.wait_alert(10, key="second")["texts"][0] == "Quorvane is already running."
    sue.dismiss_alert(key="second")
    assert sue.wait_exit(key="second") == 0
    assert joe.running() and sue.running()


def at(folder):
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
    """A path between single quotes is taken as it is."""
    world = make_world(people=[at(folder)])
    client = make_client(world, "odd")
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    check_session(client)
    assert client.preferences()["vpnConfigPath"] == f"{folder}/Documents/Quorvane/qrvp.ovpn"
    assert client.file("Documents/Quorvane/openvpn.log").stat().st_size > 0
    client.signal(signal.SIGTERM)
    assert client.wait_exit() == 0


RAN = "/var/tmp/ran"
COMMAND = f"x' ; id -u > {RAN} ; '"


def check_refused(world, client, path):
    """The attempt ends in the alert and no line with the path went to root's shell."""
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
    """The shell would end the quotes there: the attempt fails instead, and nothing of the path runs."""
    world = make_world(people=[at(folder)])
    client = make_client(world, "odd")
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    check_refused(world, client, f"{folder}/Documents/Quorvane/")
    assert client.file("Documents/Quorvane/qrvp.ovpn").exists(), "all but the launch went its way"
    check_refused(world, client, f"{folder}/Documents/Quorvane/")


def test_apostrophe_in_the_name_of_a_chosen_configuration(world, client):
    """A file that somebody sent, under a name that is a command: it does not run, and other files do."""
    path = f"{client.folder}/{COMMAND}.ovpn"
    world.home.write(path, "client\n", owner="joe")
    client.remember_administrator(ADA, location=BERLIN.title, useSameIP=True, vpnConfigPath=path)
    client.start()
    check_refused(world, client, path)
    client.ask("choose", key="first", query=ui.label("Location choice"), entry="Japan Tokyo", timeout=10)
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
    """Typed into the dialog, stored, and given to sudo as they are; also by the next run."""
    # A colon ends the field of the account's file, and a comma the name within it.
    boss = Account("boss", text.replace(":", "").replace(",", ""), text, administrator=True)
    world = make_world(people=[boss])
    client = make_client(world)
    client.start()
    client.enter_administrator(boss.full_name, boss.password)
    client.wait_dialog_closed()
    check_hidden(client)
    assert client.stored_pair() == (boss.full_name, boss.password)
    assert boss.password not in client.output()
    client.signal(signal.SIGTERM)
    assert client.wait_exit() == 0
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
    client.remember_administrator(
        ADA, location=BERLIN.title, useSameIP=True, vpnConfigPath=path, vpnUsername=user, vpnPassword=password
    )
    client.start()
    client.hide()
    try:
        assert verifier.wait_pair() == (user, password)
        assert (
            client.file("Documents/Quorvane/.vpnCreds.txt").read_text(encoding="utf-8")
            == f"{user}\n{password}"
        )
        client.wait_alert(ui.FAILURE)
        assert "AUTH_FAILED" in client.openvpn_log()
        client.dismiss_alert()
        check_not_hidden(client)
        assert password not in client.output() and password not in client.openvpn_log()
    finally:
        verifier.close()
    assert world.home.public_address() == network.REAL_ADDRESS
