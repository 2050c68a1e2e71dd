"""Preferences that are broken, foreign or no file: the client starts, logs it and loses nothing."""

import datetime
import plistlib

import pytest

from harness.drive import client as ui
from harness.drive import settings
from harness.observe.outcomes import check_hidden, check_not_hidden, check_session
from world.accounts import ADA
from world.service import BERLIN

FOLDER = "Library/Preferences"
PAIR = {"un": ui.scrambled(ADA.name), "up": ui.scrambled(ADA.password)}
USUAL = plistlib.dumps({**PAIR, "location": BERLIN.title, "changeIpInterval": 33, "userAgent": "mine"})


def put(client, content, *, owner=None, mode=0o600):
    client.home.write(f"{client.folder}/{ui.PREFERENCES}", content, owner=client.user)
    if owner:
        client.home.run("chown", owner, f"{client.folder}/{ui.PREFERENCES}")
    client.file(ui.PREFERENCES).chmod(mode)


def check_start_without_settings(client):
    """Nothing is stored: the dialog opens, as at the first start."""
    client.start()
    client.wait_dialog()
    assert client.alerts() == []


def check_first_session(client):
    """After the dialog a session starts; then another one works."""
    client.enter_administrator(ADA.name, ADA.password)
    client.wait_dialog_closed()
    check_hidden(client)
    client.stop()
    check_session(client)


def set_aside(client):
    return list(client.file(FOLDER).glob("*.corrupt-*"))


def nested(depth):
    return (
        b'<?xml version="1.0"?><plist version="1.0"><dict><key>a</key>'
        + b"<array>" * depth
        + b"</array>" * depth
        + b"</dict></plist>"
    )


@pytest.mark.parametrize(
    "content",
    [
        pytest.param(b"what is this\n", id="garbage"),
        pytest.param(USUAL[: len(USUAL) // 2], id="truncated", marks=pytest.mark.slow),
        pytest.param(b"", id="empty", marks=pytest.mark.slow),
        pytest.param(b"bplist00" + bytes(range(256)) * 64, id="binary-junk", marks=pytest.mark.slow),
        pytest.param(b"<plist>" + b"x" * 50_000_000, id="fifty-megabytes", marks=pytest.mark.slow),
        pytest.param(nested(100_000), id="deep-nesting", marks=pytest.mark.slow),
        pytest.param(plistlib.dumps(["a", "list"]), id="no-dictionary", marks=pytest.mark.slow),
    ],
)
def test_file_that_is_no_property_list(client, content):
    """It is kept unchanged beside the new one; the log names it; the client starts as for the first time."""
    put(client, content)
    check_start_without_settings(client)
    kept = set_aside(client)
    assert [path.read_bytes() for path in kept] == [content]
    assert (
        f"was not a property list; it is kept as {client.folder}/{FOLDER}/{kept[0].name}" in client.output()
    )
    check_first_session(client)
    assert client.preferences()["vpnUsername"]
    assert client.file(ui.PREFERENCES).stat().st_mode & 0o777 == 0o600
    client.terminate()
    assert [path.read_bytes() for path in set_aside(client)] == [content]


# Every key that the client reads, beside the administrator's pair. "useSameIP" has a separate test.
KEYS = (
    "vpnUsername",
    "vpnPassword",
    "vpnConfigPath",
    "showLogs",
    "countryCode",
    "location",
    "lastIP",
    "changeIpInterval",
    "changeIpEvery",
    "hide",
    "quorvane",
    "tcpUdp",
    "requireUS",
    "ipNonRepeat",
    "discardedIPs",
    "hideIpHotKey",
    "changeIpHotKey",
    "stopHideIpHotKey",
    "discardIpHotKey",
    "bringUpWindowHotKey",
    "userAgent",
    "modeUserAgent",
    "hideMyReferrerHeader",
    "hideMyCookiesHeaders",
    "cookieSites",
)


@pytest.mark.parametrize(
    "value, means_yes",
    [
        pytest.param({"a": [1, {"b": 2}]}, False, id="dictionary"),
        pytest.param([1, "two"], False, id="list", marks=pytest.mark.slow),
        pytest.param(b"\xff\xfe\0\1", False, id="bytes", marks=pytest.mark.slow),
        pytest.param(datetime.datetime(2001, 1, 1), False, id="date", marks=pytest.mark.slow),
        pytest.param(2**63 - 1, True, id="greatest-number", marks=pytest.mark.slow),
        pytest.param(-(2**63), True, id="least-number", marks=pytest.mark.slow),
        pytest.param(float("nan"), True, id="no-number", marks=pytest.mark.slow),
        pytest.param("x" * 100_000, False, id="long-text", marks=pytest.mark.slow),
        pytest.param("\U0001f600 %s %n '\"; \\ \n", False, id="odd-text", marks=pytest.mark.slow),
    ],
)
def test_every_key_of_a_wrong_type(client, value, means_yes):
    """No value of another type prevents a session; a true value of "hide" starts one by itself."""
    client.seed_preferences(**PAIR, **dict.fromkeys(KEYS, value))
    client.start()
    if means_yes:
        check_hidden(client)
        client.stop()
    check_session(client)
    settings.open_window(client)
    settings.open_pane(client, "Hot Keys")
    settings.close_window(client, "OK")
    client.wait_ready()
    assert client.alerts() == []
    client.terminate()
    assert client.preferences()["vpnUsername"]


@pytest.mark.parametrize(
    "pair",
    [
        pytest.param({"un": 7, "up": 7}, id="numbers", marks=pytest.mark.slow),
        pytest.param({"un": ["x"], "up": {"y": 1}}, id="list-and-dictionary", marks=pytest.mark.slow),
        pytest.param({"un": "x", "up": ""}, id="too-short", marks=pytest.mark.slow),
        pytest.param({"un": b"\xff\xfe\x51\x53odd", "up": b"\0\1\2"}, id="bytes", marks=pytest.mark.slow),
    ],
)
def test_stored_administrator_of_a_wrong_type(client, pair):
    """The dialog opens again, and its result replaces the stored values."""
    client.seed_preferences(**pair, location=BERLIN.title)
    check_start_without_settings(client)
    check_first_session(client)
    assert isinstance(client.preferences()["un"], (str, bytes)) and client.preferences()["un"] != pair["un"]


@pytest.mark.parametrize(
    "path",
    [
        pytest.param("/no/such/file", id="missing"),
        pytest.param("", id="empty", marks=pytest.mark.slow),
        pytest.param(5, id="number", marks=pytest.mark.slow),
        pytest.param(["a"], id="list", marks=pytest.mark.slow),
    ],
)
def test_same_address_wanted_but_no_configuration(world, client, path):
    """The attempt shows a notice and can be stopped; choosing a location fetches a new configuration."""
    client.start_ready(ADA, location=BERLIN.title, useSameIP=True, vpnConfigPath=path)
    client.hide()
    client.wait(
        ui.label("Notice"),
        showing=True,
        name="There is no VPN configuration to connect with. Choose a location to get a new one.",
    )
    assert client.text("Status line") == ui.SEARCHING
    client.stop()
    check_not_hidden(client)
    assert not client.shows("Notice") and client.openvpn() == []
    assert world.service.requests_of("VPNC") == []
    client.hide()
    client.wait(ui.label("Notice"), showing=True)
    client.request("choose", key="first", query=ui.label("Location choice"), entry=BERLIN.title)
    check_hidden(client)
    assert not client.shows("Notice")


@pytest.mark.parametrize(
    "mode", [pytest.param(0o600, id="600", marks=pytest.mark.slow), pytest.param(0o644, id="644")]
)
def test_file_owned_by_root(world, client, mode):
    """600: it is not changed, settings are in memory. 644: its mode cannot be repaired, so it is removed."""
    put(client, USUAL, owner="root", mode=mode)
    check_start_without_settings(client)
    assert f"{ui.PREFERENCES} belongs to another user and is not used" in client.output()
    check_first_session(client)
    file = client.file(ui.PREFERENCES)
    if mode == 0o600:
        assert file.read_bytes() == USUAL and file.stat().st_uid == 0
    else:
        assert file.stat().st_uid == world.home.uid(client.user)[0] and client.preferences()["vpnUsername"]
    client.terminate()


def make_folder(client, path):
    client.home.write(f"{path}/mine", "keep me", owner=client.user)


def make_link(client, path):
    client.home.write(f"{client.folder}/elsewhere", USUAL, owner=client.user, mode=0o600)
    client.home.run("ln", "-s", f"{client.folder}/elsewhere", path, user=client.user)


def make_pipe(client, path):
    client.home.run("mkfifo", path, user=client.user)


@pytest.mark.slow
@pytest.mark.parametrize(
    "make, kind",
    [(make_folder, "directory"), (make_link, "symbolic link"), (make_pipe, "fifo")],
    ids=["folder", "link", "pipe"],
)
def test_another_kind_of_file_in_its_place(world, client, make, kind):
    """It remains, with its content or target; settings are in memory."""
    world.home.run("mkdir", "-p", f"{client.folder}/{FOLDER}", user=client.user)
    make(client, f"{client.folder}/{ui.PREFERENCES}")
    check_start_without_settings(client)
    assert f"{ui.PREFERENCES} cannot be read: " in client.output()
    check_first_session(client)
    client.terminate()
    found = world.home.run("stat", "-c", "%F", f"{client.folder}/{ui.PREFERENCES}").stdout.strip()
    assert found == kind
    if kind == "directory":
        assert client.file(f"{ui.PREFERENCES}/mine").read_text(encoding="utf-8") == "keep me"
    if kind == "symbolic link":
        assert client.file("elsewhere").read_bytes() == USUAL


def test_file_without_permissions(client):
    """Mode 000: the mode is repaired, and every setting is still there."""
    put(client, USUAL, mode=0)
    client.start()
    check_session(client)
    stored = client.preferences()
    assert (stored["changeIpInterval"], stored["userAgent"]) == (33, "mine")
    assert client.file(ui.PREFERENCES).stat().st_mode & 0o777 == 0o600


@pytest.mark.slow
def test_no_library_folder(client):
    """It is made, with access for the user only."""
    assert not client.file("Library").exists()
    check_start_without_settings(client)
    check_first_session(client)
    for name in ("Library", FOLDER):
        assert client.file(name).stat().st_mode & 0o777 == 0o700, name
    assert client.preferences()["un"]


@pytest.mark.slow
def test_library_folder_owned_by_root(world, client):
    """Stored settings are read; changes are in memory; a session works and nothing is lost."""
    put(client, USUAL)
    world.home.run("chown", "-R", "root:root", f"{client.folder}/Library")
    world.home.run("chmod", "-R", "a+rX", f"{client.folder}/Library")
    world.home.run("chown", f"{client.user}:{client.user}", f"{client.folder}/{ui.PREFERENCES}")
    client.start()
    check_session(client)
    assert f"{ui.PREFERENCES} cannot be written: Permission denied" in client.output()
    stored = client.preferences()
    assert (stored["changeIpInterval"], stored["userAgent"]) == (33, "mine")
    world.home.run("chown", "-R", f"{client.user}:{client.user}", f"{client.folder}/Library")
    check_session(client)
    assert client.preferences()["vpnUsername"], "the changes that were kept in memory are on the disk"
