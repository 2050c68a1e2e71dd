"""Strangers attack the ports of the VPN servers: every honest session comes up nevertheless."""

import re
import statistics
import time

from harness.conditions import service_api, strangers
from harness.observe import figures, outcomes
from world import network

SESSIONS = 10


def come_up(world, protocol, what):
    """Ten sessions, one after the other, all of which must come up."""
    seconds = [strangers.session(world, protocol) for _ in range(SESSIONS)]
    good = [each for each in seconds if each is not None]
    if good:
        figures.record(f"{what}: median seconds until a session is up", round(statistics.median(good), 2))
    assert len(good) == SESSIONS, f"{len(good)} of {SESSIONS} sessions came up"


def test_garbage_from_a_thousand_sources(world):
    log = world.service.runtime / "udp.log"
    size, begun = log.stat().st_size, time.monotonic()
    with strangers.datagrams() as attack:
        come_up(world, "udp", "5,000 datagrams of garbage a second")
    seconds, grown = time.monotonic() - begun, log.stat().st_size - size
    figures.record("KiB a second that the attack adds to the log of OpenVPN", round(grown / seconds / 1024))
    # A burst may be as large as what four seconds allow.
    assert grown < 65536 * (seconds + 4), "the log has an end"
    figures.record("datagrams of garbage a second", attack["a second"])
    assert attack["a second"] > 4000, "the attack was as strong as intended"


def test_copies_of_a_right_first_datagram(world):
    """A stranger with a configuration can send its first datagram from any number of invented sources."""
    user, _password = service_api.credentials(world.home)
    target = service_api.configuration_target(user, strangers.TARGET)
    configuration = service_api.configuration_of(service_api.get(world.home, target))
    datagram = strangers.first_datagram(world, configuration)
    assert datagram[0] >> 3 == 10, "it begins a session of tls-crypt-v2"
    file = world.folder / "first-datagram"
    file.write_bytes(datagram)
    server = int(re.search(r'"vpnsrv",pid=(\d+)', network.inside(network.GATEWAY, "ss", "-Hlunp").stdout)[1])
    assert strangers.session(world, "udp") is not None
    memory = outcomes.memory(server)
    with strangers.datagrams(file=file) as attack:
        come_up(world, "udp", "5,000 copies of a first datagram a second")
    assert attack["a second"] > 4000, "the attack was as strong as intended"
    assert outcomes.memory(server) - memory < 4096, "nothing is stored for them"


def test_idle_connections_from_fifty_addresses(world):
    with strangers.idle_connections() as attack:
        come_up(world, "tcp", "beside 5,000 idle TCP connections")
        come_up(world, "udp", "beside 5,000 idle TCP connections, over UDP")
    figures.record("idle TCP connections that were open at once", attack["most at once"])
    assert attack["tried"] >= 5000 and attack["connected"] > 0, "the attack was as strong as intended"
