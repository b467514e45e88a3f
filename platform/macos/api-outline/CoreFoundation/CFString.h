// From: developer.apple.com, "CFString". Binding: xamarin-macios src/CoreFoundation/CFString.cs.
#pragma once

#import <CoreFoundation/CFBase.h>

NS_ASSUME_NONNULL_BEGIN

typedef const struct __CFString* CFStringRef;

extern "C" CFTypeID CFStringGetTypeID(void);

#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))

NS_ASSUME_NONNULL_END
