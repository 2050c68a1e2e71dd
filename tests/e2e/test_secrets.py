"""The administrator's password and the VPN pair are stored only where they belong, in every state."""

import base64
import dataclasses
import os
import signal
import subprocess
import urllib.parse
from pathlib import Path

import pytest

from harness.drive import client as ui
from harness.observe import figures
from harness.observe.secret_search import Search
from world.accounts import ADA
from world.service import BERLIN

# With characters that encodings change: a blank, punctuation marks, a letter of two bytes.
PASSWORD = "Zq7 sekrit/Admi&n+é"
WRONG = "Wr0ng geheim/Admi&n+é"
CHANGE = ui.button("Change IP")
ADMINISTRATOR, REFUSED = "administrator's password", "wrong password"
VPN_PASSWORD = "VPN password"
PAIR_FILE = "Documents/Quorvane/.vpnCreds.txt"
# Place below the user's folder -> secret -> the form in which it may be stored there, for its owner only.
MAY_HOLD = {
    ui.PREFERENCES: {
        ADMINISTRATOR: "scrambled",
        REFUSED: "scrambled",
        VPN_PASSWORD: "plain",
    },
    PAIR_FILE: {VPN_PASSWORD: "plain"},
}


def private_copy(found):
    """The VPN pair as the guard passes it to OpenVPN: a file in memory that only root can open."""
    holders = [f"open in {name}: /memfd:credentials (deleted)" for name in ("openvpn-guard", "openvpn")]
    return (
        found.place in holders
        and found.secret == VPN_PASSWORD
        and found.form == "plain"
        and found.mode == 0o400
        and found.owner == 0
    )


class Guarded:
    """A home with a system log, whose administrator has the password above, under a search."""

    def __init__(self, world, client):
        self.world, self.client, self.home = world, client, world.home
        self.home.run("chpasswd", "-c", "SHA512", input=f"{ADA.name}:{PASSWORD}\n")
        self.search = Search(world)
        self.search.patterns.add(ADMINISTRATOR, PASSWORD)
        self.search.patterns.add(REFUSED, WRONG)
        self.uid = self.home.uid(client.user)[0]

    def remember(self):
        self.client.remember_administrator(dataclasses.replace(ADA, password=PASSWORD), location=BERLIN.title)

    def learn_vpn_password(self):
        """Adds the VPN password of the current run to the search, as soon as there is one."""
        preferences = self.client.preferences() if self.client.file(ui.PREFERENCES).exists() else {}
        if preferences.get("vpnPassword"):
            self.search.patterns.add(VPN_PASSWORD, preferences["vpnPassword"])

    def misplaced(self, findings):
        """The findings that are not allowed: another place or form, or readable by other users."""
        allowed = {
            (f"{self.client.folder}/{file}", secret, form)
            for file, secrets in MAY_HOLD.items()
            for secret, form in secrets.items()
        }
        allowed |= {(place, secret, f"base64 of {form}") for place, secret, form in allowed}
        return {
            found
            for found in findings
            if not private_copy(found)
            and (
                (found.place, found.secret, found.form) not in allowed
                or found.mode != 0o600
                or found.owner != self.uid
            )
        }

    def note(self, state, *expected):
        """Checks a lasting state and records which places hold a secret."""
        figures.record(f"{state}: places that hold a secret", self.check(state, *expected))

    def check(self, state, *expected):
        """No secret is misplaced; the expected ones are found, which proves that the search works."""
        self.learn_vpn_password()
        findings = self.search.files()
        assert self.misplaced(findings) == set(), state
        assert set(expected) <= {
            found.secret for found in findings
        }, f"{state}: the search does not find what is stored"
        assert self.search.processes() == set(), state
        return sorted(
            f"{found.secret} ({found.form}) in {found.place}, mode {found.mode:o}" for found in findings
        )

    def check_until_hidden(self, state, requests):
        """Searches again and again until the attempt has become a session."""
        searches = 0
        while True:
            self.check(f"{state}, search {searches}", ADMINISTRATOR)
            searches += 1
            if len(self.world.service.requests_of("VPNC")) >= requests and self.client.text(
                "Status line"
            ).startswith(ui.HIDING):
                break
        figures.record(f"{state}: searches of all files", searches)

    def finish(self, *expected):
        """At the end: also every new file of the whole file system, and which processes were seen."""
        self.learn_vpn_password()
        assert self.misplaced(self.search.new_files()) == set()
        assert set(expected) <= {found.secret for found in self.search.new_files()}
        assert self.search.processes() == set()
        seen = b" ".join(self.search.watch.commands())
        for program in (b"sudo", b"su\0", b"openvpn", b"extractip.sh"):
            assert program in seen, f"{program} was not seen: the search of processes is too slow"
        log = self.search.system_log()
        assert (
            "credentials Is Valid" in log and "COMMAND=" in log
        ), "the client and sudo write to the system log"


@pytest.fixture(name="guarded")
def fixture_guarded(world, client):
    made = Guarded(world, client)
    yield made
    made.search.close()


def test_first_run_dialog_wrong_password_and_session(guarded):
    """Typed, refused, accepted; searching, hidden, stopped."""
    client = guarded.client
    client.start()
    client.wait_dialog()
    for description, text in (("User name", ADA.name), ("Password", WRONG)):
        client.request(
            "set_text", key="first", query={"window": ui.DIALOG, "description": description}, text=text
        )
    assert client.dialog_text("User name") == ADA.name
    assert not set(client.dialog_text("Password")) & set(WRONG), "assistive programs do not receive it"
    guarded.note("dialog open, pair typed")
    client.press(ui.button("Start", ui.DIALOG))
    client.wait_alert()
    guarded.note("after a wrong password", REFUSED)
    client.dismiss_alert()
    client.wait({"role": "alert"}, absent=True)
    client.enter_administrator(ADA.name, PASSWORD)
    client.wait_dialog_closed()
    guarded.check_until_hidden("searching", 1)
    guarded.note("hidden", ADMINISTRATOR, VPN_PASSWORD)
    client.stop()
    client.wait_no_openvpn()
    guarded.note("after a stop", ADMINISTRATOR)
    guarded.finish(ADMINISTRATOR)


def test_stored_pair_change_and_kill(guarded):
    """Ready with a stored pair; hidden, changing the address, hidden; SIGKILL, and the next start."""
    client = guarded.client
    guarded.remember()
    client.start()
    client.wait_ready()
    guarded.note("ready", ADMINISTRATOR)
    client.hide()
    guarded.check_until_hidden("searching", 1)
    client.press(CHANGE)
    guarded.check_until_hidden("changing the address", 2)
    guarded.note("hidden again", ADMINISTRATOR, VPN_PASSWORD)
    client.kill()
    guarded.note("after SIGKILL", ADMINISTRATOR, VPN_PASSWORD)
    client.start(key="second")
    client.wait_ready(key="second")
    guarded.note("ready after SIGKILL", ADMINISTRATOR)
    guarded.finish(ADMINISTRATOR)


# --- memory: core files, and access to the memory of the client


def cores_after(guarded, key, number):
    """Ends the started process by the signal; returns the places of all core files afterwards."""
    guarded.client.signal(number, key=key)
    assert guarded.client.wait_exit(key=key) == -number
    return guarded.search.cores()


def start_with_cores(guarded, key, *command):
    """Starts a program with no limit for core files, in a folder in which the user can write."""
    folder = guarded.client.file(f"dumped-{key}")
    folder.mkdir()
    os.chown(folder, guarded.uid, guarded.uid)
    guarded.client.request(
        "start",
        key=key,
        environment={},
        output=f"{guarded.client.folder}/{key}.log",
        arguments=[
            "/bin/sh",
            "-c",
            'cd "$0" && ulimit -c unlimited && exec "$@"',
            f"{guarded.client.folder}/dumped-{key}",
            *command,
        ],
    )


def process_called(guarded, name):
    guarded.home.wait_for(lambda: guarded.home.processes(name), f"{name} runs")
    return guarded.home.processes(name)[0].pid


def limit_of_cores(pid):
    """The soft and the hard limit of a process."""
    lines = Path(f"/proc/{pid}/limits").read_text(encoding="utf-8").splitlines()
    return next(line for line in lines if line.startswith("Max core file size")).split()[4:6]


def number_at_home(pid):
    status = Path(f"/proc/{pid}/status").read_text(encoding="utf-8")
    return next(line for line in status.splitlines() if line.startswith("NSpid:")).split()[-1]


def what_the_user_can_read(guarded, pid):
    """The files of a process in /proc that another program of the same user can open."""
    readable = []
    for name in ("environ", "mem", "maps", "auxv"):
        done = guarded.home.run(
            "sh", "-c", f"exec 3</proc/{number_at_home(pid)}/{name}", user=guarded.client.user, check=False
        )
        if done.returncode == 0:
            readable.append(name)
    return readable


HOLDER = """import signal
held = open("/home/joe/held", "rb").read()
print("held", flush=True)
signal.pause()
"""


def test_control_a_core_is_found_with_what_it_holds(guarded):
    """A program without protection: its core file is found, and the user can read its memory."""
    pattern = Path("/proc/sys/kernel/core_pattern").read_text(encoding="utf-8").strip()
    if pattern.startswith(("|", "/")):
        pytest.skip(f"cores of this machine go to {pattern!r}, out of the home")
    guarded.home.write("/home/joe/holder.py", HOLDER)
    guarded.home.write("/home/joe/held", PASSWORD, owner="joe", mode=0o600)
    start_with_cores(guarded, "holder", "/usr/bin/python3", "/home/joe/holder.py")
    guarded.home.wait_for(lambda: "held" in guarded.client.output("holder"), "the program holds the password")
    pid = next(
        process.pid
        for process in guarded.home.processes("python3")
        if "holder.py" in " ".join(process.command)
    )
    assert limit_of_cores(pid)[0] == "unlimited"
    assert os.stat(f"/proc/{pid}/environ").st_uid == guarded.uid
    assert what_the_user_can_read(guarded, pid) == ["environ", "mem", "maps", "auxv"]
    guarded.home.path("/home/joe/held").unlink()
    cores = cores_after(guarded, "holder", signal.SIGABRT)
    assert len(cores) == 1
    assert (ADMINISTRATOR, cores[0]) in {(found.secret, found.place) for found in guarded.search.files()}


@pytest.mark.parametrize(
    "number",
    [
        pytest.param(signal.SIGSEGV, id="SIGSEGV", marks=pytest.mark.slow),
        pytest.param(signal.SIGABRT, id="SIGABRT"),
    ],
)
def test_no_core(guarded, number):
    """While hidden, with all secrets in memory: no core file of the client, which the portal can inspect."""
    client = guarded.client
    guarded.remember()
    start_with_cores(guarded, "first", ui.PROGRAM)
    client.hide()
    client.wait_hidden()
    pid = process_called(guarded, "quorvane")
    assert limit_of_cores(pid) == ["1", "1"], "no file, and no pipe"
    assert int(Path(f"/proc/{pid}/coredump_filter").read_text(encoding="utf-8"), 16) == 0, "no memory"
    assert os.stat(f"/proc/{pid}/root", follow_symlinks=False).st_uid == guarded.uid, "visible to a portal"
    for process in (*client.openvpn(), *guarded.home.processes("openvpn-guard")):
        assert limit_of_cores(process.pid)[0] == "0", f"{process.command[0]} holds the VPN pair"
        assert what_the_user_can_read(guarded, process.pid) == []
    assert cores_after(guarded, "first", number) == []
    for process in client.openvpn():
        os.kill(process.pid, number)
    client.wait_no_openvpn()
    assert guarded.search.cores() == []
    guarded.note(f"after {signal.Signals(number).name}", ADMINISTRATOR, VPN_PASSWORD)


# --- the search itself


def places(findings):
    return {(found.place, found.form) for found in findings if found.secret == ADMINISTRATOR}


def test_control_a_planted_secret_is_found(guarded):
    """Planted secrets are found in each place and form, and nothing else is found."""
    home, search = guarded.home, guarded.search
    assert search.files() == set() and search.processes() == set()
    expected = set()
    for place, arguments, environment in (
        ("argument list", ["sh", "-c", "read line", PASSWORD], {}),
        ("environment", ["sh", "-c", "read line"], {"PLANTED": PASSWORD}),
    ):
        expected.add((place, "plain"))
        with home.popen(*arguments, user="joe", environment=environment, stdin=subprocess.PIPE) as holder:
            home.wait_for(lambda: places(search.processes()) >= expected, f"the {place} is found")
            holder.stdin.close()
        assert places(search.processes()) == expected

    utf16, interleaved = PASSWORD.encode("utf-16-le"), "".join(unit + "7" for unit in PASSWORD) + "\0"
    planted = {
        ("/home/joe/Documents/Quorvane/qrvp.log", "plain"): f"a line with {PASSWORD} in it",
        ("/home/joe/.cache/deep/er/file", "UTF-16"): utf16,
        ("/tmp/a", "percent"): f"https://x/?p={urllib.parse.quote(PASSWORD, safe='')}",
        ("/dev/shm/b", "backwards"): PASSWORD[::-1],
        ("/var/tmp/c", "hexadecimal"): PASSWORD.encode().hex().upper(),
        ("/var/log/d", "base64 of plain"): b"x: " + base64.b64encode(b"ada:" + PASSWORD.encode()),
        ("/etc/quorvane/e", "scrambled"): interleaved,
        ("/root/f", "base64 of scrambled"): base64.encodebytes(interleaved.encode("utf-16-le")),
        ("/run/user/g", "plain"): PASSWORD.replace("&", "&amp;"),
    }
    for (place, _form), data in planted.items():
        home.write(place, data)
    home.run("logger", "-u", "/dev/log", "--", f"said {PASSWORD}", user="joe")
    expected = set(planted) | {("/var/log/syslog", "plain")}
    home.wait_for(lambda: PASSWORD in search.system_log(), "the system log contains it")
    assert places(search.files()) == expected
    assert {found.mode for found in search.files() if found.place == "/tmp/a"} == {0o644}
    assert len(guarded.misplaced(search.files())) == len(expected), "none of these is allowed"

    with home.popen(
        "/usr/bin/python3",
        "-c",
        "import sys, tempfile\nfile = tempfile.TemporaryFile()\n"
        "file.write(sys.stdin.buffer.readline())\nfile.flush()\nprint(flush=True)\nsys.stdin.read()",
        user="joe",
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        text=True,
    ) as holder:
        holder.stdin.write(PASSWORD + "\n")
        holder.stdin.flush()
        holder.stdout.readline()
        assert any(place.startswith("open in python3") for place, _form in places(search.files()))
        holder.stdin.close()


def test_control_others_may_not_read_what_is_allowed(guarded):
    """The pair may be stored in the preferences, but not with another mode, owner or form."""
    guarded.remember()
    file = guarded.client.file(ui.PREFERENCES)
    assert guarded.misplaced(guarded.search.files()) == set()
    file.chmod(0o640)
    assert guarded.misplaced(guarded.search.files()) != set()
    file.chmod(0o600)
    os.chown(file, 0, 0)
    assert guarded.misplaced(guarded.search.files()) != set()
    guarded.client.seed_preferences(up=PASSWORD)
    assert guarded.misplaced(guarded.search.files()) != set()
