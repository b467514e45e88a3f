#!/usr/bin/python3
"""FILE: owns the clipboard with the file's text until it ends."""

import pathlib
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def main():
    text = pathlib.Path(sys.argv[1]).read_bytes().decode()
    clipboard = Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD)
    clipboard.connect("owner-change", lambda *_: print("copied", flush=True))
    clipboard.set_text(text, -1)
    Gtk.main()


if __name__ == "__main__":
    main()
