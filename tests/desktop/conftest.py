"""What every desktop test starts from."""

import shutil

import pytest

from harness import notification_daemon, pictures
from harness.accessibility import Accessibility
from harness.desktop import Desktop
from harness.home import Home
from harness.page import Page
from harness.program import Program, build_folder
from harness.server import Site
from harness.tray import Tray


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    """Lets a fixture know, when it is torn down, whether its test failed."""
    report = (yield).get_result()
    item.failed = getattr(item, "failed", False) or report.failed


@pytest.fixture(scope="session")
def locales_folder():
    """Where generated locales are kept from one run to the next."""
    return build_folder() / "locales"


@pytest.fixture(scope="module")
def desktop_options():
    """How a module's desktop differs from the plain one; modules override it."""
    return {}


@pytest.fixture(scope="module")
def desktop(desktop_options, locales_folder):
    """One desktop for all tests of a module; each test has a user of its own in it."""
    with Desktop(locales=locales_folder, **desktop_options) as running:
        yield running


@pytest.fixture
def home(desktop, request):
    """A user who has never started the program."""
    return Home(desktop, f"home-{len(list(desktop.folder.glob('home-*')))}")


@pytest.fixture
def site():
    """The web application that the program is pointed at."""
    with Site() as running:
        yield running


@pytest.fixture
def dunst(desktop):
    """A real notification server."""
    process = notification_daemon.start(desktop)
    yield process
    if process.poll() is None:
        desktop.end(process)


@pytest.fixture
def preferences(home):
    """The settings for notifications of three desktops; the names of those that were opened."""
    record = home.folder / "settings-opened"
    script = home.folder / "settings"
    script.write_text(f'#!/bin/sh\necho "$1" >>"{record}"\n', encoding="utf-8")
    script.chmod(0o755)
    applications = home.data / "applications"
    applications.mkdir(parents=True, exist_ok=True)
    for name in ("gnome-notifications-panel", "kcm_notifications", "xfce4-notifyd-config"):
        (applications / f"{name}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Avvisi\nExec={script} {name}\n", encoding="utf-8")
    return lambda: record.read_text(encoding="utf-8").splitlines() if record.exists() else []


@pytest.fixture
def page(site):
    return Page(site)


@pytest.fixture
def tray(desktop):
    """A host for status items, there before the program starts."""
    with Tray(desktop) as running:
        yield running


class Starter:
    """Starts the program as often as a test likes, on the test's site unless another address (or None) is given;
    whatever is still running afterwards is ended, and no log may hold an alarm."""

    def __init__(self, desktop, home, site):
        self._desktop = desktop
        self._home = home
        self._site = site
        self.started = []

    def __call__(self, *arguments, **options):
        options = {"home": self._home, "address": self._site.url} | options
        program = Program(self._desktop, options.pop("home"), options.pop("address"), *arguments, **options)
        self.started.append(program)
        return program

    def end(self):
        """Ends every program that still runs, in order."""
        for program in self.started:
            if program.running():
                program.process.terminate()
        statuses = {program: self._status(program) for program in self.started}
        for program in self.started:
            program.check_log()
        assert None not in statuses.values(), "a program did not end when it was asked to"

    @staticmethod
    def _status(program):
        try:
            return program.wait()
        except AssertionError:
            program.kill()
            return None


@pytest.fixture
def start(desktop, home, site, request):
    starter = Starter(desktop, home, site)
    yield starter
    if getattr(request.node, "failed", False):
        keep_evidence(desktop, home, request.node.name)
    starter.end()


@pytest.fixture
def orvalle(start, page):
    """The program, started, with the test page loaded in its window."""
    program = start()
    page.wait_loaded()
    return program


@pytest.fixture
def window(desktop, orvalle):
    """The main window, in front."""
    found = desktop.windows.wait(orvalle.pid, "Orvalle")
    found.wait_active()
    return found


@pytest.fixture
def access(desktop, orvalle):
    return Accessibility(desktop, orvalle.pid)


def keep_evidence(desktop, home, name):
    """Keeps a picture, all logs and the user's files of a test that failed."""
    folder = build_folder() / "desktop-failures" / name.replace("/", "_")
    shutil.rmtree(folder, ignore_errors=True)
    try:
        folder.mkdir(parents=True)
    except PermissionError:  # as somebody to whom the build folder does not belong
        return
    try:
        pictures.save(desktop, folder / "screen.png")
    except Exception as error:  # pylint: disable=broad-except
        (folder / "no-picture").write_text(str(error))
    shutil.copytree(desktop.logs, folder / "logs")
    if home.defaults_file.is_file():
        shutil.copy(home.defaults_file, folder)
