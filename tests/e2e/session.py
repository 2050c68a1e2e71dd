#!/usr/bin/python3
"""session.py [--headless] --out FOLDER: a session in the test network, for ./run.

Runs inside of world/enter.py. On the caller's screen the user operates the client, and this program ends with
it. Without a screen, or with --headless, the session is driven through accessibility, pictures are saved in
FOLDER and a summary is printed. The exit status is 0 only if everything in the summary is true.
"""

import argparse
import os
import sys
import time
from pathlib import Path

import pictures
from harness.drive import client as ui
from harness.drive.display import Display, caller_cookie
from world import network, service
from world.accounts import ADA, JOE
from world.world import World

DEFERRED_END = 86400


class Broken(Exception):
    """A check of the session failed."""


def check(holds, what):
    if not holds:
        raise Broken(what)


def line(name, value):
    print(f"{name + ':':<34} {value}", flush=True)


def milliseconds(begin, end):
    return f"{(end - begin) * 1000:.0f} ms"


def give_to_owner(folder):
    """Makes the user who called sudo the owner of the pictures."""
    if "SUDO_UID" in os.environ:
        identity = int(os.environ["SUDO_UID"]), int(os.environ["SUDO_GID"])
        for path in (folder, *folder.iterdir()):
            os.chown(path, *identity)


# --- on the caller's screen ---------------------------------------------------------------------------


def by_hand(world, client):
    print(
        f"""
The client is on your screen, as {JOE.full_name}, who is no administrator. When it requests one, enter
    user name   {ADA.name}   (or: {ADA.full_name})
    password    {ADA.password}
The real address of this home is {network.REAL_ADDRESS}. Quit the client to end.
""",
        flush=True,
    )
    client.start()
    status = client.wait_exit(timeout=DEFERRED_END)
    client.wait_no_openvpn()
    check(status == 0, f"the client ended with {status}")
    check(
        world.home.public_address() == network.REAL_ADDRESS, "the home does not have its real address again"
    )
    line("after the end", f"real IP {network.REAL_ADDRESS} again, no OpenVPN process left")


def screen_of_the_caller():
    """(number, cookie) of a usable screen; None, with a message, when there is none."""
    name = os.environ.get("DISPLAY", "")
    if not name:
        return None
    found = caller_cookie(name)
    if found is None:
        print(f"the display {name} cannot be reached from inside; continuing without it", flush=True)
    return found


# --- by itself ----------------------------------------------------------------------------------------


def check_shown(world, client):
    """The window, the request and the service agree on the lent address; returns it and its location."""
    shown = client.current_address()
    requested = world.service.requests_of("VPNC")[-1].parameter("desiredip")
    seen = world.home.public_address()
    check(service.is_lent_address(shown), f"the window shows {shown!r}, which is no lent address")
    check(shown == requested, f"the window shows {shown}, but {requested} was requested")
    check(seen == requested, f"inet saw {seen}, but {requested} was requested")
    check(
        world.service.requests()[-1].peer == seen, "the service did not log the address that it answered with"
    )
    place = service.location_of(requested)
    check(
        client.text("Location") == place.title, f"the window shows the location {client.text('Location')!r}"
    )
    return requested, place


def check_stopped(world, client):
    client.wait_no_openvpn()
    seen = world.home.public_address()
    check(seen == network.REAL_ADDRESS, f"after the stop inet saw {seen}")
    check(client.current_address() == seen, f"after the stop the window shows {client.current_address()}")


def by_itself(world, client):
    client.start()
    client.enter_administrator(ADA.name, ADA.password)
    client.wait_dialog_closed()
    # After a valid name and password, with the right name servers, the first session starts by itself.
    client.wait_hidden()
    check_shown(world, client)
    client.stop()
    check_stopped(world, client)
    line("real IP", network.REAL_ADDRESS)
    watch = ui.OpenVpnWatch(client)
    pressed = client.hide()
    client.wait(ui.label("Status line"), name=ui.SEARCHING)
    shown = client.wait_hidden()["at"]
    watch.stop()
    address, place = check_shown(world, client)
    check(watch.up is not None, "OpenVPN's log does not report that the tunnel is up")
    line("location", place.title)
    line("lent IP, window, request and inet", address)
    line("from press to shown", milliseconds(pressed, shown))
    line("  of this OpenVPN's own", milliseconds(watch.started, watch.up))

    client.stop()
    check_stopped(world, client)
    line("after the stop", f"real IP {network.REAL_ADDRESS} again, no OpenVPN process left")
    client.terminate()


def run(headless, out):
    begun = time.monotonic()
    screen = None if headless else screen_of_the_caller()
    world = World(x11="/tmp/.X11-unix" if screen else None)
    display = Display(world.home, JOE.name, *screen) if screen else None
    if display is not None and not display.usable():
        print("the caller's display refuses connections; continuing without it", flush=True)
        world.close()
        return run(True, out)
    client = ui.Client(world, JOE.name, display=display)
    line("test network made in", milliseconds(begun, time.monotonic()))
    try:
        if screen:
            by_hand(world, client)
        else:
            by_itself(world, client)
        client.close()
        taken = [] if screen else [name for scale in (1, 2) for name in pictures.take(world, out, scale)]
        status = world.close()
        check(status == 0, f"the service ended with {status}: {service.Service.STATUS}")
    except BaseException:
        keep_evidence(world, client, out)
        raise
    finally:
        if out.is_dir():
            give_to_owner(out)
    if not screen:
        line("pictures", f"{len(taken)} in {out}")
    return 0


def keep_evidence(world, client, out):
    """Saves logs and a picture of a failure; any of them can be missing by then."""
    try:
        out.mkdir(parents=True, exist_ok=True)
        (out / "client.log").write_text(client.output(), encoding="utf-8")
        (out / "openvpn.log").write_text(client.openvpn_log(), encoding="utf-8")
        client.display.screenshot(out / "failed.png")
        world.save_logs(out / "world")
    except (OSError, RuntimeError, ValueError, ui.DriverError) as error:
        print(f"not all logs could be kept: {error}", file=sys.stderr)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--headless", action="store_true")
    parser.add_argument("--out", type=Path, required=True)
    arguments = parser.parse_args()
    try:
        return run(arguments.headless, arguments.out)
    except (AssertionError, Broken, TimeoutError, RuntimeError, ui.DriverError) as error:
        print(f"FAILED: {error}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        return 130


if __name__ == "__main__":
    sys.exit(main())
