"""An installed program finds a newer build of itself, offers it, and comes back as that."""

import json
import os
import pathlib
import shutil
import subprocess
import time

import pytest

from harness import processes
from harness.accessibility import Accessibility
from harness.processes import wait_for
from harness.program import BUNDLE, build_folder
from harness.server import Answer

REOPENS = "L'app si chiude e si riapre da sola: quello che stai facendo resta dov'è."
PATHS = ["semplice", "due parole \"e' $(virgolette) `x` àè"]


def run_tool(tool, *arguments):
    return subprocess.run([build_folder() / BUNDLE / "bin" / tool, *arguments], check=True, stdin=subprocess.DEVNULL,
                          capture_output=True, text=True).stdout


def make_build(folder, version, build):
    """A copy of the built bundle that says that it is this build, signed again."""
    bundle = folder / BUNDLE
    folder.mkdir(parents=True)
    shutil.copytree(build_folder() / BUNDLE, bundle, symlinks=True)
    information = json.loads((bundle / "Info.json").read_text(encoding="utf-8"))
    information |= {"CFBundleVersion": str(build), "CFBundleShortVersionString": version}
    (bundle / "Info.json").write_text(json.dumps(information), encoding="utf-8")
    run_tool("orvalle-codesign", "sign", bundle)
    return bundle


def contents(folder):
    """Everything below a folder by its path: mode, and bytes or target."""
    return {path.relative_to(folder).as_posix(): (path.lstat().st_mode, os.readlink(path) if path.is_symlink() else
                                                  path.read_bytes() if path.is_file() else None)
            for path in sorted(folder.rglob("*"))}


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

    def install(self, place, version, build):
        self.bundle = make_build(self.folder / place, version, build)

    def publish(self, version, build, note=None, change=None):
        """Makes and publishes a newer build; `change` may spoil the package."""
        newer = make_build(self.folder / f"nuova-{build}", version, build)
        published = self.folder / f"sito-{build}"
        note = ["--note", note] if note else []
        run_tool("orvalle-package", *note, newer, published)
        manifest = json.loads((published / "versione.json").read_text(encoding="utf-8"))
        data = (published / pathlib.PurePath(manifest["url"]).name).read_bytes()
        self.site.routes["/mac/versione.json"] = Answer(json.dumps(manifest), type="application/json")
        self.site.routes[manifest["url"]] = Answer(change(data) if change else data, type="application/zip")
        return newer

    def start(self):
        variables = self.home.environment | {name: value for name, value in os.environ.items()
                                             if name.endswith("SAN_OPTIONS")}
        variables |= {"ORVALLE_APP_URL": self.site.url, "TMPDIR": str(self.temporary)}
        log = self.desktop.logs / f"installed-{len(self.started)}-{self.folder.name}"
        process = processes.spawn([str(self.bundle / "AppRun")], variables, log)
        self.started.append(process)
        return process

    def running(self):
        """The ids of the processes of the installed program."""
        program = str(self.bundle / "bin/orvalle")
        found = []
        for entry in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if os.readlink(entry / "exe").removesuffix(" (deleted)") == program:
                    found.append(int(entry.name))
            except OSError:
                continue
        return found

    def end(self):
        for pid in self.running():
            os.kill(pid, 15)
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
    return json.loads((bundle / "Info.json").read_text(encoding="utf-8"))["CFBundleVersion"]


@pytest.mark.parametrize("place", PATHS)
def test_older_build_becomes_the_newer_one(world, desktop, home, page, place):
    home.write_defaults({"supabaseUrl": "https://p.example", "mio": 7})
    world.install(place, "1.0", 10)
    newer = world.publish("2.0", 20, note="Più veloce.")
    expected = contents(newer)
    old = world.start()
    page.wait_loaded()

    access = Accessibility(desktop, old.pid)
    access.wait_text("C'è Orvalle 2.0", 60)
    assert f"Più veloce.\n\n{REOPENS}" in access.texts()
    access.press("push button", "Aggiorna e riavvia")
    assert old.wait(120) == 0
    wait_for("the newer program", lambda: world.running() and old.pid not in world.running(), 60)
    assert version_of(world.bundle) == "20"
    assert contents(world.bundle) == expected
    wait_for("its window", lambda: desktop.windows.of(world.running()[0], "Orvalle"), 60)

    stored = home.defaults()
    assert stored["ultimoAggiornamentoVersione"] == "2.0"
    assert stored["supabaseUrl"] == "https://p.example" and stored["mio"] == 7
    wait_for("an empty temporary folder", lambda: not list(world.temporary.glob("orvalle-*")), 20)
    # It finds nothing newer than itself, and is the only one.
    time.sleep(1)
    assert len(world.running()) == 1


def test_package_that_was_changed_on_the_way_is_refused(world, desktop, page):
    world.install("app", "1.0", 10)

    def flip(data):
        at = data.rindex(b"Signature/manifest") // 2
        return data[:at] + bytes([data[at] ^ 1]) + data[at + 1:]
    world.publish("2.0", 20, change=flip)
    before = contents(world.bundle)
    old = world.start()
    page.wait_loaded()
    access = Accessibility(desktop, old.pid)
    access.wait_text("C'è Orvalle 2.0", 60)
    access.press("push button", "Aggiorna e riavvia")
    access.wait_text("Aggiornamento non riuscito.", 60)
    assert contents(world.bundle) == before
    wait_for("an empty temporary folder", lambda: not list(world.temporary.glob("orvalle-*")), 20)
    access.press("push button", "Va bene")
    assert old.poll() is None


def test_download_is_shown_and_cancelled(world, desktop, page, site):
    world.install("app", "1.0", 10)
    world.publish("2.0", 20)
    url = json.loads(site.routes["/mac/versione.json"].body)["url"]

    def never(_):
        time.sleep(30)
        return Answer(b"", 500)
    site.routes[url] = never
    old = world.start()
    page.wait_loaded()
    access = Accessibility(desktop, old.pid)
    access.wait_text("C'è Orvalle 2.0", 60)
    access.press("push button", "Aggiorna e riavvia")
    access.wait_text("Sto scaricando Orvalle 2.0…", 60)
    assert access.find("progress bar")
    access.press("push button", "Annulla")
    access.wait_text("Scaricamento non riuscito.", 60)
    access.press("push button", "Va bene")
    assert not list(world.temporary.glob("orvalle-*"))
    assert old.poll() is None
