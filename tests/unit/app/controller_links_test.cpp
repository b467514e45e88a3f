#include <gtest/gtest.h>

#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

using namespace std::chrono_literals;

class ControllerLinksTest : public ControllerFixture {
 protected:
  void launchWithLoadedPage() {
    launchWithPage();
    window().finish();
    forget();
  }
  void forget() {
    window().scripts.clear();
    window().loads.clear();
    system.journal.clear();
  }
  /// The commands that the page was given, as script.
  Texts commands() {
    Texts found;
    for (const auto& script : window().scripts) {
      if (script.find("__orvalleComando") != std::string::npos) found.push_back(script);
    }
    return found;
  }
  static std::string vai(const std::string& outcome) {
    return commandScript("vai", "'/settings?sezione=google&esito=" + outcome + "'");
  }
};

TEST_F(ControllerLinksTest, googleShowsTheWindowAndThenSendsThePageToItsSettings) {
  launchWithLoadedPage();
  controller->applicationOpen({"orvalle://google?esito=errore"});
  EXPECT_EQ(system.journal, (Texts{"activate", "web window in front"}));
  ASSERT_EQ(window().scripts.size(), 2U);
  EXPECT_EQ(window().scripts[0], "window.dispatchEvent(new Event('focus'))");
  EXPECT_EQ(window().scripts[1], vai("errore"));
  EXPECT_TRUE(window().loads.empty());
}

TEST_F(ControllerLinksTest, signInLoadsItsAddressAndShowsTheWindow) {
  launchWithLoadedPage();
  controller->applicationOpen({"orvalle://accesso?codice=ABC123"});
  EXPECT_EQ(system.journal, (Texts{"load https://app.example/api/mac/entra?codice=ABC123", "activate",
                                   "web window in front"}));
  EXPECT_EQ(commands(), Texts());
}

TEST_F(ControllerLinksTest, signInGoesToTheAddressOfTheMoment) {
  launchWithLoadedPage();
  system.environment.variables["ORVALLE_APP_URL"] = "http://localhost:4717/";
  controller->applicationOpen({"orvalle://accesso?codice=A"});
  EXPECT_EQ(window().loads, Texts{"http://localhost:4717/api/mac/entra?codice=A"});
}

TEST_F(ControllerLinksTest, severalLinksAreEachHandledInOrder) {
  launchWithLoadedPage();
  controller->applicationOpen({"orvalle://google?esito=uno", "https://google?esito=x", "orvalle://accesso",
                               "orvalle://google?esito=due", "", "orvalle://accesso?codice=A",
                               "orvalle://accesso?codice=B", "orvalle://google?esito=tre"});
  EXPECT_EQ(commands(), (Texts{vai("uno"), vai("due"), vai("tre")}));
  EXPECT_EQ(window().loads, (Texts{"https://app.example/api/mac/entra?codice=A",
                                   "https://app.example/api/mac/entra?codice=B"}));
}

TEST_F(ControllerLinksTest, whatIsNoneOfOursDoesNothingAtAll) {
  launchWithLoadedPage();
  controller->applicationOpen({"https://accesso?codice=A", "orvalle://accesso?code=A", "orvalle://altro",
                               "orvalle:google", "/tmp/file", "orvalle://google?esito=a b"});
  controller->applicationOpen({});
  EXPECT_EQ(system.journal, Texts());
  EXPECT_EQ(window().scripts, Texts());
  EXPECT_TRUE(system.workspace.opened.empty());
}

TEST_F(ControllerLinksTest, googleWaitsForAPageThatIsStillLoading) {
  launch();
  controller->applicationOpen({"orvalle://google?esito=uno"});
  window().commit();
  controller->applicationOpen({"orvalle://google?esito=due"});
  EXPECT_EQ(commands(), Texts()) << "the page's script has not run yet";
  window().finish();
  EXPECT_EQ(commands(), (Texts{vai("uno"), vai("due")}));
  window().navigateByScript("https://app.example/altro");
  window().finish();
  EXPECT_EQ(commands().size(), 2U) << "given once";
}

TEST_F(ControllerLinksTest, googleReachesAPageWhoseLastPartsNeverCome) {
  launch();
  controller->applicationOpen({"orvalle://google?esito=uno"});
  window().commit();
  system.time.advance(4900ms);
  EXPECT_EQ(commands(), Texts());
  system.time.advance(200ms);
  EXPECT_EQ(commands(), Texts{vai("uno")});
  window().finish();
  EXPECT_EQ(commands().size(), 1U) << "given once";
}

TEST_F(ControllerLinksTest, googleWaitsUntilThePageIsOurs) {
  launch();
  controller->applicationOpen({"orvalle://google"});
  window().navigateByScript("https://login.example/");
  window().finish();
  system.time.advance(10s);
  EXPECT_EQ(commands(), Texts());
  window().navigateByScript("https://app.example/");
  window().finish();
  EXPECT_EQ(commands(), Texts{vai("ok")});
}

TEST_F(ControllerLinksTest, googleIsLostWithTheLoadThatFails) {
  launch();
  controller->applicationOpen({"orvalle://google?esito=uno"});
  window().fail("nessuna rete");
  window().hasPage = false;
  controller->applicationOpen({"orvalle://google?esito=due"});
  controller->applicationOpen({"orvalle://accesso?codice=A", "orvalle://google?esito=tre"});
  window().commit();
  window().finish();
  EXPECT_EQ(commands(), Texts{vai("tre")});
}

TEST_F(ControllerLinksTest, googleIsLostOnAPageThatBrokeDown) {
  launchWithLoadedPage();
  window().hasPage = false;
  window().fail("il processo si è chiuso");
  controller->applicationOpen({"orvalle://google"});
  window().navigateByScript("https://app.example/");
  window().finish();
  EXPECT_EQ(commands(), Texts());
}

TEST_F(ControllerLinksTest, signInTakesThePlaceOfTheFirstLoad) {
  launch();
  controller->applicationOpen({"orvalle://accesso?codice=A"});
  EXPECT_EQ(window().loads, (Texts{"https://app.example/", "https://app.example/api/mac/entra?codice=A"}));
}

TEST_F(ControllerLinksTest, outcomeCannotLeaveItsQuotes) {
  launchWithLoadedPage();
  controller->applicationOpen({"orvalle://google?esito=x');window.pwned=1;//"});
  EXPECT_EQ(commands(), Texts{vai("x%27);window.pwned%3D1;//")});
}

TEST_F(ControllerLinksTest, linksGoNowhereBesideThePage) {
  pairUp();
  launch();
  controller->applicationOpen({"orvalle://google"});
  EXPECT_EQ(channel.commands, Texts()) << "no way round over the channel";
}

TEST_F(ControllerLinksTest, sessionAskedForFromTheDesktopWaitsForThePage) {
  launch();
  platform::MenuItem sender("", "sessioneDaFuori");
  controller->perform("sessioneDaFuori", sender);
  window().commit();
  EXPECT_EQ(commands(), Texts());
  window().finish();
  EXPECT_EQ(commands(), Texts{commandScript("subito", "'25'")});
}

}  // namespace
}  // namespace orvalle::app
