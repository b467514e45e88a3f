"""A page that really does not answer: its script goes on and lets nothing else be done."""

import time

from harness.page import session
from harness.processes import wait_for

QUESTION = "La pagina non risponde"


def test_page_that_hangs_is_loaded_again_where_the_user_says_so(orvalle, page, access, tray):
    page.push(session())
    item = tray.wait_item()
    old = orvalle.web_processes()
    begin = time.monotonic()
    page.hang(600)
    access.wait_text(QUESTION)
    assert 8 < time.monotonic() - begin < 30
    # The rest of the program goes on.
    label = item["XAyatanaLabel"]
    item.wait("XAyatanaLabel", lambda now: now != label)
    access.press("push button", "Ricarica")
    page.wait_loaded(2)
    assert page.run("return 1 + 1") == 2
    wait_for("the end of the process that hangs", lambda: not set(old) & set(orvalle.web_processes()))
    assert QUESTION not in access.texts()


def test_question_goes_away_when_the_page_answers(desktop, orvalle, page):
    page.hang(20)
    # By the windows: GTK does not bear that what goes is being read to somebody.
    wait_for("the question", lambda: len(desktop.windows.of(orvalle.pid)) == 2)
    assert page.run("return 1 + 1") == 2
    wait_for("no question", lambda: len(desktop.windows.of(orvalle.pid)) == 1)
