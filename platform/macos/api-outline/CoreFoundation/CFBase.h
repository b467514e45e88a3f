// From: developer.apple.com, "CFType" and "CFBridgingRelease". Binding: xamarin-macios
// src/CoreFoundation/CFObject.cs.
#pragma once

#include <objc/objc.h>

NS_ASSUME_NONNULL_BEGIN

typedef const void* CFTypeRef;
typedef unsigned long CFTypeID;
typedef unsigned char Boolean;
typedef int32_t OSStatus;

extern "C" {
void CFRelease(CFTypeRef cf);
CFTypeID CFGetTypeID(CFTypeRef cf);
}

/// Hands what is owned over to the automatic counting.
inline id _Nullable CFBridgingRelease(CFTypeRef __attribute__((cf_consumed)) _Nullable X) {
  return (__bridge_transfer id)X;
}

NS_ASSUME_NONNULL_END
