#!/usr/bin/python3
"""The Debian package of a build: what is in it, what it says of itself, and what Debian's own checkers say. The package is
made from the build as it is. Usage: packaging_test.py BUILD"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(sys.argv.pop(1))
APP = "opt/orvalle/Orvalle.app"


def output(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


class DebianPackage(unittest.TestCase):
    """Made once, looked at from all sides."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="orvalle-deb-")
        made = pathlib.Path(cls.folder.name)
        output("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", made, "-D", "CPACK_DEBIAN_COMPRESSION_TYPE=gzip",
               cwd=made)
        cls.package, = made.glob("*.deb")
        cls.root = made / "root"
        output("dpkg-deb", "--extract", cls.package, cls.root)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def path(self, name):
        return self.root / name

    def target(self, name):
        """Where a link of the package leads, as it will when it is installed."""
        return self.root / os.readlink(self.path(name)).lstrip("/")

    def test_program_lies_in_a_bundle_and_in_the_path(self):
        self.assertTrue(os.access(self.path(APP) / "AppRun", os.X_OK))
        for name in ("orvalle", "orvalle-demo", "orvalle-codesign", "orvalle-package"):
            self.assertTrue(os.access(self.target(f"usr/bin/{name}"), os.X_OK), name)

    def test_bundle_is_signed_as_it_is(self):
        output(self.path(APP) / "bin/orvalle-codesign", "--verify", "--deep", "--strict", self.path(APP))

    def test_bundle_says_who_keeps_it_up_to_date(self):
        information = json.loads((self.path(APP) / "Info.json").read_text(encoding="utf-8"))
        self.assertEqual(information["PackageManager"], "apt")
        self.assertEqual(information["CFBundleIdentifier"], "app.orvalle.Orvalle")

    def test_version_grows_with_the_build(self):
        information = json.loads((self.path(APP) / "Info.json").read_text(encoding="utf-8"))
        self.assertEqual(output("dpkg-deb", "--field", self.package, "Version").strip(),
                         f"{information['CFBundleShortVersionString']}+{information['CFBundleVersion']}")

    def test_entries_are_valid_and_start_what_is_there(self):
        for name in ("app.orvalle.Orvalle", "app.orvalle.Orvalle.Demo"):
            entry = self.path(f"usr/share/applications/{name}.desktop")
            self.assertEqual(output("desktop-file-validate", entry), "")
            for command in re.findall(r"^Exec=(\S+)", entry.read_text(encoding="utf-8"), re.MULTILINE):
                self.assertTrue(self.path(f"usr/bin/{command}").is_symlink(), command)

    def test_entry_offers_its_actions_and_opens_links(self):
        entry = self.path("usr/share/applications/app.orvalle.Orvalle.desktop").read_text(encoding="utf-8")
        for line in ("Name=Nuova sessione da 25 minuti", "Name=Ferma la sessione", "Name=Esci",
                     "MimeType=x-scheme-handler/orvalle;", "DBusActivatable=true"):
            self.assertIn(f"\n{line}\n", entry)
        demo = self.path("usr/share/applications/app.orvalle.Orvalle.Demo.desktop").read_text(encoding="utf-8")
        self.assertIn("\nName=Orvalle dimostrazione\n", demo)

    def test_bus_starts_the_program(self):
        service = self.path("usr/share/dbus-1/services/app.orvalle.Orvalle.service").read_text(encoding="utf-8")
        self.assertIn("\nName=app.orvalle.Orvalle\n", service)
        self.assertIn("\nExec=/usr/bin/orvalle --gapplication-service\n", service)

    def test_icons_and_manual_pages_are_there(self):
        for name in ("icons/hicolor/scalable/apps/app.orvalle.Orvalle.svg",
                     "icons/hicolor/symbolic/apps/app.orvalle.Orvalle-symbolic.svg",
                     *(f"man/man1/{page}.1.gz" for page in ("orvalle", "orvalle-demo", "orvalle-codesign",
                                                            "orvalle-package"))):
            self.assertTrue(self.path(f"usr/share/{name}").is_file(), name)

    def test_software_centres_can_read_its_description(self):
        output("appstreamcli", "validate", "--no-net",
               self.path("usr/share/metainfo/app.orvalle.Orvalle.metainfo.xml"))

    def test_debians_checker_finds_no_error(self):
        done = subprocess.run(["lintian", "--fail-on", "error", "--allow-root", self.package], check=False, capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
