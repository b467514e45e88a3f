#include <chrono>
#include <filesystem>
#include <fstream>

#include "tests/unit/update/aggiornamenti_fixture.h"

/// The offer of a newer release.
namespace orvalle::update {
namespace {

constexpr char kReopens[] = "L'app si chiude e si riapre da sola: quello che stai facendo resta dov'è.";

class PropostaTest : public AggiornamentiFixture {
 protected:
  PropostaTest() { system.userFolders.temporaryFolder = testing::TempDir(); }
  void offer(const std::string& more = "") {
    aggiornamenti.controlla(true);
    answer(manifest(6, more));
    ASSERT_EQ(system.alerts.waiting.size(), 1u);
  }
  bool downloads() { return !request().file.empty(); }
};

TEST_F(PropostaTest, putsTheNoteFirst) {
  offer(R"(,"note":"<b>Più</b> veloce")");
  EXPECT_EQ(shown().at(1), "<b>Più</b> veloce\n\n" + std::string(kReopens));
}

TEST_F(PropostaTest, saysOnlyWhatHappensWithoutANote) {
  offer(R"(,"note":"")");
  EXPECT_EQ(shown().at(1), kReopens);
}

TEST_F(PropostaTest, isAcceptedByReturn) {
  offer();
  const auto& alert = system.alerts.waiting.front().alert;
  EXPECT_EQ(alert.returnButton, 0u);
  EXPECT_EQ(alert.closing, 1u);
}

TEST_F(PropostaTest, notesTheUpdateThatItLeadsTo) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "proposta";
  system.userFolders.temporaryFolder = folder;
  offer();
  system.alerts.press(0);
  std::ofstream(request().file) << "PK";
  request().gotFile(200);
  const auto& runs = system.processes.runs;
  runs.back()->end(0, "1000");
  const std::filesystem::path work = runs.back()->arguments.at(1);
  std::filesystem::create_directory(work / "Orvalle.app");
  std::ofstream(work / "Orvalle.app" / "identifier") << "app.orvalle.Orvalle";
  runs.back()->end();
  EXPECT_FALSE(aggiornamenti.ultimoAggiornamento());
  runs.back()->end();
  ASSERT_TRUE(aggiornamenti.ultimoAggiornamento());
  EXPECT_EQ(aggiornamenti.ultimoAggiornamento()->versione, "2.0");
  EXPECT_EQ(system.application.terminations, 1);
  std::filesystem::remove_all(folder);
}

TEST_F(PropostaTest, downloadsWhenTheUserAgrees) {
  offer();
  system.alerts.press(0);
  EXPECT_TRUE(downloads());
  EXPECT_EQ(request().url, "https://app.example/x.zip");
  EXPECT_FALSE(system.defaults.value("aggiornamentoSaltato"));
}

TEST_F(PropostaTest, asksAgainLaterWhenTheUserPutsItOff) {
  offer();
  system.alerts.press(1);
  EXPECT_EQ(system.defaults.writes, 0);
  offer();
  EXPECT_FALSE(downloads());
}

TEST_F(PropostaTest, isPutOffWhenItsWindowIsClosed) {
  offer();
  system.alerts.close();
  EXPECT_EQ(system.defaults.writes, 0);
  EXPECT_FALSE(downloads());
}

TEST_F(PropostaTest, isNotMadeAgainWhenTheUserSkipsIt) {
  offer();
  system.alerts.press(2);
  EXPECT_EQ(system.defaults.value("aggiornamentoSaltato"), platform::Defaults::Value(std::int64_t{6}));
  EXPECT_FALSE(downloads());
  aggiornamenti.controlla(true);
  answer(manifest(6));
  EXPECT_TRUE(system.alerts.waiting.empty());
}

TEST_F(PropostaTest, isMadeOnceHoweverLongItWaits) {
  aggiornamenti.avvia();
  answer(manifest(6));
  system.journal.clear();
  for (int check = 0; check < 4; ++check) {
    system.time.advance(std::chrono::hours(6));
    answer(manifest(6));
  }
  EXPECT_EQ(system.http.requests.size(), 5u);
  EXPECT_EQ(system.alerts.waiting.size(), 1u);
  EXPECT_EQ(system.journal, Texts{});
  system.alerts.press(2);
  EXPECT_TRUE(system.alerts.waiting.empty());
}

TEST_F(PropostaTest, isMadeAgainOnlyOnceItIsAnswered) {
  offer();
  system.alerts.press(1);
  offer();
  aggiornamenti.controlla(true);
  answer(manifest(6));
  EXPECT_EQ(system.alerts.waiting.size(), 1u);
}

TEST_F(PropostaTest, comesToTheFrontWhenTheUserAsks) {
  offer();
  system.journal.clear();
  aggiornamenti.controlla(false);
  answer(manifest(6));
  EXPECT_EQ(system.alerts.waiting.size(), 1u);
  EXPECT_EQ(system.journal, Texts{"activate"});
}

TEST_F(PropostaTest, ofAnotherReleaseWaitsItsTurn) {
  offer();
  aggiornamenti.controlla(true);
  answer(manifest(7));
  EXPECT_EQ(system.alerts.waiting.size(), 2u);
  system.alerts.press(2);
  EXPECT_EQ(system.defaults.value("aggiornamentoSaltato"), platform::Defaults::Value(std::int64_t{6}));
  EXPECT_EQ(system.alerts.waiting.size(), 1u);
}

TEST_F(PropostaTest, ofAPackageIsLeftToThePackageManager) {
  system.bundle.manager = "apt";
  offer(R"(,"note":"Più veloce")");
  const auto& alert = system.alerts.waiting.front().alert;
  EXPECT_EQ(alert.informative, "Più veloce\n\n" + std::string(kReopens) +
                                   " Questa copia fa parte del sistema: aggiornala con apt.");
  EXPECT_EQ(alert.buttons, (std::vector<std::string>{"Più tardi", "Salta questa versione"}));
  system.alerts.close();
  EXPECT_EQ(system.defaults.writes, 0);
  offer();
  system.alerts.press(0);
  EXPECT_EQ(system.defaults.writes, 0);
  offer();
  system.alerts.press(1);
  EXPECT_EQ(system.defaults.value("aggiornamentoSaltato"), platform::Defaults::Value(std::int64_t{6}));
  EXPECT_FALSE(downloads());
}

}  // namespace
}  // namespace orvalle::update
