#include "platform/frontmost.h"

#include <gdk/gdkx.h>

#include "platform/linux/factory.h"
#include "platform/linux/frontmost_sources.h"
#include "platform/linux/wayland_connection.h"

namespace orvalle::platform::linuxos {

std::unique_ptr<Frontmost> makeFrontmost() {
  // The X server of a Wayland session knows only some of the windows, and may take one of them for the one in
  // front that is not.
  if (inWaylandSession()) {
    auto frontmost = makeWaylandFrontmost();
    return frontmost ? std::move(frontmost) : makeAtspiFrontmost();
  }
  GdkDisplay* display = gdk_display_get_default();
  return GDK_IS_X11_DISPLAY(display) ? makeX11Frontmost(display) : makeAtspiFrontmost();
}

}  // namespace orvalle::platform::linuxos
