#pragma once

#include <glib.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "demo/server/server.h"

namespace orvalle::demo {

/// The real server on a loop of its own, so that the test can talk to it over plain blocking sockets.
class RunningServer {
 public:
  RunningServer(const std::filesystem::path& page, PortRange ports, PairingKeys keys = makeKeys(),
                std::chrono::milliseconds idle = std::chrono::seconds(60),
                std::optional<PageFolder> updates = {}) {
    std::promise<unsigned> started;
    std::future<unsigned> port = started.get_future();
    thread_ = std::thread([this, page, ports, keys, idle, updates, &started] {
      GMainContext* context = g_main_context_new();
      g_main_context_push_thread_default(context);
      loop_ = g_main_loop_new(context, FALSE);
      std::unique_ptr<Server> server =
          Server::start(Site(PageFolder(page), keys, updates), ports, {keys.anonKey, idle});
      address_ = server ? server->address() : "";
      started.set_value(server ? server->port() : 0);
      if (server) g_main_loop_run(loop_);
      server.reset();
      while (g_main_context_iteration(context, FALSE)) continue;
      g_main_context_pop_thread_default(context);
      g_main_context_unref(context);
    });
    port_ = port.get();
  }
  ~RunningServer() {
    while (port_ && !g_main_loop_is_running(loop_)) std::this_thread::yield();
    g_main_loop_quit(loop_);
    thread_.join();
    g_main_loop_unref(loop_);
  }

  unsigned port() const { return port_; }
  /// Empty when it could not listen.
  const std::string& address() const { return address_; }

 private:
  std::thread thread_;
  GMainLoop* loop_ = nullptr;
  unsigned port_ = 0;
  std::string address_;
};

}  // namespace orvalle::demo
