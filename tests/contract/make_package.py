#!/usr/bin/python3
"""Makes an update package of one kind from a signed bundle: make_package.py KIND BUNDLE ARCHIVE. The kinds are the
functions below; all but "good" are what nobody should install."""

import os
import pathlib
import stat
import struct
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


def through_link_inside(archive, bundle):
    add_bundle(archive, bundle)
    add(archive, "Orvalle.app/share/via", os.environ["ORVALLE_OUTSIDE"].encode(), LINK)
    add(archive, "Orvalle.app/share/via/fuori", b"fuori")


def over_link(archive, bundle):
    """The same name twice: a link to a file outside, and what would be written through it."""
    add_bundle(archive, bundle)
    add(archive, "Orvalle.app/via", (os.environ["ORVALLE_OUTSIDE"] + "/fuori").encode(), LINK)
    add(archive, "Orvalle.app/via", b"fuori")


def disguised(archive, bundle):
    """A name that a list shows like that of a link."""
    add_bundle(archive, bundle)
    add(archive, "Orvalle.app -> /../../../fuori", b"fuori")


def backslashes(archive, bundle):
    """As other systems write names."""
    add_bundle(archive, bundle)
    add(archive, "..\\..\\fuori", b"fuori")
    archive.filelist[-1].create_system = 0


def line_break(archive, bundle):
    """A name that would fill two lines of a list."""
    add_bundle(archive, bundle)
    add(archive, "Orvalle.app/a\n-rw-r--r--  0 0 0 0 Nov 21 14:01 b", b"fuori")


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


def open_folder(archive, bundle, folder):
    """A folder in which everybody may write."""
    add_bundle(archive, bundle)
    for entry in archive.filelist:
        if entry.filename == folder:
            entry.external_attr = (stat.S_IFDIR | 0o777) << 16


def open_root(archive, bundle):
    open_folder(archive, bundle, "Orvalle.app/")


def open_signature(archive, bundle):
    open_folder(archive, bundle, "Orvalle.app/Signature/")


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


def absent_information(archive, bundle):
    add_bundle(archive, bundle)
    del archive.filelist[[entry.filename for entry in archive.filelist].index("Orvalle.app/Info.json")]


def linked_information(archive, bundle):
    """What says that this is the program is that of the program which looks."""
    absent_information(archive, bundle)
    add(archive, "Orvalle.app/Info.json", os.environ["ORVALLE_INSTALLED"].encode() + b"/Info.json", LINK)


def zeros(archive, bundle):
    """Unfolds to a thousand times its size, all of which fits on the disk."""
    add_bundle(archive, bundle)
    add(archive, "Orvalle.app/zeri", b"\0" * (64 << 20))


def add_liar(archive, name, data, size):
    """An entry that says of itself, in both its places, that it is of another size."""
    entry = zipfile.ZipInfo(name)
    entry.create_system = 3
    entry.external_attr = (stat.S_IFREG | 0o644) << 16
    entry.compress_type = zipfile.ZIP_DEFLATED
    with archive.open(entry, "w", force_zip64=True) as stream:
        stream.write(data)
    entry.file_size = size
    end = archive.fp.tell()
    archive.fp.seek(entry.header_offset + 22)
    archive.fp.write(struct.pack("<L", min(size, 0xffffffff)))
    archive.fp.seek(entry.header_offset + 30 + len(name) + 4)
    archive.fp.write(struct.pack("<Q", size))
    archive.fp.seek(end)


def huge(archive, bundle):
    """Says that it needs more than a disk has left."""
    add_bundle(archive, bundle)
    add_liar(archive, "Orvalle.app/enorme", b"\0" * 1000, 1_000_000_000_000)


def bomb(archive, bundle):
    """Unfolds to more than it says."""
    add_bundle(archive, bundle)
    add_liar(archive, "Orvalle.app/bomba", b"\0" * (64 << 20), 1000)


def contradictory(archive, bundle):
    """Says of its size now this, now that."""
    add_bundle(archive, bundle)
    add(archive, "bomba", b"\0" * 1000)
    archive.filelist[-1].file_size = 1 << 39


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
    if kind == "tar":
        subprocess.run(["bsdtar", "-c", "-z", "-f", target, "-C", bundle.parent, bundle.name], check=True)
        return
    make = good if kind == "truncated" else globals()[kind]
    with zipfile.ZipFile(target, "w") as archive:
        make(archive, bundle)
    if kind == "truncated":
        whole = target.read_bytes()
        target.write_bytes(whole[:len(whole) // 2])


if __name__ == "__main__":
    main(*sys.argv[1:])
