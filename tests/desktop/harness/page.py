"""The page in the program's window, seen from its own script."""

import json
import queue
import time

from .processes import wait_for


class Page:
    """Runs script in the test page that the site serves, and pushes session states through its bridge."""

    def __init__(self, site):
        self._site = site
        self._number = 0

    def wait_loaded(self, visit=1, seconds=60.0):
        """Waits until the page has run its scripts for the given time, the first being 1."""
        wait_for(f"load {visit} of the page", lambda: len(self._site.visits) >= visit, seconds)

    def run(self, script, seconds=40.0):
        """Runs the body of an asynchronous function in the page; what it returns, through JSON."""
        answer = self._answer(script, seconds)
        assert answer is not None, f"the page did not answer within {seconds:g} s: {script}"
        assert "error" not in answer, f"{answer['error']}\nin: {script}"
        return answer.get("value")

    def _answer(self, script, seconds):
        self._number += 1
        self._site.tasks.put([self._number, script])
        end = time.monotonic() + seconds
        while True:
            try:
                number, answer = self._site.results.get(timeout=max(0, end - time.monotonic()))
            except queue.Empty:
                return None
            if number == self._number:  # not a late answer to an earlier one
                return answer

    def leave(self, script):
        """Runs script after which the page may not be there any more to answer."""
        self._answer(f"setTimeout(() => {{ {script} }}, 200)", 5)

    def hang(self, seconds):
        """Has the page do nothing but look at the clock for some seconds."""
        self.leave(f"const end = Date.now() + {seconds * 1000}; while (Date.now() < end);")

    def wait_true(self, expression, seconds=60.0):
        """Waits until the expression is true in the page."""
        return wait_for(expression, lambda: self.run(f"return {expression}"), seconds, pause=0.05)

    def size(self):
        """The page's area, as the page sees it."""
        return self.run("return [innerWidth, innerHeight]")

    def area(self, window):
        """Where on the screen the page is: in the middle of its window, inside its borders."""
        width, height = self.size()
        box = window.box
        return box.within((box.width - width) // 2, (box.width - width + 1) // 2, (box.height - height) // 2,
                          (box.height - height + 1) // 2)

    def first_script(self):
        """What the page's first script found at the last visit: `strip`, the height of the title strip as the page
        may read it, and `bridge`, the type of the way to the program."""
        return self._site.visits[-1]["firstScript"]

    def push(self, message):
        """Posts a message to the program, as the web application does."""
        self.run(f"push({script_value(message)})")

    def commands(self):
        """The commands that the program has sent to the page, in order: word and argument."""
        return [tuple(command) for command in self.run("return commands")]

    def wait_command(self, *command, seconds=60.0):
        """Waits for a command to arrive."""
        return wait_for(f"command {command}", lambda: tuple(command) in self.commands(), seconds, pause=0.05)

    def forget(self):
        """Empties what the page has noted so far."""
        self.run("commands.length = replies.length = focusEvents.length = 0")


def script_value(value):
    """The value as a JavaScript expression."""
    return json.dumps(value)


def session(**changes):
    """A running session's state as the web application posts it."""
    return {"running": True, "isBreak": False, "elapsedMin": 5, "remainingMin": 20, "plannedMin": 25,
            "projectTitle": "Tesi", "tasks": []} | changes


def task(identifier, title, done=False):
    return {"id": identifier, "title": title, "done": done}
