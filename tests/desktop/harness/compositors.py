"""The session of the Wayland compositor that a test runs in, with a bus of its own, and its mouse."""

import contextlib
import json
import os
import pathlib
import re
import subprocess
import time

from . import processes
from .desktop import BUS_CONFIG, Desktop
from .program import build_folder
from .windows import Box, Window


# The kernel's numbers.
CONTROL_KEY = 29
LETTER_KEYS = {"c": 46, "v": 47}


class _Compositor(Desktop):
    # The variables of the compositor's that its programs need too.
    _inherited = ()
    # Whether the compositor takes what `mouse` does for the user's input, and tells its programs of that.
    knows_of_input = True
    # Whether a program without a window can copy and paste.
    lets_copy = False

    def _start(self):
        self.folder.chmod(0o755)
        for name in ("logs", "tmp", "services"):
            (self.folder / name).mkdir(mode=0o700)
        self.environment = {name: os.environ[name] for name in ("PATH", "XDG_RUNTIME_DIR", "WAYLAND_DISPLAY", *self._inherited)}
        self.environment |= {"TMPDIR": str(self.folder / "tmp"), "GSETTINGS_BACKEND": "keyfile", "LANG": "C.UTF-8",
                             "ORVALLE_WAYLAND_TEST": str(self.folder),
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
        return f"ORVALLE_WAYLAND_TEST={self.folder}"

    def screen(self):
        """The size of the only output."""
        raise NotImplementedError

    def window(self, pid):
        """The program's main window as a dictionary of "name", "application" and "focused"; nothing while it has none."""
        raise NotImplementedError

    def fill_screen(self, pid):
        """Has the program's main window take the whole screen."""
        raise NotImplementedError

    def close_window(self, pid):
        """Closes the program's main window as its user does."""
        raise NotImplementedError

    def control(self, letter):
        """Presses a letter with the control key."""
        raise NotImplementedError

    def copy(self, text):
        """Another program copies the text."""
        self.spawn("wl-copy", ["wl-copy", "--foreground", "--", text])
        processes.wait_for("the copied text", lambda: self.pasted() == text)

    def pasted(self):
        """The copied text as another program gets it."""
        return self.run("wl-paste", "--no-newline", check=False)

    def mouse(self):
        """A mouse, plugged in while it is used as a context manager."""
        return _Mouse(self)

    def _pixels(self):
        """What the screen shows, row by row, four bytes a pixel."""
        raise NotImplementedError

    def overlay_is_at(self, left, top, width, height):
        """Whether the overlay lies there, above the program's main window."""
        # Dark everywhere at its ends, where no text is, and light beside it.
        pixels = self._pixels()
        across = self.screen()[0]

        def light(x, y):
            offset = 4 * (y * across + x)
            return sum(sorted(pixels[offset:offset + 4])[:3]) / 3
        middle = top + height // 2
        return light(left + 5, middle) < 90 and light(left + width - 6, middle) < 90 and \
            light(left - 4, middle) > 160 and light(left + width + 4, middle) > 160


class Sway(_Compositor):
    """sway, of wlroots."""

    _inherited = ("SWAYSOCK",)
    lets_copy = True

    def screen(self):
        area = json.loads(self.run("swaymsg", "-t", "get_outputs"))[0]["rect"]
        return area["width"], area["height"]

    def window(self, pid):
        node = self._node(pid)
        return node and {"name": node["name"], "application": node["app_id"], "focused": node["focused"]}

    def fill_screen(self, pid):
        """Does nothing: a single window has the whole screen."""

    def close_window(self, pid):
        self.run("swaymsg", f"[con_id={self._node(pid)['id']}] kill")

    def control(self, letter):
        # The keyboard is plugged in for this alone, which takes programs a moment to see.
        self.run("wtype", "-s", "500", "-M", "ctrl", letter, "-m", "ctrl", "-s", "500")

    def _node(self, pid):
        found = []

        def walk(node):
            if node.get("pid") == pid and node["visible"]:
                found.append(node)
            for child in node.get("nodes", []) + node.get("floating_nodes", []):
                walk(child)
        walk(json.loads(self.run("swaymsg", "-t", "get_tree")))
        return found[0] if found else None

    def _pixels(self):
        picture = self.folder / "screen.ppm"
        self.run("grim", "-t", "ppm", str(picture))
        data = picture.read_bytes()
        kind, width, height = data.split(maxsplit=3)[:3]
        assert kind == b"P6"
        data = data[-3 * int(width) * int(height):]
        pixels = bytearray(4 * int(width) * int(height))
        for channel in range(3):
            pixels[channel::4] = data[channel::3]
        pixels[3::4] = b"\xff" * (len(pixels) // 4)
        return pixels


class KWin(_Compositor):
    """KDE's, which is asked and told by scripts that it runs."""

    lets_copy = True

    def __init__(self):
        super().__init__()
        self._bus = {"DBUS_SESSION_BUS_ADDRESS": os.environ["DBUS_SESSION_BUS_ADDRESS"]}
        self._log = pathlib.Path(os.environ["ORVALLE_COMPOSITOR_LOG"])
        self._scripts = 0

    def screen(self):
        return 1280, 720

    def window(self, pid):
        return self._window(pid, "window && {name: window.caption, application: String(window.resourceClass), focused: window.active}")

    def fill_screen(self, pid):
        self._window(pid, "window.setMaximize(true, true)")

    def close_window(self, pid):
        self._window(pid, "window.closeWindow()")

    def control(self, letter):
        with self.mouse() as hand:
            hand.chord(CONTROL_KEY, LETTER_KEYS[letter])

    def _window(self, pid, expression):
        """What a script's expression gives for the program's main window, which it knows as `window`."""
        return self._script(f"""
            const window = workspace.clientList().find(client => client.pid === {pid} && client.normalWindow);
            answer(({expression}) || null);""")

    def _call(self, path, method, *arguments):
        return self.run("gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path", path, "--method", method,
                        *arguments, env=self.environment | self._bus)

    def _script(self, text):
        """Runs a script in the compositor; what it gave to its function `answer`."""
        self._scripts += 1
        name = f"{self.folder.name}-{self._scripts}"
        path = self.folder / "script.js"
        path.write_text(f"const answer = value => console.info('{name} ' + JSON.stringify(value));{text}", encoding="utf-8")
        number = self._call("/Scripting", "org.kde.kwin.Scripting.loadScript", str(path), name).strip("(,)\n")
        self._call(f"/{number}", "org.kde.kwin.Script.run")

        def answer():
            return next((line.partition(f"{name} ")[2] for line in self._log.read_text(errors="replace").splitlines()
                         if f"{name} " in line), None)
        found = processes.wait_for("the script's answer", answer)
        self._call("/Scripting", "org.kde.kwin.Scripting.unloadScript", name)
        return json.loads(found)

    def _pixels(self):
        # The picture comes through a pipe, which only a program of its own can wait at while it asks.
        return subprocess.run([pathlib.Path(__file__).parent / "kwin_picture.py"], env=self.environment | self._bus,
                              capture_output=True, check=True, timeout=30).stdout


class Mutter(_Compositor):
    """GNOME's, under which the program is one of the X server that stands beside."""

    _inherited = ("DISPLAY", "XAUTHORITY")
    knows_of_input = False

    def screen(self):
        return 1280, 720

    def window(self, pid):
        found = self._window(pid)
        return found and {"name": found.title, "application": found.x_property("WM_CLASS").split('"')[1],
                          "focused": found.active()}

    def fill_screen(self, pid):
        self.run("wmctrl", "-i", "-r", f"{self._window(pid).id:#x}", "-b", "add,maximized_vert,maximized_horz")

    def close_window(self, pid):
        self._window(pid).close()

    def mouse(self):
        return contextlib.nullcontext(self.hand)

    def overlay_is_at(self, left, top, width, height):
        stacked = re.findall(r"0x[0-9a-f]+", self.run("xprop", "-root", "_NET_CLIENT_LIST_STACKING"))
        return bool(stacked) and Window(self, int(stacked[-1], 16)).box == Box(left, top, width, height)

    def _window(self, pid):
        return next((window for window in self.windows.of(pid) if "NORMAL" in window.x_property("_NET_WM_WINDOW_TYPE")), None)


class _Mouse:

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

    def chord(self, *keys):
        """Presses keys, given by their numbers in the kernel, one after the other, and lets them go."""
        for key in keys:
            self._do("down", key)
        for key in reversed(keys):
            self._do("up", key)

    def drag(self, start, end, steps=10):
        """Presses at the one place, goes to the other in so many steps, and lets go."""
        self.move(*start)
        time.sleep(0.3)
        self._do("press")
        for step in range(1, steps + 1):
            self.move(*(round(a + (b - a) * step / steps) for a, b in zip(start, end)))
            time.sleep(0.05)
        self._do("release")


def current():
    """The compositor that we run in; nothing where in_compositor did not start us."""
    found = {"sway": Sway, "kwin": KWin, "mutter": Mutter}.get(os.environ.get("ORVALLE_COMPOSITOR"))
    return found and found()
