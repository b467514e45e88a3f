#pragma once

#include <gtk/gtk.h>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// Owns a top-level window of GTK, which goes away only when it is destroyed.
class OwnWindow {
 public:
  explicit OwnWindow(GtkWidget* window) : window_(GObjectPtr<GtkWidget>::share(window)) {}
  OwnWindow(const OwnWindow&) = delete;
  OwnWindow& operator=(const OwnWindow&) = delete;
  ~OwnWindow() { gtk_widget_destroy(window_.get()); }

  GtkWidget* widget() const { return window_.get(); }
  GtkWindow* get() const { return GTK_WINDOW(window_.get()); }

 private:
  GObjectPtr<GtkWidget> window_;
};

}  // namespace orvalle::platform::linuxos
