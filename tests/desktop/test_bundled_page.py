"""The web application that comes with the program, in the program's own window."""

import json
import pathlib
import time

import pytest

from harness import notification_daemon, processes
from harness.accessibility import Accessibility
from harness.program import BUNDLE, build_folder
from harness.realtime import DemoServer, Peer

REMOTE = pathlib.Path(__file__).parent / "harness/remote.mjs"


@pytest.fixture
def published(desktop, home):
    """The folder with the updates that the server publishes: none at first."""
    folder = home.folder / "published"
    folder.mkdir()
    return folder


@pytest.fixture
def server(desktop, published):
    running = DemoServer(desktop, "--updates", str(published))
    yield running
    running.stop()


@pytest.fixture
def pair(home, server):
    """Pairs the program before it starts."""
    home.write_defaults(server.pairing())


@pytest.fixture
def access(desktop, start, server, request):
    """The program with a screen of the application in its window."""
    program = start(address=server.address + request.param)
    desktop.windows.wait(program.pid, "Orvalle")
    return Accessibility(desktop, program.pid)


@pytest.fixture
def click(desktop, access):
    def press(role, name):
        access.wait(role, name)
        time.sleep(1)  # what can be found may not be pressed yet, or still move
        x, y, width, height = access.wait(role, name)["box"]
        desktop.hand.click(x + width // 2, y + height // 2)
    return press


@pytest.mark.parametrize("access", ["/settings?sezione=avvisi"], indirect=True)
def test_what_the_page_copies_pairs_the_program(access, click, desktop, start, home, server, tray):
    item = tray.wait_item()
    access.wait_text(server.keys()["channelKey"])
    access.wait_text("Attivo")
    click("push button", "Copia")
    access.wait_text("Copiati tutti e tre")
    item.menu.click("Abbina…")
    pairing = desktop.windows.wait(start.started[0].pid, "Abbina Orvalle")
    access.press("push button", "Incolla tutto")
    access.wait_text("Trovati tutti e tre. Controlla e salva.")
    access.press("push button", "Salva e connetti")
    pairing.wait_hidden()
    assert {key: home.defaults()[key] for key in server.pairing()} == server.pairing()
    item.menu.wait_row("Nessuna sessione in corso")


@pytest.mark.parametrize("access", ["/"], indirect=True)
def test_page_tells_its_session_and_obeys(access, desktop, server, tray):
    item = tray.wait_item()
    access.wait("push button", "Avvia")
    log = desktop.logs / "remote"
    remote = desktop.spawn("remote", ["node", str(REMOTE), server.address])

    def said():
        lines = log.read_text(encoding="utf-8").splitlines()
        return [json.loads(line) for line in lines if line.startswith("{")]
    processes.wait_for("the remote control", lambda: {"status": "SUBSCRIBED"} in said(), 40)
    assert said() == [{"status": "SUBSCRIBED"}], "an idle page has said something"
    access.press("push button", "Avvia")
    processes.wait_for("the end of the session", lambda: said()[-1].get("running") is False, 40)
    item.wait("XAyatanaLabel", lambda label: label == " Orvalle")
    access.wait("push button", "Avvia")
    time.sleep(6)  # longer than a running page would be silent
    states = said()[1:]
    assert states[0]["origin"] == server.address
    assert [(state["running"], state["plannedMin"]) for state in states if state["plannedMin"] != 25] == [
        (True, 30), (False, 0)]
    desktop.end(remote)


@pytest.mark.parametrize("access", ["/"], indirect=True)
def test_idle_page_passes_commands_on_to_a_session_elsewhere(pair, access, desktop, server, tray):
    item = tray.wait_item()
    access.wait("push button", "Avvia")
    item.menu.wait_row("Nessuna sessione in corso")
    peer = Peer(desktop, server, tasks=[("a", "Leggere")])
    item.menu.wait_row("Leggere")
    item.menu.click("Leggere")
    peer.wait_obeyed("task", "a")
    item.menu.click("Ferma la sessione")
    item.wait("XAyatanaLabel", lambda label: label == " Orvalle")
    time.sleep(2)
    assert peer.obeyed() == [("task", "a"), ("stop", None)]
    peer.end()


@pytest.mark.parametrize("access", ["/settings?sezione=avvisi"], indirect=True)
def test_settings_try_notifications_and_find_an_update(dunst, preferences, published, access, click, desktop, start, home):
    access.wait_text("Consentite")
    click("push button", "Prova")
    access.wait_text("Inviata: se non appare, vedi le preferenze.")
    processes.wait_for("notification", lambda: "«Prova» mostrata" in start.started[0].log())
    assert notification_daemon.shown(desktop) == 1
    desktop.run("dunstctl", "close-all")
    click("push button", "Preferenze…")
    processes.wait_for("the desktop's preferences", preferences)
    desktop.end(dunst)
    access.wait_text("Non consentite")
    assert not access.find("push button", "Prova")

    click("link", "Generali")
    click("push button", "Cerca aggiornamenti")
    access.wait_text("Non riesco a controllare: riprova quando c’è rete.")
    information = json.loads((build_folder() / BUNDLE / "Info.json").read_text(encoding="utf-8"))
    release = {"versione": "2.0", "build": int(information["CFBundleVersion"]), "url": "Orvalle-2.0.zip", "note": "Più veloce."}
    (published / "versione.json").write_text(json.dumps(release), encoding="utf-8")
    click("push button", "Cerca aggiornamenti")
    access.wait_text("Sei già aggiornato.")
    assert not access.find("push button", "Aggiorna e riavvia")
    release["build"] += 1
    (published / "versione.json").write_text(json.dumps(release), encoding="utf-8")
    click("push button", "Cerca aggiornamenti")
    access.wait_text("Più veloce. L’app si chiude e si riapre da sola.")
    # There is no package, so that the program under test stays what it is.
    click("push button", "Aggiorna e riavvia")
    access.wait_text("Scaricamento non riuscito.")
    access.press("push button", "Va bene")
    click("push button", "Spegni")
    access.wait("push button", "Accendi")
    processes.wait_for("the setting", lambda: home.defaults().get("aggiornamentiAutomatici") is False)
    click("push button", "Accendi")
    processes.wait_for("the setting", lambda: home.defaults().get("aggiornamentiAutomatici") is True)
