// From: developer.apple.com, "NSGeometry". Binding: xamarin-macios uses CGRect and its kin throughout, as
// these do.
#pragma once

#import <CoreGraphics/CGGeometry.h>

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
  return {x, y};
}
static inline NSSize NSMakeSize(CGFloat w, CGFloat h) {
  return {w, h};
}
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) {
  return {{x, y}, {w, h}};
}
