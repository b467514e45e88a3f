// From: developer.apple.com, "NSButton". Checked against: objc2's icrate, AppKit/NSButton.rs (generated
// from the SDK's headers, MIT).
#pragma once

#import <AppKit/NSControl.h>

NS_ASSUME_NONNULL_BEGIN

@class NSImage;

typedef NS_ENUM(NSUInteger, NSCellImagePosition) {
  NSImageLeft = 2,
  NSImageRight = 3,
};

typedef NS_ENUM(NSUInteger, NSBezelStyle) {
  NSBezelStyleRounded = 1,
};

@interface NSButton : NSControl
+ (instancetype)buttonWithTitle:(NSString*)title
                         target:(nullable id)target
                         action:(nullable SEL)action API_AVAILABLE(macos(10.12));
@property(copy) NSString* title;
@property NSBezelStyle bezelStyle;
@property(nullable, strong) NSImage* image;
@property NSCellImagePosition imagePosition;
@property(copy) NSString* keyEquivalent;
@end

NS_ASSUME_NONNULL_END
