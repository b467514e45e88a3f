"""The menu bar that the program gives to desktops which show it outside the windows, as such a desktop reads it."""

import dataclasses

import gi

gi.require_version("Gio", "2.0")
from gi.repository import GLib  # noqa: E402

from .menus import ANSWER_MS  # noqa: E402
from .tray import connect  # noqa: E402


@dataclasses.dataclass(frozen=True)
class ExportedRow:
    label: str
    action: str
    accelerator: str


class ExportedMenu:
    """Finds the menu bar and its actions by what the window says about them."""

    def __init__(self, desktop, window):
        def told(name):
            return window.x_property(name).strip('"')
        self._bus = connect(desktop)
        self._name = told("_GTK_UNIQUE_BUS_NAME")
        self._bar = told("_GTK_MENUBAR_OBJECT_PATH")
        self._application = told("_GTK_APPLICATION_OBJECT_PATH")

    def _call(self, path, interface, method, arguments):
        return self._bus.call_sync(self._name, path, interface, method, arguments, None, 0, ANSWER_MS, None).unpack()

    def _items(self, place):
        """The items of one menu of a group of menus."""
        group, number = place
        menus, = self._call(self._bar, "org.gtk.Menus", "Start", GLib.Variant("(au)", ([group],)))
        return next((items for found, menu, items in menus if (found, menu) == (group, number)), [])

    def _menus(self):
        return [(item["label"], item[":submenu"]) for item in self._items((0, 0))]

    def titles(self):
        return [title for title, _ in self._menus()]

    def sections(self, title):
        """The rows of a menu of the bar between its separators."""
        place, = (place for name, place in self._menus() if name == title)
        return [[ExportedRow(item["label"], item["action"], item.get("accel", "")) for item in self._items(section)]
                for section in (item[":section"] for item in self._items(place))]

    def row(self, title, label):
        """The one row of a menu with this label."""
        row, = (row for section in self.sections(title) for row in section if row.label == label)
        return row

    def usable(self, row):
        """Whether the row can be chosen."""
        (enabled, _, _), = self._call(self._application, "org.gtk.Actions", "Describe",
                                      GLib.Variant("(s)", (row.action.removeprefix("app."),)))
        return enabled

    def activate(self, row):
        """Chooses the row."""
        self._call(self._application, "org.gtk.Actions", "Activate",
                   GLib.Variant("(sava{sv})", (row.action.removeprefix("app."), [], {})))
