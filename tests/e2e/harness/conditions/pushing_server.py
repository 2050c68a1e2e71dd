"""An OpenVPN server on the gateway that accepts every login and pushes any settings to its clients."""

import contextlib
import os
import subprocess
import time

from harness.home.deadlines import EVENTUALLY, POLL
from world import network

ADDRESS, PORT = "203.0.113.251", 1301
_NETWORK, _GATEWAY = "10.78.0.0", "10.78.0.1"
# The tunnel's clients are seen with the server's address.
_LENDING = (
    f"chain lending {{ type nat hook postrouting priority 90;\n"
    f" ip saddr {_NETWORK}/24 oifname wan snat to {ADDRESS}\n }}"
)
# As in the service's configurations: IPv6 goes into the tunnel, which refuses it.
BLOCKED_IPV6 = (
    "redirect-gateway def1 ipv6\nifconfig-ipv6 fd71:7276:6e00::2/64 fd71:7276:6e00::1\nblock-ipv6\n"
)


def configuration(world, remote=f"{ADDRESS} {PORT}", more=BLOCKED_IPV6):
    """A configuration with which a client connects to the server."""
    authority = (world.authority.folder / "ca.crt").read_text(encoding="utf-8")
    return (
        f"client\ndev tun\nproto udp\nremote {remote}\nnobind\nauth-user-pass\nauth-nocache\n"
        f"remote-cert-tls server\nresolv-retry 0\nconnect-retry-max 1\nhand-window 5\n{more}verb 3\n"
        f"<ca>\n{authority}</ca>\n"
    )


@contextlib.contextmanager
def pushing(world, pushes, settings=()):
    """While the block runs, the server is there. `pushes`: lines for clients; `settings`: its own lines."""
    folder = world.folder / "pushing"
    folder.mkdir(exist_ok=True)
    log = folder / "server.log"
    log.unlink(missing_ok=True)
    program = folder / "vpnpush"
    if not program.is_symlink():
        program.symlink_to("/usr/sbin/openvpn")
    keys = world.authority.folder
    usual_gateway = f'push "route-gateway {_GATEWAY}"'
    lines = [
        "dev tun-push",
        "dev-type tun",
        "proto udp",
        f"local {ADDRESS}",
        f"port {PORT}",
        # Not the directive "server", which pushes a gateway after all other settings.
        "mode server",
        "tls-server",
        "topology subnet",
        f"ifconfig {_GATEWAY} 255.255.255.0",
        "ifconfig-pool 10.78.0.10 10.78.0.200 255.255.255.0",
        'push "topology subnet"',
        f"ca {keys}/ca.crt",
        f"cert {keys}/vpn.crt",
        f"key {keys}/vpn.key",
        "dh none",
        "verify-client-cert none",
        "script-security 2",
        "auth-user-pass-verify /bin/true via-file",
        f"tmp-dir {folder}",
        *settings,
        *(f'push "{line}"' for line in pushes),
        *([] if any(line.startswith("route-gateway") for line in pushes) else [usual_gateway]),
    ]
    (folder / "server.ovpn").write_text("".join(f"{line}\n" for line in lines), encoding="utf-8")
    command = ["ip", "netns", "exec", network.GATEWAY, str(program)]
    command += ["--config", str(folder / "server.ovpn"), "--log", str(log)]
    with network.ruled(network.GATEWAY, _LENDING, table="pushing"):
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL)
        try:
            _wait_listening(process, log)
            yield
        finally:
            process.kill()
            process.wait(EVENTUALLY)
            assert not os.path.exists(f"/proc/{process.pid}")


def _wait_listening(process, log):
    end = time.monotonic() + EVENTUALLY
    while not log.exists() or "Initialization Sequence Completed" not in log.read_text(errors="replace"):
        if process.poll() is not None or time.monotonic() > end:
            raise RuntimeError(f"the pushing server did not start:\n{log.read_text(errors='replace')}")
        time.sleep(POLL)
