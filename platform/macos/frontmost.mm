#include "platform/frontmost.h"

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>

#include "platform/macos/cf_ptr.h"
#include "platform/macos/factory.h"
#include "platform/macos/text.h"

namespace orvalle::platform::macos {
namespace {

/// How long another program may keep us waiting, in seconds. By itself the system waits for six, and the
/// interface with it.
constexpr float kPatience = 0.5F;

constexpr int kNobody = -1;

std::optional<std::string> unlessEmpty(NSString* text) {
  std::string found = utf8Text(text);
  if (found.empty()) return {};
  return found;
}

CfPtr<CFTypeRef> attribute(AXUIElementRef element, CFStringRef name) {
  CFTypeRef value = nullptr;
  AXUIElementSetMessagingTimeout(element, kPatience);
  if (AXUIElementCopyAttributeValue(element, name, &value) != kAXErrorSuccess) return nullptr;
  return CfPtr<CFTypeRef>(value);
}

class FrontmostApplication final : public Frontmost {
 public:
  std::optional<std::string> applicationName() override {
    NSRunningApplication* application = NSWorkspace.sharedWorkspace.frontmostApplication;
    process_ = application ? application.processIdentifier : kNobody;
    return unlessEmpty(application.localizedName);
  }

  std::optional<std::string> focusedWindowTitle() override {
    if (process_ == kNobody) return {};
    const CfPtr<AXUIElementRef> application(AXUIElementCreateApplication(process_));
    const auto window = attribute(application.get(), kAXFocusedWindowAttribute);
    if (!window || CFGetTypeID(window.get()) != AXUIElementGetTypeID()) return {};
    const auto title = attribute(static_cast<AXUIElementRef>(window.get()), kAXTitleAttribute);
    if (!title || CFGetTypeID(title.get()) != CFStringGetTypeID()) return {};
    return unlessEmpty((__bridge NSString*)title.get());
  }

 private:
  int process_ = kNobody;
};

}  // namespace

std::unique_ptr<Frontmost> makeFrontmost() {
  return std::make_unique<FrontmostApplication>();
}

}  // namespace orvalle::platform::macos
