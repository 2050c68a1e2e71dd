#!/usr/bin/python3
"""What the running program takes from its files after SIGHUP. Usage: test_reload.py PROGRAM"""

import json
import os
import signal
import ssl
import sys
import unittest

from service_harness import LIST, Service, make_certificate, read_answer, request, until

PROGRAM = sys.argv.pop(1)


class Reload(unittest.TestCase):
    """The service is not restarted: a connection that is open stays open."""

    def setUp(self):
        self.service = Service(PROGRAM)
        self.addCleanup(self.service.close)
        self.service.start()
        self.link = self.service.connect()
        self.addCleanup(self.link.close)
        self.stream = self.link.makefile("rb")
        self.addCleanup(self.stream.close)

    def reload(self):
        self.service.process.send_signal(signal.SIGHUP)

    def served(self):
        """The certificate that a new connection is sent, in DER."""
        context = ssl.create_default_context()
        context.check_hostname, context.verify_mode = False, ssl.CERT_NONE
        with self.service.connect(context) as link:
            return link.getpeercert(binary_form=True)

    def is_open(self):
        self.link.sendall(request("/ip"))
        return read_answer(self.stream)[0] == 200

    def configure(self, **changes):
        self.service.config.update(changes)
        with open(f"{self.service.folder}/config.json", "w", encoding="utf-8") as file:
            json.dump(self.service.config, file)

    def test_a_new_certificate(self):
        before = self.served()
        make_certificate(self.service.folder)
        self.assertEqual(self.served(), before, "not without the signal")
        self.reload()
        until(lambda: self.served() != before, what="the new certificate")
        self.assertEqual(self.service.get("/ip")[0], 200)
        self.assertTrue(self.is_open())

    def test_an_unusable_certificate(self):
        before = self.served()
        key = f"{self.service.folder}/key.pem"
        os.rename(key, key + ".old")
        make_certificate(self.service.folder)
        os.rename(key + ".old", key)  # that of the former certificate
        self.reload()
        until(
            lambda: "the former certificate stays in use: tls.key: " in self.service.stderr(), what="a report"
        )
        self.assertEqual(self.served(), before)
        self.assertTrue(self.is_open())

    def test_other_addresses(self):
        (group,) = self.service.config["groups"]
        self.configure(groups=[{**group, "city": "Bonn", "addresses": ["203.0.113.9"]}])
        self.reload()
        until(lambda: b"203.0.113.9" in self.service.get(LIST)[2], what="the new address")
        self.assertNotIn(b"203.0.113.5", self.service.get(LIST)[2])
        self.assertIn(b"Germany Bonn", self.service.get(LIST)[2])
        self.assertTrue(self.is_open())

    def test_a_configuration_with_an_error(self):
        self.configure(groups=[])
        self.reload()
        until(lambda: "the former configuration stays in use: " in self.service.stderr(), what="a report")
        self.assertIn(b"203.0.113.5", self.service.get(LIST)[2])
        self.assertTrue(self.is_open())


if __name__ == "__main__":
    unittest.main()
