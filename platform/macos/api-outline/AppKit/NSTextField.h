// From: developer.apple.com, "NSTextField". Checked against: objc2's icrate, AppKit/NSTextField.rs
// (generated from the SDK's headers, MIT).
#pragma once

#import <AppKit/NSControl.h>

NS_ASSUME_NONNULL_BEGIN

@class NSColor;

@interface NSTextField : NSControl
+ (instancetype)labelWithString:(NSString*)stringValue API_AVAILABLE(macos(10.12));
@property(nullable, copy) NSString* placeholderString;
@property(nullable, copy) NSColor* textColor;
@property(getter=isEditable) BOOL editable;
@end

NS_ASSUME_NONNULL_END
