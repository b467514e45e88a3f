#import "platform/macos/drawing_appkit.h"

namespace orvalle::platform::macos {
namespace {

NSRect nativeRect(const base::Rect& rect) {
  return NSMakeRect(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

/// Black stands for ink.
NSColor* ink(double alpha) {
  return [[NSColor blackColor] colorWithAlphaComponent:alpha];
}

void stroke(const Arc& arc) {
  NSBezierPath* path = [NSBezierPath bezierPath];
  [path appendBezierPathWithArcWithCenter:NSMakePoint(arc.centre.x, arc.centre.y)
                                   radius:arc.radius
                               startAngle:arc.startDegrees
                                 endAngle:arc.endDegrees
                                clockwise:arc.clockwise];
  path.lineWidth = arc.lineWidth;
  path.lineCapStyle = arc.roundCaps ? NSLineCapStyleRound : NSLineCapStyleButt;
  [ink(arc.alpha) setStroke];
  [path stroke];
}

void fill(const Oval& oval) {
  [ink(oval.alpha) setFill];
  [[NSBezierPath bezierPathWithOvalInRect:nativeRect(oval.bounds)] fill];
}

}  // namespace

NSImage* nativeImage(const Drawing& drawing) {
  const Drawing kept = drawing;
  NSImage* image = [NSImage imageWithSize:NSMakeSize(drawing.size.width, drawing.size.height)
                                  flipped:NO
                           drawingHandler:^BOOL(NSRect) {
                             for (const auto& arc : kept.arcs) stroke(arc);
                             for (const auto& oval : kept.ovals) fill(oval);
                             return YES;
                           }];
  [image setTemplate:drawing.isTemplate];
  return image;
}

}  // namespace orvalle::platform::macos
