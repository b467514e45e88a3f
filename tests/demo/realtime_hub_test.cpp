#include "demo/server/realtime_hub.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace orvalle::demo {
namespace {

using Client = RealtimeHub::Client;

class RealtimeHubTest : public testing::Test {
 protected:
  Client add(Serializer serializer = Serializer::Objects) {
    const std::size_t number = received_.size();
    received_.emplace_back();
    const Client client = hub_.add(serializer, [this, number](const WireMessage& message) {
      received_[number].push_back(message.bytes);
    });
    numbers_[client] = number;
    return client;
  }

  void say(Client client, const std::string& frame) { hub_.receive(client, {false, frame}); }
  void join(Client client, const std::string& config = "{}", const std::string& topic = "realtime:t") {
    say(client, R"({"topic":")" + topic + R"(","event":"phx_join","payload":{"config":)" + config +
                    R"(},"ref":"1"})");
  }
  Client member(const std::string& config = "{}") {
    const Client client = add();
    join(client, config);
    heard(client);
    return client;
  }
  void broadcast(Client client, const std::string& payload = R"({"event":"state"})") {
    say(client, R"({"topic":"realtime:t","event":"broadcast","payload":)" + payload + R"(,"ref":"8"})");
  }

  /// What the client has been sent since the last time.
  std::vector<std::string> heard(Client client) { return std::exchange(received_[numbers_.at(client)], {}); }
  static std::vector<std::string> one(std::string frame) { return {std::move(frame)}; }

  static std::string reply(const std::string& topic, const std::string& ref, const std::string& payload) {
    return R"({"topic":")" + topic + R"(","event":"phx_reply","payload":)" + payload + R"(,"ref":")" + ref +
           R"("})";
  }
  static std::string delivery(const std::string& payload = R"({"event":"state"})") {
    return R"({"topic":"realtime:t","event":"broadcast","payload":)" + payload + R"(,"ref":null})";
  }

  RealtimeHub hub_;
  std::vector<std::vector<std::string>> received_;
  std::map<Client, std::size_t> numbers_;
};

constexpr const char* kOk = R"({"status":"ok","response":{}})";
constexpr const char* kJoined = R"({"status":"ok","response":{"postgres_changes":[]}})";
constexpr const char* kUnmatched = R"({"status":"error","response":{"reason":"unmatched topic"}})";

TEST_F(RealtimeHubTest, aHeartbeatIsAnsweredEvenBeforeAnyJoin) {
  const Client client = add();
  say(client, R"({"topic":"phoenix","event":"heartbeat","payload":{},"ref":"4"})");
  EXPECT_EQ(heard(client), one(reply("phoenix", "4", kOk)));
}

TEST_F(RealtimeHubTest, aJoinIsAnsweredWithItsNumber) {
  const Client client = add();
  join(client);
  EXPECT_EQ(heard(client), one(reply("realtime:t", "1", kJoined)));
}

TEST_F(RealtimeHubTest, aBroadcastReachesTheOtherMembersOnly) {
  const Client sender = member();
  const Client other = member();
  const Client outside = add();
  const Client elsewhere = add();
  join(elsewhere, "{}", "realtime:u");
  heard(elsewhere);
  broadcast(sender);
  EXPECT_EQ(heard(other), one(delivery()));
  for (const Client client : {sender, outside, elsewhere}) EXPECT_TRUE(heard(client).empty());
}

TEST_F(RealtimeHubTest, aMemberMayHearItselfAndHaveReceipts) {
  const Client self = member(R"({"broadcast":{"self":true}})");
  const Client ack = member(R"({"broadcast":{"ack":true,"self":false}})");
  broadcast(self);
  EXPECT_EQ(heard(self), one(delivery()));
  EXPECT_EQ(heard(ack), one(delivery()));
  broadcast(ack);
  EXPECT_EQ(heard(ack), one(reply("realtime:t", "8", kOk)));
  EXPECT_EQ(heard(self), one(delivery()));
}

TEST_F(RealtimeHubTest, optionsOfTheWrongTypeAreOff) {
  const Client client = member(R"({"broadcast":{"self":1,"ack":"true"},"private":0})");
  broadcast(client);
  EXPECT_TRUE(heard(client).empty());
  const Client odd = add();
  join(odd, "5");
  EXPECT_EQ(heard(odd), one(reply("realtime:t", "1", kJoined)));
}

TEST_F(RealtimeHubTest, eachHearsInItsOwnSerializer) {
  const Client sender = member();
  const Client arrays = add(Serializer::Arrays);
  say(arrays, R"(["5","6","realtime:t","phx_join",{}])");
  EXPECT_EQ(heard(arrays), one(R"(["5","6","realtime:t","phx_reply",)" + std::string(kJoined) + "]"));
  broadcast(sender);
  EXPECT_EQ(heard(arrays), one(R"([null,null,"realtime:t","broadcast",{"event":"state"}])"));
}

TEST_F(RealtimeHubTest, whoLeavesIsToldSoAndIsGone) {
  const Client leaver = member();
  const Client other = member();
  say(leaver, R"({"topic":"realtime:t","event":"phx_leave","payload":{},"ref":"2"})");
  EXPECT_EQ(
      heard(leaver),
      (std::vector{reply("realtime:t", "2", kOk),
                   std::string(R"({"topic":"realtime:t","event":"phx_close","payload":{},"ref":null})")}));
  broadcast(other);
  broadcast(leaver);
  EXPECT_EQ(heard(leaver), one(reply("realtime:t", "8", kUnmatched)));
  EXPECT_TRUE(heard(other).empty());
  say(leaver, R"({"topic":"realtime:t","event":"phx_leave","payload":{},"ref":"3"})");
  EXPECT_EQ(heard(leaver), one(reply("realtime:t", "3", kOk)));
}

TEST_F(RealtimeHubTest, aFarewellToAnEarlierMembershipChangesNothing) {
  const Client client = add(Serializer::Arrays);
  say(client, R"(["1","1","realtime:t","phx_join",{}])");
  say(client, R"(["2","2","realtime:t","phx_join",{}])");
  EXPECT_EQ(heard(client)[1], R"(["1","1","realtime:t","phx_close",{}])");
  say(client, R"(["1","3","realtime:t","phx_leave",{}])");
  EXPECT_TRUE(heard(client).empty());
  broadcast(member());
  EXPECT_EQ(heard(client).size(), 1U);
}

TEST_F(RealtimeHubTest, aDisconnectedClientIsInNoChannelAnyMore) {
  const Client gone = member();
  const Client other = member();
  hub_.remove(gone);
  broadcast(other);
  broadcast(gone);
  EXPECT_TRUE(heard(gone).empty());
  EXPECT_TRUE(heard(other).empty());
}

TEST_F(RealtimeHubTest, onlyRealtimeTopicsOfAReasonableLengthCanBeJoined) {
  const std::string longest = "realtime:" + std::string(RealtimeHub::kLongestTopic - 9, 'x');
  for (const std::string& topic :
       {std::string("t"), std::string("realtime:"), std::string("phoenix"), longest + "x"}) {
    const Client client = add();
    join(client, "{}", topic);
    EXPECT_EQ(heard(client), one(reply(topic, "1", kUnmatched)));
  }
  const Client client = add();
  join(client, "{}", longest);
  EXPECT_EQ(heard(client), one(reply(longest, "1", kJoined)));
}

TEST_F(RealtimeHubTest, aPrivateChannelIsRefused) {
  const Client client = add();
  join(client, R"({"private":true})");
  const auto answers = heard(client);
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_NE(answers[0].find(R"("status":"error")"), std::string::npos);
  broadcast(member());
  EXPECT_TRUE(heard(client).empty());
}

TEST_F(RealtimeHubTest, aBroadcastThatIsNoObjectEndsTheMembership) {
  const Client sender = member();
  const Client other = member();
  for (const char* payload : {"5", "null", "[]", R"("x")"}) {
    join(sender);
    heard(sender);
    broadcast(sender, payload);
    EXPECT_EQ(heard(sender), one(R"({"topic":"realtime:t","event":"phx_error","payload":{},"ref":null})"));
  }
  EXPECT_TRUE(heard(other).empty());
}

TEST_F(RealtimeHubTest, eventsThatItDoesNotKnowAreIgnored) {
  const Client client = member();
  const Client other = member();
  for (const char* event : {"presence", "access_token", "boh", "phx_reply"}) {
    say(client, R"({"topic":"realtime:t","event":")" + std::string(event) + R"(","payload":{},"ref":"5"})");
  }
  EXPECT_TRUE(heard(client).empty());
  EXPECT_TRUE(heard(other).empty());
}

TEST_F(RealtimeHubTest, aClientHasOnlySoManyChannels) {
  const Client client = add();
  for (std::size_t number = 0; number < RealtimeHub::kMostChannels; ++number) {
    join(client, "{}", "realtime:" + std::to_string(number));
  }
  heard(client);
  join(client);
  EXPECT_NE(heard(client).at(0).find(R"("status":"error")"), std::string::npos);
  join(client, "{}", "realtime:7");
  EXPECT_EQ(heard(client).back(), reply("realtime:7", "1", kJoined));
}

}  // namespace
}  // namespace orvalle::demo
