"""What an update by a large package costs: time, memory, and the interface's patience."""

import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import threading
import time

from harness.accessibility import Accessibility
from harness.desktop import Desktop
from harness.home import Home
from harness.processes import spawn, wait_for
from harness.realtime import DemoServer
from harness.releases import processes_of, revise
from harness.tray import Tray

MEGABYTE = 1_000_000
PACKAGE = 300 * MEGABYTE
FILES = 3
ROUNDS = 3


def make_large(bundle, folder):
    """Publishes in the folder a newer build that is 300 MB larger than the bundle, and cannot be compressed."""
    newer = revise(bundle, folder, "9.9", 99)
    for number in range(FILES):
        (newer / f"share/grande-{number}").write_bytes(os.urandom(PACKAGE // FILES))
    subprocess.run([bundle / "bin/orvalle-codesign", "sign", newer], check=True)
    site = folder / "sito"
    site.mkdir()
    subprocess.run(["bsdtar", "-c", "--format", "zip", "--options", "zip:compression=store", "-f",
                    site / "Orvalle-99.zip", "-C", folder, newer.name], check=True)
    (site / "versione.json").write_text(json.dumps({"versione": "9.9", "build": 99, "url": "/mac/Orvalle-99.zip"}),
                                        encoding="utf-8")
    return site


def seconds_of_peer(archive, folder):
    """Unpacks the archive, and sums up what was in it."""
    place = folder / "peer"
    place.mkdir()
    begin = time.monotonic()
    subprocess.run(["bsdtar", "-x", "-f", archive, "-C", place], check=True)
    files = [path for path in place.rglob("*") if path.is_file() and not path.is_symlink()]
    subprocess.run(["sha256sum", *files], check=True, stdout=subprocess.DEVNULL)
    taken = time.monotonic() - begin
    shutil.rmtree(place)
    return taken


def seconds_of_ours(build, archive, folder):
    place = folder / "ours"
    place.mkdir()
    result = subprocess.run([build / "bench/update_install", build / "Orvalle.app", archive, place], check=True,
                            capture_output=True, text=True)
    shutil.rmtree(place)
    return int(result.stdout) / 1e9


class Watch:
    """Asks the program for something again and again, and weighs it, until told to stop."""

    def __init__(self, pid, item):
        self._pid = pid
        self._item = item
        self._going = True
        self.longest_wait = 0.0
        self.before = self.resident()
        self.most = self.before
        self._threads = [threading.Thread(target=target, daemon=True) for target in (self._ask, self._weigh)]
        for thread in self._threads:
            thread.start()

    def resident(self):
        """Bytes that the main process has in memory."""
        with open(f"/proc/{self._pid}/statm", encoding="ascii") as sizes:
            return int(sizes.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")

    def _ask(self):
        while self._going:
            begin = time.monotonic()
            try:
                self._item["Status"]
            except Exception:  # pylint: disable=broad-except
                return  # it has ended
            self.longest_wait = max(self.longest_wait, time.monotonic() - begin)
            time.sleep(0.005)

    def _weigh(self):
        while self._going:
            try:
                self.most = max(self.most, self.resident())
            except OSError:
                return
            time.sleep(0.01)

    def stop(self):
        self._going = False
        for thread in self._threads:
            thread.join()
        return self


def watch_update(build, site, folder):
    """Updates the real program; how it waited and weighed in quiet, and meanwhile."""
    installed = folder / "installed/Orvalle.app"
    shutil.copytree(build / "Orvalle.app", installed, symlinks=True)
    temporary = folder / "tmp"
    temporary.mkdir()
    os.environ["ORVALLE_BUILD_DIR"] = str(build)
    with Desktop(compositor=True) as desktop, Tray(desktop) as tray:
        server = DemoServer(desktop, "--updates", str(site))
        home = Home(desktop)
        environment = home.environment | {"ORVALLE_APP_URL": server.address + "/", "TMPDIR": str(temporary)}
        program = spawn([installed / "AppRun"], environment, desktop.logs / "orvalle")
        access = Accessibility(desktop, program.pid)
        access.wait_text("C'è Orvalle 9.9")
        item = tray.wait_item()
        time.sleep(10)
        quiet = Watch(program.pid, item)
        time.sleep(5)
        quiet.stop()
        meanwhile = Watch(program.pid, item)
        access.press("push button", "Aggiorna e riavvia")
        wait_for("the script", lambda: list(temporary.glob("orvalle-scambio-*")), 120, pause=0.01)
        meanwhile.stop()
        if program.wait(60) != 0:
            sys.exit("bench: the program did not end in order")
        newer = wait_for("the newer program", lambda: processes_of(installed), 60)
        desktop.windows.wait(newer[0], "Orvalle")
        wait_for("an empty temporary folder", lambda: not list(temporary.iterdir()), 60)
        subprocess.run([installed / "AppRun", "--quit"], env=environment, check=True)
        wait_for("its end", lambda: not processes_of(installed), 20)
        server.stop()
    return quiet, meanwhile


def measure_update(build):
    # Where people keep their files, not in memory.
    with tempfile.TemporaryDirectory(dir=build) as name:
        folder = pathlib.Path(name)
        site = make_large(build / "Orvalle.app", folder)
        archive = site / "Orvalle-99.zip"
        times = {"peer": [], "ours": []}
        for _ in range(ROUNDS):
            times["peer"].append(seconds_of_peer(archive, folder))
            times["ours"].append(seconds_of_ours(build, archive, folder))
        middle = {who: statistics.median(values) for who, values in times.items()}
        print(f"update  a package of {PACKAGE // MEGABYTE} MB, listed, unpacked and verified, median of {ROUNDS}: bsdtar "
              f"and sha256sum {middle['peer']:.2f} s, Orvalle {middle['ours']:.2f} s, ratio "
              f"{middle['ours'] / middle['peer']:.2f} (at most 1.3)", flush=True)
        quiet, meanwhile = watch_update(build, site, folder)
    print(f"        the program meanwhile: memory {(meanwhile.most - meanwhile.before) / MEGABYTE:.1f} MB more (at most 20), "
          f"longest wait for an answer {meanwhile.longest_wait * 1000:.0f} ms (at most 100; "
          f"{quiet.longest_wait * 1000:.0f} ms in quiet)")
