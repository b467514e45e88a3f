// The Objective-C runtime's basic types and the macros that frameworks are declared with, as far as used
// here. From: developer.apple.com, "Objective-C Runtime". No binding holds these: what the compiler says of
// them is all.
#pragma once

#include <stddef.h>
#include <stdint.h>

#if defined(__arm64__)
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif

#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

#define API_SINCE_macos(since) macos, introduced = since
#define API_UNTIL_macos(since, until) macos, introduced = since, deprecated = until
#define API_ATTRIBUTE(...) __attribute__((availability(__VA_ARGS__)))
#define API_AVAILABLE(version) API_ATTRIBUTE(API_SINCE_##version)
/// Deprecated from the second version of `range` on; `text` says what takes its place.
#define API_DEPRECATED(text, range) API_ATTRIBUTE(API_UNTIL_##range, message = text)

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
#define NS_OPTIONS(type, name) \
  type name;                   \
  enum : type
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define NS_UNAVAILABLE __attribute__((unavailable))
#define NS_NOESCAPE __attribute__((noescape))

typedef long NSInteger;
typedef unsigned long NSUInteger;
