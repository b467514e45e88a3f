#include "platform/answer_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/memory/virtual_time.h"

namespace orvalle::platform {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Owner : public WebWindowDelegate {
 public:
  NavigationPolicy decidePolicy(const NavigationAction&) override { return NavigationPolicy::Allow; }
  void didStart(const std::string&) override {}
  void didCommit(const std::string&) override {}
  void didFinish() override {}
  void didFail(const std::string&) override {}
  void didStopAnswering() override { told.emplace_back("silent"); }
  void didAnswerAgain() override { told.emplace_back("answers"); }
  void didReceiveMessage(const std::string&, std::string) override {}
  void runAlert(const std::string&, std::function<void()>) override {}
  void runConfirm(const std::string&, std::function<void(bool)>) override {}
  void chooseFiles(bool, std::function<void(std::optional<std::vector<std::string>>)>) override {}

  std::vector<std::string> told;
};

class AnswerWatchTest : public ::testing::Test {
 protected:
  void answer(std::size_t question) {
    const auto answered = questions.at(question);
    answered();
  }

  memory::VirtualTime time;
  Owner owner;
  std::vector<std::function<void()>> questions;
  bool answersAtOnce = false;
  std::optional<AnswerWatch> watch{std::in_place, time, owner, [this](std::function<void()> answered) {
                                     questions.push_back(answered);
                                     if (answersAtOnce) answered();
                                   }};
};

TEST_F(AnswerWatchTest, asksTimeAndAgainAndIsSilentAboutAPageThatAnswers) {
  answersAtOnce = true;
  time.advance(5s - 1ns);
  EXPECT_THAT(questions, IsEmpty());
  time.advance(1min);
  EXPECT_EQ(questions.size(), 12U);
  EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(AnswerWatchTest, tellsOnceOfAPageThatDoesNotAnswerInTime) {
  time.advance(8s - 1ns);
  EXPECT_THAT(owner.told, IsEmpty());
  time.advance(1ns);
  EXPECT_THAT(owner.told, ElementsAre("silent"));
  time.advance(1min);
  EXPECT_THAT(owner.told, ElementsAre("silent"));
  EXPECT_EQ(questions.size(), 1U);
}

TEST_F(AnswerWatchTest, tellsWhenItAnswersAfterAllAndAsksOn) {
  time.advance(20s);
  answer(0);
  EXPECT_THAT(owner.told, ElementsAre("silent", "answers"));
  time.advance(8s);
  EXPECT_THAT(owner.told, ElementsAre("silent", "answers", "silent"));
}

TEST_F(AnswerWatchTest, anAnswerInTimeIsNotTold) {
  time.advance(7s);
  answer(0);
  time.advance(2s);
  EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(AnswerWatchTest, aPageThatWaitsForTheUserIsNotSilent) {
  time.advance(6s);
  auto alert = watch->hold();
  time.advance(1min);
  EXPECT_THAT(owner.told, IsEmpty());
  EXPECT_EQ(questions.size(), 1U);
  alert.reset();
  time.advance(3s - 1ns);
  EXPECT_THAT(owner.told, IsEmpty());
  time.advance(1ns);
  EXPECT_THAT(owner.told, ElementsAre("silent"));
}

TEST_F(AnswerWatchTest, aPageThatAsksTheUserHasAnswered) {
  time.advance(8s);
  auto first = watch->hold();
  EXPECT_THAT(owner.told, ElementsAre("silent", "answers"));
  auto second = watch->hold();
  first.reset();
  time.advance(1min);
  EXPECT_THAT(owner.told, ElementsAre("silent", "answers"));
}

TEST_F(AnswerWatchTest, isNotAskedWhileItWaitsForTheUser) {
  const auto alert = watch->hold();
  time.advance(1min);
  EXPECT_THAT(questions, IsEmpty());
}

TEST_F(AnswerWatchTest, anotherPageIsAskedAnew) {
  time.advance(8s);
  watch->startAgain();
  EXPECT_THAT(owner.told, ElementsAre("silent", "answers"));
  time.advance(5s);
  ASSERT_EQ(questions.size(), 2U);
  answer(0);
  time.advance(3s);
  EXPECT_THAT(owner.told, ElementsAre("silent", "answers", "silent"));
}

TEST_F(AnswerWatchTest, goesQuietWithItsWindow) {
  time.advance(6s);
  auto alert = watch->hold();
  watch.reset();
  alert.reset();
  time.advance(1min);
  answer(0);
  EXPECT_THAT(owner.told, IsEmpty());
  EXPECT_EQ(questions.size(), 1U);
  EXPECT_EQ(time.timerCount(), 0U);
}

}  // namespace
}  // namespace orvalle::platform
