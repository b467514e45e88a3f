#include <gdk/gdkx.h>

#include <X11/extensions/scrnsaver.h>

#include "platform/linux/input_idle_sources.h"

namespace orvalle::platform::linuxos {
namespace {

/// The server's own measure, of all keyboards and pointers.
class X11InputIdle final : public InputIdle {
 public:
  explicit X11InputIdle(GdkDisplay* display) : display_(display), info_(XScreenSaverAllocInfo(), XFree) {}

  double secondsSinceInput() override {
    constexpr double kMillisecondsInASecond = 1000;
    if (!info_ || !XScreenSaverQueryInfo(gdk_x11_display_get_xdisplay(display_),
                                         gdk_x11_get_default_root_xwindow(), info_.get()))
      return 0;
    return static_cast<double>(info_->idle) / kMillisecondsInASecond;
  }

 private:
  GdkDisplay* display_;
  std::unique_ptr<XScreenSaverInfo, decltype(&XFree)> info_;
};

}  // namespace

std::unique_ptr<InputIdle> makeX11InputIdle(GdkDisplay* display) {
  int event = 0;
  int error = 0;
  if (!GDK_IS_X11_DISPLAY(display) ||
      !XScreenSaverQueryExtension(gdk_x11_display_get_xdisplay(display), &event, &error))
    return nullptr;
  return std::make_unique<X11InputIdle>(display);
}

}  // namespace orvalle::platform::linuxos
