#import "platform/macos/text.h"

#include "base/text.h"

namespace orvalle::platform::macos {

NSString* nativeText(std::string_view text) {
  const std::string whole = base::wellFormed(text);
  NSString* native = [[NSString alloc] initWithBytes:whole.data()
                                              length:whole.size()
                                            encoding:NSUTF8StringEncoding];
  return native ? native : @"";
}

std::string utf8Text(NSString* text) {
  NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  return data ? std::string(static_cast<const char*>(data.bytes), data.length) : std::string();
}

}  // namespace orvalle::platform::macos
