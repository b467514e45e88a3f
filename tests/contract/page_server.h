#pragma once

#include <libsoup/soup.h>

#include <map>
#include <stdexcept>
#include <string>

#include "platform/linux/glib_ptr.h"

namespace orvalle::contract {

/// Serves a few pages on this machine. Runs on the main loop.
class PageServer {
 public:
  PageServer()
      : server_(platform::linuxos::GObjectPtr<SoupServer>::adopt(soup_server_new(nullptr, nullptr))) {
    soup_server_add_handler(server_.get(), nullptr, answer, this, nullptr);
    if (!soup_server_listen_local(server_.get(), 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr))
      throw std::runtime_error("no port to listen on");
  }
  PageServer(const PageServer&) = delete;
  PageServer& operator=(const PageServer&) = delete;

  /// The address of a page on this machine, by either of its two names.
  std::string url(const std::string& path, const std::string& host = "127.0.0.1") const {
    GSList* uris = soup_server_get_uris(server_.get());
    const int port = g_uri_get_port(static_cast<GUri*>(uris->data));
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    return "http://" + host + ":" + std::to_string(port) + path;
  }

  struct Page {
    std::string body;
    std::string type = "text/html; charset=utf-8";
  };
  /// By path. A path that is not here is never answered.
  std::map<std::string, Page> pages;

 private:
  static void answer(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer self) {
    const auto& pages = static_cast<PageServer*>(self)->pages;
    const auto page = pages.find(path);
    if (page == pages.end()) return soup_server_message_pause(message);
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_server_message_set_response(message, page->second.type.c_str(), SOUP_MEMORY_COPY,
                                     page->second.body.data(), page->second.body.size());
  }

  platform::linuxos::GObjectPtr<SoupServer> server_;
};

}  // namespace orvalle::contract
