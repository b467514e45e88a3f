#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

#include "platform/linux/own_window.h"

namespace orvalle::platform::linuxos {

/// The window in which the user sees what they have consented to, and changes it. Made hidden; closing it
/// hides it.
class PermissionsWindow {
 public:
  /// `folder` is where the diary lies, for the user to read. `changed` is called when the user consents or
  /// withdraws.
  PermissionsWindow(GtkApplication* application, const std::string& folder,
                    std::function<void(bool consent)> changed);

  /// Shows what holds.
  void show(bool consent);
  /// Brings the window to the front.
  void present();

 private:
  GtkWidget* makeRow(const std::string& folder);
  static gboolean switched(GtkSwitch*, gboolean on, gpointer self);
  static gboolean keyPressed(GtkWidget* window, GdkEventKey* event, gpointer);

  std::function<void(bool)> changed_;
  OwnWindow window_;
  GtkSwitch* switch_ = nullptr;
  GtkLabel* state_ = nullptr;
};

}  // namespace orvalle::platform::linuxos
