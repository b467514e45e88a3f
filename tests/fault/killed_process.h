#pragma once

#include <functional>

namespace orvalle::fault {

/// Runs `work` in a process of its own that is killed by SIGKILL after the `call`-th of its system calls.
/// False when the work came to its end before that.
bool killAfter(int call, const std::function<void()>& work);

}  // namespace orvalle::fault
