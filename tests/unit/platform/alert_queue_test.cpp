#include "platform/alert_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvalle::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A screen that writes down what is on it.
class AlertQueueTest : public ::testing::Test {
 protected:
  class Shown final : public AlertQueue::Dialog {
   public:
    Shown(AlertQueueTest& test, const Alert& alert, bool progress, AlertQueue::Answered answered)
        : test_(test) {
      test_.onScreen.push_back(alert.message + (progress ? "…" : ""));
      test_.answered = std::move(answered);
    }
    ~Shown() override { test_.onScreen.pop_back(); }

   private:
    AlertQueueTest& test_;
  };

  void show(const std::string& message) { queue.show({message, "", {"Va bene", "Annulla"}}, noted(message)); }

  base::Subscription showProgress(const std::string& message) {
    return queue.showProgress({message, "", {"Annulla"}}, noted(message));
  }

  std::function<void(std::size_t)> noted(const std::string& message) {
    return [this, message](std::size_t button) { answers.push_back(message + " " + std::to_string(button)); };
  }

  /// As the user would: the button does away with what it is called through.
  void press(std::size_t button) {
    const auto told = answered;
    told(button);
  }

  std::vector<std::string> onScreen;
  AlertQueue::Answered answered;
  std::vector<std::string> answers;
  AlertQueue queue{[this](const Alert& alert, bool progress, AlertQueue::Answered told) {
    return std::make_unique<Shown>(*this, alert, progress, std::move(told));
  }};
};

TEST_F(AlertQueueTest, showsOneAtATimeInOrder) {
  show("Prima");
  show("Seconda");
  EXPECT_THAT(onScreen, ElementsAre("Prima"));
  press(1);
  EXPECT_THAT(onScreen, ElementsAre("Seconda"));
  press(0);
  EXPECT_THAT(onScreen, IsEmpty());
  EXPECT_THAT(answers, ElementsAre("Prima 1", "Seconda 0"));
}

TEST_F(AlertQueueTest, anAlertHasLeftTheScreenWhenItsAnswerIsTold) {
  queue.show({"Prima", "", {"Va bene"}}, [this](std::size_t) { EXPECT_THAT(onScreen, IsEmpty()); });
  press(0);
}

TEST_F(AlertQueueTest, anAnswerMayAskAgain) {
  queue.show({"Prima", "", {"Va bene"}}, [this](std::size_t) { show("Ultima"); });
  show("Seconda");
  press(0);
  EXPECT_THAT(onScreen, ElementsAre("Seconda"));
  press(0);
  EXPECT_THAT(onScreen, ElementsAre("Ultima"));
}

TEST_F(AlertQueueTest, aProgressAlertOnShowGoesWithItsSubscription) {
  auto progress = showProgress("Scarico");
  show("Dopo");
  EXPECT_THAT(onScreen, ElementsAre("Scarico…"));
  progress.reset();
  EXPECT_THAT(onScreen, ElementsAre("Dopo"));
  EXPECT_THAT(answers, IsEmpty());
}

TEST_F(AlertQueueTest, aProgressAlertThatWaitsIsForgottenWithItsSubscription) {
  show("Prima");
  auto progress = showProgress("Scarico");
  show("Dopo");
  progress.reset();
  EXPECT_THAT(onScreen, ElementsAre("Prima"));
  press(0);
  EXPECT_THAT(onScreen, ElementsAre("Dopo"));
}

TEST_F(AlertQueueTest, aSubscriptionIsOfNoMoreConsequenceOnceAnswered) {
  auto progress = showProgress("Scarico");
  press(0);
  show("Dopo");
  progress.reset();
  EXPECT_THAT(onScreen, ElementsAre("Dopo"));
  EXPECT_THAT(answers, ElementsAre("Scarico 0"));
}

TEST_F(AlertQueueTest, textsAreCutToWhatCanBeRead) {
  Alert shown;
  AlertQueue cutting([&](const Alert& alert, bool, const AlertQueue::Answered&) {
    shown = alert;
    return std::make_unique<AlertQueue::Dialog>();
  });
  const std::string endless(1 << 20, 'm');
  cutting.show({endless, "prima\n" + endless, {"Va bene"}}, [](std::size_t) {});
  EXPECT_EQ(shown.message, std::string(200, 'm') + "…");
  EXPECT_EQ(shown.informative, "prima\n" + std::string(200, 'm') + "…");
  EXPECT_THAT(shown.buttons, ElementsAre("Va bene"));
}

}  // namespace
}  // namespace orvalle::platform
