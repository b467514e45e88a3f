#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/glib_ptr.h"

namespace orvalle::contract {

/// A notification server on a connection of its own, seen from the user's side.
class NotificationServer {
 public:
  /// What it was told to show.
  struct Call {
    std::string application;
    std::uint32_t replaces = 0;
    std::string icon;
    std::string title;
    std::string body;
    std::vector<std::string> actions;
    std::map<std::string, std::string> hints;
    std::int32_t timeout = 0;
  };

  NotificationServer();
  NotificationServer(const NotificationServer&) = delete;
  NotificationServer& operator=(const NotificationServer&) = delete;
  ~NotificationServer();

  /// Comes and goes.
  void start();
  void stop();
  /// Tells everybody that something became of a notification.
  void signal(const char* name, GVariant* parameters);

  std::vector<std::string> capabilities = {"body", "actions", "body-markup"};
  /// What it answers instead of showing anything.
  std::optional<std::string> refusal;
  std::vector<Call> calls;
  /// The number that the next notification gets.
  std::uint32_t next = 40;

 private:
  static void serve(GDBusConnection*, const char*, const char*, const char*, const char* method,
                    GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self);
  void show(GVariant* parameters, GDBusMethodInvocation* invocation);
  void callBus(const char* method, GVariant* parameters);

  platform::linuxos::GObjectPtr<GDBusConnection> bus_;
  guint object_ = 0;
  bool running_ = false;
};

}  // namespace orvalle::contract
