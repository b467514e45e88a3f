"""The status item and its menu, as a host sees them over the bus."""

import re
import time

import pytest

from harness import processes
from harness.page import session, task
from harness.tray import Tray
from harness.traffic import Traffic

UNPAIRED = "Non abbinata: apri «Abbina…»"
HEADER = "Task della roadmap"
IDLE_ROWS = [UNPAIRED, "—", "Apri Orvalle", "Tienila sopra le altre app", "Abbina…", "—", "Ferma la sessione",
             "Allunga di 5 minuti", "Accorcia di 5 minuti", "—", "—", "Cerca aggiornamenti…", "Esci"]


@pytest.fixture
def item(tray, orvalle):
    return tray.wait_item()


@pytest.fixture
def live(item, page):
    """Pushes a running session and waits until the item shows it."""
    def push(**changes):
        page.push(session(**changes))
        item.wait("XAyatanaLabel", lambda label: label != " Orvalle")
    return push


def status_line(item):
    return item["ToolTip"][2] or item["ToolTip"][3]


class TestFace:
    def test_properties(self, item):
        properties = item.properties()
        assert properties["Id"] == "orvalle"
        assert properties["Category"] == "ApplicationStatus"
        assert properties["Status"] == "Active"
        assert properties["ItemIsMenu"] is True
        assert properties["Menu"].startswith("/")

    def test_idle(self, item):
        assert item["XAyatanaLabel"] == " Orvalle"
        assert item["Title"] == " Orvalle"
        assert status_line(item) == UNPAIRED

    def test_icon_comes_in_all_sizes_and_is_dimmed_while_idle(self, item, live):
        idle = {size: bytes(pixels) for size, _, pixels in item["IconPixmap"]}
        assert sorted(idle) == [16, 22, 24, 32, 48]
        live(elapsedMin=12.5)
        item.wait("IconPixmap", lambda sizes: max(bytes(sizes[0][2])[0::4]) > 240)
        for size, height, pixels in item["IconPixmap"]:
            assert height == size and len(pixels) == size * size * 4
            assert max(bytes(pixels)[0::4]) > 240
            assert 0 < max(idle[size][0::4]) < 60  # the ring's track alone: 0.3 of 0.55

    def test_ring_grows_with_the_session(self, item, page):
        inked = []
        for elapsed in (2, 10, 20):
            page.push(session(elapsedMin=elapsed))
            time.sleep(0.5)
            pixels = bytes(max(item["IconPixmap"])[2])
            inked.append(sum(1 for alpha in pixels[0::4] if alpha > 200))
        assert inked[0] < inked[1] < inked[2]

    def test_live(self, item, live):
        for changes, label, line in [
            ({}, r" (20:00|19:5\d) • Tesi", "Tesi · 20′ al traguardo"),
            ({"isBreak": True}, r" (20:00|19:5\d) • Pausa", "Pausa · 20′ al traguardo"),
            ({"projectTitle": ""}, r" (20:00|19:5\d) • Focus", "Focus · 20′ al traguardo"),
            ({"remainingMin": -2.6}, r" \+2:(3[6-9]|4\d) • Tesi", "Tesi · +3′ oltre"),
            ({"remainingMin": 0.4}, r" 0:(2[0-4]|1\d) • Tesi", "Tesi · 0′ al traguardo"),
            ({"remainingMin": 64.99}, r" 1:04:(59|5\d) • Tesi", "Tesi · 65′ al traguardo"),
        ]:
            live(**changes)
            item.wait("XAyatanaLabel", lambda text: re.fullmatch(label, text))
            assert re.fullmatch(label, item["Title"])
            assert status_line(item) == line
            assert item.menu.shown()[0] == line

    def test_countdown_moves_by_itself(self, item, live):
        live()
        seen = set()
        end = time.monotonic() + 3.5
        while time.monotonic() < end:
            seen.add(item["XAyatanaLabel"])
            time.sleep(0.1)
        assert len(seen) >= 4

    def test_end_of_the_session_is_shown(self, item, live, page):
        live(tasks=[task("a", "Leggere")])
        page.push(session(running=False))
        item.wait("XAyatanaLabel", lambda label: label == " Orvalle")
        assert item.menu.shown() == IDLE_ROWS

    def test_title_is_shown_as_it_is(self, item, live):
        title = "<b>Uno_due</b> & &amp; tre 🍅"
        live(projectTitle=title)
        assert item["XAyatanaLabel"].endswith(" • " + title)
        assert item.menu.shown()[0] == title + " · 20′ al traguardo"


class TestMenu:
    def test_idle_rows(self, item):
        assert item.menu.shown() == IDLE_ROWS
        header = item.menu.row(HEADER)
        assert not header.visible and not header.enabled
        assert not item.menu.row(UNPAIRED).enabled
        for text in ("Ferma la sessione", "Allunga di 5 minuti", "Accorcia di 5 minuti"):
            assert not item.menu.row(text).enabled
        assert item.menu.row("Tienila sopra le altre app").checked

    def test_shortcuts(self, item):
        shortcuts = {row.text: row.shortcut for row in item.menu.rows() if row.shortcut}
        assert shortcuts == {"Apri Orvalle": [["Control", "o"]], "Esci": [["Control", "q"]]}

    def test_live_rows(self, item, live):
        live(tasks=[task("a", "Leggere"), task("b", "Scrivere", True)])
        rows = item.menu.shown()
        at = rows.index(HEADER)
        assert rows[:at] == ["Tesi · 20′ al traguardo", *IDLE_ROWS[1:10]]
        assert rows[at + 1:] == ["Leggere", "Scrivere", *IDLE_ROWS[10:]]
        assert [item.menu.row(text).checked for text in ("Leggere", "Scrivere")] == [False, True]
        assert not item.menu.row(HEADER).enabled
        for text in ("Ferma la sessione", "Allunga di 5 minuti", "Accorcia di 5 minuti", "Leggere"):
            assert item.menu.row(text).enabled

    def test_titles_are_literal(self, item, live):
        titles = ["a_b", "__init__", "R&D", "<b>x</b>", "&amp;", "🍅 pomodoro", "  ", "l'uno — \"due\""]
        live(tasks=[task(str(number), title) for number, title in enumerate(titles)])
        rows = item.menu.shown()
        at = rows.index(HEADER)
        assert rows[at + 1:at + 1 + len(titles)] == titles

    def test_commands_reach_the_page_and_leave_the_window_closed(self, item, live, page, window):
        live(tasks=[task("a", "Leggere"), task("id 'b' \"\\", "Scrivere")])
        window.close()
        window.wait_hidden()
        for row, command in [("Allunga di 5 minuti", ("plus5", None)), ("Accorcia di 5 minuti", ("minus5", None)),
                             ("Scrivere", ("task", "id 'b' \"\\"))]:
            page.forget()
            item.menu.click(row)
            page.wait_command(*command)
            time.sleep(0.3)
            assert page.commands() == [command]
            assert not window.visible()

    def test_stop_reaches_the_page_and_opens_the_window(self, item, live, page, window):
        live()
        window.close()
        window.wait_hidden()
        item.menu.click("Ferma la sessione")
        page.wait_command("stop", None)
        window.wait_visible()
        assert page.commands() == [("stop", None)]

    def test_open_shows_the_window(self, item, window, page):
        window.close()
        window.wait_hidden()
        item.menu.click("Apri Orvalle")
        window.wait_visible()
        window.wait_active()
        assert page.commands() == []

    def test_quit_ends_the_program(self, item, orvalle, window):
        item.menu.click("Esci")
        assert orvalle.wait(10) == 0

    def test_disabled_rows_do_nothing(self, item, page, window):
        for text in ("Ferma la sessione", "Allunga di 5 minuti", HEADER, UNPAIRED):
            try:
                item.menu.click(text)
            except Exception:  # a refusal is as good as silence
                pass
        time.sleep(0.5)
        assert page.commands() == []

    def test_tick_is_shown_at_once_and_taken_back_unless_confirmed(self, item, live, page):
        live(tasks=[task("a", "Leggere")])
        item.menu.click("Leggere")
        processes.wait_for("tick", lambda: item.menu.row("Leggere").checked, 0.9)
        processes.wait_for("tick taken back", lambda: not item.menu.row("Leggere").checked, 2)
        page.push(session(tasks=[task("a", "Leggere", True)]))
        processes.wait_for("tick confirmed", lambda: item.menu.row("Leggere").checked, 2)

    def test_row_of_a_moment_ago_can_still_be_chosen(self, item, live, page):
        live(tasks=[task("a", "Leggere"), task("b", "Scrivere")])
        row = item.menu.row("Scrivere")
        time.sleep(2.2)
        item.menu.event(row.id, "clicked")
        page.wait_command("task", "b")

    def test_overlay_option_is_marked_and_remembered(self, item, home):
        item.menu.click("Tienila sopra le altre app")
        processes.wait_for("mark off", lambda: not item.menu.row("Tienila sopra le altre app").checked)
        assert home.defaults()["overlayOn"] is False
        item.menu.click("Tienila sopra le altre app")
        processes.wait_for("mark on", lambda: item.menu.row("Tienila sopra le altre app").checked)
        assert home.defaults()["overlayOn"] is True


class TestQuiet:
    """What does not change is not sent."""

    TASKS = [task("a", "Leggere"), task("b", "Scrivere", True)]

    @pytest.fixture
    def traffic(self, desktop, item, live):
        live(tasks=self.TASKS)
        item.menu.open()
        item.menu.rows()
        time.sleep(1.2)
        with Traffic(desktop, item.owner) as listening:
            yield listening

    def test_tick_sends_the_label_alone(self, traffic):
        time.sleep(5)
        signals = traffic.signals()
        assert 4 <= signals["XAyatanaNewLabel"] <= 6
        assert signals["LayoutUpdated"] == 0
        assert signals["NewIcon"] == 0
        assert signals["NewStatus"] == 0
        # The status line changes once a minute.
        assert signals["ItemsPropertiesUpdated"] <= 1
        assert signals["NewToolTip"] <= 1

    def test_same_state_again_sends_nothing_more(self, traffic, page):
        for _ in range(20):
            page.push(session(tasks=self.TASKS))
            time.sleep(0.1)
        signals = traffic.signals()
        assert signals["LayoutUpdated"] == 0
        assert signals["NewIcon"] == 0
        assert signals["ItemsPropertiesUpdated"] <= 1
        assert signals["XAyatanaNewLabel"] <= 5

    def test_changed_list_is_sent(self, traffic, page, item):
        page.push(session(tasks=[*self.TASKS, task("c", "Rileggere")]))
        item.menu.wait_row("Rileggere")
        processes.wait_for("layout", lambda: traffic.signals()["LayoutUpdated"] >= 1)

    def test_idle_program_is_silent(self, traffic, page):
        page.push(session(running=False))
        time.sleep(1)
        traffic.forget()
        time.sleep(7)
        assert traffic.messages() == {}


class TestHosts:
    def test_program_registers_once(self, tray, orvalle):
        tray.wait_item()
        time.sleep(2)
        assert len(tray.registrations) == 1

    def test_watcher_that_comes_late(self, desktop, orvalle, page):
        time.sleep(1)
        with Tray(desktop) as late:
            item = late.wait_item()
            page.push(session())
            item.wait("XAyatanaLabel", lambda label: "Tesi" in label)

    def test_watcher_that_comes_back(self, tray, orvalle, page):
        tray.wait_item()
        for _ in range(2):
            tray.stop()
            time.sleep(0.5)
            tray.start()
            item = tray.wait_item()
            assert item["Id"] == "orvalle"
        page.push(session())
        item.wait("XAyatanaLabel", lambda label: "Tesi" in label)
        assert "Allunga di 5 minuti" in item.menu.shown()

    def test_program_runs_without_a_watcher(self, orvalle, window, page):
        page.push(session())
        time.sleep(2)
        assert orvalle.running()
        orvalle.stop()
        assert orvalle.own_lines() == []

    def test_title_of_the_window_tells_the_session_while_no_host_draws_the_item(self, desktop, orvalle, window, page):
        with Tray(desktop, hosted=False) as watcher:
            watcher.wait_item()
            page.push(session())
            processes.wait_for("the session in the title", lambda: window.title.endswith(" • Tesi – Orvalle"))
            time.sleep(3.5)  # longer than the title takes to follow
            assert window.title.endswith(" • Tesi – Orvalle")
            watcher.host(True)
            processes.wait_for("the plain title", lambda: window.title == "Orvalle")
            watcher.host(False)
            processes.wait_for("the session again", lambda: window.title.endswith(" • Tesi – Orvalle"))
