"""The overlay on the screen."""

from .processes import wait_for

SIZE = (190, 38)


def find(desktop, program):
    """The overlay's window while it is shown: the one of the program's windows with its size; none otherwise."""
    found = [window for window in desktop.windows.of(program.pid)
             if (window.frame.width, window.frame.height) == SIZE]
    assert len(found) <= 1, found
    return found[0] if found else None


def wait(desktop, program, seconds=60.0):
    return wait_for("overlay", lambda: find(desktop, program), seconds)


def wait_gone(desktop, program, seconds=60.0):
    wait_for("overlay gone", lambda: find(desktop, program) is None, seconds)
