#include "services/notifiche.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/memory/memory_platform.h"

namespace orvalle::services {
namespace {

using platform::NotificationStatus;
using Texts = std::vector<std::string>;

class NotificheTest : public ::testing::Test {
 protected:
  platform::memory::MemoryNotificationCentre& centre() { return system.notificationCentre; }
  const Texts& log() const { return system.log.lines; }
  void ask() {
    notifiche->chiedi([this](const std::string& word) { words.push_back(word); });
  }
  void state() {
    notifiche->stato([this](const std::string& word) { words.push_back(word); });
  }
  Texts titlesShown() const {
    Texts titles;
    for (const auto& notification : system.notificationCentre.shown) titles.push_back(notification.title);
    return titles;
  }

  platform::memory::MemoryPlatform system;
  std::unique_ptr<Notifiche> notifiche =
      std::make_unique<Notifiche>(system.notificationCentre, system.settingsPanes, system.bundle, system.log);
  Texts words;
};

TEST_F(NotificheTest, hasAWordForEveryStatus) {
  struct Row {
    NotificationStatus status;
    std::string word;
  };
  for (const auto& row : {
           Row{NotificationStatus::NotDetermined, "default"},
           Row{NotificationStatus::Denied, "denied"},
           Row{NotificationStatus::Authorised, "granted"},
           Row{NotificationStatus::Provisional, "granted"},
           Row{NotificationStatus::Ephemeral, "granted"},
           Row{NotificationStatus::Unknown, "default"},
       }) {
    words.clear();
    centre().current = row.status;
    state();
    EXPECT_EQ(words, Texts{row.word});
  }
  EXPECT_TRUE(centre().requests.empty());
  EXPECT_TRUE(log().empty());
}

TEST_F(NotificheTest, asksAUserWhoWasNeverAsked) {
  ask();
  EXPECT_EQ(words, Texts{"granted"});
  ASSERT_EQ(centre().requests.size(), 1u);
  EXPECT_EQ(centre().requests[0], (platform::NotificationOptions{true, true, true}));
  EXPECT_EQ(log(), Texts{"Orvalle: permesso notifiche = granted"});
}

TEST_F(NotificheTest, reportsTheAnswerOfAUserWhoDeclines) {
  centre().userAgrees = false;
  ask();
  EXPECT_EQ(words, Texts{"denied"});
  EXPECT_EQ(log(), Texts{"Orvalle: permesso notifiche = denied"});
}

TEST_F(NotificheTest, logsWhatWentWrongWithTheQuestion) {
  centre().userAgrees = false;
  centre().requestError = "non disponibile";
  ask();
  EXPECT_EQ(words, Texts{"denied"});
  EXPECT_EQ(log(), Texts{"Orvalle: permesso notifiche = denied — non disponibile"});
}

TEST_F(NotificheTest, asksOnlyOnceAndReportsLaterChanges) {
  centre().userAgrees = false;
  ask();
  ask();
  centre().current = NotificationStatus::Authorised;
  ask();
  EXPECT_EQ(words, (Texts{"denied", "denied", "granted"}));
  EXPECT_EQ(centre().requests.size(), 1u);
  EXPECT_EQ(log().size(), 1u);
}

TEST_F(NotificheTest, readsTheSettingsASecondTimeToReport) {
  centre().current = NotificationStatus::Denied;
  ask();
  EXPECT_EQ(centre().statusReads, 2);
  EXPECT_EQ(words, Texts{"denied"});
}

TEST_F(NotificheTest, showsANotificationAsItIsGiven) {
  centre().current = NotificationStatus::Authorised;
  notifiche->mostra("Pausa", "<b>Cinque</b> & minuti", "pausa");
  ASSERT_EQ(centre().shown.size(), 1u);
  EXPECT_EQ(centre().shown[0].title, "Pausa");
  EXPECT_EQ(centre().shown[0].body, "<b>Cinque</b> & minuti");
  EXPECT_EQ(centre().shown[0].identifier, "pausa");
  EXPECT_EQ(log(), Texts{"Orvalle: notifica «Pausa» mostrata"});
}

TEST_F(NotificheTest, usesTheSameIdentifierForTheSameTag) {
  centre().current = NotificationStatus::Authorised;
  notifiche->mostra("Uno", "", "tag");
  notifiche->mostra("Due", "", "tag");
  ASSERT_EQ(centre().shown.size(), 2u);
  EXPECT_EQ(centre().shown[0].identifier, centre().shown[1].identifier);
}

TEST_F(NotificheTest, firstNotificationAsksAndIsShownWhenTheUserAgrees) {
  notifiche->mostra("Prima", "", "a");
  EXPECT_EQ(titlesShown(), Texts{"Prima"});
  EXPECT_EQ(log(), (Texts{"Orvalle: permesso notifiche = granted", "Orvalle: notifica «Prima» mostrata"}));
}

TEST_F(NotificheTest, firstNotificationIsSkippedWhenTheUserDeclines) {
  centre().userAgrees = false;
  notifiche->mostra("Prima", "", "a");
  EXPECT_TRUE(titlesShown().empty());
  EXPECT_EQ(log(),
            (Texts{"Orvalle: permesso notifiche = denied", "Orvalle: notifica saltata, permesso = denied"}));
}

TEST_F(NotificheTest, showsNotificationsOfAProvisionalPermission) {
  centre().current = NotificationStatus::Provisional;
  notifiche->mostra("Prova", "", "a");
  EXPECT_EQ(titlesShown(), Texts{"Prova"});
}

TEST_F(NotificheTest, skipsWithTheWordThatStandsInTheWay) {
  centre().current = NotificationStatus::Denied;
  notifiche->mostra("Prova", "", "a");
  centre().current = NotificationStatus::Unknown;
  notifiche->mostra("Prova", "", "a");
  EXPECT_TRUE(titlesShown().empty());
  EXPECT_EQ(log(), (Texts{"Orvalle: notifica saltata, permesso = denied",
                          "Orvalle: notifica saltata, permesso = default"}));
}

TEST_F(NotificheTest, logsANotificationThatFailed) {
  centre().current = NotificationStatus::Authorised;
  centre().addError = "il servizio non risponde";
  notifiche->mostra("Prova", "", "a");
  EXPECT_EQ(log(), Texts{"Orvalle: notifica «Prova» fallita — il servizio non risponde"});
}

TEST_F(NotificheTest, hasNothingToNotifyWithOutsideABundle) {
  system.bundle.identifierText.reset();
  centre().current = NotificationStatus::Authorised;
  state();
  ask();
  EXPECT_EQ(words, (Texts{"denied", "denied"}));
  notifiche->mostra("Prova", "", "a");
  EXPECT_EQ(log(), Texts{"Orvalle: notifica saltata, permesso = denied"});
  notifiche->avvia();
  EXPECT_EQ(centre().delegate, nullptr);
  EXPECT_EQ(centre().statusReads, 0);
  EXPECT_TRUE(centre().shown.empty());
}

TEST_F(NotificheTest, opensTheSettingsOfTheSystem) {
  notifiche->apriPreferenze();
  EXPECT_EQ(system.settingsPanes.opened,
            std::vector<platform::SettingsPane>{platform::SettingsPane::Notifications});
}

TEST_F(NotificheTest, showsBannersWhileTheProgramIsInFrontWithoutASound) {
  EXPECT_EQ(centre().delegate, nullptr);
  notifiche->avvia();
  ASSERT_NE(centre().delegate, nullptr);
  EXPECT_EQ(centre().delegate->willPresent(),
            (platform::Presentation{.banner = true, .list = true, .sound = false, .badge = false}));
}

TEST_F(NotificheTest, tellsOfAClick) {
  notifiche->avvia();
  centre().delegate->didSelect();
  int clicks = 0;
  notifiche->onSelezionata = [&] { ++clicks; };
  centre().delegate->didSelect();
  EXPECT_EQ(clicks, 1);
}

TEST_F(NotificheTest, leavesTheCentreWhenItGoesAndHearsNoMore) {
  notifiche->avvia();
  centre().hold();
  ask();
  state();
  notifiche->mostra("Prova", "", "a");
  notifiche.reset();
  EXPECT_EQ(centre().delegate, nullptr);
  centre().release();
  EXPECT_TRUE(words.empty());
  EXPECT_TRUE(log().empty());
  EXPECT_TRUE(centre().shown.empty());
}

}  // namespace
}  // namespace orvalle::services
