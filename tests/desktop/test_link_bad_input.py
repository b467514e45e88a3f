"""Whatever comes over the link: frames are dropped in silence, the program answers, what is stored stays."""

import json
import threading
import time

import pytest

from harness import processes
from harness.page import session, task
from harness.link_service import LinkService, frame, state_frame


@pytest.fixture
def service():
    with LinkService() as running:
        yield running


@pytest.fixture
def program(start, home, service, page, tray):
    """The program, paired, while a good state is shown."""
    home.write_defaults(service.settings | {"qualcosa di mio": 1})
    started = start()
    page.wait_loaded()
    service.wait_joined()
    return started


@pytest.fixture
def item(tray, program, service):
    found = tray.wait_item()
    service.open()[-1].send_state(session(projectTitle="Prima"))
    found.wait("XAyatanaLabel", lambda label: "Prima" in label)
    return found


@pytest.fixture(autouse=True)
def still_well(item, program, service, home):
    """After each test a good state is taken as before, over the same connection, and nothing was said."""
    yield
    service.open()[-1].send_state(session(projectTitle="Dopo"))
    item.wait("XAyatanaLabel", lambda label: label.endswith("Dopo"))
    assert len(service.connections) == 1
    assert program.own_lines() == []
    assert home.defaults() == service.settings | {"qualcosa di mio": 1} | {
        key: value for key, value in home.defaults().items() if key.startswith(("NSWindow", "overlay"))}


def state_text(**changes):
    return json.dumps(session(projectTitle="Sbagliata") | changes)


def inner(text):
    """A state broadcast with this text at the state's place."""
    return '{"topic":"t","event":"broadcast","ref":null,"payload":{"type":"broadcast","event":"state","payload":%s}}' % text


GARBAGE = ["", " ", "x", "null", "5", '"phx_reply"', "[]", "{}", "{", "\0", "\ufeff{}", '{"event":5}',
           '{"event":"phx_error"}', '{"event":"phx_close"}', '{"event":"broadcast"}', '{"event":"broadcast","payload":7}',
           '[null,"1","realtime:ov:K","broadcast",{"event":"state"}]', '{"event":"broadcast","payload":{"event":"state"}}',
           '{"event":"\\ud800"}', "{\"event\":\"broadcast\"}}", "NaN", "'x'"]
NESTED = ["[" * 100_000, '{"a":' * 100_000, inner("[" * 100_000), inner("[" * 100_000 + "]" * 100_000),
          '{"event":' + "[" * 600 + "]" * 600 + "}"]
BARE = [inner(text) for text in ("null", "true", "false", "5", "-1e5", '"x"', '""', "[]", "[1]", "{}")]
# Without sanitizers, and with a machine of our own, it is a small part of that.
LONGEST_PAUSE = 4
NUMBERS = [inner(state_text(remainingMin=0).replace('"remainingMin": 0', '"remainingMin": ' + number))
           for number in ("1e400", "-1e400", "1e-400", "1e999999999999", "0x10", "1.", "01", "Infinity", '"5"')]
TWICE = ['{"event":"broadcast","event":"phx_close","payload":1,"payload":{}}',
         inner('{"running":1,"running":"2","tasks":[],"tasks":{}}')]


@pytest.mark.parametrize("texts", [GARBAGE, NESTED, BARE, NUMBERS, TWICE, [b"\xff\xfe", b"{}", b"\0" * 1000]],
                         ids=["garbage", "nested", "bare", "numbers", "twice", "binary"])
def test_is_dropped(item, service, texts):
    service.open()[-1].send(*texts)
    time.sleep(1)
    assert "Prima" in item["XAyatanaLabel"]
    assert item.menu.shown()[0].startswith("Prima")


def test_absurd_minutes_are_shown_somehow(item, service):
    for number in ("1e300", "-1e300", "1.7976931348623157e308", "18446744073709551615"):
        service.open()[-1].send(inner(state_text(projectTitle="n" + number).replace(
            '"remainingMin": 20', '"remainingMin": ' + number)))
        item.wait("XAyatanaLabel", lambda label: label.endswith("n" + number))
        assert item.menu.shown()[0]


def test_title_of_a_megabyte(item, service):
    service.open()[-1].send_state(session(projectTitle="è" * 524288, tasks=[task("a", "🍅\0\u202e" * 100_000)]))
    processes.wait_for("the title", lambda: "è" in item["XAyatanaLabel"][:60], 20)
    time.sleep(1)


def test_seven_megabytes_in_one_frame(item, service):
    tasks = [task(f"t{number}", "x" * 65_000) for number in range(107)]
    service.open()[-1].send_state(session(projectTitle="Grande", tasks=tasks))
    item.wait("XAyatanaLabel", lambda label: label.endswith("Grande"))


def flood(item, service, texts):
    """Sends everything at once and asks for the menu meanwhile; the longest that an answer took."""
    connection = service.open()[-1]
    slowest, asked = 0.0, 0
    sender = threading.Thread(target=connection.send, args=texts)
    sender.start()
    while sender.is_alive() or asked < 10:
        before = time.monotonic()
        assert item.menu.shown()
        slowest = max(slowest, time.monotonic() - before)
        asked += 1
    sender.join()
    return slowest


def test_flood_of_states(item, service):
    slowest = flood(item, service, [state_frame(session(projectTitle=f"Piena {number}", tasks=[
        task(str(row), f"Compito {row}") for row in range(5)])) for number in range(50_000)])
    assert slowest < LONGEST_PAUSE, f"the program did not answer for {slowest:.1f} s"
    item.wait("XAyatanaLabel", lambda label: label.endswith("Piena 49999"), 240)


def test_flood_of_garbage(item, service):
    slowest = flood(item, service, ["[" * 1000, frame("presence_diff", {}), "x", "{}", b"\0"] * 10_000)
    assert slowest < LONGEST_PAUSE, f"the program did not answer for {slowest:.1f} s"
