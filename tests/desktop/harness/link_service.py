"""The service at the other end of the live link: a websocket server that answers as it is told and remembers what
it was sent."""

import asyncio
import json
import threading
import time

import websockets

from .processes import wait_for

ANON_KEY = "eyJ" + "a" * 58
CHANNEL_KEY = "0123456789abcdef0123456789ABCDEF"
TOPIC = "realtime:ov:" + CHANNEL_KEY


def frame(event, payload, topic=TOPIC, ref=None):
    """A message of the channel as text."""
    return json.dumps({"topic": topic, "event": event, "payload": payload, "ref": ref})


def state_frame(state):
    """The broadcast with which the web application tells of its state."""
    return frame("broadcast", {"type": "broadcast", "event": "state", "payload": state})


class Connection:
    """One connection, with everything that came over it."""

    def __init__(self, owner, socket):
        self._owner = owner
        self._socket = socket
        self.path = socket.path
        self.opened = time.monotonic()
        self.closed = None
        self.close_code = None
        self.frames = []

    def of(self, event):
        """The frames that came with this event."""
        return [found for found in list(self.frames) if found["event"] == event]

    def send(self, *texts):
        """Sends texts, or bytes as they are, one message each, as fast as they are taken."""
        async def send_all():
            for text in texts:
                await self._socket.send(text)
        self._owner.run(send_all())

    def send_state(self, state):
        self.send(state_frame(state))

    def close(self, code=1000):
        self._owner.run(self._socket.close(code))

    def reset(self):
        """Breaks the connection off without a word."""
        async def abort():
            self._socket.transport.abort()
        self._owner.run(abort())


class LinkService:
    """Listens on a local port. `answering` says whether joins and heartbeats are answered; with `refusal`, an HTTP
    status, no connection is accepted. Use as a context manager, or `start` and `stop` it."""

    def __init__(self, port=0):
        self.port = port
        self.answering = True
        self.refusal = None
        self.refused = 0
        self.connections = []
        self._loop = None

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.stop()

    @property
    def url(self):
        return f"http://127.0.0.1:{self.port}"

    @property
    def settings(self):
        """What the program has to store in order to be paired with this."""
        return {"supabaseUrl": self.url, "anonKey": ANON_KEY, "channelKey": CHANNEL_KEY}

    def start(self):
        self._loop = asyncio.new_event_loop()
        self._thread = threading.Thread(target=self._loop.run_forever, daemon=True)
        self._thread.start()
        self._server = self.run(self._listen())
        self.port = self._server.sockets[0].getsockname()[1]

    def stop(self):
        """Breaks off every connection and listens no more."""
        if not self._loop:
            return
        for connection in self.open():
            connection.reset()
        self.run(self._stop_listening())
        self._loop.call_soon_threadsafe(self._loop.stop)
        self._thread.join(10)
        self._loop.close()
        self._loop = None

    def run(self, work, seconds=60):
        """Does something on the server's thread; its result."""
        return asyncio.run_coroutine_threadsafe(work, self._loop).result(seconds)

    async def _listen(self):
        return await websockets.serve(self._serve, "127.0.0.1", self.port, process_request=self._request,
                                      max_size=None, ping_interval=None, close_timeout=1, compression=None)

    async def _stop_listening(self):
        self._server.close()
        await self._server.wait_closed()

    async def _request(self, _path, _headers):
        if self.refusal is None:
            return None
        self.refused += 1
        return self.refusal, [], b""

    async def _serve(self, socket):
        connection = Connection(self, socket)
        self.connections.append(connection)
        try:
            async for text in socket:
                await self._receive(connection, socket, json.loads(text))
        except websockets.ConnectionClosed:
            pass
        finally:
            connection.close_code = socket.close_code
            connection.closed = time.monotonic()

    async def _receive(self, connection, socket, message):
        connection.frames.append(message)
        if self.answering and message["event"] in ("phx_join", "heartbeat"):
            await socket.send(frame("phx_reply", {"status": "ok", "response": {}}, message["topic"], message["ref"]))

    def open(self):
        """The connections that are open."""
        return [connection for connection in list(self.connections) if connection.closed is None]

    def wait_joined(self, number=1, seconds=60.0):
        """Waits until so many connections have been made and the last has joined; that one."""
        wait_for(f"join {number}", lambda: len(self.connections) >= number and
                 self.connections[number - 1].of("phx_join"), seconds)
        return self.connections[number - 1]
