"""Locales made for the tests alone: a fresh machine has none but C.UTF-8."""

import os
import pathlib
import subprocess
import tempfile


def private_locale(name, folder):
    """Makes sure that `folder` holds the locale, for instance "it_IT.UTF-8"; the variables that choose it."""
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    if not (folder / name).is_dir():
        language, charset = name.split(".")
        with tempfile.TemporaryDirectory(dir=folder) as scratch:
            made = pathlib.Path(scratch) / name
            # localedef warns about harmless details of the definition and then returns 1.
            subprocess.run(["localedef", "-i", language, "-f", charset, made], stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
            assert (made / "LC_NUMERIC").is_file(), f"localedef did not make {name}"
            try:
                os.rename(made, folder / name)
            except OSError:
                assert (folder / name).is_dir()  # a test beside us was faster
    return {"LOCPATH": str(folder), "LC_ALL": name, "LANG": name}
