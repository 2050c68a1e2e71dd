"""Wrong answers of the service's API, and how the client handles them.

Every test goes on with the real service: the locations are refreshed, or the button is pressed again, and a
session starts.
"""

import contextlib
import statistics
import tempfile
from pathlib import Path

import pytest

from harness.conditions import hostile_api as api
from harness.conditions import service_api
from harness.conditions.hostile_api import HostileApi
from harness.conditions.listener import Listener
from harness.drive import client as ui
from harness.drive.tray import TrayIcon
from harness.observe import figures, outcomes
from world import network, pki, service
from world.accounts import ADA
from world.service import BERLIN

STORED = ("vpnConfigPath", "vpnUsername", "vpnPassword")
CONFIGURATION = "Documents/Quorvane/qrvp.ovpn"
FLOOD = 100 * api.MEGABYTE
# KiB: the largest answer that the client accepts, 16 MiB, and a margin.
MOST_GROWTH = 24 * 1024
# Seconds within which the client must end while it waits for an answer, which it does for a minute.
QUITTING = 30


def right_list(world):
    """The server list that the real service answers with, as bytes."""
    return service_api.get(world.home, service_api.SERVER_LIST).encode()


def right_configuration(world):
    """The configuration of an address of Berlin that the real service answers with, as bytes."""
    user, _password = service_api.credentials(world.home)
    target = service_api.configuration_target(user, BERLIN.addresses[0])
    return service_api.get(world.home, target).encode()


def other_host(world):
    return world.authority.leaf("other", f"DNS:other.{network.API_HOST}")


def expired(world):
    return world.authority.leaf("expired", service.API_NAMES, days="-1")


def unknown_authority(world):
    return pki.Authority(Path(tempfile.mkdtemp(dir=world.folder)) / "pki").leaf("api", service.API_NAMES)


# Name -> function from the right answer to the sender of a wrong one.
ANSWERS = {
    "garbage": lambda right: api.page(bytes(range(256)) * 16),
    "no_http": lambda right: api.no_http,
    "truncated": api.truncated,
    "truncated_in_chunks": api.truncated_in_chunks,
    "100_megabytes": lambda right: api.flood(FLOOD, announced=True),
    "100_megabytes_of_unannounced_length": lambda right: api.flood(FLOOD, announced=False),
    "status_500": lambda right: api.page(b"<h1>Internal Server Error</h1>", "500 Internal Server Error"),
    "empty": lambda right: api.page(b""),
    "huge_header": lambda right: api.huge_header(FLOOD),
    "redirect_to_http": lambda right: api.redirect(f"http://{network.API_HOST}/"),
}
CERTIFICATES = {
    "of_another_host": other_host,
    "of_an_unknown_authority": unknown_authority,
    "expired": expired,
}
SLOW = {"silence": lambda right: api.silent, "a_byte_at_a_time": api.dripping}
# Slow tests only: the quick ones contain a similar fault.
LIKE_OTHERS = ("no_http", "truncated_in_chunks", "100_megabytes", "empty", "of_another_host", "expired")
LIKE_THE_LISTS = ("garbage", "status_500", "redirect_to_http")
# Complete answers without meaning: the client drops them silently.
DROPPED = ("garbage", "empty")


def faults(table, left_out=LIKE_OTHERS):
    return [pytest.param(fault, marks=pytest.mark.slow) if fault in left_out else fault for fault in table]


@contextlib.contextmanager
def no_request_in_the_clear():
    """The port for plain HTTP is open at the service's address and receives no connection in the block."""
    with Listener(network.INTERNET, 80, lambda connection, _closing: connection.recv(1)) as plain:
        yield
        assert plain.connections == 0, "a request was sent in the clear"


@contextlib.contextmanager
def bounded_memory(client, fault):
    """The client's peak memory during the block must not grow with the size of the answer."""
    pid = outcomes.client_pid(client.home)
    before = outcomes.memory(pid, "VmHWM")
    yield
    grown = outcomes.memory(pid, "VmHWM") - before
    figures.record(f"{fault}: growth of the client's peak memory (KiB)", grown)
    assert grown < MOST_GROWTH


def stored(client):
    """What an accepted configuration changes: the file and the preferences."""
    path = client.file(CONFIGURATION)
    held = client.preferences()
    return path.read_bytes() if path.exists() else None, {key: held.get(key) for key in STORED}


def downloads(client):
    """The temporary files of answers."""
    return sorted(path.name for path in client.home.path("/tmp").glob("*auth*"))


def check_alive(shared):
    answers = shared.request("round_trips", key="first", count=50)
    assert statistics.median(answers) < 0.1


# --- the server list, at the start


def start_fresh(shared, **preferences):
    """Starts the client again, without the files of its earlier runs."""
    shared.end()
    shared.home.run("sh", "-c", "rm -rf Documents Library /tmp/*auth*", user="joe")
    shared.remember_administrator(ADA, **preferences)
    shared.start()
    shared.wait(ui.HIDE, showing=True)


def check_recovers(shared, before):
    """After "Refresh Locations" everything works with the real service."""
    TrayIcon(shared).click("Refresh Locations")
    shared.wait(ui.label("Current IP address"), name=network.REAL_ADDRESS)
    shared.wait_ready()
    assert shared.alerts() == []
    outcomes.check_session(shared, before)


def check_no_list(shared, fault, requested):
    """What the user sees, and what remains, when there is no server list."""
    if fault in DROPPED:
        # By design the file of an answer without meaning is kept.
        shared.home.wait_for(lambda: len(downloads(shared)) == 1 and requested(), "the answer is read")
        check_alive(shared)
        assert shared.alerts() == []
    else:
        outcomes.accept_alert(shared, outcomes.NO_SERVICE)
        assert shared.current_address() == "0.0.0.0"
        assert downloads(shared) == []
    assert shared.text("Status line") == ui.NOT_HIDING
    assert shared.text("State picture") == "IP not hidden"
    assert shared.openvpn() == []
    assert stored(shared) == (None, dict.fromkeys(STORED))


@pytest.mark.parametrize("fault", faults(ANSWERS))
def test_server_list(shared, fault):
    before = outcomes.HomeState(shared.home)
    answer = ANSWERS[fault](right_list(shared.world))
    with HostileApi(shared.world, {"MRTSL": answer}) as hostile, no_request_in_the_clear():
        start_fresh(shared, location=BERLIN.title)
        with bounded_memory(shared, fault):
            check_no_list(shared, fault, lambda: hostile.requests_of("MRTSL"))
        if fault == "status_500":
            # An error page is an answer without servers; the press reports that.
            shared.hide()
            outcomes.accept_alert(shared, outcomes.NO_SERVERS)
        else:
            assert not shared.button_state()["enabled"]
        assert len(hostile.requests) == 1, "one request"
    check_recovers(shared, before)


@pytest.mark.parametrize("fault", faults(CERTIFICATES))
def test_server_list_certificate(shared, fault):
    """The client sends no request to a server that cannot prove to be the service."""
    before = outcomes.HomeState(shared.home)
    with HostileApi(shared.world, {}, CERTIFICATES[fault](shared.world)) as hostile:
        start_fresh(shared, location=BERLIN.title)
        check_no_list(shared, fault, None)
        assert hostile.requests == [] and hostile.refused == 1
    check_recovers(shared, before)


@pytest.mark.slow
@pytest.mark.parametrize("fault", SLOW)
def test_server_list_slow(shared, fault):
    """The client waits a minute, with a working window, and then reports that there was no answer."""
    before = outcomes.HomeState(shared.home)
    with HostileApi(shared.world, {"MRTSL": SLOW[fault](right_list(shared.world))}) as hostile:
        start_fresh(shared, location=BERLIN.title)
        check_alive(shared)
        outcomes.accept_alert(shared, outcomes.NO_SERVICE)
        assert len(hostile.requests) == 1 and downloads(shared) == []
    check_recovers(shared, before)


def test_quitting_while_the_service_is_silent(shared):
    """The client ends without waiting for the answer to a list request or to a configuration request."""
    with HostileApi(shared.world, {"MRTSL": api.silent}) as hostile:
        start_fresh(shared)
        shared.home.wait_for(lambda: hostile.requests, "the list is requested")
        shared.signal(15)
        assert shared.wait_exit(timeout=QUITTING) == 0
    start_fresh(shared, location=BERLIN.title)
    with HostileApi(shared.world, {"VPNC": api.silent}) as hostile:
        shared.hide()
        shared.home.wait_for(lambda: hostile.requests, "the configuration is requested")
        check_alive(shared)
        shared.signal(15)
        assert shared.wait_exit(timeout=QUITTING) == 0
    assert stored(shared) == (None, dict.fromkeys(STORED))
    assert downloads(shared) == [] and shared.openvpn() == []


# --- hostile texts in a server list that is otherwise right


# The second half of a location's title; each location has addresses of Berlin.
HOSTILE_TEXTS = {
    "markup": "<b>bold</b><img src='http://192.0.2.10/x.png'><a href='file:///etc/passwd'>x</a>",
    "placeholders": "%n %s %1 %2 %L1 %@ {0} $(reboot) `reboot`",
    "very_long": "Long " * 4000,
    "one_long_word": "W" * 20000,
    "null_character": "before\0after",
    "right_to_left": "\u202egnorw\u202c \u05d0\u05d1\u05d2\u200f\u2067x",
    "line_ends": "one\ntwo\r\nthree\u2028four\u2029five",
    "control_characters": "\a\b\t\x1b[31mred\x7f\ufeff\ufffe",
    "ampersands": "&File &amp; &&<>\"'",
    "marks_upon_marks": "Z" + "\u0301\u0489" * 300,
    "other_planes": "\U0001f600\U0001f1e6\U0001f1f9\U0010ffff",
    "nothing": "",
}


def hostile_list(world, texts, times=1):
    """The service's answer with other "Server" lines, one for each text, which becomes a location's title."""
    right = right_list(world).decode()
    kept = [line for line in right.split("<br />") if not line.startswith("Server")]
    lines = [
        f"Server: {number},{text},BER,DE,Hostile,0|{BERLIN.addresses[number % len(BERLIN.addresses)]}"
        for number, text in enumerate(list(texts) * times)
    ]
    return "<br />".join([*kept, *lines]).encode()


def geometry(client):
    """Width and height of the main window on the screen."""
    shown = client.display.run(
        "xdotool", "search", "--onlyvisible", "--name", "^Quorvane .ver", "getwindowgeometry", "--shell"
    ).stdout
    fields = dict(line.split("=") for line in shown.split())
    return int(fields["WIDTH"]), int(fields["HEIGHT"])


# A session is started with each of these, so that it is shown as the location.
SHOWN_CHARACTERS = 200
CHOSEN = ("markup", "null_character", "one_long_word", "line_ends")


def test_hostile_texts(shared):
    """Titles are shown as plain text; the window keeps its size and works, also in another run."""
    before = outcomes.HomeState(shared.home)
    start_fresh(shared, location=BERLIN.title)
    shared.wait_ready()
    usual = geometry(shared)
    answer = hostile_list(shared.world, HOSTILE_TEXTS.values())
    shared.hide()
    shared.wait_hidden()
    usual_hidden = geometry(shared)
    with HostileApi(shared.world, {"MRTSL": api.page(answer)}), no_request_in_the_clear():
        start_fresh(shared, location=BERLIN.title)
        shared.wait_ready()
        check_alive(shared)
    assert geometry(shared) == usual
    entries = shared.request("entries", key="first", query=ui.label("Location choice"))
    assert len(entries) == 1 + len(HOSTILE_TEXTS)
    for name in ("markup", "placeholders", "ampersands", "very_long"):
        assert f"Hostile {HOSTILE_TEXTS[name]}"[:SHOWN_CHARACTERS] in entries

    for name in CHOSEN:
        title = next(entry for entry in entries if entry.startswith(f"Hostile {HOSTILE_TEXTS[name][:3]}"))
        shared.request("choose", key="first", query=ui.label("Location choice"), entry=title)
        shared.wait(ui.label("Location"), name=title, showing=True)
        outcomes.check_hidden(shared)
        assert geometry(shared) == usual_hidden
        check_alive(shared)
        shared.stop()
    check_recovers(shared, before)
    shared.end()
    shared.start()
    shared.wait_ready()
    outcomes.check_shown_not_hidden(shared)


@pytest.mark.parametrize(
    "address",
    [
        pytest.param("<b>1.2.3.4</b>%n%s%1", id="markup", marks=pytest.mark.slow),
        pytest.param("9" * 20000, id="very_long"),
    ],
)
def test_hostile_client_address(shared, address):
    """The client address in the service's answer is shown as plain text and does not enlarge the window."""
    before = outcomes.HomeState(shared.home)
    right = right_list(shared.world)
    wrong = right.replace(f"ClientIP: {network.REAL_ADDRESS}".encode(), f"ClientIP: {address}".encode())
    assert wrong != right
    with HostileApi(shared.world, {"MRTSL": api.page(wrong)}):
        start_fresh(shared, location=BERLIN.title)
        shared.wait_ready()
        shared.wait(ui.label("Current IP address"), name=address)
        check_alive(shared)
        usual = geometry(shared)
        assert usual[0] == 400 and usual[1] < 700
    # The status line contains it while the address is hidden.
    shared.hide()
    shared.wait_hidden()
    check_alive(shared)
    assert geometry(shared) == usual
    shared.stop()
    check_recovers(shared, before)


@pytest.mark.slow
def test_thousands_of_servers(shared):
    """A list far longer than any real one is shown, and the window keeps working."""
    before = outcomes.HomeState(shared.home)
    answer = hostile_list(shared.world, [f"City {number}" for number in range(5000)])
    with HostileApi(shared.world, {"MRTSL": api.page(answer)}):
        start_fresh(shared)
        with bounded_memory(shared, "5000 servers"):
            shared.wait_ready()
            check_alive(shared)
    check_recovers(shared, before)


# --- the configuration, at the press


@pytest.fixture(name="listed")
def fixture_listed(shared):
    """The running client with the real server list, not hidden."""
    choice = ui.label("Location choice")
    if not shared.home.processes("quorvane") or shared.button_state(choice)["name"] != BERLIN.title:
        start_fresh(shared, location=BERLIN.title)
    shared.wait_ready()
    outcomes.check_shown_not_hidden(shared)
    return shared


def session_log(client):
    path = client.file("Documents/Quorvane/qrvp.log")
    return path.read_text(encoding="utf-8").splitlines() if path.exists() else None


def check_failed_press(listed, fault, before):
    """The press leads to the message box; nothing is stored or started."""
    kept, launched, log = stored(listed), outcomes.launches(listed), session_log(listed)
    with bounded_memory(listed, fault):
        listed.hide()
        outcomes.check_given_up(listed, before)
    assert stored(listed) == kept and outcomes.launches(listed) == launched
    # Before the first session there is no such file, and nothing is logged. The choice is read afterwards:
    # a list that arrives before it changes the choice, as by design a stored location is found only once.
    choice = listed.button_state(ui.label("Location choice"))["name"]
    assert session_log(listed) == (None if log is None else [*log, f"connection error {choice}"])


@pytest.mark.parametrize("fault", faults(ANSWERS, LIKE_OTHERS + LIKE_THE_LISTS))
def test_configuration(listed, fault):
    before = outcomes.HomeState(listed.home)
    answer = ANSWERS[fault](right_configuration(listed.world))
    with HostileApi(listed.world, {"VPNC": answer}) as hostile, no_request_in_the_clear():
        check_failed_press(listed, fault, before)
        assert len(hostile.requests) == 1, "a fixed location is tried once"
    outcomes.check_session(listed, before)


@pytest.mark.parametrize("fault", faults(CERTIFICATES))
def test_configuration_certificate(listed, fault):
    before = outcomes.HomeState(listed.home)
    with HostileApi(listed.world, {}, CERTIFICATES[fault](listed.world)) as hostile:
        check_failed_press(listed, fault, before)
        assert hostile.requests == [] and hostile.refused == 1, "the sessid is not sent to another server"
    outcomes.check_session(listed, before)


@pytest.mark.slow
@pytest.mark.parametrize("fault", SLOW)
def test_configuration_slow(listed, fault):
    before = outcomes.HomeState(listed.home)
    with HostileApi(listed.world, {"VPNC": SLOW[fault](right_configuration(listed.world))}) as hostile:
        check_failed_press(listed, fault, before)
        assert len(hostile.requests) == 1
    outcomes.check_session(listed, before)


@pytest.mark.parametrize(
    "cut", [pytest.param("before_the_authority", marks=pytest.mark.slow), "in_the_middle_of_it"]
)
def test_half_a_configuration(listed, cut):
    """A complete answer with a part of the configuration: it is stored and started, and the attempt fails."""
    before, logged = outcomes.HomeState(listed.home), outcomes.failures_logged(listed)
    whole = right_configuration(listed.world)
    part = whole.partition(b"<ca>")[0] if cut == "before_the_authority" else whole[:-200]
    assert b"remote " in part and len(part) < len(whole)
    with HostileApi(listed.world, {"VPNC": api.page(part)}) as hostile:
        listed.hide()
        outcomes.check_given_up(listed, before, logged)
        assert len(hostile.requests) == 1
    held = listed.file(CONFIGURATION).read_bytes()
    assert held == part.partition(b"VPNConfig: ")[2].replace(
        b"<br />", b"\n"
    ), "the received text is stored unchanged"
    outcomes.check_session(listed, before)
