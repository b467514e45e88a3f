"""The program as one of the user's applications, from a bundle unpacked anywhere."""

import os
import pathlib
import shutil
import subprocess

import pytest

from harness.processes import spawn, wait_for
from harness.program import BUNDLE, build_folder, inherited_options
from harness.server import PAGE, Answer

ENTRY = "applications/app.orvalle.Orvalle.desktop"
ICONS = {"icons/hicolor/scalable/apps/app.orvalle.Orvalle.svg",
         "icons/hicolor/symbolic/apps/app.orvalle.Orvalle-symbolic.svg"}
SCHEME = "x-scheme-handler/orvalle"


@pytest.fixture(params=["Programmi", "Le mie \"app\" $HOME `x` \\ è"])
def unpacked(request, home):
    """A bundle of the user's own, in a folder with an ordinary name and in one that wants quotes everywhere."""
    target = home.folder / request.param / BUNDLE
    target.parent.mkdir()
    subprocess.run(["cp", "-al", build_folder() / BUNDLE, target], check=True)
    return target


@pytest.fixture
def command(home, unpacked):
    """Runs the program's command line to its end."""
    def run(*arguments, status=0):
        done = subprocess.run([unpacked / "AppRun", *arguments], env=home.environment | inherited_options(unpacked),
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60, check=False)
        assert done.returncode == status, done.stdout + done.stderr
        return done.stdout + done.stderr
    return run


def handler(desktop, home):
    """What the desktop opens our links with."""
    answer = desktop.run("xdg-mime", "query", "default", SCHEME, env=home.environment)
    return answer.strip()


def installed(home):
    return {path for path in {ENTRY, *ICONS} if (home.data / path).is_file()}


def test_installing_registers_entry_icons_and_links(command, home, desktop, unpacked):
    assert "Orvalle" in command("--install")
    assert installed(home) == {ENTRY, *ICONS}
    assert handler(desktop, home) == "app.orvalle.Orvalle.desktop"
    text = (home.data / ENTRY).read_text(encoding="utf-8")
    assert "DBusActivatable" not in text
    for name in ("Nuova sessione da 25 minuti", "Ferma la sessione", "Esci"):
        assert f"\nName={name}\n" in text
    if shutil.which("desktop-file-validate"):
        assert desktop.run("desktop-file-validate", str(home.data / ENTRY), env=home.environment) == ""


def test_installing_twice_is_the_same(command, home):
    command("--install")
    before = (home.data / ENTRY).read_bytes()
    command("--install")
    assert (home.data / ENTRY).read_bytes() == before


def test_entry_and_icons_of_an_older_version_are_renewed_at_the_start(command, home, start, unpacked):
    command("--install")
    now = {path: (home.data / path).read_bytes() for path in {ENTRY, *ICONS}}
    older = now[ENTRY].replace(b"\nName=Ferma la sessione\n", b"\nName=Ferma\n")
    assert older != now[ENTRY]
    (home.data / ENTRY).write_bytes(older)
    for icon in ICONS:
        (home.data / icon).write_bytes(now[icon] + b"<!-- older -->")
    program = start(bundle=unpacked)
    wait_for("renewed", lambda: now == {path: (home.data / path).read_bytes() for path in now})
    program.stop()


def test_entry_of_another_bundle_is_left_alone(command, home, start, page):
    command("--install")
    ours = (home.data / ENTRY).read_bytes() + b"\n# of the other one\n"
    (home.data / ENTRY).write_bytes(ours)
    program = start()
    page.wait_loaded()
    program.stop()
    assert (home.data / ENTRY).read_bytes() == ours


def test_uninstalling_takes_everything_away_and_leaves_the_data(command, home, desktop):
    home.write_defaults({"overlayOn": False})
    (home.config / "mimeapps.list").write_text("[Default Applications]\ntext/html=altro.desktop\n", encoding="utf-8")
    command("--install")
    command("--uninstall")
    assert installed(home) == set()
    assert handler(desktop, home) == ""
    assert home.defaults() == {"overlayOn": False}
    lists = (home.config / "mimeapps.list").read_text(encoding="utf-8")
    assert "text/html=altro.desktop" in lists
    assert "orvalle" not in lists
    command("--uninstall")


def test_failure_is_told(command, home):
    (home.data / "applications").write_text("a file in the way")
    assert "Orvalle: " in command("--install", status=1)


def test_place_that_no_entry_can_name_is_refused(home):
    target = home.folder / "100% mio" / BUNDLE
    target.parent.mkdir()
    subprocess.run(["cp", "-al", build_folder() / BUNDLE, target], check=True)
    done = subprocess.run([target / "AppRun", "--install"], env=home.environment | inherited_options(),
                          capture_output=True, text=True, timeout=60, check=False)
    assert done.returncode == 1
    assert "«%»" in done.stderr
    assert installed(home) == set()


def test_outside_a_bundle_nothing_is_installed(home, tmp_path):
    program = tmp_path / "orvalle"
    shutil.copy(build_folder() / BUNDLE / "bin/orvalle", program)
    done = subprocess.run([program, "--install"], env=home.environment | inherited_options(), capture_output=True,
                          text=True, timeout=60, check=False)
    assert done.returncode == 1
    assert "Orvalle: " in done.stderr
    assert installed(home) == set()


def test_desktop_opens_a_link_with_the_installed_program(command, desktop, home, site, page, unpacked, start):
    site.routes["/api/mac/entra"] = Answer(PAGE.read_bytes())
    command("--install")
    environment = home.environment | inherited_options(unpacked) | {"ORVALLE_APP_URL": site.url}
    link = "orvalle://accesso?codice=A+b%2B"
    spawn(["gio", "open", link], environment, desktop.logs / "gio")
    page.wait_loaded()
    wait_for("the sign-in", lambda: "/api/mac/entra?codice=A+b+" in site.paths())
    programs = [os.readlink(f"/proc/{pid}/exe") for pid in running_programs(home)]
    assert programs == [str(unpacked / "bin/orvalle")]
    assert start("--quit").wait(20) == 0


def running_programs(home):
    """The ids of the programs that this user has open."""
    found = []
    for entry in pathlib.Path("/proc").iterdir():
        try:
            if entry.name.isdigit() and os.readlink(entry / "exe").endswith("/bin/orvalle") and \
                    f"HOME={home.folder}\0".encode() in (entry / "environ").read_bytes():
                found.append(int(entry.name))
        except OSError:
            continue
    return found
