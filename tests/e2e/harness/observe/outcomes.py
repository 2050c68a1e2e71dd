"""What must be seen after a fault, in the window and in the home, and that the next session works."""

import contextlib
import re

from harness.drive import client as ui
from world import network

OK = ["OK"]
NOT_AVAILABLE = {
    "title": "Quorvane",
    "buttons": OK,
    "texts": ["Location is not available.", "Please try a different location."],
}
NO_SERVICE = {
    "title": "Error",
    "buttons": OK,
    "texts": [
        "There was a problem connecting to the Quorvane server, please check your Internet "
        "connection or firewall settings."
    ],
}
NO_SERVERS = {"title": "Quorvane", "buttons": OK, "texts": ["No available server detected."]}
NO_INTERNET = {
    "title": "Quorvane",
    "buttons": OK,
    "texts": ["No Internet connection detected, please check your Internet settings."],
}


def accept_alert(client, wanted):
    """Waits for this message box, which must be the only one, and presses its OK."""
    client.wait_alert()
    shown = client.alerts()
    assert shown == [wanted], shown
    client.dismiss_alert()
    client.wait({"role": "alert"}, absent=True)


class HomeState:
    """What a session changes in the home and must restore: routes, links, firewall, name servers."""

    def __init__(self, home):
        self._home = home
        self.value = self._now()

    def _now(self):
        run = self._home.run
        routes = [
            line for family in ("-4", "-6") for line in run("ip", family, "route", "show").stdout.splitlines()
        ]
        links = re.findall(r"^\d+: ([^:@]+)", run("ip", "-o", "link", "show").stdout, re.MULTILINE)
        return {
            "routes": sorted(line.strip() for line in routes),
            "links": [name for name in links if name != "wlan0"],
            "firewall": network.run("ip", "netns", "exec", network.HOME, "nft", "list", "ruleset").stdout,
            "name servers": self._home.path("/etc/resolv.conf").read_text(encoding="utf-8"),
        }

    def check(self):
        """Waits until everything is as before. The device of an ended OpenVPN exists for a moment longer."""
        with contextlib.suppress(TimeoutError):
            self._home.wait_for(lambda: self._now() == self.value, "the home is as before")
        assert self._now() == self.value


def check_shown_not_hidden(client, address=network.REAL_ADDRESS, key="first"):
    assert client.text("Status line", key=key) == ui.NOT_HIDING
    assert client.text("State picture", key=key) == "IP not hidden"
    assert client.current_address(key) == address
    button = client.button_state(key=key)
    assert (button["name"], button["enabled"], button["checked"]) == ("Quorvane", True, False)
    assert not client.shows("Location", key) and not client.shows("Country flag", key)
    assert client.alerts(key) == []


def check_not_hidden(client, before=None, key="first"):
    """Nothing is hidden, in the window and really: no OpenVPN, the real address, the home as before."""
    check_shown_not_hidden(client, key=key)
    client.wait_no_openvpn()
    home = client.home
    home.wait_for(lambda: home.public_address(client.user) == network.REAL_ADDRESS, "the real address again")
    if before:
        before.check()


def launches(client):
    """A value that changes with every start of OpenVPN, which has a new log file; None before the first."""
    path = client.file("Documents/Quorvane/openvpn.log")
    return path.stat().st_ino if path.exists() else None


def failures_logged(client):
    """How often the client has found a failed attempt in OpenVPN's log."""
    return len(re.findall(r"stopVpn by |auth-user-pass fails", client.output()))


def accept_not_available(client, logged=None):
    """Presses OK in the message box of a failed attempt.

    By design each sign of failure in OpenVPN's log has a message box of its own. With `logged`,
    failures_logged from before the attempt, as many boxes are accepted as there have been signs since.
    """
    accepted = []
    while not accepted or (logged is not None and len(accepted) < failures_logged(client) - logged):
        # If there is another box, it shows as soon as this one is closed.
        client.home.wait_for(
            lambda: set(client.request("alert_ids", key="first")) - set(accepted),
            "the message box of the failure",
        )
        (new,) = set(client.request("alert_ids", key="first")) - set(accepted)
        assert NOT_AVAILABLE in client.alerts()
        client.dismiss_alert()
        accepted.append(new)
    client.wait({"role": "alert"}, absent=True)


def check_given_up(client, before=None, logged=None):
    """The attempt has ended: the message box shows; then nothing is hidden, in the window and in the home.

    `before` is the home before the press, which need not reach the Internet; without it the address that the
    service sees is checked. For `logged` see accept_not_available.
    """
    accept_not_available(client, logged)
    if before:
        check_shown_not_hidden(client)
        client.wait_no_openvpn()
        before.check()
    else:
        check_not_hidden(client)


def wait_lent_address_shown(client, address, key="first"):
    """The window shows the address, or none and why until the answer through the tunnel comes."""

    def shown():
        waiting = client.shows("Address notice", key)
        now = client.current_address(key)
        assert now == address or (now == "" and waiting), f"{now!r} instead of {address}, notice: {waiting}"
        return now == address

    client.home.wait_for(shown, "the lent address is shown")


def check_hidden(client, key="first"):
    """Service, gateway and window agree that the address of the last request is lent; returns it."""
    client.wait_hidden(key=key)
    served = client.world.service
    address = served.requests_of("VPNC")[-1].parameter("desiredip")
    assert client.text("State picture", key=key) == "IP hidden"
    wait_lent_address_shown(client, address, key)
    assert address in served.lent().values()
    assert client.home.public_address(client.user) == address
    assert len(client.openvpn()) == 1
    assert client.alerts(key) == []
    return address


def check_session(client, before=None, key="first"):
    """A press hides the IP, another one stops: the next session works. Returns the lent address."""
    requests = len(client.world.service.requests_of("VPNC"))
    client.hide(key)
    address = check_hidden(client, key)
    assert len(client.world.service.requests_of("VPNC")) == requests + 1, "one press, one request"
    client.stop(key)
    check_not_hidden(client, before, key)
    return address


def client_pid(home):
    """The client's process number, as seen from outside of the home."""
    (process,) = home.processes("quorvane")
    return process.pid


def memory(pid, field="VmRSS"):
    """A field of /proc/PID/status in KiB."""
    with open(f"/proc/{pid}/status", encoding="utf-8", errors="replace") as status:
        return int(re.search(rf"^{field}:\s+(\d+) kB", status.read(), re.MULTILINE).group(1))
