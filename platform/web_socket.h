#pragma once

#include <functional>
#include <memory>
#include <string>

namespace orvalle::platform {

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

/// One websocket connection, from the moment it was asked for. Destroying it cancels it with code 1001.
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
  /// Starts a connection to a "ws" or "wss" address. Certificates are checked, messages are limited to 8 MiB
  /// (a greater one loses the connection), and a handshake that takes more than about 10 seconds is a loss.
  /// An address that is not usable is a loss like any other.
  virtual std::unique_ptr<WebSocket> connect(const std::string& url, WebSocketEvents events) = 0;
};

}  // namespace orvalle::platform
