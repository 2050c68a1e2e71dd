#!/usr/bin/python3
"""First process of the home: makes its mounts and accounts, then reaps orphaned processes.

Started by home.py in new mount, PID, IPC and UTS namespaces with one argument, the file that holds the
settings as JSON. Prints "ready" when everything is made. It ends, and with it everything in the home, when
its standard input is closed.
"""

import json
import os
import selectors
import shutil
import signal
import stat
import subprocess
import sys
from pathlib import Path

PRIVATE = ("/home", "/root", "/opt", "/var/lib/sudo", "/var/log", "/var/mail", "/var/tmp", "/dev/shm")
OLD_ROOT = "/.old-root"
DEVICES = {
    "null": (1, 3),
    "zero": (1, 5),
    "full": (1, 7),
    "random": (1, 8),
    "urandom": (1, 9),
    "tty": (5, 0),
    "net/tun": (10, 200),
}
SUDOERS = """Defaults env_reset
Defaults use_pty
Defaults secure_path="/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"
Defaults logfile=/var/log/sudo.log, loglinelen=0
root ALL=(ALL:ALL) ALL
%sudo ALL=(ALL:ALL) ALL
"""


def run(*command, **options):
    done = subprocess.run(command, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise RuntimeError(f"{' '.join(command)}: exit status {done.returncode}: {done.stderr.strip()}")


def tmpfs(path, mode="755"):
    run("mount", "-t", "tmpfs", "-o", f"mode={mode}", "tmpfs", path)


def cover_etc(work):
    """Covers /etc by a private, writable copy, so that changes do not reach the machine."""
    upper, scratch = work / "etc", work / "etc-work"
    upper.mkdir()
    scratch.mkdir()
    try:
        run(
            "mount",
            "-t",
            "overlay",
            "overlay",
            "-o",
            f"lowerdir=/etc,upperdir={upper},workdir={scratch}",
            "/etc",
        )
    except RuntimeError:
        # An /etc that is an overlay itself cannot always be the lower folder of another one.
        shutil.copytree("/etc", upper, symlinks=True, dirs_exist_ok=True)
        run("mount", "--bind", str(upper), "/etc")


def make_devices(folder):
    """A /dev of the home's own, with the few devices that programs need."""
    tmpfs(folder)
    os.umask(0)
    for name, numbers in DEVICES.items():
        (folder / name).parent.mkdir(mode=0o755, exist_ok=True)
        os.mknod(folder / name, 0o666 | stat.S_IFCHR, os.makedev(*numbers))
    os.umask(0o022)
    for name, target in {
        "fd": "/proc/self/fd",
        "ptmx": "pts/ptmx",
        "stdin": "fd/0",
        "stdout": "fd/1",
    }.items():
        (folder / name).symlink_to(target)
    for name in ("pts", "shm"):
        (folder / name).mkdir()
    run("mount", "-t", "devpts", "-o", "newinstance,ptmxmode=666,gid=5", "devpts", str(folder / "pts"))


def enter_root(settings, work):
    """Replaces the root of this mount namespace; what the home writes there is in memory.

    The old root stays visible at OLD_ROOT until `leave_old_root`: the visible folders are in it.
    """
    upper, scratch, root = work / "root-upper", work / "root-work", work / "root"
    for folder in (upper, scratch, root):
        folder.mkdir()
    layers = f"lowerdir={settings['root']},upperdir={upper},workdir={scratch}"
    run("mount", "-t", "overlay", "overlay", "-o", layers, str(root))
    make_devices(root / "dev")
    (root / OLD_ROOT[1:]).mkdir()
    # Not a chroot: a process that enters this mount namespace later begins at the namespace's root.
    run("pivot_root", str(root), str(root) + OLD_ROOT)
    os.chdir("/")
    settings["visible"] = {target: OLD_ROOT + source for target, source in settings["visible"].items()}
    work.mkdir(parents=True)
    tmpfs(str(work))


def leave_old_root():
    run("umount", "--lazy", OLD_ROOT)
    os.rmdir(OLD_ROOT)


def bind_read_only(source, target):
    Path(target).mkdir(parents=True)
    run("mount", "--bind", source, target)
    run("mount", "-o", "remount,bind,ro", target)


def cover_private_folders(settings, work):
    # The visible folders are bound elsewhere first: they can be below a folder that is about to be covered.
    staged = {}
    for index, (target, source) in enumerate(settings["visible"].items()):
        staged[target] = str(work / f"visible-{index}")
        bind_read_only(source, staged[target])
    windows = work / "x11"
    windows.mkdir(mode=0o1777)
    if settings["x11"]:
        run("mount", "--bind", settings["x11"], str(windows))
    for path in PRIVATE:
        if Path(path).is_dir():
            tmpfs(path, "1777" if path in ("/var/tmp", "/dev/shm") else "755")
    tmpfs("/tmp", "1777")
    Path("/tmp/.X11-unix").mkdir()
    os.chmod("/tmp/.X11-unix", 0o1777)
    if settings["x11"]:
        run("mount", "--bind", str(windows), "/tmp/.X11-unix")
    for target, source in staged.items():
        bind_read_only(source, target)


def fill_etc(settings):
    Path("/etc/resolv.conf").unlink(missing_ok=True)
    for name, text in {
        "resolv.conf": settings["resolv_conf"],
        "hostname": "home\n",
        "hosts": "127.0.0.1 localhost home\n",
        "sudoers": SUDOERS,
    }.items():
        Path("/etc", name).write_text(text, encoding="utf-8")
        os.chmod(f"/etc/{name}", 0o440 if name == "sudoers" else 0o644)
    shutil.rmtree("/etc/sudoers.d", ignore_errors=True)
    run("hostname", "home")
    Path("/etc/quorvane").mkdir(exist_ok=True)
    for name, text in settings["etc_quorvane"].items():
        Path("/etc/quorvane", name).write_text(text, encoding="utf-8")
        os.chmod(f"/etc/quorvane/{name}", 0o644)


def make_accounts(accounts):
    for account in accounts:
        name = account["name"]
        # The machine can have an account with the same name; it is removed from the copy of /etc only.
        if subprocess.run(["getent", "passwd", name], capture_output=True, check=False).returncode == 0:
            run("userdel", "--force", name)
        groups = ["-G", "sudo"] if account["administrator"] else []
        run(
            "useradd",
            "-m",
            "-s",
            "/bin/bash",
            "-d",
            account["folder"],
            "-c",
            account["full_name"],
            *groups,
            name,
        )
        os.chmod(account["folder"], 0o700)
    run("chpasswd", "-c", "SHA512", input="".join(f"{one['name']}:{one['password']}\n" for one in accounts))


def make_runtime_folders(accounts):
    tmpfs("/run")
    for path in ("/run/lock", "/run/sudo", "/run/user"):
        os.mkdir(path, 0o755)
    for account in accounts:
        owner = os.stat(account["folder"])
        folder = f"/run/user/{owner.st_uid}"
        os.mkdir(folder, 0o700)
        os.chown(folder, owner.st_uid, owner.st_gid)


def reap_until_input_ends():
    reading, writing = os.pipe2(os.O_NONBLOCK | os.O_CLOEXEC)
    signal.set_wakeup_fd(writing)
    signal.signal(signal.SIGCHLD, lambda _number, _frame: None)
    selector = selectors.DefaultSelector()
    selector.register(0, selectors.EVENT_READ)
    selector.register(reading, selectors.EVENT_READ)
    while True:
        while True:
            try:
                if os.waitpid(-1, os.WNOHANG)[0] == 0:
                    break
            except ChildProcessError:
                break
        for key, _events in selector.select():
            if key.fd == 0 and not os.read(0, 4096):
                return
            if key.fd == reading:
                os.read(reading, 4096)


def main():
    settings = json.loads(Path(sys.argv[1]).read_text(encoding="utf-8"))
    work = Path(settings["work"])
    work.mkdir(parents=True, exist_ok=True)
    tmpfs(str(work))
    if settings["root"]:
        enter_root(settings, work)
    run("mount", "-t", "proc", "proc", "/proc")
    run("mount", "-t", "sysfs", "-o", "ro", "sysfs", "/sys")
    # Without firmware tables the client's identity is that of its network card, on every machine.
    if Path("/sys/class/dmi/id").is_dir():
        tmpfs("/sys/class/dmi/id")
    cover_etc(work)
    cover_private_folders(settings, work)
    fill_etc(settings)
    make_accounts(settings["accounts"])
    make_runtime_folders(settings["accounts"])
    if settings["root"]:
        leave_old_root()
    print("ready", flush=True)
    reap_until_input_ends()


if __name__ == "__main__":
    main()
