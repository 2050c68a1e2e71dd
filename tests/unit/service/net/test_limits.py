#!/usr/bin/python3
"""Limits of single callers in the real program. Usage: test_limits.py PROGRAM

The callers are addresses of the loopback interface.
"""

import contextlib
import os
import socket
import ssl
import sys
import threading
import time
import unittest

from service_harness import EVENTUALLY, Service, read_answer, request, until, vpnc

PROGRAM = sys.argv.pop(1)
GREEDY = "127.0.0.2"


class Callers(unittest.TestCase):
    """Who requests too much is refused, and no other caller."""

    def setUp(self):
        self.service = Service(PROGRAM)
        self.addCleanup(self.service.close)

    def start(self, **per_caller):
        self.service.config["limits"] = {"per_caller": per_caller}
        self.service.start()

    def context(self):
        return ssl.create_default_context(cafile=f"{self.service.folder}/cert.pem")

    def tcp(self, source=GREEDY):
        link = socket.create_connection(("127.0.0.1", self.service.port), EVENTUALLY, (source, 0))
        self.addCleanup(link.close)
        return link

    def tls(self, source=GREEDY):
        link = self.context().wrap_socket(self.tcp(source), server_hostname="127.0.0.1")
        self.addCleanup(link.close)
        return link

    def refusals(self):
        return [
            (line["peer"], line["detail"], line.get("count", 1))
            for line in self.service.lines()
            if line["event"] == "refused"
        ]

    def ask(self, target="/ip", source=GREEDY):
        """One request on a connection of its own."""
        with self.tls(source) as link:
            link.sendall(request(target))
            return read_answer(link.makefile("rb"))

    def until_refused(self, attempt, burst):
        """Repeats the attempt, of which one a second is allowed and so many at once; returns the refusal.

        On a busy machine seconds pass meanwhile, and each of them allows one attempt more.
        """
        begun = time.monotonic()
        allowed = 0
        while (answer := attempt())[0] not in (429, None):
            allowed += 1
            self.assertLessEqual(allowed, burst + 1 + time.monotonic() - begun)
        self.assertGreaterEqual(allowed, burst)
        return answer

    def test_requests(self):
        self.start(requests_per_second=1, burst_seconds=3)
        with self.tls() as link:
            link.sendall(request("/ip") * 20)
            stream = link.makefile("rb")
            _status, fields, body = self.until_refused(lambda: read_answer(stream), 3)
            self.assertEqual(body, b"Too Many Requests\n")
            self.assertEqual(fields["retry-after"], "1")
            self.assertEqual(fields["content-type"], "text/plain; charset=utf-8")
            self.assertEqual(fields["connection"], "close")
            self.assertEqual(stream.read(), b"", "the connection is closed")
        self.assertEqual(self.ask(source="127.0.0.1")[0], 200, "another caller is answered")
        self.assertEqual(self.refusals(), [(GREEDY, "too many requests", 1)])
        until(lambda: self.ask()[0] == 200, "the greedy caller is answered again")

    def test_malformed_requests_count_too(self):
        self.start(requests_per_second=1, burst_seconds=2)
        accepted = []

        def malformed():
            with self.tls() as link:
                link.sendall(b"nonsense\r\n\r\n")
                answer = read_answer(link.makefile("rb"))
            accepted.append(answer[0])
            return answer

        self.until_refused(malformed, 2)
        self.assertEqual(set(accepted[:-1]), {400})

    def test_refusals_are_logged_once(self):
        self.start(requests_per_second=1, burst_seconds=1)
        answers = [self.ask()[0] for _ in range(15)]
        self.assertGreater(answers.count(429), 1)
        self.assertEqual(self.refusals(), [(GREEDY, "too many requests", 1)])

    def test_configurations(self):
        self.start(configurations_per_second=1, burst_seconds=2)
        user = self.service.new_user()["VPNUser"]
        self.until_refused(lambda: self.ask(vpnc(user)), 2)
        self.until_refused(lambda: self.ask(vpnc(user).replace("VPNC", "%56PNC")), 0)
        self.assertEqual(self.ask("/ip")[0], 200, "other requests are answered")

    def test_new_connections(self):
        self.start(connections_per_second=1, burst_seconds=2)
        links = [self.tcp() for _ in range(6)]
        for link in links[2:]:
            self.assertEqual(link.recv(1), b"", "it is closed at once")
        self.assertEqual(self.ask(source="127.0.0.1")[0], 200)
        self.assertEqual(self.refusals(), [(GREEDY, "too many connections", 1)])

    def test_handshakes(self):
        self.start(handshakes_per_second=1, burst_seconds=2)
        silent = [self.tcp() for _ in range(10)]

        def handshake():
            with contextlib.suppress(OSError):  # ssl.SSLError is one
                return self.ask()
            return (None,)

        self.until_refused(handshake, 2)  # connections that send nothing are no handshakes
        self.assertEqual(self.refusals(), [(GREEDY, "too many handshakes", 1)])
        self.assertEqual(len(silent), 10)

    def test_connections_at_once(self):
        self.start(connections=3)
        links = [self.tcp() for _ in range(4)]
        self.assertEqual(links[3].recv(1), b"")
        self.assertEqual(self.ask(source="127.0.0.1")[0], 200)
        links[0].close()

        def answered():
            with contextlib.suppress(OSError):
                return self.ask()[0] == 200
            return False

        until(answered, "a closed connection makes place")
        self.assertIn((GREEDY, "too many connections at once", 1), self.refusals())

    def scrape(self, path="/metrics"):
        """The status and the values of the page of metrics, read from the socket."""
        with socket.socket(socket.AF_UNIX) as link:
            link.settimeout(EVENTUALLY)
            link.connect(self.service.folder + "/metrics.sock")
            link.sendall(f"GET {path} HTTP/1.1\r\nHost: localhost\r\n\r\n".encode())
            status, _fields, body = read_answer(link.makefile("rb"))
        lines = [line.rpartition(" ") for line in body.decode().splitlines() if not line.startswith("#")]
        return status, {name: value for name, _, value in lines}

    def test_metrics(self):
        self.service.config["metrics"] = {"socket": self.service.folder + "/metrics.sock"}
        self.start(requests_per_second=1, burst_seconds=1)
        answers = [self.ask()[0] for _ in range(5)]
        status, values = self.scrape()
        self.assertEqual(status, 200)
        self.assertEqual(int(values['quorvane_refused_total{limit="requests"}']), answers.count(429))
        self.assertGreater(answers.count(429), 0)
        self.assertEqual(values['quorvane_refused_total{limit="handshakes"}'], "0")
        expiry = int(values['quorvane_certificate_expiry_timestamp_seconds{key="tls.certificate"}'])
        self.assertAlmostEqual(expiry, time.time() + 2 * 86400, delta=600)
        self.assertLess(int(values["quorvane_uptime_seconds"]), 600)
        self.assertEqual(self.scrape("/")[0], 404)

    def test_metrics_survive_stalled_and_hostile_callers(self):
        path = self.service.folder + "/metrics.sock"
        self.service.config["metrics"] = {"socket": path}
        self.start()
        silent = [socket.socket(socket.AF_UNIX) for _ in range(20)]
        for link in silent:
            self.addCleanup(link.close)
            link.settimeout(EVENTUALLY)
            link.connect(path)
        for link in silent:
            self.assertEqual(link.recv(1), b"", "it is closed at its deadline or at once")
        with socket.socket(socket.AF_UNIX) as link:
            link.settimeout(EVENTUALLY)
            link.connect(path)
            with contextlib.suppress(BrokenPipeError, ConnectionResetError):
                link.sendall(b"GET /" + b"x" * 100000)
                self.assertEqual(link.recv(1), b"")
        self.assertEqual(self.scrape()[0], 200)
        self.assertEqual(self.service.stop(), 0)

    def test_metrics_at_a_port(self):
        # An address of the loopback network that no other program uses.
        address = f"127.83.{os.getpid() % 250 + 1}.{os.getpid() // 250 % 250 + 1}"
        self.service.config["metrics"] = {"address": address, "port": 9101}
        self.start()
        with socket.create_connection((address, 9101), EVENTUALLY) as link:
            link.sendall(b"GET /metrics HTTP/1.1\r\n\r\n")
            status, fields, body = read_answer(link.makefile("rb"))
        self.assertEqual(status, 200)
        self.assertEqual(fields["content-type"], "text/plain; version=0.0.4; charset=utf-8")
        self.assertIn(b"\nquorvane_uptime_seconds 0\n", body)

    def test_a_greedy_caller_slows_only_itself(self):
        """Beside a caller who never waits, every request of another one is answered soon."""
        self.start()
        over, context = threading.Event(), self.context()
        attempts = []

        def attack():
            while not over.is_set():
                attempts.append(1)
                with contextlib.suppress(OSError):
                    raw = socket.create_connection(("127.0.0.1", self.service.port), 5, (GREEDY, 0))
                    with context.wrap_socket(raw, server_hostname="127.0.0.1") as link:
                        link.sendall(request("/ip") * 200)
                        while link.recv(65536):
                            pass

        threads = [threading.Thread(target=attack, daemon=True) for _ in range(4)]
        for thread in threads:
            thread.start()
        try:
            until(self.refusals, "the greedy caller is refused")
            for _ in range(50):
                begin = time.monotonic()
                self.assertEqual(self.ask(source="127.0.0.1")[0], 200)
                self.assertLess(time.monotonic() - begin, 2)
                time.sleep(0.06)  # an honest caller stays within the limits
        finally:
            over.set()
            for thread in threads:
                thread.join(EVENTUALLY)
        answered = [
            line for line in self.service.lines() if line["event"] == "request" and line["peer"] == GREEDY
        ]
        self.assertGreater(len(attempts), 200)
        self.assertLess(len(answered), 600, "20 a second and a burst of 100")


if __name__ == "__main__":
    unittest.main()
