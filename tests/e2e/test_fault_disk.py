"""Disks that are full, read-only or without free inodes, for every file that the client writes."""

import plistlib

import pytest

from harness.conditions.disks import ShrunkDisk, SmallDisk, check_full, contents
from harness.drive import client as ui
from harness.drive import settings
from harness.observe.outcomes import (
    NO_SERVICE,
    accept_alert,
    check_given_up,
    check_hidden,
    check_not_hidden,
    check_session,
)
from world import network, service
from world.accounts import ADA
from world.service import BERLIN

FOLDER = "Documents/Quorvane"
NO_CONFIGURATION = "There is no VPN configuration to connect with. Choose a location to get a new one."
SETTINGS = {"changeIpInterval": 33, "userAgent": "mine"}
AGENT = "Library/LaunchAgents/com.qrvp.LaunchAtLogin.plist"
ENTRY = ".config/autostart/com.tallowind.Quorvane.desktop"


@pytest.fixture
def remembering(client):
    """A user with stored settings; the client is not started yet."""
    client.remember_administrator(ADA, location=BERLIN.title, **SETTINGS)
    return client


def disk_over(client, name, **settings):
    return SmallDisk(client.home, f"{client.folder}/{name}", client.user, **settings)


def log_lines(client):
    return client.output().splitlines()


def check_logged_once(client, text):
    """The log names the problem, once."""
    lines = [line for line in log_lines(client) if text in line]
    assert len(lines) == 1, lines


def check_settings_whole(client):
    stored = client.preferences()
    assert {key: stored[key] for key in SETTINGS} == SETTINGS
    assert stored["un"] == ui.scrambled(ADA.name)


def launch_lines(world):
    """The lines run as root that start a tunnel."""
    return [line for line in world.home.privileged_lines() if "--config" in line]


def check_without_configuration(world, client):
    """Without a configuration file the window says so, nothing is started, and the attempt can be stopped."""
    client.wait({"window": ui.MAIN, "role": "label", "name": NO_CONFIGURATION}, showing=True)
    assert client.text("Status line") == ui.SEARCHING and client.alerts() == []
    assert launch_lines(world) == []
    client.stop()
    check_not_hidden(client)


def check_old_configuration_used(world, client):
    """The old files still lead to a tunnel, and the window shows the address that it really has."""
    client.wait_hidden()
    assert client.current_address() == world.home.public_address()
    assert service.is_lent_address(client.current_address())
    client.stop()
    check_not_hidden(client)


@pytest.mark.slow
def test_full_disk_below_the_sessions_files(world, remembering):
    """Not even qrvp.ovpn can be written: the window says that there is no configuration."""
    client = remembering
    disk = disk_over(client, FOLDER)
    client.start()
    client.wait_ready()
    disk.fill()
    client.hide()
    check_without_configuration(world, client)
    assert len(world.service.requests_of("VPNC")) == 1 and world.service.lent() == {}
    check_settings_whole(client)
    disk.free()
    check_session(client)


def test_full_disk_without_space_for_the_log(world, remembering):
    """The guard does not start OpenVPN and cannot log why: the client sees that nothing runs."""
    client = remembering
    disk = disk_over(client, FOLDER)
    client.start()
    client.wait_ready()
    disk.fill(spare_pages=3)
    client.hide()
    check_given_up(client)
    check_logged_once(client, "openvpn.log cannot be created")
    check_logged_once(client, "stopVpn by end of openvpn")
    assert len(launch_lines(world)) == 1
    assert len(world.service.requests_of("VPNC")) == 1 and world.service.lent() == {}
    check_settings_whole(client)
    disk.free()
    address = check_session(client)
    assert f"remote {address} " in client.file(f"{FOLDER}/qrvp.ovpn").read_text(encoding="utf-8")
    assert client.file(f"{FOLDER}/openvpn.log").stat().st_size > 0


def test_disk_that_fills_up_while_the_tunnel_comes_up(world, remembering):
    """Space for OpenVPN's log is reserved: the client notices a tunnel also while the disk is full."""
    client = remembering
    disk = disk_over(client, FOLDER)
    network.swallow(f"ip daddr {network.LENT_POOL} tcp dport 443")
    client.start()
    client.choose_protocol("TCP")
    client.hide()
    world.home.wait_for(client.openvpn, "OpenVPN runs")
    disk.fill()
    check_full(world.home, f"{client.folder}/{FOLDER}", client.user)
    network.stop_swallowing()
    check_hidden(client)
    assert "Initialization Sequence Completed" in client.openvpn_log()
    client.stop()
    # Each of the old files is still complete.
    kept = contents(world.home, f"{client.folder}/{FOLDER}")
    assert kept["qrvp.ovpn"].startswith(b"client\n") and kept["qrvp.log"].startswith(b"trying to connect ")
    client.hide()
    check_old_configuration_used(world, client)
    now = contents(world.home, f"{client.folder}/{FOLDER}")
    assert {name: now[name] for name in ("qrvp.ovpn", ".vpnCreds.txt")} == {
        name: kept[name] for name in ("qrvp.ovpn", ".vpnCreds.txt")
    }
    disk.free()
    check_session(client)


@pytest.mark.slow
def test_no_room_for_one_more_file_below_the_sessions_files(world, remembering):
    """Without a free inode no file can be replaced: the old ones remain, and their configuration is used."""
    client = remembering
    disk = disk_over(client, FOLDER, files=20)
    client.start()
    client.wait_ready()
    check_session(client)
    before = contents(world.home, f"{client.folder}/{FOLDER}")
    disk.fill_with_files()
    check_full(world.home, f"{client.folder}/{FOLDER}", client.user)
    client.hide()
    check_old_configuration_used(world, client)
    after = contents(world.home, f"{client.folder}/{FOLDER}")
    # The session's own log is appended to and needs no further file; OpenVPN's has the place of the old one.
    assert after.pop("qrvp.log").startswith(before.pop("qrvp.log"))
    assert "Initialization Sequence Completed" in after.pop("openvpn.log").decode()
    before.pop("openvpn.log")
    assert after == before
    disk.free()
    check_session(client)


def test_read_only_home(world, remembering):
    """Nothing can be written: logged once at the start, an attempt lacks its configuration, no loss."""
    client = remembering
    disk = SmallDisk(world.home, client.folder, client.user, size="16m")
    logs = SmallDisk(world.home, f"{client.folder}/logs", client.user)  # for the client's output
    before = contents(world.home, client.folder)
    disk.make_read_only()
    check_full(world.home, client.folder, client.user)
    client.log_folder = logs.folder
    client.start()
    client.wait_ready()
    client.hide()
    check_without_configuration(world, client)
    check_logged_once(client, "com.tallowind.Quorvane.plist cannot be written: Read-only file system")
    after = contents(world.home, client.folder)
    assert {name: after[name] for name in before} == before
    assert set(after) - set(before) == {"logs/first.log"}
    disk.make_writable()
    check_session(client)
    check_settings_whole(client)
    assert (
        client.preferences()["countryCode"] == BERLIN.country_code
    ), "the changes that were kept in memory are on the disk"


def test_full_disk_below_the_preferences(world, remembering):
    """The file keeps its old content, and the session uses the settings in memory."""
    client = remembering
    disk = disk_over(client, "Library/Preferences", size="64k")
    before = client.file(ui.PREFERENCES).read_bytes()
    disk.fill()
    check_full(world.home, f"{client.folder}/Library/Preferences", client.user)
    client.start()
    check_session(client)
    assert client.file(ui.PREFERENCES).read_bytes() == before
    check_logged_once(client, "com.tallowind.Quorvane.plist cannot be written: No space left on device")
    disk.free()
    check_session(client)
    check_settings_whole(client)
    assert client.preferences()["vpnUsername"], "the changes that were kept in memory are on the disk"
    names = set(contents(world.home, f"{client.folder}/Library/Preferences"))
    assert names <= {
        "com.tallowind.Quorvane.plist",
        "com.tallowind.Quorvane.plist.lock",
    }, "no temporary file is left"


@pytest.mark.slow
def test_full_disk_below_what_the_settings_window_writes(world, remembering):
    """Launch agent and desktop entry: the old files remain complete, and the window keeps working."""
    client = remembering
    disks = [disk_over(client, name) for name in ("Library/LaunchAgents", ".config/autostart")]
    agent, entry = client.file(AGENT), client.file(ENTRY)
    client.start()
    client.wait_ready()
    settings.open_window(client)
    settings.switch(client, "Start Quorvane when I log in", to=True)
    assert plistlib.loads(agent.read_bytes())["RunAtLoad"] is True and "Hidden=false" in entry.read_text()
    old = agent.read_bytes(), entry.read_bytes()
    for disk in disks:
        disk.fill()
        check_full(world.home, disk.folder, client.user)
    settings.switch(client, "Start Quorvane when I log in", to=False)
    assert client.running() and (agent.read_bytes(), entry.read_bytes()) == old
    for disk in disks:
        disk.free()
    settings.switch(client, "Start Quorvane when I log in", to=True)
    settings.switch(client, "Start Quorvane when I log in", to=False)
    assert plistlib.loads(agent.read_bytes())["RunAtLoad"] is False and "Hidden=true" in entry.read_text()
    settings.close_window(client)
    check_settings_whole(client)
    check_session(client)


@pytest.mark.slow
def test_full_disk_below_temporary_files(world, remembering):
    """The answer with the server list cannot be stored: the usual message box, and the next start works."""
    client = remembering
    disk = ShrunkDisk(world.home, "/tmp", "1m")
    disk.fill()
    check_full(world.home, "/tmp", client.user)
    client.start()
    accept_alert(client, NO_SERVICE)
    assert client.current_address() == "0.0.0.0" and not client.button_state()["enabled"]
    assert client.text("Status line") == ui.NOT_HIDING
    assert not list(world.home.path("/tmp").glob("*MRTSL*")), "no part of an answer is left"
    client.terminate()
    disk.free()
    client.start(key="next")
    check_session(client, key="next")
    check_settings_whole(client)


@pytest.mark.slow
def test_full_disk_below_the_run_time_folder(world, make_client):
    """Without space for a lock file, the lock is in the cache folder: still one copy at a time."""
    disk = SmallDisk(world.home, f"/run/user/{world.home.uid('joe')[0]}", "joe", files=30)
    client = make_client(world)
    client.remember_administrator(ADA, location=BERLIN.title)
    disk.fill_with_files()
    check_full(world.home, disk.folder, client.user)
    client.start()
    client.wait_ready()
    client.start(key="second")
    assert client.wait_alert(key="second")["texts"][0] == "Quorvane is already running."
    client.dismiss_alert(key="second")
    assert client.wait_exit(key="second") == 0
    check_session(client)
    assert plistlib.loads(client.file(ui.PREFERENCES).read_bytes())
