"""What a failed test leaves to find the cause: pictures and logs in a folder, their last lines in the report.
"""

import json

from harness.drive.client import picture_folder

# Enough to see the last steps. The reader of the report may not have the folder with the whole logs.
LINES = 30


def of_client(client, node):
    """Screen, windows and logs of a user's session."""
    windows, picture = _windows(client)
    logs = {"client.log": client.output(), "openvpn.log": client.openvpn_log()}
    folder = _folder(node)
    if folder is not None:
        for name, text in {**logs, "windows.json": json.dumps(windows, indent=1)}.items():
            (folder / name).write_text(text, encoding="utf-8")
        if picture is not None:
            (folder / f"{client.user}.png").write_bytes(picture)
    shown = "\n".join(
        f"{part['role']}: {part['name']}" for part in windows if part.get("showing") and part["name"]
    )
    for name, text in {"windows": shown, **logs}.items():
        _report(node, f"{client.user}, {name}", text)


def of_world(world, node):
    """Logs of the service, its OpenVPN servers and the name server."""
    folder = _folder(node)
    if folder is not None:
        world.save_logs(folder)
    for log in (
        world.service.output,
        world.service.request_log,
        *sorted(world.service.runtime.glob("*.log")),
    ):
        if log.exists():
            _report(node, f"service, {log.name}", log.read_text(encoding="utf-8", errors="replace"))


def _windows(client):
    """Every element of the windows, and the screen as the bytes of a PNG file or None."""
    try:
        return client.nodes(), client.display.picture()
    except Exception as error:  # pylint: disable=broad-except # the client may be gone: that is a finding too
        return [{"role": "none", "name": str(error), "showing": True}], None


def _folder(node):
    """The test's folder, which is made; None when no pictures are wanted."""
    folder = picture_folder()
    if folder is None:
        return None
    folder = folder / node.name.replace("/", "_")
    folder.mkdir(parents=True, exist_ok=True)
    return folder


def _report(node, title, text):
    lines = text.splitlines()
    left_out = [f"({len(lines) - LINES} lines before)"] if len(lines) > LINES else []
    node.report_call.sections.append((title, "\n".join([*left_out, *lines[-LINES:]])))
