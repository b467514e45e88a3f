#pragma once

#include <libsoup/soup.h>

#include <chrono>
#include <list>
#include <memory>
#include <string>

#include "demo/server/realtime_hub.h"

namespace orvalle::demo {

/// What the realtime endpoint lets in and for how long.
struct RealtimeOptions {
  /// The one key that opens it; with an empty one nobody gets in.
  std::string anonKey;
  /// A connection over which no message has come for so long is closed.
  std::chrono::milliseconds idle = std::chrono::seconds(60);
};

/// The websocket end of the realtime service, at "/realtime/v1/websocket" of an HTTP server: checks the key,
/// keeps the connections and hands their messages to the hub.
class RealtimeEndpoint {
 public:
  static constexpr std::size_t kMostConnections = 64;
  static constexpr std::size_t kLongestMessage = 8 * 1024 * 1024;
  /// How much may wait for a client that does not read.
  static constexpr std::size_t kMostWaiting = kLongestMessage;

  /// Adds itself to the server, which must serve nothing any more once this is gone. Runs on the thread's
  /// default main context.
  RealtimeEndpoint(SoupServer* server, RealtimeOptions options);
  RealtimeEndpoint(const RealtimeEndpoint&) = delete;
  RealtimeEndpoint& operator=(const RealtimeEndpoint&) = delete;
  ~RealtimeEndpoint();

 private:
  class Connection;

  static void asked(SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer self);
  static void opened(SoupServer*, SoupServerMessage* message, const char*, SoupWebsocketConnection* socket,
                     gpointer self);
  unsigned refusal(SoupServerMessage* message) const;
  void forget(Connection& connection);

  RealtimeOptions options_;
  RealtimeHub hub_;
  std::list<std::unique_ptr<Connection>> connections_;
};

}  // namespace orvalle::demo
