#!/usr/bin/python3
"""Makes an update package of one kind from a signed bundle: make_package.py KIND BUNDLE ARCHIVE. The kinds are the
functions below; all but "good" are what nobody should install."""

import os
import pathlib
import stat
import subprocess
import sys
import zipfile

LINK = stat.S_IFLNK | 0o777


def add(archive, name, data=b"", mode=stat.S_IFREG | 0o644, compress=zipfile.ZIP_DEFLATED):
    entry = zipfile.ZipInfo(name)
    entry.create_system = 3
    entry.external_attr = mode << 16
    entry.compress_type = compress
    archive.writestr(entry, data)


def add_bundle(archive, bundle, root="Orvalle.app", change=lambda name, data, mode: (data, mode)):
    for path in [bundle, *sorted(bundle.rglob("*"))]:
        name = (pathlib.PurePath(root) / path.relative_to(bundle)).as_posix()
        mode = path.lstat().st_mode
        if path.is_symlink():
            add(archive, name, os.readlink(path).encode(), mode)
        elif path.is_dir():
            add(archive, name + "/", b"", mode)
        else:
            add(archive, name, *change(name, path.read_bytes(), mode))


def good(archive, bundle):
    add_bundle(archive, bundle)


def two(archive, bundle):
    add_bundle(archive, bundle)
    add_bundle(archive, bundle, "Altra.app")


def climbing(archive, bundle):
    add_bundle(archive, bundle)
    add(archive, "../fuori", b"fuori")


def climbing_inside(archive, bundle):
    add_bundle(archive, bundle)
    add(archive, "Orvalle.app/share/../../../fuori", b"fuori")


def absolute(archive, bundle):
    add_bundle(archive, bundle)
    add(archive, os.environ["ORVALLE_OUTSIDE"] + "/fuori", b"fuori")


def through_link(archive, bundle):
    add_bundle(archive, bundle)
    add(archive, "via", os.environ["ORVALLE_OUTSIDE"].encode(), LINK)
    add(archive, "via/fuori", b"fuori")


def link_out(archive, bundle):
    add_bundle(archive, bundle)
    add(archive, "Orvalle.app/share/via", b"/etc/passwd", LINK)


def linked_app(archive, bundle):
    add_bundle(archive, bundle, "cartella")
    add(archive, "Orvalle.app", b"cartella", LINK)


def file_app(archive, _):
    add(archive, "Orvalle.app", b"testo")


def flipped(archive, bundle):
    add_bundle(archive, bundle, change=lambda name, data, mode: (
        (bytes([data[0] ^ 1]) + data[1:], mode) if name.endswith("bin/orvalle") else (data, mode)))


def extra(archive, bundle):
    add_bundle(archive, bundle)
    add(archive, "Orvalle.app/bin/altro", b"testo")


def mode(archive, bundle):
    add_bundle(archive, bundle, change=lambda name, data, mode: (
        data, mode | 0o022 if name.endswith("bin/orvalle") else mode))


def setuid(archive, bundle):
    add_bundle(archive, bundle, change=lambda name, data, mode: (
        data, mode | stat.S_ISUID if name.endswith("bin/orvalle") else mode))


def unsigned(archive, bundle):
    for path in sorted(bundle.rglob("*")):
        if "Signature" not in path.parts and path.is_file() and not path.is_symlink():
            add(archive, "Orvalle.app/" + path.relative_to(bundle).as_posix(), path.read_bytes(), path.lstat().st_mode)


def empty(archive, _):
    add(archive, "leggimi.txt", b"niente")


def nested(archive, bundle):
    add_bundle(archive, bundle, "cartella/Orvalle.app")


def without_information(archive, bundle):
    add_bundle(archive, bundle, change=lambda name, data, mode: (
        (b"", mode) if name.endswith("Info.json") else (data, mode)))


def bomb(archive, bundle):
    add_bundle(archive, bundle)
    # Says of itself now this, now that.
    add(archive, "bomba", b"\0" * 1000)
    archive.filelist[-1].file_size = 1 << 39


def many(archive, bundle):
    add_bundle(archive, bundle)
    for number in range(200_001):
        add(archive, f"n{number}", compress=zipfile.ZIP_STORED)


def main(kind, bundle, target):
    bundle = pathlib.Path(bundle)
    target = pathlib.Path(target)
    if kind == "encrypted":
        subprocess.run(["bsdtar", "-c", "-f", target, "--format", "zip", "--options", "zip:encryption=zipcrypt",
                        "--passphrase", "segreto", "-C", bundle.parent, bundle.name], check=True)
        return
    if kind == "nonsense":
        target.write_bytes(b"<html>non trovato</html>")
        return
    make = good if kind == "truncated" else globals()[kind]
    with zipfile.ZipFile(target, "w") as archive:
        make(archive, bundle)
    if kind == "truncated":
        whole = target.read_bytes()
        target.write_bytes(whole[:len(whole) // 2])


if __name__ == "__main__":
    main(*sys.argv[1:])
