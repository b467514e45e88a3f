#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "app/ring_image.h"
#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

using namespace std::chrono_literals;

class ControllerRenderTest : public ControllerFixture {
 protected:
  ControllerRenderTest() {
    pairUp();
    launchWithPage();
  }
  static link::Snapshot withTasks(std::vector<link::TaskRow> tasks) {
    auto snapshot = session();
    snapshot.tasks = std::move(tasks);
    return snapshot;
  }
  const platform::MenuItem& task(std::size_t index) const {
    return *menu().items().at(menu().indexOf(row("Task della roadmap")).value() + 1 + index);
  }
  void expectIdle() {
    EXPECT_EQ(face().title, " Orvalle");
    EXPECT_EQ(face().alpha, 0.55);
    EXPECT_EQ(face().image, ringImage(0, false));
    EXPECT_EQ(face().imagePosition, platform::ImagePosition::Right);
    EXPECT_TRUE(taskTitles().empty());
    EXPECT_TRUE(row("Task della roadmap").hidden());
    for (const auto title : {"Ferma la sessione", "Allunga di 5 minuti", "Accorcia di 5 minuti"}) {
      EXPECT_FALSE(row(title).enabled()) << title;
    }
    EXPECT_FALSE(panel().visible);
  }
};

TEST_F(ControllerRenderTest, showsALiveSessionInAllThreePlaces) {
  goLive(session(24.25));
  EXPECT_EQ(face().title, " 24:15 • Tesi");
  EXPECT_EQ(face().alpha, 1.0);
  EXPECT_EQ(face().image, ringImage(0.2, false));
  EXPECT_EQ(face().imagePosition, platform::ImagePosition::Right);
  EXPECT_EQ(statusLine(), "Tesi · 24′ al traguardo");
  EXPECT_EQ(panel().text, "24:15  •  Tesi");
  EXPECT_EQ(panel().colour, platform::TextColour::White);
  EXPECT_TRUE(panel().visible);
}

TEST_F(ControllerRenderTest, windowTitleTellsTheSessionWhereNoStatusBarShowsTheItem) {
  goLive(session(24.25));
  EXPECT_EQ(window().title, "Orvalle");
  system.statusBar.state.present = false;
  system.time.advance(3s);
  EXPECT_EQ(window().title, "24:12 • Tesi – Orvalle");
  system.statusBar.state.present = true;
  system.time.advance(3s);
  EXPECT_EQ(window().title, "Orvalle");
}

TEST_F(ControllerRenderTest, windowTitleOfAnIdleProgramIsItsNameEverywhere) {
  system.statusBar.state.present = false;
  system.time.advance(3s);
  EXPECT_EQ(window().title, "Orvalle");
}

TEST_F(ControllerRenderTest, overlayIsNotShownWhereItCannotFloatAndItsItemsSaySo) {
  system.panels.floating = false;
  make();
  launchWithPage();
  goLive();
  EXPECT_FALSE(panel().visible);
  auto& item = row("Tienila sopra le altre app (qui non è possibile)");
  EXPECT_FALSE(item.checked());
  EXPECT_FALSE(item.usable(system.application.responderChain()));
  EXPECT_EQ(barItem("toggleOverlay")->title(), item.title());
  choose(item);
  choose(*barItem("toggleOverlay"));
  EXPECT_FALSE(system.defaults.boolean("overlayOn"));
}

TEST_F(ControllerRenderTest, showsAnIdleFormBeforeAnyState) {
  expectIdle();
  EXPECT_EQ(panel().text, "0:00  •  Focus");
}

TEST_F(ControllerRenderTest, showsTheSameIdleFormForAnOldStatePastItsEnd) {
  goLive(session(-5));
  EXPECT_EQ(face().image, ringImage(0.2, true));
  channel.channel->onConnection(false);
  expectIdle();
  // Off the screen the overlay keeps its text and colour.
  EXPECT_EQ(panel().text, "+5:00  •  Tesi");
  EXPECT_EQ(panel().colour, platform::TextColour::SystemRed);
}

TEST_F(ControllerRenderTest, tellsTheThreeReasonsForNoSession) {
  EXPECT_EQ(statusLine(), "Cerco il canale…");
  channel.channel->onConnection(true);
  EXPECT_EQ(statusLine(), "Nessuna sessione in corso");
  config.setChannelKey("");
  channel.channel->onConnection(true);
  EXPECT_EQ(statusLine(), "Non abbinata: apri «Abbina…»");
}

TEST_F(ControllerRenderTest, marksASessionJustPastItsEnd) {
  goLive(session(-0.4));
  EXPECT_EQ(face().title, " +0:24 • Tesi");
  EXPECT_EQ(statusLine(), "Tesi · +0′ oltre");
  EXPECT_EQ(panel().text, "+0:24  •  Tesi");
  EXPECT_EQ(panel().colour, platform::TextColour::SystemRed);
}

TEST_F(ControllerRenderTest, leavesTheRingWhereTheLastStatePutIt) {
  goLive(session(20));
  system.time.advance(50s);
  EXPECT_EQ(face().image, ringImage(0.2, false));
}

TEST_F(ControllerRenderTest, drawsAnEmptyRingForNoPlannedTime) {
  auto snapshot = session();
  snapshot.plannedMin = 0;
  goLive(snapshot);
  EXPECT_EQ(face().image, ringImage(0, false));
}

TEST_F(ControllerRenderTest, enablesTheSessionsControlsExactlyWhileLive) {
  const auto controls = {"Ferma la sessione", "Allunga di 5 minuti", "Accorcia di 5 minuti"};
  goLive();
  for (const auto title : controls) EXPECT_TRUE(row(title).enabled()) << title;
  channel.channel->onConnection(false);
  for (const auto title : controls) EXPECT_FALSE(row(title).enabled()) << title;
  channel.channel->onConnection(true);
  for (const auto title : controls) EXPECT_TRUE(row(title).enabled()) << title;
}

TEST_F(ControllerRenderTest, listsTheTasksRightAfterTheirHeader) {
  goLive();
  Texts titles;
  for (const auto& item : menu().items()) titles.push_back(item->isSeparator() ? "---" : item->title());
  EXPECT_EQ(titles,
            (Texts{"Tesi · 20′ al traguardo", "---", "Apri Orvalle", "Tienila sopra le altre app", "Abbina…",
                   "---", "Ferma la sessione", "Allunga di 5 minuti", "Accorcia di 5 minuti", "---",
                   "Task della roadmap", "Scrivere", "Leggere", "---", "Cerca aggiornamenti…", "Esci"}));
  EXPECT_FALSE(row("Task della roadmap").hidden());
}

TEST_F(ControllerRenderTest, makesEachTaskACheckItem) {
  goLive(
      withTasks({{"t1", "Scrivere", false}, {"t 2'\"", "<b>_Leggere_</b> &amp; 🎯", true}, {"", "", false}}));
  EXPECT_EQ(task(0).title(), "Scrivere");
  EXPECT_EQ(task(0).representedObject(), "t1");
  EXPECT_FALSE(task(0).checked());
  EXPECT_EQ(task(1).title(), "<b>_Leggere_</b> &amp; 🎯");
  EXPECT_EQ(task(1).representedObject(), "t 2'\"");
  EXPECT_TRUE(task(1).checked());
  EXPECT_EQ(task(2).representedObject(), "");
  for (std::size_t index = 0; index < 3; ++index) {
    EXPECT_EQ(task(index).action(), "toggleTask");
    EXPECT_EQ(task(index).target(), controller.get());
    EXPECT_EQ(task(index).keyEquivalent(), "");
    EXPECT_TRUE(task(index).usable(system.application.responderChain()));
    EXPECT_FALSE(task(index).hidden());
  }
}

TEST_F(ControllerRenderTest, replacesTheTasksWithThoseOfEachState) {
  goLive();
  pushFromChannel(withTasks({{"a", "Uno", false}, {"b", "Due", false}, {"c", "Tre", true}}));
  EXPECT_EQ(taskTitles(), (Texts{"Uno", "Due", "Tre"}));
  pushFromChannel(withTasks({{"c", "Tre", false}}));
  EXPECT_EQ(taskTitles(), Texts{"Tre"});
  EXPECT_FALSE(task(0).checked());
  pushFromChannel(withTasks({}));
  EXPECT_TRUE(taskTitles().empty());
  EXPECT_TRUE(row("Task della roadmap").hidden());
  EXPECT_EQ(menu().items().size(), 14u);
  pushFromChannel(session());
  EXPECT_EQ(taskTitles(), (Texts{"Scrivere", "Leggere"}));
  EXPECT_FALSE(row("Task della roadmap").hidden());
}

TEST_F(ControllerRenderTest, takesTheTasksAwayWhenTheSessionIsNoLongerLive) {
  goLive();
  EXPECT_EQ(taskTitles().size(), 2u);
  system.time.advance(63s);
  expectIdle();
  EXPECT_EQ(menu().items().size(), 14u);
}

TEST_F(ControllerRenderTest, doesNotPileUpTasksAsTimePasses) {
  goLive();
  system.time.advance(50s);
  EXPECT_EQ(taskTitles(), (Texts{"Scrivere", "Leggere"}));
}

TEST_F(ControllerRenderTest, undoesAFlippedMarkAtTheNextRender) {
  goLive();
  choose("Scrivere");
  EXPECT_TRUE(row("Scrivere").checked());
  system.time.advance(1s);
  EXPECT_FALSE(row("Scrivere").checked());

  choose("Leggere");
  EXPECT_FALSE(row("Leggere").checked());
  pushFromChannel(session());
  EXPECT_TRUE(row("Leggere").checked());
}

TEST_F(ControllerRenderTest, drawsNoFaceOnAnItemWithoutAButton) {
  system.statusBar.state.hasButton = false;
  const auto changes = system.statusBar.state.faceChanges;
  goLive();
  EXPECT_EQ(system.statusBar.state.faceChanges, changes);
  EXPECT_EQ(statusLine(), "Tesi · 20′ al traguardo");
  EXPECT_EQ(taskTitles().size(), 2u);
  EXPECT_TRUE(panel().visible);
  system.statusBar.state.hasButton = true;
  system.time.advance(1s);
  EXPECT_EQ(face().title, " 19:59 • Tesi");
}

TEST_F(ControllerRenderTest, changesTheFaceOnlyWhenSomethingDiffers) {
  const auto changes = system.statusBar.state.faceChanges;
  system.time.advance(1h);
  EXPECT_EQ(system.statusBar.state.faceChanges, changes);
  goLive();
  system.time.advance(30s);
  EXPECT_EQ(system.statusBar.state.faceChanges, changes + 31);
}

TEST_F(ControllerRenderTest, showsTheOverlayWhileItIsOnAndTheSessionLive) {
  EXPECT_FALSE(panel().visible);
  goLive();
  EXPECT_TRUE(panel().visible);
  channel.channel->onConnection(false);
  EXPECT_FALSE(panel().visible);
  choose("Tienila sopra le altre app");
  channel.channel->onConnection(true);
  EXPECT_FALSE(panel().visible);
  choose("Tienila sopra le altre app");
  EXPECT_TRUE(panel().visible);
}

}  // namespace
}  // namespace orvalle::app
