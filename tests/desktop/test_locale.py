"""The same in Italian, with decimal commas, and on a dark desktop."""

import json
import re
import subprocess
import sys
import time

import pytest

from harness import overlay, pictures, processes
from harness.page import session, task


@pytest.fixture(scope="module")
def desktop_options():
    return {"locale": "it_IT.UTF-8", "dark": True, "compositor": True}


@pytest.fixture
def item(tray, orvalle):
    return tray.wait_item()


def test_locale_is_what_it_says(desktop):
    shown = subprocess.run([sys.executable, "-c", "import locale; locale.setlocale(locale.LC_ALL, '');"
                            "print(locale.str(24.5))"], env=desktop.environment, capture_output=True, text=True,
                           check=True).stdout
    assert shown.strip() == "24,5", "without decimal commas these tests prove nothing"


def test_fractions_of_minutes(item, page):
    page.push(session(elapsedMin=0.5, remainingMin=24.9, plannedMin=25))
    label = item.wait("XAyatanaLabel", lambda text: "Tesi" in text)
    assert re.fullmatch(r" 24:(5\d|4\d) • Tesi", label)
    assert (item["ToolTip"][2] or item["ToolTip"][3]) == "Tesi · 25′ al traguardo"


def test_ring_is_drawn_by_fractions(item, page):
    page.push(session(elapsedMin=12.5, plannedMin=25))
    item.wait("XAyatanaLabel", lambda text: "Tesi" in text)
    time.sleep(0.3)
    size, _, pixels = max(item["IconPixmap"])
    alpha = bytes(pixels)[0::4]
    right = sum(alpha[y * size + x] for y in range(size) for x in range(size // 2, size))
    left = sum(alpha[y * size + x] for y in range(size) for x in range(size // 2))
    assert right > 1.5 * left, "half the session is the right half of the ring"


def test_frame_and_place_are_stored_without_commas(desktop, start, home, orvalle, window, page):
    page.push(session())
    found = overlay.wait(desktop, orvalle)
    x, y = found.frame.middle
    desktop.hand.drag((x, y), (x - 300, y + 200))
    time.sleep(0.7)
    place = found.frame
    box = window.box
    orvalle.stop()
    stored = home.defaults()
    assert re.fullmatch(r"\{-?\d+(\.\d+)?, -?\d+(\.\d+)?\}", stored["overlayOrigin"])
    assert re.fullmatch(r"[-\d. ]+", stored["NSWindow Frame finestraPrincipale"])
    json.loads(home.defaults_file.read_text())
    second = start()
    page.wait_loaded(2)
    assert desktop.windows.wait(second.pid, "Orvalle").box == box
    page.push(session())
    again = overlay.wait(desktop, second)
    processes.wait_for("the same place", lambda: again.frame == place)


def test_page_knows_that_the_desktop_is_dark(orvalle, page):
    assert page.run("return matchMedia('(prefers-color-scheme: dark)').matches") is True


def test_icon_is_light_on_a_dark_panel(item, page):
    page.push(session(elapsedMin=20))
    item.wait("XAyatanaLabel", lambda text: "Tesi" in text)
    time.sleep(0.3)
    pixels = bytes(max(item["IconPixmap"])[2])
    inked = [pixels[at + 1:at + 4] for at in range(0, len(pixels), 4) if pixels[at] > 200]
    assert inked and all(min(colour) > 150 for colour in inked)


def test_menu_of_the_window_is_italian_and_ours_alone(desktop, window, access):
    desktop.hand.key("F10")
    access.wait("menu", "Orvalle")
    rows = [found["name"] for found in access.objects() if found["role"] == "menu"]
    assert rows == ["Orvalle", "Sessione", "Vai", "Modifica", "Finestra", "Aiuto"]
    desktop.hand.key("Escape")


def test_questions_of_the_page(orvalle, window, page, access):
    page.run("window.answer = 'waiting'; setTimeout(() => window.answer = confirm('Davvero?'), 0)")
    access.wait("label", "Davvero?")
    buttons = [found["name"] for found in access.find("push button") if found["name"] in ("Va bene", "Annulla")]
    assert sorted(buttons) == ["Annulla", "Va bene"]
    access.press("push button", "Va bene")
    page.wait_true("answer === true")


def test_commands_and_quick_session(desktop, item, window, page):
    page.push(session(tasks=[task("a", "Leggere")]))
    item.menu.wait_row("Leggere")
    item.menu.click("Allunga di 5 minuti")
    page.wait_command("plus5", None)
    desktop.hand.key("ctrl+n")
    page.wait_command("subito", "25")


def test_offline_page_on_a_dark_desktop(desktop, start):
    program = start(address="http://orvalle.invalid/")
    window = desktop.windows.wait(program.pid, "Orvalle")
    processes.wait_for("a dark page", lambda: pictures.take(
        desktop, window.box.within(40, 40, 80, 500)).brightness() < 60, 20)
