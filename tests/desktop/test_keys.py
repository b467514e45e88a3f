"""Every key equivalent, on two keyboards, with and without the cursor in the page."""

import time

import pytest

from harness import processes

CONTROL, SHIFT, ALT_GR = "Control_L", "Shift_L", "ISO_Level3_Shift"

# Physical keys: the code of the key and what is held besides Control, on each layout.
LETTERS = {"h": 43, "n": 57, "t": 28, "o": 32, "q": 24, "m": 58}
DIGITS = {str(digit): 9 + digit for digit in range(1, 10)}
SIGNS = {"us": {",": (59,), ".": (60,), "/": (61,), "[": (34,), "]": (35,)},
         "it": {",": (59,), ".": (60,), "/": (16, SHIFT), "[": (34, ALT_GR), "]": (35, ALT_GR)}}

COMMANDS = {
    ",": ("vai", "/settings"),
    "/": ("vai", "/settings?sezione=scorciatoie"),
    "n": ("subito", "25"),
    "N": ("vai", "/"),
    ".": ("stop", None),
    "]": ("plus5", None),
    "[": ("minus5", None),
    "1": ("vai", "/"),
    "2": ("vai", "/sprint"),
    "3": ("vai", "/calendar"),
    "4": ("vai", "/mappa"),
    "5": ("vai", "/brain"),
    "6": ("vai", "/projects"),
    "7": ("vai", "/goals"),
    "8": ("vai", "/inbox"),
    "9": ("vai", "/today"),
}


@pytest.fixture(params=["us", "it"])
def press(request, desktop, window):
    """Presses Control and the key that carries a character on the layout."""
    desktop.hand.layout(request.param)

    def press_key(character):
        if character in SIGNS[request.param]:
            code, *held = SIGNS[request.param][character]
        else:
            code = (LETTERS | DIGITS)[character.lower()]
            held = [SHIFT] if character.isupper() else []
        desktop.hand.physical(code, CONTROL, *held)
    yield press_key
    desktop.hand.layout("us")


@pytest.fixture
def places(desktop, window, page):
    """Puts the cursor nowhere in particular in the page, then into a field of it."""
    def each():
        desktop.hand.click(*page.area(window).point(600, 500))
        page.wait_true("document.activeElement === document.body")
        yield "page"
        click_into_field(desktop, window, page)
        yield "field"
    return each


def click_into_field(desktop, window, page):
    x, y = page.run("const box = campo.getBoundingClientRect(); return [box.x + 10, box.y + 8]")
    desktop.hand.click(*page.area(window).point(int(x), int(y)))
    page.wait_true("document.activeElement === campo")


def test_every_key_equivalent(press, places, page):
    wrong = {}
    for place in places():
        for character, command in COMMANDS.items():
            page.forget()
            press(character)
            try:
                processes.wait_for("a command", page.commands, 4)
            except AssertionError:
                pass
            seen = page.commands()
            if seen != [command]:
                wrong[place, character] = seen
    assert not wrong
    assert page.run("return campo.value") == ""


def test_overlay_option(press, places, home):
    for _ in places():
        press("t")
        processes.wait_for("option off", lambda: home.defaults().get("overlayOn") is False)
        press("t")
        processes.wait_for("option on", lambda: home.defaults().get("overlayOn") is True)


def test_keys_without_effect(press, places, orvalle, window, page, site):
    for _ in places():
        for character in "hqmo":
            press(character)
        time.sleep(1.5)
        assert orvalle.running()
        assert window.visible() and window.active() and not window.minimised()
        assert page.commands() == []
        assert len(site.visits) == 1


def test_editing_keys(press, desktop, window, page):
    click_into_field(desktop, window, page)
    hand = desktop.hand

    def value_becomes(value):
        page.wait_true(f"campo.value === '{value}'", 3)

    hand.type("uno")
    value_becomes("uno")
    hand.key("ctrl+a")
    hand.key("ctrl+c")
    hand.key("End")
    hand.key("ctrl+v")
    value_becomes("unouno")
    hand.key("ctrl+a")
    hand.key("ctrl+x")
    value_becomes("")
    hand.key("ctrl+z")
    value_becomes("unouno")
    hand.key("ctrl+shift+z")
    value_becomes("")
    hand.key("ctrl+v")
    value_becomes("unouno")
    assert page.commands() == []


def test_keys_work_after_closing_and_opening(press, start, window, page):
    window.close()
    window.wait_hidden()
    assert start().wait(10) == 0
    window.wait_active()
    press("2")
    page.wait_command("vai", "/sprint")


def test_open_brings_the_main_window_back_from_the_pairing_window(tray, press, desktop, orvalle, window):
    tray.wait_item().menu.click("Abbina…")
    pairing = desktop.windows.wait(orvalle.pid, "Abbina Orvalle")
    window.close()
    window.wait_hidden()
    pairing.activate()
    pairing.wait_active()
    press("o")
    window.wait_visible()
    window.wait_active()


def test_plain_keys_are_the_page_s(desktop, window, page):
    page.run("window.keys = []; addEventListener('keydown', (event) => keys.push(event.key))")
    desktop.hand.click(*page.area(window).point(600, 500))
    desktop.hand.key("n", "slash", "F5", "Escape", "Tab")
    page.wait_true("keys.length === 5")
    assert page.run("return keys") == ["n", "/", "F5", "Escape", "Tab"]
    assert page.commands() == []

