#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

const std::string kFocusEvent = "window.dispatchEvent(new Event('focus'))";

struct Route {
  std::string action;
  std::string path;
};

const std::vector<Route> kRoutes = {
    {"vaiFocus", "/"},
    {"vaiSprint", "/sprint"},
    {"vaiCalendario", "/calendar"},
    {"vaiMappa", "/mappa"},
    {"vaiBrain", "/brain"},
    {"vaiProgetti", "/projects"},
    {"vaiObiettivi", "/goals"},
    {"vaiInbox", "/inbox"},
    {"vaiOggi", "/today"},
    {"vaiReview", "/review"},
    {"vaiReset", "/sunday"},
    {"vaiSfida", "/challenge"},
    {"vaiOrganizzazione", "/org"},
    {"vaiImpostazioni", "/settings"},
    {"vaiScorciatoie", "/settings?sezione=scorciatoie"},
};

class ControllerActionsTest : public ControllerFixture {
 protected:
  ControllerActionsTest() {
    launchWithPage();
    forget();
  }
  void forget() {
    system.journal.clear();
    window().scripts.clear();
  }
};

TEST_F(ControllerActionsTest, showTheWindowAndThenSendThePageToTheScreen) {
  for (const auto& route : kRoutes) {
    forget();
    choose(*barItem(route.action));
    EXPECT_EQ(system.journal, (Texts{"activate", "web window in front"})) << route.action;
    EXPECT_EQ(window().scripts, (Texts{kFocusEvent, commandScript("vai", "'" + route.path + "'")}));
    EXPECT_EQ(window().loads.size(), 1u) << "the page goes there by itself";
  }
  EXPECT_TRUE(channel.commands.empty());
}

TEST_F(ControllerActionsTest, haveARouteForEveryActionThatGoesSomewhere) {
  std::set<std::string> actions;
  for (const auto& route : kRoutes) actions.insert(route.action);
  for (const auto& opener : system.mainMenu.bar->items()) {
    for (const auto& item : opener->submenu()->items()) {
      const bool goesSomewhere = item->action().starts_with("vai");
      EXPECT_EQ(actions.contains(item->action()), goesSomewhere) << item->action();
    }
  }
}

TEST_F(ControllerActionsTest, loseANavigationThatThePageCannotTake) {
  window().fail("niente rete");
  forget();
  goLive();
  choose(*barItem("vaiMappa"));
  EXPECT_EQ(system.journal, (Texts{"activate", "web window in front"}));
  EXPECT_TRUE(window().scripts.empty());
  EXPECT_TRUE(channel.commands.empty());
}

TEST_F(ControllerActionsTest, openTheWindow) {
  choose("Apri Orvalle");
  EXPECT_EQ(system.journal, (Texts{"activate", "web window in front"}));
  EXPECT_EQ(window().scripts, Texts{kFocusEvent});
  choose(*barItem("openApp"));
  EXPECT_EQ(window().timesOrderedFront, 3);
}

TEST_F(ControllerActionsTest, showThePairingWindow) {
  choose("Abbina…");
  choose(*barItem("showPair"));
  EXPECT_EQ(system.journal, (Texts{"pairing shown", "pairing shown"}));
}

TEST_F(ControllerActionsTest, lookForUpdatesOnceAsked) {
  choose(*barItem("cercaAggiornamenti"));
  EXPECT_EQ(system.journal, Texts{"controllo aggiornamenti"});
}

TEST_F(ControllerActionsTest, reachWhatHasNoTargetThroughTheResponderChain) {
  int seen = 0;
  system.application.session = [&](platform::ApplicationDelegate&) {
    ++seen;
    system.journal.clear();
    EXPECT_TRUE(row("Cerca aggiornamenti…").usable(system.application.responderChain()));
    choose("Cerca aggiornamenti…");
    EXPECT_EQ(system.journal, Texts{"controllo aggiornamenti"});
    system.journal.clear();
    EXPECT_TRUE(row("Esci").usable(system.application.responderChain()));
    choose("Esci");
    EXPECT_EQ(system.journal, Texts{"attività ferma"});
  };
  make();
  EXPECT_EQ(system.application.run(*controller), 0);
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(system.journal, Texts{"attività ferma"}) << "the end is told once";
}

TEST_F(ControllerActionsTest, startAQuickSessionInTheWindow) {
  choose(*barItem("sessioneVeloce"));
  EXPECT_EQ(system.journal, (Texts{"activate", "web window in front"}));
  EXPECT_EQ(window().scripts, (Texts{kFocusEvent, commandScript("subito", "'25'")}));
  window().fail("niente rete");
  choose(*barItem("sessioneVeloce"));
  EXPECT_TRUE(channel.commands.empty()) << "it has no second road";
}

TEST_F(ControllerActionsTest, switchTheOverlayAndRememberIt) {
  goLive();
  EXPECT_TRUE(panel().visible);
  choose("Tienila sopra le altre app");
  EXPECT_FALSE(row("Tienila sopra le altre app").checked());
  EXPECT_EQ(system.defaults.boolean("overlayOn"), false);
  EXPECT_FALSE(panel().visible);
  choose(*barItem("toggleOverlay"));
  EXPECT_TRUE(row("Tienila sopra le altre app").checked());
  EXPECT_EQ(system.defaults.boolean("overlayOn"), true);
  EXPECT_TRUE(panel().visible);
  EXPECT_FALSE(barItem("toggleOverlay")->checked());
}

TEST_F(ControllerActionsTest, showNoOverlayWithoutALiveSession) {
  choose("Tienila sopra le altre app");
  choose("Tienila sopra le altre app");
  EXPECT_TRUE(row("Tienila sopra le altre app").checked());
  EXPECT_FALSE(panel().visible);
}

TEST_F(ControllerActionsTest, rememberTheOverlayFromOneLaunchToTheNext) {
  choose("Tienila sopra le altre app");
  launch();
  EXPECT_FALSE(row("Tienila sopra le altre app").checked());
  goLive();
  EXPECT_FALSE(panel().visible);
  choose("Tienila sopra le altre app");
  launch();
  goLive();
  EXPECT_TRUE(panel().visible);
}

TEST_F(ControllerActionsTest, respondToTheirOwnNamesOnly) {
  std::set<std::string> known = {"openApp", "showPair",   "cercaAggiornamenti", "stop",          "plus5",
                                 "minus5",  "toggleTask", "toggleOverlay",      "sessioneVeloce"};
  for (const auto& route : kRoutes) known.insert(route.action);
  for (const auto& name : known) EXPECT_TRUE(controller->responds(name)) << name;
  for (const std::string name : {"", "OpenApp", "openapp", "stop:", "vai",
                                 "terminate:", "hide:", "performMiniaturize:", "undo:", "copy:", "render"}) {
    EXPECT_FALSE(controller->responds(name)) << name;
    platform::MenuItem sender("x", name);
    controller->perform(name, sender);
  }
  EXPECT_TRUE(system.journal.empty());
  EXPECT_TRUE(window().scripts.empty());
}

}  // namespace
}  // namespace orvalle::app
