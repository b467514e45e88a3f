#include "web/finestra.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

#include "tests/unit/web/finestra_fixture.h"
#include "web/offline_page.h"
#include "web/script_expressions.h"

namespace orvalle::web {
namespace {

constexpr char kFrameKey[] = "NSWindow Frame finestraPrincipale";

class FinestraTest : public FinestraFixture {
 protected:
  static base::Url url(const std::string& text) { return base::Url::parse(text).value(); }
  Texts focusEvents(int count) { return Texts(static_cast<std::size_t>(count), kFocusExpression); }
};

TEST_F(FinestraTest, makesNoWindowBeforeItIsNeeded) {
  EXPECT_TRUE(system.webWindows.made.empty());
  finestra->sveglia();
  EXPECT_FALSE(finestra->comanda("vai", "/"));
  finestra->rispondi(1, "x");
  EXPECT_TRUE(system.webWindows.made.empty());
  EXPECT_TRUE(system.journal.empty());
}

TEST_F(FinestraTest, buildsTheWindowAsAgreed) {
  finestra->mostra();
  EXPECT_EQ(window().spec.title, "Orvalle");
  EXPECT_EQ(window().spec.contentSize, (base::Size{1180, 820}));
  EXPECT_EQ(window().spec.minimumSize, (base::Size{720, 560}));
  EXPECT_EQ(window().spec.stripHeight, 38);
  EXPECT_EQ(window().spec.messageHandler, "orvalle");
  EXPECT_EQ(window().spec.documentStartScript,
            "document.documentElement.style.setProperty(\n  '--barra-titolo', '38px');");
  EXPECT_EQ(window().autosaveName, "finestraPrincipale");
}

TEST_F(FinestraTest, loadsTheAddressBeforeItComesToTheFront) {
  finestra->mostra();
  EXPECT_EQ(system.journal,
            (Texts{"web window made", "load https://app.example/", "activate", "web window in front"}));
}

TEST_F(FinestraTest, buildsOnceAndNeverReloads) {
  showPage();
  system.journal.clear();
  finestra->mostra();
  finestra->mostra();
  EXPECT_EQ(system.journal, (Texts{"activate", "web window in front", "activate", "web window in front"}));
  EXPECT_EQ(system.webWindows.made.size(), 1u);
  EXPECT_EQ(window().scripts, focusEvents(2));
}

TEST_F(FinestraTest, keepsThePageWhenTheAddressChangesLater) {
  showPage();
  setHome("https://elsewhere.example/");
  finestra->mostra();
  EXPECT_EQ(window().loads, Texts{"https://app.example/"});
}

TEST_F(FinestraTest, centresTheWindowOnlyWithoutASavedFrame) {
  finestra->mostra();
  EXPECT_TRUE(window().centred);

  system.defaults.set(kFrameKey, "10 20 1180 820 0 0 1440 875");
  finestra = std::make_unique<Finestra>(platform, address, services);
  finestra->mostra();
  EXPECT_FALSE(system.webWindows.made.at(1)->centred);
}

TEST_F(FinestraTest, centresTheWindowWhenWhatIsSavedIsNoText) {
  system.defaults.set(kFrameKey, true);
  finestra->mostra();
  EXPECT_TRUE(window().centred);
}

TEST_F(FinestraTest, takesASavedFrameOfAnyText) {
  // What it says is the platform's business.
  system.defaults.set(kFrameKey, "");
  finestra->mostra();
  EXPECT_FALSE(window().centred);
}

TEST_F(FinestraTest, goesToAnAddressAndComesToTheFront) {
  showPage();
  system.journal.clear();
  finestra->vai(url("https://app.example/api/mac/entra?codice=A"));
  EXPECT_EQ(system.journal,
            (Texts{"load https://app.example/api/mac/entra?codice=A", "activate", "web window in front"}));
  EXPECT_EQ(window().scripts, focusEvents(1));
}

TEST_F(FinestraTest, buildsTheWindowToGoToAnAddress) {
  finestra->vai(url("https://other.example/"));
  EXPECT_EQ(system.journal, (Texts{"web window made", "load https://app.example/",
                                   "load https://other.example/", "activate", "web window in front"}));
}

TEST_F(FinestraTest, wakesALoadedPageOnly) {
  finestra->mostra();
  finestra->sveglia();
  EXPECT_TRUE(window().scripts.empty());
  window().commit();
  EXPECT_TRUE(window().scripts.empty());
  finestra->sveglia();
  EXPECT_EQ(window().scripts, Texts{"window.dispatchEvent(new Event('focus'))"});
  window().fail("niente rete");
  finestra->sveglia();
  EXPECT_EQ(window().scripts.size(), 1u);
  EXPECT_EQ(window().loads.size(), 1u);
}

TEST_F(FinestraTest, givesCommandsToALoadedPageOnly) {
  finestra->mostra();
  EXPECT_FALSE(finestra->comanda("vai", std::nullopt));
  EXPECT_TRUE(window().scripts.empty());
  window().commit();
  EXPECT_TRUE(finestra->comanda("vai", std::nullopt));
  EXPECT_TRUE(finestra->comanda("vai", "/mappa"));
  EXPECT_EQ(window().scripts, (Texts{"window.__orvalleComando && window.__orvalleComando('vai', null)",
                                     "window.__orvalleComando && window.__orvalleComando('vai', '/mappa')"}));
}

TEST_F(FinestraTest, refusesCommandsWhileTheOfflinePageIsShown) {
  showOfflinePage();
  EXPECT_FALSE(finestra->comanda("plus5", std::nullopt));
  EXPECT_TRUE(window().scripts.empty());
  finestra->vai(url("https://app.example/"));
  EXPECT_FALSE(finestra->comanda("plus5", std::nullopt));
  window().commit();
  EXPECT_TRUE(finestra->comanda("plus5", std::nullopt));
}

TEST_F(FinestraTest, answersRequestsThatHaveANumber) {
  showPage();
  finestra->rispondi(7, R"({"a":1})");
  finestra->rispondi(std::nullopt, "lost");
  EXPECT_EQ(window().scripts,
            Texts{R"(window.__orvalleRisposta && window.__orvalleRisposta(7, ["{\"a\":1}"][0]))"});
}

TEST_F(FinestraTest, answersIntoWhateverPageIsShown) {
  // The window being there is enough: a reloaded page decides about numbers it does not know.
  finestra->mostra();
  finestra->rispondi(1, "x");
  EXPECT_EQ(window().scripts.size(), 1u);
}

TEST_F(FinestraTest, showsTheOfflinePageForEveryFailure) {
  finestra->mostra();
  window().fail("Impossibile connettersi");
  EXPECT_EQ(window().htmls, Texts{offlinePage("Impossibile connettersi")});
  // A cancelled load is a failure like any other, and so is one after the page was shown.
  window().fail("Load request cancelled");
  EXPECT_EQ(window().htmls.back(), offlinePage("Load request cancelled"));
  finestra->vai(url("https://app.example/"));
  window().commit();
  window().fail("");
  EXPECT_EQ(window().htmls.size(), 3u);
  EXPECT_EQ(window().htmls.back(), offlinePage(""));
}

TEST_F(FinestraTest, retriesNothingByItself) {
  showOfflinePage();
  system.time.advance(std::chrono::hours(1));
  finestra->mostra();
  EXPECT_EQ(window().loads, Texts{"https://app.example/"});
  EXPECT_EQ(window().htmls.size(), 1u);
  EXPECT_TRUE(window().scripts.empty());
}

TEST_F(FinestraTest, handsTheStripOfItsWindowToTheUser) {
  finestra->mostra();
  window().pressStrip(1);
  EXPECT_EQ(window().drags, 1);
  window().pressStrip(2);
  EXPECT_EQ(window().zooms, 1);
  window().doubleClickAction = "Minimize";
  window().pressStrip(2);
  EXPECT_EQ(window().miniaturizations, 1);
}

TEST_F(FinestraTest, tellsItsAddress) {
  EXPECT_EQ(finestra->indirizzo().text(), "https://app.example/");
  system.environment.variables.clear();
  EXPECT_EQ(finestra->indirizzo().text(), "https://default.example/");
}

TEST_F(FinestraTest, takesItsWindowWithIt) {
  showPage();
  finestra.reset();
  EXPECT_EQ(system.webWindows.made, (std::vector<platform::memory::WebWindowState*>{nullptr}));
}

}  // namespace
}  // namespace orvalle::web
