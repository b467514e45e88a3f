#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <optional>

#include "platform/linux/factory.h"

namespace orvalle::contract {

class NativeScreenRig {
 public:
  NativeScreenRig() {
    gtk_init(nullptr, nullptr);
    screen_ = platform::linuxos::makeScreen();
  }

  platform::Screen& screen() { return *screen_; }
  /// The display, from its lower left corner.
  std::optional<base::Rect> whole() {
    GdkRectangle display;
    gdk_monitor_get_geometry(gdk_display_get_monitor(gdk_display_get_default(), 0), &display);
    return base::Rect{{0, 0}, {static_cast<double>(display.width), static_cast<double>(display.height)}};
  }

 private:
  std::unique_ptr<platform::Screen> screen_;
};

}  // namespace orvalle::contract
