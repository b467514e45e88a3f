"""The tray of GNOME's shell, as its extension for status items behaves: one connection is watcher and host, an item is
read once and then followed by its signals alone, and the watcher leaves while the screen is locked."""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .menus import ANSWER_MS, INTERFACE  # noqa: E402
from .tray import ITEM, WATCHER, Tray  # noqa: E402


class ShellTray(Tray):
    """Whatever arrives is dealt with on the tray's own thread; the test looks at `items`, those that the shell shows."""

    def __init__(self, desktop):
        super().__init__(desktop)
        self.items = []

    def leave(self):
        """The extension is disabled: the names go, the shell stays."""
        self.host(False)
        self.registrations.clear()
        self.items.clear()
        self._name("ReleaseName", GLib.Variant("(s)", (WATCHER,)))

    def come_back(self):
        self._hosted = True
        self._name("RequestName", GLib.Variant("(su)", (WATCHER, 4)))
        self.host(True)

    def found(self, owner):
        """The objects of a connection that are status items or menus, found as the shell looks for them: by asking each
        object what is below it."""
        return list(self._walk(owner, "/"))

    def _name(self, method, arguments):
        self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                                   arguments, None, 0, ANSWER_MS, None)

    def _walk(self, owner, path):
        xml = self._connection.call_sync(owner, path, "org.freedesktop.DBus.Introspectable", "Introspect", None, None, 0,
                                         ANSWER_MS, None).unpack()[0]
        node = Gio.DBusNodeInfo.new_for_xml(xml)
        yield from ((path, one.name) for one in node.interfaces if one.name in (ITEM, INTERFACE))
        for child in node.nodes:
            yield from self._walk(owner, path.rstrip("/") + "/" + child.path)

    def _call(self, connection, sender, path, interface, method, parameters, invocation):
        super()._call(connection, sender, path, interface, method, parameters, invocation)
        if method == "RegisterStatusNotifierItem":
            item = ShellItem(connection, sender, self.registrations[-1][1])
            self.items.append(item)
            Gio.bus_watch_name_on_connection(connection, sender, 0, None, lambda *_: self._vanished(item))

    def _vanished(self, item):
        if item in self.items:
            self.items.remove(item)


class ShellItem:
    """What the shell shows of an item: `face`, its properties, and the menu's rows in `order`, each with its `rows`."""

    def __init__(self, bus, owner, path):
        self.owner = owner
        self.face = {}
        self.order = []
        self.rows = {}
        self._bus = bus
        self._item = self._proxy(path, ITEM, self._item_read, self._item_signal)
        self._menu = None

    def shown(self):
        """The texts of the visible rows; "—" for a separator. None while not everything is known."""
        if any(row not in self.rows for row in self.order):
            return None
        rows = [self.rows[row] for row in self.order]
        return ["—" if row.get("type") == "separator" else row.get("label", "").replace("__", "_") for row in rows
                if row.get("visible", True)]

    def row(self, text):
        """The number of the row with this text."""
        return next(row for row in self.order if self.rows[row].get("label") == text)

    def open(self):
        """What happens before the menu is shown; whether it must be read anew first."""
        changed = self._ask("AboutToShow", GLib.Variant("(i)", (0,))).unpack()[0]
        self._event(0, "opened")
        return changed

    def choose(self, row):
        self._event(row, "clicked")
        self._event(0, "closed")

    def _event(self, row, kind):
        self._ask("Event", GLib.Variant("(isvu)", (row, kind, GLib.Variant("i", 0), 0)))

    def _ask(self, method, arguments):
        return self._bus.call_sync(self.owner, self.face["Menu"], INTERFACE, method, arguments, None, 0, ANSWER_MS, None)

    def _proxy(self, path, interface, read, signal):
        def ready(source, result):
            proxy = Gio.DBusProxy.new_finish(result)
            proxy.connect("g-signal", lambda _proxy, _sender, name, values: signal(name, values.unpack()))
            read(proxy)
        Gio.DBusProxy.new(self._bus, Gio.DBusProxyFlags.GET_INVALIDATED_PROPERTIES, None, self.owner, path, interface,
                          None, ready)

    def _item_read(self, proxy):
        self._item = proxy
        self.face = {name: proxy.get_cached_property(name).unpack() for name in proxy.get_cached_property_names()}
        self._proxy(self.face["Menu"], INTERFACE, self._menu_read, self._menu_signal)

    def _item_signal(self, name, values):
        told = {"NewStatus": ["Status"], "XAyatanaNewLabel": ["XAyatanaLabel", "XAyatanaLabelGuide"]}
        if name in told:
            self.face |= dict(zip(told[name], values))
            return
        changed = name.replace("New", "", 1)
        for known in [changed, changed + "Name", changed + "Pixmap"]:
            if known in self.face:
                self._item.call("org.freedesktop.DBus.Properties.Get", GLib.Variant("(ss)", (ITEM, known)), 0, ANSWER_MS,
                                None, self._property_read, known)

    def _property_read(self, proxy, result, name):
        self.face[name] = proxy.call_finish(result).unpack()[0]

    def _menu_read(self, proxy):
        self._menu = proxy
        self._read_layout()

    def _menu_signal(self, name, values):
        if name == "LayoutUpdated":
            self._read_layout()
        elif name == "ItemsPropertiesUpdated":
            changed, removed = values
            for row, properties in changed:
                self.rows.setdefault(row, {}).update(properties)
            for row, names in removed:
                for gone in names:
                    self.rows.get(row, {}).pop(gone, None)

    def _read_layout(self):
        self._menu.call("GetLayout", GLib.Variant("(iias)", (0, -1, ["type", "children-display"])), 0, ANSWER_MS, None,
                        self._layout_read)

    def _layout_read(self, proxy, result):
        _revision, (_root, _properties, children) = proxy.call_finish(result).unpack()
        self.order = [row for row, _, _ in children]
        self.rows = {row: properties for row, properties in self.rows.items() if row in self.order}
        new = [row for row in self.order if row not in self.rows]
        if new:
            proxy.call("GetGroupProperties", GLib.Variant("(aias)", (new, [])), 0, ANSWER_MS, None, self._rows_read)

    def _rows_read(self, proxy, result):
        self.rows |= dict(proxy.call_finish(result).unpack()[0])
