#include "link/realtime_channel.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/json.h"
#include "platform/memory/memory_link.h"
#include "platform/memory/memory_stores.h"
#include "platform/memory/virtual_time.h"

namespace orvalle::link {
namespace {

using namespace std::chrono_literals;
using base::Json;
using base::jsonMember;
using base::jsonText;
using platform::memory::WebSocketState;

constexpr char kState[] =
    R"({"topic":"realtime:ov:K","event":"broadcast","ref":null,"payload":{"type":"broadcast","event":"state","payload":
       {"running":true,"isBreak":false,"elapsedMin":5,"remainingMin":20,"plannedMin":25,"projectTitle":"P","tasks":[]}}})";
constexpr char kReply[] =
    R"({"topic":"realtime:ov:K","event":"phx_reply","payload":{"status":"ok","response":{}},"ref":"1"})";
constexpr char kErrorReply[] =
    R"({"topic":"realtime:ov:K","event":"phx_reply","payload":{"status":"error","response":{"reason":"no"}},"ref":"1"})";

class RealtimeChannelTest : public testing::Test {
 protected:
  RealtimeChannelTest() { make(); }

  void make() {
    channel_ = std::make_unique<RealtimeChannel>(config_, sockets_, time_);
    channel_->onState = [this](const Snapshot& snapshot) { states_.push_back(snapshot); };
    channel_->onConnection = [this](bool connected) { connections_.push_back(connected); };
  }

  void pair() {
    config_.setUrl("https://p.example");
    config_.setAnonKey("anon");
    config_.setChannelKey("K");
  }

  /// A paired channel whose first connection is open.
  WebSocketState& open() {
    pair();
    channel_->connect();
    last().accept();
    return last();
  }

  WebSocketState& last() { return *sockets_.all.back(); }

  static Json frame(const std::string& text) { return base::parseJson(text).value(); }
  static std::string ref(const std::string& text) {
    const auto parsed = frame(text);
    return jsonText(jsonMember(parsed, "ref")).value();
  }

  platform::memory::VirtualTime time_;
  platform::memory::MemoryDefaults defaults_;
  Config config_{defaults_};
  platform::memory::MemoryWebSockets sockets_;
  std::unique_ptr<RealtimeChannel> channel_;
  std::vector<Snapshot> states_;
  std::vector<bool> connections_;
};

TEST_F(RealtimeChannelTest, withoutSettingsTellsNotConnectedAndOpensNothing) {
  channel_->connect();
  EXPECT_EQ(connections_, std::vector<bool>{false});
  EXPECT_TRUE(sockets_.all.empty());
  time_.advance(5min);
  EXPECT_TRUE(sockets_.all.empty());
}

TEST_F(RealtimeChannelTest, withAnAddressThatDoesNotParseTellsNotConnectedAndOpensNothing) {
  pair();
  config_.setUrl("https://not a url");
  channel_->connect();
  time_.advance(5min);
  EXPECT_EQ(connections_, std::vector<bool>{false});
  EXPECT_TRUE(sockets_.all.empty());
}

TEST_F(RealtimeChannelTest, connectsToTheSocketAddress) {
  pair();
  channel_->connect();
  ASSERT_EQ(sockets_.all.size(), 1U);
  EXPECT_EQ(last().url, "wss://p.example/realtime/v1/websocket?apikey=anon&vsn=1.0.0");
  EXPECT_TRUE(connections_.empty());
}

TEST_F(RealtimeChannelTest, joinsOnOpenWithTheFirstNumber) {
  const auto& socket = open();
  ASSERT_EQ(socket.sent.size(), 1U);
  EXPECT_EQ(
      frame(socket.sent[0]),
      frame(R"({"topic":"realtime:ov:K","event":"phx_join","payload":{"config":{"broadcast":{"self":false,
                      "ack":false},"presence":{"key":""},"private":false}},"ref":"1"})"));
}

TEST_F(RealtimeChannelTest, sendsTheFirstHeartbeatTwentyFiveSecondsAfterTheJoin) {
  const auto& socket = open();
  time_.advance(24999ms);
  EXPECT_EQ(socket.sent.size(), 1U);
  time_.advance(1ms);
  ASSERT_EQ(socket.sent.size(), 2U);
  EXPECT_EQ(frame(socket.sent[1]),
            frame(R"({"topic":"phoenix","event":"heartbeat","payload":{},"ref":"2"})"));
  time_.advance(50s);
  ASSERT_EQ(socket.sent.size(), 4U);
  EXPECT_EQ(ref(socket.sent[3]), "4");
}

TEST_F(RealtimeChannelTest, keepsOneHeartbeatTimerAcrossConnections) {
  open();
  time_.advance(10s);
  channel_->connect();
  last().accept();
  time_.advance(25s);
  ASSERT_EQ(sockets_.all.size(), 2U);
  EXPECT_EQ(sockets_.all[0]->sent.size(), 1U);
  EXPECT_EQ(sockets_.all[1]->sent.size(), 2U);
  EXPECT_EQ(time_.timerCount(), 1U);
}

TEST_F(RealtimeChannelTest, heartbeatGoesOnAndCountsWhileTheLinkIsLost) {
  open().lose();
  EXPECT_EQ(time_.timerCount(), 2U);
  // The reconnect replaces the connection and ends the old heartbeat.
  time_.advance(1s);
  EXPECT_EQ(time_.timerCount(), 0U);
}

TEST_F(RealtimeChannelTest, anyReplyMarksTheLinkAsConnectedOnce) {
  auto& socket = open();
  socket.sendText(kReply);
  socket.sendText(kReply);
  EXPECT_EQ(connections_, std::vector<bool>{true});
}

TEST_F(RealtimeChannelTest, anErrorReplyCountsAsConnectedToo) {
  open().sendText(kErrorReply);
  EXPECT_EQ(connections_, std::vector<bool>{true});
}

TEST_F(RealtimeChannelTest, aReplyNeedsNothingButItsEvent) {
  open().sendText(R"({"event":"phx_reply"})");
  EXPECT_EQ(connections_, std::vector<bool>{true});
}

TEST_F(RealtimeChannelTest, aStateBroadcastReachesTheOwner) {
  open().sendText(kState);
  ASSERT_EQ(states_.size(), 1U);
  EXPECT_TRUE(states_[0].running);
  EXPECT_EQ(states_[0].remainingMin, 20);
  EXPECT_EQ(states_[0].projectTitle, "P");
}

TEST_F(RealtimeChannelTest, aStateArrivesBeforeTheJoinIsAnswered) {
  open().sendText(
      R"({"event":"broadcast","payload":{"event":"state","payload":{"running":false,"isBreak":true,
      "elapsedMin":0,"remainingMin":0,"plannedMin":0,"projectTitle":"","tasks":[]}}})");
  EXPECT_EQ(states_.size(), 1U);
  EXPECT_TRUE(connections_.empty());
}

TEST_F(RealtimeChannelTest, ignoresEverythingElse) {
  auto& socket = open();
  for (const auto* text : {
           "",
           "x",
           "null",
           "5",
           "[]",
           R"([null,"1","realtime:ov:K","phx_reply",{}])",
           "{}",
           R"({"event":5})",
           R"({"event":null})",
           R"({"event":"phx_error"})",
           R"({"event":"phx_close"})",
           R"({"event":"presence_state","payload":{}})",
           R"({"event":"PHX_REPLY"})",
           R"({"event":"broadcast"})",
           R"({"event":"broadcast","payload":null})",
           R"({"event":"broadcast","payload":"state"})",
           R"({"event":"broadcast","payload":{"event":"state"}})",
           R"({"event":"broadcast","payload":{"event":"state","payload":null}})",
           R"({"event":"broadcast","payload":{"event":"state","payload":"x"}})",
           R"({"event":"broadcast","payload":{"event":"state","payload":5}})",
           R"({"event":"broadcast","payload":{"event":"state","payload":true}})",
           R"({"event":"broadcast","payload":{"event":"cmd","payload":{"command":"stop"}}})",
           R"({"event":"broadcast","payload":{"event":"state","payload":{"running":true,"isBreak":false,
              "elapsedMin":5,"remainingMin":20,"plannedMin":25,"projectTitle":"P"}}})",
       }) {
    socket.sendText(text);
  }
  socket.sendText(std::string(100000, '['));
  EXPECT_TRUE(states_.empty());
  EXPECT_TRUE(connections_.empty());
  EXPECT_EQ(socket.sent.size(), 1U);
}

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

TEST_F(RealtimeChannelTest, connectingAgainCancelsTheOldConnectionQuietly) {
  open().sendText(kReply);
  channel_->connect();
  ASSERT_EQ(sockets_.all.size(), 2U);
  EXPECT_EQ(sockets_.all[0]->cancelCode, 1001);
  EXPECT_EQ(connections_, std::vector<bool>{true});
  last().accept();
  last().sendText(kReply);
  EXPECT_EQ(connections_, (std::vector<bool>{true, true}));
}

TEST_F(RealtimeChannelTest, connectingWithEmptiedSettingsLeavesTheConnectionOpenButUnheard) {
  auto& socket = open();
  socket.sendText(kReply);
  config_.setAnonKey("");
  channel_->connect();
  EXPECT_EQ(connections_, (std::vector<bool>{true, false}));
  EXPECT_FALSE(socket.over);
  socket.sendText(kReply);
  EXPECT_EQ(connections_, (std::vector<bool>{true, false}));
}

TEST_F(RealtimeChannelTest, disconnectEndsConnectionAndHeartbeatAndTellsNobody) {
  open().sendText(kReply);
  channel_->disconnect();
  EXPECT_EQ(last().cancelCode, 1001);
  EXPECT_EQ(connections_, std::vector<bool>{true});
  EXPECT_EQ(time_.timerCount(), 0U);
  time_.advance(5min);
  EXPECT_EQ(sockets_.all.size(), 1U);
}

TEST_F(RealtimeChannelTest, aCommandCarriesItsArgumentOnlyWhenThereIsOne) {
  auto& socket = open();
  channel_->command("task", "abc");
  channel_->command("stop", {});
  ASSERT_EQ(socket.sent.size(), 3U);
  EXPECT_EQ(frame(socket.sent[1]), frame(R"({"topic":"realtime:ov:K","event":"broadcast","ref":"2","payload":
      {"type":"broadcast","event":"cmd","payload":{"command":"task","id":"abc"}}})"));
  EXPECT_EQ(frame(socket.sent[2]), frame(R"({"topic":"realtime:ov:K","event":"broadcast","ref":"3","payload":
      {"type":"broadcast","event":"cmd","payload":{"command":"stop"}}})"));
}

TEST_F(RealtimeChannelTest, aCommandWithoutAConnectionDoesNothingAtAll) {
  channel_->command("stop", {});
  const auto& socket = open();
  EXPECT_EQ(ref(socket.sent[0]), "1");
}

TEST_F(RealtimeChannelTest, aCommandBeforeTheHandshakeIsLostButCounted) {
  pair();
  channel_->connect();
  channel_->command("stop", {});
  last().accept();
  ASSERT_EQ(last().sent.size(), 1U);
  EXPECT_EQ(ref(last().sent[0]), "2");
}

TEST_F(RealtimeChannelTest, readsTheTopicAfreshForEveryMessage) {
  const auto& socket = open();
  config_.setChannelKey("other");
  channel_->command("stop", {});
  const auto sent = frame(socket.sent[1]);
  EXPECT_EQ(jsonText(jsonMember(sent, "topic")), "realtime:ov:other");
}

TEST_F(RealtimeChannelTest, nothingReachesItOnceItIsGone) {
  open();
  const auto socket = sockets_.all.back();
  const auto events = socket->events;
  channel_.reset();
  EXPECT_EQ(socket->cancelCode, 1001);
  events.onOpen();
  events.onText(kReply);
  events.onLost();
  time_.advance(5min);
  EXPECT_TRUE(connections_.empty());
  EXPECT_EQ(sockets_.all.size(), 1U);
}

TEST_F(RealtimeChannelTest, worksWithoutListeners) {
  channel_->onState = nullptr;
  channel_->onConnection = nullptr;
  auto& socket = open();
  socket.sendText(kReply);
  socket.sendText(kState);
  socket.lose();
  time_.advance(1s);
  EXPECT_EQ(sockets_.all.size(), 2U);
}

}  // namespace
}  // namespace orvalle::link
