#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/subscription.h"
#include "platform/package_tools.h"
#include "platform/processes.h"

namespace orvalle::update {

/// What running a tool came to.
struct Esito {
  /// What it printed; empty when that is no UTF-8.
  std::string output;
  /// In words for the user, when it could not be started or did not end with status 0: its own output, or the
  /// tool's path when it printed nothing.
  std::optional<std::string> errore;
};

/// Runs a tool to its end, unless the subscription goes first. `done` is called once, on the main loop and
/// never inside this call.
[[nodiscard]] base::Subscription esegui(platform::Processes& processes, const platform::Command& command,
                                        std::function<void(const Esito&)> done);

}  // namespace orvalle::update
