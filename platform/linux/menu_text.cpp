#include "platform/linux/menu_text.h"

#include "platform/shown_text.h"

namespace orvalle::platform::linuxos {

std::string shownTitle(const MenuItem& item) {
  return item.submenu() && item.title().empty() ? "Orvalle" : shownText(item.title());
}

Accelerator accelerator(const MenuItem& item) {
  const gunichar character = g_utf8_get_char(item.keyEquivalent().c_str());
  Accelerator accelerator;
  accelerator.key = gdk_unicode_to_keyval(g_unichar_tolower(character));
  if (g_unichar_isupper(character)) {
    accelerator.modifiers = static_cast<GdkModifierType>(GDK_CONTROL_MASK | GDK_SHIFT_MASK);
  }
  return accelerator;
}

}  // namespace orvalle::platform::linuxos
