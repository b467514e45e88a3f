#pragma once

#import <AppKit/AppKit.h>

#include "platform/drawing.h"

namespace orvalle::platform::macos {

/// The picture at any resolution; the system tints a template.
NSImage* _Nonnull nativeImage(const Drawing& drawing);

}  // namespace orvalle::platform::macos
