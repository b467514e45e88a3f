"""The page in the window: what survives, what it may reach, where its links lead, what it may ask."""

import time

import pytest

from harness import processes
from harness.page import Page, session
from harness.server import PAGE, Answer, Site

# A page in a frame tells its parent what it can see.
FRAME = """<!doctype html><script>
parent.postMessage({ strip: document.documentElement.style.getPropertyValue('--barra-titolo'),
                     bridge: typeof window.webkit?.messageHandlers?.orvalle }, '*');
</script>"""


@pytest.fixture
def elsewhere():
    """A site on another host."""
    with Site(name="127.0.0.1") as other:
        other.routes["/foreign"] = Answer("Altrove")
        yield other


def link(page, address, attributes=""):
    """Puts one large link into the page, below the strip; nothing else is where it is."""
    page.run(f"""document.body.innerHTML = `<a {attributes} href="{address}"
        style="position: fixed; left: 100px; top: 100px; width: 200px; height: 60px; background: gold">Vai</a>`;
        await new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))""")


def click_link(desktop, window, page):
    desktop.hand.click(*page.area(window).point(180, 130))


class TestStorage:
    def test_cookies_survive_a_restart(self, start, site, page, home):
        site.routes["/"] = Answer(PAGE.read_bytes(), headers={
            "Set-Cookie": "accesso=segreto; Max-Age=3600; HttpOnly; SameSite=Lax"})
        first = start()
        page.wait_loaded()
        first.stop()
        start()
        page.wait_loaded(2)
        assert "accesso=segreto" in [request for request in site.requests if request.path == "/"][-1].cookies

    def test_cookies_are_the_user_s_own_business(self, start, site, page, home):
        site.routes["/"] = Answer(PAGE.read_bytes(), headers={"Set-Cookie": "accesso=segreto; Max-Age=3600"})
        program = start()
        page.wait_loaded()
        program.stop()
        stores = [path for path in (home.data / "Orvalle").rglob("*")
                  if path.is_file() and b"segreto" in path.read_bytes()]
        assert stores, "no cookie store below the user's data folder"
        for path in stores:
            reachable = all(folder.stat().st_mode & 0o077 for folder in (path, *path.parents)
                            if folder.is_relative_to(home.data / "Orvalle"))
            assert not reachable, f"{path} can be read by others"

    def test_local_storage_survives_a_restart(self, start, site, page):
        first = start()
        page.wait_loaded()
        page.run("localStorage.setItem('nota', 'ancora qui')")
        time.sleep(1)
        first.stop()
        start()
        page.wait_loaded(2)
        assert page.run("return localStorage.getItem('nota')") == "ancora qui"


class TestScripts:
    def test_first_script_of_the_page_finds_strip_height_and_bridge(self, orvalle, page):
        assert page.first_script() == {"strip": "38px", "bridge": "function"}

    def test_frames_find_neither(self, orvalle, site, page, elsewhere):
        site.routes["/frame"] = Answer(FRAME)
        elsewhere.routes["/frame"] = Answer(FRAME)
        for address in ("/frame", elsewhere.url + "frame"):
            seen = page.run(f"""const frame = document.createElement('iframe');
                const told = new Promise((done) => addEventListener('message', (event) => done(event.data)));
                frame.src = '{address}'; document.body.append(frame); return await told""")
            assert seen == {"strip": "", "bridge": "undefined"}, address

    def test_nothing_of_ours_is_left_for_the_page_to_trip_over(self, orvalle, page):
        assert page.run("return Object.keys(window.webkit.messageHandlers)") in (["orvalle"], [])

    def test_page_cannot_open_windows(self, desktop, orvalle, window, site, page):
        site.routes["/altra"] = Answer("Altra")
        page.run("window.open('/altra')")
        time.sleep(0.5)
        assert desktop.windows.of(orvalle.pid) == [window]


class TestLinks:
    @pytest.fixture(autouse=True)
    def browser(self, home):
        home.register_browser("http", "https", "mailto")

    def test_link_to_another_host_opens_in_the_browser_only(self, desktop, window, orvalle, site, page, home,
                                                            elsewhere):
        address = elsewhere.url + "foreign?a=1&b=due#tre"
        for count, attributes in enumerate(["", 'target="_blank"', 'target="_blank" rel="opener"'], start=1):
            link(page, address, attributes)
            click_link(desktop, window, page)
            processes.wait_for("browser", lambda: len(home.opened()) >= count)
            time.sleep(0.5)
            assert home.opened() == [address] * count
        assert not elsewhere.requests
        assert page.run("return location.href") == site.url
        assert desktop.windows.of(orvalle.pid) == [window]

    def test_script_that_clicks_a_link_is_a_click(self, orvalle, site, page, home, elsewhere):
        page.run(f"const a = document.createElement('a'); a.href = '{elsewhere.url}foreign'; a.click()")
        processes.wait_for("browser", home.opened)
        assert home.opened() == [elsewhere.url + "foreign"]
        assert not elsewhere.requests
        assert page.run("return location.href") == site.url

    def test_mail_link_opens_in_the_mail_program(self, desktop, window, orvalle, site, page, home):
        link(page, "mailto:qualcuno@example.org")
        click_link(desktop, window, page)
        assert processes.wait_for("mail program", home.opened) == ["mailto:qualcuno@example.org"]
        assert page.run("return location.href") == site.url

    def test_link_on_the_same_host_stays_in_the_window(self, desktop, window, site, page, home):
        site.routes["/dentro"] = Answer(PAGE.read_bytes())
        link(page, "/dentro")
        click_link(desktop, window, page)
        page.wait_loaded(2)
        assert page.run("return location.pathname") == "/dentro"
        assert home.opened() == []

    def test_link_on_the_same_host_for_a_new_window_does_nothing(self, desktop, window, orvalle, site, page, home):
        site.routes["/dentro"] = Answer("Dentro")
        link(page, "/dentro", 'target="_blank"')
        click_link(desktop, window, page)
        time.sleep(1)
        assert "/dentro" not in site.paths()
        assert desktop.windows.of(orvalle.pid) == [window]
        assert home.opened() == []

    def test_script_may_move_the_page_to_another_host(self, orvalle, page, home, elsewhere):
        page.leave(f"location.href = '{elsewhere.url}foreign'")
        processes.wait_for("request elsewhere", lambda: "/foreign" in elsewhere.paths())
        time.sleep(0.5)
        assert home.opened() == []

    def test_page_of_another_host_cannot_push_a_state(self, orvalle, page, home, elsewhere, tray):
        item = tray.wait_item()
        page.leave(f"location.href = '{elsewhere.url}'")
        processes.wait_for("page elsewhere", lambda: elsewhere.visits)
        foreign = Page(elsewhere)
        foreign.push(session(projectTitle="Intruso"))
        time.sleep(1)
        assert "Intruso" not in item["XAyatanaLabel"]


class TestQuestions:
    def ask(self, page, expression):
        """Lets the page ask without waiting for the answer here."""
        page.run(f"window.answer = 'waiting'; setTimeout(() => window.answer = {expression}, 0)")

    def test_alert(self, orvalle, window, page, access):
        self.ask(page, "(alert('Attenzione: 50% di <b>Tesi</b> & altro'), 'done')")
        access.wait("label", "Attenzione: 50% di <b>Tesi</b> & altro")
        assert [button["name"] for button in access.find("push button") if button["name"] in (
            "Va bene", "Annulla", "OK", "Close", "Chiudi")].count("Va bene") == 1
        access.press("push button", "Va bene")
        page.wait_true("answer === 'done'")

    def test_confirm(self, orvalle, window, page, access):
        for button, answer in (("Va bene", True), ("Annulla", False)):
            self.ask(page, f"confirm('Cancellare tutto? {answer}')")
            access.wait("label", f"Cancellare tutto? {answer}")
            assert access.find("push button", "Va bene") and access.find("push button", "Annulla")
            access.press("push button", button)
            page.wait_true("answer !== 'waiting'")
            assert page.run("return answer") is answer

    def test_confirm_by_keyboard(self, desktop, orvalle, window, page):
        for key, answer in (("Return", True), ("Escape", False)):
            self.ask(page, "confirm('Cancellare tutto?')")
            processes.wait_for("question", lambda: len(desktop.windows.of(orvalle.pid)) == 2)
            time.sleep(0.5)
            desktop.hand.key(key)
            page.wait_true("answer !== 'waiting'")
            assert page.run("return answer") is answer
            processes.wait_for("question gone", lambda: desktop.windows.of(orvalle.pid) == [window])

    def test_prompt_is_not_asked(self, orvalle, window, page, desktop):
        self.ask(page, "prompt('Nome?', 'nessuno')")
        page.wait_true("answer === null")
        assert desktop.windows.of(orvalle.pid) == [window]

    def test_leaving_the_page_is_not_asked(self, desktop, orvalle, window, site, page):
        site.routes["/dopo"] = Answer(PAGE.read_bytes())
        desktop.hand.click(*page.area(window).point(400, 400))
        page.leave("addEventListener('beforeunload', (event) => { event.preventDefault(); event.returnValue = 'no' });"
                   "location.href = '/dopo'")
        page.wait_loaded(2)

    def test_program_goes_on_while_a_question_is_open(self, tray, orvalle, window, page, access):
        item = tray.wait_item()
        page.push(session())
        item.wait("XAyatanaLabel", lambda label: "Tesi" in label)
        self.ask(page, "alert('Un momento')")
        access.wait("label", "Un momento")
        before = item["XAyatanaLabel"]
        item.wait("XAyatanaLabel", lambda label: label != before)
        access.press("push button", "Va bene")
