#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "platform/macos/factory.h"

namespace orvalle::contract {

/// Settings under a name of their own, gone afterwards.
class NativeDefaultsRig {
 public:
  NativeDefaultsRig() { startAgain(); }
  NativeDefaultsRig(const NativeDefaultsRig&) = delete;
  NativeDefaultsRig& operator=(const NativeDefaultsRig&) = delete;
  ~NativeDefaultsRig() {
    CFStringRef suite = CFStringCreateWithCString(nullptr, suite_.c_str(), kCFStringEncodingUTF8);
    CFArrayRef keys = CFPreferencesCopyKeyList(suite, kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    if (keys) {
      CFPreferencesSetMultiple(nullptr, keys, suite, kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
      CFPreferencesSynchronize(suite, kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
      CFRelease(keys);
    }
    CFRelease(suite);
  }

  platform::Defaults& store() { return *store_; }
  /// The same settings as the next run of the program finds them.
  void startAgain() { store_ = platform::macos::makeDefaults(suite_); }

 private:
  static std::string nextSuite() {
    static int count = 0;
    return "app.orvalle.contract." + std::to_string(::getpid()) + "." + std::to_string(++count);
  }
  const std::string suite_ = nextSuite();
  std::unique_ptr<platform::Defaults> store_;
};

}  // namespace orvalle::contract
