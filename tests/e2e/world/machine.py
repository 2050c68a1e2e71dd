"""What a run must not change: the machine's users, routes, links, resolver, firewall and processes."""

import fcntl
import hashlib
import os
import re
import subprocess
from pathlib import Path

ACCOUNT_FILES = (
    "/etc/passwd",
    "/etc/shadow",
    "/etc/group",
    "/etc/gshadow",
    "/etc/subuid",
    "/etc/subgid",
    "/etc/sudoers",
)
RESOLVER_FILES = ("/etc/resolv.conf", "/etc/hosts", "/etc/nsswitch.conf")
KILLED_NAME = "openvpn"
NS_GET_PARENT = 0xB702


def _output(*command):
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    return done.stdout if done.returncode == 0 else f"exit status {done.returncode}: {done.stderr}"


def _file_state(name):
    path = Path(name)
    try:
        link = os.readlink(path) if path.is_symlink() else ""
        stat = path.stat()
        digest = hashlib.sha256(path.read_bytes()).hexdigest()
    except OSError as error:
        return f"{name}: {error.strerror}"
    return f"{name} {link} {stat.st_mode:o} {stat.st_uid}:{stat.st_gid} {digest}"


def _routes():
    families = [_output("ip", family, "route", "show") for family in ("-4", "-6")]
    # The remaining life time of a route that a router announced changes by itself.
    return re.sub(r"\s*expires \S+", "", "".join(families)) + _output("ip", "rule", "show")


def _links():
    lines = (
        _output("ip", "-o", "link", "show").splitlines() + _output("ip", "-o", "address", "show").splitlines()
    )
    return "\n".join(re.sub(r"(valid_lft|preferred_lft) \S+", "", line) for line in lines)


def processes():
    """Yields (pid, short name) of every process that can be seen."""
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                yield int(entry.name), (entry / "comm").read_text(encoding="utf-8", errors="replace").rstrip(
                    "\n"
                )
            except OSError:
                continue


def _status_fields(pid):
    """The fields of /proc/PID/stat after the name: state, parent, ..."""
    return Path(f"/proc/{pid}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()


def parent_of(pid):
    """The parent of a process; None when the process does not exist any more."""
    try:
        return int(_status_fields(pid)[1])
    except OSError:
        return None


def _own_openvpn():
    """The OpenVPN processes in the machine's own network, which a kill by name from inside must not reach."""
    own_network = os.readlink("/proc/self/ns/net")
    found = set()
    for pid, name in processes():
        try:
            if name == KILLED_NAME and os.readlink(f"/proc/{pid}/ns/net") == own_network:
                started = _status_fields(pid)[19]
                found.add((pid, started))
        except OSError:
            continue
    return found


def _inside_of(pid, namespace):
    """True when the process is in the PID namespace (an inode number) or in one below it."""
    try:
        descriptor = os.open(f"/proc/{pid}/ns/pid", os.O_RDONLY)
    except OSError:
        return False
    while True:
        if os.fstat(descriptor).st_ino == namespace:
            os.close(descriptor)
            return True
        try:
            parent = fcntl.ioctl(descriptor, NS_GET_PARENT)
        except OSError:
            return False
        finally:
            os.close(descriptor)
        descriptor = parent


def left_behind(namespace):
    """The processes that are still in a PID namespace that should be gone."""
    return [f"{name} ({pid})" for pid, name in processes() if _inside_of(pid, namespace)]


class Snapshot:
    """The state of the machine at one moment, recorded outside of the test network."""

    def __init__(self):
        self.aspects = {
            "users": "\n".join(map(_file_state, ACCOUNT_FILES)),
            "routes": _routes(),
            "links": _links(),
            "resolver": "\n".join(map(_file_state, RESOLVER_FILES)),
            "firewall": _output("nft", "-s", "list", "ruleset"),
            "namespaces": _output("ip", "netns", "list"),
        }
        self.openvpn = _own_openvpn()

    def differences(self, later, namespace):
        """One line for each aspect that differs; an empty list when nothing does."""
        lines = []
        for name, before in self.aspects.items():
            if later.aspects[name] != before:
                lines.append(f"{name} changed:\n--- before\n{before}\n--- after\n{later.aspects[name]}")
        gone = self.openvpn - later.openvpn
        if gone:
            lines.append(f"OpenVPN processes of the machine are gone: {sorted(gone)}")
        left = left_behind(namespace)
        if left:
            lines.append(f"processes of the test network are left: {', '.join(left)}")
        return lines
