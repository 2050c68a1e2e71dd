"""Runs pytest inside the test network's outer namespace.

Fixtures for the networks and clients of the tests.
"""

import os
import sys
from pathlib import Path

import pytest

from harness.drive.client import Client
from harness.drive.tray import TrayIcon
from harness.observe import evidence
from world import enter
from world.service import Service
from world.world import World


def pytest_configure(config):
    config.addinivalue_line("markers", "slow: skipped unless QUORVANE_FULL is set (./check --full)")
    if enter.inside():
        return
    # pytest has redirected the output already; the run inside needs the real one.
    capture = config.pluginmanager.getplugin("capturemanager")
    if capture is not None:
        capture.stop_global_capturing()
    program = str(Path(enter.__file__).resolve())
    os.execv(enter.PYTHON, [enter.PYTHON, program, "--", enter.PYTHON, "-m", "pytest", *sys.argv[1:]])


def pytest_collection_modifyitems(items):
    if os.environ.get("QUORVANE_FULL"):
        return
    for item in items:
        if item.get_closest_marker("slow"):
            item.add_marker(pytest.mark.skip(reason="slow: only with ./check --full"))


def pytest_runtest_logreport(report):
    """Appends one line for each test to the file QUORVANE_E2E_RESULTS, which ./check shows."""
    results = os.environ.get("QUORVANE_E2E_RESULTS")
    if not results or (report.when != "call" and report.passed):
        return
    left_out = report.skipped and "slow:" in str(report.longrepr)
    outcome = "left out (slow)" if left_out else f"{report.outcome}, {report.duration:.1f} s"
    with Path(results).open("a", encoding="utf-8") as file:
        program, _, test = report.nodeid.partition("::")
        file.write(f"{Path(program).name}::{test}: {outcome}\n")


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    outcome = yield
    setattr(item, f"report_{call.when}", outcome.get_result())


def _failed(request):
    report = getattr(request.node, "report_call", None)
    return report is not None and report.failed


@pytest.fixture
def make_world(request):
    """Makes the test's network with other settings than the usual ones. One per test."""
    made = []

    def make(**settings):
        made.append(World(**settings))
        return made[-1]

    yield make
    for one in made:
        if _failed(request):
            evidence.of_world(one, request.node)
        status = one.close()
        assert status == 0, f"the service ended with {status}: {Service.STATUS}"


@pytest.fixture
def world(make_world):  # pylint: disable=redefined-outer-name
    return make_world()


@pytest.fixture
def make_client(request):
    """Starts a session of a user, with a screen and a driver of its own."""
    made = []

    def make(world, user="joe"):  # pylint: disable=redefined-outer-name
        made.append(Client(world, user))
        return made[-1]

    yield make
    for client in made:
        if _failed(request):
            evidence.of_client(client, request.node)
        client.close()


@pytest.fixture(scope="module")
def shared_client():
    """A network and a session with a tray for all tests of a file which leave both as they were."""
    one = World()
    user = Client(one, "joe")
    TrayIcon(user).appear()
    yield user
    user.close()
    status = one.close()
    assert status == 0, f"the service ended with {status}: {Service.STATUS}"


@pytest.fixture
def shared(request, shared_client):  # pylint: disable=redefined-outer-name
    """The file's client for one test. After a failed test the running copy is ended."""
    yield shared_client
    if _failed(request):
        evidence.of_client(shared_client, request.node)
        evidence.of_world(shared_client.world, request.node)
        shared_client.end()


@pytest.fixture
def client(world, make_client):  # pylint: disable=redefined-outer-name
    """The session of the plain user, without a started client."""
    return make_client(world)
