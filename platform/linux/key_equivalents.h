#pragma once

#include <gdk/gdk.h>

#include <string>

namespace orvalle::platform::linuxos {

/// A pressed key, as far as key equivalents are concerned.
struct KeyPress {
  /// What the key types with the modifiers that are held; 0 for nothing.
  char32_t character = 0;
  /// The same key's character in the first of the user's keyboard layouts where it is a plain Latin one; 0
  /// when there is none.
  char32_t latinCharacter = 0;
  bool control = false;
  bool shift = false;
  /// Alt, Super, Hyper or Meta. The key that chooses a third character (AltGr) is none of them.
  bool otherModifier = false;
};

/// The key equivalent that the key press stands for, with Control in Command's place, or an empty text. Goes
/// by what the key types, so that a character counts wherever a layout has put it; for letters Shift alone
/// decides about the case, Caps Lock does not matter. Where a key types a letter of another script, its Latin
/// character counts.
std::string keyEquivalent(const KeyPress& press);

/// Reads a key event. Needs the display it came from.
KeyPress readKeyPress(const GdkEventKey& event);

}  // namespace orvalle::platform::linuxos
