#include "platform/linux/wayland_connection.h"

#include <glib-unix.h>
#include <poll.h>

#include <cstdlib>

namespace orvalle::platform::linuxos {

std::unique_ptr<WaylandConnection> WaylandConnection::open() {
  // The library would look for a compositor under a usual name, which may be another session's.
  if (!std::getenv("WAYLAND_DISPLAY")) return nullptr;
  wl_display* display = wl_display_connect(nullptr);
  return display ? std::unique_ptr<WaylandConnection>(new WaylandConnection(display)) : nullptr;
}

WaylandConnection::WaylandConnection(wl_display* display)
    : display_(display), registry_(wl_display_get_registry(display)) {
  static constexpr wl_registry_listener kListener = {
      [](void* data, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t) {
        static_cast<WaylandConnection*>(data)->globals_.emplace(interface, name);
      },
      [](void*, wl_registry*, std::uint32_t) {}};
  wl_registry_add_listener(registry_, &kListener, this);
  source_ = g_unix_fd_add(wl_display_get_fd(display_),
                          static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR), arrived, this);
  waitForAnswers();
}

WaylandConnection::~WaylandConnection() {
  if (source_ != 0) g_source_remove(source_);
  wl_registry_destroy(registry_);
  wl_display_disconnect(display_);
}

void* WaylandConnection::bindGlobal(const wl_interface& interface) {
  const auto global = globals_.find(interface.name);
  return global == globals_.end() ? nullptr : wl_registry_bind(registry_, global->second, &interface, 1);
}

void WaylandConnection::handleArrived() {
  while (wl_display_prepare_read(display_) != 0) {
    if (wl_display_dispatch_pending(display_) < 0) return;
  }
  send();
  pollfd descriptor{wl_display_get_fd(display_), POLLIN, 0};
  if (::poll(&descriptor, 1, 0) > 0) {
    wl_display_read_events(display_);
  } else {
    wl_display_cancel_read(display_);
  }
  wl_display_dispatch_pending(display_);
}

void WaylandConnection::waitForAnswers() {
  wl_display_roundtrip(display_);
}

void WaylandConnection::send() {
  wl_display_flush(display_);
}

gboolean WaylandConnection::arrived(gint, GIOCondition, gpointer data) {
  auto& self = *static_cast<WaylandConnection*>(data);
  self.handleArrived();
  if (self.works()) return G_SOURCE_CONTINUE;
  self.source_ = 0;
  return G_SOURCE_REMOVE;
}

bool inWaylandSession() {
  return WaylandConnection::open() != nullptr;
}

}  // namespace orvalle::platform::linuxos
