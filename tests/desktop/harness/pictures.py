"""Pictures of the screen and what can be said of them."""

import collections
import subprocess


class Picture:
    """A part of the screen at one moment."""

    def __init__(self, width, height, pixels):
        self.width = width
        self.height = height
        self._pixels = pixels

    def pixel(self, x, y):
        at = 3 * (y * self.width + x)
        return tuple(self._pixels[at:at + 3])

    def colours(self):
        """How often each colour occurs."""
        data = self._pixels
        return collections.Counter(zip(data[0::3], data[1::3], data[2::3]))

    def share(self, predicate):
        """The share, 0 to 1, of pixels whose colour fulfils the predicate."""
        return sum(count for colour, count in self.colours().items() if predicate(*colour)) / (
            self.width * self.height)

    def brightness(self):
        """The mean of all channels, 0 to 255."""
        return sum(self._pixels) / len(self._pixels)

    def differs(self, other, tolerance=8):
        """The share of pixels that are not the same in a picture of the same size."""
        assert (self.width, self.height) == (other.width, other.height)
        first, second = self._pixels, other._pixels
        changed = sum(1 for at in range(0, len(first), 3) if any(
            abs(first[at + part] - second[at + part]) > tolerance for part in range(3)))
        return changed / (self.width * self.height)


def take(desktop, box=None):
    """A picture of the whole screen or of a part of it."""
    crop = ["-crop", f"{box.width}x{box.height}{box.x:+d}{box.y:+d}", "+repage"] if box else []
    data = subprocess.run(["import", "-silent", "-window", "root", *crop, "-depth", "8", "ppm:-"],
                          env=desktop.environment, stdin=subprocess.DEVNULL, capture_output=True, check=True,
                          timeout=20).stdout
    magic, size, depth, pixels = data.split(b"\n", 3)
    assert (magic, depth) == (b"P6", b"255")
    width, height = (int(number) for number in size.split())
    return Picture(width, height, pixels)


def save(desktop, path):
    """Leaves a picture of the whole screen in a file."""
    desktop.run("import", "-silent", "-window", "root", str(path))
