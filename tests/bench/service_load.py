#!/usr/bin/python3
"""service_load.py PROGRAM [LISTS]: what quorvane-service answers in a second, and what a million lists cost.

Prints one line of JSON for run-bench. The load comes from a process of its own over loopback, so both have
two processors at most.
"""

import json
import os
import re
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "unit" / "service" / "net"))

# pylint: disable=wrong-import-position
from service_harness import ANY_RATE, LIST, Service, read_answer, request, vpnc  # noqa: E402

AT_ONCE = 500
CONFIGURATIONS = 20_000
HANDSHAKE_SECONDS = 5
HANDSHAKE_CLIENTS = 4
KEYS = {
    "keys": "user.keys",
    "control_key": "control.key",
    "client_authority": "client-authority.pem",
}


def memory(service):
    """The resident memory of the service, in KiB."""
    status = Path(f"/proc/{service.process.pid}/status").read_text(encoding="ascii")
    return int(re.search(r"^VmRSS:\s*(\d+)", status, re.MULTILINE).group(1))


def processor_seconds(service):
    fields = Path(f"/proc/{service.process.pid}/stat").read_text(encoding="ascii").rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def answers(service, target, count):
    """Requests the target over one connection, many at once."""
    with service.connect() as link:
        stream = link.makefile("rb")
        link.sendall(request(target))
        status, _fields, body = read_answer(stream)
        assert status == 200 and not body.startswith(b"ERR"), body
        used, begun = processor_seconds(service), time.monotonic()
        for _ in range(0, count, AT_ONCE):
            link.sendall(request(target) * AT_ONCE)
            for _ in range(AT_ONCE):
                status, _fields, body = read_answer(stream)
                assert status == 200
        seconds = time.monotonic() - begun
    return {
        "count": count,
        "a second": count / seconds,
        "processor": (processor_seconds(service) - used) / count * 1e6,
    }


def handshakes(service):
    """Full TLS 1.3 handshakes by some clients, each with one connection after the other."""
    used = processor_seconds(service)
    address = f"127.0.0.1:{service.port}"
    clients = [
        subprocess.Popen(
            ["openssl", "s_time", "-connect", address, "-new", "-time", str(HANDSHAKE_SECONDS)],
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        for _ in range(HANDSHAKE_CLIENTS)
    ]
    outputs = [client.communicate()[0] for client in clients]
    found = [re.search(r"^(\d+) connections in \d+ real seconds", output, re.MULTILINE) for output in outputs]
    count = sum(int(match.group(1)) for match in found)
    return {
        "count": count,
        "a second": count / HANDSHAKE_SECONDS,
        "processor": (processor_seconds(service) - used) / count * 1e6,
    }


def divide(service):
    """Has the service only answer requests, confined as it is then. Its keys are those of a first start."""
    service.start()
    assert service.stop() == 0
    paths = {key: f"{service.folder}/{name}" for key, name in KEYS.items()}
    for key, path in paths.items():
        os.rename(f"{service.runtime}/{KEYS[key]}", path)
    service.config["keys"] = paths.pop("keys")
    service.config["vpn"].update(paths)
    service.arguments = ("--role", "api")


def main():
    program, lists = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 1_000_000
    service = Service(program, limits={"per_caller": ANY_RATE}, log={"bytes_per_second": 4096})
    try:
        divide(service)
        service.start()
        victim = service.new_user()["VPNUser"]
        answers(service, LIST, 1000)
        before = memory(service)
        results = {"server lists": answers(service, LIST, lists)}
        results["server lists"]["memory"] = memory(service) - before
        results["server lists"]["victim"] = b"VPNConfig: " in service.get(vpnc(victim))[2]
        results["configurations"] = answers(service, vpnc(victim), CONFIGURATIONS)
        results["handshakes"] = handshakes(service)
        results["memory"] = memory(service)
    finally:
        service.close()
    print(json.dumps(results))
    return 0 if results["server lists"]["victim"] else 1


if __name__ == "__main__":
    sys.exit(main())
