#!/usr/bin/python3
"""Makes the bundle twice from the same inputs, by users with different masks, in different places, at different times:
bundle_test.py SOURCES COMMAND…. Prints what differs; fails when anything does."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

SOURCES = ("packaging", "demo/page", "LICENSE")


def checked_out(sources, folder, mask, moment):
    """A copy of what the bundle is made of, as it would be checked out under this mask, then."""
    for name in SOURCES:
        source, copy = sources / name, folder / name
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copytree(source, copy, symlinks=True) if source.is_dir() else shutil.copy(source, copy)
    for path in [folder, *folder.rglob("*")]:
        path.chmod(path.stat().st_mode & 0o100 | (0o777 if path.is_dir() else 0o666) & ~mask)
        os.utime(path, (moment, moment))


def contents(bundle):
    """Everything in it by its path: mode, and bytes or target."""
    return {path.relative_to(bundle.parent).as_posix(): (
        oct(path.lstat().st_mode), os.readlink(path) if path.is_symlink() else
        path.read_bytes() if path.is_file() else None) for path in [bundle, *bundle.rglob("*")]}


def main():
    sources, command = pathlib.Path(sys.argv[1]), sys.argv[2:]
    made = []
    with tempfile.TemporaryDirectory() as root:
        for number, (mask, moment) in enumerate(((0o022, 1_000_000_000), (0o077, 1_700_000_000))):
            place = pathlib.Path(root, "due parole" * number, str(number))
            checked_out(sources, place / "src", mask, moment)
            bundle = place / "Orvalle.app"
            subprocess.run([*command, f"-DBUNDLE={bundle}", "-P", place / "src/packaging/bundle.cmake"], check=True,
                           umask=mask, stdin=subprocess.DEVNULL)
            made.append(contents(bundle))
    one, other = made
    different = sorted(path for path in one.keys() | other.keys() if one.get(path) != other.get(path))
    for path in different:
        modes = [side[path][0] if path in side else "absent" for side in made]
        print(f"{path}: {modes[0]}, {modes[1]}" if modes[0] != modes[1] else f"{path}: other contents")
    needed = {"Orvalle.app/bin/orvalle", "Orvalle.app/AppRun", "Orvalle.app/Signature/signature",
              "Orvalle.app/share/orvalle-demo/page/index.html"}
    if missing := needed - one.keys():
        sys.exit(f"not in the bundle: {', '.join(sorted(missing))}")
    if different:
        sys.exit(1)
    print(f"{len(one)} files and folders, equal.")


if __name__ == "__main__":
    main()
