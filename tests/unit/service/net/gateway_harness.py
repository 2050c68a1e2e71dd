"""The real program with a fake gateway.

`nft` is a script that logs its input; the OpenVPN servers are fakes whose management connections the test
operates.
"""

import os
import shutil
import socket
import unittest

from service_harness import EVENTUALLY, Service, grant_of, until, vpnc

HERE = os.path.dirname(os.path.abspath(__file__))

NFT = """#!/bin/sh
{ echo "[$VIA]"; cat; } >> FOLDER/nft.log
[ ! -e FOLDER/nft-fails ] || { echo "no such table"; exit 1; }
"""


class FakeServer:
    """The test's side of one fake OpenVPN server."""

    def __init__(self, link):
        link.settimeout(EVENTUALLY)
        self.link = link
        self.stream = link.makefile()
        self.name, pid = self.stream.readline().split()
        self.pid = int(pid)

    def close(self):
        self.stream.close()
        self.link.close()

    def send(self, *lines):
        self.link.sendall("".join(line + "\r\n" for line in lines).encode())

    def receive(self):
        return self.stream.readline().rstrip("\n")

    def come_up(self):
        self.send(">INFO:OpenVPN Management Interface Version 5", ">HOLD:Waiting for hold release:0")
        assert [self.receive(), self.receive()] == ["state on", "hold release"]
        self.send(">STATE:1700000000,CONNECTED,SUCCESS,10.8.0.1,,,,")
        return self

    def login(self, client, credentials, grant, source="198.51.100.10"):
        user, password = credentials
        variables = {"username": user, "password": password, "untrusted_ip": source, **grant}
        self.send(
            f">CLIENT:CONNECT,{client},0",
            *(f">CLIENT:ENV,{name}={value}" for name, value in variables.items()),
            ">CLIENT:ENV,END",
        )

    def logout(self, client):
        self.send(f">CLIENT:DISCONNECT,{client}", ">CLIENT:ENV,END")


class GatewayCase(unittest.TestCase):
    """Starts the service with a fake gateway. `program` must be set before the first test."""

    program = None

    def setUp(self):
        self.service = Service(self.program)
        self.addCleanup(self.service.close)
        folder = self.service.folder
        self.nft_log = folder + "/nft.log"
        with open(folder + "/nft", "w", encoding="ascii") as script:
            script.write(NFT.replace("FOLDER", folder))
        shutil.copy(HERE + "/fake_openvpn.py", folder + "/openvpn")
        for name in ("nft", "openvpn"):
            os.chmod(f"{folder}/{name}", 0o755)
        self.service.config["gateway"] = {
            "command": ["env", "VIA=gateway"],
            "openvpn": folder + "/openvpn",
            "nft": {"program": folder + "/nft"},
        }
        self.listener = socket.socket(socket.AF_UNIX)
        self.addCleanup(self.listener.close)
        self.listener.bind(folder + "/servers.sock")
        self.listener.listen()
        self.listener.settimeout(EVENTUALLY)

    def next_server(self):
        server = FakeServer(self.listener.accept()[0])
        self.addCleanup(server.close)
        return server

    def start(self):
        """Starts the service and returns its UDP and its TCP server, both up."""
        self.service.start()
        servers = {server.name: server.come_up() for server in (self.next_server(), self.next_server())}
        until(lambda: self.service.control(command="status")["ready"], what="ready")
        return servers["udp"], servers["tcp"]

    def nft(self):
        with open(self.nft_log, encoding="ascii") as log:
            return log.read()

    def credentials(self):
        answer = self.service.new_user()
        return answer["VPNUser"], answer["VPNPass"]

    def grant(self, credentials, **choices):
        """Requests a configuration and returns the grant in its certificate."""
        return grant_of(self.service.get(vpnc(credentials[0], **choices))[2])

    def granted_login(self, server, client):
        """Logs a client in and returns its tunnel address."""
        credentials = self.credentials()
        server.login(client, credentials, self.grant(credentials))
        self.assertEqual(server.receive(), f"client-auth {client} 0")
        push, address, mask = server.receive().split()
        self.assertEqual((push, mask, server.receive()), ("ifconfig-push", "255.255.0.0", "END"))
        return address
