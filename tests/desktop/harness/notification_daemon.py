"""A real notification server; a click on a notification chooses its default action."""

from .processes import wait_for

CONFIG = """[global]
origin = {origin}
offset = {offset}
width = 400
font = DejaVu Sans {size}
markup = full
show_indicators = no
mouse_left_click = do_action
enable_recursive_icon_lookup = true
[urgency_normal]
background = "{background}"
foreground = "{foreground}"
timeout = 0
"""


def start(desktop, *, origin="top-left", offset="10x10", size=12, background="#0000ff", foreground="#ffffff"):
    """Starts it; what it shows stays until it is clicked."""
    config = desktop.folder / "dunstrc"
    config.write_text(CONFIG.format(origin=origin, offset=offset, size=size, background=background,
                                    foreground=foreground), encoding="utf-8")
    process = desktop.spawn("dunst", ["dunst", "-conf", str(config)])
    wait_for("notification server", lambda: "true" in desktop.run(
        "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus",
        "--method", "org.freedesktop.DBus.NameHasOwner", "org.freedesktop.Notifications"))
    return process


def shown(desktop):
    """How many notifications are on the screen."""
    return int(desktop.run("dunstctl", "count", "displayed"))
