#pragma once

#include "tests/contract/defaults_rigs.h"

namespace orvalle::contract {

using NativeDefaultsRig = platform::LinuxDefaultsRig;

}  // namespace orvalle::contract
