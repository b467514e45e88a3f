#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace orvalle::platform::macos {

/// The text as a native one, with U+FFFD in place of every byte that is not UTF-8.
NSString* _Nonnull nativeText(std::string_view text);

/// The text as UTF-8; empty for none. Halves of a pair that stand alone become a question mark.
std::string utf8Text(NSString* _Nullable text);

}  // namespace orvalle::platform::macos
