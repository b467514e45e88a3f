// From: developer.apple.com, "CFNumber" and "CFBoolean". Checked against: objc2's generated
// CoreFoundation/CFNumber.rs (MIT).
#pragma once

#import <CoreFoundation/CFBase.h>

NS_ASSUME_NONNULL_BEGIN

typedef const struct __CFNumber* CFNumberRef;

extern "C" {
CFTypeID CFBooleanGetTypeID(void);
Boolean CFNumberIsFloatType(CFNumberRef number);
}

NS_ASSUME_NONNULL_END
