#include "tests/contract/frame_server.h"

#include <sys/socket.h>

#include <cstdint>
#include <stdexcept>
#include <utility>

namespace orvalle::contract {
namespace {

using platform::linuxos::GlibPtr;
using platform::linuxos::GObjectPtr;

using Self = std::shared_ptr<Client>;

/// What the handshake asks for: the key with the protocol's own text, hashed.
std::string acceptance(const std::string& request) {
  static const std::string kName = "\r\nSec-WebSocket-Key: ";
  const auto begin = request.find(kName) + kName.size();
  const auto key = request.substr(begin, request.find("\r\n", begin) - begin);
  const auto text = key + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";
  GChecksum* checksum = g_checksum_new(G_CHECKSUM_SHA1);
  g_checksum_update(checksum, reinterpret_cast<const guchar*>(text.data()), static_cast<gssize>(text.size()));
  guint8 digest[20];
  gsize size = sizeof digest;
  g_checksum_get_digest(checksum, digest, &size);
  g_checksum_free(checksum);
  const GlibPtr<char> encoded(g_base64_encode(digest, size));
  return encoded.get();
}

std::string number(std::uint64_t value, int bytes) {
  std::string text;
  while (bytes-- > 0) text += static_cast<char>(value >> (8 * bytes) & 0xFF);
  return text;
}

std::uint64_t numberAt(const std::string& bytes, std::size_t at, int length) {
  std::uint64_t value = 0;
  for (int i = 0; i < length; ++i) value = value << 8 | static_cast<guint8>(bytes[at++]);
  return value;
}

int portOfPeer(GSocketConnection* connection) {
  const auto address =
      GObjectPtr<GSocketAddress>::adopt(g_socket_connection_get_remote_address(connection, nullptr));
  return g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(address.get()));
}

}  // namespace

Client::Client(GSocketConnection* connection)
    : connection_(GObjectPtr<GSocketConnection>::share(connection)), remotePort_(portOfPeer(connection)) {}

int Client::descriptor() const {
  return g_socket_get_fd(g_socket_connection_get_socket(connection_.get()));
}

int Client::closeCode() const {
  for (const auto& frame : frames_) {
    if (frame.opcode == kClose && frame.payload.size() >= 2)
      return static_cast<int>(numberAt(frame.payload, 0, 2));
  }
  return 0;
}

void Client::accept(const std::string& more) {
  send(
      "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: "
      "Upgrade\r\nSec-WebSocket-Accept: " +
      acceptance(request_) + "\r\n\r\n" + more);
}

std::string Client::frame(Opcode opcode, const std::string& payload, bool last) {
  std::string bytes(1, static_cast<char>((last ? 0x80 : 0) | opcode));
  if (payload.size() < 126) {
    bytes += static_cast<char>(payload.size());
  } else if (payload.size() < 65536) {
    bytes += '\x7E' + number(payload.size(), 2);
  } else {
    bytes += '\x7F' + number(payload.size(), 8);
  }
  return bytes + payload;
}

void Client::sendClose(int code) {
  sendFrame(kClose, number(static_cast<std::uint64_t>(code), 2));
}

void Client::send(const std::string& bytes) {
  outgoing_ += bytes;
  write();
}

void Client::write() {
  if (writing_) return;
  if (outgoing_.empty()) {
    if (closing_) g_socket_shutdown(g_socket_connection_get_socket(connection_.get()), FALSE, TRUE, nullptr);
    return;
  }
  writing_ = true;
  written_ = std::exchange(outgoing_, {});
  g_output_stream_write_all_async(
      g_io_stream_get_output_stream(G_IO_STREAM(connection_.get())), written_.data(), written_.size(),
      G_PRIORITY_DEFAULT, nullptr,
      [](GObject* stream, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Self> self(static_cast<Self*>(data));
        (*self)->writing_ = false;
        // A client may well be gone by now.
        if (g_output_stream_write_all_finish(G_OUTPUT_STREAM(stream), result, nullptr, nullptr))
          (*self)->write();
      },
      new Self(shared_from_this()));
}

void Client::close() {
  closing_ = true;
  write();
}

void Client::reset() {
  GSocket* socket = g_socket_connection_get_socket(connection_.get());
  const linger now = {1, 0};
  ::setsockopt(g_socket_get_fd(socket), SOL_SOCKET, SO_LINGER, &now, sizeof now);
  g_socket_close(socket, nullptr);
}

void Client::read() {
  g_input_stream_read_async(
      g_io_stream_get_input_stream(G_IO_STREAM(connection_.get())), buffer_.data(), buffer_.size(),
      G_PRIORITY_DEFAULT, nullptr,
      [](GObject* stream, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Self> self(static_cast<Self*>(data));
        const gssize size = g_input_stream_read_finish(G_INPUT_STREAM(stream), result, nullptr);
        if (size > 0) {
          (*self)->arrived((*self)->buffer_.substr(0, static_cast<std::size_t>(size)));
          (*self)->read();
        } else {
          (*self)->gone_ = true;
        }
      },
      new Self(shared_from_this()));
}

void Client::arrived(const std::string& bytes) {
  if (asked()) {
    incoming_ += bytes;
  } else {
    request_ += bytes;
    const auto end = request_.find("\r\n\r\n");
    if (end == std::string::npos) return;
    incoming_ = request_.substr(end + 4);
    request_.resize(end + 4);
  }
  takeFrames();
}

void Client::takeFrames() {
  for (;;) {
    std::size_t head = 2;
    if (incoming_.size() < head) return;
    std::uint64_t size = static_cast<guint8>(incoming_[1]) & 0x7F;
    const int sizeBytes = size == 126 ? 2 : size == 127 ? 8 : 0;
    if (incoming_.size() < head + static_cast<std::size_t>(sizeBytes)) return;
    if (sizeBytes) size = numberAt(incoming_, head, sizeBytes);
    head += static_cast<std::size_t>(sizeBytes);
    if ((incoming_[1] & 0x80) == 0) throw std::runtime_error("a client's frames are masked");
    if (incoming_.size() < head + 4 + size) return;
    Frame frame{incoming_[0] & 0x0F, incoming_.substr(head + 4, size)};
    for (std::size_t i = 0; i < frame.payload.size(); ++i) frame.payload[i] ^= incoming_[head + i % 4];
    frames_.push_back(std::move(frame));
    incoming_.erase(0, head + 4 + size);
  }
}

FrameServer::FrameServer(const std::string& address)
    : address_(address), service_(GObjectPtr<GSocketService>::adopt(g_socket_service_new())) {
  const auto wanted =
      GObjectPtr<GSocketAddress>::adopt(g_inet_socket_address_new_from_string(address.c_str(), 0));
  GSocketAddress* given = nullptr;
  if (!g_socket_listener_add_address(G_SOCKET_LISTENER(service_.get()), wanted.get(), G_SOCKET_TYPE_STREAM,
                                     G_SOCKET_PROTOCOL_TCP, nullptr, &given, nullptr))
    throw std::runtime_error("no port to listen on");
  port_ = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(given));
  g_object_unref(given);
  g_signal_connect(service_.get(), "incoming", G_CALLBACK(incoming), this);
}

FrameServer::~FrameServer() {
  g_socket_service_stop(service_.get());
  g_socket_listener_close(G_SOCKET_LISTENER(service_.get()));
  g_signal_handlers_disconnect_by_data(service_.get(), this);
  forgetClients();
}

void FrameServer::forgetClients() {
  // What is being read keeps its client until it ends.
  for (const auto& client : clients_) client->reset();
  clients_.clear();
}

std::string FrameServer::url() const {
  return "ws://" + address_ + ":" + std::to_string(port_) + "/socket?apikey=abc&vsn=1.0.0";
}

gboolean FrameServer::incoming(GSocketService*, GSocketConnection* connection, GObject*, gpointer self) {
  auto& server = *static_cast<FrameServer*>(self);
  server.clients_.push_back(std::make_shared<Client>(connection));
  server.clients_.back()->read();
  return TRUE;
}

}  // namespace orvalle::contract
