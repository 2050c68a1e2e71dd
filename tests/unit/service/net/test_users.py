#!/usr/bin/python3
"""VPN users of the real program, without OpenVPN. Usage: test_users.py PROGRAM"""

import os
import shutil
import sys
import unittest

from service_harness import ANY_RATE, EVENTUALLY, LIST, Service, read_answer, request, vpnc

PROGRAM = sys.argv.pop(1)


class Users(unittest.TestCase):
    """The VPN users of server lists, of which the service stores nothing."""

    changes = {"limits": {"per_caller": ANY_RATE}, "log": {"bytes_per_second": 4096}}
    LISTS = 101_000  # more than a store of them would hold
    AT_ONCE = 500

    def setUp(self):
        self.service = Service(PROGRAM, **self.changes)
        self.addCleanup(self.service.close)
        self.service.start()

    def is_known(self, user):
        return b"Unknown or expired session" not in self.service.get(vpnc(user))[2]

    def test_a_stranger_cannot_push_users_out(self):
        victim = self.service.new_user()["VPNUser"]
        with self.service.connect() as link:
            stream = link.makefile("rb")
            for _ in range(0, self.LISTS, self.AT_ONCE):
                link.sendall(request(LIST) * self.AT_ONCE)
                for _ in range(self.AT_ONCE):
                    self.assertEqual(read_answer(stream)[0], 200)
        self.assertTrue(self.is_known(victim))
        self.assertFalse(self.is_known(victim[:-1] + ("A" if victim[-1] != "A" else "B")))

    def test_a_restart_forgets_no_user(self):
        user = self.service.new_user()["VPNUser"]
        self.assertEqual(self.service.stop(), 0)
        self.service.start()
        self.assertTrue(self.is_known(user))
        self.service.kill()
        os.remove(self.service.runtime + "/listening")
        os.remove(self.service.runtime + "/user.keys")
        self.service.start()
        self.assertFalse(self.is_known(user), "with other keys")

    def test_keys_that_others_can_read(self):
        self.assertEqual(self.service.stop(), 0)
        shared = self.service.folder + "/user.keys"
        shutil.copy(self.service.runtime + "/user.keys", shared)
        self.service.config["keys"] = shared
        os.chmod(shared, 0o644)
        self.service.launch()
        self.assertEqual(self.service.process.wait(EVENTUALLY), 1)
        self.assertIn(f"keys: {shared} must be a file of root or", self.service.stderr())
        os.chmod(shared, 0o600)
        self.service.start()


if __name__ == "__main__":
    unittest.main()
