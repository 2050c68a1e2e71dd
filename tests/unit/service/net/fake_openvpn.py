#!/usr/bin/python3
"""Stands in for an OpenVPN server: joins its management socket to the test, which plays the server.

Started as `vpnsrv --config FILE`. Greets the test with "NAME PID", then passes bytes both ways. Ends with
status 0 when the service closes the management connection and with 9 when the test hangs up.
"""

import os
import re
import select
import socket
import sys

config_path = sys.argv[2]
with open(config_path, encoding="utf-8") as config:
    management_path = re.search(r'^management "(.*)" unix$', config.read(), re.M).group(1)
folder = os.path.dirname(config_path)
name = os.path.basename(config_path).removesuffix(".conf")

management = socket.socket(socket.AF_UNIX)
management.connect(management_path)
test = socket.socket(socket.AF_UNIX)
test.connect(folder + "/../puppets.sock")
test.sendall(f"{name} {os.getpid()}\n".encode())
while True:
    for source in select.select([management, test], [], [])[0]:
        data = source.recv(65536)
        if not data:
            sys.exit(0 if source is management else 9)
        (test if source is management else management).sendall(data)
