"""Global hot keys: a key that is pressed while another program has the focus."""

import pytest

from harness.drive import settings
from harness.drive.keyboard import F1, F2, SHIFT, Keyboard
from harness.observe.outcomes import check_hidden
from windows import MAIN

# Preferences hold tags: "Shift + F1" and "Shift + F2".
KEYS = {"hideIpHotKey": 57, "changeIpHotKey": 58}
NONE = (
    "This desktop offers no global hot keys: these combinations have no effect.\n"
    "Its settings can bind keys to commands: quorvane --hide, --change, --stop, --discard, --show"
)
SOME = (
    "These work while any program is in front. A combination that you replace stays in force until "
    "Quorvane quits."
)


def hint(session, client):
    """The text below the list of the hot keys."""
    settings.open_window(client)
    settings.open_pane(client, "Hot Keys")
    client.wait({"window": settings.TITLE, "role": "combo box"}, showing=True)
    found = [part["name"] for part in client.nodes() if part["showing"] and part["name"] in (NONE, SOME)]
    session.picture("hot-keys")
    settings.close_window(client)
    return found


@pytest.mark.check("global hot keys")
def test_hot_keys(session):
    session.start_client(**KEYS)
    client = session.client
    if session.desktop.hot_keys:
        assert hint(session, client) == [SOME]
        session.wait(session.keys_are_taken, "the desktop has the combinations")
        session.close_window(MAIN)
        keyboard = Keyboard(session.screen)
        keyboard.strike(SHIFT, F1)
        first = check_hidden(client)
        keyboard.strike(SHIFT, F2)
        session.wait(lambda: client.current_address() != first, "the address changes")
        assert check_hidden(client) != first
    else:
        session.wait(lambda: hint(session, client) == [NONE], "the pane says that there are none")
