#include "platform/linux/key_equivalents.h"

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

bool isOfAnotherScript(char32_t character) {
  if (!g_unichar_isalpha(character)) return false;
  const GUnicodeScript script = g_unichar_get_script(character);
  return script != G_UNICODE_SCRIPT_LATIN && script != G_UNICODE_SCRIPT_COMMON;
}

/// The first group of the keyboard in which the key, by itself, types a character of ASCII; -1 for none.
int latinGroup(GdkKeymap* keymap, guint keycode) {
  GdkKeymapKey* keys = nullptr;
  guint* values = nullptr;
  int count = 0;
  if (!gdk_keymap_get_entries_for_keycode(keymap, keycode, &keys, &values, &count)) return -1;
  int group = -1;
  for (int i = 0; i < count; ++i) {
    const guint32 character = gdk_keyval_to_unicode(values[i]);
    const bool isPlain = keys[i].level == 0 && character > ' ' && character < 0x7F;
    if (isPlain && (group < 0 || keys[i].group < group)) group = keys[i].group;
  }
  g_free(keys);
  g_free(values);
  return group;
}

}  // namespace

std::string keyEquivalent(const KeyPress& press) {
  if (!press.control || press.otherModifier) return {};
  char32_t character = press.character;
  if (isOfAnotherScript(character) && press.latinCharacter) character = press.latinCharacter;
  if (!g_unichar_isprint(character)) return {};
  character = press.shift ? g_unichar_toupper(character) : g_unichar_tolower(character);
  char text[6];
  return {text, static_cast<std::size_t>(g_unichar_to_utf8(character, text))};
}

KeyPress readKeyPress(const GdkEventKey& event) {
  GdkKeymap* keymap = gdk_keymap_get_for_display(gdk_window_get_display(event.window));
  auto state = static_cast<GdkModifierType>(event.state);
  gdk_keymap_add_virtual_modifiers(keymap, &state);
  constexpr guint kOthers = GDK_MOD1_MASK | GDK_SUPER_MASK | GDK_HYPER_MASK | GDK_META_MASK;

  KeyPress press;
  press.character = gdk_keyval_to_unicode(event.keyval);
  press.control = (state & GDK_CONTROL_MASK) != 0;
  press.shift = (state & GDK_SHIFT_MASK) != 0;
  press.otherModifier = (state & kOthers) != 0;
  const int group = latinGroup(keymap, event.hardware_keycode);
  guint value = 0;
  if (group >= 0 && gdk_keymap_translate_keyboard_state(keymap, event.hardware_keycode,
                                                        static_cast<GdkModifierType>(event.state), group,
                                                        &value, nullptr, nullptr, nullptr)) {
    press.latinCharacter = gdk_keyval_to_unicode(value);
  }
  return press;
}

}  // namespace orvalle::platform::linuxos
