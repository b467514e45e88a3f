#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "link/realtime_channel.h"
#include "platform/memory/memory_link.h"
#include "platform/memory/memory_stores.h"
#include "platform/memory/virtual_time.h"

/// The channel through long times with a bad network and a restless user.
namespace orvalle::link {
namespace {

using namespace std::chrono_literals;
using platform::WallTime;
using platform::memory::WebSocketState;
using std::chrono::milliseconds;

constexpr auto kHours = 1000h;
constexpr auto kNever = WallTime::max();
constexpr char kReply[] = R"({"event":"phx_reply","payload":{"status":"ok"}})";
constexpr char kStateFrame[] =
    R"({"event":"broadcast","payload":{"event":"state","payload":{"running":true,"isBreak":false,
        "elapsedMin":5,"remainingMin":20,"plannedMin":25,"projectTitle":"P","tasks":[]}}})";

struct Counts {
  int connections = 0;
  int losses = 0;
  int joins = 0;
  int heartbeats = 0;
  int commands = 0;
  int states = 0;
};

/// A network that makes, refuses, delays and breaks connections as it likes, with a user in front of it. It
/// knows at every moment what the channel has to do, and says so when it does anything else.
class World : public platform::WebSockets {
 public:
  explicit World(unsigned seed) : random_(seed) {
    config_.setUrl("https://p.example");
    config_.setAnonKey("anon");
    config_.setChannelKey("K");
    channel_.onConnection = [this](bool connected) { told(connected); };
    channel_.onState = [this](const Snapshot&) { ++counts.states; };
  }

  void live(std::chrono::hours time) {
    userConnects();
    const auto user = time_.every(10min, [this] { userActs(); });
    for (auto hour = 0h; hour < time && !testing::Test::HasFailure(); ++hour) {
      time_.advance(1h);
      check();
    }
  }

  std::unique_ptr<platform::WebSocket> connect(const std::string& url,
                                               platform::WebSocketEvents events) override {
    const auto due = reconnects_.find(time_.now());
    EXPECT_TRUE(userConnecting_ || due != reconnects_.end()) << "a connection that nobody expects";
    if (!userConnecting_ && due != reconnects_.end()) reconnects_.erase(due);
    EXPECT_TRUE(!state_ || state_->over) << "two connections at once";
    ++counts.connections;
    connected_ = false;
    beat_ = kNever;
    auto socket = sockets_.connect(url, std::move(events));
    state_ = std::exchange(sockets_.all, {}).back();
    fates_.clear();
    decideFate();
    return std::make_unique<Watched>(*this, state_, std::move(socket));
  }

  Counts counts;

 private:
  /// A connection whose every message is seen, also one that the network loses.
  class Watched : public platform::WebSocket {
   public:
    Watched(World& world, std::shared_ptr<WebSocketState> state, std::unique_ptr<platform::WebSocket> socket)
        : world_(world), state_(std::move(state)), socket_(std::move(socket)) {}
    void sendText(const std::string& text) override {
      EXPECT_EQ(state_, world_.state_) << "a message on an old connection";
      world_.sent(text);
      socket_->sendText(text);
    }
    void cancel(int code) override {
      EXPECT_EQ(code, 1001);
      socket_->cancel(code);
    }

   private:
    World& world_;
    std::shared_ptr<WebSocketState> state_;
    std::unique_ptr<platform::WebSocket> socket_;
  };

  bool chance(double share) { return std::bernoulli_distribution(share)(random_); }
  milliseconds some(milliseconds from, milliseconds to) {
    return milliseconds(std::uniform_int_distribution<milliseconds::rep>(from.count(), to.count())(random_));
  }

  /// Something that happens to the present connection unless it is over by then.
  template <typename Act>
  void later(milliseconds delay, Act act) {
    fates_.push_back(time_.after(delay, [this, act, state = state_] {
      if (!state->over) act();
      check();
    }));
  }

  void decideFate() {
    if (chance(0.3)) {
      // Refused at once or, as by a silent host, in the end.
      later(chance(0.5) ? some(0ms, 50ms) : 10s, [this] { lose(); });
    } else {
      later(some(1ms, 900ms), [this] { accept(); });
    }
  }

  void accept() {
    const auto before = counts.joins;
    state_->accept();
    EXPECT_EQ(counts.joins, before + 1);
    if (chance(0.9)) later(some(1ms, 3s), [this] { reply(); });
    if (chance(0.1)) later(some(1ms, 30s), [this] { reply(); });
    if (chance(0.5)) later(some(1ms, 5s), [this] { state_->sendText(kStateFrame); });
    later(chance(0.2) ? some(0ms, 10s) : some(0min, 30min), [this] { lose(); });
  }

  void reply() {
    if (!std::exchange(connected_, true)) {
      retry_ = 1s;
      expected_.push_back(true);
    }
    state_->sendText(kReply);
  }

  void lose() {
    ++counts.losses;
    connected_ = false;
    expected_.push_back(false);
    reconnects_.insert(time_.now() + retry_);
    retry_ = std::min<milliseconds>(2 * retry_, 30s);
    state_->lose();
  }

  void userActs() {
    if (chance(0.1)) return userConnects();
    const auto before = counts.commands;
    channel_.command(chance(0.5) ? "plus5" : "stop", {});
    EXPECT_EQ(counts.commands, before + 1);
    check();
  }

  void userConnects() {
    const auto before = counts.connections;
    userConnecting_ = true;
    channel_.connect();
    userConnecting_ = false;
    EXPECT_EQ(counts.connections, before + 1);
    check();
  }

  void told(bool connected) {
    ASSERT_FALSE(expected_.empty()) << "told of a change that there was not";
    EXPECT_EQ(connected, expected_.front());
    expected_.erase(expected_.begin());
  }

  void sent(const std::string& text) {
    // Not read as JSON, of which other tests make sure: there are hundreds of thousands.
    const auto has = [&](const std::string& part) { return text.find(part) != std::string::npos; };
    EXPECT_TRUE(has(R"("ref":")" + std::to_string(++number_) + '"')) << text;
    if (has(R"("event":"phx_join")")) {
      ++counts.joins;
      EXPECT_EQ(beat_, kNever) << "joined twice";
      beat_ = time_.now() + 25s;
    } else if (has(R"("event":"heartbeat")")) {
      ++counts.heartbeats;
      EXPECT_EQ(beat_, time_.now());
      beat_ += 25s;
    } else {
      ++counts.commands;
    }
  }

  void check() {
    EXPECT_TRUE(expected_.empty()) << "not told of a change";
    EXPECT_GE(beat_, time_.now()) << "a heartbeat left out";
    EXPECT_TRUE(!state_->over || !reconnects_.empty()) << "given up";
    if (!reconnects_.empty()) {
      EXPECT_GE(*reconnects_.begin(), time_.now()) << "a reconnect left out";
    }
  }

  platform::memory::VirtualTime time_;
  platform::memory::MemoryDefaults defaults_;
  Config config_{defaults_};
  platform::memory::MemoryWebSockets sockets_;
  std::mt19937 random_;
  std::shared_ptr<WebSocketState> state_;
  std::vector<base::Subscription> fates_;

  // What must be: reconnects at these times, the next heartbeat at that one, these changes still to be told.
  std::multiset<WallTime> reconnects_;
  milliseconds retry_ = 1s;
  WallTime beat_ = kNever;
  std::vector<bool> expected_;
  bool connected_ = false;
  bool userConnecting_ = false;
  std::int64_t number_ = 0;

  RealtimeChannel channel_{config_, *this, time_};
};

class RealtimeChannelHours : public testing::TestWithParam<unsigned> {};

TEST_P(RealtimeChannelHours, keepsToItsRulesForAThousandHours) {
  World world(GetParam());
  world.live(kHours);
  // It was not a quiet time.
  EXPECT_GT(world.counts.losses, 3000);
  EXPECT_GE(world.counts.connections, world.counts.losses);
  EXPECT_GT(world.counts.joins, 2000);
  EXPECT_GT(world.counts.heartbeats, 50'000);
  EXPECT_GT(world.counts.commands, 5000);
  EXPECT_GT(world.counts.states, 1000);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RealtimeChannelHours, testing::Range(1U, 3U));

}  // namespace
}  // namespace orvalle::link
