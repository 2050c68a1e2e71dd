"""Operations on the settings window of a client."""

from . import client as ui

TITLE = "Quorvane Settings"


def open_window(client, key="first"):
    client.press(ui.button("Settings", ui.MAIN), key=key)
    client.wait({"window": TITLE, "role": "push button", "name": "Apply"}, key=key, showing=True)


def open_pane(client, name, key="first"):
    client.press({"window": TITLE, "name": name}, key=key)


def box(name):
    return {"window": TITLE, "role": "check box", "name": name}


def switch(client, name, *, to, key="first"):
    """Presses a check box that has the opposite state so far."""
    client.wait(box(name), key=key, showing=True, checked=not to)
    client.press(box(name), key=key)
    client.wait(box(name), key=key, checked=to)


def close_window(client, answer="Cancel", key="first"):
    """Presses Cancel or OK and waits until the settings window is closed."""
    client.press(ui.button(answer, TITLE), key=key)
    client.wait({"window": TITLE, "role": "push button", "name": answer}, key=key, absent=True)
