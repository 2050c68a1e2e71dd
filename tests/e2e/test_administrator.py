"""The administrator's name and password: the dialog, wrong pairs, accounts of other users."""

import pytest

from harness.drive import client as ui
from world.accounts import ADA, JOE, NORM, SUE

WRONG = {"title": "Quorvane", "texts": ["You input wrong user name or password."], "buttons": ["OK"]}


def check_refused(client, name, password):
    """Enters a pair that is refused; checks the message box and that the dialog is still open."""
    client.enter_administrator(name, password)
    alert = client.wait_alert()
    assert alert == WRONG
    client.dismiss_alert()
    client.wait({"role": "alert"}, absent=True)
    assert client.dialog_open()
    assert client.stored_pair() == (name, password), "the pair is stored before it is tested"


def check_no_session(world, client):
    assert world.service.requests_of("VPNC") == []
    assert client.openvpn() == []
    assert world.home.privileged_lines() == []


def test_wrong_password_then_the_right_one(world, client):
    client.start()
    check_refused(client, ADA.name, "not " + ADA.password)
    check_no_session(world, client)
    client.enter_administrator(ADA.name, ADA.password)
    client.wait_dialog_closed()
    client.wait_hidden()
    assert client.stored_pair() == (ADA.name, ADA.password)
    address = world.service.requests_of("VPNC")[0].parameter("desiredip")
    assert world.home.public_address() == address


def asked(question):
    """The message box for a question that is not the one for the password."""
    return {
        "title": "Quorvane",
        "texts": [
            f'The administrator\'s account asks for more than its password: "{question}"',
            "Quorvane can answer the question for the password only. The password was not used for any other "
            "question.",
        ],
        "buttons": ["OK"],
    }


def check_asked(client, account, question):
    client.enter_administrator(account.name, account.password)
    assert client.wait_alert() == asked(question)
    client.dismiss_alert()
    client.wait({"role": "alert"}, absent=True)
    assert client.dialog_open()


@pytest.mark.parametrize("user", [JOE.name, ADA.name], ids=["su-and-sudo", "sudo"])
def test_expired_password(world, make_client, user):
    """The password is right and must be changed: it is not given to any question about the new one."""
    world.home.run("chage", "-d", "0", ADA.name)
    client = make_client(world, user)
    client.start()
    check_asked(client, ADA, "Current password:")
    check_no_session(world, client)
    world.home.run("chage", "-d", "-1", ADA.name)
    client.enter_administrator(ADA.name, ADA.password)
    client.wait_dialog_closed()
    client.wait_hidden()


@pytest.mark.parametrize("user", [JOE.name, ADA.name], ids=["su-and-sudo", "sudo"])
def test_second_factor(world, make_client, user):
    """A question before the password, and one after it, whose words end like a prompt for a password."""
    rules = world.home.path("/etc/pam.d/common-auth")
    usual = rules.read_text(encoding="utf-8")
    client = make_client(world, user)
    rules.write_text("auth required pam_ftp.so\n" + usual, encoding="utf-8")
    client.start()
    check_asked(client, ADA, f"Password required for {ADA.name}.")
    rules.write_text(usual + "auth required pam_stress.so\n", encoding="utf-8")
    check_asked(client, ADA, "STRESS Password:")
    check_no_session(world, client)
    rules.write_text(usual, encoding="utf-8")
    client.enter_administrator(ADA.name, ADA.password)
    client.wait_dialog_closed()
    client.wait_hidden()


def test_unknown_name(world, client):
    client.start()
    check_refused(client, "no-such-account", "whatever")
    check_no_session(world, client)


def test_other_user_without_administrator_rights(world, client):
    client.start()
    check_refused(client, NORM.name, NORM.password)
    check_no_session(world, client)


def test_own_account_without_administrator_rights(world, client):
    client.start()
    check_refused(client, JOE.full_name, JOE.password)
    check_no_session(world, client)


@pytest.mark.parametrize(
    "user, entered, account",
    [
        (JOE.name, ADA.full_name, ADA),
        (NORM.name, SUE.name, SUE),
        (SUE.name, SUE.full_name, SUE),
    ],
    ids=["other-by-full-name", "other-by-login", "self-by-full-name"],
)
def test_administrators_that_are_accepted(world, make_client, user, entered, account):
    client = make_client(world, user)
    client.start()
    client.enter_administrator(entered, account.password)
    client.wait_dialog_closed()
    client.wait_hidden()
    assert client.stored_pair() == (entered, account.password)
    tunnel = client.openvpn()
    assert len(tunnel) == 1 and tunnel[0].uid == 0
    assert client.current_address() in world.service.lent().values()


def test_empty_fields_do_nothing(world, client):
    client.start()
    client.enter_administrator("", "")
    client.enter_administrator(ADA.name, "")
    assert client.alerts() == []
    assert client.dialog_open()
    check_no_session(world, client)
    assert not client.file(ui.PREFERENCES).exists() or "un" not in client.preferences()


def test_cancel_leaves_the_client_running(world, client):
    client.start()
    client.wait_dialog()
    client.press(ui.button("Cancel", ui.DIALOG))
    client.wait_dialog_closed()
    assert client.running()
    check_no_session(world, client)


def test_stored_pair_that_is_no_longer_valid(world, client):
    """The password was changed since then: the dialog opens instead of a session."""
    client.remember_administrator(ADA)
    world.home.run("chpasswd", input=f"{ADA.name}:changed\n")
    client.start()
    client.wait_dialog()
    check_no_session(world, client)
    client.enter_administrator(ADA.name, "changed")
    client.wait_dialog_closed()
    client.wait_hidden()
    assert client.stored_pair() == (ADA.name, "changed")
