"""Runs pytest again inside the test network's outer namespace."""

import os
import sys
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parent.parent / "e2e")]

import pytest  # noqa: E402 # pylint: disable=wrong-import-position

from harness.drive.client import Client  # noqa: E402 # pylint: disable=wrong-import-position
from harness.observe import evidence  # noqa: E402 # pylint: disable=wrong-import-position
from installed import Machine  # noqa: E402 # pylint: disable=wrong-import-position
from layers import PACKAGES, layers, package_file  # noqa: E402 # pylint: disable=wrong-import-position
from world import enter  # noqa: E402 # pylint: disable=wrong-import-position
from world.service import Service  # noqa: E402 # pylint: disable=wrong-import-position
from world.world import World  # noqa: E402 # pylint: disable=wrong-import-position


def pytest_configure(config):
    if enter.inside():
        return
    # pytest has redirected the output already; the run inside needs the real one.
    capture = config.pluginmanager.getplugin("capturemanager")
    if capture is not None:
        capture.stop_global_capturing()
    program = str(Path(enter.__file__).resolve())
    os.execv(enter.PYTHON, [enter.PYTHON, program, "--", enter.PYTHON, "-m", "pytest", *sys.argv[1:]])


@pytest.fixture(name="debs", scope="session")
def fixture_debs():
    """The folder with the packages."""
    return Path(os.environ["QUORVANE_DEBS"])


@pytest.fixture(name="machine")
def fixture_machine(debs, tmp_path):
    """A bare Debian with what the packages depend on, and without them."""
    bare, _tools = layers(debs)
    with Machine(bare.lower, tmp_path) as made:
        yield made


@pytest.fixture(name="installed", scope="session")
def fixture_installed(debs, tmp_path_factory):
    """The files of a machine with both packages and the tests' programs, as "lowerdir" has them."""
    _bare, tools = layers(debs)
    folder = tmp_path_factory.mktemp("installed")
    with Machine(tools.lower, folder) as machine:
        machine.install(*(package_file(debs, name) for name in PACKAGES))
    return f"{machine.upper}:{tools.lower}"


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    outcome = yield
    setattr(item, f"report_{call.when}", outcome.get_result())


@pytest.fixture(name="client")
def fixture_client(request, installed):
    """A user's session on that machine, with the installed service in the Internet."""
    world = World(root=installed)
    client = Client(world, "joe")
    yield client
    report = getattr(request.node, "report_call", None)
    if report is not None and report.failed:
        evidence.of_client(client, request.node)
        evidence.of_world(world, request.node)
    client.close()
    status = world.close()
    assert status == 0, f"the service ended with {status}: {Service.STATUS}"
