#include "demo/server/realtime_endpoint.h"

#include <optional>
#include <utility>

namespace orvalle::demo {
namespace {

constexpr const char* kPath = "/realtime/v1/websocket";

/// An item of the request's query, decoded; the empty text when there is none.
std::string queryItem(SoupServerMessage* message, const char* name) {
  const char* query = g_uri_get_query(soup_server_message_get_uri(message));
  g_autoptr(GHashTable) items =
      query ? g_uri_parse_params(query, -1, "&", G_URI_PARAMS_NONE, nullptr) : nullptr;
  const auto* value = items ? static_cast<const char*>(g_hash_table_lookup(items, name)) : nullptr;
  return value ? value : "";
}

gboolean callBack(GSource*, GSourceFunc callback, gpointer data) {
  return callback(data);
}

/// Calls back at its ready time; unlike the library's own timers it does not set that time itself.
GSource* newAlarm() {
  static GSourceFuncs functions{nullptr, nullptr, &callBack, nullptr, nullptr, nullptr};
  return g_source_new(&functions, sizeof(GSource));
}

}  // namespace

/// One client. Goes away when its socket has closed, however that came about.
class RealtimeEndpoint::Connection {
 public:
  Connection(RealtimeEndpoint& endpoint, SoupWebsocketConnection* socket, GSocket* transport,
             Serializer serializer)
      : endpoint_(endpoint),
        socket_(SOUP_WEBSOCKET_CONNECTION(g_object_ref(socket))),
        transport_(transport ? G_SOCKET(g_object_ref(transport)) : nullptr),
        idle_(newAlarm()),
        client_(endpoint.hub_.add(serializer, [this](const WireMessage& message) { send(message); })) {
    soup_websocket_connection_set_max_incoming_payload_size(socket_, kLongestMessage);
    g_signal_connect(socket_, "message", G_CALLBACK(&arrived), this);
    g_signal_connect(socket_, "pong", G_CALLBACK(&answered), this);
    g_signal_connect(socket_, "closed", G_CALLBACK(&closed), this);
    g_source_set_callback(idle_, &idleOver, this, nullptr);
    stayAwhile();
    g_source_attach(idle_, g_main_context_get_thread_default());
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() {
    endpoint_.hub_.remove(client_);
    g_source_destroy(idle_);
    g_source_unref(idle_);
    g_signal_handlers_disconnect_by_data(socket_, this);
    if (transport_) g_object_unref(transport_);
    g_object_unref(socket_);
  }

 private:
  bool isOpen() const { return soup_websocket_connection_get_state(socket_) == SOUP_WEBSOCKET_STATE_OPEN; }

  void send(const WireMessage& message) {
    if (!isOpen() || isStalled(message.bytes.size())) return;
    if (message.binary) {
      soup_websocket_connection_send_binary(socket_, message.bytes.data(), message.bytes.size());
    } else {
      soup_websocket_connection_send_text(socket_, message.bytes.c_str());
    }
  }

  /// Counts what is sent while the client takes nothing; once it is too much the connection ends, at the
  /// next turn of the loop.
  bool isStalled(std::size_t size) {
    const bool takes = !transport_ || g_socket_condition_check(transport_, G_IO_OUT) != 0;
    waiting_ = takes ? 0 : waiting_ + size;
    if (waiting_ <= kMostWaiting) return false;
    g_source_set_ready_time(idle_, 0);
    return true;
  }

  void stayAwhile() {
    const gint64 idle = std::chrono::microseconds(endpoint_.options_.idle).count();
    if (waiting_ <= kMostWaiting) g_source_set_ready_time(idle_, g_get_monotonic_time() + idle);
  }

  static void arrived(SoupWebsocketConnection*, int type, GBytes* bytes, gpointer self) {
    auto* connection = static_cast<Connection*>(self);
    connection->stayAwhile();
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
    connection->endpoint_.hub_.receive(
        connection->client_, {type == SOUP_WEBSOCKET_DATA_BINARY, data ? std::string(data, size) : ""});
  }

  static void answered(SoupWebsocketConnection*, GBytes*, gpointer self) {
    static_cast<Connection*>(self)->stayAwhile();
  }

  static void closed(SoupWebsocketConnection*, gpointer self) {
    auto* connection = static_cast<Connection*>(self);
    connection->endpoint_.forget(*connection);
  }

  static gboolean idleOver(gpointer self) {
    auto* connection = static_cast<Connection*>(self);
    g_source_set_ready_time(connection->idle_, -1);
    if (connection->waiting_ > kMostWaiting) {
      // A farewell would wait behind all the rest.
      connection->endpoint_.forget(*connection);
    } else if (connection->isOpen()) {
      soup_websocket_connection_close(connection->socket_, SOUP_WEBSOCKET_CLOSE_NORMAL, nullptr);
    }
    return G_SOURCE_CONTINUE;
  }

  RealtimeEndpoint& endpoint_;
  SoupWebsocketConnection* socket_;
  GSocket* transport_;
  GSource* idle_;
  std::size_t waiting_ = 0;
  RealtimeHub::Client client_;
};

RealtimeEndpoint::RealtimeEndpoint(SoupServer* server, RealtimeOptions options)
    : options_(std::move(options)) {
  // A compressed message would be measured before it is inflated, and here nothing has far to go.
  soup_server_remove_websocket_extension(server, SOUP_TYPE_WEBSOCKET_EXTENSION_DEFLATE);
  soup_server_add_early_handler(server, kPath, &asked, this, nullptr);
  soup_server_add_websocket_handler(server, kPath, nullptr, nullptr, &opened, this, nullptr);
}

RealtimeEndpoint::~RealtimeEndpoint() = default;

/// The status of a request that must not become a connection; 0 for one that may.
unsigned RealtimeEndpoint::refusal(SoupServerMessage* message) const {
  if (options_.anonKey.empty() || queryItem(message, "apikey") != options_.anonKey) {
    return SOUP_STATUS_FORBIDDEN;
  }
  if (!serializerFor(queryItem(message, "vsn"))) return SOUP_STATUS_FORBIDDEN;
  if (connections_.size() >= kMostConnections) return SOUP_STATUS_SERVICE_UNAVAILABLE;
  return 0;
}

void RealtimeEndpoint::asked(SoupServer*, SoupServerMessage* message, const char*, GHashTable*,
                             gpointer self) {
  // A status that is set here ends the request before the handshake.
  const unsigned status = static_cast<const RealtimeEndpoint*>(self)->refusal(message);
  if (status != 0) soup_server_message_set_status(message, status, nullptr);
}

void RealtimeEndpoint::opened(SoupServer*, SoupServerMessage* message, const char*,
                              SoupWebsocketConnection* socket, gpointer self) {
  auto* endpoint = static_cast<RealtimeEndpoint*>(self);
  const std::optional<Serializer> serializer = serializerFor(queryItem(message, "vsn"));
  endpoint->connections_.push_back(std::make_unique<Connection>(
      *endpoint, socket, soup_server_message_get_socket(message), serializer.value()));
}

void RealtimeEndpoint::forget(Connection& connection) {
  connections_.remove_if([&connection](const auto& kept) { return kept.get() == &connection; });
}

}  // namespace orvalle::demo
