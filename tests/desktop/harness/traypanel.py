"""The tray of the desktop's panel, used with the mouse."""

import time

from gi.repository import GLib

from . import processes
from .menus import ANSWER_MS
from .tray import WATCHER, Item, connect
from .windows import Window

# How the panel's theme draws a menu, in the font of these desktops.
ROW, PADDING = 25, 4


class TrayPanel:
    """The first status item in the panel of a desktop that has one."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._bus = connect(desktop)

    def _registered(self):
        return self._bus.call_sync(WATCHER, "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties", "Get",
                                   GLib.Variant("(ss)", (WATCHER, "RegisteredStatusNotifierItems")), None, 0, ANSWER_MS,
                                   None).unpack()[0]

    def item(self):
        """The item over the bus, to know what the menu must be showing."""
        name, _, path = self._registered()[0].partition("/")
        return Item(self._desktop, name, "/" + path)

    def _tray_windows(self):
        found = self._desktop.run("xdotool", "search", "--onlyvisible", "--class", "^Wrapper-2.0$", check=False)
        return [Window(self._desktop, identifier) for identifier in found.split()]

    def icon(self):
        """The box of the tray's one icon on the screen; none when there is none."""
        boxes = [window.frame for window in self._tray_windows()]
        return next((box for box in boxes if box.y == 0 and box.width > ROW and self._registered()), None)

    def wait_icon(self, seconds=40.0):
        """The middle of the icon, as soon as it is there."""
        return processes.wait_for("icon in the panel", self.icon, seconds, pause=0.2).middle

    def menu_window(self):
        """The window of the open menu; none while it is closed."""
        return next((window for window in self._tray_windows() if window.frame.height > 2 * ROW), None)

    def open_menu(self):
        """Clicks on the icon once; the menu's window."""
        self._desktop.hand.click(*self.wait_icon())
        return processes.wait_for("the tray menu", self.menu_window)

    def close_menu(self):
        self._desktop.hand.key("Escape")
        processes.wait_for("the tray menu closed", lambda: self.menu_window() is None)
        # The panel takes a moment more to let go of the pointer: a click now would only end that.
        time.sleep(0.7)

    def rows(self):
        """The texts of the visible rows; "—" for a separator."""
        return self.item().menu.shown()

    def place(self, text):
        """Where in the open menu the row with this text is."""
        rows = self.rows()
        # Not seen for a moment while it changes.
        box = processes.wait_for("the tray menu", self.menu_window).frame
        lines = rows.count("—")
        line = (box.height - 2 * PADDING - ROW * (len(rows) - lines)) / lines
        assert 1 <= line <= 15, f"a menu of {box.height} pixels with the rows {rows}"
        above = rows[:rows.index(text)]
        top = PADDING + sum(line if row == "—" else ROW for row in above)
        return box.x + box.width // 2, round(box.y + top + ROW / 2)

    def choose(self, text):
        """Clicks on a row of the open menu."""
        self._desktop.hand.click(*self.place(text))
        processes.wait_for("the tray menu closed", lambda: self.menu_window() is None)
