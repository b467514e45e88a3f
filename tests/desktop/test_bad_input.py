"""Whatever the page says and whatever the machine lacks: nothing crashes, hangs or loses what was stored."""

import json
import stat
import time

import pytest

from harness import overlay, processes
from harness.desktop import Desktop
from harness.home import Home
from harness.page import session, task
from harness.program import Program, without_overrides

# Messages that are no state: values in place of the message itself, as script.
SHAPES = ["null", "undefined", "true", "42", "NaN", "'testo'", "[]", "[{}]", "{}", "new Date()", "/x/", "() => 1",
          "new Map([['running', true]])", "document.body", "window", "{tipo: null}", "{tipo: 7, id: 1}",
          "{tipo: 'sconosciuto', id: 1}", "{tipo: 'tattile', che: {}}", "{tipo: 'apri-fuori'}",
          "{tipo: 'apri-fuori', url: 'javascript:1'}", "{tipo: 'apri-fuori', url: '\\0'}",
          "(() => { const ring = {}; ring.ring = ring; return ring })()", "Object.create(null)", "10n",
          "Symbol('x')", "new Proxy({}, {})", "new ArrayBuffer(1000)"]

# States with one member that is not as it must be.
STATES = [{"running": 1}, {"running": "true"}, {"isBreak": None}, {"elapsedMin": "5"}, {"remainingMin": True},
          {"plannedMin": []}, {"projectTitle": 5}, {"origin": 5}, {"tasks": {}}, {"tasks": [1]},
          {"tasks": [{"id": "a", "title": "b"}]}, {"tasks": [{"id": "a", "title": "b", "done": 1}]},
          {"tasks": [task("a", "b"), task(7, "b")]}, {"remainingMin": None}, {"tasks": None}]


@pytest.fixture
def item(tray, orvalle, page):
    """The status item while a good state is shown."""
    found = tray.wait_item()
    page.push(session(projectTitle="Prima"))
    found.wait("XAyatanaLabel", lambda label: "Prima" in label)
    return found


def still_well(item, page, title="Dopo"):
    """Fails when a good state is not taken as before."""
    page.push(session(projectTitle=title))
    item.wait("XAyatanaLabel", lambda label: label.endswith(title))


class TestMessages:
    def test_values_of_every_shape(self, item, page, orvalle):
        for shape in SHAPES:
            page.run(f"try {{ push({shape}) }} catch (error) {{ }}")
        time.sleep(0.5)
        assert "Prima" in item["XAyatanaLabel"]
        still_well(item, page)
        assert orvalle.own_lines() == []

    def test_states_with_one_wrong_member_are_dropped_whole(self, item, page, orvalle):
        for wrong in STATES:
            page.push(session(projectTitle="Sbagliata") | wrong)
        for member in session():
            page.push({key: value for key, value in session(projectTitle="Sbagliata").items() if key != member})
        page.run("push({...%s, remainingMin: NaN}); push({...%s, elapsedMin: Infinity})" % (
            (json.dumps(session(projectTitle="Sbagliata")),) * 2))
        time.sleep(0.5)
        assert "Prima" in item["XAyatanaLabel"]
        still_well(item, page)
        assert orvalle.own_lines() == []

    def test_huge_numbers(self, item, page):
        for count, number in enumerate(["1e300", "-1e300", "1.7976931348623157e308", "-1.7976931348623157e308",
                                        "1e-300", "-0", "9007199254740993", "1e19"]):
            for member in ("remainingMin", "elapsedMin", "plannedMin"):
                state = session(projectTitle=f"{member} {count}")
                page.run(f"push({{...{json.dumps(state)}, {member}: {number}}})")
                item.wait("XAyatanaLabel", lambda label: label.endswith(f"{member} {count}"))
                assert item.menu.shown()[0]
        still_well(item, page)

    def test_ten_thousand_tasks(self, item, page):
        page.run("""push({...%s, tasks: Array.from({length: 10000}, (_, n) => (
            {id: 't' + n, title: 'Compito ' + n, done: n %% 2 === 0}))})""" % json.dumps(session(projectTitle="Tanti")))
        item.wait("XAyatanaLabel", lambda label: "Tanti" in label, 60)
        rows = item.menu.shown()
        assert rows.count("Compito 0") == rows.count("Compito 9999") == 1
        time.sleep(2)
        still_well(item, page)

    def test_title_of_a_megabyte(self, item, page, window):
        page.run("push({...%s, projectTitle: 'è'.repeat(524288), tasks: [{id: 'a', done: false, title: "
                 "'🍅'.repeat(262144)}]})" % json.dumps(session()))
        processes.wait_for("the title", lambda: "è" in item["XAyatanaLabel"][:60], 20)
        time.sleep(2)
        still_well(item, page)

    def test_control_and_direction_characters(self, item, page, orvalle):
        title = "a\0b\u202ec\u2066d\ne\tf\r\u2028g\x1b[31m\x7f\ufeff"
        page.push(session(projectTitle=title, tasks=[task("a\0b", title), task("", "\0"), task("\u202e", "")]))
        item.wait("XAyatanaLabel", lambda label: "Prima" not in label)
        time.sleep(1.5)
        assert item.menu.shown()
        assert orvalle.own_lines() == []
        still_well(item, page)

    def test_state_every_millisecond(self, item, page, orvalle):
        page.run("""let n = 0; window.flood = setInterval(() => {
            for (let i = 0; i < 4; i++) push({...%s, projectTitle: 'Piena ' + n++}) }, 1)""" % json.dumps(session()))
        end = time.monotonic() + 10
        slowest = 0.0
        while time.monotonic() < end:
            before = time.monotonic()
            assert item["Id"] == "orvalle"
            slowest = max(slowest, time.monotonic() - before)
            time.sleep(0.2)
        page.run("clearInterval(flood)")
        assert slowest < 2, f"the program did not answer for {slowest:.1f} s"
        still_well(item, page)
        assert orvalle.own_lines() == []


class TestStore:
    def test_new_store_is_the_user_s_own(self, item, home, orvalle):
        orvalle.stop()
        assert stat.S_IMODE(home.defaults_file.stat().st_mode) == 0o600

    @pytest.mark.parametrize("text", ["", "{", "[]", "null", "\0\0", '{"overlayOn": tru', "{}{}", '{"a": {"b": 1}} x',
                                      "[" * 100000])
    def test_store_that_cannot_be_read_is_set_aside(self, start, home, page, text):
        home.write_defaults(text)
        program = start()
        page.wait_loaded()
        program.stop()
        aside = home.defaults_file.with_name("defaults.json.unreadable")
        assert aside.read_text() == text
        assert len(program.own_lines()) == 1
        assert isinstance(home.defaults(), dict)

    def test_store_that_is_no_text_is_set_aside(self, start, home, page):
        home.write_defaults("")
        home.defaults_file.write_bytes(b'{"appUrl": "\xff\xfe"}')
        program = start()
        page.wait_loaded()
        program.stop()
        assert home.defaults_file.with_name("defaults.json.unreadable").exists()
        assert len(program.own_lines()) == 1

    def test_hand_edited_values_are_taken_or_left_but_never_lost(self, tray, start, home, page):
        values = {"overlayOn": "forse", "overlayOrigin": 7, "appUrl": 12, "NSWindow Frame finestraPrincipale": [1],
                  "qualcosa di mio": {"resta": [1, 2.5, None]}, "supabaseUrl": False}
        home.write_defaults(json.dumps(values, indent=4))
        program = start()
        page.wait_loaded()
        menu = tray.wait_item().menu
        assert menu.row("Tienila sopra le altre app").checked
        menu.click("Tienila sopra le altre app")
        processes.wait_for("option", lambda: home.defaults()["overlayOn"] is False)
        program.stop()
        assert home.defaults()["qualcosa di mio"] == values["qualcosa di mio"]
        assert home.defaults()["supabaseUrl"] is False

    @pytest.mark.parametrize("frame", ["", "nonsense", "1 2 3", "0 0 0 0 0 0 0 0 ", "nan nan nan nan 0 0 1 1 ",
                                       "1e300 1e300 1e300 1e300 0 0 1600 1000 ", "-5000 -5000 1180 820 0 0 1600 1000 "])
    def test_frame_that_makes_no_sense(self, desktop, start, home, page, frame):
        home.write_defaults({"NSWindow Frame finestraPrincipale": frame})
        program = start()
        page.wait_loaded()
        window = desktop.windows.wait(program.pid, "Orvalle")
        assert window.box.width >= 720 and window.box.height >= 560
        x, y = window.box.point(400, 19)
        assert 0 <= x < 1600 and 0 <= y < 1000, "the strip cannot be reached"

    def test_store_that_may_not_be_written(self, tray, start, home, page):
        home.write_defaults({"appUrl": "http://localhost:1/", "mio": 1})
        before = home.defaults_file.read_bytes()
        home.defaults_file.parent.chmod(0o500)
        program = start(wrapper=without_overrides([]))
        page.wait_loaded()
        menu = tray.wait_item().menu
        menu.click("Tienila sopra le altre app")
        processes.wait_for("option off for this run", lambda: not menu.row("Tienila sopra le altre app").checked)
        time.sleep(4)
        program.stop()
        assert home.defaults_file.read_bytes() == before
        assert 1 <= len(program.own_lines()) <= 2

    def test_store_that_may_not_be_read(self, start, home, page):
        home.write_defaults({"mio": 1})
        home.defaults_file.chmod(0)
        program = start(wrapper=without_overrides([]))
        page.wait_loaded()
        program.stop()
        assert len(program.own_lines()) <= 2
        found = [path for path in home.defaults_file.parent.iterdir() if b"mio" in path.read_bytes()]
        assert found, "what was stored is lost"

    def test_home_that_may_not_be_written(self, desktop, start, home, page):
        for folder in [home.folder, *sorted(path for path in home.folder.rglob("*") if path.is_dir())]:
            folder.chmod(0o500)
        program = start(wrapper=without_overrides([]))
        page.wait_loaded()
        window = desktop.windows.wait(program.pid, "Orvalle")
        assert page.run("return document.title") == "Prova"
        window.close()
        window.wait_hidden()
        program.stop()
        assert len(program.own_lines()) <= 3


class TestPoorDesktop:
    """Desktops that lack something; each has a session of its own."""

    @pytest.fixture(params=["nothing", "no bus", "no manager", "no compositor"])
    def poor(self, request, locales_folder):
        lacking = {"nothing": {"bus": False, "manager": None}, "no bus": {"bus": False},
                   "no manager": {"manager": None}, "no compositor": {"compositor": False}}[request.param]
        with Desktop(locales=locales_folder, **lacking) as running:
            yield running

    def test_program_works(self, poor, site, page):
        program = Program(poor, Home(poor), site.url)
        window = poor.windows.wait(program.pid, "Orvalle")
        page.wait_loaded()
        page.push(session())
        overlay.wait(poor, program)
        page.push(session(running=False))
        overlay.wait_gone(poor, program)
        assert window.visible()
        program.stop()
        assert program.own_lines() == []
