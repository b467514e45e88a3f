#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/glib_ptr.h"

namespace orvalle::contract {

/// A frame that a client sent, unmasked.
struct Frame {
  int opcode = 0;
  std::string payload;
};

enum Opcode { kContinuation = 0, kText = 1, kBinary = 2, kClose = 8, kPing = 9 };

/// One client as its server sees it. Does nothing by itself: tests play the server, well or badly behaved.
class Client : public std::enable_shared_from_this<Client> {
 public:
  explicit Client(GSocketConnection* connection);
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  /// Listens to the client as long as it is there.
  void read();

  /// The handshake's header as far as it has arrived.
  const std::string& request() const { return request_; }
  bool asked() const { return request_.find("\r\n\r\n") != std::string::npos; }
  const std::vector<Frame>& frames() const { return frames_; }
  /// The code of the close frame that arrived; 0 for none.
  int closeCode() const;
  int remotePort() const { return remotePort_; }
  int descriptor() const;
  /// The client has closed its side, or is gone.
  bool gone() const { return gone_; }

  /// Answers the handshake, with `more` in the same packet.
  void accept(const std::string& more = {});
  void send(const std::string& bytes);
  void sendFrame(Opcode opcode, const std::string& payload, bool last = true) {
    send(frame(opcode, payload, last));
  }
  void sendClose(int code);
  /// Ends the connection in order, once everything is sent, or at once with a reset.
  void close();
  void reset();

  static std::string frame(Opcode opcode, const std::string& payload, bool last = true);

 private:
  void arrived(const std::string& bytes);
  void takeFrames();
  void write();

  platform::linuxos::GObjectPtr<GSocketConnection> connection_;
  std::string request_;
  std::string incoming_;
  std::string outgoing_;
  std::vector<Frame> frames_;
  int remotePort_;
  bool writing_ = false;
  bool closing_ = false;
  bool gone_ = false;
  std::string buffer_ = std::string(65536, '\0');
  std::string written_;
};

/// Listens on a port of its own on the main loop.
class FrameServer {
 public:
  explicit FrameServer(const std::string& address = "127.0.0.1");
  FrameServer(const FrameServer&) = delete;
  FrameServer& operator=(const FrameServer&) = delete;
  ~FrameServer();

  std::string url() const;
  guint16 port() const { return port_; }
  /// Every client there ever was, in order.
  const std::vector<std::shared_ptr<Client>>& clients() const { return clients_; }
  Client& client() const { return *clients_.back(); }
  void forgetClients();

 private:
  static gboolean incoming(GSocketService*, GSocketConnection* connection, GObject*, gpointer self);

  std::string address_;
  guint16 port_ = 0;
  platform::linuxos::GObjectPtr<GSocketService> service_;
  std::vector<std::shared_ptr<Client>> clients_;
};

}  // namespace orvalle::contract
