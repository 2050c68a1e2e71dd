#!/usr/bin/python3
"""The commands for a running service, with a fake control socket. Usage: test_commands.py PROGRAM"""

import json
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
import unittest

PROGRAM = sys.argv.pop(1)
EVENTUALLY = 60


class Commands(unittest.TestCase):
    """What is sent to the socket, and what becomes of the answer."""

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="qrvcommands-")
        self.addCleanup(shutil.rmtree, self.folder)
        self.config = f"{self.folder}/service.json"
        with open(self.config, "w", encoding="utf-8") as file:
            json.dump({"runtime_folder": self.folder}, file)

    def call(self, *arguments, answer=None):
        """(exit status, output, received line) of a command; the socket answers one line."""
        received = []
        with socket.socket(socket.AF_UNIX) as listener:
            if answer is not None:
                path = f"{self.folder}/control.sock"
                listener.bind(path)
                listener.listen()
                listener.settimeout(EVENTUALLY)
                thread = threading.Thread(target=self._serve, args=(listener, answer, received))
                thread.start()
            done = subprocess.run(
                [PROGRAM, *arguments, "--config", self.config],
                stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT,
                text=True,
                timeout=EVENTUALLY,
                check=False,
            )
            if answer is not None:
                thread.join()
                os.remove(path)
        return done.returncode, done.stdout, received

    @staticmethod
    def _serve(listener, answer, received):
        connection, _address = listener.accept()
        with connection:
            received.append(json.loads(connection.makefile("rb").readline()))
            connection.sendall(answer.encode())

    def test_drain(self):
        self.assertEqual(
            self.call("drain", answer='{"ok":true}\n'), (0, "done\n", [{"command": "drain", "on": True}])
        )
        status, _output, received = self.call("drain", "--off", answer='{"ok":true}\n')
        self.assertEqual((status, received), (0, [{"command": "drain", "on": False}]))

    def test_revoke(self):
        status, output, received = self.call("revoke", "203.0.113.4", answer='{"ok":true,"sessions":2}\n')
        self.assertEqual((status, output), (0, '{"sessions":2}\n'))
        self.assertEqual(received, [{"command": "revoke", "address": "203.0.113.4"}])
        _status, _output, received = self.call("revoke", "abc", answer='{"ok":true}\n')
        self.assertEqual(received, [{"command": "revoke", "user": "abc"}])

    def test_refusal(self):
        status, output, _received = self.call("revoke", "x", answer='{"ok":false,"error":"unknown user"}\n')
        self.assertEqual((status, output), (1, "quorvane-service: unknown user\n"))

    def test_status(self):
        for ready, expected in ((True, 0), (False, 3)):
            answer = {"ok": True, "ready": ready, "servers": {}}
            status, output, received = self.call("status", "--json", answer=json.dumps(answer) + "\n")
            self.assertEqual((status, json.loads(output)), (expected, answer))
            self.assertEqual(received, [{"command": "status"}])
        self.assertEqual(self.call("status")[0], 4)

    def divide(self, *running, changed=("api", "gateway")):
        """Configures two processes; those named are served. Returns what each receives. The ones that are not
        `changed` have the common runtime folder."""
        names = {role: role if role in changed else "common" for role in ("api", "gateway")}
        folders = {role: f"{self.folder}/{name}" for role, name in names.items()}
        with open(self.config, "w", encoding="utf-8") as file:
            roles = {role: {"runtime_folder": folders[role]} for role in changed}
            json.dump({"runtime_folder": f"{self.folder}/common", "roles": roles}, file)
        received = {}
        for role, folder in folders.items():
            os.mkdir(folder)
            if role in running:
                received[role] = []
                listener = socket.socket(socket.AF_UNIX)
                self.addCleanup(listener.close)
                listener.bind(f"{folder}/control.sock")
                listener.listen()
                listener.settimeout(EVENTUALLY)
                answer = json.dumps({"ok": True, "ready": True, "servers": {role: {}}, "ended": 1}) + "\n"
                thread = threading.Thread(target=self._serve, args=(listener, answer, received[role]))
                thread.start()
                self.addCleanup(thread.join)
        return received

    def test_status_of_two_processes(self):
        self.divide("api", "gateway")
        status, output, _received = self.call("status", "--json")
        self.assertEqual((status, list(json.loads(output)["servers"])), (0, ["api", "gateway"]))

    def test_status_when_one_of_two_does_not_run(self):
        self.divide("api")
        status, output, _received = self.call("status")
        self.assertEqual(status, 3)
        self.assertIn("the process with the role gateway does NOT run", output)

    def test_status_when_none_of_two_runs(self):
        self.divide()
        self.assertEqual(self.call("status")[0], 4)

    def test_orders_go_to_both_processes(self):
        received = self.divide("api", "gateway")
        status, output, _received = self.call("revoke", "abc")
        self.assertEqual(status, 0, output)
        order = [{"command": "revoke", "user": "abc"}]
        self.assertEqual(received, {"api": order, "gateway": order})

    def test_orders_go_to_the_process_with_the_common_folder_too(self):
        for changed in (("api",), ("gateway",)):
            with self.subTest(changed=changed):
                self.setUp()
                received = self.divide("api", "gateway", changed=changed)
                status, output, _received = self.call("drain")
                self.assertEqual(status, 0, output)
                order = [{"command": "drain", "on": True}]
                self.assertEqual(received, {"api": order, "gateway": order})

    def test_roles_with_one_folder_are_one_process(self):
        with open(self.config, "w", encoding="utf-8") as file:
            roles = {"api": {"runtime_folder": self.folder}, "gateway": {"runtime_folder": self.folder}}
            json.dump({"runtime_folder": self.folder, "roles": roles}, file)
        status, output, received = self.call("drain", answer='{"ok":true}\n')
        self.assertEqual((status, output, received), (0, "done\n", [{"command": "drain", "on": True}]))

    def test_roles_that_are_malformed(self):
        for roles in (None, [], "x", {"api": 1, "gateway": {"runtime_folder": 1}}):
            with open(self.config, "w", encoding="utf-8") as file:
                json.dump({"runtime_folder": self.folder, "roles": roles}, file)
            self.assertEqual(self.call("drain", answer='{"ok":true}\n')[0], 0, roles)

    def test_order_when_one_of_two_does_not_run(self):
        received = self.divide("gateway")
        status, output, _received = self.call("drain")
        self.assertEqual((status, received), (4, {"gateway": [{"command": "drain", "on": True}]}))
        self.assertIn("the process with the role api does not run, and does not know of it", output)

    def test_answers_that_are_none(self):
        for answer in ("", "text\n", "[]\n", '{"ok":tr'):
            self.assertEqual(self.call("status", answer=answer)[0], 4, answer)

    def test_configuration_that_cannot_be_read(self):
        for text in ("", "{}", '{"runtime_folder":1}'):
            with open(self.config, "w", encoding="utf-8") as file:
                file.write(text)
            self.assertEqual(self.call("status")[0], 2)
        os.remove(self.config)
        self.assertEqual(self.call("status")[0], 2)


if __name__ == "__main__":
    unittest.main()
