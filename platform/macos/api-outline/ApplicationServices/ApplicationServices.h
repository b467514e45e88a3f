// From: developer.apple.com, "AXUIElement". Checked against: objc2's generated HIServices/AXUIElement.rs and
// AXError.rs (MIT). The values of the attributes' names are from the documentation alone.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CoreGraphics.h>

NS_ASSUME_NONNULL_BEGIN

typedef const struct __AXUIElement* AXUIElementRef;
typedef int32_t AXError;
enum : AXError { kAXErrorSuccess = 0 };

#define kAXFocusedWindowAttribute CFSTR("AXFocusedWindow")
#define kAXTitleAttribute CFSTR("AXTitle")

extern "C" {
extern const CFStringRef kAXTrustedCheckOptionPrompt API_AVAILABLE(macos(10.9));

Boolean AXIsProcessTrusted(void);
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options) API_AVAILABLE(macos(10.9));
CFTypeID AXUIElementGetTypeID(void);
__attribute__((cf_returns_retained)) AXUIElementRef AXUIElementCreateApplication(int pid);
AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds);
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                      CFTypeRef _Nullable
                                      __attribute__((cf_returns_retained)) * _Nonnull value);
}

NS_ASSUME_NONNULL_END
