"""Elements of windows, as assistive programs see them."""

from gi.repository import Atspi


def states_of(node):
    states = node.get_state_set()
    names = {
        "showing": Atspi.StateType.SHOWING,
        "enabled": Atspi.StateType.ENABLED,
        "checked": Atspi.StateType.CHECKED,
        "modal": Atspi.StateType.MODAL,
        "active": Atspi.StateType.ACTIVE,
        "focused": Atspi.StateType.FOCUSED,
    }
    return {name: states.contains(kind) for name, kind in names.items()}


def describe(node):
    found = {"role": node.get_role_name(), "name": node.get_name(), "description": node.get_description()}
    found.update(states_of(node))
    if found["role"] in ("text", "password text"):
        found["text"] = Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))
    return found


def children(node):
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield child


def walk(node, depth=0):
    if depth > 25:
        return
    for child in children(node):
        yield child
        yield from walk(child, depth + 1)
