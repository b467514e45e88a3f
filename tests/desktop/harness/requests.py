"""The page's requests to the desktop, as the web application makes them."""

import itertools
import json

from .processes import wait_for


class Requests:
    """Asks through the test page's bridge. Each request has an id of its own."""

    def __init__(self, page):
        self._page = page
        self._ids = itertools.count(1)

    def send(self, tipo, **arguments):
        """Posts a request; its id."""
        number = next(self._ids)
        self._page.push({"tipo": tipo, "id": number} | arguments)
        return number

    def tell(self, tipo, **arguments):
        """Posts a request that wants no answer."""
        self._page.push({"tipo": tipo} | arguments)

    def answers(self):
        """All answers so far, in order: id and text."""
        return [tuple(reply) for reply in self._page.run("return replies")]

    def wait(self, number, seconds=60.0):
        """The text that answers the request."""
        answer = wait_for(f"answer {number}", lambda: [text for id, text in self.answers() if id == number], seconds,
                          pause=0.05)
        assert len(answer) == 1, f"{len(answer)} answers to one request"
        return answer[0]

    def ask(self, tipo, seconds=60.0, **arguments):
        """Posts a request and waits for the text that answers it."""
        return self.wait(self.send(tipo, **arguments), seconds)

    def ask_json(self, tipo, **arguments):
        return json.loads(self.ask(tipo, **arguments))
