#pragma once

#include <string>
#include <string_view>

namespace orvalle::platform::linuxos {

/// The text as it may go over the bus or into a small widget, whatever it holds: valid UTF-8 on one line,
/// without NUL, and of no more than 200 code points, the last one an ellipsis where something was left out.
/// Looks at no more of the text than that.
std::string shownText(std::string_view text);

}  // namespace orvalle::platform::linuxos
