"""The thread of somebody who answers on a bus."""

import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import GLib  # noqa: E402


class ServiceThread:
    """Has a main loop of its own, from where `appear`, which is called on it, has returned, until `end`."""

    def __init__(self, appear):
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop(self._context)
        ready = threading.Event()
        self._thread = threading.Thread(target=self._run, args=(appear, ready), daemon=True)
        self._thread.start()
        assert ready.wait(10), f"not there after ten seconds: {appear}"

    def end(self):
        GLib.MainContext.invoke_full(self._context, GLib.PRIORITY_DEFAULT, self._quit)
        self._thread.join(10)

    def _quit(self, *_):
        self._loop.quit()
        return False

    def _run(self, appear, ready):
        self._context.push_thread_default()
        appear()
        ready.set()
        self._loop.run()
        self._context.pop_thread_default()
