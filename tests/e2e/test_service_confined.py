"""A stranger who takes over the process that answers requests gets nothing else of the machine."""

import ctypes
import errno
import re
import signal
import subprocess
from pathlib import Path

import pytest

from harness.conditions import roles, service_api
from harness.observe.outcomes import check_hidden
from world.accounts import ADA

HOOK = Path(__file__).parent / "harness" / "planted" / "hook.cpp"
REFUSED = {errno.EPERM, errno.EACCES}
TRIGGER = "/?cmd=MRTSL&ver=1&device=1&systamp=1&uniqueid=/planted"
# What only Landlock refuses; a kernel may have been built without it.
BY_LANDLOCK = {"write", "memory"}
CREATE_RULESET, VERSION = 444, 1
RATES = ("requests", "connections", "handshakes")


def landlock():
    """The version of the kernel's Landlock; less than 1 when it has none."""
    return ctypes.CDLL(None).syscall(CREATE_RULESET, None, ctypes.c_size_t(0), VERSION)


@pytest.fixture(name="hook", scope="module")
def fixture_hook(tmp_path_factory):
    """The attacker's code, as a library to preload."""
    library = tmp_path_factory.mktemp("planted") / "hook.so"
    command = ["c++", "-std=c++20", "-O1", "-shared", "-fPIC", "-o", library, HOOK, "-ldl"]
    subprocess.run(command, check=True)
    return library


def plant(world, attacked, hook, keys, other):
    """Starts the service with the attacker's code in it. `other` is a process of the same user."""
    attacked.environment = {
        "LD_PRELOAD": str(hook),
        "PLANTED_KEYS": ":".join(map(str, keys)),
        "PLANTED_FILE": str(world.folder / "planted"),
        "PLANTED_PROCESS": str(other.pid),
        "PLANTED_SOCKET": str(attacked.runtime / "control.sock"),
    }
    attacked.start()


def attempts(world, attacked):
    """Lets the attacker's code run; returns the error of each attempt by its name."""
    begin = attacked.output.stat().st_size
    assert service_api.get(world.home, TRIGGER).startswith("STATUS")

    def reported():
        text = attacked.output.read_bytes()[begin:].decode()
        return dict(re.findall(r"^planted (\S+) (\d+)$", text, re.MULTILINE))

    world.home.wait_for(lambda: "end" in reported(), "all attempts were made")
    return {name: int(error) for name, error in reported().items() if name != "end"}


def key_files(world, api):
    certificate_key = api.certificate[1]
    return [certificate_key, *(world.folder / "shared" / name for name in roles.KEYS)]


def test_taken_over_process_reaches_nothing(world, client, hook):
    """Every attempt fails in the process that answers requests, and it still does its work."""
    with roles.divided(world) as gateway:
        api = world.service
        api.stop()
        plant(world, api, hook, key_files(world, api), gateway)
        assert api.control("status")["confined"]
        made = attempts(world, api)
        assert len(made) == 27
        succeeded = {name for name, error in made.items() if error not in REFUSED}
        assert succeeded <= (set() if landlock() > 0 else BY_LANDLOCK)
        assert (world.folder / "planted").exists() == ("write" in succeeded)
        client.start_hidden(ADA)
        check_hidden(client)
        client.stop()


def test_attempts_succeed_without_confinement(world, hook):
    """The same code in a service that does everything: what fails above fails for no other reason."""
    world.service.stop()
    with subprocess.Popen(["sleep", "infinity"]) as other:
        plant(world, world.service, hook, [world.service.certificate[1]], other)
        assert not world.service.control("status")["confined"]
        made = attempts(world, world.service)
        other.kill()
    assert "execute" not in made, "the child has executed it"
    assert set(made.values()) == {0}


def test_logs_turn_over_in_the_confined_process(world):
    """By size, and after SIGHUP when another program has renamed the log."""
    with roles.divided(world):
        api = world.service
        api.stop()
        limits = {"per_caller": {f"{name}_per_second": 0 for name in RATES}}
        before = api.configure(log={"file_bytes": 65536, "copies": 2}, limits=limits)
        api.start()
        copy = api.request_log.with_name(api.request_log.name + ".1")
        while not copy.exists():
            service_api.get(world.home, "/ip")
        renamed = api.request_log.with_name("renamed")
        api.request_log.rename(renamed)
        api.process.send_signal(signal.SIGHUP)
        world.home.wait_for(api.request_log.exists, "the log is opened again")
        service_api.get(world.home, "/ip")
        assert len(api.requests()) == 1
        api.stop()
        api.configure(**before)
        api.start()
