#!/usr/bin/python3
"""Who may include whom, and whether every source is built. Prints each violation; fails when there is one."""

import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*(["<])([^">]+)[">]', re.MULTILINE)
NATIVE = re.compile(r"^(gtk|gdk|glib|gio|gobject|pango|cairo|webkit2?|jsc|libsoup|libdbusmenu[\w-]*|X11|wayland-\w+|"
                    r"AppKit|Foundation|WebKit|Cocoa|UserNotifications|Security|ApplicationServices|CoreFoundation|CoreGraphics|"
                    r"dispatch|objc|os)(/|\.h$|-)")
SYSTEMS = ("linux", "macos")

# Each layer may include itself and these; a test or a benchmark may include everything.
BELOW = {
    "base": [],
    "platform": ["base"],
    "link": ["platform", "base"],
    "services": ["link", "platform", "base"],
    "update": ["link", "platform", "base"],
    "web": ["services", "update", "link", "platform", "base"],
    "app": ["web", "services", "update", "link", "platform", "base"],
    "demo": ["base"],
    "packaging": ["base"],
}
FREE = ("tests", "bench")


def layer(path):
    """The layer of a path from the root: platform's parts count as layers of their own."""
    parts = path.split("/")
    if parts[0] == "platform" and len(parts) > 2:
        return "/".join(parts[:2])
    return parts[0]


def allowed(source):
    """The layers that the file may include."""
    own = layer(source)
    if own in FREE:
        return None
    if own.startswith("platform/"):
        return {own, "platform", "base"}
    layers = {own, *BELOW.get(own, [])}
    if source.startswith("app/main_"):
        layers |= {f"platform/{system}" for system in SYSTEMS}
    return layers


def is_native_place(source):
    """Whether the file may use a system's own headers."""
    return (layer(source) in (*FREE, "demo", "packaging", *(f"platform/{system}" for system in SYSTEMS)) or
            source.startswith("app/main_"))


def violations(root):
    root = pathlib.Path(root)
    folders = [folder for folder in (*BELOW, *FREE) if (root / folder).is_dir()]
    sources = [path for folder in folders for path in sorted((root / folder).rglob("*"))
               if path.suffix in (".h", ".hpp", ".c", ".cpp", ".m", ".mm") or path.match("test_*.py")]
    if not sources:
        yield f"{root}: no source found"
    for path in sources:
        name = path.relative_to(root).as_posix()
        if path.suffix != ".py":
            yield from wrong_includes(root, name, path.read_text(encoding="utf-8"))
        if path.suffix in (".c", ".cpp", ".m", ".mm", ".py") and not is_listed(root, path):
            yield f"{name}: in no CMakeLists.txt"


def wrong_includes(root, name, text):
    layers = allowed(name)
    for quote, included in INCLUDE.findall(text):
        if quote == "<":
            if NATIVE.match(included) and not is_native_place(name):
                yield f"{name}: includes <{included}>, which belongs to one system"
        elif not (root / included).is_file():
            yield f"{name}: includes \"{included}\", which is not a path from the root"
        elif layers is not None and layer(included) not in layers:
            yield f"{name}: must not include {included}"


def is_listed(root, path):
    """Whether the nearest CMakeLists.txt at or above the file's folder names it."""
    for folder in path.parents:
        listing = folder / "CMakeLists.txt"
        if listing.is_file():
            relative = path.relative_to(folder).as_posix()
            words = re.split(r"[\s()\"]+", re.sub(r"#.*", "", listing.read_text(encoding="utf-8")))
            return relative in words
        if folder == root:
            return False
    return False


def main():
    found = list(violations(sys.argv[1]))
    if found:
        sys.exit("\n".join(found))
    print("Every include keeps to the layers, every source is built.")


if __name__ == "__main__":
    main()
