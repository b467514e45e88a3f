#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "platform/linux/factory.h"
#include "platform/memory/memory_services.h"
#include "platform/memory/memory_stores.h"
#include "tests/contract/loop.h"
#include "tests/contract/notification_server.h"
#include "tests/contract/window_home.h"

/// The native notification centre against a server on the session's bus.
namespace orvalle::contract {
namespace {

using platform::NotificationStatus;
using Texts = std::vector<std::string>;

class Listener : public platform::NotificationDelegate {
 public:
  platform::Presentation willPresent() override { return {}; }
  void didSelect() override { ++clicks; }
  int clicks = 0;
};

class NotificationCentreTest : public ::testing::Test {
 protected:
  NotificationCentreTest() { centre->setDelegate(&listener); }

  NotificationStatus status() {
    std::optional<NotificationStatus> found;
    centre->status([&](NotificationStatus given) { found = given; });
    EXPECT_TRUE(runUntil([&] { return found.has_value(); }));
    return found.value_or(NotificationStatus::Unknown);
  }
  void add(const std::string& tag, const std::string& title, const std::string& body = "") {
    centre->add({tag, title, body},
                [this](const auto& error) { outcomes.push_back(error.value_or("mostrata")); });
  }
  void show(const std::string& tag, const std::string& title, const std::string& body = "") {
    const auto expected = outcomes.size() + 1;
    add(tag, title, body);
    EXPECT_TRUE(runUntil([&] { return outcomes.size() == expected; }));
  }
  void clickOn(std::uint32_t id, const char* action = "default") {
    server.signal("ActionInvoked", g_variant_new("(us)", id, action));
  }

  WindowHome home;
  NotificationServer server;
  platform::memory::MemoryEnvironment environment;
  platform::memory::MemoryBundle bundle;
  Listener listener;
  Texts outcomes;
  std::unique_ptr<platform::NotificationCentre> centre =
      platform::linuxos::makeNotificationCentre(home, environment, bundle);
};

TEST_F(NotificationCentreTest, isDeniedWithoutAServerAndAuthorisedWithOne) {
  EXPECT_EQ(status(), NotificationStatus::Denied);
  server.start();
  EXPECT_EQ(status(), NotificationStatus::Authorised);
  server.stop();
  EXPECT_EQ(status(), NotificationStatus::Denied);
}

TEST_F(NotificationCentreTest, questionIsAnsweredWithTheStatus) {
  Texts answers;
  const auto ask = [&] {
    centre->requestAuthorisation({}, [&](bool granted, const auto& error) {
      answers.push_back(std::string(granted ? "granted" : "denied") + error.value_or(""));
    });
  };
  ask();
  EXPECT_TRUE(runUntil([&] { return answers.size() == 1; }));
  server.start();
  ask();
  EXPECT_TRUE(runUntil([&] { return answers.size() == 2; }));
  EXPECT_EQ(answers, (Texts{"denied", "granted"}));
}

TEST_F(NotificationCentreTest, saysWhoItIsAndMakesNoSound) {
  server.start();
  show("pausa", "Pausa", "Cinque minuti");
  ASSERT_EQ(server.calls.size(), 1u);
  const auto& call = server.calls[0];
  EXPECT_EQ(call.application, "Orvalle");
  EXPECT_EQ(call.replaces, 0u);
  EXPECT_EQ(call.icon, "app.orvalle.Orvalle");
  EXPECT_EQ(call.title, "Pausa");
  EXPECT_EQ(call.body, "Cinque minuti");
  EXPECT_EQ(call.actions, (Texts{"default", "Apri"}));
  EXPECT_EQ(call.timeout, -1);
  EXPECT_EQ(call.hints, (std::map<std::string, std::string>{{"desktop-entry", "'app.orvalle.Orvalle'"},
                                                            {"suppress-sound", "true"}}));
  EXPECT_EQ(outcomes, Texts{"mostrata"});
}

TEST_F(NotificationCentreTest, offersNoActionWhereTheServerHasNone) {
  server.capabilities = {"body"};
  server.start();
  show("a", "Prova");
  EXPECT_EQ(server.calls.at(0).actions, Texts());
}

TEST_F(NotificationCentreTest, writesMarkupAsTextWhereTheServerReadsMarkup) {
  server.start();
  show("a", "<b>T</b> & 1", "<b>x</b> & <a href=\"y\">z</a>");
  EXPECT_EQ(server.calls.at(0).title, "<b>T</b> & 1");
  EXPECT_EQ(server.calls.at(0).body, "&lt;b&gt;x&lt;/b&gt; &amp; &lt;a href=&quot;y&quot;&gt;z&lt;/a&gt;");
}

TEST_F(NotificationCentreTest, leavesTheBodyAloneWhereTheServerReadsNoMarkup) {
  server.capabilities = {"body", "actions"};
  server.start();
  show("a", "T", "<b>x</b> & z");
  EXPECT_EQ(server.calls.at(0).body, "<b>x</b> & z");
}

TEST_F(NotificationCentreTest, takesTextsThatTheBusCannotCarry) {
  server.start();
  show("a", std::string("Pri\0ma", 6), std::string("\0", 1));
  EXPECT_EQ(server.calls.at(0).title, "Prima");
  EXPECT_EQ(server.calls.at(0).body, "");
}

TEST_F(NotificationCentreTest, sameTagTakesThePlaceOfTheEarlierOne) {
  server.start();
  // The second comes before the server has answered to the first.
  add("a", "Uno");
  add("a", "Due");
  add("b", "Tre");
  ASSERT_TRUE(runUntil([&] { return outcomes.size() == 3; }));
  EXPECT_EQ(server.calls.at(0).replaces, 0u);
  EXPECT_EQ(server.calls.at(1).replaces, 40u);
  EXPECT_EQ(server.calls.at(2).replaces, 0u);
  EXPECT_EQ(server.calls.at(1).title, "Due");
}

TEST_F(NotificationCentreTest, oneThatIsClosedIsNotReplaced) {
  server.start();
  show("a", "Uno");
  server.signal("NotificationClosed", g_variant_new("(uu)", 40, 2));
  show("a", "Due");
  EXPECT_EQ(server.calls.at(1).replaces, 0u);
}

TEST_F(NotificationCentreTest, numbersOfOneServerAreNotTakenToTheNext) {
  server.start();
  show("a", "Uno");
  server.stop();
  server.start();
  show("a", "Due");
  EXPECT_EQ(server.calls.at(1).replaces, 0u);
}

TEST_F(NotificationCentreTest, failureIsToldInTheServersWords) {
  show("a", "Nessuno ascolta");
  ASSERT_EQ(outcomes.size(), 1u);
  EXPECT_NE(outcomes[0], "mostrata");
  server.refusal = "troppe notifiche";
  server.start();
  show("a", "Uno");
  EXPECT_EQ(outcomes.at(1), "troppe notifiche");
  server.refusal.reset();
  show("a", "Due");
  EXPECT_EQ(outcomes.at(2), "mostrata");
}

TEST_F(NotificationCentreTest, clickOnOneOfOursIsTold) {
  server.start();
  show("a", "Uno");
  clickOn(40);
  EXPECT_EQ(listener.clicks, 1);
  clickOn(41);
  clickOn(40, "altro");
  EXPECT_EQ(listener.clicks, 1);
  centre->setDelegate(nullptr);
  clickOn(40);
  EXPECT_EQ(listener.clicks, 1);
}

TEST_F(NotificationCentreTest, nothingIsToldOnceItIsGone) {
  server.start();
  add("a", "Uno");
  add("b", "Due");
  centre->status([](NotificationStatus) { FAIL(); });
  centre.reset();
  runFor(std::chrono::milliseconds(300));
  EXPECT_EQ(outcomes, Texts());
}

TEST_F(NotificationCentreTest, switchOfGnomeIsRespected) {
  server.start();
  const auto settings = platform::linuxos::GObjectPtr<GSettings>::adopt(
      g_settings_new_with_path("org.gnome.desktop.notifications.application",
                               "/org/gnome/desktop/notifications/application/app-orvalle-orvalle/"));
  g_settings_set_boolean(settings.get(), "enable", FALSE);
  EXPECT_EQ(status(), NotificationStatus::Denied);
  environment.variables["XDG_CURRENT_DESKTOP"] = "ubuntu:GNOME";
  EXPECT_EQ(status(), NotificationStatus::Denied);
  // Another desktop's switch is none of ours.
  environment.variables["XDG_CURRENT_DESKTOP"] = "KDE";
  EXPECT_EQ(status(), NotificationStatus::Authorised);
  environment.variables.clear();
  g_settings_set_boolean(settings.get(), "enable", TRUE);
  EXPECT_EQ(status(), NotificationStatus::Authorised);
}

TEST_F(NotificationCentreTest, switchOfKdeIsRespected) {
  server.start();
  auto pattern = (std::filesystem::temp_directory_path() / "orvalle-kde-XXXXXX").string();
  const std::filesystem::path folder = ::mkdtemp(pattern.data());
  environment.variables = {{"XDG_CURRENT_DESKTOP", "KDE"}, {"XDG_CONFIG_HOME", folder}};
  EXPECT_EQ(status(), NotificationStatus::Authorised);
  std::ofstream(folder / "plasmanotifyrc")
      << "[Applications][altro]\nShowPopups=false\n\n[Applications][app.orvalle.Orvalle]\nSeen=true\n";
  EXPECT_EQ(status(), NotificationStatus::Authorised);
  std::ofstream(folder / "plasmanotifyrc", std::ios::app) << "ShowPopups=false\n";
  EXPECT_EQ(status(), NotificationStatus::Denied);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace orvalle::contract
