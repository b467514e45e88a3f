"""Other builds of the program, and where it runs from a bundle that is not the build's own."""

import json
import os
import pathlib
import shutil
import subprocess

from .program import BUNDLE, build_folder


def run_tool(tool, *arguments):
    """Runs one of the bundle's tools."""
    subprocess.run([build_folder() / BUNDLE / "bin" / tool, *arguments], check=True, stdin=subprocess.DEVNULL,
                   capture_output=True)


def revise(bundle, folder, version, build):
    """A copy of a bundle in the folder, which says that it is this build; it must be signed again."""
    copy = folder / BUNDLE
    shutil.copytree(bundle, copy, symlinks=True)
    say_of(copy, {"CFBundleVersion": str(build), "CFBundleShortVersionString": version})
    return copy


def say_of(bundle, information):
    """Changes what a bundle says of itself; it must be signed again."""
    path = bundle / "Info.json"
    path.write_text(json.dumps(json.loads(path.read_text(encoding="utf-8")) | information), encoding="utf-8")


def processes_of(bundle):
    """The ids of the processes that run the program of this bundle, or of one that has lain there."""
    program = str(bundle / "bin/orvalle")
    found = []
    for entry in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if os.readlink(entry / "exe").removesuffix(" (deleted)") == program:
                found.append(int(entry.name))
        except OSError:
            continue
    return found
