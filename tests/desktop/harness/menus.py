"""A tray menu as a host sees it: the dbusmenu protocol."""

import dataclasses
import time

import gi

gi.require_version("Gio", "2.0")
from gi.repository import GLib  # noqa: E402

from .processes import wait_for  # noqa: E402

# How long a call may take: with sanitizers, exact stacks and ten thousand rows an answer takes its time.
ANSWER_MS = 60000

INTERFACE = "com.canonical.dbusmenu"


@dataclasses.dataclass
class Row:
    id: int
    properties: dict
    rows: list

    @property
    def text(self):
        """The label as the user reads it: a single underscore marks the next letter, a double one is one."""
        label, out, at = self.properties.get("label", ""), "", 0
        while at < len(label):
            if label[at] == "_":
                at += 1
            out += label[at:at + 1]
            at += 1
        return out

    @property
    def separator(self):
        return self.properties.get("type") == "separator"

    @property
    def enabled(self):
        return self.properties.get("enabled", True)

    @property
    def visible(self):
        return self.properties.get("visible", True)

    @property
    def checked(self):
        return self.properties.get("toggle-state", -1) == 1

    @property
    def shortcut(self):
        return self.properties.get("shortcut", [])


class TrayMenu:
    """The menu of a status item."""

    def __init__(self, bus, name, path):
        self._bus = bus
        self._name = name
        self._path = path

    def _call(self, method, arguments):
        return self._bus.call_sync(self._name, self._path, INTERFACE, method, arguments, None, 0, ANSWER_MS,
                                   None).unpack()

    def layout(self):
        """The revision and the root row with everything below it."""
        revision, root = self._call("GetLayout", GLib.Variant("(iias)", (0, -1, [])))
        return revision, self._row(root)

    def _row(self, node):
        identifier, properties, rows = node
        return Row(identifier, properties, [self._row(row) for row in rows])

    def rows(self):
        return self.layout()[1].rows

    def shown(self):
        """The texts of the visible rows; "—" for a separator."""
        return ["—" if row.separator else row.text for row in self.rows() if row.visible]

    def row(self, text):
        """The one row with this text, visible or not."""
        found = [row for row in self.rows() if row.text == text]
        assert len(found) == 1, f"{len(found)} rows say {text!r}: {[row.text for row in self.rows()]}"
        return found[0]

    def wait_row(self, text, seconds=60.0):
        """Waits until a visible row has this text."""
        wait_for(f"menu row {text!r}", lambda: text in self.shown(), seconds, pause=0.05)
        return self.row(text)

    def event(self, identifier, kind):
        self._call("Event", GLib.Variant("(isvu)", (identifier, kind, GLib.Variant("i", 0), int(time.time()))))

    def open(self):
        """What a host does before it shows the menu."""
        self._call("AboutToShow", GLib.Variant("(i)", (0,)))
        self.event(0, "opened")

    def close(self):
        self.event(0, "closed")

    def click(self, text):
        """Chooses a row as a host does."""
        self.event(self.row(text).id, "clicked")
