"""An HTTPS server in the place of the service, with a wrong answer for each of the client's commands.

    with HostileApi(world, {"MRTSL": page(b"garbage")}) as api: ...

While it is entered, connections from outside to the service's port are redirected to it. The real service
keeps running with its state and receives connections again afterwards.
"""

import contextlib
import re
import ssl

from world import network

from .listener import Listener

PORT = 8443
MEGABYTE = 1024 * 1024


def head(status="200 OK", length=None, headers=()):
    """The head of an answer; without a length the body ends with the connection."""
    lines = [f"HTTP/1.1 {status}", "Content-Type: text/html", "Connection: close", *headers]
    if length is not None:
        lines.append(f"Content-Length: {length}")
    return ("\r\n".join(lines) + "\r\n\r\n").encode("latin-1")


def page(body, status="200 OK", headers=(), length=None):
    """Answers with a whole page; `length` replaces the real length in its head."""

    def answer(connection, _closing):
        connection.sendall(head(status, len(body) if length is None else length, headers) + body)

    return answer


def truncated(body):
    """Announces the whole length and sends half of the body."""
    return page(body[: len(body) // 2], length=len(body))


def truncated_in_chunks(body):
    """Sends one chunk with half of the body and ends the connection instead of sending the next one."""

    def answer(connection, _closing):
        half = body[: len(body) // 2]
        connection.sendall(head(headers=["Transfer-Encoding: chunked"]) + b"%x\r\n%s\r\n" % (len(half), half))

    return answer


def no_http(connection, _closing):
    connection.sendall(bytes(range(256)) * 16)


def silent(_connection, closing):
    """Accepts the request and never answers."""
    closing.wait()


def dripping(body, pause=0.3):
    """Sends the right answer, one byte at a time."""

    def answer(connection, closing):
        connection.sendall(head(length=len(body)))
        for index in range(len(body)):
            if closing.wait(pause):
                return
            connection.sendall(body[index : index + 1])

    return answer


def flood(size, announced):
    """Sends a body of `size` bytes, with or without its length in the head."""

    def answer(connection, _closing):
        connection.sendall(head(length=size if announced else None))
        piece = b"Server: 1,a,b,DE,c,0|203.0.113.40<br />".ljust(MEGABYTE, b"x")
        for _ in range(size // MEGABYTE):
            connection.sendall(piece)

    return answer


def huge_header(size):
    """Sends a head with one field of `size` bytes."""

    def answer(connection, _closing):
        connection.sendall(b"HTTP/1.1 200 OK\r\nX-Filler: ")
        for _ in range(size // MEGABYTE):
            connection.sendall(b"a" * MEGABYTE)
        connection.sendall(b"\r\nConnection: close\r\nContent-Length: 0\r\n\r\n")

    return answer


def redirect(address):
    return page(b"", "302 Found", headers=[f"Location: {address}"])


class HostileApi:
    """`answers`: command ("MRTSL", "VPNC") -> function that sends the answer. Another request fails the test.

    `certificate` is (certificate, key), by default the service's own. `requests` holds (command, target) of
    each received request, `refused` the number of connections that the client ended without one: during the
    handshake, or after it without a byte.
    """

    def __init__(self, world, answers, certificate=None):
        self.requests = []
        self.refused = 0
        self._answers = answers
        self._context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self._context.load_cert_chain(*(certificate or world.service.certificate))
        self._made = contextlib.ExitStack()

    def _serve(self, connection, closing):
        try:
            secured = self._context.wrap_socket(connection, server_side=True)
        except OSError:
            self.refused += 1
            return
        with secured:
            request = b""
            while b"\r\n\r\n" not in request:
                piece = secured.recv(65536)
                if not piece:
                    self.refused += not request
                    return
                request += piece
            target = request.split(b" ", 2)[1].decode("latin-1")
            found = re.search(r"[?&]cmd=([^&]*)", target)
            command = found.group(1) if found else ""
            self.requests.append((command, target))
            if command in self._answers:
                self._answers[command](secured, closing)

    def requests_of(self, command):
        return [target for received, target in self.requests if received == command]

    def __enter__(self):
        with contextlib.ExitStack() as made:
            made.enter_context(Listener(network.INTERNET, PORT, self._serve))
            match = f"ip daddr {network.SERVICE_ADDRESS} tcp dport 443"
            made.enter_context(network.ruled(network.INTERNET, network.redirected(match, PORT), "hostile"))
            self._made = made.pop_all()
        return self

    def __exit__(self, kind, *_about):
        self._made.close()
        unexpected = [target for command, target in self.requests if command not in self._answers]
        assert kind is not None or not unexpected, unexpected
