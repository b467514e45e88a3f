#pragma once

#include <string>
#include <vector>

namespace orvalle::fault {

/// Runs a program, and kills it by SIGKILL with everything that it started, right after the `change`-th
/// system call of any of them that may have changed a file. False when they all ended before that.
bool killTreeAfterChange(int change, const std::vector<std::string>& command);

}  // namespace orvalle::fault
