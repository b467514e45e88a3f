#pragma once

#include <libsoup/soup.h>

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/linux/glib_ptr.h"

namespace orvalle::contract {

/// A web server on this machine, with a handler for each path. Runs on the main loop.
class WebSite {
 public:
  using Handler = std::function<void(SoupServerMessage*)>;

  explicit WebSite(GTlsCertificate* certificate = nullptr)
      : scheme_(certificate ? "https" : "http"),
        server_(platform::linuxos::GObjectPtr<SoupServer>::adopt(
            soup_server_new("tls-certificate", certificate, nullptr))) {
    soup_server_add_handler(server_.get(), nullptr, answer, this, nullptr);
    const int options = SOUP_SERVER_LISTEN_IPV4_ONLY | (certificate ? SOUP_SERVER_LISTEN_HTTPS : 0);
    if (!soup_server_listen_local(server_.get(), 0, static_cast<SoupServerListenOptions>(options), nullptr))
      throw std::runtime_error("no port to listen on");
  }
  WebSite(const WebSite&) = delete;
  WebSite& operator=(const WebSite&) = delete;

  std::string url(const std::string& path, const std::string& host = "localhost") const {
    GSList* uris = soup_server_get_uris(server_.get());
    const int port = g_uri_get_port(static_cast<GUri*>(uris->data));
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    return scheme_ + "://" + host + ":" + std::to_string(port) + path;
  }

  /// Answers with this.
  void put(const std::string& path, const std::string& body, unsigned status = SOUP_STATUS_OK) {
    handlers[path] = [body, status](SoupServerMessage* message) {
      soup_server_message_set_status(message, status, nullptr);
      soup_server_message_set_response(message, "application/octet-stream", SOUP_MEMORY_COPY, body.data(),
                                       body.size());
    };
  }
  void redirect(const std::string& path, const std::string& place, unsigned status = SOUP_STATUS_FOUND) {
    handlers[path] = [place, status](SoupServerMessage* message) {
      soup_server_message_set_redirect(message, status, place.c_str());
    };
  }

  /// By path. A path that is not here is never answered.
  std::map<std::string, Handler> handlers;
  /// What was asked for, in order.
  std::vector<std::string> asked;

 private:
  static void answer(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer data) {
    auto& self = *static_cast<WebSite*>(data);
    self.asked.emplace_back(path);
    const auto handler = self.handlers.find(path);
    if (handler == self.handlers.end()) return soup_server_message_pause(message);
    handler->second(message);
  }

  std::string scheme_;
  platform::linuxos::GObjectPtr<SoupServer> server_;
};

}  // namespace orvalle::contract
