"""Starting: a second copy, --version, the environment."""

import plistlib
import threading

from harness.drive import client as ui
from world import home, network
from world.accounts import ADA


def test_second_copy(world, client):
    client.remember_administrator(ADA, location="Netherlands Amsterdam")
    first = client.start()
    client.hide()
    client.wait_hidden()
    before = world.service.requests()

    client.start(key="second")
    alert = client.wait_alert(key="second")
    assert alert["texts"] == [
        "Quorvane is already running.",
        "There is already a copy of Quorvane running. This copy cannot be opened until that "
        "instance is quit.",
    ]
    assert alert["buttons"] == ["OK"]
    client.dismiss_alert(key="second")
    assert client.wait_exit(key="second") == 0

    assert client.running() and client.text("Status line").startswith(ui.HIDING)
    assert len(client.openvpn()) == 1
    assert world.service.requests() == before, "the second copy sends no request"
    assert world.home.public_address() != network.REAL_ADDRESS
    assert [process.name for process in world.home.processes("quorvane")] == ["quorvane"]
    assert first["pid"] > 0


def test_press_waits_for_the_window_manager(world, client):
    """A test clicks on a window only when it is on the screen, although the client can be ready before."""
    client.remember_administrator(ADA, location="Netherlands Amsterdam")
    client.display.pause_manager()
    client.start()
    client.wait_ready()
    later = threading.Timer(1, client.display.continue_manager)
    later.start()
    client.hide()
    later.join()
    client.wait_hidden()
    assert len(world.service.requests_of("VPNC")) == 1


def test_version_without_a_display(world):
    version = plistlib.loads(world.home.path(f"{home.CONTENTS}/Info.plist").read_bytes())["CFBundleVersion"]
    done = world.home.run(ui.PROGRAM, "--version", user="joe")
    assert (done.stdout, done.stderr) == (version + "\n", "")
    assert world.service.requests() == []
    assert not world.home.path("/home/joe/Library").exists()


def test_version_beside_a_running_copy(world, client):
    client.start_ready(ADA)
    done = world.home.run(ui.PROGRAM, "--version", user="joe")
    assert done.returncode == 0 and client.running()


def test_version_counts_as_first_argument_only(world, client):
    client.remember_administrator(ADA)
    client.start("-hide", "--version")
    world.home.wait_for(lambda: world.service.requests_of("MRTSL"), "the list is requested")
    assert client.running()
    assert len(world.service.requests_of("MRTSL")) == 1


def test_hidden_flag_at_the_start(world, client):
    """With the preference "hide" a session starts by itself."""
    client.remember_administrator(ADA, location="Netherlands Amsterdam", hide=True)
    client.start()
    client.wait_hidden()
    assert client.current_address() in world.service.lent().values()
    assert world.home.public_address() == client.current_address()


def test_german_user(world, client):
    """The translation in the contents folder is used, and the requests to the service do not depend on it."""
    client.remember_administrator(ADA)
    client.start(environment={"LC_ALL": "de_DE.UTF-8"})
    client.wait(ui.label("Statuszeile"), name="WARNUNG! IHRE ECHTE IP IST DERZEIT NICHT VERBORGEN!")
    hide = {"window": ui.MAIN, "description": "Verbirgt Ihre echte IP"}
    client.wait(hide, enabled=True)
    client.press(hide)
    client.wait(
        ui.label("Statuszeile"),
        name=f"Ihre echte IP {network.REAL_ADDRESS} ist derzeit verborgen",
    )
    assert world.home.public_address() in world.service.lent().values()
