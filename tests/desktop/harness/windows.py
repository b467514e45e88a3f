"""Windows on the screen, and the hand on mouse and keyboard."""

import dataclasses
import re
import time

from .processes import wait_for


@dataclasses.dataclass(frozen=True)
class Box:
    x: int
    y: int
    width: int
    height: int

    @property
    def middle(self):
        return self.x + self.width // 2, self.y + self.height // 2

    def point(self, x, y):
        """The place on the screen that is (x, y) in the box; negative numbers count from the far edge."""
        return (self.x + (x if x >= 0 else self.width + x), self.y + (y if y >= 0 else self.height + y))

    def within(self, left, right, top, bottom):
        """The box without its margins."""
        return Box(self.x + left, self.y + top, self.width - left - right, self.height - top - bottom)


class Window:
    """A top-level window, known by its X identifier."""

    def __init__(self, desktop, identifier):
        self._desktop = desktop
        self.id = int(identifier)

    def __eq__(self, other):
        return isinstance(other, Window) and other.id == self.id

    def __hash__(self):
        return hash(self.id)

    def __repr__(self):
        return f"<Window {self.id:#x} {self.title!r}>"

    def x_property(self, name):
        """A property's value as xprop writes it; empty when it is not set."""
        text = self._desktop.run("xprop", "-id", str(self.id), name, check=False)
        for separator in (" = ", "# ", ":\n"):
            if separator in text:
                return text.split(separator, 1)[1].strip()
        return ""

    @property
    def title(self):
        return self._desktop.run("xdotool", "getwindowname", str(self.id), check=False).strip()

    @property
    def states(self):
        return {state.strip() for state in self.x_property("_NET_WM_STATE").split(",") if state.strip()}

    @property
    def frame(self):
        """The window with its invisible borders; a box without a size when it is gone."""
        text = self._desktop.run("xwininfo", "-id", str(self.id), check=False)
        numbers = re.findall(r"(?:Absolute upper-left [XY]|Width|Height):\s*(-?\d+)", text)
        return Box(*(int(number) for number in numbers)) if len(numbers) == 4 else Box(0, 0, 0, 0)

    @property
    def box(self):
        """The window without the shadow that it draws itself."""
        extents = [int(number) for number in re.findall(r"\d+", self.x_property("_GTK_FRAME_EXTENTS"))]
        return self.frame.within(*extents) if len(extents) == 4 else self.frame

    def visible(self):
        """Whether the window is mapped; false too when it is gone."""
        return "IsViewable" in self._desktop.run("xwininfo", "-id", str(self.id), check=False)

    def minimised(self):
        return "_NET_WM_STATE_HIDDEN" in self.states

    def active(self):
        """Whether the window has the focus, as the window manager tells it."""
        return self._desktop.windows.active() == self

    def activate(self):
        """Brings the window to the front, as a click in a window list does."""
        self._desktop.run("xdotool", "windowactivate", "--sync", str(self.id))

    def close(self):
        """Asks the window to close, as the window manager does."""
        self._desktop.run("wmctrl", "-i", "-c", f"{self.id:#x}")

    def resize(self, width, height):
        """Gives the window, borders included, a size."""
        self._desktop.run("xdotool", "windowsize", "--sync", str(self.id), str(width), str(height))

    def wait_visible(self, seconds=60.0):
        wait_for(f"{self!r} shown", self.visible, seconds)

    def wait_hidden(self, seconds=60.0):
        wait_for(f"{self!r} hidden", lambda: not self.visible(), seconds)

    def wait_active(self, seconds=60.0):
        wait_for(f"{self!r} in front", self.active, seconds)


class Windows:
    """The windows of a desktop."""

    def __init__(self, desktop):
        self._desktop = desktop

    def of(self, pid, title=None):
        """The visible top-level windows of a process, all or those with this title."""
        found = self._desktop.run("xdotool", "search", "--all", "--onlyvisible", "--pid", str(pid), "--name",
                                  f"^{title}$" if title is not None else "", check=False)
        return [Window(self._desktop, identifier) for identifier in found.split()]

    def wait(self, pid, title, seconds=60.0):
        """The one visible window with this title, as soon as it is there."""
        return wait_for(f'window "{title}"', lambda: self.of(pid, title), seconds)[0]

    def active(self):
        """The window in front; none when the desktop is."""
        text = self._desktop.run("xprop", "-root", "_NET_ACTIVE_WINDOW", check=False)
        found = re.search(r"# (0x[0-9a-f]+)", text)
        return Window(self._desktop, int(found.group(1), 16)) if found and int(found.group(1), 16) else None


class Hand:
    """Moves the mouse and presses buttons and keys as a person does, at a person's pace."""

    def __init__(self, desktop):
        self._desktop = desktop

    def _xdotool(self, *words):
        self._desktop.run("xdotool", *(str(word) for word in words))

    def move(self, x, y):
        self._xdotool("mousemove", x, y)

    def click(self, x, y, button=1):
        self._xdotool("mousemove", x, y, "sleep", 0.05, "click", button)

    def double_click(self, x, y):
        self._xdotool("mousemove", x, y, "sleep", 0.05, "click", "--repeat", 2, "--delay", 80, 1)

    def triple_click(self, x, y):
        self._xdotool("mousemove", x, y, "sleep", 0.05, "click", "--repeat", 3, "--delay", 80, 1)

    def drag(self, start, stop, steps=12):
        """Presses at `start`, moves in small steps to `stop`, releases there."""
        self._xdotool("mousemove", *start, "sleep", 0.05, "mousedown", 1)
        for step in range(1, steps + 1):
            point = [round(a + (b - a) * step / steps) for a, b in zip(start, stop)]
            self._xdotool("mousemove", *point)
            time.sleep(0.02)
        self._xdotool("sleep", 0.1, "mouseup", 1)

    def key(self, *keys):
        """Presses keys one after the other: names such as "ctrl+o" or codes of physical keys."""
        self._xdotool("key", "--clearmodifiers", "--delay", 60, *keys)

    def physical(self, code, *held):
        """Presses the key with this code while others, by name, are held down."""
        words = [word for name in held for word in ("keydown", name)]
        words += ["key", code]
        words += [word for name in reversed(held) for word in ("keyup", name)]
        self._xdotool(*words)

    def type(self, text):
        self._xdotool("type", "--delay", 30, text)

    def layout(self, name):
        """Changes the keyboard's layout: "us" or "it"."""
        self._desktop.run("setxkbmap", name)
        time.sleep(0.3)  # programs learn of it by an event of their own
