"""A machine on which the service is set up, and a session from outside."""

import contextlib
import hashlib
import json
import re
import ssl
import subprocess
import time

from harness.home.deadlines import EVENTUALLY, POLL
from unit import NAME, Units
from world import network

HOST = "vpn.example.org"
ADDRESSES = "203.0.113.0/28"
ETC = f"/etc/{NAME}"
ARGUMENTS = ("--name", HOST, "--addresses", ADDRESSES, "--country", "DE", "--country-name", "Germany")
ARGUMENTS += ("--city", "Berlin")
GATEWAY = ("nsenter", f"--net=/run/netns/{network.GATEWAY}")


class Host:
    """A machine with a public address, to which the lent addresses are routed, and nothing else prepared."""

    def __init__(self, machine):
        self.machine = machine
        self.unit = Units(machine, GATEWAY)
        network.run("ip", "-n", network.GATEWAY, "route", "del", "local", network.LENT_POOL, "dev", "lo")
        network.inside(network.GATEWAY, "sysctl", "-qw", "net.ipv4.ip_forward=0")

    def call(self, *arguments):
        """(exit status, output) of a command of the service's program, as root."""
        environment = ["env", "-i", "PATH=/usr/bin:/bin", "LC_ALL=C.UTF-8"]
        done = subprocess.run(
            [*GATEWAY, "chroot", self.machine.root, *environment, f"/usr/sbin/{NAME}", *arguments],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            check=False,
        )
        return done.returncode, done.stdout

    def setup(self, *arguments):
        """The output of a setup that succeeds."""
        status, output = self.call("setup", *arguments)
        assert status == 0, output
        return output

    def renew(self):
        status, output = self.call("renew")
        assert status == 0, output
        return re.findall(r"^renewed: (.*)$", output, re.MULTILINE)

    def path(self, name):
        return self.machine.root / ETC[1:] / name

    def configuration(self):
        return json.loads(self.path("service.json").read_text(encoding="utf-8"))

    def files(self):
        """Of everything that a setup writes: name -> (content, mode, owner, inode, time of the change)."""
        found = {}
        sysctl = self.machine.root / f"etc/sysctl.d/60-{NAME}.conf"
        for path in [*self.path(".").iterdir(), sysctl]:
            state = path.stat()
            content = hashlib.sha256(path.read_bytes()).hexdigest()
            owner = (state.st_uid, state.st_gid)
            found[path.name] = (content, state.st_mode & 0o777, owner, state.st_ino, state.st_ctime_ns)
        return found

    def routes(self):
        """The networks that are the machine's own by the setup."""
        command = ("ip", "-n", network.GATEWAY, "-json", "route", "show", "table", "local", "proto", "171")
        return [route["dst"] for route in json.loads(network.run(*command).stdout)]

    def served(self):
        """The certificate of the listener, in DER, as a client from outside receives it."""
        context = ssl.create_default_context(cafile=self.path("api-ca.crt"))
        with network.socket_in(network.INTERNET) as link:
            link.settimeout(EVENTUALLY)
            link.connect((network.REAL_ADDRESS, 443))
            with context.wrap_socket(link, server_hostname=HOST) as session:
                return session.getpeercert(binary_form=True)

    def wait_served(self, certificate):
        """Waits until the listener, which ends and is started again, has this certificate, in PEM."""
        end = time.monotonic() + EVENTUALLY
        while True:
            with contextlib.suppress(OSError):
                if self.served() == ssl.PEM_cert_to_DER_cert(certificate):
                    return
            assert time.monotonic() < end, "the listener has taken another certificate"
            time.sleep(POLL)


@contextlib.contextmanager
def session(host):
    """An OpenVPN session of the home, outside of everything that the setup does."""
    lists = f"https://{HOST}/?cmd=MRTSL&ver=1&device=1&systamp=a&uniqueid=b"
    curl = ["curl", "-q", "-sS", "--max-time", "30", "--resolve", f"{HOST}:443:{network.REAL_ADDRESS}"]
    curl += ["--cacert", str(host.path("api-ca.crt"))]
    fields = dict(
        line.split(": ", 1)
        for line in network.inside(network.HOME, *curl, lists).stdout.split("<br />")
        if ": " in line
    )
    user = fields["VPNUser"]
    grant = f"https://{HOST}/?cmd=VPNC&ver=1&device=1&server=1&desiredip=203.0.113.7&sessid={user}"
    answer = network.inside(network.HOME, *curl, f"{grant}&&systamp=a&uniqueid=b&proto=UDP").stdout
    folder = host.machine.upper / "session"
    folder.mkdir(exist_ok=True)
    (folder / "client.conf").write_text(
        answer.removeprefix("VPNConfig: ").replace("<br />", "\n"), encoding="utf-8"
    )
    credentials = folder / "credentials"
    credentials.touch(mode=0o600)
    credentials.write_text(f"{user}\n{fields['VPNPass']}\n", encoding="utf-8")
    command = ["ip", "netns", "exec", network.HOME, "openvpn", "--config", str(folder / "client.conf")]
    log = folder / "log"
    with log.open("wb") as output:
        process = subprocess.Popen(
            [*command, "--auth-user-pass", str(credentials)], stdin=subprocess.DEVNULL, stdout=output
        )
    try:
        end = time.monotonic() + EVENTUALLY
        while "Initialization Sequence Completed" not in log.read_text(encoding="utf-8"):
            assert process.poll() is None and time.monotonic() < end, log.read_text(encoding="utf-8")
            time.sleep(POLL)

        def seen():
            return network.inside(network.HOME, *curl, f"https://{HOST}/ip").stdout.strip()

        yield seen
        assert process.poll() is None, "the session went on"
    finally:
        process.kill()
        process.wait()
