#include "platform/linux/key_equivalents.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace orvalle::platform::linuxos {
namespace {

/// A key of some keyboard with what is held beside it, and the key equivalent it stands for.
struct Case {
  const char* what;
  KeyPress press;
  const char* key;
};

void PrintTo(const Case& tested, std::ostream* stream) {
  *stream << tested.what;
}

KeyPress control(char32_t character, char32_t latin) {
  return {character, latin, true, false, false};
}

KeyPress controlShift(char32_t character, char32_t latin) {
  return {character, latin, true, true, false};
}

class KeyEquivalent : public ::testing::TestWithParam<Case> {};

TEST_P(KeyEquivalent, isWhatTheKeyTypes) {
  EXPECT_EQ(keyEquivalent(GetParam().press), GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(Keys, KeyEquivalent,
                         ::testing::ValuesIn(std::vector<Case>{
                             {"a letter", control(U'n', U'n'), "n"},
                             {"a letter with Shift", controlShift(U'N', U'N'), "N"},
                             {"a letter under Caps Lock", control(U'N', U'N'), "n"},
                             {"a letter with Shift under Caps Lock", controlShift(U'n', U'n'), "N"},
                             {"a digit", control(U'1', U'1'), "1"},
                             {"a digit of the keypad", control(U'4', 0), "4"},
                             {"a sign", control(U',', U','), ","},
                             {"a bracket with AltGr, Italian", control(U'[', U'['), "["},
                             {"a slash over the seven, Italian", controlShift(U'/', U'/'), "/"},
                             {"the seven without Shift, Italian", control(U'7', U'7'), "7"},
                             {"an accented letter, Italian with a US layout beside it", control(U'è', U'['),
                              "è"},
                             {"a letter, Cyrillic with a US layout beside it", control(U'т', U'n'), "n"},
                             {"a letter with Shift, Cyrillic", controlShift(U'Т', U'N'), "N"},
                             {"a letter where Latin has a sign, Cyrillic", control(U'х', U'['), "["},
                             {"a sign where Latin has another, Cyrillic", control(U'.', U'/'), "."},
                             {"a letter, Greek", control(U'ν', U'n'), "n"},
                             {"a letter, Hebrew", control(U'מ', U'n'), "n"},
                             {"a letter, Cyrillic and nothing else", control(U'т', 0), "т"},
                             {"a key that types nothing", control(0, 0), ""},
                             {"a key that types nothing here, but does elsewhere", control(0, U'n'), ""},
                             {"a control character", control(U'\r', U'\r'), ""},
                             {"no Control", {U'n', U'n', false, false, false}, ""},
                             {"no Control, but Shift", {U'N', U'N', false, true, false}, ""},
                             {"Control and Alt", {U'n', U'n', true, false, true}, ""},
                             {"Alt alone", {U'n', U'n', false, false, true}, ""},
                         }));

}  // namespace
}  // namespace orvalle::platform::linuxos
