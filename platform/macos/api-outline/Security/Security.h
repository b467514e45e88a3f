// From: developer.apple.com, "Code Signing Services". Checked against: objc2's generated Security/SecCode.rs
// and CSCommon.rs (MIT). The value of errSecSuccess is from the documentation alone.
#pragma once

#import <CoreFoundation/CoreFoundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef struct __SecCode* SecCodeRef;
typedef const struct __SecCode* SecStaticCodeRef;
typedef uint32_t SecCSFlags;

enum : OSStatus { errSecSuccess = 0 };
enum : SecCSFlags { kSecCSDefaultFlags = 0 };

extern "C" {
extern const CFStringRef kSecCodeInfoFlags;

OSStatus SecCodeCopySelf(SecCSFlags flags,
                         SecCodeRef _Nullable __attribute__((cf_returns_retained)) * _Nonnull self);
OSStatus SecCodeCopyStaticCode(SecCodeRef code, SecCSFlags flags,
                               SecStaticCodeRef _Nullable
                               __attribute__((cf_returns_retained)) * _Nonnull staticCode);
OSStatus SecCodeCopySigningInformation(SecStaticCodeRef code, SecCSFlags flags,
                                       CFDictionaryRef _Nullable
                                       __attribute__((cf_returns_retained)) * _Nonnull information);
}

NS_ASSUME_NONNULL_END
