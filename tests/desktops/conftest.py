"""Runs pytest again inside the test network's outer namespace, starts the desktops, and makes the table."""

import os
import sys
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parent.parent / "e2e")]

import pytest  # noqa: E402 # pylint: disable=wrong-import-position

from desktop_session import Session  # noqa: E402 # pylint: disable=wrong-import-position
from harness.observe import evidence  # noqa: E402 # pylint: disable=wrong-import-position
from known import DESKTOPS  # noqa: E402 # pylint: disable=wrong-import-position
from table import CANNOT, FAILED, PASSED, Table  # noqa: E402 # pylint: disable=wrong-import-position
from world import enter  # noqa: E402 # pylint: disable=wrong-import-position
from world.service import Service  # noqa: E402 # pylint: disable=wrong-import-position
from world.world import World  # noqa: E402 # pylint: disable=wrong-import-position

TABLE = Table()


def pytest_configure(config):
    config.addinivalue_line("markers", "check(name): the line of the table that a test belongs to")
    if enter.inside():
        return
    # pytest has redirected the output already; the run inside needs the real one.
    capture = config.pluginmanager.getplugin("capturemanager")
    if capture is not None:
        capture.stop_global_capturing()
    program = str(Path(enter.__file__).resolve())
    os.execv(enter.PYTHON, [enter.PYTHON, program, "--", enter.PYTHON, "-m", "pytest", *sys.argv[1:]])


def pytest_collection_modifyitems(config, items):
    """Leaves out what cannot be checked yet; the table says so."""
    left_out = [item for item in items if check_of(item) in item.callspec.params["desktop"].unchecked]
    config.hook.pytest_deselected(items=left_out)
    items[:] = [item for item in items if item not in left_out]


def check_of(item):
    return item.get_closest_marker("check").args[0]


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    outcome = yield
    report = outcome.get_result()
    setattr(item, f"report_{call.when}", report)
    desktop, check = item.callspec.params["desktop"], check_of(item)
    if report.failed:
        TABLE.note(desktop.name, check, FAILED)
    elif report.skipped:
        TABLE.note(desktop.name, check, CANNOT, desktop.cannot[check])
    elif call.when == "call":
        TABLE.note(desktop.name, check, PASSED, desktop.remarks.get(check, ""))


def pytest_sessionfinish(session):
    text = TABLE.text()
    out = os.environ.get("QUORVANE_E2E_OUT")
    if out and enter.inside():
        Path(out).mkdir(parents=True, exist_ok=True)
        (Path(out) / "table.md").write_text(text, encoding="utf-8")
    reporter = session.config.pluginmanager.getplugin("terminalreporter")
    if reporter is not None:
        reporter.write_line("\n" + text)


@pytest.fixture(scope="session", params=DESKTOPS, ids=lambda desktop: desktop.name)
def desktop(request):
    return request.param


@pytest.fixture(scope="session")
def running(desktop):
    """The desktop's session, for all tests of it."""
    world = World(root=os.environ["QUORVANE_DESKTOPS"])
    session = Session(world, desktop)
    yield session
    session.close()
    status = world.close()
    assert status == 0, f"the service ended with {status}: {Service.STATUS}"


@pytest.fixture
def session(request, running, desktop):
    """The same for one test, without a client. After a failed test its pictures and logs are kept."""
    if check_of(request.node) in desktop.cannot:
        pytest.skip(desktop.cannot[check_of(request.node)])
    yield running
    report = getattr(request.node, "report_call", None)
    if report is not None and report.failed:
        evidence.of_client(running.client, request.node)
        evidence.of_world(running.world, request.node)
    running.end_client()


@pytest.fixture
def client(session):
    """The client, started and ready in the desktop."""
    session.start_client()
    return session.client
