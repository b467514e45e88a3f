// From: developer.apple.com, "NSVisualEffectView". Checked against: objc2's icrate,
// AppKit/NSVisualEffectView.rs (generated from the SDK's headers, MIT).
#pragma once

#import <AppKit/NSView.h>

typedef NS_ENUM(NSInteger, NSVisualEffectMaterial) {
  NSVisualEffectMaterialHUDWindow API_AVAILABLE(macos(10.14)) = 13,
};

typedef NS_ENUM(NSInteger, NSVisualEffectBlendingMode) {
  NSVisualEffectBlendingModeBehindWindow = 0,
};

typedef NS_ENUM(NSInteger, NSVisualEffectState) {
  NSVisualEffectStateActive = 1,
};

@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@property NSVisualEffectState state;
@end
