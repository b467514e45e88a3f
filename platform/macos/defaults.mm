#include "platform/defaults.h"

#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <cmath>

#include "base/text.h"
#include "platform/macos/factory.h"
#include "platform/macos/text.h"

namespace orvalle::platform::macos {
namespace {

Defaults::Value toValue(NSNumber* number) {
  // A Boolean is a number too, and says that it is 1.
  if (CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID()) return number.boolValue != NO;
  if (CFNumberIsFloatType((__bridge CFNumberRef)number)) return number.doubleValue;
  return std::int64_t{number.longLongValue};
}

id nativeValue(bool value) {
  return [NSNumber numberWithBool:value];
}
id nativeValue(std::int64_t value) {
  return [NSNumber numberWithLongLong:value];
}
id nativeValue(double value) {
  return std::isfinite(value) ? [NSNumber numberWithDouble:value] : nil;
}
id nativeValue(const std::string& value) {
  return base::isValidUtf8(value) ? nativeText(value) : nil;
}

class UserDefaults final : public Defaults {
 public:
  explicit UserDefaults(NSUserDefaults* store) : store_(store) {}

  std::optional<Value> value(std::string_view key) const override {
    id stored = [store_ objectForKey:nativeText(key)];
    if ([stored isKindOfClass:[NSString class]]) return utf8Text(stored);
    if ([stored isKindOfClass:[NSNumber class]]) return toValue(stored);
    return {};
  }

  void set(std::string_view key, const Value& value) override {
    id native = std::visit([](const auto& held) { return nativeValue(held); }, value);
    if (!native || !base::isValidUtf8(key)) return;
    [store_ setObject:native forKey:nativeText(key)];
    // The swap of an update may end the process at any moment.
    [store_ synchronize];
  }

 private:
  NSUserDefaults* store_;
};

}  // namespace

std::unique_ptr<Defaults> makeDefaults(const std::string& suite) {
  NSUserDefaults* own = suite.empty() ? nil : [[NSUserDefaults alloc] initWithSuiteName:nativeText(suite)];
  return std::make_unique<UserDefaults>(own ? own : NSUserDefaults.standardUserDefaults);
}

}  // namespace orvalle::platform::macos
