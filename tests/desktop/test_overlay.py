"""The overlay: above everything, in nobody's way, where the user has put it."""

import re
import time

import pytest

from harness import foreign, overlay, pictures, processes
from harness.page import session
from harness.windows import Box

OPTION = "Tienila sopra le altre app"
SCREEN_HEIGHT = 1000


@pytest.fixture(scope="module")
def desktop_options():
    return {"compositor": True}


@pytest.fixture
def shown(desktop, orvalle, window, page):
    """The overlay, shown because a session runs."""
    page.push(session())
    return overlay.wait(desktop, orvalle)


@pytest.fixture
def other(desktop, shown):
    """A window of another program that fills the screen, in front and with the focus."""
    process, found = foreign.open_window(desktop, "Altra finestra")
    desktop.run("wmctrl", "-i", "-r", hex(found.id), "-b", "add,maximized_vert,maximized_horz")
    processes.wait_for("the screen filled", lambda: found.frame.width > 1500)
    yield found
    desktop.end(process)


def is_above(desktop, upper, lower):
    order = re.findall(r"0x[0-9a-f]+", desktop.run("xprop", "-root", "_NET_CLIENT_LIST_STACKING"))
    places = [int(identifier, 16) for identifier in order]
    return places.index(upper.id) > places.index(lower.id)


class TestShowing:
    def test_idle_program_shows_none(self, desktop, orvalle, window):
        time.sleep(1)
        assert overlay.find(desktop, orvalle) is None

    def test_comes_and_goes_with_the_session_and_stays_one_window(self, desktop, orvalle, shown, page):
        page.push(session(running=False))
        overlay.wait_gone(desktop, orvalle)
        page.push(session())
        assert overlay.wait(desktop, orvalle) == shown

    def test_option_hides_it_at_once_and_for_the_next_start(self, desktop, tray, start, orvalle, window, shown,
                                                            page):
        menu = tray.wait_item().menu
        menu.click(OPTION)
        overlay.wait_gone(desktop, orvalle, 1)
        orvalle.stop()
        second = start()
        page.wait_loaded(2)
        page.push(session())
        time.sleep(1.5)
        assert overlay.find(desktop, second) is None
        menu = tray.wait_item().menu
        menu.click(OPTION)
        overlay.wait(desktop, second, 1)

    def test_says_the_time_and_the_title(self, desktop, orvalle, window, shown, access):
        texts = [found["name"] or found["text"] for found in access.find("label")]
        assert any(re.fullmatch(r"(20:00|19:5\d)  •  Tesi", text) for text in texts), texts

    def test_is_seen_with_the_main_window_closed(self, desktop, orvalle, window, shown):
        window.close()
        window.wait_hidden()
        time.sleep(2)
        assert overlay.find(desktop, orvalle) == shown


class TestAbove:
    def test_above_a_window_of_another_program(self, desktop, orvalle, shown, other):
        assert is_above(desktop, shown, other)
        picture = pictures.take(desktop, shown.frame.within(20, 20, 4, 4))
        assert picture.share(lambda *colour: colour == (0x20, 0xA0, 0x60)) < 0.1, "the other window covers it"

    def test_stays_above_when_another_is_raised(self, desktop, orvalle, window, shown, other):
        window.activate()
        assert is_above(desktop, shown, window)
        other.activate()
        other.wait_active()
        assert is_above(desktop, shown, other)

    def test_on_all_desktops(self, desktop, shown):
        assert int(shown.x_property("_NET_WM_DESKTOP")) == 0xFFFFFFFF
        desktop.run("wmctrl", "-s", "1")
        try:
            time.sleep(0.5)
            assert shown.visible()
        finally:
            desktop.run("wmctrl", "-s", "0")

    def test_in_no_window_list(self, shown):
        assert {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"} <= shown.states

    def test_belongs_to_the_program(self, orvalle, shown):
        assert int(shown.x_property("_NET_WM_PID")) == orvalle.pid


class TestFocus:
    def test_never_taken_by_showing(self, desktop, orvalle, shown, other, page):
        page.push(session(running=False))
        overlay.wait_gone(desktop, orvalle)
        page.push(session())
        overlay.wait(desktop, orvalle)
        time.sleep(0.5)
        assert other.active()

    def test_never_taken_by_a_click_or_a_drag(self, desktop, shown, other):
        desktop.hand.click(*shown.frame.middle)
        time.sleep(0.5)
        assert other.active()
        x, y = shown.frame.middle
        desktop.hand.drag((x, y), (x - 60, y + 60))
        time.sleep(0.5)
        assert other.active()


class TestPlace:
    def test_first_place_is_the_upper_right_corner(self, shown):
        assert shown.frame == Box(1600 - 210, 20, 190, 38)

    @pytest.mark.parametrize("point", [(20, 19), (95, 19), (185, 34)])
    def test_dragged_by_any_point_and_remembered(self, desktop, start, home, orvalle, window, page, point):
        page.push(session())
        found = overlay.wait(desktop, orvalle)
        before = found.frame
        grip = before.point(*point)
        desktop.hand.drag(grip, (grip[0] - 400, grip[1] + 300))
        after = processes.wait_for("moved", lambda: found.frame != before and found.frame)
        assert abs(after.x - (before.x - 400)) <= 12 and abs(after.y - (before.y + 300)) <= 12
        time.sleep(0.5)
        after = found.frame
        assert home.defaults()["overlayOrigin"] == f"{{{after.x}, {SCREEN_HEIGHT - after.y - after.height}}}"
        orvalle.stop()
        second = start()
        page.wait_loaded(2)
        page.push(session())
        again = overlay.wait(desktop, second)
        processes.wait_for("the same place", lambda: again.frame == after)

    @pytest.mark.parametrize("stored, place", [("{100, 200}", (100, 762)), ("{100.5, 200.25}", (100, 761)),
                                               ("nonsense", (0, 962))])
    def test_stored_place_is_honoured(self, desktop, home, start, page, stored, place):
        home.write_defaults({"overlayOrigin": stored})
        program = start()
        page.wait_loaded()
        page.push(session())
        found = overlay.wait(desktop, program)
        frame = found.frame
        assert abs(frame.x - place[0]) <= 1 and abs(frame.y - place[1]) <= 1, frame

    def test_stored_place_is_not_touched_by_showing(self, desktop, home, start, page):
        home.write_defaults({"overlayOrigin": "{100, 200}"})
        program = start()
        page.wait_loaded()
        page.push(session())
        overlay.wait(desktop, program)
        time.sleep(1)
        assert home.defaults()["overlayOrigin"] == "{100, 200}"


def bright_columns(desktop, found):
    """The columns in which the overlay's text is."""
    picture = pictures.take(desktop, found.frame)
    return [x for x in range(picture.width) if any(
        min(picture.pixel(x, y)) > 200 for y in range(8, picture.height - 8))]


class TestLook:
    def test_red_when_over(self, desktop, orvalle, shown, page):
        def red(r, g, b):
            return r > 180 and g < 120 and b < 120
        assert pictures.take(desktop, shown.frame).share(red) == 0
        page.push(session(remainingMin=-3))
        processes.wait_for("red text", lambda: pictures.take(desktop, shown.frame).share(red) > 0.01)

    def test_rounded_and_translucent(self, desktop, shown, other):
        picture = pictures.take(desktop, shown.frame)
        background = (0x20, 0xA0, 0x60)
        for x, y in ((0, 0), (189, 0), (0, 37), (189, 37)):
            assert all(abs(a - b) < 40 for a, b in zip(picture.pixel(x, y), background)), "square corners"
        inside = picture.pixel(6, 19)
        assert inside != background
        assert inside[1] > max(inside[0], inside[2]), "nothing of what lies below shines through"

    def test_text_does_not_jump_as_digits_change(self, desktop, shown, page):
        ends = set()
        for minutes in (11 + 11.4 / 60, 20 + 0.4 / 60, 14 + 47.4 / 60, 18 + 38.4 / 60):
            page.push(session(remainingMin=minutes))
            time.sleep(0.4)
            columns = bright_columns(desktop, shown)
            # The title's end stands still only if the time in front of it is always as wide.
            ends.add(max(columns))
        assert max(ends) - min(ends) <= 1, ends
