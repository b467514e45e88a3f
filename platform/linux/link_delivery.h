#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// Takes the addresses that other processes ask this one to open (`Open` of org.freedesktop.Application) as
/// they were written. The toolkit would make files of them, and what reads files may write an address anew:
/// another case, other escapes.
class LinkDelivery {
 public:
  /// Must be made before the application registers itself on the session bus. Does nothing without a bus.
  LinkDelivery();
  LinkDelivery(const LinkDelivery&) = delete;
  LinkDelivery& operator=(const LinkDelivery&) = delete;
  ~LinkDelivery();

  /// Called on the main loop with the addresses and what the desktop says of the user's click.
  std::function<void(const std::vector<std::string>& urls, GVariant* platformData)> onOpen;

 private:
  static GDBusMessage* redirect(GDBusConnection*, GDBusMessage* message, gboolean incoming, gpointer);
  static void called(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self);

  GObjectPtr<GDBusConnection> bus_;
  guint object_ = 0;
  guint filter_ = 0;
};

}  // namespace orvalle::platform::linuxos
