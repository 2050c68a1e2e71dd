"""Runs pytest inside the small world's outer namespace and gives the tests their worlds and clients."""

import json
import os
import sys
from pathlib import Path

import pytest

sys.path.insert(0, str(Path(__file__).resolve().parent))

from harness.client import Client, picture_folder  # noqa: E402 # pylint: disable=wrong-import-position
from harness.tray import TrayIcon  # noqa: E402 # pylint: disable=wrong-import-position
from world import enter  # noqa: E402 # pylint: disable=wrong-import-position
from world.world import World  # noqa: E402 # pylint: disable=wrong-import-position


def pytest_configure(config):
    config.addinivalue_line("markers", "slow: left out unless QUORVANE_FULL is set (./check --full)")
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
    """One line a row, for ./check to show: QUORVANE_E2E_ROWS names the file they are appended to."""
    rows = os.environ.get("QUORVANE_E2E_ROWS")
    if not rows or (report.when != "call" and report.passed):
        return
    left_out = report.skipped and "slow:" in str(report.longrepr)
    outcome = "left out (slow)" if left_out else f"{report.outcome}, {report.duration:.1f} s"
    with Path(rows).open("a", encoding="utf-8") as file:
        file.write(f"{report.nodeid.rpartition('/')[2]}: {outcome}\n")


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    outcome = yield
    setattr(item, f"report_{call.when}", outcome.get_result())


def _failed(request):
    report = getattr(request.node, "report_call", None)
    return report is not None and report.failed


def _evidence(request):
    """Where this test's pictures and logs go, or None when they are not wanted."""
    folder = picture_folder()
    return folder / request.node.name if folder is not None and _failed(request) else None


@pytest.fixture
def make_world(request):
    """Makes the test's world, with other settings than the usual ones. One per test."""
    made = []

    def make(**settings):
        made.append(World(**settings))
        return made[-1]

    yield make
    for one in made:
        folder = _evidence(request)
        if folder is not None:
            one.save_logs(folder)
        status = one.close()
        assert status == 0, f"the service ended with {status}: 3 says that requests came that no test announced"


@pytest.fixture
def world(make_world):  # pylint: disable=redefined-outer-name
    return make_world()


def _keep_evidence(client, folder):
    folder.mkdir(parents=True, exist_ok=True)
    try:
        client.display.screenshot(folder / f"{client.user}.png")
        (folder / "windows.json").write_text(json.dumps(client.nodes(), indent=1), encoding="utf-8")
    except Exception as error:  # pylint: disable=broad-except # the client may be gone: that is a finding too
        (folder / "no-picture.txt").write_text(str(error), encoding="utf-8")
    (folder / "client.log").write_text(client.output(), encoding="utf-8")
    (folder / "openvpn.log").write_text(client.openvpn_log(), encoding="utf-8")


@pytest.fixture
def make_client(request):
    """Gives a user of a world a session, with a screen and a driver of its own."""
    made = []

    def make(world, user="joe"):  # pylint: disable=redefined-outer-name
        made.append(Client(world, user))
        return made[-1]

    yield make
    for client in made:
        folder = _evidence(request)
        if folder is not None:
            _keep_evidence(client, folder)
        client.close()


@pytest.fixture(scope="module")
def shared_client():
    """A world and a user's session with a tray for all rows of a file, for what leaves both as they were."""
    one = World()
    user = Client(one, "joe")
    TrayIcon(user).appear()
    yield user
    user.close()
    status = one.close()
    assert status == 0, f"the service ended with {status}: 3 says that requests came that no test announced"


@pytest.fixture
def shared(request, shared_client):  # pylint: disable=redefined-outer-name
    """The file's client for one row. A row that fails takes the running copy with it."""
    yield shared_client
    if _failed(request):
        folder = _evidence(request)
        if folder is not None:
            shared_client.world.save_logs(folder)
            _keep_evidence(shared_client, folder)
        shared_client.end()


@pytest.fixture
def client(world, make_client):  # pylint: disable=redefined-outer-name
    """The session of the plain user, nothing started in it yet."""
    return make_client(world)
