"""An etcd of the test's own: a small store behind HTTPS, which can be ordered to misbehave."""

import base64
import http.server
import json
import ssl
import threading

from service_harness import EVENTUALLY


def encoded(text):
    return base64.b64encode(text.encode()).decode()


def decoded(text):
    return base64.b64decode(text).decode()


class FakeEtcd:
    """One member on a loopback port.

    `answers` replaces the answers to a path by a text; the flags make it silent.
    """

    def __init__(self, certificate, key, authority, store=None):
        self.store = store if store is not None else {}  # key: (value, lease, revision)
        self.revision = 100
        self.leases = {}  # number: seconds
        self.answers = {}
        self.hangs = False  # requests are not answered
        self.watch_reports = True
        self.requests = []
        self._changed = threading.Condition()
        self._watches = []
        context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH, cafile=authority)
        context.verify_mode = ssl.CERT_REQUIRED
        context.load_cert_chain(certificate, key)
        self._server = _Server(("127.0.0.1", 0), _Handler)
        self._server.context = context
        self._server.etcd = self
        threading.Thread(target=self._server.serve_forever, args=(0.05,)).start()

    @property
    def endpoint(self):
        """As in the configuration of a node."""
        return f"127.0.0.1:{self._server.server_address[1]}"

    def resume(self):
        """Answers again, also what has waited."""
        with self._changed:
            self.hangs = False
            self._changed.notify_all()

    def close(self):
        with self._changed:
            self.hangs = False
            self._end_watches()
            self._changed.notify_all()
        self._server.shutdown()
        self._server.end_connections()
        self._server.server_close()

    def _end_watches(self):
        for watch in self._watches:
            watch.append(None)

    def put(self, key, value, lease=0):
        """Writes a key, and reports it to the watches."""
        with self._changed:
            self.revision += 1
            self.store[key] = (value, lease, self.revision)
            self._report({"kv": self._entry(key)})

    def delete(self, key):
        with self._changed:
            self.revision += 1
            del self.store[key]
            self._report({"type": "DELETE", "kv": {"key": encoded(key), "mod_revision": str(self.revision)}})

    def send_to_watches(self, line):
        """Sends any text to everything that watches."""
        with self._changed:
            for watch in self._watches:
                watch.append(line)
            self._changed.notify_all()

    def _report(self, event):
        if self.watch_reports:
            for watch in self._watches:
                watch.append(self._result(events=[event]))
        self._changed.notify_all()

    def _entry(self, key):
        value, lease, revision = self.store[key]
        return {
            "key": encoded(key),
            "value": encoded(value),
            "mod_revision": str(revision),
            "create_revision": str(revision),
            "lease": str(lease),
        }

    def _header(self):
        return {"revision": str(self.revision)}

    def _result(self, **content):
        return json.dumps({"result": {"header": self._header(), **content}}) + "\n"

    def answer(self, path, request):
        """The text of the answer to one request; waits while it hangs."""
        with self._changed:
            self.requests.append((path, request))
            self._changed.wait_for(lambda: not self.hangs, EVENTUALLY)
            if path in self.answers:
                return self.answers[path]
            content = getattr(self, "_" + path.rpartition("/")[2])(request)
            if "error" in content:
                return json.dumps(content)
            answer = {"header": self._header(), **content}
            return json.dumps({"result": answer} if path == "/v3/lease/keepalive" else answer)

    def _range(self, request):
        least = int(request.get("min_mod_revision", 0))
        begin, end = decoded(request["key"]), decoded(request["range_end"])
        keys = [key for key in sorted(self.store) if begin <= key < end]
        entries = [self._entry(key) for key in keys if self.store[key][2] >= least]
        return {"kvs": entries, "count": str(len(keys))}

    def _put(self, request):
        lease = int(request.get("lease", 0))
        if lease not in self.leases and lease != 0:
            return {"error": "etcdserver: requested lease not found"}
        self.put(decoded(request["key"]), decoded(request["value"]), lease)
        return {}

    def _grant(self, request):
        number = max(self.leases, default=0) + len(self.requests)
        self.leases[number] = int(request["TTL"])
        return {"ID": str(number), "TTL": request["TTL"]}

    def _keepalive(self, request):
        lease = int(request["ID"])
        return {"ID": request["ID"], "TTL": str(self.leases[lease])} if lease in self.leases else {}

    def _revoke(self, request):
        self.end_lease(int(request["ID"]))
        return {}

    def end_lease(self, lease):
        """Deletes its keys, too."""
        with self._changed:
            del self.leases[lease]
            for key in [key for key, entry in self.store.items() if entry[1] == lease]:
                self.delete(key)

    def _holds(self, condition):
        key = decoded(condition["key"])
        if condition["target"] == "CREATE":
            return key not in self.store
        return key in self.store and self.store[key][0] == decoded(condition["value"])

    def _txn(self, request):
        if not all(self._holds(condition) for condition in request["compare"]):
            return {}
        for operation in request["success"]:
            for kind, change in operation.items():
                if kind == "request_put":
                    self._put(change)
                else:
                    self.delete(decoded(change["key"]))
        return {"succeeded": True}

    def watch(self, send):
        """Serves one watch until it ends."""
        lines = [self._result(created=True)]
        with self._changed:
            self._watches.append(lines)
        try:
            while True:
                with self._changed:
                    self._changed.wait_for(lambda: lines, EVENTUALLY)
                    line = lines.pop(0) if lines else None
                if line is None:
                    return
                send(line.encode())
        except OSError:
            pass
        finally:
            with self._changed:
                self._watches.remove(lines)


class _Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    context = None
    etcd = None

    def __init__(self, *arguments):
        self._open = []
        super().__init__(*arguments)

    def finish_request(self, request, client_address):
        try:
            request.settimeout(EVENTUALLY)
            connection = self.context.wrap_socket(request, server_side=True)
        except OSError:
            return
        self._open.append(connection)
        try:
            self.RequestHandlerClass(connection, client_address, self)
        except OSError:
            pass
        connection.close()

    def handle_error(self, request, client_address):
        pass

    def end_connections(self):
        for connection in self._open:
            try:
                connection.shutdown(2)
            except OSError:
                pass


class _Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, format, *args):  # pylint: disable=redefined-builtin
        pass

    def do_POST(self):  # pylint: disable=invalid-name
        body = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
        if self.path == "/v3/watch":
            self.send_response(200)
            self.send_header("Transfer-Encoding", "chunked")
            self.send_header("Connection", "close")
            self.end_headers()
            self.server.etcd.watch(lambda line: self.wfile.write(b"%x\r\n" % len(line) + line + b"\r\n"))
            return
        text = self.server.etcd.answer(self.path, body).encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)
