#!/usr/bin/python3
"""enter.py [--] COMMAND...: runs a command as root in new mount, network, PID, IPC and UTS namespaces.

/run is private there, so that named network namespaces exist inside only. When the command ends, everything
that it started is ended. The state of the machine before and after is compared: differences are printed, and
the exit status is 70 then instead of the command's.
"""

import contextlib
import ctypes
import os
import signal
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))
from world import machine  # noqa: E402 # pylint: disable=wrong-import-position

PYTHON = "/usr/bin/python3"
BASE = Path("/run/quorvane-world")
MARKER = BASE / "inside"
CHANGED = 70
# Seconds that the processes inside have to end by themselves after a signal.
GRACE = 5
PR_SET_PDEATHSIG = 1
PASSED_THROUGH_SUDO = (
    "DISPLAY",
    "XAUTHORITY",
    "QUORVANE_CONTENTS",
    "QUORVANE_SERVICE",
    "QUORVANE_E2E_OUT",
    "QUORVANE_E2E_RESULTS",
    "QUORVANE_E2E_FIGURES",
    "QUORVANE_E2E_SEED",
    "QUORVANE_FULL",
    "QUORVANE_DESKTOPS",
    "QUORVANE_DEBS",
    "QUORVANE_INSTALLED",
    "PYTHONDONTWRITEBYTECODE",
)


def inside():
    """True in the test network's outer namespace."""
    return MARKER.exists()


def _die_with_parent():
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


def _become_root():
    if os.geteuid() == 0:
        return
    kept = [f"{name}={os.environ[name]}" for name in PASSED_THROUGH_SUDO if name in os.environ]
    os.execvp("sudo", ["sudo", "--", "env", *kept, PYTHON, str(Path(__file__).resolve()), *sys.argv[1:]])


def _pid_namespace_below(child):
    """An open descriptor of the PID namespace of a process's children; None when it ends without one.

    While it is open no other namespace has its number, not even one of a concurrent run.
    """
    own = os.stat("/proc/self/ns/pid").st_ino
    while child.poll() is None:
        try:
            found = os.open(f"/proc/{child.pid}/ns/pid_for_children", os.O_RDONLY | os.O_CLOEXEC)
        except FileNotFoundError:
            pass  # the namespace exists, but no process is in it yet
        else:
            if os.fstat(found).st_ino != own:
                return found
            os.close(found)
        time.sleep(0.002)
    return None


def _end_on_signals(child):
    """Forwards signals to end to the first process inside, and kills it after GRACE seconds."""

    def end(_number, _frame):
        # unshare itself ignores signals while it waits.
        for pid, _name in machine.processes():
            if machine.parent_of(pid) == child.pid:
                with contextlib.suppress(ProcessLookupError):
                    os.kill(pid, signal.SIGTERM)
        signal.alarm(GRACE)

    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, end)
    signal.signal(signal.SIGALRM, lambda _number, _frame: child.kill())


def run(command):
    """Runs the command inside; returns its exit status, or CHANGED when the machine differs."""
    before = machine.Snapshot()
    unshare = ["unshare", "--mount", "--net", "--pid", "--ipc", "--uts", "--fork", "--kill-child"]
    unshare += ["--propagation", "private", "--", PYTHON, str(Path(__file__).resolve()), "--init", *command]
    # No other thread is running here, so that a function in the new process is safe.
    # pylint: disable-next=subprocess-popen-preexec-fn
    with subprocess.Popen(unshare, preexec_fn=_die_with_parent) as child:
        namespace = _pid_namespace_below(child)
        _end_on_signals(child)
        status = child.wait()
    if namespace is None:
        print("the test network could not be made", file=sys.stderr)
        return CHANGED
    differences = before.differences(machine.Snapshot(), os.fstat(namespace).st_ino)
    os.close(namespace)
    for line in differences:
        print(f"NOT AS BEFORE: {line}", file=sys.stderr)
    if differences:
        return CHANGED
    print("machine: users, routes, links, resolver, firewall and processes are as before", flush=True)
    return status if status >= 0 else 128 - status


def _init(command):
    """The first process inside: prepares the mounts, runs the command, reaps orphaned processes."""
    subprocess.run(["mount", "-t", "proc", "proc", "/proc"], check=True)
    subprocess.run(["mount", "-t", "sysfs", "-o", "ro", "sysfs", "/sys"], check=True)
    subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", "/run"], check=True)
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
    BASE.mkdir()
    MARKER.touch()
    # The kernel ignores a signal to PID 1 without a handler; these handlers end the command.
    child = os.fork()
    if child == 0:
        os.execvp(command[0], command)

    def end(_number, _frame):
        with contextlib.suppress(ProcessLookupError):  # it may have ended already
            os.kill(child, signal.SIGTERM)

    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, end)
    while True:
        pid, status = os.wait()
        if pid == child:
            return os.waitstatus_to_exitcode(status)


def main():
    arguments = sys.argv[1:]
    if arguments[:1] == ["--init"]:
        status = _init(arguments[1:])
        return status if status >= 0 else 128 - status
    if arguments[:1] == ["--"]:
        del arguments[0]
    if not arguments:
        print(__doc__, file=sys.stderr)
        return 2
    _become_root()
    # A root shell started by plain su keeps the user's PATH, which lacks the administrator's programs.
    os.environ["PATH"] = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"
    return run(arguments)


if __name__ == "__main__":
    sys.exit(main())
