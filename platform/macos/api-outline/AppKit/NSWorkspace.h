// From: developer.apple.com, "NSWorkspace". Binding: xamarin-macios src/appkit.cs.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
- (BOOL)openURL:(NSURL*)url;
@end

NS_ASSUME_NONNULL_END
