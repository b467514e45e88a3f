#pragma once

// The implementations of the system that the tests run on; the build names them.
#include ORVALLE_NATIVE_FACTORY

namespace orvalle::contract {

namespace native = platform::ORVALLE_NATIVE_NAMESPACE;

}  // namespace orvalle::contract
