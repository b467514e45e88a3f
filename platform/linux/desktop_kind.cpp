#include "platform/linux/desktop_kind.h"

#include <string>

namespace orvalle::platform::linuxos {

DesktopKind desktopKind(const Environment& environment) {
  // A list of names between colons.
  const std::string names = ":" + environment.variable("XDG_CURRENT_DESKTOP").value_or("") + ":";
  if (names.find(":KDE:") != std::string::npos) return DesktopKind::Kde;
  if (names.find(":XFCE:") != std::string::npos) return DesktopKind::Xfce;
  return DesktopKind::Gnome;
}

}  // namespace orvalle::platform::linuxos
