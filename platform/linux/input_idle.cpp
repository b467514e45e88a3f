#include "platform/input_idle.h"

#include "platform/linux/factory.h"
#include "platform/linux/input_idle_sources.h"
#include "platform/linux/wayland_connection.h"

namespace orvalle::platform::linuxos {

std::unique_ptr<InputIdle> makeInputIdle() {
  // The X server of a Wayland session knows only of the input that X's own windows get.
  auto found = inWaylandSession() ? makeWaylandInputIdle() : makeX11InputIdle(gdk_display_get_default());
  return found ? std::move(found) : makeBusInputIdle();
}

}  // namespace orvalle::platform::linuxos
