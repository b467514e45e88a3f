#include "app/orvalle.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "base/read_file.h"
#include "platform/memory/memory_platform.h"
#include "tests/unit/base/temporary_folder.h"
#include "tests/unit/base/time_zone.h"

namespace orvalle::app {
namespace {

class OrvalleTest : public ::testing::Test {
 protected:
  int runOnce() {
    const auto platform = system.platform();
    return run(platform);
  }

  platform::memory::MemoryPlatform system;
};

TEST_F(OrvalleTest, opensTheApplicationAtItsDefaultAddressAndLeavesNothingBehind) {
  int sessions = 0;
  system.application.session = [&](platform::ApplicationDelegate&) {
    ++sessions;
    ASSERT_EQ(system.webWindows.made.size(), 1u);
    EXPECT_EQ(system.webWindows.made[0]->loads, std::vector<std::string>{ORVALLE_DEFAULT_ADDRESS});
    EXPECT_TRUE(system.webWindows.made[0]->visible);
    EXPECT_TRUE(system.statusBar.state.itemShown);
    EXPECT_EQ(system.statusBar.state.face.title, " Orvalle");
  };
  EXPECT_EQ(runOnce(), 0);
  EXPECT_EQ(sessions, 1);
  EXPECT_FALSE(system.statusBar.state.itemShown);
  EXPECT_EQ(system.webWindows.made[0], nullptr);
  EXPECT_EQ(system.panels.made[0], nullptr);
  EXPECT_EQ(system.time.timerCount(), 0u);
}

TEST_F(OrvalleTest, showsASessionThatThePageBrings) {
  system.application.session = [&](platform::ApplicationDelegate&) {
    auto& window = *system.webWindows.made[0];
    window.commit();
    window.post(R"({"running":true,"isBreak":false,"elapsedMin":5,"remainingMin":20,"plannedMin":25,)"
                R"("projectTitle":"","tasks":[]})");
    EXPECT_EQ(system.statusBar.state.face.title, " 20:00 • Focus");
    EXPECT_TRUE(system.panels.made[0]->visible);
  };
  EXPECT_EQ(runOnce(), 0);
}

TEST_F(OrvalleTest, looksForUpdatesAtLaunchAndOnDemand) {
  system.application.session = [&](platform::ApplicationDelegate&) {
    const auto address = std::string(ORVALLE_DEFAULT_ADDRESS) + "mac/versione.json?t=";
    ASSERT_EQ(system.http.requests.size(), 1u);
    EXPECT_TRUE(system.http.requests[0]->url.starts_with(address)) << system.http.requests[0]->url;
    for (const auto& item : system.statusBar.state.menu->items()) {
      if (item->title() == "Cerca aggiornamenti…") item->choose(system.application.responderChain());
    }
    ASSERT_EQ(system.http.requests.size(), 2u);
    system.http.requests[0]->gotBody({});
    EXPECT_TRUE(system.alerts.waiting.empty());
    system.http.requests[1]->gotBody({});
    EXPECT_EQ(system.alerts.waiting.size(), 1u);
  };
  EXPECT_EQ(runOnce(), 0);
}

TEST_F(OrvalleTest, pairsAndFollowsASessionElsewhere) {
  system.application.session = [&](platform::ApplicationDelegate&) {
    EXPECT_TRUE(system.webSockets.all.empty());
    for (const auto& item : system.statusBar.state.menu->items()) {
      if (item->title() == "Abbina…") item->choose(system.application.responderChain());
    }
    auto& window = *system.pairViews.made.at(0);
    window.fields = {"https://p.example", "anon", "key"};
    window.press(1);
    auto& socket = *system.webSockets.all.at(0);
    socket.accept();
    socket.sendText(R"({"event":"phx_reply"})");
    EXPECT_EQ(system.statusBar.state.menu->items().front()->title(), "Nessuna sessione in corso");
    socket.sendText(
        R"({"event":"broadcast","payload":{"event":"state","payload":{"running":true,"isBreak":false,)"
        R"("elapsedMin":5,"remainingMin":20,"plannedMin":25,"projectTitle":"Altrove","tasks":[]}}})");
    EXPECT_EQ(system.statusBar.state.face.title, " 20:00 • Altrove");
  };
  EXPECT_EQ(runOnce(), 0);
}

TEST_F(OrvalleTest, connectsAtLaunchOncePaired) {
  system.defaults.set("supabaseUrl", "https://p.example");
  system.defaults.set("anonKey", "anon");
  system.defaults.set("channelKey", "key");
  system.application.session = [&](platform::ApplicationDelegate&) {
    EXPECT_EQ(system.webSockets.all.size(), 1u);
    EXPECT_EQ(system.statusBar.state.menu->items().front()->title(), "Cerco il canale…");
  };
  EXPECT_EQ(runOnce(), 0);
}

TEST_F(OrvalleTest, keepsTheDiaryFromItsStartToItsEnd) {
  const base::TimeZone zone("UTC");
  const base::TemporaryFolder disk;
  const auto day = disk.path() / "Orvalle/attivita/2026-03-02.json";
  system.userFolders.supportFolder = disk.path();
  system.defaults.set("attivitaAccesa", true);
  system.application.session = [&](platform::ApplicationDelegate&) {
    system.frontmost.name = "Editor";
    system.time.advance(std::chrono::minutes(2));
    EXPECT_FALSE(std::filesystem::exists(day));
  };
  EXPECT_EQ(runOnce(), 0);
  EXPECT_EQ(base::readFile(day, 1000),
            R"([{"app":"Editor","da":"2026-03-02T09:00:05Z","a":"2026-03-02T09:02:00Z"}])");
}

TEST_F(OrvalleTest, keepsNoDiaryUnlessTheUserWantsOne) {
  const base::TemporaryFolder disk;
  system.userFolders.supportFolder = disk.path();
  system.application.session = [&](platform::ApplicationDelegate&) {
    system.frontmost.name = "Editor";
    system.time.advance(std::chrono::minutes(2));
  };
  EXPECT_EQ(runOnce(), 0);
  EXPECT_EQ(system.frontmost.looks, 0);
  EXPECT_TRUE(std::filesystem::is_empty(disk.path()));
}

TEST_F(OrvalleTest, tellsThePageEveryHalfMinuteThatNobodyIsThereAfterAnHour) {
  system.application.session = [&](platform::ApplicationDelegate&) {
    auto& window = *system.webWindows.made[0];
    window.commit();
    window.post(R"({"running":true,"isBreak":false,"elapsedMin":5,"remainingMin":20,"plannedMin":25,)"
                R"("projectTitle":"","tasks":[]})");
    window.scripts.clear();
    system.inputIdle.seconds = 3599.9;
    system.time.advance(std::chrono::seconds(30));
    EXPECT_TRUE(window.scripts.empty());
    system.inputIdle.seconds = 3600;
    system.time.advance(std::chrono::seconds(60));
    EXPECT_EQ(window.scripts,
              std::vector<std::string>(
                  2, "window.__orvalleComando && window.__orvalleComando('inattivo', '3600')"));
  };
  EXPECT_EQ(runOnce(), 0);
}

TEST_F(OrvalleTest, endsWhenTheUserQuits) {
  int after = 0;
  system.application.session = [&](platform::ApplicationDelegate&) {
    system.statusBar.state.menu->items().back()->choose(system.application.responderChain());
    ++after;
  };
  EXPECT_EQ(runOnce(), 0);
  EXPECT_EQ(after, 1);
}

TEST_F(OrvalleTest, runsAgainOnTheSameSystem) {
  EXPECT_EQ(runOnce(), 0);
  EXPECT_EQ(runOnce(), 0);
  EXPECT_EQ(system.webWindows.made.size(), 2u);
}

}  // namespace
}  // namespace orvalle::app
