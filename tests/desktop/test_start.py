"""Starting, starting again, closing and ending the program."""

import os
import re
import signal
import time

import pytest

from harness.processes import carrying, stays, wait_for
from harness.program import BUNDLE, build_folder
from harness.server import Site


def test_start_becomes_the_program_itself(orvalle):
    program = build_folder() / BUNDLE / "bin/orvalle"
    assert os.path.samefile(f"/proc/{orvalle.pid}/exe", program)


def test_version_is_printed(start):
    program = start("--version")
    assert program.wait(10) == 0
    assert re.fullmatch(r"Orvalle \d+\.\d+\.\d+ \(\d+\)\n", program.log())


def test_help_is_printed(start):
    program = start("--help")
    assert program.wait(10) == 0
    for option in ("--version", "--help", "--quit"):
        assert option in program.log()


def test_unknown_option_is_refused(start):
    program = start("--questa-opzione-non-esiste")
    assert program.wait(10) != 0


def test_second_start_brings_the_window_back(start, window, site):
    window.close()
    window.wait_hidden()
    second = start()
    assert second.wait(10) == 0
    window.wait_visible()
    window.wait_active()
    assert len(site.visits) == 1, "the page was loaded again"


def test_second_start_with_the_window_open_opens_no_other(desktop, start, window, orvalle, site):
    second = start()
    assert second.wait(10) == 0
    time.sleep(0.5)
    assert desktop.windows.of(orvalle.pid, "Orvalle") == [window]
    assert len(site.visits) == 1


@pytest.mark.parametrize("sign", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_signal_ends_the_program_in_order(orvalle, window, desktop, sign):
    orvalle.stop(sign)
    wait_for("the end of all helpers", lambda: not carrying(f"HOME={orvalle.home.folder}"))


def test_quit_ends_the_running_program(start, window, orvalle):
    assert start("--quit").wait(10) == 0
    assert orvalle.wait(10) == 0


def test_quit_starts_nothing(start, desktop, site):
    program = start("--quit")
    program.wait(10)
    assert not site.requests


def test_closing_the_window_leaves_the_program_running(orvalle, window):
    window.close()
    window.wait_hidden()
    stays("the program runs on", orvalle.running, 2)


def test_program_runs_without_a_session_bus(start, desktop, page):
    nowhere = {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={desktop.folder}/run/no-bus"}
    program = start(environment=nowhere)
    desktop.windows.wait(program.pid, "Orvalle")
    page.wait_loaded()
    assert page.run("return innerWidth") > 0
    program.stop()


def test_ordinary_run_logs_nothing(orvalle, window):
    window.close()
    window.wait_hidden()
    orvalle.stop()
    assert orvalle.own_lines() == []


def test_stored_address_is_opened_where_the_environment_has_none(start, home, site, page):
    home.write_defaults({"appUrl": site.url})
    start(address=None)
    page.wait_loaded()


def test_environment_wins_over_the_stored_address(start, home, site, page):
    with Site() as other:
        home.write_defaults({"appUrl": other.url})
        start()
        page.wait_loaded()
        assert not other.requests


def test_address_that_is_none_leads_to_the_built_in_one(start, home, site, desktop):
    home.write_defaults({"appUrl": site.url})
    program = start(address="questo non è un indirizzo")
    desktop.windows.wait(program.pid, "Orvalle")
    stays("nothing is asked of the stored address", lambda: not site.requests, 2)
