#include "tests/unit/link/realtime_channel_fixture.h"

namespace orvalle::link {
namespace {

using namespace std::chrono_literals;
using base::jsonMember;
using base::jsonText;

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
  open();
  time_.advance(24500ms);
  last().lose();
  EXPECT_EQ(time_.timerCount(), 2U);
  time_.advance(999ms);
  EXPECT_EQ(sockets_.all.size(), 1U);
  // The reconnect replaces the connection and ends the old heartbeat.
  time_.advance(1ms);
  EXPECT_EQ(time_.timerCount(), 0U);
  last().accept();
  EXPECT_EQ(ref(last().sent.at(0)), "3");
}

TEST_F(RealtimeChannelTest, aConnectionThatIsNotOpenHasNoHeartbeat) {
  pair();
  channel_->connect();
  EXPECT_EQ(time_.timerCount(), 0U);
  time_.advance(1min);
  EXPECT_TRUE(last().sent.empty());
}

TEST_F(RealtimeChannelTest, aReplyToTheHeartbeatCountsAsConnectedToo) {
  open();
  time_.advance(25s);
  last().sendText(
      R"({"topic":"phoenix","event":"phx_reply","payload":{"status":"ok","response":{}},"ref":"2"})");
  EXPECT_EQ(connections_, std::vector<bool>{true});
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

TEST_F(RealtimeChannelTest, topicAndNumberOfWhatArrivesDoNotMatter) {
  std::string text = kState;
  text.replace(text.find("realtime:ov:K"), 13, "another:topic");
  open().sendText(text);
  text.replace(text.find("null"), 4, "{\"7\":8}");
  last().sendText(text);
  EXPECT_EQ(states_.size(), 2U);
}

TEST_F(RealtimeChannelTest, aStateHasToBeSoInEveryMember) {
  auto& socket = open();
  const std::string state = kState;
  const auto withMinutes = [&](const std::string& number) {
    auto text = state;
    text.replace(text.find("\"remainingMin\":20") + 15, 2, number);
    return text;
  };
  for (const char* number :
       {"1e400", "-1e400", "1e-400", "1e99999999999", "true", "null", "NaN", "\"20\"", "[20]"})
    socket.sendText(withMinutes(number));
  EXPECT_TRUE(states_.empty());
  for (const char* number : {"1e300", "-20", "18446744073709551615", "123456789012345678901234567890"})
    socket.sendText(withMinutes(number));
  EXPECT_EQ(states_.size(), 4U);
}

TEST_F(RealtimeChannelTest, aMemberThatComesTwiceBreaksNothing) {
  auto& socket = open();
  socket.sendText(R"({"event":"phx_reply","event":"phx_reply","event":"phx_reply"})");
  EXPECT_EQ(connections_, std::vector<bool>{true});
  socket.sendText(R"({"event":"broadcast","event":5,"payload":{},"payload":[],"event":null})");
  EXPECT_TRUE(states_.empty());
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
           R"({"event":["phx_reply"]})",
           R"({"payload":{"event":"phx_reply"}})",
           R"({"EVENT":"phx_reply"})",
           R"({"event":"phx_reply"} x)",
           R"({"event":"phx_reply",})",
           "{\"event\":\"phx_reply\",\"topic\":\"\xFF\"}",
           R"({"event":"state","payload":{"running":true}})",
           R"({"event":"presence_state","payload":{}})",
           R"({"event":"PHX_REPLY"})",
           R"({"event":"broadcast"})",
           R"({"event":"broadcast","payload":null})",
           R"({"event":"broadcast","payload":"state"})",
           R"({"event":"broadcast","payload":[]})",
           R"({"event":"broadcast","payload":{"event":"state"}})",
           R"({"event":"broadcast","payload":{"type":"state","payload":{}}})",
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

TEST_F(RealtimeChannelTest, aCommandOnALostConnectionIsLostButCounted) {
  open().lose();
  channel_->command("plus5", {});
  EXPECT_EQ(last().sent.size(), 1U);
  time_.advance(1s);
  last().accept();
  EXPECT_EQ(ref(last().sent.at(0)), "3");
}

TEST_F(RealtimeChannelTest, aMessageThatIsNoTextIsNotSent) {
  const auto& socket = open();
  channel_->command("task", "\xFF");
  EXPECT_EQ(socket.sent.size(), 1U);
  channel_->command("task", std::string("\0\"\\", 3));
  ASSERT_EQ(socket.sent.size(), 2U);
  const auto sent = frame(socket.sent[1]);
  EXPECT_EQ(jsonText(jsonMember(*jsonMember(*jsonMember(sent, "payload"), "payload"), "id")),
            std::string("\0\"\\", 3));
}

TEST_F(RealtimeChannelTest, readsTheTopicAfreshForEveryMessage) {
  const auto& socket = open();
  config_.setChannelKey("other");
  channel_->command("stop", {});
  const auto sent = frame(socket.sent[1]);
  EXPECT_EQ(jsonText(jsonMember(sent, "topic")), "realtime:ov:other");
  config_.setChannelKey("third");
  channel_->connect();
  config_.setChannelKey("fourth");
  last().accept();
  const auto join = frame(last().sent.at(0));
  EXPECT_EQ(jsonText(jsonMember(join, "topic")), "realtime:ov:fourth");
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
