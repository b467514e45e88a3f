"""The pairing window: by keyboard alone, for a screen reader, from the clipboard."""

import stat
import time

import pytest

from harness import pictures, processes
from harness.accessibility import Accessibility
from harness.clipboard import Clipboard
from harness.desktop import Desktop
from harness.home import Home
from harness.program import Program, build_folder, in_haste
from harness.link_service import ANON_KEY, CHANNEL_KEY, LinkService
from harness.tray import Tray

LABELS = ["URL del progetto Supabase", "Chiave anon (pubblica)", "Chiave del canale"]
FOUND = "Trovati tutti e tre. Controlla e salva."
UNPAIRED = "Non abbinata: apri «Abbina…»"


@pytest.fixture
def service():
    """The service to pair with."""
    with LinkService() as running:
        yield running


@pytest.fixture
def clipboard(desktop):
    board = Clipboard(desktop)
    yield board
    board.forget()


@pytest.fixture
def item(tray, orvalle):
    return tray.wait_item()


@pytest.fixture
def pairing(desktop, orvalle, item):
    """The pairing window, opened from the menu."""
    item.menu.click("Abbina…")
    window = desktop.windows.wait(orvalle.pid, "Abbina Orvalle")
    window.wait_active()
    return window


def fields(access):
    """The three fields, in reading order."""
    return [found for found in access.objects() if found["role"] == "text" and found["name"] in LABELS]


def focused(access):
    """The names of what has the keyboard."""
    return [found["name"] for found in access.objects()
            if "FOCUSED" in found["states"] and found["role"] in ("text", "push button")]


def texts(access):
    return [field["text"] for field in fields(access)]


class TestKeyboard:
    def test_pairs_by_keyboard_alone(self, desktop, pairing, access, item, home, service):
        hand = desktop.hand
        for number, value in enumerate((service.url, ANON_KEY, CHANNEL_KEY)):
            assert focused(access) == [LABELS[number]]
            hand.type(value)
            hand.key("Tab")
        assert focused(access) == ["Incolla tutto"]
        hand.key("Tab")
        assert focused(access) == ["Salva e connetti"]
        hand.key("Tab")
        assert focused(access) == [LABELS[0]]
        hand.key("Return")
        pairing.wait_hidden()
        assert {key: home.defaults()[key] for key in service.settings} == service.settings
        assert stat.S_IMODE(home.defaults_file.stat().st_mode) == 0o600
        service.wait_joined()
        item.menu.wait_row("Nessuna sessione in corso")

    def test_shift_tab_goes_back(self, desktop, pairing, access):
        desktop.hand.key("shift+Tab")
        assert focused(access) == ["Salva e connetti"]

    def test_escape_hides_and_stores_nothing(self, desktop, pairing, item, home):
        desktop.hand.type("https://p.example")
        desktop.hand.key("Escape")
        pairing.wait_hidden()
        assert "supabaseUrl" not in home.defaults()
        assert item.menu.shown()[0] == UNPAIRED

    def test_comes_back_with_what_is_stored(self, desktop, pairing, access, item):
        desktop.hand.type("mezza")
        desktop.hand.key("Escape")
        pairing.wait_hidden()
        item.menu.click("Abbina…")
        pairing.wait_visible()
        assert texts(access) == ["", "", ""]
        assert focused(access) == [LABELS[0]]

    def test_comes_to_the_front_again(self, desktop, pairing, orvalle, item):
        desktop.windows.wait(orvalle.pid, "Orvalle").activate()
        assert not pairing.active()
        item.menu.click("Abbina…")
        pairing.wait_active()

    def test_what_is_missing_after_a_paste_is_typed(self, desktop, pairing, access, clipboard, home, service):
        clipboard.copy(f"{service.url} {ANON_KEY}")
        desktop.hand.key("Tab", "Tab", "Tab", "space")
        access.wait_text("Non ho trovato: chiave del canale")
        desktop.hand.key("shift+Tab")
        desktop.hand.type("  " + CHANNEL_KEY)
        desktop.hand.key("Return")
        pairing.wait_hidden()
        assert {key: home.defaults()[key] for key in service.settings} == service.settings
        service.wait_joined()


class TestReader:
    def test_labels_are_tied_to_their_fields(self, pairing, access):
        found = fields(access)
        assert [field["labels"] for field in found] == [[label] for label in LABELS]
        assert all("EDITABLE" in field["states"] for field in found)
        assert [access.find("push button", name)[0]["states"].count("SENSITIVE")
                for name in ("Incolla tutto", "Salva e connetti")] == [1, 1]
        frame = [found for found in access.objects() if found["name"] == "Abbina Orvalle"]
        assert frame and frame[0]["role"] in ("frame", "dialog")

    def test_buttons_can_be_pressed(self, pairing, access, clipboard, service, home):
        clipboard.copy(f"URL={service.url}/\nANON={ANON_KEY}\nKEY={CHANNEL_KEY}\n")
        access.press("push button", "Incolla tutto")
        access.wait_text(FOUND)
        assert texts(access) == [service.url, ANON_KEY, CHANNEL_KEY]
        assert "supabaseUrl" not in home.defaults()
        access.press("push button", "Salva e connetti")
        service.wait_joined()


class TestPaste:
    @pytest.mark.parametrize("text", ["", "niente", "\r\n", "eyJ" + "a" * 57, "0123456789abcdef0123456789ABCDEg",
                                      "0123456789abcdef,\u03010123456789abcdef"])
    def test_nothing_of_use(self, desktop, pairing, access, clipboard, text):
        desktop.hand.type("https://resta.example")
        if text:
            clipboard.copy(text)
        access.press("push button", "Incolla tutto")
        access.wait_text("Non ho trovato: indirizzo, chiave anon, chiave del canale")
        assert texts(access) == ["https://resta.example", "", ""]

    def test_lines_that_end_like_those_of_windows_stay_together(self, pairing, access, clipboard):
        clipboard.copy(f"https://p.example\r\n{CHANNEL_KEY}\r\n{ANON_KEY}")
        access.press("push button", "Incolla tutto")
        access.wait_text("Non ho trovato: chiave anon, chiave del canale")

    def test_ten_megabytes(self, desktop, start, page, tray, clipboard, home):
        # Among the leaks that are not looked for: a byte of GTK's own for each great text that it receives.
        program = start(environment=in_haste())
        page.wait_loaded()
        item = tray.wait_item()
        item.menu.click("Abbina…")
        window = desktop.windows.wait(program.pid, "Abbina Orvalle")
        window.wait_active()
        access = Accessibility(desktop, program.pid)
        clipboard.copy("https://" + "x" * 5_000_000 + "\n" + "è " * 1_000_000 + "=" * 3_000_000 + CHANNEL_KEY)
        access.press("push button", "Incolla tutto")
        slowest, end = 0.0, time.monotonic() + 8
        while time.monotonic() < end:
            before = time.monotonic()
            assert item["Id"] == "orvalle"
            slowest = max(slowest, time.monotonic() - before)
            time.sleep(0.02)
        # Sanitizers make reading a character much dearer; this tells whether the time grows out of all proportion.
        assert slowest < 60, f"the program did not answer for {slowest:.1f} s"
        access.wait_text("Non ho trovato: chiave anon")
        assert texts(access)[2] == CHANNEL_KEY
        desktop.hand.key("Escape")
        window.wait_hidden()
        assert "channelKey" not in home.defaults()


@pytest.mark.parametrize("dark", [False, True], ids=["light", "dark"])
def test_looks(dark, locales_folder, site, page):
    """The picture is left for whoever wants to see; that the window follows the theme can be told."""
    with Desktop(dark=dark, compositor=True, locales=locales_folder) as desktop:
        with Tray(desktop) as tray:
            program = Program(desktop, Home(desktop), site.url)
            page.wait_loaded()
            tray.wait_item().menu.click("Abbina…")
            window = desktop.windows.wait(program.pid, "Abbina Orvalle")
            window.wait_active()
            desktop.hand.type("https://progetto.example")
            time.sleep(1)
            picture = pictures.take(desktop, window.box)
            folder = build_folder() / "pictures"
            folder.mkdir(exist_ok=True)
            pictures.save(desktop, folder / f"pairing-{'dark' if dark else 'light'}.png")
            assert (picture.brightness() < 110) == dark
            assert (window.box.width, window.box.height) == (460, 265)
            program.stop()
