// From: developer.apple.com, "Quartz Event Services". Binding: xamarin-macios
// src/CoreGraphics/CGEventSource.cs.
#pragma once

#include <objc/objc.h>

typedef NS_ENUM(int32_t, CGEventSourceStateID) {
  kCGEventSourceStateCombinedSessionState = 0,
};
typedef NS_ENUM(uint32_t, CGEventType) {
  kCGEventNull = 0,
};
typedef double CFTimeInterval;

#define kCGAnyInputEventType ((CGEventType)(~0))

extern "C" CFTimeInterval CGEventSourceSecondsSinceLastEventType(CGEventSourceStateID stateID,
                                                                 CGEventType eventType);
