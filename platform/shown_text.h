#pragma once

#include <string>
#include <string_view>

namespace orvalle::platform {

/// The text as it may go into a menu, a label or a small widget, whatever it holds: valid UTF-8 on one line,
/// without NUL, and of no more than 200 code points, the last one an ellipsis where something was left out.
/// Looks at no more of the text than that.
std::string shownText(std::string_view text);

/// The text as it may go into a dialog: valid UTF-8 without NUL, of no more than 5,000 code points, 500 lines
/// and 200 code points a word, with an ellipsis for whatever goes on. Nobody reads more than that there, and
/// the time that laying it out takes may grow with the square of a word's length.
std::string readableText(std::string_view text);

}  // namespace orvalle::platform
