"""The machine's own bus with the service that knows when it goes to sleep."""

import os

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from . import processes  # noqa: E402
from .desktop import BUS_CONFIG  # noqa: E402
from .service_thread import ServiceThread  # noqa: E402

LOGIN = "org.freedesktop.login1"
PATH = "/org/freedesktop/login1"
SESSION = "/org/freedesktop/login1/session/_31"
INTERFACE = """<node><interface name="org.freedesktop.login1.Manager">
  <method name="Inhibit">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="h" direction="out"/>
  </method>
  <method name="GetSession"><arg type="s" direction="in"/><arg type="o" direction="out"/></method>
  <signal name="PrepareForSleep"><arg type="b"/></signal>
</interface></node>"""


class Delay:
    """A program's wish for a moment before the machine sleeps, held as long as it keeps its end of a pipe open."""

    def __init__(self, wish, reading):
        self.wish = wish
        self._reading = reading
        os.set_blocking(reading, False)

    def held(self):
        try:
            return os.read(self._reading, 1) != b""
        except BlockingIOError:
            return True


class LoginManager:
    """Use as a context manager. Answers on a thread of its own."""

    def __init__(self, desktop):
        self._desktop = desktop
        self.delays = []

    def __enter__(self):
        socket = self._desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"].removeprefix("unix:path=")
        config = self._desktop.folder / "system-bus.conf"
        config.write_text(BUS_CONFIG.format(socket=socket, services=self._desktop.folder / "no-services"),
                          encoding="utf-8")
        self._bus = self._desktop.spawn("system-bus",
                                        ["dbus-daemon", f"--config-file={config}", "--nofork", "--nopidfile"])
        processes.wait_for("system bus", lambda: os.path.exists(socket))
        self._socket = socket
        self._thread = ServiceThread(self._serve)
        return self

    def __exit__(self, *_):
        self._thread.end()
        self._connection.close_sync(None)
        self._desktop.end(self._bus)
        if os.path.exists(self._socket):
            os.unlink(self._socket)

    def _serve(self):
        self._connection = Gio.DBusConnection.new_for_address_sync(
            self._desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self._connection.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], self._call, None,
                                         None)
        self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                   "RequestName", GLib.Variant("(su)", (LOGIN, 4)), None, 0, -1, None)

    def _call(self, connection, sender, path, interface, method, parameters, invocation):
        if method == "GetSession":
            invocation.return_value(GLib.Variant("(o)", (SESSION,)))
            return
        reading, writing = os.pipe()
        files = Gio.UnixFDList.new_from_array([writing])
        self.delays.append(Delay(parameters.unpack(), reading))
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), files)

    def _emit(self, path, interface, signal, parameters):
        self._connection.emit_signal(None, path, interface, signal, parameters)
        self._connection.flush_sync(None)

    def sleep(self):
        """The machine is about to sleep."""
        self._emit(PATH, LOGIN + ".Manager", "PrepareForSleep", GLib.Variant("(b)", (True,)))

    def wake(self):
        self._emit(PATH, LOGIN + ".Manager", "PrepareForSleep", GLib.Variant("(b)", (False,)))

    def lock(self, locked):
        """The screen of the user's session is locked or unlocked."""
        self._emit(SESSION, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                   GLib.Variant("(sa{sv}as)", (LOGIN + ".Session", {"LockedHint": GLib.Variant("b", locked)}, [])))
