#!/usr/bin/python3
"""Raw requests against the real program, without OpenVPN. Usage: test_program.py PROGRAM"""

import contextlib
import json
import os
import shutil
import signal
import socket
import subprocess
import sys
import threading
import time
import unittest

from service_harness import ANY_RATE, EVENTUALLY, LIST, Service, read_answer, request, until, vpnc

PROGRAM = sys.argv.pop(1)
# Seconds after which the service ends a connection that makes no progress, in the tests about that.
LIMIT = 6


class WithService(unittest.TestCase):
    """Starts the service with the configuration `changes` for each test."""

    changes = {}

    def setUp(self):
        self.service = Service(PROGRAM, **self.changes)
        self.addCleanup(self.service.close)
        self.service.start()


class Answers(WithService):
    """Right requests and their answers."""

    def test_server_list(self):
        status, fields, body = self.service.get(LIST)
        self.assertEqual(status, 200)
        self.assertEqual(fields["content-type"], "text/plain; charset=utf-8")
        self.assertRegex(
            body.decode(),
            r"\ASTATUS: 0<br />ClientIP: 127\.0\.0\.1<br />CC: AT<br />LOCATIONS: DE;BER;Germany Berlin;1"
            r"<br />VPNUser: [A-Za-z0-9]{55}<br />VPNPass: [A-Za-z0-9]{44}"
            r"<br />Server: 1,Berlin,BER,DE,Germany,1\|203\.0\.113\.5,203\.0\.113\.6\Z",
        )

    def test_parameters(self):
        self.assertEqual(self.service.get(LIST + "&cmd=phsa%2Bb")[2], b"STATUS: 0<br />ClientIP: 127.0.0.1")

    def test_configuration(self):
        user = self.service.new_user()["VPNUser"]
        body = self.service.get(vpnc(user))[2]
        self.assertTrue(body.startswith(b"VPNConfig: client<br />"))
        self.assertIn(b"<br />remote 203.0.113.5 1194<br />", body)
        self.assertIn(b"-----END CERTIFICATE-----<br /></ca><br /><cert><br />", body)
        self.assertIn(b"-----END PRIVATE KEY-----<br /></key><br /><tls-crypt-v2><br />", body)
        self.assertTrue(body.endswith(b" tls-crypt-v2 client key-----<br /></tls-crypt-v2><br />"))
        self.assertNotIn(b"\n", body)

    def test_configuration_refused(self):
        self.assertEqual(self.service.get(vpnc("unknown"))[2], b"ERR: Unknown or expired session")
        self.assertEqual(self.service.get(vpnc("unknown", "x"))[2], b"ERR: Argument parsing error")
        self.assertEqual(self.service.get("/?cmd=VPNC&sessid=%zz")[2], b"ERR: Argument parsing error")

    def test_web_pages(self):
        self.assertEqual(self.service.get("/ip")[2], b"127.0.0.1\n")
        status, fields, body = self.service.get("/ip?uid=x", "Accept: text/html,*/*\r\n")
        self.assertEqual((status, fields["content-type"]), (200, "text/html; charset=utf-8"))
        self.assertIn(b">127.0.0.1<", body)
        self.assertIn(b"<h1>Quorvane</h1>", self.service.get("/?utm_source=905")[2])
        self.assertEqual(self.service.get("/nothing")[0], 404)

    def test_other_methods(self):
        for method in ("POST", "HEAD", "DELETE", "QUUX"):
            with self.service.connect() as link:
                link.sendall(request("/", "", method))
                head = link.recv(65536)
                self.assertTrue(head.startswith(b"HTTP/1.1 405 "), head)
                self.assertIn(b"\r\nAllow: GET\r\n", head)

    def test_the_log_holds_the_raw_target(self):
        targets = [LIST, "/?a=1&&b=%2B+,%41", "/?x=\xe9\xff", '/"quoted\\']
        for target in targets:
            self.service.get(target)
        lines = self.service.lines()
        self.assertEqual([line["target"] for line in lines], targets)
        for line in lines:
            self.assertRegex(line["time"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z$")
            self.assertEqual(
                (line["event"], line["peer"], line["host"], line["method"]),
                ("request", "127.0.0.1", "api.quorvane.test", "GET"),
            )
        self.assertEqual(lines[0]["status"], 200)
        self.assertEqual(lines[2]["status"], 200)
        self.assertGreater(lines[0]["bytes"], 100)

    def test_keep_alive_and_pipelining(self):
        with self.service.connect() as link:
            stream = link.makefile("rb")
            for _ in range(50):
                link.sendall(request("/ip"))
                self.assertEqual(read_answer(stream)[2], b"127.0.0.1\n")
            link.sendall(request("/ip") * 10)
            for _ in range(10):
                self.assertEqual(read_answer(stream)[2], b"127.0.0.1\n")
            link.sendall(request("/ip", "Connection: close\r\n"))
            self.assertEqual(read_answer(stream)[1]["connection"], "close")
            self.assertEqual(stream.read(), b"")
        self.assertEqual(len(self.service.lines()), 61)

    def test_a_request_in_small_pieces(self):
        with self.service.connect() as link:
            for byte in request("/ip"):
                link.sendall(bytes([byte]))
            self.assertEqual(read_answer(link.makefile("rb"))[2], b"127.0.0.1\n")

    def test_http_1_0_is_answered_and_closed(self):
        answer = self.service.raw(b"GET /ip HTTP/1.0\r\nConnection: keep-alive\r\n\r\n")
        self.assertTrue(answer.startswith(b"HTTP/1.1 200 "))
        self.assertTrue(answer.endswith(b"\r\n\r\n127.0.0.1\n"))

    def test_ends_cleanly(self):
        self.assertEqual(self.service.stop(), 0)
        self.assertFalse(os.path.exists(self.service.runtime + "/listening"))
        self.assertFalse(os.path.exists(self.service.runtime + "/control.sock"))


class HostileClients(WithService):
    """Wrong, stalled and too many connections; honest clients are served meanwhile."""

    changes = {
        "limits": {
            "connections": 200,
            "handshake_seconds": LIMIT,
            "request_seconds": LIMIT,
            "per_caller": ANY_RATE,
        }
    }

    def assert_alive(self):
        self.assertEqual(self.service.get("/ip")[2], b"127.0.0.1\n")

    def timeouts(self):
        return [line["event"] for line in self.service.lines()].count("timeout")

    def wait_last_line(self, **fields):
        """Waits until the last line of the request log has these values."""
        until(
            lambda: fields.items() <= self.service.lines()[-1].items(),
            f"a line with {fields} in the request log",
        )

    def test_garbage_inside_tls(self):
        for data in (
            b"\x00\xff\x13garbage\r\n\r\n",
            b"GET\r\n\r\n",
            b"GET /ip\r\n\r\n",
            b"GET / HTTP/9.9\r\n\r\n",
            b"GET /a b HTTP/1.1\r\nHost: x\r\n\r\n",
            b"GET / HTTP/1.1\r\nno colon\r\n\r\n",
        ):
            answer = self.service.raw(data)
            self.assertTrue(answer.startswith(b"HTTP/1.1 400 "), (data, answer))
            self.wait_last_line(event="bad_request")
        self.assert_alive()

    def test_requests_that_are_refused(self):
        for data in (
            b"GET /ip HTTP/1.1\r\n\r\n",
            b"GET /ip HTTP/1.1\r\nHost: a\r\nHost: b\r\n\r\n",
            b"GET /ip HTTP/1.1\r\nHost: a\r\nContent-Length: 5\r\n\r\nhello",
            b"GET /ip HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
        ):
            answer = self.service.raw(data)
            self.assertTrue(answer.startswith(b"HTTP/1.1 400 "), (data, answer))
            self.assertEqual(answer.count(b"HTTP/1.1 "), 1)
        self.assert_alive()

    def test_a_body_is_not_read_as_a_request(self):
        body = request("/?cmd=smuggled")
        data = b"POST /ip HTTP/1.1\r\nHost: a\r\nContent-Length: %d\r\n\r\n" % len(body)
        answer = self.service.raw(data + body)
        self.assertEqual(answer.count(b"HTTP/1.1 "), 1)
        self.assertEqual([line["status"] for line in self.service.lines()], [405])

    def test_garbage_instead_of_tls(self):
        for data in (b"GET / HTTP/1.1\r\n\r\n", b"\x16\x03\x01\xff\xff" + b"\x00" * 300, os.urandom(2000)):
            with socket.create_connection(("127.0.0.1", self.service.port), EVENTUALLY) as link:
                link.sendall(data)
                try:
                    while link.recv(65536):
                        pass
                except ConnectionResetError:
                    pass
        until(lambda: len(self.service.lines()) == 3, "three lines in the request log")
        events = [line["event"] for line in self.service.lines()]
        self.assertLessEqual(set(events), {"handshake_failed", "timeout"})
        self.assert_alive()

    def test_an_overlong_target(self):
        answer = self.service.raw(request("/?a=" + "x" * 100000))
        self.assertTrue(answer.startswith(b"HTTP/1.1 414 "), answer[:100])
        self.wait_last_line(status=414)
        self.assert_alive()

    def test_overlong_header_fields(self):
        answer = self.service.raw(request("/ip", "".join(f"X-{i}: {'y' * 1000}\r\n" for i in range(100))))
        self.assertTrue(answer.startswith(b"HTTP/1.1 431 "), answer[:100])
        self.wait_last_line(status=431, target="/ip")
        self.assert_alive()

    def test_stalled_clients_do_not_stall_the_others(self):
        address = ("127.0.0.1", self.service.port)
        silent = [socket.create_connection(address, EVENTUALLY) for _ in range(60)]
        half = [self.service.connect() for _ in range(20)]
        for link in half:
            link.sendall(b"GET /ip HTTP/1.1\r\nHo")
        self.assert_alive()
        self.assertEqual(self.timeouts(), 0, "the honest client waited for the end of a stalled connection")
        for link in silent + half:
            link.settimeout(EVENTUALLY)
            self.assertEqual(link.recv(1), b"")  # each is ended at its limit
            link.close()
        until(lambda: self.timeouts() == 80, "80 timeouts")

    def test_a_dripping_client_is_ended_too(self):
        begin = time.monotonic()
        with self.service.connect() as link, self.assertRaises(OSError):
            while time.monotonic() - begin < EVENTUALLY:
                link.sendall(b"X")
                time.sleep(0.1)  # the client's slowness

    def test_a_client_that_does_not_read_is_ended(self):
        with self.service.connect() as link:
            link.settimeout(0.5)
            begin = time.monotonic()
            with self.assertRaises(OSError):
                while time.monotonic() - begin < EVENTUALLY:
                    try:
                        link.sendall(request("/") * 100)
                    except TimeoutError:
                        link.settimeout(EVENTUALLY)  # both directions are full; the limit must end it
        self.assert_alive()

    def test_the_connection_limit(self):
        links = [socket.create_connection(("127.0.0.1", self.service.port), EVENTUALLY) for _ in range(200)]
        with socket.create_connection(("127.0.0.1", self.service.port), EVENTUALLY) as one_too_many:
            self.assertEqual(one_too_many.recv(1), b"")
        self.wait_last_line(event="refused")
        for link in links:
            link.close()
        until(self.answers, "a free connection")

    def answers(self):
        try:
            return self.service.get("/ip")[2] == b"127.0.0.1\n"
        except OSError:
            return False


class Logs(WithService):
    """The request log has an end, at any load."""

    changes = {"limits": {"per_caller": ANY_RATE}}
    seconds = 6

    def attack(self):
        """Requests with the longest targets, each byte of which needs six in the log."""
        attack = request("/?" + "\xff" * 15000) * 20
        begin = time.monotonic()
        while time.monotonic() - begin < self.seconds:
            try:
                with self.service.connect() as link:
                    reader = threading.Thread(target=self.discard, args=(link,))
                    reader.start()
                    try:
                        while time.monotonic() - begin < self.seconds:
                            link.sendall(attack)
                    finally:
                        link.shutdown(socket.SHUT_RDWR)
                        reader.join()
            except OSError:
                continue  # the service has ended the connection

    @staticmethod
    def discard(link):
        with contextlib.suppress(OSError):
            while link.recv(1 << 20):
                pass

    def test_the_rate_under_attack(self):
        self.service.stop()
        rate = 4096  # which a slow service reaches, too
        self.service.config["log"] = {"bytes_per_second": rate}
        begin = time.monotonic()
        self.service.start()
        self.attack()
        # After a pause four seconds' worth may be written at once.
        most = (4 + time.monotonic() - begin) * rate
        self.assertLessEqual(os.path.getsize(self.service.log_path), most)
        with open(self.service.log_path, "rb") as file:
            longest = max(len(line) for line in file)
        self.assertLessEqual(longest, 2048)
        self.assertTrue([line for line in self.service.lines() if line["event"] == "left_out"])
        cut = [line for line in self.service.lines() if line.get("cut")]
        self.assertTrue(cut)
        self.assertEqual(cut[0]["target_bytes"], 15002)

    def test_the_size_under_attack(self):
        self.service.stop()
        self.service.config["log"] = {"bytes_per_second": 0, "file_bytes": 65536, "copies": 2}
        self.service.start()
        self.attack()
        files = sorted(name for name in os.listdir(self.service.folder) if name.startswith("requests"))
        self.assertEqual(files, ["requests.jsonl", "requests.jsonl.1", "requests.jsonl.2"])
        for name in files:
            self.assertLessEqual(os.path.getsize(f"{self.service.folder}/{name}"), 65536)

    def test_a_log_that_was_renamed_is_opened_again(self):
        self.service.get("/ip")
        os.rename(self.service.log_path, self.service.log_path + ".old")
        self.service.process.send_signal(signal.SIGHUP)
        until(lambda: os.path.exists(self.service.log_path), what="a new log")
        self.service.get("/ip?new")
        self.assertEqual([line["target"] for line in self.service.lines()], ["/ip?new"])

    def test_a_full_disk_is_reported_once(self):
        self.service.stop()
        self.service.config["request_log"] = "/dev/full"
        self.service.start()
        for _ in range(20):
            self.assertEqual(self.service.get("/ip")[0], 200)
        self.assertEqual(self.service.stderr().count("a log is incomplete"), 1)
        self.assertIn("cannot write /dev/full: No space left on device", self.service.stderr())


class StrictRuns(WithService):
    """The mode in which requests must be announced, and the control socket."""

    changes = {"strict": True, "announced": [{"target": "/ip", "count": 1}]}

    def test_announced_requests_end_well(self):
        self.assertEqual(
            self.service.control(command="announce", pattern=r"/\?cmd=MRTSL&.*", count=2), {"ok": True}
        )
        for target in (LIST, "/ip", LIST):
            self.service.get(target)
        self.assertEqual(
            self.service.control(command="report"), {"ok": True, "unexpected": [], "outstanding": []}
        )
        self.assertEqual(self.service.stop(), 0)

    def test_an_unexpected_request_is_answered_logged_and_reported(self):
        self.assertEqual(self.service.get("/ip")[0], 200)
        self.assertEqual(self.service.get("/ip")[0], 200)
        self.service.raw(b"garbage\r\n\r\n")
        self.assertEqual(
            [line.get("unexpected", False) for line in self.service.lines()], [False, True, True]
        )
        self.assertEqual(self.service.control(command="report")["unexpected"], ["/ip", ""])
        self.assertEqual(self.service.stop(), 3)
        self.assertIn('unexpected request: "/ip"', self.service.stderr())

    def test_the_control_socket_survives_nonsense(self):
        with socket.socket(socket.AF_UNIX) as link:
            link.settimeout(EVENTUALLY)
            link.connect(self.service.runtime + "/control.sock")
            link.sendall(b'\xff\x00nonsense\n{"command":')
            stream = link.makefile()
            self.assertFalse(json.loads(stream.readline())["ok"])
            link.sendall(b'"clear"}\n')
            self.assertTrue(json.loads(stream.readline())["ok"])
        self.assertTrue(self.service.control(command="status")["ready"])


class CommandLine(unittest.TestCase):
    """Arguments, wrong configurations, failed starts and restarts."""

    def run_program(self, *arguments):
        return subprocess.run(
            [PROGRAM, *arguments], capture_output=True, text=True, timeout=EVENTUALLY, check=False
        )

    def test_usage(self):
        for arguments in ((), ("--config",), ("--other",), ("file",), ("--config", "x", "--role", "both")):
            result = self.run_program(*arguments)
            self.assertEqual(result.returncode, 2)
            self.assertIn("usage: ", result.stderr)

    def test_a_wrong_configuration(self):
        service = Service(PROGRAM, groups=[])
        self.addCleanup(service.close)
        path = service.folder + "/config.json"
        with open(path, "w", encoding="utf-8") as file:
            json.dump(service.config, file)
        result = self.run_program("--config", path)
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stderr, f"quorvane-service: {path}: groups: must hold at least one group\n")
        self.assertEqual(self.run_program("--config", path + "x").returncode, 2)

    def test_roles_that_cannot_be_started(self):
        service = Service(PROGRAM)
        self.addCleanup(service.close)
        service.start()
        self.assertEqual(service.stop(), 0)
        path = service.folder + "/config.json"
        keys = {name: f"{service.runtime}/{name}" for name in ("user.keys", "control.key")}
        authority = f"{service.runtime}/client-authority.pem"
        certificate = f"{service.runtime}/client-authority.crt"
        vpn = service.config["vpn"]
        steps = [
            ({}, "gateway", "keys: is missing; the other roles need the same file"),
            ({"keys": keys["user.keys"]}, "api", "vpn.control_key: is missing"),
            ({"vpn": {**vpn, "control_key": keys["control.key"]}}, "api", "vpn.client_authority: is missing"),
            (
                {"vpn": {**vpn, "control_key": keys["control.key"], "client_authority": authority}},
                "gateway",
                "gateway: is missing",
            ),
            (
                {"vpn": {**vpn, "control_key": keys["control.key"], "client_authority": certificate}},
                "api",
                f"vpn.client_authority: {certificate} contains no key",
            ),
        ]
        for changes, role, message in steps:
            service.config.update(changes)
            with open(path, "w", encoding="utf-8") as file:
                json.dump(service.config, file)
            result = self.run_program("--config", path, "--role", role)
            self.assertIn(message, result.stderr)
            self.assertNotEqual(result.returncode, 0)

    def test_what_cannot_be_started(self):
        first = Service(PROGRAM)
        self.addCleanup(first.close)
        first.start()
        writable = first.folder + "/writable"
        os.mkdir(writable)
        os.chmod(writable, 0o777)
        cases = [
            ({"listen": [{"address": "127.0.0.1", "port": first.port}]}, "listen: 127.0.0.1 port"),
            ({"request_log": "/nonexistent/x"}, "request_log: cannot write"),
            ({"runtime_folder": first.runtime}, "runtime_folder: another service uses it"),
            ({"runtime_folder": "/dev/null/x"}, "runtime_folder: cannot use"),
            ({"runtime_folder": writable}, f"runtime_folder: {writable} must not be writable"),
            ({"state_file": writable + "/orders"}, f"state_file: {writable} must not be writable"),
            (
                {"tls": {"certificate": first.folder + "/key.pem", "key": first.folder + "/key.pem"}},
                "tls.certificate: ",
            ),
        ]
        for changes, message in cases:
            service = Service(PROGRAM, **changes)
            self.addCleanup(service.close)
            path = service.folder + "/config.json"
            with open(path, "w", encoding="utf-8") as file:
                json.dump(service.config, file)
            self.assertEqual(self.run_program("--config", path, "--check").returncode, 0)
            result = self.run_program("--config", path)
            self.assertEqual(result.returncode, 1, message)
            self.assertIn("quorvane-service: " + message, result.stderr)

    def test_a_control_key_that_others_can_read(self):
        service = Service(PROGRAM)
        self.addCleanup(service.close)
        service.start()
        self.assertEqual(service.stop(), 0)
        made = service.runtime + "/control.key"
        self.assertEqual(os.stat(made).st_mode & 0o777, 0o600)
        shared = service.folder + "/shared.key"
        shutil.copy(made, shared)
        service.config["vpn"]["control_key"] = shared
        os.chmod(shared, 0o644)
        service.launch()
        self.assertEqual(service.process.wait(EVENTUALLY), 1)
        self.assertIn(f"vpn.control_key: {shared} must be a file of root or", service.stderr())
        os.chmod(shared, 0o600)
        service.start()
        user = service.new_user()["VPNUser"]
        self.assertIn(b"<tls-crypt-v2><br />-----BEGIN OpenVPN", service.get(vpnc(user))[2])

    def test_a_second_life_after_a_kill(self):
        service = Service(PROGRAM)
        self.addCleanup(service.close)
        service.start()
        service.get("/ip")
        service.kill()
        os.remove(service.runtime + "/listening")
        service.start()
        self.assertEqual(service.get("/ip")[2], b"127.0.0.1\n")
        self.assertEqual(len(service.lines()), 2)
        self.assertEqual(service.stop(), 0)


if __name__ == "__main__":
    unittest.main()
