#!/usr/bin/python3
"""What becomes of connections when the running program is ended by SIGTERM. Usage: test_ends.py PROGRAM"""

import signal
import socket
import sys
import unittest

from service_harness import EVENTUALLY, LIST, Service, read_answer, request

PROGRAM = sys.argv.pop(1)


class Ends(unittest.TestCase):
    """Connections in each state at the moment of the signal."""

    def setUp(self):
        self.service = Service(PROGRAM)
        self.addCleanup(self.service.close)
        self.service.start()

    def connect(self):
        link = self.service.connect()
        self.addCleanup(link.close)
        stream = link.makefile("rb")
        self.addCleanup(stream.close)
        return link, stream

    def end(self):
        self.service.process.send_signal(signal.SIGTERM)

    def begin_to_end(self):
        """Returns when the service has begun to end: it closes the connections that do nothing first."""
        link, stream = self.connect()
        link.sendall(request("/ip"))
        self.assertEqual(read_answer(stream)[0], 200)
        self.end()
        self.assertEqual(stream.read(), b"")

    def test_a_request_that_has_begun_is_answered(self):
        link, stream = self.connect()
        whole = request(LIST)
        link.sendall(whole[:20])
        self.begin_to_end()
        link.sendall(whole[20:])
        self.assertEqual(read_answer(stream)[0], 200)
        self.assertEqual(stream.read(), b"", "there is no further request")
        self.assertEqual(self.service.process.wait(EVENTUALLY), 0)

    def test_a_stalled_request_does_not_keep_it_from_ending(self):
        link, stream = self.connect()
        link.sendall(request(LIST)[:20])
        self.begin_to_end()
        self.assertEqual(self.service.process.wait(EVENTUALLY), 0)
        self.assertEqual(stream.read(), b"")

    def test_a_connection_without_a_byte_is_closed(self):
        link, _stream = self.connect()
        link.sendall(request("/ip"))
        idle = socket.create_connection(("127.0.0.1", self.service.port), EVENTUALLY)
        self.addCleanup(idle.close)
        self.end()
        self.assertEqual(self.service.process.wait(EVENTUALLY), 0)
        self.assertEqual(idle.recv(1), b"")


if __name__ == "__main__":
    unittest.main()
