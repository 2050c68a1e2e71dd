#!/usr/bin/python3
"""system_log.py: the home's system log. Writes everything that programs send to /dev/log to /var/log/syslog.

Runs in the home as root, with a private /dev; ends when its standard input is closed.
"""

import os
import selectors
import socket
import sys

FILE = "/var/log/syslog"


def main():
    receiver = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    receiver.bind("/dev/log")
    os.chmod("/dev/log", 0o666)
    log = os.fdopen(os.open(FILE, os.O_WRONLY | os.O_CREAT | os.O_APPEND, 0o640), "ab", buffering=0)
    selector = selectors.DefaultSelector()
    selector.register(receiver, selectors.EVENT_READ)
    selector.register(sys.stdin, selectors.EVENT_READ)
    print("ready", flush=True)
    while True:
        for key, _events in selector.select():
            if key.fileobj is sys.stdin:
                return
            log.write(receiver.recv(65536) + b"\n")


if __name__ == "__main__":
    main()
