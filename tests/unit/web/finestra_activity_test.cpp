// The requests of the page that concern the activity diary.

#include "base/json.h"
#include "tests/unit/base/temporary_folder.h"
#include "tests/unit/base/time_zone.h"
#include "tests/unit/web/finestra_fixture.h"

namespace orvalle::web {
namespace {

using namespace std::chrono_literals;

class FinestraActivityTest : public FinestraFixture {
 protected:
  FinestraActivityTest() {
    system.userFolders.supportFolder = disk.path();
    showPage();
  }
  void post(const std::string& json) { window().post(json); }
  Texts scripts() { return window().scripts; }
  static std::string reply(int id, const std::string& text) {
    return "window.__orvalleRisposta && window.__orvalleRisposta(" + std::to_string(id) + ", " +
           *base::writeJson(base::Json{text}) + "[0])";
  }

  base::TimeZone zone{"UTC"};
  base::TemporaryFolder disk;
};

TEST_F(FinestraActivityTest, tellsTheDiarysState) {
  post(R"({"tipo":"attivita-stato","id":3})");
  EXPECT_EQ(scripts(), Texts{reply(3, services.attivita.statoJSON())});
}

TEST_F(FinestraActivityTest, turnsTheDiaryOnAndOff) {
  post(R"({"tipo":"attivita-accendi","acceso":true,"id":3})");
  EXPECT_EQ(system.defaults.boolean("attivitaAccesa"), true);
  EXPECT_EQ(system.time.timerCount(), 1u);
  post(R"({"tipo":"attivita-accendi","acceso":false})");
  EXPECT_EQ(system.defaults.boolean("attivitaAccesa"), false);
  EXPECT_EQ(system.time.timerCount(), 0u);
  EXPECT_TRUE(scripts().empty());
}

TEST_F(FinestraActivityTest, turnsTheDiaryOffWhereNothingElseIsSaid) {
  for (const char* argument :
       {"", R"(,"acceso":1)", R"(,"acceso":"true")", R"(,"acceso":null)", R"(,"acceso":[true])"}) {
    services.attivita.setAcceso(true);
    services.attivita.avvia();
    post(R"({"tipo":"attivita-accendi")" + std::string(argument) + "}");
    EXPECT_EQ(system.defaults.boolean("attivitaAccesa"), false) << argument;
    EXPECT_EQ(system.time.timerCount(), 0u) << argument;
  }
}

TEST_F(FinestraActivityTest, tellsADay) {
  post(R"({"tipo":"attivita-accendi","acceso":true})");
  system.frontmost.name = "Editor";
  system.time.advance(65s);
  post(R"({"tipo":"attivita-giorno","id":4,"giorno":"2026-03-02"})");
  post(R"({"tipo":"attivita-giorno","id":5,"giorno":"2026-03-01"})");
  post(R"({"tipo":"attivita-giorno","giorno":"2026-03-02"})");
  EXPECT_EQ(scripts(),
            (Texts{reply(4, R"([{"app":"Editor","da":"2026-03-02T09:00:05Z","a":"2026-03-02T09:01:05Z"}])"),
                   reply(5, "[]")}));
}

TEST_F(FinestraActivityTest, tellsTheEmptyDayWhereNoneIsNamed) {
  for (const char* argument : {"", R"(,"giorno":5)", R"(,"giorno":null)", R"(,"giorno":["2026-03-02"])"}) {
    post(R"({"tipo":"attivita-giorno","id":6)" + std::string(argument) + "}");
    EXPECT_EQ(scripts().back(), reply(6, "[]")) << argument;
  }
  EXPECT_EQ(scripts().size(), 4u);
}

TEST_F(FinestraActivityTest, asksForTitlesAndOpensTheFolderWithoutAnAnswer) {
  post(R"({"tipo":"attivita-titoli","id":7})");
  EXPECT_EQ(system.accessibility.questions, 1);
  post(R"({"tipo":"attivita-cartella","id":8})");
  EXPECT_EQ(system.workspace.folders, std::vector<std::filesystem::path>{disk.path() / "Orvalle/attivita"});
  EXPECT_TRUE(scripts().empty());
}

}  // namespace
}  // namespace orvalle::web
