#include "platform/screen.h"

#include "platform/linux/factory.h"
#include "platform/linux/screen_space.h"

namespace orvalle::platform::linuxos {
namespace {

class GdkMainScreen final : public Screen {
 public:
  std::optional<base::Rect> mainVisibleFrame() const override {
    auto* monitor = mainMonitor();
    if (!monitor) return {};
    GdkRectangle usable;
    gdk_monitor_get_workarea(monitor, &usable);
    return fromGdk(usable);
  }
};

}  // namespace

std::unique_ptr<Screen> makeScreen() {
  return std::make_unique<GdkMainScreen>();
}

}  // namespace orvalle::platform::linuxos
