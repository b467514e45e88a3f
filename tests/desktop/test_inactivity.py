"""A session that nobody attends to: the page is told so, again and again, and closes it."""

import time

import pytest

from harness.bus_service import IdleService
from harness.page import session
from harness.processes import stays, wait_for

LOOK = 30  # seconds from one look at the user to the next


@pytest.fixture(scope="module")
def desktop_options():
    """A display that does not measure how long nobody has touched anything: then the desktop's service is asked,
    which may say that an hour has gone by."""
    return {"without": ["MIT-SCREEN-SAVER"]}


@pytest.fixture
def idle(desktop):
    with IdleService(desktop) as running:
        yield running


def test_page_is_told_every_half_minute_from_an_hour_on(idle, orvalle, page):
    idle.seconds = 3599.9
    page.push(session())
    wait_for("the first look", lambda: idle.asked, LOOK + 10)
    stays("nothing is said before the hour is over", lambda: page.commands() == [], 2)

    idle.seconds = 3600
    page.wait_command("inattivo", "3600", seconds=LOOK + 10)
    told = time.monotonic()
    idle.seconds = 3630.7
    page.wait_command("inattivo", "3630", seconds=LOOK + 10)
    assert time.monotonic() - told == pytest.approx(LOOK, abs=2)
    assert page.commands() == [("inattivo", "3600"), ("inattivo", "3630")]

    page.forget()
    looks = idle.asked
    idle.seconds = 0.5  # somebody is back
    wait_for("the look after that", lambda: idle.asked > looks, LOOK + 10)
    stays("nothing is said to who is there", lambda: page.commands() == [], 2)


def test_nobody_is_looked_after_without_a_session(idle, orvalle, page):
    idle.seconds = 7200
    page.push(session(running=False))
    stays("nothing is said without a session", lambda: page.commands() == [], LOOK + 5)
    assert idle.asked == 0
