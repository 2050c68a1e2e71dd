"""The tray icon in real trays: status notifier hosts, an embedding tray, none at all, and their coming and going."""

import pytest

from harness.drive import client as ui
from harness.drive.tray import EmbeddingTray, TrayIcon
from world.accounts import ADA

NOT_HIDDEN = "Quorvane: your IP is not hidden"
MENU = [
    "Quorvane",
    "Change IP",
    "-",
    "Copy IP",
    "Check IP in Browser",
    "-",
    "Show Quorvane",
    "Refresh Locations",
    "Settings...",
    "About Quorvane",
    "-",
    "Quit Quorvane",
]


@pytest.fixture
def tray(client):
    client.remember_administrator(ADA, location="Netherlands Amsterdam")
    return TrayIcon(client)


def shown(client):
    return client.display.on_screen("Quorvane .ver")


def wait_shown(world, client, wanted=True):
    world.home.wait_for(lambda: shown(client) == wanted, 10, f"the window shows: {wanted}")


def close_window(world, client):
    client.display.press_keys("Quorvane .ver", "alt+F4")
    wait_shown(world, client, False)


def test_item_and_menu(tray, client):
    tray.appear()
    client.start()
    client.wait_ready()
    item = tray.wait_item(tooltip=NOT_HIDDEN)
    assert item["title"] == "Quorvane" and item["status"] == "Active" and not item["item_is_menu"]
    assert {16, 22, 24, 32, 48} <= {width for width, _ in item["sizes"]}
    assert tray.menu() == MENU
    assert tray.enabled("Copy IP") and tray.enabled("Quit Quorvane")


def test_menu_before_the_first_answer(make_world, make_client):
    """The service is not there: the hiding waits, the rest of the menu does not."""
    client = make_client(make_world(serve=False))
    client.remember_administrator(ADA)
    tray = TrayIcon(client)
    tray.appear()
    client.start()
    tray.wait_item()
    assert tray.menu() == MENU
    assert not tray.enabled("Quorvane") and not tray.enabled("Change IP")
    assert tray.enabled("Copy IP")
    tray.click("Quit Quorvane")
    assert client.wait_exit() == 0


def test_a_session_from_the_menu(world, client, tray):
    tray.appear()
    client.start()
    client.wait_ready()
    at_rest = tray.wait_item(tooltip=NOT_HIDDEN)["icon"]
    tray.click("Quorvane")
    searching = tray.wait_item(tooltip="Quorvane: searching for an available IP")["icon"]
    client.wait_hidden()
    lent = client.current_address()
    hidden = tray.wait_item(tooltip=f"Quorvane: your IP is hidden behind {lent}")["icon"]
    assert at_rest != hidden and searching != hidden
    assert world.home.public_address() == lent
    tray.wait_enabled("Stop Hiding IP")
    tray.click("Stop Hiding IP")
    client.wait_not_hidden()
    assert tray.wait_item(tooltip=NOT_HIDDEN)["icon"] == at_rest
    assert tray.menu() == MENU
    assert not tray.enabled("Copy IP"), "the first reset takes it for the rest of the run"


def test_refresh_asks_again(world, client, tray):
    tray.appear()
    client.start()
    client.wait_ready()
    tray.wait_item()
    tray.click("Refresh Locations")
    world.home.wait_for(
        lambda: len(world.service.requests_of("MRTSL")) == 2, 10, "the list was asked for again"
    )


def test_about_item(client, tray):
    tray.appear()
    client.start()
    client.wait_ready()
    tray.wait_item()
    tray.click("About Quorvane")
    client.wait(ui.button("OK", "About Quorvane"), 10, showing=True)


def test_activation_and_show_item_bring_up_the_same_window(world, client, tray):
    tray.appear()
    client.start()
    client.wait_ready()
    tray.wait_item()
    close_window(world, client)
    assert client.display.listed("Quorvane .ver") == [], "hidden, not minimised"
    tray.activate()
    wait_shown(world, client)
    assert len(client.display.listed("Quorvane .ver")) == 1
    close_window(world, client)
    tray.click("Show Quorvane")
    wait_shown(world, client)
    (window,) = client.display.listed("Quorvane .ver")
    world.home.wait_for(lambda: client.display.active() == window, 10, "it has the focus")


def test_late_host(world, client, tray):
    """The panel comes long after the client, which waited minimised."""
    client.start()
    client.wait_ready()
    close_window(world, client)
    assert len(client.display.listed("Quorvane .ver")) == 1, "without a tray it stays in the task bar"
    tray.appear()
    tray.wait_item(tooltip=NOT_HIDDEN)
    world.home.wait_for(lambda: not client.display.listed("Quorvane .ver"), 10, "the tray takes over")
    assert tray.menu() == MENU
    tray.activate()
    wait_shown(world, client)


def test_host_that_dies_and_comes_back(world, client, tray):
    tray.appear()
    client.start()
    client.wait_ready()
    tray.wait_item()
    close_window(world, client)
    tray.vanish()
    world.home.wait_for(
        lambda: client.display.listed("Quorvane .ver"), 10, "the window waits in the task bar"
    )
    assert not shown(client)
    tray.appear()
    tray.wait_item(tooltip=NOT_HIDDEN)
    world.home.wait_for(lambda: not client.display.listed("Quorvane .ver"), 10, "the tray has it again")
    tray.activate()
    wait_shown(world, client)


def test_background_start(world, client, tray):
    tray.appear()
    client.start("-hide")
    tray.wait_item(tooltip=NOT_HIDDEN)
    tray.wait_enabled("Quorvane")
    assert not client.display.listed("Quorvane .ver")
    tray.click("Show Quorvane")
    wait_shown(world, client)


def test_without_any_tray(world, client):
    client.remember_administrator(ADA, location="Netherlands Amsterdam")
    client.start()
    client.wait_ready()
    close_window(world, client)
    (window,) = client.display.listed("Quorvane .ver")
    assert client.running()
    client.display.run("xdotool", "windowactivate", "--sync", window)
    wait_shown(world, client)
    # A click can be quicker than the client, to which the window is still away; a user's is not.
    client.wait({"window": ui.MAIN, "role": "frame"}, 10, active=True)
    client.hide()
    client.wait_hidden()
    client.display.press_keys("Quorvane .ver", "ctrl+q")
    assert client.wait_exit() == 0
    client.wait_no_openvpn()


def test_background_start_without_any_tray(world, client):
    client.remember_administrator(ADA)
    client.start("-hide")
    world.home.wait_for(lambda: client.display.listed("Quorvane .ver"), 15, "the task bar leads to it")
    wait_shown(world, client, False)
    (window,) = client.display.listed("Quorvane .ver")
    world.home.wait_for(lambda: world.service.requests_of("MRTSL"), 15, "the list was asked for")
    world.home.wait_for(
        lambda: "_NET_WM_STATE_ABOVE" not in client.display.property(window, "_NET_WM_STATE"),
        10,
        "two seconds are over",
    )
    assert not shown(client), "neither the answer nor the normal level brings it forward"


def test_embedding_tray(world, client):
    """Click does nothing, double-click shows the window, the other button opens the menu."""
    client.remember_administrator(ADA)
    tray = EmbeddingTray(client)
    client.start()
    client.wait_ready()
    tray.wait_icon()
    close_window(world, client)
    assert not client.display.listed("Quorvane .ver")
    tray.click()
    assert not shown(client)
    tray.click(times=2)
    wait_shown(world, client)
    tray.click(button=3)
    world.home.wait_for(tray.menu_open, 10, "the menu is open")
    client.display.run("xdotool", "key", "Up", "Return")
    assert client.wait_exit() == 0


def test_late_embedding_tray(world, client):
    client.remember_administrator(ADA)
    client.start()
    client.wait_ready()
    close_window(world, client)
    tray = EmbeddingTray(client)
    tray.wait_icon()
    world.home.wait_for(lambda: not client.display.listed("Quorvane .ver"), 10, "the tray takes over")
    tray.close()
    world.home.wait_for(
        lambda: client.display.listed("Quorvane .ver"), 10, "the window waits in the task bar"
    )
    tray = EmbeddingTray(client)
    tray.wait_icon()
    world.home.wait_for(lambda: not client.display.listed("Quorvane .ver"), 10, "the tray has it again")
    tray.click(times=2)
    wait_shown(world, client)


def test_window_floats_for_two_seconds_and_then_stays_where_it_is(world, client):
    """Seen through the window manager's own property; the window is neither hidden nor made anew for it."""
    client.remember_administrator(ADA)
    client.start()
    display = client.display
    world.home.wait_for(lambda: display.listed("Quorvane .ver"), 15, "the window is there")
    (window,) = display.listed("Quorvane .ver")
    world.home.wait_for(lambda: display.active() == window, 10, "the window has the focus")
    assert "_NET_WM_STATE_ABOVE" in display.property(window, "_NET_WM_STATE")
    with display.watched(window) as changes:
        world.home.wait_for(
            lambda: "_NET_WM_STATE_ABOVE" not in display.property(window, "_NET_WM_STATE"),
            10,
            "the window floats no longer",
        )
    assert display.active() == window and display.listed("Quorvane .ver") == [window]
    states = [line for line in changes() if "window state:" in line]
    assert states and all("Normal" in line for line in states), "it was on the screen all the while"


def test_window_that_was_away_meanwhile_does_not_float_later(world, client, tray):
    tray.appear()
    client.start()
    tray.wait_item()
    wait_shown(world, client)
    close_window(world, client)
    # The checks of the start come with the end of the floating, and tell of themselves.
    world.home.wait_for(lambda: "getSystemDns" in client.output(), 15, "two seconds are over")
    tray.activate()
    wait_shown(world, client)
    (window,) = client.display.listed("Quorvane .ver")
    world.home.wait_for(lambda: client.display.active() == window, 10, "the window has the focus")
    assert "_NET_WM_STATE_ABOVE" not in client.display.property(window, "_NET_WM_STATE")


def test_screen_reader_finds_no_unnamed_control(client, tray):
    """Every control of every window that shows has a name or a description."""
    tray.appear()
    client.start()
    client.wait_ready()
    tray.wait_item()
    check_names(client.nodes(), {"push button", "check box", "radio button", "combo box", "text", "label"})
    tray.click("About Quorvane")
    client.wait(ui.button("OK", "About Quorvane"), 10, showing=True)
    check_names(client.nodes(), {"dialog", "push button", "label"})


CONTROLS = {
    "push button",
    "toggle button",
    "check box",
    "radio button",
    "combo box",
    "text",
    "password text",
    "spin button",
    "progress bar",
    "slider",
    "menu item",
    "dialog",
    "table",
    "link",
    "label",
    "image",
    "icon",
}


def check_names(nodes, expected):
    showing = [node for node in nodes if node["showing"]]
    assert expected <= {node["role"] for node in showing}, "the tree holds the window's controls"
    unnamed = [
        node for node in showing if node["role"] in CONTROLS and not node["name"] and not node["description"]
    ]
    assert not unnamed
