"""Many machines of the service: three members of etcd, two API nodes and three gateways, and a client's host.

    client 198.51.100.10 --- inet (192.0.2.11 and .12: API; 10.77.0.11 to .13: etcd) --- gw1, gw2, gw3

Each gateway is a network namespace of its own with lent addresses that are routed to it.
"""

import contextlib
import json
import os
import re
import secrets
import shutil
import signal
import subprocess
import time
from pathlib import Path

from harness.home.deadlines import EVENTUALLY, POLL

from . import network, pki, service

CLIENT, INTERNET = "client", network.INTERNET
CLIENT_ADDRESS = "198.51.100.10"
APIS = {"api1": "192.0.2.11", "api2": "192.0.2.12"}
MEMBERS = {"etcd1": "10.77.0.11", "etcd2": "10.77.0.12", "etcd3": "10.77.0.13"}
GATEWAYS = {f"gw{number}": number for number in (1, 2, 3)}
# Configured at gw1 and gw2, routed to gw1.
CONTESTED = "198.18.1.99"
LIST = "/?cmd=MRTSL&ver=1&device=1&systamp=MacOS,user,mobilebox&uniqueid=x"
ANY_RATE = {
    "per_caller": {
        "connections": 0,
        "connections_per_second": 0,
        "handshakes_per_second": 0,
        "requests_per_second": 0,
        "configurations_per_second": 0,
    }
}


def address(gateway, last=1):
    """A lent address of a gateway."""
    return f"198.18.{GATEWAYS[gateway]}.{last}"


def wait_for(condition, what, timeout=EVENTUALLY):
    """Waits until condition() is true; returns the seconds that it took."""
    begun = time.monotonic()
    while not condition():
        if time.monotonic() - begun > timeout:
            raise TimeoutError(f"{what}: not within {timeout} s")
        time.sleep(POLL)
    return time.monotonic() - begun


def _configure(namespace, *commands):
    network.run("ip", "-n", namespace, "-batch", "-", input="".join(f"{command}\n" for command in commands))


class Member:
    """One member of etcd."""

    def __init__(self, name, folder, authority):
        self.name = name
        self.address = MEMBERS[name]
        self._output = folder / f"{name}.log"
        # etcd's own gateway for JSON is a client of the server. Peers are checked by the address from which
        # they connect, which is any of them in one namespace.
        both = "serverAuth,clientAuth"
        certificate, key = map(str, authority.leaf(name, f"IP:{self.address},IP:127.0.0.1", usage=both))
        names = ",".join(f"IP:{where}" for where in MEMBERS.values())
        peer_certificate, peer_key = map(str, authority.leaf("etcd-peers", names, usage=both))
        trust = str(authority.certificate)
        client, peer = f"https://{self.address}:2379", f"https://{self.address}:2380"
        members = ",".join(f"{other}=https://{where}:2380" for other, where in MEMBERS.items())
        self._command = [
            *("ip", "netns", "exec", INTERNET, "etcd", "--name", name, "--data-dir", str(folder / name)),
            *("--listen-client-urls", client, "--advertise-client-urls", client),
            *("--listen-peer-urls", peer, "--initial-advertise-peer-urls", peer),
            *("--initial-cluster", members, "--initial-cluster-token", "test"),
            *(
                "--client-cert-auth",
                "--trusted-ca-file",
                trust,
                "--cert-file",
                certificate,
                "--key-file",
                key,
            ),
            *("--peer-client-cert-auth", "--peer-trusted-ca-file", trust),
            *("--peer-cert-file", peer_certificate, "--peer-key-file", peer_key, "--log-level", "warn"),
        ]
        self._process = None

    def start(self):
        with self._output.open("ab") as output:
            self._process = subprocess.Popen(
                self._command, stdin=subprocess.DEVNULL, stdout=output, stderr=output
            )

    def kill(self):
        if self._process is not None:
            self._process.kill()
            self._process.wait()
            self._process = None


class Session:
    """A client's tunnel: OpenVPN with a configuration from one API node."""

    def __init__(self, cluster, api, lent):
        self.cluster = cluster
        self.lent = lent
        number = cluster.next_number()
        self._device = f"tun{number}"
        folder = cluster.folder / f"session{number}"
        folder.mkdir()
        self._log = folder / "log"
        self.user, password = cluster.credentials(api)
        answer = cluster.get(api, cluster.target(self.user, lent))
        assert answer.startswith("VPNConfig: "), answer
        text = answer.partition("VPNConfig: ")[2].replace("<br />", "\n")
        text = re.sub(r"(?m)^(dev|redirect-gateway|block-ipv6|ifconfig-ipv6).*\n", "", text)
        for name, content in (("x.ovpn", text), ("pair", f"{self.user}\n{password}\n")):
            (folder / name).write_text(content, encoding="ascii")
            (folder / name).chmod(0o600)
        with self._log.open("wb") as output:
            self.process = subprocess.Popen(
                [
                    *("ip", "netns", "exec", CLIENT, "openvpn", "--config", str(folder / "x.ovpn")),
                    *("--auth-user-pass", str(folder / "pair"), "--verb", "3"),
                    *("--dev", self._device, "--dev-type", "tun", "--route-noexec"),
                ],
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=subprocess.STDOUT,
            )
        wait_for(self._came_up, "the tunnel is up")

    def _came_up(self):
        log = self.log()
        assert self.process.poll() is None, log
        return "Initialization Sequence Completed" in log

    def log(self):
        return self._log.read_text(encoding="utf-8", errors="replace")

    def hides(self, api="api1"):
        """True when the API sees the lent address through the tunnel."""
        return self.cluster.get(api, "/ip", "--interface", self._device).strip() == self.lent

    @property
    def ended(self):
        return self.process.poll() is not None


class Cluster:
    """All of it, from the constructor to `close`."""

    def __init__(self, folder, authority):
        self.folder = Path(folder)
        self.folder.mkdir(parents=True)
        self.authority = authority
        self._numbers = 0
        self.sessions = []
        with contextlib.ExitStack() as made:
            self._make_network(made)
            self.members = {}
            for name in MEMBERS:
                self.members[name] = Member(name, self.folder, authority)
                made.callback(self.members[name].kill)
                self.members[name].start()
            keys = self._make_keys()
            self.apis = {name: self._api(name, keys) for name in APIS}
            self.gateways = {name: self._gateway(name, keys) for name in GATEWAYS}
            for node in self.nodes.values():
                made.callback(node.end)
            made.callback(self.end_sessions)
            for node in self.nodes.values():
                node.start()
            try:
                self.wait_settled()
            except TimeoutError as error:
                raise RuntimeError(self.report()) from error
            self._made = made.pop_all()

    @property
    def nodes(self):
        return {**self.apis, **self.gateways}

    def next_number(self):
        self._numbers += 1
        return self._numbers

    @staticmethod
    def _make_network(made):
        for namespace in (CLIENT, INTERNET, *GATEWAYS):
            network.run("ip", "netns", "add", namespace)
            made.callback(network.run, "ip", "netns", "delete", namespace, check=False)
            _configure(namespace, "link set lo up")
        _configure(
            INTERNET,
            *(f"address add {where}/32 dev lo" for where in (*APIS.values(), *MEMBERS.values())),
            f"link add to_client type veth peer name eth0 netns {CLIENT}",
            "address add 198.51.100.1/24 dev to_client",
            "link set to_client up",
        )
        _configure(
            CLIENT,
            f"address add {CLIENT_ADDRESS}/24 dev eth0",
            "link set eth0 up",
            "route add default via 198.51.100.1",
        )
        for name, number in GATEWAYS.items():
            _configure(
                INTERNET,
                f"link add to_{name} type veth peer name wan netns {name}",
                f"address add 10.77.{number}.1/24 dev to_{name}",
                f"link set to_{name} up",
                f"route add 198.18.{number}.0/24 via 10.77.{number}.2",
            )
            _configure(
                name,
                f"address add 10.77.{number}.2/24 dev wan",
                "link set wan up",
                f"route add default via 10.77.{number}.1",
                f"route add local 198.18.{number}.0/24 dev lo",
            )
        for namespace in (INTERNET, *GATEWAYS):
            network.inside(
                namespace, "sysctl", "-qw", "net.ipv4.ip_forward=1", "net.ipv4.conf.all.rp_filter=0"
            )

    def _make_keys(self):
        """The files that all nodes share."""
        users, control, client = (self.folder / name for name in ("user.keys", "control.key", "client.pem"))
        users.write_text(secrets.token_hex(32) + "\n", encoding="ascii")
        network.run("openvpn", "--genkey", "tls-crypt-v2-server", str(control))
        authority = pki.Authority(self.folder / "client-authority")
        client.write_bytes(authority.certificate.read_bytes() + (authority.folder / "ca.key").read_bytes())
        for file in (users, control, client):
            file.chmod(0o600)
        return {"keys": str(users), "vpn": {"control_key": str(control), "client_authority": str(client)}}

    def _settings(self, name, keys):
        certificate, key = map(str, self.authority.leaf(f"{name}-etcd", f"DNS:{name}", usage="clientAuth"))
        return {
            "keys": keys["keys"],
            "vpn_settings": keys["vpn"],
            "strict": False,
            "announced": [],
            "limits": ANY_RATE,
            "etcd": {
                "endpoints": [f"{where}:2379" for where in MEMBERS.values()],
                "ca": str(self.authority.certificate),
                "certificate": certificate,
                "key": key,
                "name": name,
            },
        }

    @staticmethod
    def groups_of(names):
        """The setting "groups" with the addresses of these gateways."""
        return [
            {
                "country_code": "DE",
                "country": "Germany",
                "location_code": f"C{GATEWAYS[name]}",
                "city": f"City{GATEWAYS[name]}",
                "addresses": [address(name, last) for last in (1, 2, 3)],
            }
            for name in names
        ]

    def _api(self, name, keys):
        names = f"DNS:{network.API_HOST},IP:{APIS[name]}"
        node = service.Service(
            service.program_from_environment(),
            self.folder / name,
            self.authority,
            listen=[{"address": APIS[name], "port": 443}],
            groups=self.groups_of(GATEWAYS),
            gateway=None,
            **self._settings(name, keys),
        )
        certificate, key = map(str, self.authority.leaf(name, names))
        node.configure(tls={"certificate": certificate, "key": key})
        node.role = "api"
        return node

    def _gateway(self, name, keys):
        place = {"namespace": name, "gateway_namespace": name}
        node = type("Gateway", (service.Service,), place)(
            service.program_from_environment(),
            self.folder / name,
            self.authority,
            groups=self.groups_of([name]),
            gateway={"nft": {"table": service.TABLE, "map": service.LENT_MAP, "wan_interface": "wan"}},
            **self._settings(name, keys),
        )
        node.role = "gateway"
        return node

    def get(self, api, target, *options):
        """The body of an API node's answer to the client."""
        return network.inside(
            CLIENT,
            *("curl", "-q", "-fsS", "-4", "-m", "30", "--cacert", str(self.authority.certificate)),
            *("--resolve", f"{network.API_HOST}:443:{APIS[api]}", *options),
            f"https://{network.API_HOST}{target}",
        ).stdout

    def credentials(self, api):
        """The user and the password of a new server list."""
        text = self.get(api, LIST).replace("<br />", "\n")
        return tuple(re.search(rf"^{key}:\s*(\S+)", text, re.M).group(1) for key in ("VPNUser", "VPNPass"))

    @staticmethod
    def target(user, lent):
        return (
            f"/?cmd=VPNC&ver=1&device=1&server=571&desiredip={lent}&sessid={user}"
            "&&systamp=MacOS,user,mobilebox&uniqueid=x&proto=UDP"
        )

    def offered(self, api):
        """The gateways whose addresses are in the API node's server list."""
        text = self.get(api, LIST)
        return {name for name in GATEWAYS if address(name) in text}

    def offer(self, *gateways):
        """True when every API node that runs offers these gateways and no other."""
        return all(self.offered(name) == set(gateways) for name, api in self.apis.items() if api.running)

    def knows_etcd(self, name):
        """What a node reports of etcd and of the others."""
        return self.nodes[name].control("status")["etcd"]

    def lends(self, session):
        """True while the gateway of a session lends it an address."""
        return any(session.lent in gateway.lent().values() for gateway in self.gateways.values())

    def wait_settled(self):
        """Waits until every node is connected, and all gateways are offered."""
        wait_for(
            lambda: all(self.knows_etcd(name)["connected"] for name in self.nodes), "all nodes are connected"
        )
        wait_for(lambda: self.offer(*GATEWAYS), "all gateways are offered")

    def session(self, api, gateway, last=1):
        """A new session that is lent an address of the gateway, checked."""
        made = Session(self, api, address(gateway, last))
        self.sessions.append(made)
        assert made.hides(next(name for name, node in self.apis.items() if node.running))
        return made

    def end_sessions(self):
        for session in self.sessions:
            session.process.terminate()
        for session in self.sessions:
            session.process.wait(EVENTUALLY)
        self.sessions.clear()

    def kill(self, name):
        """Kills a node as a crash does; its OpenVPN servers end by themselves."""
        node = self.nodes[name]
        os.kill(node.pid, signal.SIGKILL)
        node.process.wait()
        (node.runtime / "listening").unlink(missing_ok=True)

    def kill_etcd(self):
        for member in self.members.values():
            member.kill()

    def start_etcd(self):
        for member in self.members.values():
            member.start()

    def report(self):
        """What is useful after a failed test."""
        parts = []
        for name, node in self.nodes.items():
            with contextlib.suppress(OSError, ValueError):
                parts.append(f"{name}: {json.dumps(node.control('status'))}")
            parts.append(f"{name}: {node.output.read_text(errors='replace')[-3000:]}")
        for session in self.sessions:
            parts.append(f"session: {session.log()[-2000:]}")
        for name in self.members:
            parts.append(f"{name}: {(self.folder / f'{name}.log').read_text(errors='replace')[-2000:]}")
        return "\n".join(parts)

    def close(self):
        self._made.close()
        shutil.rmtree(self.folder)
