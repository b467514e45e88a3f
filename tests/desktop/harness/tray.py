"""The place where status items live: a watcher and host of the tests' own, which remembers everything it is told."""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .menus import ANSWER_MS, TrayMenu  # noqa: E402
from .processes import wait_for  # noqa: E402
from .service_thread import ServiceThread  # noqa: E402

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
INTERFACE = """<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
  <signal name="StatusNotifierHostRegistered"/>
  <signal name="StatusNotifierHostUnregistered"/>
</interface></node>"""


def connect(desktop):
    """A connection of its own to the desktop's bus."""
    return Gio.DBusConnection.new_for_address_sync(
        desktop.environment["DBUS_SESSION_BUS_ADDRESS"],
        Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)


class Tray:
    """Use as a context manager, or `start` and `stop` it to see what the program does without one. It answers on a
    thread of its own, whatever the test is doing meanwhile. Without `hosted` it keeps the list of items and nobody
    draws them."""

    def __init__(self, desktop, hosted=True):
        self._desktop = desktop
        self._hosted = hosted
        self.registrations = []
        self._thread = None

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.stop()

    def start(self):
        """Appears on the bus."""
        self._thread = ServiceThread(self._serve)

    def stop(self):
        """Leaves the bus with everything it knew."""
        if self._thread:
            self._connection.close_sync(None)
            self._thread.end()
            self._thread = None
        self.registrations.clear()

    def _serve(self):
        self._connection = connect(self._desktop)
        self._connection.register_object("/StatusNotifierWatcher",
                                         Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], self._call,
                                         self._get, None)
        self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                   "RequestName", GLib.Variant("(su)", (WATCHER, 4)), None, 0, -1, None)

    def _call(self, connection, sender, path, interface, method, parameters, invocation):
        if method == "RegisterStatusNotifierItem":
            given = parameters.unpack()[0]
            name, where = (sender, given) if given.startswith("/") else (given, "/StatusNotifierItem")
            self.registrations.append((name, where))
            connection.emit_signal(None, path, interface, "StatusNotifierItemRegistered",
                                   GLib.Variant("(s)", (name + where,)))
        invocation.return_value(None)

    def _get(self, connection, sender, path, interface, name):
        return {"RegisteredStatusNotifierItems": GLib.Variant("as", [a + b for a, b in self.registrations]),
                "IsStatusNotifierHostRegistered": GLib.Variant("b", self._hosted),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]

    def host(self, hosted):
        """A host comes or goes."""
        self._hosted = hosted
        self._connection.emit_signal(None, "/StatusNotifierWatcher", WATCHER,
                                     f"StatusNotifierHost{'R' if hosted else 'Unr'}egistered", None)

    def wait_item(self, seconds=60.0):
        """The item of the first program that registers."""
        wait_for("status item", lambda: self.registrations, seconds)
        return Item(self._desktop, *self.registrations[-1])


class Item:
    """A program's status item as a host sees it."""

    def __init__(self, desktop, name, path):
        self.name = name
        self.path = path
        self._bus = connect(desktop)
        self.menu = TrayMenu(self._bus, name, self["Menu"])

    @property
    def owner(self):
        """The unique name of the program's connection."""
        return self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                   "GetNameOwner", GLib.Variant("(s)", (self.name,)), None, 0, ANSWER_MS,
                                   None).unpack()[0]

    def _properties(self, method, arguments):
        return self._bus.call_sync(self.name, self.path, "org.freedesktop.DBus.Properties", method, arguments, None,
                                   0, ANSWER_MS, None).unpack()[0]

    def __getitem__(self, name):
        return self._properties("Get", GLib.Variant("(ss)", (ITEM, name)))

    def properties(self):
        return self._properties("GetAll", GLib.Variant("(s)", (ITEM,)))

    def activate(self):
        """What a host does on a click where the item does not open its menu."""
        self._bus.call_sync(self.name, self.path, ITEM, "Activate", GLib.Variant("(ii)", (0, 0)), None, 0, ANSWER_MS,
                            None)

    def wait(self, name, condition, seconds=60.0):
        """Waits until the property's value fulfils the condition; the value."""
        wait_for(f"item's {name}", lambda: condition(self[name]), seconds, pause=0.05)
        return self[name]
