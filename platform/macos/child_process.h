#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "base/subscription.h"
#include "platform/processes.h"

namespace orvalle::platform::macos {

/// Runs a program. `done` is called once, on the main loop, unless the subscription goes first: that ends the
/// program and what it started.
[[nodiscard]] base::Subscription runChild(const std::filesystem::path& program,
                                          const std::vector<std::string>& arguments,
                                          std::function<void(const ProcessOutcome&)> done);

}  // namespace orvalle::platform::macos
