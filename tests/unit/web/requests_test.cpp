#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "tests/unit/web/finestra_fixture.h"
#include "web/request_table.h"
#include "web/script_expressions.h"

/// What each request of the page comes to, whatever it carries.
namespace orvalle::web {
namespace {

namespace fs = std::filesystem;

/// Values of every type that JSON has, as JSON.
const Texts kValues = {"null", "true",  "false", "0",  "1",   "-1.5",     "1e300",
                       "\"\"", "\"x\"", "[]",    "{}", "[1]", "{\"a\":1}"};

class RequestsTest : public FinestraFixture {
 protected:
  RequestsTest() {
    auto pattern = (fs::temp_directory_path() / "orvalle-requests-XXXXXX").string();
    root = ::mkdtemp(pattern.data());
    system.userFolders.documentsFolder = root;
    folder = root / "Orvalle Backup";
    system.notificationCentre.current = platform::NotificationStatus::Authorised;
    showPage();
  }
  ~RequestsTest() override { fs::remove_all(root); }

  /// Posts the message and lets everything that follows from it happen.
  void post(const std::string& json) {
    window().post(json);
    system.time.runPosted();
  }
  /// The answer to a request with the given members after its name and id; "-" for none.
  std::string ask(const std::string& tipo, const std::string& members = "") {
    window().scripts.clear();
    post(R"({"tipo":")" + tipo + R"(","id":7)" + (members.empty() ? "" : "," + members) + "}");
    if (window().scripts.empty()) return "-";
    EXPECT_EQ(window().scripts.size(), 1u) << tipo;
    return textOf(window().scripts[0], 7);
  }
  /// The text in a reply to the request `id`.
  static std::string textOf(const std::string& script, int id) {
    const std::string head =
        "window.__orvalleRisposta && window.__orvalleRisposta(" + std::to_string(id) + ", ";
    const std::string tail = "[0])";
    if (!script.starts_with(head) || !script.ends_with(tail)) return "no reply: " + script;
    const auto array = base::parseJson(script.substr(head.size(), script.size() - head.size() - tail.size()));
    return base::jsonText(&array.value().as_array().at(0)).value();
  }
  Texts files() const {
    Texts found;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) found.push_back(entry.path().filename());
    std::sort(found.begin(), found.end());
    return found;
  }

  fs::path root;
  fs::path folder;
};

TEST(RequestTable, hasTheNamesInTheirOrder) {
  const Texts all = {"stato-permesso",
                     "permesso",
                     "notifica",
                     "tattile",
                     "apri-preferenze",
                     "apri-fuori",
                     "aggiornamenti-stato",
                     "aggiornamenti-cerca",
                     "aggiornamenti-installa",
                     "aggiornamenti-automatici",
                     "backup",
                     "backup-ultimo",
                     "backup-elenco",
                     "attivita-stato",
                     "attivita-giorno",
                     "attivita-accendi",
                     "attivita-titoli",
                     "attivita-cartella",
                     "permessi-stato",
                     "permessi-apri",
                     "permessi-notifiche",
                     "permessi-riavvia",
                     "permessi-documenti",
                     "apri-backup"};
  Texts names;
  for (const auto& row : requestTable()) names.emplace_back(row.tipo);
  EXPECT_EQ(names, all);
}

TEST_F(RequestsTest, answerOnlyWhereAnAnswerIsDue) {
  const Texts answered = {"stato-permesso",     "permesso",           "backup",
                          "backup-ultimo",      "backup-elenco",      "attivita-stato",
                          "attivita-giorno",    "permessi-stato",     "permessi-notifiche",
                          "permessi-documenti", "aggiornamenti-stato"};
  for (const auto& row : requestTable()) {
    const bool due = std::find(answered.begin(), answered.end(), row.tipo) != answered.end();
    EXPECT_EQ(ask(std::string(row.tipo)) != "-", due) << row.tipo;
  }
}

TEST_F(RequestsTest, areCarriedOutButNotAnsweredWithoutAWholeNumberAsId) {
  for (const std::string id : {"null", "true", "\"7\"", "7.5", "[7]", "{}", "1e300", "9223372036854775808"}) {
    for (const auto& row : requestTable()) {
      window().scripts.clear();
      post(R"({"tipo":")" + std::string(row.tipo) + R"(","id":)" + id + "}");
      EXPECT_EQ(window().scripts, Texts()) << row.tipo << " " << id;
    }
  }
  post(R"({"tipo":"backup","nome":"a.json","contenuto":"{}"})");
  EXPECT_EQ(window().scripts, Texts());
  EXPECT_EQ(files(), Texts{"a.json"});
}

TEST_F(RequestsTest, areAnsweredToTheIdThatAsked) {
  struct Row {
    std::string json;
    std::string shown;
  };
  for (const auto& row : {Row{"0", "0"}, Row{"-3", "-3"}, Row{"7.0", "7"}, Row{"1e3", "1000"},
                          Row{"9223372036854775807", "9223372036854775807"}}) {
    window().scripts.clear();
    post(R"({"tipo":"backup-ultimo","id":)" + row.json + "}");
    EXPECT_EQ(window().scripts,
              Texts{"window.__orvalleRisposta && window.__orvalleRisposta(" + row.shown + ", [\"\"][0])"});
  }
}

TEST_F(RequestsTest, takeEveryArgumentOfEveryTypeWithoutHarm) {
  for (const auto& row : requestTable()) {
    // Ends the program; has its own test.
    if (row.tipo == "permessi-riavvia") continue;
    for (const std::string key : {"titolo", "corpo", "tag", "che", "url", "acceso", "nome", "contenuto",
                                  "giorno", "quale", "id", "altro"}) {
      for (const auto& value : kValues) {
        window().scripts.clear();
        post("{\"tipo\":\"" + std::string(row.tipo) + "\",\"" + key + "\":" + value + "}");
        EXPECT_LE(window().scripts.size(), key == "id" ? 1u : 0u) << row.tipo << " " << key << " " << value;
      }
    }
  }
  EXPECT_TRUE(system.workspace.opened.empty());
}

TEST_F(RequestsTest, notificationHasItsTextsOrTheDefaults) {
  ask("notifica", R"("titolo":"Pausa","corpo":"Cinque minuti","tag":"pausa")");
  ask("notifica");
  ask("notifica", R"("titolo":5,"corpo":["x"],"tag":null)");
  ask("notifica", R"("titolo":"","corpo":"","tag":"")");
  const auto& shown = system.notificationCentre.shown;
  ASSERT_EQ(shown.size(), 4u);
  EXPECT_EQ(shown[0].title, "Pausa");
  EXPECT_EQ(shown[0].body, "Cinque minuti");
  EXPECT_EQ(shown[0].identifier, "pausa");
  const std::regex uuid("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  for (const auto i : {1u, 2u}) {
    EXPECT_EQ(shown[i].title, "Orvalle");
    EXPECT_EQ(shown[i].body, "");
    EXPECT_TRUE(std::regex_match(shown[i].identifier, uuid)) << shown[i].identifier;
  }
  EXPECT_NE(shown[1].identifier, shown[2].identifier);
  EXPECT_EQ(shown[3].title, "");
  EXPECT_EQ(shown[3].identifier, "");
}

TEST_F(RequestsTest, permissionToNotifyIsTold) {
  EXPECT_EQ(ask("stato-permesso"), "granted");
  EXPECT_EQ(ask("permesso"), "granted");
  system.notificationCentre.current = platform::NotificationStatus::NotDetermined;
  EXPECT_EQ(ask("stato-permesso"), "default");
  EXPECT_TRUE(system.notificationCentre.requests.empty());
  system.notificationCentre.userAgrees = false;
  EXPECT_EQ(ask("permesso"), "denied");
  EXPECT_EQ(system.notificationCentre.requests.size(), 1u);
}

TEST_F(RequestsTest, settingsForNotificationsOpen) {
  EXPECT_EQ(ask("apri-preferenze"), "-");
  EXPECT_EQ(system.settingsPanes.opened,
            std::vector<platform::SettingsPane>{platform::SettingsPane::Notifications});
}

TEST_F(RequestsTest, updatesAreSwitchedAndDescribed) {
  for (const std::string on : {"true", "false", "1", "\"true\"", "null"}) {
    ask("aggiornamenti-automatici", "\"acceso\":true");
    EXPECT_EQ(ask("aggiornamenti-automatici", "\"acceso\":" + on), "-");
    EXPECT_EQ(system.defaults.boolean("aggiornamentiAutomatici"), on == "true") << on;
  }
  EXPECT_EQ(ask("aggiornamenti-stato"), R"({"versione":"1.2.3","build":7,"automatico":false})");
}

TEST_F(RequestsTest, updatesAreFoundAndInstalled) {
  system.userFolders.temporaryFolder = root;
  EXPECT_EQ(ask("aggiornamenti-installa"), "-");
  EXPECT_TRUE(system.http.requests.empty());
  EXPECT_EQ(ask("aggiornamenti-cerca"), "-");
  ASSERT_EQ(system.http.requests.size(), 1u);
  system.http.requests[0]->gotBody(R"({"versione":"2","build":8,"url":"/x.zip"})");
  system.time.runPosted();
  ASSERT_EQ(window().scripts.size(), 1u);
  EXPECT_EQ(textOf(window().scripts[0], 7), R"({"esito":"trovato","versione":"2","build":8})");
  post(R"({"tipo":"aggiornamenti-installa"})");
  ASSERT_EQ(system.http.requests.size(), 2u);
  EXPECT_EQ(system.http.requests[1]->url, "https://app.example/x.zip");
}

TEST_F(RequestsTest, backupsAreWrittenAndTold) {
  EXPECT_EQ(ask("backup-ultimo"), "");
  EXPECT_EQ(ask("backup-elenco"), "[]");
  EXPECT_EQ(ask("backup", R"("nome":"../2026.json","contenuto":"{\"a\":\"\\\"\\\\\"}")"),
            (folder / "2026.json").string());
  std::ifstream file(folder / "2026.json");
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), R"({"a":"\"\\"})");
  EXPECT_EQ(ask("backup-ultimo"), "2026.json");
  const auto list = base::parseJson(ask("backup-elenco")).value();
  EXPECT_EQ(list.as_array().size(), 1u);
}

TEST_F(RequestsTest, backupThatIsNotWrittenIsAnsweredWithTheEmptyText) {
  for (const std::string members :
       {"", R"("nome":"")", R"("nome":5,"contenuto":"x")", R"("nome":"..")", R"("contenuto":"x")"}) {
    EXPECT_EQ(ask("backup", members), "") << members;
  }
  EXPECT_EQ(files(), Texts());
  // Without a text the file is empty.
  EXPECT_EQ(ask("backup", R"("nome":"a.json","contenuto":5)"), (folder / "a.json").string());
  EXPECT_EQ(fs::file_size(folder / "a.json"), 0u);
}

TEST_F(RequestsTest, backupFolderIsShown) {
  EXPECT_EQ(ask("apri-backup"), "-");
  EXPECT_EQ(system.workspace.folders, std::vector<fs::path>{folder});
}

TEST_F(RequestsTest, permissionsAreToldAndChanged) {
  const auto state = base::parseJson(ask("permessi-stato")).value();
  EXPECT_EQ(base::jsonText(base::jsonMember(state, "notifiche")), "concesso");
  EXPECT_EQ(base::jsonText(base::jsonMember(state, "cartellaBackup")), folder.string());
  EXPECT_EQ(ask("permessi-notifiche"), "granted");
  EXPECT_EQ(ask("permessi-documenti"), "concesso");
  EXPECT_EQ(ask("permessi-apri"), "-");
  EXPECT_EQ(ask("permessi-apri", R"("quale":["documenti"])"), "-");
  EXPECT_TRUE(system.settingsPanes.opened.empty());
  EXPECT_EQ(ask("permessi-apri", R"("quale":"documenti")"), "-");
  EXPECT_EQ(system.settingsPanes.opened,
            std::vector<platform::SettingsPane>{platform::SettingsPane::Documents});
  EXPECT_EQ(ask("permessi-riavvia"), "-");
  EXPECT_EQ(system.processes.waitingForExit, std::vector<fs::path>{"/opt/Orvalle.app"});
}

TEST_F(RequestsTest, laterMessagesWaitForABackup) {
  system.background.hold();
  window().post(R"({"tipo":"backup","id":1,"nome":"a.json","contenuto":"{}"})");
  window().post(R"({"tipo":"backup-ultimo","id":2})");
  window().post(R"({"tipo":"backup","id":3,"nome":"b.json","contenuto":"{}"})");
  window().post(R"({"tipo":"tattile"})");
  window().post(R"({"tipo":"backup-ultimo","id":4})");
  system.time.runPosted();
  EXPECT_EQ(window().scripts, Texts());
  EXPECT_TRUE(system.haptics.performed.empty());
  EXPECT_EQ(system.background.waiting(), 1u);
  system.background.release();
  system.time.runPosted();
  ASSERT_EQ(window().scripts.size(), 4u);
  EXPECT_EQ(textOf(window().scripts[0], 1), (folder / "a.json").string());
  EXPECT_EQ(textOf(window().scripts[1], 2), "a.json");
  EXPECT_EQ(textOf(window().scripts[2], 3), (folder / "b.json").string());
  EXPECT_EQ(textOf(window().scripts[3], 4), "b.json");
  EXPECT_EQ(system.haptics.performed.size(), 1u);
}

TEST_F(RequestsTest, aVeryLongMessageIsReadAsideAndInItsTurn) {
  const std::string text(5 * 1024 * 1024, 'x');
  system.background.hold();
  window().post(R"({"tipo":"backup","id":1,"nome":"a.json","contenuto":")" + text + "\"}");
  window().post(R"({"tipo":"backup-ultimo","id":2})");
  system.time.runPosted();
  EXPECT_EQ(window().scripts, Texts());
  system.background.release();
  system.time.runPosted();
  ASSERT_EQ(window().scripts.size(), 2u);
  EXPECT_EQ(textOf(window().scripts[1], 2), "a.json");
  EXPECT_EQ(fs::file_size(folder / "a.json"), text.size());

  // One that is no message holds up nobody.
  post("[\"" + text + "\"]");
  post("{\"" + text);
  EXPECT_EQ(ask("backup-ultimo"), "a.json");
}

TEST_F(RequestsTest, aLongQueueBehindABackupIsWorkedOffOneAfterTheOther) {
  system.background.hold();
  window().post(R"({"tipo":"backup","nome":"a.json","contenuto":"{}"})");
  for (int i = 0; i < 100'000; ++i) window().post(R"({"tipo":"tattile"})");
  EXPECT_TRUE(system.haptics.performed.empty());
  system.background.release();
  system.time.runPosted();
  EXPECT_EQ(system.haptics.performed.size(), 100'000u);
}

TEST_F(RequestsTest, laterAnswersComeInTheOrderInWhichTheyAreReady) {
  system.notificationCentre.hold();
  window().post(R"({"tipo":"stato-permesso","id":1})");
  window().post(R"({"tipo":"backup-ultimo","id":2})");
  EXPECT_EQ(window().scripts.size(), 1u);
  EXPECT_EQ(textOf(window().scripts[0], 2), "");
  system.notificationCentre.release();
  // Not inside the service's own call.
  EXPECT_EQ(window().scripts.size(), 1u);
  system.time.runPosted();
  ASSERT_EQ(window().scripts.size(), 2u);
  EXPECT_EQ(textOf(window().scripts[1], 1), "granted");
}

TEST_F(RequestsTest, anAnswerAfterAReloadReachesTheNewPage) {
  system.notificationCentre.hold();
  window().post(R"({"tipo":"stato-permesso","id":1})");
  finestra->vai(base::Url::parse("https://app.example/sprint").value());
  window().commit();
  window().scripts.clear();
  system.notificationCentre.release();
  system.time.runPosted();
  ASSERT_EQ(window().scripts.size(), 1u);
  EXPECT_EQ(textOf(window().scripts[0], 1), "granted");
}

TEST_F(RequestsTest, noAnswerReachesAForeignPage) {
  system.notificationCentre.hold();
  system.background.hold();
  window().post(R"({"tipo":"stato-permesso","id":1})");
  window().post(R"({"tipo":"backup","id":2,"nome":"a.json"})");
  window().navigateByScript("https://evil.example/");
  window().scripts.clear();
  system.notificationCentre.release();
  system.background.release();
  system.time.runPosted();
  EXPECT_EQ(window().scripts, Texts());
  EXPECT_EQ(files(), Texts{"a.json"});
}

TEST_F(RequestsTest, nothingHappensOnceTheWindowIsGone) {
  system.notificationCentre.hold();
  system.background.hold();
  window().post(R"({"tipo":"stato-permesso","id":1})");
  window().post(R"({"tipo":"backup","id":2,"nome":"a.json"})");
  window().post(R"({"tipo":"tattile"})");
  finestra.reset();
  system.notificationCentre.release();
  system.background.release();
  system.time.runPosted();
  EXPECT_TRUE(system.haptics.performed.empty());
  EXPECT_EQ(files(), Texts{"a.json"});
}

}  // namespace
}  // namespace orvalle::web
