#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orvalle::web {

/// The script that answers the page's request `id` with `text`. A text that is not UTF-8 arrives empty.
std::string replyExpression(std::int64_t id, const std::string& text);

/// The script that gives the page a command with an optional argument. Plain texts stand in it as they are; a
/// quote, a backslash, a control character or a line separator is written as its escape, so that the page
/// receives exactly the given text and nothing else runs. A text that is not UTF-8 arrives empty.
std::string commandExpression(const std::string& word, const std::optional<std::string>& id);

/// The script by which a loaded page learns that it has regained the user's attention.
extern const char kFocusExpression[];

}  // namespace orvalle::web
