"""The web application of the tests: a local server that answers as it is told and remembers what it was asked."""

import dataclasses
import http.server
import json
import pathlib
import queue
import ssl
import subprocess
import threading
import time

PAGE = pathlib.Path(__file__).with_name("page.html")


@dataclasses.dataclass
class Request:
    method: str
    path: str
    headers: object
    body: bytes
    time: float

    @property
    def cookies(self):
        return self.headers.get("Cookie", "")


@dataclasses.dataclass
class Answer:
    body: str | bytes = ""
    status: int = 200
    type: str = "text/html; charset=utf-8"
    headers: dict = dataclasses.field(default_factory=dict)


class Site:
    """Serves the test page at "/" and whatever `routes` holds: path → Answer, or a function from Request to one.
    `name` is the host in the address; the socket is a local one whatever it says. Use as a context manager."""

    def __init__(self, name="localhost", port=0, certificate=None):
        self.name = name
        self.routes = {"/": Answer(PAGE.read_bytes())}
        self.requests = []
        self.tasks = queue.Queue()
        self.results = queue.Queue()
        self.visits = []
        site = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_GET(self):
                site.handle(self)

            do_POST = do_GET

            def log_message(self, *_):
                pass

        class Server(http.server.ThreadingHTTPServer):
            daemon_threads = True
            request_queue_size = 64

            def handle_error(self, *_):
                pass  # a browser that hangs up is no error

        self._server = Server(("127.0.0.1", port), Handler)
        self.port = self._server.server_address[1]
        self._scheme = "http"
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate)
            self._server.socket = context.wrap_socket(self._server.socket, server_side=True,
                                                      do_handshake_on_connect=False)
            self._scheme = "https"
        self._thread = threading.Thread(target=self._server.serve_forever, args=(0.05,), daemon=True)
        self._closing = False

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Stops listening; later connections are refused."""
        if not self._closing:
            self._closing = True
            self._server.shutdown()
            self._server.server_close()

    @property
    def url(self):
        return f"{self._scheme}://{self.name}:{self.port}/"

    def paths(self):
        """What was asked for, the test page's own errands aside."""
        return [request.path for request in list(self.requests)]

    def handle(self, handler):
        body = handler.rfile.read(int(handler.headers.get("Content-Length") or 0))
        request = Request(handler.command, handler.path, handler.headers, body, time.monotonic())
        if request.path.startswith("/-/"):
            answer = self._errand(request)
        else:
            self.requests.append(request)
            answer = self.routes.get(request.path.split("?")[0], Answer("Not here.", 404))
            if callable(answer):
                answer = answer(request)
        if answer is None:
            handler.close_connection = True
            return
        data = answer.body.encode() if isinstance(answer.body, str) else answer.body
        handler.send_response(answer.status)
        handler.send_header("Content-Type", answer.type)
        handler.send_header("Content-Length", str(len(data)))
        handler.send_header("Cache-Control", "no-store")
        for name, value in answer.headers.items():
            handler.send_header(name, value)
        handler.end_headers()
        handler.wfile.write(data)

    def _errand(self, request):
        """What the test page does on its own: it tells of itself and asks for work."""
        path = request.path.split("?")[0]
        if path == "/-/visit":
            self.visits.append(json.loads(request.body))
            return Answer(str(len(self.visits)), type="application/json")
        if path == "/-/result":
            self.results.put(json.loads(request.body))
            return Answer("{}", type="application/json")
        if path == "/-/task":
            visit = int(request.path.partition("?")[2])
            return self._next_task(visit)
        return Answer("", 404)

    def _next_task(self, visit):
        """Waits for work for this visit of the page; none when a newer visit has begun or time is up."""
        end = time.monotonic() + 20
        while time.monotonic() < end and not self._closing and visit == len(self.visits):
            try:
                task = self.tasks.get(timeout=0.1)
            except queue.Empty:
                continue
            if visit == len(self.visits):
                return Answer(json.dumps(task), type="application/json")
            self.tasks.put(task)
        return Answer("null", type="application/json")


def self_signed_certificate(folder):
    """A certificate for localhost that nobody vouches for, with its key, in one file."""
    path = pathlib.Path(folder) / "certificate.pem"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                    "/CN=localhost", "-addext", "subjectAltName=DNS:localhost", "-keyout", path, "-out",
                    f"{path}.crt"], check=True, stdin=subprocess.DEVNULL, capture_output=True)
    with open(path, "a", encoding="utf-8") as joined:
        joined.write(pathlib.Path(f"{path}.crt").read_text(encoding="utf-8"))
    return path
