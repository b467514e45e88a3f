// From: developer.apple.com, "NSRange". Binding: xamarin-macios src/Foundation/NSRange.cs, a type of its own
// there.
#pragma once

#include <objc/objc.h>

typedef struct NSRange {
  NSUInteger location;
  NSUInteger length;
} NSRange;

enum : NSInteger { NSNotFound = INTPTR_MAX };
