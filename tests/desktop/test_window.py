"""The main window: size, frame, closing and opening, the strip and its controls."""

import re
import time

import pytest

from harness.accessibility import Accessibility
from harness.desktop import Desktop
from harness.home import Home
from harness.page import session
from harness.processes import stays, wait_for
from harness.program import Program
from harness.tray import Tray

MAXIMISED = {"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"}
STRIP = 38
PREFERENCES = "org.gnome.desktop.wm.preferences"


@pytest.fixture
def strip(window, page):
    """A place in the middle of the strip, on the screen."""
    return lambda: page.area(window).point(400, STRIP // 2)


def test_window_is_named_for_the_desktop(window):
    assert window.title == "Orvalle"
    assert '"orvalle"' in window.x_property("WM_CLASS").split(", ")


def test_first_window_is_centred_with_its_given_size(window, page):
    assert page.size() == [1180, 820]
    x, y = window.box.middle
    assert abs(x - 800) <= 1 and abs(y - 500) <= 1


def test_page_fills_the_window_up_to_its_top(window, page):
    # Nothing but the border is around the page: as much above it as beside it.
    box = window.box
    assert box.width - 1180 == box.height - 820 <= 20


def test_window_does_not_get_smaller_than_it_may(window, page):
    window.resize(300, 200)
    page.wait_true("innerWidth === 720 && innerHeight === 560")


def test_title_tells_the_session_where_there_is_no_tray(orvalle, window, page, desktop):
    page.push(session())
    wait_for("the session in the title", lambda: re.fullmatch(r"19:\d\d • Tesi – Orvalle", window.title))
    with Tray(desktop):
        wait_for("the plain title", lambda: window.title == "Orvalle")
    wait_for("the session again", lambda: window.title.endswith(" • Tesi – Orvalle"))


def test_frame_is_remembered(start, window, page, orvalle, desktop, site, strip):
    desktop.hand.drag(strip(), (strip()[0] - 90, strip()[1] - 40))
    window.resize(window.frame.width - 130, window.frame.height - 70)
    page.wait_true("innerWidth === 1050 && innerHeight === 750")
    time.sleep(0.5)
    before = window.box
    orvalle.stop()
    second = start()
    page.wait_loaded(2)
    found = desktop.windows.wait(second.pid, "Orvalle")
    wait_for("the same frame", lambda: found.box == before)
    assert page.size() == [1050, 750]


def test_frame_is_stored_as_the_text_that_the_system_writes(window, orvalle, home):
    orvalle.stop()
    text = home.defaults()["NSWindow Frame finestraPrincipale"]
    assert re.fullmatch(r"(-?\d+(\.\d+)? ){7}-?\d+(\.\d+)? ?", text), text
    assert text.split()[2:4] == ["1180", "820"]


def test_frame_of_a_maximised_window_is_that_of_before(start, window, orvalle, desktop, page, strip):
    before = window.box
    desktop.hand.double_click(*strip())
    wait_for("maximised", lambda: MAXIMISED <= window.states)
    time.sleep(0.5)
    orvalle.stop()
    second = start()
    page.wait_loaded(2)
    found = desktop.windows.wait(second.pid, "Orvalle")
    wait_for("the frame of before", lambda: found.box == before)


def test_opening_again_shows_the_same_page_and_tells_it_once(start, window, page, site):
    page.run("window.mark = 'still here'")
    window.close()
    window.wait_hidden()
    page.forget()
    assert start().wait(10) == 0
    window.wait_visible()
    page.wait_true("focusEvents.includes('script')")
    time.sleep(1)
    assert page.run("return focusEvents.filter((source) => source === 'script').length") == 1
    assert page.run("return window.mark") == "still here"
    assert len(site.visits) == 1


def test_dragging_the_strip_moves_the_window(desktop, window, page, strip):
    page.run("window.presses = 0; addEventListener('mousedown', () => presses++, true)")
    before = window.box
    x, y = strip()
    desktop.hand.drag((x, y), (x - 120, y + 60))
    after = wait_for("moved", lambda: window.box != before and window.box)
    assert abs(after.x - (before.x - 120)) <= 12 and abs(after.y - (before.y + 60)) <= 12
    assert (after.width, after.height) == (before.width, before.height)
    assert page.run("return presses") == 0


def test_press_below_the_strip_is_the_page_s(desktop, window, page):
    page.run("window.presses = []; addEventListener('mousedown', (event) => presses.push(event.clientY), true)")
    area = page.area(window)
    desktop.hand.click(*area.point(400, STRIP - 2))
    desktop.hand.click(*area.point(400, STRIP + 2))
    page.wait_true("presses.length > 0")
    assert page.run("return presses") == [STRIP + 2]


@pytest.mark.parametrize("size", [(760, 600), (1400, 880)])
def test_strip_stays_at_the_top_of_a_window_of_another_size(desktop, window, page, size):
    page.run("window.presses = []; addEventListener('mousedown', (event) => presses.push(event.clientY), true)")
    window.resize(*size)
    wait_for("the page's new width", lambda: page.run("return innerWidth") == page.area(window).width)
    area = page.area(window)
    # To the left of the window's buttons.
    for x in (200, -200):
        desktop.hand.click(*area.point(x, STRIP - 2))
        desktop.hand.click(*area.point(x, STRIP + 2))
    page.wait_true("presses.length > 1")
    assert page.run("return presses") == [STRIP + 2, STRIP + 2]


def test_double_click_zooms_and_zooms_back(desktop, window, strip):
    before = window.box
    desktop.hand.double_click(*strip())
    wait_for("zoomed", lambda: MAXIMISED <= window.states)
    time.sleep(0.6)
    desktop.hand.double_click(*strip())
    wait_for("zoomed back", lambda: not MAXIMISED & window.states)
    wait_for("the frame of before", lambda: window.box == before)


def test_triple_click_zooms_once(desktop, window, strip):
    desktop.hand.triple_click(*strip())
    wait_for("zoomed", lambda: MAXIMISED <= window.states)
    stays("zoomed once", lambda: MAXIMISED <= window.states, 1)


def test_single_click_does_nothing(desktop, window, strip):
    before = window.box
    desktop.hand.click(*strip())
    stays("in its place", lambda: window.box == before and not MAXIMISED & window.states, 1)


def test_double_click_minimises_where_the_desktop_says_so(desktop, home, window, strip):
    home.set_setting(PREFERENCES, "action-double-click-titlebar", "minimize")
    time.sleep(0.5)
    desktop.hand.double_click(*strip())
    wait_for("minimised", window.minimised)


def test_double_click_does_nothing_where_the_desktop_says_so(desktop, home, window, strip):
    home.set_setting(PREFERENCES, "action-double-click-titlebar", "none")
    time.sleep(0.5)
    before = window.box
    desktop.hand.double_click(*strip())
    stays("in its place", lambda: window.box == before and not window.minimised(), 1.5)


def test_double_click_zooms_where_the_desktop_says_anything_else(desktop, home, window, strip):
    home.set_setting(PREFERENCES, "action-double-click-titlebar", "lower")
    time.sleep(0.5)
    desktop.hand.double_click(*strip())
    wait_for("zoomed", lambda: MAXIMISED <= window.states)


def test_close_button_hides_the_window(desktop, window, orvalle, access):
    desktop.hand.click(*centre(access.wait("push button", "Chiudi")))
    window.wait_hidden()
    assert orvalle.running()


def test_controls_stand_where_the_desktop_puts_them(desktop, start, home, page):
    settings = home.config / "gtk-3.0/settings.ini"
    settings.write_text(settings.read_text() + "gtk-decoration-layout=close:minimize,maximize\n")
    program = start()
    page.wait_loaded()
    window = desktop.windows.wait(program.pid, "Orvalle")
    window.wait_active()
    access = Accessibility(desktop, program.pid)
    area = page.area(window)
    assert centre(access.wait("push button", "Chiudi"))[0] < area.x + 100
    assert centre(access.wait("push button", "Ingrandisci"))[0] > area.x + 1000


def test_border_is_a_shadow_where_the_manager_knows_such_windows(locales_folder, site, page):
    with Desktop(manager="xfwm4", locales=locales_folder) as desktop:
        program = Program(desktop, Home(desktop), site.url)
        page.wait_loaded()
        window = desktop.windows.wait(program.pid, "Orvalle")
        box = wait_for("shadow", lambda: window.frame != window.box and window.box)
        assert [box.width, box.height] == page.size() == [1180, 820]
        x, y = box.middle
        assert abs(x - 800) <= 1 and abs(y - 500) <= 1
        desktop.hand.drag(box.point(400, STRIP // 2), box.point(340, STRIP // 2 + 50))
        wait_for("moved", lambda: abs(window.box.x - (box.x - 60)) <= 12 and abs(window.box.y - (box.y + 50)) <= 12)
        program.stop()


def test_menu_opens_by_its_button_and_by_f10(desktop, window, access):
    button = access.wait("toggle button", "Menu")
    desktop.hand.click(*centre(button))
    access.wait("menu", "Orvalle")
    desktop.hand.key("Escape")
    wait_for("menu closed", lambda: not access.find("menu", "Orvalle"), pause=0.1)
    desktop.hand.key("F10")
    titles = [access.wait("menu", name)["name"] for name in (
        "Orvalle", "Sessione", "Vai", "Modifica", "Finestra", "Aiuto")]
    assert [found["name"] for found in access.objects() if found["role"] == "menu"] == titles
    desktop.hand.key("Escape")


def centre(found):
    x, y, width, height = found["box"]
    return x + width // 2, y + height // 2

