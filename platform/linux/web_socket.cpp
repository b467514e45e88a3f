#include "platform/web_socket.h"

#include <libsoup/soup.h>
#include <netinet/in.h>
#include <netinet/tcp.h>

#include <deque>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "base/liveness.h"
#include "base/text.h"
#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

/// How long data may stay unanswered, in milliseconds, and when a silent connection is asked whether the
/// peer is still there, in seconds.
constexpr int kPeerTimeout = 60'000;
constexpr int kProbesStart = 30;
constexpr int kProbesInterval = 10;

/// How long texts are handed over at a stretch, in microseconds, and how many bytes of them may wait.
constexpr gint64 kStretch = 8'000;
constexpr std::size_t kMostWaiting = 64 * 1024 * 1024;

/// What the owner still has to hear: texts, in the end the loss. In a flood, drawing and input come first,
/// and the peer is held up once much is waiting. The owner may destroy everything from inside an event.
class Mail : public std::enable_shared_from_this<Mail> {
 public:
  explicit Mail(WebSocketEvents events) : events_(std::move(events)) {}
  Mail(const Mail&) = delete;
  Mail& operator=(const Mail&) = delete;
  ~Mail() { stop(); }

  void tellOpen() {
    const auto self = shared_from_this();
    if (events_.onOpen) events_.onOpen();
  }
  void add(std::string text) {
    const auto self = shared_from_this();
    waiting_ += text.size();
    texts_.push_back(std::move(text));
    while (waiting_ > kMostWaiting) tellText();
    if (!texts_.empty()) tellLater();
  }
  /// The last that is told.
  void addLoss() {
    lost_ = true;
    tellLater();
  }
  /// Forgets what has not been told.
  void stop() {
    if (source_) g_source_remove(std::exchange(source_, 0));
    texts_.clear();
    waiting_ = 0;
  }

 private:
  void tellLater() {
    if (!source_) source_ = g_idle_add(tell, this);
  }

  void tellText() {
    const auto text = std::move(texts_.front());
    texts_.pop_front();
    waiting_ -= text.size();
    if (events_.onText) events_.onText(text);
  }

  static gboolean tell(gpointer data) {
    const auto self = static_cast<Mail*>(data)->shared_from_this();
    const gint64 end = g_get_monotonic_time() + kStretch;
    while (!self->texts_.empty() && g_get_monotonic_time() < end) self->tellText();
    // Nothing waits on behalf of an owner that has cancelled meanwhile.
    if (!self->source_) return G_SOURCE_REMOVE;
    if (!self->texts_.empty()) return G_SOURCE_CONTINUE;
    self->source_ = 0;
    if (self->lost_ && self->events_.onLost) self->events_.onLost();
    return G_SOURCE_REMOVE;
  }

  WebSocketEvents events_;
  std::deque<std::string> texts_;
  std::size_t waiting_ = 0;
  bool lost_ = false;
  guint source_ = 0;
};

using Finish = std::function<void(GAsyncResult*)>;

void finished(GObject*, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Finish> finish(static_cast<Finish*>(data));
  (*finish)(result);
}

/// The request for a connection; empty for an address that is none of a websocket's. Nothing is said about
/// why: the address holds the user's key.
GObjectPtr<SoupMessage> makeRequest(const std::string& url) {
  const GlibPtr<GUri> uri(g_uri_parse(url.c_str(), static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS), nullptr));
  if (!uri) return {};
  const std::string_view scheme = g_uri_get_scheme(uri.get());
  const char* host = g_uri_get_host(uri.get());
  if ((scheme != "ws" && scheme != "wss") || !host || !*host) return {};
  return GObjectPtr<SoupMessage>::adopt(soup_message_new_from_uri(SOUP_METHOD_GET, uri.get()));
}

/// Otherwise the kernel goes on sending to a peer that has vanished for a quarter of an hour, and forever
/// waits for one that owes us nothing.
void noticeDeadPeer(SoupMessage*, GSocketClientEvent event, GIOStream* stream, gpointer) {
  if (event != G_SOCKET_CLIENT_CONNECTED || !G_IS_SOCKET_CONNECTION(stream)) return;
  GSocket* socket = g_socket_connection_get_socket(G_SOCKET_CONNECTION(stream));
  g_socket_set_keepalive(socket, TRUE);
  g_socket_set_option(socket, IPPROTO_TCP, TCP_KEEPIDLE, kProbesStart, nullptr);
  g_socket_set_option(socket, IPPROTO_TCP, TCP_KEEPINTVL, kProbesInterval, nullptr);
  g_socket_set_option(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, kPeerTimeout, nullptr);
}

/// Leaves a connection that is of no further interest the time to write its close frame. A peer that does
/// not answer it is not waited for.
void letGo(GObjectPtr<SoupWebsocketConnection> connection) {
  g_timeout_add_seconds_full(
      G_PRIORITY_DEFAULT, guint{kFarewellTime.count()}, [](gpointer) -> gboolean { return G_SOURCE_REMOVE; },
      new GObjectPtr(std::move(connection)),
      [](gpointer data) { delete static_cast<GObjectPtr<SoupWebsocketConnection>*>(data); });
}

/// The owner may destroy this from inside any event: after one is told, nothing of this is touched.
class SoupWebSocket final : public WebSocket {
 public:
  SoupWebSocket(const std::string& url, WebSocketEvents events)
      : mail_(std::make_shared<Mail>(std::move(events))) {
    const auto request = makeRequest(url);
    if (!request) {
      lose();
      return;
    }
    // The key in the address is for the server that the user chose, not for where that one points.
    soup_message_add_flags(request.get(), SOUP_MESSAGE_NO_REDIRECT);
    g_signal_connect(request.get(), "network-event", G_CALLBACK(noticeDeadPeer), nullptr);
    // One limit over everything: name look-up, all the host's addresses, proxy, TLS and handshake.
    deadline_ = g_timeout_add_seconds(guint{kHandshakeTime.count()}, tooLate, this);
    session_ = GObjectPtr<SoupSession>::adopt(soup_session_new());
    auto finish = liveness_.guard([this](GAsyncResult* result) { answered(result); });
    soup_session_websocket_connect_async(session_.get(), request.get(), nullptr, nullptr, G_PRIORITY_DEFAULT,
                                         cancellable_.get(), finished, new Finish(std::move(finish)));
  }
  SoupWebSocket(const SoupWebSocket&) = delete;
  SoupWebSocket& operator=(const SoupWebSocket&) = delete;
  ~SoupWebSocket() override { cancel(kGoingAway); }

  void sendText(const std::string& text) override {
    if (!isOpen() || !base::isValidUtf8(text)) return;
    const GlibPtr<GBytes> bytes(g_bytes_new(text.data(), text.size()));
    soup_websocket_connection_send_message(connection_.get(), SOUP_WEBSOCKET_DATA_TEXT, bytes.get());
  }

  void cancel(int code) override {
    mail_->stop();
    end(code);
  }

 private:
  void answered(GAsyncResult* result) {
    if (over_) return;
    connection_ = GObjectPtr<SoupWebsocketConnection>::adopt(
        soup_session_websocket_connect_finish(session_.get(), result, nullptr));
    if (!connection_) return lose();
    forgetHandshake();
    soup_websocket_connection_set_max_incoming_payload_size(connection_.get(), kLongestMessage);
    g_signal_connect(connection_.get(), "message", G_CALLBACK(received), this);
    for (const char* signal : {"error", "closing", "closed"}) {
      g_signal_connect_swapped(connection_.get(), signal, G_CALLBACK(ended), this);
    }
    mail_->tellOpen();
  }

  /// A connection whose peer has gone is closed for a while before it says so.
  bool isOpen() const {
    return connection_ && soup_websocket_connection_get_state(connection_.get()) == SOUP_WEBSOCKET_STATE_OPEN;
  }

  /// Some losses come to light inside the owner's own calls.
  void lose(std::optional<int> code = {}) {
    end(code);
    mail_->addLoss();
  }

  /// Sends `code` where there is still somebody to send it to.
  void end(std::optional<int> code) {
    if (std::exchange(over_, true)) return;
    if (!connection_) {
      g_cancellable_cancel(cancellable_.get());
      return forgetHandshake();
    }
    g_signal_handlers_disconnect_by_data(connection_.get(), this);
    if (code && isOpen()) {
      soup_websocket_connection_close(connection_.get(), static_cast<gushort>(*code), nullptr);
    }
    letGo(std::move(connection_));
  }

  void forgetHandshake() {
    if (deadline_) g_source_remove(std::exchange(deadline_, 0));
    cancellable_ = {};
    session_ = {};
  }

  static void received(SoupWebsocketConnection*, SoupWebsocketDataType type, GBytes* message,
                       SoupWebSocket* self) {
    if (type != SOUP_WEBSOCKET_DATA_TEXT) return;
    gsize size = 0;
    const auto* bytes = static_cast<const char*>(g_bytes_get_data(message, &size));
    // The limit that the connection itself keeps is one for each fragment.
    if (size > kLongestMessage) return self->lose(SOUP_WEBSOCKET_CLOSE_TOO_BIG);
    self->mail_->add({bytes, size});
  }

  static void ended(SoupWebSocket* self) { self->lose(); }

  static gboolean tooLate(gpointer data) {
    auto& self = *static_cast<SoupWebSocket*>(data);
    self.deadline_ = 0;
    self.lose();
    return G_SOURCE_REMOVE;
  }

  std::shared_ptr<Mail> mail_;
  /// For this one handshake, so that a refused one leaves no connection behind that waits for the next. It
  /// agrees to no compression: a message could unfold to any size.
  GObjectPtr<SoupSession> session_;
  GObjectPtr<GCancellable> cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  GObjectPtr<SoupWebsocketConnection> connection_;
  guint deadline_ = 0;
  /// Lost or cancelled: nothing happens any more, except that something may still have to be told.
  bool over_ = false;
  base::Liveness liveness_;
};

class SoupWebSockets final : public WebSockets {
 public:
  std::unique_ptr<WebSocket> connect(const std::string& url, WebSocketEvents events) override {
    return std::make_unique<SoupWebSocket>(url, std::move(events));
  }
};

}  // namespace

std::unique_ptr<WebSockets> makeWebSockets() {
  return std::make_unique<SoupWebSockets>();
}

}  // namespace orvalle::platform::linuxos
