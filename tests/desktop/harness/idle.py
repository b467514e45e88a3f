"""The desktop's service that knows how long nobody has touched anything."""

import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .tray import connect  # noqa: E402

NAME = "org.freedesktop.ScreenSaver"
INTERFACE = """<node><interface name="org.freedesktop.ScreenSaver">
  <method name="GetSessionIdleTime"><arg type="u" direction="out"/></method>
</interface></node>"""


class IdleService:
    """Says that nobody has touched anything for `seconds`, and counts how often it was `asked`. Use as a context
    manager. It answers on a thread of its own."""

    def __init__(self, desktop):
        self._desktop = desktop
        self.seconds = 0.0
        self.asked = 0

    def __enter__(self):
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop(self._context)
        ready = threading.Event()
        self._thread = threading.Thread(target=self._serve, args=(ready,), daemon=True)
        self._thread.start()
        assert ready.wait(10), "the service did not start"
        return self

    def __exit__(self, *_):
        self._bus.close_sync(None)
        GLib.MainContext.invoke_full(self._context, GLib.PRIORITY_DEFAULT, self._quit)
        self._thread.join(10)

    def _quit(self, *_):
        self._loop.quit()
        return False

    def _serve(self, ready):
        self._context.push_thread_default()
        self._bus = connect(self._desktop)
        self._bus.register_object("/ScreenSaver", Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], self._call,
                                  None, None)
        self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                            GLib.Variant("(su)", (NAME, 4)), None, 0, -1, None)
        ready.set()
        self._loop.run()
        self._context.pop_thread_default()

    def _call(self, _connection, _sender, _path, _interface, _method, _parameters, invocation):
        self.asked += 1
        invocation.return_value(GLib.Variant("(u)", (int(self.seconds * 1000),)))
