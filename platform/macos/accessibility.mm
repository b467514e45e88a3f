#include "platform/accessibility.h"

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>

#include "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

/// The system's own consent: it asks, keeps the answer, and shows it in its settings.
class SystemConsent final : public Accessibility {
 public:
  bool trusted() const override { return AXIsProcessTrusted() != 0; }

  void prompt() override {
    NSDictionary* options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @YES};
    AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
  }

  void openSettings() override {
    NSURL* pane = [NSURL
        URLWithString:@"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"];
    if (pane) [NSWorkspace.sharedWorkspace openURL:pane];
  }
};

}  // namespace

std::unique_ptr<Accessibility> makeAccessibility() {
  return std::make_unique<SystemConsent>();
}

}  // namespace orvalle::platform::macos
