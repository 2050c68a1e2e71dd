#!/usr/bin/python3
"""A fake of an OpenVPN server: connects its management socket with the test, which acts as the server.

Started as `vpnsrv --config FILE`. Sends "NAME PID" to the test first, then forwards bytes in both directions.
Ends with status 0 when the service closes the management connection, and with 9 when the test closes its own.
"""

import os
import re
import select
import socket
import sys


def management_socket(config_path):
    """The path of the management socket in a server's configuration."""
    with open(config_path, encoding="utf-8") as config:
        return re.search(r'^management "(.*)" unix$', config.read(), re.M).group(1)


def connect(path):
    connection = socket.socket(socket.AF_UNIX)
    connection.connect(path)
    return connection


def main():
    config_path = sys.argv[2]
    folder = os.path.dirname(config_path)
    name = os.path.basename(config_path).removesuffix(".conf")
    management = connect(management_socket(config_path))
    test = connect(folder + "/../servers.sock")
    test.sendall(f"{name} {os.getpid()}\n".encode())
    while True:
        for source in select.select([management, test], [], [])[0]:
            data = source.recv(65536)
            if not data:
                return 0 if source is management else 9
            (test if source is management else management).sendall(data)


if __name__ == "__main__":
    sys.exit(main())
