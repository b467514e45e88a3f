// From: developer.apple.com, "UNNotificationResponse". Binding: xamarin-macios src/usernotifications.cs.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

extern "C" NSString* const UNNotificationDefaultActionIdentifier API_AVAILABLE(macos(10.14));

API_AVAILABLE(macos(10.14))
@interface UNNotificationResponse : NSObject <NSCopying>
@property(nonatomic, readonly, copy) NSString* actionIdentifier;
- (instancetype)init NS_UNAVAILABLE;
@end

NS_ASSUME_NONNULL_END
