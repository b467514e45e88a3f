#include "tests/unit/update/aggiornamenti_fixture.h"

#include <algorithm>
#include <chrono>

namespace orvalle::update {
namespace {

using namespace std::chrono_literals;

const Texts kNoAnswer{"Non riesco a controllare gli aggiornamenti.", "Riprova quando c'è rete.", "Va bene"};
const Texts kUpToDate{"Sei già aggiornato.", "Orvalle 0.5.0 è l'ultima versione.", "Va bene"};
const Texts kOffer{"C'è Orvalle 2.0",
                   "L'app si chiude e si riapre da sola: quello che stai facendo resta dov'è.",
                   "Aggiorna e riavvia", "Più tardi", "Salta questa versione"};

class AggiornamentiTest : public AggiornamentiFixture {};

TEST_F(AggiornamentiTest, readsItsBuildAsAWholeNumberOrNotAtAll) {
  const std::vector<std::pair<std::optional<std::string>, std::int64_t>> cases{
      {"12", 12},
      {"+12", 12},
      {"-3", -3},
      {"0", 0},
      {"007", 7},
      {"9223372036854775807", INT64_MAX},
      {"-9223372036854775808", INT64_MIN},
      {"1.2", 0},
      {"12a", 0},
      {"", 0},
      {"+", 0},
      {"-", 0},
      {"+-3", 0},
      {"++3", 0},
      {" 12", 0},
      {"12 ", 0},
      {"0x10", 0},
      {"1e3", 0},
      {"9223372036854775808", 0},
      {"-9223372036854775809", 0},
      {"١٢", 0},
      {std::nullopt, 0}};
  for (const auto& [text, build] : cases) {
    system.bundle.versionText = text;
    EXPECT_EQ(aggiornamenti.buildCorrente(), build) << text.value_or("(absent)");
  }
}

TEST_F(AggiornamentiTest, readsItsVersionAsItStands) {
  EXPECT_EQ(aggiornamenti.versioneLeggibile(), "0.5.0");
  system.bundle.shortVersionText = "";
  EXPECT_EQ(aggiornamenti.versioneLeggibile(), "");
  system.bundle.shortVersionText = {};
  EXPECT_EQ(aggiornamenti.versioneLeggibile(), "?");
}

TEST_F(AggiornamentiTest, findsTheManifestAtTheRootOfTheWebApplicationsHost) {
  for (const auto& [home, expected] : std::initializer_list<std::pair<std::string, std::string>>{
           {"https://app.example", "https://app.example/mac/versione.json"},
           {"http://localhost:4717/a/b?c=d#e", "http://localhost:4717/mac/versione.json"}}) {
    system.environment.variables["ORVALLE_APP_URL"] = home;
    EXPECT_EQ(aggiornamenti.manifesto().value().text(), expected);
  }
}

TEST_F(AggiornamentiTest, asksWithTheTimeAsTheOnlyQuery) {
  system.environment.variables["ORVALLE_APP_URL"] = "https://app.example/a?t=1&u=2";
  aggiornamenti.controlla(true);
  system.time.advance(400ms);
  aggiornamenti.cerca([](const std::string&) {});
  const auto seconds = std::chrono::floor<std::chrono::seconds>(system.time.now()).time_since_epoch().count();
  const auto expected = "https://app.example/mac/versione.json?t=" + std::to_string(seconds);
  EXPECT_EQ(system.http.requests.at(0)->url, expected);
  EXPECT_EQ(system.http.requests.at(1)->url, expected);
  EXPECT_EQ(system.http.requests.at(1)->file, "");
}

TEST_F(AggiornamentiTest, cutsTheTimeTowardsZero) {
  const auto sinceEpoch = system.time.now().time_since_epoch();
  system.time.jumpWallClock(-sinceEpoch - 1500ms);
  aggiornamenti.controlla(true);
  EXPECT_EQ(request().url, "https://app.example/mac/versione.json?t=-1");
}

TEST_F(AggiornamentiTest, readsTheAddressAfreshEachTime) {
  aggiornamenti.controlla(true);
  system.environment.variables["ORVALLE_APP_URL"] = "https://other.example/";
  aggiornamenti.controlla(true);
  EXPECT_TRUE(request().url.starts_with("https://other.example/mac/"));
}

TEST_F(AggiornamentiTest, areAutomaticUntilSwitchedOff) {
  EXPECT_TRUE(aggiornamenti.automatici());
  aggiornamenti.setAutomatici(false);
  EXPECT_EQ(system.defaults.boolean("aggiornamentiAutomatici"), false);
  EXPECT_FALSE(aggiornamenti.automatici());
  aggiornamenti.setAutomatici(true);
  EXPECT_TRUE(aggiornamenti.automatici());
}

TEST_F(AggiornamentiTest, areNotAutomaticWhenTheSettingIsNoBoolean) {
  for (const platform::Defaults::Value& value :
       {platform::Defaults::Value(std::int64_t{1}), platform::Defaults::Value(std::string("true"))}) {
    system.defaults.set("aggiornamentiAutomatici", value);
    EXPECT_FALSE(aggiornamenti.automatici());
  }
}

TEST_F(AggiornamentiTest, doesNothingAtLaunchWhenSwitchedOff) {
  aggiornamenti.setAutomatici(false);
  aggiornamenti.avvia();
  aggiornamenti.setAutomatici(true);
  system.time.advance(24h);
  EXPECT_TRUE(system.http.requests.empty());
  EXPECT_EQ(system.time.timerCount(), 0u);
}

TEST_F(AggiornamentiTest, checksAtLaunchAndEverySixHours) {
  aggiornamenti.avvia();
  EXPECT_EQ(system.http.requests.size(), 1u);
  system.time.advance(6h - 1ms);
  EXPECT_EQ(system.http.requests.size(), 1u);
  system.time.advance(1ms);
  EXPECT_EQ(system.http.requests.size(), 2u);
  system.time.advance(6h);
  EXPECT_EQ(system.http.requests.size(), 3u);
}

TEST_F(AggiornamentiTest, skipsTheChecksWhileSwitchedOff) {
  aggiornamenti.avvia();
  aggiornamenti.setAutomatici(false);
  system.time.advance(12h);
  EXPECT_EQ(system.http.requests.size(), 1u);
  aggiornamenti.setAutomatici(true);
  system.time.advance(6h);
  EXPECT_EQ(system.http.requests.size(), 2u);
}

TEST_F(AggiornamentiTest, keepsQuietInAnAutomaticCheckThatFindsNothing) {
  const std::vector<std::optional<std::string>> bodies{std::nullopt, "", "<html>", manifest(5), manifest(4)};
  for (const auto& body : bodies) {
    aggiornamenti.controlla(true);
    answer(body);
    EXPECT_EQ(shown(), Texts()) << body.value_or("(absent)");
  }
  EXPECT_TRUE(system.log.lines.empty());
}

TEST_F(AggiornamentiTest, saysInAManualCheckThatItCouldNotCheck) {
  const std::vector<std::optional<std::string>> bodies{std::nullopt, "", "<html>",
                                                       R"({"versione":"2","build":9})"};
  for (const auto& body : bodies) {
    aggiornamenti.controlla(false);
    answer(body);
    EXPECT_EQ(shown(), kNoAnswer) << body.value_or("(absent)");
    system.alerts.press(0);
  }
  EXPECT_TRUE(system.log.lines.empty());
}

TEST_F(AggiornamentiTest, saysInAManualCheckThatThereIsNothingNewer) {
  for (const std::int64_t build : {5, 4, -1}) {
    aggiornamenti.controlla(false);
    answer(manifest(build));
    EXPECT_EQ(shown(), kUpToDate) << build;
    system.alerts.press(0);
  }
}

TEST_F(AggiornamentiTest, offersWhatIsNewer) {
  for (const bool automatic : {true, false}) {
    aggiornamenti.controlla(automatic);
    answer(manifest(6));
    EXPECT_EQ(shown(), kOffer);
    system.alerts.press(1);
  }
}

TEST_F(AggiornamentiTest, comesToTheFrontWithItsAlerts) {
  const auto activations = [&] {
    return std::count(system.journal.begin(), system.journal.end(), "activate");
  };
  aggiornamenti.controlla(true);
  answer(manifest(5));
  EXPECT_EQ(activations(), 0);
  for (const std::int64_t build : {5, 6}) {
    const auto before = activations();
    aggiornamenti.controlla(false);
    answer(manifest(build));
    EXPECT_EQ(activations(), before + 1);
  }
}

TEST_F(AggiornamentiTest, offersASkippedBuildOnlyWhenAsked) {
  system.defaults.set("aggiornamentoSaltato", std::int64_t{6});
  aggiornamenti.controlla(true);
  answer(manifest(6));
  EXPECT_EQ(shown(), Texts());
  aggiornamenti.controlla(true);
  answer(manifest(7));
  EXPECT_EQ(shown(), kOffer);
  system.alerts.press(1);
  system.defaults.set("aggiornamentoSaltato", std::int64_t{7});
  aggiornamenti.controlla(true);
  answer(manifest(6));
  EXPECT_EQ(shown(), kOffer);
  system.alerts.press(1);
  system.defaults.set("aggiornamentoSaltato", std::int64_t{6});
  aggiornamenti.controlla(false);
  answer(manifest(6));
  EXPECT_EQ(shown(), kOffer);
  EXPECT_TRUE(cerca(manifest(6)).starts_with(R"({"esito":"trovato")"));
}

TEST_F(AggiornamentiTest, takesASkippedBuildThatIsNoIntegerForNone) {
  system.bundle.versionText = "-3";
  for (const platform::Defaults::Value& value :
       {platform::Defaults::Value(6.0), platform::Defaults::Value(std::string("6"))}) {
    system.defaults.set("aggiornamentoSaltato", value);
    aggiornamenti.controlla(true);
    answer(manifest(0));
    EXPECT_EQ(shown(), Texts());
    aggiornamenti.controlla(true);
    answer(manifest(6));
    EXPECT_EQ(shown(), kOffer);
    system.alerts.press(1);
  }
}

TEST_F(AggiornamentiTest, doesNothingWithoutAnAddressForTheManifest) {
  system.environment.variables["ORVALLE_APP_URL"] = "relativo";
  EXPECT_FALSE(aggiornamenti.manifesto());
  aggiornamenti.controlla(true);
  aggiornamenti.controlla(false);
  Texts replies;
  aggiornamenti.cerca([&](const std::string& text) { replies.push_back(text); });
  EXPECT_EQ(replies, Texts{""});
  EXPECT_TRUE(system.http.requests.empty());
  EXPECT_EQ(shown(), Texts());
  EXPECT_EQ(aggiornamenti.statoJSON(), R"({"versione":"0.5.0","build":5,"automatico":true})");
}

TEST_F(AggiornamentiTest, tellsThePageWhatItFound) {
  EXPECT_EQ(cerca(manifest(6)), R"({"esito":"trovato","versione":"2.0","build":6})");
  EXPECT_EQ(cerca(manifest(5)), R"({"esito":"aggiornato","versione":"2.0","build":5})");
  EXPECT_EQ(cerca(manifest(6, R"(,"note":"Riga\n\"due\"","pubblicato":"ieri")")),
            R"({"esito":"trovato","versione":"2.0","build":6,"note":"Riga\n\"due\"","pubblicato":"ieri"})");
  EXPECT_EQ(cerca(manifest(6, R"(,"note":null,"pubblicato":null)")),
            R"({"esito":"trovato","versione":"2.0","build":6})");
  EXPECT_EQ(shown(), Texts());
}

TEST_F(AggiornamentiTest, tellsThePageNothingWhenThereIsNothingToRead) {
  const std::vector<std::optional<std::string>> bodies{std::nullopt, "", "<html>", R"({"build":9})"};
  for (const auto& body : bodies) EXPECT_EQ(cerca(body), "") << body.value_or("(absent)");
  EXPECT_EQ(shown(), Texts());
}

TEST_F(AggiornamentiTest, installsOnlyWhatThePagesLastCheckFound) {
  const auto downloads = [&] {
    aggiornamenti.installaTrovato();
    const bool started = !request().file.empty();
    if (started) {
      request().gotFile({});
      system.alerts.press(0);
    }
    return started;
  };
  system.userFolders.temporaryFolder = testing::TempDir();
  aggiornamenti.controlla(true);
  answer(manifest(6));
  system.alerts.press(1);
  EXPECT_FALSE(downloads());
  cerca(manifest(6));
  EXPECT_TRUE(downloads());
  cerca(std::nullopt);
  EXPECT_TRUE(downloads());
  cerca(manifest(5));
  EXPECT_FALSE(downloads());
}

TEST_F(AggiornamentiTest, describesItsState) {
  EXPECT_EQ(aggiornamenti.statoJSON(), R"({"versione":"0.5.0","build":5,"automatico":true})");
  aggiornamenti.setAutomatici(false);
  system.bundle.versionText = {};
  system.bundle.shortVersionText = {};
  EXPECT_EQ(aggiornamenti.statoJSON(), R"({"versione":"?","build":0,"automatico":false})");
}

TEST_F(AggiornamentiTest, describesTheLastUpdateWhenBothItsPartsAreKnown) {
  const std::string plain = R"({"versione":"0.5.0","build":5,"automatico":true})";
  system.defaults.set("ultimoAggiornamentoQuando", "2025-03-14T09:05:00Z");
  EXPECT_EQ(aggiornamenti.statoJSON(), plain);
  system.defaults.set("ultimoAggiornamentoVersione", std::int64_t{4});
  EXPECT_EQ(aggiornamenti.statoJSON(), plain);
  system.defaults.set("ultimoAggiornamentoVersione", "0.4.0");
  EXPECT_EQ(aggiornamenti.statoJSON(),
            R"({"versione":"0.5.0","build":5,"automatico":true,"ultimoQuando":"2025-03-14T09:05:00Z",)"
            R"("ultimaVersione":"0.4.0"})");
}

TEST_F(AggiornamentiTest, describesNothingThatCannotBeWritten) {
  system.bundle.shortVersionText = "\xff";
  EXPECT_EQ(aggiornamenti.statoJSON(), "");
}

TEST_F(AggiornamentiTest, notesTheTimeAndTheVersionOfAnUpdate) {
  using namespace std::chrono;
  system.time.jumpWallClock(sys_days(2025y / March / 14) + 9h + 5min + 900ms - system.time.now());
  aggiornamenti.segnaAggiornamento("2.0");
  EXPECT_EQ(aggiornamenti.ultimoAggiornamento(), (Aggiornamenti::Ultimo{"2025-03-14T09:05:00Z", "2.0"}));
  EXPECT_EQ(system.defaults.text("ultimoAggiornamentoQuando"), "2025-03-14T09:05:00Z");
}

TEST_F(AggiornamentiTest, checksSeveralTimesAtOnce) {
  Texts replies;
  aggiornamenti.controlla(false);
  aggiornamenti.cerca([&](const std::string& text) { replies.push_back(text.substr(0, 18)); });
  aggiornamenti.cerca([&](const std::string& text) { replies.push_back(text); });
  const auto requests = system.http.requests;
  requests[2]->gotBody({});
  requests[0]->gotBody(manifest(5));
  requests[1]->gotBody(manifest(6));
  EXPECT_EQ(replies, (Texts{"", R"({"esito":"trovato")"}));
  EXPECT_EQ(shown(), kUpToDate);
}

TEST_F(AggiornamentiTest, goesQuietAtTheEnd) {
  auto other = std::make_unique<Aggiornamenti>(platform, address);
  other->avvia();
  other.reset();
  EXPECT_TRUE(request().cancelled);
  answer(manifest(6));
  system.time.advance(6h);
  EXPECT_EQ(system.http.requests.size(), 1u);
  EXPECT_EQ(shown(), Texts());
}

}  // namespace
}  // namespace orvalle::update
