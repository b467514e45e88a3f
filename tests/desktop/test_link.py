"""The live link to a session elsewhere, with the real program and a server that behaves and misbehaves."""

import stat
import time

import pytest

from harness import link_service, overlay, processes
from harness.page import session, task
from harness.link_service import LinkService

SEARCHING = "Cerco il canale…"
NO_SESSION = "Nessuna sessione in corso"


@pytest.fixture
def service():
    """The service that the program is paired with."""
    with LinkService() as running:
        yield running


@pytest.fixture
def unreachable(site):
    """The web application accepts whoever calls, and has nothing to say."""
    def hang(_request):
        time.sleep(1000)
    site.routes["/"] = hang
    return site


@pytest.fixture
def paired(tray, start, home, service, unreachable):
    """The program, paired, its page out of reach; its item."""
    home.write_defaults(service.settings)
    program = start()
    service.wait_joined()
    item = tray.wait_item()
    item.program = program
    item.menu.wait_row(NO_SESSION)
    return item


def show(service, item, **changes):
    """A session runs elsewhere."""
    service.open()[-1].send_state(session(**changes))
    item.wait("XAyatanaLabel", lambda label: label != " Orvalle")


class TestSession:
    def test_joins_the_channel_once(self, paired, service):
        time.sleep(2)
        assert len(service.connections) == 1
        connection = service.connections[0]
        assert connection.path == f"/realtime/v1/websocket?apikey={link_service.ANON_KEY}&vsn=1.0.0"
        assert connection.frames == [{"topic": link_service.TOPIC, "event": "phx_join", "ref": "1", "payload": {
            "config": {"broadcast": {"self": False, "ack": False}, "presence": {"key": ""}, "private": False}}}]

    def test_state_of_a_session_elsewhere_is_shown(self, desktop, paired, service):
        show(service, paired, projectTitle="Altrove", tasks=[task("a", "Leggere"), task("b", "Scrivere", True)])
        paired.wait("XAyatanaLabel", lambda label: label.endswith(" • Altrove"))
        rows = paired.menu.shown()
        assert rows[0] == "Altrove · 20′ al traguardo"
        assert "Leggere" in rows and "Scrivere" in rows
        overlay.wait(desktop, paired.program)
        service.open()[-1].send_state(session(running=False))
        paired.wait("XAyatanaLabel", lambda label: label == " Orvalle")
        assert paired.menu.shown()[0] == NO_SESSION

    def test_commands_travel_once_each(self, paired, service):
        show(service, paired, tasks=[task("id 'b' \"\\", "Scrivere")])
        for row, inner in [("Allunga di 5 minuti", {"command": "plus5"}),
                           ("Accorcia di 5 minuti", {"command": "minus5"}),
                           ("Scrivere", {"command": "task", "id": "id 'b' \"\\"}),
                           ("Ferma la sessione", {"command": "stop"})]:
            connection = service.open()[-1]
            before = len(connection.of("broadcast"))
            paired.menu.click(row)
            processes.wait_for(row, lambda: len(connection.of("broadcast")) > before)
            time.sleep(0.5)
            sent = connection.of("broadcast")[before:]
            assert [message["payload"] for message in sent] == [
                {"type": "broadcast", "event": "cmd", "payload": inner}]
            assert sent[0]["topic"] == link_service.TOPIC
        numbers = [message["ref"] for message in connection.frames]
        assert numbers == [str(number + 1) for number in range(len(numbers))]

    def test_stop_opens_the_window_all_the_same(self, desktop, paired, service):
        show(service, paired)
        window = desktop.windows.wait(paired.program.pid, "Orvalle")
        window.close()
        window.wait_hidden()
        paired.menu.click("Ferma la sessione")
        window.wait_visible()
        processes.wait_for("stop", lambda: service.connections[0].of("broadcast"))

    def test_commands_go_to_the_page_alone_where_there_is_one(self, tray, start, home, service, page):
        home.write_defaults(service.settings)
        start()
        page.wait_loaded()
        connection = service.wait_joined()
        item = tray.wait_item()
        show(service, item)
        item.menu.click("Ferma la sessione")
        page.wait_command("stop", None)
        time.sleep(0.5)
        assert page.commands() == [("stop", None)]
        assert connection.of("broadcast") == []

    def test_origin_becomes_the_address_of_the_next_start(self, paired, service, home):
        show(service, paired, origin="https://altrove.example/")
        processes.wait_for("address", lambda: home.defaults().get("appUrl") == "https://altrove.example/")
        show(service, paired, origin="")
        time.sleep(0.5)
        assert home.defaults()["appUrl"] == "https://altrove.example/"


class TestSettling:
    def test_one_close_makes_one_new_connection(self, paired, service):
        service.connections[0].close(1000)
        closed = time.monotonic()
        paired.menu.wait_row(SEARCHING, 1)
        joined = service.wait_joined(2).opened - closed
        assert 0.5 <= joined <= 1.8, f"joined again after {joined:.2f} s"
        paired.menu.wait_row(NO_SESSION)
        time.sleep(8)
        assert len(service.connections) == 2
        assert len(service.open()) == 1

    @pytest.mark.parametrize("end", ["close 4000", "reset", "stop"])
    def test_every_end_is_one_loss(self, paired, service, end):
        if end == "reset":
            service.connections[0].reset()
        elif end == "stop":
            service.stop()
            service.start()
        else:
            service.connections[0].close(4000)
        service.wait_joined(2)
        time.sleep(4)
        assert len(service.connections) == 2
        paired.menu.wait_row(NO_SESSION)

    def test_waits_grow_while_nobody_accepts(self, paired, service):
        service.refusal = 403
        service.connections[0].reset()
        broken = time.monotonic()
        times = []
        for number in range(1, 4):
            processes.wait_for("attempt", lambda: service.refused >= number, 10)
            times.append(time.monotonic() - broken)
        service.refusal = None
        assert service.wait_joined(2, 12).opened - broken == pytest.approx(15, abs=1.5)
        assert times == [pytest.approx(wait, abs=0.7) for wait in (1, 3, 7)]
        paired.menu.wait_row(NO_SESSION)
        # Answered, it starts again at one second.
        service.connections[1].close()
        closed = time.monotonic()
        assert service.wait_joined(3).opened - closed < 1.8

    def test_saving_again_makes_exactly_one_new_connection(self, desktop, paired, service):
        paired.menu.click("Abbina…")
        window = desktop.windows.wait(paired.program.pid, "Abbina Orvalle")
        window.wait_active()
        shown = []
        desktop.hand.key("Return")
        window.wait_hidden()
        end = time.monotonic() + 6
        while time.monotonic() < end:
            shown.append(paired.menu.shown()[0])
            time.sleep(0.05)
        assert len(service.connections) == 2
        assert service.connections[0].close_code == 1001
        assert service.connections[1].frames[0]["ref"] == "2"
        assert set(shown) == {NO_SESSION}

    def test_heartbeat_after_twenty_five_seconds(self, paired, service):
        connection = service.connections[0]
        beat = processes.wait_for("heartbeat", lambda: connection.of("heartbeat"), 30)
        assert time.monotonic() - connection.opened == pytest.approx(25, abs=1.5)
        assert beat == [{"topic": "phoenix", "event": "heartbeat", "payload": {}, "ref": "2"}]


class TestSecrets:
    def test_values_are_nowhere_but_in_the_store(self, paired, service, home):
        service.connections[0].close()
        service.wait_joined(2)
        service.refusal = 401
        service.connections[1].reset()
        processes.wait_for("refusal", lambda: service.refused)
        pids = [paired.program.pid, *processes.children(paired.program.pid)]
        for secret in (link_service.ANON_KEY, link_service.CHANNEL_KEY):
            assert secret not in paired.program.log()
            for pid in pids:
                for name in ("cmdline", "environ"):
                    with open(f"/proc/{pid}/{name}", "rb") as text:
                        assert secret.encode() not in text.read()
        assert paired.program.own_lines() == []
        paired.menu.click("Tienila sopra le altre app")
        processes.wait_for("option", lambda: home.defaults().get("overlayOn") is False)
        assert stat.S_IMODE(home.defaults_file.stat().st_mode) == 0o600
        holders = [path for path in home.folder.rglob("*") if path.is_file() and
                   link_service.CHANNEL_KEY.encode() in path.read_bytes()]
        assert holders == [home.defaults_file]
