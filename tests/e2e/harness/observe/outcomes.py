"""What is to be seen after a fault, and that the next session works."""

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
SERVICE_TROUBLE = {
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


def take_alert(client, wanted, timeout):
    """Waits for this alert, alone, and presses its OK."""
    client.wait_alert(timeout)
    shown = client.alerts()
    assert shown == [wanted], shown
    client.dismiss_alert()
    client.wait({"role": "alert"}, 10, absent=True)


class HomeState:
    """What a session changes at home and must give back: routes, links, firewall, name servers."""

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

    def check(self, timeout=10):
        """Waits until all is as it was. An ended OpenVPN's device takes a moment to go."""
        with contextlib.suppress(TimeoutError):
            self._home.wait_for(lambda: self._now() == self.value, timeout, "the home is as before")
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
    """Shown, and so it is: no OpenVPN, the real address to the outside, and the home as before."""
    check_shown_not_hidden(client, key=key)
    client.wait_no_openvpn()
    home = client.home
    home.wait_for(
        lambda: home.public_address(client.user) == network.REAL_ADDRESS, 10, "the real address again"
    )
    if before:
        before.check()


def launches(client):
    """What is another with every start of OpenVPN, None before the first: its log is made anew."""
    path = client.file("Documents/Quorvane/openvpn.log")
    return path.stat().st_ino if path.exists() else None


def failures_noted(client):
    """How often the client has read in OpenVPN's log that an attempt failed."""
    return len(re.findall(r"stopVpn by |auth-user-pass fails", client.output()))


def take_not_available(client, timeout, noted=None):
    """Presses OK in the alert of a failed attempt, or in as many as there are signs of failure."""
    taken = []
    while not taken or (noted is not None and len(taken) < failures_noted(client) - noted):
        # The next one, where there is one, shows as soon as this one is closed.
        client.home.wait_for(
            lambda: set(client.ask("alert_ids", key="first")) - set(taken),
            10 if taken else timeout,
            "an alert",
        )
        (fresh,) = set(client.ask("alert_ids", key="first")) - set(taken)
        assert NOT_AVAILABLE in client.alerts()
        client.dismiss_alert()
        taken.append(fresh)
    client.wait({"role": "alert"}, 10, absent=True)


def check_given_up(client, before=None, timeout=ui.FAILURE, noted=None):
    """The attempt ended: the alert, then window and home as they are when nothing is hidden.

    `before`: the home before the press, which need not reach the outside; without it the outside is asked instead.
    By design each sign of failure in OpenVPN's log has an alert of its own; `noted`: failures_noted before the press.
    """
    take_not_available(client, timeout, noted)
    if before:
        check_shown_not_hidden(client)
        client.wait_no_openvpn()
        before.check()
    else:
        check_not_hidden(client)


def check_hidden(client, key="first"):
    """Hidden behind the address that was asked for last: service, gateway and window agree on it. That address."""
    client.wait_hidden(key=key)
    served = client.world.service
    address = served.requests_of("VPNC")[-1].parameter("desiredip")
    assert client.text("State picture", key=key) == "IP hidden"
    assert client.current_address(key) == address
    assert address in served.lent().values()
    assert client.home.public_address(client.user) == address
    assert len(client.openvpn()) == 1
    assert client.alerts(key) == []
    return address


def check_session(client, before=None, key="first"):
    """A press of the button: hidden, and back; so the next session works. The address that was lent."""
    asked = len(client.world.service.requests_of("VPNC"))
    client.hide(key)
    address = check_hidden(client, key)
    assert len(client.world.service.requests_of("VPNC")) == asked + 1, "one press, one request"
    client.stop(key)
    check_not_hidden(client, before, key)
    return address


def client_pid(home):
    """The client's process, as seen from outside of the home."""
    (process,) = home.processes("quorvane")
    return process.pid


def memory(pid, field="VmRSS"):
    """A figure of /proc/PID/status in KiB."""
    with open(f"/proc/{pid}/status", encoding="utf-8", errors="replace") as status:
        return int(re.search(rf"^{field}:\s+(\d+) kB", status.read(), re.MULTILINE).group(1))
