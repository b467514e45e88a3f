#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// Where a status item has its menu on the bus.
inline constexpr char kStatusMenuPath[] = "/MenuBar";

/// What a status item tells its hosts.
struct NotifierFace {
  std::string title;
  std::string toolTip;
  /// "a(iiay)"; shared by everyone who was ever given it, and told apart by identity.
  std::shared_ptr<GVariant> pixmaps;
};

/// A status item on the session bus, in the protocol of org.kde.StatusNotifierItem: exported under a name of
/// its own and announced to each watcher that appears. Never waits for anybody. One at a time in a process:
/// hosts look for it at a fixed path.
class NotifierItem {
 public:
  /// `number` makes the name different from those of earlier items of the process. `clicked` is called when a
  /// host leaves a click to the item.
  NotifierItem(GDBusConnection* bus, int number, NotifierFace face, std::function<void()> clicked);
  NotifierItem(const NotifierItem&) = delete;
  NotifierItem& operator=(const NotifierItem&) = delete;
  ~NotifierItem();

  /// Whether a watcher of status items is there and does not deny that a host shows them.
  bool shown() const { return shown_; }
  /// Shows the face; signals only what differs from the last one.
  void show(NotifierFace face);

 private:
  static void answer(GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant*,
                     GDBusMethodInvocation* invocation, gpointer self);
  static GVariant* property(GDBusConnection*, const char*, const char*, const char*, const char* name,
                            GError**, gpointer self);
  GlibPtr<GVariant> value(std::string_view name) const;
  void requestName();
  void watch(std::string announcedName);
  void askForHosts();
  void announce();
  void emit(const char* signal, GVariant* parameters);

  GObjectPtr<GDBusConnection> bus_;
  /// Of the questions under way; another one once a watcher has gone.
  GObjectPtr<GCancellable> cancellable_;
  std::string name_;
  std::string announcedName_;
  NotifierFace face_;
  std::function<void()> clicked_;
  bool shown_ = false;
  std::array<guint, 2> hostSignals_{};
  guint object_ = 0;
  guint watch_ = 0;
};

}  // namespace orvalle::platform::linuxos
