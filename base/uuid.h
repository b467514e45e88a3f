#pragma once

#include <string>

namespace orvalle::base {

/// A new random identifier (UUID version 4) in capital letters.
std::string randomUuid();

}  // namespace orvalle::base
