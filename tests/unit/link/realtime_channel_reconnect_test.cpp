#include "tests/unit/link/realtime_channel_fixture.h"

namespace orvalle::link {
namespace {

using namespace std::chrono_literals;

TEST_F(RealtimeChannelTest, aLossTellsNotConnectedAndReconnectsAfterASecond) {
  open().sendText(kReply);
  last().lose();
  EXPECT_EQ(connections_, (std::vector<bool>{true, false}));
  time_.advance(999ms);
  EXPECT_EQ(sockets_.all.size(), 1U);
  time_.advance(1ms);
  EXPECT_EQ(sockets_.all.size(), 2U);
}

TEST_F(RealtimeChannelTest, waitsTwiceAsLongAfterEachLossUpToThirtySeconds) {
  open();
  for (const auto wait : {1s, 2s, 4s, 8s, 16s, 30s, 30s, 30s}) {
    const auto before = sockets_.all.size();
    last().lose();
    time_.advance(wait - 1ms);
    EXPECT_EQ(sockets_.all.size(), before) << "before " << wait.count() << " s";
    time_.advance(1ms);
    EXPECT_EQ(sockets_.all.size(), before + 1) << "after " << wait.count() << " s";
  }
}

TEST_F(RealtimeChannelTest, aReplyStartsTheWaitsAgainAtOneSecond) {
  open().lose();
  time_.advance(1s);
  last().lose();
  time_.advance(2s);
  last().accept();
  last().sendText(kReply);
  last().lose();
  const auto before = sockets_.all.size();
  time_.advance(1s);
  EXPECT_EQ(sockets_.all.size(), before + 1);
}

TEST_F(RealtimeChannelTest, everyReportedLossSchedulesItsOwnReconnect) {
  pair();
  channel_->connect();
  const auto first = sockets_.all[0];
  const auto lost = first->events.onLost;
  lost();
  lost();
  lost();
  EXPECT_EQ(connections_, (std::vector<bool>{false, false, false}));
  time_.advance(1s);
  EXPECT_EQ(sockets_.all.size(), 2U);
  time_.advance(1s);
  EXPECT_EQ(sockets_.all.size(), 3U);
  time_.advance(2s);
  EXPECT_EQ(sockets_.all.size(), 4U);
  EXPECT_EQ(sockets_.all[1]->cancelCode, 1001);
  EXPECT_EQ(sockets_.all[2]->cancelCode, 1001);
}

TEST_F(RealtimeChannelTest, afterAReconnectTheNumbersGoOn) {
  open().lose();
  time_.advance(1s);
  last().accept();
  ASSERT_EQ(last().sent.size(), 1U);
  EXPECT_EQ(ref(last().sent[0]), "2");
}

TEST_F(RealtimeChannelTest, aReplyOnTheOldConnectionCountsToo) {
  open().sendText(kReply);
  const auto lost = last().events.onLost;
  lost();
  lost();
  last().sendText(kReply);
  EXPECT_EQ(connections_, (std::vector<bool>{true, false, false, true}));
  time_.advance(1s);
  EXPECT_EQ(sockets_.all.size(), 2U);
  last().lose();
  time_.advance(999ms);
  EXPECT_EQ(sockets_.all.size(), 2U);
  time_.advance(1ms);
  EXPECT_EQ(sockets_.all.size(), 4U);
}

TEST_F(RealtimeChannelTest, neitherConnectingNorDisconnectingShortensTheWaits) {
  open().lose();
  channel_->connect();
  last().lose();
  channel_->disconnect();
  time_.advance(3s);
  const auto before = sockets_.all.size();
  EXPECT_EQ(before, 4U);
  last().lose();
  time_.advance(3999ms);
  EXPECT_EQ(sockets_.all.size(), before);
  time_.advance(1ms);
  EXPECT_EQ(sockets_.all.size(), before + 1);
}

TEST_F(RealtimeChannelTest, aReconnectOnItsWayIsCalledOffByNothing) {
  open().lose();
  channel_->connect();
  last().accept();
  last().sendText(kReply);
  time_.advance(1s);
  ASSERT_EQ(sockets_.all.size(), 3U);
  EXPECT_EQ(sockets_.all[1]->cancelCode, 1001);
  last().lose();
  channel_->disconnect();
  time_.advance(1s);
  EXPECT_EQ(sockets_.all.size(), 4U);
}

TEST_F(RealtimeChannelTest, aReconnectWithoutSettingsTellsSoAndIsTheLast) {
  open().lose();
  config_.setUrl("");
  time_.advance(5min);
  EXPECT_EQ(connections_, (std::vector<bool>{false, false}));
  EXPECT_EQ(sockets_.all.size(), 1U);
}

TEST_F(RealtimeChannelTest, aReconnectUsesTheSettingsOfItsTime) {
  open().lose();
  config_.setUrl("http://other.example:81/x?y");
  time_.advance(1s);
  EXPECT_EQ(last().url, "ws://other.example:81/realtime/v1/websocket?apikey=anon&vsn=1.0.0");
}

}  // namespace
}  // namespace orvalle::link
