"""Dialogs, buttons and menus as assistive technology finds them. Runs in a process of its own for each question:
the accessibility library keeps the first session it meets for the life of its process."""

import json
import pathlib
import subprocess
import sys

from .processes import wait_for

SCRIPT = pathlib.Path(__file__).with_name("accessibility_reader.py")


class Accessibility:
    """The accessible objects of one process."""

    def __init__(self, desktop, pid):
        self._desktop = desktop
        self._pid = pid

    def _ask(self, *words):
        result = subprocess.run([sys.executable, SCRIPT, str(self._pid), *words], env=self._desktop.environment,
                                stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False, timeout=90)
        assert result.returncode == 0, result.stderr
        return json.loads(result.stdout)

    def objects(self):
        """All showing objects, in reading order, each a dict: role, name, text, labels (the names of what labels
        it), states, box, depth."""
        return self._ask("list")

    def texts(self):
        """Everything that can be read in the program's windows, the page included."""
        return [text for found in self.objects() for text in {found["name"], found["text"]} if text]

    def wait_text(self, part, seconds=40.0):
        """The first text that contains the part, as soon as there is one."""
        return wait_for(f"text {part!r}", lambda: [text for text in self.texts() if part in text], seconds,
                        pause=0.1)[0]

    def find(self, role, name=None):
        """The showing objects with this role, and with this name or text if one is given."""
        return [found for found in self.objects() if found["role"] == role and
                (name is None or name in (found["name"], found["text"]))]

    def wait(self, role, name=None, seconds=40.0):
        """The first such object as soon as it is there."""
        return wait_for(f"{role} {name!r}", lambda: self.find(role, name), seconds, pause=0.1)[0]

    def press(self, role, name):
        """Does the first thing that the object can do: presses a button, chooses a menu row."""
        return self._ask("press", role, name)
