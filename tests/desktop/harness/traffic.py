"""Counting what travels over the bus."""

import collections
import time

from .processes import wait_for


class Traffic:
    """Listens to everything that a connection, given by its unique name, sends. Use as a context manager."""

    def __init__(self, desktop, sender):
        self._desktop = desktop
        self._sender = sender
        self._number = len(list(desktop.logs.glob("traffic-*")))

    def __enter__(self):
        name = f"traffic-{self._number}"
        self._log = self._desktop.logs / name
        self._process = self._desktop.spawn(name, ["dbus-monitor", "--session", "--profile",
                                                   f"sender='{self._sender}'"])
        # The monitor's own first lines say that it listens.
        wait_for("bus monitor", lambda: "NameLost" in self._log.read_text(errors="replace"))
        self._skipped = len(self._lines())
        return self

    def __exit__(self, *_):
        self._desktop.end(self._process)

    def _lines(self):
        lines = self._log.read_text(encoding="utf-8", errors="replace").splitlines()
        return [line.split("\t") for line in lines if line.startswith(("sig", "mc", "mr", "err"))]

    def messages(self):
        """How often each (kind, interface.member) was sent; answers to calls as ("answer", "")."""
        counts = collections.Counter()
        for fields in self._lines()[self._skipped:]:
            if fields[0] == "sig":
                counts["signal", f"{fields[6]}.{fields[7]}"] += 1
            elif fields[0] == "mc":
                counts["call", f"{fields[6]}.{fields[7]}"] += 1
            else:
                counts["answer", ""] += 1
        return counts

    def signals(self):
        """How often each signal was sent, by its last name."""
        counts = collections.Counter()
        for (kind, name), count in self.messages().items():
            if kind == "signal":
                counts[name.rsplit(".", 1)[1]] += count
        return counts

    def forget(self):
        """Starts counting anew."""
        time.sleep(0.1)
        self._skipped = len(self._lines())
