"""What the page asks of the desktop happens for real and is answered exactly."""

import json
import os
import shutil
import stat
import threading
import time

import pytest

from harness import notification_daemon, pictures, processes
from harness.bus_service import FeedbackService, FileManager
from harness.program import BUNDLE, build_folder, inherited_options
from harness.requests import Requests
from harness.server import Answer

# Values of every type, as script.
VALUES = ["undefined", "null", "true", "0", "1.5", "NaN", "''", "'x'", "[]", "{}", "['x']", "() => 1", "new Date(0)"]
ARGUMENTS = ["titolo", "corpo", "tag", "che", "url", "acceso", "nome", "contenuto", "giorno", "quale", "altro"]
# Those that are answered, and those that are not. Left out because they look at no argument, and what they do would be
# done some hundred times over: "apri-preferenze", "apri-backup" and "attivita-cartella", which start another program,
# "attivita-titoli", which asks the user, and "permessi-riavvia", which ends the program.
ANSWERED = ["stato-permesso", "permesso", "backup", "backup-ultimo", "backup-elenco", "permessi-stato",
            "permessi-notifiche", "permessi-documenti", "aggiornamenti-stato", "aggiornamenti-cerca", "attivita-stato",
            "attivita-giorno"]
SILENT = ["notifica", "tattile", "apri-fuori", "aggiornamenti-installa", "aggiornamenti-automatici",
          "attivita-accendi", "permessi-apri"]


@pytest.fixture
def requests(page, orvalle):
    return Requests(page)


@pytest.fixture
def folder(home):
    """Where this user's backups go."""
    return home.folder / "Documents/Orvalle Backup"


def blue(desktop):
    """How many points of the screen have the notifications' colour."""
    return pictures.take(desktop).colours()[(0, 0, 255)]


class TestBridge:
    def test_requests_of_every_shape_are_survived_and_only_numbers_answered(self, page, requests, orvalle):
        page.forget()
        for tipo in ANSWERED + SILENT:
            page.run(f"""for (const key of {json.dumps(ARGUMENTS)})
                for (const value of [{', '.join(VALUES)}]) push({{tipo: '{tipo}', [key]: value}})
                for (const id of [{', '.join(VALUES)}]) push({{tipo: '{tipo}', id}})""")
        assert requests.ask("backup-ultimo") in ("x", "")
        # Of all the ids above only 0 is a whole number.
        processes.wait_for("answers", lambda: len(requests.answers()) == len(ANSWERED) + 1)
        assert [number for number, _ in requests.answers()].count(0) == len(ANSWERED)

    def test_answers_come_as_they_are_ready_to_the_ids_that_asked(self, page, requests):
        page.run("""push({tipo: 'backup', id: 101, nome: 'a.json', contenuto: '{}'});
            push({tipo: 'backup-ultimo', id: 102}); push({tipo: 'backup-elenco', id: 103});
            push({tipo: 'backup', id: 104, nome: '', contenuto: ''}); push({tipo: 'backup-ultimo', id: 105})""")
        requests.wait(105)
        assert [number for number, _ in requests.answers()] == [101, 102, 103, 104, 105]
        texts = dict(requests.answers())
        assert texts[102] == "a.json" and texts[104] == "" and texts[105] == "a.json"

    def test_an_answer_after_a_reload_reaches_the_new_page(self, site, page, requests):
        asked, reloaded = threading.Event(), threading.Event()

        def manifest(_):
            asked.set()
            reloaded.wait(60)
            return Answer('{"versione": "0.0.1", "build": 0, "url": "/x.zip"}', type="application/json")
        site.routes["/mac/versione.json"] = manifest
        page.leave("push({tipo: 'aggiornamenti-cerca', id: 9}); location.reload()")
        page.wait_loaded(2)
        assert asked.wait(20), "the program had not asked before the page was another one"
        assert requests.answers() == []
        reloaded.set()
        assert json.loads(requests.wait(9)) == {"esito": "aggiornato", "versione": "0.0.1", "build": 0}
        # The new page asks and is answered as ever.
        assert requests.ask("backup-ultimo") == ""
        assert [number for number, _ in requests.answers()] == [9, 1]


class TestBackups:
    def test_backup_is_written_listed_and_shown(self, home, page, requests, folder):
        text = '{"è": "\\"\\\\ \\u0000 🍅"}'
        assert requests.ask("backup", nome="2026-11-21.json", contenuto=text) == str(folder / "2026-11-21.json")
        assert (folder / "2026-11-21.json").read_text(encoding="utf-8") == text
        assert stat.S_IMODE((folder / "2026-11-21.json").stat().st_mode) == 0o600
        assert requests.ask("backup-ultimo") == "2026-11-21.json"
        entry, = requests.ask_json("backup-elenco")
        assert entry["nome"] == "2026-11-21.json" and entry["peso"] == len(text.encode())
        modified = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime((folder / "2026-11-21.json").stat().st_mtime))
        assert entry["quando"] == modified

    def test_folder_of_the_user_s_choice_is_used(self, home, requests):
        (home.config / "user-dirs.dirs").write_text('XDG_DOCUMENTS_DIR="$HOME/Documenti di Zoë"\n', encoding="utf-8")
        written = requests.ask("backup", nome="a.json", contenuto="{}")
        assert written == str(home.folder / "Documenti di Zoë/Orvalle Backup/a.json")
        assert os.path.exists(written)

    def test_nothing_is_written_outside_the_folder(self, home, requests, folder):
        before = set(home.files())
        for name in ["../../x.json", "/etc/x.json", "../x.json", "a/../../x.json"]:
            assert requests.ask("backup", nome=name, contenuto="{}") == str(folder / "x.json")
        for name in ["", ".", "..", "/", "x/"]:
            assert requests.ask("backup", nome=name, contenuto="{}") == ""
        new = {path for path in set(home.files()) - before if not path.startswith((".cache", ".local", ".config"))}
        assert new == {"Documents/Orvalle Backup/x.json"}

    def test_failure_is_one_line(self, home, requests, orvalle):
        (home.folder / "Documents").write_text("no folder", encoding="utf-8")
        assert requests.ask("backup", nome="a.json", contenuto="{}") == ""
        line, = orvalle.own_lines()
        assert "Orvalle: backup — " in line

    def test_fifty_megabytes_are_written_whole_and_in_their_turn(self, page, requests, folder):
        page.run("""push({tipo: 'backup', id: 901, nome: 'grande.json', contenuto: 'x'.repeat(50000000)});
            push({tipo: 'backup-ultimo', id: 902})""")
        assert requests.wait(901, 120) == str(folder / "grande.json")
        assert requests.wait(902) == "grande.json"
        assert (folder / "grande.json").stat().st_size == 50000000

    @pytest.mark.parametrize("before", ["", "x"])
    def test_no_character_of_a_long_text_is_halved(self, page, requests, folder, before):
        page.run("push({tipo: 'backup', id: 901, nome: 'frutta.json', contenuto: '%s' + '🍅'.repeat(400000)})" % before)
        assert requests.wait(901) == str(folder / "frutta.json")
        assert (folder / "frutta.json").read_text(encoding="utf-8") == before + "🍅" * 400000

    def test_folder_is_opened_once_it_exists(self, home, requests, folder):
        script = home.folder / "manager"
        record = home.folder / "shown"
        script.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >>"{record}"\n', encoding="utf-8")
        script.chmod(0o755)
        applications = home.data / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        (applications / "manager.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Manager\nExec={script} %f\nMimeType=inode/directory;\n",
            encoding="utf-8")
        (home.config / "mimeapps.list").write_text("[Default Applications]\ninode/directory=manager.desktop\n",
                                                   encoding="utf-8")
        requests.tell("apri-backup")
        requests.ask("backup", nome="a.json", contenuto="{}")
        requests.tell("apri-backup")
        processes.wait_for("file manager", record.exists)
        time.sleep(0.5)
        assert record.read_text(encoding="utf-8") == f"{folder}\n"


class TestNotifications:
    def test_without_a_server_they_are_denied_and_skipped(self, requests, orvalle):
        assert requests.ask("stato-permesso") == "denied"
        assert requests.ask("permesso") == "denied"
        requests.tell("notifica", titolo="Pausa", corpo="Cinque minuti", tag="pausa")
        line, = processes.wait_for("log line", orvalle.own_lines)
        assert line.endswith("Orvalle: notifica saltata, permesso = denied")

    def test_a_server_shows_them_in_place_of_each_other(self, desktop, dunst, requests, orvalle):
        assert requests.ask("stato-permesso") == "granted"
        requests.tell("notifica", titolo="<i>Pausa</i> & caffè", corpo="<b>Cinque</b> & minuti", tag="pausa")
        processes.wait_for("notification", lambda: notification_daemon.shown(desktop) == 1)
        processes.wait_for("its picture", lambda: blue(desktop) > 10000)
        (build_folder() / "pictures").mkdir(exist_ok=True)
        pictures.save(desktop, build_folder() / "pictures/notification.png")
        requests.tell("notifica", titolo="Fine", corpo="", tag="pausa")
        processes.wait_for("log", lambda: len(orvalle.own_lines()) == 2)
        assert notification_daemon.shown(desktop) == 1
        requests.tell("notifica", titolo="Altra", corpo="")
        processes.wait_for("second", lambda: notification_daemon.shown(desktop) == 2)
        assert [line[line.index("Orvalle: "):] for line in orvalle.own_lines()] == [
            "Orvalle: notifica «<i>Pausa</i> & caffè» mostrata", "Orvalle: notifica «Fine» mostrata",
            "Orvalle: notifica «Altra» mostrata"]
        desktop.run("dunstctl", "close-all")

    def test_a_click_brings_the_window_to_the_front(self, desktop, dunst, requests, window, page):
        window.close()
        window.wait_hidden()
        page.forget()
        requests.tell("notifica", titolo="Pausa", corpo="Cinque minuti", tag="pausa")
        processes.wait_for("notification", lambda: blue(desktop) > 10000)
        desktop.hand.click(200, 40)
        window.wait_visible()
        window.wait_active()
        page.wait_true("focusEvents.length > 0")

    def test_log_is_one_line_whatever_the_title(self, desktop, dunst, requests, orvalle):
        requests.tell("notifica", titolo="Una\nOrvalle: falsa\r\nriga\u2028sola", corpo="\n\n", tag="\0")
        line, = processes.wait_for("log line", orvalle.own_lines)
        assert line.endswith("Orvalle: notifica «Una Orvalle: falsa riga sola» mostrata")
        desktop.run("dunstctl", "close-all")

    def test_the_desktop_s_own_switch_is_respected(self, desktop, dunst, home, requests, orvalle):
        home.set_setting("org.gnome.desktop.notifications.application:"
                         "/org/gnome/desktop/notifications/application/app-orvalle-orvalle/", "enable", "false")
        processes.wait_for("switch", lambda: requests.ask("stato-permesso") == "denied")
        requests.tell("notifica", titolo="Pausa")
        line, = processes.wait_for("log line", orvalle.own_lines)
        assert line.endswith("Orvalle: notifica saltata, permesso = denied")
        assert notification_daemon.shown(desktop) == 0

    @pytest.mark.parametrize("name", ["app.orvalle.Orvalle", "Orvalle"])
    def test_the_switch_of_xfce_is_respected(self, desktop, dunst, start, page, name):
        def mute(*programs):
            """What the desktop's own settings window writes."""
            desktop.run("xfconf-query", "--channel", "xfce4-notifyd", "--property", "/applications/muted_applications",
                        "--create", "--force-array", *(word for program in programs
                                                       for word in ("--type", "string", "--set", program)))
        start(environment={"XDG_CURRENT_DESKTOP": "XFCE"})
        page.wait_loaded()
        requests = Requests(page)
        mute("altro")
        assert requests.ask("stato-permesso") == "granted"
        mute("altro", name)
        processes.wait_for("switch", lambda: requests.ask("stato-permesso") == "denied")


class TestPermissions:
    def test_state_is_true(self, home, requests, folder):
        info = json.loads((build_folder() / BUNDLE / "Info.json").read_text(encoding="utf-8"))
        expected = {"notifiche": "negato", "accessibilita": "negato", "documenti": "da-provare",
                    "cartellaBackup": str(folder), "versione": info["CFBundleShortVersionString"],
                    "firmaStabile": False, "percorso": str((build_folder() / BUNDLE).resolve())}
        assert requests.ask_json("permessi-stato") == expected
        requests.ask("backup", nome="a.json", contenuto="{}")
        home.write_defaults(home.defaults() | {"accessibilitaConsentita": True})
        assert requests.ask_json("permessi-stato") == expected | {"documenti": "concesso", "accessibilita": "concesso"}

    def test_notifications_are_granted_where_there_is_a_server(self, dunst, requests):
        assert requests.ask_json("permessi-stato")["notifiche"] == "concesso"
        assert requests.ask("permessi-notifiche") == "granted"

    def test_folder_is_tried(self, home, requests, folder):
        assert requests.ask("permessi-documenti") == "concesso"
        assert folder.is_dir() and not any(folder.iterdir())
        folder.rmdir()
        folder.parent.rmdir()
        folder.parent.write_text("no folder", encoding="utf-8")
        assert requests.ask("permessi-documenti") == "negato"

    def test_properties_of_the_documents_folder_are_shown(self, desktop, home, requests):
        with FileManager(desktop) as manager:
            requests.tell("permessi-apri", quale="documenti")
            requests.tell("permessi-apri", quale="altro")
            processes.wait_for("properties", lambda: manager.shown)
            time.sleep(0.3)
            assert manager.shown == [[(home.folder / "Documents").as_uri()]]

    @pytest.mark.parametrize("running, name", [("ubuntu:GNOME", "gnome-notifications-panel"), ("KDE", "kcm_notifications"),
                                               ("XFCE", "xfce4-notifyd-config")])
    def test_settings_for_notifications_are_those_of_the_desktop(self, preferences, start, page, running, name):
        start(environment={"XDG_CURRENT_DESKTOP": running})
        page.wait_loaded()
        requests = Requests(page)
        requests.tell("apri-preferenze")
        processes.wait_for("settings", lambda: preferences() == [name])
        requests.tell("permessi-apri", quale="notifiche")
        processes.wait_for("settings again", lambda: preferences() == [name, name])


class TestRestart:
    def test_program_comes_back_once_from_wherever_it_lies(self, desktop, home, site, page):
        bundle = home.folder / "Il mio \"Orvalle\" d'oro $HOME `x`.app"
        shutil.copytree(build_folder() / BUNDLE, bundle, symlinks=True)
        log = desktop.logs / "restart"
        variables = home.environment | inherited_options(bundle) | {"ORVALLE_APP_URL": site.url}
        first = processes.spawn([str(bundle / "AppRun")], variables, log)
        page.wait_loaded()
        assert Requests(page).ask_json("permessi-stato")["percorso"] == str(bundle)
        page.leave("push({tipo: 'permessi-riavvia'}); push({tipo: 'permessi-riavvia'})")
        assert first.wait(40) == 0
        page.wait_loaded(2)
        time.sleep(3)
        running = running_from(bundle)
        assert len(running) == 1 and first.pid not in running
        assert len(site.visits) == 2
        # It is its own master: nothing of it hangs on who started the first one.
        assert os.getsid(running[0]) == running[0]
        desktop.run(str(bundle / "AppRun"), "--quit", env=variables)
        processes.wait_for("end", lambda: not running_from(bundle))


def test_taps_are_felt_where_there_is_hardware_for_them(desktop, requests):
    requests.tell("tattile", che="tocco")
    requests.ask("stato-permesso")
    with FeedbackService(desktop) as feedback:
        for what in ("tocco", "scatto"):
            requests.tell("tattile", che=what)
        processes.wait_for("both taps", lambda: len(feedback.events) > 1)
    assert feedback.events == [("app.orvalle.Orvalle", "button-pressed"), ("app.orvalle.Orvalle", "button-released")]


def running_from(bundle):
    """The processes that run the bundle's program."""
    found = []
    for entry in os.listdir("/proc"):
        try:
            if entry.isdigit() and os.readlink(f"/proc/{entry}/exe") == str(bundle / "bin/orvalle"):
                found.append(int(entry))
        except OSError:
            continue
    return found
