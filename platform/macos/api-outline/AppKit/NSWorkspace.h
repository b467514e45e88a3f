// From: developer.apple.com, "NSWorkspace". Not checked against a binding.
#pragma once

#import <AppKit/NSRunningApplication.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
- (BOOL)openURL:(NSURL*)url;
@end

NS_ASSUME_NONNULL_END
