"""The client's start, its place in the task bar and its scale."""

import pytest

from windows import MAIN


@pytest.mark.check("start")
def test_start(session, client):
    session.wait(lambda: session.windows.in_front(MAIN), "the window is in front with the focus")
    assert client.current_address() == "198.51.100.10"
    session.picture("start")


@pytest.mark.check("icon and name in the task bar")
def test_task_bar(session):
    session.wait(lambda: session.task_bar_icons() == [], "the task bar has no icon of the client")
    assert session.titles_in_task_bar() == []
    session.start_client()
    session.wait(lambda: session.titles_in_task_bar() == [MAIN], "the task bar has the window's name")
    session.wait(lambda: len(session.task_bar_icons()) == 1, "the task bar shows the icon")
    session.picture("task-bar")


@pytest.mark.check("scale 1, 1.5 and 2")
def test_scales(session):
    """The window is as many times larger as the desktop says, and nothing of it is cut off."""
    widths = {}
    for scale in (1, 1.5, 2):
        session.set_scale(scale)
        session.start_client()
        session.wait(lambda: session.windows.in_front(MAIN), "the window is in front")
        widths[scale] = session.windows.size(MAIN)[0]
        session.picture(f"scale-{scale}")
        session.end_client()
    session.set_scale(1)
    assert widths[1.5] == pytest.approx(1.5 * widths[1], rel=0.03)
    assert widths[2] == pytest.approx(2 * widths[1], rel=0.03)
