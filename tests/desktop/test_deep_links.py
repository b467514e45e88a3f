"""Links of the program's own scheme, opened from the desktop."""

import shutil

import pytest

from harness.page import session, task
from harness.processes import spawn, stays, wait_for
from harness.program import app_run, inherited_options
from harness.server import PAGE, Answer

SIGN_IN = "/api/mac/entra"


@pytest.fixture(autouse=True)
def sign_in(site):
    """The web application signs in and shows itself."""
    site.routes[SIGN_IN] = Answer(PAGE.read_bytes())


@pytest.fixture
def registered(home):
    """A user whose desktop opens our links with the program."""
    home.register_program(app_run())


@pytest.fixture
def xdg_open(desktop, home, site, registered):
    """Opens a link as any program of the desktop does."""
    count = 0

    def open_link(link):
        nonlocal count
        count += 1
        environment = home.environment | inherited_options() | {"ORVALLE_APP_URL": site.url}
        return spawn(["xdg-open", link], environment, desktop.logs / f"xdg-open-{count}")

    yield open_link
    for log in desktop.logs.glob("xdg-open-*"):
        assert "Sanitizer" not in log.read_text(errors="replace")


def done(process):
    assert process.wait(30) == 0


def route(outcome):
    return ("vai", "/settings?sezione=google&esito=" + outcome)


def signed_in(site):
    return [path for path in site.paths() if path.startswith(SIGN_IN)]


def over_the_bus(desktop, *links):
    """Has the running program open the links as launchers do that start programs over the bus."""
    desktop.run("gdbus", "call", "--session", "--dest", "app.orvalle.Orvalle", "--object-path",
                "/app/orvalle/Orvalle", "--method", "org.freedesktop.Application.Open",
                str(list(links)), "{}")


def test_google_link_sends_the_page_to_its_settings_and_shows_the_window(window, page, xdg_open):
    window.close()
    window.wait_hidden()
    done(xdg_open("orvalle://google?esito=errore&x=1"))
    page.wait_command(*route("errore"))
    window.wait_visible()
    window.wait_active()
    assert page.commands() == [route("errore")]


def test_sign_in_link_loads_its_address_in_the_window(window, page, site, xdg_open):
    window.close()
    window.wait_hidden()
    done(xdg_open("orvalle://accesso?codice=ABC123"))
    page.wait_loaded(visit=2)
    assert signed_in(site) == [SIGN_IN + "?codice=ABC123"]
    window.wait_active()


def test_link_arrives_as_it_was_written(page, window, site, xdg_open):
    done(xdg_open("orvalle://accesso?codice=aB+c%2Bd%20e%25f%C3%A8~(g)"))
    page.wait_loaded(visit=2)
    assert signed_in(site) == [SIGN_IN + "?codice=aB+c+d%20e%25f%C3%A8~(g)"]


def test_sign_in_link_starts_the_program(page, site, desktop, start, xdg_open):
    opening = xdg_open("orvalle://accesso?codice=A+b%2B")
    wait_for("the sign-in", lambda: signed_in(site))
    page.wait_loaded()
    assert signed_in(site) == [SIGN_IN + "?codice=A+b+"]
    assert page.run("return location.pathname") == SIGN_IN
    assert start("--quit").wait(20) == 0
    done(opening)


def test_google_link_that_starts_the_program_reaches_the_page(page, start, xdg_open):
    opening = xdg_open("orvalle://google?esito=errore")
    page.wait_command(*route("errore"))
    assert page.commands() == [route("errore")]
    assert start("--quit").wait(20) == 0
    done(opening)


def test_several_links_are_handled_in_order(window, page, start):
    second = start("orvalle://google?esito=uno", "niente", "orvalle://google?esito=due", "https://google?esito=tre",
                   "orvalle://google?esito=quattro")
    assert second.wait(10) == 0
    page.wait_command(*route("quattro"))
    assert page.commands() == [route("uno"), route("due"), route("quattro")]


def test_several_links_start_the_program_in_order(page, start, site):
    start("orvalle://accesso?codice=A", "orvalle://google?esito=uno", "orvalle://google?esito=due")
    page.wait_command(*route("due"))
    assert page.commands() == [route("uno"), route("due")]
    assert signed_in(site) == [SIGN_IN + "?codice=A"]


def test_links_over_the_bus_arrive_as_they_were_written(window, page, desktop, site):
    over_the_bus(desktop, "ORVALLE://accesso?codice=no", "orvalle://Accesso?codice=no",
                 "orvalle://accesso/./x/../y?codice=%7EaB%2b+%41")
    page.wait_loaded(visit=2)
    assert signed_in(site) == [SIGN_IN + "?codice=~aB++A"]


def test_program_that_the_bus_starts_waits_for_what_is_wanted(desktop, home, site, page, start):
    program = start("--gapplication-service")
    wait_for("the program on the bus", lambda: "true" in desktop.run(
        "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus",
        "--method", "org.freedesktop.DBus.NameHasOwner", "app.orvalle.Orvalle"))
    stays("nothing is asked of the site", lambda: not site.requests, 1)
    over_the_bus(desktop, "orvalle://google?esito=bus")
    page.wait_command(*route("bus"))
    desktop.windows.wait(program.pid, "Orvalle")


def test_outcome_runs_no_script_in_the_page(window, page, xdg_open):
    outcome = "x');window.pwned=1;//"
    done(xdg_open(f"orvalle://google?esito={outcome}"))
    done(xdg_open("orvalle://google?esito=%5C%27);window.pwned=2;//%0A%E2%80%A8window.pwned=3"))
    wait_for("both commands", lambda: len(page.commands()) == 2)
    assert page.run("return typeof window.pwned") == "undefined"
    assert [page.run(f"return new URL({argument!r}, location.href).searchParams.get('esito')")
            for _, argument in page.commands()] == [outcome, "\\');window.pwned=2;//\n\u2028window.pwned=3"]


@pytest.mark.parametrize("identifier", ["x');window.pwned=1;//", "\\');window.pwned=1;//", "a\nb\u2028window.pwned=1"])
def test_id_of_a_task_runs_no_script_in_the_page(tray, orvalle, page, identifier):
    item = tray.wait_item()
    page.push(session(tasks=[task(identifier, "Leggere")]))
    wait_for("the task in the menu", lambda: "Leggere" in item.menu.shown())
    item.menu.click("Leggere")
    page.wait_command("task", identifier)
    assert page.run("return typeof window.pwned") == "undefined"


def test_links_reach_the_web_application_only(window, page, site, start, home):
    """A link can neither choose the host or the path that is loaded nor have anything run."""
    home.register_browser("http", "https", "orvalle")
    links = ["orvalle://evil.example/?codice=x", "orvalle://accesso@evil.example?codice=x", "orvalle:accesso?codice=x",
             "orvalle://accesso?codice=a b", "orvalle://accesso?codice", "http://accesso/?codice=x",
             f"file://{home.folder}/x", "javascript:window.pwned=1", "--", "orvalle://accesso?code=x"]
    assert start(*links).wait(10) == 0
    assert start("orvalle://accesso/../../x?codice=$(touch${IFS}ecco);`touch${IFS}ecco`").wait(10) == 0
    assert start("orvalle://accesso?codice=@evil.example/../..//;touch$IFS$HOME/ecco|a").wait(10) == 0
    assert start("orvalle://accesso?codice=@evil.example/../..//;touch$IFS$HOME/ecco").wait(10) == 0
    page.wait_loaded(visit=2)
    assert signed_in(site) == [SIGN_IN + "?codice=@evil.example/../..//;touch$IFS$HOME/ecco"]
    assert page.run("return location.host") == f"localhost:{site.port}"
    assert page.run("return typeof window.pwned") == "undefined"
    assert home.opened() == []
    assert not list(home.folder.rglob("ecco"))


def test_links_that_are_none_of_ours_leave_the_window_closed(window, page, start, site):
    window.close()
    window.wait_hidden()
    assert start("orvalle://altro", "https://google?esito=x", "orvalle://google?esito=a b").wait(10) == 0
    stays("the window stays closed", lambda: not window.visible(), 1)
    assert page.commands() == []


@pytest.mark.skipif(not shutil.which("gio"), reason="without the tool")
def test_desktops_own_launcher_opens_links_too(desktop, home, window, page, registered):
    desktop.run("gio", "open", "orvalle://google?esito=a+b%2Bc", env=home.environment)
    page.wait_command(*route("a+b+c"))


def test_actions_of_the_desktop_entry(desktop, window, page, start):
    window.close()
    window.wait_hidden()
    assert start("--new-session").wait(10) == 0
    page.wait_command("subito", "25")
    window.wait_visible()
    assert start("--stop").wait(10) == 0
    page.wait_command("stop", None)


def test_session_asked_for_starts_the_program(page, start):
    start("--new-session")
    page.wait_command("subito", "25")
    assert page.commands() == [("subito", "25")]


def test_stop_starts_nothing(start, site):
    assert start("--stop").wait(10) == 0
    assert not site.requests
