#include <gtest/gtest.h>

#include <chrono>

#include "tests/unit/web/finestra_fixture.h"

/// A page that does not answer.
namespace orvalle::web {
namespace {

using namespace std::chrono_literals;

class FinestraPatienceTest : public FinestraFixture {
 protected:
  FinestraPatienceTest() { showPage(); }
  /// The page has not answered for as long as the window tells of it.
  void fallSilent() { window().delegate->didStopAnswering(); }
  bool asked() const { return !system.alerts.waiting.empty(); }
};

TEST_F(FinestraPatienceTest, isReportedAfterTenSeconds) {
  fallSilent();
  system.time.advance(7s - 1ns);
  EXPECT_FALSE(asked());
  system.time.advance(1ns);
  ASSERT_TRUE(asked());
  const auto& alert = system.alerts.waiting.front().alert;
  EXPECT_EQ(alert.message, "La pagina non risponde");
  EXPECT_EQ(alert.buttons, (Texts{"Aspetta", "Ricarica"}));
  EXPECT_EQ(alert.returnButton, 0U);
  EXPECT_EQ(alert.closing, 0U);
}

TEST_F(FinestraPatienceTest, isNotReportedWhenItAnswersInTime) {
  fallSilent();
  system.time.advance(6s);
  window().delegate->didAnswerAgain();
  system.time.advance(1min);
  EXPECT_FALSE(asked());
}

TEST_F(FinestraPatienceTest, questionGoesWhenThePageAnswers) {
  fallSilent();
  system.time.advance(7s);
  window().delegate->didAnswerAgain();
  EXPECT_FALSE(asked());
  EXPECT_EQ(window().freshStarts, 0);
}

TEST_F(FinestraPatienceTest, whoWaitsIsAskedAgainTenSecondsLater) {
  fallSilent();
  system.time.advance(7s);
  system.alerts.press(0);
  EXPECT_FALSE(asked());
  EXPECT_EQ(window().freshStarts, 0);
  system.time.advance(10s - 1ns);
  EXPECT_FALSE(asked());
  system.time.advance(1ns);
  EXPECT_TRUE(asked());
}

TEST_F(FinestraPatienceTest, whoReloadsGetsThePageAnew) {
  fallSilent();
  system.time.advance(7s);
  system.alerts.press(1);
  EXPECT_EQ(window().freshStarts, 1);
  system.time.advance(1min);
  EXPECT_FALSE(asked());
}

}  // namespace
}  // namespace orvalle::web
