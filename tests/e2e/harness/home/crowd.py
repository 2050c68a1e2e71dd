#!/usr/bin/python3
"""Many clients of the service at once, from one program; runs in the home as a plain user.

    crowd.py COUNT ADDRESS...   COUNT sessions, all connected before the first request; each one requests
                                the server list and then, with its user, the configuration of one address
    crowd.py --stall COUNT      COUNT connections that send nothing and as many that send a part of a header,
                                until standard input is closed

Prints its results as one line of JSON.
"""

import asyncio
import json
import ssl
import sys
import time

HOST, PORT = "api.quorvane.test", 443
COMMON = "ver=1.0.0&device=1"
TAIL = "systamp=MacOS,user,mobilebox&uniqueid=crowd"
# Handshakes at the same time. Connections stay open, so in the end all sessions are connected together.
TOGETHER = 64


class Start:
    """A barrier that opens when all sessions are connected."""

    def __init__(self, count):
        self._missing = count
        self._open = asyncio.Event()
        self.time = None

    async def connected(self):
        self._missing -= 1
        if self._missing == 0:
            self.time = time.monotonic()
            self._open.set()
        await self._open.wait()


def context():
    return ssl.create_default_context(cafile="/etc/quorvane/ca.crt")


async def get(reader, writer, target):
    writer.write(f"GET {target} HTTP/1.1\r\nHost: {HOST}\r\n\r\n".encode())
    await writer.drain()
    head = await reader.readuntil(b"\r\n\r\n")
    length = next(
        int(line.split(b":")[1]) for line in head.split(b"\r\n") if line.lower().startswith(b"content-length")
    )
    return (await reader.readexactly(length)).decode()


async def session(number, addresses, gate, start):
    async with gate:
        reader, writer = await asyncio.open_connection(HOST, PORT, ssl=context())
    await start.connected()
    servers = await get(reader, writer, f"/?cmd=MRTSL&{COMMON}&{TAIL}")
    user = dict(line.partition(":")[::2] for line in servers.split("<br />"))["VPNUser"].strip()
    address = addresses[number % len(addresses)]
    answer = await get(
        reader, writer, f"/?cmd=VPNC&{COMMON}&server=571&desiredip={address}&sessid={user}&&{TAIL}&proto=UDP"
    )
    writer.close()
    return user, f"remote {address} " in answer and answer.startswith("VPNConfig: ")


async def crowd(count, addresses):
    gate, start = asyncio.Semaphore(TOGETHER), Start(count)
    begun = time.monotonic()
    tasks = [asyncio.create_task(session(number, addresses, gate, start)) for number in range(count)]
    results = await asyncio.gather(*tasks, return_exceptions=True)
    failed = [str(result) for result in results if isinstance(result, BaseException)]
    good = [result for result in results if not isinstance(result, BaseException)]
    return {
        "sessions": len(good),
        "users": len({user for user, _ in good}),
        "configurations": sum(right for _, right in good),
        "failed": len(failed),
        "first failure": failed[:1],
        "connecting": round(start.time - begun, 2),
        "answering": round(time.monotonic() - start.time, 2),
    }


async def stall(count):
    writers = []
    for _ in range(count):
        writers.append((await asyncio.open_connection(HOST, PORT))[1])
    dripping = []
    for _ in range(count):
        dripping.append((await asyncio.open_connection(HOST, PORT, ssl=context()))[1])
        dripping[-1].write(b"GET /ip HTT")
    print(json.dumps({"silent": len(writers), "dripping": len(dripping)}), flush=True)
    await asyncio.get_running_loop().run_in_executor(None, sys.stdin.read)


def main():
    if sys.argv[1] == "--stall":
        asyncio.run(stall(int(sys.argv[2])))
    else:
        print(json.dumps(asyncio.run(crowd(int(sys.argv[1]), sys.argv[2:]))))


if __name__ == "__main__":
    main()
