#pragma once

#import <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <type_traits>

namespace orvalle::platform::macos {

struct CfRelease {
  void operator()(CFTypeRef reference) const { CFRelease(reference); }
};

/// Owns what a function with "Copy" or "Create" in its name gave.
template <typename Reference>
using CfPtr = std::unique_ptr<std::remove_pointer_t<Reference>, CfRelease>;

}  // namespace orvalle::platform::macos
