#pragma once

#include <memory>

#include "platform/clock.h"
#include "platform/environment.h"

/// Implementations that need nothing but the C++ library, and so are every system's. They depend on nothing
/// and may be made before anything else.
namespace orvalle::platform {

/// The wall clock of the machine.
std::unique_ptr<Clock> makeClock();
/// The environment of the process, read anew at each question.
std::unique_ptr<Environment> makeEnvironment();

}  // namespace orvalle::platform
