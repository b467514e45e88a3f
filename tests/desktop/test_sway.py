"""The whole program under a Wayland compositor with layers; run inside one by in_sway."""

import json
import os
import subprocess
import time

import pytest

from harness import processes
from harness.desktop import BUS_CONFIG, Desktop
from harness.page import session
from harness.processes import stays, wait_for
from harness.program import build_folder

WIDTH, HEIGHT = 190, 38


class SwayDesktop(Desktop):
    """The compositor's session that we run in, with a bus of its own."""

    def _start(self):
        self.folder.chmod(0o755)
        for name in ("logs", "tmp", "services"):
            (self.folder / name).mkdir(mode=0o700)
        self.environment = {name: os.environ[name] for name in ("PATH", "XDG_RUNTIME_DIR", "WAYLAND_DISPLAY", "SWAYSOCK")}
        self.environment |= {"TMPDIR": str(self.folder / "tmp"), "GSETTINGS_BACKEND": "keyfile", "LANG": "C.UTF-8",
                             "ORVALLE_SWAY_TEST": str(self.folder),
                             "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.folder}/bus",
                             "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.folder}/no-system-bus"}
        self.environment |= self.new_home("desktop")
        config = self.folder / "bus.conf"
        config.write_text(BUS_CONFIG.format(socket=self.folder / "bus", services=self.folder / "services"),
                          encoding="utf-8")
        self.spawn("bus", ["dbus-daemon", f"--config-file={config}", "--nofork", "--nopidfile"])
        processes.wait_for("session bus", (self.folder / "bus").exists)

    @property
    def _mark(self):
        return f"ORVALLE_SWAY_TEST={self.folder}"

    def screen(self):
        """The size of the only output."""
        area = json.loads(self.run("swaymsg", "-t", "get_outputs"))[0]["rect"]
        return area["width"], area["height"]

    def window(self, pid):
        """What the compositor knows of the program's window; nothing while it has none."""
        found = []

        def walk(node):
            if node.get("pid") == pid:
                found.append(node)
            for child in node.get("nodes", []) + node.get("floating_nodes", []):
                walk(child)
        walk(json.loads(self.run("swaymsg", "-t", "get_tree")))
        return found[0] if found else None

    def is_dark(self, left, top):
        """Whether the overlay lies there: dark everywhere at its ends, where no text is, and light beside it."""
        picture = self.folder / "screen.ppm"
        self.run("grim", "-t", "ppm", str(picture))
        data = picture.read_bytes()
        kind, width, height = data.split(maxsplit=3)[:3]
        assert kind == b"P6"
        width = int(width)
        pixels = data[-3 * width * int(height):]

        def light(x, y):
            offset = 3 * (y * width + x)
            return sum(pixels[offset:offset + 3]) / 3
        middle = top + HEIGHT // 2
        return light(left + 5, middle) < 90 and light(left + WIDTH - 6, middle) < 90 and \
            light(left - 4, middle) > 160 and light(left + WIDTH + 4, middle) > 160


class Mouse:
    """Plugged in while it is used as a context manager."""

    def __init__(self, desktop):
        self._screen = desktop.screen()
        self._process = subprocess.Popen([build_folder() / "tests/desktop/wayland-pointer"], env=desktop.environment,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.communicate(timeout=20)

    def _do(self, *words):
        self._process.stdin.write(" ".join(map(str, words)) + "\n")
        self._process.stdin.flush()
        assert self._process.stdout.readline() == "done\n", "the compositor takes no mouse"

    def move(self, x, y):
        self._do("move", x, y, *self._screen)

    def drag(self, start, end, steps=10):
        """Presses at the one place, goes to the other in so many steps, and lets go."""
        self.move(*start)
        time.sleep(0.3)
        self._do("press")
        for step in range(1, steps + 1):
            self.move(*(round(a + (b - a) * step / steps) for a, b in zip(start, end)))
            time.sleep(0.05)
        self._do("release")


@pytest.fixture(scope="module")
def desktop():
    if "SWAYSOCK" not in os.environ:
        pytest.skip("not under the compositor")
    with SwayDesktop() as running:
        yield running


def test_window_shows_the_page(desktop, orvalle, page):
    found = wait_for("the window", lambda: desktop.window(orvalle.pid))
    assert found["app_id"] == "orvalle"
    assert found["name"] == "Orvalle"
    assert found["visible"]
    assert page.first_script() == {"strip": "38px", "bridge": "function"}


def test_overlay_floats_in_its_corner_while_a_session_runs(desktop, orvalle, page):
    wait_for("the window", lambda: desktop.window(orvalle.pid))
    width, _ = desktop.screen()
    assert not desktop.is_dark(width - 210, 20)
    page.push(session())
    wait_for("the overlay", lambda: desktop.is_dark(width - 210, 20))
    assert desktop.window(orvalle.pid)["focused"], "the overlay takes no focus"
    page.push(session(running=False))
    wait_for("the overlay's end", lambda: not desktop.is_dark(width - 210, 20))


def test_overlay_stands_where_the_user_left_it(desktop, home, start, page):
    _, height = desktop.screen()
    home.write_defaults({"overlayOrigin": "{100, 300}"})
    program = start()
    page.wait_loaded()
    wait_for("the window", lambda: desktop.window(program.pid))
    page.push(session())
    wait_for("the overlay", lambda: desktop.is_dark(100, height - 300 - HEIGHT))


def test_overlay_is_dragged_by_any_point_and_remembered(desktop, home, start, page):
    width, height = desktop.screen()
    program = start()
    page.wait_loaded()
    wait_for("the window", lambda: desktop.window(program.pid))
    page.push(session())
    left, top = width - 210, 20
    wait_for("the overlay", lambda: desktop.is_dark(left, top))
    with Mouse(desktop) as mouse:
        for point in ((WIDTH // 2, HEIGHT // 2), (8, HEIGHT - 8)):
            mouse.drag((left + point[0], top + point[1]), (left + point[0] - 230, top + point[1] + 170))
            left, top = left - 230, top + 170
            wait_for("the overlay where it was dragged", lambda: desktop.is_dark(left, top))
            wait_for("its place stored", lambda: home.defaults().get("overlayOrigin") == f"{{{left}, {height - top - HEIGHT}}}")
    assert desktop.window(program.pid)["focused"], "the overlay takes no focus"
    program.stop()
    start()
    page.wait_loaded(2)
    page.push(session())
    wait_for("the overlay again", lambda: desktop.is_dark(left, top))


def test_second_start_hands_over_and_ends(desktop, start, orvalle, page):
    wait_for("the window", lambda: desktop.window(orvalle.pid))
    assert start().wait(20) == 0
    assert start("orvalle://google?esito=sway").wait(20) == 0
    page.wait_command("vai", "/settings?sezione=google&esito=sway")
    stays("one program runs", orvalle.running, 1)


def test_closing_hides_the_window_and_a_second_start_shows_it(desktop, start, orvalle, site):
    found = wait_for("the window", lambda: desktop.window(orvalle.pid))
    desktop.run("swaymsg", f"[con_id={found['id']}] kill")
    wait_for("the hidden window", lambda: not desktop.window(orvalle.pid))
    assert start().wait(20) == 0
    wait_for("the window again", lambda: desktop.window(orvalle.pid))
    assert len(site.visits) == 1
