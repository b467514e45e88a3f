"""A session that runs on another device is shown and obeys, with no page of the program's own."""

import re
import socket
import time

import pytest

from harness import overlay, processes
from harness.realtime import DemoServer, Peer

IDLE = " Orvalle"


@pytest.fixture
def server(desktop):
    running = DemoServer(desktop)
    yield running
    running.stop()


@pytest.fixture
def unreachable():
    """An address where nobody listens."""
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        yield f"http://localhost:{taken.getsockname()[1]}/"


@pytest.fixture
def paired(start, home, server, unreachable, tray):
    """The program, paired, with its own page unreachable."""
    home.write_defaults(server.pairing())
    return start(address=unreachable)


@pytest.fixture
def item(paired, tray):
    found = tray.wait_item()
    processes.wait_for("the link", lambda: found.menu.shown()[0] == "Nessuna sessione in corso", 40)
    return found


@pytest.fixture
def elsewhere(desktop, server, item):
    """Starts a session on another device."""
    peers = []

    def run(**options):
        peer = Peer(desktop, server, **options)
        peers.append(peer)
        item.wait("XAyatanaLabel", lambda label: label != IDLE)
        return peer
    yield run
    for peer in peers:
        peer.end()


def seconds_left(item):
    minutes, seconds = re.match(r" (\d+):(\d\d) • ", item["XAyatanaLabel"]).groups()
    return 60 * int(minutes) + int(seconds)


@pytest.mark.parametrize("serializer", ["1.0.0", "2.0.0"])
def test_session_is_shown_and_stopped(item, elsewhere, desktop, paired, serializer):
    peer = elsewhere(title="Tesi «à» 🍅", tasks=[("a", "Leggere"), ("l'altra", "Scrivere")], serializer=serializer)
    assert re.fullmatch(r" 2[45]:\d\d • Tesi «à» 🍅", item["XAyatanaLabel"])
    overlay.wait(desktop, paired)
    rows = item.menu.shown()
    assert rows[0] == "Tesi «à» 🍅 · 25′ al traguardo"
    assert "Leggere" in rows and "Scrivere" in rows
    item.menu.click("Ferma la sessione")
    item.wait("XAyatanaLabel", lambda label: label == IDLE)
    overlay.wait_gone(desktop, paired)
    assert peer.obeyed() == [("stop", None)]


def test_every_command_reaches_the_other_device_once(item, elsewhere):
    peer = elsewhere(tasks=[("a", "Leggere"), ("l'\"altra\\", "Scrivere")])
    before = seconds_left(item)
    item.menu.click("Allunga di 5 minuti")
    processes.wait_for("five minutes more", lambda: seconds_left(item) > before + 240)
    item.menu.click("Accorcia di 5 minuti")
    processes.wait_for("five minutes less", lambda: seconds_left(item) <= before)
    item.menu.click("Scrivere")
    peer.wait_obeyed("task", "l'\"altra\\")
    processes.wait_for("tick", lambda: item.menu.row("Scrivere").checked)
    time.sleep(2.2)  # an unconfirmed tick would have been taken back
    assert item.menu.row("Scrivere").checked and not item.menu.row("Leggere").checked
    assert peer.obeyed() == [("plus5", None), ("minus5", None), ("task", "l'\"altra\\")]


def test_server_that_comes_back(item, elsewhere, server):
    peer = elsewhere()
    peer.wait_joined()
    server.stop()
    processes.wait_for("the loss shown", lambda: item["XAyatanaLabel"] == IDLE, 20)
    server.start_again()
    item.wait("XAyatanaLabel", lambda label: "Tesi" in label, 40)
    item.menu.click("Ferma la sessione")
    peer.wait_obeyed("stop", None)


def test_wrong_key_connects_nothing(start, home, server, unreachable, tray, desktop):
    home.write_defaults(server.pairing() | {"anonKey": "eyJsbagliata"})
    program = start(address=unreachable)
    found = tray.wait_item()
    peer = Peer(desktop, server)
    peer.wait_joined()
    processes.stays("a session is shown", lambda: found["XAyatanaLabel"] == IDLE, 6)
    assert "eyJ" not in program.log()
    peer.end()
