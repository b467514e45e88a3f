#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "base/json.h"
#include "base/liveness.h"
#include "link/channel.h"
#include "link/config.h"
#include "platform/main_loop.h"
#include "platform/web_socket.h"

namespace orvalle::link {

/// The live link over a Supabase Realtime websocket: joins the user's own channel by the Phoenix protocol
/// (serializer 1.0.0), turns state broadcasts into snapshots and sends commands as broadcasts. Keeps itself
/// alive with a heartbeat, and comes back after a loss.
class RealtimeChannel : public Channel {
 public:
  RealtimeChannel(const Config& config, platform::WebSockets& sockets, platform::MainLoop& loop);
  RealtimeChannel(const RealtimeChannel&) = delete;
  RealtimeChannel& operator=(const RealtimeChannel&) = delete;

  /// Without complete settings, or with an address that does not parse, tells `onConnection(false)` before it
  /// returns and leaves everything as it is. Otherwise replaces the connection by a new one.
  void connect() override;
  /// Ends the connection and its heartbeat; tells nobody, and reconnects nothing.
  void disconnect();
  /// Sends on the connection as soon as there is one, joined or not.
  void command(const std::string& word, const std::optional<std::string>& id) override;

 private:
  void join();
  void beat();
  void handle(const std::string& text);
  void handleReply();
  void handleBroadcast(const base::Json& frame);
  void lost();
  void scheduleReconnect();
  void tellConnection(bool connected);

  std::string topic() const;
  void send(const std::string& topic, const char* event, base::Json payload);

  const Config& config_;
  platform::WebSockets& sockets_;
  platform::MainLoop& loop_;

  /// Where frames are taken apart, one after the other.
  std::array<unsigned char, 256 * 1024> scratch_;
  std::unique_ptr<platform::WebSocket> task_;
  base::Subscription heartbeat_;
  /// Shared by all messages and never reset: the number of the last one.
  std::int64_t ref_ = 0;
  bool joined_ = false;
  /// The delay before the next reconnect.
  std::chrono::seconds retry_{1};
  /// Every loss has its own; none cancels another.
  std::map<std::int64_t, base::Subscription> reconnects_;
  std::int64_t nextReconnect_ = 0;
  base::Liveness liveness_;
};

}  // namespace orvalle::link
