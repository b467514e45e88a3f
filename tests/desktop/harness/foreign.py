"""A window of another program: one plain colour, so that what lies over it can be seen."""

import sys


def open_window(desktop, title, colour="#20a060"):
    """Starts the other program; the process and its window, in front."""
    process = desktop.spawn("foreign", [sys.executable, __file__, title, colour])
    window = desktop.windows.wait(process.pid, title)
    window.activate()
    window.wait_active()
    return process, window


def main(title, colour):
    """What runs in the other process."""
    import gi

    gi.require_version("Gdk", "3.0")
    gi.require_version("Gtk", "3.0")
    from gi.repository import Gdk, Gtk

    paint = Gdk.RGBA()
    paint.parse(colour)
    window = Gtk.Window(title=title)
    window.set_default_size(900, 600)
    window.override_background_color(Gtk.StateFlags.NORMAL, paint)
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    Gtk.main()


if __name__ == "__main__":
    main(*sys.argv[1:])
