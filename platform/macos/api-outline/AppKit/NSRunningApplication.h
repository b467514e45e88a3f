// From: developer.apple.com, "NSRunningApplication". Binding: xamarin-macios src/appkit.cs, as generated.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSRunningApplication : NSObject
@property(nullable, readonly, copy) NSString* localizedName;
@property(readonly) int processIdentifier;
@end

NS_ASSUME_NONNULL_END
