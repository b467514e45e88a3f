#include "demo/server/server.h"

#include <utility>

namespace orvalle::demo {
namespace {

std::string header(SoupMessageHeaders* headers, const char* name) {
  // The list form joins repeated headers, which some clients send for cookies.
  const char* value = soup_message_headers_get_list(headers, name);
  return value ? value : "";
}

/// Without a copy in memory.
bool appendFile(SoupMessageBody* body, const std::filesystem::path& file) {
  GMappedFile* mapped = g_mapped_file_new(file.c_str(), FALSE, nullptr);
  if (!mapped) return false;
  GBytes* bytes = g_mapped_file_get_bytes(mapped);
  soup_message_body_append_bytes(body, bytes);
  g_bytes_unref(bytes);
  g_mapped_file_unref(mapped);
  return true;
}

void answer(SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer site) {
  GUri* uri = soup_server_message_get_uri(message);
  SoupMessageHeaders* asked = soup_server_message_get_request_headers(message);
  const char* query = g_uri_get_query(uri);
  const Request request{soup_server_message_get_method(message),
                        g_uri_get_path(uri),
                        query ? query : "",
                        header(asked, "Host"),
                        header(asked, "Cookie"),
                        header(asked, "If-None-Match"),
                        header(asked, "Sec-Fetch-Site")};

  Response response = static_cast<const Site*>(site)->answer(request);
  SoupMessageBody* body = soup_server_message_get_response_body(message);
  if (!response.file.empty() && !appendFile(body, response.file)) response = {500, {}, "", {}};

  soup_server_message_set_status(message, response.status, nullptr);
  SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
  for (const auto& [name, value] : response.headers) {
    soup_message_headers_append(headers, name.c_str(), value.c_str());
  }
  // For HEAD the library sends the length and leaves the body out.
  soup_message_body_append(body, SOUP_MEMORY_COPY, response.body.data(), response.body.size());
}

enum class Listening { Yes, InUse, Unavailable };

Listening listenOn(SoupServer* server, unsigned port, SoupServerListenOptions family) {
  g_autoptr(GError) error = nullptr;
  if (soup_server_listen_local(server, port, family, &error)) return Listening::Yes;
  return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_ADDRESS_IN_USE) ? Listening::InUse
                                                                       : Listening::Unavailable;
}

unsigned portInUse(SoupServer* server) {
  GSList* uris = soup_server_get_uris(server);
  const int port = uris ? g_uri_get_port(static_cast<GUri*>(uris->data)) : 0;
  g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
  return port > 0 ? static_cast<unsigned>(port) : 0;
}

}  // namespace

void Server::Stop::operator()(SoupServer* server) const {
  soup_server_disconnect(server);
  g_object_unref(server);
}

Server::Server(Site site, RealtimeOptions realtime)
    : site_(std::move(site)),
      // Raw paths, because the site decodes them itself and must see what was really sent.
      server_(SOUP_SERVER(
          g_object_new(SOUP_TYPE_SERVER, "raw-paths", TRUE, "server-header", "orvalle-demo", nullptr))),
      realtime_(server_.get(), std::move(realtime)) {
  soup_server_add_handler(server_.get(), nullptr, &answer, &site_, nullptr);
}

Server::~Server() = default;

std::unique_ptr<Server> Server::start(Site site, PortRange ports, RealtimeOptions realtime) {
  std::unique_ptr<Server> server(new Server(std::move(site), std::move(realtime)));
  if (ports.first == 0) return server->listen(0) ? std::move(server) : nullptr;
  for (unsigned port = ports.first; port <= ports.last; ++port) {
    if (server->listen(port)) return server;
  }
  return nullptr;
}

// Both families or neither: a browser that resolves "localhost" to the other one would otherwise reach
// whatever program has the port there. A family that the machine does not have is no obstacle.
bool Server::listen(unsigned port) {
  const Listening ipv4 = listenOn(server_.get(), port, SOUP_SERVER_LISTEN_IPV4_ONLY);
  const unsigned chosen = port ? port : portInUse(server_.get());
  const Listening ipv6 = listenOn(server_.get(), chosen, SOUP_SERVER_LISTEN_IPV6_ONLY);
  const bool listening = ipv4 == Listening::Yes || ipv6 == Listening::Yes;
  if (!listening || ipv4 == Listening::InUse || ipv6 == Listening::InUse) {
    soup_server_disconnect(server_.get());
    return false;
  }
  port_ = portInUse(server_.get());
  return true;
}

std::string Server::address() const {
  return "http://localhost:" + std::to_string(port_) + "/";
}

}  // namespace orvalle::demo
