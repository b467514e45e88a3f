"""The realtime side of the web application: its own server, and the application on another device."""

import json
import pathlib
import re
import signal
import urllib.request

from .processes import wait_for
from .program import BUNDLE, build_folder

PEER = pathlib.Path(__file__).with_name("peer.mjs")


class DemoServer:
    """The server that comes with the program, with the keys of this desktop's user, and other options."""

    def __init__(self, desktop, *options):
        self._desktop = desktop
        self._options = options
        self._process = None
        self._start(0)

    def _start(self, port):
        name = f"demo-{len(list(self._desktop.logs.glob('demo-*')))}"
        self._process = self._desktop.spawn(name, [str(build_folder() / BUNDLE / "bin/orvalle-demo"), "--serve-only",
                                                   "--port", str(port), *self._options])
        log = self._desktop.logs / name
        found = wait_for("server", lambda: re.search(r"http://localhost:(\d+)", log.read_text(encoding="utf-8")), 40)
        self.address = found.group()
        self._port = int(found.group(1))

    def stop(self):
        self._desktop.end(self._process)

    def pause(self):
        """Answers nobody from now on."""
        self._process.send_signal(signal.SIGSTOP)

    def go_on(self):
        self._process.send_signal(signal.SIGCONT)

    def start_again(self):
        """Serves again on the same port."""
        port = self._port
        self._start(port)
        assert self._port == port

    def keys(self):
        """What the page gets to know: anonKey, channelKey."""
        with urllib.request.urlopen(f"{self.address}/api/abbinamento", timeout=20) as answer:
            return json.load(answer)

    def pairing(self):
        """The same as the program stores it."""
        return {"supabaseUrl": self.address} | self.keys()


class Peer:
    """The web application on another device: runs a session from the start and obeys commands."""

    def __init__(self, desktop, server, title="Tesi", minutes=25, tasks=(), serializer="2.0.0"):
        name = f"peer-{len(list(desktop.logs.glob('peer-*')))}"
        self._desktop = desktop
        self._log = desktop.logs / name
        wanted = {"title": title, "minutes": minutes, "tasks": [{"id": a, "title": b} for a, b in tasks]}
        self._process = desktop.spawn(name, ["node", str(PEER), server.address, serializer, json.dumps(wanted)])

    def end(self):
        self._desktop.end(self._process)

    def _facts(self):
        lines = self._log.read_text(encoding="utf-8", errors="replace").splitlines()
        return [json.loads(line) for line in lines if line.startswith("{")]

    def obeyed(self):
        """The commands that have arrived, in order: word and id."""
        return [(fact["obeyed"], fact["id"]) for fact in self._facts() if "obeyed" in fact]

    def joins(self):
        """How often it has joined the channel."""
        return sum(1 for fact in self._facts() if fact.get("joined"))

    def wait_joined(self, times=1, seconds=40.0):
        wait_for(f"the other device joined {times} times", lambda: self.joins() >= times, seconds)

    def wait_obeyed(self, *command, seconds=20.0):
        wait_for(f"command {command}", lambda: command in self.obeyed(), seconds)
