#!/usr/bin/python3
"""The real program as a gateway among others, with a fake etcd. Usage: test_etcd_gateway.py PROGRAM"""

import json
import os
import signal
import sys
import unittest

from fake_etcd import FakeEtcd
from gateway_harness import GatewayCase
from service_harness import until

GatewayCase.program = sys.argv.pop(1)
FIRST, SECOND = "203.0.113.5", "203.0.113.6"
KEY = "/quorvane/gateways/gw1"


def owner(address):
    """The key of an address's owner."""
    return f"/quorvane/owners/{address}"


class EtcdGateway(GatewayCase):
    """Registration, claims, and orders of other nodes."""

    def setUp(self):
        super().setUp()
        cert, key = (f"{self.service.folder}/{name}.pem" for name in ("cert", "key"))
        self.etcd = FakeEtcd(cert, key, cert)
        self.addCleanup(self.etcd.close)
        self.service.config["etcd"] = {
            "endpoints": [self.etcd.endpoint],
            "ca": cert,
            "certificate": cert,
            "key": key,
            "name": "gw1",
        }

    def registered(self):
        """The value of the registration, or nothing."""
        return json.loads(self.etcd.store[KEY][0]) if KEY in self.etcd.store else {}

    def start_registered(self):
        """Starts the service and waits until it is registered with both addresses."""
        servers = self.start()
        until(lambda: self.registered().get("addresses") == [FIRST, SECOND], "it is registered")
        return servers

    def knows(self):
        return self.service.control(command="status")["etcd"]

    def clients(self):
        servers = self.service.control(command="status")["servers"]
        return sum(server["clients"] for server in servers.values())

    def wait_offered(self):
        """A grant can be requested only when the process has been notified of its own registration."""
        until(lambda: self.knows()["gateways"].get("gw1", {}).get("addresses"), "it knows itself")

    def test_registers_when_its_servers_are_ready(self):
        self.service.start()
        servers = self.next_server(), self.next_server()
        until(lambda: owner(SECOND) in self.etcd.store, "it claims its addresses")
        self.assertEqual(self.etcd.store[owner(FIRST)][0], "gw1")
        self.assertEqual(self.registered(), {})
        for server in servers:
            server.come_up()
        until(self.registered, "it is registered")
        self.assertFalse(self.registered()["draining"])
        self.assertEqual(self.etcd.leases[self.etcd.store[KEY][1]], 3)
        self.assertEqual(self.service.stop(), 0)
        self.assertEqual(self.registered(), {}, "the lease was ended")
        self.assertEqual(self.etcd.store[owner(FIRST)][0], "gw1", "but the address stays its own")

    def test_registers_anew_when_its_lease_has_ended(self):
        self.start_registered()
        first = self.etcd.store[KEY][1]
        self.etcd.end_lease(first)
        until(self.registered, "it is registered")
        self.assertNotEqual(self.etcd.store[KEY][1], first)
        self.etcd.delete(KEY)
        until(self.registered, "it is registered also when the key was deleted")

    def test_its_drain_is_in_the_registration(self):
        self.start_registered()
        self.assertEqual(self.service.control(command="drain"), {"ok": True})
        until(lambda: self.registered()["draining"], "it is registered as draining")
        self.assertNotIn("/quorvane/orders/drain", self.etcd.store)
        self.assertEqual(self.service.control(command="drain", on=False), {"ok": True})
        until(lambda: not self.registered()["draining"], "it does not drain")

    def test_lends_only_what_it_owns(self):
        self.etcd.put(owner(FIRST), "gw2")
        udp, _tcp = self.start()
        until(lambda: self.registered().get("addresses") == [SECOND], "it is registered")
        until(lambda: self.knows()["owned_by_others"] == {FIRST: "gw2"}, "it says so")
        self.etcd.put("/quorvane/gateways/gw2", json.dumps({**self.registered(), "addresses": [FIRST]}))
        until(lambda: "gw2" in self.knows()["gateways"], "the other gateway is known")
        credentials = self.credentials()
        udp.login(1, credentials, self.grant(credentials))
        self.assertIn("the address is not lent here", udp.receive())
        self.etcd.delete(owner(FIRST))
        until(lambda: self.registered()["addresses"] == [FIRST, SECOND], "it claims what is free")

    def test_lends_nothing_before_it_has_ever_reached_etcd(self):
        self.etcd.hangs = True
        udp, _tcp = self.start()
        credentials = self.credentials()
        udp.login(1, credentials, self.grant(credentials))
        self.assertIn("the address is not lent here", udp.receive())
        self.etcd.resume()
        until(self.registered, "it is registered")
        udp.login(2, credentials, self.grant(credentials))
        self.assertEqual(udp.receive(), "client-auth 2 0")

    def test_lends_what_it_owned_after_a_restart_without_etcd(self):
        self.start_registered()
        self.wait_offered()
        until(lambda: os.path.exists(f"{self.service.runtime}/operator.json.shared"), "it is written")
        self.assertEqual(self.service.stop(), 0)
        self.etcd.hangs = True
        udp, _tcp = self.start()
        credentials = self.credentials()
        udp.login(1, credentials, self.grant(credentials, address=FIRST))
        self.assertEqual(udp.receive(), "client-auth 1 0")

    def test_sessions_end_when_another_gateway_owns_the_address(self):
        udp, _tcp = self.start_registered()
        self.wait_offered()
        self.granted_login(udp, 1)
        self.etcd.put(owner(FIRST), "gw2")
        self.assertEqual(udp.receive(), "client-kill 1 HALT")

    def test_a_released_address_is_kept_while_a_session_has_it(self):
        udp, _tcp = self.start_registered()
        self.wait_offered()
        self.granted_login(udp, 1)
        groups = self.service.config["groups"]
        groups[0]["addresses"] = [SECOND]
        with open(f"{self.service.folder}/config.json", "w", encoding="utf-8") as file:
            json.dump(self.service.config, file)
        os.kill(self.service.process.pid, signal.SIGHUP)
        until(lambda: self.registered()["addresses"] == [SECOND], "it lends the other one only")
        self.assertEqual(self.etcd.store[owner(FIRST)][0], "gw1")
        self.assertEqual(self.clients(), 1)
        udp.logout(1)
        until(lambda: owner(FIRST) not in self.etcd.store, "it is released")

    def test_orders_of_other_nodes_end_sessions(self):
        udp, _tcp = self.start_registered()
        self.wait_offered()
        self.granted_login(udp, 1)
        late = 4102444800 * 10**6
        order = json.dumps({"issued_until": late, "end": late})
        self.etcd.put(f"/quorvane/orders/addresses/{FIRST}", order)
        self.assertEqual(udp.receive(), "client-kill 1 HALT")

    def test_the_gateway_that_started_last_has_the_name(self):
        udp, _tcp = self.start_registered()
        self.wait_offered()
        self.granted_login(udp, 1)
        self.etcd.put(KEY, json.dumps({**self.registered(), "instance": "other"}))
        self.assertEqual(udp.receive(), "client-kill 1 HALT")
        until(lambda: self.knows()["replaced"], "it says so")
        credentials = self.credentials()
        udp.login(2, credentials, self.grant(credentials))
        self.assertIn("the address is not lent here", udp.receive())
        self.etcd.delete(KEY)
        until(self.registered, "it is the gateway again when the other one has gone")
        until(lambda: not self.knows()["replaced"], "and says so")


if __name__ == "__main__":
    unittest.main()
