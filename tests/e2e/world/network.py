"""The three network namespaces and the links between them.

    home 192.168.77.2 --- 192.168.77.1 gw 198.51.100.10 --- 198.51.100.1 inet (192.0.2.10, 8.8.8.8, 8.8.4.4)

198.51.100.10 is the real public address of the home. The lent addresses, 203.0.113.0/24, are routed to gw,
which owns every one of them.
"""

import contextlib
import ctypes
import json
import socket
import subprocess
import threading
import time
from pathlib import Path

from harness.home.deadlines import EVENTUALLY

HOME, GATEWAY, INTERNET = "home", "gw", "inet"
HOME_ADDRESS = "192.168.77.2"
ROUTER_ADDRESS = "192.168.77.1"
REAL_ADDRESS = "198.51.100.10"
SERVICE_ADDRESS = "192.0.2.10"
LENT_POOL = "203.0.113.0/24"
API_HOST = "api.quorvane.test"
WEB_HOST = "www.quorvane.test"
NAME_SERVERS = ("8.8.8.8", "8.8.4.4")
# Only in a world with IPv6: the home, its router and a host of the Internet, without address translation.
HOME_ADDRESS_6, ROUTER_ADDRESS_6, INTERNET_ADDRESS_6 = "2001:db8:77::2", "2001:db8:77::1", "2001:db8:2::10"

_NAT = f"""
table ip home_nat {{
    chain postrouting {{
        type nat hook postrouting priority srcnat; policy accept;
        ip saddr 192.168.77.0/24 oifname "wan" snat to {REAL_ADDRESS}
    }}
}}
"""


def run(*command, check=True, **options):
    """Runs a command and captures its output as text.

    With `check`, a failure raises with its error output.
    """
    done = subprocess.run(command, capture_output=True, text=True, check=False, **options)
    if check and done.returncode != 0:
        raise RuntimeError(f"{' '.join(command)}: exit status {done.returncode}: {done.stderr.strip()}")
    return done


def inside(namespace, *command, **options):
    """Runs a command in a network namespace."""
    return run("ip", "netns", "exec", namespace, *command, **options)


def _configure(namespace, *commands):
    """Applies commands of ip in a namespace, all of them by one process."""
    run("ip", "-n", namespace, "-batch", "-", input="".join(f"{command}\n" for command in commands))


def firewall(namespace):
    """The nftables rules of a namespace, as nft's JSON objects."""
    return json.loads(inside(namespace, "nft", "-j", "list", "ruleset").stdout)["nftables"]


def swallow(match):
    """Makes the gateway silently drop every arriving packet that matches (in nft's language)."""
    inside(GATEWAY, "nft", "-f", "-", input=f"table ip hole {{\n{arriving(f'{match} drop')}\n}}\n")


@contextlib.contextmanager
def ruled(namespace, rules, table="fault"):
    """While the block runs, a namespace has these nft chains, in a separate table."""
    inside(namespace, "nft", "-f", "-", input=f"table ip {table} {{\n{rules}\n}}\n")
    try:
        yield
    finally:
        inside(namespace, "nft", "delete", "table", "ip", table)


def arriving(rule):
    """A chain that applies the rule to arriving packets before everything else."""
    return f"chain arriving {{ type filter hook prerouting priority -300;\n {rule}\n }}"


def leaving(rule):
    """A chain that applies the rule to leaving packets, both own and forwarded ones."""
    return f"chain leaving {{ type filter hook postrouting priority 300;\n {rule}\n }}"


def redirected(match, port):
    """A chain that redirects matching connections from outside to a port of this namespace."""
    return f"chain turned {{ type nat hook prerouting priority -150;\n {match} redirect to :{port}\n }}"


def diverted(protocol, port, other):
    """Chains that lead what comes to a port of the lent addresses to another port of this namespace.

    The service keeps the packets of its own ports out of the kernel's table of connections, without which
    nothing is redirected: they change their port before and after.
    """
    return (
        f"chain diverted {{ type filter hook prerouting priority -310;\n"
        f" ip daddr {LENT_POOL} {protocol} dport {port} {protocol} dport set {other}\n }}\n"
        + redirected(f"ip daddr {LENT_POOL} {protocol} dport {other}", other)
        + f"\nchain returned {{ type filter hook postrouting priority 300;\n"
        f" ip saddr {LENT_POOL} {protocol} sport {other} {protocol} sport set {port}\n }}"
    )


def swallowing(match):
    """While the block runs, the gateway silently drops every arriving packet that matches."""
    return ruled(GATEWAY, arriving(f"{match} drop"))


_CLONE_NEWNET = 0x40000000


def socket_in(namespace, kind=socket.SOCK_STREAM):
    """A socket of this process in another namespace."""
    made = []

    def make():
        # Only the calling thread changes its namespace; a socket stays in the one where it was made.
        library = ctypes.CDLL(None, use_errno=True)
        with open(f"/run/netns/{namespace}", "rb") as file:
            if library.setns(file.fileno(), _CLONE_NEWNET) != 0:
                made.append(OSError(ctypes.get_errno(), "setns"))
                return
        made.append(socket.socket(socket.AF_INET, kind))

    thread = threading.Thread(target=make)
    thread.start()
    thread.join()
    if isinstance(made[0], OSError):
        raise made[0]
    return made[0]


def stop_swallowing():
    """Removes the rule of `swallow`, if there is one."""
    inside(GATEWAY, "nft", "-f", "-", input="table ip hole\ndelete table ip hole\n")


class Network:
    """The namespaces with their name server. All of it ends with `close`, or with the outer namespace."""

    def __init__(self, folder, *, ipv6=False):
        self.folder = Path(folder)
        self._name_server = None
        try:
            for namespace in (HOME, GATEWAY, INTERNET):
                run("ip", "netns", "add", namespace)
            self._connect()
            if ipv6:
                self._connect_ipv6()
            self.start_name_server()
        except BaseException:
            self.close()
            raise

    @staticmethod
    def _connect():
        _configure(
            GATEWAY,
            f"link add lan type veth peer name eth0 netns {HOME}",
            f"link add wan type veth peer name net0 netns {INTERNET}",
            f"address add {ROUTER_ADDRESS}/24 dev lan",
            f"address add {REAL_ADDRESS}/24 dev wan",
            *(f"link set {device} up" for device in ("lo", "lan", "wan")),
            "route add default via 198.51.100.1",
            f"route add local {LENT_POOL} dev lo",
        )
        _configure(
            HOME,
            f"address add {HOME_ADDRESS}/24 dev eth0",
            "link set lo up",
            "link set eth0 up",
            f"route add default via {ROUTER_ADDRESS}",
        )
        _configure(
            INTERNET,
            "address add 198.51.100.1/24 dev net0",
            *(f"address add {address}/32 dev lo" for address in (SERVICE_ADDRESS, *NAME_SERVERS)),
            "link set lo up",
            "link set net0 up",
            f"route add {LENT_POOL} via {REAL_ADDRESS}",
        )
        inside(
            GATEWAY,
            "sysctl",
            "-qw",
            "net.ipv4.ip_forward=1",
            "net.ipv4.conf.all.rp_filter=0",
            "net.ipv4.conf.default.rp_filter=0",
        )
        inside(GATEWAY, "nft", "-f", "-", input=_NAT)

    def _connect_ipv6(self):
        """Global addresses and a default route for the home, as a router's announcement would set them."""
        _configure(
            HOME,
            f"address add {HOME_ADDRESS_6}/64 dev eth0 nodad",
            f"route add default via {ROUTER_ADDRESS_6}",
        )
        _configure(
            GATEWAY,
            f"address add {ROUTER_ADDRESS_6}/64 dev lan nodad",
            "address add 2001:db8:198::10/64 dev wan nodad",
            "route add default via 2001:db8:198::1",
        )
        _configure(
            INTERNET,
            "address add 2001:db8:198::1/64 dev net0 nodad",
            f"address add {INTERNET_ADDRESS_6}/128 dev lo nodad",
            "route add 2001:db8:77::/64 via 2001:db8:198::10",
        )
        inside(GATEWAY, "sysctl", "-qw", "net.ipv6.conf.all.forwarding=1")

    def start_name_server(self):
        """Starts the name server that answers at NAME_SERVERS and knows the service's hosts only."""
        command = [
            "ip",
            "netns",
            "exec",
            INTERNET,
            "dnsmasq",
            "--keep-in-foreground",
            "--conf-file=/dev/null",
            "--no-resolv",
            "--no-hosts",
            "--user=root",
            "--group=root",
            "--bind-interfaces",
            f"--listen-address={','.join(NAME_SERVERS)}",
            f"--pid-file={self.folder}/dnsmasq.pid",
            "--log-queries",
            f"--log-facility={self.folder}/dnsmasq.log",
        ]
        command += [f"--host-record={host},{SERVICE_ADDRESS}" for host in (API_HOST, WEB_HOST)]
        # Nothing is forwarded: any other name does not exist.
        command += ["--local=//", "--address=/#/"]
        self._name_server = subprocess.Popen(command, stdin=subprocess.DEVNULL)
        self._await_name_server()

    def _await_name_server(self):
        deadline = time.monotonic() + EVENTUALLY
        while time.monotonic() < deadline:
            sockets = inside(INTERNET, "ss", "-Hlun", "sport = :53").stdout
            if all(f"{address}:53" in sockets for address in NAME_SERVERS):
                return
            if self._name_server.poll() is not None:
                break
            time.sleep(0.005)
        raise RuntimeError("the name server did not start")

    @staticmethod
    def cut_home():
        """Unplugs the home's cable: no link, no route."""
        run("ip", "-n", HOME, "link", "set", "eth0", "down")

    @staticmethod
    def reconnect_home():
        _configure(HOME, "link set eth0 up", f"route replace default via {ROUTER_ADDRESS}")

    @contextlib.contextmanager
    def unplugged_cable(self):
        """While the block runs, the home has neither link nor route."""
        self.cut_home()
        yield
        self.reconnect_home()

    @staticmethod
    @contextlib.contextmanager
    def lost_route():
        """While the block runs, the home has its link, but no default route."""
        run("ip", "-n", HOME, "route", "del", "default")
        yield
        run("ip", "-n", HOME, "route", "replace", "default", "via", ROUTER_ADDRESS)

    def close(self):
        if self._name_server is not None:
            self._name_server.terminate()
            self._name_server.wait()
        for namespace in (HOME, GATEWAY, INTERNET):
            run("ip", "netns", "delete", namespace, check=False)
