"""Services of a desktop that the tests play on the session's bus."""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .service_thread import ServiceThread  # noqa: E402
from .tray import connect  # noqa: E402


class _BusService:
    """One object with one interface. Use as a context manager. It answers on a thread of its own."""

    NAME = PATH = INTERFACE = ""

    def __init__(self, desktop):
        self._desktop = desktop

    def __enter__(self):
        self._thread = ServiceThread(self._serve)
        return self

    def __exit__(self, *_):
        self._bus.close_sync(None)
        self._thread.end()

    def answer(self, arguments):
        """What a call with these arguments gets; nothing where it gets no value."""
        raise NotImplementedError

    def _serve(self):
        self._bus = connect(self._desktop)
        self._bus.register_object(self.PATH, Gio.DBusNodeInfo.new_for_xml(self.INTERFACE).interfaces[0], self._call,
                                  None, None)
        self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                            GLib.Variant("(su)", (self.NAME, 4)), None, 0, -1, None)

    def _call(self, _connection, _sender, _path, _interface, _method, parameters, invocation):
        invocation.return_value(self.answer(parameters.unpack()))


class IdleService(_BusService):
    """Says that nobody has touched anything for `seconds`, and counts how often it was `asked`."""

    NAME = "org.freedesktop.ScreenSaver"
    PATH = "/ScreenSaver"
    INTERFACE = """<node><interface name="org.freedesktop.ScreenSaver">
      <method name="GetSessionIdleTime"><arg type="u" direction="out"/></method>
    </interface></node>"""

    def __init__(self, desktop):
        super().__init__(desktop)
        self.seconds = 0.0
        self.asked = 0

    def answer(self, arguments):
        self.asked += 1
        return GLib.Variant("(u)", (int(self.seconds * 1000),))


class FeedbackService(_BusService):
    """Lets phones and tablets be felt; which program wanted which event."""

    NAME = "org.sigxcpu.Feedback"
    PATH = "/org/sigxcpu/Feedback"
    INTERFACE = """<node><interface name="org.sigxcpu.Feedback">
      <method name="TriggerFeedback">
        <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
        <arg type="i" direction="in"/><arg type="u" direction="out"/>
      </method>
    </interface></node>"""

    def __init__(self, desktop):
        super().__init__(desktop)
        self.events = []

    def answer(self, arguments):
        self.events.append(arguments[:2])
        return GLib.Variant("(u)", (len(self.events),))


class FileManager(_BusService):
    """Whose properties it was told to show."""

    NAME = "org.freedesktop.FileManager1"
    PATH = "/org/freedesktop/FileManager1"
    INTERFACE = """<node><interface name="org.freedesktop.FileManager1">
      <method name="ShowItemProperties"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
    </interface></node>"""

    def __init__(self, desktop):
        super().__init__(desktop)
        self.shown = []

    def answer(self, arguments):
        self.shown.append(arguments[0])
