#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

class ControllerLaunchTest : public ControllerFixture {
 protected:
  /// "title | action | key | target", or "---" for a separator.
  std::string described(const platform::MenuItem& item) const {
    if (item.isSeparator()) return "---";
    const char* target = !item.target() ? "chain" : item.target() == controller.get() ? "controller" : "?";
    return item.title() + " | " + item.action() + " | " + item.keyEquivalent() + " | " + target;
  }
};

TEST_F(ControllerLaunchTest, makesItsPartsInTheirOrder) {
  make();
  EXPECT_EQ(system.journal, (Texts{"status item made", "channel made", "panel made", "pairing made"}));
}

TEST_F(ControllerLaunchTest, beginsWithNothingShownAndNothingRunning) {
  make();
  EXPECT_TRUE(system.statusBar.state.itemShown);
  EXPECT_EQ(system.statusBar.state.menu, nullptr);
  EXPECT_EQ(system.statusBar.state.faceChanges, 0);
  EXPECT_FALSE(panel().visible);
  EXPECT_TRUE(system.webWindows.made.empty());
  EXPECT_EQ(system.mainMenu.bar, nullptr);
  EXPECT_EQ(system.time.timerCount(), 0u);
  EXPECT_EQ(system.defaults.writes, 0);
  EXPECT_EQ(channel.connects, 0);
  EXPECT_FALSE(controller->live());
  EXPECT_EQ(controller->rimanenteVivo(), 0);
}

TEST_F(ControllerLaunchTest, startsUpInItsOrder) {
  pairUp();
  make();
  system.journal.clear();
  controller->applicationDidFinishLaunching();
  EXPECT_EQ(system.journal, (Texts{"main menu", "notifiche avviate", "aggiornamenti avviati",
                                   "attività avviata", "web window made", "load https://app.example/",
                                   "activate", "web window in front", "channel connects"}));
  EXPECT_EQ(system.time.timerCount(), 3u);
}

TEST_F(ControllerLaunchTest, buildsTheStatusMenuAfterTheServicesHaveStarted) {
  int seen = 0;
  neighbours.avviaAttivita = [&] {
    ++seen;
    EXPECT_EQ(system.statusBar.state.menu, nullptr);
  };
  launch();
  EXPECT_EQ(seen, 1);
  EXPECT_NE(system.statusBar.state.menu, nullptr);
}

/// Lets a test look at the moment in which the main window is made.
class WatchedWebWindows : public platform::memory::MemoryWebWindows {
 public:
  using MemoryWebWindows::MemoryWebWindows;
  std::unique_ptr<platform::WebWindow> make(const platform::WebWindowSpec& spec,
                                            platform::WebWindowDelegate& delegate) override {
    onMake();
    return MemoryWebWindows::make(spec, delegate);
  }
  std::function<void()> onMake;
};

TEST_F(ControllerLaunchTest, hasMenuAndCallbacksReadyBeforeTheWindowOpensAndRendersAfterwards) {
  WatchedWebWindows windows(system.journal);
  const auto watched = system.platform({.webWindows = &windows});
  int seen = 0;
  windows.onMake = [&] {
    ++seen;
    ASSERT_NE(system.statusBar.state.menu, nullptr);
    EXPECT_EQ(menu().items().size(), 14u);
    EXPECT_TRUE(channel.channel->onState);
    EXPECT_TRUE(channel.channel->onConnection);
    EXPECT_TRUE(pairing->onSaved);
    EXPECT_EQ(statusLine(), "");
    EXPECT_EQ(system.statusBar.state.faceChanges, 0);
  };
  controller = std::make_unique<Controller>(watched, address, config, services, neighbours);
  controller->applicationDidFinishLaunching();
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(face().title, " Orvalle");
  controller.reset();
}

TEST_F(ControllerLaunchTest, rendersBeforeItConnectsAndConnectsBeforeItsTimersRun) {
  pairUp();
  channel.watching = [&] {
    EXPECT_EQ(face().title, " Orvalle");
    EXPECT_EQ(statusLine(), "Cerco il canale…");
    EXPECT_EQ(system.time.timerCount(), 0u);
  };
  launch();
  EXPECT_EQ(channel.connects, 1);
}

TEST_F(ControllerLaunchTest, connectsOnlyWhenPaired) {
  launch();
  EXPECT_EQ(channel.connects, 0);
  config.setUrl("u");
  config.setAnonKey("a");
  launch();
  EXPECT_EQ(channel.connects, 0);
  config.setChannelKey("c");
  launch();
  EXPECT_EQ(channel.connects, 1);
}

TEST_F(ControllerLaunchTest, connectsAnewWhenNewPairingIsSaved) {
  launch();
  pairing->onSaved();
  EXPECT_EQ(channel.connects, 1);
  pairing->onSaved();
  EXPECT_EQ(channel.connects, 2);
}

TEST_F(ControllerLaunchTest, laysOutTheStatusMenu) {
  launch();
  Texts lines;
  for (const auto& item : menu().items()) lines.push_back(described(*item));
  EXPECT_EQ(lines, (Texts{
                       "Non abbinata: apri «Abbina…» |  |  | controller",
                       "---",
                       "Apri Orvalle | openApp | o | controller",
                       "Tienila sopra le altre app | toggleOverlay |  | controller",
                       "Abbina… | showPair |  | controller",
                       "---",
                       "Ferma la sessione | stop |  | controller",
                       "Allunga di 5 minuti | plus5 |  | controller",
                       "Accorcia di 5 minuti | minus5 |  | controller",
                       "---",
                       "Task della roadmap |  |  | chain",
                       "---",
                       "Cerca aggiornamenti… | cercaAggiornamenti |  | chain",
                       "Esci | terminate: | q | chain",
                   }));
}

TEST_F(ControllerLaunchTest, keepsTheLabelsOfTheStatusMenuFromBeingChosen) {
  launch();
  goLive();
  for (const auto& label : {menu().items().at(0), menu().items().at(10)}) {
    EXPECT_FALSE(label->enabled()) << label->title();
    EXPECT_FALSE(label->usable(system.application.responderChain())) << label->title();
  }
  for (const auto title : {"Apri Orvalle", "Tienila sopra le altre app", "Abbina…"}) {
    EXPECT_TRUE(row(title).enabled()) << title;
    EXPECT_FALSE(row(title).checked() && title != std::string("Tienila sopra le altre app"));
  }
}

TEST_F(ControllerLaunchTest, givesTheMenuBarItsTwoSpecialMenus) {
  launch();
  ASSERT_NE(system.mainMenu.bar, nullptr);
  EXPECT_EQ(system.mainMenu.windows->title(), "Finestra");
  EXPECT_EQ(system.mainMenu.help->title(), "Aiuto");
  EXPECT_EQ(barItem("openApp")->target(), controller.get());
  // The bar has items of its own.
  EXPECT_EQ(menu().indexOf(*barItem("openApp")), std::nullopt);
}

TEST_F(ControllerLaunchTest, marksTheOverlayInTheStatusMenuAlone) {
  launch();
  EXPECT_TRUE(row("Tienila sopra le altre app").checked());
  EXPECT_FALSE(barItem("toggleOverlay")->checked());
  system.defaults.set("overlayOn", false);
  launch();
  EXPECT_FALSE(row("Tienila sopra le altre app").checked());
}

TEST_F(ControllerLaunchTest, switchesTheOverlayOnUnlessFalseIsStored) {
  using Value = platform::Defaults::Value;
  struct Row {
    std::optional<Value> stored;
    bool on;
  };
  for (const auto& given :
       {Row{{}, true}, Row{Value(true), true}, Row{Value(false), false}, Row{Value(std::int64_t{0}), true},
        Row{Value(0.0), true}, Row{Value(std::string("false")), true}, Row{Value(std::string()), true}}) {
    if (given.stored) system.defaults.set("overlayOn", *given.stored);
    launch();
    EXPECT_EQ(row("Tienila sopra le altre app").checked(), given.on);
    EXPECT_EQ(system.defaults.value("overlayOn"), given.stored) << "starting up stores nothing";
  }
}

TEST_F(ControllerLaunchTest, doesWithoutTheNeighboursThatAreNotThere) {
  neighbours = {};
  pairUp();
  launch();
  EXPECT_EQ(statusLine(), "Cerco il canale…");
  EXPECT_EQ(system.time.timerCount(), 3u);
  auto& chain = system.application.responderChain();
  EXPECT_FALSE(row("Abbina…").usable(chain));
  EXPECT_FALSE(barItem("showPair")->usable(chain));
  EXPECT_FALSE(barItem("cercaAggiornamenti")->usable(chain));
  choose("Abbina…");
  window().commit();
  pushFromPage(session());
  EXPECT_TRUE(controller->live());
  system.time.advance(std::chrono::minutes(1));
  controller->applicationWillTerminate();
}

TEST_F(ControllerLaunchTest, savesPairingWithoutAChannel) {
  neighbours.makeChannel = nullptr;
  launch();
  pairing->onSaved();
  EXPECT_EQ(channel.connects, 0);
}

}  // namespace
}  // namespace orvalle::app
