#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "tests/unit/services/attivita_fixture.h"

namespace orvalle::services {
namespace {

using namespace std::chrono_literals;
using std::nullopt;
namespace fs = std::filesystem;

class AttivitaTest : public AttivitaFixture {};

TEST_F(AttivitaTest, isOffUntilTheUserTurnsItOn) {
  EXPECT_FALSE(diary->acceso());
  use("Editor");
  diary->avvia();
  pass(1h);
  EXPECT_EQ(system.frontmost.looks, 0);
  EXPECT_EQ(system.time.timerCount(), 0u);
  EXPECT_FALSE(fs::exists(folder()));
}

TEST_F(AttivitaTest, isOffWhereSomethingElseThanABooleanIsStored) {
  for (const platform::Defaults::Value& value :
       {platform::Defaults::Value(std::int64_t{1}), platform::Defaults::Value(std::string("true")),
        platform::Defaults::Value(1.0)}) {
    system.defaults.set("attivitaAccesa", value);
    EXPECT_FALSE(diary->acceso());
  }
}

TEST_F(AttivitaTest, onlyStoresThatItIsTurnedOn) {
  diary->setAcceso(true);
  EXPECT_EQ(system.defaults.boolean("attivitaAccesa"), true);
  EXPECT_EQ(system.time.timerCount(), 0u);
  diary->avvia();
  diary->setAcceso(false);
  EXPECT_EQ(system.defaults.boolean("attivitaAccesa"), false);
  EXPECT_EQ(system.time.timerCount(), 1u);
}

TEST_F(AttivitaTest, looksEveryFiveSecondsFirstAfterFive) {
  turnOn();
  pass(5s - 1ns);
  EXPECT_EQ(system.frontmost.looks, 0);
  pass(1ns);
  EXPECT_EQ(system.frontmost.looks, 1);
  pass(60s);
  EXPECT_EQ(system.frontmost.looks, 13);
}

TEST_F(AttivitaTest, keepsAStretchFromTheFirstLookToTheLast) {
  turnOn();
  use("Editor");
  pass(5min);
  use("Posta");
  pass(5s);
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 5, 0)}}));
}

TEST_F(AttivitaTest, keepsAStretchOfAMinuteAndDropsAShorterOne) {
  turnOn();
  use("Editor");
  // Seen at 5, 10, … 60 seconds: 55 seconds.
  pass(60s);
  use("Posta");
  // Seen at 65, … 125 seconds: 60 seconds.
  pass(65s);
  use("Editor");
  pass(5s);
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Posta", nullopt, at(9, 1, 5), at(9, 2, 5)}}));
}

TEST_F(AttivitaTest, recordsNothingOfSwitchingBackAndForthEveryHalfMinute) {
  turnOn();
  for (int i = 0; i < 20; ++i) {
    use(i % 2 == 0 ? "Editor" : "Browser");
    pass(30s);
  }
  use("Posta");
  pass(5s);
  EXPECT_TRUE(told().empty());
  EXPECT_FALSE(fs::exists(folder()));
}

TEST_F(AttivitaTest, skipsALookWhenNothingIsInFront) {
  turnOn();
  use("Editor");
  pass(2min);
  system.frontmost.name = nullopt;
  pass(10min);
  EXPECT_FALSE(fs::exists(file("2026-03-02")));
  EXPECT_EQ(told(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 2, 0)}}));
  // The same again goes on with the same stretch.
  use("Editor");
  pass(5s);
  EXPECT_EQ(told(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 12, 5)}}));
}

TEST_F(AttivitaTest, skipsALookBeforeAnythingWasInFront) {
  turnOn();
  pass(10min);
  EXPECT_TRUE(told().empty());
}

TEST_F(AttivitaTest, tellsNamesApartExactly) {
  turnOn();
  use("Editor");
  pass(70s);
  use("editor");
  pass(70s);
  EXPECT_EQ(told().size(), 2u);
}

TEST_F(AttivitaTest, startedTwiceLooksOnce) {
  turnOn();
  diary->avvia();
  EXPECT_EQ(system.time.timerCount(), 1u);
  pass(5s);
  EXPECT_EQ(system.frontmost.looks, 1);
}

TEST_F(AttivitaTest, startedAgainBeginsTheIntervalAnewAndKeepsTheOpenStretch) {
  turnOn();
  use("Editor");
  pass(64s);
  diary->avvia();
  pass(4s);
  EXPECT_EQ(system.frontmost.looks, 12);
  pass(1s);
  EXPECT_EQ(told(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 1, 9)}}));
}

TEST_F(AttivitaTest, stoppedSavesTheOpenStretch) {
  turnOn();
  use("Editor");
  pass(3min + 5s);
  EXPECT_FALSE(fs::exists(folder()));
  diary->ferma();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 3, 5)}}));
  EXPECT_EQ(system.time.timerCount(), 0u);
  pass(10min);
  EXPECT_EQ(system.frontmost.looks, 37);
}

TEST_F(AttivitaTest, stoppedAppendsToWhatTheDayHas) {
  writeDay("2026-03-02", R"([{"app":"Posta","da":"2026-03-02T08:00:00Z","a":"2026-03-02T08:30:00Z"}])");
  turnOn();
  use("Editor");
  pass(3min + 5s);
  diary->ferma();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Posta", nullopt, at(8, 0), at(8, 30)},
                                          {"Editor", nullopt, at(9, 0, 5), at(9, 3, 5)}}));
}

TEST_F(AttivitaTest, stoppedDropsAnOpenStretchThatIsTooShort) {
  turnOn();
  use("Editor");
  pass(60s);
  diary->ferma();
  EXPECT_EQ(contents("2026-03-02"), "[]");
}

TEST_F(AttivitaTest, stoppedWithoutEverHavingBeenStartedDoesNothing) {
  use("Editor");
  diary->ferma();
  EXPECT_FALSE(fs::exists(folder()));
  EXPECT_TRUE(system.log.lines.empty());
}

TEST_F(AttivitaTest, stoppedTwiceSavesTheSame) {
  turnOn();
  use("Editor");
  pass(3min);
  diary->ferma();
  const auto before = contents("2026-03-02");
  diary->ferma();
  EXPECT_EQ(contents("2026-03-02"), before);
}

TEST_F(AttivitaTest, goesOnAfterItWasStoppedAndStarted) {
  turnOn();
  use("Editor");
  pass(2min);
  diary->ferma();
  pass(10min);
  diary->avvia();
  pass(2min);
  diary->ferma();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 2, 0)},
                                          {"Editor", nullopt, at(9, 12, 5), at(9, 14, 0)}}));
}

TEST_F(AttivitaTest, goesOnInAnotherRunOfTheProgram) {
  turnOn();
  use("Editor");
  pass(2min);
  diary->ferma();
  diary = std::make_unique<Attivita>(*platform);
  diary->avvia();
  EXPECT_EQ(told(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 2, 0)}}));
}

TEST_F(AttivitaTest, leavesNothingBehind) {
  turnOn();
  use("Editor");
  diary.reset();
  EXPECT_EQ(system.time.timerCount(), 0u);
  pass(1min);
  EXPECT_EQ(system.frontmost.looks, 0);
}

TEST_F(AttivitaTest, writesOnlyWhenAStretchIsKept) {
  turnOn();
  use("Editor");
  pass(70s);
  use("Posta");
  pass(5s);
  // A time that no write of now could give it.
  const auto untouched = fs::last_write_time(file("2026-03-02")) - 1h;
  fs::last_write_time(file("2026-03-02"), untouched);
  pass(1h);
  EXPECT_EQ(fs::last_write_time(file("2026-03-02")), untouched);
  use("Editor");
  pass(5s);
  EXPECT_GT(fs::last_write_time(file("2026-03-02")), untouched);
}

TEST_F(AttivitaTest, writesForTheUserOnly) {
  const auto before = ::umask(0);
  turnOn();
  use("Editor");
  pass(2min);
  diary->ferma();
  ::umask(before);
  EXPECT_EQ(fs::status(folder()).permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(file("2026-03-02")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(AttivitaTest, logsAFailedSaveOnceAndGoesOn) {
  fs::create_directories(folder().parent_path());
  std::ofstream(folder()) << "a file is in the way";
  turnOn();
  use("Editor");
  pass(2min);
  use("Posta");
  pass(5s);
  EXPECT_EQ(system.log.lines, std::vector<std::string>{"Orvalle: diario attività — File exists"});
  // Nothing is lost: the next save has it all.
  fs::remove(folder());
  pass(2min);
  diary->ferma();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 2, 0)},
                                          {"Posta", nullopt, at(9, 2, 5), at(9, 4, 5)}}));
  EXPECT_EQ(system.log.lines.size(), 1u);
}

TEST_F(AttivitaTest, keepsTheOldFileWhereTheDiskIsFull) {
  const std::string old = R"([{"app":"Posta","da":"2026-03-02T08:00:00Z","a":"2026-03-02T08:30:00Z"}])";
  writeDay("2026-03-02", old);
  turnOn();
  use("Editor", std::string());
  pass(2min);
  // The system's own way of refusing to write.
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit none{16, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
  diary->ferma();
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, ignored);
  EXPECT_EQ(contents("2026-03-02"), old);
  // Closing the stretch and stopping each save.
  EXPECT_EQ(system.log.lines, std::vector<std::string>(2, "Orvalle: diario attività — File too large"));
  EXPECT_EQ(told().size(), 2u);
}

TEST_F(AttivitaTest, asksForTitlesAndShowsWhereToChangeThem) {
  diary->chiediTitoli();
  EXPECT_EQ(system.accessibility.questions, 1);
  EXPECT_EQ(system.accessibility.settingsOpened, 0);
  system.accessibility.answer(false);
  EXPECT_EQ(system.accessibility.settingsOpened, 1);
  diary->chiediTitoli();
  EXPECT_EQ(system.accessibility.questions, 2);
  system.accessibility.answer(true);
  EXPECT_EQ(system.accessibility.settingsOpened, 2);
  // Given already: both again, but there is nothing left to ask.
  diary->chiediTitoli();
  EXPECT_EQ(system.accessibility.questions, 2);
  EXPECT_EQ(system.accessibility.settingsOpened, 3);
}

TEST_F(AttivitaTest, opensItsFolderAndMakesItFirst) {
  diary->apriCartella();
  EXPECT_TRUE(fs::is_directory(folder()));
  EXPECT_EQ(fs::status(folder()).permissions(), fs::perms::owner_all);
  EXPECT_EQ(system.workspace.folders, std::vector<fs::path>{folder()});
}

TEST_F(AttivitaTest, ignoresThatItsFolderCannotBeMade) {
  fs::create_directories(folder().parent_path());
  std::ofstream(folder()) << "a file is in the way";
  diary->apriCartella();
  EXPECT_EQ(system.workspace.folders, std::vector<fs::path>{folder()});
  EXPECT_TRUE(system.log.lines.empty());
}

}  // namespace
}  // namespace orvalle::services
