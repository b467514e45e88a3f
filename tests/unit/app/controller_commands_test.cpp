#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

struct Control {
  std::string title;
  std::string word;
};

const std::vector<Control> kControls = {
    {"Ferma la sessione", "stop"}, {"Allunga di 5 minuti", "plus5"}, {"Accorcia di 5 minuti", "minus5"}};

/// The commands "stop", "plus5", "minus5" and "task": to the page, else over the channel, never both.
class ControllerCommandsTest : public ControllerFixture {
 protected:
  ControllerCommandsTest() { launch(); }
  /// The commands that the page got; wake-ups are left out.
  Texts pageCommands() {
    Texts commands;
    for (const auto& script : window().scripts) {
      if (script.find("__orvalleComando") != std::string::npos) commands.push_back(script);
    }
    return commands;
  }
  void forget() {
    window().scripts.clear();
    channel.commands.clear();
  }
};

TEST_F(ControllerCommandsTest, goToThePageAloneWhenThereIsOne) {
  window().commit();
  goLive();
  for (const auto& control : kControls) {
    forget();
    choose(control.title);
    EXPECT_EQ(pageCommands(), Texts{commandScript(control.word)});
    EXPECT_TRUE(channel.commands.empty()) << control.word;
  }
  forget();
  choose("Leggere");
  EXPECT_EQ(pageCommands(), Texts{commandScript("task", "'t2'")});
  EXPECT_TRUE(channel.commands.empty());
}

TEST_F(ControllerCommandsTest, goOverTheChannelAloneBeforeThePageIsThere) {
  goLive();
  for (const auto& control : kControls) choose(control.title);
  choose("Leggere");
  EXPECT_EQ(channel.commands, (Texts{"stop", "plus5", "minus5", "task t2"}));
  EXPECT_TRUE(window().scripts.empty());
}

TEST_F(ControllerCommandsTest, goOverTheChannelAloneWhileTheOfflinePageIsShown) {
  window().commit();
  window().fail("niente rete");
  goLive();
  for (const auto& control : kControls) choose(control.title);
  choose("Leggere");
  EXPECT_EQ(channel.commands, (Texts{"stop", "plus5", "minus5", "task t2"}));
  EXPECT_TRUE(window().scripts.empty());
}

TEST_F(ControllerCommandsTest, areLostQuietlyWithoutPageAndChannel) {
  neighbours.makeChannel = nullptr;
  launchWithPage();
  pushFromPage(session());
  window().fail("niente rete");
  forget();
  for (const auto& control : kControls) choose(control.title);
  choose("Leggere");
  EXPECT_TRUE(window().scripts.empty());
}

TEST_F(ControllerCommandsTest, goTheSameWayFromTheMenuBarEvenWithoutASession) {
  window().commit();
  for (const std::string word : {"stop", "plus5", "minus5"}) {
    forget();
    choose(*barItem(word));
    EXPECT_EQ(pageCommands(), Texts{commandScript(word)});
    EXPECT_TRUE(channel.commands.empty());
  }
}

TEST_F(ControllerCommandsTest, areNotSentFromTheStatusMenuWithoutALiveSession) {
  window().commit();
  for (const auto& control : kControls) choose(control.title);
  EXPECT_TRUE(window().scripts.empty());
  EXPECT_TRUE(channel.commands.empty());
}

TEST_F(ControllerCommandsTest, showTheWindowAfterStopWhicheverWayItGoes) {
  goLive();
  system.journal.clear();
  choose("Ferma la sessione");
  EXPECT_EQ(channel.commands, Texts{"stop"});
  EXPECT_EQ(system.journal, (Texts{"activate", "web window in front"}));

  window().commit();
  system.journal.clear();
  choose("Ferma la sessione");
  EXPECT_EQ(system.journal, (Texts{"activate", "web window in front"}));
  // Sent first, then shown.
  EXPECT_EQ(window().scripts, (Texts{commandScript("stop"), "window.dispatchEvent(new Event('focus'))"}));
}

TEST_F(ControllerCommandsTest, neverShowTheWindowForTheOthers) {
  for (const bool withPage : {false, true}) {
    if (withPage) window().commit();
    goLive();
    system.journal.clear();
    choose("Allunga di 5 minuti");
    choose("Accorcia di 5 minuti");
    choose("Scrivere");
    EXPECT_TRUE(system.journal.empty()) << withPage;
  }
}

TEST_F(ControllerCommandsTest, flipTheMarkOfATaskAtOnce) {
  window().commit();
  goLive();
  choose("Scrivere");
  EXPECT_TRUE(row("Scrivere").checked());
  choose("Leggere");
  EXPECT_FALSE(row("Leggere").checked());
  choose("Scrivere");
  EXPECT_FALSE(row("Scrivere").checked());
  EXPECT_EQ(pageCommands(), (Texts{commandScript("task", "'t1'"), commandScript("task", "'t2'"),
                                   commandScript("task", "'t1'")}));
}

TEST_F(ControllerCommandsTest, flipTheMarkBeforeTheyAreSent) {
  goLive();
  channel.watching = [&] { EXPECT_TRUE(row("Scrivere").checked()); };
  choose("Scrivere");
  EXPECT_EQ(channel.commands, Texts{"task t1"});
}

TEST_F(ControllerCommandsTest, doNotRenderForATask) {
  goLive();
  int changes = 0;
  const auto listening = system.statusBar.state.menu->onChange([&] { ++changes; });
  const auto* before = &row("Scrivere");
  choose("Scrivere");
  EXPECT_EQ(changes, 1) << "the mark alone";
  EXPECT_EQ(&row("Scrivere"), before);
}

TEST_F(ControllerCommandsTest, areNotSentForAnItemThatStandsForNoTask) {
  window().commit();
  goLive();
  for (const bool checked : {false, true}) {
    platform::MenuItem stray("Scrivere", "toggleTask");
    stray.setTarget(controller.get());
    stray.setChecked(checked);
    choose(stray);
    EXPECT_EQ(stray.checked(), checked);
  }
  EXPECT_TRUE(window().scripts.empty());
  EXPECT_TRUE(channel.commands.empty());
}

TEST_F(ControllerCommandsTest, bringATasksIdUnchangedByEitherRoad) {
  auto snapshot = session();
  snapshot.tasks = {{"x');window.pwned=1;//\n", "Uno", false}, {"", "Due", false}};
  goLive(snapshot);
  choose("Uno");
  choose("Due");
  EXPECT_EQ(channel.commands, (Texts{"task x');window.pwned=1;//\n", "task "}));
  window().commit();
  choose("Uno");
  choose("Due");
  EXPECT_EQ(pageCommands(),
            (Texts{commandScript("task", R"('x\');window.pwned=1;//\x0a')"), commandScript("task", "''")}));
}

}  // namespace
}  // namespace orvalle::app
