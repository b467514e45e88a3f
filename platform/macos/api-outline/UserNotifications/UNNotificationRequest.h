// From: developer.apple.com, "UNNotificationRequest". Binding: xamarin-macios src/usernotifications.cs.
#pragma once

#import <UserNotifications/UNNotificationContent.h>

NS_ASSUME_NONNULL_BEGIN

@class UNNotificationTrigger;

API_AVAILABLE(macos(10.14))
@interface UNNotificationRequest : NSObject <NSCopying>
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
- (instancetype)init NS_UNAVAILABLE;
@end

NS_ASSUME_NONNULL_END
