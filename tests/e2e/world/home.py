"""The home: the namespaces in which the client and the programs of its user run."""

import dataclasses
import json
import os
import re
import subprocess
import time
from pathlib import Path

from harness.home.deadlines import EVENTUALLY, pause_after

from . import accounts, machine, network

# The folder of an installed program, which is in the root file system; else the built one is shown there.
INSTALLED = os.environ.get("QUORVANE_INSTALLED")
CONTENTS = INSTALLED or "/opt/quorvane"
HARNESS = "/opt/harness"
RIGHT_NAME_SERVERS = "".join(f"nameserver {address}\n" for address in network.NAME_SERVERS)
_INIT = Path(__file__).with_name("home_init.py")
_HARNESS_SOURCE = Path(__file__).resolve().parent.parent / "harness" / "home"


@dataclasses.dataclass(frozen=True)
class Process:
    """A process of the home."""

    pid: int  # as seen from outside of the home
    name: str
    command: list
    uid: int


def service_configuration():
    """The client's /etc/quorvane/service.conf for the test network."""
    return (
        f"api_host = {network.API_HOST}\nweb_host = {network.WEB_HOST}\n"
        f"reachability_host = {network.WEB_HOST}\nca_file = /etc/quorvane/ca.crt\n"
    )


class Home:
    """The home, from the constructor to `close`.

    `contents` is the client's contents folder, `authority` the certificate file of the service's authority.
    """

    def __init__(
        self, folder, contents, authority, *, name_servers=RIGHT_NAME_SERVERS, x11=None, people=(), root=None
    ):
        """`people`: accounts beside the usual ones; `root`: a root file system instead of the machine's."""
        settings = {
            "root": root,
            "work": str(Path(folder) / "home"),
            "x11": x11,
            "visible": {
                **({} if INSTALLED else {CONTENTS: str(Path(contents).resolve())}),
                HARNESS: str(_HARNESS_SOURCE),
            },
            "resolv_conf": name_servers + "options timeout:1 attempts:2\n",
            "etc_quorvane": {
                "service.conf": service_configuration(),
                "ca.crt": Path(authority).read_text(encoding="utf-8"),
            },
            "accounts": [
                {**dataclasses.asdict(account), "folder": account.folder}
                for account in (*accounts.ALL, *people)
            ],
        }
        # In a file, because every process in the home can read command lines, and these are passwords.
        given = Path(folder) / "home.json"
        given.touch(mode=0o600)
        given.write_text(json.dumps(settings), encoding="utf-8")
        command = [
            "nsenter",
            f"--net=/run/netns/{network.HOME}",
            "unshare",
            "--mount",
            "--pid",
            "--fork",
            "--ipc",
            "--uts",
            "--kill-child=SIGKILL",
            "--propagation",
            "private",
            "/usr/bin/python3",
            str(_INIT),
            str(given),
        ]
        self._unshare = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        if self._unshare.stdout.readline() != "ready\n":
            raise RuntimeError("the home could not be made")
        self.pid = self._first_process()
        self._namespace = os.stat(f"/proc/{self.pid}/ns/pid").st_ino

    def _first_process(self):
        for pid, _name in machine.processes():
            if machine.parent_of(pid) == self._unshare.pid:
                return pid
        raise RuntimeError("the home's first process is not there")

    def path(self, inside):
        """The path of a file of the home as seen from outside. Not for paths with absolute links in them."""
        return Path(f"/proc/{self.pid}/root{inside}")

    def _entry(self, user):
        for line in self.path("/etc/passwd").read_text(encoding="utf-8").splitlines():
            fields = line.split(":")
            if fields[0] == user:
                return fields
        raise KeyError(user)

    def uid(self, user):
        """The user's numbers (uid, gid) in the home."""
        return tuple(int(number) for number in self._entry(user)[2:4])

    def folder(self, user):
        """The user's home folder."""
        return self._entry(user)[5]

    def command(self, arguments, user="root", environment=None):
        """The command line that runs a command in the home as the user, with exactly this environment."""
        # Its root, too: where the tests run in a changed root, that is not the one of its mount namespace.
        spaces = ["--mount", "--root", "--pid", "--ipc", "--uts", "--net"]
        enter = ["nsenter", "--target", str(self.pid), *spaces, "--"]
        variables = {
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "LC_ALL": "C.UTF-8",
            "USER": user,
            "LOGNAME": user,
            "HOME": "/root",
            "SHELL": "/bin/bash",
        }
        if user == "root":
            variables["PATH"] = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"
        else:
            enter += ["setpriv", f"--reuid={user}", f"--regid={user}", "--init-groups", "--"]
            variables.update(HOME=self.folder(user), XDG_RUNTIME_DIR=f"/run/user/{self.uid(user)[0]}")
        variables.update(environment or {})
        return (
            enter
            + ["env", "-i", "-C", variables["HOME"]]
            + [f"{key}={value}" for key, value in variables.items()]
            + list(arguments)
        )

    def run(self, *arguments, user="root", environment=None, check=True, **options):
        """Runs a command in the home to its end; input and output are text."""
        return network.run(*self.command(arguments, user, environment), check=check, **options)

    def popen(self, *arguments, user="root", environment=None, **options):
        return subprocess.Popen(self.command(arguments, user, environment), **options)

    def write(self, inside, text, owner="root", mode=0o644):
        """Writes a file of the home and makes missing folders; all are owned by `owner`."""
        folder = str(Path(inside).parent)
        identity = (0, 0) if owner == "root" else self.uid(owner)
        missing = [
            parent for parent in [Path(folder), *Path(folder).parents] if not self.path(str(parent)).exists()
        ]
        for parent in reversed(missing):
            self.path(str(parent)).mkdir()
            os.chown(self.path(str(parent)), *identity)
        target = self.path(inside)
        target.write_bytes(text if isinstance(text, bytes) else text.encode("utf-8"))
        target.chmod(mode)
        os.chown(target, *identity)

    def processes(self, name=None):
        """The processes of the home, or those with this short name, with dead ones that are not reaped."""
        found = []
        for pid, short_name in machine.processes():
            try:
                if os.stat(f"/proc/{pid}/ns/pid").st_ino != self._namespace or (name and short_name != name):
                    continue
                command = Path(f"/proc/{pid}/cmdline").read_bytes().split(b"\0")[:-1]
                # Not the owner of the folder: that is root for a process that cannot be traced.
                status = Path(f"/proc/{pid}/status").read_text(encoding="utf-8", errors="replace")
                uid = int(re.search(r"^Uid:\s+(\d+)", status, re.M).group(1))
            except OSError:
                continue
            found.append(Process(pid, short_name, [part.decode(errors="replace") for part in command], uid))
        return found

    def privileged_lines(self):
        """The commands that sudo ran in the home, in order: the text after COMMAND= in its log."""
        log = self.path("/var/log/sudo.log")
        if not log.exists():
            return []
        granted = r"^.*? : \S+ : (?:TTY=\S+ ; )?PWD=[^;]* ; USER=root ; COMMAND=(.*)$"
        return re.findall(granted, log.read_text(encoding="utf-8", errors="replace"), re.M)

    def public_address(self, user="joe", timeout=30):
        """The address from which the service sees the home; None without an answer in `timeout` seconds."""
        done = self.run(
            "curl",
            "-q",
            "-sS",
            "-4",
            "--noproxy",
            "*",
            "-m",
            str(timeout),
            "--cacert",
            "/etc/quorvane/ca.crt",
            f"https://{network.WEB_HOST}/ip",
            user=user,
            check=False,
        )
        return done.stdout.strip() if done.returncode == 0 else None

    def wait_for(self, condition, what, timeout=EVENTUALLY):
        """Waits until condition() is true; fails with `what` at the deadline."""
        begun = time.monotonic()
        end = begun + timeout
        while not condition():
            if time.monotonic() > end:
                raise TimeoutError(f"{what}: not within {timeout} s")
            time.sleep(pause_after(begun))
            begun = time.monotonic()

    def close(self):
        self._unshare.stdin.close()
        self._unshare.stdout.close()
        try:
            self._unshare.wait(EVENTUALLY)
        except subprocess.TimeoutExpired:
            self._unshare.kill()
            self._unshare.wait()
