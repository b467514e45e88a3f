#include "demo/server/phoenix_frame.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <array>
#include <utility>

#include "base/text.h"

namespace orvalle::demo {
namespace {

using base::Json;
using boost::json::array;
using boost::json::object;

// A broadcast in bytes: kind, the length of each name, the encoding, then the names and the rest. The names
// are joinRef, ref, topic, event and metadata in a client's push, topic, event and metadata in a delivery.
constexpr unsigned char kPush = 3;
constexpr unsigned char kDelivery = 4;
constexpr unsigned char kBytes = 0;
constexpr unsigned char kJson = 1;
enum Name : std::size_t { kJoinRef, kRef, kTopic, kEvent, kMetadata, kNames };
constexpr std::size_t kPushHeader = 1 + kNames + 1;

bool isRef(const Json& value) {
  return value.is_null() || value.is_string() || value.is_number();
}

std::optional<PhoenixFrame> frameOf(const Json& joinRef, const Json& ref, const Json* topic,
                                    const Json* event, const Json* payload) {
  auto topicText = base::jsonText(topic);
  auto eventText = base::jsonText(event);
  if (!topicText || !eventText || !payload || !isRef(joinRef) || !isRef(ref)) return std::nullopt;
  return PhoenixFrame{joinRef, ref, std::move(*topicText), std::move(*eventText), *payload, std::nullopt};
}

std::optional<PhoenixFrame> decodeObject(const Json& json) {
  const auto member = [&json](const char* name) {
    const Json* value = base::jsonMember(json, name);
    return value ? *value : Json();
  };
  return frameOf(member("join_ref"), member("ref"), base::jsonMember(json, "topic"),
                 base::jsonMember(json, "event"), base::jsonMember(json, "payload"));
}

std::optional<PhoenixFrame> decodeArray(const Json& json) {
  const array* parts = json.if_array();
  if (!parts || parts->size() != 5) return std::nullopt;
  return frameOf((*parts)[0], (*parts)[1], &(*parts)[2], &(*parts)[3], &(*parts)[4]);
}

Json refOf(std::string_view name) {
  return name.empty() ? Json() : Json(name);
}

std::optional<PhoenixFrame> decodeBytes(std::string_view bytes) {
  const auto byteAt = [bytes](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  if (bytes.size() < kPushHeader || byteAt(0) != kPush) return std::nullopt;
  std::array<std::string_view, kNames> names;
  std::size_t at = kPushHeader;
  for (std::size_t name = 0; name < kNames; ++name) {
    const std::size_t length = byteAt(1 + name);
    if (length > bytes.size() - at) return std::nullopt;
    names[name] = bytes.substr(at, length);
    if (!base::isValidUtf8(names[name])) return std::nullopt;
    at += length;
  }
  const std::string_view rest = bytes.substr(at);
  object payload{{"type", "broadcast"}, {"event", names[kEvent]}};
  PhoenixFrame frame{
      refOf(names[kJoinRef]), refOf(names[kRef]), std::string(names[kTopic]), "broadcast", {}, std::nullopt};
  if (byteAt(kPushHeader - 1) == kJson) {
    auto inner = base::parseJson(rest);
    if (!inner) return std::nullopt;
    payload["payload"] = std::move(*inner);
  } else if (byteAt(kPushHeader - 1) == kBytes) {
    frame.data = rest;
  } else {
    return std::nullopt;
  }
  frame.payload = std::move(payload);
  return frame;
}

WireMessage encodeBytes(const PhoenixFrame& frame) {
  const std::string event = base::jsonText(base::jsonMember(frame.payload, "event")).value_or("");
  std::string bytes;
  for (const std::size_t part :
       {std::size_t{kDelivery}, frame.topic.size(), event.size(), std::size_t{0}, std::size_t{kBytes}}) {
    bytes.push_back(static_cast<char>(part));
  }
  return {true, bytes + frame.topic + event + *frame.data};
}

}  // namespace

std::optional<Serializer> serializerFor(std::string_view version) {
  if (version.empty() || version == "1.0.0") return Serializer::Objects;
  if (version == "2.0.0") return Serializer::Arrays;
  return std::nullopt;
}

std::optional<PhoenixFrame> decodeFrame(Serializer serializer, const WireMessage& message) {
  if (message.binary) {
    return serializer == Serializer::Arrays ? decodeBytes(message.bytes) : std::nullopt;
  }
  const auto json = base::parseJson(message.bytes);
  if (!json) return std::nullopt;
  return serializer == Serializer::Arrays ? decodeArray(*json) : decodeObject(*json);
}

std::optional<WireMessage> encodeFrame(Serializer serializer, const PhoenixFrame& frame) {
  if (frame.data) {
    if (serializer == Serializer::Objects) return std::nullopt;
    return encodeBytes(frame);
  }
  auto text = serializer == Serializer::Arrays
                  ? base::writeJson(array{frame.joinRef, frame.ref, frame.topic, frame.event, frame.payload})
                  : base::writeJson(object{{"topic", frame.topic},
                                           {"event", frame.event},
                                           {"payload", frame.payload},
                                           {"ref", frame.ref}});
  if (!text) return std::nullopt;
  return WireMessage{false, std::move(*text)};
}

}  // namespace orvalle::demo
