"""The page's file input: a chooser with the given words, and what comes of it."""

import time

import pytest


@pytest.fixture
def chooser(desktop, orvalle, window, page, access):
    """The file chooser, opened by a click into the page's file input; its window, which has the keys."""
    def open_chooser():
        page.run("""document.body.innerHTML = `<input type="file" accept=".glb,model/gltf-binary"
            style="position: fixed; left: 100px; top: 100px; width: 300px; height: 60px">`;
            window.changes = 0; document.querySelector('input').onchange = () => changes++;
            await new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))""")
        desktop.hand.click(*page.area(window).point(130, 120))
        access.wait("push button", "Scegli")
        # By its title: where the mouse rests a tooltip comes, a window too.
        dialog = desktop.windows.wait(orvalle.pid, "Scegli un modello 3D")
        dialog.wait_active()
        return dialog
    return open_chooser


def test_file_chooser(desktop, home, page, chooser):
    chosen = home.folder / "modello prova.txt"
    chosen.write_text("contenuto")
    chooser()
    desktop.hand.type(str(chosen))
    time.sleep(0.5)
    desktop.hand.key("Return")
    page.wait_true("changes === 1")
    assert page.run("return [...document.querySelector('input').files].map((file) => file.name)") == [
        "modello prova.txt"]


def test_file_chooser_cancelled(desktop, page, chooser):
    for _ in range(2):
        dialog = chooser()
        desktop.hand.key("Escape")
        dialog.wait_hidden()
        assert page.run("return changes") == 0
