#include "demo/server/realtime_hub.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <optional>
#include <utility>

namespace orvalle::demo {
namespace {

using base::Json;
using boost::json::array;
using boost::json::object;

constexpr std::string_view kTopicStart = "realtime:";

const Json* memberAt(const Json& value, std::initializer_list<const char*> path) {
  const Json* found = &value;
  for (const char* name : path) {
    found = base::jsonMember(*found, name);
    if (!found) return nullptr;
  }
  return found;
}

bool isOn(const Json& value, std::initializer_list<const char*> path) {
  return base::jsonBoolean(memberAt(value, path)).value_or(false);
}

object reason(const char* text) {
  return {{"reason", text}};
}

}  // namespace

RealtimeHub::Client RealtimeHub::add(Serializer serializer, Send send) {
  clients_.emplace(++lastClient_, Connection{serializer, std::move(send)});
  return lastClient_;
}

void RealtimeHub::remove(Client client) {
  clients_.erase(client);
  for (auto& [topic, members] : channels_) members.erase(client);
  std::erase_if(channels_, [](const auto& channel) { return channel.second.empty(); });
}

void RealtimeHub::receive(Client client, const WireMessage& message) {
  const auto connection = clients_.find(client);
  if (connection == clients_.end()) return;
  const auto frame = decodeFrame(connection->second.serializer, message);
  if (!frame) return;
  if (frame->topic == "phoenix" && frame->event == "heartbeat") {
    reply(client, *frame, "ok", object());
  } else if (frame->event == "phx_join") {
    join(client, *frame);
  } else if (frame->event == "phx_leave") {
    leave(client, *frame);
  } else if (!membership(client, frame->topic)) {
    reply(client, *frame, "error", reason("unmatched topic"));
  } else if (frame->event == "broadcast") {
    broadcast(client, *frame);
  }
}

void RealtimeHub::join(Client client, const PhoenixFrame& frame) {
  if (!frame.topic.starts_with(kTopicStart) || frame.topic.size() == kTopicStart.size() ||
      frame.topic.size() > kLongestTopic) {
    return reply(client, frame, "error", reason("unmatched topic"));
  }
  if (isOn(frame.payload, {"config", "private"})) {
    return reply(client, frame, "error",
                 reason("Unauthorized: You do not have permissions to read from this Channel"));
  }
  // Whoever joins again begins anew.
  if (membership(client, frame.topic)) end(client, frame.topic, "phx_close");
  Connection& connection = clients_.at(client);
  if (connection.channels == kMostChannels) {
    return reply(client, frame, "error", reason("ChannelRateLimitReached: Too many channels"));
  }
  ++connection.channels;
  channels_[frame.topic][client] = {frame.joinRef, isOn(frame.payload, {"config", "broadcast", "self"}),
                                    isOn(frame.payload, {"config", "broadcast", "ack"})};
  reply(client, frame, "ok", object{{"postgres_changes", array()}});
}

void RealtimeHub::leave(Client client, const PhoenixFrame& frame) {
  const Membership* member = membership(client, frame.topic);
  // A farewell to an earlier membership, which has been told of its end already.
  if (member && !frame.joinRef.is_null() && member->joinRef != frame.joinRef) return;
  reply(client, frame, "ok", object());
  if (member) end(client, frame.topic, "phx_close");
}

void RealtimeHub::broadcast(Client client, const PhoenixFrame& frame) {
  const Membership* sender = membership(client, frame.topic);
  if (!frame.payload.is_object()) return end(client, frame.topic, "phx_error");
  const bool answered = sender->wantsReplies;
  const PhoenixFrame delivered{{}, {}, frame.topic, "broadcast", frame.payload, frame.data};
  // Written once for all members of a kind.
  std::map<Serializer, std::optional<WireMessage>> written;
  for (const auto& [member, choice] : channels_.at(frame.topic)) {
    if (member == client && !choice.hearsItself) continue;
    const Connection& connection = clients_.at(member);
    auto [message, isNew] = written.try_emplace(connection.serializer);
    if (isNew) message->second = encodeFrame(connection.serializer, delivered);
    if (message->second) connection.send(*message->second);
  }
  if (answered) reply(client, frame, "ok", object());
}

const RealtimeHub::Membership* RealtimeHub::membership(Client client, const std::string& topic) const {
  const auto channel = channels_.find(topic);
  if (channel == channels_.end()) return nullptr;
  const auto member = channel->second.find(client);
  return member == channel->second.end() ? nullptr : &member->second;
}

void RealtimeHub::end(Client client, const std::string& topic, const char* event) {
  const auto channel = channels_.find(topic);
  const Json joinRef = channel->second.at(client).joinRef;
  send(client, {joinRef, joinRef, topic, event, object(), std::nullopt});
  channel->second.erase(client);
  if (channel->second.empty()) channels_.erase(channel);
  --clients_.at(client).channels;
}

void RealtimeHub::reply(Client client, const PhoenixFrame& frame, const char* status, Json response) {
  send(client, {frame.joinRef, frame.ref, frame.topic, "phx_reply",
                object{{"status", status}, {"response", std::move(response)}}, std::nullopt});
}

void RealtimeHub::send(Client client, const PhoenixFrame& frame) {
  const Connection& connection = clients_.at(client);
  if (const auto message = encodeFrame(connection.serializer, frame)) connection.send(*message);
}

}  // namespace orvalle::demo
