#!/usr/bin/python3
"""The real program with an etcd that answers as it should, or not. Usage: test_etcd.py PROGRAM"""

import json
import os
import subprocess
import sys
import unittest

from fake_etcd import FakeEtcd
from service_harness import ANY_RATE, LIST, Service, make_certificate, until, vpnc

PROGRAM = sys.argv.pop(1)
FIRST, SECOND = "203.0.113.5", "203.0.113.6"


def gateway(*addresses, draining=False):
    """The value of a registration."""
    return json.dumps({"addresses": addresses, "draining": draining, "since": 1700000000, "instance": "a"})


class Etcd(unittest.TestCase):
    """What an API node knows from etcd."""

    def setUp(self):
        self.service = Service(PROGRAM, limits={"per_caller": ANY_RATE})
        self.addCleanup(self.service.close)
        files = {name: f"{self.service.folder}/{name}.pem" for name in ("cert", "key")}
        self.files = files
        self.etcd = self.make_etcd()
        self.service.config["etcd"] = {
            "endpoints": [self.etcd.endpoint],
            "ca": files["cert"],
            "certificate": files["cert"],
            "key": files["key"],
            "name": "api1",
        }

    def make_etcd(self, folder=None, store=None):
        folder = folder or self.service.folder
        made = FakeEtcd(f"{folder}/cert.pem", f"{folder}/key.pem", self.files["cert"], store)
        self.addCleanup(made.close)
        return made

    def knows(self):
        return self.service.control(command="status")["etcd"]

    def is_connected(self):
        return self.knows()["connected"]

    def offered(self):
        body = self.service.get(LIST)[2].decode()
        return {address for address in (FIRST, SECOND) if address in body}

    def start(self):
        self.service.start()
        until(self.is_connected, "it is connected")

    def put_gateway(self, name, address):
        self.etcd.put(f"/quorvane/owners/{address}", name)
        self.etcd.put(f"/quorvane/gateways/{name}", gateway(address))

    def test_offers_the_addresses_of_registered_gateways(self):
        self.put_gateway("gw1", FIRST)
        self.start()
        self.assertEqual(self.offered(), {FIRST})
        user = self.service.new_user()["VPNUser"]
        self.assertEqual(self.service.get(vpnc(user, SECOND))[2], b"ERR: Address not available")
        self.put_gateway("gw2", SECOND)
        until(lambda: self.offered() == {FIRST, SECOND}, "a new gateway is offered")
        self.etcd.delete("/quorvane/gateways/gw1")
        until(lambda: self.offered() == {SECOND}, "a gateway that went is not")

    def test_offers_all_addresses_until_it_knows_better(self):
        self.etcd.hangs = True
        self.service.start()
        until(lambda: self.knows()["problem"] == "no answer in time", "the deadline has passed")
        self.assertEqual(self.offered(), {FIRST, SECOND})

    def test_what_was_known_counts_after_a_restart_without_etcd(self):
        self.put_gateway("gw1", FIRST)
        self.etcd.put("/quorvane/orders/drain", '{"on":true,"given":1700000000000000}')
        self.start()
        self.assertTrue(self.service.control(command="status")["draining"])
        self.etcd.put("/quorvane/orders/drain", '{"on":false,"given":1700000000000001}')
        until(lambda: self.offered() == {FIRST}, "it drains no more")
        until(lambda: os.path.exists(f"{self.service.runtime}/operator.json.shared"), "it is written")
        self.assertEqual(self.service.stop(), 0)
        self.etcd.hangs = True
        self.service.start()
        self.assertEqual(self.offered(), {FIRST})
        self.assertFalse(self.knows()["connected"])

    def test_orders_are_shared_with_a_lease(self):
        self.start()
        user = self.service.new_user()["VPNUser"]
        answer = self.service.control(command="revoke", user=user)
        self.assertEqual(answer, {"ok": True, "ended": 0})
        key = f"/quorvane/orders/users/{user}"
        until(lambda: key in self.etcd.store, "it is shared")
        until(lambda: self.knows()["pending_orders"] == 0, "it is not pending any more")
        life = self.etcd.leases[self.etcd.store[key][1]]
        self.assertTrue(86400 - 60 < life <= 86400 + 61, life)
        self.etcd.delete(key)
        until(lambda: self.service.control(command="status")["revocations"] == 0, "it is withdrawn")

    def test_an_order_is_shared_when_etcd_is_back(self):
        self.etcd.hangs = True
        self.service.start()
        answer = self.service.control(command="revoke", address=FIRST)
        self.assertEqual(answer, {"ok": True, "ended": 0, "shared": "not yet"})
        self.assertEqual(self.knows()["pending_orders"], 1)
        self.service.kill()
        os.remove(f"{self.service.runtime}/listening")
        self.etcd.close()
        self.etcd = self.make_etcd()
        self.service.config["etcd"]["endpoints"] = [self.etcd.endpoint]
        self.start()
        until(lambda: f"/quorvane/orders/addresses/{FIRST}" in self.etcd.store, "it is shared")

    def test_a_silent_watch_is_noticed(self):
        self.start()
        self.etcd.watch_reports = False
        self.put_gateway("gw1", FIRST)
        until(lambda: self.offered() == {FIRST}, "the keys were read anew")
        self.assertIn("the watch is silent", self.service.stderr())
        self.etcd.delete("/quorvane/gateways/gw1")
        until(lambda: self.offered() == set(), "a deleted key is noticed, too")

    def test_a_cancelled_watch_leads_to_a_new_range(self):
        self.start()
        self.etcd.watch_reports = False
        self.put_gateway("gw1", FIRST)
        header = {"revision": "500"}
        cancelled = {"result": {"header": header, "canceled": True, "compact_revision": "400"}}
        self.etcd.send_to_watches(json.dumps(cancelled) + "\n")
        until(lambda: self.offered() == {FIRST}, "the keys were read anew")
        self.assertIn("the watch was cancelled", self.service.stderr())

    def test_malformed_answers_change_nothing(self):
        self.put_gateway("gw1", FIRST)
        self.start()
        for line in ("no JSON\n", '{"result":{}}\n', '{"error":{"message":"x"}}\n', "[" * 100000 + "\n"):
            self.etcd.send_to_watches(line)
            until(lambda: not self.is_connected(), "it connects anew")
            self.assertEqual(self.offered(), {FIRST})
            until(self.is_connected, "it is connected")
        for text in ("", "[]", '{"header":{"revision":"x"}}', '{"error":"etcdserver: no leader"}'):
            self.etcd.answers = {"/v3/kv/range": text}
            until(lambda: not self.is_connected(), "it connects anew")
            self.assertEqual(self.offered(), {FIRST})
            self.etcd.answers = {}
            until(self.is_connected, "it is connected")

    def test_answers_have_a_greatest_size(self):
        self.etcd.answers = {"/v3/kv/range": " " * (17 << 20)}
        self.service.start()
        until(lambda: "body limit exceeded" in self.service.stderr(), "it is refused")
        self.etcd.answers = {}
        until(self.is_connected, "it is connected")
        self.etcd.send_to_watches("x" * (17 << 20))
        until(lambda: "a message is too long" in self.service.stderr(), "it is refused")

    def test_endpoints_are_tried_in_turn(self):
        other = self.make_etcd(store=self.etcd.store)
        self.service.config["etcd"]["endpoints"].append(other.endpoint)
        self.start()
        self.assertEqual(self.knows()["endpoint"], self.etcd.endpoint)
        self.etcd.hangs = True
        until(lambda: self.knows().get("endpoint") == other.endpoint, "it uses the other member")
        self.assertEqual(self.etcd.requests[0][0], "/v3/kv/range")

    def test_servers_with_another_certificate_are_refused(self):
        foreign = f"{self.service.folder}/foreign"
        os.mkdir(foreign)
        make_certificate(foreign)
        self.service.config["etcd"]["endpoints"] = [self.make_etcd(foreign).endpoint]
        self.service.start()
        until(lambda: "certificate verify failed" in self.knows()["problem"], "it is refused")

    def test_servers_with_a_certificate_for_another_address_are_refused(self):
        port = self.etcd.endpoint.partition(":")[2]
        self.service.config["etcd"]["endpoints"] = [f"[::ffff:127.0.0.1]:{port}"]
        self.service.start()
        until(lambda: "certificate verify failed" in self.knows()["problem"], "it is refused")
        self.assertEqual(self.etcd.requests, [])

    def test_a_key_that_others_can_read_is_refused(self):
        os.chmod(self.files["key"], 0o644)
        self.service.launch()
        self.assertEqual(self.service.process.wait(), 1)
        self.assertIn("etcd.key: ", self.service.stderr())

    def test_release(self):
        self.put_gateway("gw1", FIRST)
        self.etcd.put(f"/quorvane/owners/{SECOND}", "gw2")
        self.start()
        refused = self.service.control(command="release", gateway="gw1")
        self.assertIn("is registered", refused["error"])
        refused = self.service.control(command="release", gateway="gw9")
        self.assertIn("no address", refused["error"])
        self.assertEqual(self.service.control(command="release", gateway="gw2"), {"ok": True, "released": 1})
        self.assertNotIn(f"/quorvane/owners/{SECOND}", self.etcd.store)
        self.etcd.hangs = True
        until(lambda: not self.is_connected(), "it is away")
        answer = self.service.control(command="release", gateway="gw1")
        self.assertIn("etcd cannot be reached", answer["error"])

    def run_command(self, *arguments):
        """Runs one of the administrator's commands; returns its exit status and what it printed."""
        config = f"{self.service.folder}/config.json"
        command = [PROGRAM, *arguments, "--config", config]
        done = subprocess.run(
            command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False
        )
        return done.returncode, done.stdout

    def test_the_commands_of_the_administrator(self):
        self.put_gateway("gw1", FIRST)
        self.etcd.put(f"/quorvane/owners/{SECOND}", "gw2")
        self.start()
        status, text = self.run_command("status")
        self.assertEqual(status, 0)
        self.assertIn(f"connected to {self.etcd.endpoint} since ", text)
        self.assertIn("gateway gw1           1 addresses, since 2023-11-14 22:13:20 UTC\n", text)
        self.assertEqual(self.run_command("release", "gw1")[0], 1)
        self.assertEqual(self.run_command("release", "gw2"), (0, '{"released":1}\n'))
        self.etcd.hangs = True
        until(lambda: not self.is_connected(), "it is away")
        self.assertIn("NOT connected since ", self.run_command("status")[1])
        self.assertEqual(self.run_command("drain"), (0, '{"shared":"not yet"}\n'))


class WithoutEtcd(unittest.TestCase):
    """A single machine."""

    def test_there_is_nothing_to_release(self):
        service = Service(PROGRAM)
        self.addCleanup(service.close)
        service.start()
        self.assertIn("no other nodes", service.control(command="release", gateway="gw1")["error"])
        self.assertNotIn("etcd", service.control(command="status"))


if __name__ == "__main__":
    unittest.main()
