#pragma once

#include <glib.h>
#include <wayland-client.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace orvalle::platform::linuxos {

/// A connection of our own to the compositor, beside the toolkit's: it tells of the whole session, whichever
/// display the toolkit has chosen. What arrives is handled on the main loop.
class WaylandConnection {
 public:
  /// Null pointer where the session has no compositor, or none that answers.
  static std::unique_ptr<WaylandConnection> open();
  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;
  ~WaylandConnection();

  /// False for good once the compositor is gone or has refused something.
  bool works() const { return wl_display_get_error(display_) == 0; }
  bool offers(const wl_interface& interface) const { return globals_.contains(interface.name); }
  /// Binds version 1 of what the compositor offers; null pointer where it does not.
  template <typename Proxy>
  Proxy* bind(const wl_interface& interface) {
    return static_cast<Proxy*>(bindGlobal(interface));
  }

  /// Handles what has arrived so far, without waiting for more.
  void handleArrived();
  /// Waits until the compositor has answered everything so far.
  void waitForAnswers();
  /// Sends what waits to be sent.
  void send();

 private:
  explicit WaylandConnection(wl_display* display);
  void* bindGlobal(const wl_interface& interface);
  static gboolean arrived(gint, GIOCondition, gpointer self);

  wl_display* display_;
  wl_registry* registry_;
  std::map<std::string, std::uint32_t> globals_;
  /// 0 once the compositor is gone.
  guint source_ = 0;
};

/// Whether the user's session is a Wayland compositor's, whichever display the toolkit has chosen.
bool inWaylandSession();

}  // namespace orvalle::platform::linuxos
