#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace orvalle::platform {

inline constexpr std::size_t kLongestMessage = 8 * 1024 * 1024;
/// How long a handshake may take.
inline constexpr std::chrono::seconds kHandshakeTime{10};
/// How long a connection that is being closed may take to say so.
inline constexpr std::chrono::seconds kFarewellTime{1};
/// The code of a connection whose owner is gone.
inline constexpr int kGoingAway = 1001;

/// What a connection tells its owner, on the main loop and never from inside a call of the owner's.
struct WebSocketEvents {
  /// The handshake is done.
  std::function<void()> onOpen;
  /// A text message arrived, whole and valid UTF-8. Binary messages are dropped before they get here.
  std::function<void(const std::string& text)> onText;
  /// The connection could not be made or is gone, for whatever reason. Told exactly once, as the last event;
  /// never for a connection that was cancelled.
  std::function<void()> onLost;
};

/// One websocket connection, from the moment it was asked for. Destroying it cancels it with `kGoingAway`.
class WebSocket {
 public:
  virtual ~WebSocket() = default;
  /// Sends a text message. Fails silently: before the handshake is done, after the connection is lost, or on
  /// the way.
  virtual void sendText(const std::string& text) = 0;
  /// Closes the connection with this code and no reason, or gives up making it. No event follows.
  virtual void cancel(int code) = 0;
};

class WebSockets {
 public:
  virtual ~WebSockets() = default;
  /// Starts a connection to a "ws" or "wss" address. Certificates are checked; a message longer than
  /// `kLongestMessage` loses the connection, and a handshake that takes more than about `kHandshakeTime` is a
  /// loss. An address that is not usable is a loss like any other.
  virtual std::unique_ptr<WebSocket> connect(const std::string& url, WebSocketEvents events) = 0;
};

}  // namespace orvalle::platform
