"""An installed program finds a newer build of itself, offers it, and comes back as that."""

import io
import json
import os
import pathlib
import shutil
import signal
import subprocess
import time
import zipfile

import pytest

from harness import processes
from harness.accessibility import Accessibility
from harness.processes import wait_for
from harness.program import BUNDLE, build_folder, inherited_options
from harness.releases import processes_of, revise, run_tool, say_of
from harness.server import Answer

REOPENS = "L'app si chiude e si riapre da sola: quello che stai facendo resta dov'è."
ODD = "due parole \"e' $(virgolette) `x` àè"


def contents(folder):
    """A folder and everything below it by its path: mode, and bytes or target."""
    return {path.relative_to(folder).as_posix(): (path.lstat().st_mode, os.readlink(path) if path.is_symlink() else
                                                  path.read_bytes() if path.is_file() else None)
            for path in [folder, *sorted(folder.rglob("*"))]}


class Release:
    """A bundle, and what a server publishes of it."""

    def __init__(self, bundle, folder, note=None):
        self.bundle = bundle
        run_tool("orvalle-package", *(["--note", note] if note else []), bundle, folder)
        self.manifest = json.loads((folder / "versione.json").read_text(encoding="utf-8"))
        self.package = (folder / pathlib.PurePath(self.manifest["url"]).name).read_bytes()


@pytest.fixture(scope="module")
def newer(tmp_path_factory):
    """The next release, built like the installed one."""
    return Release(build_folder() / "newer" / BUNDLE, tmp_path_factory.mktemp("sito"), "Più veloce.")


@pytest.fixture(scope="module")
def newest(newer, tmp_path_factory):
    """The one after it, which differs in what it says of itself."""
    bundle = revise(newer.bundle, tmp_path_factory.mktemp("nuovissima"), "3.0", newer.manifest["build"] + 1)
    run_tool("orvalle-codesign", "sign", bundle)
    return Release(bundle, tmp_path_factory.mktemp("sito"))


class World:
    """One user with an installed program, and a server that publishes updates."""

    def __init__(self, desktop, home, site, folder):
        self.desktop = desktop
        self.home = home
        self.site = site
        self.folder = folder
        self.temporary = folder / "tmp"
        self.temporary.mkdir(parents=True)
        self.bundle = None
        self.started = []

    def install(self, place="app"):
        self.bundle = self.folder / place / BUNDLE
        shutil.copytree(build_folder() / BUNDLE, self.bundle, symlinks=True)

    def publish(self, release, answer=None, **changes):
        """Publishes a release; what the server answers instead of its package may be another, and the manifest say
        something else of it."""
        manifest = release.manifest | changes
        self.site.routes["/mac/versione.json"] = Answer(json.dumps(manifest), type="application/json")
        self.site.routes[release.manifest["url"]] = answer or Answer(release.package, type="application/zip")

    def start(self):
        variables = self.home.environment | inherited_options(self.bundle)
        variables |= {"ORVALLE_APP_URL": self.site.url, "TMPDIR": str(self.temporary)}
        log = self.desktop.logs / f"installed-{len(self.started)}-{self.folder.name}"
        process = processes.spawn([str(self.bundle / "AppRun")], variables, log)
        self.started.append(process)
        return process

    def access(self):
        return Accessibility(self.desktop, self.running()[0])

    def window(self):
        return wait_for("window", lambda: [window for pid in self.running()
                                           for window in self.desktop.windows.of(pid, "Orvalle")], 60)[0]

    def running(self):
        """The ids of the processes of the installed program."""
        return processes_of(self.bundle)

    def swapping(self):
        """Whether the script is at work."""
        for entry in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if f"{self.temporary}/orvalle-scambio-".encode() in (entry / "cmdline").read_bytes():
                    return True
            except OSError:
                continue
        return False

    def wait_newer(self, old, release, seconds=60):
        """Waits until only the release runs, in the place of the old process, and nothing else is left."""
        wait_for("the newer program", lambda: self.running() and old not in self.running(), seconds)
        assert contents(self.bundle) == contents(release.bundle)
        wait_for("an empty temporary folder", lambda: not os.listdir(self.temporary), 20)
        self.window()
        assert len(self.running()) == 1

    def wait_cleared(self):
        wait_for("an empty temporary folder", lambda: not os.listdir(self.temporary), 20)

    def end(self):
        for pid in self.running():
            os.kill(pid, signal.SIGCONT)
            os.kill(pid, signal.SIGTERM)
        wait_for("the end of the program", lambda: not self.running(), 40)
        for process in self.started:
            process.wait(20)


@pytest.fixture
def world(desktop, home, site, tmp_path):
    made = World(desktop, home, site, tmp_path)
    yield made
    if made.bundle:
        made.end()


def version_of(bundle):
    """What the installed program says of itself."""
    return subprocess.run([bundle / "AppRun", "--version"], check=True, stdin=subprocess.DEVNULL, capture_output=True,
                          text=True).stdout.strip()


def test_older_build_becomes_the_newer_one_and_then_the_newest(world, home, page, newer, newest):
    home.write_defaults({"supabaseUrl": "https://p.example", "mio": 7})
    world.install()
    assert version_of(world.bundle) == f"Orvalle 0.1.0 ({newer.manifest['build'] - 1})"
    world.publish(newer)
    old = world.start()
    page.wait_loaded()
    window = world.window()
    window.resize(window.frame.width - 130, window.frame.height - 70)
    page.run("localStorage.setItem('prova', 'sette'); document.cookie = 'prova=7; max-age=9999'")
    frame = window.box

    access = world.access()
    access.wait_text("C'è Orvalle 2.0", 60)
    assert f"Più veloce.\n\n{REOPENS}" in access.texts()
    access.press("push button", "Aggiorna e riavvia")
    assert old.wait(120) == 0
    world.wait_newer(old.pid, newer)
    assert version_of(world.bundle) == f"Orvalle 2.0 ({newer.manifest['build']})"

    stored = home.defaults()
    assert stored["ultimoAggiornamentoVersione"] == "2.0"
    assert stored["supabaseUrl"] == "https://p.example" and stored["mio"] == 7
    page.wait_loaded(2)
    assert page.run("return [localStorage.getItem('prova'), document.cookie]") == ["sette", "prova=7"]
    wait_for("the frame of before", lambda: world.window().box == frame)
    # A second start finds the first.
    again = world.start()
    assert again.wait(40) == 0
    assert len(world.running()) == 1

    # The page finds the next one, and installs it without a question.
    world.publish(newest)
    page.push({"tipo": "aggiornamenti-cerca", "id": 5})
    replies = page.wait_true("replies.length && replies")
    assert json.loads(replies[0][1]) == {"esito": "trovato", "versione": "3.0", "build": newest.manifest["build"]}
    between = world.running()[0]
    page.push({"tipo": "aggiornamenti-installa"})
    wait_for("the end of the program", lambda: between not in world.running(), 120)
    world.wait_newer(between, newest)
    page.wait_loaded(3)
    page.push({"tipo": "aggiornamenti-stato", "id": 6})
    state = json.loads(page.wait_true("replies.length && replies")[0][1])
    assert (state["versione"], state["build"], state["ultimaVersione"]) == ("3.0", newest.manifest["build"], "3.0")
    wait_for("the frame of before", lambda: world.window().box == frame)


@pytest.mark.parametrize("seconds", [11, 20])
def test_program_that_does_not_end_for_long_is_replaced_all_the_same(world, page, newer, seconds):
    world.install(ODD)
    world.publish(newer)
    old = world.start()
    page.wait_loaded()
    access = world.access()
    access.wait_text("C'è Orvalle 2.0", 60)
    access.press("push button", "Aggiorna e riavvia")
    wait_for("the script", world.swapping, 60, pause=0.001)
    old.send_signal(signal.SIGSTOP)
    begin = time.monotonic()
    assert old.poll() is None, "it ended before it could be held up"
    wait_for("the other bundle", lambda: not (world.bundle / "bin/orvalle").exists(), 30, pause=0.005)
    assert 8 < time.monotonic() - begin
    time.sleep(max(0, begin + seconds - time.monotonic()))
    assert old.poll() is None
    old.send_signal(signal.SIGCONT)
    assert old.wait(60) == 0
    world.wait_newer(old.pid, newer)
    assert version_of(world.bundle) == f"Orvalle 2.0 ({newer.manifest['build']})"


def with_more(package, name, data):
    """The package with one more entry."""
    changed = io.BytesIO(package)
    with zipfile.ZipFile(changed, "a") as archive:
        archive.writestr(name, data)
    return changed.getvalue()


def test_package_that_does_not_come_as_it_should_is_refused(world, page, site, newer):
    world.install()
    world.publish(newer, build=0)  # no newer one, for now
    package = newer.package
    middle = package.rindex(b"Signature/manifest") // 2
    flipped = package[:middle] + bytes([package[middle] ^ 1]) + package[middle + 1:]
    elsewhere = site.url.replace("localhost", "127.0.0.1")
    failed, missing = "Aggiornamento non riuscito.", "Scaricamento non riuscito."
    kinds = {
        "one byte": (Answer(flipped), {}, failed),
        "one file more": (Answer(with_more(package, "Orvalle.app/bin/altro", "x")), {}, failed),
        "out of the folder": (Answer(with_more(package, "../../fuori", "x")), {}, failed),
        "cut": (Answer(package[:len(package) * 99 // 100]), {}, failed),
        "a part": (Answer(package, 206), {}, missing),
        "not modified": (Answer("", 304), {}, missing),
        "elsewhere": (Answer("", 302, headers={"Location": elsewhere + "altro.zip"}), {}, missing),
        "not encrypted": (None, {"url": elsewhere + "altro.zip"}, "Aggiornamento non valido."),
    }
    site.routes["/altro.zip"] = Answer(package)
    before = contents(world.bundle)
    beside = sorted(world.folder.rglob("*"))
    old = world.start()
    page.wait_loaded()
    access = world.access()
    for number, (kind, (answer, changes, message)) in enumerate(kinds.items(), 1):
        world.publish(newer, answer, **changes)
        page.push({"tipo": "aggiornamenti-cerca", "id": number})
        page.wait_true(f"replies.length == {number}")
        page.push({"tipo": "aggiornamenti-installa"})
        access.wait_text(message, 90)
        world.wait_cleared()
        assert contents(world.bundle) == before, kind
        assert sorted(world.folder.rglob("*")) == beside, kind
        access.press("push button", "Va bene")
        wait_for("no alert", lambda: not access.find("push button", "Va bene"), 20)
    assert "/altro.zip" not in site.paths()
    assert old.poll() is None


def test_download_is_shown_and_cancelled_and_no_other_begins_meanwhile(world, page, site, tray, newer):
    world.install()
    url = newer.manifest["url"]

    def never(_):
        time.sleep(60)
    world.publish(newer, never)
    old = world.start()
    page.wait_loaded()
    access = world.access()
    access.wait_text("C'è Orvalle 2.0", 60)
    access.press("push button", "Aggiorna e riavvia")
    access.wait_text("Sto scaricando Orvalle 2.0…", 60)
    assert access.find("progress bar")

    # A check by the page, and one by the user, who is asked when the download is over.
    page.push({"tipo": "aggiornamenti-cerca", "id": 5})
    page.wait_true("replies.length == 1")
    page.push({"tipo": "aggiornamenti-installa"})
    tray.wait_item().menu.click("Cerca aggiornamenti…")
    wait_for("three checks", lambda: sum("/mac/versione.json" in path for path in site.paths()) == 3, 20)
    time.sleep(1)
    assert site.paths().count(url) == 1
    assert "C'è Orvalle 2.0" not in access.texts()

    access.press("push button", "Annulla")
    access.wait_text("C'è Orvalle 2.0", 60)
    access.press("push button", "Più tardi")
    access.wait_text("Scaricamento non riuscito.", 60)
    access.press("push button", "Va bene")
    world.wait_cleared()
    assert site.paths().count(url) == 1
    assert old.poll() is None


def test_copy_of_a_package_manager_is_told_of_the_newer_build_and_stays(world, page, site, newer):
    world.install()
    say_of(world.bundle, {"PackageManager": "apt"})
    run_tool("orvalle-codesign", "sign", world.bundle)
    world.publish(newer)
    before = contents(world.bundle)
    old = world.start()
    page.wait_loaded()
    access = world.access()
    access.wait_text("C'è Orvalle 2.0", 60)
    assert f"Più veloce.\n\n{REOPENS} Questa copia fa parte del sistema: aggiornala con apt." in access.texts()
    assert access.find("push button", "Più tardi") and not access.find("push button", "Aggiorna e riavvia")
    access.press("push button", "Più tardi")

    # Nor does the page get it replaced.
    page.push({"tipo": "aggiornamenti-cerca", "id": 5})
    page.wait_true("replies.length == 1")
    page.push({"tipo": "aggiornamenti-installa"})
    access.wait_text("lo aggiorna il gestore dei pacchetti", 60)
    assert newer.manifest["url"] not in site.paths()
    assert contents(world.bundle) == before
    assert old.poll() is None
