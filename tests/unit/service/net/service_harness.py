"""Starts the real quorvane-service on a free loopback port, for tests of the running program."""

import json
import os
import re
import shutil
import signal
import socket
import ssl
import subprocess
import tempfile
import time

ID = "ver=1.0&device=1"
TAIL = "systamp=MacOS,user,mobilebox&uniqueid=SERIAL-1.0"
LIST = f"/?cmd=MRTSL&{ID}&{TAIL}"


# Seconds for whatever must happen in the end. It only decides when a test gives up.
EVENTUALLY = 60


# No limits of a single caller, for tests of other limits.
ANY_RATE = {
    "requests_per_second": 0,
    "configurations_per_second": 0,
    "connections_per_second": 0,
    "handshakes_per_second": 0,
    "connections": 0,
}


def until(condition, what="a condition"):
    """Polls until the condition returns something true, and returns that."""
    end = time.monotonic() + EVENTUALLY
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not within {EVENTUALLY} s")
        time.sleep(0.01)


def make_certificate(folder):
    """A throw-away certificate for 127.0.0.1 that is its own authority."""
    subprocess.run(
        [
            "openssl",
            "req",
            "-x509",
            "-newkey",
            "ec",
            "-pkeyopt",
            "ec_paramgen_curve:prime256v1",
            "-nodes",
            "-keyout",
            f"{folder}/key.pem",
            "-out",
            f"{folder}/cert.pem",
            "-days",
            "2",
            "-subj",
            "/CN=trial",
            "-addext",
            "subjectAltName=IP:127.0.0.1",
        ],
        check=True,
        capture_output=True,
    )


class Service:
    """One run of the program. `changes` is merged into the configuration's top level."""

    def __init__(self, program, **changes):
        self.program = program
        self.folder = tempfile.mkdtemp(prefix="qrvsvc-")
        make_certificate(self.folder)
        self.runtime = f"{self.folder}/run"
        self.log_path = f"{self.folder}/requests.jsonl"
        cert, key = f"{self.folder}/cert.pem", f"{self.folder}/key.pem"
        self.config = {
            "listen": [{"address": "127.0.0.1", "port": 0}],
            "tls": {"certificate": cert, "key": key},
            "groups": [
                {
                    "country_code": "DE",
                    "country": "Germany",
                    "city": "Berlin",
                    "location_code": "BER",
                    "full": True,
                    "addresses": ["203.0.113.5", "203.0.113.6"],
                }
            ],
            "home": [{"network": "127.0.0.0/8", "country_code": "AT"}],
            "request_log": self.log_path,
            "runtime_folder": self.runtime,
            "vpn": {
                "ca": cert,
                "certificate": cert,
                "key": key,
                "udp": {"port": 1194, "network": "10.8.0.0/16"},
                "tcp": {"port": 443, "network": "10.9.0.0/16"},
            },
        }
        self.config.update(changes)
        self.stderr_path = f"{self.folder}/stderr"
        self.arguments = ()  # beside the configuration's
        self.process = None
        self.port = None

    def launch(self):
        """Starts the program without waiting for anything."""
        path = f"{self.folder}/config.json"
        with open(path, "w", encoding="utf-8") as file:
            json.dump(self.config, file)
        with open(self.stderr_path, "ab") as stderr:
            command = [self.program, "--config", path, *self.arguments]
            self.process = subprocess.Popen(command, stderr=stderr)

    def start(self):
        """Starts the program and waits until it listens."""
        self.launch()
        listening = f"{self.runtime}/listening"
        until(lambda: os.path.exists(listening) or self.process.poll() is not None, what="listening")
        assert self.process.poll() is None, self.stderr()
        with open(listening, encoding="ascii") as file:
            self.port = int(file.read().split()[1])
        return self

    def stderr(self):
        with open(self.stderr_path, encoding="utf-8") as file:
            return file.read()

    def stop(self):
        """Ends the program by SIGTERM; returns its exit status."""
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(EVENTUALLY)

    def kill(self):
        self.process.kill()
        self.process.wait(EVENTUALLY)

    def close(self):
        if self.process and self.process.poll() is None:
            self.kill()
        shutil.rmtree(self.folder)

    def lines(self):
        """The request log so far."""
        with open(self.log_path, encoding="ascii") as file:
            return [json.loads(line) for line in file]

    def control(self, **command):
        with socket.socket(socket.AF_UNIX) as link:
            link.settimeout(EVENTUALLY)
            link.connect(f"{self.runtime}/control.sock")
            link.sendall((json.dumps(command) + "\n").encode())
            return json.loads(link.makefile().readline())

    def connect(self, context=None):
        """A TLS connection; without a context it must have the certificate in the folder."""
        context = context or ssl.create_default_context(cafile=f"{self.folder}/cert.pem")
        raw = socket.create_connection(("127.0.0.1", self.port), EVENTUALLY)
        return context.wrap_socket(raw, server_hostname="127.0.0.1")

    def get(self, target, headers=""):
        """One request on a connection of its own."""
        with self.connect() as link:
            link.sendall(request(target, headers))
            return read_answer(link.makefile("rb"))

    def raw(self, data):
        """Sends bytes and reads until the service closes."""
        with self.connect() as link:
            link.sendall(data)
            answer = b""
            while piece := link.recv(65536):
                answer += piece
            return answer

    def new_user(self):
        body = self.get(LIST)[2].decode()
        return dict(line.split(": ", 1) for line in body.split("<br />") if line)


def grant_of(configuration):
    """The variables that OpenVPN makes of the certificate in the answer to a request for a configuration."""
    text = configuration.decode().replace("<br />", "\n")
    certificate = re.search(r"<cert>\n(.*)</cert>", text, re.DOTALL).group(1)
    subject = subprocess.run(
        ["openssl", "x509", "-noout", "-subject", "-nameopt", "sep_multiline,sname"],
        input=certificate,
        check=True,
        stdout=subprocess.PIPE,
        text=True,
    )
    return {f"X509_0_{name}": value for name, value in re.findall(r"^ +(\w+)=(.*)$", subject.stdout, re.M)}


def request(target, headers="", method="GET"):
    head = f"{method} {target} HTTP/1.1\r\nHost: api.quorvane.test\r\n{headers}\r\n"
    return head.encode("latin-1")


def read_answer(stream):
    """Status, header fields and body of the next answer."""
    status = int(re.match(rb"HTTP/1\.1 (\d{3}) ", stream.readline()).group(1))
    fields = {}
    while line := stream.readline().rstrip(b"\r\n"):
        name, value = line.decode().split(": ", 1)
        fields[name.lower()] = value
    return status, fields, stream.read(int(fields["content-length"]))


def vpnc(user, address="203.0.113.5", proto="UDP"):
    return f"/?cmd=VPNC&{ID}&server=571&desiredip={address}&sessid={user}&&{TAIL}&proto={proto}"
