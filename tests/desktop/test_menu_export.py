"""The menu bar on the bus, for desktops that show it outside the windows."""

import time

import pytest

from harness.exported_menu import ExportedMenu
from harness.processes import wait_for

# Menu by menu and section by section, the rows with the keys written beside them.
BAR = {
    "Orvalle": [[("Impostazioni…", ","), ("Scorciatoie", "/")], [("Cerca aggiornamenti…", "")],
                [("Nascondi Orvalle", "h"), ("Esci da Orvalle", "q")]],
    "Sessione": [[("Sessione da 25 minuti", "n"), ("Nuova sessione…", "N"), ("Ferma la sessione", ".")],
                 [("Allunga di 5 minuti", "]"), ("Accorcia di 5 minuti", "[")],
                 [("Tienila sopra le altre app", "t")]],
    "Vai": [[("Focus", "1"), ("Sprint", "2"), ("Calendario", "3"), ("Mappa", "4"), ("Brain", "5"), ("Progetti", "6"),
             ("Obiettivi", "7"), ("Inbox", "8"), ("Oggi", "9")],
            [("Review", ""), ("Reset della domenica", ""), ("Sfida", ""), ("Organizzazione", "")]],
    "Modifica": [[("Annulla", "z"), ("Ripeti", "Z"), ("Taglia", "x"), ("Copia", "c"), ("Incolla", "v"),
                  ("Seleziona tutto", "a")]],
    "Finestra": [[("Apri Orvalle", "o"), ("Riduci a icona", "m")]],
    "Aiuto": [[("Scorciatoie da tastiera", "/"), ("Abbina con il browser…", "")]],
}
KEYSYMS = {",": "comma", "/": "slash", ".": "period", "[": "bracketleft", "]": "bracketright"}
INERT = [("Orvalle", "Nascondi Orvalle"), ("Orvalle", "Esci da Orvalle"), ("Finestra", "Riduci a icona")]


def accelerator(key):
    """How GTK writes Control and the key."""
    if not key:
        return ""
    return "<Primary>" + ("<Shift>" if key.isupper() else "") + KEYSYMS.get(key, key.lower())


@pytest.fixture
def menu(desktop, window):
    found = ExportedMenu(desktop, window)
    wait_for("the menu bar", found.titles)
    return found


def test_bar_is_exported_whole_and_in_its_order(menu):
    assert menu.titles() == list(BAR)
    for title, sections in BAR.items():
        assert [[(row.label, row.accelerator) for row in section] for section in menu.sections(title)] == [
            [(label, accelerator(key)) for label, key in section] for section in sections]


def test_only_the_rows_that_do_nothing_cannot_be_chosen(menu):
    unusable = [(title, row.label) for title in BAR for section in menu.sections(title) for row in section
                if not menu.usable(row)]
    assert unusable == INERT


def test_chosen_row_is_carried_out(menu, page, home):
    menu.activate(menu.row("Vai", "Sprint"))
    page.wait_command("vai", "/sprint")
    menu.activate(menu.row("Sessione", "Sessione da 25 minuti"))
    page.wait_command("subito", "25")
    assert page.commands() == [("vai", "/sprint"), ("subito", "25")]
    menu.activate(menu.row("Sessione", "Tienila sopra le altre app"))
    wait_for("option off", lambda: home.defaults().get("overlayOn") is False)


def test_row_that_does_nothing_does_nothing(menu, orvalle, window, page):
    for title, label in INERT:
        menu.activate(menu.row(title, label))
    time.sleep(1)
    assert orvalle.running()
    assert window.visible() and not window.minimised()
    assert page.commands() == []
