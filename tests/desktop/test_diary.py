"""The activity diary with real programs in front, and the consent to their windows' titles."""

import datetime
import json
import os
import stat
import sys
import time

import pytest

from harness import foreign, qt_window
from harness.accessibility import Accessibility
from harness.processes import stays, wait_for

# The diary looks every five seconds and keeps what was in front for a minute.
LONG_ENOUGH = 72
TWO_LOOKS = 11

# As its user starts it, but for root, and without a word to anybody.
BROWSER = ["chromium", "--no-sandbox", "--ozone-platform=x11", "--disable-gpu", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--host-resolver-rules=MAP * ~NOTFOUND"]


@pytest.fixture
def diary(home):
    return Diary(home)


class Diary:
    """What the program has written down for the user."""

    def __init__(self, home):
        self.folder = home.data / "Orvalle/attivita"

    @property
    def file(self):
        # Tests that run over midnight see the last day's.
        return max(self.folder.glob("*.json"))

    def blocks(self):
        return json.loads(self.file.read_text(encoding="utf-8"))

    def kept(self):
        return [(block["app"], block.get("titolo")) for block in self.blocks()]


def in_front(desktop, name, command, title):
    """Starts another program; its window, once it has the focus."""
    process = desktop.spawn(name, command)
    window = desktop.windows.wait(process.pid, title)
    window.activate()
    window.wait_active()
    return process


def turned_on(home, **more):
    home.write_defaults({"attivitaAccesa": True} | more)


def consent(home):
    return home.defaults().get("accessibilitaConsentita")


def change_defaults(home, **values):
    """Another program changes settings while ours runs."""
    home.write_defaults(home.defaults() | values)


def test_nothing_is_written_while_the_diary_is_off(orvalle, window, diary):
    stays("no diary", lambda: not diary.folder.exists(), TWO_LOOKS)
    orvalle.stop()
    assert not diary.folder.exists()


def test_real_programs_are_recorded_by_their_names(desktop, home, start, page, diary):
    applications = home.data / "applications"
    applications.mkdir(parents=True)
    (applications / "quaderno.desktop").write_text(
        "[Desktop Entry]\nType=Application\nName=Il quaderno\nExec=true\nStartupWMClass=foreign.py\n", encoding="utf-8")
    turned_on(home)
    program = start()
    page.wait_loaded()

    in_front(desktop, "xterm", ["xterm", "-T", "Un terminale"], "Un terminale")
    time.sleep(LONG_ENOUGH)
    change_defaults(home, accessibilitaConsentita=True)
    in_front(desktop, "gtk", [sys.executable, foreign.__file__, "Lettera – Città €", "#20a060"], "Lettera – Città €")
    time.sleep(LONG_ENOUGH)
    in_front(desktop, "qt", [sys.executable, qt_window.__file__, "Conti.ods"], "Conti.ods")
    time.sleep(LONG_ENOUGH)
    in_front(desktop, "browser", BROWSER + ["data:text/html;charset=utf-8,<title>Orari – Città €</title>"],
             "Orari – Città € - Chromium")
    time.sleep(LONG_ENOUGH)
    kept = [("XTerm", None), ("Il quaderno", "Lettera – Città €"), ("qt_window.py", "Conti.ods")]
    assert diary.kept() == kept
    program.stop()

    assert diary.kept() == kept + [("Chromium Web Browser", "Orari – Città € - Chromium")]
    assert program.own_lines() == []
    for block in diary.blocks():
        begin, end = (datetime.datetime.strptime(block[key], "%Y-%m-%dT%H:%M:%SZ") for key in ("da", "a"))
        assert 60 <= (end - begin).total_seconds() <= LONG_ENOUGH + 15
    assert stat.S_IMODE(os.stat(diary.folder).st_mode) == 0o700
    assert stat.S_IMODE(os.stat(diary.file).st_mode) == 0o600


def test_end_of_the_program_saves_what_is_open(start, home, page, diary):
    turned_on(home)
    program = start()
    page.wait_loaded()
    time.sleep(LONG_ENOUGH)
    assert not diary.folder.exists()
    program.stop()
    assert diary.kept() == [("Orvalle", None)]


def test_folder_that_cannot_be_written_costs_one_line_each_save(start, home, page, diary):
    turned_on(home)
    diary.folder.parent.mkdir(parents=True)
    diary.folder.write_text("in the way", encoding="utf-8")
    program = start()
    page.wait_loaded()
    program.stop()
    assert len(program.own_lines()) == 1
    assert program.own_lines()[0].startswith("Orvalle: diario attività — ")


def test_consent_is_asked_for_seen_and_withdrawn(home, orvalle, window, page, access):
    page.push({"tipo": "attivita-titoli"})
    access.wait("push button", "Non consentire")
    assert access.find("frame", "Permessi di Orvalle") == []
    access.press("push button", "Non consentire")
    access.wait("frame", "Permessi di Orvalle")
    assert consent(home) is False

    page.push({"tipo": "attivita-titoli"})
    access.wait("push button", "Consenti")
    access.press("push button", "Consenti")
    wait_for("consent", lambda: consent(home) is True)

    page.push({"tipo": "attivita-titoli"})
    stays("nothing more is asked", lambda: not access.find("push button", "Consenti"), 2)
    access.press("toggle button", "Titoli delle finestre")
    wait_for("withdrawal", lambda: consent(home) is False)


def test_titles_are_kept_from_the_consent_until_it_is_withdrawn(desktop, home, start, page, diary):
    turned_on(home)
    program = start()
    page.wait_loaded()
    access = Accessibility(desktop, program.pid)
    page.push({"tipo": "attivita-titoli"})
    access.wait("push button", "Consenti")
    access.press("push button", "Consenti")
    access.wait("frame", "Permessi di Orvalle")

    # The one window stays in front from here on: the switch is thrown without a click.
    foreign.open_window(desktop, "Lettera")
    time.sleep(LONG_ENOUGH)
    access.press("toggle button", "Titoli delle finestre")
    wait_for("withdrawal", lambda: consent(home) is False)
    withdrawn = datetime.datetime.utcnow()
    time.sleep(LONG_ENOUGH)
    program.stop()

    titled, untitled = [block for block in diary.blocks() if block["app"] != "Orvalle"]
    assert titled["titolo"] == "Lettera"
    assert titled["a"] <= withdrawn.strftime("%Y-%m-%dT%H:%M:%SZ") <= untitled["a"]
    assert "titolo" not in untitled
    begin = datetime.datetime.strptime(untitled["da"], "%Y-%m-%dT%H:%M:%SZ")
    assert begin - withdrawn <= datetime.timedelta(seconds=TWO_LOOKS), "the next look knew of it"


def test_page_turns_the_diary_on_and_off(home, orvalle, window, page, diary):
    page.push({"tipo": "attivita-accendi", "acceso": True})
    wait_for("on", lambda: home.defaults().get("attivitaAccesa") is True)
    page.push({"tipo": "attivita-accendi"})
    wait_for("off", lambda: home.defaults().get("attivitaAccesa") is False)
    # Stopped, it has saved the day so far.
    wait_for("the day's file", lambda: any(diary.folder.glob("*.json")))
    assert diary.blocks() == []
    page.push({"tipo": "attivita-stato", "id": 7})
    page.push({"tipo": "attivita-giorno", "id": 8, "giorno": diary.file.stem})
    wait_for("two answers", lambda: page.run("return replies.length") == 2)
    state, day = (json.loads(reply[1]) for reply in page.run("return replies"))
    assert state == {"acceso": False, "titoli": False, "cartella": str(diary.folder)}
    assert day == []
