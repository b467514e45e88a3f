// From: developer.apple.com, "CGGeometry". Binding: xamarin-macios src/CoreGraphics (CGPoint, CGSize, CGRect
// are its own types there, with the same fields).
#pragma once

#include <objc/objc.h>

typedef double CGFloat;

struct CGPoint {
  CGFloat x;
  CGFloat y;
};
typedef struct CGPoint CGPoint;

struct CGSize {
  CGFloat width;
  CGFloat height;
};
typedef struct CGSize CGSize;

struct CGRect {
  CGPoint origin;
  CGSize size;
};
typedef struct CGRect CGRect;
