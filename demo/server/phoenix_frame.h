#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/json.h"

namespace orvalle::demo {

/// One websocket message.
struct WireMessage {
  bool binary = false;
  std::string bytes;
  bool operator==(const WireMessage&) const = default;
};

/// How frames are written: "1.0.0" as objects, "2.0.0" as arrays, and there broadcasts in bytes as well.
enum class Serializer { Objects, Arrays };

/// The serializer that a client asks for; the empty text stands for a client that does not say. Absent for a
/// version that there is none for.
std::optional<Serializer> serializerFor(std::string_view version);

/// A frame of the Phoenix channel protocol.
struct PhoenixFrame {
  /// Numbers given by the client, as it wrote them: a text, a number or null.
  base::Json joinRef;
  base::Json ref;
  std::string topic;
  std::string event;
  base::Json payload;
  /// What a broadcast carries instead of the member "payload" of its payload when it is no JSON. Only
  /// `Arrays` has such broadcasts.
  std::optional<std::string> data;
};

/// Reads a client's message; absent when it is no frame in this serializer.
std::optional<PhoenixFrame> decodeFrame(Serializer serializer, const WireMessage& message);

/// Writes a frame for a client. Absent when the serializer cannot carry it, or when it holds a number that
/// JSON cannot write. The topic and the event of a broadcast with `data` have at most 255 bytes.
std::optional<WireMessage> encodeFrame(Serializer serializer, const PhoenixFrame& frame);

}  // namespace orvalle::demo
