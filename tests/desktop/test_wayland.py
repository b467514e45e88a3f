"""The whole program under a Wayland compositor; run inside one by in_compositor."""

import time

import pytest

from harness import compositors
from harness.page import session
from harness.processes import stays, wait_for
from harness.program import BUNDLE, build_folder

WIDTH, HEIGHT = 190, 38
LOOK = 30  # seconds from one look at the user to the next
HASTE = 360  # how much longer the time without input seems to the hasty program


@pytest.fixture(scope="module")
def desktop():
    found = compositors.current()
    if not found:
        pytest.skip("not under a compositor")
    with found as running:
        yield running


def show(desktop, program):
    wait_for("the window", lambda: desktop.window(program.pid))
    desktop.fill_screen(program.pid)


@pytest.fixture
def wayland(desktop, orvalle):
    """The program, with the test page in a window as large as the screen."""
    show(desktop, orvalle)
    return orvalle


def test_window_shows_the_page(desktop, wayland, page):
    wait_for("its title", lambda: desktop.window(wayland.pid) == {"name": "Orvalle", "application": "orvalle", "focused": True})
    assert page.first_script() == {"strip": "38px", "bridge": "function"}


def test_overlay_floats_in_its_corner_while_a_session_runs(desktop, wayland, page):
    place = desktop.screen()[0] - 210, 20, WIDTH, HEIGHT
    assert not desktop.overlay_is_at(*place)
    page.push(session())
    wait_for("the overlay", lambda: desktop.overlay_is_at(*place))
    assert desktop.window(wayland.pid)["focused"], "the overlay takes no focus"
    page.push(session(running=False))
    wait_for("the overlay's end", lambda: not desktop.overlay_is_at(*place))


def test_overlay_stands_where_the_user_left_it(desktop, home, start, page):
    home.write_defaults({"overlayOrigin": "{100, 300}"})
    program = start()
    page.wait_loaded()
    show(desktop, program)
    page.push(session())
    wait_for("the overlay", lambda: desktop.overlay_is_at(100, desktop.screen()[1] - 300 - HEIGHT, WIDTH, HEIGHT))


def test_overlay_is_dragged_by_any_point_and_remembered(desktop, home, start, wayland, page):
    width, height = desktop.screen()
    page.push(session())
    left, top = width - 210, 20
    wait_for("the overlay", lambda: desktop.overlay_is_at(left, top, WIDTH, HEIGHT))
    with desktop.mouse() as mouse:
        for point in ((WIDTH // 2, HEIGHT // 2), (8, HEIGHT - 8)):
            mouse.drag((left + point[0], top + point[1]), (left + point[0] - 230, top + point[1] + 170))
            left, top = left - 230, top + 170
            wait_for("the overlay where it was dragged", lambda: desktop.overlay_is_at(left, top, WIDTH, HEIGHT))
            wait_for("its place stored", lambda: home.defaults().get("overlayOrigin") == f"{{{left}, {height - top - HEIGHT}}}")
    wait_for("the focus where it was", lambda: desktop.window(wayland.pid)["focused"])
    wayland.stop()
    again = start()
    page.wait_loaded(2)
    show(desktop, again)
    page.push(session())
    wait_for("the overlay again", lambda: desktop.overlay_is_at(left, top, WIDTH, HEIGHT))


def test_second_start_hands_over_and_ends(start, wayland, page):
    assert start().wait(20) == 0
    assert start("orvalle://google?esito=riuscito").wait(20) == 0
    page.wait_command("vai", "/settings?sezione=google&esito=riuscito")
    stays("one program runs", wayland.running, 1)


def test_closing_hides_the_window_and_a_second_start_shows_it(desktop, start, wayland, site):
    desktop.close_window(wayland.pid)
    wait_for("the hidden window", lambda: not desktop.window(wayland.pid))
    assert start().wait(20) == 0
    wait_for("the window again", lambda: desktop.window(wayland.pid))
    assert len(site.visits) == 1


def test_text_is_copied_and_pasted_between_the_page_and_other_programs(desktop, wayland, page):
    if not desktop.lets_copy:
        pytest.skip("a program without a window cannot copy here")
    wait_for("the focus", lambda: desktop.window(wayland.pid)["focused"])
    page.run("campo.focus()")
    desktop.copy("Perché «no»? 🎯")
    desktop.control("v")
    page.wait_true("campo.value === 'Perché «no»? 🎯'")
    page.run("campo.value = 'Tesi & <b>è</b>'; campo.select()")
    desktop.control("c")
    wait_for("the page's text", lambda: desktop.pasted() == "Tesi & <b>è</b>")
    # Its own text, too.
    page.run("campo.value = ''")
    desktop.control("v")
    page.wait_true("campo.value === 'Tesi & <b>è</b>'")


def test_page_is_told_that_nobody_is_there_until_somebody_is(desktop, start, page):
    if not desktop.knows_of_input:
        pytest.skip("its mouse is one of the X server beside the compositor, which knows nothing of it")
    start(bundle=build_folder() / "hasty" / BUNDLE)
    page.wait_loaded()
    page.push(session())
    wait_for("word of it", page.commands, 2 * LOOK + 10)
    wait_for("the same again", lambda: len(page.commands()) == 2, LOOK + 10)
    (word, first), (again, second) = page.commands()
    assert word == again == "inattivo"
    assert int(first) >= 3600 and int(second) - int(first) == pytest.approx(LOOK * HASTE, rel=0.1)

    with desktop.mouse() as mouse:
        mouse.move(10, 10)
        page.forget()
        for step in range(LOOK + 5):
            mouse.move(10 + step, 10)
            time.sleep(1)
        assert page.commands() == []
