"""Loads that fail, however they do, end in the offline page, which stays there quietly."""

import os
import signal
import socket
import time

import pytest

from harness import processes
from harness.accessibility import Accessibility
from harness.link_service import LinkService
from harness.page import session
from harness.requests import Requests
from harness.server import PAGE, Answer, Site, self_signed_certificate

HEADLINE = "Non riesco a raggiungere Orvalle"
ADVICE = "Controlla la connessione. Le schermate che hai già aperto restano disponibili offline: riprova fra un momento."


@pytest.fixture
def offline(start, desktop):
    """Starts the program on an address, or takes one that runs, and waits for its offline page."""
    def wait_offline(program=None, **options):
        program = program or start(**options)
        desktop.windows.wait(program.pid, "Orvalle")
        access = Accessibility(desktop, program.pid)
        access.wait_text(HEADLINE, 30)
        assert any(" ".join(text.split()) == ADVICE for text in access.texts())
        return program
    return wait_offline


def stays_quietly(desktop, program, requests=None):
    """Fails when the offline page goes away, is loaded again and again, or keeps the processor busy."""
    access = Accessibility(desktop, program.pid)
    helpers = program.web_processes()
    before = processes.cpu_seconds(program.pid)
    asked = len(requests) if requests is not None else 0
    time.sleep(4)
    used = processes.cpu_seconds(program.pid) - before
    assert used < 0.4, f"{used} s of processor time in four seconds"
    assert program.web_processes() == helpers
    assert requests is None or len(requests) == asked, "something was loaded again"
    access.wait_text(HEADLINE)


def test_refused_connection(offline, desktop):
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))  # bound, but not listening
        program = offline(address=f"http://localhost:{taken.getsockname()[1]}/")
        stays_quietly(desktop, program)


def test_host_that_does_not_exist(offline, desktop):
    stays_quietly(desktop, offline(address="http://orvalle.invalid/"))


def test_certificate_that_nobody_vouches_for(offline, desktop, tmp_path):
    with Site(certificate=self_signed_certificate(tmp_path)) as site:
        program = offline(address=site.url)
        stays_quietly(desktop, program, site.requests)
        assert not site.requests, "something was sent in spite of the certificate"


def test_connection_that_breaks_off(offline, desktop, site):
    site.routes["/"] = lambda request: None
    stays_quietly(desktop, offline())


def test_killed_web_process(offline, desktop, orvalle, site):
    for pid in orvalle.web_processes():
        os.kill(pid, signal.SIGKILL)
    offline(orvalle)
    stays_quietly(desktop, orvalle, site.requests)


def test_load_that_the_page_cancels(offline, desktop, orvalle, site, page):
    site.routes["/lento"] = lambda request: time.sleep(30)
    page.leave("location.href = '/lento'; setTimeout(() => window.stop(), 1000)")
    offline(orvalle)
    stays_quietly(desktop, orvalle, site.requests)


def test_load_that_another_replaces(desktop, orvalle, window, site, page):
    site.routes["/lento"] = lambda request: time.sleep(30)
    site.routes["/dopo"] = Answer(PAGE.read_bytes())
    page.leave("location.href = '/lento'; setTimeout(() => location.href = '/dopo', 1000)")
    ended = processes.wait_for("a page", lambda: len(site.visits) == 2 or any(
        HEADLINE in text for text in Accessibility(desktop, orvalle.pid).texts()))
    assert ended
    time.sleep(1)
    before = processes.cpu_seconds(orvalle.pid)
    asked = len(site.requests)
    time.sleep(3)
    assert processes.cpu_seconds(orvalle.pid) - before < 0.4
    assert len(site.requests) == asked


def test_link_that_the_window_refuses_leaves_the_page_alone(desktop, orvalle, window, page, access):
    page.run("const a = document.createElement('a'); a.href = 'http://altrove.invalid/'; a.click()")
    time.sleep(1)
    assert page.run("return location.hostname") == "localhost"
    assert not any(HEADLINE in text for text in access.texts())


def test_page_loads_again_at_the_next_start(offline, start, page, site):
    site.routes["/"] = lambda request: None
    program = offline()
    program.stop()
    site.routes["/"] = Answer(PAGE.read_bytes())
    start()
    page.wait_loaded()


def test_commands_take_the_channel_while_the_page_is_out_of_reach(offline, home, desktop, tray, site):
    site.routes["/"] = lambda request: None
    with LinkService() as service:
        home.write_defaults(service.settings)
        program = offline()
        connection = service.wait_joined()
        connection.send_state(session())
        item = tray.wait_item()
        item.wait("XAyatanaLabel", lambda label: label.endswith(" • Tesi"))
        item.menu.click("Allunga di 5 minuti")
        processes.wait_for("command", lambda: connection.of("broadcast"))
        time.sleep(1)
        sent = [message["payload"] for message in connection.of("broadcast")]
        assert sent == [{"type": "broadcast", "event": "cmd", "payload": {"command": "plus5"}}]
        Accessibility(desktop, program.pid).wait_text(HEADLINE)


def test_sign_in_link_leads_from_the_offline_page_back_to_the_web_application(offline, start, desktop, tray, site, page):
    site.routes["/"] = lambda request: None
    program = offline()
    site.routes["/api/mac/entra"] = Answer(PAGE.read_bytes())
    assert start("orvalle://accesso?codice=x").wait(20) == 0
    page.wait_loaded()
    assert page.run("return location.pathname + location.search") == "/api/mac/entra?codice=x"
    assert page.first_script() == {"strip": "38px", "bridge": "function"}
    assert not any(HEADLINE in text for text in Accessibility(desktop, program.pid).texts())
    item = tray.wait_item()
    page.push(session())
    item.wait("XAyatanaLabel", lambda label: label.endswith(" • Tesi"))
    item.menu.click("Allunga di 5 minuti")
    page.wait_command("plus5", None)
    assert page.commands() == [("plus5", None)]
    assert Requests(page).ask("backup-ultimo") == ""
    assert program.running() and len(site.visits) == 1
