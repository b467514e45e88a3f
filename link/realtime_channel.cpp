#include "link/realtime_channel.h"

#include <boost/json/object.hpp>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace orvalle::link {
namespace {

using namespace std::chrono_literals;
using boost::json::object;

constexpr auto kHeartbeatInterval = 25s;
constexpr auto kLongestRetry = 30s;

}  // namespace

RealtimeChannel::RealtimeChannel(const Config& config, platform::WebSockets& sockets,
                                 platform::MainLoop& loop)
    : config_(config), sockets_(sockets), loop_(loop) {}

void RealtimeChannel::connect() {
  const auto url = config_.isReady() ? config_.socketURL() : std::nullopt;
  if (!url) return tellConnection(false);
  disconnect();
  platform::WebSocketEvents events;
  events.onOpen = liveness_.guard([this] { join(); });
  events.onText = liveness_.guard([this](const std::string& text) { handle(text); });
  events.onLost = liveness_.guard([this] { lost(); });
  task_ = sockets_.connect(*url, std::move(events));
}

void RealtimeChannel::disconnect() {
  heartbeat_.reset();
  joined_ = false;
  if (task_) task_->cancel(platform::kGoingAway);
  task_.reset();
}

void RealtimeChannel::command(const std::string& word, const std::optional<std::string>& id) {
  if (!task_) return;
  object inner{{"command", word}};
  if (id) inner["id"] = *id;
  send(topic(), "broadcast", object{{"type", "broadcast"}, {"event", "cmd"}, {"payload", std::move(inner)}});
}

void RealtimeChannel::join() {
  send(topic(), "phx_join",
       object{{"config", object{{"broadcast", object{{"self", false}, {"ack", false}}},
                                {"presence", object{{"key", ""}}},
                                {"private", false}}}});
  heartbeat_ = loop_.every(kHeartbeatInterval, liveness_.guard([this] { beat(); }));
}

void RealtimeChannel::beat() {
  send("phoenix", "heartbeat", object{});
}

void RealtimeChannel::handle(const std::string& text) {
  base::JsonArena arena(scratch_.data(), scratch_.size());
  const auto frame = base::parseJson(text, &arena);
  if (!frame) return;
  const auto event = base::jsonText(base::jsonMember(*frame, "event"));
  if (event == "phx_reply") {
    handleReply();
  } else if (event == "broadcast") {
    handleBroadcast(*frame);
  }
}

void RealtimeChannel::handleReply() {
  // Any reply will do, also to a heartbeat, also an error: it proves that the link carries traffic.
  if (joined_) return;
  joined_ = true;
  retry_ = 1s;
  tellConnection(true);
}

void RealtimeChannel::handleBroadcast(const base::Json& frame) {
  const auto* payload = base::jsonMember(frame, "payload");
  if (!payload || base::jsonText(base::jsonMember(*payload, "event")) != "state") return;
  const auto* state = base::jsonMember(*payload, "payload");
  const auto snapshot = state ? decodeSnapshot(*state) : std::nullopt;
  if (snapshot && onState) onState(*snapshot);
}

void RealtimeChannel::lost() {
  joined_ = false;
  tellConnection(false);
  scheduleReconnect();
}

void RealtimeChannel::scheduleReconnect() {
  const auto delay = retry_;
  retry_ = std::min(2 * retry_, std::chrono::seconds(kLongestRetry));
  const auto number = nextReconnect_++;
  reconnects_[number] = loop_.after(delay, liveness_.guard([this, number] {
    reconnects_.erase(number);
    connect();
  }));
}

void RealtimeChannel::tellConnection(bool connected) {
  if (onConnection) onConnection(connected);
}

std::string RealtimeChannel::topic() const {
  return "realtime:ov:" + config_.channelKey();
}

void RealtimeChannel::send(const std::string& topic, const char* event, base::Json payload) {
  // A counter that starts again would answer to old numbers.
  if (ref_ == std::numeric_limits<std::int64_t>::max()) std::abort();
  ++ref_;
  const auto text = base::writeJson(object{
      {"topic", topic}, {"event", event}, {"payload", std::move(payload)}, {"ref", std::to_string(ref_)}});
  if (text && task_) task_->sendText(*text);
}

}  // namespace orvalle::link
