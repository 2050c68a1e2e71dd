"""Ends at random moments of a start: no guard and no OpenVPN remains, and none comes up later."""

import os
import random
import threading
import time

import pytest

from harness.drive import client as ui
from harness.drive.keyboard import CONTROL, F1, SHIFT, Keyboard, OtherWindow
from harness.drive.tray import TrayIcon
from harness.home.deadlines import POLL
from harness.observe import figures, outcomes
from world import network, service
from world.accounts import ADA
from world.service import BERLIN

# Preferences hold tags: "Ctrl + F1" and "Shift + F1".
KEYS = {"changeIpHotKey": 41, "stopHideIpHotKey": 57}
CHANGE, STOP = (CONTROL, F1), (SHIFT, F1)
GUARD = "openvpn-guard"
LATEST = 3  # seconds from the begin of an attempt to its end, at most
# Ends that begin another attempt; the other ones leave the client without a tunnel.
BEGIN_ANEW = ("change", "location")
# The ends of one round, in a random order. One more of BEGIN_ANEW and a stop follow.
ROUND = BEGIN_ANEW * 2 + ("stop", "reset", "quit", "terminate")
SEED = "QUORVANE_E2E_SEED"  # a variable with the seed of an earlier run, to repeat it


class Tunnels:
    """Root's guards and OpenVPN processes in the home, which a thread looks at all the time."""

    def __init__(self, home):
        self._home = home
        self._over = threading.Event()
        self._known = set()
        self.started = []  # when each OpenVPN was seen first
        self.at_once = set()  # OpenVPN processes that ran beside each other
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def running(self):
        """Every process of a tunnel; not those that are dead already."""
        return [
            process
            for process in self._home.processes()
            if process.name in ("openvpn", GUARD) and process.uid == 0 and process.command
        ]

    def openvpn(self):
        """The numbers of the OpenVPN processes. A guard has their name until it has changed its own."""
        return {
            process.pid
            for process in self.running()
            if process.name == "openvpn" and process.command[0] != ui.PROGRAM_OF_GUARD
        }

    def _watch(self):
        before = set()
        while not self._over.wait(POLL):
            now = self.openvpn()
            self.started += [time.monotonic()] * len(now - self._known)
            self._known |= now
            if len(now & before) > 1:  # in two looks: one may end while the other one starts
                self.at_once |= now & before
            before = now

    def close(self):
        self._over.set()
        self._thread.join()


class Ends:
    """A client whose attempts are ended at random moments, in the ways of `ROUND`."""

    def __init__(self, world, client, seed):
        self.client = client
        self.random = random.Random(seed)
        self.tray, self.tunnels = TrayIcon(client), Tunnels(world.home)
        self.tray.appear()
        client.start_ready(ADA, location=BERLIN.title, **KEYS)
        self.keyboard = Keyboard(client.display)
        self._announce_keyboard()
        self.begun = None  # when the present attempt began; None without one
        self.done = []  # kind and moment of every end
        self.first_start = self.longest_start = 0
        self.lost_requests = 0  # requests without an answer of the present copy
        self._measure_start()

    @property
    def home(self):
        return self.client.home

    def _announce_keyboard(self):
        """The X server announces a keyboard at its first key; a press of a hot key is lost meanwhile."""
        other = OtherWindow(self.client.display)
        self.keyboard.strike(*STOP[:1])
        self.home.wait_for(other.presses, "a key reaches the other window")
        self.client.request("round_trips", key="first", count=20)

    def _measure_start(self):
        """A whole session, for the time from a press to the process of OpenVPN."""
        self.press()
        self.home.wait_for(lambda: self.tunnels.started, "OpenVPN runs")
        self.first_start = self.longest_start = self.tunnels.started[0] - self.begun
        self.client.wait_hidden()
        self.finish("stop")

    # --- the state of the client

    def press(self):
        self.client.wait_ready()
        self.begun = self.client.press(ui.HIDE)
        self.client.wait(ui.HIDE, enabled=False)  # the click was handled

    def _status(self):
        return self.client.text("Status line")

    def _runs_command(self):
        """A command as administrator runs, as at the begin of an attempt, which the window does not show."""
        return any(process.name in ("su", "sudo") for process in self.home.processes())

    def _idle(self):
        """The window shows not hidden, and no attempt is under way."""
        return (
            not self._runs_command()
            and self._status() == ui.NOT_HIDING
            and self.client.button_state()["enabled"]
            and not self.client.dialog_open()
            and not self._runs_command()
            and self._status() == ui.NOT_HIDING
        )

    def _stop_unless_idle(self):
        """Strikes the key for a stop when there is something to stop; true when the client is idle."""
        if self._status().startswith(ui.HIDING):
            self.keyboard.strike(*STOP)
        return self._idle()

    def dismiss_overlap(self):
        """Dismisses the alert of an attempt whose request was made while the tunnel before it came up.

        By design a choice of a location ends that tunnel only when its own request has begun. A request that
        went into the tunnel has no answer then, and a fixed location is not tried again. True if it was so.
        """
        lost = self.client.output().count("Certificate nil")
        if lost == self.lost_requests or not self.client.alerts():
            return False
        self.lost_requests = lost
        assert self.client.alerts() == [outcomes.NOT_AVAILABLE], self.done
        self.client.dismiss_alert()
        return True

    def check_one(self):
        """The attempt ends well: the lent address shows, with one guard and one OpenVPN."""
        served = self.client.world.service

        def shown():
            if self.dismiss_overlap() and self._idle():  # else another attempt has begun since
                self.press()
            address = self.client.current_address()
            return (
                self._status().startswith(ui.HIDING)
                and service.is_lent_address(address)
                and address == served.requests_of("VPNC")[-1].parameter("desiredip")
                and address in served.lent().values()
            )

        self.home.wait_for(shown, "the lent address of the last request shows")
        self.home.wait_for(lambda: len(self.tunnels.running()) <= 2, "the guard of the last tunnel is gone")
        assert sorted(process.name for process in self.tunnels.running()) == ["openvpn", GUARD]

    def check_none(self):
        """Nothing of a tunnel runs, and nothing starts in the time that a start takes."""
        self.home.wait_for(lambda: not self.tunnels.running(), "no guard and no OpenVPN is left")
        started, end = len(self.tunnels.started), time.monotonic() + self.longest_start
        while time.monotonic() < end:
            time.sleep(POLL)
            assert self.tunnels.running() == [], self.done
        assert len(self.tunnels.started) == started, self.done
        assert not self.tunnels.at_once, ("more than one OpenVPN ran at a time", self.done)
        assert self.home.public_address() == network.REAL_ADDRESS

    # --- the ends

    def end(self, kind):
        """Ends the attempt, or begins one first, at a random moment."""
        if self.begun is None:
            self.press()
        # Two of three moments are about the launch, where an end can miss a process.
        begin, end = self.random.choice(
            ((0, LATEST), *2 * [(0.3 * self.first_start, 1.1 * self.first_start)])
        )
        moment = self.random.uniform(begin, end)
        time.sleep(max(0, self.begun + moment - time.monotonic()))  # the moment is what the test is about
        self.done.append(f"{kind} after {moment:.2f} s")
        if kind in BEGIN_ANEW:
            self.begun = time.monotonic()
            getattr(self, kind)()
        else:
            self.finish(kind)

    def finish(self, kind):
        """An end that leaves no attempt."""
        getattr(self, kind)()
        starts = [started - self.begun for started in self.tunnels.started if started > self.begun]
        self.longest_start = max([self.longest_start, *starts[:1]])
        self.check_none()
        self.begun = None
        if kind in ("quit", "terminate"):
            self.lost_requests = 0  # of the new copy
            self.client.start()
            self.client.wait_ready()
            self.tray.wait_item()
        self.dismiss_overlap()
        assert self.client.alerts() == [], self.done

    def change(self):
        self.keyboard.strike(*CHANGE)

    def location(self):
        self.tray.submenu("Location")  # it is filled when it is opened
        self.tray.click(self.random.choice(service.LOCATIONS).title, submenu="Location")

    def stop(self):
        """The key for a stop has no effect while the client searches; it is then struck again."""
        self.keyboard.strike(*STOP)
        self.home.wait_for(self._stop_unless_idle, "the client is idle after the stop")

    def _change_password(self, password):
        self.home.run("chpasswd", "-c", "SHA512", input=f"{ADA.name}:{password}\n")

    def _refusals(self):
        return sum(
            "Apple script error: " in line and "(null)" not in line
            for line in self.client.output().splitlines()
        )

    def reset(self):
        """The administrator's password is not valid until a command was refused, which resets the session."""
        before = self._refusals()
        self._change_password("another")

        def refused():
            if self.dismiss_overlap() and self._idle():  # the attempt gave up before its first command
                self.begun = self.client.press(ui.HIDE)
            self._stop_unless_idle()
            return self._refusals() > before

        self.home.wait_for(refused, "a command as administrator was refused")
        self._change_password(ADA.password)

        def idle():
            if self.client.dialog_open():  # the pair was tested while it was not valid
                self.client.press(ui.button("Cancel", ui.DIALOG))
                self.client.wait_dialog_closed()
            return self._stop_unless_idle()

        self.home.wait_for(idle, "the client is idle after the reset")

    def quit(self):
        self.tray.click("Quit Quorvane")
        assert self.client.wait_exit() == 0

    def terminate(self):
        self.client.terminate()


def ends(world, client, rounds):
    seed = int(os.environ.get(SEED) or random.SystemRandom().randrange(2**32))
    figures.record("seed", seed)
    one = Ends(world, client, seed)
    try:
        for _ in range(rounds):
            for kind in one.random.sample(ROUND, len(ROUND)):
                one.end(kind)
            one.end(one.random.choice(BEGIN_ANEW))
            one.check_one()
            one.done.append("stop while hidden")
            one.finish("stop")
    finally:
        one.tunnels.close()
        figures.record("ends", one.done)
    figures.record("number of ends", len(one.done))
    figures.record("longest time from a press to OpenVPN, seconds", one.longest_start)


def test_twenty_ends(world, client):
    ends(world, client, rounds=2)


@pytest.mark.slow
def test_two_hundred_ends(world, client):
    ends(world, client, rounds=20)
