"""What the service's API can answer that it should not, and what comes of it.

Every row goes on to the real service: the locations are refreshed, or the button is pressed again, and a session
comes up.
"""

import contextlib
import statistics
import tempfile
from pathlib import Path

import pytest

from harness.conditions import hostile_api as api
from harness.conditions.hostile_api import HostileApi
from harness.conditions.listener import Listener
from harness.drive import client as ui
from harness.drive.tray import TrayIcon
from harness.observe import figures, outcomes
from world import network, pki, service
from world.accounts import ADA
from world.service import BERLIN

LIST_REQUEST = "/?cmd=MRTSL&ver=1&device=1&systamp=MacOS,user,mobilebox&uniqueid=x"
STORED = ("vpnConfigPath", "vpnUsername", "vpnPassword")
CONFIGURATION = "Documents/Quorvane/qrvp.ovpn"
FLOOD = 100 * api.MEGABYTE
# The largest answer that the client takes, 16 MiB, and some room.
MOST_GROWTH = 24 * 1024
# Both limits of the client for one answer.
LIMIT = 60


def ask(world, target):
    """What the real service answers to somebody at home."""
    return world.home.run(
        "curl",
        "-q",
        "-fsS",
        "--cacert",
        "/etc/quorvane/ca.crt",
        f"https://{network.API_HOST}{target}",
        user="joe",
    ).stdout.encode()


def a_configuration(world):
    listed = dict(
        line.split(":", 1) for line in ask(world, LIST_REQUEST).decode().split("<br />") if ":" in line
    )
    return ask(
        world,
        f"/?cmd=VPNC&ver=1&device=1&server=571&desiredip={BERLIN.addresses[0]}"
        f"&sessid={listed['VPNUser'].strip()}&&systamp=MacOS,user,mobilebox&uniqueid=x&proto=UDP",
    )


def other_host(world):
    return world.authority.leaf("other", f"DNS:other.{network.API_HOST}")


def expired(world):
    return world.authority.leaf("expired", service.API_NAMES, days="-1")


def unknown_authority(world):
    return pki.Authority(Path(tempfile.mkdtemp(dir=world.folder)) / "pki").leaf("api", service.API_NAMES)


# What an answer can be, given the right one; and certificates that must keep the client from asking at all.
ANSWERS = {
    "garbage": lambda right: api.page(bytes(range(256)) * 16),
    "no_http": lambda right: api.no_http,
    "truncated": api.truncated,
    "truncated_in_chunks": api.truncated_in_chunks,
    "100_megabytes": lambda right: api.flood(FLOOD, told=True),
    "100_megabytes_of_untold_length": lambda right: api.flood(FLOOD, told=False),
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
# Left out of the quick part: their likes are in it.
LIKE_OTHERS = ("no_http", "truncated_in_chunks", "100_megabytes", "empty", "of_another_host", "expired")
LIKE_THE_LISTS = ("garbage", "status_500", "redirect_to_http")
# These are complete answers that make no sense: they are dropped without a word.
DROPPED = ("garbage", "empty")


def rows(table, left_out=LIKE_OTHERS):
    return [pytest.param(row, marks=pytest.mark.slow) if row in left_out else row for row in table]


@contextlib.contextmanager
def no_request_in_the_clear():
    """The port for plain HTTP is open at the service's address, and nobody may come."""
    with Listener(network.INTERNET, 80, lambda connection, _closing: connection.recv(1)) as plain:
        yield
        assert plain.connections == 0, "a request went out in the clear"


@contextlib.contextmanager
def bounded_memory(client, row):
    """The client's largest size may not follow the size of what it is sent."""
    pid = outcomes.client_pid(client.home)
    before = outcomes.memory(pid, "VmHWM")
    yield
    grown = outcomes.memory(pid, "VmHWM") - before
    figures.record(f"{row}: growth of the client's largest size (KiB)", grown)
    assert grown < MOST_GROWTH


def stored(client):
    """What a configuration that was taken would leave: the file and the preferences."""
    path = client.file(CONFIGURATION)
    held = client.preferences()
    return path.read_bytes() if path.exists() else None, {key: held.get(key) for key in STORED}


def downloads(client):
    """The temporary files of answers."""
    return sorted(path.name for path in client.home.path("/tmp").glob("*auth*"))


def check_alive(shared):
    answers = shared.ask("round_trips", key="first", count=50)
    assert statistics.median(answers) < 0.1


# --- the server list, at the start


def start_beside(shared, **preferences):
    """Starts the client anew at a home without its earlier files; a tray to refresh the locations with."""
    shared.end()
    shared.home.run("sh", "-c", "rm -rf Documents Library /tmp/*auth*", user="joe")
    shared.remember_administrator(ADA, **preferences)
    shared.start()
    shared.wait(ui.HIDE, ui.ANSWER, showing=True)


def check_recovers(shared, before):
    """The user asks for the locations again, the service is itself again."""
    TrayIcon(shared).click("Refresh Locations")
    shared.wait(ui.label("Current IP address"), ui.ANSWER, name=network.REAL_ADDRESS)
    shared.wait_ready()
    assert shared.alerts() == []
    outcomes.check_session(shared, before)


def check_no_list(shared, row, asked):
    """What the user sees, and what is left, when there is no server list."""
    if row in DROPPED:
        # By design an answer that says nothing stays where it was put.
        shared.home.wait_for(lambda: len(downloads(shared)) == 1 and asked(), ui.ANSWER, "the answer is read")
        check_alive(shared)
        assert shared.alerts() == []
    else:
        outcomes.take_alert(shared, outcomes.SERVICE_TROUBLE, ui.ANSWER)
        assert shared.current_address() == "0.0.0.0"
        assert downloads(shared) == []
    assert shared.text("Status line") == ui.NOT_HIDING
    assert shared.text("State picture") == "IP not hidden"
    assert shared.openvpn() == []
    assert stored(shared) == (None, dict.fromkeys(STORED))


@pytest.mark.parametrize("row", rows(ANSWERS))
def test_server_list(shared, row):
    before = outcomes.HomeState(shared.home)
    answer = ANSWERS[row](ask(shared.world, LIST_REQUEST))
    with HostileApi(shared.world, {"MRTSL": answer}) as hostile, no_request_in_the_clear():
        start_beside(shared, location=BERLIN.title)
        with bounded_memory(shared, row):
            check_no_list(shared, row, lambda: hostile.requests_of("MRTSL"))
        if row == "status_500":
            # A page of trouble is an answer without servers: the press says so.
            shared.hide()
            outcomes.take_alert(shared, outcomes.NO_SERVERS, 10)
        else:
            assert not shared.button_state()["enabled"]
        assert len(hostile.requests) == 1, "asked once"
    check_recovers(shared, before)


@pytest.mark.parametrize("row", rows(CERTIFICATES))
def test_server_list_certificate(shared, row):
    """Nothing is asked of somebody who cannot prove to be the service."""
    before = outcomes.HomeState(shared.home)
    with HostileApi(shared.world, {}, CERTIFICATES[row](shared.world)) as hostile:
        start_beside(shared, location=BERLIN.title)
        check_no_list(shared, row, None)
        assert hostile.requests == [] and hostile.refused_handshakes == 1
    check_recovers(shared, before)


@pytest.mark.slow
@pytest.mark.parametrize("row", SLOW)
def test_server_list_slow(shared, row):
    """The client waits a minute, with a living window, and says then that there was no answer."""
    before = outcomes.HomeState(shared.home)
    with HostileApi(shared.world, {"MRTSL": SLOW[row](ask(shared.world, LIST_REQUEST))}) as hostile:
        start_beside(shared, location=BERLIN.title)
        check_alive(shared)
        outcomes.take_alert(shared, outcomes.SERVICE_TROUBLE, LIMIT + ui.ANSWER)
        assert len(hostile.requests) == 1 and downloads(shared) == []
    check_recovers(shared, before)


def test_quitting_while_the_service_is_silent(shared):
    """Nobody has to wait for an answer to end the program: neither for the list's nor for the configuration's."""
    with HostileApi(shared.world, {"MRTSL": api.silent}) as hostile:
        start_beside(shared)
        shared.home.wait_for(lambda: hostile.requests, ui.ANSWER, "the list is asked for")
        shared.signal(15)
        assert shared.wait_exit(timeout=10) == 0
    start_beside(shared, location=BERLIN.title)
    with HostileApi(shared.world, {"VPNC": api.silent}) as hostile:
        shared.hide()
        shared.home.wait_for(lambda: hostile.requests, ui.ANSWER, "the configuration is asked for")
        check_alive(shared)
        shared.signal(15)
        assert shared.wait_exit(timeout=10) == 0
    assert stored(shared) == (None, dict.fromkeys(STORED))
    assert downloads(shared) == [] and shared.openvpn() == []


# --- hostile texts in a server list that is right otherwise


# What the second half of a location's title can be; each of them lends an address of Berlin.
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
    """The service's own answer with other "Server" lines; the texts come back as titles, in order."""
    right = ask(world, LIST_REQUEST).decode()
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


# With these a session is made, so that they are shown as its location.
CHOSEN = ("markup", "null_character", "one_long_word", "line_ends")


def test_hostile_texts(shared):
    """Titles are shown as the texts that they are; the window keeps its size and its wits, another run as well."""
    before = outcomes.HomeState(shared.home)
    start_beside(shared, location=BERLIN.title)
    shared.wait_ready()
    usual = geometry(shared)
    answer = hostile_list(shared.world, HOSTILE_TEXTS.values())
    shared.hide()
    shared.wait_hidden()
    usual_hidden = geometry(shared)
    with HostileApi(shared.world, {"MRTSL": api.page(answer)}), no_request_in_the_clear():
        start_beside(shared, location=BERLIN.title)
        shared.wait_ready()
        check_alive(shared)
    assert geometry(shared) == usual
    entries = shared.ask("entries", key="first", query=ui.label("Location choice"))
    assert len(entries) == 1 + len(HOSTILE_TEXTS)
    for name in ("markup", "placeholders", "ampersands", "very_long"):
        assert f"Hostile {HOSTILE_TEXTS[name]}" in entries

    for name in CHOSEN:
        title = next(entry for entry in entries if entry.startswith(f"Hostile {HOSTILE_TEXTS[name][:3]}"))
        shared.ask("choose", key="first", query=ui.label("Location choice"), entry=title, timeout=10)
        shared.home.wait_for(
            lambda: shared.shows("Location") and shared.text("Location") == title, ui.SESSION, name
        )
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
    """The address that the service says it sees is a text like any other, and may not burst the window."""
    before = outcomes.HomeState(shared.home)
    right = ask(shared.world, LIST_REQUEST)
    wrong = right.replace(f"ClientIP: {network.REAL_ADDRESS}".encode(), f"ClientIP: {address}".encode())
    assert wrong != right
    with HostileApi(shared.world, {"MRTSL": api.page(wrong)}):
        start_beside(shared, location=BERLIN.title)
        shared.wait_ready()
        shared.wait(ui.label("Current IP address"), ui.ANSWER, name=address)
        check_alive(shared)
        usual = geometry(shared)
        assert usual[0] == 400 and usual[1] < 700
    # The status line carries it while the address is hidden.
    shared.hide()
    shared.wait_hidden()
    check_alive(shared)
    assert geometry(shared) == usual
    shared.stop()
    check_recovers(shared, before)


@pytest.mark.slow
def test_thousands_of_servers(shared):
    """A list far longer than any the service has is shown, and the window answers meanwhile."""
    before = outcomes.HomeState(shared.home)
    answer = hostile_list(shared.world, [f"City {number}" for number in range(5000)])
    with HostileApi(shared.world, {"MRTSL": api.page(answer)}):
        start_beside(shared)
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
        start_beside(shared, location=BERLIN.title)
    shared.wait_ready()
    outcomes.check_shown_not_hidden(shared)
    return shared


def session_log(client):
    path = client.file("Documents/Quorvane/qrvp.log")
    return path.read_text(encoding="utf-8").splitlines() if path.exists() else None


def press_in_vain(listed, row, before, timeout=ui.FAILURE):
    """The press, the alert, and nothing stored or started."""
    kept, launched, log = stored(listed), outcomes.launches(listed), session_log(listed)
    with bounded_memory(listed, row):
        listed.hide()
        outcomes.check_given_up(listed, before, timeout=timeout)
    assert stored(listed) == kept and outcomes.launches(listed) == launched
    # Before the first session there is no such file, and then nothing is noted. A list that came between the look at
    # the choice and the press has changed it: by design it finds a stored place only once.
    choice = listed.button_state(ui.label("Location choice"))["name"]
    assert session_log(listed) == (None if log is None else [*log, f"connection error {choice}"])


@pytest.mark.parametrize("row", rows(ANSWERS, LIKE_OTHERS + LIKE_THE_LISTS))
def test_configuration(listed, row):
    before = outcomes.HomeState(listed.home)
    answer = ANSWERS[row](a_configuration(listed.world))
    with HostileApi(listed.world, {"VPNC": answer}) as hostile, no_request_in_the_clear():
        press_in_vain(listed, row, before)
        assert len(hostile.requests) == 1, "a fixed location is tried once"
    outcomes.check_session(listed, before)


@pytest.mark.parametrize("row", rows(CERTIFICATES))
def test_configuration_certificate(listed, row):
    before = outcomes.HomeState(listed.home)
    with HostileApi(listed.world, {}, CERTIFICATES[row](listed.world)) as hostile:
        press_in_vain(listed, row, before)
        assert (
            hostile.requests == [] and hostile.refused_handshakes == 1
        ), "the sessid is not told to a stranger"
    outcomes.check_session(listed, before)


@pytest.mark.slow
@pytest.mark.parametrize("row", SLOW)
def test_configuration_slow(listed, row):
    before = outcomes.HomeState(listed.home)
    with HostileApi(listed.world, {"VPNC": SLOW[row](a_configuration(listed.world))}) as hostile:
        press_in_vain(listed, row, before, timeout=LIMIT + ui.ANSWER)
        assert len(hostile.requests) == 1
    outcomes.check_session(listed, before)


@pytest.mark.parametrize(
    "cut", [pytest.param("before_the_authority", marks=pytest.mark.slow), "in_the_middle_of_it"]
)
def test_half_a_configuration(listed, cut):
    """A whole answer that holds a part of the configuration: it is stored and started, and comes to nothing."""
    before, noted = outcomes.HomeState(listed.home), outcomes.failures_noted(listed)
    whole = a_configuration(listed.world)
    part = whole.partition(b"<ca>")[0] if cut == "before_the_authority" else whole[:-200]
    assert b"remote " in part and len(part) < len(whole)
    with HostileApi(listed.world, {"VPNC": api.page(part)}) as hostile:
        listed.hide()
        outcomes.check_given_up(listed, before, 75, noted)
        assert len(hostile.requests) == 1
    held = listed.file(CONFIGURATION).read_bytes()
    assert held == part.partition(b"VPNConfig: ")[2].replace(b"<br />", b"\n"), "what came is kept as it came"
    outcomes.check_session(listed, before)
