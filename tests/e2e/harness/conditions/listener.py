"""Servers that run in the test process and listen in a namespace of the test network."""

import contextlib
import socket
import threading

from harness.home.deadlines import EVENTUALLY
from world import network

# Seconds. Connections that hang on purpose end when the listener is closed; this limit is for mistakes.
STUCK = 600


class Listener:
    """A TCP server in a namespace; a thread for each connection calls `serve(connection, closing)`.

    `closing` is an event that is set when the listener closes; a handler that hangs on purpose waits for it.
    """

    def __init__(self, namespace, port, serve):
        self.connections = 0
        self.closing = threading.Event()
        self._serve = serve
        self._open = set()
        self._lock = threading.Lock()
        self._listening = network.socket_in(namespace)
        self._listening.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self._listening.bind(("0.0.0.0", port))
        self._listening.listen(64)
        self._threads = [threading.Thread(target=self._accept, daemon=True)]
        self._threads[0].start()

    def _accept(self):
        while True:
            try:
                connection, _ = self._listening.accept()
            except OSError:
                return
            connection.settimeout(STUCK)
            with self._lock:
                self.connections += 1
                self._open.add(connection)
            thread = threading.Thread(target=self._handle, args=(connection,), daemon=True)
            self._threads.append(thread)
            thread.start()

    def _handle(self, connection):
        # Many tests make the client close the connection in the middle.
        with contextlib.suppress(OSError, ValueError), connection:
            self._serve(connection, self.closing)
        with self._lock:
            self._open.discard(connection)

    def close(self):
        self.closing.set()
        with contextlib.suppress(OSError):
            self._listening.shutdown(socket.SHUT_RDWR)
        self._listening.close()
        with self._lock:
            for connection in self._open:
                with contextlib.suppress(OSError):
                    connection.shutdown(socket.SHUT_RDWR)
        for thread in self._threads:
            thread.join(EVENTUALLY)

    def __enter__(self):
        return self

    def __exit__(self, *_about):
        self.close()


class Datagrams:
    """A UDP server in a namespace; `answer(datagram)` returns the reply, or None for no reply."""

    def __init__(self, namespace, port, answer):
        self.received = 0
        self._answer = answer
        self._socket = network.socket_in(namespace, socket.SOCK_DGRAM)
        self._socket.bind(("0.0.0.0", port))
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._thread.start()

    def _run(self):
        while True:
            try:
                datagram, sender = self._socket.recvfrom(65536)
            except OSError:
                return
            if sender is None:
                return
            self.received += 1
            threading.Thread(target=self._reply, args=(datagram, sender), daemon=True).start()

    def _reply(self, datagram, sender):
        back = self._answer(datagram)
        if back is not None:
            with contextlib.suppress(OSError):
                self._socket.sendto(back, sender)

    def close(self):
        # Wakes the reader; after a plain close it would keep waiting.
        with contextlib.suppress(OSError):
            self._socket.shutdown(socket.SHUT_RDWR)
        self._socket.close()
        self._thread.join(EVENTUALLY)

    def __enter__(self):
        return self

    def __exit__(self, *_about):
        self.close()
