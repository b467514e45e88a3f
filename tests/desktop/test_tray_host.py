"""The status item in a real tray: a panel that shows it and opens its menu."""

import time

import pytest

from harness import pictures, processes
from harness.page import session, task
from harness.traypanel import TrayPanel
from harness.windows import Box


@pytest.fixture(scope="module", params=[False, True], ids=["light", "dark"])
def desktop_options(request):
    return {"panel": True, "compositor": True, "dark": request.param}


@pytest.fixture
def panel(desktop, orvalle, window):
    """The panel with the program's icon in it."""
    found = TrayPanel(desktop)
    found.wait_icon()
    yield found
    if found.menu_window():
        found.close_menu()


def icon_levels(desktop, panel):
    x, y = panel.wait_icon()
    return [sum(colour) / 3 for colour in pictures.take(desktop, Box(x - 11, y - 11, 22, 22)).colours()]


def test_icon_can_be_read_on_the_panel(desktop, panel, page):
    page.push(session(elapsedMin=20))
    processes.wait_for("an icon that stands out", lambda: (
        max(levels := icon_levels(desktop, panel)) - min(levels) > 120))


def test_one_click_opens_the_menu_which_stays_as_it_is_while_the_time_runs(desktop, panel, page):
    page.push(session(tasks=[task("a", "Leggere_<b>"), task("b", "Scrivere", True)]))
    panel.item().menu.wait_row("Leggere_<b>")
    menu = panel.open_menu()
    desktop.hand.move(700, 600)  # away from the icon, which shows its tool tip
    time.sleep(0.5)
    # The rows below the status line, whose minutes may change.
    box = menu.frame.within(2, 2, 34, 2)
    before = pictures.take(desktop, box)
    for _ in range(10):
        time.sleep(0.4)
        assert panel.menu_window() == menu, "the menu closed"
        assert pictures.take(desktop, box).differs(before) == 0, "the menu flickered"


def test_changed_tasks_leave_an_open_menu_open_and_are_there_when_it_opens_again(desktop, panel, page):
    page.push(session(tasks=[task("a", "Leggere")]))
    panel.item().menu.wait_row("Leggere")
    menu = panel.open_menu()
    page.push(session(tasks=[task("a", "Leggere"), task("b", "Scrivere")]))
    panel.item().menu.wait_row("Scrivere")
    time.sleep(1)
    assert panel.menu_window() == menu, "the menu closed"
    # This host gives an open menu no more room than it had.
    panel.close_menu()
    panel.open_menu()
    panel.choose("Scrivere")
    page.wait_command("task", "b")


def test_click_on_a_row(desktop, panel, page):
    page.push(session(tasks=[task("a", "Leggere")]))
    panel.item().menu.wait_row("Leggere")
    for row, command in (("Allunga di 5 minuti", ("plus5", None)), ("Leggere", ("task", "a"))):
        page.forget()
        panel.open_menu()
        panel.choose(row)
        page.wait_command(*command)
        assert page.commands() == [command]


def test_icon_goes_with_the_program_and_comes_back_with_the_panel(desktop, panel, orvalle):
    desktop.end(desktop.panel)
    time.sleep(0.5)
    desktop.start_panel()
    again = TrayPanel(desktop)
    again.wait_icon()
    orvalle.stop()
    processes.wait_for("icon gone", lambda: again.icon() is None, pause=0.2)


def test_title_of_the_window_leaves_the_session_to_the_panel(desktop, panel, page, window):
    page.push(session())
    panel.item().wait("XAyatanaLabel", lambda label: label.endswith(" • Tesi"))
    processes.stays("the plain title", lambda: window.title == "Orvalle", 3.5)
