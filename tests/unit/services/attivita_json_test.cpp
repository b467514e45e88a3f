// What the page gets to read.

#include <sys/stat.h>

#include "tests/unit/services/attivita_fixture.h"

namespace orvalle::services {
namespace {

using namespace std::chrono_literals;
using std::nullopt;
namespace fs = std::filesystem;

class AttivitaJsonTest : public AttivitaFixture {
 protected:
  static constexpr const char* kBlocco =
      R"([{"app":"Posta","da":"2026-03-02T08:00:00Z","a":"2026-03-02T08:30:00Z"}])";
};

TEST_F(AttivitaJsonTest, hasTheOpenStretchFromAMinuteOn) {
  turnOn();
  use("Posta");
  pass(70s);
  use("Editor");
  pass(60s);
  // Editor has been seen for 55 seconds.
  EXPECT_EQ(told().size(), 1u);
  pass(5s);
  EXPECT_EQ(told(), (std::vector<Blocco>{{"Posta", nullopt, at(9, 0, 5), at(9, 1, 10)},
                                         {"Editor", nullopt, at(9, 1, 15), at(9, 2, 15)}}));
  // Only what is closed is on the disk.
  EXPECT_EQ(saved().size(), 1u);
}

TEST_F(AttivitaJsonTest, leavesOutAnOpenStretchOf59Seconds) {
  turnOn();
  use("Posta");
  pass(5s);
  system.time.jumpWallClock(54s);
  pass(5s);
  EXPECT_EQ(diary->giornoJSON("2026-03-02"), "[]");
  system.time.jumpWallClock(-4s);
  pass(5s);
  EXPECT_EQ(told(), (std::vector<Blocco>{{"Posta", nullopt, at(9, 0, 5), at(9, 1, 5)}}));
}

TEST_F(AttivitaJsonTest, doesNotCloseTheOpenStretchByTellingIt) {
  turnOn();
  use("Editor");
  pass(2min);
  EXPECT_EQ(diary->giornoJSON("2026-03-02"), diary->giornoJSON("2026-03-02"));
  EXPECT_FALSE(fs::exists(folder()));
}

TEST_F(AttivitaJsonTest, readsAnotherDayFromItsFile) {
  writeDay("2026-02-28", kBlocco);
  turnOn();
  use("Editor");
  pass(2min);
  EXPECT_EQ(diary->giornoJSON("2026-02-28"), kBlocco);
}

TEST_F(AttivitaJsonTest, hasNothingForAnEmptyFileAndForNone) {
  writeDay("2026-02-28", "[]");
  EXPECT_EQ(diary->giornoJSON("2026-02-28"), "[]");
  EXPECT_EQ(diary->giornoJSON("2026-02-27"), "[]");
}

TEST_F(AttivitaJsonTest, hasNothingForTheEmptyDayBeforeTheDiaryWasStarted) {
  writeDay("", kBlocco);
  EXPECT_EQ(diary->giornoJSON(""), "[]");
  // Afterwards it is a name like any other.
  turnOn();
  EXPECT_EQ(diary->giornoJSON(""), kBlocco);
}

TEST_F(AttivitaJsonTest, takesTheDayAsTheNameOfAFile) {
  writeDay("quaderno", kBlocco);
  EXPECT_EQ(diary->giornoJSON("quaderno"), kBlocco);
  EXPECT_EQ(diary->giornoJSON("14/03/2026"), "[]");
  EXPECT_EQ(diary->giornoJSON(std::string(5000, 'x')), "[]");
  EXPECT_EQ(diary->giornoJSON(std::string("quaderno.json\0", 14)), "[]");
  EXPECT_EQ(diary->giornoJSON("quaderno.json"), "[]");
}

TEST_F(AttivitaJsonTest, givesAwayNoFileThatIsNoDay) {
  fs::create_directories(folder());
  std::ofstream(disk.path() / "Orvalle/altro.json") << R"({"segreto":1})";
  std::ofstream(disk.path() / "Orvalle/lista.json") << R"(["segreto"])";
  EXPECT_EQ(diary->giornoJSON("../altro"), "[]");
  EXPECT_EQ(diary->giornoJSON("../lista"), "[]");
  EXPECT_EQ(diary->giornoJSON((disk.path() / "Orvalle/altro").string()), "[]");
}

TEST_F(AttivitaJsonTest, hasNothingForAFileThatCannotBeReadAndLeavesItAlone) {
  for (const auto& text :
       {std::string("{"), std::string(), std::string("[{\"app\":\"\xff\"}]"), std::string(1 << 20, '['),
        std::string(R"([{"app":"x","da":"2025-03-14T09:05:00.250Z","a":"2025-03-14T09:06:00Z"}])")}) {
    writeDay("2026-02-28", text);
    EXPECT_EQ(diary->giornoJSON("2026-02-28"), "[]");
    EXPECT_EQ(contents("2026-02-28"), text);
  }
  EXPECT_TRUE(system.log.lines.empty());
}

TEST_F(AttivitaJsonTest, replacesAnUnreadableFileWithTheNextSave) {
  writeDay("2026-03-02", "rotto");
  turnOn();
  use("Editor");
  pass(2min);
  EXPECT_EQ(contents("2026-03-02"), "rotto");
  diary->ferma();
  EXPECT_EQ(saved().size(), 1u);
}

TEST_F(AttivitaJsonTest, makesNothingByReading) {
  EXPECT_EQ(diary->giornoJSON("2026-03-02"), "[]");
  EXPECT_FALSE(fs::exists(disk.path() / "Orvalle"));
}

TEST_F(AttivitaJsonTest, doesNotWaitForAPipe) {
  fs::create_directories(folder());
  ASSERT_EQ(::mkfifo(file("2026-02-28").c_str(), 0600), 0);
  EXPECT_EQ(diary->giornoJSON("2026-02-28"), "[]");
}

TEST_F(AttivitaJsonTest, isAnEmptyListWhereANameIsNotUtf8) {
  turnOn();
  use("\xff");
  pass(2min);
  EXPECT_EQ(diary->giornoJSON("2026-03-02"), "[]");
  diary->ferma();
  ASSERT_FALSE(system.log.lines.empty());
  EXPECT_EQ(system.log.lines[0].rfind("Orvalle: diario attività — ", 0), 0u);
}

TEST_F(AttivitaJsonTest, tellsItsState) {
  const auto state = [&] { return base::parseJson(diary->statoJSON()).value(); };
  EXPECT_EQ(state(), (base::Json{{"acceso", false}, {"titoli", false}, {"cartella", folder().string()}}));
  diary->setAcceso(true);
  EXPECT_EQ(base::jsonBoolean(base::jsonMember(state(), "acceso")), true);
  system.accessibility.consent = true;
  EXPECT_EQ(state(), (base::Json{{"acceso", true}, {"titoli", true}, {"cartella", folder().string()}}));
  EXPECT_FALSE(fs::exists(folder()));
  EXPECT_EQ(system.accessibility.questions, 0);
}

TEST_F(AttivitaJsonTest, hasNoStateWhereItsFolderIsNotUtf8) {
  system.userFolders.supportFolder = "/tmp/\xff";
  EXPECT_EQ(diary->statoJSON(), "");
}

}  // namespace
}  // namespace orvalle::services
