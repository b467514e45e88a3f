#pragma once

#include "platform/platform.h"

namespace orvalle::app {

/// Builds the program on the given system, runs it to its end and takes it down again. Returns the exit
/// status.
int run(const platform::Platform& platform);

}  // namespace orvalle::app
