#pragma once

#include <string>
#include <string_view>

namespace orvalle::base {

/// Whether the bytes are well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
bool isValidUtf8(std::string_view text);

/// How many bytes the text's first code point takes; 0 when it does not begin with well-formed UTF-8.
std::size_t codePointLength(std::string_view text);

/// The text with U+FFFD in place of every byte that is not part of well-formed UTF-8.
std::string wellFormed(std::string_view text);

/// The text on one line: every line break (LF, CR, VT, FF, NEL, U+2028, U+2029; CR LF counts once) becomes
/// one blank.
std::string onOneLine(std::string_view text);

/// The text's first character as a reader counts them (extended grapheme clusters), as a view into it: CR LF
/// is one, a letter with its combining marks is one. A byte that is not UTF-8 stands for itself. Empty for an
/// empty text.
std::string_view firstCharacter(std::string_view text);

/// The text without Unicode white space and line breaks at its ends, as a view into it.
std::string_view trimmed(std::string_view text);

}  // namespace orvalle::base
