"""The status item in GNOME's shell, which reads an item once and then believes its signals."""

import time

import pytest

from harness import processes
from harness.page import session, task
from harness.shelltray import ShellTray
from harness.tray import Item

CONSTANT = ["Apri Orvalle", "Tienila sopra le altre app", "Abbina…", "Ferma la sessione", "Allunga di 5 minuti",
            "Accorcia di 5 minuti", "Cerca aggiornamenti…", "Esci"]


@pytest.fixture
def tray(desktop):
    with ShellTray(desktop) as running:
        yield running


def shown(tray):
    """The item that the shell shows, as soon as it has read it."""
    return processes.wait_for("the item in the shell", lambda: next(
        (item for item in tray.items if item.order and item.shown()), None), 60)


@pytest.fixture
def item(tray, orvalle):
    return shown(tray)


def asked_anew(desktop, item):
    """What a host finds that asks for everything."""
    return Item(desktop, item.owner, "/StatusNotifierItem")


def test_item_and_its_menu_are_found_by_walking_the_bus(tray, item):
    assert sorted(tray.found(item.owner)) == [(item.face["Menu"], "com.canonical.dbusmenu"),
                                              ("/StatusNotifierItem", "org.kde.StatusNotifierItem")]


def test_shell_knows_from_the_signals_what_there_is_to_see(desktop, item, page):
    fresh = asked_anew(desktop, item)
    numbers = {text: item.row(text) for text in CONSTANT}
    reading = None
    for changes in ({}, {"tasks": [task("a", "Leggere")]}, {"tasks": [task("b", "Scrivere"), task("a", "Leggere", True)]},
                    {"projectTitle": "Esame", "tasks": [task("a", "Leggere")]}, {"isBreak": True}, {"running": False}):
        page.push(session(**changes))
        time.sleep(0.7)
        processes.wait_for(f"the rows with {changes}", lambda: item.shown() == fresh.menu.shown())
        for text in [each["title"] for each in changes.get("tasks", [])]:
            assert text in item.shown()
        processes.wait_for(f"the face with {changes}", lambda: item.face == fresh.properties())
        assert {text: item.row(text) for text in CONSTANT} == numbers
        if "Leggere" in item.shown():
            reading = reading or item.row("Leggere")
            assert item.row("Leggere") == reading


def test_row_chosen_in_the_shells_way_is_carried_out(item, page):
    page.push(session(tasks=[task("a", "Leggere")]))
    processes.wait_for("the task", lambda: "Leggere" in (item.shown() or []))
    assert item.open() is False
    page.push(session(tasks=[task("b", "Scrivere"), task("a", "Leggere")]))
    item.choose(item.row("Leggere"))
    page.wait_command("task", "a")
    assert item.open() is False
    item.choose(item.row("Allunga di 5 minuti"))
    page.wait_command("plus5", None)
    assert page.commands() == [("task", "a"), ("plus5", None)]


def test_shell_is_answered_while_the_page_is_busy(desktop, item, page):
    page.push(session())
    fresh = asked_anew(desktop, item)
    page.hang(12)
    time.sleep(0.5)
    started = time.monotonic()
    for _ in range(3):
        assert fresh["Status"] == "Active"
        assert "Esci" in fresh.menu.shown()
        assert item.open() is False
    assert time.monotonic() - started < 2
    with pytest.raises(AssertionError):
        page.run("return 'still busy?'", seconds=1)


def test_item_registers_once_after_each_lock(tray, item, page):
    for number in range(3):
        tray.leave()
        time.sleep(0.5)
        assert tray.registrations == []
        page.push(session(projectTitle=f"Tesi {number}"))
        tray.come_back()
        again = shown(tray)
        processes.wait_for("the session", lambda: again.face["XAyatanaLabel"].endswith(f"Tesi {number}"))
        time.sleep(1)
        assert len(tray.registrations) == 1
        assert again.owner == item.owner


def test_item_goes_when_the_program_ends_or_dies(tray, start, page, item, orvalle):
    orvalle.stop()
    processes.wait_for("the item gone", lambda: not tray.items, 2)
    program = start()
    page.wait_loaded(2)
    assert shown(tray).face["Id"] == "orvalle"
    program.process.kill()
    processes.wait_for("the dead program's item gone", lambda: not tray.items, 2)
