#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace orvalle::platform {

/// Reads what bsdtar lists of an archive with details, and gives the bytes that the contents need on a disk.
/// The reason instead, for the user, when an entry is named by an absolute path or climbs out of its folder,
/// when there are too many, and when a line cannot be understood.
std::variant<std::uintmax_t, std::string> judgeListing(std::string_view listing);

}  // namespace orvalle::platform
