"""The page's file input: a chooser with the given words, and what comes of it."""

import time

import pytest

from harness import processes


@pytest.fixture
def chooser(desktop, window, page, access):
    """The file chooser, opened by a click into the page's file input."""
    def open_chooser(attributes=""):
        page.run(f"""document.body.innerHTML = `<input type="file" {attributes} accept=".glb,model/gltf-binary"
            style="position: fixed; left: 100px; top: 100px; width: 300px; height: 60px">`;
            window.changes = 0; document.querySelector('input').onchange = () => changes++;
            await new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))""")
        desktop.hand.click(*page.area(window).point(130, 120))
        return access.wait("push button", "Scegli")
    return open_chooser


def test_file_chooser(desktop, orvalle, home, page, access, chooser):
    chosen = home.folder / "modello prova.txt"
    chosen.write_text("contenuto")
    chooser()
    assert access.wait_text("Scegli un modello 3D")
    desktop.hand.type(str(chosen))
    time.sleep(0.5)
    desktop.hand.key("Return")
    page.wait_true("changes === 1")
    assert page.run("return [...document.querySelector('input').files].map((file) => file.name)") == [
        "modello prova.txt"]


def test_file_chooser_cancelled(desktop, window, orvalle, page, access, chooser):
    chooser()
    desktop.hand.key("Escape")
    processes.wait_for("chooser closed", lambda: desktop.windows.of(orvalle.pid) == [window])
    assert page.run("return changes") == 0
    chooser()
    desktop.hand.key("Escape")
