"""A user's home folder: settings, default handlers, and what the program left in it."""

import json
import os
import pathlib


class Home:
    """One user, who may start the program many times. `environment` leads a program to it."""

    def __init__(self, desktop, name="home"):
        self._desktop = desktop
        self._variables = desktop.new_home(name)
        self.folder = desktop.folder / name

    @property
    def environment(self):
        return self._desktop.environment | self._variables

    @property
    def config(self):
        return pathlib.Path(self._variables["XDG_CONFIG_HOME"])

    @property
    def data(self):
        return pathlib.Path(self._variables["XDG_DATA_HOME"])

    @property
    def defaults_file(self):
        return self.config / "Orvalle/defaults.json"

    def defaults(self):
        """What the program has stored; nothing when there is no store yet."""
        try:
            return json.loads(self.defaults_file.read_text(encoding="utf-8"))
        except FileNotFoundError:
            return {}

    def write_defaults(self, values):
        """Puts a store in place before the program starts: values, or a text taken as it is."""
        self.defaults_file.parent.mkdir(mode=0o700, parents=True, exist_ok=True)
        text = values if isinstance(values, str) else json.dumps(values)
        self.defaults_file.write_text(text, encoding="utf-8")

    def set_setting(self, schema, key, value):
        """Changes a setting of the desktop, as its control centre would."""
        self._desktop.run("gsettings", "set", schema, key, value, env=self.environment)

    def register_browser(self, *schemes):
        """Makes a handler of its own the default for the schemes: it only writes down what it was given."""
        record = self.folder / "opened"
        script = self.folder / "browser"
        script.write_text(f'#!/bin/sh\nprintf "%s\\n" "$#:$1" >>"{record}"\n', encoding="utf-8")
        script.chmod(0o755)
        applications = self.data / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        types = "".join(f"x-scheme-handler/{scheme};" for scheme in schemes)
        (applications / "recorder.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Recorder\nExec={script} %u\nMimeType={types}\n",
            encoding="utf-8")
        lines = "".join(f"x-scheme-handler/{scheme}=recorder.desktop\n" for scheme in schemes)
        (self.config / "mimeapps.list").write_text("[Default Applications]\n" + lines, encoding="utf-8")

    def register_program(self, app_run):
        """Makes the program the default for its own links, as an installation does."""
        applications = self.data / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        (applications / "app.orvalle.Orvalle.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Orvalle\nExec={app_run} %u\n"
            "MimeType=x-scheme-handler/orvalle;\n", encoding="utf-8")
        (self.config / "mimeapps.list").write_text(
            "[Default Applications]\nx-scheme-handler/orvalle=app.orvalle.Orvalle.desktop\n", encoding="utf-8")

    def opened(self):
        """The addresses that the registered handler was given, one for each time it was started."""
        record = self.folder / "opened"
        if not record.exists():
            return []
        lines = record.read_text(encoding="utf-8").splitlines()
        assert all(line.startswith("1:") for line in lines), f"a handler was given other than one address: {lines}"
        return [line[2:] for line in lines]

    def files(self):
        """All files below the home folder with their modification times."""
        found = {}
        for folder, _, names in os.walk(self.folder):
            for name in names:
                path = pathlib.Path(folder) / name
                try:
                    found[path.relative_to(self.folder).as_posix()] = path.lstat().st_mtime_ns
                except FileNotFoundError:
                    continue
        return found
