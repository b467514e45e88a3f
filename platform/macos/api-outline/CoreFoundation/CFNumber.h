// From: developer.apple.com, "CFNumber" and "CFBoolean". Binding: xamarin-macios
// src/CoreFoundation/CFBoolean.cs; of CFNumberIsFloatType there is none.
#pragma once

#import <CoreFoundation/CFBase.h>

NS_ASSUME_NONNULL_BEGIN

typedef const struct __CFNumber* CFNumberRef;

extern "C" {
CFTypeID CFBooleanGetTypeID(void);
Boolean CFNumberIsFloatType(CFNumberRef number);
}

NS_ASSUME_NONNULL_END
