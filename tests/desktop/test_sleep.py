"""The machine sleeps and wakes, the screen is locked."""

import json
import time
from datetime import datetime

import pytest

from harness.link_service import LinkService
from harness.login import LoginManager
from harness.page import session
from harness.processes import stays, wait_for


@pytest.fixture
def login(desktop):
    with LoginManager(desktop) as running:
        yield running


@pytest.fixture
def service():
    with LinkService() as running:
        yield running


def test_sleep_waits_for_the_program_only_until_it_is_ready(login, orvalle):
    wait_for("the wish for a moment", lambda: login.delays)
    delay = login.delays[0]
    assert delay.wish == ("sleep", "Orvalle", "Salva il diario delle attività", "delay")
    stays("the wish is held", delay.held, 0.5)
    login.sleep()
    wait_for("leave to sleep", lambda: not delay.held(), 5)
    login.wake()
    wait_for("the next wish", lambda: len(login.delays) == 2)
    stays("the next wish is held", login.delays[1].held, 0.5)


def test_link_is_checked_at_once_after_a_sleep(login, home, service, start, page):
    home.write_defaults(service.settings)
    start()
    service.wait_joined()
    wait_for("the wish for a moment", lambda: login.delays)
    login.sleep()
    login.wake()
    service.wait_joined(2, seconds=10)
    assert len(service.open()) == 1


def test_diary_ends_where_the_machine_sleeps_and_the_screen_is_locked(login, home, start, page, desktop):
    home.write_defaults({"attivitaAccesa": True})
    program = start(environment={"XDG_SESSION_ID": "1"})
    page.wait_loaded()
    desktop.windows.wait(program.pid, "Orvalle").wait_active()
    wait_for("the wish for a moment", lambda: login.delays)
    time.sleep(66)
    slept = time.time()
    login.sleep()
    wait_for("leave to sleep", lambda: not login.delays[0].held(), 5)
    blocks = wait_for("the block on the disk", lambda: saved(home))
    assert len(blocks) == 1
    login.lock(True)
    login.wake()
    stays("nothing is written while the screen is locked", lambda: len(saved(home)) == 1, 8)
    login.lock(False)
    program.stop()
    assert saved(home) == blocks
    end = datetime.fromisoformat(blocks[0]["a"].replace("Z", "+00:00")).timestamp()
    assert abs(end - slept) < 2, (blocks, slept)


def saved(home):
    """The blocks of the diary that are on the disk."""
    return [block for file in (home.data / "Orvalle/attivita").glob("*.json")
            for block in json.loads(file.read_text(encoding="utf-8"))]
