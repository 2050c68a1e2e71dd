#!/usr/bin/python3
"""The real program with a fake gateway. Usage: test_gateway.py PROGRAM"""

import os
import signal
import sys
import unittest

from gateway_harness import GatewayCase
from service_harness import EVENTUALLY, until, vpnc

GatewayCase.program = sys.argv.pop(1)


def process_state(pid):
    """The kernel's letter for the state of a process; T is stopped."""
    with open(f"/proc/{pid}/stat", encoding="ascii") as stat:
        return stat.read().rsplit(")", 1)[1].split()[0]


class GatewayTest(GatewayCase):
    """Lent addresses, logins and restarts of the OpenVPN servers."""

    def test_the_tables_come_before_the_servers(self):
        self.service.start()
        first, second = self.next_server(), self.next_server()
        self.assertIn("[gateway]\nadd table ip quorvane\n", self.nft())
        self.assertEqual({first.name, second.name}, {"udp", "tcp"})
        self.assertFalse(self.service.control(command="status")["ready"])
        first.come_up()
        until(
            lambda: self.service.control(command="status")["servers"][first.name]["ready"], what="one server"
        )
        self.assertFalse(self.service.control(command="status")["ready"])

    def test_servers_run_under_another_name_with_nothing_inherited(self):
        udp, _ = self.start()
        with open(f"/proc/{udp.pid}/comm", encoding="ascii") as comm:
            self.assertEqual(comm.read(), "vpnsrv\n")
        with open(f"/proc/{udp.pid}/environ", "rb") as environment:
            names = {entry.split(b"=")[0] for entry in environment.read().split(b"\0") if entry}
        self.assertEqual(names - {b"LC_CTYPE"}, {b"PATH", b"LC_ALL", b"VIA"})
        files = {os.readlink(f"/proc/{udp.pid}/fd/{number}") for number in os.listdir(f"/proc/{udp.pid}/fd")}
        sockets = [file for file in files if file.startswith("socket:")]
        self.assertEqual(len(sockets), 2, files)  # the two connections of the fake
        self.assertIn("/dev/null", files)

    def test_a_login_lends_the_address_and_a_logout_releases_it(self):
        udp, _ = self.start()
        address = self.granted_login(udp, 5)
        self.assertTrue(address.startswith("10.8."))
        self.assertIn(f"add element ip quorvane lent {{ {address} : 203.0.113.5 }}\n", self.nft())
        self.assertEqual(self.service.control(command="status")["servers"]["udp"]["clients"], 1)
        udp.logout(5)
        until(
            lambda: f"delete element ip quorvane lent {{ {address} }}" in self.nft(),
            what="the removal of the entry",
        )

    def test_a_grant_is_for_one_place_and_one_server(self):
        udp, tcp = self.start()
        credentials = self.credentials()
        udp.login(1, credentials, {})
        self.assertTrue(udp.receive().startswith('client-deny 1 0 "the certificate contains no grant"'))
        grant = self.grant(credentials, proto="TCP")
        udp.login(2, credentials, grant)
        self.assertTrue(udp.receive().startswith('client-deny 2 0 "the grant is for another server"'))
        tcp.login(1, credentials, grant)
        self.assertEqual(tcp.receive(), "client-auth 1 0")
        self.assertEqual([tcp.receive().split()[0], tcp.receive()], ["ifconfig-push", "END"])
        tcp.login(2, credentials, grant, source="198.51.100.11")
        self.assertTrue(tcp.receive().startswith('client-deny 2 0 "the grant was used elsewhere"'))
        tcp.logout(1)
        tcp.login(3, credentials, grant)
        self.assertEqual(tcp.receive(), "client-auth 3 0")

    def test_a_grant_of_before_a_restart(self):
        self.start()
        credentials = self.credentials()
        grant = self.grant(credentials)
        self.assertEqual(self.service.stop(), 0)
        udp, _ = self.start()
        udp.login(1, credentials, grant)
        self.assertEqual(udp.receive(), "client-auth 1 0")

    def test_orders_of_the_operator(self):
        udp, _ = self.start()
        first = self.credentials()
        grant = self.grant(first)
        udp.login(1, first, grant)
        self.assertEqual(
            [udp.receive(), udp.receive().split()[0], udp.receive()][1:], ["ifconfig-push", "END"]
        )
        address = self.granted_login(udp, 2)
        answer = self.service.control(command="revoke", user=first[0])
        self.assertEqual((answer, udp.receive()), ({"ok": True, "ended": 1}, "client-kill 1 HALT"))
        udp.login(3, first, grant)
        self.assertTrue(udp.receive().startswith('client-deny 3 0 "unknown or expired user"'))
        self.assertFalse(self.service.control(command="revoke", user="unknown")["ok"])
        self.assertTrue(self.service.control(command="drain")["ok"])
        self.assertNotIn("Server", self.service.new_user())
        self.assertEqual(self.service.get(vpnc(first[0]))[2], b"ERR: Unknown or expired session")
        status = self.service.control(command="status")
        self.assertEqual((status["draining"], status["revocations"]), (True, 1))
        self.assertEqual(status["servers"]["udp"]["clients"], 1, "the other session continues")
        answer = self.service.control(command="revoke", address="203.0.113.5")
        self.assertEqual((answer, udp.receive()), ({"ok": True, "ended": 1}, "client-kill 2 HALT"))
        until(lambda: f"delete element ip quorvane lent {{ {address} }}" in self.nft(), what="the removal")
        self.assertFalse(self.service.control(command="revoke", address="203.0.113.99")["ok"])

    def test_orders_count_after_a_restart(self):
        udp, _ = self.start()
        credentials = self.credentials()
        grant = self.grant(credentials)
        self.service.control(command="revoke", user=credentials[0])
        self.assertEqual(self.service.stop(), 0)
        udp, _ = self.start()
        udp.login(1, credentials, grant)
        self.assertTrue(udp.receive().startswith('client-deny 1 0 "unknown or expired user"'))

    def test_nothing_is_stored_of_a_grant_that_is_not_used(self):
        udp, _ = self.start()
        for _ in range(3):
            self.grant(self.credentials())
        self.assertEqual(self.service.control(command="status")["credentials"], 0)
        self.granted_login(udp, 1)
        self.assertEqual(self.service.control(command="status")["credentials"], 1)

    def test_the_servers_check_with_the_authority_of_the_certificates(self):
        self.start()
        with open(self.service.runtime + "/udp.conf", encoding="ascii") as file:
            lines = file.read().splitlines()
        certificates = f"{self.service.runtime}/client-authority.crt"
        self.assertIn("verify-client-cert require", lines)
        self.assertIn(f'ca "{certificates}"', lines)
        with open(certificates, encoding="ascii") as file:
            text = file.read()
        self.assertIn("-----BEGIN CERTIFICATE-----", text)
        self.assertNotIn("PRIVATE", text)

    def test_a_gateway_that_cannot_lend_refuses(self):
        udp, _ = self.start()
        credentials = self.credentials()
        grant = self.grant(credentials)
        with open(self.service.folder + "/nft-fails", "w", encoding="ascii"):
            udp.login(1, credentials, grant)
            self.assertTrue(udp.receive().startswith('client-deny 1 0 "the gateway cannot lend'))
        self.assertIn("no such table", self.service.stderr())

    def test_a_dead_server_is_started_again_and_its_entries_removed(self):
        udp, _ = self.start()
        address = self.granted_login(udp, 1)
        os.kill(udp.pid, signal.SIGKILL)
        again = self.next_server().come_up()
        self.assertEqual(again.name, "udp")
        until(lambda: self.service.control(command="status")["ready"], what="ready again")
        self.assertIn(f"delete element ip quorvane lent {{ {address} }}", self.nft())
        self.assertIn("the OpenVPN server ended with status 137", self.service.stderr())
        self.granted_login(again, 1)

    def test_an_overlong_management_line_ends_the_connection(self):
        udp, _ = self.start()
        udp.link.sendall(b"x" * 20000)
        self.assertEqual(udp.receive(), "")
        self.assertEqual(self.next_server().name, "udp")

    def test_ends_servers_and_tables(self):
        udp, tcp = self.start()
        self.granted_login(udp, 1)
        self.assertEqual(self.service.stop(), 0)
        for server in (udp, tcp):
            self.assertFalse(os.path.exists(f"/proc/{server.pid}"))
        self.assertTrue(self.nft().endswith("delete table ip quorvane\ndelete table ip6 quorvane\n"))
        self.assertEqual([name for name in os.listdir(self.service.runtime) if name.endswith(".sock")], [])

    def test_a_server_that_does_not_end_is_killed(self):
        udp, _ = self.start()
        os.kill(udp.pid, signal.SIGSTOP)
        until(lambda: process_state(udp.pid) == "T", what="the server's stop")
        self.assertEqual(self.service.stop(), 0)
        self.assertFalse(os.path.exists(f"/proc/{udp.pid}"))
        self.assertIn("does not end, killing it", self.service.stderr())

    def test_recovers_from_its_own_kill(self):
        udp, tcp = self.start()
        self.granted_login(udp, 1)
        self.service.kill()
        self.assertEqual((udp.receive(), tcp.receive()), ("", ""))  # the servers notice it and end
        os.remove(self.service.runtime + "/listening")
        udp, _ = self.start()
        self.assertEqual(self.nft().count("table ip quorvane {\n map lent"), 2)
        self.granted_login(udp, 1)
        self.assertEqual(self.service.stop(), 0)

    def test_a_gateway_that_cannot_be_prepared_ends_the_service(self):
        with open(self.service.folder + "/nft-fails", "w", encoding="ascii"):
            self.service.launch()
        self.assertEqual(self.service.process.wait(EVENTUALLY), 1)
        self.assertIn("gateway: the tables cannot be set up: no such table", self.service.stderr())

    def test_a_missing_program_is_tried_again(self):
        path = self.service.config["gateway"]["openvpn"]
        os.rename(path, path + "-away")
        self.service.start()
        until(lambda: "ended with status 127" in self.service.stderr(), what="a failed start")
        self.assertFalse(self.service.control(command="status")["ready"])
        os.rename(path + "-away", path)
        self.next_server()
        self.next_server()
        self.assertEqual(self.service.stop(), 0)


if __name__ == "__main__":
    unittest.main()
